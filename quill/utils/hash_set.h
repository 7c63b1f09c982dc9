// A set of keys: the chained table with the keys themselves as elements.
//
//   hsh::HashSet<const Symbol*> kept;
//   if (kept.insert(symbol)) ...  // it is new
//   if (kept.find(symbol) != kept.end()) ...
//
// For cost, iterators, order and errors, see Hashtable.

#ifndef QUILL_UTILS_HASH_SET_H
#define QUILL_UTILS_HASH_SET_H

#include "quill/utils/hash.h"
#include "quill/utils/hash_table.h"

namespace quill::hsh {

template <class Key, class Hash = Hasher<Key>, class Equal = typename KeyEquality<Key>::type>
class HashSet : public Hashtable<Key, GetKey_identity, Key, Hash, Equal> {
 public:
  using Hashtable<Key, GetKey_identity, Key, Hash, Equal>::Hashtable;
};

}  // namespace quill::hsh

#endif
