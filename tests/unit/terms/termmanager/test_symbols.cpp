#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/manager_test.h"

namespace quill {
namespace {

using Terms = std::vector<const Term_*>;
using namespace std::string_literals;

class SymbolsTest : public testing::ManagerTest {
 protected:
  // The text of the TermManager::error that the request throws; checks that it adds no symbol and
  // no term.
  std::string error_of(const std::function<void()>& request) {
    const size_t symbols_before = m.get_signature()->size();
    const size_t terms_before = m.get_bank()->size();
    const std::string text = testing::error_of<TermManager::error>(request);
    EXPECT_EQ(m.get_signature()->size(), symbols_before);
    EXPECT_EQ(m.get_bank()->size(), terms_before);
    return text;
  }
  std::string unique(const std::string& name) { return m.make_unique_symbol(name, int_type)->name; }

  const DataType* bool_type = m.get_bool_type();
  const DataType* int_type = m.get_int_type();
  const DataType* binary = m.get_function_type({int_type, int_type}, int_type);
};

// --- make_symbol ---

TEST_F(SymbolsTest, ASymbolIsRegisteredUnderItsName) {
  const Symbol* x = m.make_symbol("x", int_type);
  EXPECT_STREQ(x->name, "x");
  EXPECT_EQ(x->type, int_type);
  EXPECT_EQ(m.get_signature()->get_symbol("x"), x);
}

TEST_F(SymbolsTest, TheEmptyNameIsRefused) {
  EXPECT_EQ(error_of([&] { m.make_symbol("", int_type); }), "Empty name for symbol");
}

TEST_F(SymbolsTest, ANameThatBeginsWithABackquoteIsRefused) {
  const char* const text = "Symbols can't start with the \"`\" character";
  EXPECT_EQ(error_of([&] { m.make_symbol("`x", int_type); }), text);
  EXPECT_EQ(error_of([&] { m.make_symbol("`", int_type); }), text);
  EXPECT_EQ(error_of([&] { m.make_symbol("`and`", int_type); }), text);
}

TEST_F(SymbolsTest, ANameWithANulIsRefused) {
  const char* const text = "Symbols can't contain the NUL character";
  EXPECT_EQ(error_of([&] { m.make_symbol("a\0b"s, int_type); }), text);
  EXPECT_EQ(error_of([&] { m.make_symbol("a\0"s, int_type); }), text);
}

TEST_F(SymbolsTest, AnyOtherNameIsAccepted) {
  for (const char* name : {"and", "x`", " ", "|", "\\", "'", "(x)", "3", "\xff"}) {
    EXPECT_STREQ(m.make_symbol(name, int_type)->name, name);
  }
}

TEST_F(SymbolsTest, ANameOfAnApostropheMakesAVariable) {
  EXPECT_TRUE(m.is_variable(m.make_symbol("'y", int_type)));
  EXPECT_FALSE(m.is_variable(m.make_symbol("'f", binary)));
}

TEST_F(SymbolsTest, TheSameDeclarationAgainYieldsTheSameSymbol) {
  EXPECT_EQ(m.make_symbol("x", int_type), m.make_symbol("x", int_type));
}

// The clash is the signature's to report: no error of the manager's own class.
TEST_F(SymbolsTest, ANameOfAnotherTypeIsRefused) {
  m.make_symbol("x", int_type);
  const size_t before = m.get_signature()->size();
  EXPECT_EQ(base_exception_of([&] { m.make_symbol("x", bool_type); }),
            "the symbol x already exists with type Int, it can't be declared with type Bool");
  EXPECT_EQ(m.get_signature()->size(), before);
}

TEST_F(SymbolsTest, ASymbolOfAFunctionTypeWithoutArgumentsIsAConstantOfTheResult) {
  const Symbol* c = m.make_symbol("c", m.get_function_type({}, int_type));
  EXPECT_EQ(c->arity, 0U);
  EXPECT_EQ(c->get_output_type(), int_type);
  const Term_* t = m.make_constant(c);
  EXPECT_EQ(m.make_plus(t, t)->type(), int_type);
}

// --- make_unique_symbol ---

// Not even after the part before the NUL was declared, and all names probed would be that part.
TEST_F(SymbolsTest, AUniqueNameWithANulIsRefused) {
  m.make_symbol("a", int_type);
  EXPECT_EQ(error_of([&] { m.make_unique_symbol("a\0b"s, int_type); }),
            "Symbols can't contain the NUL character");
}

TEST_F(SymbolsTest, UniqueNamesAreTheBareNameAndThenNumbered) {
  EXPECT_EQ(unique("x"), "x");
  EXPECT_EQ(unique("x"), "x_0");
  EXPECT_EQ(unique("x"), "x_1");
  EXPECT_EQ(unique("x"), "x_2");
}

TEST_F(SymbolsTest, SuffixesDoNotNest) {
  EXPECT_EQ(unique("x"), "x");
  EXPECT_EQ(unique("x"), "x_0");
  EXPECT_EQ(unique("x_0"), "x_0_0");
  EXPECT_EQ(unique("x_0"), "x_0_1");
  EXPECT_EQ(unique("x"), "x_1");
}

TEST_F(SymbolsTest, TakenNumberedNamesAreSkipped) {
  m.make_symbol("x", int_type);
  m.make_symbol("x_0", bool_type);
  m.make_symbol("x_2", int_type);
  EXPECT_EQ(unique("x"), "x_1");
  EXPECT_EQ(unique("x"), "x_3");
}

TEST_F(SymbolsTest, FreedNamesAreUsedAgainLowestFirst) {
  for (int i = 0; i < 10; ++i) unique("x");  // x, x_0 ... x_8
  m.free_symbol(m.get_signature()->get_symbol("x_6"));
  m.free_symbol(m.get_signature()->get_symbol("x_2"));
  EXPECT_EQ(unique("x"), "x_2");
  EXPECT_EQ(unique("x"), "x_6");
  EXPECT_EQ(unique("x"), "x_9");
  m.free_symbol(m.get_signature()->get_symbol("x"));
  EXPECT_EQ(unique("x"), "x");
}

TEST_F(SymbolsTest, AUniqueNameIsCheckedLikeAnyOther) {
  EXPECT_EQ(error_of([&] { m.make_unique_symbol("", int_type); }), "Empty name for symbol");
  EXPECT_EQ(error_of([&] { m.make_unique_symbol("`x", int_type); }),
            "Symbols can't start with the \"`\" character");
  EXPECT_EQ(error_of([&] { m.make_unique_symbol("`and`", int_type); }),
            "Symbols can't start with the \"`\" character");
}

// Probing from the start each time would take five thousand million look-ups.
TEST_F(SymbolsTest, ManyUniqueNamesOnOneBaseAreFeasible) {
  EXPECT_EQ(unique("x"), "x");
  for (int k = 0; k < 100000; ++k) {
    ASSERT_STREQ(m.make_unique_symbol("x", int_type)->name, ("x_" + std::to_string(k)).c_str());
  }
}

// Going again through all names after the freed one would take a thousand million look-ups.
TEST_F(SymbolsTest, FreeingAndTakingUniqueNamesInTurnsIsFeasible) {
  for (int n = 0; n < 50001; ++n) unique("x");  // x, x_0 ... x_49999
  for (int k = 0; k < 20000; ++k) {
    const std::string name = "x_" + std::to_string((7919 * k) % 50000);
    m.free_symbol(m.get_signature()->get_symbol(name.c_str()));
    ASSERT_EQ(unique("x"), name);
    ASSERT_EQ(unique("x"), "x_" + std::to_string(50000 + k));
  }
}

// --- make_fresh_variable ---

TEST_F(SymbolsTest, FreshVariablesAreNumberedFromOne) {
  const Term_* v = m.make_fresh_variable(int_type);
  EXPECT_STREQ(v->symbol->name, "'1");
  EXPECT_EQ(v->symbol->type, int_type);
  EXPECT_EQ(v->symbol->arity, 0U);
  EXPECT_TRUE(m.is_variable(v->symbol));
  EXPECT_STREQ(m.make_fresh_variable(bool_type)->symbol->name, "'2");
}

TEST_F(SymbolsTest, AFreshVariableWhoseNameIsTakenIsRefusedAndItsNumberNotUsedAgain) {
  m.make_symbol("'1", int_type);
  EXPECT_EQ(
      error_of([&] { m.make_fresh_variable(int_type); }),
      "impossible to create variable '1, because there's already a symbol with the same name");
  EXPECT_STREQ(m.make_fresh_variable(int_type)->symbol->name, "'2");
}

TEST_F(SymbolsTest, AFreshVariableOfAFunctionTypeIsRefusedAndItsNumberNotUsedAgain) {
  EXPECT_EQ(error_of([&] { m.make_fresh_variable(binary); }),
            "Higher-order variables are not supported");
  EXPECT_EQ(m.get_signature()->get_symbol("'1"), nullptr);
  EXPECT_STREQ(m.make_fresh_variable(int_type)->symbol->name, "'2");
}

TEST_F(SymbolsTest, ATakenNameIsReportedBeforeTheType) {
  m.make_symbol("'1", int_type);
  EXPECT_EQ(
      error_of([&] { m.make_fresh_variable(binary); }),
      "impossible to create variable '1, because there's already a symbol with the same name");
}

TEST_F(SymbolsTest, TheNumberOfAFreedVariableIsNotUsedAgain) {
  m.free_symbol(m.make_fresh_variable(int_type)->symbol);
  EXPECT_EQ(m.get_signature()->get_symbol("'1"), nullptr);
  EXPECT_STREQ(m.make_fresh_variable(int_type)->symbol->name, "'2");
}

// A delegate that must not be asked.
class Refusing : public TermFactory {
 public:
  const Term_* make_term(const Symbol*, const Terms&) override {
    throw std::logic_error("the delegate was asked");
  }
};

TEST_F(SymbolsTest, FreshVariablesAreNotOfferedToTheDelegate) {
  Refusing delegate;
  m.set_delegate(&delegate);
  m.set_delegate_enabled(true);
  EXPECT_NO_THROW(m.make_fresh_variable(int_type));
  EXPECT_THROW(m.make_constant(m.make_symbol("x", int_type)), std::logic_error);
}

// --- Terms of constants and applications ---

TEST_F(SymbolsTest, AConstantIsATermWithoutArguments) {
  const Symbol* x = m.make_symbol("x", int_type);
  const Term_* t = m.make_constant(x);
  EXPECT_EQ(t->symbol, x);
  EXPECT_EQ(m.make_constant(x), t);
  EXPECT_EQ(t->id, 2U);
}

TEST_F(SymbolsTest, AConstantOfAFunctionSymbolIsRefused) {
  const Symbol* f = m.make_symbol("f", binary);
  EXPECT_EQ(error_of([&] { m.make_constant(f); }), "wrong arity for symbol f. expected 2, got 0");
}

TEST_F(SymbolsTest, AnApplicationHoldsItsArguments) {
  const Symbol* f = m.make_symbol("f", binary);
  const Term_* x = m.make_constant(m.make_symbol("x", int_type));
  const Term_* y = m.make_constant(m.make_symbol("y", int_type));
  const Term_* t = m.make_uninterpreted_function(f, {x, y});
  EXPECT_EQ(t->to_str(), "(f x y)");
  EXPECT_EQ(m.make_uninterpreted_function(f, {x, y}), t);
  EXPECT_NE(m.make_uninterpreted_function(f, {y, x}), t);
}

TEST_F(SymbolsTest, ErrorsOfAnApplicationNameItsBuilder) {
  const Symbol* f = m.make_symbol("f", binary);
  const Term_* x = m.make_constant(m.make_symbol("x", int_type));
  EXPECT_EQ(error_of([&] {
              m.make_uninterpreted_function(f, {x, m.make_true()});
            }),
            "type error. term `true` has type Bool, but Int was expected. "
            "(make_uninterpreted_function)");
  EXPECT_EQ(error_of([&] { m.make_uninterpreted_function(f, {x}); }),
            "wrong arity for symbol f. expected 2, got 1");
}

class Counting : public TermManager {
 public:
  const Term_* make_term(const Symbol* s, const Terms& args) override {
    ++requests;
    return TermManager::make_term(s, args);
  }
  int requests = 0;
};

TEST(SymbolsOfADerivedManager, ConstantsAndApplicationsGoThroughItsMakeTerm) {
  Counting m;
  const DataType* int_type = m.get_int_type();
  const Symbol* f = m.make_symbol("f", m.get_function_type({int_type}, int_type));
  const Term_* x = m.make_constant(m.make_symbol("x", int_type));
  EXPECT_EQ(m.requests, 1);
  m.make_uninterpreted_function(f, {x});
  EXPECT_EQ(m.requests, 2);
  m.make_fresh_variable(int_type);
  EXPECT_EQ(m.requests, 2);
}

// --- free_symbol ---

TEST_F(SymbolsTest, FreeingASymbolGivesItsNameBackAndLeavesItsTerms) {
  const Symbol* x = m.make_symbol("x", int_type);
  const Term_* t = m.make_constant(x);
  m.free_symbol(x);
  EXPECT_EQ(m.get_signature()->get_symbol("x"), nullptr);
  EXPECT_EQ(t->to_str(), "x");
  EXPECT_EQ(m.make_constant(x), t);
  const Symbol* again = m.make_symbol("x", bool_type);
  EXPECT_NE(again, x);
  EXPECT_NE(m.make_constant(again), t);
}

// --- debug_get_term ---

TEST_F(SymbolsTest, ATermIsFoundByItsId) {
  const Term_* x = m.make_constant(m.make_symbol("x", int_type));
  EXPECT_EQ(m.debug_get_term(0), m.make_true());
  EXPECT_EQ(m.debug_get_term(1), m.make_false());
  EXPECT_EQ(m.debug_get_term(x->id), x);
  EXPECT_EQ(m.debug_get_term(3), nullptr);
  EXPECT_EQ(m.debug_get_term(18446744073709551615U), nullptr);
}

}  // namespace
}  // namespace quill
