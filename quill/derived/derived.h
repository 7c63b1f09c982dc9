// Operators that SMT-LIB 2.6 has and the term manager has no symbol for. Each is built from symbols
// that the manager has.
//
// Every function makes exactly the term that its comment shows, without simplification, and throws
// what the builders of the manager throw. Lists are folded from the left: (a, b, c) gives ((a op b)
// op c).

#ifndef QUILL_DERIVED_DERIVED_H
#define QUILL_DERIVED_DERIVED_H

#include <cstdint>
#include <initializer_list>

#include "quill/terms/data_type.h"
#include "quill/terms/symbol.h"
#include "quill/terms/term.h"
#include "quill/utils/qnumber.h"

namespace quill {

class TermManager;

// a => b is (not a) or b.
const Term_* make_implies(TermManager& m, const Term_* a, const Term_* b);

// a xor b is not (a iff b).
const Term_* make_xor(TermManager& m, const Term_* a, const Term_* b);

// iff for Bool, the equality of their type for all other types.
const Term_* make_equals(TermManager& m, const Term_* a, const Term_* b);

// The conjunction of not (a_i = a_j) for all i < j, in this order; true for fewer than two terms.
// Quadratic.
const Term_* make_distinct(TermManager& m, TermSpan terms);

// For Bool branches: ((not cond) or then_term) and (cond or else_term). For all others: the
// if-then-else of their type.
const Term_* make_ite(TermManager& m, const Term_* cond, const Term_* then_term,
                      const Term_* else_term);

// a >= b is b <= a;  a < b is not (b <= a);  a > b is not (a <= b).
const Term_* make_geq(TermManager& m, const Term_* a, const Term_* b);
const Term_* make_lt(TermManager& m, const Term_* a, const Term_* b);
const Term_* make_gt(TermManager& m, const Term_* a, const Term_* b);

// -a is (-1) * a;  a - b is a + ((-1) * b).
const Term_* make_minus(TermManager& m, const Term_* a);
const Term_* make_minus(TermManager& m, const Term_* a, const Term_* b);

// Whether a Real is an integer: a = floor(a), over Real.
const Term_* make_is_int(TermManager& m, const Term_* a);

// |a| is ite(0 <= a, a, (-1) * a), over the given type, Int or Real, or over the type of a.
const Term_* make_abs(TermManager& m, const Term_* a, const DataType* type);
const Term_* make_abs(TermManager& m, const Term_* a);

// The division operators of SMT-LIB. SMT-LIB does not define division by zero: it may be any
// function of the dividend, the same one throughout. For each operator, that function is a symbol:
//
//   quill!div_by_zero  (Int) Int        quill!mod_by_zero  (Int) Int
//   quill!divide_by_zero  (Real) Real
//
// make_zero_division_symbol() throws when a symbol of another type has the name.
enum class Division : uint8_t { Div, Mod, Divide };
const char* zero_division_name(Division op);
const DataType* zero_division_type(TermManager& m, Division op);
const Symbol* make_zero_division_symbol(TermManager& m, Division op);

// Division by a constant c. For div and mod, c must be an integer and a must be Int. For c = 0 the
// result is the function of the operator applied to a, otherwise:
//
//   a / c      (1/c) * a                        over Real
//   a div c    floor((1/c) * a)                 for c > 0; the product is over Real
//              (-1) * (a div -c)                for c < 0
//   a mod c    a + (-1) * (|c| * (a div |c|))
const Term_* make_divide(TermManager& m, const Term_* a, const QNumber& c);
const Term_* make_div(TermManager& m, const Term_* a, const QNumber& c);
const Term_* make_mod(TermManager& m, const Term_* a, const QNumber& c);

// Whether the positive integer n divides the Int a: a = n * (a div n).
const Term_* make_divisible(TermManager& m, const Term_* a, const QNumber& n);

// The binary builders over a list. A list of one term gives the term; the empty list gives true for
// `and`, false for `or`, 0 for `plus` and 1 for `times`.
const Term_* make_and(TermManager& m, TermSpan terms);
const Term_* make_or(TermManager& m, TermSpan terms);
const Term_* make_plus(TermManager& m, TermSpan terms);
const Term_* make_times(TermManager& m, TermSpan terms);

// The same for lists written in place: make_and(m, {a, b, c}).
inline const Term_* make_distinct(TermManager& m, std::initializer_list<const Term_*> terms) {
  return make_distinct(m, TermSpan(terms.begin(), terms.size()));
}
inline const Term_* make_and(TermManager& m, std::initializer_list<const Term_*> terms) {
  return make_and(m, TermSpan(terms.begin(), terms.size()));
}
inline const Term_* make_or(TermManager& m, std::initializer_list<const Term_*> terms) {
  return make_or(m, TermSpan(terms.begin(), terms.size()));
}
inline const Term_* make_plus(TermManager& m, std::initializer_list<const Term_*> terms) {
  return make_plus(m, TermSpan(terms.begin(), terms.size()));
}
inline const Term_* make_times(TermManager& m, std::initializer_list<const Term_*> terms) {
  return make_times(m, TermSpan(terms.begin(), terms.size()));
}

}  // namespace quill

#endif
