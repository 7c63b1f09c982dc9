// Builders of the operators of Ints, Reals and Reals_Ints; see operators.h for how they are called.
//
//   a < b            not (b <= a)             a - b     a + (-1) * b
//   a > b            not (a <= b)             - a       (-1) * a; of a numeral, a numeral
//   a >= b           b <= a                   a / c     (1/c) * a; of numerals, a numeral
//   (to_real i)      i itself, as a Real      (is_int x)  x = floor(x)
//   (to_int x)       floor(x)
//
// Chains such as a < b < c are conjunctions; sums and products nest to the left. The expansions of
// div, mod, abs, divisible, and of / by a constant are in quill/derived/derived.h. Divisors must be
// constants; division by zero is a function, see undefined_functions.h. In linear logics a constant
// factor becomes a numeral if readers would otherwise take the product for a product of terms: they
// accept (* 2 3 i) as linear, but neither (* (+ 1 1) i) nor (* i (* 2 3)).
//
// In logics of floating-point numbers without arithmetic, - and / only spell constants.

#ifndef QUILL_FRONTENDS_SMT2_ARITHMETIC_OPERATORS_H
#define QUILL_FRONTENDS_SMT2_ARITHMETIC_OPERATORS_H

#include "quill/frontends/smt2/application.h"
#include "quill/frontends/smt2/term_builder.h"

namespace quill::smt2 {

Value build_plus(TermBuilder& b, const Application& a);
Value build_minus(TermBuilder& b, const Application& a);
Value build_times(TermBuilder& b, const Application& a);
Value build_divide(TermBuilder& b, const Application& a);
Value build_div(TermBuilder& b, const Application& a);
Value build_mod(TermBuilder& b, const Application& a);
Value build_abs(TermBuilder& b, const Application& a);
Value build_divisible(TermBuilder& b, const Application& a);
Value build_leq(TermBuilder& b, const Application& a);
Value build_lt(TermBuilder& b, const Application& a);
Value build_geq(TermBuilder& b, const Application& a);
Value build_gt(TermBuilder& b, const Application& a);
Value build_to_real(TermBuilder& b, const Application& a);
Value build_to_int(TermBuilder& b, const Application& a);
Value build_is_int(TermBuilder& b, const Application& a);

}  // namespace quill::smt2

#endif
