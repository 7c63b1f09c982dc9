#include <gmp.h>
#include <gtest/gtest.h>

#include <concepts>
#include <cstdint>
#include <iomanip>
#include <limits>
#include <new>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>

#include "quill/utils/exception.h"
#include "quill/utils/gmp_integer.h"
#include "quill/utils/qnumber.h"
#include "tests/support/failing_memory.h"

namespace quill {
namespace {

constexpr int64_t min_int64 = std::numeric_limits<int64_t>::min();
constexpr int64_t max_int64 = std::numeric_limits<int64_t>::max();

// A GMP integer from its decimal text.
struct Mpz : GmpInteger {
  explicit Mpz(const char* text) { mpz_set_str(*this, text, 10); }
};

QNumber from_mpz(const char* z) { return QNumber(Mpz(z)); }
QNumber from_mpz(const char* n, const char* d) { return QNumber(Mpz(n), Mpz(d)); }

// The pair as it is, in whatever form.
std::string text(const QNumber& number) {
  std::ostringstream out;
  out << number;
  return out.str();
}

std::string normal(QNumber number) {
  number.normalize();
  return text(number);
}

// A number in the big form, with any value.
QNumber big(const char* n, const char* d = "1") {
  QNumber number = from_mpz("9223372036854775808");
  number = QNumber::from_string(std::string(n) + "/" + d);
  return number;
}

// --- Construction ---

TEST(QNumber, IsTwoWords) { EXPECT_EQ(sizeof(QNumber), 16U); }

TEST(QNumber, TheDefaultIsZero) {
  const QNumber zero;
  EXPECT_EQ(zero.num, 0);
  EXPECT_EQ(zero.den, 1);
}

TEST(QNumber, EveryMachineIntegerIsANumber) {
  EXPECT_EQ(text(QNumber(0)), "0");
  EXPECT_EQ(text(QNumber(-3)), "-3");
  EXPECT_EQ(text(QNumber(7U)), "7");
  EXPECT_EQ(text(QNumber(7L)), "7");
  EXPECT_EQ(text(QNumber(7ULL)), "7");
  EXPECT_EQ(text(QNumber(static_cast<short>(-5))), "-5");
  EXPECT_EQ(text(QNumber(static_cast<unsigned char>(200))), "200");
  EXPECT_EQ(text(QNumber(true)), "1");
  const QNumber implicit = -12;
  EXPECT_EQ(text(implicit), "-12");
}

TEST(QNumber, FloatingPointValuesAndTextsAreNoNumbers) {
  EXPECT_FALSE((std::constructible_from<QNumber, double>));
  EXPECT_FALSE((std::constructible_from<QNumber, const char*>));
  EXPECT_FALSE((std::convertible_to<mpz_srcptr, QNumber>));
}

TEST(QNumber, IntegersStrictlyBetweenTheBoundsAreSmall) {
  EXPECT_EQ(QNumber(max_int64).num, max_int64);
  EXPECT_EQ(QNumber(max_int64).den, 1);
  EXPECT_EQ(QNumber(-max_int64).num, -max_int64);
  EXPECT_FALSE(QNumber(uint64_t{9223372036854775807U}).is_big());
}

TEST(QNumber, IntegersOutsideTheBoundsAreBig) {
  EXPECT_TRUE(QNumber(min_int64).is_big());
  EXPECT_EQ(text(QNumber(min_int64)), "-9223372036854775808");
  EXPECT_TRUE(QNumber(uint64_t{9223372036854775808U}).is_big());
  EXPECT_EQ(text(QNumber(uint64_t{18446744073709551615U})), "18446744073709551615");
}

TEST(QNumber, APairIsKeptAsGiven) {
  const QNumber number(4, -6);
  EXPECT_EQ(number.num, 4);
  EXPECT_EQ(number.den, -6);
  const QNumber zero(0, 5U);
  EXPECT_EQ(zero.num, 0);
  EXPECT_EQ(zero.den, 5);
}

TEST(QNumber, APairIsBigWhenEitherPartIsOutsideTheBounds) {
  EXPECT_FALSE(QNumber(max_int64, -max_int64).is_big());
  EXPECT_EQ(text(QNumber(min_int64, 6)), "-9223372036854775808/6");
  EXPECT_TRUE(QNumber(min_int64, 6).is_big());
  EXPECT_EQ(text(QNumber(6, min_int64)), "6/-9223372036854775808");
  EXPECT_TRUE(QNumber(6, min_int64).is_big());
  EXPECT_EQ(text(QNumber(-1, uint64_t{18446744073709551615U})), "-1/18446744073709551615");
}

TEST(QNumber, AZeroDenominatorIsRefused) {
  EXPECT_THROW(QNumber(4, 0), Exception);
  EXPECT_THROW(QNumber(uint64_t{18446744073709551615U}, 0L), Exception);
  EXPECT_THROW(from_mpz("4", "0"), Exception);
  try {
    QNumber number(-4, 0);
    FAIL();
  } catch (const Exception& error) {
    EXPECT_STREQ(error.what(), "zero denominator in -4/0");
  }
  try {
    QNumber number = from_mpz("-18446744073709551616", "0");
    FAIL();
  } catch (const Exception& error) {
    EXPECT_STREQ(error.what(), "zero denominator in -18446744073709551616/0");
  }
}

// From one GMP integer, every value of a 64-bit word except the lowest is small.
TEST(QNumber, OneGmpIntegerIsSmallUpTo64Bits) {
  EXPECT_EQ(from_mpz("9223372036854775807").num, max_int64);
  EXPECT_EQ(from_mpz("9223372036854775807").den, 1);
  EXPECT_EQ(from_mpz("-9223372036854775807").num, -max_int64);
  EXPECT_EQ(from_mpz("2147483648").num, 2147483648);
  EXPECT_TRUE(from_mpz("9223372036854775808").is_big());
  EXPECT_TRUE(from_mpz("-9223372036854775808").is_big());
  EXPECT_EQ(text(from_mpz("-9223372036854775808")), "-9223372036854775808");
}

// From two GMP integers only 32-bit parts are small.
TEST(QNumber, TwoGmpIntegersAreSmallUpTo32Bits) {
  EXPECT_EQ(from_mpz("2147483647", "-2147483648").num, 2147483647);
  EXPECT_EQ(from_mpz("2147483647", "-2147483648").den, -2147483648);
  EXPECT_TRUE(from_mpz("2147483648", "1").is_big());
  EXPECT_TRUE(from_mpz("-2147483649", "1").is_big());
  EXPECT_TRUE(from_mpz("1", "2147483648").is_big());
  EXPECT_TRUE(from_mpz("1", "-2147483649").is_big());
  EXPECT_EQ(text(from_mpz("2147483648", "6")), "2147483648/6");
}

// --- Copying, moving, assigning ---

TEST(QNumber, CopiesAreIndependent) {
  QNumber number = big("5", "3");
  const QNumber copy(number);
  EXPECT_TRUE(copy.is_big());
  EXPECT_NE(copy.num, number.num);
  number = QNumber(1);
  EXPECT_EQ(text(copy), "5/3");
  const QNumber small(QNumber(1, 3));
  EXPECT_EQ(text(QNumber(small)), "1/3");
}

TEST(QNumber, MovingTakesTheBlock) {
  EXPECT_TRUE(std::is_nothrow_move_constructible_v<QNumber>);
  EXPECT_TRUE(std::is_nothrow_move_assignable_v<QNumber>);
  QNumber source = big("5", "3");
  const int64_t block = source.num;
  QNumber target(std::move(source));
  EXPECT_EQ(target.num, block);
  EXPECT_EQ(text(target), "5/3");
  source = QNumber(9);  // a number that was moved from takes a value again
  EXPECT_EQ(text(source), "9");
}

TEST(QNumber, AssignmentFollowsTheFormsOfBothSides) {
  QNumber small(1, 2);
  small = QNumber(3, 4);
  EXPECT_FALSE(small.is_big());
  EXPECT_EQ(text(small), "3/4");

  const QNumber source = big("7", "5");
  QNumber grown(1, 2);
  grown = source;
  EXPECT_TRUE(grown.is_big());
  EXPECT_EQ(text(grown), "7/5");
  EXPECT_NE(grown.num, source.num);

  QNumber other = big("1", "9");
  const int64_t block = other.num;
  other = source;
  EXPECT_EQ(other.num, block);
  EXPECT_EQ(text(other), "7/5");
}

TEST(QNumber, ABigTargetStaysBig) {
  QNumber target = from_mpz("18446744073709551616");
  const QNumber source(-3, 7);
  const int64_t block = target.num;
  target = source;
  EXPECT_TRUE(target.is_big());
  EXPECT_EQ(target.num, block);
  EXPECT_EQ(text(target), "-3/7");
  EXPECT_EQ(target, QNumber(-3, 7));
  EXPECT_EQ(QNumber(-3, 7), target);
  target.normalize();
  EXPECT_TRUE(target.is_big());
}

TEST(QNumber, ABigTargetStaysBigWhenATemporaryIsAssigned) {
  QNumber target = from_mpz("18446744073709551616");
  target = QNumber(-3, 7);
  EXPECT_TRUE(target.is_big());
  EXPECT_EQ(target, QNumber(-3, 7));
}

TEST(QNumber, AssigningToItselfChangesNothing) {
  QNumber a = big("5", "3");
  QNumber& same = a;
  a = same;
  EXPECT_EQ(text(a), "5/3");
  a = std::move(same);
  EXPECT_EQ(text(a), "5/3");
  QNumber b(1, 2);
  QNumber& same_b = b;
  b = same_b;
  b = std::move(same_b);
  EXPECT_EQ(text(b), "1/2");
}

TEST(QNumber, SwappingExchangesValuesAndForms) {
  QNumber a = big("5", "3");
  QNumber b(1, 2);
  swap(a, b);
  EXPECT_FALSE(a.is_big());
  EXPECT_EQ(text(a), "1/2");
  EXPECT_TRUE(b.is_big());
  EXPECT_EQ(text(b), "5/3");
  std::swap(a, b);
  EXPECT_EQ(text(a), "5/3");
  EXPECT_EQ(text(b), "1/2");
}

TEST(QNumber, AFailedAllocationLeavesTheTargetAsItWas) {
  const QNumber source = big("5", "3");
  QNumber target(1, 2);
  {
    testing::FailingMemory failing(0);
    EXPECT_THROW(target = source, std::bad_alloc);
    EXPECT_THROW(QNumber copy(source), std::bad_alloc);
    EXPECT_THROW(QNumber number(min_int64), std::bad_alloc);
  }
  EXPECT_EQ(text(target), "1/2");
}

TEST(QNumber, SmallNumbersAllocateNothing) {
  testing::FailingMemory failing(0);
  QNumber a(22, -8);
  a.normalize();
  QNumber b = a;
  b = QNumber(-11, 4);
  EXPECT_TRUE(a == b);
}

// --- Normalising ---

TEST(QNumber, NormalisesSmallPairs) {
  EXPECT_EQ(normal(QNumber(0, 5)), "0");
  EXPECT_EQ(normal(QNumber(0, -5)), "0");
  EXPECT_EQ(normal(QNumber(4, -6)), "-2/3");
  EXPECT_EQ(normal(QNumber(-4, -6)), "2/3");
  EXPECT_EQ(normal(QNumber(-4, 6)), "-2/3");
  EXPECT_EQ(normal(QNumber(6, 3)), "2");
  EXPECT_EQ(normal(QNumber(5, 7)), "5/7");
  EXPECT_EQ(normal(QNumber(max_int64, -max_int64)), "-1");
  EXPECT_EQ(normal(QNumber(6000000000, 4000000000)), "3/2");
}

TEST(QNumber, NormalisesBigPairsInPlace) {
  QNumber zero = from_mpz("0", "18446744073709551616");
  zero.normalize();
  EXPECT_TRUE(zero.is_big());
  EXPECT_EQ(text(zero), "0");
  QNumber number = from_mpz("36893488147419103232", "-6");
  number.normalize();
  EXPECT_TRUE(number.is_big());
  EXPECT_EQ(text(number), "-18446744073709551616/3");
  EXPECT_EQ(normal(from_mpz("18446744073709551616", "-1")), "-18446744073709551616");
  EXPECT_EQ(normal(from_mpz("-18446744073709551616", "-18446744073709551616")), "1");
}

TEST(QNumber, NormalisingNeverChangesTheForm) {
  QNumber number = from_mpz("9223372036854775808", "9223372036854775808");
  number.normalize();
  EXPECT_TRUE(number.is_big());
  EXPECT_EQ(number, QNumber(1));
}

// --- Comparing ---

TEST(QNumber, ComparesWithinAndAcrossForms) {
  EXPECT_EQ(QNumber(1, 3), QNumber(1, 3));
  EXPECT_NE(QNumber(1, 3), QNumber(1, 4));
  EXPECT_NE(QNumber(1, 3), QNumber(2, 3));
  EXPECT_EQ(big("1", "3"), big("1", "3"));
  EXPECT_NE(big("1", "3"), big("1", "4"));
  EXPECT_NE(big("1", "3"), big("2", "3"));
  EXPECT_EQ(big("1", "3"), QNumber(1, 3));
  EXPECT_NE(QNumber(1, 4), big("1", "3"));
  EXPECT_NE(big("2", "3"), QNumber(1, 3));
  EXPECT_EQ(QNumber(-7), -7);
}

TEST(QNumber, ComparesPartByPartWithoutNormalising) { EXPECT_NE(QNumber(2, 4), QNumber(1, 2)); }

TEST(QNumber, KnowsZeroSignAndIntegers) {
  EXPECT_TRUE(QNumber(0).is_zero());
  EXPECT_TRUE(big("0").is_zero());
  EXPECT_FALSE(big("-1", "2").is_zero());
  EXPECT_TRUE(QNumber(-1, 2).is_negative());
  EXPECT_TRUE(big("-1", "2").is_negative());
  EXPECT_FALSE(QNumber(0).is_negative());
  EXPECT_FALSE(big("3").is_negative());
  EXPECT_TRUE(QNumber(3).is_integer());
  EXPECT_TRUE(big("3").is_integer());
  EXPECT_FALSE(QNumber(3, 2).is_integer());
  EXPECT_FALSE(big("3", "2").is_integer());
}

// --- Hashing ---

TEST(QNumber, TheSmallHashRotatesTheNumerator) {
  EXPECT_EQ(QNumber(3).hash(), 12884901890U);  // (3 << 32) + 2
  EXPECT_EQ(QNumber(0).hash(), 2U);
  EXPECT_EQ(QNumber(-22, 7).hash(), 18446743983515238413U);
  EXPECT_EQ(QNumber(4294967296).hash(), 3U);  // 2^32 comes around to 1
  EXPECT_EQ(Hasher<QNumber>()(QNumber(3)), 12884901890U);
}

TEST(QNumber, TheBigHashMixesTheNumeratorsLimbsTwice) {
  EXPECT_EQ(from_mpz("9223372036854775808").hash(), 2305843009213693952U);
  EXPECT_EQ(from_mpz("18446744073709551616").hash(), 65U);
  EXPECT_EQ(from_mpz("18446744073709551621").hash(), 21329U);
  EXPECT_EQ(big("5", "4294967296").hash(), 323U);
  EXPECT_EQ(
      big("515377520732011331036461129765621272702107522001", "1180591620717411303425").hash(),
      14105642302820656655U);
}

// The second pass takes from the denominator only its number of limbs.
TEST(QNumber, TheBigHashSeesOnlyTheLengthOfTheDenominator) {
  EXPECT_EQ(big("129127208515966861317", "55340232221128654849").hash(), 1350441U);
  EXPECT_EQ(big("129127208515966861317", "1267650600228229401496703205377").hash(), 1350441U);
  EXPECT_NE(big("129127208515966861317").hash(), 1350441U);
}

TEST(QNumber, BehindTheNumeratorTheSecondPassMixesZeros) {
  // One limb over three.
  EXPECT_EQ(big("1099511627776", "1361129467683753853853498429727072845825").hash(),
            291691930813726720U);
}

TEST(QNumber, TheBigHashIgnoresTheSign) {
  EXPECT_EQ(from_mpz("-18446744073709551621").hash(), 21329U);
}

// --- Text ---

TEST(QNumber, PrintsIntegersWithoutBar) {
  EXPECT_EQ(text(QNumber(5, 1)), "5");
  EXPECT_EQ(text(QNumber(-3)), "-3");
  EXPECT_EQ(text(QNumber(-1, 2)), "-1/2");
  EXPECT_EQ(text(QNumber(-22, 7)), "-22/7");
  EXPECT_EQ(text(from_mpz("-340282366920938463463374607431768211456")),
            "-340282366920938463463374607431768211456");
  EXPECT_EQ(text(big("-1", "3")), "-1/3");
  EXPECT_EQ(text(big("9", "1")), "9");
  EXPECT_EQ(text(big("0")), "0");
}

TEST(QNumber, FlagsForIntegersDoNotReachTheDigits) {
  std::ostringstream out;
  out << std::hex << std::showpos << QNumber(17) << "," << std::setw(5) << QNumber(1, 2);
  EXPECT_EQ(out.str(), "17,  1/2");
}

TEST(QNumber, ToStrIsTheTextOfTheValue) {
  EXPECT_EQ(QNumber(7).to_str(), "7");
  EXPECT_EQ(QNumber(-22, 7).to_str(), "-22/7");
  EXPECT_EQ(from_mpz("18446744073709551616").to_str(), "18446744073709551616");
  EXPECT_EQ(big("-22", "7").to_str(), "-22/7");
}

TEST(QNumber, ToStrOfAnUnnormalisedPairIsThatOfItsValue) {
  const QNumber number(4, -2);
  EXPECT_EQ(number.to_str(), "-2");
  EXPECT_EQ(text(number), "4/-2");
  EXPECT_EQ(QNumber(0, 5).to_str(), "0");
  EXPECT_EQ(from_mpz("18446744073709551616", "-18446744073709551616").to_str(), "-1");
}

// --- Reading ---

TEST(QNumberFromString, ReadsIntegersFractionsAndDecimals) {
  EXPECT_EQ(text(QNumber::from_string("7")), "7");
  EXPECT_EQ(text(QNumber::from_string("-22/7")), "-22/7");
  EXPECT_EQ(text(QNumber::from_string("1.25")), "5/4");
  EXPECT_EQ(text(QNumber::from_string("-0.5")), "-1/2");
  EXPECT_EQ(text(QNumber::from_string("3.00")), "3");
  EXPECT_EQ(text(QNumber::from_string("007")), "7");
  EXPECT_EQ(text(QNumber::from_string("010/04")), "5/2");
}

TEST(QNumberFromString, Normalises) {
  EXPECT_EQ(text(QNumber::from_string("-4/6")), "-2/3");
  EXPECT_EQ(text(QNumber::from_string("6/3")), "2");
  for (const char* zero : {"0", "-0", "0/5", "-0/5", "0.000", "-0.0"}) {
    const QNumber number = QNumber::from_string(zero);
    EXPECT_EQ(number.num, 0) << zero;
    EXPECT_EQ(number.den, 1) << zero;
  }
}

TEST(QNumberFromString, IsSmallWheneverBothPartsFit64Bits) {
  for (const char* small :
       {"9223372036854775807", "-9223372036854775807", "2147483648/3", "1/9223372036854775807",
        "18446744073709551616/36893488147419103232", "1.0000000000000000000000000000000"}) {
    EXPECT_FALSE(QNumber::from_string(small).is_big()) << small;
  }
  for (const char* large : {"9223372036854775808", "-9223372036854775808", "1/9223372036854775808",
                            "9223372036854775808/9223372036854775807", "0.0000000000000000001"}) {
    EXPECT_TRUE(QNumber::from_string(large).is_big()) << large;
  }
  EXPECT_EQ(text(QNumber::from_string("18446744073709551616/36893488147419103232")), "1/2");
}

TEST(QNumberFromString, RefusesEverythingElseAndNamesIt) {
  for (const std::string wrong :
       {"",      "-",   "+3",   " 7",  "7 ",    "1.",    ".5",    "-.5",   "1e3",
        "1/",    "/2",  "1/-2", "--1", "1/2/3", "1.2.3", "1/2.5", "1.5/2", "0x10",
        "1_000", "1,5", "a",    "\n7", "1/ 2",  "1 /2",  "-/2",   "1..2",  "\xd9\xa3"}) {
    try {
      QNumber::from_string(wrong);
      ADD_FAILURE() << "accepted: " << wrong;
    } catch (const Exception& error) {
      EXPECT_EQ(error.what(), "not a number: \"" + wrong + "\"");
    }
  }
  EXPECT_THROW(QNumber::from_string(std::string("7\0", 2)), Exception);
  EXPECT_THROW(QNumber::from_string(std::string("7\0008", 3)), Exception);
}

TEST(QNumberFromString, RefusesZeroDenominators) {
  for (const std::string wrong : {"1/0", "-1/0", "0/0", "1/000"}) {
    try {
      QNumber::from_string(wrong);
      ADD_FAILURE() << "accepted: " << wrong;
    } catch (const Exception& error) {
      EXPECT_EQ(error.what(), "zero denominator in \"" + wrong + "\"");
    }
  }
}

// Far beyond what an algorithm of quadratic time would finish while somebody waits.
TEST(QNumberFromString, ReadsAndPrintsAMillionDigits) {
  std::string digits(1'000'000, '7');
  digits[0] = '-';
  const QNumber number = QNumber::from_string(digits);
  EXPECT_TRUE(number.is_integer());
  EXPECT_EQ(number.to_str(), digits);
}

TEST(QNumberFromString, ReadsLongDecimals) {
  const std::string zeros(100'000, '0');
  EXPECT_EQ(text(QNumber::from_string("2." + zeros)), "2");
  EXPECT_EQ(text(QNumber::from_string("0." + zeros + "1")), "1/1" + zeros + "0");
}

}  // namespace
}  // namespace quill
