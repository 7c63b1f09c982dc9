#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <new>
#include <string>
#include <vector>

#include "quill/derived/derived_fp.h"
#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/manager_test.h"

namespace quill {
namespace {

class DerivedFp : public testing::ManagerTest {
 protected:
  const Term_* bits(uint64_t value, size_t width) {
    return m.make_bv_number(QNumber(value), width);
  }

  const Term_* const f = constant("f", m.get_fp_type(8, 23));
  const Term_* const g = constant("g", m.get_fp_type(8, 23));
  const Term_* const rm = constant("rm", m.get_fprounding_type());
};

// --- Expansions ---

TEST_F(DerivedFp, GeqIsLeqOfTheExchangedOperands) {
  EXPECT_EQ(make_fp_geq(m, f, g)->to_str(), "(`fple_8_23` g f)");
}

TEST_F(DerivedFp, GtIsLtOfTheExchangedOperands) {
  EXPECT_EQ(make_fp_gt(m, f, g)->to_str(), "(`fplt_8_23` g f)");
}

TEST_F(DerivedFp, Zeros) {
  EXPECT_EQ(make_fp_plus_zero(m, 8, 23)->to_str(), "0_8_23");
  EXPECT_EQ(make_fp_minus_zero(m, 8, 23)->to_str(), "2147483648_8_23");
  EXPECT_EQ(make_fp_minus_zero(m, 15, 112)->to_str(),
            "170141183460469231731687303715884105728_15_112");
}

TEST_F(DerivedFp, LiteralPartsMakeANumeral) {
  EXPECT_EQ(make_fp_from_parts(m, bits(1, 1), bits(3, 5), bits(1, 10))->to_str(), "35841_5_10");
  // 1.0 in a format of 128 bits: 16383 * 2^112.
  EXPECT_EQ(make_fp_from_parts(m, bits(0, 1), bits(16383, 15), bits(0, 112))->to_str(),
            "85065399433376081038215121361612832768_15_112");
}

TEST_F(DerivedFp, BigLiteralPartsMakeANumeral) {
  // All ones but the sign, from a significand that is beyond machine words.
  const Term_* significand =
      m.make_bv_number(QNumber::from_string("5192296858534827628530496329220095"), 112);
  EXPECT_EQ(make_fp_from_parts(m, bits(0, 1), bits(32767, 15), significand)->to_str(),
            "170141183460469231731687303715884105727_15_112");
}

TEST_F(DerivedFp, PartsThatAreTermsAreConcatenated) {
  const Term_* exponent = constant("exponent", m.get_bv_type(5));
  EXPECT_EQ(make_fp_from_parts(m, bits(1, 1), exponent, bits(7, 10))->to_str(),
            "(`fpfromieeebv__16_5_10` (`bvconcat_6_10` (`bvconcat_1_5` 1_1 exponent) 7_10))");
  const Term_* sign = constant("sign", m.get_bv_type(1));
  EXPECT_EQ(make_fp_from_parts(m, sign, bits(0, 5), bits(7, 10))->to_str(),
            "(`fpfromieeebv__16_5_10` (`bvconcat_6_10` (`bvconcat_1_5` sign 0_5) 7_10))");
}

TEST_F(DerivedFp, ToUbvGuardsAWiderSignedConversion) {
  const Term_* undefined = constant("undefined", m.get_bv_type(4));
  // 3212836864 spells -1.0, 1098907648 spells 16.0.
  EXPECT_EQ(make_fp_to_ubv(m, 4, rm, f, undefined)->to_str(),
            "(`ite_(BitVec 4)` (`and` (`and` (`fple_8_23` 3212836864_8_23 f) "
            "(`fple_8_23` f 1098907648_8_23)) (`=_(BitVec 2)` (`bvextract_5_4_6` "
            "#11=(`fptobv__8_23_6` rm f)) 0_2)) (`bvextract_3_0_6` #11) undefined)");
}

TEST_F(DerivedFp, ToUbvBoundsByTheLargestFiniteValueWhereThePowerIsTooLarge) {
  const Term_* h = constant("h", m.get_fp_type(2, 3));
  const Term_* undefined = constant("undefined", m.get_bv_type(2));
  // The largest finite value is 3.75, of bits 0 10 111.
  EXPECT_EQ(make_fp_to_ubv(m, 2, rm, h, undefined)->args[0]->args[0]->args[1]->to_str(),
            "(`fple_2_3` h 23_2_3)");
}

TEST_F(DerivedFp, ToUbvIsAFunctionWhereItIsUndefined) {
  const Term_* t = make_fp_to_ubv(m, 4, rm, f);
  EXPECT_EQ(t->args[2]->to_str(),
            "(quill!fp_to_ubv_8_23_4 rm (`ite_(FP |8:23|)` (`fpisnan_8_23` f) 2143289344_8_23 f))");
  EXPECT_EQ(t->args[2]->symbol->type, undefined_fp_to_ubv_type(m, 8, 23, 4));
  EXPECT_EQ(t, make_fp_to_ubv(m, 4, rm, f));
  EXPECT_NE(t->args[2]->symbol, make_fp_to_ubv(m, 5, rm, f)->args[2]->symbol);
}

// --- Refusals ---

TEST_F(DerivedFp, PartsMustBeBitVectorsAndTheFirstOfOneBit) {
  EXPECT_EQ(error_of([&] { make_fp_from_parts(m, bits(0, 2), bits(0, 5), bits(0, 10)); }),
            "type error. term 0_2 has type (BitVec 2), but (BitVec 1) was expected. "
            "(make_fp_from_parts)");
  EXPECT_EQ(error_of([&] { make_fp_from_parts(m, bits(0, 1), f, bits(0, 10)); }),
            "type error. term f is not a bit-vector (make_fp_from_parts)");
  EXPECT_EQ(error_of([&] { make_fp_from_parts(m, bits(0, 1), bits(0, 5), f); }),
            "type error. term f is not a bit-vector (make_fp_from_parts)");
}

TEST_F(DerivedFp, NumeralsOfExcessiveWidthAreRefused) {
  const Term_* wide = m.make_bv_number(QNumber(0), size_t{1} << 40);
  EXPECT_THROW(make_fp_from_parts(m, bits(0, 1), bits(0, 5), wide), std::bad_alloc);
  EXPECT_THROW(make_fp_from_parts(m, bits(0, 1), wide, bits(0, 5)), std::bad_alloc);
  EXPECT_THROW(make_fp_minus_zero(m, 2, size_t{1} << 40), std::bad_alloc);
  const Term_* h = constant("h", m.get_fp_type(size_t{1} << 40, 3));
  EXPECT_THROW(make_fp_to_ubv(m, 8, rm, h), std::bad_alloc);
}

TEST_F(DerivedFp, ToUbvWantsAFloatAWidthAndAValueOfThatWidth) {
  const Term_* undefined = constant("undefined", m.get_bv_type(4));
  EXPECT_EQ(error_of([&] { make_fp_to_ubv(m, 4, rm, undefined, undefined); }),
            "type error. term undefined is not a FP (make_fp_to_ubv)");
  EXPECT_EQ(error_of([&] { make_fp_to_ubv(m, 4, rm, undefined); }),
            "type error. term undefined is not a FP (make_fp_to_ubv)");
  EXPECT_EQ(error_of([&] { make_fp_to_ubv(m, 5, rm, f, undefined); }),
            "type error. term undefined has type (BitVec 4), but (BitVec 5) was expected. "
            "(make_fp_to_ubv)");
  EXPECT_EQ(error_of([&] { make_fp_to_ubv(m, 0, rm, f, undefined); }),
            "can't convert to a bit-vector of width 0 (make_fp_to_ubv)");
  // 2 more would wrap.
  EXPECT_EQ(error_of([&] { make_fp_to_ubv(m, ~size_t{1}, rm, f, undefined); }),
            "can't convert to a bit-vector of width 18446744073709551614 (make_fp_to_ubv)");
}

// --- The meaning of fp.to_ubv, for every value of small formats ---

struct Format {
  size_t e;
  size_t m;
};

// The value of a bit pattern. Small formats are exact in double.
double decode(Format format, uint64_t pattern) {
  const uint64_t significand = pattern & ((uint64_t{1} << format.m) - 1);
  const uint64_t exponent = (pattern >> format.m) & ((uint64_t{1} << format.e) - 1);
  const double sign = (pattern >> (format.e + format.m)) != 0 ? -1.0 : 1.0;
  const int bias = (1 << (format.e - 1)) - 1;
  const int m = static_cast<int>(format.m);
  if (exponent == (uint64_t{1} << format.e) - 1) {
    return significand == 0 ? sign * HUGE_VAL : std::nan("");
  }
  if (exponent == 0) return sign * std::ldexp(static_cast<double>(significand), 1 - bias - m);
  return sign * std::ldexp(static_cast<double>(significand + (uint64_t{1} << format.m)),
                           static_cast<int>(exponent) - bias - m);
}

enum Mode { EVEN, ZERO, PLUS, MINUS };

double rounded(double value, Mode mode) {
  const double below = std::floor(value);
  const double above = std::ceil(value);
  switch (mode) {
    case ZERO:
      return value < 0 ? above : below;
    case PLUS:
      return above;
    case MINUS:
      return below;
    case EVEN:
      break;
  }
  if (value - below != above - value) return value - below < above - value ? below : above;
  return std::fmod(below, 2.0) == 0 ? below : above;
}

// Evaluates the terms that make_fp_to_ubv makes. A conversion that is out of range gives the bits
// of `anything`, so that a term whose value does not depend on it is found by two evaluations.
class Evaluator {
 public:
  Evaluator(const TermManager& manager, const Term_* float_operand, Format format,
            const Term_* undefined_term)
      : m(manager), operand(float_operand), form(format), undefined(undefined_term) {}

