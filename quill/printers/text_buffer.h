// Collects text and hands it to a stream in large pieces.
//
// A formatted insertion into a stream costs as much as a dozen of the short texts that terms
// consist of. Text that was not flushed is lost when the buffer is destroyed.

#ifndef QUILL_PRINTERS_TEXT_BUFFER_H
#define QUILL_PRINTERS_TEXT_BUFFER_H

#include <bit>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ostream>
#include <string_view>

namespace quill {

class TextBuffer {
 public:
  explicit TextBuffer(std::ostream& out_) : out(out_), next(text) {}
  TextBuffer(const TextBuffer&) = delete;
  TextBuffer& operator=(const TextBuffer&) = delete;

  // Each piece is a text, a character or a number.
  template <class... Pieces>
  TextBuffer& write(const Pieces&... pieces) {
    // Checks the room for all pieces at once and keeps the position in a register: stores of
    // characters may alias anything, including the position in memory.
    if ((max_size(pieces) + ...) <= room()) {
      char* at = next;
      ((at = put(at, pieces)), ...);
      next = at;
    } else {
      (write_piece(pieces), ...);
    }
    return *this;
  }
  template <class Piece>
  TextBuffer& operator<<(const Piece& piece) {
    return write(piece);
  }

  // Hands all text over. The stream is then up to date, and others may write to it.
  std::ostream& flush() {
    out.write(text, next - text);
    next = text;
    return out;
  }

 private:
  static constexpr size_t capacity = size_t{1} << 12;

  size_t room() const { return static_cast<size_t>(text + capacity - next); }

  static size_t max_size(std::string_view piece) { return piece.size(); }
  static size_t max_size(char) { return 1; }
  static size_t max_size(uint64_t) { return 20; }

  static char* put(char* at, char c) {
    *at = c;
    return at + 1;
  }

  // Most texts are short: the first and the last word of a text, which may overlap, cover all of
  // it.
  static char* put(char* at, std::string_view piece) {
    const char* const from = piece.data();
    const size_t size = piece.size();
    if (size > 2 * sizeof(uint64_t)) {
      std::memcpy(at, from, size);
    } else if (size >= sizeof(uint64_t)) {
      copy_ends<uint64_t>(at, from, size);
    } else if (size >= sizeof(uint32_t)) {
      copy_ends<uint32_t>(at, from, size);
    } else if (size >= sizeof(uint16_t)) {
      copy_ends<uint16_t>(at, from, size);
    } else if (size == 1) {
      *at = *from;
    }
    return at + size;
  }
  template <class Word>
  static void copy_ends(char* at, const char* from, size_t size) {
    Word first;
    Word last;
    std::memcpy(&first, from, sizeof first);
    std::memcpy(&last, from + size - sizeof last, sizeof last);
    std::memcpy(at, &first, sizeof first);
    std::memcpy(at + size - sizeof last, &last, sizeof last);
  }

  // Converts up to eight digits at once by halving the number in the lanes of a word: 4 digits per
  // lane, then 2, then 1, the first one in the lowest byte. Divisions are multiplications by
  // rounded reciprocals, which are exact for such small numbers.
  static char* put(char* at, uint64_t number) {
    if (number >= 100000000) return std::to_chars(at, at + max_size(number), number).ptr;
    const uint64_t fours = number / 10000 | number % 10000 << 32;
    const uint64_t hundreds = (fours * 10486 >> 20) & 0x7f0000007f;
    const uint64_t twos = hundreds | (fours - 100 * hundreds) << 16;
    const uint64_t tens = (twos * 103 >> 10) & 0x000f000f000f000f;
    const uint64_t digits = tens | (twos - 10 * tens) << 8;
    const int leading_zeros = std::countr_zero(digits | uint64_t{1} << 56) / 8;
    const uint64_t shown = (digits | 0x3030303030303030) >> 8 * leading_zeros;
    for (int i = 0; i < 8; ++i) at[i] = static_cast<char>(shown >> 8 * i);
    return at + 8 - leading_zeros;
  }

  void write_piece(std::string_view piece) {
    if (piece.size() > room()) flush();
    if (piece.size() > capacity) {
      out.write(piece.data(), static_cast<std::streamsize>(piece.size()));
    } else {
      next = put(next, piece);
    }
  }
  void write_piece(char c) { write_short_piece(c); }
  void write_piece(uint64_t number) { write_short_piece(number); }
  template <class Piece>
  void write_short_piece(Piece piece) {
    if (max_size(piece) > room()) flush();
    next = put(next, piece);
  }

  std::ostream& out;
  char* next;           // where the next character goes
  char text[capacity];  // not cleared
};

}  // namespace quill

#endif
