#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "quill/utils/hash.h"
#include "quill/utils/ieee_float.h"

namespace quill {
namespace {

struct Unhashed {};

template <class T>
concept Defined = requires {
  sizeof(T);
};

TEST(Hash, APointerHashesToItsAddress) {
  EXPECT_EQ(hsh::hash<const int*>()(nullptr), 0U);
  const int* pointer = reinterpret_cast<const int*>(std::uintptr_t{0x7f0012345678});
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
  EXPECT_EQ(hash({std::uint64_t{1} << 32, 5}), 5U);
  // The halves are joined by "or", not added.
  EXPECT_EQ(hash({1, std::uint64_t{1} << 32}), std::uint64_t{1} << 32);
}

TEST(Hash, AKeyTypeWithoutHasherHasNoHash) {
  EXPECT_FALSE(Defined<Hasher<Unhashed>>);
  EXPECT_TRUE(Defined<Hasher<IEEEFloat::format>>);
}

}  // namespace
}  // namespace quill
