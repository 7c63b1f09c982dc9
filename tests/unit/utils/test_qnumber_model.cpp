// Random operations on numbers of both forms, against GMP's rationals.

#include <gmp.h>
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <utility>

#include "quill/utils/gmp_integer.h"
#include "quill/utils/qnumber.h"

namespace quill {
namespace {

// Copied part by part, since mpq_set takes canonical numbers only.
class Rational {
 public:
  Rational() { mpq_init(value); }
  Rational(const Rational& other) {
    mpq_init(value);
    *this = other;
  }
  Rational& operator=(const Rational& other) {
    mpz_set(num(), mpq_numref(other.value));
    mpz_set(den(), mpq_denref(other.value));
    return *this;
  }
  ~Rational() { mpq_clear(value); }

  mpz_ptr num() { return mpq_numref(value); }
  mpz_ptr den() { return mpq_denref(value); }

  std::string text() const {
    std::string buffer(
        mpz_sizeinbase(mpq_numref(value), 10) + mpz_sizeinbase(mpq_denref(value), 10) + 3, '\0');
    mpq_get_str(buffer.data(), 10, value);
    return buffer.substr(0, buffer.find('\0'));
  }

  mpq_t value;
};

// A number, what it should be, and the form that it should have.
struct Pair {
  QNumber number;
  Rational rational;
  bool big = false;
};

class Source {
 public:
  explicit Source(uint64_t seed) : random(seed) {}

  uint64_t below(uint64_t bound) { return random() % bound; }

  // Tiny, around 32 bits, around 64 bits, or longer, so that all bounds are met from both sides.
  void integer(mpz_ptr z) {
    switch (below(5)) {
      case 0:
        mpz_set_ui(z, below(12));
        break;
      case 1:
        mpz_set_ui(z, below(5000));
        break;
      case 2:
        mpz_set_ui(z, 2147483640 + below(16));
        break;
      case 3:
        mpz_set_ui(z, 9223372036854775800U + below(16));
        break;
      case 4:
        mpz_set_ui(z, random());
        for (uint64_t i = below(4); i > 0; --i) {
          mpz_mul_2exp(z, z, 64);
          mpz_add_ui(z, z, random());
        }
        break;
    }
    if (below(2) == 0) mpz_neg(z, z);
  }

  // A machine integer, also at both ends of the range.
  int64_t word() {
    switch (below(4)) {
      case 0:
        return static_cast<int64_t>(below(25)) - 12;
      case 1:
        return std::numeric_limits<int64_t>::min() + static_cast<int64_t>(below(4));
      case 2:
        return std::numeric_limits<int64_t>::max() - static_cast<int64_t>(below(4));
      default:
        return static_cast<int64_t>(random());
    }
  }

