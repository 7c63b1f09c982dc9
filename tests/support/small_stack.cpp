#include "tests/support/small_stack.h"

#include <pthread.h>

#include <cstddef>
#include <system_error>

namespace quill::testing {

namespace {

constexpr size_t stack_bytes = 256 * 1024;

void require_success(int code) {
  if (code != 0) throw std::system_error(code, std::generic_category(), "a thread's small stack");
}

void* start(void* argument) {
  (*static_cast<std::function<void()>*>(argument))();
  return nullptr;
}

}  // namespace

void run_on_small_stack(std::function<void()> action) {
  pthread_attr_t attributes;
  require_success(pthread_attr_init(&attributes));
  require_success(pthread_attr_setstacksize(&attributes, stack_bytes));
  pthread_t thread;
  require_success(pthread_create(&thread, &attributes, start, &action));
  require_success(pthread_join(thread, nullptr));
  pthread_attr_destroy(&attributes);
}

}  // namespace quill::testing
