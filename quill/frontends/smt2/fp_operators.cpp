#include "quill/frontends/smt2/fp_operators.h"

#include <string>

#include "quill/derived/derived_fp.h"

namespace quill::smt2 {

namespace {

// The width in bits of the widest format whose constants are made: their names spell the bits in
// decimal.
constexpr uint64_t max_constant_bits = uint64_t{1} << 20;

}  // namespace

void expect_rounding_mode(const TermBuilder& b, const Application& a) {
  b.expect(a, 0, b.manager.get_fprounding_type());
}

IEEEFloat::format expect_float(const TermBuilder& b, const Application& a, size_t index) {
  IEEEFloat::format format;
  if (!b.manager.is_fp_type(a.args[index].sort, &format.e, &format.m)) {
    b.reject_argument(a, index, "a floating-point number");
  }
  return format;
}

void expect_floats(const TermBuilder& b, const Application& a, size_t first) {
  expect_float(b, a, first);
  for (size_t i = first + 1; i < a.args.size(); ++i) b.expect(a, i, a.args[first].sort);
}

IEEEFloat::format format_from_indices(TermBuilder& b, const Application& a) {
  const uint64_t e = b.index(a, 0);
  const uint64_t s = b.index(a, 1);
  b.sorts.floating_point(e, s, a.position);
  return {e, s - 1};
}

void expect_spellable(TermBuilder& b, const Application& a, IEEEFloat::format format,
                      uint64_t count) {
  // The sum does not wrap: the manager has the format, so the number of its bits is a valid width.
  const uint64_t bits = format.e + format.m + 1;
  if (bits <= max_constant_bits) {
    b.budget.spend_floats(count, bits, a.position);
    return;
  }
  throw ParseError(a.position, "unsupported: floating-point constants of more than " +
                                   std::to_string(max_constant_bits) + " bits");
}

Value value_of_float(const Term_* term) { return {term, term->type()}; }

Value build_fp(TermBuilder& b, const Application& a) {
  b.expect(a, 0, b.manager.get_bv_type(1));
  const size_t e = b.expect_bit_vector(a, 1);
  const size_t m = b.expect_bit_vector(a, 2);
  if (m == ~size_t{0}) b.reject(a, "has a significand that is too wide");
  b.sorts.floating_point(e, m + 1, a.position);
  const auto is_literal = [&](const Value& part) {
    return b.manager.is_number(part.term->symbol, nullptr);
  };
  if (is_literal(a.args[0]) && is_literal(a.args[1]) && is_literal(a.args[2])) {
    expect_spellable(b, a, {e, m});
  }
  return value_of_float(
      make_fp_from_parts(b.manager, a.args[0].term, a.args[1].term, a.args[2].term));
}

}  // namespace quill::smt2
