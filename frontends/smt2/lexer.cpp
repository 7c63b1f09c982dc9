#include "frontends/smt2/lexer.h"

#include <array>

namespace quill::smt2 {

namespace {

constexpr size_t block_bytes = 1 << 16;
constexpr size_t longest_description = 60;

bool is_decimal_digit(int c) { return c >= '0' && c <= '9'; }
bool is_binary_digit(int c) { return c == '0' || c == '1'; }
bool is_hexadecimal_digit(int c) {
  return is_decimal_digit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

constexpr std::array<bool, 256> make_symbol_characters() {
  std::array<bool, 256> table{};
  for (unsigned char c = '0'; c <= '9'; ++c) table[c] = true;
  for (unsigned char c = 'a'; c <= 'z'; ++c) table[c] = true;
  for (unsigned char c = 'A'; c <= 'Z'; ++c) table[c] = true;
  for (const char* p = "~!@$%^&*_-+=<>.?/"; *p != '\0'; ++p) {
    table[static_cast<unsigned char>(*p)] = true;
  }
  return table;
}

constexpr std::array<bool, 256> symbol_characters = make_symbol_characters();

std::string hexadecimal(int byte) {
  constexpr char digits[] = "0123456789ABCDEF";
  return std::string("0x") + digits[byte / 16 % 16] + digits[byte % 16];
}

}  // namespace

bool is_symbol_character(int byte) {
  return byte >= 0 && symbol_characters[static_cast<size_t>(byte)];
}

std::string Token::spelling() const {
  switch (kind) {
    case TokenKind::OPEN:
      return "(";
    case TokenKind::CLOSE:
      return ")";
    case TokenKind::SYMBOL:
      return quoted ? "|" + text + "|" : text;
    case TokenKind::KEYWORD:
      return ":" + text;
    case TokenKind::NUMERAL:
    case TokenKind::DECIMAL:
      return text;
    case TokenKind::BINARY:
      return "#b" + text;
    case TokenKind::HEXADECIMAL:
      return "#x" + text;
    case TokenKind::STRING: {
      std::string result = "\"";
      for (const char c : text) {
        if (c == '"') result += '"';
        result += c;
      }
      return result + "\"";
    }
    case TokenKind::END:
      return "";
  }
  return "";
}

std::string Token::description() const {
  return kind == TokenKind::END ? "the end of the input" : shown(spelling());
}

std::string shown(const std::string& piece) {
  std::string text = piece;
  if (text.size() > longest_description) {
    text.resize(longest_description);
    text += "...";
  }
  for (char& c : text) {
    if (static_cast<unsigned char>(c) < 32 || c == 127) c = '?';
  }
  return "'" + text + "'";
}

Lexer::Lexer(std::istream& stream) : input(stream), block(block_bytes) {}

void Lexer::refill() {
  if (exhausted) return;
  input.read(block.data(), static_cast<std::streamsize>(block.size()));
  block_used = 0;
  block_size = static_cast<size_t>(input.gcount());
  if (input.bad()) throw InputError("the input cannot be read");
  if (block_size == 0) exhausted = true;
}

int Lexer::peek() {
  if (block_used == block_size) refill();
  return exhausted ? end_of_input : static_cast<unsigned char>(block[block_used]);
}

void Lexer::advance() {
  if (block[block_used++] == '\n') {
    ++here.line;
    here.column = 1;
  } else {
    ++here.column;
  }
}

// Moves the next byte into the text of the token.
void Lexer::take() {
  token.text.push_back(block[block_used]);
  advance();
}

void Lexer::skip_blanks() {
  for (;;) {
    const int c = peek();
    if (c == ' ' || c == '\n' || c == '\t' || c == '\r') {
      advance();
    } else if (c == ';') {
      for (int d = c; d != '\n' && d != end_of_input; d = peek()) advance();
    } else {
      return;
    }
  }
}

void Lexer::next() {
  previous_end = here;
  skip_blanks();
  token.text.clear();
  token.quoted = false;
  token.position = here;
  const int c = peek();
  switch (c) {
    case end_of_input:
      token.kind = TokenKind::END;
      return;
    case '(':
      token.kind = TokenKind::OPEN;
      advance();
      return;
    case ')':
      token.kind = TokenKind::CLOSE;
      advance();
      return;
    case '|':
      read_quoted_symbol();
      return;
    case '"':
      read_string();
      return;
    case ':':
      token.kind = TokenKind::KEYWORD;
      advance();
      read_symbol_characters();
      if (token.text.empty()) throw ParseError(token.position, "a colon without a keyword");
      return;
    case '#':
      advance();
      if (peek() == 'b') {
        read_digits(TokenKind::BINARY, "a binary literal", is_binary_digit);
      } else if (peek() == 'x') {
        read_digits(TokenKind::HEXADECIMAL, "a hexadecimal literal", is_hexadecimal_digit);
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
    token.kind = TokenKind::SYMBOL;
    read_symbol_characters();
    if (const int after = peek(); after > 127 || after == '\'' || after == '`' || after == 0) {
      reject_byte(after);
    }
  } else {
    reject_byte(c);
  }
}

void Lexer::read_symbol_characters() {
  while (is_symbol_character(peek())) take();
}

void Lexer::reject_byte(int byte) {
  if (byte == 0) throw ParseError(here, "a NUL byte");
  if (byte > 127) {
    throw ParseError(here, "the byte " + hexadecimal(byte) +
                               " stands outside of |quoted symbols|, strings and comments");
  }
  if (byte == '\'') {
    throw ParseError(here, "an apostrophe stands outside of |quoted symbols| and strings");
  }
  if (byte < 32 || byte == 127) {
    throw ParseError(here, "the control character " + hexadecimal(byte));
  }
  throw ParseError(here, std::string("the character '") + static_cast<char>(byte) +
                             "' stands outside of |quoted symbols| and strings");
}

// The last byte of the input was inside of the token: the place to look at is where the token
// begins, the fault is found where the input ends.
void Lexer::reject_end(const char* what, Position last) {
  throw ParseError(last, std::string("the input ends inside the ") + what + " that begins at " +
                             std::to_string(token.position.line) + ":" +
                             std::to_string(token.position.column));
}

void Lexer::read_quoted_symbol() {
  token.kind = TokenKind::SYMBOL;
  token.quoted = true;
  advance();
  Position last = token.position;
  for (int c = peek(); c != '|'; c = peek()) {
    if (c == end_of_input) reject_end("|quoted symbol|", last);
    if (c == '\\') throw ParseError(here, "a backslash in a |quoted symbol|");
    if (c == 0) throw ParseError(here, "a NUL byte in a |quoted symbol|");
    last = here;
    take();
  }
  advance();
}

void Lexer::read_string() {
  token.kind = TokenKind::STRING;
  advance();
  Position last = token.position;
  for (;;) {
    const int c = peek();
    if (c == end_of_input) reject_end("string", last);
    if (c == 0) throw ParseError(here, "a NUL byte in a string");
    last = here;
    if (c == '"') {
      advance();
      if (peek() != '"') return;
    }
    take();
  }
}

// Numerals and decimals, and what looks like one: all symbol characters are read first, so that the
// message can show the whole of 12ab or 1.2.3.
void Lexer::read_number() {
  read_symbol_characters();
  const std::string& text = token.text;
  const size_t digits = text.find_first_not_of("0123456789");
  if (digits == std::string::npos) {
    token.kind = TokenKind::NUMERAL;
    if (text.size() > 1 && text[0] == '0') {
      throw ParseError(token.position, "the numeral " + token.description() + " begins with 0");
    }
    return;
  }
  token.kind = TokenKind::DECIMAL;
  const std::string shown = token.description();
  if (text[digits] != '.') {
    throw ParseError(token.position, shown + " is neither a number nor a symbol");
  }
  if (digits + 1 == text.size()) {
    throw ParseError(token.position, "the decimal " + shown + " has no digits after the point");
  }
  const size_t rest = text.find_first_not_of("0123456789", digits + 1);
  if (rest != std::string::npos) {
    throw ParseError(token.position, text[rest] == '.'
                                         ? "the decimal " + shown + " has more than one point"
                                         : shown + " is neither a number nor a symbol");
  }
  if (digits > 1 && text[0] == '0') {
    throw ParseError(token.position, "the decimal " + shown + " begins with 0");
  }
}

// What follows #b or #x. Bad digits are read along, so that the message can show them.
void Lexer::read_digits(TokenKind kind, const char* what, bool (*is_digit)(int)) {
  token.kind = kind;
  advance();
  bool good = true;
  while (is_symbol_character(peek())) {
    good = good && is_digit(peek());
    take();
  }
  if (token.text.empty()) throw ParseError(token.position, std::string(what) + " without digits");
  if (!good) {
    throw ParseError(token.position, token.description() + " is not " + what);
  }
}

}  // namespace quill::smt2
