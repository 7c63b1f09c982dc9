#include "quill/terms/shallow_text.h"

#include <string>
#include <string_view>

namespace quill {

std::string Term_::to_shallow_str() const {
  std::string out;
  write_shallow_text(*this, [&](std::string_view piece) { out += piece; });
  return out;
}

}  // namespace quill
