#include "quill/frontends/smt2/bit_vector_operators.h"

#include <string>

#include "quill/derived/derived_bv.h"

namespace quill::smt2 {

namespace {

constexpr uint64_t largest_width = ~uint64_t{0};

[[noreturn]] void reject_width(const TermBuilder& b, const Application& a) {
  b.reject(a, "gives a bit-vector of more bits than 64-bit numbers count");
}

// An extension by as many bits as the index says.
Value extended(TermBuilder& b, const Application& a,
               const Term_* (TermManager::*make)(size_t, const Term_*)) {
  const uint64_t width = b.expect_bit_vector(a, 0);
  const uint64_t by = b.index(a, 0);
  if (by > largest_width - width) reject_width(b, a);
  return value_of_bits((b.manager.*make)(by, a.args[0].term));
}

Value rotated(TermBuilder& b, const Application& a,
              const Term_* (TermManager::*make)(size_t, const Term_*)) {
  b.expect_bit_vector(a, 0);
  return value_of_bits((b.manager.*make)(b.index(a, 0), a.args[0].term));
}

// Checks the operands of a product that is computed in twice their width.
void expect_doubled_width(const TermBuilder& b, const Application& a) {
  expect_one_width(b, a);
  if (b.expect_bit_vector(a, 0) > largest_width / 2) {
    b.reject(a, "has arguments that are too wide to be multiplied in twice their width");
  }
}

}  // namespace

void expect_one_width(const TermBuilder& b, const Application& a) {
  b.expect_bit_vector(a, 0);
  b.expect_all(a, a.args[0].sort);
}

Value value_of_bits(const Term_* term) { return {term, term->type()}; }

Value build_bv_concat(TermBuilder& b, const Application& a) {
  uint64_t width = 0;
  for (size_t i = 0; i < a.args.size(); ++i) {
    const uint64_t more = b.expect_bit_vector(a, i);
    if (more > largest_width - width) reject_width(b, a);
    width += more;
  }
  const Term_* result = a.args[0].term;
  for (const Value& next : a.args.subspan(1)) {
    result = b.manager.make_bv_concat(result, next.term);
  }
  return value_of_bits(result);
}

Value build_bv_extract(TermBuilder& b, const Application& a) {
  const uint64_t width = b.expect_bit_vector(a, 0);
  const uint64_t high = b.index(a, 0);
  const uint64_t low = b.index(a, 1);
  const auto range = [&] {
    return "takes bits " + std::to_string(high) + " down to " + std::to_string(low);
  };
  if (low > high) b.reject(a, range() + ", which are none");
  if (high >= width) b.reject(a, range() + " of a bit-vector of width " + std::to_string(width));
  return value_of_bits(b.manager.make_bv_extract(high, low, a.args[0].term));
}

Value build_bv_repeat(TermBuilder& b, const Application& a) {
  const uint64_t width = b.expect_bit_vector(a, 0);
  const uint64_t times = b.index(a, 0);
  if (times == 0) b.reject(a, "takes a positive number as its index, not '0'");
  if (width > largest_width / times) reject_width(b, a);
  return value_of_bits(make_bv_repeat(b.manager, times, a.args[0].term));
}

Value build_bv_zero_extend(TermBuilder& b, const Application& a) {
  return extended(b, a, &TermManager::make_bv_zero_extend);
}

Value build_bv_sign_extend(TermBuilder& b, const Application& a) {
  return extended(b, a, &TermManager::make_bv_sign_extend);
}

Value build_bv_rotate_left(TermBuilder& b, const Application& a) {
  return rotated(b, a, &TermManager::make_bv_rotate_left);
}

Value build_bv_rotate_right(TermBuilder& b, const Application& a) {
  return rotated(b, a, &TermManager::make_bv_rotate_right);
}

Value build_bv_umulo(TermBuilder& b, const Application& a) {
  expect_doubled_width(b, a);
  return value_of_bits(make_bv_umulo(b.manager, a.args[0].term, a.args[1].term));
}

Value build_bv_smulo(TermBuilder& b, const Application& a) {
  expect_doubled_width(b, a);
  return value_of_bits(make_bv_smulo(b.manager, a.args[0].term, a.args[1].term));
}

Value build_int_to_bv(TermBuilder& b, const Application& a) {
  b.expect(a, 0, b.int_type);
  const DataType* sort = b.sorts.bit_vector(b.index(a, 0), a.position);
  size_t width = 0;
  b.manager.is_bv_type(sort, &width);
  // Converting the value of a bit-vector gives that bit-vector in another width.
  const Symbol* operand = a.args[0].term->symbol;
  if (!b.manager.is_int_from_ubv(operand, nullptr) &&
      !b.manager.is_int_from_sbv(operand, nullptr)) {
    b.budget.spend_conversion(width, a.position);
  }
  return {b.manager.make_int_to_bv(width, a.args[0].term), sort};
}

// Up to 64 bits are free: the text of the sign is no longer than the text that spells the number.
Value build_sbv_to_int(TermBuilder& b, const Application& a) {
  constexpr uint64_t few = 64;
  const uint64_t width = b.expect_bit_vector(a, 0);
  if (width > few) b.budget.spend_conversion(width, a.position);
  return value_of_bits(b.manager.make_int_from_sbv(a.args[0].term));
}

}  // namespace quill::smt2
