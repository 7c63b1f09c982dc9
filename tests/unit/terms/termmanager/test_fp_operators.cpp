#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <string>

#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/manager_test.h"

namespace quill {
namespace {

using ByFormat = hsh::HashMap<IEEEFloat::format, const Symbol*>;
using BySymbol = hsh::HashMap<const Symbol*, IEEEFloat::format>;

class FpOperators : public testing::ManagerTest {
 protected:
};

// --- Symbols and types ---

TEST_F(FpOperators, AnAdderIsMadeOnceForEachFormat) {
  const Symbol* add = m.make_fp_add_symbol(8, 24);
  EXPECT_EQ(m.make_fp_add_symbol(8, 24), add);
  EXPECT_STREQ(add->name, "`fpadd_8_24`");
  EXPECT_EQ(m.get_tag(add), 47);
  const DataType* type = m.get_fp_type(8, 24);
  EXPECT_EQ(add->type->num_components(), 5U);
  EXPECT_EQ(add->type->get_component(0), m.get_universe()->get_application_type());
  EXPECT_EQ(add->type->get_component(1), m.get_fprounding_type());
  EXPECT_EQ(add->type->get_component(2), type);
  EXPECT_EQ(add->type->get_component(3), type);
  EXPECT_EQ(add->type->get_component(4), type);
  EXPECT_NE(m.make_fp_add_symbol(24, 8), add);
}

TEST_F(FpOperators, NamesHaveSingleUnderscores) {
  EXPECT_STREQ(m.make_fp_sqrt_symbol(11, 53)->name, "`fpsqrt_11_53`");
  EXPECT_STREQ(m.make_fp_abs_symbol(11, 53)->name, "`fpabs_11_53`");
  EXPECT_STREQ(m.make_fp_round_to_int_symbol(11, 53)->name, "`fproundtoint_11_53`");
  EXPECT_STREQ(m.make_fp_isnan_symbol(5, 11)->name, "`fpisnan_5_11`");
  EXPECT_STREQ(m.make_fp_neg_symbol(5, 11)->name, "`fpneg_5_11`");
}

TEST_F(FpOperators, ComparisonsAreBoolAndMinIsOfTheOperandsType) {
  const Term_* a = fp("a", 8, 23);
  const Term_* b = fp("b", 8, 23);
  EXPECT_EQ(m.make_fp_lt(a, b)->type(), m.get_bool_type());
  EXPECT_EQ(m.make_fp_min(a, b)->type(), m.get_fp_type(8, 23));
}

TEST_F(FpOperators, RecogniserWritesOnlyWhatIsAskedFor) {
  const Symbol* s = m.make_fp_equal_symbol(8, 23);
  size_t e = 77;
  size_t significand = 77;
  EXPECT_FALSE(m.is_fp_lt(s, &e, &significand));
  EXPECT_EQ(e, 77U);
  EXPECT_EQ(significand, 77U);
  EXPECT_TRUE(m.is_fp_equal(s, nullptr, &significand));
  EXPECT_EQ(significand, 23U);
  EXPECT_TRUE(m.is_fp_equal(s, &e, nullptr));
  EXPECT_EQ(e, 8U);
  EXPECT_TRUE(m.is_fp_equal(s, nullptr, nullptr));
}

TEST_F(FpOperators, FormatsOfEqualHashAreKeptApart) {
  // 2 << 32 | 3 == 2 << 32 | (2 << 32 | 3)
  const Symbol* a = m.make_fp_neg_symbol(2, 3);
  const Symbol* b = m.make_fp_neg_symbol(2, (size_t{2} << 32) + 3);
  EXPECT_NE(a, b);
  EXPECT_STREQ(b->name, "`fpneg_2_8589934595`");
}

TEST_F(FpOperators, FormatBelowTheSmallestIsRefusedAndMakesNothing) {
  const auto before = sizes();
  EXPECT_EQ(error_of([&] { m.make_fp_add_symbol(1, 5); }),
            "too small exponent and/or mantissa width for FP numbers: 1, 5 (min is 2, 2)");
  EXPECT_EQ(error_of([&] { m.make_fp_isnan_symbol(5, 1); }),
            "too small exponent and/or mantissa width for FP numbers: 5, 1 (min is 2, 2)");
  EXPECT_EQ(sizes(), before);
  m.set_typecheck_enabled(false);
  EXPECT_STREQ(m.make_fp_add_symbol(1, 5)->name, "`fpadd_1_5`");
}

// --- Refused operands ---

TEST_F(FpOperators, BitVectorIsNoFloatingPointValue) {
  const Term_* x = constant("x", m.get_bv_type(32));
  EXPECT_EQ(error_of([&] { m.make_fp_isnan(x); }), "type error. term x is not a FP");
  EXPECT_EQ(find("`fpisnan_8_23`"), nullptr);
}

TEST_F(FpOperators, FormatIsThatOfTheFirstFloatingPointOperand) {
  const Term_* rm = m.make_fprounding_even();
  const Term_* a = fp("a", 8, 23);
  const Term_* b = fp("b", 11, 52);
  EXPECT_EQ(
      error_of([&] { m.make_fp_add(rm, b, a); }),
      "type error. term a has type (FP |8:23|), but (FP |11:52|) was expected. (make_fp_add)");
  EXPECT_NE(find("`fpadd_11_52`"), nullptr);
  EXPECT_EQ(find("`fpadd_8_23`"), nullptr);
  EXPECT_EQ(
      error_of([&] { m.make_fp_max(a, b); }),
      "type error. term b has type (FP |11:52|), but (FP |8:23|) was expected. (make_fp_max)");
  EXPECT_NE(find("`fpmax_8_23`"), nullptr);
}

TEST_F(FpOperators, WrongRoundingModeIsFoundWhenTheSymbolIsThere) {
  const Term_* a = fp("a", 8, 23);
  EXPECT_EQ(error_of([&] { m.make_fp_sqrt(a, a); }),
            "type error. term a has type (FP |8:23|), but FPRounding was expected. (make_fp_sqrt)");
  EXPECT_NE(find("`fpsqrt_8_23`"), nullptr);
}

TEST_F(FpOperators, AnyTermOfTheRoundingTypeIsARoundingMode) {
  const Term_* rm = constant("rm", m.get_fprounding_type());
  const Term_* a = fp("a", 8, 23);
  const Term_* t = m.make_fp_round_to_int(rm, a);
  EXPECT_EQ(t->args[0], rm);
  EXPECT_EQ(t->args[1], a);
}

// --- Rounding modes ---

TEST_F(FpOperators, RoundingModesAreFourConstantsWithoutATag) {
  const std::array symbols = {m.get_fprounding_even(), m.get_fprounding_zero(),
                              m.get_fprounding_plus_inf(), m.get_fprounding_minus_inf()};
  const std::array names = {"`fprounding_even`", "`fprounding_zero`", "`fprounding_plus_inf`",
                            "`fprounding_minus_inf`"};
  for (size_t i = 0; i < 4; ++i) {
    EXPECT_STREQ(symbols[i]->name, names[i]);
    EXPECT_EQ(m.get_tag(symbols[i]), 0);
    EXPECT_EQ(symbols[i]->type, m.get_fprounding_type());
    EXPECT_EQ(symbols[i]->arity, 0U);
    EXPECT_EQ(m.is_fprounding_even(symbols[i]), i == 0);
    EXPECT_EQ(m.is_fprounding_zero(symbols[i]), i == 1);
    EXPECT_EQ(m.is_fprounding_plus_inf(symbols[i]), i == 2);
    EXPECT_EQ(m.is_fprounding_minus_inf(symbols[i]), i == 3);
  }
}

TEST_F(FpOperators, MakingARoundingSymbolGivesTheStoredOne) {
  EXPECT_EQ(m.make_fprounding_even_symbol(), m.get_fprounding_even());
  EXPECT_EQ(m.make_fprounding_zero_symbol(), m.get_fprounding_zero());
  EXPECT_EQ(m.make_fprounding_plus_inf_symbol(), m.get_fprounding_plus_inf());
  EXPECT_EQ(m.make_fprounding_minus_inf_symbol(), m.get_fprounding_minus_inf());
}

TEST_F(FpOperators, RoundingModeHasOneTerm) {
  EXPECT_EQ(m.make_fprounding_even(), m.make_fprounding_even());
  EXPECT_EQ(m.make_fprounding_even()->symbol, m.get_fprounding_even());
  EXPECT_EQ(m.make_fprounding_zero()->symbol, m.get_fprounding_zero());
  EXPECT_EQ(m.make_fprounding_plus_inf()->symbol, m.get_fprounding_plus_inf());
  EXPECT_EQ(m.make_fprounding_minus_inf()->symbol, m.get_fprounding_minus_inf());
}

TEST_F(FpOperators, RoundingModesAreRecognisedByIdentity) {
  EXPECT_TRUE(m.is_fprounding_zero(m.get_fprounding_zero()));
  EXPECT_FALSE(m.is_fprounding_zero(m.get_fprounding_even()));
  EXPECT_FALSE(m.is_fprounding_even(m.make_symbol("fprounding_even", m.get_fprounding_type())));
}

// --- The general forms ---

TEST_F(FpOperators, KindOfTheGeneralMakerIsASetOfTwoBits) {
  const std::array types = {"(-> (FP |5:10|) (FP |5:10|) (FP |5:10|))",
                            "(-> (FP |5:10|) (FP |5:10|) Bool)",
                            "(-> FPRounding (FP |5:10|) (FP |5:10|) (FP |5:10|))",
                            "(-> FPRounding (FP |5:10|) (FP |5:10|) Bool)"};
  for (int kind = 0; kind < 4; ++kind) {
    ByFormat by_format;
    BySymbol by_symbol;
    const std::string base = "mine" + std::to_string(kind);
    const Symbol* s =
        m.make_fp_symbol(base.c_str(), SymbolTag::FP_MIN, kind, by_format, by_symbol, 5, 10);
    EXPECT_EQ(s->name, "`" + base + "_5_10`");
    EXPECT_EQ(m.get_tag(s), SymbolTag::FP_MIN);
    EXPECT_EQ(s->type->to_str(), types[static_cast<size_t>(kind)]);
    EXPECT_EQ(by_format.find({5, 10})->second, s);
    EXPECT_EQ(by_symbol.find(s)->second, (IEEEFloat::format{5, 10}));
    EXPECT_EQ(m.make_fp_symbol("another", SymbolTag::FP_MAX, kind, by_format, by_symbol, 5, 10), s);
    EXPECT_FALSE(m.is_fp_min(s, nullptr, nullptr));
  }
}

TEST_F(FpOperators, GeneralMakerOfPredicates) {
  ByFormat by_format;
  BySymbol by_symbol;
  const Symbol* s = m.make_fp_is_symbol("mine", SymbolTag::FP_ISNAN, by_format, by_symbol, 5, 10);
  EXPECT_STREQ(s->name, "`mine_5_10`");
  EXPECT_EQ(m.get_tag(s), SymbolTag::FP_ISNAN);
  EXPECT_EQ(s->type->to_str(), "(-> (FP |5:10|) Bool)");
  EXPECT_EQ(by_format.find({5, 10})->second, s);
  EXPECT_EQ(by_symbol.find(s)->second, (IEEEFloat::format{5, 10}));
  EXPECT_EQ(m.make_fp_is_symbol("another", SymbolTag::FP_ISINF, by_format, by_symbol, 5, 10), s);
  EXPECT_FALSE(m.is_fp_isnan(s, nullptr, nullptr));
}

TEST_F(FpOperators, GeneralRecogniserReadsTheGivenMap) {
  BySymbol by_symbol;
  const Symbol* s = m.make_symbol("s", m.get_int_type());
  by_symbol.insert({s, {5, 10}});
  size_t e = 77;
  size_t significand = 77;
  EXPECT_TRUE(m.is_fp_symbol(by_symbol, s, &e, nullptr));
  EXPECT_EQ(e, 5U);
  EXPECT_TRUE(m.is_fp_symbol(by_symbol, s, nullptr, &significand));
  EXPECT_EQ(significand, 10U);
  EXPECT_TRUE(m.is_fp_symbol(by_symbol, s, nullptr, nullptr));
  e = significand = 77;
  EXPECT_FALSE(m.is_fp_symbol(by_symbol, m.make_fp_neg_symbol(5, 10), &e, &significand));
  EXPECT_EQ(e, 77U);
  EXPECT_EQ(significand, 77U);
}

}  // namespace
}  // namespace quill
