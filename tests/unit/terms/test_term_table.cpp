#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <new>
#include <random>
#include <string>
#include <vector>

#include "quill/terms/signature.h"
#include "quill/terms/term_bank.h"
#include "quill/terms/term_table.h"
#include "quill/terms/type_universe.h"
#include "tests/support/failing_memory.h"

namespace quill {
namespace {

class TermTableTest : public ::testing::Test {
 protected:
  // Terms with the ids from 0 on.
  void make_terms(size_t count) {
    const DataType* type = universe.make_type("S");
    while (terms.size() < count) {
      const std::string name = "c" + std::to_string(terms.size());
      terms.push_back(bank.make_term(signature.add_symbol(name.c_str(), type), nullptr));
    }
  }

  TypeUniverse universe;
  Signature signature{&universe};
  TermBank bank;
  std::vector<const Term_*> terms;
};

TEST_F(TermTableTest, IsEmptyAtFirst) {
  make_terms(1);
  const TermTable<int> table(1);
  EXPECT_EQ(table.find(terms[0]), nullptr);
  EXPECT_EQ(table.size(), 0U);
  EXPECT_EQ(table.num_bytes(), 0U);
}

TEST_F(TermTableTest, KeepsTheFirstValueOfATerm) {
  make_terms(3);
  TermTable<int> table(3);
  EXPECT_EQ(table.insert(terms[1], 7), 7);
  EXPECT_EQ(table.insert(terms[1], 8), 7);
  table.insert(terms[1], 9) = 10;
  EXPECT_EQ(*table.find(terms[1]), 10);
  EXPECT_EQ(table.find(terms[0]), nullptr);
  EXPECT_EQ(table.find(terms[2]), nullptr);
  EXPECT_EQ(table.size(), 1U);
}

// However many terms there are.
TEST_F(TermTableTest, AFewTermsTakeLittleRoom) {
  make_terms(4);
  TermTable<uint64_t> table(uint64_t{1} << 31);
  for (const Term_* t : terms) table.insert(t, 5);
  EXPECT_LE(table.num_bytes(), 256U);
  EXPECT_EQ(*table.find(terms[3]), 5U);
}

// 1000 values of 8 bytes take no more than 512 slots of 16.
TEST_F(TermTableTest, ManyTermsTakeThePlaceOfTheirIds) {
  make_terms(1000);
  TermTable<uint64_t> table(1000);
  for (size_t i = 0; i < 128; ++i) table.insert(terms[i * 6], i + 1);
  EXPECT_EQ(table.num_bytes(), 256 * 16U);
  table.insert(terms[999], 129);
  EXPECT_EQ(table.num_bytes(), 1000 * 8U);
  for (size_t i = 0; i < 128; ++i) EXPECT_EQ(*table.find(terms[i * 6]), i + 1);
  EXPECT_EQ(*table.find(terms[999]), 129U);
  EXPECT_EQ(table.find(terms[1]), nullptr);
  for (const Term_* t : terms) table.insert(t, 99);
  EXPECT_EQ(table.size(), 1000U);
  EXPECT_EQ(table.num_bytes(), 1000 * 8U);
  EXPECT_EQ(*table.find(terms[6]), 2U);
  EXPECT_EQ(*table.find(terms[31]), 99U);
}

TEST_F(TermTableTest, FailedGrowthChangesNothing) {
  make_terms(1000);
  for (const size_t filled : {0u, 8u, 16u, 32u, 64u, 128u}) {  // just before the table grows
    TermTable<uint64_t> table(1000);
    for (size_t i = 0; i < filled; ++i) table.insert(terms[i * 7], i + 1);
    bool failed = false;
    {
      const testing::FailingMemory none(0);
      try {
        table.insert(terms[999], 5);
      } catch (const std::bad_alloc&) {
        failed = true;
      }
    }
    EXPECT_TRUE(failed) << filled;
    EXPECT_EQ(table.size(), filled);
    EXPECT_EQ(table.find(terms[999]), nullptr);
    for (size_t i = 0; i < filled; ++i) EXPECT_EQ(*table.find(terms[i * 7]), i + 1);
    EXPECT_EQ(table.insert(terms[999], 5), 5U);
  }
}

// With bounds for which the array comes early, late, and never.
TEST_F(TermTableTest, DoesWhatAMapDoes) {
  make_terms(2000);
  std::mt19937 random(1);
  for (const uint64_t bound : {2000u, 6000u, 1000000000u}) {
    TermTable<uint32_t> table(bound);
    std::map<const Term_*, uint32_t> model;
    for (int i = 0; i < 20000; ++i) {
      const Term_* t = terms[random() % terms.size()];
      const auto value = static_cast<uint32_t>(1 + random() % 1000);
      if (random() % 2 == 0) {
        EXPECT_EQ(table.insert(t, value), model.insert({t, value}).first->second);
      } else {
        const uint32_t* found = table.find(t);
        const auto expected = model.find(t);
        ASSERT_EQ(found != nullptr, expected != model.end());
        if (found != nullptr) {
          EXPECT_EQ(*found, expected->second);
        }
      }
    }
    EXPECT_EQ(table.size(), model.size());
  }
}

}  // namespace
}  // namespace quill
