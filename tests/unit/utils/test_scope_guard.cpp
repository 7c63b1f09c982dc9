#include <gtest/gtest.h>

#include <concepts>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>

#include "quill/utils/scope_guard.h"

namespace quill {
namespace {

TEST(ScopeGuard, ActsAtTheEndOfTheScopeAndNotBefore) {
  int calls = 0;
  {
    const ScopeGuard guard([&] { calls++; });
    EXPECT_EQ(calls, 0);
  }
  EXPECT_EQ(calls, 1);
}

TEST(ScopeGuard, ActsWhenAnExceptionLeavesTheScope) {
  int calls = 0;
  EXPECT_THROW(
      {
        const ScopeGuard guard([&] { calls++; });
        throw std::runtime_error("out");
      },
      std::runtime_error);
  EXPECT_EQ(calls, 1);
}

TEST(ScopeGuard, DoesNothingOnceDismissed) {
  int calls = 0;
  {
    ScopeGuard guard([&] { calls++; });
    guard.dismiss();
    guard.dismiss();
  }
  EXPECT_EQ(calls, 0);
}

TEST(ScopeGuard, UndoesStepsInReverseOrder) {
  std::string trace;
  {
    const ScopeGuard first([&] { trace += '1'; });
    const ScopeGuard second([&] { trace += '2'; });
    ScopeGuard third([&] { trace += '3'; });
    third.dismiss();
  }
  EXPECT_EQ(trace, "21");
}

TEST(ScopeGuard, IsNotCopied) {
  using Guard = ScopeGuard<void (*)()>;
  EXPECT_FALSE(std::copy_constructible<Guard>);
  EXPECT_FALSE(std::is_copy_assignable_v<Guard>);
}

TEST(ScopedValue, SetsTheValueForTheScopeAndGivesTheOldOneBack) {
  int x = 1;
  {
    const ScopedValue<int> scoped(x, 2);
    EXPECT_EQ(x, 2);
  }
  EXPECT_EQ(x, 1);
}

TEST(ScopedValue, GivesTheOldValueBackWhenAnExceptionLeavesTheScope) {
  bool flag = true;
  EXPECT_THROW(
      {
        const ScopedValue<bool> scoped(flag, false);
        throw std::runtime_error("out");
      },
      std::runtime_error);
  EXPECT_TRUE(flag);
}

TEST(ScopedValue, OverwritesWhatTheScopeStored) {
  int x = 1;
  {
    const ScopedValue<int> scoped(x, 2);
    x = 3;
  }
  EXPECT_EQ(x, 1);
}

TEST(ScopedValue, Nests) {
  int x = 1;
  {
    const ScopedValue<int> outer(x, 2);
    {
      const ScopedValue<int> inner(x, 3);
      EXPECT_EQ(x, 3);
    }
    EXPECT_EQ(x, 2);
  }
  EXPECT_EQ(x, 1);
}

TEST(ScopedValue, MovesValuesThatCannotBeCopied) {
  auto x = std::make_unique<int>(1);
  const int* address = x.get();
  {
    const ScopedValue<std::unique_ptr<int>> scoped(x, std::make_unique<int>(2));
    EXPECT_EQ(*x, 2);
  }
  EXPECT_EQ(x.get(), address);
}

}  // namespace
}  // namespace quill
