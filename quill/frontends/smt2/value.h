// A term as SMT-LIB sees it: with its sort.
//
// The sort may be Real although the manager's type of the term is Int: the manager has one numeral
// 3, and an Int term counts as a Real term. SMT-LIB distinguishes 3 from 3.0 and i from (to_real
// i), and so must the operators, because the manager has separate operators for Int and Real. While
// a script is read, sorts also distinguish arrays of Bool from the arrays of bit-vectors by which
// the manager represents them.

#ifndef QUILL_FRONTENDS_SMT2_VALUE_H
#define QUILL_FRONTENDS_SMT2_VALUE_H

#include <cstdint>
#include <string>
#include <vector>

#include "quill/terms/data_type.h"
#include "quill/terms/term.h"

namespace quill::smt2 {

struct Value {
  const Term_* term = nullptr;
  const DataType* sort = nullptr;
};

// A term to which a script gives a name by (! term :named name).
struct NamedTerm {
  std::string name;         // as in the script, without bars
  std::string stored_name;  // in the manager's spelling; no symbol in use has it
  const Term_* term = nullptr;
  const DataType* sort = nullptr;  // as a type of the manager; null: the type of the term
  // Whether the name is a label of the formula when it names the whole of an assertion. In (assert
  // (f (! p :named n))) the name of the argument is not a label if the definition of f is just its
  // parameter.
  bool is_label = true;
};

// How much larger than its text a term is: see expansion_budget.h.
struct Expansion {
  uint64_t pairs = 0;
  uint64_t bits = 0;
};

// A function defined with parameters. The body is a term over placeholders, constants without a
// name; each use replaces them by its arguments.
struct Macro {
  std::string name;  // as in the script, without bars
  std::vector<const Term_*> placeholders;
  std::vector<const DataType*> sorts;
  Value body;
  Expansion expansion;  // of the body; each use counts it again
};

}  // namespace quill::smt2

#endif
