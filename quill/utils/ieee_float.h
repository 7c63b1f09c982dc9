// Formats and rounding modes of binary floating-point values (IEEE 754-2019).
//
// A format (e, m) has e exponent bits and m significand bits without the hidden bit, hence e + m +
// 1 bits in all: binary32 is (8, 23), which SMT-LIB writes (_ FloatingPoint 8 24).

#ifndef QUILL_UTILS_IEEE_FLOAT_H
#define QUILL_UTILS_IEEE_FLOAT_H

#include <cstdint>

#include "quill/utils/hash.h"

namespace quill {

class IEEEFloat {
 public:
  struct format {
    uint64_t e = 0;
    uint64_t m = 0;
    bool operator==(const format&) const = default;
  };

  enum rounding_mode { ROUND_EVEN = 0, ROUND_ZERO = 1, ROUND_PLUS_INF = 2, ROUND_MINUS_INF = 3 };
};

template <>
struct Hasher<IEEEFloat::format> {
  uint64_t operator()(const IEEEFloat::format& f) const { return (f.e << 32) | f.m; }
};

}  // namespace quill

#endif
