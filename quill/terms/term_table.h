// A map keyed by the terms of one manager, for walks over the graph.
//
// Representation: at first open addressing with linear probing over a power of two of slots, at
// most half of which are taken; a slot holds the id of the term and its value side by side, so that
// a look-up reads one cache line. Terms hash by their ids: blocks of neighbouring ids are spread
// over the table, and ids stay side by side within their block, because walks meet neighbours
// together. As soon as an array of values indexed by id takes no more memory than the slots, it
// replaces them. A walk over much of a manager thus needs one load per look-up and the least
// memory, and a walk over a few terms never pays for all the others. There is no removal, and
// values move when the table grows.
//
// Value{} means no value and cannot be entered.

#ifndef QUILL_TERMS_TERM_TABLE_H
#define QUILL_TERMS_TERM_TABLE_H

#include <bit>
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
  // For terms with ids below id_bound.
  explicit TermTable(uint64_t bound_) : bound(bound_) {}

  // The value of a term, or null. Valid until the next insertion.
  const Value* find(const Term_* t) const {
    if (!values.empty()) {
      const Value& value = values[t->id];
      return value != Value{} ? &value : nullptr;
    }
    if (slots.empty()) return nullptr;
    const Slot& slot = find_slot(slots.data(), key_of(t));
    return slot.key != free ? &slot.value : nullptr;
  }

  // The value of a term; a term without one gets `value`. If this throws, nothing has changed.
  Value& insert(const Term_* t, const Value& value) {
    assert(t->id < bound && value != Value{});
    if (taken >= most_in_slots) grow();
    if (!values.empty()) {
      Value& present = values[t->id];
      if (present == Value{}) {
        present = value;
        ++taken;
      }
      return present;
    }
    Slot& slot = find_slot(slots.data(), key_of(t));
    if (slot.key == free) {
      slot = {key_of(t), value};
      ++taken;
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
  using Slots = std::vector<Slot, huge_pages::WalkAllocator<Slot>>;

  static constexpr int log2_block = 4;
  static constexpr size_t fewest_slots = 16;

  // The id plus one. It fits, because a bank has fewer than 2^32 - 1 terms.
  static uint32_t key_of(const Term_* t) { return static_cast<uint32_t>(t->id) + 1; }

  // The slot of the key, or the free slot where it belongs.
  template <class AnySlot>
  AnySlot& find_slot(AnySlot* all, uint32_t key) const {
    const uint64_t block = (key >> log2_block) * uint64_t{0x9e3779b97f4a7c15} >> 1 >> shift;
    size_t i = block << log2_block | (key & ((1U << log2_block) - 1));
    while (all[i].key != key && all[i].key != free) i = (i + 1) & mask;
    return all[i];
  }

  [[gnu::noinline]] void grow() {
    const size_t wanted = slots.empty() ? fewest_slots : 2 * slots.size();
    if (bound * sizeof(Value) <= wanted * sizeof(Slot)) {
      Values all(bound);
      for (const Slot& slot : slots) {
        if (slot.key != free) all[slot.key - 1] = slot.value;
      }
      values.swap(all);
      Slots().swap(slots);
      most_in_slots = SIZE_MAX;
    } else {
      Slots larger(wanted);
      mask = wanted - 1;
      shift = 63 - std::countr_zero(wanted >> log2_block);
      for (const Slot& slot : slots) {
        if (slot.key != free) find_slot(larger.data(), slot.key) = slot;
      }
      slots.swap(larger);
      most_in_slots = wanted / 2;
    }
  }

  using Values = std::vector<Value, huge_pages::WalkAllocator<Value>>;

  uint64_t bound;
  Slots slots;  // a power of two of them, or none
  size_t mask = 0;
  int shift = 0;  // from 63 bits of a product to the number of a block of slots
  size_t most_in_slots = 0;
  Values values;  // by id, or none at all
  size_t taken = 0;
};

}  // namespace quill

#endif
