// Makes operator new of the test program fail on demand. The pools of the tables take their chunks
// from malloc, which stays as it is.

#ifndef QUILL_TESTS_UNIT_UTILS_FAILING_ALLOCATION_H
#define QUILL_TESTS_UNIT_UTILS_FAILING_ALLOCATION_H

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

}  // namespace quill::testing

#endif
