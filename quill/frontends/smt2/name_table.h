// The names of a script, each with an entry for its meanings.
//
// An entry is made when its name is first requested, exists as long as the table and never moves,
// so callers may keep pointers to it. An index (intern_index.h) leads from the hash of a name to
// the number of its entry. A look-up needs no std::string and, if the name is known, allocates
// nothing.

#ifndef QUILL_FRONTENDS_SMT2_NAME_TABLE_H
#define QUILL_FRONTENDS_SMT2_NAME_TABLE_H

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

#include "quill/utils/intern_index.h"
#include "quill/utils/name_hash.h"

namespace quill::smt2 {

template <class Entry>
class NameTable {
 public:
  Entry& operator[](std::string_view name) {
    const uint32_t hash = hash_of(index.key(), name);
    const uint32_t found = number_of(hash, name);
    if (found != InternIndex::none) return items[found].entry;
    index.reserve_one();
    items.emplace_back(name);
    index.insert(
        hash, static_cast<uint32_t>(items.size() - 1),
        [this](uint64_t key, uint32_t number) { return hash_of(key, items[number].name); });
    return items.back().entry;
  }

  // The entry of a name that was requested before, or null.
  const Entry* find(std::string_view name) const {
    const uint32_t found = number_of(hash_of(index.key(), name), name);
    return found != InternIndex::none ? &items[found].entry : nullptr;
  }

 private:
  struct Item {
    explicit Item(std::string_view name_) : name(name_) {}
    const std::string name;
    Entry entry{};
  };

  uint32_t number_of(uint32_t hash, std::string_view name) const {
    return index.find(hash, [&](uint32_t number) { return items[number].name == name; });
  }
  static uint32_t hash_of(uint64_t key, std::string_view name) {
    return InternIndex::fold(NameHash()(key, name));
  }

  std::deque<Item> items;
  InternIndex index;
};

}  // namespace quill::smt2

#endif
