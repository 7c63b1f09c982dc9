// Splits SMT-LIB 2.6 text into tokens.
//
// The input is read from a stream in blocks, so that memory depends on the longest token alone. The
// current token is a field that the next call overwrites, its text a buffer that is used again: a
// token costs no allocation once the buffer has grown. Malformed tokens throw ParseError.
//
// Bytes from 128 up are accepted in quoted symbols, strings and comments as they are, whether they
// are UTF-8 or not; a NUL byte is accepted nowhere but in comments.

#ifndef FRONTENDS_SMT2_LEXER_H
#define FRONTENDS_SMT2_LEXER_H

#include <cstddef>
#include <istream>
#include <string>
#include <vector>

#include "frontends/smt2/parse_error.h"

namespace quill::smt2 {

enum class TokenKind {
  OPEN,
  CLOSE,
  SYMBOL,
  KEYWORD,
  NUMERAL,
  DECIMAL,
  BINARY,
  HEXADECIMAL,
  STRING,
  END,
};

struct Token {
  TokenKind kind = TokenKind::END;
  // Symbols without bars, keywords without the colon, binary and hexadecimal digits without the
  // prefix, strings without the quotes and with "" read as one quote; empty for parentheses.
  std::string text;
  bool quoted = false;  // a symbol between bars, which is never a reserved word
  Position position;    // of the first byte

  bool is_word(const char* word) const {
    return kind == TokenKind::SYMBOL && !quoted && text == word;
  }

  // The token as it stands in a script.
  std::string spelling() const;

  // The token as messages name it: 'x', ')' or "the end of the input"; cut when very long.
  std::string description() const;
};

class Lexer {
 public:
  // The stream must outlive the lexer. Reading starts at its current position.
  explicit Lexer(std::istream& stream);
  Lexer(const Lexer&) = delete;
  Lexer& operator=(const Lexer&) = delete;

  // Reads the next token into token; END at the end of the input, then and ever after.
  // Throws InputError when the stream reports a read error.
  void next();

  // The position just behind the token before the current one: where something was missing.
  Position end_of_previous() const { return previous_end; }

  Token token;

 private:
  static constexpr int end_of_input = -1;

  int peek();
  void advance();
  void refill();
  void skip_blanks();
  void read_quoted_symbol();
  void read_string();
  void read_number();
  void read_digits(TokenKind kind, const char* what, bool (*is_digit)(int));
  void read_symbol_characters();
  [[noreturn]] void reject_byte(int byte);
  [[noreturn]] void reject_end(const char* what, Position last);
  void take();

  std::istream& input;
  std::vector<char> block;
  size_t block_used = 0;  // the next byte in block
  size_t block_size = 0;
  bool exhausted = false;
  Position here;  // of the next byte
  Position previous_end;
};

// A piece of the input as messages show it, on one line, cut when very long, between apostrophes.
std::string shown(const std::string& piece);

// Whether a byte may stand in a symbol that is not quoted (digits included).
bool is_symbol_character(int byte);

}  // namespace quill::smt2

#endif
