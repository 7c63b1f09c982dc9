// Builders of the operators of theory FixedSizeBitVectors and of logic QF_BV; see operators.h for
// how they are called. They include reductions, overflow predicates and conversions between
// bit-vectors and integers, which SMT-LIB 2.6 does not have but readers do.
//
// If a builder of the manager, or an expansion of quill/derived/derived_bv.h, makes the term, the
// row of the operator names it: build_bv_binary<&TermManager::make_bv_and>. Widths are checked
// first, so that messages name the operator; all numbers of bits stay below 2^64.

#ifndef QUILL_FRONTENDS_SMT2_BIT_VECTOR_OPERATORS_H
#define QUILL_FRONTENDS_SMT2_BIT_VECTOR_OPERATORS_H

#include <functional>

#include "quill/frontends/smt2/application.h"
#include "quill/frontends/smt2/term_builder.h"

namespace quill::smt2 {

// The arguments must be bit-vectors of one width.
void expect_one_width(const TermBuilder& b, const Application& a);
Value value_of_bits(const Term_* term);

template <auto make>
Value build_bv_unary(TermBuilder& b, const Application& a) {
  expect_one_width(b, a);
  return value_of_bits(std::invoke(make, b.manager, a.args[0].term));
}

// Builds from two arguments, or from more, grouped from the left.
template <auto make>
Value build_bv_binary(TermBuilder& b, const Application& a) {
  expect_one_width(b, a);
  const Term_* result = a.args[0].term;
  for (const Value& next : a.args.subspan(1)) {
    result = std::invoke(make, b.manager, result, next.term);
  }
  return value_of_bits(result);
}

Value build_bv_concat(TermBuilder& b, const Application& a);
Value build_bv_extract(TermBuilder& b, const Application& a);
Value build_bv_repeat(TermBuilder& b, const Application& a);
Value build_bv_zero_extend(TermBuilder& b, const Application& a);
Value build_bv_sign_extend(TermBuilder& b, const Application& a);
Value build_bv_rotate_left(TermBuilder& b, const Application& a);
Value build_bv_rotate_right(TermBuilder& b, const Application& a);
Value build_bv_umulo(TermBuilder& b, const Application& a);
Value build_bv_smulo(TermBuilder& b, const Application& a);
Value build_int_to_bv(TermBuilder& b, const Application& a);
Value build_sbv_to_int(TermBuilder& b, const Application& a);

}  // namespace quill::smt2

#endif
