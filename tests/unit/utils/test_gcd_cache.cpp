#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <numeric>
#include <thread>
#include <vector>

#include "quill/utils/gcd_cache.h"
#include "quill/utils/qnumber.h"

namespace quill {
namespace {

int64_t& entry(uint64_t a, uint64_t b) { return gcd_cache[a * 1024 + b]; }

// The table belongs to the process; each test starts with an empty one.
class GcdCache : public ::testing::Test {
 protected:
  void SetUp() override { std::memset(gcd_cache, 0, sizeof(gcd_cache)); }
  void TearDown() override { std::memset(gcd_cache, 0, sizeof(gcd_cache)); }

  static size_t known_entries() {
    size_t known = 0;
    for (const int64_t value : gcd_cache) known += value != 0 ? 1 : 0;
    return known;
  }
};

TEST_F(GcdCache, HasAnEntryForEveryPairBelow1024) { EXPECT_EQ(sizeof(gcd_cache), 8U << 20); }

TEST_F(GcdCache, FillsBothOrdersOfAPair) {
  EXPECT_EQ(gcd(12, 18), 6U);
  EXPECT_EQ(entry(12, 18), 6);
  EXPECT_EQ(entry(18, 12), 6);
}

TEST_F(GcdCache, FillsThePairsOfTheFollowingStepsToo) {
  // (10, 4) -> (4, 2), whose remainder is 0.
  EXPECT_EQ(gcd(10, 4), 2U);
  EXPECT_EQ(entry(10, 4), 2);
  EXPECT_EQ(entry(4, 10), 2);
  EXPECT_EQ(entry(4, 2), 2);
  EXPECT_EQ(entry(2, 4), 2);
  EXPECT_EQ(known_entries(), 4U);
}

TEST_F(GcdCache, AKnownEntryEndsTheComputation) {
  entry(10, 4) = 77;  // recognisably not computed
  EXPECT_EQ(gcd(10, 4), 77U);
  EXPECT_EQ(known_entries(), 1U);
}

TEST_F(GcdCache, NormalisingSmallFractionsFillsTheTable) {
  QNumber number(-8, 12);
  number.normalize();
  EXPECT_EQ(number, QNumber(-2, 3));
  EXPECT_EQ(entry(8, 12), 4);
  EXPECT_EQ(entry(12, 8), 4);
}

TEST_F(GcdCache, APartAbove1023NeverTouchesTheTable) {
  EXPECT_EQ(gcd(1024, 512), 512U);
  EXPECT_EQ(gcd(512, 1024), 512U);
  EXPECT_EQ(gcd(1 << 20, 1 << 12), 4096U);
  EXPECT_EQ(gcd(1024, 1024), 1024U);
  EXPECT_EQ(known_entries(), 0U);
}

TEST_F(GcdCache, TheTableIsUsedOnceBothPartsAreBelow1024) {
  EXPECT_EQ(gcd(1023, 1023), 1023U);
  EXPECT_EQ(known_entries(), 1U);
  // (2000, 1024) -> (1024, 976) -> (976, 48)
  entry(976, 48) = 5;
  EXPECT_EQ(gcd(2000, 1024), 5U);
}

TEST_F(GcdCache, ZeroAndOneAreOrdinaryNumbers) {
  EXPECT_EQ(gcd(0, 5), 5U);
  EXPECT_EQ(gcd(0, 5000), 5000U);
  EXPECT_EQ(gcd(1, 1), 1U);
  EXPECT_EQ(gcd(1000, 1), 1U);
}

TEST_F(GcdCache, WholeWordsAreNumbers) {
  EXPECT_EQ(gcd(18446744073709551615U, 18446744073709551614U), 1U);
  EXPECT_EQ(gcd(18446744073709551615U, 4294967295U), 4294967295U);
  EXPECT_EQ(gcd(9223372036854775808U, 6), 2U);
}

TEST_F(GcdCache, IsRightForEverySmallPairEmptyAndFilled) {
  for (int round = 0; round < 2; ++round) {
    for (uint64_t a = 0; a <= 1030; ++a) {
      for (uint64_t b = 1; b <= 1030; ++b) ASSERT_EQ(gcd(a, b), std::gcd(a, b)) << a << " " << b;
    }
  }
}

TEST_F(GcdCache, ThreadsMayFillItTogether) {
  std::vector<int> wrong(4, 0);
  std::vector<std::thread> threads;
  for (int& mistakes : wrong) {
    threads.emplace_back([&mistakes] {
      for (uint64_t a = 0; a < 200; ++a) {
        for (uint64_t b = 1; b < 200; ++b) mistakes += gcd(a, b) != std::gcd(a, b) ? 1 : 0;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, std::vector<int>(4, 0));
}

}  // namespace
}  // namespace quill
