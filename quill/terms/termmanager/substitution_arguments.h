// The checks that substitution and copying make on the pairs given to them. Private to the sources
// of the term manager.
//
// Every term that is a key is replaced. A null image cannot replace it, because no argument of a
// term may be null; it is refused where it is read, before the term that would hold it is
// requested.

#ifndef QUILL_TERMS_TERMMANAGER_SUBSTITUTION_ARGUMENTS_H
#define QUILL_TERMS_TERMMANAGER_SUBSTITUTION_ARGUMENTS_H

#include "quill/terms/termmanager/term_manager.h"

namespace quill {

[[noreturn, gnu::cold]] inline void reject_substitution() {
  throw TermManager::error("Incompatible arguments to substitute");
}

inline const Term_* require_image(const Term_* image) {
  if (image == nullptr) reject_substitution();
  return image;
}

}  // namespace quill

#endif
