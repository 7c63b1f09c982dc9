// Makes operator new of the test program fail on demand, and counts the requests. The pools of the
// tables take their chunks from malloc, which does not fail.

#ifndef QUILL_TESTS_UNIT_UTILS_FAILING_ALLOCATION_H
#define QUILL_TESTS_UNIT_UTILS_FAILING_ALLOCATION_H

#include <cstddef>

namespace quill::testing {

// While it lives, the next `successes` allocations of this thread succeed and all later ones throw
// std::bad_alloc. Not to be nested.
class FailingAllocation {
 public:
  explicit FailingAllocation(long successes);
  ~FailingAllocation();
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;
};

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
