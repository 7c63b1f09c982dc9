// The command quill-smt2: reads an SMT-LIB 2.6 script into shared terms, and writes it back or
// measures it.
//
// The exit status is 0 on success. On a failure it is 1, with one line on standard error and
// nothing (or not everything) on standard output. If the reader of the output goes away early, the
// status is 1 and there is no message.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <functional>
#include <iostream>
#include <new>
#include <string>
#include <vector>

#include "apps/quill_smt2/commands.h"
#include "quill/frontends/smt2/parse_error.h"
#include "quill/frontends/smt2/read_options.h"

namespace {

struct Options {
  std::string file;
  std::vector<std::string> settings;
  uint64_t max_expansion = quill::smt2::ReadOptions().max_pairs;
  bool extensions = false;
  bool no_timing = false;
  bool print = false;

  quill::Configuration::Dialect dialect() const {
    return extensions ? quill::Configuration::Dialect::Extensions
                      : quill::Configuration::Dialect::Standard;
  }
};

int fail(const std::string& file, const std::string& separator, const std::string& why) {
  // The stream is unbuffered. A message that cannot be written is not a second failure.
  std::cerr << (file == "-" ? "<stdin>" : file) << separator << why << '\n';
  return 1;
}

// Writes the text that the subcommand makes of the file.
int run(const Options& options, const std::function<std::string()>& subcommand) {
  using namespace quill::smt2;
  try {
    return app::write_output(subcommand()) ? 0 : 1;
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
  // With this, a closed pipe is an error of a write, like a full disk.
  std::signal(SIGPIPE, SIG_IGN);
  // Without this, errors of reading standard input would look like its end.
  std::ios::sync_with_stdio(false);

  namespace app = quill::smt2::app;
  CLI::App cli("Reads an SMT-LIB 2.6 script into shared terms.", "quill-smt2");
  Options options;
  std::function<std::string()> subcommand;
  const auto add_subcommand = [&](const char* name, const char* description,
                                  std::function<std::string()> action) {
    CLI::App* added = cli.add_subcommand(name, description);
    added->add_option("FILE", options.file, "The script; - is standard input")->required();
    added
        ->add_option("--max-expansion", options.max_expansion,
                     "How many pairs of 'distinct', and how many bits of conversions and wide "
                     "constants, the script may have")
        ->capture_default_str();
    added->callback([&subcommand, action] { subcommand = action; });
    return added;
  };
  CLI::App* print = add_subcommand(
      "print", "Write the script back from its terms, definitions expanded",
      [&] { return app::print_script(options.file, options.max_expansion, options.dialect()); });
  CLI::App* substitute =
      add_subcommand("substitute", "Write the script back with constants replaced by terms", [&] {
        return app::substitute_in_script(options.file, options.settings, options.max_expansion,
                                         options.dialect());
      });
  substitute->add_option("--set", options.settings, "A constant and the term for it, NAME=TERM")
      ->required()
      ->allow_extra_args(false);
  CLI::App* copy = add_subcommand(
      "copy", "Write the script back from a copy of its terms in another manager",
      [&] { return app::copy_script(options.file, options.max_expansion, options.dialect()); });
  CLI::App* gc = add_subcommand(
      "gc", "Free what the assertions in force at the end do not need, and report it", [&] {
        return options.print
                   ? app::collect_and_print(options.file, options.max_expansion, options.dialect())
                   : app::collection_report(options.file, options.max_expansion);
      });
  gc->add_flag("--print", options.print,
               "Keep what the commands mention instead, and write the script back");
  CLI::App* stats = add_subcommand("stats", "Show the size and shape of the terms", [&] {
    return app::script_statistics(options.file, options.max_expansion, !options.no_timing);
  });
  stats->add_flag("--no-timing", options.no_timing,
                  "Leave out the last line, which shows time and memory");
  for (CLI::App* writer : {print, substitute, copy, gc}) {
    writer->add_flag("--extensions", options.extensions,
                     "Write fp.to_ieee_bv, sbv_to_int and int2bv where the script has them, "
                     "instead of standard terms in their place");
  }
  cli.require_subcommand(1);
  cli.set_version_flag("--version", "quill-smt2 " QUILL_VERSION);
  try {
    cli.parse(argc, argv);
    return run(options, subcommand);
  } catch (const CLI::ParseError& e) {
    // Help and the version end the same way, with status 0.
    if (e.get_exit_code() == 0) return cli.exit(e);
    std::string why = e.what();
    std::replace(why.begin(), why.end(), '\n', ' ');
    return fail("quill-smt2", ": error: ", why);
  } catch (const std::exception& e) {
    return fail("quill-smt2", ": error: ", e.what());
  }
}
