#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"

namespace quill {
namespace {

class ClassificationTest : public ::testing::Test {
 protected:
  const Symbol* standard(const char* name) { return m.get_signature()->get_symbol(name); }

  TermManager m;
  const DataType* int_type = m.get_int_type();
  const DataType* unary = m.get_function_type({int_type}, int_type);
};

TEST(SymbolTag, HasItsFixedValues) {
  const std::vector<std::pair<SymbolTag::tag, int>> expected = {
      {SymbolTag::NONE, 0},
      {SymbolTag::TRUE, 1},
      {SymbolTag::FALSE, 2},
      {SymbolTag::AND, 3},
      {SymbolTag::OR, 4},
      {SymbolTag::NOT, 5},
      {SymbolTag::IFF, 6},
      {SymbolTag::PLUS, 7},
      {SymbolTag::TIMES, 8},
      {SymbolTag::FLOOR, 9},
      {SymbolTag::LEQ, 10},
      {SymbolTag::EQUAL, 11},
      {SymbolTag::TERM_ITE, 12},
      {SymbolTag::INT_MODULAR_CONGRUENCE, 13},
      {SymbolTag::BV_CONCAT, 14},
      {SymbolTag::BV_EXTRACT, 15},
      {SymbolTag::BV_NOT, 16},
      {SymbolTag::BV_AND, 17},
      {SymbolTag::BV_OR, 18},
      {SymbolTag::BV_XOR, 19},
      {SymbolTag::BV_ULT, 20},
      {SymbolTag::BV_SLT, 21},
      {SymbolTag::BV_ULE, 22},
      {SymbolTag::BV_SLE, 23},
      {SymbolTag::BV_COMP, 24},
      {SymbolTag::BV_NEG, 25},
      {SymbolTag::BV_ADD, 26},
      {SymbolTag::BV_SUB, 27},
      {SymbolTag::BV_MUL, 28},
      {SymbolTag::BV_UDIV, 29},
      {SymbolTag::BV_SDIV, 30},
      {SymbolTag::BV_UREM, 31},
      {SymbolTag::BV_SREM, 32},
      {SymbolTag::BV_LSHL, 33},
      {SymbolTag::BV_LSHR, 34},
      {SymbolTag::BV_ASHR, 35},
      {SymbolTag::BV_ROTATE_LEFT, 36},
      {SymbolTag::BV_ROTATE_RIGHT, 37},
      {SymbolTag::BV_ZERO_EXTEND, 38},
      {SymbolTag::BV_SIGN_EXTEND, 39},
      {SymbolTag::ARRAY_READ, 40},
      {SymbolTag::ARRAY_WRITE, 41},
      {SymbolTag::ARRAY_CONST, 42},
      {SymbolTag::FP_EQUAL, 43},
      {SymbolTag::FP_LT, 44},
      {SymbolTag::FP_LE, 45},
      {SymbolTag::FP_NEG, 46},
      {SymbolTag::FP_ADD, 47},
      {SymbolTag::FP_SUB, 48},
      {SymbolTag::FP_MUL, 49},
      {SymbolTag::FP_DIV, 50},
      {SymbolTag::FP_SQRT, 51},
      {SymbolTag::FP_ABS, 52},
      {SymbolTag::FP_MIN, 53},
      {SymbolTag::FP_MAX, 54},
      {SymbolTag::FP_CAST, 55},
      {SymbolTag::FP_ROUND_TO_INT, 56},
      {SymbolTag::FP_FROM_SBV, 57},
      {SymbolTag::FP_FROM_UBV, 58},
      {SymbolTag::FP_TO_BV, 59},
      {SymbolTag::FP_AS_IEEEBV, 60},
      {SymbolTag::FP_ISNAN, 61},
      {SymbolTag::FP_ISINF, 62},
      {SymbolTag::FP_ISZERO, 63},
      {SymbolTag::FP_ISSUBNORMAL, 64},
      {SymbolTag::FP_ISNORMAL, 65},
      {SymbolTag::FP_ISNEG, 66},
      {SymbolTag::FP_ISPOS, 67},
      {SymbolTag::FP_FROM_IEEEBV, 68},
      {SymbolTag::INT_FROM_UBV, 69},
      {SymbolTag::INT_FROM_SBV, 70},
      {SymbolTag::INT_TO_BV, 71},
  };
  ASSERT_EQ(expected.size(), 72U);
  for (const auto& [tag, value] : expected) EXPECT_EQ(static_cast<int>(tag), value);
}

// --- get_tag ---

TEST_F(ClassificationTest, SymbolsOverRealAndIntShareTheirTags) {
  EXPECT_EQ(m.get_tag(standard("`+_rat`")), 7);
  EXPECT_EQ(m.get_tag(standard("`+_int`")), 7);
  EXPECT_EQ(m.get_tag(standard("`*_rat`")), 8);
  EXPECT_EQ(m.get_tag(standard("`*_int`")), 8);
  EXPECT_EQ(m.get_tag(standard("`<=_rat`")), 10);
  EXPECT_EQ(m.get_tag(standard("`<=_int`")), 10);
}

TEST_F(ClassificationTest, UserSymbolsHaveNoTag) {
  EXPECT_EQ(m.get_tag(m.make_symbol("x", int_type)), SymbolTag::NONE);
  EXPECT_EQ(m.get_tag(m.make_symbol("f", unary)), SymbolTag::NONE);
  EXPECT_EQ(m.get_tag(m.make_symbol("and", int_type)), SymbolTag::NONE);
  EXPECT_EQ(m.get_tag(m.make_fresh_variable(int_type)->symbol), SymbolTag::NONE);
}

TEST_F(ClassificationTest, NumeralsHaveNoTag) {
  EXPECT_EQ(m.get_tag(m.make_number(3)->symbol), SymbolTag::NONE);
  EXPECT_EQ(m.get_tag(m.make_bv_number(3, 8)->symbol), SymbolTag::NONE);
}

TEST_F(ClassificationTest, EqualitiesAndIfThenElsesHaveTheTagOfTheirFamily) {
  EXPECT_EQ(m.get_tag(m.make_equality_symbol(m.get_bv_type(8))), 11);
  EXPECT_EQ(m.get_tag(m.make_term_ite_symbol(m.get_bv_type(8))), 12);
}

// --- The predicates ---

struct Kind {
  bool interpreted;
  bool function;
  bool variable;
  bool constant;
  bool operator==(const Kind&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Kind& k) {
  return out << k.interpreted << k.function << k.variable << k.constant;
}

Kind kind_of(const TermManager& m, const Symbol* s) {
  return {m.is_interpreted(s), m.is_uninterpreted_function(s), m.is_variable(s), m.is_constant(s)};
}

constexpr Kind interpreted = {true, false, false, false};
constexpr Kind function = {false, true, false, false};
constexpr Kind variable = {false, false, true, false};
constexpr Kind constant = {false, false, false, true};

TEST_F(ClassificationTest, SymbolsOfTheTheoriesAreInterpretedWhateverTheirArity) {
  EXPECT_EQ(kind_of(m, standard("`true`")), interpreted);
  EXPECT_EQ(kind_of(m, standard("`fprounding_zero`")), interpreted);
  EXPECT_EQ(kind_of(m, standard("`and`")), interpreted);
  EXPECT_EQ(kind_of(m, standard("`=_int`")), interpreted);
  EXPECT_EQ(kind_of(m, m.make_term_ite_symbol(int_type)), interpreted);
}

TEST_F(ClassificationTest, ASymbolOfAPlainNameIsAConstantOrAFunction) {
  EXPECT_EQ(kind_of(m, m.make_symbol("x", int_type)), constant);
  EXPECT_EQ(kind_of(m, m.make_symbol("f", unary)), function);
  EXPECT_EQ(kind_of(m, m.make_symbol("x`", int_type)), constant);
  EXPECT_EQ(kind_of(m, m.make_symbol("x'", int_type)), constant);
}

TEST_F(ClassificationTest, AConstantWhoseNameBeginsWithAnApostropheIsAVariable) {
  EXPECT_EQ(kind_of(m, m.make_symbol("'v", int_type)), variable);
  EXPECT_EQ(kind_of(m, m.make_fresh_variable(int_type)->symbol), variable);
}

TEST_F(ClassificationTest, AFunctionWhoseNameBeginsWithAnApostropheIsNoVariable) {
  EXPECT_EQ(kind_of(m, m.make_symbol("'f", unary)), function);
}

TEST_F(ClassificationTest, ASymbolOfAFunctionTypeWithoutArgumentsIsAConstant) {
  EXPECT_EQ(kind_of(m, m.make_symbol("c", m.get_function_type({}, int_type))), constant);
  EXPECT_EQ(kind_of(m, m.make_symbol("'c", m.get_function_type({}, int_type))), variable);
}

TEST_F(ClassificationTest, NumeralsAreInterpretedAlthoughTheirNamesArePlain) {
  EXPECT_EQ(kind_of(m, m.make_number(3)->symbol), interpreted);
  EXPECT_EQ(kind_of(m, m.make_number(QNumber(1, 3))->symbol), interpreted);
  EXPECT_EQ(kind_of(m, m.make_bv_number(3, 8)->symbol), interpreted);
}

TEST_F(ClassificationTest, AUsersConstantBecomesInterpretedWhenItIsTakenForANumeral) {
  const Symbol* three = m.make_symbol("3", int_type);
  EXPECT_EQ(kind_of(m, three), constant);
  EXPECT_EQ(m.make_number(3)->symbol, three);
  EXPECT_EQ(kind_of(m, three), interpreted);
}

TEST_F(ClassificationTest, AskingDoesNotMakeASymbolANumeral) {
  const Symbol* x = m.make_symbol("x", int_type);
  m.make_number(3);
  EXPECT_FALSE(m.is_interpreted(x));
  EXPECT_FALSE(m.is_number(x, nullptr));
  EXPECT_FALSE(m.is_interpreted(x));
}

// Neither interpretation nor what became of the name is asked for.
TEST_F(ClassificationTest, TheFirstCharacterAloneMakesAVariable) {
  for (const char* name : {"'", "''", "'1", "'`and`", "'3", "' x"}) {
    EXPECT_EQ(kind_of(m, m.make_symbol(name, int_type)), variable) << name;
  }
  const Symbol* v = m.make_symbol("'freed", m.get_bool_type());
  m.free_symbol(v);
  EXPECT_EQ(kind_of(m, v), variable);
  EXPECT_FALSE(m.is_variable(standard("`true`")));
  EXPECT_FALSE(m.is_variable(m.make_number(3)->symbol));
}

}  // namespace
}  // namespace quill
