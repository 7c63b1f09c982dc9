#include <gtest/gtest.h>

#include <string>

#include "quill/smtlib/lexical.h"
#include "quill/smtlib/syntax.h"

namespace quill {
namespace {

TEST(Lexical, SymbolsHaveTheCharactersOfTheStandard) {
  std::string characters;
  for (int byte = 0; byte < 256; ++byte) {
    if (is_symbol_character(byte)) characters += static_cast<char>(byte);
  }
  EXPECT_EQ(characters,
            "!$%&*+-./0123456789<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ^_abcdefghijklmnopqrstuvwxyz~");
  EXPECT_FALSE(is_symbol_character(-1));
}

TEST(Lexical, DigitsAreThoseOfTheirBase) {
  std::string decimal;
  std::string binary;
  std::string hexadecimal;
  for (int byte = -1; byte < 256; ++byte) {
    if (is_decimal_digit(byte)) decimal += static_cast<char>(byte);
    if (is_binary_digit(byte)) binary += static_cast<char>(byte);
    if (is_hexadecimal_digit(byte)) hexadecimal += static_cast<char>(byte);
  }
  EXPECT_EQ(decimal, "0123456789");
  EXPECT_EQ(binary, "01");
  EXPECT_EQ(hexadecimal, "0123456789ABCDEFabcdef");
}

TEST(Lexical, ReservedWordsBeginConstructs) {
  struct Expected {
    const char* text;
    Construct construct;
    bool reserved;
    bool taken_between_bars;
  };
  const Expected words[] = {
      {"!", Construct::Annotation, true, true},      {"BINARY", Construct::Other, true, false},
      {"DECIMAL", Construct::Other, true, false},    {"HEXADECIMAL", Construct::Other, true, false},
      {"NUMERAL", Construct::Other, true, false},    {"STRING", Construct::Other, true, false},
      {"_", Construct::Indexed, true, false},        {"as", Construct::Ascribed, true, false},
      {"exists", Construct::Quantifier, true, true}, {"forall", Construct::Quantifier, true, true},
      {"lambda", Construct::Lambda, false, true},    {"let", Construct::Let, true, true},
      {"match", Construct::Other, true, true},       {"par", Construct::Other, true, false},
  };
  EXPECT_EQ(std::size(construct_words), std::size(words));
  for (const Expected& expected : words) {
    const ConstructWord* word = find_construct_word(expected.text);
    ASSERT_NE(word, nullptr) << expected.text;
    EXPECT_EQ(word->construct, expected.construct) << expected.text;
    EXPECT_EQ(is_reserved_word(expected.text), expected.reserved) << expected.text;
    EXPECT_EQ(needs_qualified_head(expected.text), expected.taken_between_bars) << expected.text;
    EXPECT_FALSE(is_simple_symbol(expected.text)) << expected.text;
  }
}

TEST(Lexical, OtherWordsAreNotReserved) {
  for (const char* text : {"", "Let", "lets", "asx", "x", "assert", "__"}) {
    EXPECT_EQ(find_construct_word(text), nullptr) << text;
    EXPECT_FALSE(is_reserved_word(text)) << text;
    EXPECT_FALSE(needs_qualified_head(text)) << text;
  }
}

}  // namespace
}  // namespace quill
