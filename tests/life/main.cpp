// Random lives of term managers. A life runs one trace, a list of operations.
//
//   life [--rounds N] [--seed S] [--write FILE]   runs N rounds, a hundred to a life; the traces
//                                                 come from the seeds S, S+1 and so on
//   life --seconds N [--seed S] [--write FILE]    runs for N seconds, and reports the number of
//                                                 lives, operations and calls
//   life --replay FILE...                         runs stored traces
//
// A failing trace is shrunk, printed, and written to FILE, by default life-SEED.trace. Every life
// runs in a separate process, so that a crash is a failure like any other.

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <exception>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/life/foresight.h"
#include "tests/life/life.h"
#include "tests/life/pattern.h"
#include "tests/life/shrink.h"
#include "tests/life/trace.h"
#include "tests/life/trial.h"

namespace quill::life {
namespace {

constexpr size_t rounds_of_a_life = 100;

struct Report {
  std::string complaint;
  size_t calls = 0;
};

Report live_apart(const Trace& trace, bool quiet) {
  const std::string text = try_apart(
      [&] {
        Summary summary;
        const std::string complaint = live(trace, &summary);
        return complaint.empty() ? std::to_string(summary.calls) : complaint;
      },
      quiet);
  if (text.find_first_not_of("0123456789") != std::string::npos) return {text, 0};
  return {"", std::stoul(text)};
}

void report_failure(unsigned seed, const Trace& trace, std::string path,
                    const std::string& complaint) {
  std::cerr << "seed " << seed << ": " << complaint << "\nshrinking " << trace.size()
            << " operations\n";
  const Trace shortest = shrink(trace, [](const Trace& shorter) {
    return !live_apart(shorter, /*quiet=*/true).complaint.empty();
  });
  if (path.empty()) path = "life-" + std::to_string(seed) + ".trace";
  std::ofstream out(path);
  out << "# seed " << seed << '\n' << to_str(shortest);
  if (!out.flush()) throw std::runtime_error("can't write " + path);
  std::cerr << shortest.size() << " operations in " << path << ": "
            << live_apart(shortest, /*quiet=*/true).complaint << '\n'
            << to_str(shortest);
}

// Whether the life of this seed went well.
bool live_random(unsigned seed, size_t rounds, const std::string& path, size_t& operations,
                 size_t& calls) {
  const Trace trace = random_trace(seed, rounds);
  const Report report = live_apart(trace, /*quiet=*/false);
  if (!report.complaint.empty()) report_failure(seed, trace, path, report.complaint);
  operations += trace.size();
  calls += report.calls;
  return report.complaint.empty();
}

bool live_random_rounds(unsigned seed, size_t rounds, const std::string& path) {
  size_t operations = 0;
  size_t calls = 0;
  for (; rounds > 0; ++seed) {
    const size_t now = std::min(rounds, rounds_of_a_life);
    if (!live_random(seed, now, path, operations, calls)) return false;
    rounds -= now;
  }
  return true;
}

bool live_for(std::chrono::seconds time, unsigned seed, const std::string& path) {
  const auto end = std::chrono::steady_clock::now() + time;
  size_t lives = 0;
  size_t operations = 0;
  size_t calls = 0;
  bool well = true;
  while (well && std::chrono::steady_clock::now() < end) {
    well = live_random(seed++, rounds_of_a_life, path, operations, calls);
    ++lives;
  }
  std::cout << lives << " lives, " << operations << " operations, " << calls << " calls\n";
  return well;
}

// One long life, which must reach every kind of operation and reaction; otherwise random lives
// would show less than they seem to.
bool live_through_every_operation(unsigned seed, const std::string& path) {
  const Trace trace = random_trace(seed, 10 * rounds_of_a_life);
  std::string complaint = live_apart(trace, /*quiet=*/false).complaint;
  if (!complaint.empty()) {
    report_failure(seed, trace, path, complaint);
    return false;
  }
  Summary summary;
  live(trace, &summary);
  Texts names = operation_names();
  for (const std::string& kind : kinds_of_reactions()) names.push_back(kind);
  for (const std::string& name : names) {
    if (summary.performed[name] == 0) complaint += "never performed: " + name + '\n';
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
    const std::string complaint = live_apart(trace, /*quiet=*/false).complaint;
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
  long seconds = 0;
  unsigned seed = 1;
  std::string path;
  for (size_t i = 0; i < arguments.size(); i += 2) {
    if (i + 1 == arguments.size()) throw std::runtime_error("no value for " + arguments[i]);
    const std::string& value = arguments[i + 1];
    if (arguments[i] == "--rounds") {
      rounds = std::stoul(value);
    } else if (arguments[i] == "--seconds") {
      seconds = std::stol(value);
    } else if (arguments[i] == "--seed") {
      seed = static_cast<unsigned>(std::stoul(value));
    } else if (arguments[i] == "--write") {
      path = value;
    } else {
      throw std::runtime_error("unknown option " + arguments[i]);
    }
  }
  if (seconds > 0) return live_for(std::chrono::seconds(seconds), seed, path) ? 0 : 1;
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