 private:
  std::mt19937_64 random;
};

bool outside(int64_t word) { return word == std::numeric_limits<int64_t>::min(); }

bool outside(mpz_srcptr z) {
  return mpz_sizeinbase(z, 2) > 63;  // of the magnitude
}

std::string printed(const QNumber& number) {
  std::ostringstream out;
  out << number;
  return out.str();
}

void expect_agreement(const Pair& pair) {
  ASSERT_EQ(pair.number.is_big(), pair.big) << pair.rational.text();
  ASSERT_EQ(printed(pair.number), pair.rational.text());
}

TEST(QNumberModel, AgreesWithRationalsOverAMillionRandomOperations) {
  Source source(123456789);
  std::array<Pair, 24> pairs;
  GmpInteger n;
  GmpInteger d;
  size_t big_steps = 0;
  size_t equal_pairs = 0;

  for (int step = 0; step < 1'000'000; ++step) {
    Pair& a = pairs[source.below(pairs.size())];
    Pair& b = pairs[source.below(pairs.size())];
    const Pair* changed = &a;
    switch (source.below(12)) {
      case 0: {  // from one word
        const int64_t word = source.word();
        QNumber made(word);
        ASSERT_EQ(made.is_big(), outside(word));
        a.number = made;
        a.big = a.big || outside(word);
        mpq_set_si(a.rational.value, word, 1);
        break;
      }
      case 1: {  // from two words
        const int64_t top = source.word();
        const int64_t bottom = source.word();
        if (bottom == 0) break;
        a.number = QNumber(top, bottom);
        a.big = a.big || outside(top) || outside(bottom);
        mpz_set_si(a.rational.num(), top);
        mpz_set_si(a.rational.den(), bottom);
        break;
      }
      case 2: {  // from one GMP integer
        source.integer(n);
        a.number = QNumber(n);
        a.big = a.big || outside(n);
        mpq_set_z(a.rational.value, n);
        break;
      }
      case 3: {  // from two GMP integers
        source.integer(n);
        source.integer(d);
        if (mpz_sgn(d) == 0) break;
        a.number = QNumber(n, d);
        const bool fits = mpz_cmp_si(n, -2147483648) >= 0 && mpz_cmp_si(n, 2147483647) <= 0 &&
                          mpz_cmp_si(d, -2147483648) >= 0 && mpz_cmp_si(d, 2147483647) <= 0;
        a.big = a.big || !fits;
        mpz_set(a.rational.num(), n);
        mpz_set(a.rational.den(), d);
        break;
      }
      case 4:
      case 5:
        a.number.normalize();
        mpq_canonicalize(a.rational.value);
        break;
      case 6:  // copied
        a.number = b.number;
        a.rational = b.rational;
        a.big = a.big || b.big;
        break;
      case 7: {  // moved
        QNumber temporary(b.number);
        a.number = std::move(temporary);
        a.rational = b.rational;
        a.big = a.big || b.big;
        break;
      }
      case 8:
        swap(a.number, b.number);
        mpq_swap(a.rational.value, b.rational.value);
        std::swap(a.big, b.big);
        break;
      case 9: {  // compared, once normalised
        a.number.normalize();
        mpq_canonicalize(a.rational.value);
        b.number.normalize();
        mpq_canonicalize(b.rational.value);
        const bool equal = mpq_equal(a.rational.value, b.rational.value) != 0;
        ASSERT_EQ(a.number == b.number, equal);
        ASSERT_EQ(b.number == a.number, equal);
        if (equal && a.big == b.big) {
          ASSERT_EQ(a.number.hash(), b.number.hash());
        }
        ASSERT_EQ(a.number.is_negative(), mpq_sgn(a.rational.value) < 0);
        ASSERT_EQ(a.number.is_zero(), mpq_sgn(a.rational.value) == 0);
        equal_pairs += equal && &a != &b ? 1 : 0;
        break;
      }
      case 10: {  // written and read
        Rational canonical(a.rational);
        mpq_canonicalize(canonical.value);
        ASSERT_EQ(a.number.to_str(), canonical.text());
        const QNumber read = QNumber::from_string(canonical.text());
        ASSERT_EQ(printed(read), canonical.text());
        ASSERT_EQ(read.is_big(), outside(canonical.num()) || outside(canonical.den()));
        b.number = read;
        b.rational = canonical;
        b.big = b.big || read.is_big();
        changed = &b;
        break;
      }
      case 11: {  // a fresh number in the place of an old one, else all would end up big
        std::destroy_at(&a.number);
        std::construct_at(&a.number);
        mpq_set_si(a.rational.value, 0, 1);
        a.big = false;
        if (source.below(2) == 0) {
          a.number = 2;
          mpq_set_si(a.rational.value, 2, 1);
        }
        break;
      }
    }
    big_steps += changed->big ? 1 : 0;
    ASSERT_NO_FATAL_FAILURE(expect_agreement(*changed)) << "after step " << step;
  }
  // Both forms and both outcomes of comparisons have been met often.
  EXPECT_GT(big_steps, 100'000U);
  EXPECT_LT(big_steps, 900'000U);
  EXPECT_GT(equal_pairs, 1'000U);
}

}  // namespace
}  // namespace quill
