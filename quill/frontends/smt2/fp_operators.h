// Builders of the operators of theory FloatingPoint, except its conversions, which are in
// fp_conversions.h; see operators.h for how they are called.
//
//   (fp s e m)    a numeral for three literals, otherwise from the concatenation of the bits
//   a >= b        b <= a                   a > b         b < a
//
// Chains such as (fp.lt a b c) are conjunctions. If a builder of the manager, or an expansion of
// quill/derived/derived_fp.h, makes the term, the row of the operator names it:
// build_fp_of_one<&TermManager::make_fp_abs>. The manager has four rounding modes; RNA is not among
// them.

#ifndef QUILL_FRONTENDS_SMT2_FP_OPERATORS_H
#define QUILL_FRONTENDS_SMT2_FP_OPERATORS_H

#include <functional>
#include <type_traits>
#include <vector>

#include "quill/derived/derived.h"
#include "quill/frontends/smt2/application.h"
#include "quill/frontends/smt2/term_builder.h"
#include "quill/utils/ieee_float.h"

namespace quill::smt2 {

// ----- checks, which throw ParseError -----------------------------------------------------------

void expect_rounding_mode(const TermBuilder& b, const Application& a);

// The format of an argument, which must be a floating-point number.
IEEEFloat::format expect_float(const TermBuilder& b, const Application& a, size_t index);

// The arguments from `first` on must be floating-point numbers of one format.
void expect_floats(const TermBuilder& b, const Application& a, size_t first);

// The format that the first two indices name, as the manager counts; the manager must have it.
IEEEFloat::format format_from_indices(TermBuilder& b, const Application& a);

// The same for a format of which `count` constants will be made: they must not take more time and
// memory than a short input should be able to demand.
void expect_spellable(TermBuilder& b, const Application& a, IEEEFloat::format format,
                      uint64_t count = 1);

// A value whose sort is the type of its term.
Value value_of_float(const Term_* term);

// ----- builders ---------------------------------------------------------------------------------

// The rounding modes, such as RNE.
template <auto make>
Value build_rounding(TermBuilder& b, const Application&) {
  return value_of_float((b.manager.*make)());
}

// The values that have a name, such as (_ +oo e s).
template <auto make>
Value build_fp_special(TermBuilder& b, const Application& a) {
  const auto [e, m] = format_from_indices(b, a);
  expect_spellable(b, a, {e, m});
  return value_of_float(std::invoke(make, b.manager, e, m));
}

Value build_fp(TermBuilder& b, const Application& a);

template <auto make>
Value build_fp_of_one(TermBuilder& b, const Application& a) {
  expect_float(b, a, 0);
  return value_of_float((b.manager.*make)(a.args[0].term));
}

template <auto make>
Value build_fp_of_two(TermBuilder& b, const Application& a) {
  expect_floats(b, a, 0);
  return value_of_float((b.manager.*make)(a.args[0].term, a.args[1].term));
}

// Operators on a rounding mode and one or two operands.
template <auto make>
Value build_fp_rounded(TermBuilder& b, const Application& a) {
  expect_rounding_mode(b, a);
  expect_floats(b, a, 1);
  const Term_* mode = a.args[0].term;
  const Term_* operand = a.args[1].term;
  if constexpr (std::is_invocable_v<decltype(make), TermManager&, const Term_*, const Term_*>) {
    return value_of_float((b.manager.*make)(mode, operand));
  } else {
    return value_of_float((b.manager.*make)(mode, operand, a.args[2].term));
  }
}

// The conjunction of a relation between neighbouring arguments.
template <auto make>
Value build_fp_chain(TermBuilder& b, const Application& a) {
  expect_floats(b, a, 0);
  std::vector<const Term_*> links;
  for (size_t i = 0; i + 1 < a.args.size(); ++i) {
    links.push_back(std::invoke(make, b.manager, a.args[i].term, a.args[i + 1].term));
  }
  return b.boolean(make_and(b.manager, links));
}

}  // namespace quill::smt2

#endif
