// Random applications of the operators on bit-vectors, floating-point values and arrays, and of
// those that lead from one theory to another, except modular congruence, which does not read back
// as itself.
//
// The caller draws the numbers and finds the operands, which may be terms that were made before.

#ifndef TESTS_RANDOM_RANDOM_THEORY_TERMS_H
#define TESTS_RANDOM_RANDOM_THEORY_TERMS_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <utility>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/gmp_integer.h"

namespace quill::smt2 {

class RandomTheoryTerms {
 public:
  using Below = std::function<uint32_t(uint32_t)>;               // a number below the one given
  using Operand = std::function<const Term_*(const DataType*)>;  // a term of this type

  // `for_all_readers` leaves out what some readers do not read: operators that the standard does
  // not have; constant arrays of anything except a numeral, which floating-point values are not for
  // these readers; and what makes them fail: conversions to a single bit, and the smallest format.
  RandomTheoryTerms(TermManager& manager, Below draw, Operand find, bool for_all_readers)
      : m(manager), below(std::move(draw)), operand(std::move(find)), plain(for_all_readers) {}

  // The types of its terms, except Bool and Int.
  std::vector<const DataType*> types() {
    std::vector<const DataType*> result = {m.get_fprounding_type(), flat_array(), nested_array(),
                                           bit_array()};
    for (const size_t w : widths) result.push_back(m.get_bv_type(w));
    for (const Format f : formats) result.push_back(m.get_fp_type(f.e, f.m));
    return result;
  }

  const Term_* make() {
    for (;;) {
      if (const Term_* t = make(below(num_kinds))) return t;
    }
  }

 private:
  struct Format {
    size_t e;
    size_t m;
  };

  static constexpr uint32_t num_kinds = 2 + 18 + 4 + 10 + 5 + 4 + 2 + 17;  // as make() has them
  static constexpr size_t widths[] = {1, 3, 8, 32};
  static constexpr Format formats[] = {{2, 2}, {5, 10}, {8, 23}};

  const DataType* flat_array() { return m.get_array_type(m.get_bv_type(3), m.get_fp_type(5, 10)); }
  const DataType* bit_array() { return m.get_array_type(m.get_int_type(), m.get_bv_type(8)); }
  const DataType* nested_array() { return m.get_array_type(m.get_int_type(), flat_array()); }

  size_t width() { return widths[below(std::size(widths))]; }
  Format format() {
    const uint32_t left_out = plain ? 1 : 0;
    return formats[left_out + below(static_cast<uint32_t>(std::size(formats)) - left_out)];
  }

  QNumber bits(size_t n) {
    GmpInteger value;
    for (size_t i = 0; i < n; ++i) {
      mpz_mul_ui(value, value, 2);
      mpz_add_ui(value, value, below(2));
    }
    return QNumber(static_cast<mpz_srcptr>(value));
  }

  const Term_* boolean() { return operand(m.get_bool_type()); }
  const Term_* integer() {
    return below(4) != 0 ? operand(m.get_int_type())
                         : m.make_number(static_cast<int64_t>(below(200)) - 100);
  }
  const Term_* mode() {
    switch (below(8)) {
      case 0:
        return m.make_fprounding_even();
      case 1:
        return m.make_fprounding_zero();
      case 2:
        return m.make_fprounding_plus_inf();
      case 3:
        return m.make_fprounding_minus_inf();
      default:
        return operand(m.get_fprounding_type());
    }
  }
  const Term_* bv(size_t w) {
    return below(4) != 0 ? operand(m.get_bv_type(w)) : m.make_bv_number(bits(w), w);
  }
  const Term_* fp(Format f) {
    if (below(4) != 0) return operand(m.get_fp_type(f.e, f.m));
    switch (below(4)) {
      case 0:
        return m.make_fp_nan(f.e, f.m);
      case 1:
        return m.make_fp_plus_inf(f.e, f.m);
      case 2:
        return m.make_fp_minus_inf(f.e, f.m);
      default:
        return m.make_fp_bits_number(bits(1 + f.e + f.m), f.e, f.m);
    }
  }

  // Null for a kind that is left out.
  const Term_* make(uint32_t kind);

