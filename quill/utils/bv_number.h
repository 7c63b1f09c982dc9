// Powers of two as exact numbers, the bounds of bit-vector values.

#ifndef QUILL_UTILS_BV_NUMBER_H
#define QUILL_UTILS_BV_NUMBER_H

#include <cstdint>

#include "quill/utils/qnumber.h"

namespace quill {

struct BVNumber {
  // Stores 2^n in `out`. A small target stays small up to n = 62; a big one stays big. Takes time
  // and space linear in n. Throws std::bad_alloc for n above 2^32.
  static void pow2(uint64_t n, QNumber* out);
};

}  // namespace quill

#endif
