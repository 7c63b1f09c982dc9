// A map from keys to values: the chained table with pairs as elements.
//
//   hsh::HashMap<unsigned long, const Symbol*> symbols;
//   symbols[width] = symbol;
//   auto it = symbols.find(width);
//   if (it != symbols.end()) use(it->second);
//   for (const auto& [key, value] : symbols) ...
//
// insert({key, value}) does not change the value of a key that is present. For cost, iterators,
// order and errors, see Hashtable.

#ifndef QUILL_UTILS_HASH_MAP_H
#define QUILL_UTILS_HASH_MAP_H

#include <cstdint>
#include <tuple>
#include <utility>

#include "quill/utils/hash.h"
#include "quill/utils/hash_table.h"

namespace quill::hsh {

template <class Key, class Mapped, class Hash = Hasher<Key>,
          class Equal = typename KeyEquality<Key>::type>
class HashMap : public Hashtable<std::pair<Key, Mapped>, GetKey_pair, Key, Hash, Equal> {
  using Table = Hashtable<std::pair<Key, Mapped>, GetKey_pair, Key, Hash, Equal>;

 public:
  using Table::Table;

  // The value of `key`. A missing key is first added with null, zero or a default-constructed
  // value.
  Mapped& operator[](const Key& key) {
    uint64_t index;
    typename Table::Bucket* node;
    this->do_emplace(key, index, node, std::piecewise_construct, std::forward_as_tuple(key),
                     std::tuple<>());
    return node->value.second;
  }
};

}  // namespace quill::hsh

#endif
