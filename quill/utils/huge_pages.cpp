#include "quill/utils/huge_pages.h"

#include <cassert>

#if defined(__has_include)
#if __has_include(<sys/mman.h>)
#include <sys/mman.h>
#endif
#endif

#include "quill/utils/address_sanitizer.h"

namespace quill::huge_pages {

#if defined(MADV_HUGEPAGE) && defined(MAP_ANONYMOUS)

void* allocate(size_t bytes) {
  assert(bytes % page_bytes == 0);
  if (bytes > SIZE_MAX - page_bytes) throw std::bad_alloc();
  // A mapping with one page more than requested contains an aligned block; the rest goes back.
  const size_t mapped = bytes + page_bytes;
  void* const start =
      mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (start == MAP_FAILED) throw std::bad_alloc();
  const size_t before = round_up(reinterpret_cast<uintptr_t>(start)) -  //
                        reinterpret_cast<uintptr_t>(start);
  char* const block = static_cast<char*>(start) + before;
  if (before != 0) munmap(start, before);
  if (before != page_bytes) munmap(block + bytes, page_bytes - before);
  madvise(block, bytes, MADV_HUGEPAGE);  // only a hint: the block works without huge pages
  return block;
}

// The address sanitizer marks addresses, and the system hands out the same addresses again.
void deallocate(void* block, size_t bytes) noexcept {
  unpoison(block, bytes);
  munmap(block, bytes);
}

void discard(void* part, size_t bytes) noexcept { madvise(part, bytes, MADV_DONTNEED); }

#else

void* allocate(size_t bytes) { return ::operator new (bytes, std::align_val_t{page_bytes}); }

void deallocate(void* block, size_t bytes) noexcept {
  unpoison(block, bytes);
  ::operator delete (block, std::align_val_t{page_bytes});
}

void discard(void*, size_t) noexcept {}

#endif

}  // namespace quill::huge_pages
