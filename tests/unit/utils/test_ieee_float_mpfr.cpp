// Rounding against MPFR: a number is rounded to the precision of a format within its range of
// exponents, and the result, with the direction in which it differs, to a subnormal value.

#include <gmp.h>
#include <gtest/gtest.h>
#include <mpfr.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <random>
#include <string>

#include "quill/utils/gmp_integer.h"
#include "quill/utils/ieee_float.h"
#include "quill/utils/qnumber.h"

namespace quill {
namespace {

using Format = IEEEFloat::format;

struct Rounding {
  IEEEFloat::rounding_mode mode;
  mpfr_rnd_t mpfr_mode;
};

constexpr std::array roundings = {Rounding{IEEEFloat::ROUND_EVEN, MPFR_RNDN},
                                  Rounding{IEEEFloat::ROUND_ZERO, MPFR_RNDZ},
                                  Rounding{IEEEFloat::ROUND_PLUS_INF, MPFR_RNDU},
                                  Rounding{IEEEFloat::ROUND_MINUS_INF, MPFR_RNDD}};

class Rational {
 public:
  Rational() { mpq_init(value); }
  ~Rational() { mpq_clear(value); }
  Rational(const Rational&) = delete;
  Rational& operator=(const Rational&) = delete;

  mpz_ptr num() { return mpq_numref(value); }
  mpz_ptr den() { return mpq_denref(value); }

  void scale(int64_t exponent) {
    if (exponent >= 0) {
      mpq_mul_2exp(value, value, static_cast<mp_bitcnt_t>(exponent));
    } else {
      mpq_div_2exp(value, value, static_cast<mp_bitcnt_t>(-exponent));
    }
  }

  QNumber number() const { return QNumber(mpq_numref(value), mpq_denref(value)); }

  mpq_t value;
};

// The largest binary exponent of a format.
int64_t bias_of(Format f) { return (int64_t{1} << (f.e - 1)) - 1; }

// MPFR rounds to a format while this lives.
class MpfrFormat {
 public:
  explicit MpfrFormat(Format f) : form(f), old_emin(mpfr_get_emin()), old_emax(mpfr_get_emax()) {
    mpfr_init2(x, static_cast<mpfr_prec_t>(f.m + 1));
    // MPFR's significands are less than 1, so that its exponents are larger by 1.
    const int64_t bias = bias_of(f);
    EXPECT_EQ(mpfr_set_emax(bias + 1), 0);
    EXPECT_EQ(mpfr_set_emin(1 - bias - static_cast<int64_t>(f.m) + 1), 0);
  }
  ~MpfrFormat() {
    mpfr_clear(x);
    mpfr_set_emin(old_emin);
    mpfr_set_emax(old_emax);
  }
  MpfrFormat(const MpfrFormat&) = delete;
  MpfrFormat& operator=(const MpfrFormat&) = delete;

  QNumber round(const Rational& rational, mpfr_rnd_t mode) {
    const int ternary = mpfr_set_q(x, rational.value, mode);
    mpfr_subnormalize(x, ternary, mode);
    GmpInteger bits;
    set_magnitude(bits);
    if (mpfr_signbit(x) != 0) mpz_setbit(bits, form.e + form.m);
    return QNumber(bits);
  }

 private:
  // The pattern of |x|.
  void set_magnitude(mpz_ptr bits) {
    GmpInteger field;
    if (mpfr_inf_p(x) != 0) {
      mpz_setbit(field, form.e);
      mpz_sub_ui(field, field, 1);
    } else if (mpfr_zero_p(x) == 0) {
      const int64_t bias = bias_of(form);
      const int64_t exponent = mpfr_get_z_2exp(bits, x);
      mpz_abs(bits, bits);
      const int64_t least = 1 - bias - static_cast<int64_t>(form.m);
      if (mpfr_get_exp(x) - 1 >= 1 - bias) {
        mpz_set_si(field, mpfr_get_exp(x) - 1 + bias);
        mpz_clrbit(bits, form.m);
      } else {
        const auto zeros = static_cast<mp_bitcnt_t>(least - exponent);
        EXPECT_NE(mpz_divisible_2exp_p(bits, zeros), 0);
        mpz_tdiv_q_2exp(bits, bits, zeros);
      }
    }
    mpz_mul_2exp(field, field, form.m);
    mpz_add(bits, bits, field);
  }

  Format form;
  mpfr_exp_t old_emin;
  mpfr_exp_t old_emax;
  mpfr_t x;
};

class MpfrOracle : public testing::TestWithParam<Format> {
 protected:
  void expect_same(Rational& rational) {
    for (int sign = 0; sign < 2; ++sign) {
      for (const Rounding& rounding : roundings) {
        const QNumber expected = oracle.round(rational, rounding.mpfr_mode);
        const QNumber bits =
            IEEEFloat::from_number(rational.number(), form, rounding.mode).get_bits();
        EXPECT_EQ(bits, expected) << rational.number() << " in mode " << rounding.mode;
      }
      mpq_neg(rational.value, rational.value);
    }
  }

  uint64_t below(uint64_t bound) { return random() % bound; }

  // Of `bits` bits at most, not 0.
  void random_integer(mpz_ptr z, uint64_t bits) {
    mpz_set_ui(z, 0);
    for (uint64_t i = 0; i < bits; i += 64) {
      mpz_mul_2exp(z, z, 64);
      mpz_add_ui(z, z, random());
    }
    mpz_fdiv_r_2exp(z, z, bits);
    if (mpz_sgn(z) == 0) mpz_set_ui(z, 1);
  }

