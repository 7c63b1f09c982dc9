#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/manager_test.h"

namespace quill {
namespace {

class Inspection : public testing::ManagerTest {
 protected:
  const DataType* integer = m.get_int_type();
  const DataType* real = m.get_rat_type();
  const DataType* word = m.get_bv_type(8);
  const DataType* single = m.get_fp_type(8, 23);
  const DataType* array = m.get_array_type(integer, real);
  const Term_* x = constant("x", word);
};

TEST_F(Inspection, NumeralsSayTheirValue) {
  EXPECT_EQ(m.bv_value(m.make_bv_number(QNumber(255), 8)).to_str(), "255");
  EXPECT_EQ(m.int_value(m.make_number(QNumber(-3))).to_str(), "-3");
  EXPECT_EQ(m.real_value(m.make_number(QNumber(-3))).to_str(), "-3");
  EXPECT_EQ(m.real_value(m.make_number(QNumber(1, 3))).to_str(), "1/3");
  const IEEEFloat one = m.fp_value(m.make_fp_bits_number(QNumber(0x3f800000), 8, 23));
  EXPECT_EQ(one.get_bits().to_str(), "1065353216");
  EXPECT_EQ(one.to_double(), 1.0);
}

TEST_F(Inspection, OtherTermsAreRefused) {
  const auto before = m.describe_state();
  const Term_* n = m.make_number(QNumber(7));
  const Term_* third = m.make_number(QNumber(1, 3));
  const Term_* bits = m.make_bv_number(QNumber(7), 8);
  EXPECT_EQ(error_of([&] { m.bv_value(x); }), "term x is not a bit-vector numeral");
  EXPECT_EQ(error_of([&] { m.bv_value(n); }), "term 7 is not a bit-vector numeral");
  EXPECT_EQ(error_of([&] { m.int_value(third); }), "term 1/3 is not an integer numeral");
  EXPECT_EQ(error_of([&] { m.int_value(bits); }), "term 7_8 is not an integer numeral");
  EXPECT_EQ(error_of([&] { m.real_value(bits); }), "term 7_8 is not an arithmetic numeral");
  EXPECT_EQ(error_of([&] { m.real_value(constant("r", real)); }),
            "term r is not an arithmetic numeral");
  EXPECT_EQ(error_of([&] { m.fp_value(bits); }), "term 7_8 is not a floating-point numeral");
  EXPECT_EQ(error_of([&] { m.fp_value(constant("f", single)); }),
            "term f is not a floating-point numeral");
  EXPECT_EQ(m.check_consistency(), "");
  EXPECT_NE(m.describe_state(), before);  // the numerals and constants of this test alone
}

TEST_F(Inspection, TypesAndTermsSayTheirSizes) {
  EXPECT_EQ(m.bv_width(word), 8U);
  EXPECT_EQ(m.bv_width(x), 8U);
  EXPECT_EQ(m.fp_format(single), (IEEEFloat::format{8, 23}));
  EXPECT_EQ(m.fp_format(constant("f", single)), (IEEEFloat::format{8, 23}));
  EXPECT_EQ(m.array_sorts(array).index, integer);
  EXPECT_EQ(m.array_sorts(array).element, real);
  EXPECT_EQ(m.array_sorts(constant("a", array)).element, real);
  const Symbol* f = m.make_symbol("g", m.get_function_type({integer, word}, real));
  EXPECT_EQ(m.function_sorts(f).arguments, (std::vector<const DataType*>{integer, word}));
  EXPECT_EQ(m.function_sorts(f->type).result, real);
}

TEST_F(Inspection, OtherTypesAreRefusedAndNothingChanges) {
  const Term_* n = m.make_number(QNumber(7));
  const auto before = m.describe_state();
  EXPECT_EQ(error_of([&] { m.bv_width(integer); }), "type Int is not a bit-vector type");
  EXPECT_EQ(error_of([&] { m.bv_width(n); }), "type Int is not a bit-vector type");
  EXPECT_EQ(error_of([&] { m.fp_format(integer); }), "type Int is not a floating-point type");
  EXPECT_EQ(error_of([&] { m.fp_format(n); }), "type Int is not a floating-point type");
  EXPECT_EQ(error_of([&] { m.array_sorts(integer); }), "type Int is not an array type");
  EXPECT_EQ(error_of([&] { m.array_sorts(n); }), "type Int is not an array type");
  EXPECT_EQ(error_of([&] { m.function_sorts(integer); }), "type Int is not a function type");
  EXPECT_EQ(error_of([&] { m.function_sorts(x->symbol); }),
            "type " + word->to_str() + " is not a function type");
  EXPECT_EQ(m.describe_state(), before);
}

}  // namespace
}  // namespace quill
