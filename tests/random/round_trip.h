// Whether a script is written so that it reads back to the same terms, in the same manager.

#ifndef TESTS_RANDOM_ROUND_TRIP_H
#define TESTS_RANDOM_ROUND_TRIP_H

#include <sstream>
#include <string>
#include <vector>

#include "quill/frontends/smt2/smt2.h"
#include "tests/random/random_script.h"

namespace quill::smt2 {

// Writes the script into text and reads it back; says what differs, or nothing.
inline std::string round_trip_fault(TermManager& manager, const Script& script, std::string& text) {
  std::ostringstream output;
  write(output, manager, script);
  text = output.str();
  Script again;
  try {
    std::istringstream input(text);
    again = read(input, manager);
  } catch (const ParseError& error) {
    return std::string("is not read: ") + error.what();
  }
  if (again.commands.size() != script.commands.size()) return "has another number of commands";
  for (size_t i = 0; i < script.commands.size(); ++i) {
    const Command& command = script.commands[i];
    const Command& copy = again.commands[i];
    const std::string where = "command " + std::to_string(i + 1) + " ";
    if (copy.kind != command.kind) return where + "is of another kind";
    if (copy.symbol != command.symbol) return where + "declares another symbol";
    if (copy.sort != command.sort) return where + "declares another sort";
    if (copy.terms.size() != command.terms.size()) return where + "has more or fewer terms";
    for (size_t k = 0; k < command.terms.size(); ++k) {
      if (copy.terms[k].value.term != command.terms[k].value.term)
        return where + "has another term";
    }
    if (copy.named_terms.size() != command.named_terms.size()) return where + "has other names";
    for (const NamedTerm& named : command.named_terms) {
      bool found = false;
      for (const NamedTerm& other : copy.named_terms) {
        found = found || (other.stored_name == named.stored_name && other.term == named.term);
      }
      if (!found) return where + "has another name";
    }
  }
  std::ostringstream second;
  write(second, manager, again);
  return second.str() == text ? "" : "prints differently the second time";
}

}  // namespace quill::smt2

#endif
