// What substitution and copying refuse of the pairs that they are given. Private to the sources of
// the term manager.
//
// Being a key decides whether a term is replaced. A key whose image is null has been found and
// can't be replaced by anything: no term may hold a null argument. The image is refused where it is
// read, before the term that would hold it is asked for.

#ifndef QUILL_TERMS_TERMMANAGER_SUBSTITUTION_ARGUMENTS_H
#define QUILL_TERMS_TERMMANAGER_SUBSTITUTION_ARGUMENTS_H

#include "quill/terms/termmanager/term_manager.h"

namespace quill {

[[noreturn, gnu::cold]] inline void reject_substitution() {
  throw TermManager::error("Incompatible arguments to substitute");
}

// The image, which must be a term.
inline const Term_* require_image(const Term_* image) {
  if (image == nullptr) reject_substitution();
  return image;
}

}  // namespace quill

#endif
