// The separately chained hash table below HashMap and HashSet.
//
//   Hashtable
//     pool      nodes of the chains, from chunks of this table's own
//     buckets   vector of chain heads, its length always one of bucket_counts
//                 [0] null
//                 [1] -> {next, value} -> {next, value} -> null
//     count     stored elements
//
// A node holds its link, then the value. It is made when its key is inserted and stays at its
// address until it is erased; the next insertion uses it again. Nothing shrinks.
//
// Use. insert adds a value unless its key is present; find returns an iterator to the element, or
// end(). An iterator stays valid until the table grows (any insert or operator[] may grow it, even
// for a key that is present) or its element is erased; pointers and references to values survive
// growth. Hash and Equal must not throw.
//
// Order. A walk visits the buckets in index order and each chain from its most recently linked
// node. Growth pops the nodes of each old chain from its head and pushes them onto the new chains,
// which reverses nodes that stay together. The order is part of the behaviour: it depends on the
// hashes and the history of insert, operator[] and erase, and on nothing else.
//
// Cost. All operations take expected constant time; a walk takes time in the number of buckets as
// well as of elements.
//
// Errors. insert may throw std::bad_alloc, std::length_error or whatever copying the value throws.
// The elements are then unchanged; the table may have grown, unless growing is what failed.

#ifndef QUILL_UTILS_HASH_TABLE_H
#define QUILL_UTILS_HASH_TABLE_H

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

#include "quill/utils/bucket_growth.h"
#include "quill/utils/entry_count.h"
#include "quill/utils/hash.h"
#include "quill/utils/memory_pool.h"

namespace quill::hsh {

struct GetKey_pair {
  template <class Key, class Mapped>
  const Key& operator()(const std::pair<Key, Mapped>& value) const noexcept {
    return value.first;
  }
};

struct GetKey_identity {
  template <class Key>
  const Key& operator()(const Key& value) const noexcept {
    return value;
  }
};

// Whether To is From with const added.
template <class From, class To>
concept ConstAdded = !std::is_const_v<From> && std::is_same_v<const From, To>;

template <class Value, class GetKey, class Key, class Hash, class Equal>
class Hashtable {
  static_assert(
      HashOf<Hash, Key>,
      "the key type of this table has no hash: specialise quill::Hasher for it beside its "
      "definition, and include that, or name a functor that hashes it");

 public:
  struct Bucket {
    Bucket* next;
    Value value;
  };

  static_assert(alignof(Bucket) <= alignof(void*), "the pool aligns its nodes for pointers");

  // A position in the walk. Item is Value or const Value. At the end the node is null and the index
  // is the bucket count.
  template <class Item>
  class BasicIter {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = Value;
    using difference_type = ptrdiff_t;
    using pointer = Item*;
    using reference = Item&;

    BasicIter() = default;
    BasicIter(const std::vector<Bucket*>* table_, uint64_t index_, Bucket* node_)
        : table(table_), bucket_count(table_->size()), index(index_), node(node_) {}

    // Converts an iterator that may change its element to one that may not.
    template <ConstAdded<Item> Other>
    BasicIter(const BasicIter<Other>& other)
        : table(other.table),
          bucket_count(other.bucket_count),
          index(other.index),
          node(other.node) {}

    reference operator*() const {
      assert(node != nullptr && "the end of a table has no element");
      return node->value;
    }
    pointer operator->() const { return &**this; }

    BasicIter& operator++() {
      assert(node != nullptr && "an iterator was moved past the end of its table");
      node = node->next;
      adjust();
      return *this;
    }
    BasicIter operator++(int) {
      BasicIter before = *this;
      ++*this;
      return before;
    }

    // If the node is null, the chain at `index` has ended: moves on to the head of the next chain
    // that is not empty, or to the end.
    void adjust() {
      assert(bucket_count == table->size() && "an iterator was used after its table grew");
      while (node == nullptr && index < bucket_count) {
        if (++index < bucket_count) node = (*table)[index];
      }
    }

