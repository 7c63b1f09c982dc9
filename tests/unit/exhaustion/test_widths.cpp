// Widths and formats at the edges of words, far beyond those of numbers that can be computed, and
// beyond 64 bits; numerals of a million digits.

#include <gmp.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <functional>
#include <new>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include "quill/derived/derived_bv.h"
#include "quill/derived/derived_fp.h"
#include "quill/printers/outterm.h"
#include "quill/smtlib/syntax.h"
#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/manager_test.h"
#include "tests/support/operators.h"
#include "tests/unit/exhaustion/failing_pools.h"

namespace quill {
namespace {

using testing::Terms;

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
  for (const size_t w : edge_widths) {
    const Term_* a = bits(w);
    const Term_* b = bits(w);
    const Term_* i = constant(m.get_int_type());
    for (const testing::Operator& op : testing::operator_families()) {
      if (op.indices != testing::Indices::Width) continue;
      const Terms args = op.tag == SymbolTag::INT_TO_BV ? Terms{i} : Terms{a, b};
      const auto build = [&] {
        return op.build(m, {{w}, {}, {}}, std::span(args).first(op.arity));
      };
      const Term_* t = build();
      std::array<size_t, 4> found{};
      EXPECT_TRUE(op.recognise.read(m, t->symbol, &found));
      EXPECT_EQ(found[0], w);
      EXPECT_EQ(build(), t);
    }
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
    size_t of_the_format = 0;
    for (const testing::Operator& op : testing::operator_families()) {
      if (op.indices != testing::Indices::Format) continue;
      const DataType* first = op.make_symbol(m, {{e, s}, {}, {}})->type->get_component(1);
      const Terms args = {first == a->type() ? a : mode, a, a};
      const Term_* t = op.build(m, {}, std::span(args).first(op.arity));
      if (t->type() == m.get_bool_type()) continue;
      EXPECT_TRUE(m.is_fp_type(t->type(), &found_e, &found_s)) << op.operation;
      EXPECT_EQ(found_e, e);
      EXPECT_EQ(found_s, s);
      ++of_the_format;
    }
    EXPECT_EQ(of_the_format, 10U);
    for (const Term_* t : {m.make_fp_bits_number(5, e, s), make_fp_plus_zero(m, e, s)}) {
      EXPECT_EQ(t->type(), a->type());
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
  TermManager other;
  EXPECT_TRUE(other.copy_term(m, value)->symbol->name == text_of_number + "_1000_" + width_text);
  m.gc({t}, {}, {});
  EXPECT_EQ(m.check_consistency(), "");
}

}  // namespace
}  // namespace quill
