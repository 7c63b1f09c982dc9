#include <gtest/gtest.h>

#include <cstddef>
#include <new>
#include <string>
#include <vector>

#include "quill/terms/termmanager/type_table.h"
#include "quill/terms/type_universe.h"
#include "tests/unit/utils/failing_allocation.h"

namespace quill {
namespace {

class TypeTableTest : public ::testing::Test {
 protected:
  const DataType* type(size_t i) { return universe.make_type("t" + std::to_string(i)); }

  TypeUniverse universe;
  TypeTable<size_t> table;
};

TEST_F(TypeTableTest, AnEmptyTableFindsNothing) {
  EXPECT_EQ(table.find(0), nullptr);
  EXPECT_EQ(table.find_key(type(0)), nullptr);
}

TEST_F(TypeTableTest, LeadsBothWays) {
  table.insert(32, type(1));
  table.insert(0, type(2));
  EXPECT_EQ(table.find(32), type(1));
  EXPECT_EQ(table.find(0), type(2));
  ASSERT_NE(table.find_key(type(1)), nullptr);
  EXPECT_EQ(*table.find_key(type(1)), 32U);
  EXPECT_EQ(*table.find_key(type(2)), 0U);
  EXPECT_EQ(table.find(1), nullptr);
  EXPECT_EQ(table.find_key(type(3)), nullptr);
}

TEST_F(TypeTableTest, ATypeStandsForTheParameterThatItWasEnteredWithLast) {
  table.insert(1, type(1));
  table.insert(2, type(1));
  EXPECT_EQ(*table.find_key(type(1)), 2U);
  EXPECT_EQ(table.find(2), type(1));
  EXPECT_EQ(table.find(1), nullptr);
  EXPECT_EQ(table.size(), 1U);
  table.insert(2, type(1));
  EXPECT_EQ(table.find(2), type(1));
  EXPECT_EQ(table.size(), 1U);
}

TEST_F(TypeTableTest, AnErasedTypeIsGoneFromBothSides) {
  for (size_t i = 0; i < 100; ++i) table.insert(i, type(i));
  table.erase_type(type(7));
  table.erase_type(type(100));
  EXPECT_EQ(table.size(), 99U);
  for (size_t i = 0; i < 100; ++i) {
    EXPECT_EQ(table.find(i), i == 7 ? nullptr : type(i));
    EXPECT_EQ(table.find_key(type(i)) == nullptr, i == 7);
  }
  table.insert(1000, type(7));
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

TEST_F(TypeTableTest, ErasingATypeCostsTheSameHoweverManyThereAre) {
  size_t steps[2];
  size_t* cost = steps;
  for (const size_t pairs : std::vector<size_t>{10, 10000}) {
    TypeTable<Counted> own;
    for (size_t i = 0; i < pairs; ++i) own.insert(Counted{i}, type(i));
    Counted::steps = 0;
    for (size_t i = 0; i < 10; ++i) own.erase_type(type(i));
    *cost++ = Counted::steps;
  }
  EXPECT_EQ(steps[0], steps[1]);
  EXPECT_LE(steps[0], 40U);
}

TEST_F(TypeTableTest, AnErasedPairIsGoneFromBothSides) {
  table.insert(1, type(1));
  table.insert(2, type(2));
  table.erase(1);
  EXPECT_EQ(table.find(1), nullptr);
  EXPECT_EQ(table.find_key(type(1)), nullptr);
  EXPECT_EQ(table.find(2), type(2));
  EXPECT_EQ(*table.find_key(type(2)), 2U);
  table.insert(3, type(1));
  EXPECT_EQ(*table.find_key(type(1)), 3U);
}

TEST_F(TypeTableTest, TypesAreTakenOutOfBothSidesTogether) {
  for (size_t i = 0; i < 100; ++i) table.insert(i, type(i));
  table.erase_types([&](const DataType* t) { return t != type(7) && t != type(50); });
  EXPECT_EQ(table.size(), 2U);
  std::vector<size_t> left;
  table.for_each([&](size_t key, const DataType* t) {
    EXPECT_EQ(t, type(key));
    left.push_back(key);
  });
  EXPECT_EQ(left, std::vector<size_t>({7, 50}));
  EXPECT_EQ(table.find(8), nullptr);
  EXPECT_EQ(table.find_key(type(8)), nullptr);
}

// 22 pairs fit in the first bucket array of either map; the next one makes both grow.
TEST_F(TypeTableTest, InsertionIsAllOrNothing) {
  std::vector<const DataType*> types;
  for (size_t i = 0; i < 23; ++i) types.push_back(type(i));
  for (long k = 0; k < 2; ++k) {
    TypeTable<size_t> own;
    for (size_t i = 0; i < 22; ++i) own.insert(i, types[i]);
    bool failed = false;
    try {
      const testing::FailingAllocation after(k);
      own.insert(22, types[22]);
    } catch (const std::bad_alloc&) {
      failed = true;
    }
    EXPECT_TRUE(failed);
    EXPECT_EQ(own.find(22), nullptr);
    EXPECT_EQ(own.find_key(types[22]), nullptr);
    own.insert(22, types[22]);
    for (size_t i = 0; i < 23; ++i) {
      EXPECT_EQ(own.find(i), types[i]);
      EXPECT_EQ(*own.find_key(types[i]), i);
    }
  }
}

}  // namespace
}  // namespace quill
