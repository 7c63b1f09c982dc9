// The symbols of an array operator, which has one for each pair of index and element type.
//
// Representation: a map from pairs to symbols, and for each type the number of places that it takes
// in these pairs. One look-up therefore recognises a type that takes none, as every type that may
// be freed does, however many pairs there are.

#ifndef QUILL_TERMS_TERMMANAGER_ARRAY_SYMBOLS_H
#define QUILL_TERMS_TERMMANAGER_ARRAY_SYMBOLS_H

#include <cstddef>

#include "quill/terms/symbol.h"
#include "quill/terms/termmanager/cache_sweep.h"
#include "quill/terms/termmanager/family_keys.h"
#include "quill/utils/guarded_table.h"
#include "quill/utils/hash_map.h"
#include "quill/utils/scope_guard.h"
#include "quill/utils/table_room.h"

namespace quill {

class ArraySymbols {
 public:
  using Types = FamilyKeys::ArrIndex;
  using Map = hsh::GuardedMap<Types, const Symbol*>;

  // The symbol for these types, or null.
  const Symbol* find(const Types& types) const {
    const auto found = by_types.find(types);
    return found != by_types.end() ? found->second : nullptr;
  }

  // Enters the symbol for types that have none. All or nothing.
  void insert(const Types& types, const Symbol* symbol) {
    ++places[types.i];
    ScopeGuard undo_index([&] { leave_place(types.i); });
    ++places[types.e];
    ScopeGuard undo_element([&] { leave_place(types.e); });
    by_types.insert({types, symbol});
    undo_element.dismiss();
    undo_index.dismiss();
  }

  // Removes every symbol that is not in the set.
  template <class Kept>
  void sweep(const Kept& kept) {
    erase_pairs([&](const auto& pair) { return kept.find(pair.second) == kept.end(); });
    give_back_room(by_types);
    give_back_room(places);
  }

  // Removes the symbols of all pairs that contain the type. Does not dereference types.
  void erase_type(const DataType* type) {
    if (places.find(type) == places.end()) return;
    erase_pairs([&](const auto& pair) { return pair.first.i == type || pair.first.e == type; });
  }

  const Map& pairs() const { return by_types; }

  // Whether the counts agree with the pairs. Linear; for debugging.
  bool is_consistent() const {
    hsh::HashMap<const DataType*, size_t> counted;
    for (const auto& [types, symbol] : by_types) {
      ++counted[types.i];
      ++counted[types.e];
    }
    if (counted.count != places.count) return false;
    for (const auto& [type, count] : counted) {
      const auto found = places.find(type);
      if (found == places.end() || found->second != count) return false;
    }
    return true;
  }

 private:
  template <class Doomed>
  void erase_pairs(Doomed doomed) {
    erase_entries(by_types, [&](const auto& pair) {
      if (!doomed(pair)) return false;
      leave_place(pair.first.i);
      leave_place(pair.first.e);
      return true;
    });
  }

  void leave_place(const DataType* type) {
    const auto found = places.find(type);
    if (--found->second == 0) places.erase_key(type);
  }

  Map by_types;
  hsh::HashMap<const DataType*, size_t> places;  // no count is 0
};

}  // namespace quill

#endif
