// How many entries of tables this thread has looked at so far, for tests of what look-ups cost.
//
// Each slot of an index and each node of a chain that a look-up or an insertion comes to counts.
// Debug builds alone count; in others the number stays 0.

#ifndef QUILL_UTILS_ENTRY_COUNT_H
#define QUILL_UTILS_ENTRY_COUNT_H

#include <cstdint>

namespace quill {

inline uint64_t& entries_looked_at() {
  static thread_local uint64_t count = 0;
  return count;
}

inline void count_entry() {
#ifndef NDEBUG
  entries_looked_at()++;
#endif
}

}  // namespace quill

#endif
