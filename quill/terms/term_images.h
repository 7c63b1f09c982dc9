// A map from terms to terms, for walks that rebuild terms.
//
// Representation: open addressing with linear probing over a power of two of slots, at most half of
// them taken; a slot holds the term and its image side by side, so that a look-up reads one cache
// line. Terms hash by their ids, which are dense. There is no removal. 16 bytes a slot.

#ifndef QUILL_TERMS_TERM_IMAGES_H
#define QUILL_TERMS_TERM_IMAGES_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "quill/terms/term.h"

namespace quill {

class TermImages {
 public:
  // The image of a term, or null.
  const Term_* find(const Term_* t) const {
    if (slots.empty()) return nullptr;
    const size_t mask = slots.size() - 1;
    for (size_t i = home(t) & mask;; i = (i + 1) & mask) {
      if (slots[i].term == t) return slots[i].image;
      if (slots[i].term == nullptr) return nullptr;
    }
  }

  // Gives a term an image, in place of the one that it has. Fails without a change.
  void set(const Term_* t, const Term_* image) {
    if (2 * (taken + 1) > slots.size()) grow();
    Slot& slot = slot_of(slots, t);
    taken += slot.term == nullptr;
    slot = {t, image};
  }

  size_t size() const { return taken; }

 private:
  struct Slot {
    const Term_* term = nullptr;  // null: free
    const Term_* image = nullptr;
  };

  // Neighbours in a graph often have neighbouring ids: an odd factor spreads them, keeping them
  // apart.
  static size_t home(const Term_* t) {
    const uint64_t h = t->id * 0x9e3779b97f4a7c15;
    return h ^ (h >> 32);
  }

  static Slot& slot_of(std::vector<Slot>& slots, const Term_* t) {
    const size_t mask = slots.size() - 1;
    size_t i = home(t) & mask;
    while (slots[i].term != nullptr && slots[i].term != t) i = (i + 1) & mask;
    return slots[i];
  }

  void grow() {
    std::vector<Slot> larger(slots.empty() ? 16 : 2 * slots.size());
    for (const Slot& slot : slots) {
      if (slot.term != nullptr) slot_of(larger, slot.term) = slot;
    }
    slots.swap(larger);
  }

  std::vector<Slot> slots;  // a power of two, or none at all
  size_t taken = 0;
};

}  // namespace quill

#endif
