// The types that stand for a parameter, such as the simple type "32" for the width 32, and the
// parameter of each.
//
// Invariant: both maps hold exactly the same pairs. Recognisers read the parameter back from the
// type, so an entry goes from both maps or from none.

#ifndef QUILL_TERMS_TERMMANAGER_TYPE_TABLE_H
#define QUILL_TERMS_TERMMANAGER_TYPE_TABLE_H

#include <cstddef>

#include "quill/terms/data_type.h"
#include "quill/terms/termmanager/cache_sweep.h"
#include "quill/utils/guarded_table.h"
#include "quill/utils/hash_map.h"
#include "quill/utils/scope_guard.h"
#include "quill/utils/table_room.h"

namespace quill {

template <class Key>
class TypeTable {
 public:
  // The type of this parameter, or null.
  const DataType* find(const Key& key) const {
    const auto found = types.find(key);
    return found != types.end() ? found->second : nullptr;
  }

  // The parameter of this type, or null when the type is none of the table's.
  const Key* find_key(const DataType* type) const {
    const auto found = keys.find(type);
    return found != keys.end() ? &found->second : nullptr;
  }

  // Enters the pair of a parameter that is not there. A type that stood for another parameter
  // stands for this one from now on, and the other one has no type. All or nothing.
  void insert(const Key& key, const DataType* type) {
    types.insert({key, type});
    ScopeGuard undo([&] { types.erase_key(key); });
    if (const auto former = keys.find(type); former == keys.end()) {
      keys.insert({type, key});
    } else if (!(former->second == key)) {
      types.erase_key(former->second);
      former->second = key;
    }
    undo.dismiss();
  }

  // Takes out the pair of a parameter, if it is there.
  void erase(const Key& key) {
    const DataType* type = find(key);
    if (type == nullptr) return;
    keys.erase_key(type);
    types.erase_key(key);
  }

  // Takes out the pair of a type, if it has one. Reads no type; the cost is that of two look-ups.
  void erase_type(const DataType* type) {
    const Key* key = find_key(type);
    if (key == nullptr) return;
    types.erase_key(*key);
    keys.erase_key(type);
  }

  // Takes out the pairs of all types for which doomed(type) holds. Reads no type.
  template <class Doomed>
  void erase_types(Doomed doomed) {
    erase_entries(types, [&](const auto& entry) { return doomed(entry.second); });
    erase_entries(keys, [&](const auto& entry) { return doomed(entry.first); });
    give_back_room(types);
    give_back_room(keys);
  }

  // Calls action(parameter, type) for each pair.
  template <class Action>
  void for_each(Action action) const {
    for (const auto& [key, type] : types) action(key, type);
  }
  size_t size() const { return keys.count; }

 private:
  hsh::GuardedMap<Key, const DataType*> types;
  hsh::HashMap<const DataType*, Key> keys;
};

}  // namespace quill

#endif
