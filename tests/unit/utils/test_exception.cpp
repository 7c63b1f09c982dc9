#include <gtest/gtest.h>

#include <concepts>
#include <exception>
#include <locale>
#include <new>
#include <ostream>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "quill/utils/exception.h"
#include "quill/utils/qnumber.h"
#include "tests/support/failing_memory.h"
#include "tests/support/grouped_digits.h"

#ifdef QUILL_COUNTS_HOOK_CALLS

// The linker replaces the hook by the first of these, and the second by the hook.
extern "C" void quill_test_wrapped_hook(const std::string& message) __asm__(
    "__wrap_" QUILL_COUNTS_HOOK_CALLS);
extern "C" void quill_test_real_hook(const std::string& message) __asm__(
    "__real_" QUILL_COUNTS_HOOK_CALLS);

namespace {
std::vector<std::string> hook_messages;
}

void quill_test_wrapped_hook(const std::string& message) {
  hook_messages.push_back(message);
  quill_test_real_hook(message);
}

#endif

namespace quill {
namespace {

using Texts = std::vector<std::string>;

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

#ifdef QUILL_COUNTS_HOOK_CALLS
TEST(Exception, TheHookIsCalledOnceForEachThatIsMadeFromAMessage) {
  hook_messages.clear();
  const Exception first("one");
  EXPECT_EQ(hook_messages, Texts({"one"}));
  const Refusal second = Refusal("two ") << 2;
  EXPECT_EQ(hook_messages, Texts({"one", "two "}));
  try {
    throw Refusal("three");
  } catch (const Exception&) {
  }
  EXPECT_EQ(hook_messages, Texts({"one", "two ", "three"}));
}

TEST(Exception, TheHookIsNotCalledForCopiesAndEmptyMessages) {
  Exception original("text");
  hook_messages.clear();
  const Exception copy(original);
  original = copy;
  const Exception empty;
  const Exception streamed = Exception() << "text";
  EXPECT_EQ(hook_messages, Texts());
}

TEST(Exception, TheHookIsCalledBeforeTheStackUnwinds) {
  hook_messages.clear();
  struct Frame {
    ~Frame() { EXPECT_EQ(hook_messages, Texts({"zero denominator in 1/0"})); }
  };
  EXPECT_THROW(
      {
        const Frame frame;
        QNumber(1, 0);
      },
      Exception);
}
#endif

TEST(Exception, WhatNeedsNoMemory) {
  EXPECT_TRUE(noexcept(std::declval<const Exception&>().what()));
  const std::string message(1000, 'm');
  const Exception e(message);
  const char* text;
  {
    const testing::FailingMemory none(0);
    text = e.what();
  }
  EXPECT_EQ(text, message);
}

TEST(Exception, APieceThatFindsNoMemoryIsLeftOut) {
  Refusal e("one");
  const std::string long_piece(1000, 'm');
  {
    const testing::FailingMemory none(0);
    EXPECT_THROW(e << long_piece, std::bad_alloc);
  }
  EXPECT_STREQ(e.what(), "one");
  e << " two " << 3;
  EXPECT_STREQ(e.what(), "one two 3");
}

struct HalfWritten {
  friend std::ostream& operator<<(std::ostream& out, HalfWritten) {
    out << "half";
    throw std::out_of_range("the other half");
  }
};

TEST(Exception, APieceThatThrowsIsLeftOut) {
  Refusal e("one");
  EXPECT_THROW(e << HalfWritten(), std::out_of_range);
  EXPECT_STREQ(e.what(), "one");
}

TEST(Exception, NumbersAreWrittenAsInTheClassicLocale) {
  const std::locale before = std::locale::global(testing::locale_with_grouped_digits());
  const Exception e = Exception("width ") << 2000 << " of " << 1.5;
  const Exception copy(e);
  std::locale::global(before);
  EXPECT_STREQ(e.what(), "width 2000 of 1.5");
  EXPECT_STREQ(copy.what(), "width 2000 of 1.5");
}

TEST(Exception, FlagsStayFromPieceToPiece) {
  const Exception e = Exception("bits ") << std::hex << 255 << ' ' << 16;
  EXPECT_STREQ(e.what(), "bits ff 10");
}

}  // namespace
}  // namespace quill
