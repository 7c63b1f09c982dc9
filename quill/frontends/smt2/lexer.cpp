#include "quill/frontends/smt2/lexer.h"

#include <algorithm>
#include <cstring>

namespace quill::smt2 {

namespace {

constexpr size_t block_bytes = 1 << 16;
constexpr size_t longest_description = 60;

// The position of the first byte at or after `from` that is not a decimal digit.
size_t end_of_digits(std::string_view text, size_t from) {
  while (from != text.size() && is_decimal_digit(text[from])) ++from;
  return from;
}

std::string hexadecimal(int byte) {
  constexpr char digits[] = "0123456789ABCDEF";
  return std::string("0x") + digits[byte / 16 % 16] + digits[byte % 16];
}

}  // namespace

std::string Token::spelling() const {
  switch (kind) {
    case TokenKind::Open:
      return "(";
    case TokenKind::Close:
      return ")";
    case TokenKind::Symbol:
      return quoted ? "|" + std::string(text) + "|" : std::string(text);
    case TokenKind::Keyword:
      return ":" + std::string(text);
    case TokenKind::Numeral:
    case TokenKind::Decimal:
      return std::string(text);
    case TokenKind::Binary:
      return "#b" + std::string(text);
    case TokenKind::Hexadecimal:
      return "#x" + std::string(text);
    case TokenKind::String: {
      std::string result = "\"";
      for (const char c : text) {
        if (c == '"') result += '"';
        result += c;
      }
      return result + "\"";
    }
    case TokenKind::End:
      return "";
  }
  return "";
}

std::string Token::description() const {
  return kind == TokenKind::End ? "the end of the input" : shown(spelling());
}

std::string shown(std::string_view piece) {
  std::string text(piece.substr(0, longest_description));
  if (piece.size() > longest_description) text += "...";
  for (char& c : text) {
    if (static_cast<unsigned char>(c) < 32 || c == 127) c = '?';
  }
  return "'" + text + "'";
}

Lexer::Lexer(std::istream& input_)
    : input(input_),
      buffer(block_bytes),
      start(buffer.data()),
      cursor(buffer.data()),
      end(buffer.data()) {
  *end = '\0';
}

// Reads more input after all bytes in the buffer have been read; moves the bytes from `start` on to
// the front. Returns false at the end of the input.
bool Lexer::refill() {
  if (exhausted) return false;
  const auto done = start - buffer.data();
  const auto kept = static_cast<size_t>(end - start);
  std::memmove(buffer.data(), start, kept);
  if (kept > buffer.size() / 2) buffer.resize(2 * buffer.size());
  start = buffer.data();
  cursor = end = start + kept;
  line_start -= done;
  input.read(end, static_cast<std::streamsize>(buffer.size() - kept - 1));
  if (input.bad()) throw InputError("the input cannot be read");
  exhausted = input.gcount() == 0;
  end += input.gcount();
  *end = '\0';
  if (!begun) skip_byte_order_mark();
  return cursor != end;
}

void Lexer::skip_byte_order_mark() {
  constexpr std::string_view mark = "\xEF\xBB\xBF";
  begun = true;
  if (std::string_view(cursor, static_cast<size_t>(end - cursor)).substr(0, mark.size()) != mark) {
    return;
  }
  start = cursor += mark.size();
  line_start = cursor - buffer.data();
  if (cursor == end) refill();
}

// Called when the byte before the cursor has ended a line.
void Lexer::begin_line() {
  ++line;
  line_start = cursor - buffer.data();
}

void Lexer::skip_blanks() {
  for (;;) {
    switch (*cursor) {
      case '\n':
        ++cursor;
        begin_line();
        break;
      case ' ':
      case '\t':
      case '\r':
        ++cursor;
        break;
      case ';':
        skip_comment();
        break;
      case '\0':
        start = cursor;
        if (cursor != end || !refill()) return;
        break;
      default:
        return;
    }
  }
}

// Skips to the end of the line.
void Lexer::skip_comment() {
  do {
    cursor = std::find(cursor, end, '\n');
    start = cursor;
  } while (cursor == end && refill());
}

void Lexer::next() {
  previous_end = here();
  skip_blanks();
  start = cursor;
  token.text = {};
  token.quoted = false;
  token.position = here();
  const int c = peek();
  switch (c) {
    case end_of_input:
      token.kind = TokenKind::End;
      return;
    case '(':
      token.kind = TokenKind::Open;
      ++cursor;
      return;
    case ')':
      token.kind = TokenKind::Close;
      ++cursor;
      return;
    case '|':
      read_quoted_symbol();
      return;
    case '"':
      read_string();
      return;
    case ':':
      token.kind = TokenKind::Keyword;
      start = ++cursor;
      read_symbol_characters();
      if (token.text.empty()) throw ParseError(token.position, "a colon without a keyword");
      return;
    case '#':
      start = ++cursor;
      if (peek() == 'b') {
        read_digits(TokenKind::Binary, "a binary literal", is_binary_digit);
      } else if (peek() == 'x') {
        read_digits(TokenKind::Hexadecimal, "a hexadecimal literal", is_hexadecimal_digit);
      } else {
        throw ParseError(token.position, "'#' begins neither #b nor #x");
      }
      return;
    default:
      break;
  }
  if (is_decimal_digit(c)) {
    read_number();
  } else if (is_symbol_character(c)) {
    token.kind = TokenKind::Symbol;
    read_symbol_characters();
    if (const int after = peek(); after > 127 || after == '\'' || after == '`' || after == 0) {
      reject_byte(after);
    }
  } else {
    reject_byte(c);
  }
}

// Reads from `start` on.
void Lexer::read_symbol_characters() {
  do {
    while (symbol_characters[static_cast<unsigned char>(*cursor)]) ++cursor;
  } while (cursor == end && refill());
  token.text = {start, static_cast<size_t>(cursor - start)};
}

void Lexer::reject_byte(int byte) {
  if (byte == 0) throw ParseError(here(), "a NUL byte");
  if (byte > 127) {
    throw ParseError(here(), "the byte " + hexadecimal(byte) +
                                 " stands outside of |quoted symbols|, strings and comments");
  }
  if (byte == '\'') {
    throw ParseError(here(), "an apostrophe stands outside of |quoted symbols| and strings");
  }
  if (byte < 32 || byte == 127) {
    throw ParseError(here(), "the control character " + hexadecimal(byte));
  }
  throw ParseError(here(), std::string("the character '") + static_cast<char>(byte) +
                               "' stands outside of |quoted symbols| and strings");
}

// The input ended inside the token. The fault is found at the end of the input; the message also
// says where the token begins.
void Lexer::reject_end(const char* what, Position last) {
  throw ParseError(last, std::string("the input ends inside the ") + what + " that begins at " +
                             std::to_string(token.position.line) + ":" +
                             std::to_string(token.position.column));
}

void Lexer::reject_end_of_input(std::string_view place) const {
  throw ParseError(previous_end, "the input ends " + std::string(place));
}

void Lexer::reject_token(std::string_view what) const {
  throw ParseError(token.position, std::string(what) + " expected, not " + token.description());
}

void Lexer::read_quoted_symbol() {
  token.kind = TokenKind::Symbol;
  token.quoted = true;
  start = ++cursor;
  Position last = token.position;
  for (int c = peek(); c != '|'; c = peek()) {
    if (c == end_of_input) reject_end("|quoted symbol|", last);
    if (c == '\\') throw ParseError(here(), "a backslash in a |quoted symbol|");
    if (c == 0) throw ParseError(here(), "a NUL byte in a |quoted symbol|");
    last = here();
    ++cursor;
    if (c == '\n') begin_line();
  }
  token.text = {start, static_cast<size_t>(cursor - start)};
  ++cursor;
}

// Doubled quotes become single ones in place.
void Lexer::read_string() {
  token.kind = TokenKind::String;
  start = ++cursor;
  size_t length = 0;
  Position last = token.position;
  for (;;) {
    const int c = peek();
    if (c == end_of_input) reject_end("string", last);
    if (c == 0) throw ParseError(here(), "a NUL byte in a string");
    last = here();
    ++cursor;
    if (c == '\n') begin_line();
    if (c == '"') {
      if (peek() != '"') break;
      ++cursor;
    }
    start[length++] = static_cast<char>(c);
  }
  token.text = {start, length};
}

// Reads numerals, decimals and text that looks like one. It reads all symbol characters first, so
// that the message can show the whole of 12ab or 1.2.3.
void Lexer::read_number() {
  read_symbol_characters();
  const std::string_view text = token.text;
  const size_t digits = end_of_digits(text, 0);
  if (digits == text.size()) {
    token.kind = TokenKind::Numeral;
    if (text.size() > 1 && text[0] == '0') {
      throw ParseError(token.position, "the numeral " + token.description() + " begins with 0");
    }
    return;
  }
  token.kind = TokenKind::Decimal;
  if (text[digits] != '.') {
    throw ParseError(token.position, token.description() + " is neither a number nor a symbol");
  }
  if (digits + 1 == text.size()) {
    throw ParseError(token.position,
                     "the decimal " + token.description() + " has no digits after the point");
  }
  const size_t rest = end_of_digits(text, digits + 1);
  if (rest != text.size()) {
    throw ParseError(token.position,
                     text[rest] == '.'
                         ? "the decimal " + token.description() + " has more than one point"
                         : token.description() + " is neither a number nor a symbol");
  }
  if (digits > 1 && text[0] == '0') {
    throw ParseError(token.position, "the decimal " + token.description() + " begins with 0");
  }
}

// Reads what follows #b or #x. It reads bad digits as well, so that the message can show them.
void Lexer::read_digits(TokenKind kind, const char* what, bool (*is_digit)(int)) {
  token.kind = kind;
  start = ++cursor;
  read_symbol_characters();
  if (token.text.empty()) throw ParseError(token.position, std::string(what) + " without digits");
  for (const char digit : token.text) {
    if (is_digit(digit)) continue;
    throw ParseError(token.position, token.description() + " is not " + what);
  }
}

}  // namespace quill::smt2
