#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "quill/printers/let_plan.h"
#include "quill/terms/derived.h"

namespace quill {
namespace {

using Ends = std::vector<size_t>;
using Bindings = std::vector<const Term_*>;

class LetPlanTest : public ::testing::Test {
 protected:
  const Term_* constant(const char* name, const DataType* type) {
    return m.make_constant(m.make_symbol(name, type));
  }
  LetPlan plan(const Term_* root) const {
    return LetPlan(m, root, [this](const Term_* t) { return WrittenForm(m, t); });
  }

  static Bindings bindings(const LetPlan& made) {
    Bindings terms;
    for (const uint32_t node : made.bindings()) terms.push_back(made.form(node).term);
    return terms;
  }

  TermManager m;
  const Term_* const p = constant("p", m.get_bool_type());
  const Term_* const i = constant("i", m.get_int_type());
  const Term_* const j = constant("j", m.get_int_type());
  const Term_* const ij = m.make_plus(i, j);
  const Term_* const ji = m.make_plus(j, i);
};

TEST_F(LetPlanTest, NothingSharedNothingBound) {
  const LetPlan empty = plan(m.make_leq(ij, ji));
  EXPECT_EQ(bindings(empty), Bindings{});
  EXPECT_EQ(empty.group_ends(), Ends{});
}

TEST_F(LetPlanTest, ConstantsAreNotBound) {
  EXPECT_EQ(bindings(plan(m.make_times(i, i))), Bindings{});
  EXPECT_EQ(bindings(plan(i)), Bindings{});
}

TEST_F(LetPlanTest, NodesAreNumberedLevelByLevel) {
  const LetPlan numbered = plan(m.make_leq(m.make_plus(ij, i), m.make_times(ij, ji)));
  EXPECT_EQ(numbered.operand(0, 0), LetPlan::Operand::node(1));
  EXPECT_EQ(numbered.operand(0, 1), LetPlan::Operand::node(2));
  EXPECT_EQ(numbered.operand(1, 0), LetPlan::Operand::binding(1));
  EXPECT_EQ(numbered.operand(1, 1), LetPlan::Operand::constant());
  EXPECT_EQ(numbered.operand(2, 0), LetPlan::Operand::binding(1));
  EXPECT_EQ(numbered.operand(2, 1), LetPlan::Operand::node(4));
  EXPECT_EQ(numbered.num_operands(2), 2U);
  EXPECT_EQ(bindings(numbered), Bindings{ij});
  EXPECT_EQ(numbered.form(3).term, ij);
  EXPECT_EQ(numbered.form(4).term, ji);
}

TEST_F(LetPlanTest, OperandsAreConstantsNodesOrBindings) {
  EXPECT_TRUE(LetPlan::Operand::constant().is_constant());
  EXPECT_FALSE(LetPlan::Operand::constant().is_binding());
  EXPECT_FALSE(LetPlan::Operand::node(7).is_constant());
  EXPECT_FALSE(LetPlan::Operand::node(7).is_binding());
  EXPECT_EQ(LetPlan::Operand::node(7).number(), 7U);
  EXPECT_FALSE(LetPlan::Operand::binding(7).is_constant());
  EXPECT_TRUE(LetPlan::Operand::binding(7).is_binding());
  EXPECT_EQ(LetPlan::Operand::binding(7).number(), 7U);
}

TEST_F(LetPlanTest, ASharedTermIsBound) {
  const LetPlan one = plan(m.make_leq(ij, ij));
  EXPECT_EQ(bindings(one), Bindings{ij});
  EXPECT_EQ(one.group_ends(), Ends{1});
  EXPECT_EQ(one.operand(0, 0), LetPlan::Operand::binding(1));
  EXPECT_EQ(one.operand(0, 1), LetPlan::Operand::binding(1));
}

TEST_F(LetPlanTest, TermsBelowASharedTermOccurOnce) {
  const Term_* product = m.make_times(ij, j);
  const LetPlan one = plan(m.make_leq(product, product));
  EXPECT_EQ(bindings(one), Bindings{product});
}

TEST_F(LetPlanTest, GroupsFollowTheNestingOfBindings) {
  // ji is met after the product, yet belongs to the first group.
  const Term_* product = m.make_times(ij, ij);
  const Term_* left = m.make_leq(product, product);
  const Term_* root = m.make_and(left, m.make_leq(ji, ji));
  const LetPlan grouped = plan(root);
  EXPECT_EQ(bindings(grouped), (Bindings{ij, ji, product}));
  EXPECT_EQ(grouped.group_ends(), (Ends{2, 3}));
}

TEST_F(LetPlanTest, UnboundTermsBetweenBindingsAddNoGroup) {
  const Term_* between = m.make_times(m.make_times(ij, i), j);  // occurs once
  const Term_* upper = m.make_plus(between, ij);
  const LetPlan grouped = plan(m.make_leq(upper, upper));
  EXPECT_EQ(bindings(grouped), (Bindings{ij, upper}));
  EXPECT_EQ(grouped.group_ends(), (Ends{1, 2}));
}

TEST_F(LetPlanTest, OrderWithinAGroupIsThatOfAWalkFromTheLeft) {
  const Term_* first = m.make_and(m.make_leq(ji, ij), m.make_leq(ij, ji));
  const Term_* second = m.make_and(m.make_leq(ij, ji), m.make_leq(ji, ij));
  EXPECT_EQ(bindings(plan(first)), (Bindings{ji, ij}));
  EXPECT_EQ(bindings(plan(second)), (Bindings{ij, ji}));
}

TEST_F(LetPlanTest, TinyTermsAreNotBound) {
  const Term_* not_p = m.make_not(p);
  EXPECT_EQ(bindings(plan(m.make_and(not_p, not_p))), Bindings{});
  const Term_* minus = make_minus(m, i);
  EXPECT_EQ(bindings(plan(m.make_leq(minus, minus))), Bindings{});
}

TEST_F(LetPlanTest, UnaryTermsOfApplicationsAreBound) {
  const Term_* negation = m.make_not(m.make_leq(ij, j));
  EXPECT_EQ(bindings(plan(m.make_and(negation, negation))), Bindings{negation});
}

TEST_F(LetPlanTest, ProductsOfNumeralsAreNotBound) {
  const Term_* six = m.make_times(m.make_number(2), m.make_number(3));
  EXPECT_EQ(bindings(plan(m.make_leq(m.make_times(six, i), m.make_times(six, j)))), Bindings{});
  const Term_* product = m.make_number(2);
  for (int n = 3; n <= 9; n++) product = m.make_times(product, m.make_number(n));
  EXPECT_EQ(bindings(plan(m.make_leq(m.make_times(product, i), m.make_times(product, j)))),
            Bindings{});
}

TEST_F(LetPlanTest, ProductsWithAVariableAreBound) {
  const Term_* product = m.make_times(m.make_number(2), i);
  EXPECT_EQ(bindings(plan(m.make_leq(product, product))), Bindings{product});
}

TEST_F(LetPlanTest, ProductsInsideASubtractionAreNotCounted) {
  // Written (<= (- i j) (- ij j)): the product (-1) * j is in neither.
  const Term_* difference = make_minus(m, ij, j);
  const Term_* root = m.make_leq(make_minus(m, i, j), difference);
  EXPECT_EQ(bindings(plan(root)), Bindings{});
}

TEST_F(LetPlanTest, LongChainsAndDeepGroups) {
  const Term_* t = ij;
  for (int n = 0; n < 100000; n++) t = m.make_plus(t, t);
  const LetPlan deep = plan(t);
  EXPECT_EQ(deep.bindings().size(), 100000U);
  EXPECT_EQ(deep.group_ends().size(), 100000U);
  EXPECT_EQ(bindings(deep).front(), ij);
  EXPECT_EQ(deep.group_ends().back(), 100000U);
}

}  // namespace
}  // namespace quill
