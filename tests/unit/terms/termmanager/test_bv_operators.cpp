#include <gtest/gtest.h>

#include <cstddef>
#include <iterator>
#include <new>
#include <string>

#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/failing_memory.h"
#include "tests/support/manager_test.h"

namespace quill {
namespace {

using BySymbol = hsh::HashMap<const Symbol*, size_t>;
using ByWidth = hsh::HashMap<size_t, const Symbol*>;

class BvOperators : public testing::ManagerTest {
 protected:
};

// --- Symbols and types ---

TEST_F(BvOperators, AnAdderIsMadeOnceForEachWidth) {
  const Symbol* add = m.make_bv_add_symbol(8);
  EXPECT_EQ(m.make_bv_add_symbol(8), add);
  EXPECT_STREQ(add->name, "`bvadd_8`");
  EXPECT_EQ(m.get_tag(add), 26);
  const DataType* bv8 = m.get_bv_type(8);
  EXPECT_EQ(add->type->num_components(), 4U);
  EXPECT_EQ(add->type->get_component(0), m.get_universe()->get_application_type());
  EXPECT_EQ(add->type->get_component(1), bv8);
  EXPECT_EQ(add->type->get_component(2), bv8);
  EXPECT_EQ(add->type->get_component(3), bv8);
  const Symbol* wider = m.make_bv_add_symbol(9);
  EXPECT_NE(wider, add);
  EXPECT_STREQ(wider->name, "`bvadd_9`");
}

TEST_F(BvOperators, RecogniserTellsTheWidthOfItsOwnFamilyOnly) {
  size_t w = 77;
  EXPECT_FALSE(m.is_bv_add(m.make_bv_sub_symbol(8), &w));
  EXPECT_EQ(w, 77U);
  EXPECT_TRUE(m.is_bv_add(m.make_bv_add_symbol(8), &w));
  EXPECT_EQ(w, 8U);
  EXPECT_TRUE(m.is_bv_add(m.make_bv_add_symbol(8), nullptr));
  EXPECT_FALSE(m.is_bv_add(m.make_bv_sub_symbol(8), nullptr));
}

TEST_F(BvOperators, UsersSymbolNamedLikeAnAdderIsNoAdder) {
  const DataType* bv8 = m.get_bv_type(8);
  const Symbol* s = m.make_symbol("bvadd_8", m.get_function_type({bv8, bv8}, bv8));
  EXPECT_FALSE(m.is_bv_add(s, nullptr));
  EXPECT_NE(m.make_bv_add_symbol(8), s);
}

TEST_F(BvOperators, ComparisonsAreBoolAndCompIsOneBit) {
  const Term_* a = bv("a", 8);
  const Term_* b = bv("b", 8);
  EXPECT_EQ(m.make_bv_ult(a, b)->type(), m.get_bool_type());
  EXPECT_EQ(m.make_bv_comp(a, b)->type(), m.get_bv_type(1));
}

TEST_F(BvOperators, CompMakesTheOneBitType) {
  const size_t before = m.get_universe()->size();
  const Symbol* s = m.make_bv_comp_symbol(8);
  // 1, (BitVec 1), 8, (BitVec 8) and the function type.
  EXPECT_EQ(m.get_universe()->size(), before + 5);
  EXPECT_EQ(s->get_output_type(), m.get_bv_type(1));
}

TEST_F(BvOperators, CompMakesTheOneBitTypeFirst) {
  TermManager fresh;
  const TypeUniverse& universe = *fresh.get_universe();
  const size_t before = universe.size();
  fresh.make_bv_comp_symbol(8);
  ASSERT_EQ(universe.size(), before + 5);
  EXPECT_EQ(universe.type(before)->to_str(), "1");
  EXPECT_EQ(universe.type(before + 1)->to_str(), "(BitVec 1)");
  EXPECT_EQ(universe.type(before + 2)->to_str(), "8");
  EXPECT_EQ(universe.type(before + 3)->to_str(), "(BitVec 8)");
  EXPECT_EQ(universe.type(before + 4)->to_str(), "(-> (BitVec 8) (BitVec 8) (BitVec 1))");
}

TEST_F(BvOperators, ConversionsToIntAreTagged69And70) {
  const Term_* x = bv("x", 16);
  const Term_* u = m.make_int_from_ubv(x);
  EXPECT_STREQ(u->symbol->name, "`ubv2int_16`");
  EXPECT_EQ(m.get_tag(u->symbol), 69);
  EXPECT_EQ(u->type(), m.get_int_type());
  const Term_* s = m.make_int_from_sbv(x);
  EXPECT_STREQ(s->symbol->name, "`sbv2int_16`");
  EXPECT_EQ(m.get_tag(s->symbol), 70);
  EXPECT_EQ(s->type(), m.get_int_type());
}

TEST_F(BvOperators, ConversionFromIntIsNamedWithOneUnderscore) {
  const Term_* t = m.make_int_to_bv(4, constant("i", m.get_int_type()));
  EXPECT_STREQ(t->symbol->name, "`int2bv_4`");
  EXPECT_EQ(m.get_tag(t->symbol), 71);
  EXPECT_EQ(t->type(), m.get_bv_type(4));
}

TEST_F(BvOperators, WidthZeroAndHugeWidthsAreNamedInDecimal) {
  EXPECT_STREQ(m.make_bv_not_symbol(0)->name, "`bvnot_0`");
  EXPECT_STREQ(m.make_bv_not_symbol(18446744073709551615U)->name, "`bvnot_18446744073709551615`");
}

// --- Refused operands ---

TEST_F(BvOperators, NotAndNegLeaveOutTheSpaceBehindTheTerm) {
  const Term_* r = constant("r", m.get_rat_type());
  EXPECT_EQ(error_of([&] { m.make_bv_not(r); }), "type error. term ris not a bit-vector");
  EXPECT_EQ(error_of([&] { m.make_bv_neg(r); }), "type error. term ris not a bit-vector");
}

TEST_F(BvOperators, BinaryOperatorsAndConversionsSpellItWithSpaces) {
  const Term_* r = constant("r", m.get_rat_type());
  const Term_* x = bv("x", 8);
  const char* expected = "type error. term r is not a bit vector";
  EXPECT_EQ(error_of([&] { m.make_bv_and(r, x); }), expected);
  EXPECT_EQ(error_of([&] { m.make_int_from_ubv(r); }), expected);
  EXPECT_EQ(error_of([&] { m.make_int_from_sbv(r); }), expected);
}

TEST_F(BvOperators, OffendingTermIsPrintedOneLevelDeep) {
  const Term_* i = constant("i", m.get_int_type());
  const Term_* sum = m.make_plus(m.make_plus(i, i), i);
  const std::string inner = std::to_string(sum->args[0]->id);
  EXPECT_EQ(error_of([&] { m.make_bv_not(sum); }),
            "type error. term (`+_int` #" + inner + " i)is not a bit-vector");
}

TEST_F(BvOperators, SecondOperandIsLeftToTheTypecheck) {
  const Term_* x = bv("x", 8);
  const Term_* r = constant("r", m.get_rat_type());
  EXPECT_EQ(find("`bvand_8`"), nullptr);
  EXPECT_EQ(error_of([&] { m.make_bv_and(x, r); }),
            "type error. term r has type Real, but (BitVec 8) was expected. (make_bv_and)");
  EXPECT_NE(find("`bvand_8`"), nullptr);
  EXPECT_TRUE(m.is_bv_and(find("`bvand_8`"), nullptr));
}

TEST_F(BvOperators, WidthIsThatOfTheFirstOperand) {
  const Term_* x = bv("x", 8);
  const Term_* y = bv("y", 16);
  EXPECT_EQ(error_of([&] { m.make_bv_add(x, y); }),
            "type error. term y has type (BitVec 16), but (BitVec 8) was expected. (make_bv_add)");
  EXPECT_NE(find("`bvadd_8`"), nullptr);
  EXPECT_EQ(find("`bvadd_16`"), nullptr);
}

TEST_F(BvOperators, ConversionFromIntMakesItsSymbolBeforeAnyCheck) {
  const Term_* r = constant("r", m.get_rat_type());
  EXPECT_EQ(error_of([&] { m.make_int_to_bv(4, r); }),
            "type error. term r has type Real, but Int was expected. (make_int_to_bv)");
  EXPECT_NE(find("`int2bv_4`"), nullptr);
}

// A compound that only looks like a bit-vector type passes the builder's check, with width 0, and
// shows what the builders call themselves in type errors.
TEST_F(BvOperators, ConversionsToIntCallThemselvesInOneWord) {
  const DataType* head = m.get_bv_type(8)->get_component(0);
  const Term_* x =
      constant("x", m.get_compound_type({head, m.get_simple_type("S", /*only_existing=*/false)}));
  EXPECT_EQ(error_of([&] { m.make_int_from_ubv(x); }),
            "type error. term x has type (BitVec S), but (BitVec 0) was expected. "
            "(make_int_fromubv)");
  EXPECT_EQ(error_of([&] { m.make_int_from_sbv(x); }),
            "type error. term x has type (BitVec S), but (BitVec 0) was expected. "
            "(make_int_fromsbv)");
}

TEST_F(BvOperators, ChecksOffBuildWhatIsAskedFor) {
  const Term_* x = bv("x", 8);
  const Term_* r = constant("r", m.get_rat_type());
  m.set_typecheck_enabled(false);
  const Term_* t = m.make_bv_and(x, r);
  EXPECT_STREQ(t->symbol->name, "`bvand_8`");
  EXPECT_EQ(t->args[1], r);
  EXPECT_EQ(error_of([&] { m.make_bv_and(r, x); }), "type error. term r is not a bit vector");
}

// --- The general forms ---

TEST_F(BvOperators, GeneralMakerFillsTheGivenMaps) {
  BySymbol by_symbol;
  ByWidth by_width;
  const Symbol* s =
      m.make_bv_symbol("mine", SymbolTag::BV_XOR, 12, 3, by_symbol, by_width, nullptr);
  EXPECT_STREQ(s->name, "`mine_12`");
  EXPECT_EQ(m.get_tag(s), SymbolTag::BV_XOR);
  EXPECT_EQ(s->type->to_str(), "(-> (BitVec 12) (BitVec 12) (BitVec 12) (BitVec 12))");
  EXPECT_EQ(by_symbol.find(s)->second, 12U);
  EXPECT_EQ(by_width.find(12)->second, s);
  EXPECT_FALSE(m.is_bv_xor(s, nullptr));
}

TEST_F(BvOperators, GeneralMakerTakesAResultType) {
  BySymbol by_symbol;
  ByWidth by_width;
  const Symbol* s = m.make_bv_symbol("mine", SymbolTag::BV_ULT, 5, 1, by_symbol, by_width,
                                     m.get_fprounding_type());
  EXPECT_EQ(s->type->to_str(), "(-> (BitVec 5) FPRounding)");
}

TEST_F(BvOperators, GeneralMakerAnswersFromTheMapAndLooksAtNothingElse) {
  BySymbol by_symbol;
  ByWidth by_width;
  const Symbol* stranger = m.make_symbol("stranger", m.get_int_type());
  by_width.insert({8, stranger});
  const auto before = sizes();
  EXPECT_EQ(m.make_bv_symbol("mine", SymbolTag::BV_XOR, 8, 2, by_symbol, by_width, nullptr),
            stranger);
  EXPECT_EQ(sizes(), before);
  EXPECT_EQ(by_symbol.find(stranger), by_symbol.end());
}

TEST_F(BvOperators, GeneralRecogniserReadsTheGivenMap) {
  BySymbol by_symbol;
  ByWidth by_width;
  const Symbol* s =
      m.make_bv_symbol("mine", SymbolTag::BV_XOR, 12, 2, by_symbol, by_width, nullptr);
  size_t w = 77;
  EXPECT_TRUE(m.is_bv_symbol(s, by_symbol, &w));
  EXPECT_EQ(w, 12U);
  EXPECT_TRUE(m.is_bv_symbol(s, by_symbol, nullptr));
  w = 77;
  EXPECT_FALSE(m.is_bv_symbol(m.make_bv_xor_symbol(12), by_symbol, &w));
  EXPECT_EQ(w, 77U);
  EXPECT_FALSE(m.is_bv_symbol(s, BySymbol(), nullptr));
}

TEST_F(BvOperators, GeneralMakerThatRunsOutOfMemoryFillsNeitherMap) {
  BySymbol by_symbol;
  ByWidth by_width;
  long failures = 0;
  for (size_t w = 1; w <= 100; ++w) {
    const auto make = [&] {
      return m.make_bv_symbol("mine", SymbolTag::BV_XOR, w, 2, by_symbol, by_width, nullptr);
    };
    for (size_t k = 0;; ++k) {
      const size_t before = m.get_signature()->size();
      try {
        const testing::FailingMemory after(k);
        make();
        break;
      } catch (const std::bad_alloc&) {
        ++failures;
      }
      EXPECT_EQ(by_width.find(w), by_width.end());
      EXPECT_EQ(m.get_signature()->size(), before);
      EXPECT_EQ(find(("`mine_" + std::to_string(w) + "`").c_str()), nullptr);
    }
    const Symbol* s = make();
    ASSERT_EQ(by_width.find(w)->second, s);
    ASSERT_EQ(by_symbol.find(s)->second, w);
  }
  EXPECT_EQ(std::distance(by_symbol.begin(), by_symbol.end()), 100);
  EXPECT_GT(failures, 100);
}

TEST_F(BvOperators, ManyWidthsKeepTheirSymbols) {
  for (size_t w = 1; w <= 500; ++w) m.make_bv_mul_symbol(w);
  for (size_t w = 1; w <= 500; ++w) {
    const Symbol* s = m.make_bv_mul_symbol(w);
    size_t width = 0;
    ASSERT_TRUE(m.is_bv_mul(s, &width));
    ASSERT_EQ(width, w);
    ASSERT_EQ(s->name, "`bvmul_" + std::to_string(w) + "`");
  }
}

// --- Types that somebody has put together ---

// The width is not known yet, so that no operator fits the operand. That must not be remembered.
TEST_F(BvOperators, AnOperandOfAHandBuiltTypeIsTakenOnceItsWidthIsKnown) {
  using Unary = const Term_* (TermManager::*)(const Term_*);
  using Binary = const Term_* (TermManager::*)(const Term_*, const Term_*);
  const Unary unary[] = {&TermManager::make_bv_not, &TermManager::make_bv_neg,
                         &TermManager::make_int_from_ubv, &TermManager::make_int_from_sbv};
  const Binary binary[] = {
      &TermManager::make_bv_and,  &TermManager::make_bv_or,   &TermManager::make_bv_xor,
      &TermManager::make_bv_ult,  &TermManager::make_bv_slt,  &TermManager::make_bv_ule,
      &TermManager::make_bv_sle,  &TermManager::make_bv_comp, &TermManager::make_bv_add,
      &TermManager::make_bv_sub,  &TermManager::make_bv_mul,  &TermManager::make_bv_udiv,
      &TermManager::make_bv_sdiv, &TermManager::make_bv_urem, &TermManager::make_bv_srem,
      &TermManager::make_bv_lshl, &TermManager::make_bv_lshr, &TermManager::make_bv_ashr};
  const DataType* head = m.get_bv_type(1)->get_component(0);
  const DataType* eight = m.get_simple_type("8", /*only_existing=*/false);
  const Term_* x = constant("x", m.get_compound_type({head, eight}));
  const std::string refused =
      "type error. term x has type (BitVec 8), but (BitVec 0) was expected. (";
  for (int round = 0; round < 2; ++round) {
    for (const Unary builder : unary) {
      EXPECT_EQ(error_of([&] { (m.*builder)(x); }).substr(0, refused.size()), refused);
    }
    for (const Binary builder : binary) {
      EXPECT_EQ(error_of([&] { (m.*builder)(x, x); }).substr(0, refused.size()), refused);
    }
  }
  EXPECT_EQ(m.get_bv_type(8), x->symbol->type);
  for (const Unary builder : unary) EXPECT_EQ((m.*builder)(x)->args[0], x);
  for (const Binary builder : binary) EXPECT_EQ((m.*builder)(x, x)->args[1], x);
  EXPECT_NE(find("`bvashr_8`"), nullptr);
}

}  // namespace
}  // namespace quill
