// A life as data: a list of operations, and its text with one line for each.
//
//   # a comment
//   0 bvadd 3 5
//   0 copy 12 0 7
//   1 collect 20 3 5 5
//
// A line names the manager, 0 or 1, the operation and its operands. Operands are plain numbers.
// When the operation runs, it takes them modulo the number of choices, so that every subsequence of
// a trace is a trace. `within` says what happens within the next operation: its first operand says
// whose delegates are asked, one bit for each manager, and the other operands say how the callbacks
// react.

#ifndef TESTS_LIFE_TRACE_H
#define TESTS_LIFE_TRACE_H

#include <cstddef>
#include <istream>
#include <string>
#include <vector>

namespace quill::life {

struct Operation {
  size_t manager;
  std::string name;
  std::vector<size_t> operands;

  // 0 for an operand that the line lacks.
  size_t operand(size_t i) const { return i < operands.size() ? operands[i] : 0; }
  std::string to_str() const;
};

using Trace = std::vector<Operation>;

// A trace of so many rounds. A round mostly builds terms; now and then it substitutes, copies,
// walks, asks for something again or collects, in many cases with calls from delegates, overridden
// functions and callbacks.
Trace random_trace(unsigned seed, size_t rounds);

// Throws std::runtime_error for a line that is no operation.
Trace read_trace(std::istream& in);
std::string to_str(const Trace& trace);

}  // namespace quill::life

#endif
