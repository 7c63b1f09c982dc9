#include <gtest/gtest.h>

#include <string>

#include "tests/random/round_trip.h"

namespace quill::smt2 {
namespace {

TEST(RandomScripts, ReadBackToTheSameTerms) {
  for (uint32_t seed = 0; seed < 500; ++seed) {
    TermManager manager;
    const RandomScript random(manager, seed);
    std::string text;
    ASSERT_EQ(round_trip_fault(manager, random.script, text), "") << "seed " << seed << "\n"
                                                                  << text;
  }
}

TEST(RandomScripts, DependOnTheirSeedAlone) {
  std::string texts[2];
  for (std::string& text : texts) {
    TermManager manager;
    const RandomScript random(manager, 7);
    round_trip_fault(manager, random.script, text);
  }
  EXPECT_EQ(texts[0], texts[1]);
  EXPECT_NE(texts[0], "");
}

}  // namespace
}  // namespace quill::smt2
