// Widths that are sums of other widths. A width is a 64-bit number; a sum that overflows 64 bits
// throws Exception before anything is made. Private to the sources of the term manager.

#ifndef QUILL_TERMS_TERMMANAGER_RESULT_WIDTHS_H
#define QUILL_TERMS_TERMMANAGER_RESULT_WIDTHS_H

#include <cstddef>
#include <cstdint>

#include "quill/utils/exception.h"

namespace quill {

// The width of a bit-vector of a + b bits.
inline size_t sum_of_widths(size_t a, size_t b) {
  if (a > SIZE_MAX - b) {
    throw Exception("a bit-vector of ") << a << " + " << b << " bits is too wide";
  }
  return a + b;
}

// The width of a floating-point bit pattern: sign, exponent and significand. SIZE_MAX if it
// overflows.
inline size_t saturating_ieee_width(size_t e, size_t m) {
  return e > SIZE_MAX - 1 || m > SIZE_MAX - 1 - e ? SIZE_MAX : 1 + e + m;
}

// The same, but throws if the width overflows.
inline size_t ieee_width(size_t e, size_t m) {
  if (e > SIZE_MAX - 1 || m > SIZE_MAX - 1 - e) {
    throw Exception("a bit pattern of 1 + ") << e << " + " << m << " bits is too wide";
  }
  return 1 + e + m;
}

}  // namespace quill

#endif
