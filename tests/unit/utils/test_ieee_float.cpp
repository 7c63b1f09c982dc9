// Literal patterns, and small formats exhaustively against a search through all their values.

#include <gmp.h>
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <new>
#include <optional>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "quill/utils/exception.h"
#include "quill/utils/gmp_integer.h"
#include "quill/utils/ieee_float.h"
#include "quill/utils/qnumber.h"
#include "quill/utils/qnumber_arithmetic.h"
#include "tests/support/error_of.h"

namespace quill {
namespace {

using Format = IEEEFloat::format;
using Mode = IEEEFloat::rounding_mode;

constexpr Format binary16{5, 10};
constexpr Format binary32{8, 23};
constexpr Format binary64{11, 52};

constexpr std::array all_modes = {IEEEFloat::ROUND_EVEN, IEEEFloat::ROUND_ZERO,
                                  IEEEFloat::ROUND_PLUS_INF, IEEEFloat::ROUND_MINUS_INF};

QNumber rational(const std::string& text) { return QNumber::from_string(text); }

// (n / d) * 2^exponent
QNumber scaled(int64_t n, int64_t exponent, int64_t d = 1) {
  GmpInteger numerator;
  GmpInteger denominator;
  mpz_set_si(numerator, n);
  mpz_set_si(denominator, d);
  if (exponent >= 0) {
    mpz_mul_2exp(numerator, numerator, static_cast<mp_bitcnt_t>(exponent));
  } else {
    mpz_mul_2exp(denominator, denominator, static_cast<mp_bitcnt_t>(-exponent));
  }
  return QNumber(numerator, denominator);
}

// A number in its big form, whatever its size.
QNumber in_big_form(const QNumber& number) {
  QNumber result = rational("18446744073709551616");
  result = number;
  return result;
}

uint64_t bits_of(const IEEEFloat& value) { return std::stoull(value.get_bits().to_str()); }

uint64_t rounded(const QNumber& value, Format f, Mode mode) {
  return bits_of(IEEEFloat::from_number(value, f, mode));
}

// What a positive number rounds to: to nearest, toward zero, toward the infinity of its sign.
struct Magnitudes {
  uint64_t nearest;
  uint64_t below;
  uint64_t above;
};

// Of (n / d) * 2^exponent and of its negation.
void expect_rounding(int64_t n, int64_t exponent, int64_t d, Format f, const Magnitudes& expected) {
  SCOPED_TRACE(std::to_string(n) + "/" + std::to_string(d) + " * 2^" + std::to_string(exponent));
  const QNumber plus = scaled(n, exponent, d);
  EXPECT_EQ(rounded(plus, f, IEEEFloat::ROUND_EVEN), expected.nearest);
  EXPECT_EQ(rounded(plus, f, IEEEFloat::ROUND_ZERO), expected.below);
  EXPECT_EQ(rounded(plus, f, IEEEFloat::ROUND_PLUS_INF), expected.above);
  EXPECT_EQ(rounded(plus, f, IEEEFloat::ROUND_MINUS_INF), expected.below);
  const QNumber minus = scaled(-n, exponent, d);
  const uint64_t sign = uint64_t{1} << (f.e + f.m);
  EXPECT_EQ(rounded(minus, f, IEEEFloat::ROUND_EVEN), sign | expected.nearest);
  EXPECT_EQ(rounded(minus, f, IEEEFloat::ROUND_ZERO), sign | expected.below);
  EXPECT_EQ(rounded(minus, f, IEEEFloat::ROUND_PLUS_INF), sign | expected.below);
  EXPECT_EQ(rounded(minus, f, IEEEFloat::ROUND_MINUS_INF), sign | expected.above);
}

void expect_exact(int64_t n, int64_t exponent, Format f, uint64_t expected) {
  expect_rounding(n, exponent, 1, f, {expected, expected, expected});
}

std::string message_of_from_bits(const QNumber& bits, Format f) {
  return testing::error_of<Exception>([&] { IEEEFloat::from_bits(bits, f); });
}

// --- Types ---

TEST(IEEEFloat, TheFormatIsAnAggregateOfTwoWords) {
  EXPECT_TRUE(std::is_aggregate_v<Format>);
  const Format f{8, 23};
  EXPECT_TRUE((std::is_same_v<decltype(f.e), uint64_t>));
  EXPECT_TRUE((std::is_same_v<decltype(f.m), uint64_t>));
  EXPECT_EQ(f.e, 8U);
  EXPECT_EQ(f.m, 23U);
}

TEST(IEEEFloat, TheRoundingModesAreZeroToThree) {
  EXPECT_EQ(int{IEEEFloat::ROUND_EVEN}, 0);
  EXPECT_EQ(int{IEEEFloat::ROUND_ZERO}, 1);
  EXPECT_EQ(int{IEEEFloat::ROUND_PLUS_INF}, 2);
  EXPECT_EQ(int{IEEEFloat::ROUND_MINUS_INF}, 3);
}

// --- Special values ---

TEST(IEEEFloat, StartsAsPositiveZero) {
  EXPECT_EQ(IEEEFloat(binary32, IEEEFloat::ROUND_EVEN).get_bits(), QNumber(0));
  EXPECT_EQ(IEEEFloat(binary64, IEEEFloat::ROUND_MINUS_INF).get_bits(), QNumber(0));
}

TEST(IEEEFloat, Infinities) {
  const auto infinity = [](Format f, bool negative) {
    IEEEFloat value(f, IEEEFloat::ROUND_EVEN);
    value.self_inf(negative);
    return bits_of(value);
  };
  EXPECT_EQ(infinity({2, 2}, false), 0b0'11'00U);
  EXPECT_EQ(infinity({2, 2}, true), 0b1'11'00U);
  EXPECT_EQ(infinity({3, 3}, false), 0b0'111'000U);
  EXPECT_EQ(infinity({3, 3}, true), 0b1'111'000U);
  EXPECT_EQ(infinity(binary16, false), 0x7c00U);
  EXPECT_EQ(infinity(binary16, true), 0xfc00U);
  EXPECT_EQ(infinity(binary32, false), 0x7f800000U);
  EXPECT_EQ(infinity(binary32, true), 0xff800000U);
  EXPECT_EQ(infinity(binary64, false), 0x7ff0000000000000U);
  EXPECT_EQ(infinity(binary64, true), 0xfff0000000000000U);
}

TEST(IEEEFloat, TheLastCallDecidesTheSignOfInfinity) {
  IEEEFloat value(binary32, IEEEFloat::ROUND_EVEN);
  value.self_inf(false);
  value.self_inf(true);
  EXPECT_EQ(bits_of(value), 0xff800000U);
  value.self_inf(false);
  EXPECT_EQ(bits_of(value), 0x7f800000U);
}

TEST(IEEEFloat, NaNIsPositiveWithTheTopSignificandBit) {
  const auto nan = [](Format f) {
    IEEEFloat value(f, IEEEFloat::ROUND_EVEN);
    value.self_nan();
    return bits_of(value);
  };
  EXPECT_EQ(nan({2, 2}), 0b0'11'10U);
  EXPECT_EQ(nan({3, 3}), 0b0'111'100U);
  EXPECT_EQ(nan(binary16), 0x7e00U);
  EXPECT_EQ(nan(binary32), 0x7fc00000U);
  EXPECT_EQ(nan(binary64), 0x7ff8000000000000U);
}

TEST(IEEEFloat, NaNReplacesWhatWasThere) {
  IEEEFloat value = IEEEFloat::from_number(rational("-1/3"), binary32, IEEEFloat::ROUND_EVEN);
  value.self_inf(true);
  value.self_nan();
  EXPECT_EQ(bits_of(value), 0x7fc00000U);
}

TEST(IEEEFloat, SpecialValuesOfWideFormats) {
  IEEEFloat value({15, 112}, IEEEFloat::ROUND_EVEN);
  value.self_inf(false);
  // (2^15 - 1) * 2^112, then with 2^127 for the sign, then with 2^111 instead.
  EXPECT_EQ(value.get_bits().to_str(), "170135991163610696904058773219554885632");
  value.self_inf(true);
  EXPECT_EQ(value.get_bits().to_str(), "340277174624079928635746076935438991360");
  value.self_nan();
  EXPECT_EQ(value.get_bits().to_str(), "170138587312039964317873038467719495680");
}

// --- The form of the bits ---

TEST(IEEEFloat, BitsAreSmallWhenTheyFit) {
  IEEEFloat value(binary64, IEEEFloat::ROUND_EVEN);
  value.self_inf(false);
  EXPECT_FALSE(value.get_bits().is_big());
  value.self_inf(true);
  EXPECT_TRUE(value.get_bits().is_big());
  value.self_nan();
  EXPECT_FALSE(value.get_bits().is_big());
  EXPECT_FALSE(
      IEEEFloat::from_number(in_big_form(1), binary64, IEEEFloat::ROUND_EVEN).get_bits().is_big());
  EXPECT_FALSE(IEEEFloat::from_bits(in_big_form(1), binary64).get_bits().is_big());
}

TEST(IEEEFloat, CopiesAreIndependent) {
  IEEEFloat value(binary64, IEEEFloat::ROUND_EVEN);
  value.self_inf(true);
  IEEEFloat copy = value;
  value.self_nan();
  EXPECT_EQ(bits_of(copy), 0xfff0000000000000U);
  copy = value;
  EXPECT_EQ(bits_of(copy), 0x7ff8000000000000U);
}

// --- From bits ---

TEST(IEEEFloatFromBits, KeepsEveryPattern) {
  for (uint64_t bits = 0; bits < 128; ++bits) {
    EXPECT_EQ(bits_of(IEEEFloat::from_bits(QNumber(bits), {3, 3})), bits);
  }
  for (const uint64_t bits : {uint64_t{0x8000000000000000U}, uint64_t{0x7ff0000000000001U},
                              uint64_t{0xfff7ffffffffffffU}, uint64_t{0xffffffffffffffffU}}) {
    EXPECT_EQ(bits_of(IEEEFloat::from_bits(QNumber(bits), binary64)), bits);
  }
}

TEST(IEEEFloatFromBits, TakesUnreducedIntegers) {
  const IEEEFloat value = IEEEFloat::from_bits(QNumber(-12, -4), binary32);
  EXPECT_EQ(value.get_bits(), QNumber(3));
  // 2 * (2^32 - 1) has one bit too many, but its half has not.
  EXPECT_EQ(bits_of(IEEEFloat::from_bits(QNumber(8589934590, 2), binary32)), 0xffffffffU);
}

TEST(IEEEFloatFromBits, RefusesFractions) {
  EXPECT_EQ(message_of_from_bits(QNumber(1, 2), binary32),
            "a floating-point bit pattern can't be fractional: 1/2");
  EXPECT_EQ(message_of_from_bits(QNumber(6, -4), binary32),
            "a floating-point bit pattern can't be fractional: -3/2");
  EXPECT_EQ(message_of_from_bits(rational("36893488147419103233/2"), binary32),
            "a floating-point bit pattern can't be fractional: 36893488147419103233/2");
}

TEST(IEEEFloatFromBits, RefusesNegativeNumbers) {
  EXPECT_EQ(message_of_from_bits(QNumber(-1), binary32),
            "a floating-point bit pattern can't be negative: -1");
  EXPECT_EQ(message_of_from_bits(QNumber(4, -2), binary32),
            "a floating-point bit pattern can't be negative: -2");
  EXPECT_EQ(message_of_from_bits(rational("-18446744073709551616"), binary32),
            "a floating-point bit pattern can't be negative: -18446744073709551616");
}

TEST(IEEEFloatFromBits, RefusesWhatIsTooLong) {
  EXPECT_EQ(message_of_from_bits(QNumber(31), {2, 2}), "no error");
  EXPECT_EQ(message_of_from_bits(QNumber(32), {2, 2}), "the number 32 doesn't fit in 5 bits");
  EXPECT_EQ(message_of_from_bits(in_big_form(32), {2, 2}), "the number 32 doesn't fit in 5 bits");
  EXPECT_EQ(message_of_from_bits(QNumber(4294967296), binary32),
            "the number 4294967296 doesn't fit in 32 bits");
  EXPECT_EQ(message_of_from_bits(rational("18446744073709551616"), binary64),
            "the number 18446744073709551616 doesn't fit in 64 bits");
}

TEST(IEEEFloatFromBits, AnythingFitsTheWidestFormats) {
  constexpr uint64_t most = 18446744073709551615U;
  for (const Format f : {Format{most, most}, Format{most, 0}, Format{0, most}, Format{1, most - 1},
                         Format{uint64_t{1} << 63, uint64_t{1} << 63}}) {
    EXPECT_EQ(message_of_from_bits(scaled(1, 1000), f), "no error");
  }
}

// --- From numbers: signs, forms ---

TEST(IEEEFloatFromNumber, ZeroIsPositiveInEveryMode) {
  for (const Mode mode : all_modes) {
    EXPECT_EQ(rounded(QNumber(0), binary32, mode), 0U);
    EXPECT_EQ(rounded(QNumber(0, -5), binary32, mode), 0U);
    EXPECT_EQ(rounded(in_big_form(0), binary32, mode), 0U);
  }
}

TEST(IEEEFloatFromNumber, NegativeNumbersThatRoundToZeroGiveNegativeZero) {
  const QNumber tiny = scaled(-1, -1000);
  EXPECT_EQ(rounded(tiny, binary32, IEEEFloat::ROUND_EVEN), 0x80000000U);
  EXPECT_EQ(rounded(tiny, binary32, IEEEFloat::ROUND_ZERO), 0x80000000U);
  EXPECT_EQ(rounded(tiny, binary32, IEEEFloat::ROUND_PLUS_INF), 0x80000000U);
  EXPECT_EQ(rounded(tiny, binary32, IEEEFloat::ROUND_MINUS_INF), 0x80000001U);
}

TEST(IEEEFloatFromNumber, TheFormOfTheNumberDoesNotMatter) {
  EXPECT_EQ(rounded(QNumber(-3, -9), binary32, IEEEFloat::ROUND_EVEN), 0x3eaaaaabU);
  EXPECT_EQ(rounded(QNumber(3, -9), binary32, IEEEFloat::ROUND_EVEN), 0xbeaaaaabU);
  EXPECT_EQ(rounded(in_big_form(QNumber(-3, -9)), binary32, IEEEFloat::ROUND_EVEN), 0x3eaaaaabU);
  EXPECT_EQ(rounded(in_big_form(QNumber(3, -9)), binary32, IEEEFloat::ROUND_EVEN), 0xbeaaaaabU);
  EXPECT_EQ(rounded(in_big_form(QNumber(4, 2)), binary32, IEEEFloat::ROUND_EVEN), 0x40000000U);
}

// --- From numbers: binary32 ---

TEST(IEEEFloatFromNumber, CommonValuesOfBinary32) {
  expect_exact(1, 0, binary32, 0x3f800000);
  expect_exact(3, -1, binary32, 0x3fc00000);
  expect_exact(100, 0, binary32, 0x42c80000);
  expect_rounding(1, 0, 10, binary32, {0x3dcccccd, 0x3dcccccc, 0x3dcccccd});
  expect_rounding(1, 0, 3, binary32, {0x3eaaaaab, 0x3eaaaaaa, 0x3eaaaaab});
  expect_rounding(2, 0, 3, binary32, {0x3f2aaaab, 0x3f2aaaaa, 0x3f2aaaab});
  expect_rounding(22, 0, 7, binary32, {0x40492492, 0x40492492, 0x40492493});
}

TEST(IEEEFloatFromNumber, TiesOfBinary32GoToEven) {
  expect_exact(16777216, 0, binary32, 0x4b800000);
  expect_rounding(16777217, 0, 1, binary32, {0x4b800000, 0x4b800000, 0x4b800001});
  expect_exact(16777218, 0, binary32, 0x4b800001);
  expect_rounding(16777219, 0, 1, binary32, {0x4b800002, 0x4b800001, 0x4b800002});
  // Just off the tie.
  expect_rounding(16777217000 - 1, 0, 1000, binary32, {0x4b800000, 0x4b800000, 0x4b800001});
  expect_rounding(16777217000 + 1, 0, 1000, binary32, {0x4b800001, 0x4b800000, 0x4b800001});
  expect_rounding(16777219000 - 1, 0, 1000, binary32, {0x4b800001, 0x4b800001, 0x4b800002});
}

TEST(IEEEFloatFromNumber, CarriesIntoTheExponentOfBinary32) {
  // 2^24 - 1/2 lies halfway between the largest value below 2^24 and 2^24.
  expect_rounding(33554431, -1, 1, binary32, {0x4b800000, 0x4b7fffff, 0x4b800000});
}

TEST(IEEEFloatFromNumber, LargestFiniteValueOfBinary32) {
  expect_exact(16777215, 104, binary32, 0x7f7fffff);
  // Below halfway to 2^128, halfway, above, 2^128 and far beyond.
  expect_rounding(268435447, 100, 1, binary32, {0x7f7fffff, 0x7f7fffff, 0x7f800000});
  expect_rounding(33554431, 103, 1, binary32, {0x7f800000, 0x7f7fffff, 0x7f800000});
  expect_rounding(536870897, 99, 1, binary32, {0x7f800000, 0x7f7fffff, 0x7f800000});
  expect_rounding(1, 128, 1, binary32, {0x7f800000, 0x7f7fffff, 0x7f800000});
  expect_rounding(1, 100000, 1, binary32, {0x7f800000, 0x7f7fffff, 0x7f800000});
}

TEST(IEEEFloatFromNumber, SmallestNormalValueOfBinary32) {
  expect_exact(1, -126, binary32, 0x00800000);
  expect_exact(8388607, -149, binary32, 0x007fffff);
  // Three quarters, a half and a quarter of the way down to the largest subnormal value.
  expect_rounding(33554429, -151, 1, binary32, {0x007fffff, 0x007fffff, 0x00800000});
  expect_rounding(16777215, -150, 1, binary32, {0x00800000, 0x007fffff, 0x00800000});
  expect_rounding(33554431, -151, 1, binary32, {0x00800000, 0x007fffff, 0x00800000});
}

TEST(IEEEFloatFromNumber, SmallestSubnormalValueOfBinary32) {
  expect_exact(1, -149, binary32, 0x00000001);
  expect_rounding(3, -150, 1, binary32, {0x00000002, 0x00000001, 0x00000002});
  // Its half is a tie with zero; then just above, just below, a quarter, an eighth, next to
  // nothing.
  expect_rounding(1, -150, 1, binary32, {0x00000000, 0x00000000, 0x00000001});
  expect_rounding(1001, -150, 1000, binary32, {0x00000001, 0x00000000, 0x00000001});
  expect_rounding(999, -150, 1000, binary32, {0x00000000, 0x00000000, 0x00000001});
  expect_rounding(1, -151, 1, binary32, {0x00000000, 0x00000000, 0x00000001});
  expect_rounding(1, -152, 1, binary32, {0x00000000, 0x00000000, 0x00000001});
  expect_rounding(1, -100000, 1, binary32, {0x00000000, 0x00000000, 0x00000001});
}

// --- From numbers: binary64 and binary16 ---

TEST(IEEEFloatFromNumber, Binary64) {
  expect_exact(1, 0, binary64, 0x3ff0000000000000);
  expect_rounding(1, 0, 10, binary64, {0x3fb999999999999a, 0x3fb9999999999999, 0x3fb999999999999a});
  expect_rounding(9007199254740993, 0, 1, binary64,
                  {0x4340000000000000, 0x4340000000000000, 0x4340000000000001});
  expect_rounding(9007199254740995, 0, 1, binary64,
                  {0x4340000000000002, 0x4340000000000001, 0x4340000000000002});
}

TEST(IEEEFloatFromNumber, BoundsOfBinary64) {
  expect_exact(9007199254740991, 971, binary64, 0x7fefffffffffffff);
  expect_rounding(36028797018963965, 969, 1, binary64,
                  {0x7fefffffffffffff, 0x7fefffffffffffff, 0x7ff0000000000000});
  expect_rounding(18014398509481983, 970, 1, binary64,
                  {0x7ff0000000000000, 0x7fefffffffffffff, 0x7ff0000000000000});
  expect_exact(1, -1022, binary64, 0x0010000000000000);
  expect_exact(4503599627370495, -1074, binary64, 0x000fffffffffffff);
  expect_rounding(9007199254740991, -1075, 1, binary64,
                  {0x0010000000000000, 0x000fffffffffffff, 0x0010000000000000});
  expect_exact(1, -1074, binary64, 0x0000000000000001);
  expect_rounding(1, -1075, 1, binary64, {0, 0, 1});
  expect_rounding(1001, -1075, 1000, binary64, {1, 0, 1});
  expect_rounding(999, -1075, 1000, binary64, {0, 0, 1});
}

TEST(IEEEFloatFromNumber, Binary16) {
  expect_exact(1, 0, binary16, 0x3c00);
  expect_rounding(1, 0, 3, binary16, {0x3555, 0x3555, 0x3556});
  expect_rounding(2049, 0, 1, binary16, {0x6800, 0x6800, 0x6801});
  expect_rounding(2051, 0, 1, binary16, {0x6802, 0x6801, 0x6802});
  expect_exact(65504, 0, binary16, 0x7bff);
  expect_rounding(65519, 0, 1, binary16, {0x7bff, 0x7bff, 0x7c00});
  expect_rounding(65520, 0, 1, binary16, {0x7c00, 0x7bff, 0x7c00});
  expect_exact(1, -14, binary16, 0x0400);
  expect_exact(1023, -24, binary16, 0x03ff);
  expect_rounding(2047, -25, 1, binary16, {0x0400, 0x03ff, 0x0400});
  expect_exact(1, -24, binary16, 0x0001);
  expect_rounding(1, -25, 1, binary16, {0x0000, 0x0000, 0x0001});
  expect_rounding(1001, -25, 1000, binary16, {0x0001, 0x0000, 0x0001});
  expect_rounding(999, -25, 1000, binary16, {0x0000, 0x0000, 0x0001});
}

// --- From numbers: small formats ---

TEST(IEEEFloatFromNumber, Format22) {
  // 1/4 is the step of the subnormal values and of those below 2.
  expect_exact(1, -2, {2, 2}, 0b00'01);
  expect_exact(3, -2, {2, 2}, 0b00'11);
  expect_exact(1, 0, {2, 2}, 0b01'00);
  expect_exact(7, -2, {2, 2}, 0b01'11);
  expect_exact(2, 0, {2, 2}, 0b10'00);
  expect_exact(7, -1, {2, 2}, 0b10'11);
  expect_rounding(1, -3, 1, {2, 2}, {0b00'00, 0b00'00, 0b00'01});
  expect_rounding(1, -4, 1, {2, 2}, {0b00'00, 0b00'00, 0b00'01});
  expect_rounding(2, 0, 15, {2, 2}, {0b00'01, 0b00'00, 0b00'01});
  expect_rounding(3, -3, 1, {2, 2}, {0b00'10, 0b00'01, 0b00'10});
  expect_rounding(7, -3, 1, {2, 2}, {0b01'00, 0b00'11, 0b01'00});
  expect_rounding(9, -2, 1, {2, 2}, {0b10'00, 0b10'00, 0b10'01});
  expect_rounding(37, 0, 10, {2, 2}, {0b10'11, 0b10'11, 0b11'00});
  expect_rounding(15, -2, 1, {2, 2}, {0b11'00, 0b10'11, 0b11'00});
  expect_rounding(4, 0, 1, {2, 2}, {0b11'00, 0b10'11, 0b11'00});
}

TEST(IEEEFloatFromNumber, Format33) {
  expect_exact(1, 0, {3, 3}, 0b011'000);
  expect_exact(15, 0, {3, 3}, 0b110'111);
  expect_rounding(31, -1, 1, {3, 3}, {0b111'000, 0b110'111, 0b111'000});
  expect_rounding(30, 0, 2, {3, 3}, {0b110'111, 0b110'111, 0b110'111});
  expect_rounding(155, 0, 11, {3, 3}, {0b110'110, 0b110'110, 0b110'111});
  expect_exact(1, -2, {3, 3}, 0b001'000);
  expect_exact(7, -5, {3, 3}, 0b000'111);
  expect_rounding(15, -6, 1, {3, 3}, {0b001'000, 0b000'111, 0b001'000});
  expect_exact(1, -5, {3, 3}, 0b000'001);
  expect_rounding(1, -6, 1, {3, 3}, {0b000'000, 0b000'000, 0b000'001});
  expect_rounding(1001, -6, 1000, {3, 3}, {0b000'001, 0b000'000, 0b000'001});
  expect_rounding(999, -6, 1000, {3, 3}, {0b000'000, 0b000'000, 0b000'001});
}

// All finite values of a small format, decoded one by one, in multiples of the smallest one. After
// the last comes what would follow if the exponents went on, the place of infinity.
std::vector<int64_t> values_of(Format f) {
  std::vector<int64_t> values;
  for (uint64_t exponent = 0; exponent + 1 < uint64_t{1} << f.e; ++exponent) {
    for (uint64_t significand = 0; significand < uint64_t{1} << f.m; ++significand) {
      const uint64_t units =
          exponent == 0 ? significand : ((uint64_t{1} << f.m) + significand) << (exponent - 1);
      values.push_back(static_cast<int64_t>(units));
    }
  }
  values.push_back(int64_t{1} << (f.m + (uint64_t{1} << f.e) - 2));
  return values;
}

// The pattern for n/d of the smallest value, found among `values`.
uint64_t naive_rounding(const std::vector<int64_t>& values, Format f, Mode mode, bool negative,
                        int64_t n, int64_t d) {
  const uint64_t infinity = values.size() - 1;
  uint64_t below = 0;
  while (below < infinity - 1 && values[below + 1] * d <= n) ++below;
  const uint64_t above = below + 1;
  const int64_t down = n - values[below] * d;
  const int64_t up = values[above] * d - n;
  uint64_t result = below;
  if (down != 0) {
    if (mode == IEEEFloat::ROUND_EVEN) {
      if (up < down || (up == down && above % 2 == 0)) result = above;
    } else if (mode == (negative ? IEEEFloat::ROUND_MINUS_INF : IEEEFloat::ROUND_PLUS_INF)) {
      result = above;
    }
  }
  return negative ? result + (uint64_t{1} << (f.e + f.m)) : result;
}

std::string format_name(const ::testing::TestParamInfo<Format>& test) {
  return std::to_string(test.param.e) + "x" + std::to_string(test.param.m);
}

class SmallFormat : public ::testing::TestWithParam<Format> {};

// Every value, the quarters between it and the next one, what lies just beside those, and numbers
// beyond the largest value.
TEST_P(SmallFormat, RoundsAsASearchThroughAllValuesDoes) {
  const Format f = GetParam();
  const std::vector<int64_t> values = values_of(f);
  const int64_t unit_exponent = 2 - (int64_t{1} << (f.e - 1)) - static_cast<int64_t>(f.m);
  constexpr int64_t d = 4000;
  std::vector<int64_t> numerators;
  for (size_t i = 0; i + 1 < values.size(); ++i) {
    const int64_t gap = values[i + 1] - values[i];
    for (int64_t quarter = 0; quarter < 4; ++quarter) {
      const int64_t n = values[i] * d + gap * d / 4 * quarter;
      numerators.insert(numerators.end(), {n - 1, n, n + 1});
    }
  }
  for (const int64_t factor : {4, 5, 6, 8, 12, 4000}) {
    numerators.push_back(values.back() * d / 4 * factor);
  }
  for (const int64_t n : numerators) {
    if (n <= 0) continue;
    for (const Mode mode : all_modes) {
      EXPECT_EQ(rounded(scaled(n, unit_exponent, d), f, mode),
                naive_rounding(values, f, mode, /*negative=*/false, n, d))
          << n << " in mode " << mode;
      EXPECT_EQ(rounded(scaled(-n, unit_exponent, d), f, mode),
                naive_rounding(values, f, mode, /*negative=*/true, n, d))
          << -n << " in mode " << mode;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(IEEEFloatFromNumber, SmallFormat,
                         ::testing::Values(Format{2, 2}, Format{3, 3}, Format{4, 3}, Format{2, 5}),
                         format_name);

// --- Formats out of the ordinary ---

TEST(IEEEFloatFromNumber, NoExponentIsTooWideToRound) {
  // The exponent of 1 is a zero and then ones.
  EXPECT_EQ(rounded(QNumber(1), {40, 10}, IEEEFloat::ROUND_EVEN), 549755813887U * 1024);
  EXPECT_EQ(rounded(QNumber(1), {60, 2}, IEEEFloat::ROUND_EVEN), 576460752303423487U * 4);
  EXPECT_EQ(rounded(QNumber(1, 2), {60, 2}, IEEEFloat::ROUND_EVEN), 576460752303423486U * 4);
  EXPECT_EQ(rounded(QNumber(-3), {60, 2}, IEEEFloat::ROUND_EVEN),
            4611686018427387904U + 576460752303423488U * 4 + 2);
  EXPECT_EQ(rounded(scaled(1, 3000), {60, 2}, IEEEFloat::ROUND_EVEN),
            (576460752303423487U + 3000) * 4);
  EXPECT_EQ(rounded(scaled(1, -3000), {60, 2}, IEEEFloat::ROUND_EVEN),
            (576460752303423487U - 3000) * 4);
}

TEST(IEEEFloatFromNumber, ExponentsOfMoreThanAWord) {
  // (2^63 - 1) * 4, (2^64 - 1) * 4 and (2^99 - 1 + 10) * 4
  EXPECT_EQ(IEEEFloat::from_number(1, {64, 2}, IEEEFloat::ROUND_EVEN).get_bits().to_str(),
            "36893488147419103228");
  EXPECT_EQ(IEEEFloat::from_number(1, {65, 2}, IEEEFloat::ROUND_EVEN).get_bits().to_str(),
            "73786976294838206460");
  EXPECT_EQ(IEEEFloat::from_number(1024, {100, 2}, IEEEFloat::ROUND_EVEN).get_bits().to_str(),
            "2535301200456458802993406410788");
}

TEST(IEEEFloatFromNumber, SignificandsOfAThousandBits) {
  // 2/3 is 1.0101...01 * 2^-1; of its 1001 bits the last is a 1, and 01 follows.
  const Format f{11, 1000};
  GmpInteger expected;
  mpz_set_ui(expected, 1);
  mpz_mul_2exp(expected, expected, 1002);
  mpz_sub_ui(expected, expected, 1);
  mpz_divexact_ui(expected, expected, 3);
  // The exponent 1022, less the hidden bit.
  GmpInteger exponent;
  mpz_set_ui(exponent, 1021);
  mpz_mul_2exp(exponent, exponent, 1000);
  mpz_add(expected, expected, exponent);
  EXPECT_EQ(IEEEFloat::from_number(QNumber(2, 3), f, IEEEFloat::ROUND_EVEN).get_bits(),
            QNumber(expected));
}

TEST(IEEEFloatFromNumber, OneExponentBitLeavesSubnormalValues) {
  // 0, 1/2, 1, 3/2, infinity
  expect_exact(1, -1, {1, 2}, 0b0'01);
  expect_exact(3, -1, {1, 2}, 0b0'11);
  expect_rounding(1, -2, 1, {1, 2}, {0b0'00, 0b0'00, 0b0'01});
  expect_rounding(7, -2, 1, {1, 2}, {0b1'00, 0b0'11, 0b1'00});
  expect_rounding(100, 0, 1, {1, 2}, {0b1'00, 0b0'11, 0b1'00});
}

TEST(IEEEFloatFromNumber, NoSignificandBitsLeavePowersOfTwo) {
  // 0, 1, 2, infinity
  expect_exact(1, 0, {2, 0}, 0b01);
  expect_exact(2, 0, {2, 0}, 0b10);
  expect_rounding(5, -2, 1, {2, 0}, {0b01, 0b01, 0b10});
  expect_rounding(5, 0, 1, {2, 0}, {0b11, 0b10, 0b11});
  IEEEFloat value({2, 0}, IEEEFloat::ROUND_EVEN);
  value.self_nan();
  EXPECT_EQ(bits_of(value), 0b011U);
}

TEST(IEEEFloatFromNumber, NoExponentBitsLeaveZero) {
  for (const Mode mode : all_modes) {
    EXPECT_EQ(rounded(QNumber(7), {0, 3}, mode), 0U);
    EXPECT_EQ(rounded(QNumber(-1, 7), {0, 0}, mode), 0U);
  }
  IEEEFloat value({0, 3}, IEEEFloat::ROUND_EVEN);
  value.self_inf(true);
  EXPECT_EQ(bits_of(value), 0b1'000U);
  value.self_nan();
  EXPECT_EQ(bits_of(value), 0b0'100U);
}

TEST(IEEEFloat, OfMoreThanFourGibibitsThrowsAndKeepsTheValue) {
  constexpr uint64_t most = 18446744073709551615U;
  for (const Format f : {Format{4294967296, 2}, Format{2, 4294967294}, Format{most, 1},
                         Format{1, most}, Format{most, most}}) {
    IEEEFloat value(f, IEEEFloat::ROUND_EVEN);
    EXPECT_THROW(value.self_inf(false), std::bad_alloc);
    EXPECT_THROW(value.self_nan(), std::bad_alloc);
    EXPECT_EQ(value.get_bits(), QNumber(0));
    EXPECT_THROW(IEEEFloat::from_number(QNumber(1, 3), f, IEEEFloat::ROUND_EVEN), std::bad_alloc);
    EXPECT_EQ(IEEEFloat::from_number(0, f, IEEEFloat::ROUND_EVEN).get_bits(), QNumber(0));
  }
}

// The doubles and floats of the processor are binary64 and binary32.
template <class Float, class Bits>
void expect_own_value(Bits bits, IEEEFloat::format format) {
  const Float expected = std::bit_cast<Float>(bits);
  const IEEEFloat value = IEEEFloat::from_bits(QNumber(bits), format);
  const std::optional<double> found = value.to_double();
  ASSERT_TRUE(found.has_value());
  if (std::isnan(expected)) {
    EXPECT_TRUE(std::isnan(*found));
    return;
  }
  EXPECT_EQ(std::bit_cast<uint64_t>(*found), std::bit_cast<uint64_t>(double{expected}));
  const std::optional<float> single = value.to_float();
  const bool fits = static_cast<double>(static_cast<float>(expected)) == double{expected};
  ASSERT_EQ(single.has_value(), fits) << bits;
  if (fits) {
    EXPECT_EQ(std::bit_cast<uint32_t>(*single),
              std::bit_cast<uint32_t>(static_cast<float>(expected)));
  }
}

TEST(IEEEFloatConversions, GiveTheDoublesAndFloatsOfTheProcessor) {
  std::mt19937_64 random(20261122);
  for (const uint64_t special :
       {uint64_t{0}, uint64_t{1} << 63, uint64_t{1}, uint64_t{0x7ff0000000000000},
        uint64_t{0xfff0000000000000}, uint64_t{0x7ff8000000000000}, uint64_t{0x7fefffffffffffff},
        uint64_t{0x000fffffffffffff}, uint64_t{0x0010000000000000}, uint64_t{0x47efffffe0000000},
        uint64_t{0x47effffff0000000}, uint64_t{0x36a0000000000000}, uint64_t{0x3690000000000000}}) {
    expect_own_value<double>(special, {11, 52});
  }
  for (const uint32_t special : {0U, 0x80000000U, 1U, 0x7f800000U, 0xff800000U, 0x7fc00000U,
                                 0x7f7fffffU, 0x007fffffU, 0x00800000U}) {
    expect_own_value<float>(special, {8, 23});
  }
  for (int i = 0; i < 20'000; ++i) {
    const uint64_t bits = random();
    expect_own_value<double>(bits, {11, 52});
    expect_own_value<double>(bits & ~((uint64_t{1} << 29) - 1), {11, 52});
    expect_own_value<float>(static_cast<uint32_t>(bits), {8, 23});
  }
}

TEST(IEEEFloatConversions, RefuseWhatDoesNotFit) {
  const auto from = [](const QNumber& value, IEEEFloat::format format) {
    return IEEEFloat::from_number(value, format, IEEEFloat::ROUND_EVEN);
  };
  // 2^-1074, the least double; half of it; 2^1023 and 2^1024.
  EXPECT_EQ(from(numbers::reciprocal(numbers::power_of_two(1074)), {15, 112}).to_double(),
            std::numeric_limits<double>::denorm_min());
  EXPECT_EQ(from(numbers::reciprocal(numbers::power_of_two(1075)), {15, 112}).to_double(),
            std::nullopt);
  EXPECT_EQ(from(numbers::power_of_two(1023), {15, 112}).to_double(), 0x1p1023);
  EXPECT_EQ(from(numbers::power_of_two(1024), {15, 112}).to_double(), std::nullopt);
  // 53 bits fit, 54 do not.
  const QNumber odd53 = numbers::sum(numbers::power_of_two(52), QNumber(1));
  const QNumber odd54 = numbers::sum(numbers::power_of_two(53), QNumber(1));
  EXPECT_EQ(from(odd53, {15, 112}).to_double(), 0x1.0000000000001p52);
  EXPECT_EQ(from(odd54, {15, 112}).to_double(), std::nullopt);
  EXPECT_EQ(from(odd53, {15, 112}).to_float(), std::nullopt);
  EXPECT_EQ(from(QNumber(3, 4), {5, 10}).to_float(), 0.75F);
  EXPECT_EQ(from(QNumber(-3, 4), {5, 10}).to_double(), -0.75);
}

}  // namespace
}  // namespace quill
