// Reads mutated scripts, in this process, and writes, measures, copies, changes and collects those
// that are well-formed. Nothing may crash, take more than ten seconds of processor time, or let the
// process grow beyond one GiB; every refusal must be one line.
//
//   mutate_scripts [--first N] [--count N] [--folder FOLDER] [--round-trip yes] [--show N]
//
// The default of --count is two thousand. The files of the folder are seeds, too. With
// --round-trip, each written script must also be readable, and be written again with the same
// bytes. --show writes one text instead. If the process is aborted, by a fault or by the clock, it
// writes the number of the current text to standard error.

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "quill/frontends/smt2/smt2.h"
#include "quill/utils/exception.h"
#include "tests/mutations/mutator.h"
#include "tests/mutations/seeds.h"
#include "tests/random/random_script.h"

namespace quill::smt2 {
namespace {

constexpr double seconds_allowed = 10;
constexpr long kibibytes_allowed = 1 << 20;

// The limits on terms that are larger than their text, a hundredth of the default limits: the terms
// are used a dozen times here, by builds that check everything.
ReadOptions limits() {
  ReadOptions options;
  options.max_pairs /= 100;
  options.max_bits /= 100;
  return options;
}

uint64_t current = 0;  // the number of the text at hand

// The kind of the signal says what has failed; nothing here allocates.
void tell_current(int signal) {
  char text[] = "\ntext                     \n";
  char* digit = text + sizeof(text) - 3;
  uint64_t number = current;
  do {
    *digit-- = static_cast<char>('0' + number % 10);
    number /= 10;
  } while (number != 0);
  [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, text, sizeof(text) - 1);
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

struct Outcome {
  bool read = false;
  std::string fault;  // empty if all was well
};

std::string written(TermManager& manager, const Script& script, Configuration::Dialect dialect) {
  std::ostringstream output;
  write(output, manager, script, dialect);
  return output.str();
}

// Maps every constant to another one of its type, or to a value that the standard leaves open.
void substitute_some(TermManager& manager, Script& script) {
  TermManager::TermMap images;
  const Term_* latest = nullptr;
  for (const Command& command : script.commands) {
    const Symbol* symbol = command.symbol;
    if (symbol == nullptr || symbol->arity != 0) continue;
    if (manager.get_signature()->get_symbol(symbol->name) != symbol) continue;
    const Term_* constant = manager.make_constant(symbol);
    if (symbol->type == manager.get_int_type()) {
      images[constant] = read_term("(div 7 0)", manager, script);
    } else if (latest != nullptr && latest->symbol->type == symbol->type) {
      images[constant] = latest;
    }
    latest = constant;
  }
  substitute(manager, script, images);
}

std::string use(const std::string& text, bool round_trip, Outcome& outcome) {
  TermManager manager;
  std::istringstream input(text);
  Script script = read(input, manager, limits());
  outcome.read = true;
  const std::string standard = written(manager, script, Configuration::Dialect::Standard);
  written(manager, script, Configuration::Dialect::Extensions);
  std::ostringstream stats;
  stats << compute_stats(manager, script);
  {
    TermManager other;
    const Script copied = copy(manager, script, other);
    if (written(other, copied, Configuration::Dialect::Standard) != standard) {
      return "a copy is written otherwise";
    }
  }
  if (round_trip) {
    TermManager other;
    std::istringstream again(standard);
    ReadOptions unlimited;
    unlimited.max_pairs = unlimited.max_bits = ~uint64_t{0};
    const Script reread = read(again, other, unlimited);
    if (written(other, reread, Configuration::Dialect::Standard) != standard) {
      return "what is written is written otherwise when it is read";
    }
  }
  collect(manager, script);
  substitute_some(manager, script);
  written(manager, script, Configuration::Dialect::Standard);
  collect_to_assertions(manager, script);
  return "";
}

Outcome try_text(const std::string& text, bool round_trip) {
  Outcome outcome;
  try {
    outcome.fault = use(text, round_trip, outcome);
  } catch (const ParseError& error) {
    if (outcome.read) outcome.fault = std::string("what is written is refused: ") + error.what();
    if (std::strchr(error.what(), '\n') != nullptr) outcome.fault = "a message of several lines";
  } catch (const Exception& refusal) {
    if (!outcome.read) outcome.fault = std::string("refused otherwise: ") + refusal.what();
    if (std::strchr(refusal.what(), '\n') != nullptr) outcome.fault = "a message of several lines";
  } catch (const std::exception& error) {
    outcome.fault = std::string("fails: ") + error.what();
  }
  return outcome;
}

std::vector<std::string> all_seeds(const std::string& folder) {
  std::vector<std::string> seeds = seed_scripts();
  for (uint32_t seed = 0; seed < 40; ++seed) {
    TermManager manager;
    const RandomScript random(manager, seed);
    seeds.push_back(written(manager, random.script, Configuration::Dialect::Extensions));
  }
  std::vector<std::filesystem::path> files;
  if (!folder.empty()) {
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      if (entry.path().extension() == ".smt2") files.push_back(entry.path());
    }
  }
  std::sort(files.begin(), files.end());
  for (const auto& path : files) {
    std::ifstream file(path, std::ios::binary);
    seeds.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }
  return seeds;
}

int run(uint64_t first, uint64_t count, const std::string& folder, bool round_trip) {
  for (const int signal : {SIGALRM, SIGABRT, SIGSEGV}) std::signal(signal, tell_current);
  const std::vector<std::string> seeds = all_seeds(folder);
  uint64_t num_read = 0;
  uint64_t num_faults = 0;
  double slowest = 0;
  uint64_t slowest_number = 0;
  for (current = first; current - first != count; ++current) {
    const std::string text = Mutator(seeds, current).make();
    alarm(600);
    const std::clock_t start = std::clock();
    Outcome outcome = try_text(text, round_trip);
    const double elapsed = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    alarm(0);
    if (elapsed > slowest) {
      slowest = elapsed;
      slowest_number = current;
    }
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    if (usage.ru_maxrss > kibibytes_allowed) outcome.fault = "takes more than one GiB";
    if (elapsed > seconds_allowed) {
      outcome.fault = "takes " + std::to_string(elapsed) + " seconds";
    }
    num_read += outcome.read;
    if (outcome.fault.empty()) continue;
    ++num_faults;
    std::cout << "text " << current << ": " << outcome.fault << std::endl;
    if (usage.ru_maxrss > kibibytes_allowed) break;
  }
  std::cout << current - first << " texts, " << num_read << " of them well-formed, " << num_faults
            << " faults; slowest: text " << slowest_number << " in " << slowest << " s"
            << std::endl;
  return num_faults == 0 ? 0 : 1;
}

}  // namespace
}  // namespace quill::smt2

int main(int argc, char** argv) {
  uint64_t first = 0;
  uint64_t count = 2000;
  std::string folder;
  bool round_trip = false;
  const char* show = nullptr;
  for (int i = 1; i + 1 < argc; i += 2) {
    const std::string option = argv[i];
    if (option == "--first") first = std::strtoull(argv[i + 1], nullptr, 10);
    if (option == "--count") count = std::strtoull(argv[i + 1], nullptr, 10);
    if (option == "--folder") folder = argv[i + 1];
    if (option == "--round-trip") round_trip = true;
    if (option == "--show") show = argv[i + 1];
  }
  if (show == nullptr) return quill::smt2::run(first, count, folder, round_trip);
  const std::vector<std::string> seeds = quill::smt2::all_seeds(folder);
  std::cout << quill::smt2::Mutator(seeds, std::strtoull(show, nullptr, 10)).make();
  return 0;
}
