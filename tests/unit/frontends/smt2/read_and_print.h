// Helpers of the front end's tests: from a script to its printed form or its error.

#ifndef TESTS_UNIT_FRONTENDS_SMT2_READ_AND_PRINT_H
#define TESTS_UNIT_FRONTENDS_SMT2_READ_AND_PRINT_H

#include <sstream>
#include <string>

#include "quill/frontends/smt2/script_logic.h"
#include "quill/frontends/smt2/smt2.h"

namespace quill::smt2 {

inline Script read_text(const std::string& text, TermManager& manager) {
  std::istringstream input(text);
  return read(input, manager);
}

// The script as it is written back, with a manager of its own.
inline std::string printed(const std::string& text) {
  TermManager manager;
  const Script script = read_text(text, manager);
  std::ostringstream output;
  write(output, manager, script);
  return output.str();
}

// What ParseError says about the script; empty if it is read without one.
inline std::string error_of(const std::string& text) {
  TermManager manager;
  try {
    read_text(text, manager);
  } catch (const ParseError& error) {
    return error.what();
  }
  return "";
}

// The line of the last assertion in the printed script, without the command around its term.
inline std::string asserted(const std::string& text) {
  const std::string output = printed(text);
  const std::string head = "(assert ";
  const size_t start = output.rfind(head);
  if (start == std::string::npos) return "";
  const size_t end = output.find('\n', start);
  return output.substr(start + head.size(), end - start - head.size() - 1);
}

// The logic that is written for the script.
inline std::string logic_of(const std::string& text) {
  TermManager manager;
  const Script script = read_text(text, manager);
  return written_logics(manager, script).back().name();
}

inline std::string repeated(const std::string& piece, size_t times) {
  std::string result;
  result.reserve(piece.size() * times);
  for (size_t i = 0; i < times; ++i) result += piece;
  return result;
}

}  // namespace quill::smt2

#endif