  double value = 0;
  Mode mode = EVEN;
  uint64_t anything = 0;
  static constexpr int64_t undefined_result = -1;

  // Bool as 0 and 1, bit-vectors as unsigned numbers.
  int64_t evaluate(const Term_* t) const {
    size_t a = 0;
    size_t b = 0;
    QNumber number;
    if (t == undefined) return undefined_result;
    if (m.is_number(t->symbol, &number)) return number.num;
    if (m.is_term_ite(t->symbol, nullptr)) return evaluate(t->args[evaluate(t->args[0]) ? 1 : 2]);
    if (m.is_fp_le(t->symbol, nullptr, nullptr))
      return number_of(t->args[0]) <= number_of(t->args[1]);
    if (m.is_bv_extract(t->symbol, &a, &b, nullptr)) {
      return (evaluate(t->args[0]) >> b) & ((int64_t{1} << (a - b + 1)) - 1);
    }
    if (m.is_fp_to_bv(t->symbol, nullptr, nullptr, &a)) {
      const double whole = rounded(value, mode);
      const double bound = std::ldexp(1.0, static_cast<int>(a) - 1);
      const bool in_range = -bound <= whole && whole < bound;  // false for NaN
      const uint64_t mask = (uint64_t{1} << a) - 1;
      const auto pattern = in_range ? static_cast<uint64_t>(static_cast<int64_t>(whole)) : anything;
      return static_cast<int64_t>(pattern & mask);
    }
    if (m.get_tag(t->symbol) == SymbolTag::AND) return evaluate(t->args[0]) & evaluate(t->args[1]);
    EXPECT_EQ(m.get_tag(t->symbol), SymbolTag::EQUAL) << t->to_str();
    return evaluate(t->args[0]) == evaluate(t->args[1]);
  }

