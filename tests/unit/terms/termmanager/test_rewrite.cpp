#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "quill/printers/outterm.h"
#include "quill/terms/termmanager/rewrite.h"
#include "tests/support/manager_test.h"
#include "tests/support/small_stack.h"

namespace quill {
namespace {

class RewriteTest : public testing::ManagerTest {
 protected:
  // Drops pairs of negations.
  const Term_* without_double_negation(const Term_* t) const {
    return is_not(t) && is_not(t->args[0]) ? t->args[0]->args[0] : t;
  }
  bool is_not(const Term_* t) const { return m.get_tag(t->symbol) == SymbolTag::NOT; }

  const Term_* simplify(const Term_* t) {
    TermValues<const Term_*> memo(m);
    return rewrite(m, t, memo, [&](const Term_* u) { return without_double_negation(u); });
  }

  const Term_* p = constant("p", m.get_bool_type());
  const Term_* q = constant("q", m.get_bool_type());
};

TEST_F(RewriteTest, ReplacesFromTheArgumentsUp) {
  const Term_* t = m.make_not(m.make_not(m.make_and(m.make_not(m.make_not(p)), q)));
  EXPECT_EQ(simplify(t), m.make_and(p, q));
  EXPECT_EQ(simplify(m.make_not(m.make_not(m.make_not(p)))), m.make_not(p));
}

TEST_F(RewriteTest, WhatNothingReplacesStays) {
  const Term_* t = m.make_iff(m.make_not(p), m.make_or(p, q));
  const auto before = sizes();
  EXPECT_EQ(simplify(t), t);
  EXPECT_EQ(sizes(), before);
}

TEST_F(RewriteTest, CallsTheFunctionOnceForEachTermArgumentsFirst) {
  const Term_* t = m.make_and(m.make_or(p, q), m.make_or(p, q));
  std::vector<const Term_*> calls;
  TermValues<const Term_*> memo(m);
  rewrite(m, t, memo, [&](const Term_* u) {
    calls.push_back(u);
    return u;
  });
  EXPECT_EQ(calls, (std::vector<const Term_*>{p, q, t->args[0], t}));
}

TEST_F(RewriteTest, AReplacementIsNotRewrittenAgain) {
  const Term_* r = constant("r", m.get_bool_type());
  TermValues<const Term_*> memo(m);
  const auto next = [&](const Term_* t) { return t == p ? q : t == q ? r : t; };
  EXPECT_EQ(rewrite(m, m.make_and(p, q), memo, next), m.make_and(q, r));
}

TEST_F(RewriteTest, TheMemoIsKeptForLaterCalls) {
  TermValues<const Term_*> memo(m);
  int calls = 0;
  const auto count = [&](const Term_* t) {
    ++calls;
    return without_double_negation(t);
  };
  const Term_* t = m.make_not(m.make_not(p));
  EXPECT_EQ(rewrite(m, m.make_and(t, q), memo, count), m.make_and(p, q));
  EXPECT_EQ(calls, 5);
  EXPECT_EQ(rewrite(m, m.make_or(t, q), memo, count), m.make_or(p, q));
  EXPECT_EQ(calls, 6);
  EXPECT_EQ(rewrite(m, t, memo, count), p);
  EXPECT_EQ(calls, 6);
}

// As a substitution.
TEST_F(RewriteTest, ImagesMayBeEnteredBefore) {
  TermValues<const Term_*> memo(m);
  memo.insert(p, m.make_or(q, q));
  const auto same = [](const Term_* t) { return t; };
  EXPECT_EQ(rewrite(m, m.make_and(p, q), memo, same), m.make_and(m.make_or(q, q), q));
}

TEST_F(RewriteTest, SeveralRootsGiveTheirImagesInOrder) {
  TermValues<const Term_*> memo(m);
  const std::vector<const Term_*> roots = {m.make_not(m.make_not(q)), p, m.make_not(m.make_not(q))};
  const auto images =
      rewrite(m, TermSpan(roots), memo, [&](const Term_* t) { return without_double_negation(t); });
  EXPECT_EQ(images, (std::vector<const Term_*>{q, p, q}));
}

TEST_F(RewriteTest, AnImageOfAnotherTypeIsRefusedByMakeTerm) {
  const Term_* n = m.make_number(1);
  TermValues<const Term_*> memo(m);
  const auto wrong = [&](const Term_* t) { return t == p ? n : t; };
  EXPECT_EQ(error_of([&] { rewrite(m, m.make_and(p, q), memo, wrong); }),
            "type error. term 1 has type Int, but Bool was expected. (`and`)");
  // What was finished stays, and the call can be made again.
  EXPECT_EQ(*memo.find(p), n);
  EXPECT_EQ(rewrite(m, q, memo, wrong), q);
  EXPECT_EQ(m.check_consistency(), "");
}

TEST_F(RewriteTest, AnExceptionOfTheFunctionLeavesWhatIsFinished) {
  TermValues<const Term_*> memo(m);
  bool refuse = true;
  const auto function = [&](const Term_* t) {
    if (refuse && t->symbol->arity != 0) throw std::runtime_error("refused");
    return t;
  };
  const Term_* t = m.make_and(p, q);
  EXPECT_THROW(rewrite(m, t, memo, function), std::runtime_error);
  EXPECT_EQ(memo.size(), 2U);
  refuse = false;
  EXPECT_EQ(rewrite(m, t, memo, function), t);
}

TEST_F(RewriteTest, TheFunctionMayBuildAndRewrite) {
  TermValues<const Term_*> memo(m);
  TermValues<const Term_*> inner_memo(m);
  const Term_* image = rewrite(m, m.make_and(m.make_not(p), q), memo, [&](const Term_* t) {
    for (int i = 0; i < 5000; ++i) m.make_number(i);
    const Term_* inner = rewrite(m, t, inner_memo, [&](const Term_* u) { return u == q ? p : u; });
    return is_not(inner) ? m.make_or(inner, inner) : inner;
  });
  const Term_* not_p = m.make_not(p);
  EXPECT_EQ(image, m.make_and(m.make_or(not_p, not_p), p));
}

TEST_F(RewriteTest, DeepAndSharedTermsTakeLinearTimeAndASmallStack) {
  const Term_* deep = p;
  for (int i = 0; i < 300'000; ++i) deep = m.make_not(m.make_not(m.make_not(deep)));
  const Term_* shared = p;
  for (int i = 0; i < 100; ++i) shared = m.make_and(shared, shared);
  const Term_* images[2] = {};
  testing::run_on_small_stack([&] {
    TermValues<const Term_*> memo(m);
    const auto swap = [&](const Term_* t) { return t == p ? q : without_double_negation(t); };
    images[0] = rewrite(m, deep, memo, swap);
    images[1] = rewrite(m, shared, memo, swap);
  });
  EXPECT_EQ(images[0], q);  // an even number of negations
  const Term_* expected = q;
  for (int i = 0; i < 100; ++i) expected = m.make_and(expected, expected);
  EXPECT_EQ(images[1], expected);
}

}  // namespace
}  // namespace quill
