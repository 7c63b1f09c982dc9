// Sorts in messages: as SMT-LIB writes them, cut after some sixty bytes.
//
// Sorts share components, so that a sort of linear size may be very long when written out; this
// stops when it has enough.

#ifndef QUILL_FRONTENDS_SMT2_SORT_TEXT_H
#define QUILL_FRONTENDS_SMT2_SORT_TEXT_H

#include <string>

#include "quill/terms/data_type.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill::smt2 {

std::string sort_text(const TermManager& manager, const DataType* sort);

}  // namespace quill::smt2

#endif
