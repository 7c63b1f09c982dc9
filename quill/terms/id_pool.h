// Ids for the terms of a bank: dense numbers from 0, the lowest free one first.
//
// Representation: a bound above every id in use, and one bit for each id, which tells the free ones
// below the bound while there are any:
//
//   in_use == next                ids 0 ... next - 1 are in use; the bits mean nothing
//   in_use <  next                a free id below next has its bit set, one in use has not; no bit
//                                 before word `first` is set
//
// Ids become free in sweeps only, so that the search for the lowest one goes forward between two
// sweeps. Which ids a sweep leaves and which are given next does not depend on the order in which
// it came upon them.
//
// Cost: taking an id is constant time on average; a sweep needs no memory and writes a bit an id.

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
  // Makes room for the next id; the only operation that allocates. Fails without a change.
  void reserve_one() {
    if (in_use == next && next / 64 == free_bits.size()) free_bits.push_back(0);
  }

  // The lowest free id; needs a reserve_one() since the last one.
  uint64_t take() noexcept {
    assert(in_use < next || next / 64 < free_bits.size());
    if (in_use++ == next) return next++;
    while (free_bits[first] == 0) first++;
    const uint64_t id = 64 * first + static_cast<uint64_t>(std::countr_zero(free_bits[first]));
    free_bits[first] &= free_bits[first] - 1;
    return id;
  }

  // Frees all ids. Those that are to stay in use are claimed again, each once, before the next one
  // is taken.
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
