#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <random>
#include <set>
#include <vector>

#include "quill/derived/derived.h"
#include "quill/printers/let_plan.h"
#include "tests/support/manager_test.h"

namespace quill {
namespace {

using Ends = std::vector<uint32_t>;
using Bindings = std::vector<const Term_*>;
using Operands = std::vector<LetPlan::Operand>;

class LetPlanTest : public testing::ManagerTest {
 protected:
  LetPlan plan(const Term_* root) const {
    WrittenForms forms(m);
    return {m, root, forms};
  }

  static Bindings bindings(const LetPlan& made) {
    Bindings terms;
    for (uint32_t number = 1; number <= made.num_bindings(); ++number) {
      terms.push_back(made.term(LetPlan::Operand::binding(number)));
    }
    return terms;
  }

  static Operands operands(const LetPlan& made, uint32_t node) {
    Operands all;
    for (uint32_t i = made.first_operand(node); i < made.end_of_operands(node); ++i) {
      all.push_back(made.operand(i));
    }
    return all;
  }

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
  EXPECT_EQ(numbered.root(), LetPlan::Operand::node(0));
  EXPECT_EQ(numbered.num_nodes(), 5U);
  EXPECT_EQ(operands(numbered, 0),
            (Operands{LetPlan::Operand::node(1), LetPlan::Operand::node(2)}));
  EXPECT_EQ(operands(numbered, 1),
            (Operands{LetPlan::Operand::binding(1), LetPlan::Operand::constant(0)}));
  EXPECT_EQ(operands(numbered, 2),
            (Operands{LetPlan::Operand::binding(1), LetPlan::Operand::node(4)}));
  EXPECT_EQ(operands(numbered, 3),
            (Operands{LetPlan::Operand::constant(0), LetPlan::Operand::constant(1)}));
  EXPECT_EQ(bindings(numbered), Bindings{ij});
  EXPECT_EQ(numbered.bound_node(1), 3U);
  EXPECT_EQ(numbered.form(3).term, ij);
  EXPECT_EQ(numbered.form(4).term, ji);
  EXPECT_EQ(numbered.num_constants(), 2U);
  EXPECT_EQ(numbered.constant(0), i);
  EXPECT_EQ(numbered.constant(1), j);
}

TEST_F(LetPlanTest, OperandsStandForTerms) {
  const LetPlan numbered = plan(m.make_leq(m.make_plus(ij, i), m.make_times(ij, ji)));
  EXPECT_EQ(numbered.term(LetPlan::Operand::node(4)), ji);
  EXPECT_EQ(numbered.term(LetPlan::Operand::binding(1)), ij);
  EXPECT_EQ(numbered.term(LetPlan::Operand::constant(1)), j);
}

TEST_F(LetPlanTest, AConstantAlone) {
  const LetPlan constant = plan(i);
  EXPECT_EQ(constant.root(), LetPlan::Operand::constant(0));
  EXPECT_EQ(constant.constant(0), i);
  EXPECT_EQ(constant.num_nodes(), 0U);
  EXPECT_FALSE(constant.has_extensions());
}

TEST_F(LetPlanTest, OperandsAreConstantsNodesOrBindings) {
  EXPECT_TRUE(LetPlan::Operand::constant(7).is_constant());
  EXPECT_FALSE(LetPlan::Operand::constant(7).is_node());
  EXPECT_FALSE(LetPlan::Operand::constant(7).is_binding());
  EXPECT_EQ(LetPlan::Operand::constant(7).number(), 7U);
  EXPECT_FALSE(LetPlan::Operand::node(7).is_constant());
  EXPECT_TRUE(LetPlan::Operand::node(7).is_node());
  EXPECT_FALSE(LetPlan::Operand::node(7).is_binding());
  EXPECT_EQ(LetPlan::Operand::node(7).number(), 7U);
  EXPECT_FALSE(LetPlan::Operand::binding(7).is_constant());
  EXPECT_FALSE(LetPlan::Operand::binding(7).is_node());
  EXPECT_TRUE(LetPlan::Operand::binding(7).is_binding());
  EXPECT_EQ(LetPlan::Operand::binding(7).number(), 7U);
}

TEST_F(LetPlanTest, ASharedTermIsBound) {
  const LetPlan one = plan(m.make_leq(ij, ij));
  EXPECT_EQ(bindings(one), Bindings{ij});
  EXPECT_EQ(one.group_ends(), Ends{1});
  EXPECT_EQ(operands(one, 0),
            (Operands{LetPlan::Operand::binding(1), LetPlan::Operand::binding(1)}));
}

TEST_F(LetPlanTest, TermsBelowASharedTermOccurOnce) {
  const Term_* product = m.make_times(ij, j);
  const LetPlan one = plan(m.make_leq(product, product));
  EXPECT_EQ(bindings(one), Bindings{product});
}

TEST_F(LetPlanTest, GroupsFollowTheNestingOfBindings) {
  // ji refers to no binding, like ij, but is needed no earlier than the product.
  const Term_* product = m.make_times(ij, ij);
  const Term_* left = m.make_leq(product, product);
  const Term_* root = m.make_and(left, m.make_leq(ji, ji));
  const LetPlan grouped = plan(root);
  EXPECT_EQ(bindings(grouped), (Bindings{ij, product, ji}));
  EXPECT_EQ(grouped.group_ends(), (Ends{1, 3}));
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
  for (int n = 3; n <= 9; ++n) product = m.make_times(product, m.make_number(n));
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

TEST_F(LetPlanTest, WithoutNamesNothingIsBound) {
  const Term_* root = m.make_leq(ij, ij);
  WrittenForms forms(m);
  const LetPlan tree(m, root, forms, /*with_names=*/false);
  EXPECT_EQ(tree.num_bindings(), 0U);
  EXPECT_EQ(tree.group_ends(), Ends{});
  EXPECT_EQ(operands(tree, 0), (Operands{LetPlan::Operand::node(1), LetPlan::Operand::node(1)}));
}

// Random graphs: what is bound, and the fewest groups in which no binding refers to its own group
// or a later one.
TEST_F(LetPlanTest, RandomGraphs) {
  std::mt19937 random(20261122);
  for (int round = 0; round < 300; ++round) {
    std::vector<const Term_*> terms = {i, j};
    const auto pick = [&] { return terms[random() % terms.size()]; };
    for (size_t n = 2 + random() % 60; n != 0; --n) {
      const Term_* a = pick();
      const Term_* t = random() % 2 == 0 ? m.make_plus(a, pick()) : m.make_times(a, pick());
      if (std::find(terms.begin(), terms.end(), t) == terms.end()) terms.push_back(t);
    }
    const Term_* root = terms.back();
    std::map<const Term_*, int> places;  // terms are in an order of operands before operators
    std::map<const Term_*, size_t> depth;
    places[root] = 1;
    size_t num_groups = 0;
    std::set<const Term_*> bound;
    for (size_t n = terms.size(); n-- > 2;) {
      const Term_* t = terms[n];
      if (places[t] == 0) continue;
      if (places[t] > 1) {
        bound.insert(t);
        ++depth[t];
      }
      num_groups = std::max(num_groups, depth[t]);
      for (const Term_* arg : {t->args[0], t->args[1]}) {
        ++places[arg];
        depth[arg] = std::max(depth[arg], depth[t]);
      }
    }

    const LetPlan made = plan(root);
    const Bindings found = bindings(made);
    EXPECT_EQ(std::set<const Term_*>(found.begin(), found.end()), bound);
    EXPECT_EQ(found.size(), bound.size());
    EXPECT_EQ(made.group_ends().size(), num_groups);
    uint32_t number = 1;
    uint32_t last_of_earlier = 0;
    size_t group = 0;
    for (const uint32_t end : made.group_ends()) {
      EXPECT_LE(number, end);
      for (; number <= end; ++number) {
        EXPECT_EQ(num_groups - depth[found[number - 1]], group);
        std::vector<uint32_t> open{made.bound_node(number)};
        while (!open.empty()) {
          const Operands below = operands(made, open.back());
          open.pop_back();
          for (const LetPlan::Operand operand : below) {
            if (operand.is_node()) open.push_back(operand.number());
            if (operand.is_binding()) {
              EXPECT_LE(operand.number(), last_of_earlier);
            }
          }
        }
      }
      last_of_earlier = end;
      ++group;
    }
    EXPECT_EQ(last_of_earlier, made.num_bindings());
  }
}

TEST_F(LetPlanTest, LongChainsAndDeepGroups) {
  const Term_* t = ij;
  for (int n = 0; n < 100000; ++n) t = m.make_plus(t, t);
  const LetPlan deep = plan(t);
  EXPECT_EQ(deep.num_bindings(), 100000U);
  EXPECT_EQ(deep.group_ends().size(), 100000U);
  EXPECT_EQ(bindings(deep).front(), ij);
  EXPECT_EQ(deep.group_ends().back(), 100000U);
}

}  // namespace
}  // namespace quill
