#include "apps/quill_smt2/commands.h"

#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <system_error>
#include <utility>

#include "apps/quill_smt2/progress.h"
#include "quill/frontends/smt2/smt2.h"
#include "quill/frontends/smt2/sort_text.h"
#include "quill/utils/text_stream.h"

namespace quill::smt2::app {

namespace {

std::string describe_errno(int code) { return std::generic_category().message(code); }

// Shows a progress line if standard error is a terminal. A size of 0 means that it is not known.
Script read_watched(std::istream& input, uint64_t size, TermManager& manager,
                    const ReadOptions& options) {
  if (isatty(STDERR_FILENO) == 0) return read(input, manager, options);
  ProgressBuffer progress(*input.rdbuf(), size, std::cerr);
  std::istream watched(&progress);
  return read(watched, manager, options);
}

Script read_file(const std::string& file, TermManager& manager, const ReadOptions& options) {
  if (file == "-") return read_watched(std::cin, 0, manager, options);
  std::error_code ignored;  // a file that cannot be examined cannot be opened either
  if (std::filesystem::is_directory(file, ignored)) throw Exception("is a directory");
  errno = 0;
  std::ifstream input(file, std::ios::binary);
  if (!input) {
    throw Exception("cannot be opened" + (errno == 0 ? "" : ": " + describe_errno(errno)));
  }
  std::error_code no_file;  // set for a pipe or a device, which has no size
  const uintmax_t size = std::filesystem::file_size(file, no_file);
  return read_watched(input, no_file ? 0 : size, manager, options);
}

// The largest amount of memory that the process had so far.
double peak_mebibytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

std::string written(TermManager& manager, const Script& script, Configuration::Dialect dialect) {
  TextStream text;
  write(text, manager, script, dialect);
  return std::move(text).str();
}

// The limits for a script that is to be written in the dialect.
ReadOptions options_for(uint64_t max_expansion, Configuration::Dialect dialect) {
  ReadOptions options;
  options.max_pairs = max_expansion;
  options.max_bits = max_expansion;
  options.expands_conversions = dialect == Configuration::Dialect::Standard;
  return options;
}

// The same for a script that is not written.
ReadOptions options_for(uint64_t max_expansion) {
  return options_for(max_expansion, Configuration::Dialect::Extensions);
}

// Where the name before the '=' of a setting ends; a name between bars may hold that sign.
size_t end_of_name(const std::string& setting) {
  const size_t start = !setting.empty() && setting[0] == '|' ? setting.find('|', 1) : 0;
  const size_t end = start == std::string::npos ? start : setting.find('=', start);
  if (end == std::string::npos) throw Exception("'" + setting + "' is not NAME=TERM");
  return end;
}

// The constant and the term of a setting, over the symbols that the script has left declared.
std::pair<const Term_*, const Term_*> read_setting(const std::string& setting, TermManager& manager,
                                                   const Script& script,
                                                   const ReadOptions& options) {
  const size_t end = end_of_name(setting);
  const std::string name = setting.substr(0, end);
  try {
    const Term_* constant = read_term(name, manager, script, options);
    const Term_* value = read_term(setting.substr(end + 1), manager, script, options);
    if (!manager.is_constant(constant->symbol)) {
      throw Exception("'" + setting + "' does not begin with the name of a constant");
    }
    const DataType* asked = constant->type();
    const DataType* given = value->type();
    if (!manager.is_subtype(given, asked)) {
      throw Exception("in '" + setting + "': '" + name + "' has sort " + sort_text(manager, asked) +
                      ", but the term has sort " + sort_text(manager, given));
    }
    return {constant, value};
  } catch (const ParseError& error) {
    throw Exception("in '" + setting + "': " + error.text());
  }
}

}  // namespace

std::string print_script(const std::string& file, uint64_t max_expansion,
                         Configuration::Dialect dialect) {
  TermManager manager;
  const Script script = read_file(file, manager, options_for(max_expansion, dialect));
  return written(manager, script, dialect);
}

std::string substitute_in_script(const std::string& file, const std::vector<std::string>& settings,
                                 uint64_t max_expansion, Configuration::Dialect dialect) {
  const ReadOptions options = options_for(max_expansion, dialect);
  TermManager manager;
  Script script = read_file(file, manager, options);
  TermManager::TermMap images;
  for (const std::string& setting : settings) {
    const auto [constant, value] = read_setting(setting, manager, script, options);
    if (!images.insert({constant, value})) {
      throw Exception("in '" + setting + "': the constant is set twice");
    }
  }
  substitute(manager, script, images);
  return written(manager, script, dialect);
}

std::string copy_script(const std::string& file, uint64_t max_expansion,
                        Configuration::Dialect dialect) {
  TermManager manager;
  const Script script = read_file(file, manager, options_for(max_expansion, dialect));
  TermManager other;
  const Script copied = copy(manager, script, other);
  return written(other, copied, dialect);
}

std::string collection_report(const std::string& file, uint64_t max_expansion) {
  TermManager manager;
  const Script script = read_file(file, manager, options_for(max_expansion));
  const size_t terms = manager.get_bank()->size();
  const size_t symbols = manager.get_signature()->size();
  const size_t types = manager.get_universe()->size();
  const size_t kept = collect_to_assertions(manager, script);
  const auto& freed = manager.get_last_collection();
  TextStream text;
  text << "assertions kept: " << kept << "\n"
       << "terms freed: " << freed.terms << " of " << terms << "\n"
       << "symbols freed: " << freed.symbols << " of " << symbols << "\n"
       << "types freed: " << freed.types << " of " << types << "\n"
       << "memory given back: " << freed.slab_bytes << " bytes of terms in " << freed.slabs
       << " slabs, " << freed.index_bytes << " bytes of their index\n";
  return std::move(text).str();
}

std::string collect_and_print(const std::string& file, uint64_t max_expansion,
                              Configuration::Dialect dialect) {
  TermManager manager;
  const Script script = read_file(file, manager, options_for(max_expansion, dialect));
  collect(manager, script);
  return written(manager, script, dialect);
}

std::string script_statistics(const std::string& file, uint64_t max_expansion, bool with_timing) {
  const auto start = std::chrono::steady_clock::now();
  TermManager manager;
  const Script script = read_file(file, manager, options_for(max_expansion));
  TextStream text;
  text << compute_stats(manager, script);
  if (with_timing) {
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    text << std::fixed << std::setprecision(3) << "time: " << elapsed.count() << " s, "
         << std::setprecision(1) << "memory: " << peak_mebibytes() << " MiB\n";
  }
  return std::move(text).str();
}

bool write_output(const std::string& text) {
  errno = 0;
  const bool written =
      std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
  if (written) return true;
  if (errno == EPIPE) return false;
  throw OutputError("cannot be written: " + describe_errno(errno));
}

}  // namespace quill::smt2::app
