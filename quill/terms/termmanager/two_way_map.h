// Pairs of a key and an object of the manager, a type or a symbol, that are looked up both ways: a
// request finds the object to build with, a recogniser reads the key back from the object. One such
// map holds the types of all widths ("32" and 32), another the symbols of an operator family.
//
// Invariant: both maps hold exactly the same pairs, so an entry goes into both or into neither.
// Nothing here follows a pointer: objects may be freed before their pairs are taken out.
//
// Objects are keys of `by_object` by their address. A script chooses the keys of `by_key` and not
// where objects lie, so only that map is guarded against keys chosen to collide.

#ifndef QUILL_TERMS_TERMMANAGER_TWO_WAY_MAP_H
#define QUILL_TERMS_TERMMANAGER_TWO_WAY_MAP_H

#include "quill/terms/data_type.h"
#include "quill/terms/symbol.h"
#include "quill/terms/termmanager/cache_sweep.h"
#include "quill/utils/guarded_table.h"
#include "quill/utils/hash_map.h"
#include "quill/utils/scope_guard.h"
#include "quill/utils/table_room.h"

namespace quill {

// What the map leads to from this key, or null.
template <class Map, class Key>
auto find_or_null(const Map& map, const Key& key) {
  const auto found = map.find(key);
  return found != map.end() ? found->second : nullptr;
}

// Enters a pair in both maps, first in that of the objects, or in neither. An object that already
// has a key keeps it. The maps may be those of a caller of the generic makers.
template <class Object, class Key, class ByKey>
void insert_in_both(hsh::HashMap<const Object*, Key>& by_object, ByKey& by_key, const Key& key,
                    const Object* object) {
  const bool added = by_object.insert({object, key});
  ScopeGuard undo([&] {
    if (added) by_object.erase_key(object);
  });
  by_key.insert({key, object});
  undo.dismiss();
}

template <class Key, class Object, class ByKey = hsh::GuardedMap<Key, const Object*>>
struct TwoWayMap {
  hsh::HashMap<const Object*, Key> by_object;
  ByKey by_key;

  // The object of this key, or null.
  const Object* find(const Key& key) const { return find_or_null(by_key, key); }

  // The key of this object, or null.
  const Key* find_key(const Object* object) const {
    const auto found = by_object.find(object);
    return found != by_object.end() ? &found->second : nullptr;
  }

  // Enters the pair of a key that has none. All or nothing.
  void insert(const Key& key, const Object* object) {
    insert_in_both(by_object, by_key, key, object);
  }

  // Enters the pair of a key that has none, first in the map of the keys. An object that had
  // another key has this one from now on, and the other key has no object. All or nothing.
  void assign(const Key& key, const Object* object) {
    by_key.insert({key, object});
    ScopeGuard undo([&] { by_key.erase_key(key); });
    if (const auto former = by_object.find(object); former == by_object.end()) {
      by_object.insert({object, key});
    } else if (!(former->second == key)) {
      by_key.erase_key(former->second);
      former->second = key;
    }
    undo.dismiss();
  }

  // Take out the pair of a key or an object, if it has one.
  void erase(const Key& key) {
    const Object* object = find(key);
    if (object == nullptr) return;
    by_object.erase_key(object);
    by_key.erase_key(key);
  }
  void erase_object(const Object* object) {
    const Key* key = find_key(object);
    if (key == nullptr) return;
    by_key.erase_key(*key);
    by_object.erase_key(object);
  }

  // Takes out the pairs of all objects that are not in the set.
  template <class Kept>
  void sweep(const Kept& kept) {
    gc_clear_tbl_key(by_object, kept);
    gc_clear_tbl_val(by_key, kept);
  }
};

// The types that denote a parameter, such as the simple type "32" for the width 32.
template <class Key>
using ParameterTypes = TwoWayMap<Key, DataType>;

// The symbols of an operator family.
template <class Key>
using SymbolFamily = TwoWayMap<Key, Symbol>;

}  // namespace quill

#endif
