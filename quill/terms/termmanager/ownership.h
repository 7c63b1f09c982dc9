// Misuse, diagnosed in debug builds: what a caller gives to a manager must be of that manager and
// not freed. Private to the sources of the library.
//
// The public calls of the manager, and what reads terms on its behalf, begin with
//
//   require_own(*this, t);
//
// which costs one look-up. When it fails a message goes to standard error and the process is
// aborted, as by an assertion: this is the one place of the library that does either. Null pointers
// pass. Release builds compile the checks to nothing.
//
//   quill: misuse: a term of another manager
//   quill: misuse: a term that was freed
//
// and the same for symbols and types. A pointer to anything else passes for a term of another
// manager; one to a freed term passes for the term that has its memory now, if one has.

#ifndef QUILL_TERMS_TERMMANAGER_OWNERSHIP_H
#define QUILL_TERMS_TERMMANAGER_OWNERSHIP_H

#include <initializer_list>
#include <span>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"

namespace quill {

#ifdef NDEBUG

inline void require_own(const TermManager&, const Term_*) {}
inline void require_own(const TermManager&, const Symbol*) {}
inline void require_own(const TermManager&, const DataType*) {}
inline void require_own(const TermManager&, std::span<const Term_* const>) {}
inline void require_own(const TermManager&, std::initializer_list<const Term_*>) {}
template <class Object>
void require_own(const TermManager&, const std::vector<const Object*>&) {}

#else

[[noreturn]] void report_misuse(const char* kind, OwnershipRecord::Standing standing);

inline void require_own(const TermManager& m, const Term_* t) {
  const auto standing = m.get_bank()->ownership().find(t);
  if (t != nullptr && standing != OwnershipRecord::Standing::Owned) report_misuse("term", standing);
}

inline void require_own(const TermManager& m, const Symbol* s) {
  const auto standing = m.get_signature()->ownership().find(s);
  if (s != nullptr && standing != OwnershipRecord::Standing::Owned) {
    report_misuse("symbol", standing);
  }
}

inline void require_own(const TermManager& m, const DataType* t) {
  const auto standing = m.get_universe()->ownership().find(t);
  if (t != nullptr && standing != OwnershipRecord::Standing::Owned) report_misuse("type", standing);
}

inline void require_own(const TermManager& m, std::span<const Term_* const> terms) {
  for (const Term_* t : terms) require_own(m, t);
}

inline void require_own(const TermManager& m, std::initializer_list<const Term_*> terms) {
  for (const Term_* t : terms) require_own(m, t);
}

template <class Object>
void require_own(const TermManager& m, const std::vector<const Object*>& objects) {
  for (const Object* object : objects) require_own(m, object);
}

#endif

}  // namespace quill

#endif
