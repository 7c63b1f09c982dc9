#include <gtest/gtest.h>

#include <cstdint>
#include <type_traits>

#include "quill/terms/data_type.h"
#include "quill/terms/symbol.h"
#include "quill/terms/term.h"
#include "quill/terms/termmanager/family_keys.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/terms/type_universe.h"
#include "quill/utils/hash_map.h"
#include "quill/utils/ieee_float.h"
#include "quill/utils/qnumber.h"

namespace quill {
namespace {

using BVIndex1 = TermManager::BVIndex1;
using BVIndex2 = TermManager::BVIndex2;
using ArrIndex = TermManager::ArrIndex;
using FPFormatCast = TermManager::FPFormatCast;

template <class Key, class... Functors>
constexpr bool same_table =
    std::is_same_v<hsh::HashMap<Key, int>, hsh::HashMap<Key, int, Functors...>>;

TEST(FamilyKeys, TablesAreTheSameWhetherTheirFunctorIsSpelledOutOrNot) {
  EXPECT_TRUE((same_table<const Symbol*, hsh::hash<const Symbol*>>));
  EXPECT_TRUE((same_table<const DataType*, hsh::hash<const DataType*>>));
  EXPECT_TRUE((same_table<const Term_*, hsh::hash<const Term_*>>));
  EXPECT_TRUE((same_table<const Term_*, Hasher<const Term_*>>));
  EXPECT_TRUE((same_table<BVIndex1, Hasher<BVIndex1>>));
  EXPECT_TRUE((same_table<BVIndex2, Hasher<BVIndex2>>));
  EXPECT_TRUE((same_table<ArrIndex, Hasher<ArrIndex>>));
  EXPECT_TRUE((same_table<FPFormatCast, Hasher<FPFormatCast>>));
  using ByValue = TermManager::NumberCache_hash_eq;
  EXPECT_TRUE((same_table<const QNumber*, ByValue>));
  EXPECT_TRUE((same_table<const QNumber*, ByValue, ByValue>));
  EXPECT_TRUE((same_table<const QNumber*, Hasher<const QNumber*>>));
}

TEST(FamilyKeys, ARotationHashesToTheAmountShiftedBy32PlusTheWidth) {
  const Hasher<BVIndex1> hash;
  EXPECT_EQ(hash({0, 0}), 0U);
  EXPECT_EQ(hash({1, 2}), 0x0000000100000002U);
  EXPECT_EQ(hash({3, 0x100000005}), 0x0000000400000005U);  // a sum: the carry goes into a
  EXPECT_EQ(hash({0x100000001, 0}), 0x0000000100000000U);  // shifted out
  EXPECT_EQ(hash({0xffffffff, 0xffffffff00000001}), 0xfffffffe00000001U);  // wraps
}

TEST(FamilyKeys, AnExtractionHashesItsThreePartsTwentyBitsApart) {
  const Hasher<BVIndex2> hash;
  EXPECT_EQ(hash({1, 2, 3}), 0x0000010000200003U);
  EXPECT_EQ(hash({0, 1, 0x100000}), 0x0000000000200000U);   // a sum
  EXPECT_EQ(hash({0x1000001, 0, 0}), 0x0000010000000000U);  // shifted out
  EXPECT_EQ(hash({0, 0, UINT64_MAX}), UINT64_MAX);
  EXPECT_EQ(hash({0, 1, UINT64_MAX}), 0x00000000000fffffU);  // wraps
}

TEST(FamilyKeys, AnArrayHashesToTheExclusiveOrOfItsAddresses) {
  TypeUniverse u;
  const DataType* i = u.make_type("i");
  const DataType* e = u.make_type("e");
  const Hasher<ArrIndex> hash;
  EXPECT_EQ(hash({i, e}), reinterpret_cast<uintptr_t>(i) ^ reinterpret_cast<uintptr_t>(e));
  EXPECT_EQ(hash({i, e}), hash({e, i}));
  EXPECT_EQ(hash({i, i}), 0U);
}

TEST(FamilyKeys, AConversionHashesToTheSumOfItsTwoPairs) {
  const Hasher<FPFormatCast> hash;
  EXPECT_EQ(hash({1, 2, 3, 4}), 0x0000000400000006U);
  EXPECT_EQ(hash({8, 23, 11, 52}), 0x000000130000004bU);
  EXPECT_EQ(hash({1, 0x100000000, 0, 0}), 0x0000000100000000U);  // an or within a pair
  EXPECT_EQ(hash({0xffffffff, 0, 1, 0}), 0U);                    // the sum wraps
}

TEST(FamilyKeys, AFormatHashesToTheExponentShiftedBy32OrTheSignificand) {
  const Hasher<IEEEFloat::format> hash;
  EXPECT_EQ(hash({8, 23}), 0x0000000800000017U);
  EXPECT_EQ(hash({1, 0x100000000}), 0x0000000100000000U);  // an or, no sum
  EXPECT_EQ(hash({0x100000001, 5}), 0x0000000100000005U);  // shifted out
}

TEST(FamilyKeys, EveryFieldCountsForEquality) {
  EXPECT_EQ((BVIndex1{1, 2}), (BVIndex1{1, 2}));
  EXPECT_NE((BVIndex1{1, 2}), (BVIndex1{3, 2}));
  EXPECT_NE((BVIndex1{1, 2}), (BVIndex1{1, 3}));

  EXPECT_EQ((BVIndex2{1, 2, 3}), (BVIndex2{1, 2, 3}));
  EXPECT_NE((BVIndex2{1, 2, 3}), (BVIndex2{0, 2, 3}));
  EXPECT_NE((BVIndex2{1, 2, 3}), (BVIndex2{1, 0, 3}));
  EXPECT_NE((BVIndex2{1, 2, 3}), (BVIndex2{1, 2, 0}));

  EXPECT_EQ((FPFormatCast{1, 2, 3, 4}), (FPFormatCast{1, 2, 3, 4}));
  EXPECT_NE((FPFormatCast{1, 2, 3, 4}), (FPFormatCast{0, 2, 3, 4}));
  EXPECT_NE((FPFormatCast{1, 2, 3, 4}), (FPFormatCast{1, 0, 3, 4}));
  EXPECT_NE((FPFormatCast{1, 2, 3, 4}), (FPFormatCast{1, 2, 0, 4}));
  EXPECT_NE((FPFormatCast{1, 2, 3, 4}), (FPFormatCast{1, 2, 3, 0}));

  EXPECT_EQ((IEEEFloat::format{8, 23}), (IEEEFloat::format{8, 23}));
  EXPECT_NE((IEEEFloat::format{8, 23}), (IEEEFloat::format{23, 8}));

  TypeUniverse u;
  const DataType* i = u.make_type("i");
  const DataType* e = u.make_type("e");
  EXPECT_EQ((ArrIndex{i, e}), (ArrIndex{i, e}));
  EXPECT_NE((ArrIndex{i, e}), (ArrIndex{e, i}));
}

TEST(FamilyKeys, AreKeysOfTablesWithoutFurtherArguments) {
  hsh::HashMap<BVIndex1, int> rotations;
  hsh::HashMap<BVIndex2, int> extractions;
  hsh::HashMap<ArrIndex, int> arrays;
  hsh::HashMap<FPFormatCast, int> conversions;
  hsh::HashMap<IEEEFloat::format, int> formats;
  TypeUniverse u;
  const DataType* i = u.make_type("i");
  const DataType* e = u.make_type("e");
  rotations[{1, 2}] = 5;
  extractions[{1, 2, 3}] = 6;
  arrays[{i, e}] = 7;
  arrays[{e, i}] = 8;  // the same hash
  conversions[{1, 2, 3, 4}] = 9;
  formats[{8, 23}] = 10;
  EXPECT_EQ(rotations.find({1, 2})->second, 5);
  EXPECT_EQ(rotations.find({2, 1}), rotations.end());
  EXPECT_EQ(extractions.find({1, 2, 3})->second, 6);
  EXPECT_EQ(arrays.find({i, e})->second, 7);
  EXPECT_EQ(arrays.find({e, i})->second, 8);
  EXPECT_EQ(conversions.find({1, 2, 3, 4})->second, 9);
  EXPECT_EQ(conversions.find({3, 4, 1, 2}), conversions.end());
  EXPECT_EQ(formats.find({8, 23})->second, 10);
}

TEST(RoundingMode, HasItsFixedValues) {
  EXPECT_EQ(static_cast<int>(IEEEFloat::ROUND_EVEN), 0);
  EXPECT_EQ(static_cast<int>(IEEEFloat::ROUND_ZERO), 1);
  EXPECT_EQ(static_cast<int>(IEEEFloat::ROUND_PLUS_INF), 2);
  EXPECT_EQ(static_cast<int>(IEEEFloat::ROUND_MINUS_INF), 3);
}

}  // namespace
}  // namespace quill
