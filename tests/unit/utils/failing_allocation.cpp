// operator new and operator delete over malloc and free, with a countdown and counters.

#include "tests/unit/utils/failing_allocation.h"

#include <cstdlib>
#include <new>

namespace {

constexpr long never_fails = -1;
thread_local long successes_left = never_fails;
thread_local size_t all_allocations = 0;
thread_local size_t all_bytes = 0;

}  // namespace

namespace quill::testing {

FailingAllocation::FailingAllocation(long successes) { successes_left = successes; }
FailingAllocation::~FailingAllocation() { successes_left = never_fails; }

AllocationCount::AllocationCount() : allocations_before(all_allocations), bytes_before(all_bytes) {}
size_t AllocationCount::allocations() const { return all_allocations - allocations_before; }
size_t AllocationCount::bytes() const { return all_bytes - bytes_before; }

}  // namespace quill::testing

void* operator new(size_t size) {
  ++all_allocations;
  all_bytes += size;
  if (successes_left == 0) throw std::bad_alloc();
  if (successes_left > 0) --successes_left;
  void* memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void* operator new(size_t size, const std::nothrow_t&) noexcept {
  try {
    return operator new(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
void operator delete(void* memory, size_t) noexcept { std::free(memory); }

// The address sanitizer otherwise ends the program when malloc is asked for more than there can be.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() { return "allocator_may_return_null=1"; }
