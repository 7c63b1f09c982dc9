#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "quill/utils/guarded_table.h"
#include "quill/utils/hash_map.h"
#include "quill/utils/hash_set.h"
#include "quill/utils/table_room.h"

namespace quill {
namespace {

TEST(TableRoom, ATableThatLostNearlyAllIsReplaced) {
  hsh::HashMap<uint64_t, uint64_t> map;
  for (uint64_t i = 0; i < 10000; ++i) map.insert({i, 2 * i});
  map.erase_if([](const auto& entry) { return entry.first % 1000 != 0; });
  EXPECT_EQ(map.num_buckets(), 21013U);
  give_back_room(map);
  EXPECT_EQ(map.num_buckets(), 31U);
  EXPECT_EQ(map.count, 10U);
  for (uint64_t i = 0; i < 10000; i += 1000) {
    ASSERT_NE(map.find(i), map.end());
    EXPECT_EQ(map.find(i)->second, 2 * i);
  }
}

TEST(TableRoom, ATableWithAnEighthOfItsBucketsTakenStays) {
  hsh::HashSet<uint64_t> set;
  for (uint64_t i = 0; i < 10000; ++i) set.insert(i);
  set.erase_if([](uint64_t i) { return i >= 21013 / 8; });
  give_back_room(set);
  EXPECT_EQ(set.num_buckets(), 21013U);
  set.erase_key(0);
  give_back_room(set);
  EXPECT_EQ(set.num_buckets(), 5233U);
  EXPECT_EQ(set.count, 2625U);
}

TEST(TableRoom, SmallTablesStay) {
  hsh::HashSet<uint64_t> set;
  for (uint64_t i = 0; i < 700; ++i) set.insert(i);
  EXPECT_EQ(set.num_buckets(), 1291U);
  set.erase_if([](uint64_t) { return true; });
  give_back_room(set);
  EXPECT_EQ(set.num_buckets(), 1291U);
}

TEST(TableRoom, AGuardedTableIsReplacedWithItsIndex) {
  hsh::GuardedMap<uint64_t, uint64_t> map;
  for (uint64_t i = 0; i < 10000; ++i) map.insert({i * 21013, i});
  EXPECT_TRUE(map.is_indexed());
  map.erase_if([](const auto& entry) { return entry.second >= 5; });
  give_back_room(map);
  EXPECT_FALSE(map.is_indexed());
  EXPECT_EQ(map.num_buckets(), 31U);
  for (uint64_t i = 0; i < 5; ++i) EXPECT_EQ(map.find(i * 21013)->second, i);
}

TEST(TableRoom, VectorsGiveBackWhatTheyNoLongerNeed) {
  std::vector<int> v(10000);
  v.resize(1250);
  give_back_room(v);
  EXPECT_EQ(v.capacity(), 10000U);
  v.resize(3);
  v[2] = 7;
  give_back_room(v);
  EXPECT_LT(v.capacity(), 100U);
  EXPECT_EQ(v, (std::vector<int>{0, 0, 7}));
}

}  // namespace
}  // namespace quill
