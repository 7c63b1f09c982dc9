#include "quill/utils/exception.h"

namespace quill {

Exception::Exception(const std::string& message) {
  stream << message;
  dump_msg_and_raise_assertion(message);
}

Exception::Exception(const Exception& other) : std::exception(other) {
  stream << other.stream.str();
}

Exception& Exception::operator=(const Exception& other) {
  if (this != &other) {
    std::exception::operator=(other);
    stream = std::ostringstream();
    stream << other.stream.str();
    text_is_current = false;
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
