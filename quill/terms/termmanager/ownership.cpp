#include "quill/terms/termmanager/ownership.h"

#ifndef NDEBUG

#include <cstdio>
#include <cstdlib>

namespace quill {

void report_misuse(const char* kind, OwnershipRecord::Standing standing) {
  const bool is_freed = standing == OwnershipRecord::Standing::Freed;
  std::fprintf(stderr, "quill: misuse: a %s %s\n", kind,
               is_freed ? "that was freed" : "of another manager");
  std::abort();
}

}  // namespace quill

#endif
