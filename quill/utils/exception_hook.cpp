// The place for a breakpoint on every error.
//
// In a file of its own, so that the compiler cannot see where it is called that nothing happens
// here, and drop the call. The empty statement keeps builds that look across files from seeing it.

#include "quill/utils/exception.h"

namespace quill {

[[gnu::noinline]] void Exception::dump_msg_and_raise_assertion(const std::string& message) {
  asm volatile("" : : "r"(&message) : "memory");
}

}  // namespace quill
