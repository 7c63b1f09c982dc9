// Returns memory that was freed to the C library to the system.
//
// The C library keeps freed memory that lies below memory in use until it is told to look for it.
// It is told once so many bytes have been freed that they are worth a walk over its free lists. C
// libraries other than the GNU one are left alone.

#ifndef QUILL_UTILS_HEAP_H
#define QUILL_UTILS_HEAP_H

#include <cstddef>

namespace quill::heap {

void release_if_worthwhile(size_t freed_bytes) noexcept;

// A member that is declared first and therefore destroyed last, after all other members have freed
// their memory.
class ReleaseAtEnd {
 public:
  ReleaseAtEnd() = default;
  ReleaseAtEnd(const ReleaseAtEnd&) = delete;
  ReleaseAtEnd& operator=(const ReleaseAtEnd&) = delete;
  ~ReleaseAtEnd() { release_if_worthwhile(freed_bytes); }

  size_t freed_bytes = 0;  // what the other members have freed by then
};

}  // namespace quill::heap

#endif