 private:
  double number_of(const Term_* t) const {
    QNumber pattern;
    if (t == operand || !m.is_number(t->symbol, &pattern)) return value;
    return decode(form, static_cast<uint64_t>(pattern.num));
  }

  const TermManager& m;
  const Term_* operand;
  Format form;
  const Term_* undefined;
};

void check_format(Format format, size_t width) {
  TermManager m;
  const Term_* f = m.make_constant(m.make_symbol("f", m.get_fp_type(format.e, format.m)));
  const Term_* rm = m.make_constant(m.make_symbol("rm", m.get_fprounding_type()));
  const Term_* undefined = m.make_constant(m.make_symbol("u", m.get_bv_type(width)));
  const Term_* t = make_fp_to_ubv(m, width, rm, f, undefined);
  Evaluator evaluator(m, f, format, undefined);
  for (uint64_t pattern = 0; pattern >> (format.e + format.m + 1) == 0; ++pattern) {
    for (const Mode mode : {EVEN, ZERO, PLUS, MINUS}) {
      evaluator.value = decode(format, pattern);
      evaluator.mode = mode;
      const double whole = rounded(evaluator.value, mode);
      const bool defined = 0 <= whole && whole < std::ldexp(1.0, static_cast<int>(width));
      const int64_t expected = defined ? static_cast<int64_t>(whole) : Evaluator::undefined_result;
      for (const uint64_t anything : {uint64_t{0}, uint64_t{1}, ~uint64_t{0}}) {
        evaluator.anything = anything;
        ASSERT_EQ(evaluator.evaluate(t), expected)
            << "format " << format.e << ", " << format.m << ", width " << width << ", value "
            << evaluator.value << ", mode " << mode;
      }
    }
  }
}

TEST(DerivedFpMeaning, ToUbvOfEveryValueOfSmallFormats) {
  for (size_t e = 2; e <= 4; ++e) {
    for (size_t m = 2; m <= 4; ++m) {
      // The largest finite values are below 4, 16 and 256.
      for (const int width : {1, 2, 4, 5, 8, 9}) check_format({e, m}, static_cast<size_t>(width));
    }
  }
}

}  // namespace
}  // namespace quill
