// The symbols that a user of the manager has made: those without a fixed meaning.

#ifndef QUILL_TERMS_TERMMANAGER_USED_SYMBOLS_H
#define QUILL_TERMS_TERMMANAGER_USED_SYMBOLS_H

#include <vector>

#include "quill/terms/symbol.h"
#include "quill/terms/term.h"

namespace quill {

class TermManager;

// The constants, functions and variables at and below the roots, each once, in the order in which a
// walk from the first argument to the last meets them. Linear; nothing recurses.
std::vector<const Symbol*> free_symbols(const TermManager& m, TermSpan roots);
std::vector<const Symbol*> free_symbols(const TermManager& m, const Term_* root);

// All constants, functions and variables of the manager, in the order in which they were made.
std::vector<const Symbol*> user_symbols(const TermManager& m);

}  // namespace quill

#endif
