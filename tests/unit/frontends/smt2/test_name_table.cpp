#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "quill/frontends/smt2/name_table.h"
#include "quill/utils/entry_count.h"
#include "tests/support/colliding_names.h"

namespace quill::smt2 {
namespace {

TEST(NameTable, MakesAnEntryOnTheFirstRequest) {
  NameTable<int> table;
  EXPECT_EQ(table["a"], 0);
}

TEST(NameTable, LeadsFromEqualNamesToOneEntry) {
  NameTable<int> table;
  table["ab"] = 7;
  const std::string longer = "cabd";
  EXPECT_EQ(table[std::string_view(longer).substr(1, 2)], 7);
}

TEST(NameTable, KeepsItsOwnCopyOfANewName) {
  NameTable<int> table;
  std::string name = "first";
  table[name] = 1;
  name = "other";
  EXPECT_EQ(table["first"], 1);
  EXPECT_EQ(table["other"], 0);
}

TEST(NameTable, TellsNamesApart) {
  NameTable<int> table;
  table[""] = 1;
  table["a"] = 2;
  table[std::string_view("a\0", 2)] = 3;
  EXPECT_EQ(table[""], 1);
  EXPECT_EQ(table["a"], 2);
  EXPECT_EQ(table[std::string_view("a\0", 2)], 3);
}

TEST(NameTable, NeverMovesEntries) {
  NameTable<size_t> table;
  std::vector<size_t*> entries;
  for (size_t i = 0; i < 10000; ++i) {
    entries.push_back(&table["x" + std::to_string(i)]);
    *entries.back() = i;
  }
  for (size_t i = 0; i < 10000; ++i) {
    EXPECT_EQ(&table["x" + std::to_string(i)], entries[i]);
    EXPECT_EQ(*entries[i], i);
  }
}

TEST(NameTable, NamesThatCollideCostLittleMoreThanOthers) {
  const auto entries = [](const std::vector<std::string>& names) {
    NameTable<size_t> table;
    const uint64_t before = entries_looked_at();
    for (size_t i = 0; i < names.size(); ++i) table[names[i]] = i;
    for (size_t i = 0; i < names.size(); ++i) EXPECT_EQ(table[names[i]], i);
    return entries_looked_at() - before;
  };
  EXPECT_LE(entries(quill::testing::colliding_names(20000)),
            5 * entries(quill::testing::ordinary_names(20000)));
}

}  // namespace
}  // namespace quill::smt2