    friend bool operator==(const BasicIter& a, const BasicIter& b) {
      assert(a.table == b.table && "iterators of different tables were compared");
      return a.node == b.node;
    }

    const std::vector<Bucket*>* table = nullptr;
    uint64_t bucket_count = 0;
    uint64_t index = 0;
    Bucket* node = nullptr;
  };

  // The elements of a set are keys and never change. The key of a pair must not be changed either.
  using Iter = BasicIter<std::conditional_t<std::is_same_v<Value, Key>, const Value, Value>>;
  using ConstIter = BasicIter<const Value>;

  explicit Hashtable(const Hash& hasher_ = Hash(), const Equal& equal_ = Equal())
      : hasher(hasher_), equal(equal_), buckets(bucket_counts.front(), nullptr) {}

  Hashtable(const Hashtable&) = delete;
  Hashtable& operator=(const Hashtable&) = delete;

  ~Hashtable() {
    if constexpr (!std::is_trivially_destructible_v<Value>) {
      for (Bucket* node : buckets) {
        while (node != nullptr) {
          Bucket* next = node->next;
          release(node);
          node = next;
        }
      }
    }
  }

  Iter begin() { return first<Iter>(); }
  Iter end() { return Iter(&buckets, buckets.size(), nullptr); }
  ConstIter begin() const { return first<ConstIter>(); }
  ConstIter end() const { return ConstIter(&buckets, buckets.size(), nullptr); }

  // An empty table does not hash the key, so the key need not be hashable.
  Iter find(const Key& key) { return lookup<Iter>(key); }
  ConstIter find(const Key& key) const { return lookup<ConstIter>(key); }

  // Returns whether the value was added; an element with the same key stays as it is.
  bool insert(const Value& value) {
    uint64_t index;
    Bucket* node;
    return do_insert(value, index, node);
  }

  // Like insert, and also returns the bucket and the node of the element with that key, new or not.
  bool do_insert(const Value& value, uint64_t& index, Bucket*& node) {
    return do_emplace(get_key(value), index, node, value);
  }

  // Removes the element at `position` and returns the position that a walk must examine next,
  // before it increments. This is the predecessor in the chain, which the walk has seen already,
  // or, if the element was the head of its chain, the node that is now first at or after its
  // bucket, or the end. A loop that erases therefore looks at the returned element before it
  // increments:
  //
  //   auto it = table.begin();
  //   while (it != table.end()) {
  //     if (doomed(*it)) {
  //       it = table.erase(it);
  //     } else {
  //       ++it;
  //     }
  //   }
  Iter erase(Iter position) {
    assert(position.table == &buckets && "an element was erased through another table");
    assert(position.bucket_count == buckets.size() && "an iterator was used after its table grew");
    assert(position.node != nullptr && "the end of a table cannot be erased");
    Bucket* predecessor = erase_node(position.index, position.node);
    position.node = predecessor != nullptr ? predecessor : buckets[position.index];
    position.adjust();
    return position;
  }

  // Removes the element with this key and returns whether there was one. Unlike erase(), does not
  // look for the position where a walk would go on, which in a table that was once much larger
  // would mean passing its empty buckets.
  bool erase_key(const Key& key) {
    if (count == 0) return false;
    Bucket** link = &buckets[bucket_of(key)];
    while (*link != nullptr && !equal(get_key((*link)->value), key)) {
      count_entry();
      link = &(*link)->next;
    }
    Bucket* node = *link;
    if (node == nullptr) return false;
    *link = node->next;
    release(node);
    --count;
    return true;
  }

  // Removes every element for which doomed(element) holds, as the loop above does, in one walk
  // along each chain. Hashes and compares no keys.
  template <class Doomed>
  void erase_if(Doomed doomed) {
    for (Bucket*& head : buckets) {
      for (Bucket** link = &head; *link != nullptr;) {
        Bucket* node = *link;
        if (doomed(std::as_const(node->value))) {
          *link = node->next;
          release(node);
          --count;
        } else {
          link = &node->next;
        }
      }
    }
  }

