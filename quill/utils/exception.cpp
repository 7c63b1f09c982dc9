#include "quill/utils/exception.h"

#include <locale>

namespace quill {

std::streamsize Exception::Buffer::xsputn(const char* piece, std::streamsize size) {
  text.append(piece, static_cast<size_t>(size));
  return size;
}

Exception::Buffer::int_type Exception::Buffer::overflow(int_type c) {
  if (!traits_type::eq_int_type(c, traits_type::eof())) text += traits_type::to_char_type(c);
  return traits_type::not_eof(c);
}

Exception::Exception() : stream(&buffer) {
  stream.imbue(std::locale::classic());
  // Otherwise the stream would swallow what the buffer throws.
  stream.exceptions(std::ios_base::badbit);
}

Exception::Exception(const std::string& message) : Exception() {
  buffer.text = message;
  dump_msg_and_raise_assertion(message);
}

// Neither the base nor the stream has anything to copy.
Exception::Exception(const Exception& other) : Exception() { buffer.text = other.buffer.text; }

Exception& Exception::operator=(const Exception& other) {
  buffer.text = other.buffer.text;
  return *this;
}

Exception::~Exception() = default;

const char* Exception::what() const noexcept { return buffer.text.c_str(); }

void Exception::take_back(size_t size) noexcept {
  buffer.text.resize(size);
  stream.clear();
}

}  // namespace quill
