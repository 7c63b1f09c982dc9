#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>
#include <vector>

#include "quill/terms/termmanager/term_values.h"
#include "tests/support/manager_test.h"

namespace quill {
namespace {

using TermValuesTest = testing::ManagerTest;
using TermValuesDeathTest = testing::ManagerTest;

TEST_F(TermValuesTest, LeadFromTermsToValues) {
  const Term_* a = constant("a", m.get_int_type());
  const Term_* b = constant("b", m.get_int_type());
  TermValues<std::string> names(m);
  EXPECT_TRUE(names.empty());
  EXPECT_EQ(names.find(a), nullptr);
  EXPECT_TRUE(names.insert(a, "first"));
  EXPECT_FALSE(names.insert(a, "second"));
  EXPECT_EQ(*names.find(a), "first");
  EXPECT_FALSE(names.contains(b));
  EXPECT_EQ(names[b], "");
  EXPECT_TRUE(names.contains(b));
  names[b] += "B";
  *names.find(a) += "A";
  EXPECT_EQ(names[b], "B");
  EXPECT_EQ(names[a], "firstA");
  EXPECT_EQ(names.size(), 2U);
}

TEST_F(TermValuesTest, AreReadInTheOrderOfEntry) {
  TermValues<int> values(m);
  std::vector<const Term_*> terms;
  for (int i = 0; i < 5; ++i) terms.push_back(m.make_number(i));
  for (const int i : {3, 0, 4, 1}) values.insert(terms[static_cast<size_t>(i)], 10 * i);
  std::vector<int> found;
  for (const auto& [term, value] : values) {
    EXPECT_EQ(*values.find(term), value);
    found.push_back(value);
  }
  EXPECT_EQ(found, std::vector<int>({30, 0, 40, 10}));
}

TEST_F(TermValuesTest, TakeTermsThatAreMadeLater) {
  TermValues<int> values(m);
  for (int i = 0; i < 10'000; ++i) values[m.make_number(i)] = i;
  for (int i = 0; i < 10'000; ++i) EXPECT_EQ(*values.find(m.make_number(i)), i);
}

TEST_F(TermValuesTest, AgreeWithAnOrderedMap) {
  std::vector<const Term_*> terms;
  for (int i = 0; i < 3000; ++i) terms.push_back(m.make_number(i));
  std::mt19937 random(20261122);
  TermValues<unsigned> values(m);
  std::map<const Term_*, unsigned> model;
  for (int i = 0; i < 20'000; ++i) {
    const Term_* t = terms[random() % terms.size()];
    switch (random() % 4) {
      case 0:
        EXPECT_EQ(values.insert(t, static_cast<unsigned>(i)),
                  model.insert({t, static_cast<unsigned>(i)}).second);
        break;
      case 1:
        EXPECT_EQ(++values[t], ++model[t]);
        break;
      case 2:
        EXPECT_EQ(values.contains(t), model.contains(t));
        break;
      default:
        if (random() % 4000 == 0) {
          values.clear();
          model.clear();
        }
    }
    ASSERT_EQ(values.size(), model.size());
  }
  for (const auto& [term, value] : model) EXPECT_EQ(*values.find(term), value);
}

TEST_F(TermValuesTest, AreUsedAgainAfterACollectionWhenCleared) {
  const Term_* a = constant("a", m.get_int_type());
  TermValues<int> values(m);
  values[m.make_number(1)] = 1;
  m.gc({a}, {}, {});
  values.clear();
  EXPECT_FALSE(values.contains(a));
  values[a] = 2;
  EXPECT_EQ(*values.find(a), 2);
}

#ifndef NDEBUG
TEST_F(TermValuesDeathTest, SayWhenACollectionHasMadeThemStale) {
  const Term_* a = constant("a", m.get_int_type());
  TermValues<int> values(m);
  values[a] = 1;
  m.gc({a}, {}, {});
  EXPECT_DEATH(values.find(a), "a map of terms is used after a collection of its manager");
  EXPECT_DEATH(values.insert(a, 1), "a map of terms is used after a collection of its manager");
}
#endif

}  // namespace
}  // namespace quill
