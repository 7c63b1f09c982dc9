#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "quill/utils/bucket_growth.h"

namespace quill::hsh {
namespace {

TEST(BucketGrowth, StepsThroughThePrimes) {
  const std::vector<uint64_t> expected = {
      31,       73,        151,       313,       643,        1291,       2593,
      5233,     10501,     21013,     42073,     84181,      168451,     337219,
      674701,   1349473,   2699299,   5398891,   10798093,   21596719,   43193641,
      86387383, 172775299, 345550609, 691101253, 1382202559, 2764405229, 4294867387};
  std::vector<uint64_t> steps;
  uint64_t count = 0;
  while (bucket_count_for(count + 1) > count) {
    count = bucket_count_for(count + 1);
    steps.push_back(count);
  }
  EXPECT_EQ(steps, expected);
}

TEST(BucketGrowth, AnExactPrimeIsEnough) {
  EXPECT_EQ(bucket_count_for(0), 31U);
  EXPECT_EQ(bucket_count_for(73), 73U);
  EXPECT_EQ(bucket_count_for(74), 151U);
}

TEST(BucketGrowth, StaysAtTheLargestPrime) {
  EXPECT_EQ(bucket_count_for(4294867387), 4294867387U);
  EXPECT_EQ(bucket_count_for(4294867388), 4294867387U);
  EXPECT_EQ(bucket_count_for(18446744073709551615U), 4294867387U);
}

TEST(BucketGrowth, TheLoadMayReachSevenTenths) {
  EXPECT_FALSE(load_exceeded(0, 31));
  EXPECT_FALSE(load_exceeded(21, 31));  // 0.677
  EXPECT_TRUE(load_exceeded(22, 31));   // 0.710
  // No prime has this quotient; it tells "above" from "at or above".
  EXPECT_FALSE(load_exceeded(7, 10));
}

// The bucket count is no float: it rounds to 21596720, and 15117704 / 21596720 is 0.7 exactly,
// whose nearest float lies below. With exact numbers the load is above 0.7 here.
TEST(BucketGrowth, TheLoadIsAQuotientInSinglePrecision) {
  EXPECT_FALSE(load_exceeded(15117704, 21596719));
  EXPECT_TRUE(load_exceeded(15117705, 21596719));
}

}  // namespace
}  // namespace quill::hsh
