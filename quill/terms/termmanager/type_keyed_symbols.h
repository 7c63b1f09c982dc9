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
  // The symbol of this type, or null.
  const Symbol* find(const DataType* type) const {
    const auto found = by_type.find(type);
    return found != by_type.end() ? found->second : nullptr;
  }

  bool contains(const Symbol* symbol) const { return symbols.find(symbol) != symbols.end(); }

  // All or nothing.
  void insert(const DataType* type, const Symbol* symbol) {
    symbols.insert(symbol);
    ScopeGuard undo([&] { symbols.erase(symbols.find(symbol)); });
    by_type.insert({type, symbol});
    undo.dismiss();
  }

  // Takes out every symbol that is not in the set.
  void sweep(const hsh::HashSet<const Symbol*>& kept) {
    gc_clear_set(symbols, kept);
    gc_clear_tbl_val(by_type, kept);
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
};

}  // namespace quill

#endif
