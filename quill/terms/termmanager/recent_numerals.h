// Bit-vector and floating-point numerals of late, by their values: the numeral of a value is
// otherwise found by its name, which first has to be composed.
//
// Representation: a direct-mapped table; a numeral takes the place of the one whose hash leads to
// the same slot. It holds small values only, and none before the first numeral. An entry stays true
// until a symbol loses its name or is freed: clear() then forgets all of them, by a new number for
// the entries that count.
//
// Cost: a look-up reads one slot.

#ifndef QUILL_TERMS_TERMMANAGER_RECENT_NUMERALS_H
#define QUILL_TERMS_TERMMANAGER_RECENT_NUMERALS_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "quill/terms/term.h"

namespace quill {

class RecentNumerals {
 public:
  // A bit-vector of so many bits (e is 0), or the bit pattern of a format (e, m).
  struct Key {
    int64_t value = 0;
    uint64_t e = 0;
    uint64_t m = 0;
    bool is_pattern = false;
    bool operator==(const Key&) const = default;
  };

  // The numeral, or null if it is not remembered.
  const Term_* find(const Key& key) const {
    if (slots.empty()) return nullptr;
    const Slot& slot = slots[slot_of(key)];
    return slot.term_era == era && slot.key == key ? slot.term : nullptr;
  }

  // Remembers a numeral. Forgets it at once when there is no memory.
  void insert(const Key& key, const Term_* t) noexcept {
    if (slots.empty()) {
      try {
        slots.resize(num_slots);
      } catch (...) {
        return;
      }
    }
    slots[slot_of(key)] = {key, t, era};
  }

  void clear() noexcept { era++; }

 private:
  struct Slot {
    Key key;
    const Term_* term = nullptr;
    uint64_t term_era = 0;  // the entry counts while this is the current one
  };

  static constexpr size_t num_slots = 512;
  static constexpr int log2_slots = 9;
  static_assert(num_slots == size_t{1} << log2_slots);

  static size_t slot_of(const Key& key) {
    const uint64_t h = static_cast<uint64_t>(key.value) + (key.e << 40) + (key.m << 24);
    return (h * 0x9e3779b97f4a7c15) >> (64 - log2_slots);
  }

  std::vector<Slot> slots;  // num_slots, or none at all
  uint64_t era = 1;
};

}  // namespace quill

#endif
