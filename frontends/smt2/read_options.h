// What a caller may choose about reading a script.

#ifndef FRONTENDS_SMT2_READ_OPTIONS_H
#define FRONTENDS_SMT2_READ_OPTIONS_H

#include <string>

namespace quill::smt2 {

struct ReadOptions {
  // The logic in force until the script sets one: it decides which names belong to theories, and
  // whether 3 is an Int. Empty: all theories.
  std::string default_logic;
};

}  // namespace quill::smt2

#endif
