// Chained tables for keys that somebody may have chosen so that they share a bucket.
//
// The hashes of the chained tables (hash_table.h) are fixed and cheap, and keys that collide under
// them are easy to find: widths that are multiples of the bucket count, names, numerals. A
// GuardedMap or GuardedSet is a chained table, with the same elements in the same order, that such
// keys do not slow down. An insertion that passes longest_chain nodes of one chain builds an index
// over the whole table, from a keyed hash (keyed_hash.h) to the nodes. From then on the index finds
// keys, and new nodes are linked without a walk along the chain.
//
//   index == null      chains are walked; none of them was longer than longest_chain when its last
//                      node was linked, unless there was no memory for an index
//   index != null      the index leads to every node
//
// Tables whose keys collide only by accident practically never get there: one table in a thousand
// million has a chain of that length. They take no more memory than tables without a guard, and one
// more comparison per operation.
//
// Cost: constant time for any keys, with two exceptions: an index whose hash somebody has broken
// under all keys, and erase(), which looks for the node before the one that it removes and may
// therefore walk the chain. To erase many elements, use erase_if().
//
// Tables keyed by addresses or by term ids need no guard: n such keys share a chain of a table with
// p buckets only if the largest exceeds the smallest by at least (n - 1) * p, so that many bytes of
// memory, or that many terms, must have been filled for them. As p is about n, these are more than
// the n * n / 2 nodes that the insertions visit.
//
// Errors are those of the chained tables. A GuardedMap is not a HashMap, so that nobody can change
// the table without its index.

#ifndef QUILL_UTILS_GUARDED_TABLE_H
#define QUILL_UTILS_GUARDED_TABLE_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <tuple>
#include <utility>

#include "quill/utils/hash.h"
#include "quill/utils/hash_table.h"
#include "quill/utils/intern_index.h"
#include "quill/utils/keyed_hash.h"

namespace quill::hsh {

template <class Value, class GetKey, class Key, class Hash, class Equal, class Keyed>
class GuardedTable : private Hashtable<Value, GetKey, Key, Hash, Equal> {
  using Table = Hashtable<Value, GetKey, Key, Hash, Equal>;
  using Bucket = typename Table::Bucket;

 public:
  using Table::begin;
  using Table::count;
  using Table::end;
  using Table::num_buckets;
  using typename Table::ConstIter;
  using typename Table::Iter;

  static constexpr uint64_t longest_chain = 16;

  Iter find(const Key& key) { return lookup<Iter>(key); }
  ConstIter find(const Key& key) const { return lookup<ConstIter>(key); }

  // The element with this key, or null. For callers that need no iterator.
  const Value* get(const Key& key) const {
    uint64_t at;
    const Bucket* node = find_node(key, at);
    return node != nullptr ? &node->value : nullptr;
  }

  bool insert(const Value& value) {
    Bucket* node;
    return emplace(this->get_key(value), node, value);
  }

  Iter erase(Iter position) {
    if (index != nullptr) {
      Bucket* node = position.node;
      index->erase(hash_of(index->key(), node), node);
    }
    return Table::erase(position);
  }

  bool erase_key(const Key& key) {
    if (index == nullptr) return Table::erase_key(key);
    Bucket* node = find_in_index(key);
    if (node == nullptr) return false;
    index->erase(hash_of(index->key(), node), node);
    this->erase_node(this->bucket_of(key), node);
    return true;
  }

  // If there is an index, hashes the remaining elements again; otherwise hashes nothing.
  template <class Doomed>
  void erase_if(Doomed doomed) {
    const uint64_t before = count;
    Table::erase_if(doomed);
    if (index == nullptr || count == before) return;
    index->clear(count);
    for (Bucket* node : buckets) {
      for (; node != nullptr; node = node->next) {
        index->insert(hash_of(index->key(), node), node);
      }
    }
  }

  void swap(GuardedTable& other) noexcept {
    Table::swap(other);
    index.swap(other.index);
  }

  // Whether there is an index.
  bool is_indexed() const { return index != nullptr; }

