// Declarations in front of what mentions the symbols.
//
// A term that is put into a script may mention symbols that the script declares later, in a scope
// that has not begun or has ended, or not at all. What is missing is declared before the first
// command that mentions it, in the scope of that command, with the sorts that it needs; what a
// get-value mentions, before the check-sat that it asks about. A declaration that comes while one
// of these is in force is left out.

#ifndef QUILL_FRONTENDS_SMT2_LATE_DECLARATIONS_H
#define QUILL_FRONTENDS_SMT2_LATE_DECLARATIONS_H

#include <vector>

#include "quill/frontends/smt2/script.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill::smt2 {

// The commands with what is missing of the uninterpreted symbols below these terms. Throws
// Exception where another symbol has the name at that place.
std::vector<Command> with_declarations(const TermManager& manager,
                                       const std::vector<Command>& commands,
                                       const std::vector<const Term_*>& terms);

}  // namespace quill::smt2

#endif
