// A term as SMT-LIB sees it: with its sort.
//
// The sort may be Real where the manager's type of the term is Int: the manager has one numeral 3,
// and an Int term is one of the Real terms. SMT-LIB tells 3 from 3.0 and i from (to_real i), and
// the operators have to, because the manager has an operator for each. While a script is read,
// sorts also tell arrays of Bool from those of bit-vectors that the manager has in their place.

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

// A term that a script gives a name by (! term :named name).
struct NamedTerm {
  std::string name;         // as in the script, without bars
  std::string stored_name;  // in the manager's spelling; no symbol in use has it
  const Term_* term = nullptr;
  const DataType* sort = nullptr;  // in the manager's types; null: the type of the term
  // Whether it is a label of the formula where it names the whole of an asserted one. A name of the
  // argument in (assert (f (! p :named n))) is none when f is defined as its parameter.
  bool is_label = true;
};

// What a term has more than its text: see expansion_budget.h.
struct Expansion {
  uint64_t pairs = 0;
  uint64_t bits = 0;
};

// A function defined with parameters. The body is a term over placeholders, constants that have no
// name; a use replaces them by its arguments.
struct Macro {
  std::string name;  // as in the script, without bars
  std::vector<const Term_*> placeholders;
  std::vector<const DataType*> sorts;
  Value body;
  Expansion expansion;  // of the body, which each use has again
};

}  // namespace quill::smt2

#endif
