// Lets the malloc of the library's pools and the mmap of its large tables run out together with
// operator new, as FailingMemory says. GMP's allocations are not counted and never fail; they are
// kept separate instead, so that the program stops if a GMP block reaches free() or another block
// reaches GMP's deallocation.

#ifndef TESTS_UNIT_EXHAUSTION_FAILING_POOLS_H
#define TESTS_UNIT_EXHAUSTION_FAILING_POOLS_H

#include <cstddef>

namespace quill::testing {

// How many blocks of malloc the library's pools have asked for, and how many of mmap its large
// tables.
size_t pool_chunks();
size_t large_blocks();

// The blocks that GMP holds in this program, and the largest one that it ever asked for.
size_t gmp_blocks();
size_t largest_gmp_block();

}  // namespace quill::testing

#endif
