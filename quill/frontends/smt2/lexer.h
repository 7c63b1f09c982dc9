// Splits SMT-LIB 2.6 text into tokens.
//
// The input is read from a stream in blocks, so memory depends only on the longest token. The
// current token is a field that the next call overwrites, and its text is a view into the block: no
// token is copied or allocated. Malformed tokens throw ParseError.
//
//   buffer  | bytes done with | text of the token | bytes not read yet | NUL |
//                             ^ start             ^ cursor             ^ end
//
// When a token reaches the end of the buffer, its bytes move to the front, and the buffer grows
// when they fill it. The NUL byte after the end stops every loop over the bytes of a token, so that
// these loops need not check for the end.
//
// A UTF-8 byte-order mark at the start is skipped and has no column. Other bytes from 128 up are
// accepted unchanged in quoted symbols, strings and comments, whether they are valid UTF-8 or not;
// a NUL byte is accepted only in comments.

#ifndef QUILL_FRONTENDS_SMT2_LEXER_H
#define QUILL_FRONTENDS_SMT2_LEXER_H

#include <cstddef>
#include <cstdint>
#include <istream>
#include <string>
#include <string_view>
#include <vector>

#include "quill/frontends/smt2/parse_error.h"
#include "quill/smtlib/lexical.h"

namespace quill::smt2 {

enum class TokenKind {
  Open,
  Close,
  Symbol,
  Keyword,
  Numeral,
  Decimal,
  Binary,
  Hexadecimal,
  String,
  End,
};

struct Token {
  TokenKind kind = TokenKind::End;
  // Symbols without bars, keywords without the colon, binary and hexadecimal digits without the
  // prefix, strings without the quotes and with "" read as one quote; empty for parentheses. Valid
  // until the next token is read.
  std::string_view text;
  bool quoted = false;  // a symbol between bars, which is never a reserved word
  Position position;    // of the first byte

  bool is_word(std::string_view word) const {
    return kind == TokenKind::Symbol && !quoted && text == word;
  }

  // Whether the token is a word that cannot be a symbol.
  bool is_reserved_word() const {
    return kind == TokenKind::Symbol && !quoted && quill::is_reserved_word(text);
  }

  // The token as it is spelled in a script.
  std::string spelling() const;

  // The token as messages refer to it: 'x', ')' or "the end of the input"; cut when very long.
  std::string description() const;
};

class Lexer {
 public:
  // The stream must outlive the lexer. Reading starts at its current position.
  explicit Lexer(std::istream& input_);
  Lexer(const Lexer&) = delete;
  Lexer& operator=(const Lexer&) = delete;

  // Reads the next token into `token`. At the end of the input the token is END, then and after
  // every later call. Throws InputError when the stream reports a read error.
  void next();

  // Throws ParseError at the end of the input: "the input ends inside a term".
  void require_more(std::string_view place) const {
    if (token.kind == TokenKind::End) reject_end_of_input(place);
  }

  // Throws ParseError unless the current token is of this kind: "a string is expected, not 'x'".
  // `what` includes the verb.
  void expect(TokenKind kind, std::string_view what) const {
    if (token.kind != kind) reject_token(what);
  }
  [[noreturn]] void reject_token(std::string_view what) const;
  [[noreturn]] void reject_end_of_input(std::string_view place) const;

  // The position just after the token before the current one, where messages say that something is
  // missing.
  Position end_of_previous() const { return previous_end; }

  Token token;

 private:
  static constexpr int end_of_input = -1;

  bool refill();
  void skip_byte_order_mark();
  int peek() {
    if (cursor == end && !refill()) return end_of_input;
    return static_cast<unsigned char>(*cursor);
  }
  Position here() const {
    return {line, static_cast<uint64_t>(cursor - buffer.data() - line_start) + 1};
  }
  void begin_line();
  void skip_blanks();
  void skip_comment();
  void read_quoted_symbol();
  void read_string();
  void read_number();
  void read_digits(TokenKind kind, const char* what, bool (*is_digit)(int));
  void read_symbol_characters();
  [[noreturn]] void reject_byte(int byte);
  [[noreturn]] void reject_end(const char* what, Position last);

  std::istream& input;
  std::vector<char> buffer;
  char* start;
  char* cursor;
  char* end;
  bool exhausted = false;
  bool begun = false;  // whether anything has been read
  // The position of the next byte: in this line, whose first byte is at this offset of the buffer
  // (or was, if it is gone from the buffer).
  uint64_t line = 1;
  ptrdiff_t line_start = 0;
  Position previous_end;
};

// A piece of the input as messages show it: on one line, cut when very long, between apostrophes.
std::string shown(std::string_view piece);

}  // namespace quill::smt2

#endif
