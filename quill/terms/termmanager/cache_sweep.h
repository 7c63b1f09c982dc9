// Takes the entries out of tables that lead to symbols or types that a collection frees.
//
// Entries are erased in place, during one walk over the table. No key is hashed or compared, but
// for those that stay in a table whose keys were made to collide, so that the key of an entry that
// goes may have lost what it points to. A table of which a collection leaves little gives back its
// room afterwards.

#ifndef QUILL_TERMS_TERMMANAGER_CACHE_SWEEP_H
#define QUILL_TERMS_TERMMANAGER_CACHE_SWEEP_H

#include "quill/utils/table_room.h"

namespace quill {

// Erases every element for which doomed(element) holds.
template <class Table, class Doomed>
void erase_entries(Table& table, Doomed doomed) {
  table.erase_if(doomed);
}

// A set of symbols.
template <class Set, class Kept>
void gc_clear_set(Set& set, const Kept& kept) {
  erase_entries(set, [&](const auto& element) { return kept.find(element) == kept.end(); });
  give_back_room(set);
}

// A map from symbols or types.
template <class Map, class Kept>
void gc_clear_tbl_key(Map& map, const Kept& kept) {
  erase_entries(map, [&](const auto& entry) { return kept.find(entry.first) == kept.end(); });
  give_back_room(map);
}

// A map to symbols or types.
template <class Map, class Kept>
void gc_clear_tbl_val(Map& map, const Kept& kept) {
  erase_entries(map, [&](const auto& entry) { return kept.find(entry.second) == kept.end(); });
  give_back_room(map);
}

}  // namespace quill

#endif
