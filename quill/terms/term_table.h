// A map keyed by the terms of one manager, for walks over the graph.
//
// Representation: open addressing with linear probing over a power of two of slots, at most half of
// them taken; a slot holds the id of the term and its value side by side, so that a look-up reads
// one cache line. Terms hash by their ids: blocks of neighbouring ids are spread over the table,
// and stay side by side within their block, because walks meet neighbours together. There is no
// removal, and values move when the table grows.

#ifndef QUILL_TERMS_TERM_TABLE_H
#define QUILL_TERMS_TERM_TABLE_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "quill/terms/term.h"
#include "quill/utils/huge_pages.h"

namespace quill {

template <class Value>
class TermTable {
 public:
  // The value of a term, or null. Valid until the next insertion.
  const Value* find(const Term_* t) const {
    if (slots.empty()) return nullptr;
    const size_t mask = slots.size() - 1;
    for (size_t i = home(key_of(t)) & mask;; i = (i + 1) & mask) {
      if (slots[i].key == key_of(t)) return &slots[i].value;
      if (slots[i].key == free) return nullptr;
    }
  }

  // The value of a term, which gets the one given if it has none. Fails without a change.
  Value& insert(const Term_* t, const Value& value) {
    if (2 * (taken + 1) > slots.size()) grow();
    Slot& slot = slot_of(slots, key_of(t));
    if (slot.key == free) {
      slot = {key_of(t), value};
      taken++;
    }
    return slot.value;
  }

  size_t size() const { return taken; }

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

  static Slot& slot_of(Slots& slots, uint32_t key) {
    const size_t mask = slots.size() - 1;
    size_t i = home(key) & mask;
    while (slots[i].key != free && slots[i].key != key) i = (i + 1) & mask;
    return slots[i];
  }

  void grow() {
    Slots larger(slots.empty() ? 16 : 2 * slots.size());
    for (const Slot& slot : slots) {
      if (slot.key != free) slot_of(larger, slot.key) = slot;
    }
    slots.swap(larger);
  }

  Slots slots;  // a power of two, or none at all
  size_t taken = 0;
};

}  // namespace quill

#endif
