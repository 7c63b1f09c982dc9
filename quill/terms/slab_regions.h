// Memory for full-sized slabs: pieces of 64 KiB, cut from regions of one huge page each.
//
// Representation: a list of regions, each with a bit for every free piece. Later regions take the
// places of regions given back. allocate() takes the lowest bit in the lowest place, so that
// regions fill up one after the other. Free pieces keep their memory until give_back(), so that
// those of one region are returned together.
//
// Cost: constant time per piece, except for the search for the lowest region with a free piece,
// which only moves forward between two calls of free().

#ifndef QUILL_TERMS_SLAB_REGIONS_H
#define QUILL_TERMS_SLAB_REGIONS_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quill {

class SlabRegions {
 public:
  static constexpr size_t piece_bytes = size_t{1} << 16;

  struct Piece {
    char* memory;
    uint32_t region;
  };

  SlabRegions() = default;
  ~SlabRegions();
  SlabRegions(const SlabRegions&) = delete;
  SlabRegions& operator=(const SlabRegions&) = delete;

  // Throws std::bad_alloc and then changes nothing.
  Piece allocate();
  void free(Piece piece) noexcept;

  // Returns the memory of free pieces to the system.
  void give_back() noexcept;

 private:
  struct Region {
    char* memory;    // null: a place without a region
    uint32_t free;   // a bit for each free piece
    uint32_t stale;  // a bit for each free piece that still has its memory
  };

  std::vector<Region> regions;
  size_t first = 0;  // no region before this one has a free piece
};

}  // namespace quill

#endif
