// The indices of identifiers such as (_ extract 7 0) and (_ BitVec 8), as numbers.

#ifndef QUILL_FRONTENDS_SMT2_INDICES_H
#define QUILL_FRONTENDS_SMT2_INDICES_H

#include <cstdint>
#include <string_view>

#include "quill/frontends/smt2/parse_error.h"

namespace quill::smt2 {

// The value of an index. Throws ParseError if it is not a numeral or needs more than 64 bits; the
// message refers to the owner of the index by its kind, "the sort " or nothing, and its name.
uint64_t index_value(std::string_view index, const char* kind, std::string_view name,
                     Position position);

}  // namespace quill::smt2

#endif
