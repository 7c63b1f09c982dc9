// Large blocks of memory in huge pages, where the system has them.
//
// Code reads a table or a slab region of many megabytes at random; with pages of 4 KiB nearly every
// such read misses the processor's TLB as well as its caches. The size of a block is a multiple of
// a huge page, and its address is aligned to one, so that the system can map it in huge pages. On
// systems without mmap and madvise, blocks come from operator new.
//
// Everything here is safe to call from any thread.

#ifndef QUILL_UTILS_HUGE_PAGES_H
#define QUILL_UTILS_HUGE_PAGES_H

#include <cstddef>
#include <cstdint>
#include <new>

namespace quill::huge_pages {

constexpr size_t page_bytes = size_t{1} << 21;

// The smallest multiple of page_bytes that has room for this many bytes.
constexpr size_t round_up(size_t bytes) { return (bytes + page_bytes - 1) & ~(page_bytes - 1); }

// Returns a block with unspecified contents. `bytes` is a multiple of page_bytes. Throws
// std::bad_alloc.
void* allocate(size_t bytes);

// Unpoisons the parts of the block that are poisoned for the address sanitizer.
void deallocate(void* block, size_t bytes) noexcept;

// Returns the memory of a part of a block to the system. Its addresses stay valid; its contents
// become unspecified. The part begins and ends at multiples of 64 KiB within the block.
void discard(void* part, size_t bytes) noexcept;

// An allocator for vectors. Takes requests of min_bytes or more from such blocks and smaller ones
// from operator new.
template <class T, size_t min_bytes = page_bytes>
struct Allocator {
  using value_type = T;
  template <class U>
  struct rebind {
    using other = Allocator<U, min_bytes>;
  };

  Allocator() = default;
  template <class U>
  Allocator(const Allocator<U, min_bytes>&) {}  // NOLINT(google-explicit-constructor): as others

  T* allocate(size_t n) {
    if (n > (SIZE_MAX - page_bytes) / sizeof(T)) throw std::bad_array_new_length();
    const size_t bytes = n * sizeof(T);
    return static_cast<T*>(bytes < min_bytes ? ::operator new(bytes)
                                             : huge_pages::allocate(round_up(bytes)));
  }
  void deallocate(T* block, size_t n) noexcept {
    const size_t bytes = n * sizeof(T);
    if (bytes < min_bytes) {
      ::operator delete(block);
    } else {
      huge_pages::deallocate(block, round_up(bytes));
    }
  }
  friend bool operator==(const Allocator&, const Allocator&) { return true; }
};

// For data that lasts no longer than one walk. It is filled once and read a few times, so that
// getting memory from the system costs as much as reading it. A huge page comes whole; the system
// may first have to find and clear one, while ordinary pages are at hand.
template <class T>
using WalkAllocator = Allocator<T, 4 * page_bytes>;

}  // namespace quill::huge_pages

#endif
