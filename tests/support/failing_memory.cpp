// operator new and operator delete over the allocator of the C library, with a countdown and
// counters.

#include "tests/support/failing_memory.h"

#include <stdlib.h>

#include <cstdlib>
#include <new>

namespace {

struct Countdown {
  bool is_armed = false;
  quill::testing::Failures failures = quill::testing::Failures::Once;
  size_t successes = 0;
  size_t asked = 0;
};
thread_local Countdown countdown;

thread_local size_t all_allocations = 0;
thread_local size_t all_bytes = 0;

}  // namespace

namespace quill::testing {

FailingMemory::FailingMemory(size_t successes, Failures failures) {
  countdown = {true, failures, successes, 0};
}
FailingMemory::~FailingMemory() { countdown.is_armed = false; }
bool FailingMemory::has_failed() const { return countdown.asked > countdown.successes; }
size_t FailingMemory::asked() const { return countdown.asked; }

bool next_allocation_fails() {
  if (!countdown.is_armed) return false;
  const size_t number = countdown.asked++;
  return countdown.failures == Failures::Once ? number == countdown.successes
                                              : number >= countdown.successes;
}

AllocationCount::AllocationCount() : allocations_before(all_allocations), bytes_before(all_bytes) {}
size_t AllocationCount::allocations() const { return all_allocations - allocations_before; }
size_t AllocationCount::bytes() const { return all_bytes - bytes_before; }

}  // namespace quill::testing

void* operator new(size_t size, const std::nothrow_t&) noexcept {
  ++all_allocations;
  all_bytes += size;
  if (quill::testing::next_allocation_fails()) return nullptr;
  // Not malloc, which a program may have led through a function of its own that fails, too.
  void* memory = nullptr;
  const size_t alignment = alignof(std::max_align_t);
  return posix_memalign(&memory, alignment, size == 0 ? 1 : size) == 0 ? memory : nullptr;
}

void* operator new(size_t size) {
  void* memory = operator new(size, std::nothrow);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
void operator delete(void* memory, size_t) noexcept { std::free(memory); }

// The address sanitizer otherwise ends the program when malloc is asked for more than there can be.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() { return "allocator_may_return_null=1"; }
