// Removes the table entries that refer to symbols or types that a collection frees.
//
// Entries are erased in place, in one walk over the table, and their keys are neither hashed nor
// compared: what a key points to may already be gone. Only a table whose keys were made to collide
// hashes again the keys that stay. A table that the collection leaves nearly empty releases its
// room.

#ifndef QUILL_TERMS_TERMMANAGER_CACHE_SWEEP_H
#define QUILL_TERMS_TERMMANAGER_CACHE_SWEEP_H

#include "quill/utils/table_room.h"

namespace quill {

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
