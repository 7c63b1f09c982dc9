// The symbols of an operator that has one symbol for each type: equalities, if-then-elses.
//
// Invariant: the set holds exactly the symbols that the map leads to. The map finds the symbol to
// build with, the set recognises it.

#ifndef QUILL_TERMS_TERMMANAGER_TYPE_KEYED_SYMBOLS_H
#define QUILL_TERMS_TERMMANAGER_TYPE_KEYED_SYMBOLS_H

#include <cstddef>

#include "quill/terms/symbol.h"
#include "quill/terms/termmanager/cache_sweep.h"
#include "quill/utils/hash_map.h"
#include "quill/utils/hash_set.h"
#include "quill/utils/scope_guard.h"

namespace quill {

class TypeKeyedSymbols {
 public:
  // The symbol of this type, or null. The latest answer is remembered: requests in a row mostly
  // have one type.
  const Symbol* find(const DataType* type) {
    if (type == latest_type) return latest_symbol;
    const auto found = by_type.find(type);
    if (found == by_type.end()) return nullptr;
    latest_type = type;
    latest_symbol = found->second;
    return latest_symbol;
  }

  bool contains(const Symbol* symbol) const { return symbols.find(symbol) != symbols.end(); }

  // All or nothing.
  void insert(const DataType* type, const Symbol* symbol) {
    symbols.insert(symbol);
    ScopeGuard undo([&] { symbols.erase(symbols.find(symbol)); });
    by_type.insert({type, symbol});
    undo.dismiss();
  }

  // Takes out a pair that is there.
  void erase(const DataType* type, const Symbol* symbol) noexcept {
    symbols.erase_key(symbol);
    by_type.erase_key(type);
    latest_type = nullptr;
    latest_symbol = nullptr;
  }

  // Takes out the symbol of a type, if it has one. Reads neither; the cost is that of two look-ups.
  void erase_type(const DataType* type) {
    const auto found = by_type.find(type);
    if (found == by_type.end()) return;
    symbols.erase_key(found->second);
    by_type.erase_key(type);
    latest_type = nullptr;
    latest_symbol = nullptr;
  }

  // Takes out every symbol that is not in the set.
  void sweep(const hsh::HashSet<const Symbol*>& kept) {
    gc_clear_set(symbols, kept);
    gc_clear_tbl_val(by_type, kept);
    latest_type = nullptr;
    latest_symbol = nullptr;
  }

  // Calls action(type, symbol) for each pair.
  template <class Action>
  void for_each(Action action) const {
    for (const auto& [type, symbol] : by_type) action(type, symbol);
  }
  size_t size() const { return symbols.count; }

 private:
  hsh::HashSet<const Symbol*> symbols;
  hsh::HashMap<const DataType*, const Symbol*> by_type;
  const DataType* latest_type = nullptr;
  const Symbol* latest_symbol = nullptr;
};

}  // namespace quill

#endif
