// The whole state of a manager as text, to compare it with that of another moment or another
// manager.
//
//   types, symbols, terms   in the order of the stores, which is the order in which they were made
//                           while nothing is freed; terms by id
//   tables                  both directions of paired maps, the entries sorted by their text
//   switches and counters
//
// Types are written by to_str, terms by id, and symbols by name and position, because a freed name
// may have been given to another symbol. No address is written, so the same history gives the same
// text. An object that is in a table but in no store is written as "gone" and never dereferenced.
//
// Left out are the memory that the stores keep for later, and what is kept only to answer faster.

#include <algorithm>
#include <string>
#include <unordered_map>

#include "quill/terms/termmanager/families.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill {

namespace {

// The texts of the objects in the stores.
class Texts {
 public:
  void add(const void* object, std::string text) { texts.emplace(object, std::move(text)); }
  const std::string& of(const void* object) const {
    const auto found = texts.find(object);
    return found != texts.end() ? found->second : gone;
  }

 private:
  std::unordered_map<const void*, std::string> texts;
  const std::string gone = "gone";
};

// Collects the lines of one table and writes them in the order of their texts.
class Table {
 public:
  Table(std::string name_, std::string& out_) : name(std::move(name_)), out(out_) {}
  Table(const Table&) = delete;
  Table& operator=(const Table&) = delete;
  ~Table() = default;

  void add(const std::string& from, const std::string& to) { lines.push_back(from + " -> " + to); }

  void write() {
    std::sort(lines.begin(), lines.end());
    for (const std::string& line : lines) {
      out += name;
      out += ' ';
      out += line;
      out += '\n';
    }
  }

 private:
  std::string name;
  std::string& out;
  std::vector<std::string> lines;
};

std::string numbers(std::initializer_list<uint64_t> parts) {
  std::string text;
  for (const uint64_t part : parts) {
    if (!text.empty()) text += ' ';
    text += std::to_string(part);
  }
  return text;
}

// Tells equal numbers of different forms apart.
std::string text_of(const QNumber& number) {
  return number.is_big() ? number.to_str() + " (big)" : number.to_str();
}

// The parameters of a table entry.
std::string text_of(size_t width, const Texts&) { return numbers({width}); }
std::string text_of(const FamilyKeys::BVIndex1& key, const Texts&) {
  return numbers({key.a, key.b});
}
std::string text_of(const FamilyKeys::BVIndex2& key, const Texts&) {
  return numbers({key.a, key.b, key.c});
}
std::string text_of(const IEEEFloat::format& key, const Texts&) { return numbers({key.e, key.m}); }
std::string text_of(const FamilyKeys::FPFormatCast& key, const Texts&) {
  return numbers({key.a, key.b, key.c, key.d});
}
std::string text_of(const FamilyKeys::ArrIndex& key, const Texts& texts) {
  return texts.of(key.i) + ' ' + texts.of(key.e);
}
std::string text_of(const QNumber& key, const Texts&) { return text_of(key); }

template <class Key>
void describe(const std::string& name, const ParameterTypes<Key>& table, const Texts& texts,
              std::string& out) {
  Table lines(name, out);
  for (const auto& [key, type] : table.by_key) {
    lines.add(text_of(key, texts), texts.of(type));
    const Key* back = table.find_key(type);
    lines.add(texts.of(type), back != nullptr ? text_of(*back, texts) : "nothing");
  }
  lines.write();
  out += name + " types: " + std::to_string(table.by_object.count) + '\n';
}

void describe(const std::string& name, const TypeKeyedSymbols& table, const Texts& texts,
              std::string& out) {
  Table lines(name, out);
  for (const auto& [type, symbol] : table.pairs().by_key) {
    lines.add(texts.of(type), texts.of(symbol));
    lines.add(texts.of(symbol), table.contains(symbol) ? "known" : "unknown");
  }
  lines.write();
  out += name + " symbols: " + std::to_string(table.pairs().by_object.count) + '\n';
}

template <class Key>
void describe(const std::string& name, const SymbolFamily<Key>& family, const Texts& texts,
              std::string& out) {
  Table lines(name, out);
  for (const auto& [key, symbol] : family.by_key) lines.add(text_of(key, texts), texts.of(symbol));
  for (const auto& [symbol, key] : family.by_object) {
    lines.add(texts.of(symbol), text_of(key, texts));
  }
  lines.write();
}

void describe(const std::string& name, const ArraySymbols& family, const Texts& texts,
              std::string& out) {
  Table lines(name, out);
  for (const auto& [key, symbol] : family.pairs()) lines.add(text_of(key, texts), texts.of(symbol));
  lines.write();
}

}  // namespace

