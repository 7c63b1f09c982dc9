#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <new>
#include <string>

#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/qnumber.h"
#include "tests/support/failing_memory.h"
#include "tests/support/manager_test.h"

namespace quill {
namespace {

class FpNumbers : public testing::ManagerTest {
 protected:
  // The pattern in format (8, 23) of a rational in each of the modes, in their order.
  std::array<std::string, 4> singles(const QNumber& value) {
    const std::array modes = {m.make_fprounding_even(), m.make_fprounding_zero(),
                              m.make_fprounding_plus_inf(), m.make_fprounding_minus_inf()};
    std::array<std::string, 4> patterns;
    for (size_t i = 0; i < 4; ++i)
      patterns[i] = value_of(m.make_fp_rat_number(value, 8, 23, modes[i]));
    return patterns;
  }
};

using Patterns = std::array<std::string, 4>;

// --- Bit patterns ---

TEST_F(FpNumbers, NumeralIsNamedByPatternAndFormat) {
  const Term_* zero = m.make_fp_bits_number(0, 8, 23);
  EXPECT_STREQ(zero->symbol->name, "0_8_23");
  EXPECT_EQ(zero->symbol->type, m.get_fp_type(8, 23));
  EXPECT_EQ(zero->symbol->arity, 0U);
  EXPECT_EQ(value_of(zero), "0");
  EXPECT_EQ(m.get_tag(zero->symbol), SymbolTag::NONE);
  EXPECT_TRUE(m.is_interpreted(zero->symbol));
  EXPECT_FALSE(m.is_constant(zero->symbol));
}

TEST_F(FpNumbers, APatternHasOneTermInEachFormat) {
  const Term_* one = m.make_fp_bits_number(15360, 5, 10);
  const auto before = sizes();
  EXPECT_EQ(m.make_fp_bits_number(15360, 5, 10), one);
  EXPECT_EQ(sizes(), before);
  EXPECT_NE(m.make_fp_bits_number(15360, 10, 5), one);
}

TEST_F(FpNumbers, PatternsAreNotFoundByValue) {
  const Term_* pattern = m.make_fp_bits_number(5, 8, 23);
  const Term_* five = m.make_number(5);
  EXPECT_NE(five, pattern);
  EXPECT_EQ(five->symbol->type, m.get_int_type());
  EXPECT_NE(m.make_bv_number(5, 32), pattern);
}

TEST_F(FpNumbers, LargestPatternFitsAndTheNextDoesNot) {
  EXPECT_STREQ(m.make_fp_bits_number(65535, 5, 10)->symbol->name, "65535_5_10");
  const auto before = sizes();
  EXPECT_EQ(base_exception_of([&] { m.make_fp_bits_number(65536, 5, 10); }),
            "the number 65536 doesn't fit in 16 bits");
  EXPECT_EQ(sizes(), before);
}

TEST_F(FpNumbers, SmallFormFitsEveryFormatFrom64Bits) {
  EXPECT_STREQ(m.make_fp_bits_number(INT64_MAX, 11, 52)->symbol->name, "9223372036854775807_11_52");
  EXPECT_EQ(base_exception_of([&] { m.make_fp_bits_number(INT64_MAX, 11, 50); }),
            "the number 9223372036854775807 doesn't fit in 62 bits");
}

TEST_F(FpNumbers, BigFormFitsByItsLength) {
  const QNumber all_ones = QNumber::from_string("18446744073709551615");
  const QNumber one_more = QNumber::from_string("18446744073709551616");
  EXPECT_STREQ(m.make_fp_bits_number(all_ones, 11, 52)->symbol->name, "18446744073709551615_11_52");
  EXPECT_EQ(base_exception_of([&] { m.make_fp_bits_number(one_more, 11, 52); }),
            "the number 18446744073709551616 doesn't fit in 64 bits");
}

TEST_F(FpNumbers, FractionalPatternIsRefused) {
  EXPECT_EQ(error_of([&] { m.make_fp_bits_number(QNumber(1, 2), 8, 23); }),
            "can't make a FP number from a fractional number: 1/2");
}

TEST_F(FpNumbers, NegativePatternIsRefused) {
  EXPECT_EQ(error_of([&] { m.make_fp_bits_number(-1, 8, 23); }),
            "can't make a FP number from a negative number: -1");
}

TEST_F(FpNumbers, FractionIsFoundBeforeSignAndSignBeforeSize) {
  EXPECT_EQ(error_of([&] { m.make_fp_bits_number(QNumber(-100001, 2), 5, 10); }),
            "can't make a FP number from a fractional number: -100001/2");
  EXPECT_EQ(error_of([&] { m.make_fp_bits_number(-100000, 5, 10); }),
            "can't make a FP number from a negative number: -100000");
}

TEST_F(FpNumbers, SizeIsFoundBeforeAFormatTooSmall) {
  const auto before = sizes();
  EXPECT_EQ(base_exception_of([&] { m.make_fp_bits_number(16, 1, 2); }),
            "the number 16 doesn't fit in 4 bits");
  EXPECT_EQ(error_of([&] { m.make_fp_bits_number(15, 1, 2); }),
            "too small exponent and/or mantissa width for FP numbers: 1, 2 (min is 2, 2)");
  EXPECT_EQ(sizes(), before);
}

TEST_F(FpNumbers, RefusedPatternsLeaveTheStoresAsTheyWere) {
  const auto before = sizes();
  error_of([&] { m.make_fp_bits_number(QNumber(1, 2), 8, 23); });
  error_of([&] { m.make_fp_bits_number(-1, 8, 23); });
  EXPECT_EQ(sizes(), before);
}

TEST_F(FpNumbers, WithoutChecksPatternsMayBeOutOfRange) {
  m.set_typecheck_enabled(false);
  const Term_* t = m.make_fp_bits_number(-1, 8, 23);
  EXPECT_STREQ(t->symbol->name, "-1_8_23");
  EXPECT_EQ(value_of(t), "-1");
  EXPECT_STREQ(m.make_fp_bits_number(65536, 5, 10)->symbol->name, "65536_5_10");
  EXPECT_STREQ(m.make_fp_bits_number(9, 1, 1)->symbol->name, "9_1_1");
}

TEST_F(FpNumbers, UnnormalisedPatternsAreNormalised) {
  const Term_* t = m.make_fp_bits_number(QNumber(10, 2), 8, 23);
  EXPECT_EQ(t, m.make_fp_bits_number(5, 8, 23));
  EXPECT_EQ(value_of(t), "5");
}

// --- Names that are taken ---

TEST_F(FpNumbers, SymbolOfAnotherTypeStandsInTheWay) {
  m.make_symbol("0_8_23", m.get_int_type());
  const auto before = sizes();
  EXPECT_EQ(error_of([&] { m.make_fp_bits_number(0, 8, 23); }),
            "a symbol for 0_8_23 already exists, but it has the wrong type: Int");
  EXPECT_EQ(sizes(), before);
  m.make_symbol("0_5_10", m.get_fp_type(10, 5));
  EXPECT_EQ(error_of([&] { m.make_fp_bits_number(0, 5, 10); }),
            "a symbol for 0_5_10 already exists, but it has the wrong type: (FP |10:5|)");
}

TEST_F(FpNumbers, SymbolOfTheFormatIsTakenForTheNumeral) {
  const Term_* mine = constant("7_8_23", m.get_fp_type(8, 23));
  EXPECT_EQ(value_of(mine), "no numeral");
  EXPECT_EQ(m.make_fp_bits_number(7, 8, 23), mine);
  EXPECT_EQ(value_of(mine), "7");
}

// --- Rationals ---

TEST_F(FpNumbers, ExactRationalIsTheSameInEveryMode) {
  EXPECT_EQ(singles(1), (Patterns{"1065353216", "1065353216", "1065353216", "1065353216"}));
  EXPECT_EQ(singles(0), (Patterns{"0", "0", "0", "0"}));
  EXPECT_EQ(singles(-2), (Patterns{"3221225472", "3221225472", "3221225472", "3221225472"}));
}

TEST_F(FpNumbers, RationalIsRoundedInTheModeOfTheTerm) {
  EXPECT_EQ(singles(QNumber(1, 10)),
            (Patterns{"1036831949", "1036831948", "1036831949", "1036831948"}));
  EXPECT_EQ(singles(QNumber(-1, 10)),
            (Patterns{"3184315597", "3184315596", "3184315596", "3184315597"}));
}

TEST_F(FpNumbers, OverflowGoesByTheMode) {
  EXPECT_EQ(singles(QNumber::from_string("1000000000000000000000000000000000000000")),
            (Patterns{"2139095040", "2139095039", "2139095040", "2139095039"}));
}

TEST_F(FpNumbers, RationalGivesTheTermOfItsPattern) {
  const Term_* t = m.make_fp_rat_number(QNumber(3, 2), 5, 10, m.make_fprounding_zero());
  EXPECT_STREQ(t->symbol->name, "15872_5_10");
  EXPECT_EQ(t, m.make_fp_bits_number(15872, 5, 10));
}

TEST_F(FpNumbers, OtherTermsAreNoRoundingModes) {
  const auto refusal = [&](const Term_* rounding) {
    return error_of([&] { m.make_fp_rat_number(1, 8, 23, rounding); });
  };
  const Term_* rm = constant("rm", m.get_fprounding_type());
  const Term_* r = constant("r", m.get_rat_type());
  const Term_* sum = m.make_plus(r, r);
  const Term_* imitation = constant("fprounding_even", m.get_fprounding_type());
  const auto before = sizes();
  EXPECT_EQ(refusal(rm), "unsupported rounding mode: rm");
  EXPECT_EQ(refusal(r), "unsupported rounding mode: r");
  EXPECT_EQ(refusal(sum), "unsupported rounding mode: (`+_rat` r r)");
  EXPECT_EQ(refusal(imitation), "unsupported rounding mode: fprounding_even");
  EXPECT_EQ(sizes(), before);
}

TEST_F(FpNumbers, RoundingModeIsLookedAtBeforeTheFormat) {
  const Term_* r = constant("r", m.get_rat_type());
  EXPECT_EQ(error_of([&] { m.make_fp_rat_number(1, 1, 1, r); }), "unsupported rounding mode: r");
  EXPECT_EQ(error_of([&] { m.make_fp_rat_number(1, 1, 1, m.make_fprounding_even()); }),
            "too small exponent and/or mantissa width for FP numbers: 1, 1 (min is 2, 2)");
}

TEST_F(FpNumbers, RoundingModeIsLookedAtAlsoWithoutChecks) {
  const Term_* r = constant("r", m.get_rat_type());
  m.set_typecheck_enabled(false);
  EXPECT_EQ(error_of([&] { m.make_fp_rat_number(1, 8, 23, r); }), "unsupported rounding mode: r");
}

// --- Infinities and NaN ---

TEST_F(FpNumbers, InfinitiesHaveTheLargestExponentAndNoSignificand) {
  EXPECT_EQ(m.make_fp_plus_inf(8, 23), m.make_fp_bits_number(2139095040, 8, 23));
  EXPECT_STREQ(m.make_fp_plus_inf(2, 2)->symbol->name, "12_2_2");
  EXPECT_STREQ(m.make_fp_plus_inf(5, 10)->symbol->name, "31744_5_10");
  EXPECT_STREQ(m.make_fp_plus_inf(11, 52)->symbol->name, "9218868437227405312_11_52");
  EXPECT_STREQ(m.make_fp_plus_inf(15, 112)->symbol->name,
               "170135991163610696904058773219554885632_15_112");
}

TEST_F(FpNumbers, MinusInfinityIsNegative) {
  EXPECT_EQ(m.make_fp_minus_inf(8, 23), m.make_fp_bits_number(4286578688, 8, 23));
  EXPECT_STREQ(m.make_fp_minus_inf(2, 2)->symbol->name, "28_2_2");
  EXPECT_STREQ(m.make_fp_minus_inf(5, 10)->symbol->name, "64512_5_10");
  EXPECT_STREQ(m.make_fp_minus_inf(11, 52)->symbol->name, "18442240474082181120_11_52");
  EXPECT_STREQ(m.make_fp_minus_inf(15, 112)->symbol->name,
               "340277174624079928635746076935438991360_15_112");
}

TEST_F(FpNumbers, NanIsPositiveWithTheTopBitOfTheSignificand) {
  EXPECT_EQ(m.make_fp_nan(8, 23), m.make_fp_bits_number(2143289344, 8, 23));
  EXPECT_STREQ(m.make_fp_nan(2, 2)->symbol->name, "14_2_2");
  EXPECT_STREQ(m.make_fp_nan(5, 10)->symbol->name, "32256_5_10");
  EXPECT_STREQ(m.make_fp_nan(11, 52)->symbol->name, "9221120237041090560_11_52");
  EXPECT_STREQ(m.make_fp_nan(15, 112)->symbol->name,
               "170138587312039964317873038467719495680_15_112");
}

TEST_F(FpNumbers, SpecialValuesAreMadeOnce) {
  EXPECT_EQ(m.make_fp_nan(8, 23), m.make_fp_nan(8, 23));
  EXPECT_EQ(m.make_fp_plus_inf(8, 23), m.make_fp_plus_inf(8, 23));
  EXPECT_EQ(m.make_fp_minus_inf(8, 23), m.make_fp_minus_inf(8, 23));
}

TEST_F(FpNumbers, OtherPatternsOfNanKeepTheirBits) {
  const Term_* t = m.make_fp_bits_number(2139095041, 8, 23);
  EXPECT_NE(t, m.make_fp_nan(8, 23));
  EXPECT_EQ(value_of(t), "2139095041");
}

TEST_F(FpNumbers, SpecialValuesOfAFormatTooSmallAreRefused) {
  const char* expected =
      "too small exponent and/or mantissa width for FP numbers: 1, 2 (min is 2, 2)";
  const auto before = sizes();
  EXPECT_EQ(error_of([&] { m.make_fp_plus_inf(1, 2); }), expected);
  EXPECT_EQ(error_of([&] { m.make_fp_minus_inf(1, 2); }), expected);
  EXPECT_EQ(error_of([&] { m.make_fp_nan(1, 2); }), expected);
  EXPECT_EQ(sizes(), before);
}

// --- Recognition ---

TEST_F(FpNumbers, NumeralsOfAllThreeKindsAreNumbers) {
  EXPECT_EQ(value_of(m.make_number(QNumber(1, 3))), "1/3");
  EXPECT_EQ(value_of(m.make_bv_number(5, 8)), "5");
  EXPECT_EQ(value_of(m.make_fp_bits_number(6, 8, 23)), "6");
  EXPECT_EQ(value_of(m.make_fp_nan(5, 10)), "32256");
  EXPECT_TRUE(m.is_number(m.make_fp_bits_number(6, 8, 23)->symbol, nullptr));
}

TEST_F(FpNumbers, OtherSymbolsAreNoNumbers) {
  m.make_fp_bits_number(6, 8, 23);
  QNumber value(77);
  EXPECT_FALSE(m.is_number(m.get_fprounding_even(), &value));
  EXPECT_FALSE(m.is_number(m.make_fp_neg_symbol(8, 23), &value));
  EXPECT_FALSE(m.is_number(m.make_symbol("5_8_23", m.get_fp_type(8, 23)), &value));
  EXPECT_EQ(value, QNumber(77));
}

// --- Out of memory ---

TEST_F(FpNumbers, FailedRequestMakesNoNumeral) {
  size_t k = 0;
  for (;; ++k) {
    TermManager fresh;
    const Term_* rounding = fresh.make_fprounding_even();
    const size_t symbols = fresh.get_signature()->size();
    const size_t terms = fresh.get_bank()->size();
    try {
      const testing::FailingMemory after(k);
      fresh.make_fp_rat_number(QNumber(1, 10), 15, 112, rounding);
      break;
    } catch (const std::bad_alloc&) {
    }
    EXPECT_EQ(fresh.get_signature()->size(), symbols) << "allocation " << k;
    EXPECT_EQ(fresh.get_bank()->size(), terms) << "allocation " << k;
    const Term_* t = fresh.make_fp_rat_number(QNumber(1, 10), 15, 112, rounding);
    EXPECT_STREQ(t->symbol->name, "85047745624057062624278117674093484442_15_112");
    EXPECT_TRUE(fresh.is_number(t->symbol, nullptr));
  }
  EXPECT_GT(k, 3U);
}

// Format (1, 1) is refused when checks are on, whether its type or the numeral is there or not.
TEST_F(FpNumbers, ANumeralOfATooSmallFormatIsRefusedAlsoWhenItIsThere) {
  const char* too_small =
      "too small exponent and/or mantissa width for FP numbers: 1, 1 (min is 2, 2)";
  m.set_typecheck_enabled(false);
  const Term_* t = m.make_fp_bits_number(5, 1, 1);
  EXPECT_STREQ(t->symbol->name, "5_1_1");
  for (int round = 0; round < 2; ++round) {
    m.set_typecheck_enabled(true);
    EXPECT_EQ(error_of([&] { m.make_fp_bits_number(5, 1, 1); }), too_small);
    m.set_typecheck_enabled(false);
    EXPECT_EQ(m.make_fp_bits_number(5, 1, 1), t);
  }
}

TEST_F(FpNumbers, APatternOfTooManyBitsIsRefusedAlsoWhenItIsThere) {
  m.set_typecheck_enabled(false);
  const Term_* t = m.make_fp_bits_number(256, 3, 4);
  m.set_typecheck_enabled(true);
  EXPECT_EQ(base_exception_of([&] { m.make_fp_bits_number(256, 3, 4); }),
            "the number 256 doesn't fit in 8 bits");
  m.set_typecheck_enabled(false);
  EXPECT_EQ(m.make_fp_bits_number(256, 3, 4), t);
}

// The user has put the type of the constant together; the numeral makes its format known.
TEST_F(FpNumbers, AConstantOfAHandBuiltTypeBecomesANumeralOfItsFormat) {
  const DataType* head = m.get_fp_type(2, 2)->get_component(0);
  const DataType* parameter = m.get_simple_type("3:4", /*only_existing=*/false);
  const DataType* type = m.get_compound_type({head, parameter});
  const Symbol* s = m.make_symbol("5_3_4", type);
  const Term_* t = m.make_fp_bits_number(5, 3, 4);
  EXPECT_EQ(t->symbol, s);
  size_t e = 0;
  size_t mantissa = 0;
  EXPECT_TRUE(m.is_fp_type(type, &e, &mantissa));
  EXPECT_EQ(e, 3U);
  EXPECT_EQ(mantissa, 4U);
  EXPECT_STREQ(m.make_fp_neg(t)->symbol->name, "`fpneg_3_4`");
}

TEST_F(FpNumbers, ANumeralThatLostItsNameIsMadeAnew) {
  const Term_* first = m.make_fp_bits_number(5, 3, 4);
  m.free_symbol(first->symbol);
  const Term_* second = m.make_fp_bits_number(5, 3, 4);
  EXPECT_NE(second, first);
  m.free_symbol(second->symbol);
  m.make_symbol("5_3_4", m.get_int_type());
  EXPECT_EQ(error_of([&] { m.make_fp_bits_number(5, 3, 4); }),
            "a symbol for 5_3_4 already exists, but it has the wrong type: Int");
}

}  // namespace
}  // namespace quill
