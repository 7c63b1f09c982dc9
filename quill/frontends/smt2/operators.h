// The operators of the theories that are supported, each with the function that builds its terms.
//
// Which theory has a name, supported or not, stands in quill/smtlib/theory_names.h.

#ifndef QUILL_FRONTENDS_SMT2_OPERATORS_H
#define QUILL_FRONTENDS_SMT2_OPERATORS_H

#include <span>

#include "quill/frontends/smt2/application.h"
#include "quill/frontends/smt2/value.h"

namespace quill::smt2 {

// In ascending order of names, each once.
std::span<const Operator> operators();

// Checks the numbers of indices and arguments, then builds. Throws ParseError.
Value apply_operator(TermBuilder& builder, const Application& application);

}  // namespace quill::smt2

#endif
