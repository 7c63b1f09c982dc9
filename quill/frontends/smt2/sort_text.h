// The text of sorts in messages: as SMT-LIB writes them, cut after some sixty bytes.
//
// Sorts share components, so the text of a sort of linear size may be very long; composing stops as
// soon as there is enough of it.

#ifndef QUILL_FRONTENDS_SMT2_SORT_TEXT_H
#define QUILL_FRONTENDS_SMT2_SORT_TEXT_H

#include <string>

#include "quill/terms/data_type.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill::smt2 {

std::string sort_text(const TermManager& manager, const DataType* sort);

}  // namespace quill::smt2

#endif
