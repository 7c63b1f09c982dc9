// The random life of term managers.
//
//   life [--rounds N] [--seed S] [--write FILE]   lives N rounds, a hundred to a life; the traces
//                                                 come from the seeds S, S+1 and so on
//   life --replay FILE...                         lives stored traces
//
// A failing trace is shrunk and written to FILE, by default life-SEED.trace. Every life has a
// process of its own, so that a crash is a failure like any other.

#include <algorithm>
#include <exception>
#include <fstream>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/life/life.h"
#include "tests/life/shrink.h"
#include "tests/life/trace.h"
#include "tests/life/trial.h"

namespace quill::life {
namespace {

constexpr size_t rounds_of_a_life = 100;

std::string live_apart(const Trace& trace, bool quiet) {
  return try_apart([&] { return live(trace); }, quiet);
}

void report_failure(unsigned seed, const Trace& trace, std::string path,
                    const std::string& complaint) {
  std::cerr << "seed " << seed << ": " << complaint << "\nshrinking " << trace.size()
            << " operations\n";
  const Trace shortest = shrink(
      trace, [](const Trace& shorter) { return !live_apart(shorter, /*quiet=*/true).empty(); });
  if (path.empty()) path = "life-" + std::to_string(seed) + ".trace";
  std::ofstream out(path);
  out << "# seed " << seed << '\n' << to_str(shortest);
  if (!out.flush()) throw std::runtime_error("can't write " + path);
  std::cerr << shortest.size() << " operations in " << path << ": "
            << live_apart(shortest, /*quiet=*/true) << '\n';
}

bool live_random_rounds(unsigned seed, size_t rounds, const std::string& path) {
  for (; rounds > 0; seed++) {
    const size_t now = std::min(rounds, rounds_of_a_life);
    const Trace trace = random_trace(seed, now);
    const std::string complaint = live_apart(trace, /*quiet=*/false);
    if (!complaint.empty()) {
      report_failure(seed, trace, path, complaint);
      return false;
    }
    rounds -= now;
  }
  return true;
}

// One long life, which must do everything that there is to do, or random lives would show less than
// they seem to.
bool live_through_every_operation(unsigned seed, const std::string& path) {
  const Trace trace = random_trace(seed, 10 * rounds_of_a_life);
  std::string complaint = live_apart(trace, /*quiet=*/false);
  if (!complaint.empty()) {
    report_failure(seed, trace, path, complaint);
    return false;
  }
  std::map<std::string, size_t> performed;
  live(trace, &performed);
  for (const std::string& name : operation_names()) {
    if (performed[name] == 0) complaint += "never performed: " + name + '\n';
  }
  std::cerr << complaint;
  return complaint.empty();
}

bool replay(const std::vector<std::string>& paths) {
  bool passed = true;
  for (const std::string& path : paths) {
    std::ifstream in(path);
    if (!in) throw std::runtime_error("can't read " + path);
    const Trace trace = read_trace(in);
    if (trace.empty()) throw std::runtime_error("no operation in " + path);
    const std::string complaint = live_apart(trace, /*quiet=*/false);
    if (complaint.empty()) continue;
    std::cerr << path << ": " << complaint << '\n';
    passed = false;
  }
  return passed;
}

int run(const std::vector<std::string>& arguments) {
  if (arguments.size() > 1 && arguments[0] == "--replay") {
    return replay({arguments.begin() + 1, arguments.end()}) ? 0 : 1;
  }
  size_t rounds = 1000;
  unsigned seed = 1;
  std::string path;
  for (size_t i = 0; i < arguments.size(); i += 2) {
    if (i + 1 == arguments.size()) throw std::runtime_error("no value for " + arguments[i]);
    const std::string& value = arguments[i + 1];
    if (arguments[i] == "--rounds") {
      rounds = std::stoul(value);
    } else if (arguments[i] == "--seed") {
      seed = static_cast<unsigned>(std::stoul(value));
    } else if (arguments[i] == "--write") {
      path = value;
    } else {
      throw std::runtime_error("unknown option " + arguments[i]);
    }
  }
  if (!live_random_rounds(seed, rounds, path)) return 1;
  return live_through_every_operation(seed, path) ? 0 : 1;
}

}  // namespace
}  // namespace quill::life

int main(int argc, char** argv) {
  try {
    return quill::life::run({argv + 1, argv + argc});
  } catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
  }
}
