// A malloc that throws std::bad_alloc when there is no memory.
//
// The caller owns the memory and releases it with std::free.

#ifndef QUILL_UTILS_XMALLOC_H
#define QUILL_UTILS_XMALLOC_H

#include <cstddef>
#include <cstdlib>
#include <new>

namespace quill {

// Returns at least `size` bytes, aligned for every fundamental type. A request for 0 bytes yields a
// distinct block as well: malloc(0) may return null, which must not be mistaken for a lack of
// memory.
template <class T>
T* xmalloc(size_t size) {
  void* memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return static_cast<T*>(memory);
}

}  // namespace quill

#endif
