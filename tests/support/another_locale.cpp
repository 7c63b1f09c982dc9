// Runs a test program under another global locale, if the environment asks for it.
//
// Every text that the tests expect literally, in messages of the library and in what it writes to
// streams that tests make, then shows whether it depends on the global locale or on that of its
// stream.

#include <gtest/gtest.h>

#include <cstdlib>
#include <locale>
#include <string_view>

#include "tests/support/grouped_digits.h"

namespace {

// Sets the locale only when the tests begin: before that, GoogleTest names some of them by numbers.
class Environment : public testing::Environment {
 public:
  void SetUp() override {
    const char* const wish = std::getenv("QUILL_TEST_LOCALE");
    if (wish == nullptr || std::string_view(wish) != "grouped") return;
    std::locale::global(quill::testing::locale_with_grouped_digits());
  }
};

const testing::Environment* const environment = testing::AddGlobalTestEnvironment(new Environment);

}  // namespace
