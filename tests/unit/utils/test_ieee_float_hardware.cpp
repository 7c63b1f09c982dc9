// Rounding against the processor's: a quotient of floats or doubles is its exact value, rounded.
// This file must be compiled with -frounding-math.

#include <gmp.h>
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cfenv>
#include <cmath>
#include <concepts>
#include <cstdint>
#include <limits>
#include <random>
#include <string>

#include "quill/utils/gmp_integer.h"
#include "quill/utils/ieee_float.h"
#include "quill/utils/qnumber.h"

namespace quill {
namespace {

template <class Float>
struct Traits;

template <>
struct Traits<float> {
  using Bits = uint32_t;
  static constexpr IEEEFloat::format format{8, 23};
};

template <>
struct Traits<double> {
  using Bits = uint64_t;
  static constexpr IEEEFloat::format format{11, 52};
};

struct Rounding {
  IEEEFloat::rounding_mode mode;
  int processor_mode;
};

constexpr std::array roundings = {Rounding{IEEEFloat::ROUND_EVEN, FE_TONEAREST},
                                  Rounding{IEEEFloat::ROUND_ZERO, FE_TOWARDZERO},
                                  Rounding{IEEEFloat::ROUND_PLUS_INF, FE_UPWARD},
                                  Rounding{IEEEFloat::ROUND_MINUS_INF, FE_DOWNWARD}};

// The volatile copies keep the division between the two changes of the mode.
template <std::floating_point Float>
Float processor_quotient(Float a, Float b, int processor_mode) {
  volatile Float dividend = a;
  volatile Float divisor = b;
  std::fesetround(processor_mode);
  volatile Float result = dividend / divisor;
  std::fesetround(FE_TONEAREST);
  return result;
}

// The exact integers n and d with a / b = n / d.
template <std::floating_point Float>
QNumber exact_quotient(Float a, Float b) {
  const auto parts = [](Float x, mpz_ptr z) {
    int exponent = 0;
    const Float fraction = std::frexp(x, &exponent);
    constexpr int digits = std::numeric_limits<Float>::digits;
    mpz_set_si(z, static_cast<long>(std::ldexp(fraction, digits)));
    return exponent - digits;
  };
  GmpInteger n;
  GmpInteger d;
  const int shift = parts(a, n) - parts(b, d);
  mpz_ptr shifted = shift >= 0 ? n : d;
  mpz_mul_2exp(shifted, shifted, static_cast<mp_bitcnt_t>(std::abs(shift)));
  return QNumber(n, d);
}

template <std::floating_point Float>
void expect_same_quotient(Float a, Float b) {
  const QNumber exact = exact_quotient(a, b);
  for (const Rounding& rounding : roundings) {
    const auto expected = std::bit_cast<typename Traits<Float>::Bits>(
        processor_quotient(a, b, rounding.processor_mode));
    const QNumber bits =
        IEEEFloat::from_number(exact, Traits<Float>::format, rounding.mode).get_bits();
    EXPECT_EQ(bits, QNumber(expected)) << a << " / " << b << " in mode " << rounding.mode;
  }
}

template <std::floating_point Float>
class Processor : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(std::numeric_limits<Float>::is_iec559);
    ASSERT_EQ(std::fegetround(), FE_TONEAREST);
  }

  static constexpr int digits = std::numeric_limits<Float>::digits;
  static constexpr int max_exponent = std::numeric_limits<Float>::max_exponent;
  static constexpr int min_exponent = std::numeric_limits<Float>::min_exponent;

  uint64_t below(uint64_t bound) { return random() % bound; }

  // An integer of at most as many bits as a significand has, of either sign.
  Float integer() {
    const uint64_t bits = 1 + below(static_cast<uint64_t>(digits));
    const uint64_t magnitude = 1 + below((uint64_t{1} << bits) - 1);
    const auto x = static_cast<Float>(magnitude);
    return below(2) == 0 ? x : -x;
  }

  int exponent_between(int low, int high) {
    return low + static_cast<int>(below(static_cast<uint64_t>(high - low + 1)));
  }

  std::mt19937_64 random{20190722};
};

using Floats = testing::Types<float, double>;
TYPED_TEST_SUITE(Processor, Floats);

TYPED_TEST(Processor, QuotientsOfIntegers) {
  for (int i = 0; i < 20000; ++i) {
    const TypeParam a = this->integer();
    const TypeParam b = this->integer();
    expect_same_quotient(a, b);
  }
}

// Dividing by a power of two makes ties and exact results likely.
TYPED_TEST(Processor, SubnormalQuotients) {
  for (int i = 0; i < 20000; ++i) {
    const TypeParam a = std::ldexp(
        this->integer(),
        this->exponent_between(this->min_exponent - 1, this->min_exponent + this->digits));
    const TypeParam b = std::ldexp(i % 2 == 0 ? this->integer() : TypeParam{1},
                                   this->exponent_between(0, this->digits + 4));
    expect_same_quotient(a, b);
  }
}

TYPED_TEST(Processor, QuotientsAroundTheLargestValue) {
  for (int i = 0; i < 20000; ++i) {
    const TypeParam a =
        std::ldexp(this->integer(), this->exponent_between(this->max_exponent - 2 * this->digits,
                                                           this->max_exponent - this->digits));
    const TypeParam b = std::ldexp(this->integer(), this->exponent_between(-2 * this->digits, 0));
    expect_same_quotient(a, b);
  }
}

TYPED_TEST(Processor, QuotientsAtTheBounds) {
  using Limits = std::numeric_limits<TypeParam>;
  constexpr TypeParam one = 1;
  const TypeParam above_one = one + Limits::epsilon();
  const TypeParam below_one = one - Limits::epsilon() / 2;
  for (const TypeParam a :
       {Limits::denorm_min(), 2 * Limits::denorm_min(), 3 * Limits::denorm_min(), Limits::min(),
        Limits::min() - Limits::denorm_min(), Limits::max(), Limits::max() / 2, one, above_one,
        below_one}) {
    for (const TypeParam b :
         {one, above_one, below_one, TypeParam{2}, 2 * above_one, 2 * below_one, TypeParam{3},
          TypeParam{4}, one / 2, one / 4, above_one / 2, below_one / 2}) {
      expect_same_quotient(a, b);
      expect_same_quotient(-a, b);
    }
  }
}

}  // namespace
}  // namespace quill
