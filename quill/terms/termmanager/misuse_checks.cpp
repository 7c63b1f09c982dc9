#include "quill/terms/termmanager/misuse_checks.h"

#ifndef NDEBUG

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace quill {

namespace {

[[noreturn]] void report_misuse(const char* what) {
  std::fprintf(stderr, "quill: misuse: %s\n", what);
  std::abort();
}

}  // namespace

void report_misuse(const char* kind, const void* object, OwnershipRecord::Standing standing) {
  if (object == nullptr) {
    std::fprintf(stderr, "quill: misuse: a null %s\n", kind);
  } else {
    const bool is_freed = standing == OwnershipRecord::Standing::Freed;
    std::fprintf(stderr, "quill: misuse: a %s %s\n", kind,
                 is_freed ? "that was freed" : "of another manager");
  }
  std::abort();
}

void require_unused(const TermManager& m, const DataType* t,
                    std::span<const DataType* const> standard) {
  const TypeUniverse& types = *m.get_universe();
  if (t == types.get_application_type()) report_misuse("freeing the application type");
  if (std::find(standard.begin(), standard.end(), t) != standard.end()) {
    report_misuse("freeing a standard type");
  }
  for (size_t i = 0; i < types.size(); ++i) {
    const DataType* user = types.type(i);
    for (size_t k = 0; k < user->num_components(); ++k) {
      if (user->get_component(k) == t) report_misuse("freeing a type that another type uses");
    }
  }
  const Signature& symbols = *m.get_signature();
  for (size_t i = 0; i < symbols.size(); ++i) {
    if (symbols.symbol(i)->type == t) report_misuse("freeing a type that a symbol uses");
  }
}

void require_no_successor(const TermManager& m, const Symbol* s) {
  const Symbol* owner = m.get_signature()->get_symbol(s->name);
  if (owner != nullptr && owner != s) {
    report_misuse("freeing a symbol whose name another symbol has");
  }
}

}  // namespace quill

#endif
