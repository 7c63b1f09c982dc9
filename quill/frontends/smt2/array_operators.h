// Builders of the operators of theory ArraysEx, with constant arrays; see operators.h for how they
// are called.
//
//   (select a i)                         a read
//   (store a i v)                        a write
//   ((as const (Array I E)) v)           the array of the sort that holds v everywhere
//
// Bool indices and elements pass through TermBuilder::to_held and from_held.

#ifndef QUILL_FRONTENDS_SMT2_ARRAY_OPERATORS_H
#define QUILL_FRONTENDS_SMT2_ARRAY_OPERATORS_H

#include "quill/frontends/smt2/application.h"
#include "quill/frontends/smt2/term_builder.h"

namespace quill::smt2 {

Value build_select(TermBuilder& b, const Application& a);
Value build_store(TermBuilder& b, const Application& a);
Value build_const_array(TermBuilder& b, const Application& a);

}  // namespace quill::smt2

#endif
