// Widths and formats at the edges of words, far beyond those of numbers that can be computed, and
// beyond 64 bits; numerals of a million digits.

#include <gmp.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <new>
#include <sstream>
#include <string>
#include <vector>

#include "quill/derived/derived_bv.h"
#include "quill/derived/derived_fp.h"
#include "quill/printers/outterm.h"
#include "quill/smtlib/syntax.h"
#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/manager_test.h"
#include "tests/unit/exhaustion/failing_pools.h"

namespace quill {
namespace {

using M = TermManager;

const size_t edge_widths[] = {1,
                              63,
                              64,
                              65,
                              (size_t{1} << 31),
                              size_t{UINT32_MAX},
                              size_t{1} << 32,
                              size_t{1} << 40,
                              SIZE_MAX / 2};

class Widths : public testing::ManagerTest {
 protected:
  const Term_* constant(const DataType* type) {
    return m.make_constant(m.make_unique_symbol("x", type));
  }
  const Term_* bits(size_t width) { return constant(m.get_bv_type(width)); }
  const Term_* value(size_t e, size_t s) { return constant(m.get_fp_type(e, s)); }

  // The message of a base Exception; the stores are as before.
  std::string refusal(const std::function<void()>& request) {
    const auto before = sizes();
    const std::string message = base_exception_of(request);
    EXPECT_EQ(sizes(), before);
    EXPECT_EQ(m.check_consistency(), "");
    return message;
  }

  size_t width_of(const Term_* t) {
    size_t width = 0;
    EXPECT_TRUE(m.is_bv_type(t->type(), &width));
    return width;
  }

