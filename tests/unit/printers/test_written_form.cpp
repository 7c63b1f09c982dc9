#include <gtest/gtest.h>

#include "quill/printers/written_form.h"
#include "quill/terms/derived.h"

namespace quill {
namespace {

class WrittenFormTest : public ::testing::Test {
 protected:
  const Term_* constant(const char* name, const DataType* type) {
    return m.make_constant(m.make_symbol(name, type));
  }
  WrittenForm form(const Term_* t) const { return WrittenForm(m, t); }

  TermManager m;
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

}  // namespace
}  // namespace quill
