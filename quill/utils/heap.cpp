#include "quill/utils/heap.h"

#include <cstdlib>  // defines __GLIBC__ where it is the C library

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace quill::heap {

void release_if_worthwhile([[maybe_unused]] size_t freed_bytes) noexcept {
#ifdef __GLIBC__
  constexpr size_t worth_a_walk = size_t{1} << 20;
  if (freed_bytes >= worth_a_walk) malloc_trim(0);
#endif
}

}  // namespace quill::heap
