#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <map>
#include <new>
#include <random>
#include <utility>
#include <vector>

#include "quill/utils/intern_index.h"
#include "quill/utils/keyed_hash.h"
#include "tests/support/failing_memory.h"

namespace quill {
namespace {

void insert(InternIndex& index, uint32_t hash, uint32_t handle) {
  index.reserve_one();
  index.insert(hash, handle);
}

// All handles that a look-up with this hash offers to the test, in ascending order.
std::vector<uint32_t> offered(const InternIndex& index, uint32_t hash) {
  std::vector<uint32_t> handles;
  const uint32_t found = index.find(hash, [&](uint32_t handle) {
    handles.push_back(handle);
    return false;
  });
  EXPECT_EQ(found, InternIndex::none);
  std::sort(handles.begin(), handles.end());
  return handles;
}

uint32_t find(const InternIndex& index, uint32_t hash, uint32_t handle) {
  return index.find(hash, [&](uint32_t candidate) { return candidate == handle; });
}

using Handles = std::vector<uint32_t>;

TEST(InternIndex, AnEmptyIndexFindsNothingAndHoldsNoMemory) {
  const InternIndex index;
  EXPECT_EQ(find(index, 0, 0), InternIndex::none);
  EXPECT_EQ(index.size(), 0U);
  EXPECT_EQ(index.capacity(), 0U);
}

TEST(InternIndex, FindsWhatWasInserted) {
  InternIndex index;
  insert(index, 17, 3);
  EXPECT_EQ(find(index, 17, 3), 3U);
  EXPECT_EQ(find(index, 17, 4), InternIndex::none);
  EXPECT_EQ(find(index, 18, 3), InternIndex::none);
  EXPECT_EQ(index.size(), 1U);
}

TEST(InternIndex, TheTestChoosesAmongEqualHashes) {
  InternIndex index;
  insert(index, 5, 10);
  insert(index, 5, 11);
  insert(index, 5, 12);
  EXPECT_EQ(find(index, 5, 10), 10U);
  EXPECT_EQ(find(index, 5, 11), 11U);
  EXPECT_EQ(find(index, 5, 12), 12U);
  EXPECT_EQ(find(index, 5, 13), InternIndex::none);
}

TEST(InternIndex, AsksOnlyAboutEntriesWithTheVeryHash) {
  InternIndex index;
  insert(index, 5, 10);
  insert(index, 5 + 64, 11);  // the same slot of 64
  insert(index, 5 + (1 << 20), 12);
  EXPECT_EQ(offered(index, 5), Handles({10}));
  EXPECT_EQ(offered(index, 5 + 64), Handles({11}));
  EXPECT_EQ(offered(index, 5 + 128), Handles());
}

TEST(InternIndex, FoldsBothHalvesOfAHash) {
  EXPECT_EQ(InternIndex::fold(0x0000000100000002), 0x00000003U);
  EXPECT_EQ(InternIndex::fold(0xffffffff00000000), 0xffffffffU);
  EXPECT_EQ(InternIndex::fold(0xffffffffffffffff), 0U);
}

TEST(InternIndex, GrowsWhenMoreThanHalfOfTheSlotsWouldBeTaken) {
  InternIndex index;
  for (uint32_t i = 0; i < 32; ++i) insert(index, i, i);
  EXPECT_EQ(index.capacity(), 64U);
  insert(index, 32, 32);
  EXPECT_EQ(index.capacity(), 128U);
  for (uint32_t i = 33; i < 64; ++i) insert(index, i, i);
  EXPECT_EQ(index.capacity(), 128U);
  insert(index, 64, 64);
  EXPECT_EQ(index.capacity(), 256U);
  for (uint32_t i = 0; i < 65; ++i) EXPECT_EQ(find(index, i, i), i);
}

TEST(InternIndex, TellsHowManySlotsALookUpReads) {
  InternIndex index;
  EXPECT_EQ(index.mean_probe(), 0);
  insert(index, 5, 0);
  EXPECT_EQ(index.mean_probe(), 1);
  insert(index, 5 + 64, 1);
  EXPECT_EQ(index.mean_probe(), 1.5);
  insert(index, 63, 2);
  insert(index, 63, 3);  // in the first slot
  EXPECT_EQ(index.mean_probe(), 1.5);
}

TEST(InternIndex, JustBeforeItGrowsALookUpReadsOneAndAHalfSlots) {
  InternIndex index;
  uint64_t hash = 1;
  for (uint32_t i = 0; i < 1 << 17; ++i) {
    hash = hash * 6364136223846793005 + 1442695040888963407;
    insert(index, static_cast<uint32_t>(hash >> 32), i);
  }
  EXPECT_EQ(index.capacity(), 1U << 18);
  EXPECT_NEAR(index.mean_probe(), 1.5, 0.02);
}

TEST(InternIndex, ReservingTwiceGrowsOnce) {
  InternIndex index;
  for (uint32_t i = 0; i < 32; ++i) insert(index, i, i);
  index.reserve_one();
  index.reserve_one();
  EXPECT_EQ(index.capacity(), 128U);
  EXPECT_EQ(index.size(), 32U);
}

TEST(InternIndex, ErasingLeavesTheRestOfTheProbeRunReachable) {
  // Five entries that want slots 60, 60, 61, 60 and 62, and lie in 60 to 63 and, past the end, 0.
  const std::array<uint32_t, 5> hashes = {60, 60 + 64, 61, 60 + 128, 62};
  for (uint32_t victim = 0; victim < 5; ++victim) {
    InternIndex index;
    for (uint32_t i = 0; i < 5; ++i) insert(index, hashes[i], i);
    index.erase(hashes[victim], victim);
    EXPECT_EQ(index.size(), 4U);
    for (uint32_t i = 0; i < 5; ++i) {
      EXPECT_EQ(find(index, hashes[i], i), i == victim ? InternIndex::none : i)
          << "entry " << i << " without " << victim;
    }
  }
}

TEST(InternIndex, ErasingDoesNotMoveAnEntryBeforeItsHome) {
  InternIndex index;
  insert(index, 10, 0);
  insert(index, 11, 1);  // at home, directly after the entry that goes
  index.erase(10, 0);
  EXPECT_EQ(find(index, 11, 1), 1U);
}

TEST(InternIndex, ErasedRoomIsUsedAgain) {
  InternIndex index;
  for (uint32_t round = 0; round < 1000; ++round) {
    insert(index, round * 2654435761U, round);
    if (round >= 30) index.erase((round - 30) * 2654435761U, round - 30);
  }
  EXPECT_EQ(index.size(), 30U);
  EXPECT_EQ(index.capacity(), 64U);
}

TEST(InternIndex, RenamingKeepsTheHash) {
  InternIndex index;
  insert(index, 5, 10);
  insert(index, 5, 11);
  index.rename(5, 11, 99);
  EXPECT_EQ(offered(index, 5), Handles({10, 99}));
  EXPECT_EQ(index.size(), 2U);
}

TEST(InternIndex, ClearingKeepsTheRoomThatIsNeeded) {
  InternIndex index;
  for (uint32_t i = 0; i < 60; ++i) insert(index, i, i);
  index.clear(60);
  EXPECT_EQ(index.size(), 0U);
  EXPECT_EQ(index.capacity(), 128U);
  for (uint32_t i = 0; i < 60; ++i) EXPECT_EQ(find(index, i, i), InternIndex::none);
  {
    const testing::FailingMemory none(0);
    for (uint32_t i = 0; i < 60; ++i) insert(index, i, i + 100);
  }
  for (uint32_t i = 0; i < 60; ++i) EXPECT_EQ(find(index, i, i + 100), i + 100);
}

// Room for twice the entries that are expected: 64 slots for up to 16, 128 for up to 32.
TEST(InternIndex, ClearingGivesRoomBack) {
  const std::pair<size_t, size_t> capacities[] = {{0, 64},    {16, 64},    {17, 128},  {32, 128},
                                                  {128, 512}, {129, 1024}, {500, 1024}};
  for (const auto& [expected, capacity] : capacities) {
    InternIndex index;
    for (uint32_t i = 0; i < 500; ++i) insert(index, i, i);
    EXPECT_EQ(index.num_bytes(), 8 * 1024U);
    index.clear(expected);
    EXPECT_EQ(index.size(), 0U);
    EXPECT_EQ(index.capacity(), capacity) << expected;
    {
      const testing::FailingMemory none(0);
      for (uint32_t i = 0; i < expected; ++i) index.insert(i, i + 1000);
    }
    for (uint32_t i = 0; i < expected; ++i) EXPECT_EQ(find(index, i, i + 1000), i + 1000);
  }
}

TEST(InternIndex, ShrinkingKeepsTheEntries) {
  InternIndex index;
  for (uint32_t i = 0; i < 600; ++i) insert(index, 7 * i, i);
  for (uint32_t i = 0; i < 600; ++i) {
    if (i % 10 != 0) index.erase(7 * i, i);
  }
  index.shrink();
  EXPECT_EQ(index.size(), 60U);
  EXPECT_EQ(index.capacity(), 256U);
  for (uint32_t i = 0; i < 600; ++i) {
    EXPECT_EQ(find(index, 7 * i, i), i % 10 == 0 ? i : InternIndex::none);
  }
  index.shrink();
  EXPECT_EQ(index.capacity(), 256U);
}

TEST(InternIndex, WithoutMemoryTheRoomStays) {
  InternIndex index;
  for (uint32_t i = 0; i < 500; ++i) insert(index, i, i);
  for (uint32_t i = 1; i < 500; ++i) index.erase(i, i);
  const testing::FailingMemory none(0);
  index.shrink();
  EXPECT_EQ(index.capacity(), 1024U);
  EXPECT_EQ(find(index, 0, 0), 0U);
  index.clear(1);
  EXPECT_EQ(index.capacity(), 1024U);
  EXPECT_EQ(find(index, 0, 0), InternIndex::none);
  index.insert(5, 6);
  EXPECT_EQ(find(index, 5, 6), 6U);
}

TEST(InternIndex, FailedGrowthChangesNothing) {
  InternIndex index;
  for (uint32_t i = 0; i < 32; ++i) insert(index, 7 * i, i);
  bool failed = false;
  {
    const testing::FailingMemory none(0);
    try {
      index.reserve_one();
    } catch (const std::bad_alloc&) {
      failed = true;
    }
  }
  EXPECT_TRUE(failed);
  EXPECT_EQ(index.size(), 32U);
  EXPECT_EQ(index.capacity(), 64U);
  for (uint32_t i = 0; i < 32; ++i) EXPECT_EQ(find(index, 7 * i, i), i);
  insert(index, 7 * 32, 32);
  EXPECT_EQ(find(index, 7 * 32, 32), 32U);
}

// A store of numbers whose hash under the first `broken` keys is the same for all, and under later
// keys spreads them.
class Numbers {
 public:
  explicit Numbers(uint64_t number_of_broken_keys) : broken(number_of_broken_keys) {}

