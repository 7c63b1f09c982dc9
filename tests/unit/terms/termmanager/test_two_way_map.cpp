#include <gtest/gtest.h>

#include <cstddef>
#include <new>
#include <string>
#include <vector>

#include "quill/terms/termmanager/two_way_map.h"
#include "quill/terms/type_universe.h"
#include "quill/utils/hash_set.h"
#include "tests/support/failing_memory.h"

namespace quill {
namespace {

class TwoWayMapTest : public ::testing::Test {
 protected:
  const DataType* type(size_t i) { return universe.make_type("t" + std::to_string(i)); }

  TypeUniverse universe;
  TwoWayMap<size_t, DataType> table;
};

TEST_F(TwoWayMapTest, AnEmptyTableFindsNothing) {
  EXPECT_EQ(table.find(0), nullptr);
  EXPECT_EQ(table.find_key(type(0)), nullptr);
}

TEST_F(TwoWayMapTest, LeadsBothWays) {
  table.assign(32, type(1));
  table.assign(0, type(2));
  EXPECT_EQ(table.find(32), type(1));
  EXPECT_EQ(table.find(0), type(2));
  ASSERT_NE(table.find_key(type(1)), nullptr);
  EXPECT_EQ(*table.find_key(type(1)), 32U);
  EXPECT_EQ(*table.find_key(type(2)), 0U);
  EXPECT_EQ(table.find(1), nullptr);
  EXPECT_EQ(table.find_key(type(3)), nullptr);
}

TEST_F(TwoWayMapTest, AnAssignedObjectHasTheKeyThatItWasAssignedLast) {
  table.assign(1, type(1));
  table.assign(2, type(1));
  EXPECT_EQ(*table.find_key(type(1)), 2U);
  EXPECT_EQ(table.find(2), type(1));
  EXPECT_EQ(table.find(1), nullptr);
  EXPECT_EQ(table.by_key.count, 1U);
  table.assign(2, type(1));
  EXPECT_EQ(table.find(2), type(1));
  EXPECT_EQ(table.by_key.count, 1U);
}

TEST_F(TwoWayMapTest, AnErasedTypeIsGoneFromBothSides) {
  for (size_t i = 0; i < 100; ++i) table.assign(i, type(i));
  table.erase_object(type(7));
  table.erase_object(type(100));
  EXPECT_EQ(table.by_key.count, 99U);
  for (size_t i = 0; i < 100; ++i) {
    EXPECT_EQ(table.find(i), i == 7 ? nullptr : type(i));
    EXPECT_EQ(table.find_key(type(i)) == nullptr, i == 7);
  }
  table.assign(1000, type(7));
  EXPECT_EQ(*table.find_key(type(7)), 1000U);
  EXPECT_EQ(table.find(7), nullptr);
}

// A parameter that counts how often it is hashed or compared.
struct Counted {
  size_t value = 0;
  static inline size_t steps = 0;
  bool operator==(const Counted& other) const {
    ++steps;
    return value == other.value;
  }
};

}  // namespace

template <>
struct Hasher<Counted> {
  uint64_t operator()(const Counted& key) const noexcept {
    Counted::steps++;
    return key.value;
  }
};

template <>
struct KeyedHasher<Counted> {
  uint64_t operator()(uint64_t hash_key, const Counted& key) const noexcept {
    Counted::steps++;
    return KeyedHasher<size_t>()(hash_key, key.value);
  }
};

namespace {

TEST_F(TwoWayMapTest, ErasingATypeCostsTheSameHoweverManyThereAre) {
  size_t steps[2];
  size_t* cost = steps;
  for (const size_t pairs : std::vector<size_t>{10, 10000}) {
    TwoWayMap<Counted, DataType> own;
    for (size_t i = 0; i < pairs; ++i) own.assign(Counted{i}, type(i));
    Counted::steps = 0;
    for (size_t i = 0; i < 10; ++i) own.erase_object(type(i));
    *cost++ = Counted::steps;
  }
  EXPECT_EQ(steps[0], steps[1]);
  EXPECT_LE(steps[0], 40U);
}

TEST_F(TwoWayMapTest, AnErasedPairIsGoneFromBothSides) {
  table.assign(1, type(1));
  table.assign(2, type(2));
  table.erase(1);
  EXPECT_EQ(table.find(1), nullptr);
  EXPECT_EQ(table.find_key(type(1)), nullptr);
  EXPECT_EQ(table.find(2), type(2));
  EXPECT_EQ(*table.find_key(type(2)), 2U);
  table.assign(3, type(1));
  EXPECT_EQ(*table.find_key(type(1)), 3U);
}

TEST_F(TwoWayMapTest, ASweepTakesObjectsOutOfBothSidesTogether) {
  for (size_t i = 0; i < 100; ++i) table.insert(i, type(i));
  hsh::HashSet<const DataType*> kept;
  kept.insert(type(7));
  kept.insert(type(50));
  table.sweep(kept);
  EXPECT_EQ(table.by_key.count, 2U);
  EXPECT_EQ(table.by_object.count, 2U);
  EXPECT_EQ(table.find(7), type(7));
  EXPECT_EQ(*table.find_key(type(50)), 50U);
  EXPECT_EQ(table.find(8), nullptr);
  EXPECT_EQ(table.find_key(type(8)), nullptr);
}

// The maps may be those of a caller, who has entered the object before.
TEST_F(TwoWayMapTest, AnInsertedObjectKeepsTheKeyThatItHas) {
  table.insert(1, type(1));
  table.insert(2, type(1));
  EXPECT_EQ(*table.find_key(type(1)), 1U);
  EXPECT_EQ(table.find(1), type(1));
  EXPECT_EQ(table.find(2), type(1));
}

// 22 pairs fit in the first bucket array of either map; the next one makes both grow.
TEST_F(TwoWayMapTest, InsertionIsAllOrNothing) {
  std::vector<const DataType*> types;
  for (size_t i = 0; i < 23; ++i) types.push_back(type(i));
  using Map = TwoWayMap<size_t, DataType>;
  for (const auto enter : {&Map::insert, &Map::assign}) {
    for (size_t k = 0; k < 2; ++k) {
      Map own;
      for (size_t i = 0; i < 22; ++i) (own.*enter)(i, types[i]);
      bool failed = false;
      try {
        const testing::FailingMemory after(k);
        (own.*enter)(22, types[22]);
      } catch (const std::bad_alloc&) {
        failed = true;
      }
      EXPECT_TRUE(failed);
      EXPECT_EQ(own.find(22), nullptr);
      EXPECT_EQ(own.find_key(types[22]), nullptr);
      (own.*enter)(22, types[22]);
      for (size_t i = 0; i < 23; ++i) {
        EXPECT_EQ(own.find(i), types[i]);
        EXPECT_EQ(*own.find_key(types[i]), i);
      }
    }
  }
}

}  // namespace
}  // namespace quill
