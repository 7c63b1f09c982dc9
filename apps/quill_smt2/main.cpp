// The command quill-smt2: reads an SMT-LIB 2.6 script into shared terms, and writes it back or
// measures it.
//
// Exit status 0 on success. Otherwise one line on standard error, nothing (or not everything) on
// standard output, and status 1; a reader of the output that goes away early gets no message.

#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdio>
#include <exception>
#include <iostream>
#include <new>
#include <string>

#include "apps/quill_smt2/commands.h"
#include "frontends/smt2/parse_error.h"

namespace {

struct Options {
  std::string file;
  bool no_timing = false;
};

int fail(const std::string& file, const std::string& separator, const std::string& why) {
  // The stream is unbuffered, and a message that cannot be written is no further failure.
  std::cerr << (file == "-" ? "<stdin>" : file) << separator << why << '\n';
  return 1;
}

int run(const CLI::App& print_command, const Options& options) {
  using namespace quill::smt2;
  try {
    const std::string output = print_command.parsed()
                                   ? app::print_script(options.file)
                                   : app::script_statistics(options.file, !options.no_timing);
    return app::write_output(output) ? 0 : 1;
  } catch (const ParseError& e) {
    return fail(
        options.file,
        ":" + std::to_string(e.line()) + ":" + std::to_string(e.column()) + ": error: ", e.text());
  } catch (const app::OutputError& e) {
    return fail("standard output", ": error: ", e.what());
  } catch (const std::bad_alloc&) {
    return fail(options.file, ": error: ", "out of memory");
  } catch (const std::exception& e) {
    return fail(options.file, ": error: ", e.what());
  }
}

}  // namespace

int main(int argc, char** argv) {
  // A closed pipe is then an error of a write, like a full disk.
  std::signal(SIGPIPE, SIG_IGN);
  // Without this, errors of reading standard input would look like its end.
  std::ios::sync_with_stdio(false);

  CLI::App cli("Reads an SMT-LIB 2.6 script into shared terms.", "quill-smt2");
  Options options;
  CLI::App* print_command =
      cli.add_subcommand("print", "Write the script back from its terms, definitions expanded");
  CLI::App* stats_command = cli.add_subcommand("stats", "Show the size and shape of the terms");
  for (CLI::App* command : {print_command, stats_command}) {
    command->add_option("FILE", options.file, "The script; - is standard input")->required();
  }
  stats_command->add_flag("--no-timing", options.no_timing,
                          "Leave out the last line, which shows time and memory");
  cli.require_subcommand(1);
  try {
    cli.parse(argc, argv);
    return run(*print_command, options);
  } catch (const CLI::ParseError& e) {
    // Help ends the same way, with status 0.
    return cli.exit(e) == 0 ? 0 : 1;
  } catch (const std::exception& e) {
    return fail("quill-smt2", ": error: ", e.what());
  }
}
