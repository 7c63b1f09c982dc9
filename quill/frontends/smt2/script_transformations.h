// What managers do to terms, done to whole scripts: substitution, copying, collection.

#ifndef QUILL_FRONTENDS_SMT2_SCRIPT_TRANSFORMATIONS_H
#define QUILL_FRONTENDS_SMT2_SCRIPT_TRANSFORMATIONS_H

#include <cstddef>

#include "quill/frontends/smt2/script.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill::smt2 {

// Replaces the keys of the map by their values in all terms of the script. Declarations stay, but
// what the values mention is declared before it is used (late_declarations.h). `images` then holds
// the images of all subterms. Throws TermManager::error for a value whose type does not fit its
// key's, and Exception where a name that must be declared means something else; the script is then
// what it was.
void substitute(TermManager& manager, Script& script, TermManager::TermMap& images);

// The script in another manager, in which nothing must be declared. A name that the script declares
// again with another type, when its scope has ended, is freed there in between, as the reader did
// here.
Script copy(const TermManager& source, const Script& script, TermManager& destination);

// Frees what the commands do not mention.
void collect(TermManager& manager, const Script& script);

// Frees what the assertions in force at the end of the script do not need, and returns how many
// assertions these are. The script's other commands then refer to terms that are gone.
size_t collect_to_assertions(TermManager& manager, const Script& script);

}  // namespace quill::smt2

#endif
