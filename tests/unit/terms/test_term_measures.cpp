#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "quill/terms/term_measures.h"
#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/manager_test.h"
#include "tests/support/small_stack.h"

namespace quill {
namespace {

class TermMeasures : public testing::ManagerTest {
 protected:
  const Term_* a = constant("a", m.get_bool_type());
  const Term_* b = constant("b", m.get_bool_type());
};

TEST_F(TermMeasures, OfSmallTerms) {
  const Term_* t = m.make_and(a, b);
  const Term_* u = m.make_or(m.make_not(t), t);
  EXPECT_EQ(dag_size(a), 1U);
  EXPECT_EQ(tree_size(a), 1U);
  EXPECT_EQ(depth(a), 1U);
  EXPECT_EQ(dag_size(u), 5U);
  EXPECT_EQ(tree_size(u), 8U);
  EXPECT_EQ(depth(u), 4U);
  EXPECT_EQ(dag_size(std::vector<const Term_*>{a, t, b}), 3U);
  EXPECT_EQ(dag_size(TermSpan()), 0U);
}

TEST_F(TermMeasures, FindWhatIsBelow) {
  const Term_* t = m.make_or(m.make_not(a), a);
  EXPECT_TRUE(contains(t, t));
  EXPECT_TRUE(contains(t, a));
  EXPECT_FALSE(contains(t, b));
  EXPECT_FALSE(contains(a, t));
}

TEST_F(TermMeasures, TreesAreCountedUpToTheLargestNumber) {
  const Term_* t = a;
  for (int i = 0; i < 63; ++i) t = m.make_and(t, t);
  EXPECT_EQ(tree_size(t), UINT64_MAX);  // exactly
  EXPECT_EQ(tree_size(t->args[0]), (uint64_t{1} << 63) - 1);
  for (int i = 0; i < 37; ++i) t = m.make_and(t, t);
  EXPECT_EQ(tree_size(t), UINT64_MAX);
  EXPECT_EQ(dag_size(t), 101U);
  EXPECT_EQ(depth(t), 101U);
}

TEST_F(TermMeasures, OfDeepTermsOnASmallStack) {
  const Term_* t = a;
  for (int i = 0; i < 1'000'000; ++i) t = m.make_not(t);
  testing::run_on_small_stack([&] {
    EXPECT_EQ(dag_size(t), 1'000'001U);
    EXPECT_EQ(tree_size(t), 1'000'001U);
    EXPECT_EQ(depth(t), 1'000'001U);
    EXPECT_TRUE(contains(t, a));
    EXPECT_FALSE(contains(t, b));
  });
}

}  // namespace
}  // namespace quill
