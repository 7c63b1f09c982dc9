// When a chained table grows, and to how many buckets.
//
// Bucket counts are primes, each about twice the one before, so that hashes that are little more
// than an address or a small number spread well under the modulus.

#ifndef QUILL_UTILS_BUCKET_GROWTH_H
#define QUILL_UTILS_BUCKET_GROWTH_H

#include <algorithm>
#include <array>
#include <cstdint>

namespace quill::hsh {

inline constexpr std::array<uint64_t, 28> bucket_counts = {
    31,       73,        151,       313,       643,        1291,       2593,
    5233,     10501,     21013,     42073,     84181,      168451,     337219,
    674701,   1349473,   2699299,   5398891,   10798093,   21596719,   43193641,
    86387383, 172775299, 345550609, 691101253, 1382202559, 2764405229, 4294867387,
};

static_assert(std::is_sorted(bucket_counts.begin(), bucket_counts.end()));

// The smallest bucket count that is not less than `wanted`, or the largest one if all are less.
constexpr uint64_t bucket_count_for(uint64_t wanted) {
  const auto* found = std::lower_bound(bucket_counts.begin(), bucket_counts.end(), wanted);
  return found == bucket_counts.end() ? bucket_counts.back() : *found;
}

// Whether a table with `count` elements in `bucket_count` buckets must grow before it takes another
// element. The load is computed in single precision: above some ten million buckets it differs from
// the exact quotient.
inline bool load_exceeded(uint64_t count, uint64_t bucket_count) {
  const float load = static_cast<float>(count) / static_cast<float>(bucket_count);
  return static_cast<double>(load) > 0.7;
}

}  // namespace quill::hsh

#endif
