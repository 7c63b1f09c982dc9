// The supported operators of the theories, each with the function that builds its terms.
//
// quill/smtlib/theory_names.h says which theory has a name, supported or not.

#ifndef QUILL_FRONTENDS_SMT2_OPERATORS_H
#define QUILL_FRONTENDS_SMT2_OPERATORS_H

#include <span>

#include "quill/frontends/smt2/application.h"
#include "quill/frontends/smt2/value.h"

namespace quill::smt2 {

// All operators, each once, in ascending order of names.
std::span<const Operator> operators();

// Checks the numbers of indices and arguments, then builds the term. Throws ParseError.
Value apply_operator(TermBuilder& builder, const Application& application);

}  // namespace quill::smt2

#endif
