// Checks what must always hold between the tables of a manager and its stores.
//
//   stores      look-ups find what a store holds; what terms, symbols and types point to is held
//   tables      lead only to and from types, symbols and terms that are held; paired maps agree
//
// An address is dereferenced only if a store holds the object.

#include <algorithm>
#include <functional>
#include <string_view>

#include "quill/terms/termmanager/families.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill {

namespace {

// The objects that a store holds.
template <class T>
class Held {
 public:
  void add(const T* object) { objects.push_back(object); }
  void sort() { std::sort(objects.begin(), objects.end(), std::less<>()); }
  bool has(const T* object) const {
    return std::binary_search(objects.begin(), objects.end(), object, std::less<>());
  }
  const std::vector<const T*>& all() const { return objects; }

 private:
  std::vector<const T*> objects;
};

std::string problem(std::string_view table, std::string_view what) {
  return std::string(table) + ": " + std::string(what);
}

// A table of types by parameter; spell(key) is the name of the type for a parameter.
template <class Key, class Spell>
std::string check_type_table(const char* name, const ParameterTypes<Key>& table,
                             const Held<DataType>& types, Spell spell) {
  std::string wrong;
  for (const auto& [key, type] : table.by_key) {
    const Key* back = table.find_key(type);
    if (!types.has(type)) {
      wrong = problem(name, "a type is not in the universe");
    } else if (back == nullptr || !(*back == key)) {
      wrong = problem(name, "a type does not lead back to its parameter");
    } else if (type->get_name() != spell(key)) {
      wrong = problem(name, "a parameter leads to the type of another one");
    }
  }
  if (wrong.empty() && table.by_key.count != table.by_object.count)
    wrong = problem(name, "a type has no parameter");
  return wrong;
}

// A table of the symbols of an operator by type; the type is that of the argument at `position`.
std::string check_type_keyed(const char* name, const TypeKeyedSymbols& table, size_t position,
                             const Held<DataType>& types, const Held<Symbol>& symbols) {
  std::string wrong;
  for (const auto& [type, symbol] : table.pairs().by_key) {
    if (!types.has(type)) {
      wrong = problem(name, "a type is not in the universe");
    } else if (!symbols.has(symbol)) {
      wrong = problem(name, "a symbol is not in the signature");
    } else if (!table.contains(symbol)) {
      wrong = problem(name, "a symbol is not recognised");
    } else if (symbol->type->get_component(position) != type) {
      wrong = problem(name, "a type leads to the symbol of another one");
    }
  }
  if (wrong.empty() && table.pairs().by_key.count != table.pairs().by_object.count)
    wrong = problem(name, "a symbol has no type");
  return wrong;
}

template <class Key>
const auto& by_key_of(const SymbolFamily<Key>& family) {
  return family.by_key;
}

const ArraySymbols::Map& by_key_of(const ArraySymbols& family) { return family.pairs(); }

// The symbols of an operator. Array families have no map from symbols to keys.
template <class Family>
std::string check_family(const OperatorFamily& row, const Family& family,
                         const Held<Symbol>& symbols,
                         const hsh::HashMap<const Symbol*, SymbolTag::tag>& tags) {
  constexpr bool has_map_back = requires { family.by_object; };
  const auto& by_key = by_key_of(family);
  for (const auto& [key, symbol] : by_key) {
    if (!symbols.has(symbol)) return problem(row.base, "a symbol is not in the signature");
    if (tags.find(symbol) == tags.end()) return problem(row.base, "a symbol has no tag");
    if (!std::string_view(symbol->name + 1).starts_with(row.base)) {
      return problem(row.base, "a symbol is one of another family");
    }
    if constexpr (has_map_back) {
      const auto found = family.by_object.find(symbol);
      if (found == family.by_object.end() || !(found->second == key)) {
        return problem(row.base, "a symbol does not lead back to its parameters");
      }
    }
  }
  if constexpr (has_map_back) {
    if (family.by_object.count != by_key.count) {
      return problem(row.base, "a symbol has no parameters");
    }
  } else if (!family.is_consistent()) {
    return problem(row.base, "the places of types are miscounted");
  }
  return "";
}

}  // namespace

std::string TermManager::check_consistency() const {
  // Types before symbols before terms, so that each pointer is checked before it is dereferenced.
  Held<DataType> types;
  for (size_t i = 0; i < universe->size(); ++i) types.add(universe->type(i));
  types.sort();
  for (const DataType* type : types.all()) {
    for (size_t i = 0; i < type->num_components(); ++i) {
      if (!types.has(type->get_component(i))) {
        return problem("universe", "a component is not in the universe");
      }
    }
  }
  if (!universe->is_consistent()) return problem("universe", "a type is not found");
  for (const DataType* type : standard_types()) {
    if (!types.has(type)) return problem("universe", "a standard type is gone");
  }

  Held<Symbol> symbols;
  for (size_t i = 0; i < signature->size(); ++i) symbols.add(signature->symbol(i));
  symbols.sort();
  for (const Symbol* symbol : symbols.all()) {
    if (!types.has(symbol->type) || !types.has(symbol->get_output_type())) {
      return problem("signature", "the type of a symbol is not in the universe");
    }
  }
  if (!signature->is_consistent()) return problem("signature", "a name leads to another symbol");

  Held<Term_> terms;
  for (const Term_* t : *bank) terms.add(t);
  terms.sort();
  for (const Term_* t : terms.all()) {
    if (!symbols.has(t->symbol)) return problem("bank", "a symbol is not in the signature");
    for (const Term_* argument : t->arguments()) {
      if (!terms.has(argument)) return problem("bank", "an argument is not in the bank");
    }
  }
  if (!bank->is_consistent()) return problem("bank", "a term is not found, or ids disagree");
  if (!terms.has(true_term) || !terms.has(false_term)) {
    return problem("bank", "a standard term is gone");
  }

  std::string wrong = check_type_table("bv_widths", bv_widths, types,
                                       [](size_t width) { return std::to_string(width); });
  if (!wrong.empty()) return wrong;
  wrong = check_type_table("fp_formats", fp_formats, types, [](const IEEEFloat::format& f) {
    return std::to_string(f.e) + ':' + std::to_string(f.m);
  });
  if (!wrong.empty()) return wrong;
  for (const auto& [name, type] : simple_types) {
    if (!types.has(type)) return problem("simple_types", "a type is not in the universe");
    if (type->get_name() != name) return problem("simple_types", "a type has another name");
  }

  for (const auto& [symbol, tag] : tags) {
    if (!symbols.has(symbol)) return problem("tags", "a symbol is not in the signature");
  }
  wrong = check_type_keyed("equality_symbols", equality_symbols, /*position=*/1, types, symbols);
  if (!wrong.empty()) return wrong;
  wrong = check_type_keyed("term_ite_symbols", term_ite_symbols, /*position=*/2, types, symbols);
  if (!wrong.empty()) return wrong;

  for (const auto& [symbol, value] : number_values) {
    if (!symbols.has(symbol)) return problem("number_values", "a symbol is not in the signature");
  }
  for (const auto& [value, t] : number_cache) {
    if (!terms.has(t)) return problem("number_cache", "a term is not in the bank");
    const auto found = number_values.find(t->symbol);
    if (found == number_values.end() || &found->second != value) {
      return problem("number_cache", "the key is not the value of the symbol");
    }
  }

  Families::for_each(*this, [&](const OperatorFamily& row, const auto& family) {
    if (wrong.empty()) wrong = check_family(row, family, symbols, tags);
  });
  return wrong;
}

}  // namespace quill
