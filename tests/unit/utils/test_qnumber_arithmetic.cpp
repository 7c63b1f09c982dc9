#include <gmp.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "quill/utils/exception.h"
#include "quill/utils/gmp_integer.h"
#include "quill/utils/qnumber_arithmetic.h"
#include "tests/support/error_of.h"

namespace quill {
namespace {

constexpr int64_t largest = std::numeric_limits<int64_t>::max();

QNumber number(const std::string& text) { return QNumber::from_string(text); }

// The same value in the big form, unreduced and with a negative denominator.
QNumber as_big(const QNumber& a) {
  GmpInteger n;
  GmpInteger d;
  numbers::get_numerator(n, a);
  numbers::get_denominator(d, a);
  mpz_t factor;
  mpz_init_set_si(factor, -6);
  mpz_mul_2exp(factor, factor, 70);
  mpz_mul(n, n, factor);
  mpz_mul(d, d, factor);
  mpz_clear(factor);
  return QNumber(n, d);
}

std::string error_of(const std::function<void()>& request) {
  return testing::error_of<Exception>(request);
}

TEST(QNumberArithmetic, Adds) {
  EXPECT_EQ(numbers::sum(number("1/6"), number("1/3")).to_str(), "1/2");
  EXPECT_EQ(numbers::sum(largest, 1).to_str(), "9223372036854775808");
  EXPECT_EQ(numbers::sum(-largest, -largest).to_str(), "-18446744073709551614");
  EXPECT_EQ(numbers::difference(number("1/2"), number("1/2")).to_str(), "0");
  EXPECT_EQ(numbers::difference(0, number("9223372036854775808")).to_str(), "-9223372036854775808");
  EXPECT_FALSE(numbers::difference(number("9223372036854775808"), 1).is_big());
}

TEST(QNumberArithmetic, MultipliesAndDivides) {
  EXPECT_EQ(numbers::product(number("-2/3"), number("9/4")).to_str(), "-3/2");
  EXPECT_EQ(numbers::product(largest, largest).to_str(), "85070591730234615847396907784232501249");
  EXPECT_EQ(numbers::quotient(1, -3).to_str(), "-1/3");
  EXPECT_EQ(numbers::quotient(number("85070591730234615847396907784232501249"), largest).to_str(),
            "9223372036854775807");
  EXPECT_FALSE(
      numbers::quotient(number("85070591730234615847396907784232501249"), largest).is_big());
  EXPECT_EQ(numbers::reciprocal(number("-3/7")).to_str(), "-7/3");
  EXPECT_EQ(numbers::reciprocal(number("100000000000000000000")).to_str(),
            "1/100000000000000000000");
}

TEST(QNumberArithmetic, NegatesAndTakesAbsoluteValues) {
  EXPECT_EQ(numbers::negated(number("2/3")).to_str(), "-2/3");
  EXPECT_EQ(numbers::negated(number("-100000000000000000000")).to_str(), "100000000000000000000");
  EXPECT_EQ(numbers::negated(0).to_str(), "0");
  EXPECT_EQ(numbers::absolute(number("-2/3")).to_str(), "2/3");
  EXPECT_EQ(numbers::absolute(QNumber(2, -3)).to_str(), "2/3");
  EXPECT_EQ(numbers::absolute(number("100000000000000000000")).to_str(), "100000000000000000000");
}

TEST(QNumberArithmetic, RoundsDown) {
  EXPECT_EQ(numbers::floor_of(number("7/2")).to_str(), "3");
  EXPECT_EQ(numbers::floor_of(number("-7/2")).to_str(), "-4");
  EXPECT_EQ(numbers::floor_of(QNumber(7, -2)).to_str(), "-4");
  EXPECT_EQ(numbers::floor_of(-4).to_str(), "-4");
  EXPECT_EQ(numbers::floor_of(number("-100000000000000000001/2")).to_str(),
            "-50000000000000000001");
  struct Row {
    int a;
    int b;
    const char* quotient;
    const char* remainder;
  };
  for (const Row& row : {Row{7, 2, "3", "1"}, Row{-7, 2, "-4", "1"}, Row{7, -2, "-4", "-1"},
                         Row{-7, -2, "3", "-1"}, Row{6, -3, "-2", "0"}}) {
    EXPECT_EQ(numbers::floor_quotient(row.a, row.b).to_str(), row.quotient) << row.a << row.b;
    EXPECT_EQ(numbers::floor_remainder(row.a, row.b).to_str(), row.remainder) << row.a << row.b;
  }
  EXPECT_EQ(numbers::floor_quotient(number("7/2"), number("1/3")).to_str(), "10");
  EXPECT_EQ(numbers::floor_remainder(number("7/2"), number("1/3")).to_str(), "1/6");
}

TEST(QNumberArithmetic, RefusesToDivideByZero) {
  EXPECT_EQ(error_of([] { numbers::quotient(1, 0); }), "division by zero");
  EXPECT_EQ(error_of([] { numbers::reciprocal(0); }), "division by zero");
  EXPECT_EQ(error_of([] { numbers::floor_quotient(1, QNumber(0, -5)); }), "division by zero");
  EXPECT_EQ(error_of([] { numbers::floor_remainder(1, as_big(0)); }), "division by zero");
}

TEST(QNumberArithmetic, MakesPowersOfTwo) {
  EXPECT_EQ(numbers::power_of_two(0).to_str(), "1");
  EXPECT_EQ(numbers::power_of_two(62).to_str(), "4611686018427387904");
  EXPECT_FALSE(numbers::power_of_two(62).is_big());
  EXPECT_EQ(numbers::power_of_two(64).to_str(), "18446744073709551616");
  EXPECT_THROW(numbers::power_of_two((uint64_t{1} << 32) + 1), std::bad_alloc);
}

TEST(QNumberArithmetic, ComparesValues) {
  const char* const ascending[] = {
      "-100000000000000000000", "-9223372036854775807", "-1/2", "0", "1/3", "1/2",
      "9223372036854775807",    "100000000000000000000"};
  for (size_t i = 0; i < std::size(ascending); ++i) {
    for (size_t j = 0; j < std::size(ascending); ++j) {
      const int expected = (i > j) - (i < j);
      const QNumber a = number(ascending[i]);
      const QNumber b = number(ascending[j]);
      EXPECT_EQ(numbers::compare(a, b), expected) << ascending[i] << ' ' << ascending[j];
      EXPECT_EQ(numbers::compare(as_big(a), b), expected) << ascending[i] << ' ' << ascending[j];
      EXPECT_EQ(numbers::compare(a, as_big(b)), expected) << ascending[i] << ' ' << ascending[j];
    }
  }
  EXPECT_EQ(numbers::compare(QNumber(1, -2), 0), -1);
  EXPECT_EQ(numbers::compare(QNumber(2, 4), QNumber(1, 2)), 0);
}

TEST(QNumberArithmetic, ConvertsToMachineWords) {
  EXPECT_EQ(numbers::to_int64(-7), -7);
  EXPECT_EQ(numbers::to_int64(number("-9223372036854775808")), std::numeric_limits<int64_t>::min());
  EXPECT_EQ(numbers::to_int64(number("9223372036854775808")), std::nullopt);
  EXPECT_EQ(numbers::to_int64(number("1/2")), std::nullopt);
  EXPECT_EQ(numbers::to_int64(QNumber(6, -3)), -2);
  EXPECT_EQ(numbers::to_uint64(number("18446744073709551615")),
            std::numeric_limits<uint64_t>::max());
  EXPECT_EQ(numbers::to_uint64(number("18446744073709551616")), std::nullopt);
  EXPECT_EQ(numbers::to_uint64(-1), std::nullopt);
  EXPECT_EQ(numbers::to_uint64(number("3/2")), std::nullopt);
}

TEST(QNumberArithmetic, ConvertsFromAndToRationalsOfGmp) {
  mpq_t q;
  mpq_init(q);
  numbers::get_rational(q, QNumber(6, -4));
  EXPECT_EQ(mpq_cmp_si(q, -3, 2), 0);
  EXPECT_EQ(numbers::from_rational(q).to_str(), "-3/2");
  mpq_clear(q);
  GmpInteger zero;
  EXPECT_EQ(error_of([&] { numbers::from_fraction(zero, zero); }), "zero denominator in 0/0");
  EXPECT_EQ(numbers::from_integer(zero).to_str(), "0");
}

TEST(QNumberArithmetic, ReadsAndWritesDigits) {
  EXPECT_EQ(numbers::from_digits("-101", 2).to_str(), "-5");
  EXPECT_EQ(numbers::from_digits("fF", 16).to_str(), "255");
  EXPECT_EQ(numbers::from_digits("-0009", 10).to_str(), "-9");
  EXPECT_EQ(numbers::from_digits("DEADBEEFdeadbeef0", 16).to_str(), "256731055757333360368");
  EXPECT_FALSE(numbers::from_digits("00000000000000000000000000000000000001", 2).is_big());
  EXPECT_EQ(numbers::to_digits(-5, 2), "-101");
  EXPECT_EQ(numbers::to_digits(255, 16, 4), "00ff");
  EXPECT_EQ(numbers::to_digits(-255, 16, 4), "-00ff");
  EXPECT_EQ(numbers::to_digits(number("256731055757333360368"), 16), "deadbeefdeadbeef0");
  EXPECT_EQ(numbers::to_digits(0, 2), "0");
  EXPECT_EQ(numbers::to_digits(0, 2, 3), "000");
  EXPECT_EQ(numbers::to_digits(QNumber(6, -3), 10), "-2");
  for (const char* text : {"", "-", "+1", "2", " 1", "1 ", "0b1"}) {
    EXPECT_EQ(error_of([&] { numbers::from_digits(text, 2); }),
              "not a number in base 2: \"" + std::string(text) + "\"");
  }
  EXPECT_EQ(error_of([] { numbers::from_digits("1", 8); }), "not a number in base 8: \"1\"");
  EXPECT_EQ(error_of([] { numbers::to_digits(1, 8); }), "no digits in base 8");
  EXPECT_EQ(error_of([] { numbers::to_digits(QNumber(1, 2), 2); }),
            "digits of 1/2, which is no integer");
}

TEST(QNumberArithmetic, ReadsBits) {
  EXPECT_EQ(numbers::bit_length(0), 0u);
  EXPECT_EQ(numbers::bit_length(1), 1u);
  EXPECT_EQ(numbers::bit_length(-8), 4u);
  EXPECT_EQ(numbers::bit_length(largest), 63u);
  EXPECT_EQ(numbers::bit_length(number("18446744073709551616")), 65u);
  EXPECT_EQ(numbers::bit_length(as_big(0)), 0u);
  EXPECT_TRUE(numbers::test_bit(5, 0));
  EXPECT_FALSE(numbers::test_bit(5, 1));
  EXPECT_TRUE(numbers::test_bit(5, 2));
  EXPECT_FALSE(numbers::test_bit(5, 64));
  EXPECT_TRUE(numbers::test_bit(-2, 64));
  EXPECT_FALSE(numbers::test_bit(-2, 0));
  EXPECT_TRUE(numbers::test_bit(number("18446744073709551616"), 64));
  EXPECT_TRUE(numbers::test_bit(number("-18446744073709551616"), 1000));
  EXPECT_EQ(error_of([] { numbers::test_bit(QNumber(1, 2), 0); }),
            "bits of 1/2, which is no integer");
  EXPECT_EQ(error_of([] { numbers::bit_length(QNumber(1, 2)); }),
            "bits of 1/2, which is no integer");
}

// Against GMP's rationals: random operands of all sizes and forms; every result is canonical.
class Model {
 public:
  Model() { mpq_inits(x, y, z, nullptr); }
  ~Model() { mpq_clears(x, y, z, nullptr); }

