#include <gmp.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>

#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/gmp_integer.h"
#include "quill/utils/qnumber.h"
#include "tests/support/manager_test.h"

namespace quill {
namespace {

constexpr int64_t max_int64 = std::numeric_limits<int64_t>::max();

// An unnormalised number in the big form.
QNumber big_pair(const char* n, const char* d) {
  GmpInteger numerator;
  GmpInteger denominator;
  mpz_set_str(numerator, n, 10);
  mpz_set_str(denominator, d, 10);
  return QNumber(numerator, denominator);
}

// A number in the big form whatever its value: a big target stays big.
QNumber big_form(const QNumber& value) {
  QNumber number = big_pair("1000000000000000000000000000000", "1");
  number = value;
  return number;
}

class Numbers : public testing::ManagerTest {
 protected:
};

// --- Arithmetic numerals ---

TEST_F(Numbers, IntegersAreOfTypeInt) {
  const Term_* three = m.make_number(3);
  EXPECT_STREQ(three->symbol->name, "3");
  EXPECT_EQ(three->symbol->type, m.get_int_type());
  EXPECT_EQ(three->symbol->arity, 0U);
  EXPECT_EQ(value_of(three), "3");
}

TEST_F(Numbers, FractionsAreOfTypeReal) {
  const Term_* half = m.make_number(QNumber(1, 2));
  EXPECT_STREQ(half->symbol->name, "1/2");
  EXPECT_EQ(half->symbol->type, m.get_rat_type());
  EXPECT_EQ(value_of(half), "1/2");
}

TEST_F(Numbers, NegativeNumbersAreNamedWithAMinus) {
  EXPECT_STREQ(m.make_number(-3)->symbol->name, "-3");
  EXPECT_STREQ(m.make_number(QNumber(-22, 7))->symbol->name, "-22/7");
}

TEST_F(Numbers, ANumberHasOneTerm) {
  const Term_* three = m.make_number(3);
  const auto before = sizes();
  EXPECT_EQ(m.make_number(3), three);
  EXPECT_EQ(sizes(), before);
}

TEST_F(Numbers, ArithmeticNumeralsAreFoundByValueWithoutTheSignature) {
  const Term_* three = m.make_number(3);
  m.free_symbol(three->symbol);
  const auto before = sizes();
  EXPECT_EQ(m.make_number(3), three);
  EXPECT_EQ(sizes(), before);
  EXPECT_EQ(m.get_signature()->get_symbol("3"), nullptr);
}

TEST_F(Numbers, BigNumbers) {
  const Term_* big = m.make_number(QNumber::from_string("123456789012345678901234567890"));
  EXPECT_STREQ(big->symbol->name, "123456789012345678901234567890");
  EXPECT_EQ(big->symbol->type, m.get_int_type());
  EXPECT_EQ(m.make_number(QNumber::from_string("123456789012345678901234567890")), big);
  const Term_* third = m.make_number(QNumber::from_string("-100000000000000000000/3"));
  EXPECT_STREQ(third->symbol->name, "-100000000000000000000/3");
  EXPECT_EQ(third->symbol->type, m.get_rat_type());
}

TEST_F(Numbers, BothFormsOfANumberHaveTheSameTerm) {
  const Term_* three = m.make_number(3);
  EXPECT_EQ(m.make_number(big_form(3)), three);
  EXPECT_EQ(m.make_number(big_form(3)), three);
  const Term_* four = m.make_number(big_form(4));
  EXPECT_STREQ(four->symbol->name, "4");
  EXPECT_EQ(m.make_number(4), four);
  EXPECT_EQ(m.make_number(4), four);
}

TEST_F(Numbers, UnnormalisedNumbersAreNormalised) {
  EXPECT_EQ(m.make_number(QNumber(4, 2)), m.make_number(2));
  EXPECT_EQ(m.make_number(QNumber(2, 4)), m.make_number(QNumber(1, 2)));
  EXPECT_EQ(m.make_number(QNumber(1, -2)), m.make_number(QNumber(-1, 2)));
  EXPECT_EQ(m.make_number(QNumber(-3, -1)), m.make_number(3));
  EXPECT_EQ(m.make_number(QNumber(0, -5)), m.make_number(0));
}

TEST_F(Numbers, ValueOfAnUnnormalisedNumberIsRecordedNormalised) {
  const Term_* t = m.make_number(QNumber(6, -4));
  EXPECT_STREQ(t->symbol->name, "-3/2");
  EXPECT_EQ(t->symbol->type, m.get_rat_type());
  EXPECT_EQ(value_of(t), "-3/2");
  const Term_* integer = m.make_number(QNumber(8, 4));
  EXPECT_STREQ(integer->symbol->name, "2");
  EXPECT_EQ(integer->symbol->type, m.get_int_type());
  EXPECT_EQ(value_of(integer), "2");
}

TEST_F(Numbers, UnnormalisedBigNumbersAreNormalised) {
  const Term_* t = m.make_number(big_pair("200000000000000000000", "-6"));
  EXPECT_STREQ(t->symbol->name, "-100000000000000000000/3");
  EXPECT_EQ(value_of(t), "-100000000000000000000/3");
  const Term_* integer = m.make_number(big_pair("200000000000000000000", "100000000000000000000"));
  EXPECT_STREQ(integer->symbol->name, "2");
  EXPECT_EQ(integer->symbol->type, m.get_int_type());
  EXPECT_EQ(integer, m.make_number(2));
  EXPECT_EQ(m.make_number(big_pair("0", "100000000000000000000")), m.make_number(0));
}

TEST_F(Numbers, NormalisingLeavesTheArgumentAsItWas) {
  const QNumber pair(6, -4);
  m.make_number(pair);
  EXPECT_EQ(pair.num, 6);
  EXPECT_EQ(pair.den, -4);
}

// --- Bit-vector numerals ---

TEST_F(Numbers, BitVectorNumeralsAreNamedByValueAndWidth) {
  const Term_* t = m.make_bv_number(5, 8);
  EXPECT_STREQ(t->symbol->name, "5_8");
  EXPECT_EQ(t->symbol->type, m.get_bv_type(8));
  EXPECT_EQ(value_of(t), "5");
}

TEST_F(Numbers, ABitVectorNumberHasOneTermForEachWidth) {
  const Term_* t = m.make_bv_number(5, 8);
  const auto before = sizes();
  EXPECT_EQ(m.make_bv_number(5, 8), t);
  EXPECT_EQ(m.make_bv_number(big_form(5), 8), t);
  EXPECT_EQ(sizes(), before);
  EXPECT_NE(m.make_bv_number(5, 9), t);
}

TEST_F(Numbers, BitVectorNumeralsAreFoundByNameAndNotByValue) {
  const Term_* arithmetic = m.make_number(5);
  EXPECT_NE(m.make_bv_number(5, 8), arithmetic);
  EXPECT_EQ(m.make_number(5), arithmetic);
}

TEST_F(Numbers, ZeroFitsEveryWidthInBothForms) {
  EXPECT_STREQ(m.make_bv_number(0, 0)->symbol->name, "0_0");
  EXPECT_STREQ(m.make_bv_number(big_form(0), 0)->symbol->name, "0_0");
  EXPECT_STREQ(m.make_bv_number(big_form(0), 1)->symbol->name, "0_1");
}

TEST_F(Numbers, LargestValueOfAWidthFitsAndTheNextDoesNot) {
  EXPECT_STREQ(m.make_bv_number(255, 8)->symbol->name, "255_8");
  EXPECT_EQ(base_exception_of([&] { m.make_bv_number(256, 8); }),
            "the number 256 doesn't fit in 8 bits");
  EXPECT_EQ(base_exception_of([&] { m.make_bv_number(1, 0); }),
            "the number 1 doesn't fit in 0 bits");
  // 63 bits are the widest for which the small form is looked at.
  EXPECT_STREQ(m.make_bv_number(max_int64, 63)->symbol->name, "9223372036854775807_63");
  EXPECT_EQ(base_exception_of([&] { m.make_bv_number(max_int64, 62); }),
            "the number 9223372036854775807 doesn't fit in 62 bits");
}

TEST_F(Numbers, SmallFormFitsEveryWidthFrom64) {
  EXPECT_STREQ(m.make_bv_number(max_int64, 64)->symbol->name, "9223372036854775807_64");
  EXPECT_STREQ(m.make_bv_number(max_int64, 1000)->symbol->name, "9223372036854775807_1000");
}

TEST_F(Numbers, BigFormFitsByItsLength) {
  const QNumber all_ones = QNumber::from_string("18446744073709551615");
  const QNumber one_more = QNumber::from_string("18446744073709551616");
  EXPECT_STREQ(m.make_bv_number(all_ones, 64)->symbol->name, "18446744073709551615_64");
  EXPECT_EQ(base_exception_of([&] { m.make_bv_number(one_more, 64); }),
            "the number 18446744073709551616 doesn't fit in 64 bits");
  EXPECT_STREQ(m.make_bv_number(one_more, 65)->symbol->name, "18446744073709551616_65");
  EXPECT_STREQ(m.make_bv_number(big_form(255), 8)->symbol->name, "255_8");
  EXPECT_EQ(base_exception_of([&] { m.make_bv_number(big_form(256), 8); }),
            "the number 256 doesn't fit in 8 bits");
}

TEST_F(Numbers, FractionalBitVectorIsRefused) {
  EXPECT_EQ(error_of([&] { m.make_bv_number(QNumber(1, 2), 8); }),
            "can't make a bv number from a fractional number: 1/2");
}

TEST_F(Numbers, NegativeBitVectorIsRefused) {
  EXPECT_EQ(error_of([&] { m.make_bv_number(-1, 8); }),
            "can't make a bv number from a negative number: -1");
  EXPECT_EQ(error_of([&] { m.make_bv_number(QNumber::from_string("-18446744073709551616"), 8); }),
            "can't make a bv number from a negative number: -18446744073709551616");
}

TEST_F(Numbers, FractionIsFoundBeforeSignAndSignBeforeSize) {
  EXPECT_EQ(error_of([&] { m.make_bv_number(QNumber(-1001, 2), 8); }),
            "can't make a bv number from a fractional number: -1001/2");
  EXPECT_EQ(error_of([&] { m.make_bv_number(-1000, 8); }),
            "can't make a bv number from a negative number: -1000");
}

TEST_F(Numbers, UnnormalisedBitVectorValuesAreNormalised) {
  EXPECT_STREQ(m.make_bv_number(QNumber(510, 2), 8)->symbol->name, "255_8");
  EXPECT_STREQ(m.make_bv_number(QNumber(-4, -2), 8)->symbol->name, "2_8");
  EXPECT_STREQ(
      m.make_bv_number(big_pair("400000000000000000000", "200000000000000000000"), 8)->symbol->name,
      "2_8");
  EXPECT_EQ(value_of(m.make_bv_number(QNumber(510, 2), 8)), "255");
  EXPECT_EQ(error_of([&] { m.make_bv_number(QNumber(2, -2), 8); }),
            "can't make a bv number from a negative number: -1");
}

TEST_F(Numbers, WithoutChecksBitVectorsMayBeOutOfRange) {
  m.set_typecheck_enabled(false);
  EXPECT_STREQ(m.make_bv_number(-1, 8)->symbol->name, "-1_8");
  EXPECT_STREQ(m.make_bv_number(256, 8)->symbol->name, "256_8");
  EXPECT_STREQ(m.make_bv_number(QNumber(1, 2), 8)->symbol->name, "1/2_8");
  EXPECT_EQ(value_of(m.make_bv_number(-1, 8)), "-1");
  EXPECT_EQ(m.make_bv_number(-1, 8)->symbol->type, m.get_bv_type(8));
}

TEST_F(Numbers, RefusedBitVectorsLeaveTheStoresAsTheyWere) {
  const auto before = sizes();
  EXPECT_THROW(m.make_bv_number(QNumber(1, 2), 8), TermManager::error);
  EXPECT_THROW(m.make_bv_number(-1, 8), TermManager::error);
  EXPECT_THROW(m.make_bv_number(256, 8), Exception);
  EXPECT_EQ(sizes(), before);
}

// --- User symbols that have the name of a numeral ---

TEST_F(Numbers, SymbolOfFittingTypeIsTakenForTheNumeral) {
  const Term_* seven = constant("7", m.get_int_type());
  EXPECT_EQ(m.make_number(7), seven);
  EXPECT_EQ(value_of(seven), "7");
  EXPECT_EQ(m.make_number(7), seven);
}

TEST_F(Numbers, SymbolOfTypeRealIsTakenForAnInteger) {
  const Term_* seven = constant("7", m.get_rat_type());
  EXPECT_EQ(m.make_number(7), seven);
  EXPECT_EQ(seven->symbol->type, m.get_rat_type());
  EXPECT_EQ(value_of(seven), "7");
}

TEST_F(Numbers, SymbolIsTakenForAFraction) {
  const Term_* half = constant("1/2", m.get_rat_type());
  EXPECT_EQ(m.make_number(QNumber(2, 4)), half);
  EXPECT_EQ(value_of(half), "1/2");
}

TEST_F(Numbers, SymbolIsTakenForABitVector) {
  const Term_* five = constant("5_8", m.get_bv_type(8));
  EXPECT_EQ(m.make_bv_number(5, 8), five);
  EXPECT_EQ(value_of(five), "5");
}

TEST_F(Numbers, SymbolOfABitVectorTypePutTogetherByHandIsTakenForABitVector) {
  const DataType* bv8 =
      m.get_compound_type({m.get_simple_type("BitVec", false), m.get_simple_type("8", false)});
  const Term_* five = constant("5_8", bv8);
  EXPECT_EQ(m.make_bv_number(5, 8), five);
  EXPECT_EQ(m.get_bv_type(8), bv8);
}

TEST_F(Numbers, SymbolTakenForANumeralIsNoConstantAnyMore) {
  const Symbol* seven = m.make_symbol("7", m.get_int_type());
  EXPECT_FALSE(m.is_interpreted(seven));
  m.make_number(7);
  EXPECT_TRUE(m.is_interpreted(seven));
  EXPECT_FALSE(m.is_constant(seven));
}

TEST_F(Numbers, SymbolOfAnotherTypeStandsInTheWayOfANumber) {
  m.make_symbol("7", m.get_bv_type(8));
  m.make_symbol("8", m.get_function_type({m.get_int_type()}, m.get_int_type()));
  m.make_symbol("1/2", m.get_bool_type());
  const auto before = sizes();
  EXPECT_EQ(error_of([&] { m.make_number(7); }),
            "a symbol for 7 already exists, but it has the wrong type: (BitVec 8)");
  EXPECT_EQ(error_of([&] { m.make_number(8); }),
            "a symbol for 8 already exists, but it has the wrong type: (-> Int Int)");
  EXPECT_EQ(error_of([&] { m.make_number(QNumber(1, 2)); }),
            "a symbol for 1/2 already exists, but it has the wrong type: Bool");
  EXPECT_EQ(sizes(), before);
}

TEST_F(Numbers, SymbolOfAnotherTypeStandsInTheWayOfABitVector) {
  m.make_symbol("5_8", m.get_int_type());
  m.make_symbol("6_8", m.get_bv_type(16));
  const auto before = sizes();
  EXPECT_EQ(error_of([&] { m.make_bv_number(5, 8); }),
            "a symbol for 5_8 already exists, but it has the wrong type: Int");
  EXPECT_EQ(error_of([&] { m.make_bv_number(6, 8); }),
            "a symbol for 6_8 already exists, but it has the wrong type: (BitVec 16)");
  EXPECT_EQ(sizes(), before);
}

TEST_F(Numbers, SymbolInTheWayDoesNotBecomeANumeral) {
  const Symbol* seven = m.make_symbol("7", m.get_bool_type());
  EXPECT_THROW(m.make_number(7), TermManager::error);
  EXPECT_FALSE(m.is_number(seven, nullptr));
  m.free_symbol(seven);
  EXPECT_STREQ(m.make_number(7)->symbol->name, "7");
}

TEST_F(Numbers, TypesAreComparedAlsoWithoutChecks) {
  m.set_typecheck_enabled(false);
  m.make_symbol("5_8", m.get_int_type());
  EXPECT_EQ(error_of([&] { m.make_bv_number(5, 8); }),
            "a symbol for 5_8 already exists, but it has the wrong type: Int");
}

// --- Recognising numerals ---

TEST_F(Numbers, OtherSymbolsAreNoNumerals) {
  const Symbol* seven = m.make_symbol("7", m.get_int_type());
  QNumber value(99);
  EXPECT_FALSE(m.is_number(seven, &value));
  EXPECT_FALSE(m.is_number(m.make_true()->symbol, &value));
  EXPECT_FALSE(m.is_number(m.get_signature()->get_symbol("`+_int`"), &value));
  EXPECT_EQ(value, QNumber(99));
}

TEST_F(Numbers, AskingMakesNoNumeral) {
  m.make_number(1);
  const Symbol* seven = m.make_symbol("7", m.get_int_type());
  EXPECT_FALSE(m.is_number(seven, nullptr));
  EXPECT_FALSE(m.is_number(seven, nullptr));
  EXPECT_FALSE(m.is_interpreted(seven));
}

TEST_F(Numbers, ValueMayBeLeftOut) {
  EXPECT_TRUE(m.is_number(m.make_number(3)->symbol, nullptr));
  EXPECT_TRUE(m.is_number(m.make_number(QNumber(1, 3))->symbol, nullptr));
  EXPECT_TRUE(m.is_number(m.make_bv_number(3, 4)->symbol, nullptr));
}

TEST_F(Numbers, ValuesStayWhenManyNumeralsFollow) {
  const Term_* first = m.make_number(QNumber(1, 3));
  for (int n = 0; n < 10000; ++n) m.make_number(n);
  EXPECT_EQ(value_of(first), "1/3");
  EXPECT_EQ(m.make_number(QNumber(1, 3)), first);
  EXPECT_EQ(value_of(m.make_number(1234)), "1234");
}

// The user has put the type of the constant together; the numeral makes its width known.
TEST_F(Numbers, AConstantOfAHandBuiltTypeBecomesANumeralOfItsWidth) {
  const DataType* head = m.get_bv_type(1)->get_component(0);
  const DataType* eight = m.get_simple_type("8", /*only_existing=*/false);
  const DataType* type = m.get_compound_type({head, eight});
  const Symbol* s = m.make_symbol("5_8", type);
  const Term_* t = m.make_bv_number(5, 8);
  EXPECT_EQ(t->symbol, s);
  size_t width = 0;
  EXPECT_TRUE(m.is_bv_type(type, &width));
  EXPECT_EQ(width, 8U);
  EXPECT_STREQ(m.make_bv_not(t)->symbol->name, "`bvnot_8`");
}

TEST_F(Numbers, ABitVectorOfTooManyBitsIsRefusedAlsoWhenItIsThere) {
  m.set_typecheck_enabled(false);
  const Term_* large = m.make_bv_number(256, 8);
  const Term_* negative = m.make_bv_number(-1, 8);
  for (int round = 0; round < 2; ++round) {
    m.set_typecheck_enabled(true);
    EXPECT_EQ(error_of([&] { m.make_bv_number(-1, 8); }),
              "can't make a bv number from a negative number: -1");
    EXPECT_THROW(m.make_bv_number(256, 8), Exception);
    m.set_typecheck_enabled(false);
    EXPECT_EQ(m.make_bv_number(256, 8), large);
    EXPECT_EQ(m.make_bv_number(-1, 8), negative);
  }
}

TEST_F(Numbers, ABitVectorThatLostItsNameIsMadeAnew) {
  const Term_* first = m.make_bv_number(5, 8);
  m.free_symbol(first->symbol);
  const Term_* second = m.make_bv_number(5, 8);
  EXPECT_NE(second, first);
  m.free_symbol(second->symbol);
  const Symbol* s = m.make_symbol("5_8", m.get_bv_type(8));
  EXPECT_EQ(m.make_bv_number(5, 8)->symbol, s);
  m.free_symbol(s);
  m.make_symbol("5_8", m.get_int_type());
  EXPECT_EQ(error_of([&] { m.make_bv_number(5, 8); }),
            "a symbol for 5_8 already exists, but it has the wrong type: Int");
}

}  // namespace
}  // namespace quill
