// Text on its way to a stream: collected, and handed over in large pieces.
//
// A formatted insertion into a stream costs as much as a dozen of the short texts that terms are
// made of. What is not flushed is lost when the buffer goes.

#ifndef QUILL_PRINTERS_TEXT_BUFFER_H
#define QUILL_PRINTERS_TEXT_BUFFER_H

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

namespace quill {

class TextBuffer {
 public:
  explicit TextBuffer(std::ostream& target) : out(target) {}
  TextBuffer(const TextBuffer&) = delete;
  TextBuffer& operator=(const TextBuffer&) = delete;

  TextBuffer& operator<<(std::string_view piece) {
    text.append(piece);
    if (text.size() >= piece_size) flush();
    return *this;
  }
  TextBuffer& operator<<(char c) {
    text.push_back(c);
    return *this;
  }
  TextBuffer& operator<<(uint64_t number) {
    char digits[20];
    const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    text.append(digits, end);
    return *this;
  }

  // Hands everything over; the stream is then in step with the text, and may be written to.
  std::ostream& flush() {
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
    text.clear();
    return out;
  }

 private:
  static constexpr size_t piece_size = size_t{1} << 16;

  std::ostream& out;
  std::string text;
};

}  // namespace quill

#endif
