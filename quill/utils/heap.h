// Memory that was freed to the C library and goes on to the system.
//
// The C library keeps what lies below memory in use until it is told to look for it. It is told
// when so many bytes have been freed that they are worth a walk over its lists of free pieces.
// Other C libraries than that of GNU are left to themselves.

#ifndef QUILL_UTILS_HEAP_H
#define QUILL_UTILS_HEAP_H

#include <cstddef>

namespace quill::heap {

void release_if_worthwhile(size_t freed_bytes) noexcept;

// A member that is declared first and is thus destroyed last, when all other members have given
// their memory back. Copies of it are of no use.
class ReleaseAtEnd {
 public:
  ReleaseAtEnd() = default;
  ReleaseAtEnd(const ReleaseAtEnd&) = delete;
  ReleaseAtEnd& operator=(const ReleaseAtEnd&) = delete;
  ~ReleaseAtEnd() { release_if_worthwhile(freed_bytes); }

  size_t freed_bytes = 0;  // by then
};

}  // namespace quill::heap

#endif
