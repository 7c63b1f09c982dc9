#include <gtest/gtest.h>

#include <cstdint>
#include <new>
#include <random>
#include <set>
#include <vector>

#include "quill/terms/id_pool.h"
#include "tests/support/failing_memory.h"

namespace quill {
namespace {

uint64_t take(IdPool& pool) {
  pool.reserve_one();
  return pool.take();
}

// Frees all ids but these.
void keep_only(IdPool& pool, const std::vector<uint64_t>& ids) {
  pool.free_all();
  for (const uint64_t id : ids) pool.claim(id);
}

TEST(IdPool, GivesTheNumbersFromZero) {
  IdPool pool;
  EXPECT_EQ(pool.bound(), 0U);
  for (uint64_t id = 0; id < 200; ++id) EXPECT_EQ(take(pool), id);
  EXPECT_EQ(pool.bound(), 200U);
  EXPECT_EQ(pool.size(), 200U);
}

TEST(IdPool, FreedIdsAreGivenAgainLowestFirst) {
  IdPool pool;
  for (int i = 0; i < 300; ++i) take(pool);
  std::vector<uint64_t> kept;
  for (uint64_t id = 0; id < 300; ++id) {
    if (id != 0 && id != 63 && id != 64 && id != 65 && id != 200) kept.push_back(id);
  }
  keep_only(pool, kept);
  EXPECT_EQ(pool.size(), 295U);
  EXPECT_EQ(pool.bound(), 300U);
  for (const uint64_t id : std::vector<uint64_t>{0, 63, 64, 65, 200, 300, 301})
    EXPECT_EQ(take(pool), id);
}

TEST(IdPool, TheOrderOfClaimsIsNoMatter) {
  IdPool pool;
  for (int i = 0; i < 10; ++i) take(pool);
  keep_only(pool, {7, 2, 5});
  EXPECT_EQ(pool.bound(), 8U);
  for (const uint64_t id : std::vector<uint64_t>{0, 1, 3, 4, 6, 8, 9}) EXPECT_EQ(take(pool), id);
}

TEST(IdPool, AllIdsCanBeFreed) {
  IdPool pool;
  for (int i = 0; i < 130; ++i) take(pool);
  pool.free_all();
  EXPECT_EQ(pool.size(), 0U);
  EXPECT_EQ(pool.bound(), 0U);
  for (uint64_t id = 0; id < 200; ++id) EXPECT_EQ(take(pool), id);
}

TEST(IdPool, AFailedReservationChangesNothing) {
  IdPool pool;
  for (int i = 0; i < 64; ++i) take(pool);
  {
    const testing::FailingMemory none(0);
    EXPECT_THROW(pool.reserve_one(), std::bad_alloc);
  }
  EXPECT_EQ(pool.bound(), 64U);
  EXPECT_EQ(take(pool), 64U);
}

TEST(IdPool, FreeingAndClaimingNeedNoMemory) {
  IdPool pool;
  for (int i = 0; i < 1000; ++i) take(pool);
  const testing::FailingMemory none(0);
  pool.free_all();
  for (uint64_t id = 999; id-- > 500;) pool.claim(id);
  EXPECT_EQ(pool.bound(), 999U);
  for (uint64_t id = 0; id < 500; ++id) EXPECT_EQ(take(pool), id);
}

TEST(IdPool, AgreesWithASetOverRandomOperations) {
  std::mt19937 random(99);
  IdPool pool;
  std::set<uint64_t> in_use;
  for (int step = 0; step < 50000; ++step) {
    if (random() % 500 == 0) {
      const auto percent = random() % 101;
      std::erase_if(in_use, [&](uint64_t) { return random() % 100 >= percent; });
      keep_only(pool, {in_use.begin(), in_use.end()});
    } else {
      uint64_t lowest = 0;
      for (const uint64_t id : in_use) {
        if (id != lowest) break;
        ++lowest;
      }
      ASSERT_EQ(take(pool), lowest);
      in_use.insert(lowest);
    }
    ASSERT_EQ(pool.size(), in_use.size());
    ASSERT_EQ(pool.bound(), in_use.empty() ? 0 : *in_use.rbegin() + 1);
  }
}

}  // namespace
}  // namespace quill
