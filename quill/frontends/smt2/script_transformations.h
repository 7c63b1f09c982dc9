// Substitution, copying and collection for whole scripts.

#ifndef QUILL_FRONTENDS_SMT2_SCRIPT_TRANSFORMATIONS_H
#define QUILL_FRONTENDS_SMT2_SCRIPT_TRANSFORMATIONS_H

#include <cstddef>

#include "quill/frontends/smt2/script.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill::smt2 {

// Replaces the keys of the map by their values in all terms of the script. Declarations stay, but
// symbols that the values mention are declared before they are used (late_declarations.h). `images`
// then holds the images of all subterms. Throws TermManager::error for a value whose type does not
// fit its key's, and Exception if a name that must be declared means something else; the script is
// then unchanged.
void substitute(TermManager& manager, Script& script, TermManager::TermMap& images);

// Copies the script into another manager, which must not have declarations. If the script declares
// a name again with another type, after its scope has ended, the copy frees the name in between, as
// the reader did in the source.
Script copy(const TermManager& source, const Script& script, TermManager& destination);

// Frees everything that the commands do not mention.
void collect(TermManager& manager, const Script& script);

// Frees everything that the assertions in force at the end of the script do not need, and returns
// the number of these assertions. The script's other commands then refer to freed terms.
size_t collect_to_assertions(TermManager& manager, const Script& script);

}  // namespace quill::smt2

#endif
