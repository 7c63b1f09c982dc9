// The index of a store that keeps each object once. It leads from a hash to the handles of the
// objects that may be meant.
//
// The store names its objects by handles, which are 32-bit numbers or pointers, and looks an object
// up by a hash and a test; the index knows neither keys nor objects. It uses open addressing with
// linear probing over a power of two of slots:
//
//   slot := { hash : 32 bits, handle }        handle == none: free
//
// The hash beside the handle rejects nearly all wrong candidates without touching their objects.
// Growth and removal need nothing but these hashes and read no object. At most half of the slots
// are taken, so that a look-up that finds its object reads 1.5 of them on average, and one that
// finds none reads 2.5. Removal shifts the rest of the probe run back, so there are no tombstones.
// After many removals shrink() and clear() release room if they can allocate a smaller table;
// otherwise the room stays, so that neither can fail.
//
// Somebody may have made objects whose hashes collide. The hash is therefore a function of a key as
// well (keyed_hash.h). An insertion that passes more than longest_run slots adds their number to
// the strain on the index. When the strain exceeds the number of entries, the index moves on to the
// next key and has the store hash all objects again, if it gets the memory. Objects that collide
// under one key thus cost no more than reading every entry a few times, however many there are, and
// insertions with well-spread hashes never come to that.
//
// Costs: a look-up reads one or two cache lines. A slot takes 8 bytes if handles are numbers and 16
// if they are pointers. No handle may equal none.

#ifndef QUILL_UTILS_INTERN_INDEX_H
#define QUILL_UTILS_INTERN_INDEX_H

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <new>
#include <type_traits>
#include <vector>

#include "quill/utils/entry_count.h"
#include "quill/utils/huge_pages.h"
#include "quill/utils/keyed_hash.h"

namespace quill {

template <class Handle>
class HandleIndex {
 public:
  static constexpr Handle none = [] {
    if constexpr (std::is_pointer_v<Handle>) {
      return nullptr;
    } else {
      return UINT32_MAX;
    }
  }();

  // The key that the store must use, besides the object, to compute hashes for this index. It
  // changes only during an insertion that is given a hash function.
  uint64_t key() const { return current_key; }

  // Folds the 64 bits that a store's hash function computes to the 32 bits that the index keeps.
  static uint32_t fold(uint64_t hash) {
    return static_cast<uint32_t>(hash >> 32) ^ static_cast<uint32_t>(hash);
  }

  // The handle with this hash for which equal(handle) holds, or none.
  template <class Equal>
  Handle find(uint32_t hash, Equal&& equal) const {
    if (slots.empty()) return none;
    const size_t mask = slots.size() - 1;
    for (size_t i = hash & mask; slots[i].handle != none; i = (i + 1) & mask) {
      count_entry();
      if (slots[i].hash == hash && equal(slots[i].handle)) return slots[i].handle;
    }
    return none;
  }

  // Makes room for one more entry. The only operation that can fail; it then changes nothing.
  void reserve_one() {
    if (2 * (taken + 1) > slots.size()) grow();
  }

  // Enters a handle that is not in the index; each insertion needs a reserve_one() before it. This
  // form ignores how many slots it passes.
  void insert(uint32_t hash, Handle handle) noexcept { enter({hash, handle}); }

  // The same for a store that can hash its objects again: hash_of(key, handle) is the hash of an
  // object, the new one included, under a key.
  template <class HashOf>
  void insert(uint32_t hash, Handle handle, const HashOf& hash_of) noexcept {
    const size_t i = enter({hash, handle});
    // If the run wrapped around the end, the difference wraps as well and is larger, too.
    if (i - (hash & (slots.size() - 1)) > longest_run) note_run(i, hash_of);
  }

  // Removes an entry that is in the index.
  void erase(uint32_t hash, Handle handle) noexcept {
    const size_t mask = slots.size() - 1;
    size_t hole = locate(hash, handle);
    // An entry after the hole moves into it unless its own home lies after the hole.
    for (size_t i = (hole + 1) & mask; slots[i].handle != none; i = (i + 1) & mask) {
      count_entry();
      const size_t home = slots[i].hash & mask;
      if (((i - home) & mask) >= ((i - hole) & mask)) {
        slots[hole] = slots[i];
        hole = i;
      }
    }
    slots[hole].handle = none;
    --taken;
  }

  // Changes the handle of an entry; used when the store moves an object to another handle.
  void rename(uint32_t hash, Handle handle, Handle new_handle) noexcept {
    slots[locate(hash, handle)].handle = new_handle;
  }

