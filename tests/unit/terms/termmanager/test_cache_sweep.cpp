#include <gtest/gtest.h>

#include <cstdint>
#include <set>

#include "quill/terms/termmanager/cache_sweep.h"
#include "quill/utils/hash_map.h"
#include "quill/utils/hash_set.h"

namespace quill {
namespace {

// Values that share a chain with each other in a table of 31 buckets.
constexpr uint64_t chained[] = {3, 34, 65, 96, 127};

TEST(CacheSweep, ASetKeepsWhatIsKept) {
  hsh::HashSet<uint64_t> set;
  hsh::HashSet<uint64_t> kept;
  for (const uint64_t x : chained) set.insert(x);
  kept.insert(34);
  kept.insert(127);
  kept.insert(1000);
  gc_clear_set(set, kept);
  EXPECT_EQ(std::set<uint64_t>(set.begin(), set.end()), std::set<uint64_t>({34, 127}));
}

TEST(CacheSweep, AMapIsSweptByItsKeysOrByItsValues) {
  hsh::HashMap<uint64_t, uint64_t> by_key;
  hsh::HashMap<uint64_t, uint64_t> by_value;
  for (const uint64_t x : chained) {
    by_key.insert({x, 1});
    by_value.insert({1000 - x, x});
  }
  hsh::HashSet<uint64_t> kept;
  kept.insert(3);
  kept.insert(65);
  gc_clear_tbl_key(by_key, kept);
  EXPECT_EQ(by_key.count, 2U);
  EXPECT_NE(by_key.find(3), by_key.end());
  EXPECT_NE(by_key.find(65), by_key.end());
  gc_clear_tbl_val(by_value, kept);
  EXPECT_EQ(by_value.count, 2U);
  EXPECT_NE(by_value.find(997), by_value.end());
  EXPECT_NE(by_value.find(935), by_value.end());
}

// Every subset of a chain can be the one that goes.
TEST(CacheSweep, AnySubsetOfAChainCanGo) {
  for (unsigned mask = 0; mask < 32; ++mask) {
    hsh::HashSet<uint64_t> set;
    std::set<uint64_t> expected;
    for (unsigned i = 0; i < 5; ++i) {
      set.insert(chained[i]);
      if ((mask >> i & 1) != 0) expected.insert(chained[i]);
    }
    erase_entries(set, [&](uint64_t x) { return expected.count(x) == 0; });
    EXPECT_EQ(std::set<uint64_t>(set.begin(), set.end()), expected) << mask;
  }
}

// A key that must not be read any more.
struct Unreadable {
  uint64_t operator()(const uint64_t* key) const { return *key; }
  bool operator()(const uint64_t* a, const uint64_t* b) const { return *a == *b; }
};

TEST(CacheSweep, ErasingReadsNoKey) {
  hsh::HashMap<const uint64_t*, int, Unreadable, Unreadable> map;
  {
    uint64_t keys[40];
    for (int i = 0; i < 40; ++i) {
      keys[i] = static_cast<uint64_t>(i);
      map.insert({&keys[i], i});
    }
    for (uint64_t& key : keys) key = ~key;  // each is in the wrong bucket now
    erase_entries(map, [](const auto& entry) { return entry.second % 2 == 0; });
    EXPECT_EQ(map.count, 20U);
    for (const auto& [key, value] : map) EXPECT_EQ(value % 2, 1);
  }
  erase_entries(map, [](const auto&) { return true; });
  EXPECT_EQ(map.count, 0U);
}

}  // namespace
}  // namespace quill
