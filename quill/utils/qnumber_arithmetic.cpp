#include "quill/utils/qnumber_arithmetic.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstddef>
#include <limits>
#include <system_error>

#include "quill/utils/bv_number.h"
#include "quill/utils/exception.h"
#include "quill/utils/gmp_integer.h"

namespace quill::numbers {

namespace {

static_assert(sizeof(long) == sizeof(int64_t), "GMP's long functions take whole words");

__extension__ using int128 = __int128;

// The pair of a number with a positive denominator, in GMP's integers.
struct Parts {
  explicit Parts(const QNumber& a) {
    get_numerator(n, a);
    get_denominator(d, a);
    if (mpz_sgn(d.operator->()) < 0) {
      mpz_neg(n, n);
      mpz_neg(d, d);
    }
  }

  GmpInteger n;
  GmpInteger d;
};

bool are_small(const QNumber& a, const QNumber& b) { return !a.is_big() && !b.is_big(); }

// Whether the parts, which need not be reduced, fit into words; if so, result becomes the fraction.
bool small_fraction(int128 n, int128 d, QNumber& result) {
  constexpr int128 largest = std::numeric_limits<int64_t>::max();
  if (n < -largest || n > largest || d < -largest || d > largest) return false;
  result = QNumber(static_cast<int64_t>(n), static_cast<int64_t>(d));
  result.normalize();
  return true;
}

void require_integer(const QNumber& a, const char* what) {
  if (!a.is_integer()) throw Exception(what) << " of " << a.to_str() << ", which is no integer";
}

// An integer that may be written over the denominator -1, or as a fraction that is one.
QNumber as_integer(const QNumber& a, const char* what) {
  if (a.is_integer()) return a;
  QNumber reduced = a.canonical();
  require_integer(reduced, what);
  return reduced;
}

int64_t floor_of_words(int64_t n, int64_t d) {
  const int64_t truncated = n / d;
  return n % d < 0 ? truncated - 1 : truncated;  // d is positive
}

}  // namespace

// ----- GMP and machine words --------------------------------------------------------------------

void get_numerator(mpz_ptr out, const QNumber& a) {
  if (a.is_big()) {
    mpz_set(out, a.big_num());
  } else {
    mpz_set_si(out, static_cast<long>(a.num));
  }
}

void get_denominator(mpz_ptr out, const QNumber& a) {
  if (a.is_big()) {
    mpz_set(out, a.big_den());
  } else {
    mpz_set_si(out, static_cast<long>(a.den));
  }
}

void get_rational(mpq_ptr out, const QNumber& a) {
  const QNumber reduced = a.canonical();
  get_numerator(mpq_numref(out), reduced);
  get_denominator(mpq_denref(out), reduced);
}

QNumber from_integer(mpz_srcptr a) { return QNumber(a).canonical(); }

QNumber from_fraction(mpz_srcptr n, mpz_srcptr d) { return QNumber(n, d).canonical(); }

QNumber from_rational(mpq_srcptr a) { return from_fraction(mpq_numref(a), mpq_denref(a)); }

std::optional<int64_t> to_int64(const QNumber& a) {
  const QNumber reduced = a.canonical();
  if (!reduced.is_integer()) return std::nullopt;
  if (!reduced.is_big()) return reduced.num;
  if (mpz_fits_slong_p(reduced.big_num()) == 0) return std::nullopt;
  return mpz_get_si(reduced.big_num());
}

std::optional<uint64_t> to_uint64(const QNumber& a) {
  const QNumber reduced = a.canonical();
  if (!reduced.is_integer() || reduced.is_negative()) return std::nullopt;
  if (!reduced.is_big()) return static_cast<uint64_t>(reduced.num);
  if (mpz_fits_ulong_p(reduced.big_num()) == 0) return std::nullopt;
  return mpz_get_ui(reduced.big_num());
}

// ----- arithmetic -------------------------------------------------------------------------------

QNumber negated(const QNumber& a) {
  if (!a.is_big()) return QNumber(-a.num, a.den).canonical();
  Parts parts(a);
  mpz_neg(parts.n, parts.n);
  return from_fraction(parts.n, parts.d);
}

QNumber absolute(const QNumber& a) {
  QNumber reduced = a.canonical();
  return reduced.is_negative() ? negated(reduced) : reduced;
}

QNumber sum(const QNumber& a, const QNumber& b) {
  QNumber result;
  if (are_small(a, b)) {
    const int128 left = int128{a.num} * b.den;
    const int128 right = int128{b.num} * a.den;
    if (small_fraction(left + right, int128{a.den} * b.den, result)) return result;
  }
  Parts x(a);
  Parts y(b);
  mpz_mul(x.n, x.n, y.d);
  mpz_addmul(x.n, y.n, x.d);
  mpz_mul(x.d, x.d, y.d);
  return from_fraction(x.n, x.d);
}

QNumber difference(const QNumber& a, const QNumber& b) { return sum(a, negated(b)); }

QNumber product(const QNumber& a, const QNumber& b) {
  QNumber result;
  if (are_small(a, b) && small_fraction(int128{a.num} * b.num, int128{a.den} * b.den, result)) {
    return result;
  }
  Parts x(a);
  const Parts y(b);
  mpz_mul(x.n, x.n, y.n);
  mpz_mul(x.d, x.d, y.d);
  return from_fraction(x.n, x.d);
}

QNumber reciprocal(const QNumber& a) {
  if (a.is_zero()) throw Exception("division by zero");
  if (!a.is_big()) return QNumber(a.den, a.num).canonical();
  const Parts parts(a);
  return from_fraction(parts.d, parts.n);
}

QNumber quotient(const QNumber& a, const QNumber& b) { return product(a, reciprocal(b)); }

QNumber floor_of(const QNumber& a) {
  const QNumber reduced = a.canonical();
  if (reduced.is_integer()) return reduced;
  if (!reduced.is_big()) return QNumber(floor_of_words(reduced.num, reduced.den));
  Parts parts(reduced);
  mpz_fdiv_q(parts.n, parts.n, parts.d);
  return from_integer(parts.n);
}

QNumber floor_quotient(const QNumber& a, const QNumber& b) { return floor_of(quotient(a, b)); }

QNumber floor_remainder(const QNumber& a, const QNumber& b) {
  return difference(a, product(b, floor_quotient(a, b)));
}

QNumber power_of_two(uint64_t n) {
  QNumber result;
  BVNumber::pow2(n, &result);
  return result;
}

int compare(const QNumber& a, const QNumber& b) {
  if (are_small(a, b) && a.den > 0 && b.den > 0) {
    const int128 left = int128{a.num} * b.den;
    const int128 right = int128{b.num} * a.den;
    return (left > right) - (left < right);
  }
  Parts x(a);
  Parts y(b);
  mpz_mul(x.n, x.n, y.d);
  mpz_mul(y.n, y.n, x.d);
  const int order = mpz_cmp(x.n, y.n);
  return (order > 0) - (order < 0);
}

// ----- digits and bits of integers --------------------------------------------------------------

QNumber from_digits(std::string_view text, int base) {
  const std::string_view digits = text.substr(text.starts_with('-') ? 1 : 0);
  const auto is_digit = [base](char c) {
    const int value = c >= '0' && c <= '9'   ? c - '0'
                      : c >= 'a' && c <= 'f' ? c - 'a' + 10
                      : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                             : 16;
    return value < base;
  };
  const bool known_base = base == 2 || base == 10 || base == 16;
  if (!known_base || digits.empty() || !std::ranges::all_of(digits, is_digit)) {
    throw Exception("not a number in base ") << base << ": \"" << std::string(text) << "\"";
  }
  int64_t word = 0;
  const char* end = text.data() + text.size();
  if (std::from_chars(text.data(), end, word, base).ec == std::errc() &&
      word != std::numeric_limits<int64_t>::min()) {
    return QNumber(word);
  }
  GmpInteger value;
  mpz_set_str(value, std::string(text).c_str(), base);
  return from_integer(value);
}

std::string to_digits(const QNumber& a, int base, uint64_t num_digits) {
  if (base != 2 && base != 10 && base != 16) throw Exception("no digits in base ") << base;
  const QNumber integer = as_integer(a, "digits");
  GmpInteger value;
  get_numerator(value, integer);
  const bool negative = integer.is_negative();
  if (negative) mpz_neg(value, value);
  // The size may be one digit too much; the final NUL comes on top.
  std::string digits(mpz_sizeinbase(value, base) + 2, '\0');
  mpz_get_str(digits.data(), base, value);
  digits.resize(digits.find('\0'));
  if (digits.size() < num_digits) digits.insert(0, num_digits - digits.size(), '0');
  return negative ? "-" + digits : digits;
}

uint64_t bit_length(const QNumber& a) {
  const QNumber integer = as_integer(a, "bits");
  if (!integer.is_big()) {
    const uint64_t word = static_cast<uint64_t>(integer.num);
    return static_cast<uint64_t>(std::bit_width(integer.num < 0 ? 0 - word : word));
  }
  return integer.is_zero() ? 0 : mpz_sizeinbase(integer.big_num(), 2);
}

bool test_bit(const QNumber& a, uint64_t i) {
  const QNumber integer = as_integer(a, "bits");
  if (integer.is_big()) return mpz_tstbit(integer.big_num(), i) != 0;
  return i < 64 ? (integer.num >> i & 1) != 0 : integer.num < 0;
}

}  // namespace quill::numbers
