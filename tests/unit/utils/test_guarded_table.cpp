#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <iterator>
#include <new>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "quill/utils/entry_count.h"
#include "quill/utils/guarded_table.h"
#include "quill/utils/hash_map.h"
#include "quill/utils/hash_set.h"
#include "quill/utils/name_hash.h"
#include "tests/support/failing_memory.h"

namespace quill::hsh {
namespace {

// The bucket count of a table of that many elements when the last one came.
uint64_t buckets_for(uint64_t elements) {
  HashSet<unsigned long> table;
  for (uint64_t i = 0; i < elements; ++i) table.insert(i);
  return table.buckets.size();
}

template <class Guarded, class Plain>
void expect_same_walk(const Guarded& guarded, const Plain& plain) {
  ASSERT_EQ(guarded.count, plain.count);
  ASSERT_EQ(guarded.num_buckets(), plain.buckets.size());
  auto at = guarded.begin();
  for (auto it = plain.begin(); it != plain.end(); ++it, ++at) {
    ASSERT_NE(at, guarded.end());
    ASSERT_EQ(at.index, it.index);
    ASSERT_EQ(*at, *it);
  }
  ASSERT_EQ(at, guarded.end());
}

// Words as they are, and such that all share a chain of many bucket counts; names that the string
// hash of the tables confuses.
struct Words {
  using Key = unsigned long;
  static Key key(uint64_t number) { return number; }
};
struct CollidingWords {
  using Key = unsigned long;
  static Key key(uint64_t number) { return number * 5233 * 2593 * 1291; }
};
struct CollidingNames {
  using Key = std::string;
  static Key key(uint64_t number) {
    std::string name(12, ' ');  // 5 * 'a' + 'a' is 5 * 'b' + '\\'
    for (size_t i = 0; i < 6; ++i) {
      const bool bit = (number >> i & 1) != 0;
      name[2 * i] = bit ? 'b' : 'a';
      name[2 * i + 1] = bit ? '\\' : 'a';
    }
    return name + std::to_string(number / 64);
  }
};

template <class Kind>
class GuardedTableModel : public ::testing::Test {};
using Kinds = ::testing::Types<Words, CollidingWords, CollidingNames>;
TYPED_TEST_SUITE(GuardedTableModel, Kinds);

// In the same order as without a guard, whatever is done.
TYPED_TEST(GuardedTableModel, DoesWhatATableWithoutAGuardDoes) {
  using Key = typename TypeParam::Key;
  GuardedMap<Key, uint64_t> guarded;
  HashMap<Key, uint64_t> plain;
  std::mt19937_64 random(20250311);
  bool was_indexed = false;
  for (uint64_t step = 1; step <= 60'000; ++step) {
    // Runs that fill the tables take turns with runs that empty them.
    const bool fill = step / 6000 % 2 == 0;
    const Key key = TypeParam::key(random() % 3000);
    const uint64_t operation = random() % 10;
    if (operation < (fill ? 4 : 1)) {
      ASSERT_EQ(guarded.insert({key, step}), plain.insert({key, step}));
    } else if (operation < (fill ? 6 : 2)) {
      uint64_t& expected = plain[key];
      uint64_t& mapped = guarded[key];
      ASSERT_EQ(mapped, expected);
      mapped = expected = step;
    } else {
      const auto it = guarded.find(key);
      const auto plain_it = plain.find(key);
      ASSERT_EQ(it != guarded.end(), plain_it != plain.end());
      if (plain_it != plain.end()) {
        ASSERT_EQ(*it, *plain_it);
        ASSERT_EQ(it.index, plain_it.index);
        if (operation < 8) {
          const auto next = guarded.erase(it);
          const auto plain_next = plain.erase(plain_it);
          ASSERT_EQ(next != guarded.end(), plain_next != plain.end());
          if (plain_next != plain.end()) {
            ASSERT_EQ(*next, *plain_next);
          }
        }
      }
    }
    ASSERT_EQ(guarded.count, plain.count);
    was_indexed = was_indexed || guarded.is_indexed();
    if (step % 1000 == 0) {
      ASSERT_NO_FATAL_FAILURE(expect_same_walk(guarded, plain));
    }
    if (step % 7777 == 0) {
      const auto doomed = [&](const auto& entry) { return entry.second % 3 == 0; };
      guarded.erase_if(doomed);
      plain.erase_if(doomed);
      ASSERT_NO_FATAL_FAILURE(expect_same_walk(guarded, plain));
    }
  }
  EXPECT_EQ(was_indexed, (!std::is_same_v<TypeParam, Words>));
}

TEST(GuardedTable, HasNoIndexWhileChainsAreShort) {
  GuardedSet<unsigned long> table;
  for (uint64_t i = 0; i < 100000; ++i) table.insert(i * 1000);
  EXPECT_FALSE(table.is_indexed());
}

// The sixteenth element of a chain goes over fifteen others, the seventeenth over sixteen.
TEST(GuardedTable, GetsAnIndexWithTheFirstLongChain) {
  GuardedSet<unsigned long> table;
  for (uint64_t i = 0; i < 16; ++i) table.insert(i * 31);
  EXPECT_FALSE(table.is_indexed());
  table.insert(16 * 31);
  EXPECT_TRUE(table.is_indexed());
  for (uint64_t i = 0; i < 40; ++i) EXPECT_EQ(table.find(i * 31) != table.end(), i <= 16) << i;
}

TEST(GuardedTable, IsNoHashMap) {
  EXPECT_FALSE(
      (std::is_convertible_v<GuardedMap<unsigned long, int>*, HashMap<unsigned long, int>*>));
}

TEST(GuardedTable, AnEmptyTableHashesNoKey) {
  struct Unhashable {
    uint64_t operator()(const unsigned long&) const { throw 1; }
    uint64_t operator()(uint64_t, const unsigned long&) const { throw 1; }
  };
  const GuardedSet<unsigned long, Unhashable, std::equal_to<>, Unhashable> table;
  EXPECT_EQ(table.find(1), table.end());
}

TEST(GuardedTable, SwappingExchangesTheIndexAsWell) {
  GuardedMap<unsigned long, int> one;
  GuardedMap<unsigned long, int> other;
  for (uint64_t i = 0; i < 30; ++i) one[i * 73] = static_cast<int>(i);
  other[5] = 55;
  ASSERT_TRUE(one.is_indexed());
  one.swap(other);
  EXPECT_FALSE(one.is_indexed());
  EXPECT_TRUE(other.is_indexed());
  EXPECT_EQ(one.find(5)->second, 55);
  EXPECT_EQ(one.count, 1U);
  for (uint64_t i = 0; i < 30; ++i) EXPECT_EQ(other.find(i * 73)->second, static_cast<int>(i));
  EXPECT_EQ(other.find(5), other.end());
  other[31 * 73] = 31;
  EXPECT_EQ(other.count, 31U);
}

TEST(GuardedTable, WithoutMemoryForAnIndexChainsAreWalked) {
  GuardedSet<unsigned long> table;
  for (uint64_t i = 0; i < 16; ++i) table.insert(i * 31);
  {
    // The pool takes its memory from malloc.
    const testing::FailingMemory none(0);
    table.insert(16 * 31);
  }
  EXPECT_FALSE(table.is_indexed());
  EXPECT_NE(table.find(16 * 31), table.end());
  table.insert(17 * 31);
  EXPECT_TRUE(table.is_indexed());
  EXPECT_EQ(table.count, 18U);
  for (uint64_t i = 0; i < 18; ++i) EXPECT_NE(table.find(i * 31), table.end());
}

TEST(GuardedTable, AnInsertionThatCannotExtendTheIndexChangesNothing) {
  GuardedSet<unsigned long> table;
  const uint64_t stride = 31 * 73 * 151;
  for (uint64_t i = 0; i < 32; ++i) table.insert(i * stride);
  ASSERT_TRUE(table.is_indexed());
  bool failed = false;
  {
    const testing::FailingMemory none(0);
    try {
      table.insert(32 * stride);
    } catch (const std::bad_alloc&) {
      failed = true;
    }
  }
  EXPECT_TRUE(failed);
  EXPECT_EQ(table.count, 32U);
  EXPECT_EQ(table.find(32 * stride), table.end());
  EXPECT_TRUE(table.insert(32 * stride));
  EXPECT_FALSE(table.insert(32 * stride));
}

// Entries looked at while keys are entered, found twice, half of them erased and the rest found.
template <class Key>
uint64_t entries_for(const std::vector<Key>& keys) {
  GuardedMap<Key, uint64_t> table;
  const uint64_t before = entries_looked_at();
  for (size_t i = 0; i < keys.size(); ++i) EXPECT_TRUE(table.insert({keys[i], i}));
  for (size_t i = 0; i < keys.size(); ++i) {
    EXPECT_EQ(table.find(keys[i])->second, i);
    EXPECT_EQ(table[keys[i]], i);
  }
  table.erase_if([](const auto& entry) { return entry.second % 2 == 0; });
  for (size_t i = 0; i < keys.size(); ++i) {
    EXPECT_EQ(table.find(keys[i]) != table.end(), i % 2 == 1);
  }
  return entries_looked_at() - before;
}

TEST(GuardedTable, KeysThatCollideCostLittleMoreThanOthers) {
  const uint64_t buckets = buckets_for(20000);
  EXPECT_EQ(buckets, 42073U);
  std::vector<unsigned long> ordinary;
  std::vector<unsigned long> multiples;
  std::vector<std::string> ordinary_names;
  std::vector<std::string> colliding_names;
  for (uint64_t i = 0; i < 20000; ++i) {
    ordinary.push_back(i * 1000003);
    multiples.push_back(i * buckets * 21013);
    ordinary_names.push_back("name" + std::to_string(i));
    std::string name;
    for (size_t bit = 0; bit < 15; ++bit) name += (i >> bit & 1) != 0 ? "b\\" : "aa";
    colliding_names.push_back(name);
  }
  EXPECT_LE(entries_for(multiples), 5 * entries_for(ordinary));
  EXPECT_LE(entries_for(colliding_names), 5 * entries_for(ordinary_names));
}

}  // namespace
}  // namespace quill::hsh
