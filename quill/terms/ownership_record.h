// Records the addresses of the objects that a store owns and of those that it has freed. In debug
// builds each store keeps such a record, so that the manager can say what is wrong with a pointer
// that a caller passes. In release builds it stays empty and costs no time; it is a member all the
// same, so that the layout of the stores does not depend on how the including code is built.
//
// Representation: open addressing with linear probing over a power of two of places, at most half
// of which are taken. A place holds an address, which is even; its lowest bit is set once the
// object there has been freed. Addresses are never removed, so that a pointer to a freed object can
// be told from a pointer to somebody else's object; a later object at the same address makes it
// live again.
//
// The record never reads an object: the memory at an address may be gone.

#ifndef QUILL_TERMS_OWNERSHIP_RECORD_H
#define QUILL_TERMS_OWNERSHIP_RECORD_H

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace quill {

class OwnershipRecord {
 public:
  enum class Standing { Owned, Freed, Foreign };

  // Makes room for one more object. The only operation that allocates; if it throws, nothing has
  // changed.
  void reserve_one() {
#ifndef NDEBUG
    if (taken == limit) grow();
#endif
  }

  // Enters an object that the store has made; each call needs a reserve_one() before it.
  void add([[maybe_unused]] const void* object) noexcept {
#ifndef NDEBUG
    assert(taken < limit);
    uintptr_t* place = place_of(address_of(object));
    taken += *place == 0;
    *place = address_of(object);
#endif
  }

  // Notes that an object in the record is about to be freed.
  void remove([[maybe_unused]] const void* object) noexcept {
#ifndef NDEBUG
    uintptr_t* place = place_of(address_of(object));
    assert(*place == address_of(object) && "the object is not a live one of this store");
    *place |= freed;
#endif
  }

  Standing find(const void* object) const noexcept {
    if (limit == 0) return Standing::Foreign;
    const uintptr_t entry = *place_of(address_of(object));
    if (entry == 0) return Standing::Foreign;
    return entry == address_of(object) ? Standing::Owned : Standing::Freed;
  }

 private:
  static constexpr uintptr_t freed = 1;

  static uintptr_t address_of(const void* object) { return reinterpret_cast<uintptr_t>(object); }

  // The place that holds the address, or the free place where it belongs. It avoids the standard
  // library, because builds without optimisation come here several times for each term.
  uintptr_t* place_of(uintptr_t address) const {
    const uint64_t h = address * 0x9e3779b97f4a7c15;
    const size_t mask = 2 * limit - 1;
    uintptr_t* const first = places.get();
    size_t i = (h >> 32) & mask;
    while (first[i] != 0 && (first[i] | freed) != (address | freed)) i = (i + 1) & mask;
    return first + i;
  }

  void grow() {
    OwnershipRecord larger;
    larger.limit = limit == 0 ? 32 : 2 * limit;
    larger.places = std::make_unique<uintptr_t[]>(2 * larger.limit);
    for (size_t i = 0; i < 2 * limit; ++i) {
      if (places[i] != 0) *larger.place_of(places[i] & ~freed) = places[i];
    }
    places.swap(larger.places);
    limit = larger.limit;
  }

  std::unique_ptr<uintptr_t[]> places;  // twice the limit
  size_t limit = 0;                     // how many addresses fit; a power of two, or 0
  [[maybe_unused]] size_t taken = 0;    // at most the limit
};

}  // namespace quill

#endif
