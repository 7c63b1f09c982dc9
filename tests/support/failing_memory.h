// Makes the memory of the test program run out on demand, and counts what is asked of operator new.
// This replaces operator new and operator delete in the programs that it is linked to; the
// library's pools take their chunks from malloc, which does not fail unless the program sees to it,
// as tests/unit/exhaustion/failing_pools.cpp does.

#ifndef TESTS_SUPPORT_FAILING_MEMORY_H
#define TESTS_SUPPORT_FAILING_MEMORY_H

#include <cstddef>

namespace quill::testing {

enum class Failures { Once, FromThenOn };

// While it lives, the first `successes` allocations of this thread succeed and the next one fails,
// or the next one and all later ones. Not to be nested.
class FailingMemory {
 public:
  explicit FailingMemory(size_t successes, Failures failures = Failures::FromThenOn);
  ~FailingMemory();
  FailingMemory(const FailingMemory&) = delete;
  FailingMemory& operator=(const FailingMemory&) = delete;

  // Whether an allocation failed, and how many were asked for.
  bool has_failed() const;
  size_t asked() const;
};

// Counts one allocation of this thread, and tells whether it has to fail: for allocators that run
// out together with operator new.
bool next_allocation_fails();

// What this thread has asked operator new for since the construction, whether it succeeded or not.
class AllocationCount {
 public:
  AllocationCount();
  size_t allocations() const;
  size_t bytes() const;

 private:
  size_t allocations_before;
  size_t bytes_before;
};

}  // namespace quill::testing

#endif
