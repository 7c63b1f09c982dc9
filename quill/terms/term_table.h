// A map keyed by terms, for walks over the graph.
//
// Representation: open addressing with linear probing over a power of two of slots, at most half of
// them taken; a slot holds the term and its value side by side, so that a look-up reads one cache
// line. Terms hash by their ids: blocks of neighbouring ids are spread over the table, and stay
// side by side within their block, because walks meet neighbours together. There is no removal, and
// values move when the table grows.

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
    for (size_t i = home(t) & mask;; i = (i + 1) & mask) {
      if (slots[i].term == t) return &slots[i].value;
      if (slots[i].term == nullptr) return nullptr;
    }
  }

  // The value of a term, which gets the one given if it has none. Fails without a change.
  Value& insert(const Term_* t, const Value& value) {
    if (2 * (taken + 1) > slots.size()) grow();
    Slot& slot = slot_of(slots, t);
    if (slot.term == nullptr) {
      slot = {t, value};
      taken++;
    }
    return slot.value;
  }

  size_t size() const { return taken; }

 private:
  struct Slot {
    const Term_* term = nullptr;  // null: free
    Value value{};
  };
  using Slots = std::vector<Slot, huge_pages::Allocator<Slot>>;

  static constexpr uint64_t block_mask = 15;

  static size_t home(const Term_* t) {
    const uint64_t h = (t->id | block_mask) * 0x9e3779b97f4a7c15;
    return ((h ^ h >> 32) & ~block_mask) | (t->id & block_mask);
  }

  static Slot& slot_of(Slots& slots, const Term_* t) {
    const size_t mask = slots.size() - 1;
    size_t i = home(t) & mask;
    while (slots[i].term != nullptr && slots[i].term != t) i = (i + 1) & mask;
    return slots[i];
  }

  void grow() {
    Slots larger(slots.empty() ? 16 : 2 * slots.size());
    for (const Slot& slot : slots) {
      if (slot.term != nullptr) slot_of(larger, slot.term) = slot;
    }
    slots.swap(larger);
  }

  Slots slots;  // a power of two, or none at all
  size_t taken = 0;
};

}  // namespace quill

#endif
