// The symbols of an operator that has one symbol for each type: equalities, if-then-elses.
//
// Invariant: the set holds exactly the symbols that the map leads to. The map finds the symbol to
// build with, the set recognises it.

#ifndef QUILL_TERMS_TERMMANAGER_TYPE_KEYED_SYMBOLS_H
#define QUILL_TERMS_TERMMANAGER_TYPE_KEYED_SYMBOLS_H

#include "quill/terms/symbol.h"
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

 private:
  hsh::HashSet<const Symbol*> symbols;
  hsh::HashMap<const DataType*, const Symbol*> by_type;
};

}  // namespace quill

#endif
