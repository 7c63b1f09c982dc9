// Recent bit-vector and floating-point numerals, by value. Without this table a numeral is found by
// its name, which first has to be composed.
//
// Representation: a direct-mapped table, allocated for the first numeral; a new entry replaces the
// one in its slot. Only values that fit in 64 bits are entered. An entry stays valid until a symbol
// loses its name or something is freed; clear() then invalidates all entries by starting a new era.
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
  // The value of a bit-vector of m bits (then e is 0), or the bit pattern of a value of format (e,
  // m).
  struct Key {
    int64_t value = 0;
    uint64_t e = 0;
    uint64_t m = 0;
    bool is_pattern = false;
    bool operator==(const Key&) const = default;
  };

  // The numeral, or null if the table does not hold it.
  const Term_* find(const Key& key) const {
    if (slots.empty()) return nullptr;
    const Slot& slot = slots[slot_of(key)];
    return slot.term_era == era && slot.key == key ? slot.term : nullptr;
  }

  // Enters a numeral, unless there is no memory for the table.
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
    uint64_t term_era = 0;  // the entry is valid while this is the current era
  };

  static constexpr size_t num_slots = 512;
  static constexpr int log2_slots = 9;
  static_assert(num_slots == size_t{1} << log2_slots);

  static size_t slot_of(const Key& key) {
    const uint64_t h = static_cast<uint64_t>(key.value) + (key.e << 40) + (key.m << 24);
    return (h * 0x9e3779b97f4a7c15) >> (64 - log2_slots);
  }

  std::vector<Slot> slots;  // num_slots, or none before the first numeral
  uint64_t era = 1;
};

}  // namespace quill

#endif
