#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <type_traits>

#include "quill/utils/hash.h"
#include "quill/utils/hash_map.h"
#include "quill/utils/hash_set.h"
#include "quill/utils/ieee_float.h"
#include "quill/utils/qnumber.h"

namespace quill {
namespace {

struct Unhashed {
  bool operator==(const Unhashed&) const = default;
};

// A caller who spells the functor out gets the same table type as a caller who does not.
template <class Key, class Functor>
constexpr bool spelling_changes_nothing =
    std::is_same_v<hsh::HashMap<Key, int>, hsh::HashMap<Key, int, Functor>>&&
        std::is_same_v<hsh::HashMap<Key, int>,
                       hsh::HashMap<Key, int, Functor, typename hsh::KeyEquality<Key>::type>>&&
            std::is_same_v<hsh::HashSet<Key>, hsh::HashSet<Key, Functor>>;

template <class Key>
constexpr bool either_name_will_do =
    spelling_changes_nothing<Key, Hasher<Key>>&& spelling_changes_nothing<Key, hsh::hash<Key>>;

TEST(Hash, APointerHashesToItsAddress) {
  EXPECT_EQ(hsh::hash<const int*>()(nullptr), 0U);
  const int* pointer = reinterpret_cast<const int*>(uintptr_t{0x7f0012345678});
  EXPECT_EQ(hsh::hash<const int*>()(pointer), 0x7f0012345678U);
}

TEST(Hash, AWordHashesToItself) {
  EXPECT_EQ(hsh::hash<unsigned long>()(0), 0U);
  EXPECT_EQ(hsh::hash<unsigned long>()(18446744073709551615U), 18446744073709551615U);
}

TEST(Hash, AStringIsReadInBaseFive) {
  const hsh::hash<std::string> hash;
  EXPECT_EQ(hash(""), 0U);
  EXPECT_EQ(hash("a"), 97U);
  EXPECT_EQ(hash("ab"), 583U);  // 5 * 97 + 98
  EXPECT_EQ(hash("ba"), 587U);
  // Long enough for the sum to wrap.
  EXPECT_EQ(hash("the quick brown fox jumps over the lazy dog"), 17295737995798685613U);
}

TEST(Hash, CharactersOfAStringAreSigned) {
  const hsh::hash<std::string> hash;
  EXPECT_EQ(hash("\xff"), 18446744073709551615U);
  EXPECT_EQ(hash("a\x80"), 357U);  // 5 * 97 - 128
}

TEST(Hash, AStringIsReadUpToItsFirstNul) {
  const hsh::hash<std::string> hash;
  EXPECT_EQ(hash(std::string("a\0b", 3)), 97U);
  EXPECT_EQ(hash(std::string("\0ab", 3)), 0U);
}

TEST(Hash, AFloatingPointFormatHashesToItsTwoHalves) {
  const hsh::hash<IEEEFloat::format> hash;
  EXPECT_EQ(hash({8, 23}), 34359738391U);
  EXPECT_EQ(hash({uint64_t{1} << 32, 5}), 5U);
  // The halves are joined by "or", not added.
  EXPECT_EQ(hash({1, uint64_t{1} << 32}), uint64_t{1} << 32);
}

TEST(Hash, ATableIsTheSameWhetherItsFunctorIsSpelledOutOrNot) {
  EXPECT_TRUE(either_name_will_do<const int*>);
  EXPECT_TRUE(either_name_will_do<unsigned long>);
  EXPECT_TRUE(either_name_will_do<std::string>);
  EXPECT_TRUE(either_name_will_do<QNumber>);
  EXPECT_TRUE(either_name_will_do<const QNumber*>);
  EXPECT_TRUE(either_name_will_do<IEEEFloat::format>);
}

TEST(Hash, KeysAreEqualWhenTheStandardLibrarySaysSo) {
  EXPECT_TRUE(
      (std::is_same_v<hsh::HashSet<std::string>,
                      hsh::HashSet<std::string, Hasher<std::string>, std::equal_to<std::string>>>));
  EXPECT_TRUE(
      (std::is_same_v<hsh::HashSet<const int*>,
                      hsh::HashSet<const int*, Hasher<const int*>, std::equal_to<const int*>>>));
}

TEST(Hash, PointersToNumbersStandForTheNumbers) {
  const QNumber half(1, 2);
  const QNumber other_half(1, 2);
  const QNumber third(1, 3);
  EXPECT_EQ(Hasher<const QNumber*>()(&half), half.hash());
  hsh::HashMap<const QNumber*, int> map;
  EXPECT_TRUE(map.insert({&half, 2}));
  EXPECT_FALSE(map.insert({&other_half, 0}));
  EXPECT_TRUE(map.insert({&third, 3}));
  EXPECT_EQ(map[&other_half], 2);
}

TEST(Hash, AKeyTypeWithoutHasherHasNoHash) {
  EXPECT_FALSE((hsh::HashOf<Hasher<Unhashed>, Unhashed>));
  EXPECT_FALSE((hsh::HashOf<Hasher<int*>, int*>));
  EXPECT_TRUE((hsh::HashOf<Hasher<IEEEFloat::format>, IEEEFloat::format>));
}

}  // namespace
}  // namespace quill
