// Exact rational numbers in two words.
//
//   small   num  the numerator                    den  the denominator, not 0
//   big     num  the address of a block that      den  0
//                holds two GMP integers, the
//                numerator and the denominator
//
// The parts of a small number lie strictly between -2^63 and 2^63, so each can be negated. A number
// owns its block; small numbers allocate nothing.
//
// A number keeps the pair that it was made from until normalize() is called. In a normalised number
// the denominator is positive, the parts have no common factor, and zero is 0/1. Comparison is
// correct only between normalised numbers. Numbers never change their form by themselves: neither
// normalize() nor assigning a small number to a big one makes it small. Equal numbers of different
// forms compare equal, but their hashes differ; numbers that serve as keys must therefore be built
// in the same way.
//
// There is no arithmetic here except normalize(), which may use GMP's scratch space.
//
// Each thread has its own scratch integer (gmp_tmp), and threads may share the table of small
// divisors. Different threads may therefore use different numbers at the same time, and destructors
// of static and thread-local objects may use numbers like all other code.

#ifndef QUILL_UTILS_QNUMBER_H
#define QUILL_UTILS_QNUMBER_H

#include <gmp.h>

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <limits>
#include <string>
#include <string_view>

#include "quill/utils/gmp_integer.h"
#include "quill/utils/hash.h"
#include "quill/utils/keyed_hash.h"
#include "quill/utils/scratch_integer.h"

namespace quill {

// Every integer type of the language, without the 128-bit types that compilers add.
template <class Int>
concept MachineInteger = std::integral<Int> && sizeof(Int) <= sizeof(int64_t);

class QNumber {
 public:
  // Zero.
  QNumber() noexcept : num(0), den(1) {}

  template <MachineInteger Int>
  QNumber(Int value) : num(0), den(1) {
    if (SignMagnitude parts(value); parts.fits_small()) {
      num = static_cast<int64_t>(value);
    } else {
      make_big(parts, SignMagnitude(1));
    }
  }

  // The pair as given, unnormalised. Throws Exception when `d` is 0.
  template <MachineInteger Numerator, MachineInteger Denominator>
  QNumber(Numerator n, Denominator d) : num(0), den(1) {
    const SignMagnitude numerator(n);
    const SignMagnitude denominator(d);
    if (denominator.magnitude == 0) throw_zero_denominator(numerator);
    if (numerator.fits_small() && denominator.fits_small()) {
      num = static_cast<int64_t>(n);
      den = static_cast<int64_t>(d);
    } else {
      make_big(numerator, denominator);
    }
  }

  // Small when `z` lies strictly between -2^63 and 2^63.
  explicit QNumber(mpz_srcptr z);

  // The pair as given, unnormalised. Small only when both parts fit a 32-bit int; the constructor
  // from one integer allows much larger ones. Throws Exception when `d` is 0.
  QNumber(mpz_srcptr n, mpz_srcptr d);

  // Reads an optional "-", digits, and then optionally either "/" and digits or "." and digits. The
  // result is normalised, and small whenever its parts lie strictly between -2^63 and 2^63. Throws
  // Exception, with the text in its message, when the text is anything else or the denominator is
  // zero.
  static QNumber from_string(std::string_view text);

  QNumber(const QNumber& other);
  QNumber(QNumber&& other) noexcept : num(other.num), den(other.den) { other.forget(); }

  // A big target stays big, whatever is assigned; a small one becomes big when the source is.
  QNumber& operator=(const QNumber& other);

  // Has the same effect as copy assignment; the source is left with an unspecified value.
  QNumber& operator=(QNumber&& other) noexcept;

  ~QNumber() {
    if (is_big()) clear_big();
  }

  // Exchanges values and forms.
  friend void swap(QNumber& a, QNumber& b) noexcept {
    int64_t word = a.num;
    a.num = b.num;
    b.num = word;
    word = a.den;
    a.den = b.den;
    b.den = word;
  }

  void normalize();

