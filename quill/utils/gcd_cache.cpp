// Euclid's algorithm, which stops at the first pair that the table knows.

#include "quill/utils/gcd_cache.h"

#include <atomic>
#include <cassert>
#include <numeric>

namespace quill {

alignas(64) int64_t gcd_cache[gcd_cache_side * gcd_cache_side];

namespace {

std::atomic_ref<int64_t> entry(uint64_t a, uint64_t b) {
  return std::atomic_ref<int64_t>(gcd_cache[a * gcd_cache_side + b]);
}

}  // namespace

uint64_t gcd(uint64_t a, uint64_t b) {
  assert(b != 0 && "the gcd of a pair whose second part is zero was asked for");
  for (;;) {
    if (a < gcd_cache_side && b < gcd_cache_side) {
      const int64_t known = entry(a, b).load(std::memory_order_relaxed);
      if (known != 0) return static_cast<uint64_t>(known);
      const auto found = static_cast<int64_t>(std::gcd(a, b));
      entry(a, b).store(found, std::memory_order_relaxed);
      entry(b, a).store(found, std::memory_order_relaxed);
      // The loop goes on although it has the result, to fill the entries of the pairs that follow.
    }
    const uint64_t remainder = a % b;
    if (remainder == 0) return b;
    a = b;
    b = remainder;
  }
}

}  // namespace quill