  mpq_t x;
  mpq_t y;
  mpq_t z;
};

TEST(QNumberArithmetic, RandomOperationsAgreeWithGmp) {
  std::mt19937_64 random(16);
  const auto operand = [&] {
    // Small, unreduced, and often with a negative denominator.
    if (random() % 4 == 0) {
      return QNumber(static_cast<int>(random() % 100) - 50,
                     2 * static_cast<int>(random() % 20) - 39);
    }
    const auto part = [&](unsigned size) {
      std::string text = std::to_string(random() >> (random() % 64));
      for (; size > 0; --size) text += std::to_string(random() % 10000000000);
      return text;
    };
    std::string text = (random() % 2 == 0 ? "" : "-") + part(random() % 8 == 0 ? 3 : 0);
    if (random() % 2 == 0) text += "/1" + part(random() % 8 == 0 ? 3 : 0);
    const QNumber value = number(text);
    return random() % 4 == 0 ? as_big(value) : value;
  };
  Model m;
  const auto expect = [&](const QNumber& result, const char* operation, const QNumber& a,
                          const QNumber& b) {
    EXPECT_TRUE(result.is_canonical()) << operation << ' ' << a << ' ' << b;
    EXPECT_TRUE(result == numbers::from_rational(m.z)) << operation << ' ' << a << ' ' << b;
  };
  for (int round = 0; round < 20000; ++round) {
    const QNumber a = operand();
    const QNumber b = operand();
    numbers::get_rational(m.x, a);
    numbers::get_rational(m.y, b);
    mpq_add(m.z, m.x, m.y);
    expect(numbers::sum(a, b), "sum", a, b);
    mpq_sub(m.z, m.x, m.y);
    expect(numbers::difference(a, b), "difference", a, b);
    mpq_mul(m.z, m.x, m.y);
    expect(numbers::product(a, b), "product", a, b);
    mpq_neg(m.z, m.y);
    expect(numbers::negated(b), "negated", b, b);
    mpq_abs(m.z, m.y);
    expect(numbers::absolute(b), "absolute", b, b);
    mpz_fdiv_q(mpq_numref(m.z), mpq_numref(m.y), mpq_denref(m.y));
    mpz_set_ui(mpq_denref(m.z), 1);
    expect(numbers::floor_of(b), "floor", b, b);
    const int order = mpq_cmp(m.x, m.y);
    EXPECT_EQ(numbers::compare(a, b), (order > 0) - (order < 0)) << a << ' ' << b;
    if (mpq_sgn(m.y) == 0) continue;
    mpq_inv(m.z, m.y);
    expect(numbers::reciprocal(b), "reciprocal", b, b);
    mpq_div(m.z, m.x, m.y);
    expect(numbers::quotient(a, b), "quotient", a, b);
    mpz_fdiv_q(mpq_numref(m.z), mpq_numref(m.z), mpq_denref(m.z));
    mpz_set_ui(mpq_denref(m.z), 1);
    expect(numbers::floor_quotient(a, b), "floor quotient", a, b);
    mpq_mul(m.z, m.z, m.y);
    mpq_sub(m.z, m.x, m.z);
    expect(numbers::floor_remainder(a, b), "floor remainder", a, b);
  }
}

}  // namespace
}  // namespace quill
