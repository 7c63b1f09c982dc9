#include "apps/quill_smt2/commands.h"

#include <sys/resource.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <system_error>

#include "frontends/smt2/smt2.h"

namespace quill::smt2::app {

namespace {

std::string describe_errno(int code) { return std::generic_category().message(code); }

Script read_file(const std::string& file, TermManager& manager) {
  if (file == "-") return read(std::cin, manager);
  std::error_code ignored;  // what cannot be looked at cannot be opened either
  if (std::filesystem::is_directory(file, ignored)) throw Exception("is a directory");
  errno = 0;
  std::ifstream input(file, std::ios::binary);
  if (!input) {
    throw Exception("cannot be opened" + (errno == 0 ? "" : ": " + describe_errno(errno)));
  }
  return read(input, manager);
}

// The largest amount of memory that the process had so far.
double peak_mebibytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

}  // namespace

std::string print_script(const std::string& file) {
  TermManager manager;
  const Script script = read_file(file, manager);
  std::ostringstream text;
  write(text, manager, script);
  return std::move(text).str();
}

std::string script_statistics(const std::string& file, bool with_timing) {
  const auto start = std::chrono::steady_clock::now();
  TermManager manager;
  const Script script = read_file(file, manager);
  std::ostringstream text;
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
