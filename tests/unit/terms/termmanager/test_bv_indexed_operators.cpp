#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/manager_test.h"

namespace quill {
namespace {

using BVIndex1 = TermManager::BVIndex1;
using BVIndex2 = TermManager::BVIndex2;

class BvIndexedOperators : public testing::ManagerTest {
 protected:
  const DataType* type_of(const Term_* t) const { return t->type(); }
  std::string name_of(const Term_* t) const { return t->symbol->name; }
};

// --- Extraction ---

TEST_F(BvIndexedOperators, EmptyRangeIsRefused) {
  const Term_* x = bv("x", 8);
  const auto before = sizes();
  EXPECT_EQ(base_exception_of([&] { m.make_bv_extract(3, 4, x); }),
            "bv extraction of an empty range: [3:4]");
  EXPECT_EQ(sizes(), before);
}

TEST_F(BvIndexedOperators, RangeBeyondTheWidthIsRefused) {
  const Term_* x = bv("x", 8);
  const auto before = sizes();
  EXPECT_EQ(base_exception_of([&] { m.make_bv_extract(8, 0, x); }),
            "range too large in bv extraction. arg has width 8, but range is [8:0]");
  EXPECT_EQ(base_exception_of([&] { m.make_bv_extract(9, 9, x); }),
            "range too large in bv extraction. arg has width 8, but range is [9:9]");
  EXPECT_EQ(sizes(), before);
  EXPECT_EQ(type_of(m.make_bv_extract(7, 0, x)), m.get_bv_type(8));
}

TEST_F(BvIndexedOperators, RangeErrorsAreNotCaughtAsErrorsOfTheManager) {
  const Term_* x = bv("x", 8);
  bool caught_as_base = false;
  try {
    m.make_bv_extract(8, 0, x);
  } catch (const TermManager::error&) {
  } catch (const Exception&) {
    caught_as_base = true;
  }
  EXPECT_TRUE(caught_as_base);
}

TEST_F(BvIndexedOperators, EmptyRangeIsFoundBeforeTheOperandsType) {
  const Term_* r = constant("r", m.get_rat_type());
  EXPECT_EQ(base_exception_of([&] { m.make_bv_extract(3, 4, r); }),
            "bv extraction of an empty range: [3:4]");
}

TEST_F(BvIndexedOperators, OperandsTypeIsFoundBeforeARangeTooLarge) {
  const Term_* r = constant("r", m.get_rat_type());
  EXPECT_EQ(error_of([&] { m.make_bv_extract(99, 4, r); }),
            "type error. term r is not a bit-vector");
}

TEST_F(BvIndexedOperators, EmptyRangeIsFoundBeforeARangeTooLarge) {
  const Term_* x = bv("x", 8);
  EXPECT_EQ(base_exception_of([&] { m.make_bv_extract(98, 99, x); }),
            "bv extraction of an empty range: [98:99]");
}

TEST_F(BvIndexedOperators, RangesAreCheckedAlsoWithoutChecks) {
  const Term_* x = bv("x", 8);
  m.set_typecheck_enabled(false);
  EXPECT_EQ(base_exception_of([&] { m.make_bv_extract(8, 0, x); }),
            "range too large in bv extraction. arg has width 8, but range is [8:0]");
}

TEST_F(BvIndexedOperators, ExtractionOfAWholeVectorOrOneBitIsBuilt) {
  const Term_* x = bv("x", 8);
  EXPECT_EQ(name_of(m.make_bv_extract(7, 0, x)), "`bvextract_7_0_8`");
  const Term_* bit = m.make_bv_extract(5, 5, x);
  EXPECT_EQ(name_of(bit), "`bvextract_5_5_8`");
  EXPECT_EQ(type_of(bit), m.get_bv_type(1));
}

TEST_F(BvIndexedOperators, ExtractionIsRecognisedWithAllThreeNumbers) {
  const Symbol* s = m.make_bv_extract_symbol(7, 0, 32);
  EXPECT_STREQ(s->name, "`bvextract_7_0_32`");
  EXPECT_EQ(s->type->to_str(), "(-> (BitVec 32) (BitVec 8))");
  EXPECT_EQ(m.make_bv_extract_symbol(7, 0, 32), s);
  size_t msb = 77;
  size_t lsb = 77;
  size_t w = 77;
  EXPECT_FALSE(m.is_bv_extract(m.make_bv_concat_symbol(7, 0), &msb, &lsb, &w));
  EXPECT_EQ(msb, 77U);
  EXPECT_EQ(lsb, 77U);
  EXPECT_EQ(w, 77U);
  EXPECT_TRUE(m.is_bv_extract(s, &msb, &lsb, &w));
  EXPECT_EQ(msb, 7U);
  EXPECT_EQ(lsb, 0U);
  EXPECT_EQ(w, 32U);
}

TEST_F(BvIndexedOperators, OneRangeOfTwoWidthsHasTwoSymbols) {
  EXPECT_NE(m.make_bv_extract_symbol(7, 0, 32), m.make_bv_extract_symbol(7, 0, 33));
}

// --- Concatenation ---

TEST_F(BvIndexedOperators, ConcatenationAddsTheWidths) {
  const Term_* t = m.make_bv_concat(bv("x", 8), bv("y", 4));
  EXPECT_EQ(type_of(t), m.get_bv_type(12));
  EXPECT_EQ(name_of(t), "`bvconcat_8_4`");
  EXPECT_EQ(t->symbol, m.make_bv_concat_symbol(8, 4));
  size_t w1 = 0;
  size_t w2 = 0;
  EXPECT_TRUE(m.is_bv_concat(t->symbol, &w1, &w2));
  EXPECT_EQ(w1, 8U);
  EXPECT_EQ(w2, 4U);
}

TEST_F(BvIndexedOperators, ConcatenationsOfOneSumAreApart) {
  EXPECT_NE(m.make_bv_concat_symbol(8, 4), m.make_bv_concat_symbol(4, 8));
}

TEST_F(BvIndexedOperators, ConcatenationRefusesEitherOperandWithTwoSpaces) {
  const Term_* x = bv("x", 8);
  const Term_* r = constant("r", m.get_rat_type());
  const Term_* i = constant("i", m.get_int_type());
  const auto before = sizes();
  EXPECT_EQ(error_of([&] { m.make_bv_concat(r, x); }), "type error. term r is not  a bit vector");
  EXPECT_EQ(error_of([&] { m.make_bv_concat(x, r); }), "type error. term r is not  a bit vector");
  EXPECT_EQ(error_of([&] { m.make_bv_concat(i, r); }), "type error. term i is not  a bit vector");
  EXPECT_EQ(sizes(), before);
}

// --- Rotation and extension ---

TEST_F(BvIndexedOperators, RotationLacksTheSpaceThatExtractionHas) {
  const Term_* r = constant("r", m.get_rat_type());
  EXPECT_EQ(error_of([&] { m.make_bv_extract(3, 0, r); }),
            "type error. term r is not a bit-vector");
  const char* expected = "type error. term ris not a bit-vector";
  EXPECT_EQ(error_of([&] { m.make_bv_rotate_left(3, r); }), expected);
  EXPECT_EQ(error_of([&] { m.make_bv_rotate_right(3, r); }), expected);
  EXPECT_EQ(error_of([&] { m.make_bv_zero_extend(3, r); }), expected);
  EXPECT_EQ(error_of([&] { m.make_bv_sign_extend(3, r); }), expected);
}

TEST_F(BvIndexedOperators, RotationIsNamedByAmountAndWidth) {
  const Term_* t = m.make_bv_rotate_left(3, bv("x", 16));
  EXPECT_EQ(name_of(t), "`bvrol_3_16`");
  EXPECT_EQ(type_of(t), m.get_bv_type(16));
}

TEST_F(BvIndexedOperators, AnyAmountOfRotationIsAnOperatorOfItsOwn) {
  const Term_* x = bv("x", 8);
  EXPECT_EQ(name_of(m.make_bv_rotate_left(0, x)), "`bvrol_0_8`");
  EXPECT_EQ(name_of(m.make_bv_rotate_left(8, x)), "`bvrol_8_8`");
  EXPECT_EQ(name_of(m.make_bv_rotate_right(100, x)), "`bvror_100_8`");
  EXPECT_NE(m.make_bv_rotate_left_symbol(0, 8), m.make_bv_rotate_left_symbol(8, 8));
}

TEST_F(BvIndexedOperators, ExtensionAddsItsBits) {
  const Term_* x = bv("x", 8);
  const Term_* t = m.make_bv_zero_extend(24, x);
  EXPECT_EQ(type_of(t), m.get_bv_type(32));
  EXPECT_EQ(name_of(t), "`bvzext_24_8`");
  EXPECT_EQ(t->symbol, m.make_bv_zero_extend_symbol(24, 8));
  const Term_* same = m.make_bv_sign_extend(0, x);
  EXPECT_EQ(type_of(same), m.get_bv_type(8));
  EXPECT_EQ(name_of(same), "`bvsext_0_8`");
}

TEST_F(BvIndexedOperators, ExtensionMakesTheResultTypeFirst) {
  for (const auto make :
       {&TermManager::make_bv_zero_extend_symbol, &TermManager::make_bv_sign_extend_symbol}) {
    TermManager fresh;
    const TypeUniverse& universe = *fresh.get_universe();
    const size_t before = universe.size();
    (fresh.*make)(3, 8);
    ASSERT_EQ(universe.size(), before + 5);
    EXPECT_EQ(universe.type(before)->to_str(), "11");
    EXPECT_EQ(universe.type(before + 1)->to_str(), "(BitVec 11)");
    EXPECT_EQ(universe.type(before + 2)->to_str(), "8");
    EXPECT_EQ(universe.type(before + 3)->to_str(), "(BitVec 8)");
    EXPECT_EQ(universe.type(before + 4)->to_str(), "(-> (BitVec 8) (BitVec 11))");
  }
}

TEST_F(BvIndexedOperators, EqualParametersGiveTheSameSymbolInEachFamily) {
  EXPECT_EQ(m.make_bv_rotate_left_symbol(3, 8), m.make_bv_rotate_left_symbol(3, 8));
  EXPECT_EQ(m.make_bv_rotate_right_symbol(3, 8), m.make_bv_rotate_right_symbol(3, 8));
  EXPECT_EQ(m.make_bv_zero_extend_symbol(3, 8), m.make_bv_zero_extend_symbol(3, 8));
  EXPECT_EQ(m.make_bv_sign_extend_symbol(3, 8), m.make_bv_sign_extend_symbol(3, 8));
  EXPECT_EQ(m.make_bv_concat_symbol(3, 8), m.make_bv_concat_symbol(3, 8));
  EXPECT_NE(m.make_bv_rotate_left_symbol(3, 8), m.make_bv_rotate_left_symbol(8, 3));
}

// --- Keys whose hashes collide ---

TEST_F(BvIndexedOperators, KeysOfEqualHashAreKeptApart) {
  // (1 << 32) + 0 == (0 << 32) + (1 << 32)
  const Symbol* a = m.make_bv_rotate_left_symbol(1, 0);
  const Symbol* b = m.make_bv_rotate_left_symbol(0, size_t{1} << 32);
  EXPECT_NE(a, b);
  EXPECT_STREQ(b->name, "`bvrol_0_4294967296`");
  size_t k = 77;
  size_t w = 77;
  EXPECT_TRUE(m.is_bv_rotate_left(b, &k, &w));
  EXPECT_EQ(k, 0U);
  EXPECT_EQ(w, size_t{1} << 32);
  // (0 << 20) + (1 << 21) == (1 << 20) + (1 << 20)
  const Symbol* c = m.make_bv_extract_symbol(1, 0, size_t{1} << 21);
  const Symbol* d = m.make_bv_extract_symbol(1, 1, size_t{1} << 20);
  EXPECT_NE(c, d);
}

// --- The general forms ---

TEST_F(BvIndexedOperators, GeneralMakerFillsTheGivenMaps) {
  hsh::HashMap<const Symbol*, BVIndex1> by_symbol;
  hsh::HashMap<BVIndex1, const Symbol*> by_key;
  const Symbol* s =
      m.make_bv_symbol("mine", SymbolTag::BV_ROTATE_LEFT, 5, 12, 2, by_symbol, by_key, nullptr);
  EXPECT_STREQ(s->name, "`mine_5_12`");
  EXPECT_EQ(m.get_tag(s), SymbolTag::BV_ROTATE_LEFT);
  EXPECT_EQ(s->type->to_str(), "(-> (BitVec 12) (BitVec 12) (BitVec 12))");
  EXPECT_EQ(by_symbol.find(s)->second, (BVIndex1{5, 12}));
  EXPECT_EQ(by_key.find({5, 12})->second, s);
  EXPECT_EQ(
      m.make_bv_symbol("other", SymbolTag::BV_ROTATE_LEFT, 5, 12, 2, by_symbol, by_key, nullptr),
      s);
  EXPECT_FALSE(m.is_bv_rotate_left(s, nullptr, nullptr));
}

TEST_F(BvIndexedOperators, GeneralMakerTakesAResultType) {
  hsh::HashMap<const Symbol*, BVIndex1> by_symbol;
  hsh::HashMap<BVIndex1, const Symbol*> by_key;
  const Symbol* s = m.make_bv_symbol("mine", SymbolTag::BV_ZERO_EXTEND, 5, 12, 1, by_symbol, by_key,
                                     m.get_int_type());
  EXPECT_EQ(s->type->to_str(), "(-> (BitVec 12) Int)");
}

TEST_F(BvIndexedOperators, GeneralRecogniserOfTwoNumbersFillsWhatIsGiven) {
  hsh::HashMap<const Symbol*, BVIndex1> by_symbol;
  const Symbol* s = m.make_symbol("s", m.get_int_type());
  by_symbol.insert({s, {5, 12}});
  size_t first = 77;
  size_t second = 77;
  EXPECT_TRUE(m.is_bv_symbol(s, by_symbol, &first, nullptr));
  EXPECT_EQ(first, 5U);
  EXPECT_TRUE(m.is_bv_symbol(s, by_symbol, nullptr, &second));
  EXPECT_EQ(second, 12U);
  EXPECT_TRUE(m.is_bv_symbol(s, by_symbol, nullptr, nullptr));
  first = second = 77;
  EXPECT_FALSE(m.is_bv_symbol(m.make_bv_rotate_left_symbol(5, 12), by_symbol, &first, &second));
  EXPECT_EQ(first, 77U);
  EXPECT_EQ(second, 77U);
}

TEST_F(BvIndexedOperators, GeneralRecogniserOfThreeNumbersFillsWhatIsGiven) {
  hsh::HashMap<const Symbol*, BVIndex2> by_symbol;
  const Symbol* s = m.make_symbol("s", m.get_int_type());
  by_symbol.insert({s, {5, 12, 17}});
  size_t first = 77;
  size_t second = 77;
  size_t third = 77;
  EXPECT_TRUE(m.is_bv_symbol(s, by_symbol, &first, nullptr, nullptr));
  EXPECT_EQ(first, 5U);
  EXPECT_TRUE(m.is_bv_symbol(s, by_symbol, nullptr, &second, nullptr));
  EXPECT_EQ(second, 12U);
  EXPECT_TRUE(m.is_bv_symbol(s, by_symbol, nullptr, nullptr, &third));
  EXPECT_EQ(third, 17U);
  first = second = third = 77;
  EXPECT_FALSE(m.is_bv_symbol(m.make_bv_concat_symbol(5, 12), by_symbol, &first, &second, &third));
  EXPECT_EQ(first, 77U);
  EXPECT_EQ(second, 77U);
  EXPECT_EQ(third, 77U);
}

}  // namespace
}  // namespace quill
