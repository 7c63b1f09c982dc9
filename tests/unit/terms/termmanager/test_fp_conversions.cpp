#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <string>

#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/manager_test.h"

namespace quill {
namespace {

class FpConversions : public testing::ManagerTest {
 protected:
  const DataType* type_of(const Term_* t) const { return t->type(); }

  const Term_* rm = m.make_fprounding_even();
  const Term_* single = constant("single", m.get_fp_type(8, 23));
};

TEST_F(FpConversions, CastIsNamedByBothFormats) {
  const Term_* t = m.make_fp_cast(11, 52, rm, single);
  EXPECT_STREQ(t->symbol->name, "`fpcast__8_23_11_52`");
  EXPECT_EQ(type_of(t), m.get_fp_type(11, 52));
  EXPECT_EQ(t->args[0], rm);
  EXPECT_EQ(t->args[1], single);
  size_t e1 = 0;
  size_t m1 = 0;
  size_t e2 = 0;
  size_t m2 = 0;
  EXPECT_TRUE(m.is_fp_cast(t->symbol, &e1, &m1, &e2, &m2));
  EXPECT_EQ(e1, 8U);
  EXPECT_EQ(m1, 23U);
  EXPECT_EQ(e2, 11U);
  EXPECT_EQ(m2, 52U);
}

TEST_F(FpConversions, CastToTheSameFormatIsBuilt) {
  EXPECT_STREQ(m.make_fp_cast(8, 23, rm, single)->symbol->name, "`fpcast__8_23_8_23`");
}

TEST_F(FpConversions, BitPatternHasOneBitMoreThanTheWidths) {
  const Term_* t = m.make_fp_as_ieeebv(single);
  EXPECT_EQ(type_of(t), m.get_bv_type(32));
  EXPECT_STREQ(t->symbol->name, "`fpasbv__8_23_32`");
  size_t e = 0;
  size_t significand = 0;
  EXPECT_TRUE(m.is_fp_as_ieeebv(t->symbol, &e, &significand));
  EXPECT_EQ(e, 8U);
  EXPECT_EQ(significand, 23U);
}

TEST_F(FpConversions, BitPatternOfTheRightWidthIsRead) {
  const Term_* t = m.make_fp_from_ieeebv(8, 23, bv("b", 32));
  EXPECT_STREQ(t->symbol->name, "`fpfromieeebv__32_8_23`");
  EXPECT_EQ(type_of(t), m.get_fp_type(8, 23));
}

TEST_F(FpConversions, BitPatternOfAnotherWidthOrKindIsRefused) {
  const Term_* b31 = bv("b31", 31);
  const Term_* b33 = bv("b33", 33);
  const auto before = sizes();
  EXPECT_EQ(error_of([&] { m.make_fp_from_ieeebv(8, 23, b31); }),
            "type error. term b31 is not of the correct BV type");
  EXPECT_EQ(error_of([&] { m.make_fp_from_ieeebv(8, 23, b33); }),
            "type error. term b33 is not of the correct BV type");
  EXPECT_EQ(error_of([&] { m.make_fp_from_ieeebv(8, 23, single); }),
            "type error. term single is not of the correct BV type");
  EXPECT_EQ(sizes(), before);
}

TEST_F(FpConversions, RealIsNoBitVector) {
  const Term_* r = constant("r", m.get_rat_type());
  const auto before = sizes();
  EXPECT_EQ(error_of([&] { m.make_fp_from_sbv(8, 23, rm, r); }), "type error. term r is not a BV");
  EXPECT_EQ(error_of([&] { m.make_fp_from_ubv(8, 23, rm, r); }), "type error. term r is not a BV");
  EXPECT_EQ(sizes(), before);
}

TEST_F(FpConversions, BitVectorIsNoFloatingPointValue) {
  const Term_* x = bv("x", 32);
  const auto before = sizes();
  const char* expected = "type error. term x is not a FP";
  EXPECT_EQ(error_of([&] { m.make_fp_cast(8, 23, rm, x); }), expected);
  EXPECT_EQ(error_of([&] { m.make_fp_to_bv(8, rm, x); }), expected);
  EXPECT_EQ(error_of([&] { m.make_fp_as_ieeebv(x); }), expected);
  EXPECT_EQ(sizes(), before);
}

TEST_F(FpConversions, NamesHaveADoubledUnderscore) {
  EXPECT_STREQ(m.make_fp_cast_symbol(8, 24, 11, 53)->name, "`fpcast__8_24_11_53`");
  EXPECT_STREQ(m.make_fp_to_bv_symbol(11, 52, 32)->name, "`fptobv__11_52_32`");
  EXPECT_STREQ(m.make_fp_as_ieeebv_symbol(8, 23)->name, "`fpasbv__8_23_32`");
  EXPECT_STREQ(m.make_fp_from_sbv_symbol(16, 8, 23)->name, "`fpfromsbv__16_8_23`");
  EXPECT_STREQ(m.make_fp_from_ubv_symbol(16, 8, 23)->name, "`fpfromubv__16_8_23`");
  EXPECT_STREQ(m.make_fp_from_ieeebv_symbol(8, 23)->name, "`fpfromieeebv__32_8_23`");
}

TEST_F(FpConversions, WrongRoundingModeIsFoundWhenTheSymbolIsThere) {
  const Term_* x = bv("x", 8);
  EXPECT_EQ(
      error_of([&] { m.make_fp_from_ubv(8, 23, x, x); }),
      "type error. term x has type (BitVec 8), but FPRounding was expected. (make_fp_from_ubv)");
  EXPECT_NE(find("`fpfromubv__8_8_23`"), nullptr);
}

TEST_F(FpConversions, OperandIsLookedAtBeforeTheTargetFormat) {
  const Term_* x = bv("x", 8);
  const char* too_small =
      "too small exponent and/or mantissa width for FP numbers: 1, 1 (min is 2, 2)";
  const auto before = sizes();
  EXPECT_EQ(error_of([&] { m.make_fp_cast(1, 1, rm, x); }), "type error. term x is not a FP");
  EXPECT_EQ(error_of([&] { m.make_fp_cast(1, 1, rm, single); }), too_small);
  EXPECT_EQ(error_of([&] { m.make_fp_from_sbv(1, 1, rm, single); }),
            "type error. term single is not a BV");
  EXPECT_EQ(error_of([&] { m.make_fp_from_sbv(1, 1, rm, x); }), too_small);
  EXPECT_EQ(error_of([&] { m.make_fp_from_ubv(1, 1, rm, x); }), too_small);
  EXPECT_EQ(sizes(), before);
}

TEST_F(FpConversions, SymbolOfARefusedFormatIsNotMade) {
  const size_t before = m.get_signature()->size();
  const char* too_small =
      "too small exponent and/or mantissa width for FP numbers: 1, 1 (min is 2, 2)";
  EXPECT_EQ(error_of([&] { m.make_fp_cast_symbol(1, 1, 8, 23); }), too_small);
  EXPECT_EQ(error_of([&] { m.make_fp_cast_symbol(8, 23, 1, 1); }), too_small);
  EXPECT_EQ(error_of([&] { m.make_fp_from_sbv_symbol(8, 1, 1); }), too_small);
  EXPECT_EQ(error_of([&] { m.make_fp_from_ubv_symbol(8, 1, 1); }), too_small);
  EXPECT_EQ(error_of([&] { m.make_fp_to_bv_symbol(1, 1, 8); }), too_small);
  EXPECT_EQ(error_of([&] { m.make_fp_as_ieeebv_symbol(1, 1); }), too_small);
  EXPECT_EQ(error_of([&] { m.make_fp_from_ieeebv_symbol(1, 1); }), too_small);
  EXPECT_EQ(m.get_signature()->size(), before);
}

TEST_F(FpConversions, FamiliesWithEqualNumbersAreApart) {
  const std::array symbols = {m.make_fp_from_sbv_symbol(8, 8, 8),
                              m.make_fp_from_ubv_symbol(8, 8, 8), m.make_fp_to_bv_symbol(8, 8, 8),
                              m.make_fp_cast_symbol(8, 8, 8, 8)};
  for (size_t i = 0; i < symbols.size(); ++i) {
    EXPECT_EQ(m.is_fp_from_sbv(symbols[i], nullptr, nullptr, nullptr), i == 0);
    EXPECT_EQ(m.is_fp_from_ubv(symbols[i], nullptr, nullptr, nullptr), i == 1);
    EXPECT_EQ(m.is_fp_to_bv(symbols[i], nullptr, nullptr, nullptr), i == 2);
    EXPECT_EQ(m.is_fp_cast(symbols[i], nullptr, nullptr, nullptr, nullptr), i == 3);
  }
}

TEST_F(FpConversions, DistinctNumbersGiveDistinctSymbols) {
  EXPECT_NE(m.make_fp_from_sbv_symbol(8, 5, 10), m.make_fp_from_sbv_symbol(8, 10, 5));
  EXPECT_NE(m.make_fp_from_sbv_symbol(8, 5, 10), m.make_fp_from_sbv_symbol(9, 5, 10));
  EXPECT_NE(m.make_fp_to_bv_symbol(5, 10, 8), m.make_fp_to_bv_symbol(10, 5, 8));
  // Patterns of one width.
  EXPECT_NE(m.make_fp_as_ieeebv_symbol(5, 10), m.make_fp_as_ieeebv_symbol(10, 5));
  EXPECT_NE(m.make_fp_from_ieeebv_symbol(5, 10), m.make_fp_from_ieeebv_symbol(10, 5));
}

TEST_F(FpConversions, CastsThereAndBackHaveOneHashAndAreKeptApart) {
  const Symbol* there = m.make_fp_cast_symbol(8, 23, 11, 52);
  const Symbol* back = m.make_fp_cast_symbol(11, 52, 8, 23);
  EXPECT_NE(there, back);
  EXPECT_EQ(m.make_fp_cast_symbol(8, 23, 11, 52), there);
  EXPECT_EQ(m.make_fp_cast_symbol(11, 52, 8, 23), back);
  size_t e1 = 0;
  size_t m1 = 0;
  size_t e2 = 0;
  size_t m2 = 0;
  EXPECT_TRUE(m.is_fp_cast(back, &e1, &m1, &e2, &m2));
  EXPECT_EQ(e1, 11U);
  EXPECT_EQ(m1, 52U);
  EXPECT_EQ(e2, 8U);
  EXPECT_EQ(m2, 23U);
}

}  // namespace
}  // namespace quill
