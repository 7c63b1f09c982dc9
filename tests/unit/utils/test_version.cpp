#include <gtest/gtest.h>

#include <string>

#include "quill/version.h"

namespace quill {
namespace {

TEST(Version, IsThatOfTheHeaders) {
  EXPECT_EQ(version(), std::to_string(QUILL_VERSION_MAJOR) + "." +
                           std::to_string(QUILL_VERSION_MINOR) + "." +
                           std::to_string(QUILL_VERSION_PATCH));
  EXPECT_STREQ(version(), "0.1.0");
}

}  // namespace
}  // namespace quill
