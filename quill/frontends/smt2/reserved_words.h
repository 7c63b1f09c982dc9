// The words that SMT-LIB 2.6 reserves in terms and sorts: never symbols, unless between bars.
//
// Command names are reserved by the standard too; scripts use them as symbols all the same, and
// nothing becomes ambiguous by that, so they are accepted.

#ifndef QUILL_FRONTENDS_SMT2_RESERVED_WORDS_H
#define QUILL_FRONTENDS_SMT2_RESERVED_WORDS_H

#include <cstdint>
#include <span>
#include <string_view>

#include "quill/frontends/smt2/lexer.h"

namespace quill::smt2 {

// What a word begins when it follows a parenthesis.
enum class Construct : uint8_t {
  NONE,  // of other words
  LET,
  ANNOTATION,
  INDEXED,
  ASCRIBED,
  QUANTIFIER,
  LAMBDA,  // a quantifier elsewhere; the word is not reserved
  OTHER,   // that is not supported
};

struct ConstructWord {
  std::string_view text;
  Construct construct;
};

// The reserved words, and lambda.
std::span<const ConstructWord> construct_words();

constexpr bool is_reserved(Construct construct) {
  return construct != Construct::NONE && construct != Construct::LAMBDA;
}

bool is_reserved_word(const Token& token);

}  // namespace quill::smt2

#endif
