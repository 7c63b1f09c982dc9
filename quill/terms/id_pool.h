// Ids for the terms of a bank: dense numbers from 0, the lowest free one first.
//
// Representation: a bound above every id in use, and one bit for each id. While some ids below the
// bound are free, the bits tell which:
//
//   in_use == next                ids 0 ... next - 1 are in use; the bits mean nothing
//   in_use <  next                a free id below next has its bit set, an id in use does not;
//                                 no bit before word `first` is set
//
// Ids become free only in sweeps, so the search for the lowest free id only moves forward between
// two sweeps. The order in which a sweep visits ids affects neither which ids it frees nor which
// ids are taken next.
//
// Cost: taking an id takes constant time on average; a sweep needs no memory and writes a bit per
// id.

#ifndef QUILL_TERMS_ID_POOL_H
#define QUILL_TERMS_ID_POOL_H

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace quill {

class IdPool {
 public:
  // Makes room for the next id. The only operation that allocates; if it throws, nothing has
  // changed.
  void reserve_one() {
    if (in_use == next && next / 64 == free_bits.size()) free_bits.push_back(0);
  }

  // Takes the lowest free id; each call needs a reserve_one() before it.
  uint64_t take() noexcept {
    assert(in_use < next || next / 64 < free_bits.size());
    if (in_use++ == next) return next++;
    while (free_bits[first] == 0) first++;
    const uint64_t id = 64 * first + static_cast<uint64_t>(std::countr_zero(free_bits[first]));
    free_bits[first] &= free_bits[first] - 1;
    return id;
  }

  // Frees all ids. The caller then claims each id that stays in use, once, before it takes another.
  void free_all() noexcept {
    std::fill(free_bits.begin(), free_bits.end(), ~uint64_t{0});
    next = 0;
    in_use = 0;
    first = 0;
  }
  void claim(uint64_t id) noexcept {
    assert((free_bits[id / 64] >> id % 64 & 1) != 0 && "an id was claimed twice");
    free_bits[id / 64] &= ~(uint64_t{1} << id % 64);
    next = std::max(next, id + 1);
    ++in_use;
  }

  // The number of ids in use, and one more than the largest of them.
  uint64_t size() const { return in_use; }
  uint64_t bound() const { return next; }

 private:
  std::vector<uint64_t> free_bits;
  uint64_t next = 0;
  uint64_t in_use = 0;
  size_t first = 0;
};

}  // namespace quill

#endif
