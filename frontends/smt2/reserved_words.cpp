#include "frontends/smt2/reserved_words.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace quill::smt2 {

namespace {

constexpr std::array<std::string_view, 13> words = {
    "!",  "BINARY", "DECIMAL", "HEXADECIMAL", "NUMERAL", "STRING", "_",
    "as", "exists", "forall",  "let",         "match",   "par",
};

}  // namespace

bool is_reserved_word(const Token& token) {
  return token.kind == TokenKind::SYMBOL && !token.quoted &&
         std::find(words.begin(), words.end(), token.text) != words.end();
}

}  // namespace quill::smt2