  bool add(uint32_t number) {
    const uint32_t hash = hash_of(index.key(), number);
    const uint32_t found = index.find(hash, [&](uint32_t handle) {
      ++comparisons;
      return held[handle] == number;
    });
    if (found != InternIndex::none) return false;
    index.reserve_one();
    held.push_back(number);
    index.insert(hash, static_cast<uint32_t>(held.size() - 1),
                 [this](uint64_t key, uint32_t handle) {
                   ++hashed;
                   return hash_of(key, held[handle]);
                 });
    return true;
  }

  // The position of the key of the index in the sequence, which is looked for up to ten thousand.
  uint64_t key_number() const {
    for (uint64_t number = 0; number < 10000; ++number) {
      if (index.key() == hash_key(number)) return number;
    }
    return UINT64_MAX;
  }

  InternIndex index;
  std::vector<uint32_t> held;
  uint64_t comparisons = 0;  // of numbers
  uint64_t hashed = 0;       // numbers, again

 private:
  uint32_t hash_of(uint64_t key, uint32_t number) const {
    if (broken == UINT64_MAX) return 4711;
    for (uint64_t i = 0; i < broken; ++i) {
      if (key == hash_key(i)) return 4711;
    }
    return InternIndex::fold(KeyedHasher<uint32_t>()(key, number));
  }
  const uint64_t broken;
};

TEST(InternIndex, ObjectsInGoodOrderKeepTheFirstKey) {
  Numbers numbers(0);
  for (uint32_t i = 0; i < 1000000; ++i) numbers.add(i);
  EXPECT_EQ(numbers.key_number(), 0U);
  EXPECT_EQ(numbers.hashed, 0U);
}

// The 66th object goes past 65 others, the 67th past 66: more than there are.
TEST(InternIndex, ObjectsThatCollideAreHashedAgainUnderTheNextKey) {
  Numbers numbers(1);
  for (uint32_t i = 0; i < 66; ++i) numbers.add(i);
  EXPECT_EQ(numbers.key_number(), 0U);
  numbers.add(66);
  EXPECT_EQ(numbers.key_number(), 1U);
  EXPECT_EQ(numbers.hashed, 67U);
  for (uint32_t i = 0; i < 20000; ++i) EXPECT_EQ(numbers.add(i), i > 66);
  EXPECT_EQ(numbers.key_number(), 1U);
  EXPECT_EQ(numbers.hashed, 67U);
  EXPECT_EQ(numbers.index.size(), 20000U);
}

TEST(InternIndex, ObjectsThatCollideCostLittleMoreThanOthers) {
  for (const uint64_t broken : {1U, 2U, 5U}) {
    Numbers numbers(broken);
    for (int round = 0; round < 2; ++round) {
      for (uint32_t i = 0; i < 20000; ++i) numbers.add(i);
    }
    EXPECT_EQ(numbers.key_number(), broken);
    // Of ordinary objects those of the second round are compared, with themselves.
    EXPECT_LE(numbers.comparisons, 5 * 20000U) << broken;
  }
}

// Many are there before the first that collides.
TEST(InternIndex, LateCollisionsAreNoticedBeforeTheyHaveCostMuch) {
  Numbers numbers(0);
  for (uint32_t i = 0; i < 100000; ++i) numbers.add(i);
  const uint32_t far = 1U << 20;
  uint64_t looked_at = 0;
  for (uint32_t handle = far; numbers.index.key() == hash_key(0); ++handle) {
    numbers.index.reserve_one();
    numbers.index.insert(4711, handle, [&](uint64_t key, uint32_t any) {
      return InternIndex::fold(KeyedHasher<uint32_t>()(key, any));
    });
    looked_at += handle - far;
    ASSERT_LT(looked_at, 110000U);
  }
  for (uint32_t handle = far; handle < far + 300; ++handle) {
    const uint32_t hash = InternIndex::fold(KeyedHasher<uint32_t>()(hash_key(1), handle));
    EXPECT_EQ(find(numbers.index, hash, handle), handle);
  }
}

// Under no key is there any order: the index is slow then, but spends no more on changing keys than
// on the look-ups.
TEST(InternIndex, AHashThatCanBeBrokenUnderEveryKeyCostsNoMoreForIt) {
  Numbers numbers(UINT64_MAX);
  const uint32_t count = 1000;
  for (uint32_t i = 0; i < count; ++i) {
    EXPECT_TRUE(numbers.add(i));
    EXPECT_FALSE(numbers.add(i / 2));
  }
  EXPECT_GT(numbers.hashed, 0U);
  EXPECT_LE(numbers.hashed, uint64_t{count} * (count + 1) / 2);
}

TEST(InternIndex, TwoRunsComeToTheSameKey) {
  Numbers one(3);
  Numbers other(3);
  for (uint32_t i = 0; i < 5000; ++i) {
    one.add(i * 7);
    other.add(i * 7);
    ASSERT_EQ(one.index.key(), other.index.key());
  }
}

TEST(InternIndex, WithoutMemoryTheKeyStays) {
  Numbers numbers(1);
  for (uint32_t i = 0; i < 66; ++i) numbers.add(i);
  numbers.index.reserve_one();
  numbers.held.push_back(66);
  {
    const testing::FailingMemory none(0);
    numbers.index.insert(4711, 66, [](uint64_t, uint32_t) { return 0U; });
  }
  EXPECT_EQ(numbers.key_number(), 0U);
  EXPECT_EQ(find(numbers.index, 4711, 66), 66U);
  for (uint32_t i = 0; i < 200; ++i) EXPECT_EQ(numbers.add(i), i > 66);
  EXPECT_EQ(numbers.key_number(), 1U);
}

TEST(InternIndex, ARunRoundTheEndIsMeasuredFromItsHome) {
  InternIndex index;
  for (uint32_t i = 0; i < 60; ++i) {
    index.reserve_one();
    // From slot 100 of 128 on, past the end.
    index.insert(100, i, [](uint64_t, uint32_t) { return 0U; });
  }
  EXPECT_EQ(index.key(), hash_key(0));
}

TEST(InternIndex, PointersAreHandlesAsWell) {
  const std::array<int, 3> objects = {};
  HandleIndex<const int*> index;
  for (const int& object : objects) {
    index.reserve_one();
    index.insert(5, &object);
  }
  const auto find_in = [&](const int* object) {
    return index.find(5, [&](const int* candidate) { return candidate == object; });
  };
  EXPECT_EQ(find_in(&objects[1]), &objects[1]);
  index.erase(5, &objects[1]);
  EXPECT_EQ(find_in(&objects[1]), nullptr);
  EXPECT_EQ(find_in(&objects[2]), &objects[2]);
}

// Hashes are drawn from few values, so that probe runs are long, wrap round the end and mix homes.
TEST(InternIndex, AgreesWithAMultimapOverRandomOperations) {
  std::mt19937 engine(20240611);
  const auto random = [&] { return static_cast<uint32_t>(engine()); };
  InternIndex index;
  std::multimap<uint32_t, uint32_t> model;
  std::vector<std::pair<uint32_t, uint32_t>> entries;
  uint32_t next_handle = 0;
  const auto draw_hash = [&]() -> uint32_t {
    switch (random() % 4) {
      case 0:
        return random() % 8;
      case 1:
        return UINT32_MAX - random() % 8;
      case 2:
        return (random() % 16) << 16 | (random() % 4);  // equal in all but the upper half
      default:
        return random() % 4096;
    }
  };
  const auto check = [&](uint32_t hash) {
    Handles expected;
    const auto [from, to] = model.equal_range(hash);
    for (auto it = from; it != to; ++it) expected.push_back(it->second);
    std::sort(expected.begin(), expected.end());
    ASSERT_EQ(offered(index, hash), expected) << "hash " << hash;
  };
  const auto erase_from_model = [&](std::pair<uint32_t, uint32_t> entry) {
    auto it = model.lower_bound(entry.first);
    while (it->second != entry.second) ++it;
    model.erase(it);
  };

  for (int step = 0; step < 200000; ++step) {
    // The target size swings, so that both growth and nearly empty tables are met.
    const size_t target = step % 20000 < 10000 ? 700 : 5;
    const unsigned action = random() % 8;
    if (entries.empty() || (action < 5 && entries.size() < target)) {
      const uint32_t hash = draw_hash();
      insert(index, hash, next_handle);
      model.emplace(hash, next_handle);
      entries.emplace_back(hash, next_handle++);
      check(hash);
    } else if (action < 7) {
      const size_t i = random() % entries.size();
      const auto entry = entries[i];
      index.erase(entry.first, entry.second);
      erase_from_model(entry);
      entries[i] = entries.back();
      entries.pop_back();
      check(entry.first);
    } else {
      auto& entry = entries[random() % entries.size()];
      index.rename(entry.first, entry.second, next_handle);
      erase_from_model(entry);
      entry.second = next_handle++;
      model.emplace(entry.first, entry.second);
      check(entry.first);
    }
    ASSERT_EQ(index.size(), model.size());
    if (step % 1000 == 0) {
      for (const auto& [hash, handle] : entries) ASSERT_EQ(find(index, hash, handle), handle);
    }
    check(draw_hash());
    if (HasFatalFailure()) return;
  }
}

}  // namespace
}  // namespace quill
