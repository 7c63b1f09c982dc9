// A map keyed by the terms of one manager, for walks over the graph.
//
// Representation: at first open addressing with linear probing over a power of two of slots, at
// most half of them taken; a slot holds the id of the term and its value side by side, so that a
// look-up reads one cache line. Terms hash by their ids: blocks of neighbouring ids are spread over
// the table, and stay side by side within their block, because walks meet neighbours together. As
// soon as an array of values indexed by id takes no more memory than the slots, it takes their
// place: a walk over much of a manager gets by with one load a look-up and the least memory, and
// one over a few terms never pays for all the others. There is no removal, and values move when the
// table grows.
//
// Value{} stands for no value, and can't be entered.

#ifndef QUILL_TERMS_TERM_TABLE_H
#define QUILL_TERMS_TERM_TABLE_H

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "quill/terms/term.h"
#include "quill/utils/huge_pages.h"

namespace quill {

template <class Value>
class TermTable {
 public:
  // For terms with ids below the bound.
  explicit TermTable(uint64_t id_bound) : bound(id_bound) {}

  // The value of a term, or null. Valid until the next insertion.
  const Value* find(const Term_* t) const {
    if (!values.empty()) {
      const Value& value = values[t->id];
      return value != Value{} ? &value : nullptr;
    }
    if (slots.empty()) return nullptr;
    const Slot& slot = slots[index_of(slots, key_of(t))];
    return slot.key != free ? &slot.value : nullptr;
  }

  // The value of a term, which gets the one given if it has none. Fails without a change.
  Value& insert(const Term_* t, const Value& value) {
    assert(t->id < bound && value != Value{});
    if (values.empty() && 2 * (taken + 1) > slots.size()) grow();
    if (!values.empty()) {
      Value& present = values[t->id];
      if (present == Value{}) {
        present = value;
        taken++;
      }
      return present;
    }
    Slot& slot = slots[index_of(slots, key_of(t))];
    if (slot.key == free) {
      slot = {key_of(t), value};
      taken++;
    }
    return slot.value;
  }

  size_t size() const { return taken; }

  // The room taken, in bytes.
  size_t num_bytes() const { return slots.size() * sizeof(Slot) + values.size() * sizeof(Value); }

 private:
  static constexpr uint32_t free = 0;
  struct Slot {
    uint32_t key = free;
    Value value{};
  };
  using Slots = std::vector<Slot, huge_pages::Allocator<Slot>>;

  static constexpr size_t block_mask = 15;

  // The id plus one: a bank has fewer than 2^32 - 1 terms.
  static uint32_t key_of(const Term_* t) { return static_cast<uint32_t>(t->id) + 1; }

  static size_t home(uint32_t key) {
    const uint64_t h = (key | block_mask) * 0x9e3779b97f4a7c15;
    return ((h ^ h >> 32) & ~block_mask) | (key & block_mask);
  }

  // Where the key is, or the free slot where it belongs.
  static size_t index_of(const Slots& slots, uint32_t key) {
    const size_t mask = slots.size() - 1;
    size_t i = home(key) & mask;
    while (slots[i].key != free && slots[i].key != key) i = (i + 1) & mask;
    return i;
  }

  void grow() {
    constexpr size_t fewest_slots = 16;
    const size_t wanted = slots.empty() ? fewest_slots : 2 * slots.size();
    if (bound * sizeof(Value) <= wanted * sizeof(Slot)) {
      Values all(bound);
      for (const Slot& slot : slots) {
        if (slot.key != free) all[slot.key - 1] = slot.value;
      }
      values.swap(all);
      Slots().swap(slots);
    } else {
      Slots larger(wanted);
      for (const Slot& slot : slots) {
        if (slot.key != free) larger[index_of(larger, slot.key)] = slot;
      }
      slots.swap(larger);
    }
  }

  using Values = std::vector<Value, huge_pages::Allocator<Value>>;

  uint64_t bound;
  Slots slots;    // a power of two, or none at all
  Values values;  // by id, or none at all
  size_t taken = 0;
};

}  // namespace quill

#endif