  // Exchanges all elements, their nodes and the room for more. Iterators become invalid.
  void swap(Hashtable& other) noexcept {
    pool.swap(other.pool);
    std::swap(hasher, other.hasher);
    std::swap(equal, other.equal);
    buckets.swap(other.buckets);
    std::swap(count, other.count);
  }

  uint64_t num_buckets() const { return buckets.size(); }

  MemoryPool<sizeof(Bucket), false> pool;
  Hash hasher;
  Equal equal;
  std::vector<Bucket*> buckets;
  uint64_t count = 0;

 protected:
  // Like do_insert, for a value that is constructed from `arguments`, and only if it is added. The
  // value must have the key `key`.
  template <class... Arguments>
  bool do_emplace(const Key& key, uint64_t& index, Bucket*& node, Arguments&&... arguments) {
    make_room();
    index = bucket_of(key);
    for (node = buckets[index]; node != nullptr; node = node->next) {
      count_entry();
      if (equal(get_key(node->value), key)) return false;
    }
    node = link_new(index, std::forward<Arguments>(arguments)...);
    return true;
  }

  // The steps of an insertion, for a table that has another way to tell whether the key is present.
  void make_room() {
    if (load_exceeded(count, buckets.size())) grow();
  }
  uint64_t bucket_of(const Key& key) const { return hasher(key) % buckets.size(); }
  template <class... Arguments>
  Bucket* link_new(uint64_t index, Arguments&&... arguments) {
    void* memory = pool.allocate();
    Bucket* node;
    try {
      node = ::new (memory) Bucket{nullptr, Value(std::forward<Arguments>(arguments)...)};
    } catch (...) {
      pool.deallocate(memory);
      throw;
    }
    node->next = buckets[index];
    buckets[index] = node;
    ++count;
    return node;
  }

  // Takes a node out of its bucket and frees it. Returns its predecessor in the chain, or null.
  Bucket* erase_node(uint64_t index, Bucket* node) {
    Bucket* predecessor = nullptr;
    Bucket** link = &buckets[index];
    while (*link != node) {
      count_entry();
      predecessor = *link;
      assert(predecessor != nullptr && "an element was erased twice");
      link = &predecessor->next;
    }
    *link = node->next;
    release(node);
    --count;
    return predecessor;
  }

  static const Key& get_key(const Value& value) noexcept { return GetKey()(value); }

 private:
  template <class Position>
  Position first() const {
    Position position(&buckets, 0, buckets.front());
    position.adjust();
    return position;
  }

  template <class Position>
  Position lookup(const Key& key) const {
    if (count != 0) {
      const uint64_t index = bucket_of(key);
      for (Bucket* node = buckets[index]; node != nullptr; node = node->next) {
        count_entry();
        if (equal(get_key(node->value), key)) return Position(&buckets, index, node);
      }
    }
    return Position(&buckets, buckets.size(), nullptr);
  }

  // From the largest bucket count on, only the chains get longer.
  void grow() {
    const uint64_t new_count = bucket_count_for(buckets.size() + 1);
    if (new_count <= buckets.size()) return;
    // The only step that can fail comes before any change.
    std::vector<Bucket*> rehashed(new_count, nullptr);
    for (Bucket* node : buckets) {
      while (node != nullptr) {
        Bucket* next = node->next;
        Bucket*& head = rehashed[hasher(get_key(node->value)) % new_count];
        node->next = head;
        head = node;
        node = next;
      }
    }
    buckets.swap(rehashed);
  }

  void release(Bucket* node) noexcept {
    std::destroy_at(node);
    pool.deallocate(node);
  }
};

}  // namespace quill::hsh

#endif
