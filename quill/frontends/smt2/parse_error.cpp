#include "quill/frontends/smt2/parse_error.h"

namespace quill::smt2 {

namespace {

std::string located(Position where, const std::string& what_is_wrong) {
  std::string text = std::to_string(where.line);
  text += ':';
  text += std::to_string(where.column);
  text += ": ";
  text += what_is_wrong;
  return text;
}

}  // namespace

ParseError::ParseError(Position position_, const std::string& message_)
    : Exception(located(position_, message_)), position(position_), message(message_) {}

}  // namespace quill::smt2
