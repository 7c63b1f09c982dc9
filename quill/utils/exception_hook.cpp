// The place for a breakpoint on every error.
//
// The function has a file of its own, so that the compiler cannot see at the calls that nothing
// happens here and drop them. The empty statement hides this from builds that optimise across
// files.

#include "quill/utils/exception.h"

namespace quill {

[[gnu::noinline]] void Exception::dump_msg_and_raise_assertion(const std::string& message) {
  asm volatile("" : : "r"(&message) : "memory");
}

}  // namespace quill
