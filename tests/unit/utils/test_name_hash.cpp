#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "quill/utils/intern_index.h"
#include "quill/utils/name_hash.h"
#include "tests/support/colliding_names.h"

namespace quill {
namespace {

size_t count_distinct(std::vector<uint64_t> values) {
  std::sort(values.begin(), values.end());
  return static_cast<size_t>(std::unique(values.begin(), values.end()) - values.begin());
}

TEST(NameHash, DependsOnTheBytesAloneAndNotOnWhereTheyLie) {
  const std::string name = "a name of more than sixteen bytes";
  const uint64_t expected = NameHash()(name);
  for (size_t shift = 1; shift < 9; ++shift) {
    const std::string padded = std::string(shift, '#') + name + "#";
    EXPECT_EQ(NameHash()(std::string_view(padded).substr(shift, name.size())), expected);
  }
}

TEST(NameHash, CountsBytesBehindANul) {
  using namespace std::string_view_literals;
  EXPECT_NE(NameHash()("a"sv), NameHash()("a\0"sv));
  EXPECT_NE(NameHash()("a\0b"sv), NameHash()("a\0c"sv));
  EXPECT_NE(NameHash()(""sv), NameHash()("\0"sv));
}

// Eight bytes are read at a time: lengths up to three words, and the tails between them.
TEST(NameHash, TellsRepetitionsOfOneByteApart) {
  for (const char c : {'\0', 'x', '\xff'}) {
    std::vector<uint64_t> hashes;
    for (size_t length = 0; length <= 24; ++length) {
      hashes.push_back(InternIndex::fold(NameHash()(std::string(length, c))));
    }
    EXPECT_EQ(count_distinct(hashes), 25U);
  }
}

TEST(NameHash, EveryBitOfTheNameCounts) {
  for (size_t length = 1; length <= 24; ++length) {
    const std::string name(length, 'k');
    std::vector<uint64_t> hashes = {InternIndex::fold(NameHash()(name))};
    for (size_t bit = 0; bit < 8 * length; ++bit) {
      std::string other = name;
      other[bit / 8] = static_cast<char>(other[bit / 8] ^ (1 << bit % 8));
      hashes.push_back(InternIndex::fold(NameHash()(other)));
    }
    EXPECT_EQ(count_distinct(hashes), 8 * length + 1) << "length " << length;
  }
}

TEST(NameHash, EqualNamesAreEqualWhateverTheirStringType) {
  EXPECT_EQ(NameHash()("x12"), NameHash()(std::string("x12")));
}

// An ideal hash of 32 bits has about 116 collisions in a million values, and with a million balls
// 2^21 slots have some 795,000 taken.
TEST(NameHash, AMillionNumberedNamesSpreadLikeRandomNumbers) {
  for (const std::string prefix : {"x", "", "a_long_prefix_of_a_name_", "x!"}) {
    std::vector<uint64_t> full;
    std::vector<uint64_t> folded;
    std::vector<uint64_t> slots;
    for (int i = 0; i < 1000000; ++i) {
      full.push_back(NameHash()(prefix + std::to_string(i)));
      folded.push_back(InternIndex::fold(full.back()));
      slots.push_back(folded.back() & ((1U << 21) - 1));
    }
    EXPECT_EQ(count_distinct(full), 1000000U) << prefix;
    EXPECT_GT(count_distinct(folded), 999700U) << prefix;
    EXPECT_GT(count_distinct(slots), 780000U) << prefix;
  }
}

TEST(NameHash, TakesTheFirstKeyUnlessToldOtherwise) {
  EXPECT_EQ(NameHash()("x12"), NameHash()(hash_key(0), "x12"));
  EXPECT_NE(NameHash()("x12"), NameHash()(hash_key(1), "x12"));
}

// Names that were made to collide under one key are like any others under the next ones.
TEST(NameHash, NamesThatCollideUnderOneKeySpreadUnderTheOthers) {
  const std::vector<std::string> names = testing::colliding_names(20000);
  const auto count_hashes = [&](uint64_t number) {
    std::vector<uint64_t> folded;
    for (const std::string& name : names) {
      folded.push_back(InternIndex::fold(NameHash()(hash_key(number), name)));
    }
    return count_distinct(folded);
  };
  EXPECT_EQ(count_hashes(0), 1U);
  for (uint64_t number = 1; number < 6; ++number) EXPECT_GT(count_hashes(number), 19990U);
}

}  // namespace
}  // namespace quill
