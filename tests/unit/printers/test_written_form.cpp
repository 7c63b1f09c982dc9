#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "quill/derived/derived.h"
#include "quill/printers/written_form.h"
#include "tests/support/manager_test.h"

namespace quill {
namespace {

class WrittenFormTest : public testing::ManagerTest {
 protected:
  WrittenForm form(const Term_* t) const { return WrittenForm(m, t); }

  const DataType* const int_type = m.get_int_type();
  const DataType* const real_type = m.get_rat_type();
  const Term_* const p = constant("p", m.get_bool_type());
  const Term_* const q = constant("q", m.get_bool_type());
  const Term_* const i = constant("i", int_type);
  const Term_* const j = constant("j", int_type);
  const Term_* const x = constant("x", real_type);
};

TEST_F(WrittenFormTest, ApplicationsAreTheSymbolAndItsArguments) {
  const WrittenForm sum = form(m.make_plus(x, i));
  EXPECT_EQ(sum.kind, WrittenForm::Application);
  ASSERT_NE(sum.op(), nullptr);
  EXPECT_EQ(sum.op()->text, "+");
  EXPECT_EQ(sum.num_operands(), 2U);
  EXPECT_EQ(sum.operand(0).term, x);
  EXPECT_EQ(sum.operand(1).term, i);
  EXPECT_EQ(sum.operand(1).expected, real_type);
}

TEST_F(WrittenFormTest, UsersFunctionsHaveNoOperator) {
  const Symbol* f = m.make_symbol("f", m.get_function_type({int_type, real_type}, int_type));
  const WrittenForm application = form(m.make_uninterpreted_function(f, {i, x}));
  EXPECT_EQ(application.op(), nullptr);
  EXPECT_EQ(application.num_operands(), 2U);
  EXPECT_EQ(application.operand(0).expected, int_type);
  EXPECT_EQ(application.operand(1).expected, real_type);
}

TEST_F(WrittenFormTest, ConstantsHaveNoOperands) { EXPECT_EQ(form(i).num_operands(), 0U); }

TEST_F(WrittenFormTest, ProductWithMinusOneIsANegation) {
  const WrittenForm negation = form(make_minus(m, i));
  EXPECT_EQ(negation.kind, WrittenForm::Negation);
  EXPECT_EQ(negation.num_operands(), 1U);
  EXPECT_EQ(negation.operand(0).term, i);
  EXPECT_EQ(negation.operand(0).expected, int_type);
}

TEST_F(WrittenFormTest, NegationOverRealAsksForAReal) {
  const WrittenForm negation = form(make_minus(m, x));
  EXPECT_EQ(negation.operand(0).term, x);
  EXPECT_EQ(negation.operand(0).expected, real_type);
}

TEST_F(WrittenFormTest, ProductOfMinusOneAndANumeralIsAnApplication) {
  const WrittenForm product = form(m.make_times(m.make_number(-1), m.make_number(3)));
  EXPECT_EQ(product.kind, WrittenForm::Application);
  EXPECT_EQ(product.num_operands(), 2U);
}

TEST_F(WrittenFormTest, MinusOneCountsOnlyInFront) {
  EXPECT_EQ(form(m.make_times(i, m.make_number(-1))).kind, WrittenForm::Application);
  EXPECT_EQ(form(m.make_plus(make_minus(m, i), j)).kind, WrittenForm::Application);
  EXPECT_EQ(form(m.make_times(m.make_number(-2), i)).kind, WrittenForm::Application);
}

TEST_F(WrittenFormTest, SumWithANegationIsASubtraction) {
  const WrittenForm difference = form(make_minus(m, i, j));
  EXPECT_EQ(difference.kind, WrittenForm::Subtraction);
  EXPECT_EQ(difference.num_operands(), 2U);
  EXPECT_EQ(difference.operand(0).term, i);
  EXPECT_EQ(difference.operand(1).term, j);
  EXPECT_EQ(difference.operand(1).expected, int_type);
}

TEST_F(WrittenFormTest, NumeralsMayBeSubtracted) {
  const Term_* three = m.make_number(3);
  const WrittenForm difference = form(make_minus(m, i, three));
  EXPECT_EQ(difference.kind, WrittenForm::Subtraction);
  EXPECT_EQ(difference.operand(1).term, three);
}

TEST_F(WrittenFormTest, IntProductInARealSumIsNoSubtraction) {
  EXPECT_EQ(form(make_minus(m, x, i)).kind, WrittenForm::Application);
}

TEST_F(WrittenFormTest, LeftAssociativeOperatorsJoin) {
  const Term_* pq = m.make_and(p, q);
  EXPECT_TRUE(form(m.make_and(pq, q)).joins_with(form(pq)));
  EXPECT_FALSE(form(m.make_or(pq, q)).joins_with(form(pq)));
  const Term_* sum = m.make_plus(i, j);
  EXPECT_TRUE(form(m.make_plus(sum, j)).joins_with(form(sum)));
  EXPECT_FALSE(form(m.make_plus(sum, x)).joins_with(form(sum)));
}

TEST_F(WrittenFormTest, OtherOperatorsDoNotJoin) {
  const Term_* equivalence = m.make_iff(p, q);
  EXPECT_FALSE(form(m.make_iff(equivalence, q)).joins_with(form(equivalence)));
  const Symbol* f = m.make_symbol("f", m.get_function_type({int_type, int_type}, int_type));
  const Term_* application = m.make_uninterpreted_function(f, {i, j});
  EXPECT_FALSE(
      form(m.make_uninterpreted_function(f, {application, j})).joins_with(form(application)));
}

TEST_F(WrittenFormTest, SubtractionsJoinWithSubtractionsOnly) {
  const Term_* difference = make_minus(m, i, j);
  const Term_* sum = m.make_plus(i, j);
  EXPECT_TRUE(form(make_minus(m, difference, i)).joins_with(form(difference)));
  EXPECT_FALSE(form(make_minus(m, sum, i)).joins_with(form(sum)));
  EXPECT_FALSE(form(m.make_plus(difference, i)).joins_with(form(difference)));
}

TEST_F(WrittenFormTest, NegationsDoNotJoin) {
  const Term_* negation = make_minus(m, i);
  EXPECT_FALSE(form(make_minus(m, negation)).joins_with(form(negation)));
}

TEST_F(WrittenFormTest, WhatIsPlain) {
  EXPECT_TRUE(form(m.make_plus(i, j)).is_plain());
  EXPECT_TRUE(form(m.make_and(p, q)).is_plain());
  EXPECT_FALSE(form(m.make_plus(x, i)).is_plain());    // may need to_real
  EXPECT_FALSE(form(make_minus(m, i, j)).is_plain());  // not all arguments are written
  EXPECT_FALSE(form(m.make_leq(m.make_number(1), x)).is_plain());
  EXPECT_FALSE(form(m.make_int_modular_congruence(QNumber(7), i, j)).is_plain());  // (mod i 7)
}

// Terms of more symbols than are remembered, in an order without a pattern, and each form made
// from a remembered symbol beside one made from nothing.
TEST_F(WrittenFormTest, RememberedSymbolsMakeTheSameForms) {
  std::vector<const Term_*> terms = {m.make_plus(i, j),
                                     m.make_plus(i, x),
                                     make_minus(m, i, j),
                                     make_minus(m, x),
                                     m.make_times(i, j),
                                     m.make_times(m.make_number(-1), i),
                                     m.make_floor(x),
                                     make_abs(m, i),
                                     m.make_leq(i, x),
                                     m.make_term_ite(p, i, j),
                                     m.make_term_ite(p, x, x),
                                     m.make_equal(i, j),
                                     make_div(m, i, QNumber(3)),
                                     m.make_not(p),
                                     m.make_and(p, q)};
  for (int n = 0; n < 100; ++n) {
    const std::string name = "f" + std::to_string(n);
    const DataType* type = n % 3 == 0 ? real_type : int_type;
    const Symbol* f = m.make_symbol(name.c_str(), m.get_function_type({type}, int_type));
    terms.push_back(m.make_uninterpreted_function(f, {i}));
  }
  std::mt19937 random(20261122);
  for (const bool with_abs : {false, true}) {
    WrittenForms forms(m, with_abs);
    for (int n = 0; n < 20000; ++n) {
      // Mostly some few terms, as in a formula.
      const Term_* t = terms[random() % (random() % 4 == 0 ? terms.size() : 20)];
      const WrittenForm expected(m, t, with_abs);
      const WrittenForm found = forms.of(t);
      ASSERT_EQ(found.term, t);
      ASSERT_EQ(found.tag, expected.tag);
      ASSERT_EQ(found.kind, expected.kind);
      ASSERT_EQ(found.takes_reals, expected.takes_reals);
    }
  }
}

TEST_F(WrittenFormTest, WhatMustBeWrittenIsNotHidden) {
  const Term_* negation = make_minus(m, j);
  const Term_* difference = m.make_plus(i, negation);
  WrittenForms all(m);
  WrittenForms forms(m, /*with_absolute_values=*/false,
                     [&](const Term_* t) { return t == negation; });
  for (int n = 0; n < 2; ++n) {
    EXPECT_EQ(all.of(difference).kind, WrittenForm::Subtraction);
    EXPECT_EQ(forms.of(difference).kind, WrittenForm::Application);
    EXPECT_EQ(forms.of(negation).kind, WrittenForm::Negation);
    EXPECT_EQ(forms.of(make_minus(m, j, i)).kind, WrittenForm::Subtraction);
  }
}

}  // namespace
}  // namespace quill
