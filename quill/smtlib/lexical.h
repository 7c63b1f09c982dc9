// The characters and the reserved words of SMT-LIB 2.6, for the code that reads and the code that
// writes it.
//
// The standard reserves command names, too (see commands.h). Scripts use them as symbols all the
// same, which makes nothing ambiguous, so readers of scripts accept them; writers put them between
// bars.

#ifndef QUILL_SMTLIB_LEXICAL_H
#define QUILL_SMTLIB_LEXICAL_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

namespace quill {

// ----- characters --------------------------------------------------------------------------------

constexpr bool is_decimal_digit(int c) { return c >= '0' && c <= '9'; }
constexpr bool is_binary_digit(int c) { return c == '0' || c == '1'; }
constexpr bool is_hexadecimal_digit(int c) {
  return is_decimal_digit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

constexpr std::array<bool, 256> make_symbol_characters() {
  std::array<bool, 256> table{};
  for (unsigned char c = '0'; c <= '9'; ++c) table[c] = true;
  for (unsigned char c = 'a'; c <= 'z'; ++c) table[c] = true;
  for (unsigned char c = 'A'; c <= 'Z'; ++c) table[c] = true;
  for (const char c : std::string_view("~!@$%^&*_-+=<>.?/")) table[static_cast<size_t>(c)] = true;
  return table;
}

// By byte: whether it may occur in a symbol without bars. A digit may, but not as the first byte.
inline constexpr std::array<bool, 256> symbol_characters = make_symbol_characters();

// The byte may be negative, for the end of the input; that is not a symbol character.
constexpr bool is_symbol_character(int byte) {
  return byte >= 0 && symbol_characters[static_cast<size_t>(byte)];
}

// ----- words ------------------------------------------------------------------------------------

// What a word begins when it follows an opening parenthesis.
enum class Construct : uint8_t {
  NoConstruct,  // other words
  Let,
  Annotation,
  Indexed,
  Ascribed,
  Quantifier,
  Lambda,  // a quantifier to other readers; the word is not reserved
  Other,   // not supported
};

struct ConstructWord {
  std::string_view text;
  Construct construct;
  // Whether some readers also take the word between bars for this construct, at the head of an
  // application.
  bool taken_between_bars = false;
};

// The reserved words, and lambda.
// clang-format off
inline constexpr ConstructWord construct_words[] = {
    {"!",           Construct::Annotation, true},
    {"BINARY",      Construct::Other},
    {"DECIMAL",     Construct::Other},
    {"HEXADECIMAL", Construct::Other},
    {"NUMERAL",     Construct::Other},
    {"STRING",      Construct::Other},
    {"_",           Construct::Indexed},
    {"as",          Construct::Ascribed},
    {"exists",      Construct::Quantifier, true},
    {"forall",      Construct::Quantifier, true},
    {"lambda",      Construct::Lambda,     true},
    {"let",         Construct::Let,        true},
    {"match",       Construct::Other,      true},
    {"par",         Construct::Other},
};
// clang-format on

// The row of a word, or null.
constexpr const ConstructWord* find_construct_word(std::string_view text) {
  for (const ConstructWord& word : construct_words) {
    if (word.text == text) return &word;
  }
  return nullptr;
}

constexpr bool is_reserved(Construct construct) {
  return construct != Construct::NoConstruct && construct != Construct::Lambda;
}

// Whether the text cannot be a symbol of a term or a sort unless it is between bars.
constexpr bool is_reserved_word(std::string_view text) {
  const ConstructWord* word = find_construct_word(text);
  return word != nullptr && is_reserved(word->construct);
}

}  // namespace quill

#endif
