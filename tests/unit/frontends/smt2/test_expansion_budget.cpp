// Scripts that would become much larger than their text.

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "tests/unit/frontends/smt2/read_and_print.h"

namespace quill::smt2 {
namespace {

std::string error_within(const std::string& text, const ReadOptions& options) {
  std::istringstream input(text);
  TermManager manager;
  try {
    read(input, manager, options);
  } catch (const ParseError& error) {
    return error.what();
  }
  return "";
}

std::string error_with_pairs(const std::string& text, uint64_t max_pairs) {
  ReadOptions options;
  options.max_pairs = max_pairs;
  return error_within(text, options);
}

std::string error_with_bits(const std::string& text, uint64_t max_bits, bool expands = true) {
  ReadOptions options;
  options.max_bits = max_bits;
  options.expands_conversions = expands;
  return error_within(text, options);
}

std::string pairs(uint64_t number, uint64_t limit) {
  return "the pairs of all 'distinct' in the script are " + std::to_string(number) +
         " by now, but at most " + std::to_string(limit) + " are allowed";
}

std::string bits(uint64_t number, uint64_t limit) {
  return "the bits of conversions and wide constants in the script are " + std::to_string(number) +
         " by now, but at most " + std::to_string(limit) + " are allowed";
}

// The constants c0, c1 and so on, and an assertion that they are distinct.
std::string distinct_constants(size_t count) {
  std::string declarations;
  std::string names;
  for (size_t i = 0; i < count; ++i) {
    declarations += "(declare-const c" + std::to_string(i) + " Int)\n";
    names += " c" + std::to_string(i);
  }
  return declarations + "(assert (distinct" + names + "))";
}

TEST(ExpansionBudget, AllowsTwoMillionPairsUnlessAskedForMore) {
  EXPECT_EQ(error_of(distinct_constants(2001)), "2002:9: " + pairs(2001000, 2000000));
  EXPECT_EQ(error_of(distinct_constants(3000)), "3001:9: " + pairs(4498500, 2000000));
}

TEST(ExpansionBudget, CountsPairsOverTheWholeScript) {
  const std::string text = "(assert (distinct 1 2 3))\n(assert (and (distinct 1 2 3 4) true))\n";
  EXPECT_EQ(error_with_pairs(text, 9), "");
  EXPECT_EQ(error_with_pairs(text, 8), "2:14: " + pairs(9, 8));
  EXPECT_EQ(error_with_pairs(text, 2), "1:9: " + pairs(3, 2));
  EXPECT_EQ(error_with_pairs("(assert (distinct 1 2 3))(reset)(assert (distinct 1 2 3))", 5),
            "1:41: " + pairs(6, 5));
}

TEST(ExpansionBudget, CountsNoPairThatIsWrittenAsSuch) {
  EXPECT_EQ(error_with_pairs("(assert (distinct 1 2))(assert (distinct 2 3))", 0), "");
}

TEST(ExpansionBudget, CountsTheBodiesOfFunctionsWithEachUse) {
  const std::string text =
      "(define-fun f ((a Int)) Bool (distinct a 2 3 4))\n"
      "(assert (f 1))\n(assert (f 5))\n";
  EXPECT_EQ(error_with_pairs(text, 18), "");
  EXPECT_EQ(error_with_pairs(text, 17), "3:9: " + pairs(18, 17));
  const std::string nested =
      "(define-fun f ((a Int)) Bool (distinct a 2 3))\n"
      "(define-fun g ((a Int)) Bool (and (f a) (f 7)))\n(assert (g 1))\n";
  EXPECT_EQ(error_with_pairs(nested, 15), "");
  EXPECT_EQ(error_with_pairs(nested, 14), "3:9: " + pairs(15, 14));
}

TEST(ExpansionBudget, CountsTheBitsOfConversions) {
  const std::string i = "(declare-const i Int)\n";
  for (const std::string name : {"int2bv", "nat2bv", "int_to_bv"}) {
    const std::string text = i + "(assert (= ((_ " + name + " 70) i) ((_ " + name + " 70) i)))";
    EXPECT_EQ(error_with_bits(text, 140), "");
    EXPECT_EQ(error_with_bits(text, 139).substr(0, 4), "2:" + std::to_string(24 + name.size()));
    EXPECT_EQ(error_with_bits(text, 0, /*expands=*/false), "");
  }
  EXPECT_EQ(error_of(i + "(assert (= ((_ int2bv 100000000) i) (_ bv0 100000000)))"),
            "2:12: " + bits(100000000, 2000000));
  EXPECT_EQ(error_of("(declare-const b (_ BitVec 100000000))\n(assert (= 1 (sbv_to_int b)))"),
            "2:14: " + bits(100000000, 2000000));
  EXPECT_EQ(error_of(i + "(assert (= ((_ int2bv 18446744073709551615) i) "
                         "((_ int2bv 18446744073709551615) i)))"),
            "2:12: " + bits(18446744073709551615u, 2000000));
  // Terms no larger than their text: signed values of a word, and other widths of a bit-vector.
  EXPECT_EQ(error_with_bits("(declare-const b (_ BitVec 64))(assert (= 1 (sbv_to_int b)))", 0), "");
  EXPECT_EQ(error_with_bits("(declare-const b (_ BitVec 8))"
                            "(assert (= ((_ int2bv 100) (bv2nat b)) ((_ int2bv 100) "
                            "(sbv_to_int b))))",
                            0),
            "");
}

TEST(ExpansionBudget, CountsTheBitsOfWideConstants) {
  const std::string f = "(declare-const f (_ FloatingPoint 5 196))\n";
  for (const std::string constant :
       {"(_ +oo 5 196)", "(_ -oo 5 196)", "(_ +zero 5 196)", "(_ -zero 5 196)", "(_ NaN 5 196)",
        "((_ to_fp 5 196) RNE 0.1)", "(fp #b0 (_ bv3 5) (_ bv7 195))"}) {
    const std::string text = f + "(assert (= f " + constant + "))";
    EXPECT_EQ(error_with_bits(text, 201), "") << constant;
    EXPECT_EQ(error_with_bits(text, 200), "2:14: " + bits(201, 200));
    EXPECT_EQ(error_with_bits(text, 200, /*expands=*/false), "2:14: " + bits(201, 200));
  }
  EXPECT_EQ(error_with_bits(f + "(assert (= #x1 ((_ fp.to_ubv 4) RNE f)))", 401),
            "2:16: " + bits(402, 401));
  // All formats of the standard are free.
  EXPECT_EQ(error_with_bits("(declare-const f Float128)(assert (= f (_ +oo 15 113)))", 0), "");
}

TEST(ExpansionBudget, HoldsForSingleTermsAsWell) {
  TermManager manager;
  std::string names;
  for (size_t i = 0; i < 2001; ++i) names += " " + std::to_string(i);
  try {
    read_term("(distinct" + names + ")", manager);
    FAIL();
  } catch (const ParseError& error) {
    EXPECT_EQ(error.text(), pairs(2001000, 2000000));
  }
}

}  // namespace
}  // namespace quill::smt2
