// For tests of operations that must not recurse.

#ifndef TESTS_SUPPORT_SMALL_STACK_H
#define TESTS_SUPPORT_SMALL_STACK_H

#include <functional>

namespace quill::testing {

// Runs the action in a thread with a stack of 256 KiB.
void run_on_small_stack(std::function<void()> action);

}  // namespace quill::testing

#endif
