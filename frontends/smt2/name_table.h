// The names of a script, each with an entry for what it means.
//
// An entry is made when its name is asked for first, stays for the life of the table and never
// moves, so that callers may keep pointers to it. An index (intern_index.h) leads from the hash of
// a name to the number of its entry. A look-up needs no std::string and, when the name is known,
// allocates nothing.

#ifndef FRONTENDS_SMT2_NAME_TABLE_H
#define FRONTENDS_SMT2_NAME_TABLE_H

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
    const uint32_t hash = InternIndex::fold(NameHash()(name));
    const uint32_t found =
        index.find(hash, [&](uint32_t number) { return items[number].name == name; });
    if (found != InternIndex::none) return items[found].entry;
    index.reserve_one();
    items.emplace_back(name);
    index.insert(hash, static_cast<uint32_t>(items.size() - 1));
    return items.back().entry;
  }

 private:
  struct Item {
    explicit Item(std::string_view text) : name(text) {}
    const std::string name;
    Entry entry{};
  };

  std::deque<Item> items;
  InternIndex index;
};

}  // namespace quill::smt2

#endif
