// The words that SMT-LIB 2.6 reserves in terms and sorts: never symbols, unless between bars.
//
// Command names are reserved by the standard too; scripts use them as symbols all the same, and
// nothing becomes ambiguous by that, so they are accepted.

#ifndef FRONTENDS_SMT2_RESERVED_WORDS_H
#define FRONTENDS_SMT2_RESERVED_WORDS_H

#include "frontends/smt2/lexer.h"

namespace quill::smt2 {

bool is_reserved_word(const Token& token);

}  // namespace quill::smt2

#endif
