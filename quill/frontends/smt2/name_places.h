// Decides where to write the names that a command gives by :named.

#ifndef QUILL_FRONTENDS_SMT2_NAME_PLACES_H
#define QUILL_FRONTENDS_SMT2_NAME_PLACES_H

#include <cstdint>

#include "quill/frontends/smt2/script.h"
#include "quill/smtlib/logic.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill::smt2 {

enum class NamePlace : uint8_t {
  // (assert (! t :named n)), or the body of a definition.
  Whole,
  // At the first place in the command where the term is written, if it is written there.
  Inside,
  // (define-fun quill!named_1 () S (! t :named n)) before the command, so that the name has its
  // sort and scope and does not become a label of an assertion.
  Apart,
};

// The place of a name of the command, under the logic that is written. INSIDE turns into APART if
// the term is not written in the command.
NamePlace place_of(const TermManager& manager, const Command& command, const NamedTerm& named,
                   const Logic& logic);

// The sort of the named term, as a type of the manager.
const DataType* sort_of(const NamedTerm& named);

}  // namespace quill::smt2

#endif