  TermManager& m;
  const Below below;
  const Operand operand;
  const bool plain;
};

inline const Term_* RandomTheoryTerms::make(uint32_t kind) {
  using Unary = const Term_* (TermManager::*)(const Term_*);
  using Binary = const Term_* (TermManager::*)(const Term_*, const Term_*);
  using Rounded = const Term_* (TermManager::*)(const Term_*, const Term_*, const Term_*);
  using Amount = const Term_* (TermManager::*)(size_t, const Term_*);
  static constexpr Unary bv_unary[] = {&TermManager::make_bv_not, &TermManager::make_bv_neg};
  static constexpr Binary bv_binary[] = {
      &TermManager::make_bv_and,  &TermManager::make_bv_or,   &TermManager::make_bv_xor,
      &TermManager::make_bv_ult,  &TermManager::make_bv_slt,  &TermManager::make_bv_ule,
      &TermManager::make_bv_sle,  &TermManager::make_bv_comp, &TermManager::make_bv_add,
      &TermManager::make_bv_sub,  &TermManager::make_bv_mul,  &TermManager::make_bv_udiv,
      &TermManager::make_bv_sdiv, &TermManager::make_bv_urem, &TermManager::make_bv_srem,
      &TermManager::make_bv_lshl, &TermManager::make_bv_lshr, &TermManager::make_bv_ashr};
  static constexpr Amount bv_amount[] = {
      &TermManager::make_bv_rotate_left, &TermManager::make_bv_rotate_right,
      &TermManager::make_bv_zero_extend, &TermManager::make_bv_sign_extend};
  static constexpr Unary fp_unary[] = {
      &TermManager::make_fp_neg,      &TermManager::make_fp_abs,
      &TermManager::make_fp_isnan,    &TermManager::make_fp_isinf,
      &TermManager::make_fp_iszero,   &TermManager::make_fp_issubnormal,
      &TermManager::make_fp_isnormal, &TermManager::make_fp_isneg,
      &TermManager::make_fp_ispos,    &TermManager::make_fp_as_ieeebv};
  static constexpr Binary fp_binary[] = {&TermManager::make_fp_equal, &TermManager::make_fp_lt,
                                         &TermManager::make_fp_le, &TermManager::make_fp_min,
                                         &TermManager::make_fp_max};
  static constexpr Rounded fp_rounded[] = {&TermManager::make_fp_add, &TermManager::make_fp_sub,
                                           &TermManager::make_fp_mul, &TermManager::make_fp_div};
  static constexpr Binary fp_rounded_unary[] = {&TermManager::make_fp_sqrt,
                                                &TermManager::make_fp_round_to_int};
  const auto pick = [&kind](const auto& table) {
    const bool found = kind < std::size(table);
    if (!found) kind -= static_cast<uint32_t>(std::size(table));
    return found ? table[kind] : nullptr;
  };

  if (const Unary make_unary = pick(bv_unary)) return (m.*make_unary)(bv(width()));
  if (const Binary make_binary = pick(bv_binary)) {
    const size_t w = width();
    const Term_* a = bv(w);
    const Term_* b = bv(w);
    return (m.*make_binary)(a, b);
  }
  if (const Amount make_with = pick(bv_amount)) {
    const Term_* t = bv(width());
    return (m.*make_with)(below(9), t);
  }
  if (const Unary make_unary = pick(fp_unary)) {
    if (plain && make_unary == &TermManager::make_fp_as_ieeebv) return nullptr;
    return (m.*make_unary)(fp(format()));
  }
  if (const Binary make_binary = pick(fp_binary)) {
    const Format f = format();
    const Term_* a = fp(f);
    const Term_* b = fp(f);
    return (m.*make_binary)(a, b);
  }
  if (const Rounded make_rounded = pick(fp_rounded)) {
    const Format f = format();
    const Term_* rounding = mode();
    const Term_* a = fp(f);
    const Term_* b = fp(f);
    return (m.*make_rounded)(rounding, a, b);
  }
  if (const Binary make_rounded = pick(fp_rounded_unary)) {
    const Term_* rounding = mode();
    const Term_* t = fp(format());
    return (m.*make_rounded)(rounding, t);
  }

  const Format f = format();
  const size_t w = width();
  const Term_* const a = bv(w);
  const Term_* const rounding = mode();
  switch (kind) {
    case 0: {
      const Term_* b = bv(width());
      return m.make_bv_concat(a, b);
    }
    case 1: {
      const size_t high = below(static_cast<uint32_t>(w));
      return m.make_bv_extract(high, below(static_cast<uint32_t>(high + 1)), a);
    }
    case 2:
      return m.make_int_from_ubv(a);
    case 3:
      return plain ? nullptr : m.make_int_from_sbv(a);
    case 4:
      return plain ? nullptr : m.make_int_to_bv(w, integer());
    case 5:
      return m.make_fp_from_sbv(f.e, f.m, rounding, a);
    case 6:
      return m.make_fp_from_ubv(f.e, f.m, rounding, a);
    case 7:
      return plain && w == 1 ? nullptr : m.make_fp_to_bv(w, rounding, fp(f));
    case 8: {
      const Term_* t = fp(format());
      return m.make_fp_cast(f.e, f.m, rounding, t);
    }
    case 9:
      return m.make_fp_from_ieeebv(8, 23, bv(32));
    case 10: {
      const Term_* array = operand(flat_array());
      return m.make_array_read(array, bv(3));
    }
    case 11: {
      const Term_* array = operand(nested_array());
      const Term_* value = operand(flat_array());
      return m.make_array_write(array, integer(), value);
    }
    case 12:
      if (plain) return m.make_array_const(bit_array(), m.make_bv_number(bits(8), 8));
      return m.make_array_const(flat_array(), fp({5, 10}));
    // What the theories share.
    case 13: {
      const Term_* b = bv(w);
      return m.make_equal(a, b);
    }
    case 14: {
      const Term_* array = operand(flat_array());
      const Term_* other = operand(flat_array());
      return m.make_term_ite(boolean(), array, other);
    }
    case 15: {
      const Term_* other = mode();
      return m.make_equal(rounding, other);
    }
    default: {
      const Term_* value = fp(f);
      const Term_* other = fp(f);
      return m.make_equal(value, other);
    }
  }
}

}  // namespace quill::smt2

#endif
