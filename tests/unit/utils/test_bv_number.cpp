#include <gtest/gtest.h>

#include <cstdint>
#include <new>
#include <string>

#include "quill/utils/bv_number.h"
#include "quill/utils/qnumber.h"

namespace quill {
namespace {

QNumber big_target() { return QNumber(int64_t{-9223372036854775807} - 1); }

TEST(Pow2, UpTo62IsSmall) {
  QNumber out;
  BVNumber::pow2(0, &out);
  EXPECT_EQ(out.num, 1);
  EXPECT_EQ(out.den, 1);
  BVNumber::pow2(1, &out);
  EXPECT_EQ(out.num, 2);
  BVNumber::pow2(61, &out);
  EXPECT_EQ(out.num, 2305843009213693952);
  EXPECT_EQ(out.den, 1);
  BVNumber::pow2(62, &out);
  EXPECT_EQ(out.num, 4611686018427387904);
  EXPECT_EQ(out.den, 1);
}

TEST(Pow2, From63OnIsBig) {
  QNumber out;
  BVNumber::pow2(63, &out);
  EXPECT_TRUE(out.is_big());
  EXPECT_EQ(out.to_str(), "9223372036854775808");
  QNumber another;
  BVNumber::pow2(64, &another);
  EXPECT_TRUE(another.is_big());
  EXPECT_EQ(another.to_str(), "18446744073709551616");
}

TEST(Pow2, ReplacesTheWholeNumber) {
  QNumber out(22, 7);
  BVNumber::pow2(3, &out);
  EXPECT_EQ(out, QNumber(8));
  out = QNumber(22, 7);
  BVNumber::pow2(62, &out);
  EXPECT_EQ(out, QNumber(4611686018427387904));
}

TEST(Pow2, ABigTargetStaysBig) {
  for (const uint64_t n : {uint64_t{0}, uint64_t{61}, uint64_t{62}}) {
    QNumber out = big_target();
    BVNumber::pow2(n, &out);
    EXPECT_TRUE(out.is_big());
    EXPECT_EQ(out, QNumber(int64_t{1} << n));
  }
  QNumber out = big_target();
  BVNumber::pow2(64, &out);
  EXPECT_EQ(out.to_str(), "18446744073709551616");
}

TEST(Pow2, ABigTargetLosesItsDenominator) {
  QNumber out = QNumber::from_string("18446744073709551616/3");
  BVNumber::pow2(4, &out);
  EXPECT_TRUE(out.is_big());
  EXPECT_EQ(out, QNumber(16));
}

TEST(Pow2, OfAThousandHasAllItsDigits) {
  QNumber out;
  BVNumber::pow2(1000, &out);
  const std::string digits = out.to_str();
  EXPECT_EQ(digits.size(), 302U);
  EXPECT_EQ(digits.substr(0, 12), "107150860718");
  EXPECT_EQ(digits.substr(290), "205668069376");
}

TEST(Pow2, BeyondTheLongestIntegerThrowsAndKeepsTheTarget) {
  QNumber out(5);
  EXPECT_THROW(BVNumber::pow2(18446744073709551615U, &out), std::bad_alloc);
  EXPECT_THROW(BVNumber::pow2(uint64_t{1} << 38, &out), std::bad_alloc);
  EXPECT_EQ(out, QNumber(5));
}

}  // namespace
}  // namespace quill
