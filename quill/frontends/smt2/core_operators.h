// Builders of the core theory's operators; see operators.h for how they are called.
//
// Their expansions into operators of the manager are in quill/derived/derived.h, except where sorts
// decide: = and distinct are built from TermBuilder::equal.

#ifndef QUILL_FRONTENDS_SMT2_CORE_OPERATORS_H
#define QUILL_FRONTENDS_SMT2_CORE_OPERATORS_H

#include "quill/frontends/smt2/application.h"
#include "quill/frontends/smt2/term_builder.h"

namespace quill::smt2 {

Value build_true(TermBuilder& b, const Application& a);
Value build_false(TermBuilder& b, const Application& a);
Value build_not(TermBuilder& b, const Application& a);
Value build_and(TermBuilder& b, const Application& a);
Value build_or(TermBuilder& b, const Application& a);
Value build_xor(TermBuilder& b, const Application& a);
Value build_implies(TermBuilder& b, const Application& a);
Value build_equal(TermBuilder& b, const Application& a);
Value build_distinct(TermBuilder& b, const Application& a);
Value build_ite(TermBuilder& b, const Application& a);

}  // namespace quill::smt2

#endif
