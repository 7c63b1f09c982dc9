// Binary floating-point values (IEEE 754-2019) as bit patterns. A value is made from a pattern or
// rounded from a rational number; there is no arithmetic on values.
//
// A format (e, m) has e exponent bits and m significand bits without the hidden bit, hence e + m +
// 1 bits in all: binary32 is (8, 23), which SMT-LIB writes (_ FloatingPoint 8 24). From the top, a
// pattern holds the sign, the exponent and the significand:
//
//   exponent x   all zeros   significand * 2^(2 - 2^(e-1) - m), zero among them
//                all ones    infinity when the significand is 0, else NaN
//                else        (2^m + significand) * 2^(x + 1 - 2^(e-1) - m)
//
// Every format is accepted here. A format without exponent bits has no finite value except zero,
// and one without significand bits has no NaN: self_nan() gives its infinity.
//
// A value owns its pattern. Time and space are linear in e + m, except that rounding divides once,
// by the denominator; the range of the exponents does not matter. Values of more than 2^32 bits
// throw std::bad_alloc, except positive zero and the values that from_bits() makes.

#ifndef QUILL_UTILS_IEEE_FLOAT_H
#define QUILL_UTILS_IEEE_FLOAT_H

#include <cstdint>
#include <optional>

#include "quill/utils/hash.h"
#include "quill/utils/keyed_hash.h"
#include "quill/utils/qnumber.h"

namespace quill {

class IEEEFloat {
 public:
  struct format {
    uint64_t e = 0;
    uint64_t m = 0;
    bool operator==(const format&) const = default;
  };

  // To nearest with ties to even, toward zero, toward plus infinity, toward minus infinity.
  enum rounding_mode { ROUND_EVEN = 0, ROUND_ZERO = 1, ROUND_PLUS_INF = 2, ROUND_MINUS_INF = 3 };

  // Positive zero.
  IEEEFloat(format form_, rounding_mode mode_) : form(form_), mode(mode_) {}

  // The value with these bits; a NaN keeps its sign and significand. Throws Exception when `bits`
  // is not an integer from 0 up to 2^(e+m+1) - 1.
  static IEEEFloat from_bits(const QNumber& bits, format f);

  // The float that `value` rounds to. A number that is too large becomes infinity or the largest
  // finite value, depending on the mode. The number zero becomes positive zero; a negative number
  // that rounds to zero becomes negative zero.
  static IEEEFloat from_number(const QNumber& value, format f, rounding_mode rounding);

  void self_inf(bool negative);

  // The positive NaN with only the top bit of the significand set.
  void self_nan();

  // The value as a number of C++, if that has exactly this value; every NaN gives the quiet NaN
  // without a sign.
  std::optional<double> to_double() const;
  std::optional<float> to_float() const;

  // The pattern as an integer. It is small if it is below 2^63, whatever this float was made from.
  QNumber get_bits() const;

 private:
  void round(const QNumber& value);

  format form;
  rounding_mode mode;
  QNumber pattern;  // an integer of e + m + 1 bits
};

template <>
struct Hasher<IEEEFloat::format> {
  uint64_t operator()(const IEEEFloat::format& f) const { return (f.e << 32) | f.m; }
};

template <>
struct KeyedHasher<IEEEFloat::format> {
  uint64_t operator()(uint64_t key, const IEEEFloat::format& f) const {
    return KeyedWordHash(key).add(f.e).add(f.m).result();
  }
};

}  // namespace quill

#endif