  // A significand with its hidden bit, often one next to a power of two.
  void random_significand(mpz_ptr z) {
    mpz_set_ui(z, 0);
    mpz_setbit(z, form.m);
    switch (below(4)) {
      case 0:
        break;
      case 1: {
        GmpInteger rest;
        mpz_sub_ui(rest, z, 1);
        mpz_add(z, z, rest);
        break;
      }
      default: {
        GmpInteger rest;
        random_integer(rest, form.m);
        mpz_ior(z, z, rest);
        break;
      }
    }
  }

  // The range of exponents, as far as numbers of that size are fit to be written down.
  int64_t reach() const { return std::min(bias_of(form), int64_t{20000}); }

  // Expects the same for a significand times 2^exponent and for the numbers in eighths of the way
  // to the next significand, exactly there and just beside.
  void expect_same_from(mpz_srcptr significand, int64_t exponent) {
    for (unsigned eighth = 0; eighth < 8; ++eighth) {
      for (int beside = -1; beside <= 1; ++beside) {
        Rational rational;
        mpz_mul_ui(rational.num(), significand, 8000);
        mpz_add_ui(rational.num(), rational.num(), eighth * 1000);
        if (beside < 0) mpz_sub_ui(rational.num(), rational.num(), 1);
        if (beside > 0) mpz_add_ui(rational.num(), rational.num(), 1);
        mpz_set_ui(rational.den(), 8000);
        mpq_canonicalize(rational.value);
        rational.scale(exponent);
        expect_same(rational);
      }
    }
  }

  Format form = GetParam();
  MpfrFormat oracle{form};
  std::mt19937_64 random{754};
};

// For formats whose bounds can be written down.
class MpfrOracleAtBounds : public MpfrOracle {};

std::string format_name(const testing::TestParamInfo<Format>& test) {
  return std::to_string(test.param.e) + "x" + std::to_string(test.param.m);
}

TEST_P(MpfrOracle, RandomQuotients) {
  for (int i = 0; i < 400; ++i) {
    Rational rational;
    random_integer(rational.num(), 1 + below(2 * form.m + 10));
    random_integer(rational.den(), 1 + below(2 * form.m + 10));
    mpq_canonicalize(rational.value);
    // Mostly within the range of normal values, at times beyond it.
    const auto range = static_cast<uint64_t>(reach()) + form.m + 10;
    const auto exponent = static_cast<int64_t>(below(2 * range + 1));
    rational.scale(exponent - static_cast<int64_t>(range));
    expect_same(rational);
  }
}

TEST_P(MpfrOracle, BetweenNeighbours) {
  for (int i = 0; i < 20; ++i) {
    GmpInteger significand;
    random_significand(significand);
    const auto range = static_cast<uint64_t>(reach());
    const auto exponent = static_cast<int64_t>(below(2 * range + 1));
    expect_same_from(significand, exponent - static_cast<int64_t>(range + form.m));
  }
}

TEST_P(MpfrOracleAtBounds, AroundTheLargestValue) {
  const int64_t step = bias_of(form) - static_cast<int64_t>(form.m);
  GmpInteger significand;
  mpz_setbit(significand, form.m + 1);
  // The two below 2^(bias+1), that one, and the next.
  mpz_sub_ui(significand, significand, 2);
  for (int i = 0; i < 4; ++i) {
    expect_same_from(significand, step);
    mpz_add_ui(significand, significand, 1);
  }
}

TEST_P(MpfrOracleAtBounds, AroundTheSmallestNormalValue) {
  const int64_t step = 1 - bias_of(form) - static_cast<int64_t>(form.m);
  GmpInteger significand;
  mpz_setbit(significand, form.m);
  mpz_sub_ui(significand, significand, 2);
  for (int i = 0; i < 4; ++i) {
    expect_same_from(significand, step);
    mpz_add_ui(significand, significand, 1);
  }
}

TEST_P(MpfrOracleAtBounds, SubnormalValues) {
  const int64_t step = 1 - bias_of(form) - static_cast<int64_t>(form.m);
  GmpInteger significand;
  for (unsigned i = 1; i < 4; ++i) {
    mpz_set_ui(significand, i);
    expect_same_from(significand, step);
    expect_same_from(significand, step - 1);
    expect_same_from(significand, step - 2);
    expect_same_from(significand, step - 3);
  }
  for (int i = 0; i < 10; ++i) {
    random_integer(significand, 1 + below(form.m));
    expect_same_from(significand, step);
  }
}

const auto formats = testing::Values(
    Format{2, 2}, Format{2, 3}, Format{2, 5}, Format{2, 60}, Format{2, 100}, Format{3, 2},
    Format{3, 3}, Format{3, 7}, Format{3, 500}, Format{4, 3}, Format{5, 2}, Format{5, 10},
    Format{6, 9}, Format{7, 16}, Format{8, 7}, Format{8, 10}, Format{8, 23}, Format{8, 54},
    Format{8, 55}, Format{8, 200}, Format{9, 63}, Format{10, 5}, Format{10, 64}, Format{11, 20},
    Format{11, 52}, Format{12, 65}, Format{13, 2}, Format{15, 63}, Format{15, 112}, Format{17, 40},
    Format{19, 236}, Format{18, 2});

const auto formats_of_wide_exponents =
    testing::Values(Format{32, 31}, Format{40, 8}, Format{60, 3}, Format{60, 113});

INSTANTIATE_TEST_SUITE_P(IEEEFloatFromNumber, MpfrOracle, formats, format_name);
INSTANTIATE_TEST_SUITE_P(IEEEFloatFromNumberWide, MpfrOracle, formats_of_wide_exponents,
                         format_name);
INSTANTIATE_TEST_SUITE_P(IEEEFloatFromNumber, MpfrOracleAtBounds, formats, format_name);

}  // namespace
}  // namespace quill
