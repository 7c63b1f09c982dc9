#include "quill/frontends/smt2/indices.h"

#include <charconv>
#include <system_error>

#include "quill/frontends/smt2/lexer.h"

namespace quill::smt2 {

uint64_t index_value(std::string_view index, const char* kind, std::string_view name,
                     Position position) {
  const char* end = index.data() + index.size();
  uint64_t value = 0;
  const std::from_chars_result read = std::from_chars(index.data(), end, value);
  if (read.ptr != end || read.ec == std::errc::invalid_argument) {
    throw ParseError(position,
                     kind + shown(name) + " takes numerals as indices, not " + shown(index));
  }
  if (read.ec == std::errc::result_out_of_range) {
    throw ParseError(position,
                     "the index " + shown(index) + " of " + kind + shown(name) + " is too large");
  }
  return value;
}

}  // namespace quill::smt2
