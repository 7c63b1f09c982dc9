// Both forms of rational numbers: building, assigning, normalising, comparing, text.

#include "quill/utils/qnumber.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <ostream>
#include <utility>

#include "quill/utils/exception.h"
#include "quill/utils/gcd_cache.h"

namespace quill {

static_assert(sizeof(QNumber) == 2 * sizeof(int64_t));
static_assert(sizeof(long) == sizeof(int64_t), "GMP's long functions take whole words");
static_assert(sizeof(uintptr_t) <= sizeof(int64_t), "a word holds the block's address");

constinit thread_local ScratchInteger QNumber::gmp_tmp;

namespace {

uint64_t magnitude_of(int64_t value) {
  const auto bits = static_cast<uint64_t>(value);
  return value < 0 ? uint64_t{0} - bits : bits;
}

bool fits_small(mpz_srcptr z) {
  return mpz_fits_slong_p(z) != 0 && mpz_get_si(z) != std::numeric_limits<long>::min();
}

// GMP writes into the string itself, so there is no memory of GMP's to free.
void append_decimal(std::string& text, mpz_srcptr z) {
  const size_t start = text.size();
  // The size may be one digit too large; a sign and the final NUL are added.
  text.resize(start + mpz_sizeinbase(z, 10) + 2);
  mpz_get_str(text.data() + start, 10, z);
  text.resize(text.find('\0', start));
}

bool is_digits(std::string_view text) {
  return !text.empty() &&
         std::all_of(text.begin(), text.end(), [](char c) { return '0' <= c && c <= '9'; });
}

// There must be so few digits that the value fits.
int64_t value_of_digits(std::string_view digits) {
  int64_t value = 0;
  for (const char c : digits) value = 10 * value + (c - '0');
  return value;
}

}  // namespace

// --- Construction and destruction ---

QNumber::QNumber(mpz_srcptr z) : num(0), den(1) {
  if (fits_small(z)) {
    num = mpz_get_si(z);
  } else {
    make_big(z, nullptr);
  }
}

QNumber::QNumber(mpz_srcptr n, mpz_srcptr d) : num(0), den(1) {
  if (mpz_sgn(d) == 0) {
    std::string text;
    append_decimal(text, n);
    throw Exception("zero denominator in " + text + "/0");
  }
  if (mpz_fits_sint_p(n) != 0 && mpz_fits_sint_p(d) != 0) {
    num = mpz_get_si(n);
    den = mpz_get_si(d);
  } else {
    make_big(n, d);
  }
}

QNumber::QNumber(const QNumber& other) : num(other.num), den(other.den) {
  if (other.is_big()) make_big(other.big_num(), other.big_den());
}

void QNumber::adopt(Big* block) noexcept {
  num = static_cast<int64_t>(reinterpret_cast<uintptr_t>(block));
  den = 0;
}

void QNumber::make_big(const SignMagnitude& n, const SignMagnitude& d) {
  Big* block = new Big;
  mpz_init_set_ui(block->num, n.magnitude);
  if (n.negative) mpz_neg(block->num, block->num);
  mpz_init_set_ui(block->den, d.magnitude);
  if (d.negative) mpz_neg(block->den, block->den);
  adopt(block);
}

void QNumber::make_big(mpz_srcptr n, mpz_srcptr d) {
  Big* block = new Big;
  mpz_init_set(block->num, n);
  if (d != nullptr) {
    mpz_init_set(block->den, d);
  } else {
    mpz_init_set_ui(block->den, 1);
  }
  adopt(block);
}

void QNumber::clear_big() noexcept {
  Big* block = big();
  mpz_clear(block->num);
  mpz_clear(block->den);
  delete block;
}

void QNumber::throw_zero_denominator(const SignMagnitude& n) {
  throw Exception("zero denominator in " + std::string(n.negative ? "-" : "") +
                  std::to_string(n.magnitude) + "/0");
}

// --- Assignment ---

QNumber& QNumber::operator=(const QNumber& other) {
  if (this == &other) return *this;
  if (!other.is_big()) {
    if (is_big()) {
      mpz_set_si(big()->num, other.num);
      mpz_set_si(big()->den, other.den);
    } else {
      num = other.num;
      den = other.den;
    }
  } else if (is_big()) {
    mpz_set(big()->num, other.big_num());
    mpz_set(big()->den, other.big_den());
  } else {
    make_big(other.big_num(), other.big_den());
  }
  return *this;
}

QNumber& QNumber::operator=(QNumber&& other) noexcept {
  if (this == &other) return *this;
  if (is_big() && !other.is_big()) {
    mpz_set_si(big()->num, other.num);
    mpz_set_si(big()->den, other.den);
  } else {
    // Either both are big, or this one has no block; the source frees what it gets.
    swap(*this, other);
  }
  return *this;
}

// --- Normalising ---

void QNumber::normalize() {
  if (!is_big()) {
    if (num == 0) {
      den = 1;
      return;
    }
    const auto divisor = static_cast<int64_t>(gcd(magnitude_of(num), magnitude_of(den)));
    num /= divisor;
    den /= divisor;
    if (den < 0) {
      num = -num;
      den = -den;
    }
    return;
  }
  mpz_ptr n = big()->num;
  mpz_ptr d = big()->den;
  if (mpz_sgn(n) == 0) {
    mpz_set_ui(d, 1);
    return;
  }
  if (mpz_cmpabs_ui(d, 1) != 0) {
    const ScratchInteger::Use divisor(gmp_tmp);
    mpz_gcd(divisor, n, d);
    mpz_divexact(n, n, divisor);
    mpz_divexact(d, d, divisor);
  }
  if (mpz_sgn(d) < 0) {
    mpz_neg(n, n);
    mpz_neg(d, d);
  }
}

bool QNumber::is_canonical_pair() const {
  if (!is_big()) return den > 0 && gcd(magnitude_of(num), magnitude_of(den)) == 1;
  if (fits_small(big_num()) && fits_small(big_den())) return false;
  if (is_integer()) return true;
  if (mpz_sgn(big_den()) < 0) return false;
  GmpInteger divisor;
  mpz_gcd(divisor, big_num(), big_den());
  return mpz_cmp_ui(divisor, 1) == 0;
}

QNumber QNumber::canonical() const {
  QNumber number(*this);
  number.normalize();
  if (!number.is_big() || !fits_small(number.big_num()) || !fits_small(number.big_den())) {
    return number;
  }
  return QNumber(mpz_get_si(number.big_num()), mpz_get_si(number.big_den()));
}

// --- Comparing and hashing ---

bool operator==(const QNumber& a, const QNumber& b) noexcept {
  if (a.is_big() && b.is_big()) {
    return mpz_cmp(a.big_num(), b.big_num()) == 0 && mpz_cmp(a.big_den(), b.big_den()) == 0;
  }
  if (!a.is_big() && !b.is_big()) return a.num == b.num && a.den == b.den;
  const QNumber& big = a.is_big() ? a : b;
  const QNumber& small = a.is_big() ? b : a;
  return mpz_cmp_si(big.big_num(), small.num) == 0 && mpz_cmp_si(big.big_den(), small.den) == 0;
}

uint64_t QNumber::hash() const noexcept {
  if (!is_big()) {
    return std::rotl(static_cast<uint64_t>(num), 32) + 2 * static_cast<uint64_t>(den);
  }
  const auto mix = [](uint64_t h, uint64_t limb) { return h ^ ((h << 6) + (h >> 2) + limb); };
  const size_t num_limbs = mpz_size(big_num());
  const size_t den_limbs = mpz_size(big_den());
  uint64_t h = 0;
  for (size_t i = 0; i < num_limbs; ++i)
    h = mix(h, mpz_getlimbn(big_num(), static_cast<mp_size_t>(i)));
  // This loop takes as many steps as the denominator has limbs, but reads the numerator's limbs
  // again, so that only the length of the denominator counts. The order of walks over tables
  // depends on these values, so this must not be corrected.
  for (size_t i = 0; i < den_limbs; ++i) {
    h = mix(h, i < num_limbs ? mpz_getlimbn(big_num(), static_cast<mp_size_t>(i)) : 0);
  }
  return h;
}

uint64_t KeyedHasher<QNumber>::operator()(uint64_t key, const QNumber& number) const noexcept {
  KeyedWordHash h(key);
  if (!number.is_big()) {
    return h.add(static_cast<uint64_t>(number.num)).add(static_cast<uint64_t>(number.den)).result();
  }
  for (mpz_srcptr part : {number.big_num(), number.big_den()}) {
    const size_t limbs = mpz_size(part);
    h.add(2 * limbs + (mpz_sgn(part) < 0 ? 1 : 0));
    for (size_t i = 0; i < limbs; ++i) h.add(mpz_getlimbn(part, static_cast<mp_size_t>(i)));
  }
  return h.result();
}

// --- Text ---

std::string QNumber::pair_text() const {
  if (!is_big()) {
    return den == 1 ? std::to_string(num) : std::to_string(num) + "/" + std::to_string(den);
  }
  std::string text;
  append_decimal(text, big_num());
  if (!is_integer()) {
    text += '/';
    append_decimal(text, big_den());
  }
  return text;
}

std::string QNumber::to_str() const {
  // With the denominator 1 the pair is normalised.
  if (is_integer()) return pair_text();
  QNumber normal(*this);
  normal.normalize();
  return normal.pair_text();
}

std::ostream& operator<<(std::ostream& out, const QNumber& number) {
  // Writes one string, so that the stream's flags for integers do not affect the digits.
  return out << number.pair_text();
}

QNumber QNumber::from_string(std::string_view text) {
  const auto malformed = [text] {
    return Exception("not a number: \"" + std::string(text) + "\"");
  };

  const auto zero_denominator = [text] {
    return Exception("zero denominator in \"" + std::string(text) + "\"");
  };

  const bool negative = text.starts_with('-');
  const std::string_view magnitude = text.substr(negative ? 1 : 0);
  const size_t mark = std::min(magnitude.find_first_of("/."), magnitude.size());
  const bool has_second = mark < magnitude.size();
  const bool is_decimal = has_second && magnitude[mark] == '.';
  const std::string_view first = magnitude.substr(0, mark);
  const std::string_view second = has_second ? magnitude.substr(mark + 1) : std::string_view();
  if (!is_digits(first) || (has_second && !is_digits(second))) throw malformed();

  // Parts with few digits are small and need no GMP integers.
  constexpr size_t most_digits = std::numeric_limits<int64_t>::digits10;
  if (first.size() + second.size() <= most_digits) {
    const int64_t whole = value_of_digits(first);
    const int64_t part = has_second ? value_of_digits(second) : 1;
    if (is_decimal) {
      int64_t scale = 1;
      for (size_t i = 0; i < second.size(); ++i) scale *= 10;
      QNumber number(negative ? -(whole * scale + part) : whole * scale + part, scale);
      number.normalize();
      return number;
    }
    if (part == 0) throw zero_denominator();
    QNumber number(negative ? -whole : whole, part);
    number.normalize();
    return number;
  }

  GmpInteger n;
  GmpInteger d;
  std::string digits(first);
  if (is_decimal) digits += second;
  mpz_set_str(n, digits.c_str(), 10);
  if (is_decimal) {
    mpz_ui_pow_ui(d, 10, second.size());
  } else {
    mpz_set_str(d, has_second ? std::string(second).c_str() : "1", 10);
    if (mpz_sgn(d) == 0) throw zero_denominator();
  }
  if (mpz_cmp_ui(d, 1) != 0) {
    const ScratchInteger::Use divisor(gmp_tmp);
    mpz_gcd(divisor, n, d);
    mpz_divexact(n, n, divisor);
    mpz_divexact(d, d, divisor);
  }
  if (negative) mpz_neg(n, n);

  // This allows larger parts in the small form than the constructor from two GMP integers does.
  if (fits_small(n) && fits_small(d)) return QNumber(mpz_get_si(n), mpz_get_si(d));
  return QNumber(n, d);
}

}  // namespace quill
