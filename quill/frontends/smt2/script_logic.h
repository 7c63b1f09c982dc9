// Chooses the logics under which a script is written.
//
// A script may use more than the logic that it sets: readers differ in what they accept, and
// division by zero is written as a function. The written script sets a logic that covers everything
// it uses.

#ifndef QUILL_FRONTENDS_SMT2_SCRIPT_LOGIC_H
#define QUILL_FRONTENDS_SMT2_SCRIPT_LOGIC_H

#include <vector>

#include "quill/frontends/smt2/script.h"
#include "quill/smtlib/logic.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill::smt2 {

// One logic for each stretch of the script that ends with (reset), and one for the last stretch. It
// is the logic that the stretch sets, extended by what the stretch uses; if it sets none, the logic
// without a name, which provides everything.
std::vector<Logic> written_logics(const TermManager& manager, const Script& script);

}  // namespace quill::smt2

#endif
