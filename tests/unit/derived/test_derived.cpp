#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "quill/derived/derived.h"
#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/manager_test.h"

namespace quill {
namespace {

class Derived : public testing::ManagerTest {
 protected:
  // true and false have the ids 0 and 1.
  const Term_* const p = constant("p", m.get_bool_type());  // 2
  const Term_* const q = constant("q", m.get_bool_type());  // 3
  const Term_* const r = constant("r", m.get_bool_type());  // 4
  const Term_* const i = constant("i", m.get_int_type());   // 5
  const Term_* const j = constant("j", m.get_int_type());   // 6
  const Term_* const k = constant("k", m.get_int_type());   // 7
  const Term_* const x = constant("x", m.get_rat_type());   // 8
  const Term_* const y = constant("y", m.get_rat_type());   // 9
  const Term_* const b = constant("b", m.get_bv_type(8));   // 10
  const Term_* const c = constant("c", m.get_bv_type(8));   // 11
};

// --- Expansions ---

TEST_F(Derived, Implies) { EXPECT_EQ(make_implies(m, p, q)->to_str(), "(`or` (`not` p) q)"); }

TEST_F(Derived, Xor) { EXPECT_EQ(make_xor(m, p, q)->to_str(), "(`not` (`iff` p q))"); }

TEST_F(Derived, EqualsOfBoolIsIff) { EXPECT_EQ(make_equals(m, p, q)->to_str(), "(`iff` p q)"); }

TEST_F(Derived, EqualsOfOtherTypesIsTheirEquality) {
  EXPECT_EQ(make_equals(m, i, j)->to_str(), "(`=_int` i j)");
  EXPECT_EQ(make_equals(m, i, x)->to_str(), "(`=_rat` i x)");
  EXPECT_EQ(make_equals(m, b, c)->to_str(), "(`=_(BitVec 8)` b c)");
}

TEST_F(Derived, DistinctOfFewerThanTwoIsTrue) {
  EXPECT_EQ(make_distinct(m, TermSpan()), m.make_true());
  EXPECT_EQ(make_distinct(m, {i}), m.make_true());
}

TEST_F(Derived, DistinctOfTwo) {
  EXPECT_EQ(make_distinct(m, {i, j})->to_str(), "(`not` (`=_int` i j))");
  EXPECT_EQ(make_distinct(m, {p, q})->to_str(), "(`not` (`iff` p q))");
  EXPECT_EQ(make_distinct(m, {i, x})->to_str(), "(`not` (`=_rat` i x))");
}

TEST_F(Derived, DistinctGoesThroughThePairsInOrder) {
  EXPECT_EQ(make_distinct(m, {i, j, k})->to_str(),
            "(`and` (`and` (`not` (`=_int` i j)) (`not` (`=_int` i k))) (`not` (`=_int` j k)))");
}

TEST_F(Derived, DistinctOfFourHasSixPairs) {
  EXPECT_EQ(make_distinct(m, {b, c, b, c})->to_str(),
            "(`and` (`and` (`and` (`and` (`and` #13=(`not` (`=_(BitVec 8)` b c)) "
            "(`not` (`=_(BitVec 8)` b b))) #13) (`not` (`=_(BitVec 8)` c b))) "
            "(`not` (`=_(BitVec 8)` c c))) #13)");
}

TEST_F(Derived, IteOfBool) {
  EXPECT_EQ(make_ite(m, p, q, r)->to_str(), "(`and` (`or` (`not` p) q) (`or` p r))");
}

TEST_F(Derived, IteOfOtherTypesIsTheirIfThenElse) {
  EXPECT_EQ(make_ite(m, p, i, j)->to_str(), "(`ite_int` p i j)");
  EXPECT_EQ(make_ite(m, p, x, i)->to_str(), "(`ite_rat` p x i)");
  EXPECT_EQ(make_ite(m, p, b, c)->to_str(), "(`ite_(BitVec 8)` p b c)");
}

TEST_F(Derived, Comparisons) {
  EXPECT_EQ(make_geq(m, i, j)->to_str(), "(`<=_int` j i)");
  EXPECT_EQ(make_lt(m, i, j)->to_str(), "(`not` (`<=_int` j i))");
  EXPECT_EQ(make_gt(m, i, j)->to_str(), "(`not` (`<=_int` i j))");
  EXPECT_EQ(make_geq(m, i, x)->to_str(), "(`<=_rat` x i)");
  EXPECT_EQ(make_lt(m, x, i)->to_str(), "(`not` (`<=_rat` i x))");
  EXPECT_EQ(make_gt(m, x, y)->to_str(), "(`not` (`<=_rat` x y))");
}

TEST_F(Derived, Negation) {
  EXPECT_EQ(make_minus(m, i)->to_str(), "(`*_int` -1 i)");
  EXPECT_EQ(make_minus(m, x)->to_str(), "(`*_rat` -1 x)");
}

TEST_F(Derived, NegatedNumeralIsAProduct) {
  EXPECT_EQ(make_minus(m, m.make_number(3))->to_str(), "(`*_int` -1 3)");
}

TEST_F(Derived, Subtraction) {
  EXPECT_EQ(make_minus(m, i, j)->to_str(), "(`+_int` i (`*_int` -1 j))");
  EXPECT_EQ(make_minus(m, x, y)->to_str(), "(`+_rat` x (`*_rat` -1 y))");
  EXPECT_EQ(make_minus(m, i, x)->to_str(), "(`+_rat` i (`*_rat` -1 x))");
}

TEST_F(Derived, SubtractingAnIntFromARealNegatesOverInt) {
  EXPECT_EQ(make_minus(m, x, i)->to_str(), "(`+_rat` x (`*_int` -1 i))");
}

TEST_F(Derived, IsInt) { EXPECT_EQ(make_is_int(m, x)->to_str(), "(`=_rat` x (`floor` x))"); }

TEST_F(Derived, AndFoldsFromTheLeft) {
  EXPECT_EQ(make_and(m, {p, q})->to_str(), "(`and` p q)");
  EXPECT_EQ(make_and(m, {p, q, r})->to_str(), "(`and` (`and` p q) r)");
  EXPECT_EQ(make_or(m, {p, q, r, p})->to_str(), "(`or` (`or` (`or` p q) r) p)");
}

TEST_F(Derived, PlusAndTimesFoldFromTheLeft) {
  EXPECT_EQ(make_plus(m, {i, j, k})->to_str(), "(`+_int` (`+_int` i j) k)");
  EXPECT_EQ(make_times(m, {i, j, k})->to_str(), "(`*_int` (`*_int` i j) k)");
}

TEST_F(Derived, SumsTurnRealFromTheFirstRealOn) {
  EXPECT_EQ(make_plus(m, {i, j, x, k})->to_str(), "(`+_rat` (`+_rat` (`+_int` i j) x) k)");
}

TEST_F(Derived, ListOfOneTermIsTheTerm) {
  EXPECT_EQ(make_and(m, {p}), p);
  EXPECT_EQ(make_or(m, {p}), p);
  EXPECT_EQ(make_plus(m, {x}), x);
  EXPECT_EQ(make_times(m, {i}), i);
}

TEST_F(Derived, EmptyListIsTheNeutralElement) {
  EXPECT_EQ(make_and(m, TermSpan()), m.make_true());
  EXPECT_EQ(make_or(m, TermSpan()), m.make_false());
  EXPECT_EQ(make_plus(m, TermSpan()), m.make_number(0));
  EXPECT_EQ(make_times(m, TermSpan()), m.make_number(1));
}

TEST_F(Derived, NonEmptySumsMakeNoNumeral) {
  make_plus(m, {i, j});
  make_times(m, {i, j});
  EXPECT_EQ(m.get_signature()->get_symbol("0"), nullptr);
  EXPECT_EQ(m.get_signature()->get_symbol("1"), nullptr);
}

TEST_F(Derived, ListsMayBeVectors) {
  const std::vector<const Term_*> terms{p, q, r};
  EXPECT_EQ(make_and(m, terms), make_and(m, {p, q, r}));
  EXPECT_EQ(make_distinct(m, terms), make_distinct(m, {p, q, r}));
}

TEST_F(Derived, NothingIsSimplified) {
  EXPECT_EQ(make_implies(m, p, p)->to_str(), "(`or` (`not` p) p)");
  EXPECT_EQ(make_minus(m, make_minus(m, i))->to_str(), "(`*_int` -1 (`*_int` -1 i))");
  EXPECT_EQ(make_distinct(m, {i, i})->to_str(), "(`not` (`=_int` i i))");
  EXPECT_EQ(make_and(m, {m.make_true(), p})->to_str(), "(`and` `true` p)");
}

// --- The order in which terms come into being; the next free id is 12 ---

TEST_F(Derived, ImpliesMakesTheNegationFirst) {
  EXPECT_EQ(make_implies(m, p, q)->id, 13U);
  EXPECT_EQ(m.make_not(p)->id, 12U);
}

TEST_F(Derived, IteMakesTheThenPartFirst) {
  EXPECT_EQ(make_ite(m, p, q, r)->to_shallow_str(), "(`and` #13 #14)");
  EXPECT_EQ(m.debug_get_term(12)->to_str(), "(`not` p)");
  EXPECT_EQ(m.debug_get_term(13)->to_str(), "(`or` (`not` p) q)");
  EXPECT_EQ(m.debug_get_term(14)->to_str(), "(`or` p r)");
}

TEST_F(Derived, SubtractionMakesTheNumeralThenTheProductThenTheSum) {
  EXPECT_EQ(make_minus(m, i, j)->id, 14U);
  EXPECT_EQ(m.debug_get_term(12)->to_str(), "-1");
  EXPECT_EQ(m.debug_get_term(13)->to_str(), "(`*_int` -1 j)");
}

TEST_F(Derived, IsIntMakesTheFloorFirst) {
  EXPECT_EQ(make_is_int(m, x)->to_shallow_str(), "(`=_rat` x #12)");
}

TEST_F(Derived, DistinctConjoinsEachPairBeforeTheNext) {
  make_distinct(m, {i, j, k});
  const char* const expected[] = {
      "(`=_int` i j)",   "(`not` #12)",   "(`=_int` i k)", "(`not` #14)",
      "(`and` #13 #15)", "(`=_int` j k)", "(`not` #17)",   "(`and` #16 #18)",
  };
  for (unsigned long n = 0; n < 8; ++n) {
    EXPECT_EQ(m.debug_get_term(12 + n)->to_shallow_str(), expected[n]);
  }
}

// --- Refused requests ---

TEST_F(Derived, ErrorsAreThoseOfTheBuilders) {
  EXPECT_EQ(error_of([&] { make_implies(m, i, p); }),
            "type error. term i has type Int, but Bool was expected. (make_not)");
  EXPECT_EQ(error_of([&] { make_implies(m, p, i); }),
            "type error. term i has type Int, but Bool was expected. (make_or)");
  EXPECT_EQ(error_of([&] { make_lt(m, p, i); }),
            "type error. term p has type Bool, but Real was expected. (make_leq)");
  EXPECT_EQ(error_of([&] { make_minus(m, i, b); }),
            "type error. term b has type (BitVec 8), but Real was expected. (make_times)");
  EXPECT_EQ(error_of([&] {
              make_and(m, {p, i, q});
            }),
            "type error. term i has type Int, but Bool was expected. (make_and)");
  EXPECT_EQ(error_of([&] { make_equals(m, b, p); }),
            "type error. term p has type Bool, but (BitVec 8) was expected. (make_equal)");
}

// --- Division and absolute values ---

TEST_F(Derived, DivideIsAProduct) {
  EXPECT_EQ(make_divide(m, x, 3)->to_str(), "(`*_rat` 1/3 x)");
  EXPECT_EQ(make_divide(m, x, QNumber(-2, 5))->to_str(), "(`*_rat` -5/2 x)");
  EXPECT_EQ(make_divide(m, i, 1)->to_str(), "(`*_rat` 1 i)");
}

TEST_F(Derived, DivIsTheFloorOfARealProduct) {
  EXPECT_EQ(make_div(m, i, 3)->to_str(), "(`floor` (`*_rat` 1/3 i))");
  EXPECT_EQ(make_div(m, i, 1)->to_str(), "(`floor` (`*_rat` 1 i))");
  EXPECT_EQ(make_div(m, i, -3)->to_str(), "(`*_int` -1 (`floor` (`*_rat` 1/3 i)))");
}

TEST_F(Derived, ModIsWhatDivLeaves) {
  const char* const expected = "(`+_int` i (`*_int` -1 (`*_int` 3 (`floor` (`*_rat` 1/3 i)))))";
  EXPECT_EQ(make_mod(m, i, 3)->to_str(), expected);
  EXPECT_EQ(make_mod(m, i, -3)->to_str(), expected);
}

TEST_F(Derived, DivisibleIsEqualityWithAMultiple) {
  EXPECT_EQ(make_divisible(m, i, 3)->to_str(), "(`=_int` i (`*_int` 3 (`floor` (`*_rat` 1/3 i))))");
}

TEST_F(Derived, DivisorsMayBeOfAnySize) {
  const QNumber big = QNumber::from_string("123456789012345678901234567890");
  EXPECT_EQ(make_div(m, i, big)->to_str(),
            "(`floor` (`*_rat` 1/123456789012345678901234567890 i))");
  EXPECT_EQ(make_divide(m, x, QNumber::from_string("-9223372036854775809/2"))->to_str(),
            "(`*_rat` -2/9223372036854775809 x)");
}

TEST_F(Derived, AbsIsAnIfThenElseOverTheType) {
  EXPECT_EQ(make_abs(m, i)->to_str(), "(`ite_int` (`<=_int` 0 i) i (`*_int` -1 i))");
  EXPECT_EQ(make_abs(m, x)->to_str(), "(`ite_rat` (`<=_rat` 0 x) x (`*_rat` -1 x))");
  EXPECT_EQ(make_abs(m, i, m.get_rat_type())->to_str(),
            "(`ite_rat` (`<=_rat` 0 i) i (`*_rat` -1 i))");
}

TEST_F(Derived, DivisionByZeroIsAFunctionOfTheDividend) {
  EXPECT_EQ(make_div(m, i, 0)->to_str(), "(quill!div_by_zero i)");
  EXPECT_EQ(make_mod(m, i, 0)->to_str(), "(quill!mod_by_zero i)");
  EXPECT_EQ(make_divide(m, x, 0)->to_str(), "(quill!divide_by_zero x)");
  EXPECT_EQ(make_div(m, j, 0)->symbol, make_zero_division_symbol(m, Division::Div));
  EXPECT_EQ(make_zero_division_symbol(m, Division::Divide)->type,
            m.get_function_type({m.get_rat_type()}, m.get_rat_type()));
}

TEST_F(Derived, DivisionChecksItsOperands) {
  EXPECT_EQ(error_of([&] { make_div(m, x, 3); }),
            "type error. term x has type Real, but Int was expected. (make_div)");
  EXPECT_EQ(error_of([&] { make_mod(m, x, 3); }),
            "type error. term x has type Real, but Int was expected. (make_mod)");
  EXPECT_EQ(error_of([&] { make_div(m, i, QNumber(1, 2)); }),
            "the divisor must be an integer: 1/2 (make_div)");
  EXPECT_EQ(error_of([&] { make_divisible(m, i, 0); }),
            "the divisor must be positive: 0 (make_divisible)");
  EXPECT_EQ(error_of([&] { make_divisible(m, i, -3); }),
            "the divisor must be positive: -3 (make_divisible)");
  EXPECT_EQ(error_of([&] { make_divide(m, p, 3); }),
            "type error. term p has type Bool, but Real was expected. (make_divide)");
}

}  // namespace
}  // namespace quill
