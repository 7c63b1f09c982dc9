// Terms, symbols and types in streams: what logs and tests show instead of addresses.

#include <ostream>
#include <string>
#include <string_view>

#include "quill/terms/data_type.h"
#include "quill/terms/shallow_text.h"
#include "quill/terms/symbol.h"
#include "quill/terms/term.h"

namespace quill {

namespace {

// Text of at most so many bytes; longer text ends with dots, and never within a character (UTF-8).
class BoundedText {
 public:
  void add(std::string_view piece) {
    if (is_cut) return;
    size_t room = most - text.size();
    if (piece.size() <= room) {
      text += piece;
      return;
    }
    while (room != 0 && (static_cast<unsigned char>(piece[room]) & 0xC0) == 0x80) --room;
    text += piece.substr(0, room);
    text += "...";
    is_cut = true;
  }

  const std::string& get() const { return text; }

 private:
  static constexpr size_t most = 200;
  std::string text;
  bool is_cut = false;
};

}  // namespace

std::ostream& operator<<(std::ostream& out, const Term_* t) {
  if (t == nullptr) return out << "null";
  BoundedText text;
  write_shallow_text(*t, [&](std::string_view piece) { text.add(piece); });
  return out << text.get();
}

std::ostream& operator<<(std::ostream& out, const Symbol* s) {
  if (s == nullptr) return out << "null";
  BoundedText text;
  text.add(s->name);
  return out << text.get();
}

std::ostream& operator<<(std::ostream& out, const DataType* type) {
  if (type == nullptr) return out << "null";
  BoundedText text;
  text.add(type->to_str());
  return out << text.get();
}

}  // namespace quill
