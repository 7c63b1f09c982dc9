// Makes the memory of the test program run out on demand: operator new, the malloc of the
// library's pools, and the mmap of its large tables. GMP's allocations are not counted and never
// fail; they are kept separate instead, so that the program stops if a GMP block reaches free() or
// another block reaches GMP's deallocation.

#ifndef QUILL_TESTS_UNIT_EXHAUSTION_FAILING_MEMORY_H
#define QUILL_TESTS_UNIT_EXHAUSTION_FAILING_MEMORY_H

#include <cstddef>

namespace quill::testing {

enum class Failures { Once, FromThenOn };

// While it lives, the first `successes` allocations of this thread succeed and the next one fails,
// or the next one and all later ones. Not to be nested.
class FailingMemory {
 public:
  FailingMemory(size_t successes, Failures failures);
  ~FailingMemory();
  FailingMemory(const FailingMemory&) = delete;
  FailingMemory& operator=(const FailingMemory&) = delete;

  // Whether an allocation failed, and how many were asked for.
  bool has_failed() const;
  size_t asked() const;
};

// How many blocks of malloc the library's pools have asked for, and how many of mmap its large
// tables.
size_t pool_chunks();
size_t large_blocks();

// The blocks that GMP holds in this program, and the largest one that it ever asked for.
size_t gmp_blocks();
size_t largest_gmp_block();

}  // namespace quill::testing

#endif
