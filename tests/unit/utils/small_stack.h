// For tests of operations that must not recurse.

#ifndef QUILL_TESTS_UNIT_UTILS_SMALL_STACK_H
#define QUILL_TESTS_UNIT_UTILS_SMALL_STACK_H

#include <gtest/gtest.h>
#include <pthread.h>

#include <functional>

namespace quill::testing {

// Runs the action in a thread with a stack of 256 KiB.
inline void run_on_small_stack(std::function<void()> action) {
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, 256 * 1024), 0);
  pthread_t thread;
  const auto start = [](void* argument) -> void* {
    (*static_cast<std::function<void()>*>(argument))();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, start, &action), 0);
  ASSERT_EQ(pthread_join(thread, nullptr), 0);
  pthread_attr_destroy(&attributes);
}

}  // namespace quill::testing

#endif
