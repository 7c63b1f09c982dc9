// The exceptions that the reader throws: for every fault of an input, its position and a message.
//
// what() is "LINE:COLUMN: text"; lines and columns count from 1, columns in bytes.

#ifndef QUILL_FRONTENDS_SMT2_PARSE_ERROR_H
#define QUILL_FRONTENDS_SMT2_PARSE_ERROR_H

#include <cstdint>
#include <string>

#include "quill/utils/exception.h"

namespace quill::smt2 {

struct Position {
  uint64_t line = 1;
  uint64_t column = 1;
};

class ParseError : public Exception {
 public:
  ParseError(Position position_, const std::string& message_);

  uint64_t line() const { return position.line; }
  uint64_t column() const { return position.column; }
  const std::string& text() const { return message; }

 private:
  Position position;
  std::string message;
};

// The input stream reports a read error: the input is not at fault, but cannot be read.
class InputError : public Exception {
 public:
  using Exception::Exception;
};

}  // namespace quill::smt2

#endif
