#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <new>
#include <random>
#include <vector>

#include "quill/utils/growing_array.h"
#include "tests/support/failing_memory.h"

namespace quill {
namespace {

struct Pair {
  uint64_t first;
  uint32_t second;
};

TEST(GrowingArray, IsEmptyAtFirst) {
  const GrowingArray<uint32_t> a;
  EXPECT_TRUE(a.empty());
  EXPECT_EQ(a.size(), 0U);
}

TEST(GrowingArray, KeepsItsElementsWhenItGrows) {
  GrowingArray<Pair> a;
  for (uint32_t i = 0; i < 300'000; ++i) a.push_back({uint64_t{i} << 32, i});  // 4.8 MB
  EXPECT_EQ(a.size(), 300'000U);
  EXPECT_FALSE(a.empty());
  for (uint32_t i = 0; i < 300'000; ++i) {
    ASSERT_EQ(a[i].first, uint64_t{i} << 32);
    ASSERT_EQ(a[i].second, i);
  }
  EXPECT_EQ(a.back().second, 299'999U);
}

TEST(GrowingArray, GrowsToFourTimesItsSize) {
  GrowingArray<uint32_t> a;
  const testing::AllocationCount count;
  for (uint32_t i = 0; i < 8; ++i) a.push_back(i);
  EXPECT_EQ(count.allocations(), 1U);
  a.push_back(8);
  EXPECT_EQ(count.allocations(), 2U);
  for (uint32_t i = 9; i < 32; ++i) a.push_back(i);
  EXPECT_EQ(count.allocations(), 2U);
  a.push_back(32);
  EXPECT_EQ(count.allocations(), 3U);
  EXPECT_EQ(count.bytes(), 4U * (8 + 32 + 128));
}

TEST(GrowingArray, TakesItsOwnElementWhileItGrows) {
  GrowingArray<uint64_t> a;
  a.push_back(17);
  for (uint32_t i = 1; i < 1000; ++i) a.push_back(a[0]);
  for (uint32_t i = 0; i < 1000; ++i) ASSERT_EQ(a[i], 17U);
}

TEST(GrowingArray, KeepsItsRoomWhenCleared) {
  GrowingArray<uint32_t> a;
  for (uint32_t i = 0; i < 100; ++i) a.push_back(i);
  a.clear();
  EXPECT_TRUE(a.empty());
  const testing::AllocationCount count;
  for (uint32_t i = 0; i < 100; ++i) a.push_back(2 * i);
  EXPECT_EQ(count.allocations(), 0U);
  EXPECT_EQ(a[99], 198U);
}

TEST(GrowingArray, TruncatedKeepsItsFirstElementsAndItsRoom) {
  GrowingArray<int> array;
  for (int i = 0; i < 100; ++i) array.push_back(i);
  const int* const elements = array.begin();
  array.truncate(3);
  EXPECT_EQ(array.size(), 3U);
  EXPECT_EQ(array[2], 2);
  for (int i = 0; i < 97; ++i) array.push_back(i);
  EXPECT_EQ(array.begin(), elements);
  array.truncate(100);
  EXPECT_EQ(array.size(), 100U);
}

TEST(GrowingArray, SwapsWithAnother) {
  GrowingArray<uint32_t> a;
  GrowingArray<uint32_t> b;
  for (uint32_t i = 0; i < 10; ++i) a.push_back(i);
  a.swap(b);
  EXPECT_TRUE(a.empty());
  EXPECT_EQ(b.size(), 10U);
  EXPECT_EQ(b[9], 9U);
  a.push_back(5);
  a.swap(b);
  EXPECT_EQ(a.size(), 10U);
  EXPECT_EQ(b.back(), 5U);
}

TEST(GrowingArray, IsWhatItWasAfterAFailedGrowth) {
  GrowingArray<uint32_t> a;
  for (uint32_t i = 0; i < 8; ++i) a.push_back(i);
  {
    const testing::FailingMemory none(0);
    EXPECT_THROW(a.push_back(8), std::bad_alloc);
  }
  EXPECT_EQ(a.size(), 8U);
  EXPECT_EQ(a.back(), 7U);
  a.push_back(8);
  for (uint32_t i = 0; i < 9; ++i) EXPECT_EQ(a[i], i);
}

TEST(GrowingArray, ExtendsByManyAtOnce) {
  GrowingArray<uint32_t> a;
  a.push_back(1);
  EXPECT_EQ(a.extend(0), a.end());
  EXPECT_EQ(a.size(), 1U);
  uint32_t* const at = a.extend(1000000);
  EXPECT_EQ(a.size(), 1000001U);
  EXPECT_EQ(at, a.begin() + 1);
  EXPECT_EQ(at + 1000000, a.end());
  EXPECT_EQ(a[0], 1U);
}

TEST(GrowingArray, AnExtensionThatFailsChangesNothing) {
  GrowingArray<uint32_t> a;
  a.push_back(1);
  EXPECT_THROW(a.extend(SIZE_MAX), std::bad_alloc);
  EXPECT_THROW(a.extend(SIZE_MAX / sizeof(uint32_t)), std::bad_alloc);
  {
    const testing::FailingMemory none(0);
    EXPECT_THROW(a.extend(100), std::bad_alloc);
  }
  EXPECT_EQ(a.size(), 1U);
  EXPECT_EQ(a[0], 1U);
}

TEST(GrowingArray, AgreesWithAVectorOverRandomOperations) {
  std::mt19937 random(20'261'121);
  GrowingArray<uint32_t> a;
  std::vector<uint32_t> model;
  for (uint32_t step = 0; step < 200'000; ++step) {
    const auto what = random() % 1000;
    if (what < 600) {
      a.push_back(step);
      model.push_back(step);
    } else if (what < 602) {
      const uint32_t added = static_cast<uint32_t>(random() % 100);
      uint32_t* const at = a.extend(added);
      for (uint32_t i = 0; i < added; ++i) {
        at[i] = step + i;
        model.push_back(step + i);
      }
    } else if (what < 999 && !model.empty()) {
      a.pop_back();
      model.pop_back();
    } else if (what == 999 && random() % 8 == 0) {
      a.clear();
      model.clear();
    } else if (!model.empty()) {
      const size_t at = random() % model.size();
      a[at] += 3;
      model[at] += 3;
    }
    ASSERT_EQ(a.size(), model.size());
    if (!model.empty()) {
      ASSERT_EQ(a.back(), model.back());
    }
  }
  EXPECT_EQ(std::vector<uint32_t>(a.begin(), a.end()), model);
}

}  // namespace
}  // namespace quill
