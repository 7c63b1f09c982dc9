// Text on its way to a stream: collected, and handed over in large pieces.
//
// A formatted insertion into a stream costs as much as a dozen of the short texts that terms are
// made of. What is not flushed is lost when the buffer goes.

#ifndef QUILL_PRINTERS_TEXT_BUFFER_H
#define QUILL_PRINTERS_TEXT_BUFFER_H

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <ostream>
#include <string_view>

namespace quill {

class TextBuffer {
 public:
  explicit TextBuffer(std::ostream& target) : out(target), text(new char[capacity]) {}
  TextBuffer(const TextBuffer&) = delete;
  TextBuffer& operator=(const TextBuffer&) = delete;

  TextBuffer& operator<<(std::string_view piece) {
    if (piece.size() > capacity - size) return write_long(piece);
    std::memcpy(text.get() + size, piece.data(), piece.size());
    size += piece.size();
    return *this;
  }
  TextBuffer& operator<<(char c) {
    if (size == capacity) flush();
    text[size++] = c;
    return *this;
  }
  TextBuffer& operator<<(uint64_t number) {
    constexpr size_t max_digits = 20;
    if (capacity - size < max_digits) flush();
    char* const end = std::to_chars(text.get() + size, text.get() + capacity, number).ptr;
    size = static_cast<size_t>(end - text.get());
    return *this;
  }

  // Hands everything over; the stream is then in step with the text, and may be written to.
  std::ostream& flush() {
    out.write(text.get(), static_cast<std::streamsize>(size));
    size = 0;
    return out;
  }

 private:
  static constexpr size_t capacity = size_t{1} << 12;

  TextBuffer& write_long(std::string_view piece) {
    flush();
    if (piece.size() > capacity) {
      out.write(piece.data(), static_cast<std::streamsize>(piece.size()));
      return *this;
    }
    return *this << piece;
  }

  std::ostream& out;
  std::unique_ptr<char[]> text;
  size_t size = 0;
};

}  // namespace quill

#endif
