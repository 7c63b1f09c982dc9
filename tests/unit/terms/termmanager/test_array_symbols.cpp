#include <gtest/gtest.h>

#include <cstddef>
#include <new>
#include <string>
#include <vector>

#include "quill/terms/signature.h"
#include "quill/terms/termmanager/array_symbols.h"
#include "quill/terms/type_universe.h"
#include "quill/utils/hash_set.h"
#include "tests/support/failing_memory.h"

namespace quill {
namespace {

class ArraySymbolsTest : public ::testing::Test {
 protected:
  const DataType* type(size_t i) { return universe.make_type("t" + std::to_string(i)); }
  const Symbol* symbol(size_t i) {
    return signature.add_symbol(("s" + std::to_string(i)).c_str(), type(0));
  }

  TypeUniverse universe;
  Signature signature{&universe};
  ArraySymbols family;
};

TEST_F(ArraySymbolsTest, FindsThePairThatWasEntered) {
  EXPECT_EQ(family.find({type(1), type(2)}), nullptr);
  family.insert({type(1), type(2)}, symbol(1));
  family.insert({type(2), type(1)}, symbol(2));
  family.insert({type(1), type(1)}, symbol(3));
  EXPECT_EQ(family.find({type(1), type(2)}), symbol(1));
  EXPECT_EQ(family.find({type(2), type(1)}), symbol(2));
  EXPECT_EQ(family.find({type(1), type(1)}), symbol(3));
  EXPECT_EQ(family.find({type(2), type(2)}), nullptr);
  EXPECT_EQ(family.pairs().count, 3U);
  EXPECT_TRUE(family.is_consistent());
}

TEST_F(ArraySymbolsTest, AnErasedTypeTakesItsPairsAlong) {
  for (size_t i = 0; i < 5; ++i) {
    for (size_t e = 0; e < 5; ++e) family.insert({type(i), type(e)}, symbol(5 * i + e));
  }
  family.erase_type(type(3));
  EXPECT_TRUE(family.is_consistent());
  for (size_t i = 0; i < 5; ++i) {
    for (size_t e = 0; e < 5; ++e) {
      const Symbol* left = i == 3 || e == 3 ? nullptr : symbol(5 * i + e);
      EXPECT_EQ(family.find({type(i), type(e)}), left);
    }
  }
  family.erase_type(type(3));
  family.erase_type(type(9));
  EXPECT_EQ(family.pairs().count, 16U);
  family.insert({type(3), type(4)}, symbol(99));
  EXPECT_EQ(family.find({type(3), type(4)}), symbol(99));
  EXPECT_TRUE(family.is_consistent());
}

TEST_F(ArraySymbolsTest, SymbolsThatAreNotKeptAreTakenOut) {
  family.insert({type(1), type(2)}, symbol(1));
  family.insert({type(1), type(1)}, symbol(2));
  family.insert({type(3), type(1)}, symbol(3));
  hsh::HashSet<const Symbol*> kept;
  kept.insert(symbol(3));
  family.sweep(kept);
  EXPECT_EQ(family.find({type(1), type(2)}), nullptr);
  EXPECT_EQ(family.find({type(1), type(1)}), nullptr);
  EXPECT_EQ(family.find({type(3), type(1)}), symbol(3));
  EXPECT_TRUE(family.is_consistent());
}

// Both maps grow at the same entry in one round, and one of them in others.
TEST_F(ArraySymbolsTest, InsertionIsAllOrNothing) {
  for (size_t i = 0; i < 100; ++i) symbol(i), type(i);
  for (const size_t pairs : std::vector<size_t>{0, 11, 12, 22, 23}) {
    for (const bool same : {true, false}) {
      ArraySymbols own;
      for (size_t i = 0; i < pairs; ++i) own.insert({type(i), type(i + 1)}, symbol(i));
      const ArraySymbols::Types added{type(98), same ? type(98) : type(99)};
      const Symbol* s = symbol(98);
      bool finished = false;
      for (size_t k = 0; !finished; ++k) {
        ASSERT_LT(k, 10);
        try {
          const testing::FailingMemory after(k);
          own.insert(added, s);
          finished = true;
        } catch (const std::bad_alloc&) {
        }
        ASSERT_TRUE(own.is_consistent());
        ASSERT_EQ(own.find(added), finished ? s : nullptr);
      }
      EXPECT_EQ(own.pairs().count, pairs + 1);
    }
  }
}

}  // namespace
}  // namespace quill
