// The logics under which a script is written.
//
// A script may use more than the logic that it sets: readers differ in what they let pass, and a
// division by zero is written as a function. What is written sets a logic that covers it.

#ifndef QUILL_FRONTENDS_SMT2_SCRIPT_LOGIC_H
#define QUILL_FRONTENDS_SMT2_SCRIPT_LOGIC_H

#include <vector>

#include "quill/frontends/smt2/script.h"
#include "quill/smtlib/logic.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill::smt2 {

// One logic for each stretch of the script that (reset) ends, and for the last one: the one that
// the stretch sets, extended by what it uses; everything, without a name, if it sets none.
std::vector<Logic> written_logics(const TermManager& manager, const Script& script);

}  // namespace quill::smt2

#endif
