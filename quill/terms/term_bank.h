// The hash-consing store of terms: equal requests, with the same symbol and arguments, return the
// same node.
//
// Representation: nodes are in slabs (node_slabs.h) and never move; an index (intern_index.h) leads
// from the hash of a symbol and its arguments to the handle of the node. A look-up hashes the
// request and builds nothing until it knows that the term is new. Ids are dense (id_pool.h): ids
// that remove_unseen() freed are used again, the lowest first, so that vectors indexed by id stay
// as long as the largest number of live terms, and ids do not depend on addresses.
//
// The bank decides nothing: its callers check that the arguments fit the symbol. It owns the terms;
// it does not own the symbols, which must outlive them.
//
// Limits: 2^19 - 1 slabs, that is 32 GiB of nodes of up to 1022 arguments; each larger node takes a
// slab and has fewer than 2^32 arguments. Beyond these limits make_term throws std::bad_alloc.

#ifndef QUILL_TERMS_TERM_BANK_H
#define QUILL_TERMS_TERM_BANK_H

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <vector>

#include "quill/terms/id_pool.h"
#include "quill/terms/node_slabs.h"
#include "quill/terms/ownership_record.h"
#include "quill/terms/term.h"
#include "quill/utils/intern_index.h"

namespace quill {

class TermBank {
 public:
  TermBank() = default;
  ~TermBank() = default;
  TermBank(const TermBank&) = delete;
  TermBank& operator=(const TermBank&) = delete;

  // The term of this symbol and its first arity arguments; args may be null when the arity is 0.
  // Checks no types. Throws std::bad_alloc and then changes nothing; a failed request uses up no
  // id.
  const Term_* make_term(const Symbol* symbol, const Term_* const* args);

  // Visits every term held, in an order that does not depend on addresses. Making or removing terms
  // invalidates iterators.
  class const_iterator {
   public:
    using iterator_category = std::input_iterator_tag;
    using value_type = const Term_*;
    using difference_type = ptrdiff_t;
    using pointer = const Term_* const*;
    using reference = const Term_*;

    const_iterator() = default;

    const Term_* operator*() const { return nodes->node(handle); }
    const_iterator& operator++() {
      handle = nodes->first_live(nodes->next(handle));
      return *this;
    }
    const_iterator operator++(int) {
      const const_iterator before = *this;
      ++*this;
      return before;
    }
    bool operator==(const const_iterator& other) const { return handle == other.handle; }

   private:
    friend class TermBank;
    const_iterator(const NodeSlabs* slabs, uint32_t start) : nodes(slabs), handle(start) {}

    const NodeSlabs* nodes = nullptr;
    uint32_t handle = NodeSlabs::none;
  };

  const_iterator begin() const { return {&nodes, nodes.first_live(0)}; }
  const_iterator end() const { return {&nodes, NodeSlabs::none}; }

  // Frees every term whose id is not marked; an id beyond the vector is not marked. The other terms
  // stay where they are and keep their ids. Slabs that no longer hold a term go back to the system,
  // and so does room in the index that is far too large. Takes time linear in the number of terms
  // held, without a look-up for those that go, and needs no memory.
  void remove_unseen(const std::vector<bool>& seen) noexcept;

  // The number of terms held, and a bound above every id in use.
  size_t size() const { return index.size(); }
  uint64_t id_bound() const { return ids.bound(); }

  // The memory in use, without that of other tables.
  struct MemoryUse {
    size_t slabs;        // that hold nodes
    size_t slab_bytes;   // in them
    size_t index_slots;  // slots in the index, half of which may be taken
    size_t index_bytes;
  };
  MemoryUse memory_use() const;

  // How many slots of the index the look-up of a term reads, on average. Linear; for measurements.
  double mean_probe() const { return index.mean_probe(); }

  // The terms held and freed, in debug builds.
  const OwnershipRecord& ownership() const { return record; }

  // Whether look-ups find every term that iteration visits, and the ids agree. Linear; for
  // debugging.
  bool is_consistent() const;

 private:
  static uint32_t hash_of(uint64_t key, const Symbol* symbol, const Term_* const* args,
                          uint64_t arity);
  static uint32_t hash_of(uint64_t key, const Term_* term);
  const Term_* find(uint32_t hash, const Symbol* symbol, const Term_* const* args,
                    uint64_t arity) const;
  const Term_* find_or_add(const Symbol* symbol, const Term_* const* args, uint64_t arity);

  NodeSlabs nodes;
  InternIndex index;
  IdPool ids;
  OwnershipRecord record;
};

}  // namespace quill

#endif
