// malloc and mmap that fail on demand, and functions for GMP.
//
// The program is linked so that the library's calls of malloc and mmap come here, and that
// __real_malloc is the malloc of the C library or of the address sanitizer.

#include "tests/unit/exhaustion/failing_pools.h"

#include <gmp.h>
#include <sys/mman.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "tests/support/failing_memory.h"

extern "C" {
void* __real_malloc(size_t size);
void* __wrap_malloc(size_t size);
void* __real_mmap(void* start, size_t size, int protection, int flags, int file, off_t offset);
void* __wrap_mmap(void* start, size_t size, int protection, int flags, int file, off_t offset);
}

namespace {

std::atomic<size_t> malloc_calls = 0;
std::atomic<size_t> mmap_calls = 0;

// A GMP block begins with its size and a word that tells it from other blocks.
struct GmpHeader {
  size_t size;
  uint64_t mark;
};
constexpr uint64_t gmp_mark = 0x6b636f6c62706d67;
std::atomic<size_t> gmp_blocks_held = 0;
std::atomic<size_t> gmp_largest = 0;

void* gmp_allocate(size_t size) {
  auto* header = static_cast<GmpHeader*>(__real_malloc(sizeof(GmpHeader) + size));
  if (header == nullptr) std::abort();
  *header = {size, gmp_mark};
  ++gmp_blocks_held;
  gmp_largest = std::max<size_t>(gmp_largest, size);
  return header + 1;
}

void gmp_free(void* memory, size_t) {
  GmpHeader* header = static_cast<GmpHeader*>(memory) - 1;
  if (header->mark != gmp_mark) std::abort();
  header->mark = 0;
  --gmp_blocks_held;
  std::free(header);
}

void* gmp_reallocate(void* memory, size_t, size_t size) {
  void* larger = gmp_allocate(size);
  const GmpHeader* header = static_cast<GmpHeader*>(memory) - 1;
  std::memcpy(larger, memory, std::min(header->size, size));
  gmp_free(memory, 0);
  return larger;
}

// Before the first number is made.
const bool gmp_is_set_apart = [] {
  mp_set_memory_functions(gmp_allocate, gmp_reallocate, gmp_free);
  return true;
}();

}  // namespace

namespace quill::testing {

size_t pool_chunks() { return malloc_calls; }
size_t large_blocks() { return mmap_calls; }
size_t gmp_blocks() { return gmp_blocks_held; }
size_t largest_gmp_block() { return gmp_largest; }

}  // namespace quill::testing

void* __wrap_malloc(size_t size) {
  ++malloc_calls;
  return quill::testing::next_allocation_fails() ? nullptr : __real_malloc(size == 0 ? 1 : size);
}

void* __wrap_mmap(void* start, size_t size, int protection, int flags, int file, off_t offset) {
  ++mmap_calls;
  return quill::testing::next_allocation_fails()
             ? MAP_FAILED
             : __real_mmap(start, size, protection, flags, file, offset);
}
