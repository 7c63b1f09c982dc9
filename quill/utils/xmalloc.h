// malloc that throws: raw memory whose lack surfaces as std::bad_alloc.
//
// The caller owns the memory and releases it with std::free.

#ifndef QUILL_UTILS_XMALLOC_H
#define QUILL_UTILS_XMALLOC_H

#include <cstddef>
#include <cstdlib>
#include <new>

namespace quill {

// At least `size` bytes, aligned for every fundamental type. A request for 0 bytes yields a
// distinct block as well: malloc(0) may answer null, which must not pass for exhaustion.
template <class T>
T* xmalloc(size_t size) {
  void* memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return static_cast<T*>(memory);
}

}  // namespace quill

#endif