  std::string text(const Term_* t) {
    std::ostringstream out;
    out << outterm(&m, t);
    return out.str();
  }
};

TEST_F(Widths, EveryWidthKeyedOperatorTakesEveryWidth) {
  using Unary = const Term_* (M::*)(const Term_*);
  using Binary = const Term_* (M::*)(const Term_*, const Term_*);
  using Is = bool (M::*)(const Symbol*, size_t*) const;
  struct UnaryRow {
    Unary make;
    Is is;
  };
  struct BinaryRow {
    Binary make;
    Is is;
  };
  const UnaryRow unary[] = {{&M::make_bv_not, &M::is_bv_not},
                            {&M::make_bv_neg, &M::is_bv_neg},
                            {&M::make_int_from_ubv, &M::is_int_from_ubv},
                            {&M::make_int_from_sbv, &M::is_int_from_sbv}};
  const BinaryRow binary[] = {
      {&M::make_bv_and, &M::is_bv_and},   {&M::make_bv_or, &M::is_bv_or},
      {&M::make_bv_xor, &M::is_bv_xor},   {&M::make_bv_ult, &M::is_bv_ult},
      {&M::make_bv_slt, &M::is_bv_slt},   {&M::make_bv_ule, &M::is_bv_ule},
      {&M::make_bv_sle, &M::is_bv_sle},   {&M::make_bv_comp, &M::is_bv_comp},
      {&M::make_bv_add, &M::is_bv_add},   {&M::make_bv_sub, &M::is_bv_sub},
      {&M::make_bv_mul, &M::is_bv_mul},   {&M::make_bv_udiv, &M::is_bv_udiv},
      {&M::make_bv_sdiv, &M::is_bv_sdiv}, {&M::make_bv_urem, &M::is_bv_urem},
      {&M::make_bv_srem, &M::is_bv_srem}, {&M::make_bv_lshl, &M::is_bv_lshl},
      {&M::make_bv_lshr, &M::is_bv_lshr}, {&M::make_bv_ashr, &M::is_bv_ashr}};
  for (const size_t w : edge_widths) {
    const Term_* a = bits(w);
    const Term_* b = bits(w);
    size_t found = 0;
    for (const UnaryRow& row : unary) {
      const Term_* t = (m.*row.make)(a);
      EXPECT_TRUE((m.*row.is)(t->symbol, &found));
      EXPECT_EQ(found, w);
      EXPECT_EQ((m.*row.make)(a), t);
    }
    for (const BinaryRow& row : binary) {
      const Term_* t = (m.*row.make)(a, b);
      EXPECT_TRUE((m.*row.is)(t->symbol, &found));
      EXPECT_EQ(found, w);
      EXPECT_EQ((m.*row.make)(a, b), t);
    }
    const Term_* i = constant(m.get_int_type());
    EXPECT_TRUE(m.is_int_to_bv(m.make_int_to_bv(w, i)->symbol, &found));
    EXPECT_EQ(found, w);
    EXPECT_EQ(m.get_type_from_width(w)->get_name(), std::to_string(w));
  }
  EXPECT_EQ(m.check_consistency(), "");
}

TEST_F(Widths, IndexedOperatorsReachTheHighestBit) {
  for (const size_t w : edge_widths) {
    const Term_* a = bits(w);
    EXPECT_EQ(width_of(m.make_bv_concat(a, a)), 2 * w);
    EXPECT_EQ(width_of(m.make_bv_extract(w - 1, 0, a)), w);
    EXPECT_EQ(width_of(m.make_bv_extract(w - 1, w - 1, a)), 1U);
    EXPECT_EQ(width_of(m.make_bv_zero_extend(w, a)), 2 * w);
    EXPECT_EQ(width_of(m.make_bv_sign_extend(w + 1, a)), 2 * w + 1);
    EXPECT_EQ(width_of(m.make_bv_rotate_left(SIZE_MAX, a)), w);
    EXPECT_EQ(width_of(m.make_bv_rotate_right(w, a)), w);
    EXPECT_EQ(width_of(make_bv_repeat(m, 2, a)), 2 * w);
    EXPECT_EQ(refusal([&] { m.make_bv_extract(w, 0, a); }),
              "range too large in bv extraction. arg has width " + std::to_string(w) +
                  ", but range is [" + std::to_string(w) + ":0]");
  }
  // Keys that differ in high bits only are different keys.
  EXPECT_NE(m.make_bv_rotate_left_symbol(size_t{1} << 32, 8), m.make_bv_rotate_left_symbol(0, 8));
  EXPECT_NE(m.make_bv_not_symbol((size_t{1} << 32) + 8), m.make_bv_not_symbol(8));
}

TEST_F(Widths, FormatsOfAnySizeHaveAllOperators) {
  const Term_* mode = m.make_fprounding_even();
  for (const size_t e : edge_widths) {
    if (e < 2) continue;
    const size_t s = e - 1;
    const Term_* a = value(e, s);
    size_t found_e = 0;
    size_t found_s = 0;
    for (const Term_* t :
         {m.make_fp_neg(a), m.make_fp_abs(a), m.make_fp_min(a, a), m.make_fp_max(a, a),
          m.make_fp_add(mode, a, a), m.make_fp_sub(mode, a, a), m.make_fp_mul(mode, a, a),
          m.make_fp_div(mode, a, a), m.make_fp_sqrt(mode, a), m.make_fp_round_to_int(mode, a),
          m.make_fp_bits_number(5, e, s), make_fp_plus_zero(m, e, s)}) {
      EXPECT_TRUE(m.is_fp_type(t->type(), &found_e, &found_s));
      EXPECT_EQ(found_e, e);
      EXPECT_EQ(found_s, s);
    }
    for (const Term_* t :
         {m.make_fp_equal(a, a), m.make_fp_lt(a, a), m.make_fp_le(a, a), m.make_fp_isnan(a),
          m.make_fp_isinf(a), m.make_fp_iszero(a), m.make_fp_issubnormal(a), m.make_fp_isnormal(a),
          m.make_fp_isneg(a), m.make_fp_ispos(a)}) {
      EXPECT_EQ(t->type(), m.get_bool_type());
    }
    const Term_* pattern = m.make_fp_as_ieeebv(a);
    EXPECT_EQ(width_of(pattern), 2 * e);
    EXPECT_EQ(m.make_fp_from_ieeebv(e, s, pattern)->type(), m.get_fp_type(e, s));
    const Term_* to_bv = m.make_fp_to_bv(e, mode, a);
    EXPECT_EQ(width_of(to_bv), e);
    m.make_fp_from_sbv(e, s, mode, to_bv);
    m.make_fp_from_ubv(e, s, mode, to_bv);
    m.make_fp_cast(s + 2, e + 2, mode, a);
  }
  EXPECT_EQ(m.check_consistency(), "");
}

TEST_F(Widths, AResultThatCannotBeCountedIsRefusedAndLeavesNothing) {
  const Term_* half = bits(size_t{1} << 63);
  const Term_* all = bits(SIZE_MAX);
  const Term_* one = bits(1);
  EXPECT_EQ(refusal([&] { m.make_bv_concat(half, half); }),
            "a bit-vector of 9223372036854775808 + 9223372036854775808 bits is too wide");
  EXPECT_EQ(refusal([&] { m.make_bv_concat(one, all); }),
            "a bit-vector of 1 + 18446744073709551615 bits is too wide");
  EXPECT_EQ(refusal([&] { m.make_bv_concat_symbol(SIZE_MAX, 1); }),
            "a bit-vector of 18446744073709551615 + 1 bits is too wide");
  EXPECT_EQ(refusal([&] { m.make_bv_zero_extend(1, all); }),
            "a bit-vector of 1 + 18446744073709551615 bits is too wide");
  EXPECT_EQ(refusal([&] { m.make_bv_sign_extend(SIZE_MAX, one); }),
            "a bit-vector of 18446744073709551615 + 1 bits is too wide");
  EXPECT_EQ(refusal([&] { m.make_bv_zero_extend_symbol(2, SIZE_MAX); }),
            "a bit-vector of 2 + 18446744073709551615 bits is too wide");
  EXPECT_EQ(width_of(m.make_bv_zero_extend(SIZE_MAX - 1, one)), SIZE_MAX);
}

TEST_F(Widths, ABitPatternThatCannotBeCountedIsRefusedAndLeavesNothing) {
  constexpr size_t half = size_t{1} << 63;
  const std::string complaint =
      "a bit pattern of 1 + 9223372036854775808 + 9223372036854775808 bits is too wide";
  const Term_* wide = value(half, half);
  const Term_* one = bits(1);  // as many as the sum seems to have
  EXPECT_EQ(refusal([&] { m.make_fp_as_ieeebv(wide); }), complaint);
  EXPECT_EQ(refusal([&] { m.make_fp_as_ieeebv_symbol(half, half); }), complaint);
  EXPECT_EQ(refusal([&] { m.make_fp_from_ieeebv(half, half, one); }), complaint);
  EXPECT_EQ(refusal([&] { m.make_fp_from_ieeebv_symbol(half, half); }), complaint);
  EXPECT_EQ(refusal([&] { m.make_fp_bits_number(1, half, half); }), complaint);
  EXPECT_EQ(refusal([&] { make_fp_minus_zero(m, half, half); }), complaint);
  EXPECT_EQ(refusal([&] { m.make_fp_bits_number(0, SIZE_MAX, 2); }),
            "a bit pattern of 1 + 18446744073709551615 + 2 bits is too wide");
  // The widest one that can be.
  const Term_* widest = value(half, half - 2);
  EXPECT_EQ(width_of(m.make_fp_as_ieeebv(widest)), SIZE_MAX);
}

// The number of values, the special values and the digits of 2^32 bits and more would need memory
// that GMP could not be denied.
TEST_F(Widths, WhatIsTooLongToComputeIsRefusedBeforeGmpIsAsked) {
  constexpr size_t far = size_t{1} << 40;
  QNumber size;
  for (const size_t w : {(size_t{1} << 32) + 1, far - 1, far}) {
    EXPECT_THROW(m.is_finite_domain_type(m.get_bv_type(w), &size), std::bad_alloc);
  }
  EXPECT_THROW(m.is_finite_domain_type(m.get_fp_type(far, 2), &size), std::bad_alloc);
  EXPECT_THROW(m.is_finite_domain_type(m.get_fp_type(SIZE_MAX, SIZE_MAX), &size), std::bad_alloc);
  EXPECT_TRUE(m.is_finite_domain_type(m.get_bv_type(far), nullptr));
  const Term_* mode = m.make_fprounding_even();
  for (const auto& [e, s] : {std::pair<size_t, size_t>{far, 2}, {2, far}, {far, far}}) {
    EXPECT_THROW(m.make_fp_plus_inf(e, s), std::bad_alloc);
    EXPECT_THROW(m.make_fp_minus_inf(e, s), std::bad_alloc);
    EXPECT_THROW(m.make_fp_nan(e, s), std::bad_alloc);
    EXPECT_THROW(m.make_fp_rat_number(1, e, s, mode), std::bad_alloc);
    EXPECT_THROW(make_fp_minus_zero(m, e, s), std::bad_alloc);
    EXPECT_THROW(text(m.make_fp_bits_number(0, e, s)), std::bad_alloc);
    const Term_* sign = m.make_bv_number(1, 1);
    const Term_* exponent = m.make_bv_number(1, e);
    const Term_* significand = m.make_bv_number(1, s);
    EXPECT_THROW(make_fp_from_parts(m, sign, exponent, significand), std::bad_alloc);
  }
  // Eight gigabytes of digits, which the system could provide.
  EXPECT_THROW(text(m.make_fp_bits_number(0, size_t{1} << 33, 2)), std::bad_alloc);
  EXPECT_LT(testing::largest_gmp_block(), 10'000'000U);
  EXPECT_EQ(m.check_consistency(), "");
}

TEST_F(Widths, SortsAndOperatorsOfAnyWidthAreWritten) {
  const Term_* a = bits(size_t{1} << 40);
  EXPECT_EQ(text(m.make_bv_zero_extend(size_t{1} << 41, a)), "((_ zero_extend 2199023255552) x)");
  EXPECT_EQ(text(m.make_bv_number(5, size_t{1} << 40)), "(_ bv5 1099511627776)");
  std::ostringstream out;
  print_type(out, m, m.get_fp_type(SIZE_MAX, SIZE_MAX));
  EXPECT_EQ(out.str(), "(_ FloatingPoint 18446744073709551615 18446744073709551616)");
  const Term_* cast = m.make_fp_cast(2, SIZE_MAX, m.make_fprounding_zero(), value(3, 4));
  EXPECT_EQ(text(cast), "((_ to_fp 2 18446744073709551616) RTZ x_0)");
}

//---------------------------------------------------------------------------------------------
// Numerals of a million digits

constexpr size_t digits = 1'000'000;

// 1200...03, of so many digits.
std::string million_digits() {
  std::string text(digits, '0');
  text[0] = '1';
  text[1] = '2';
  text.back() = '3';
  return text;
}

TEST_F(Widths, NumeralsOfAMillionDigitsAreMadePrintedAndFound) {
  const std::string text_of_number = million_digits();
  const QNumber number = QNumber::from_string(text_of_number);
  const Term_* t = m.make_number(number);
  EXPECT_TRUE(t->symbol->name == text_of_number);
  EXPECT_EQ(m.make_number(number), t);
  EXPECT_EQ(m.make_number(QNumber::from_string(text_of_number)), t);
  EXPECT_TRUE(text(t) == text_of_number);
  EXPECT_TRUE(text(m.make_number(QNumber::from_string("-" + text_of_number))) ==
              "(- " + text_of_number + ")");
  const Term_* fraction = m.make_number(QNumber::from_string("1/" + text_of_number));
  EXPECT_TRUE(text(fraction) == "(/ 1.0 " + text_of_number + ".0)");
  QNumber found;
  EXPECT_TRUE(m.is_number(t->symbol, &found));
  EXPECT_TRUE(found == number);
}

TEST_F(Widths, BitPatternsOfAMillionDigitsAreMadePrintedAndFound) {
  const std::string text_of_number = million_digits();
  const QNumber number = QNumber::from_string(text_of_number);
  const size_t width = mpz_sizeinbase(number.big_num(), 2);
  const std::string width_text = std::to_string(width);
  const Term_* t = m.make_bv_number(number, width);
  EXPECT_TRUE(t->symbol->name == text_of_number + "_" + width_text);
  EXPECT_EQ(m.make_bv_number(number, width), t);
  EXPECT_TRUE(text(t) == "(_ bv" + text_of_number + " " + width_text + ")");
  EXPECT_EQ(
      refusal([&] { m.make_bv_number(number, width - 1); }),
      "the number " + text_of_number + " doesn't fit in " + std::to_string(width - 1) + " bits");

  const Term_* value = m.make_fp_bits_number(number, 1000, width);
  EXPECT_EQ(m.make_fp_bits_number(number, 1000, width), value);
  EXPECT_EQ(text(value).size(), std::string("(fp #b #b #b)").size() + 1 + 1000 + width);
  M other;
  EXPECT_TRUE(other.copy_term(m, value)->symbol->name == text_of_number + "_1000_" + width_text);
  m.gc({t}, {}, {});
  EXPECT_EQ(m.check_consistency(), "");
}

}  // namespace
}  // namespace quill
