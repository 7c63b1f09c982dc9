// The indices of identifiers such as (_ extract 7 0) and (_ BitVec 8), as numbers.

#ifndef FRONTENDS_SMT2_INDICES_H
#define FRONTENDS_SMT2_INDICES_H

#include <cstdint>
#include <string>

#include "frontends/smt2/parse_error.h"

namespace quill::smt2 {

// The value of an index. Throws ParseError, which names the owner of the index, for what is no
// numeral and for numbers beyond 64 bits.
uint64_t index_value(const std::string& index, const std::string& owner, Position position);

}  // namespace quill::smt2

#endif