  bool is_big() const noexcept { return den == 0; }

  // The parts of a big number.
  mpz_srcptr big_num() const noexcept { return big()->num; }
  mpz_srcptr big_den() const noexcept { return big()->den; }

  // For normalised numbers.
  bool is_zero() const noexcept { return sign() == 0; }
  bool is_negative() const noexcept { return sign() < 0; }
  bool is_integer() const noexcept { return is_big() ? mpz_cmp_ui(big_den(), 1) == 0 : den == 1; }

  // Whether the number is normalised, and small if its value fits. Equal numbers of this kind have
  // equal forms and hashes, as keys require. canonical() returns the number of this kind with the
  // same value.
  bool is_canonical() const { return den == 1 || is_canonical_pair(); }
  QNumber canonical() const;

  friend bool operator==(const QNumber& a, const QNumber& b) noexcept;

  // Equal for equal normalised numbers of the same form.
  uint64_t hash() const noexcept;

  // The decimal value, "7" or "-22/7". It depends only on the value, even if the number is not
  // normalised: there is a "/" exactly when the number is not an integer.
  std::string to_str() const;

  // Writes the pair as it is, without "/" when the denominator is 1.
  friend std::ostream& operator<<(std::ostream& out, const QNumber& number);

  // Scratch space of normalize() and BVNumber::pow2, free between calls.
  static constinit thread_local ScratchInteger gmp_tmp;

  int64_t num;
  int64_t den;

 private:
  struct Big {
    mpz_t num;
    mpz_t den;
  };

  // Any machine integer, as sign and magnitude.
  struct SignMagnitude {
    template <MachineInteger Int>
    explicit SignMagnitude(Int value) : magnitude(static_cast<uint64_t>(value)) {
      if constexpr (std::signed_integral<Int>) {
        negative = value < 0;
        if (negative) magnitude = 0 - magnitude;
      }
    }
    bool fits_small() const { return magnitude <= max_small; }

    bool negative = false;
    uint64_t magnitude;
  };

  static constexpr uint64_t max_small = std::numeric_limits<int64_t>::max();

  Big* big() const noexcept { return reinterpret_cast<Big*>(static_cast<uintptr_t>(num)); }

  int sign() const noexcept {
    if (is_big()) return mpz_sgn(big_num());
    return (num > 0) - (num < 0);
  }

  // Resets the words without freeing a block that they lead to.
  void forget() noexcept {
    num = 0;
    den = 1;
  }

  // These give a small number a block. They throw std::bad_alloc and then leave it unchanged.
  void make_big(const SignMagnitude& n, const SignMagnitude& d);
  void make_big(mpz_srcptr n, mpz_srcptr d);
  void adopt(Big* block) noexcept;

  void clear_big() noexcept;
  bool is_canonical_pair() const;
  std::string pair_text() const;
  [[noreturn]] static void throw_zero_denominator(const SignMagnitude& n);
};

template <>
struct Hasher<QNumber> {
  uint64_t operator()(const QNumber& number) const noexcept { return number.hash(); }
};

// Tables keyed by pointers to numbers hash and compare the numbers themselves. The same functor is
// the equality.
template <>
struct Hasher<const QNumber*> {
  uint64_t operator()(const QNumber* number) const noexcept { return number->hash(); }
  bool operator()(const QNumber* a, const QNumber* b) const noexcept { return *a == *b; }
};

template <>
struct hsh::KeyEquality<const QNumber*> {
  using type = Hasher<const QNumber*>;
};

// Like the fixed hash, this one tells the two forms of a number apart.
template <>
struct KeyedHasher<QNumber> {
  uint64_t operator()(uint64_t key, const QNumber& number) const noexcept;
};

template <>
struct KeyedHasher<const QNumber*> {
  uint64_t operator()(uint64_t key, const QNumber* number) const noexcept {
    return KeyedHasher<QNumber>()(key, *number);
  }
};

}  // namespace quill

#endif
