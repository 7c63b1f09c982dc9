#include <gtest/gtest.h>

#include <ranges>
#include <stdexcept>
#include <string>
#include <vector>

#include "quill/terms/subterms.h"
#include "quill/terms/term_id_set.h"
#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/manager_test.h"
#include "tests/support/small_stack.h"

namespace quill {
namespace {

class SubtermsTest : public testing::ManagerTest {
 protected:
  // The name, without backquotes.
  static std::string text_of(const Term_* t) {
    const std::string name = t->symbol->name;
    return name[0] == '`' ? name.substr(1, name.size() - 2) : name;
  }
  static std::string post(const Term_* root) { return joined(postorder(root)); }
  static std::string pre(const Term_* root) { return joined(preorder(root)); }
  template <class Range>
  static std::string joined(Range&& range) {
    std::string text;
    for (const Term_* t : range) text += (text.empty() ? "" : " ") + text_of(t);
    return text;
  }

  const Term_* a = constant("a", m.get_bool_type());
  const Term_* b = constant("b", m.get_bool_type());
  const Term_* c = constant("c", m.get_bool_type());
};

static_assert(std::ranges::input_range<Subterms<SubtermOrder::Postorder>>);
static_assert(std::ranges::input_range<Subterms<SubtermOrder::Preorder>>);

TEST_F(SubtermsTest, ArgumentsComeBeforeTheirTermFromTheFirstToTheLast) {
  EXPECT_EQ(post(m.make_or(m.make_and(a, b), m.make_iff(b, c))), "a b and c iff or");
  EXPECT_EQ(post(m.make_or(a, m.make_and(b, c))), "a b c and or");
  EXPECT_EQ(post(a), "a");
}

TEST_F(SubtermsTest, TermsComeBeforeTheirArguments) {
  EXPECT_EQ(pre(m.make_or(m.make_and(a, b), m.make_iff(b, c))), "or and a b iff c");
  EXPECT_EQ(pre(m.make_or(a, m.make_and(b, c))), "or a and b c");
  EXPECT_EQ(pre(a), "a");
}

TEST_F(SubtermsTest, EachTermComesOnce) {
  const Term_* t = m.make_and(a, b);
  EXPECT_EQ(post(m.make_or(t, t)), "a b and or");
  EXPECT_EQ(pre(m.make_or(t, t)), "or and a b");
  EXPECT_EQ(post(m.make_iff(t, m.make_or(t, a))), "a b and or iff");
}

TEST_F(SubtermsTest, RootsAreTakenInTheGivenOrder) {
  const Term_* t = m.make_and(a, b);
  EXPECT_EQ(joined(postorder({c, t, a, t})), "c a b and");
  EXPECT_EQ(joined(preorder({c, t, a, t})), "c and a b");
  EXPECT_EQ(joined(postorder({b, t})), "b a and");
  EXPECT_EQ(joined(preorder({b, t})), "b and a");
  const std::vector<const Term_*> roots = {t, c};
  EXPECT_EQ(joined(postorder(roots)), "a b and c");
  EXPECT_EQ(joined(postorder(t->arguments())), "a b");
  EXPECT_EQ(joined(preorder(std::vector<const Term_*>{})), "");
  EXPECT_EQ(joined(postorder(TermSpan())), "");
}

TEST_F(SubtermsTest, ALoopMayBeLeftAndGoesOnWhereItStopped) {
  const Term_* t = m.make_or(m.make_and(a, b), c);
  auto terms = postorder(t);
  for (const Term_* below : terms) {
    if (below == b) break;
  }
  EXPECT_EQ(joined(terms), "b and c or");
}

TEST_F(SubtermsTest, ALoopMayEndWithAnException) {
  const Term_* t = m.make_or(m.make_and(a, b), c);
  EXPECT_THROW(for_each_subterm(t,
                                [&](const Term_* below) {
                                  if (below == b) throw std::runtime_error("enough");
                                }),
               std::runtime_error);
  EXPECT_EQ(pre(t), "or and a b c");
}

TEST_F(SubtermsTest, ArgumentsCanBeSkipped) {
  const Term_* shared = m.make_and(a, b);
  const Term_* t = m.make_iff(shared, m.make_or(c, a));
  auto terms = preorder(t);
  std::string text;
  for (const Term_* below : terms) {
    text += text_of(below) + ' ';
    if (below == shared) {
      terms.skip_arguments();
      terms.skip_arguments();
    }
  }
  EXPECT_EQ(text, "iff and or c a ");
}

TEST_F(SubtermsTest, AnActionMayStopAndSkip) {
  const Term_* shared = m.make_and(a, b);
  const Term_* t = m.make_iff(m.make_not(shared), m.make_or(c, a));
  std::string text;
  const auto action = [&](const Term_* below) {
    text += text_of(below) + ' ';
    return below == shared ? Walk::SkipArguments : below == c ? Walk::Stop : Walk::Continue;
  };
  EXPECT_FALSE(for_each_subterm(t, action));
  EXPECT_EQ(text, "iff not and or c ");
  text.clear();
  EXPECT_TRUE(for_each_subterm(shared, action));
  EXPECT_EQ(text, "and ");
  size_t count = 0;
  EXPECT_TRUE(for_each_subterm(std::vector<const Term_*>{t, c}, [&](const Term_*) { ++count; }));
  EXPECT_EQ(count, 7U);
}

TEST_F(SubtermsTest, TermsMayBeMadeMeanwhile) {
  const Term_* t = m.make_or(m.make_and(a, b), c);
  std::string text;
  for (const Term_* below : postorder(t)) {
    text += text_of(below) + ' ';
    for (int i = 0; i < 40'000; ++i) m.make_number(i);  // more ids than one page has bits
    const Term_* fresh = m.make_not(m.make_fresh_variable(m.get_bool_type()));
    EXPECT_EQ(joined(preorder(fresh)).substr(0, 3), "not");
  }
  EXPECT_EQ(text, "a b and c or ");
}

TEST_F(SubtermsTest, SeveralRangesAreReadAtOnce) {
  const Term_* t = m.make_or(m.make_and(a, b), c);
  std::string text;
  for (const Term_* outer : preorder(t)) {
    for (const Term_* inner : postorder(outer)) text += text_of(inner) + ' ';
    text += "/ ";
  }
  EXPECT_EQ(text, "a b and c or / a b and / a / b / c / ");
}

TEST_F(SubtermsTest, AreReadOnASmallStack) {
  const Term_* t = a;
  for (int i = 0; i < 1'000'000; ++i) t = m.make_not(t);
  size_t counts[2] = {};
  testing::run_on_small_stack([&] {
    const Term_* before = nullptr;
    for (const Term_* below : postorder(t)) {
      if (before != nullptr && below->args[0] != before) ADD_FAILURE();
      before = below;
      ++counts[0];
    }
    for (const Term_* below : preorder(t)) {
      if (below != t) --counts[0];
      ++counts[1];
    }
  });
  EXPECT_EQ(counts[0], 1U);
  EXPECT_EQ(counts[1], 1'000'001U);
}

// Doubled a hundred times, the tree has 2^101 - 1 terms.
TEST_F(SubtermsTest, AreLinearHoweverMuchIsShared) {
  const Term_* t = a;
  for (int i = 0; i < 100; ++i) t = m.make_and(t, t);
  size_t count = 0;
  for ([[maybe_unused]] const Term_* below : postorder(t)) ++count;
  for ([[maybe_unused]] const Term_* below : preorder(t)) ++count;
  EXPECT_EQ(count, 202U);
}

// A term of a million arguments.
TEST_F(SubtermsTest, ReadManyArguments) {
  const std::vector<const DataType*> types(1'000'000, m.get_int_type());
  const Symbol* f = m.make_symbol("f", m.get_function_type(types, m.get_int_type()));
  const std::vector<const Term_*> args(1'000'000, m.make_number(1));
  const Term_* t = m.make_uninterpreted_function(f, args);
  EXPECT_EQ(joined(postorder(t)), "1 f");
  EXPECT_EQ(joined(preorder(t)), "f 1");
}

TEST_F(SubtermsTest, OfTwoManagersAreReadApart) {
  TermManager other;
  const Term_* t = other.make_not(testing::constant(other, "a", other.get_bool_type()));
  std::string text;
  for (const Term_* below : postorder(m.make_not(a))) text += text_of(below) + ' ';
  for (const Term_* below : postorder(t)) text += text_of(below) + ' ';
  EXPECT_EQ(text, "a not a not ");
}

TEST_F(SubtermsTest, AreReadAfterACollection) {
  const Term_* t = m.make_or(m.make_and(a, b), c);
  for (int i = 0; i < 1000; ++i) m.make_number(i);
  m.gc({t}, {}, {});
  EXPECT_EQ(post(t), "a b and c or");
}

TEST(TermIdSet, HoldsWhatWasEntered) {
  TermManager m;
  std::vector<const Term_*> terms;
  for (int i = 0; i < 40'000; ++i) terms.push_back(m.make_number(i));
  TermIdSet set;
  EXPECT_FALSE(set.contains(terms.back()));
  for (size_t i = 0; i < terms.size(); i += 3) EXPECT_TRUE(set.insert(terms[i]));
  for (size_t i = 0; i < terms.size(); ++i) EXPECT_EQ(set.contains(terms[i]), i % 3 == 0);
  EXPECT_FALSE(set.insert(terms[0]));
  EXPECT_EQ(set.size(), 13'334U);
  set.clear();
  EXPECT_EQ(set.size(), 0U);
  EXPECT_FALSE(set.contains(terms[0]));
}

}  // namespace
}  // namespace quill