  // Empties the index and keeps room for `expected` entries, at most as many as there were. These
  // can be inserted without reserve_one().
  void clear(size_t expected) noexcept {
    assert(expected <= taken);
    taken = 0;
    strain = 0;
    Slots smaller;
    if (allocate_smaller(smaller, expected)) {
      slots.swap(smaller);
    } else {
      for (Slot& slot : slots) slot.handle = none;
    }
  }

  // Releases room when far fewer entries are left than there was room for.
  void shrink() noexcept {
    Slots smaller;
    if (!allocate_smaller(smaller, taken)) return;
    for (const Slot& slot : slots) {
      if (slot.handle != none) place(smaller, slot);
    }
    slots.swap(smaller);
  }

  size_t size() const { return taken; }
  size_t capacity() const { return slots.size(); }
  size_t num_bytes() const { return slots.size() * sizeof(Slot); }

  // How many slots a look-up that finds its object reads, on average. Linear; for measurements.
  double mean_probe() const {
    if (taken == 0) return 0;
    const size_t mask = slots.size() - 1;
    size_t probes = 0;
    for (size_t i = 0; i < slots.size(); ++i) {
      if (slots[i].handle != none) probes += ((i - slots[i].hash) & mask) + 1;
    }
    return static_cast<double>(probes) / static_cast<double>(taken);
  }

 private:
  struct Slot {
    uint32_t hash = 0;
    Handle handle = none;
  };
  using Slots = std::vector<Slot, huge_pages::Allocator<Slot>>;

  static size_t place(Slots& into, Slot entry) noexcept {
    const size_t mask = into.size() - 1;
    size_t i = entry.hash & mask;
    for (; into[i].handle != none; i = (i + 1) & mask) count_entry();
    into[i] = entry;
    return i;
  }

  size_t enter(Slot entry) noexcept {
    assert(entry.handle != none && 2 * (taken + 1) <= slots.size());
    ++taken;
    return place(slots, entry);
  }

  // Slot i has just been filled, a long way from its home.
  template <class HashOf>
  [[gnu::noinline, gnu::cold]] void note_run(size_t i, const HashOf& hash_of) noexcept {
    const size_t mask = slots.size() - 1;
    const size_t run = (i - slots[i].hash) & mask;
    if (run <= longest_run) return;
    strain += run;
    if (strain <= taken) return;
    strain = 0;
    Slots anew;
    try {
      anew.resize(slots.size());
    } catch (const std::bad_alloc&) {
      return;
    }
    current_key = hash_key(++key_number);
    for (const Slot& slot : slots) {
      if (slot.handle != none) place(anew, {hash_of(current_key, slot.handle), slot.handle});
    }
    slots.swap(anew);
  }

  size_t locate(uint32_t hash, Handle handle) const noexcept {
    const size_t mask = slots.size() - 1;
    size_t i = hash & mask;
    while (slots[i].handle != handle) {
      count_entry();
      assert(slots[i].handle != none && "the entry is not in the index");
      i = (i + 1) & mask;
    }
    return i;
  }

  // Allocates a table for this many entries and as many again, if it is at most half as large as
  // the current one. Returns whether it did.
  bool allocate_smaller(Slots& smaller, size_t entries) const noexcept {
    size_t wanted = fewest_slots;
    while (4 * entries > wanted) wanted *= 2;
    if (2 * wanted > slots.size()) return false;
    try {
      smaller.resize(wanted);
    } catch (const std::bad_alloc&) {
      return false;
    }
    return true;
  }

  [[gnu::noinline]] void grow() {
    if (taken + 1 >= UINT32_MAX) throw std::bad_alloc();  // out of handle values
    Slots larger(slots.empty() ? fewest_slots : 2 * slots.size());
    for (const Slot& slot : slots) {
      if (slot.handle != none) place(larger, slot);
    }
    slots.swap(larger);
    strain = 0;
  }

  static constexpr size_t fewest_slots = 64;
  static constexpr size_t longest_run = 64;  // longer ones strain the index

  Slots slots;  // a power of two of them, or none
  size_t taken = 0;
  uint64_t current_key = hash_key(0);
  uint64_t key_number = 0;  // of the current key
  size_t strain = 0;        // since the last growth or change of the key
};

// The usual index, whose handles are numbers.
using InternIndex = HandleIndex<uint32_t>;

}  // namespace quill

#endif
