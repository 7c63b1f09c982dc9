// Which objects a store owns and which of its objects it has freed, by their addresses alone: each
// store keeps one in debug builds, so that the manager can say what is wrong with a pointer that it
// is given. In release builds it stays empty, and keeping it costs nothing; it is a member all the
// same, so that the layout of the stores does not depend on how who includes this is built.
//
// Representation: open addressing with linear probing over a power of two of places, at most half
// of them taken. A place holds an address, which is even, with the lowest bit set once the object
// there has been freed. Addresses stay for good, so that a pointer to a freed object is told from
// one to somebody else's; a later object at the same address makes it live again.
//
// No object is ever looked into: what an address leads to may be gone.

#ifndef QUILL_TERMS_OWNERSHIP_RECORD_H
#define QUILL_TERMS_OWNERSHIP_RECORD_H

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace quill {

class OwnershipRecord {
 public:
  enum class Standing { Owned, Freed, Foreign };

  // Makes room for one more object; the only operation that allocates. Fails without a change.
  void reserve_one() {
#ifndef NDEBUG
    if (2 * (taken + 1) > places.size()) grow();
#endif
  }

  // Enters an object that the store has made; needs a reserve_one() since the last one.
  void add([[maybe_unused]] const void* object) noexcept {
#ifndef NDEBUG
    assert(2 * (taken + 1) <= places.size());
    uintptr_t& place = places[place_of(places, address_of(object))];
    taken += place == 0;
    place = address_of(object);
#endif
  }

  // Notes that an object which was entered is about to be freed.
  void remove([[maybe_unused]] const void* object) noexcept {
#ifndef NDEBUG
    uintptr_t& place = places[place_of(places, address_of(object))];
    assert(place == address_of(object) && "the object is not a live one of this store");
    place |= freed;
#endif
  }

  Standing find(const void* object) const noexcept {
    if (places.empty()) return Standing::Foreign;
    const uintptr_t entry = places[place_of(places, address_of(object))];
    if (entry == 0) return Standing::Foreign;
    return (entry & freed) != 0 ? Standing::Freed : Standing::Owned;
  }

 private:
  static constexpr uintptr_t freed = 1;

  static uintptr_t address_of(const void* object) { return reinterpret_cast<uintptr_t>(object); }

  // Where the address is, or the free place where it belongs.
  static size_t place_of(const std::vector<uintptr_t>& places, uintptr_t address) {
    const uint64_t h = address * 0x9e3779b97f4a7c15;
    const size_t mask = places.size() - 1;
    const uintptr_t* first = places.data();
    size_t i = (h >> 32) & mask;
    while (first[i] != 0 && (first[i] & ~freed) != address) i = (i + 1) & mask;
    return i;
  }

  void grow() {
    std::vector<uintptr_t> larger(places.empty() ? 64 : 2 * places.size());
    for (const uintptr_t entry : places) {
      if (entry != 0) larger[place_of(larger, entry & ~freed)] = entry;
    }
    places.swap(larger);
  }

  std::vector<uintptr_t> places;  // a power of two, or none at all
  size_t taken = 0;
};

}  // namespace quill

#endif
