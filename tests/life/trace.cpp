#include "tests/life/trace.h"

#include <random>
#include <sstream>
#include <stdexcept>

#include "tests/life/life.h"
#include "tests/life/operators.h"

namespace quill::life {

namespace {

constexpr size_t largest_operand = 1000;
constexpr size_t most_reactions = 1000000;
constexpr size_t longest_plan = 12;

class Generator {
 public:
  explicit Generator(unsigned seed) : random(seed) {}

  void round(Trace& trace) {
    for (size_t builds = 3 + below(6); builds > 0; --builds) {
      if (below(3) == 0) plan(trace);
      build(trace);
    }
    if (below(3) == 0) add_perhaps_with_plan(trace, "substitute", 6);
    if (below(2) == 0) add_perhaps_with_plan(trace, "copy", 5);
    if (below(4) == 0) add_perhaps_with_plan(trace, "walk", 2);
    if (below(3) == 0) add_perhaps_with_plan(trace, "again", 1);
    if (below(4) == 0) collect(trace, below(30));
    if (below(30) == 0) collect(trace, 0);
  }

 private:
  size_t below(size_t n) { return random() % n; }

  void add(Trace& trace, const std::string& name, size_t operands) {
    Operation operation{below(3) == 0 ? size_t{1} : 0, name, {}};
    for (size_t i = 0; i < operands; ++i) operation.operands.push_back(below(largest_operand));
    trace.push_back(operation);
  }

  // What callbacks do within the next operation. Most let the caller go on.
  void plan(Trace& trace) {
    add(trace, "within", 1);
    for (size_t i = 1 + below(longest_plan); i > 0; --i) {
      trace.back().operands.push_back(below(3) == 0 ? below(most_reactions) : 0);
    }
  }

  void add_perhaps_with_plan(Trace& trace, const std::string& name, size_t operands) {
    if (below(2) == 0) plan(trace);
    add(trace, name, operands);
  }

  void build(Trace& trace) {
    if (below(20) == 0) return add(trace, "fresh", 1);
    const Operator& op = all_operators()[below(all_operators().size())];
    const size_t arity = op.operand_types().size();
    // Operators want operands, so that those without any are asked for more often.
    if (arity != 0 && below(3) == 0) return build(trace);
    add(trace, op.name, op.parameters.size() + arity);
  }

  void collect(Trace& trace, size_t percent) {
    add(trace, "collect", 4);
    trace.back().operands[0] = percent;
    for (size_t i = 2; i < 4; ++i) trace.back().operands[i] = percent == 0 ? 0 : below(10);
  }

  std::mt19937 random;
};

}  // namespace

std::string Operation::to_str() const {
  std::string text = std::to_string(manager) + " " + name;
  for (const size_t operand : operands) text += " " + std::to_string(operand);
  return text;
}

Trace random_trace(unsigned seed, size_t rounds) {
  Trace trace;
  Generator generator(seed);
  for (size_t i = 0; i < rounds; ++i) generator.round(trace);
  return trace;
}

Trace read_trace(std::istream& in) {
  Trace trace;
  for (std::string line; std::getline(in, line);) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream words(line);
    Operation operation;
    words >> operation.manager >> operation.name;
    for (size_t operand; words >> operand;) operation.operands.push_back(operand);
    if (!words.eof() || operation.manager > 1 || !is_operation(operation.name)) {
      throw std::runtime_error("not an operation: " + line);
    }
    trace.push_back(operation);
  }
  return trace;
}

std::string to_str(const Trace& trace) {
  std::string text;
  for (const Operation& operation : trace) text += operation.to_str() + "\n";
  return text;
}

}  // namespace quill::life
