#include "quill/utils/exception.h"

namespace quill {

// A stream that can't have its memory throws std::bad_alloc: a message is never cut off.
Exception::Exception() { stream.exceptions(std::ios_base::badbit); }

Exception::Exception(const std::string& message) : Exception() {
  stream << message;
  dump_msg_and_raise_assertion(message);
}

Exception::Exception(const Exception& other) : std::exception(other) {
  stream.exceptions(std::ios_base::badbit);
  stream << other.stream.str();
}

Exception& Exception::operator=(const Exception& other) {
  if (this != &other) {
    const std::string message = other.stream.str();
    std::exception::operator=(other);
    text_is_current = false;
    stream.str("");
    stream << message;
  }
  return *this;
}

Exception::~Exception() = default;

const char* Exception::what() const noexcept {
  try {
    if (!text_is_current) {
      text = stream.str();
      text_is_current = true;
    }
    return text.c_str();
  } catch (...) {
    return "out of memory while composing an error message";
  }
}

void Exception::dump_msg_and_raise_assertion(const std::string&) {}

}  // namespace quill