 protected:
  // Sets `node` to the node of `key`. If there is none, makes one from `arguments`, which must
  // construct a value with that key. Returns whether it made a node.
  template <class... Arguments>
  bool emplace(const Key& key, Bucket*& node, Arguments&&... arguments) {
    this->make_room();
    if (index != nullptr) return emplace_indexed(key, node, std::forward<Arguments>(arguments)...);
    const uint64_t at = this->bucket_of(key);
    uint64_t passed = 0;
    for (node = buckets[at]; node != nullptr; node = node->next) {
      count_entry();
      if (this->equal(this->get_key(node->value), key)) return false;
      ++passed;
    }
    node = this->link_new(at, std::forward<Arguments>(arguments)...);
    if (passed >= longest_chain) make_index();
    return true;
  }

 private:
  using Table::buckets;
  using Index = HandleIndex<Bucket*>;

  static uint32_t hash_of(uint64_t key, const Bucket* node) {
    return Index::fold(Keyed()(key, GetKey()(node->value)));
  }

  [[gnu::noinline, gnu::cold]] Bucket* find_in_index(const Key& key) const {
    return index->find(Index::fold(Keyed()(index->key(), key)), [&](const Bucket* node) {
      return this->equal(this->get_key(node->value), key);
    });
  }

  // Looks at the first node of the chain before it checks for an index, because that node is
  // usually the one sought.
  Bucket* find_node(const Key& key, uint64_t& at) const {
    if (count == 0) return nullptr;
    at = this->bucket_of(key);
    Bucket* node = buckets[at];
    if (node == nullptr) return nullptr;
    count_entry();
    if (this->equal(this->get_key(node->value), key)) return node;
    return find_behind(node, key);
  }

  template <class Position>
  Position lookup(const Key& key) const {
    uint64_t at;
    Bucket* node = find_node(key, at);
    return Position(&buckets, node != nullptr ? at : buckets.size(), node);
  }

  [[gnu::noinline]] Bucket* find_behind(Bucket* node, const Key& key) const {
    if (index != nullptr) return find_in_index(key);
    while ((node = node->next) != nullptr) {
      count_entry();
      if (this->equal(this->get_key(node->value), key)) return node;
    }
    return nullptr;
  }

  template <class... Arguments>
  [[gnu::noinline, gnu::cold]] bool emplace_indexed(const Key& key, Bucket*& node,
                                                    Arguments&&... arguments) {
    if ((node = find_in_index(key)) != nullptr) return false;
    index->reserve_one();
    node = this->link_new(this->bucket_of(key), std::forward<Arguments>(arguments)...);
    index->insert(hash_of(index->key(), node), node, hash_of);
    return true;
  }

  // Without memory for an index the chains stay as they are.
  [[gnu::noinline, gnu::cold]] void make_index() noexcept {
    try {
      auto made = std::make_unique<Index>();
      for (Bucket* node : buckets) {
        for (; node != nullptr; node = node->next) {
          made->reserve_one();
          made->insert(hash_of(made->key(), node), node, hash_of);
        }
      }
      index = std::move(made);
    } catch (const std::bad_alloc&) {
      return;
    }
  }

  std::unique_ptr<Index> index;
};

template <class Key, class Mapped, class Hash = Hasher<Key>,
          class Equal = typename KeyEquality<Key>::type, class Keyed = KeyedHasher<Key>>
class GuardedMap
    : public GuardedTable<std::pair<Key, Mapped>, GetKey_pair, Key, Hash, Equal, Keyed> {
 public:
  // Like HashMap::operator[].
  Mapped& operator[](const Key& key) {
    typename Hashtable<std::pair<Key, Mapped>, GetKey_pair, Key, Hash, Equal>::Bucket* node;
    this->emplace(key, node, std::piecewise_construct, std::forward_as_tuple(key), std::tuple<>());
    return node->value.second;
  }
};

template <class Key, class Hash = Hasher<Key>, class Equal = typename KeyEquality<Key>::type,
          class Keyed = KeyedHasher<Key>>
class GuardedSet : public GuardedTable<Key, GetKey_identity, Key, Hash, Equal, Keyed> {};

}  // namespace quill::hsh

#endif
