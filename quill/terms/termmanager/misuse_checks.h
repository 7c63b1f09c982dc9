// Misuse, diagnosed in debug builds: what a caller gives to a manager must be of that manager, not
// freed and not null. Private to the sources of the library.
//
// The public calls of the manager, and what reads terms on its behalf, begin with
//
//   require_own(*this, t);
//
// which costs one look-up. When it fails a message goes to standard error and the process is
// aborted, as by an assertion: this is the one place of the library that does either. Release
// builds compile the checks to nothing.
//
//   quill: misuse: a term of another manager
//   quill: misuse: a term that was freed
//   quill: misuse: a null term
//
// and the same for symbols and types. What is freed while it is needed is reported as well:
//
//   quill: misuse: freeing the application type
//   quill: misuse: freeing a standard type
//   quill: misuse: freeing a type that another type uses
//   quill: misuse: freeing a type that a symbol uses
//   quill: misuse: freeing a symbol whose name another symbol has
//
// A pointer to anything else passes for a term of another manager; one to a freed term passes for
// the term that has its memory now, if one has. Null passes only where a member documents what it
// means: such members ask require_own_or_null. What a delegate or an overridden make_term returns
// is checked as if it had been given.

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

// The pairs of a caller's map, also those that the call will not come upon: all of them, or the
// first ones of a map that may be large and is given again and again. An image may be null.
inline void require_own_pairs(const TermManager& of_keys, const TermManager& of_images,
                              const TermManager::TermMap& pairs, size_t most = SIZE_MAX) {
  for (const auto& [key, image] : pairs) {
    if (most-- == 0) break;
    require_own(of_keys, key);
    require_own_or_null(of_images, image);
  }
}

// That nothing needs the type: it is none of the standard ones, and no other type and no symbol
// uses it. Looks at all of these.
void require_unused(const TermManager& m, const DataType* t,
                    std::span<const DataType* const> standard);

// That the name of the symbol, if the symbol gave it back, was not given to another one.
void require_no_successor(const TermManager& m, const Symbol* s);

#endif

}  // namespace quill

#endif
