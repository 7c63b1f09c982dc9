// Counts the table entries that this thread has looked at, for tests of what look-ups cost.
//
// Each index slot and each chain node that a look-up, an insertion or a removal visits counts. Only
// debug builds count; in other builds the number stays 0.

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
