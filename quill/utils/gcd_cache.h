// Greatest common divisors of machine words. Those of small numbers come from a table.
//
// The table has an entry for every pair of numbers below 1024, 8 MiB in all, of which only the
// pages that are used take memory. It belongs to the process and is never reset, because an entry,
// once known, stays true. Threads may fill it at the same time, since all of them would store the
// same value in an entry; they read and write entries atomically, in no particular order.

#ifndef QUILL_UTILS_GCD_CACHE_H
#define QUILL_UTILS_GCD_CACHE_H

#include <cstdint>

namespace quill {

inline constexpr uint64_t gcd_cache_side = 1024;

// gcd(a, b) is at [a * gcd_cache_side + b], which is 0 while it is not known. The elements are
// plain words, not atomics, so that every compiler lays the table out as zero pages and no code
// runs at program start.
extern int64_t gcd_cache[gcd_cache_side * gcd_cache_side];

// gcd(0, b) is b. `b` is not 0.
uint64_t gcd(uint64_t a, uint64_t b);

}  // namespace quill

#endif
