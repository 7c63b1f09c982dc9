#include "frontends/smt2/indices.h"

#include <charconv>

#include "frontends/smt2/lexer.h"

namespace quill::smt2 {

uint64_t index_value(const std::string& index, const std::string& owner, Position position) {
  if (index.empty() || index.find_first_not_of("0123456789") != std::string::npos) {
    throw ParseError(position, owner + " takes numerals as indices, not " + shown(index));
  }
  uint64_t value = 0;
  if (std::from_chars(index.data(), index.data() + index.size(), value).ec != std::errc()) {
    throw ParseError(position, "the index " + shown(index) + " of " + owner + " is too large");
  }
  return value;
}

}  // namespace quill::smt2
