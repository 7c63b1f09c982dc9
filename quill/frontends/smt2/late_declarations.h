// Puts declarations before the commands that mention the symbols.
//
// A term that is put into a script may mention symbols that the script declares later, or in a
// scope that has not begun or has ended, or not at all. Missing symbols are declared before the
// first command that mentions them, in the scope of that command, with the sorts that they need;
// those that a get-value mentions, before the check-sat that it asks about. A declaration of the
// script is left out if it comes while one of these is in force.

#ifndef QUILL_FRONTENDS_SMT2_LATE_DECLARATIONS_H
#define QUILL_FRONTENDS_SMT2_LATE_DECLARATIONS_H

#include <vector>

#include "quill/frontends/smt2/script.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill::smt2 {

// The commands, with declarations of the uninterpreted symbols below these terms that are missing.
// Throws Exception if another symbol has the name at that place.
std::vector<Command> with_declarations(const TermManager& manager,
                                       const std::vector<Command>& commands,
                                       const std::vector<const Term_*>& terms);

}  // namespace quill::smt2

#endif
