#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "quill/terms/termmanager/symbol_tag.h"
#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/manager_test.h"

namespace quill {
namespace {

using Terms = std::vector<const Term_*>;

class CoreTerms : public testing::ManagerTest {
 protected:
  const DataType* const bool_type = m.get_bool_type();
  const DataType* const int_type = m.get_int_type();
  const DataType* const real_type = m.get_rat_type();
  const DataType* const bv8 = m.get_bv_type(8);
  // true and false have the ids 0 and 1.
  const Term_* const p = constant("p", bool_type);  // 2
  const Term_* const q = constant("q", bool_type);  // 3
  const Term_* const i = constant("i", int_type);   // 4
  const Term_* const j = constant("j", int_type);   // 5
  const Term_* const x = constant("x", real_type);  // 6
  const Term_* const y = constant("y", real_type);  // 7
  const Term_* const b = constant("b", bv8);        // 8
  const Term_* const c = constant("c", bv8);        // 9
};

// --- Which symbol a builder picks ---

TEST_F(CoreTerms, ConnectivesUseTheStandardSymbols) {
  EXPECT_EQ(m.make_and(p, q)->to_str(), "(`and` p q)");
  EXPECT_EQ(m.make_or(p, q)->to_str(), "(`or` p q)");
  EXPECT_EQ(m.make_iff(p, q)->to_str(), "(`iff` p q)");
  EXPECT_EQ(m.make_not(p)->to_str(), "(`not` p)");
  EXPECT_EQ(m.make_true()->to_str(), "`true`");
  EXPECT_EQ(m.make_false()->to_str(), "`false`");
}

TEST_F(CoreTerms, ArithmeticOfTwoIntsIsOverInt) {
  EXPECT_EQ(m.make_plus(i, j)->to_str(), "(`+_int` i j)");
  EXPECT_EQ(m.make_times(i, j)->to_str(), "(`*_int` i j)");
  EXPECT_EQ(m.make_leq(i, j)->to_str(), "(`<=_int` i j)");
  EXPECT_EQ(m.make_plus(i, j)->type(), int_type);
}

TEST_F(CoreTerms, ArithmeticWithARealIsOverReal) {
  EXPECT_EQ(m.make_plus(x, y)->to_str(), "(`+_rat` x y)");
  EXPECT_EQ(m.make_plus(x, i)->to_str(), "(`+_rat` x i)");
  EXPECT_EQ(m.make_plus(i, x)->to_str(), "(`+_rat` i x)");
  EXPECT_EQ(m.make_times(i, x)->to_str(), "(`*_rat` i x)");
  EXPECT_EQ(m.make_leq(x, i)->to_str(), "(`<=_rat` x i)");
  EXPECT_EQ(m.make_plus(x, i)->type(), real_type);
}

TEST_F(CoreTerms, FloorTakesRealAndIntAndIsAnInt) {
  EXPECT_EQ(m.make_floor(x)->to_str(), "(`floor` x)");
  EXPECT_EQ(m.make_floor(i)->to_str(), "(`floor` i)");
  EXPECT_EQ(m.make_floor(x)->type(), int_type);
}

TEST_F(CoreTerms, EqualityOfNumbersIsOverIntOnlyForTwoInts) {
  EXPECT_EQ(m.make_equal(i, j)->to_str(), "(`=_int` i j)");
  EXPECT_EQ(m.make_equal(i, x)->to_str(), "(`=_rat` i x)");
  EXPECT_EQ(m.make_equal(x, i)->to_str(), "(`=_rat` x i)");
  EXPECT_EQ(m.make_equal(x, y)->to_str(), "(`=_rat` x y)");
}

TEST_F(CoreTerms, EqualityOfOtherTypesIsNamedByTheType) {
  EXPECT_EQ(m.make_equal(b, c)->to_str(), "(`=_(BitVec 8)` b c)");
  const DataType* sort = m.get_simple_type("a b", false);
  const Term_* u = constant("u", sort);
  EXPECT_EQ(m.make_equal(u, u)->to_str(), "(`=_|a b|` u u)");
}

TEST_F(CoreTerms, IfThenElseOfNumbersIsOverIntOnlyForTwoInts) {
  EXPECT_EQ(m.make_term_ite(p, i, j)->to_str(), "(`ite_int` p i j)");
  EXPECT_EQ(m.make_term_ite(p, i, x)->to_str(), "(`ite_rat` p i x)");
  EXPECT_EQ(m.make_term_ite(p, x, i)->to_str(), "(`ite_rat` p x i)");
  EXPECT_EQ(m.make_term_ite(p, x, y)->to_str(), "(`ite_rat` p x y)");
  EXPECT_EQ(m.make_term_ite(p, b, c)->to_str(), "(`ite_(BitVec 8)` p b c)");
}

// --- No simplification ---

TEST_F(CoreTerms, AndOfEqualTermsIsKept) { EXPECT_EQ(m.make_and(p, p)->to_str(), "(`and` p p)"); }

TEST_F(CoreTerms, ArgumentsKeepTheirOrder) {
  EXPECT_NE(m.make_and(p, q), m.make_and(q, p));
  EXPECT_NE(m.make_plus(i, j), m.make_plus(j, i));
  EXPECT_NE(m.make_equal(i, j), m.make_equal(j, i));
}

TEST_F(CoreTerms, ConstantsAreNotFoldedAndNestingIsKept) {
  const Term_* two = m.make_number(2);
  EXPECT_EQ(m.make_plus(two, two)->to_str(), "(`+_int` 2 2)");
  EXPECT_EQ(m.make_not(m.make_not(p))->to_str(), "(`not` (`not` p))");
  EXPECT_EQ(m.make_and(m.make_and(p, q), m.make_true())->to_str(), "(`and` (`and` p q) `true`)");
}

TEST_F(CoreTerms, EqualRequestsGiveTheSameTerm) {
  EXPECT_EQ(m.make_and(p, q), m.make_and(p, q));
  EXPECT_EQ(m.make_term_ite(p, b, c), m.make_term_ite(p, b, c));
  EXPECT_EQ(m.make_term(find("`and`"), {p, q}), m.make_and(p, q));
}

TEST_F(CoreTerms, MakeBinAppliesAnyBinarySymbol) {
  EXPECT_EQ(m.make_bin(find("`or`"), p, q, "test"), m.make_or(p, q));
}

// --- Equality symbols ---

TEST_F(CoreTerms, EqualitySymbolIsMadeOnce) {
  const Symbol* equal = m.make_equality_symbol(bv8);
  const auto before = sizes();
  EXPECT_EQ(m.make_equality_symbol(bv8), equal);
  EXPECT_EQ(sizes(), before);
}

TEST_F(CoreTerms, EqualitySymbolHasItsNameTypeAndTag) {
  const Symbol* equal = m.make_equality_symbol(bv8);
  EXPECT_STREQ(equal->name, "`=_(BitVec 8)`");
  EXPECT_EQ(equal->type->to_str(), "(-> (BitVec 8) (BitVec 8) Bool)");
  EXPECT_EQ(equal->arity, 2U);
  EXPECT_EQ(m.get_tag(equal), 11);
  EXPECT_EQ(find("`=_(BitVec 8)`"), equal);
}

TEST_F(CoreTerms, EqualitySymbolsOfNumbersAreThereFromTheStart) {
  const auto before = sizes();
  EXPECT_STREQ(m.make_equality_symbol(int_type)->name, "`=_int`");
  EXPECT_STREQ(m.make_equality_symbol(real_type)->name, "`=_rat`");
  EXPECT_EQ(sizes(), before);
}

TEST_F(CoreTerms, SortsNamedLikeNumbersHaveSymbolsOfTheirOwn) {
  EXPECT_STREQ(m.make_equality_symbol(m.get_simple_type("rat", false))->name, "`=_|rat|`");
  EXPECT_STREQ(m.make_equality_symbol(m.get_simple_type("int", false))->name, "`=_|int|`");
  EXPECT_STREQ(m.make_equality_symbol(m.get_simple_type("(BitVec 8)", false))->name,
               "`=_|(BitVec 8)|`");
  EXPECT_STREQ(m.make_term_ite_symbol(m.get_simple_type("rat", false))->name, "`ite_|rat|`");
}

TEST_F(CoreTerms, EqualityOverBoolIsRefused) {
  const auto before = sizes();
  EXPECT_EQ(error_of([&] { m.make_equal(p, q); }), "Equality arguments can't be Boolean");
  EXPECT_EQ(error_of([&] { m.make_equality_symbol(bool_type); }),
            "Equality arguments can't be Boolean");
  EXPECT_EQ(sizes(), before);
}

// --- If-then-else symbols ---

TEST_F(CoreTerms, IfThenElseSymbolIsMadeOnce) {
  const Symbol* ite = m.make_term_ite_symbol(int_type);
  const auto before = sizes();
  EXPECT_EQ(m.make_term_ite_symbol(int_type), ite);
  EXPECT_EQ(sizes(), before);
}

TEST_F(CoreTerms, IfThenElseSymbolHasItsNameTypeAndTag) {
  const Symbol* ite = m.make_term_ite_symbol(bv8);
  EXPECT_STREQ(ite->name, "`ite_(BitVec 8)`");
  EXPECT_EQ(ite->type->to_str(), "(-> Bool (BitVec 8) (BitVec 8) (BitVec 8))");
  EXPECT_EQ(ite->arity, 3U);
  EXPECT_EQ(m.get_tag(ite), 12);
}

TEST_F(CoreTerms, IfThenElseOverBoolIsRefused) {
  const auto before = sizes();
  EXPECT_EQ(error_of([&] { m.make_term_ite(p, q, q); }), "Term-ITE arguments can't be Boolean");
  EXPECT_EQ(error_of([&] { m.make_term_ite_symbol(bool_type); }),
            "Term-ITE arguments can't be Boolean");
  EXPECT_EQ(sizes(), before);
}

TEST_F(CoreTerms, IfThenElseSymbolsAreRecognisedWithTheirBranchType) {
  const DataType* type = nullptr;
  EXPECT_TRUE(m.is_term_ite(m.make_term_ite_symbol(bv8), &type));
  EXPECT_EQ(type, bv8);
  EXPECT_TRUE(m.is_term_ite(m.make_term_ite_symbol(int_type), nullptr));
}

TEST_F(CoreTerms, OtherSymbolsAreNoIfThenElse) {
  const DataType* type = bv8;
  EXPECT_FALSE(m.is_term_ite(m.make_equality_symbol(bv8), &type));
  EXPECT_FALSE(m.is_term_ite(find("`and`"), &type));
  EXPECT_FALSE(m.is_term_ite(p->symbol, nullptr));
  EXPECT_EQ(type, bv8);
}

// --- Refused requests ---

TEST_F(CoreTerms, WrongNumberOfArguments) {
  EXPECT_EQ(error_of([&] { m.make_term(find("`and`"), {p}); }),
            "wrong arity for symbol `and`. expected 2, got 1");
  EXPECT_EQ(error_of([&] { m.make_term(find("`not`"), {}); }),
            "wrong arity for symbol `not`. expected 1, got 0");
  EXPECT_EQ(error_of([&] {
              m.make_term(p->symbol, {p, q});
            }),
            "wrong arity for symbol p. expected 0, got 2");
  EXPECT_EQ(error_of([&] { m.make_constant(find("`and`")); }),
            "wrong arity for symbol `and`. expected 2, got 0");
}

TEST_F(CoreTerms, DirectRequestIsNamedAfterItsSymbol) {
  EXPECT_EQ(error_of([&] {
              m.make_term(find("`and`"), {i, p});
            }),
            "type error. term i has type Int, but Bool was expected. (`and`)");
}

TEST_F(CoreTerms, BuilderIsNamedInTypeErrors) {
  const struct {
    std::string text;
    const char* expected;
  } cases[] = {
      {error_of([&] { m.make_and(p, i); }),
       "type error. term i has type Int, but Bool was expected. (make_and)"},
      {error_of([&] { m.make_or(x, p); }),
       "type error. term x has type Real, but Bool was expected. (make_or)"},
      {error_of([&] { m.make_iff(b, p); }),
       "type error. term b has type (BitVec 8), but Bool was expected. (make_iff)"},
      {error_of([&] { m.make_not(i); }),
       "type error. term i has type Int, but Bool was expected. (make_not)"},
      {error_of([&] { m.make_floor(p); }),
       "type error. term p has type Bool, but Real was expected. (make_floor)"},
      {error_of([&] { m.make_leq(p, i); }),
       "type error. term p has type Bool, but Real was expected. (make_leq)"},
      {error_of([&] { m.make_plus(i, b); }),
       "type error. term b has type (BitVec 8), but Real was expected. (make_plus)"},
      {error_of([&] { m.make_times(b, c); }),
       "type error. term b has type (BitVec 8), but Real was expected. (make_times)"},
      {error_of([&] { m.make_equal(i, p); }),
       "type error. term p has type Bool, but Real was expected. (make_equal)"},
      {error_of([&] { m.make_equal(b, i); }),
       "type error. term i has type Int, but (BitVec 8) was expected. (make_equal)"},
      {error_of([&] { m.make_term_ite(i, i, j); }),
       "type error. term i has type Int, but Bool was expected. (make_term_ite)"},
      {error_of([&] { m.make_term_ite(p, b, x); }),
       "type error. term x has type Real, but (BitVec 8) was expected. (make_term_ite)"},
      {error_of([&] { m.make_bin(find("`<=_int`"), x, i, "an operation"); }),
       "type error. term x has type Real, but Int was expected. (an operation)"},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(text, expected);
}

TEST_F(CoreTerms, ApplicationsOfUsersFunctionsAreChecked) {
  const Symbol* f = m.make_symbol("f", m.get_function_type({int_type, real_type}, bv8));
  EXPECT_EQ(m.make_uninterpreted_function(f, {i, j})->to_str(), "(f i j)");
  EXPECT_EQ(error_of([&] {
              m.make_uninterpreted_function(f, {x, x});
            }),
            "type error. term x has type Real, but Int was expected. "
            "(make_uninterpreted_function)");
  EXPECT_EQ(error_of([&] { m.make_uninterpreted_function(f, {i}); }),
            "wrong arity for symbol f. expected 2, got 1");
}

TEST_F(CoreTerms, OffendingApplicationIsShownOneLevelDeep) {
  const Term_* sum = m.make_plus(i, j);            // 10
  const Term_* product = m.make_times(sum, i);     // 11
  const Term_* total = m.make_plus(product, sum);  // 12
  EXPECT_EQ(error_of([&] { m.make_not(total); }),
            "type error. term (`+_int` #11 #10) has type Int, but Bool was expected. (make_not)");
}

TEST_F(CoreTerms, FirstOffendingArgumentIsNamed) {
  EXPECT_EQ(error_of([&] { m.make_and(x, i); }),
            "type error. term x has type Real, but Bool was expected. (make_and)");
}

TEST_F(CoreTerms, RefusedRequestsLeaveTheStoresAsTheyWere) {
  const auto before = sizes();
  EXPECT_THROW(m.make_and(p, i), TermManager::error);
  EXPECT_THROW(m.make_plus(p, i), TermManager::error);
  EXPECT_THROW(m.make_floor(p), TermManager::error);
  EXPECT_THROW(m.make_term(find("`and`"), {p}), TermManager::error);
  EXPECT_THROW(m.make_constant(find("`and`")), TermManager::error);
  EXPECT_EQ(sizes(), before);
}

TEST_F(CoreTerms, RefusedEqualityMakesNoSymbolForTheType) {
  const auto before = sizes();
  EXPECT_THROW(m.make_equal(b, i), TermManager::error);
  EXPECT_EQ(sizes(), before);
}

TEST_F(CoreTerms, RefusedIfThenElseMakesNoSymbolForTheType) {
  const auto before = sizes();
  EXPECT_THROW(m.make_term_ite(p, b, i), TermManager::error);
  EXPECT_THROW(m.make_term_ite(i, i, j), TermManager::error);
  EXPECT_EQ(sizes(), before);
}

TEST_F(CoreTerms, RefusedRequestUsesUpNoId) {
  EXPECT_THROW(m.make_and(p, i), TermManager::error);
  EXPECT_EQ(m.make_and(p, q)->id, 10U);
}

// --- The check of one term ---

TEST_F(CoreTerms, OneTermIsCheckedAgainstAType) {
  EXPECT_TRUE(m.typecheck(i, int_type, "here"));
  EXPECT_TRUE(m.typecheck(i, real_type, "here"));
  EXPECT_EQ(error_of([&] { m.typecheck(x, int_type, "here"); }),
            "type error. term x has type Real, but Int was expected. (here)");
}

TEST_F(CoreTerms, OneTermIsCheckedAlsoWhenChecksAreOff) {
  m.set_typecheck_enabled(false);
  EXPECT_EQ(error_of([&] { m.typecheck(p, int_type, "here"); }),
            "type error. term p has type Bool, but Int was expected. (here)");
}

// --- Without checks ---

TEST_F(CoreTerms, WithoutChecksIllTypedTermsAreBuilt) {
  m.set_typecheck_enabled(false);
  EXPECT_EQ(m.make_and(i, x)->to_str(), "(`and` i x)");
  EXPECT_EQ(m.make_equal(b, i)->to_str(), "(`=_(BitVec 8)` b i)");
  EXPECT_EQ(m.make_term_ite(i, i, j)->to_str(), "(`ite_int` i i j)");
}

TEST_F(CoreTerms, WithoutChecksBooleanEqualityIsRefusedAllTheSame) {
  m.set_typecheck_enabled(false);
  EXPECT_EQ(error_of([&] { m.make_equal(p, q); }), "Equality arguments can't be Boolean");
}

TEST_F(CoreTerms, LastStepOfMakeTermChecksNothing) {
  EXPECT_EQ(m.do_make_term(find("`and`"), {i, x})->to_str(), "(`and` i x)");
  EXPECT_EQ(m.do_make_term(p->symbol, {}), p);
}

// --- The operation that type errors name ---

TEST_F(CoreTerms, SuccessfulBuilderLeavesNoNameBehind) {
  m.make_or(p, q);
  EXPECT_EQ(error_of([&] {
              m.make_term(find("`and`"), {p, i});
            }),
            "type error. term i has type Int, but Bool was expected. (`and`)");
}

TEST_F(CoreTerms, NameOfARefusedBuilderStaysForDirectRequests) {
  EXPECT_THROW(m.make_or(p, i), TermManager::error);
  EXPECT_EQ(error_of([&] {
              m.make_term(find("`and`"), {p, i});
            }),
            "type error. term i has type Int, but Bool was expected. (make_or)");
}

TEST_F(CoreTerms, NameOfARefusedDirectRequestStaysForDirectRequests) {
  EXPECT_THROW(m.make_term(find("`or`"), {p, i}), TermManager::error);
  EXPECT_EQ(error_of([&] {
              m.make_term(find("`and`"), {p, i});
            }),
            "type error. term i has type Int, but Bool was expected. (`or`)");
}

TEST_F(CoreTerms, WrongNumberOfArgumentsLeavesTheNameOfTheBuilder) {
  EXPECT_THROW(m.make_constant(find("`and`")), TermManager::error);
  EXPECT_EQ(error_of([&] {
              m.make_term(find("`and`"), {p, i});
            }),
            "type error. term i has type Int, but Bool was expected. (make_constant)");
}

TEST_F(CoreTerms, WrongNumberOfArgumentsOfADirectRequestLeavesNoName) {
  EXPECT_THROW(m.make_term(find("`or`"), {p}), TermManager::error);
  EXPECT_EQ(error_of([&] {
              m.make_term(find("`and`"), {p, i});
            }),
            "type error. term i has type Int, but Bool was expected. (`and`)");
}

TEST_F(CoreTerms, NextBuilderOverwritesTheNameLeftBehind) {
  EXPECT_THROW(m.make_or(p, i), TermManager::error);
  EXPECT_EQ(error_of([&] { m.make_not(x); }),
            "type error. term x has type Real, but Bool was expected. (make_not)");
}

TEST_F(CoreTerms, NextSuccessfulRequestClearsTheNameLeftBehind) {
  EXPECT_THROW(m.make_or(p, i), TermManager::error);
  m.make_term(find("`and`"), {p, q});
  EXPECT_EQ(error_of([&] {
              m.make_term(find("`and`"), {p, i});
            }),
            "type error. term i has type Int, but Bool was expected. (`and`)");
}

TEST_F(CoreTerms, BuilderThatRanWithoutChecksLeavesItsNameBehind) {
  m.set_typecheck_enabled(false);
  m.make_or(p, q);
  m.set_typecheck_enabled(true);
  EXPECT_EQ(error_of([&] {
              m.make_term(find("`and`"), {p, i});
            }),
            "type error. term i has type Int, but Bool was expected. (make_or)");
}

TEST_F(CoreTerms, NameLeftBehindOutlivesTheSymbolThatItCameFrom) {
  const DataType* type = m.get_function_type({int_type}, int_type);
  const size_t symbols = m.get_signature()->size();
  const Symbol* f = m.make_symbol("the_first_function_of_a_long_name", type);
  EXPECT_THROW(m.make_term(f, {p}), TermManager::error);
  // Frees the symbol, which heads no term, as a collection would. The next one is as long, so that
  // it may get the same memory.
  const_cast<Signature*>(m.get_signature())->rollback(symbols);
  const Symbol* g = m.make_symbol("the_second_function_of_long_names", type);
  EXPECT_EQ(error_of([&] { m.make_term(g, {p}); }),
            "type error. term p has type Bool, but Int was expected. "
            "(the_first_function_of_a_long_name)");
}

}  // namespace
}  // namespace quill
