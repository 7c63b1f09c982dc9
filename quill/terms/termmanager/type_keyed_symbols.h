// The symbols of an operator that has one symbol for each type: equalities, if-then-elses.
//
// Beside the pairs of types and symbols it remembers the pair found last, because requests in a row
// mostly have one type.

#ifndef QUILL_TERMS_TERMMANAGER_TYPE_KEYED_SYMBOLS_H
#define QUILL_TERMS_TERMMANAGER_TYPE_KEYED_SYMBOLS_H

#include "quill/terms/termmanager/two_way_map.h"

namespace quill {

class TypeKeyedSymbols {
 public:
  // Types are told apart by address, so no guard is needed.
  using Pairs = TwoWayMap<const DataType*, Symbol, hsh::HashMap<const DataType*, const Symbol*>>;

  // The symbol of this type, or null.
  const Symbol* find(const DataType* type) {
    if (type == latest_type) return latest_symbol;
    const Symbol* found = symbols.find(type);
    if (found == nullptr) return nullptr;
    latest_type = type;
    latest_symbol = found;
    return found;
  }

  bool contains(const Symbol* symbol) const { return symbols.find_key(symbol) != nullptr; }

  // All or nothing.
  void insert(const DataType* type, const Symbol* symbol) { symbols.insert(type, symbol); }

  // Takes out the symbol of a type, if it has one.
  void erase(const DataType* type) noexcept {
    symbols.erase(type);
    latest_type = nullptr;
    latest_symbol = nullptr;
  }

  // Takes out every symbol that is not in the set.
  template <class Kept>
  void sweep(const Kept& kept) {
    symbols.sweep(kept);
    latest_type = nullptr;
    latest_symbol = nullptr;
  }

  const Pairs& pairs() const { return symbols; }

 private:
  Pairs symbols;
  const DataType* latest_type = nullptr;
  const Symbol* latest_symbol = nullptr;
};

}  // namespace quill

#endif
