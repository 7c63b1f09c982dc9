#include "quill/frontends/smt2/reserved_words.h"

#include <algorithm>
#include <iterator>

namespace quill::smt2 {

namespace {

constexpr ConstructWord words[] = {
    {"!", Construct::ANNOTATION},      {"BINARY", Construct::OTHER},
    {"DECIMAL", Construct::OTHER},     {"HEXADECIMAL", Construct::OTHER},
    {"NUMERAL", Construct::OTHER},     {"STRING", Construct::OTHER},
    {"_", Construct::INDEXED},         {"as", Construct::ASCRIBED},
    {"exists", Construct::QUANTIFIER}, {"forall", Construct::QUANTIFIER},
    {"lambda", Construct::LAMBDA},     {"let", Construct::LET},
    {"match", Construct::OTHER},       {"par", Construct::OTHER},
};

}  // namespace

std::span<const ConstructWord> construct_words() { return words; }

bool is_reserved_word(const Token& token) {
  return token.kind == TokenKind::SYMBOL && !token.quoted &&
         std::any_of(std::begin(words), std::end(words), [&](const ConstructWord& word) {
           return word.text == token.text && is_reserved(word.construct);
         });
}

}  // namespace quill::smt2
