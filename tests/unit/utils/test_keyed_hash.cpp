#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <set>
#include <vector>

#include "quill/utils/keyed_hash.h"

namespace quill {
namespace {

TEST(KeyedHash, TheSequenceOfKeysIsFixed) {
  EXPECT_EQ(hash_key(0), 0xd1b54a32d192ed03U);
  EXPECT_EQ(hash_key(1), 0xe220a8397b1dcdafU);
  EXPECT_EQ(hash_key(2), 0x6e789e6aa1b965f5U);
}

TEST(KeyedHash, KeysAreOddAndDiffer) {
  std::set<uint64_t> keys;
  for (uint64_t i = 0; i < 1000; ++i) {
    EXPECT_EQ(hash_key(i) % 2, 1U);
    keys.insert(hash_key(i));
  }
  EXPECT_EQ(keys.size(), 1000U);
}

TEST(KeyedHash, EveryWordOfASequenceCounts) {
  const auto hash = [](std::initializer_list<uint64_t> words) {
    KeyedWordHash h(hash_key(0));
    for (const uint64_t word : words) h.add(word);
    return h.result();
  };
  const std::set<uint64_t> hashes = {
      hash({}),  hash({0}),       hash({0, 0}),    hash({1, 0}),    hash({0, 1}),   hash({2}),
      hash({3}), hash({0, 0, 0}), hash({1, 0, 0}), hash({0, 1, 0}), hash({0, 0, 1})};
  EXPECT_EQ(hashes.size(), 11U);
}

// Multiples of 2^32, of a bucket count and of nothing, under several keys: with 2^14 balls, 2^16
// slots have some 14,500 taken.
TEST(KeyedHash, NumbersInARowSpreadLikeRandomNumbersUnderEveryKey) {
  for (const uint64_t factor :
       {uint64_t{1}, uint64_t{42073}, uint64_t{1} << 32, uint64_t{1} << 48}) {
    for (uint64_t number = 0; number < 8; ++number) {
      std::vector<uint64_t> slots;
      for (uint64_t i = 0; i < 1 << 14; ++i) {
        const uint64_t hash = KeyedHasher<unsigned long>()(hash_key(number), factor * i);
        slots.push_back((hash ^ hash >> 32) & 0xffff);
      }
      std::sort(slots.begin(), slots.end());
      EXPECT_GT(std::unique(slots.begin(), slots.end()) - slots.begin(), 14000)
          << factor << " under key " << number;
    }
  }
}

TEST(KeyedHash, HeadAndRestCountForAddresses) {
  const int objects[4] = {};
  const int* const pair[] = {&objects[0], &objects[1]};
  const int* const swapped[] = {&objects[1], &objects[0]};
  const auto hash = [&](const int* head, const int* const* rest, uint64_t count) {
    return hash_addresses(hash_key(0), head, rest, count);
  };
  const std::set<uint64_t> hashes = {hash(&objects[2], pair, 2), hash(&objects[2], swapped, 2),
                                     hash(&objects[3], pair, 2), hash(&objects[2], pair, 1),
                                     hash(&objects[2], pair, 0)};
  EXPECT_EQ(hashes.size(), 5U);
}

}  // namespace
}  // namespace quill
