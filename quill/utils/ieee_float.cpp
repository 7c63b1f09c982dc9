// Rounding of rational numbers, and the patterns of the special values.
//
// Read as numbers without their sign bit, the patterns of a format enumerate its finite values in
// increasing order, followed by infinity. Rounding therefore finds the pattern of the largest value
// that is not above the number's magnitude and then adds 1 or not. Carries into the exponent, from
// the largest subnormal value to the smallest normal one, and from the largest finite value to
// infinity need no special treatment.

#include "quill/utils/ieee_float.h"

#include <gmp.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>

#include "quill/utils/exception.h"
#include "quill/utils/gmp_integer.h"
#include "quill/utils/qnumber_arithmetic.h"

namespace quill {

namespace {

// GMP ends the process when it cannot allocate, so it is never asked for more than 512 MiB.
constexpr uint64_t max_bits = uint64_t{1} << 32;

// The number of bits in a pattern, or 2^64 - 1 if there are more.
uint64_t width(IEEEFloat::format f) {
  constexpr uint64_t most = std::numeric_limits<uint64_t>::max();
  return f.m >= most - 1 || f.e > most - 1 - f.m ? most : f.e + f.m + 1;
}

void require_length(uint64_t bits) {
  if (bits > max_bits) throw std::bad_alloc();
}

// The number of bits in the magnitude of a number that is not 0.
int64_t length(mpz_srcptr z) { return static_cast<int64_t>(mpz_sizeinbase(z, 2)); }

// The numerator and the denominator of a number, reduced or not, with a positive denominator.
void set_parts(mpz_ptr n, mpz_ptr d, const QNumber& number) {
  numbers::get_numerator(n, number);
  numbers::get_denominator(d, number);
  if (mpz_sgn(d) < 0) {
    mpz_neg(n, n);
    mpz_neg(d, d);
  }
}

// Multiplies by 2^count.
void shift_left(mpz_ptr z, int64_t count) {
  require_length(mpz_sizeinbase(z, 2) + static_cast<uint64_t>(count));
  mpz_mul_2exp(z, z, static_cast<mp_bitcnt_t>(count));
}

// The k with 2^k <= n/d < 2^(k+1), for positive n and d.
int64_t floor_log2(mpz_srcptr n, mpz_srcptr d) {
  const int64_t k = length(n) - length(d);
  GmpInteger scaled;
  mpz_set(scaled, k >= 0 ? d : n);
  shift_left(scaled, k >= 0 ? k : -k);
  const bool reached = k >= 0 ? mpz_cmp(n, scaled) >= 0 : mpz_cmp(scaled, d) >= 0;
  return reached ? k : k - 1;
}

// The pattern of positive infinity.
void set_infinity(mpz_ptr z, IEEEFloat::format f) {
  require_length(width(f));
  mpz_set_ui(z, 1);
  mpz_mul_2exp(z, z, f.e);
  mpz_sub_ui(z, z, 1);
  mpz_mul_2exp(z, z, f.m);
}

}  // namespace

IEEEFloat IEEEFloat::from_bits(const QNumber& bits, format f) {
  GmpInteger n;
  GmpInteger d;
  set_parts(n, d, bits);
  if (mpz_divisible_p(n, d) == 0) {
    throw Exception("a floating-point bit pattern can't be fractional: " + bits.to_str());
  }
  if (mpz_sgn(n) < 0) {
    throw Exception("a floating-point bit pattern can't be negative: " + bits.to_str());
  }
  mpz_divexact(n, n, d);
  // GMP says that zero has one bit, and every format has at least one, the sign.
  if (mpz_sizeinbase(n, 2) > width(f)) {
    throw Exception("the number ") << bits.to_str() << " doesn't fit in " << width(f) << " bits";
  }
  // No rounding takes place here.
  IEEEFloat result(f, ROUND_EVEN);
  result.pattern = QNumber(n);
  return result;
}

IEEEFloat IEEEFloat::from_number(const QNumber& value, format f, rounding_mode rounding) {
  IEEEFloat result(f, rounding);
  result.round(value);
  return result;
}

void IEEEFloat::round(const QNumber& value) {
  GmpInteger n;
  GmpInteger d;
  set_parts(n, d, value);
  if (mpz_sgn(n) == 0 || form.e == 0) return;
  const bool negative = mpz_sgn(n) < 0;
  mpz_abs(n, n);
  // In wider formats all patterns are too long, except those of numbers so close to zero that their
  // denominators are too long.
  require_length(width(form));

  // The binary exponents of normal values range from 1 - bias to bias. The exponent of any number
  // is far below 2^61, so a bias of this size leads to the same decisions as all larger ones.
  const int64_t bias = (int64_t{1} << (std::min(form.e, uint64_t{62}) - 1)) - 1;
  const int64_t least = 1 - bias;
  const auto m = static_cast<int64_t>(form.m);
  const int64_t exponent = floor_log2(n, d);

  // z becomes the pattern of the largest value not above the magnitude; `half` tells how the
  // remainder compares with half a step.
  GmpInteger z;
  bool exact = false;
  int half;
  if (exponent > bias) {
    set_infinity(z, form);
    mpz_sub_ui(z, z, 1);
    half = 1;
  } else if (exponent < least - m - 1) {
    half = -1;
  } else {
    const int64_t scale = std::max(exponent, least);
    const int64_t step = scale - m;
    shift_left(step < 0 ? n : d, step < 0 ? -step : step);
    GmpInteger quotient;
    GmpInteger rest;
    mpz_tdiv_qr(quotient, rest, n, d);
    exact = mpz_sgn(rest) == 0;
    shift_left(rest, 1);
    half = mpz_cmp(rest, d);

    // The exponent field is scale - least, computed with the true bias. The hidden bit of a normal
    // value, which the quotient contains, adds the 1 that this is short of.
    mpz_set_ui(z, 1);
    mpz_mul_2exp(z, z, form.e - 1);
    mpz_sub_ui(z, z, 2);
    if (scale >= 0) {
      mpz_add_ui(z, z, static_cast<unsigned long>(scale));
    } else {
      mpz_sub_ui(z, z, static_cast<unsigned long>(-scale));
    }
    mpz_mul_2exp(z, z, form.m);
    mpz_add(z, z, quotient);
  }

  bool away = false;
  switch (mode) {
    case ROUND_EVEN:
      away = half > 0 || (half == 0 && mpz_odd_p(z) != 0);
      break;
    case ROUND_ZERO:
      break;
    case ROUND_PLUS_INF:
      away = !exact && !negative;
      break;
    case ROUND_MINUS_INF:
      away = !exact && negative;
      break;
  }
  if (away) mpz_add_ui(z, z, 1);
  if (negative) mpz_setbit(z, form.e + form.m);
  pattern = QNumber(z);
}

void IEEEFloat::self_inf(bool negative) {
  GmpInteger z;
  set_infinity(z, form);
  if (negative) mpz_setbit(z, form.e + form.m);
  pattern = QNumber(z);
}

void IEEEFloat::self_nan() {
  GmpInteger z;
  set_infinity(z, form);
  if (form.m > 0) mpz_setbit(z, form.m - 1);
  pattern = QNumber(z);
}

QNumber IEEEFloat::get_bits() const {
  // Assignment may have kept the big form of an earlier pattern.
  return pattern.is_big() ? QNumber(pattern.big_num()) : pattern;
}

std::optional<double> IEEEFloat::to_double() const {
  const bool negative = numbers::test_bit(pattern, form.e + form.m);
  const auto with_sign = [&](double value) { return negative ? -value : value; };
  const QNumber top = numbers::power_of_two(form.e + form.m);
  const QNumber magnitude = numbers::floor_remainder(pattern, top);
  if (magnitude == QNumber(0)) return with_sign(0.0);

  const QNumber hidden = numbers::power_of_two(form.m);
  const QNumber fraction = numbers::floor_remainder(magnitude, hidden);
  const QNumber exponent = numbers::floor_quotient(magnitude, hidden);
  if (numbers::sum(exponent, QNumber(1)) == numbers::power_of_two(form.e)) {
    if (fraction == QNumber(0)) return with_sign(std::numeric_limits<double>::infinity());
    return std::numeric_limits<double>::quiet_NaN();
  }

  // The value is integer * 2^power, with an odd integer.
  const bool is_subnormal = exponent == QNumber(0);
  QNumber integer = is_subnormal ? fraction : numbers::sum(fraction, hidden);
  uint64_t zeros = 0;
  while (!numbers::test_bit(integer, zeros)) ++zeros;
  integer = numbers::floor_quotient(integer, numbers::power_of_two(zeros));
  const std::optional<uint64_t> significand = numbers::to_uint64(integer);
  if (!significand.has_value() || *significand >> 53 != 0) return std::nullopt;

  const QNumber bias = numbers::difference(numbers::power_of_two(form.e - 1), QNumber(1));
  QNumber power = numbers::difference(is_subnormal ? QNumber(1) : exponent, bias);
  power = numbers::sum(numbers::difference(power, QNumber(form.m)), QNumber(zeros));
  const std::optional<int64_t> exact_power = numbers::to_int64(power);
  // The least double is 2^-1074.
  if (!exact_power.has_value() || *exact_power < -1074 || *exact_power > 1023) return std::nullopt;
  const double value =
      std::ldexp(static_cast<double>(*significand), static_cast<int>(*exact_power));
  if (!std::isfinite(value)) return std::nullopt;
  return with_sign(value);
}

std::optional<float> IEEEFloat::to_float() const {
  const std::optional<double> exact = to_double();
  if (!exact.has_value()) return std::nullopt;
  if (std::isnan(*exact)) return std::numeric_limits<float>::quiet_NaN();
  if (std::isfinite(*exact) && std::abs(*exact) > std::numeric_limits<float>::max()) {
    return std::nullopt;
  }
  const float value = static_cast<float>(*exact);
  if (static_cast<double>(value) != *exact) return std::nullopt;
  return value;
}

}  // namespace quill
