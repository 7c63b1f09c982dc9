// Diagnoses misuse in debug builds: what a caller passes to a manager must belong to that manager,
// and must be neither freed nor null. Private to the sources of the library.
//
// Each public call of the manager, and library code that reads terms on its behalf, begins with
//
//   require_own(*this, t);
//
// which costs one look-up. If the check fails, it writes a message to standard error and aborts the
// process. Apart from assertions, no other code of the library does either. In release builds the
// checks compile to nothing. The messages are
//
//   quill: misuse: a term of another manager
//   quill: misuse: a term that was freed
//   quill: misuse: a null term
//
// and the same for symbols and types. Freeing what is still needed is reported as well:
//
//   quill: misuse: freeing the application type
//   quill: misuse: freeing a standard type
//   quill: misuse: freeing a type that another type uses
//   quill: misuse: freeing a type that a symbol uses
//   quill: misuse: freeing a symbol whose name another symbol has
//
// A pointer to anything else is reported as a term of another manager. A pointer to a freed term
// passes if another term now has its memory. Null passes only where a member says what it means;
// such members call require_own_or_null. What a delegate or an overridden make_term returns is
// checked like an argument.

#ifndef QUILL_TERMS_TERMMANAGER_MISUSE_CHECKS_H
#define QUILL_TERMS_TERMMANAGER_MISUSE_CHECKS_H

#include <cstddef>
#include <cstdint>
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

template <class Object>
void require_own_or_null(const TermManager&, const Object*) {}
template <class Object>
void require_own_or_null(const TermManager&, const std::vector<const Object*>&) {}

inline void require_own_pairs(const TermManager&, const TermManager&, const TermManager::TermMap&,
                              size_t = SIZE_MAX) {}

inline void require_unused(const TermManager&, const DataType*, std::span<const DataType* const>) {}
inline void require_no_successor(const TermManager&, const Symbol*) {}

#else

[[noreturn]] void report_misuse(const char* kind, const void* object,
                                OwnershipRecord::Standing standing);

inline void require_own(const TermManager& m, const Term_* t) {
  const auto standing = m.get_bank()->ownership().find(t);
  if (standing != OwnershipRecord::Standing::Owned) report_misuse("term", t, standing);
}

inline void require_own(const TermManager& m, const Symbol* s) {
  const auto standing = m.get_signature()->ownership().find(s);
  if (standing != OwnershipRecord::Standing::Owned) report_misuse("symbol", s, standing);
}

inline void require_own(const TermManager& m, const DataType* t) {
  const auto standing = m.get_universe()->ownership().find(t);
  if (standing != OwnershipRecord::Standing::Owned) report_misuse("type", t, standing);
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

template <class Object>
void require_own_or_null(const TermManager& m, const Object* object) {
  if (object != nullptr) require_own(m, object);
}

template <class Object>
void require_own_or_null(const TermManager& m, const std::vector<const Object*>& objects) {
  for (const Object* object : objects) require_own_or_null(m, object);
}

// Checks the pairs of a caller's map, including those that the call will not look at: all of them,
// or the first `most` of a map that may be large and is passed repeatedly. An image may be null.
inline void require_own_pairs(const TermManager& of_keys, const TermManager& of_images,
                              const TermManager::TermMap& pairs, size_t most = SIZE_MAX) {
  for (const auto& [key, image] : pairs) {
    if (most-- == 0) break;
    require_own(of_keys, key);
    require_own_or_null(of_images, image);
  }
}

// Checks that the type is not a standard one and that no other type and no symbol uses it. Looks at
// all types and symbols.
void require_unused(const TermManager& m, const DataType* t,
                    std::span<const DataType* const> standard);

// Checks that no other symbol has the name, which this symbol may have given back.
void require_no_successor(const TermManager& m, const Symbol* s);

#endif

}  // namespace quill

#endif
