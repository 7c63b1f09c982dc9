#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "quill/terms/signature.h"
#include "quill/terms/termmanager/type_keyed_symbols.h"
#include "quill/terms/type_universe.h"

namespace quill {
namespace {

class TypeKeyedSymbolsTest : public ::testing::Test {
 protected:
  const DataType* type(size_t i) { return universe.make_type("t" + std::to_string(i)); }
  const Symbol* symbol(size_t i) {
    return signature.add_symbol(("s" + std::to_string(i)).c_str(), type(i));
  }

  TypeUniverse universe;
  Signature signature{&universe};
  TypeKeyedSymbols table;
};

TEST_F(TypeKeyedSymbolsTest, AnErasedTypeIsForgottenOnBothSides) {
  for (size_t i = 0; i < 30; ++i) table.insert(type(i), symbol(i));
  table.erase(type(7));
  table.erase(type(99));
  EXPECT_EQ(table.pairs().by_object.count, 29U);
  for (size_t i = 0; i < 30; ++i) {
    EXPECT_EQ(table.find(type(i)), i == 7 ? nullptr : symbol(i));
    EXPECT_EQ(table.contains(symbol(i)), i != 7);
  }
}

TEST_F(TypeKeyedSymbolsTest, TheLatestAnswerIsForgottenToo) {
  table.insert(type(1), symbol(1));
  EXPECT_EQ(table.find(type(1)), symbol(1));
  table.erase(type(1));
  EXPECT_EQ(table.find(type(1)), nullptr);
  table.insert(type(1), symbol(2));
  EXPECT_EQ(table.find(type(1)), symbol(2));
}

}  // namespace
}  // namespace quill
