#include "quill/smtlib/name_escape.h"

#include "quill/smtlib/theory_names.h"

namespace quill {

namespace {

bool is_digit(char c) { return c >= '0' && c <= '9'; }
bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

char hex_digit(unsigned value) {
  return static_cast<char>(value < 10 ? '0' + value : 'a' + (value - 10));
}

int hex_value(char c) {
  if (is_digit(c)) return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

std::string escape(std::string_view name, std::string_view prefix) {
  std::string out(prefix);
  for (const char c : name) {
    if (is_digit(c) || is_letter(c)) {
      out += c;
    } else {
      const unsigned byte = static_cast<unsigned char>(c);
      out += '!';
      out += hex_digit(byte >> 4);
      out += hex_digit(byte & 15);
    }
  }
  return out;
}

// Removes one layer of escape; false when the name is not exactly what escape() writes.
bool unescape(std::string_view name, std::string_view prefix, std::string& out) {
  if (name.substr(0, prefix.size()) != prefix) return false;
  out.clear();
  for (size_t i = prefix.size(); i < name.size(); ++i) {
    if (is_digit(name[i]) || is_letter(name[i])) {
      out += name[i];
      continue;
    }
    if (name[i] != '!' || i + 2 >= name.size()) return false;
    const int high = hex_value(name[i + 1]);
    const int low = hex_value(name[i + 2]);
    if (high < 0 || low < 0) return false;
    const char c = static_cast<char>(16 * high + low);
    if (is_digit(c) || is_letter(c)) return false;
    out += c;
    i += 2;
  }
  return true;
}

// Removes digits from the front of the text; false when there are none.
bool take_digits(std::string_view& text) {
  size_t n = 0;
  while (n < text.size() && is_digit(text[n])) n++;
  text.remove_prefix(n);
  return n != 0;
}

bool take(std::string_view& text, char c) {
  if (text.empty() || text[0] != c) return false;
  text.remove_prefix(1);
  return true;
}

// Whether the manager spells a numeral like this: 7, -7, 1/2, 5_8, -5_8, 0_8_23.
bool is_spelled_like_a_numeral(std::string_view name) {
  take(name, '-');
  if (!take_digits(name)) return false;
  if (name.empty()) return true;
  if (take(name, '/')) return take_digits(name) && name.empty();
  for (int part = 0; part < 2 && take(name, '_'); ++part) {
    if (!take_digits(name)) return false;
  }
  return name.empty();
}

bool is_managers_symbol_name(std::string_view name) {
  if (name.empty() || name[0] == '`') return true;
  if (take(name, '\'')) return take_digits(name) && name.empty();
  return is_spelled_like_a_numeral(name);
}

bool is_managers_type_name(std::string_view name) {
  for (const std::string_view own :
       {"Bool", "Real", "Int", "Array", "BitVec", "FPRounding", "FP"}) {
    if (name == own) return true;
  }
  if (!take_digits(name)) return false;
  return name.empty() || (take(name, ':') && take_digits(name) && name.empty());
}

bool is_writable(std::string_view name, NameKind kind, const Logic& logic) {
  if (!name.empty() && (name[0] == '@' || name[0] == '.')) return false;
  if (name == "_" || name == "as") return false;
  for (const char c : name) {
    const unsigned char byte = static_cast<unsigned char>(c);
    const bool blank = byte == '\t' || byte == '\n' || byte == '\r';
    if (c == '|' || c == '\\' || (byte < 32 && !blank) || byte == 127) return false;
  }
  // Some readers reject a sort that has the name of one of their operators.
  const TheoryName* row = find_theory_symbol(name);
  if (row != nullptr && logic.is_taken(row->readers)) return false;
  row = kind == NameKind::Sort ? find_theory_sort(name) : nullptr;
  return row == nullptr || !logic.is_taken(row->readers);
}

// A name as layers of escape around a core that is not an escape.
struct Layers {
  std::string core;
  unsigned depth = 0;
};

Layers peel(std::string_view name, std::string_view prefix) {
  Layers layers{std::string(name)};
  std::string inner;
  while (unescape(layers.core, prefix, inner)) {
    layers.core.swap(inner);
    ++layers.depth;
  }
  return layers;
}

// Every layer adds at least the length of the prefix, so there are few.
std::string wrap(const Layers& layers, unsigned depth, std::string_view prefix) {
  std::string name = layers.core;
  for (unsigned i = 0; i < depth; ++i) name = escape(name, prefix);
  return name;
}

struct Sides {
  bool managers_own;  // one kind of name to escape
  bool unwritable;    // the other kind
};

Sides classify(const std::string& core, NameKind kind, const Logic& logic) {
  const bool own =
      kind == NameKind::Sort ? is_managers_type_name(core) : is_managers_symbol_name(core);
  return {own, !is_writable(core, kind, logic)};
}

}  // namespace

std::string name_from_smtlib(std::string_view name, NameKind kind, std::string_view prefix,
                             const Logic& logic) {
  const Layers layers = peel(name, prefix);
  const Sides sides = classify(layers.core, kind, logic);
  if (sides.managers_own == sides.unwritable) return std::string(name);
  if (sides.managers_own) return wrap(layers, layers.depth + 1, prefix);
  return wrap(layers, layers.depth == 0 ? 0 : layers.depth - 1, prefix);
}

std::string name_to_smtlib(std::string_view name, NameKind kind, std::string_view prefix,
                           const Logic& logic) {
  const Layers layers = peel(name, prefix);
  const Sides sides = classify(layers.core, kind, logic);
  if (sides.managers_own == sides.unwritable) return std::string(name);
  if (sides.unwritable) return wrap(layers, layers.depth + 1, prefix);
  return wrap(layers, layers.depth == 0 ? 0 : layers.depth - 1, prefix);
}

}  // namespace quill