std::string TermManager::describe_state() const {
  std::string out;
  Texts texts;

  for (size_t i = 0; i < universe->size(); ++i) {
    const DataType* type = universe->type(i);
    texts.add(type, type->to_str());
    out += "type " + std::to_string(i) + ' ' + texts.of(type) + '\n';
  }
  for (const auto& [sub, super] : universe->declared_subtypes()) {
    out += "subtype " + texts.of(sub) + " of " + texts.of(super) + '\n';
  }

  for (size_t i = 0; i < signature->size(); ++i) {
    const Symbol* symbol = signature->symbol(i);
    texts.add(symbol, std::string(symbol->name) + '#' + std::to_string(i));
    const auto tag = tags.find(symbol);
    out += "symbol " + texts.of(symbol) + " of " + texts.of(symbol->type);
    out += tag != tags.end() ? ", tag " + std::to_string(tag->second) : std::string(", no tag");
    if (signature->get_symbol(symbol->name) != symbol) out += ", name given back";
    out += '\n';
  }

  std::vector<const Term_*> terms(bank->begin(), bank->end());
  std::sort(terms.begin(), terms.end(),
            [](const Term_* a, const Term_* b) { return a->id < b->id; });
  for (const Term_* t : terms) {
    texts.add(t, std::to_string(t->id));
    out += "term " + texts.of(t) + " = " + texts.of(t->symbol);
    for (const Term_* argument : t->arguments()) out += ' ' + std::to_string(argument->id);
    out += '\n';
  }

  describe("bv_widths", bv_widths, texts, out);
  describe("fp_formats", fp_formats, texts, out);

  Table named_types("simple_types", out);
  for (const auto& [name, type] : simple_types) named_types.add(name, texts.of(type));
  named_types.write();

  Table tag_lines("tags", out);
  for (const auto& [symbol, tag] : tags) tag_lines.add(texts.of(symbol), std::to_string(tag));
  tag_lines.write();

  describe("equality_symbols", equality_symbols, texts, out);
  describe("term_ite_symbols", term_ite_symbols, texts, out);

  Table values("number_values", out);
  for (const auto& [symbol, value] : number_values) values.add(texts.of(symbol), text_of(value));
  values.write();

  Table cached("number_cache", out);
  for (const auto& [value, t] : number_cache) cached.add(text_of(*value), texts.of(t));
  cached.write();

  Families::for_each(*this, [&](const OperatorFamily& row, const auto& family) {
    describe(row.base, family, texts, out);
  });

  const auto line = [&](const char* name, uint64_t value) {
    out += name;
    out += ": ";
    out += std::to_string(value);
    out += '\n';
  };
  line("typecheck_enabled", typecheck_enabled);
  line("delegate_enabled", delegate_enabled);
  line("delegate given", delegate != nullptr);
  line("reject_bool_arguments", reject_bool_arguments);
  line("fresh_counter", fresh_counter);
  line("generation", generation);
  line("freed terms", last_collection.terms);
  line("freed symbols", last_collection.symbols);
  line("freed types", last_collection.types);
  line("marks left", std::find(marks.begin(), marks.end(), true) != marks.end());
  return out;
}

}  // namespace quill
