#include <gtest/gtest.h>

#include <concepts>
#include <exception>
#include <string>
#include <type_traits>
#include <utility>

#include "quill/utils/exception.h"
#include "tests/unit/utils/failing_allocation.h"

namespace quill {
namespace {

class Refusal : public Exception {
 public:
  using Exception::Exception;
};

TEST(Exception, HoldsItsMessage) {
  const Exception e("no such type");
  EXPECT_STREQ(e.what(), "no such type");
}

TEST(Exception, WithoutAMessageTheTextIsEmpty) {
  const Exception e;
  EXPECT_STREQ(e.what(), "");
}

TEST(Exception, DerivesFromTheStandardException) {
  try {
    throw Exception("lost");
  } catch (const std::exception& e) {
    EXPECT_STREQ(e.what(), "lost");
  }
}

TEST(Exception, HasAVirtualDestructor) { EXPECT_TRUE(std::has_virtual_destructor_v<Exception>); }

TEST(Exception, PiecesOfEveryPrintableTypeAreAppended) {
  const std::string text = "width ";
  const Exception e = Exception("bad ")
                      << text << 32 << ' ' << uint64_t{18446744073709551615U} << " (" << -1L << ")";
  EXPECT_STREQ(e.what(), "bad width 32 18446744073709551615 (-1)");
}

TEST(Exception, AMessageMayBeStreamedIntoAnEmptyOne) {
  const Exception e = Exception() << 7 << " items";
  EXPECT_STREQ(e.what(), "7 items");
}

TEST(Exception, AThrownStreamExpressionKeepsItsClass) {
  bool caught = false;
  try {
    throw Refusal("arity ") << 2;
  } catch (const Refusal& e) {
    caught = true;
    EXPECT_EQ(typeid(e), typeid(Refusal));
    EXPECT_STREQ(e.what(), "arity 2");
  }
  EXPECT_TRUE(caught);
}

TEST(Exception, StreamingKeepsClassAndValueCategory) {
  EXPECT_TRUE((std::same_as<decltype(Refusal("") << 1 << "x"), Refusal&&>));
  EXPECT_TRUE((std::same_as<decltype(std::declval<Refusal&>() << 1 << "x"), Refusal&>));
}

TEST(Exception, StreamingIntoAnObjectChangesThatObject) {
  Refusal e("one");
  e << " two";
  EXPECT_EQ(&(e << " three"), &e);
  EXPECT_STREQ(e.what(), "one two three");
}

TEST(Exception, WhatFollowsLaterPieces) {
  Exception e("one");
  EXPECT_STREQ(e.what(), "one");
  e << " two";
  EXPECT_STREQ(e.what(), "one two");
}

TEST(Exception, TheTextStaysInPlaceWhileTheExceptionIsUnchanged) {
  const Exception e("a message that is longer than any string that is kept in place");
  const char* text = e.what();
  ASSERT_EQ(e.what(), text);
  EXPECT_STREQ(text, "a message that is longer than any string that is kept in place");
}

TEST(Exception, CopiesAreIndependent) {
  Refusal original("text");
  Refusal copy = original;
  copy << " of the copy";
  original << " of the original";
  EXPECT_STREQ(copy.what(), "text of the copy");
  EXPECT_STREQ(original.what(), "text of the original");
}

TEST(Exception, AssignmentReplacesTheText) {
  Exception target("a longer text that goes away");
  const Exception source("new");
  target = source;
  EXPECT_STREQ(target.what(), "new");
  target << "er";
  EXPECT_STREQ(target.what(), "newer");
  EXPECT_STREQ(source.what(), "new");
}

TEST(Exception, SelfAssignmentKeepsTheText) {
  Exception e("text");
  const Exception& same = e;
  e = same;
  EXPECT_STREQ(e.what(), "text");
}

TEST(Exception, ACopyTakenWhileHandlingOutlivesTheThrownObject) {
  std::exception_ptr kept;
  try {
    throw Refusal("late ") << "reader";
  } catch (...) {
    kept = std::current_exception();
  }
  EXPECT_THROW(
      {
        try {
          std::rethrow_exception(kept);
        } catch (const Refusal& e) {
          EXPECT_STREQ(e.what(), "late reader");
          throw;
        }
      },
      Refusal);
}

TEST(Exception, AHandlerMayAddToTheMessageAndPassItOn) {
  try {
    try {
      throw Refusal("inner");
    } catch (Exception& e) {
      e << ", outer";
      throw;
    }
  } catch (const Refusal& e) {
    EXPECT_STREQ(e.what(), "inner, outer");
  }
}

TEST(Exception, TheHookIsAFunctionThatDoesNothing) {
  void (*const hook)(const std::string&) = &Exception::dump_msg_and_raise_assertion;
  EXPECT_NO_THROW(hook("message"));
}

TEST(Exception, WhatDoesNotThrowWhenMemoryIsExhausted) {
  EXPECT_TRUE(noexcept(std::declval<const Exception&>().what()));
  const std::string message(1000, 'm');
  const Exception e(message);
  const char* text;
  {
    const testing::FailingAllocation none(0);
    text = e.what();
  }
  EXPECT_STREQ(text, "out of memory while composing an error message");
  EXPECT_EQ(e.what(), message);
}

}  // namespace
}  // namespace quill
