#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "quill/printers/bit_definitions.h"

namespace quill {
namespace {

class BitDefinitionsTest : public ::testing::Test {
 protected:
  const Term_* constant(const char* name, size_t e, size_t m) {
    return manager.make_constant(manager.make_symbol(name, manager.get_fp_type(e, m)));
  }
  std::vector<std::string> names() const {
    std::vector<std::string> result;
    for (const BitDefinitions::Definition& made : definitions.all()) result.push_back(made.name);
    return result;
  }
  using Names = std::vector<std::string>;

  TermManager manager;
  BitDefinitions definitions{manager};
  const Term_* const f = constant("f", 8, 23);
  const Term_* const g = constant("g", 8, 23);
  const Term_* const d = constant("d", 11, 52);
};

TEST_F(BitDefinitionsTest, EveryValueHasAConstantAndEveryFormatOneForNan) {
  EXPECT_EQ(definitions.define(f), 0U);
  EXPECT_EQ(definitions.define(g), 2U);
  EXPECT_EQ(definitions.define(d), 3U);
  EXPECT_EQ(names(), (Names{"quill!ieee_nan_1", "quill!ieee_bits_1", "quill!ieee_bits_2",
                            "quill!ieee_nan_2", "quill!ieee_bits_3"}));
  EXPECT_EQ(definitions.find(f)->name, "quill!ieee_bits_1");
  EXPECT_EQ(definitions.find(f)->value, f);
  EXPECT_EQ(definitions.find(d)->format, (IEEEFloat::format{11, 52}));
  EXPECT_EQ(definitions.find_nan({8, 23})->name, "quill!ieee_nan_1");
  EXPECT_EQ(definitions.find_nan({8, 23})->value, nullptr);
}

TEST_F(BitDefinitionsTest, AValueIsDefinedOnce) {
  definitions.define(f);
  EXPECT_EQ(definitions.define(f), 2U);
  EXPECT_EQ(definitions.all().size(), 2U);
}

TEST_F(BitDefinitionsTest, WhatIsNotDefinedIsNotFound) {
  definitions.define(f);
  EXPECT_EQ(definitions.find(g), nullptr);
  EXPECT_EQ(definitions.find_nan({11, 52}), nullptr);
}

TEST_F(BitDefinitionsTest, NamesThatAreTakenAreNotGiven) {
  manager.make_symbol("quill!ieee_bits_1", manager.get_int_type());
  definitions.reserve("quill!ieee_bits_2");
  definitions.reserve("quill!ieee_nan_1");
  definitions.define(f);
  EXPECT_EQ(names(), (Names{"quill!ieee_nan_2", "quill!ieee_bits_3"}));
}

TEST_F(BitDefinitionsTest, ScopesForgetTheirDefinitions) {
  definitions.define(f);
  definitions.push(2);
  definitions.define(g);
  definitions.define(d);
  definitions.pop(1);
  EXPECT_EQ(definitions.find(g), nullptr);
  EXPECT_EQ(definitions.find(d), nullptr);
  EXPECT_EQ(definitions.find_nan({11, 52}), nullptr);
  EXPECT_NE(definitions.find(f), nullptr);
  definitions.pop(1);
  EXPECT_NE(definitions.find(f), nullptr);
}

TEST_F(BitDefinitionsTest, NamesAreNotGivenAgain) {
  definitions.push(1);
  definitions.define(f);
  definitions.pop(1);
  definitions.define(f);
  EXPECT_EQ(names(), (Names{"quill!ieee_nan_2", "quill!ieee_bits_2"}));
}

TEST_F(BitDefinitionsTest, ClearingLeavesAllScopes) {
  definitions.push(1);
  definitions.define(f);
  definitions.clear();
  EXPECT_TRUE(definitions.all().empty());
  EXPECT_EQ(definitions.find(f), nullptr);
  definitions.define(f);
  definitions.pop(1);
  EXPECT_NE(definitions.find(f), nullptr);
}

}  // namespace
}  // namespace quill
