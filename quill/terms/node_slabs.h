// Memory for term nodes: slabs of nodes of one size, addressed by 32-bit handles.
//
// Representation: a slab is one allocation for nodes of one arity, filled from its start. A
// directory lists the slabs, each in the first free place. The handle of a node is
//
//   handle := slab number << 13 | offset within the slab in words of 8 bytes
//
// so that one look at the directory turns a handle into an address, and memory is bounded by 2^19 -
// 1 slabs (32 GiB of nodes in full slabs, or half a million large nodes). The slabs of one arity
// double in size up to 64 KiB; each slab given back halves the size of the next one. A large node,
// of more than max_slab_arity arguments, has a slab of its own. Once there are some megabytes of
// nodes, slabs of 64 KiB are in huge pages (slab_regions.h).
//
// Free nodes keep their place: their symbol is null and their id field is the handle of the next
// free node of the same arity. Under AddressSanitizer they are poisoned, so that the sanitizer
// reports the use of a freed term.
//
// sweep() returns slabs that no longer hold a live node to the system; freeing a large node returns
// its slab. Later slabs take their places in the directory. Nothing depends on addresses: the
// handles and the order of calls determine which node and which place come next.

#ifndef QUILL_TERMS_NODE_SLABS_H
#define QUILL_TERMS_NODE_SLABS_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "quill/terms/slab_regions.h"
#include "quill/terms/term.h"

namespace quill {

class NodeSlabs {
 public:
  static constexpr uint32_t none = UINT32_MAX;

  NodeSlabs() = default;
  ~NodeSlabs();
  NodeSlabs(const NodeSlabs&) = delete;
  NodeSlabs& operator=(const NodeSlabs&) = delete;

  // Returns a node of this arity with unset fields. Throws std::bad_alloc and then changes nothing.
  uint32_t allocate(uint64_t arity) {
    // Usually the next node of the slab that is being filled.
    if (arity < classes.size() && classes[arity].free_list == none &&
        classes[arity].current != none) {
      const uint32_t current = classes[arity].current;
      Slab& slab = directory[current];
      const uint32_t words = words_of(arity);
      if (slab.used + words <= slab.capacity) {
        const uint32_t handle = current << offset_bits | slab.used;
        slab.used += words;
        return handle;
      }
    }
    return allocate_elsewhere(arity);
  }

  // Frees a node.
  void free(uint32_t handle) noexcept;

  Term_* node(uint32_t handle) const { return reinterpret_cast<Term_*>(address(handle)); }
  char* address(uint32_t handle) const {
    return directory[handle >> offset_bits].memory + size_t{handle & offset_mask} * word;
  }

  // Frees every live node whose id is not marked; an id beyond the vector is not marked. Later
  // nodes and slabs take the free nodes and places again from the lowest handle on. Returns how
  // many nodes it freed. Reads each slab once, in order.
  size_t sweep(const std::vector<bool>& seen) noexcept;

  // The slabs held and the bytes in them.
  size_t num_slabs() const { return slabs_held; }
  size_t num_bytes() const { return bytes_held; }

  // The first live node at or after this handle in the order of slabs and offsets, or none. A walk
  // starts with 0.
  uint32_t first_live(uint32_t handle) const;

  // The handle at which a walk goes on after a live node.
  uint32_t next(uint32_t handle) const;

 private:
  static constexpr size_t word = 8;
  static constexpr uint32_t offset_bits = 13;
  static constexpr uint32_t offset_mask = (1u << offset_bits) - 1;
  static constexpr size_t first_slab_bytes = 1024;
  static constexpr size_t max_slab_bytes = word << offset_bits;
  static constexpr uint64_t max_slab_arity = 1022;  // nodes of 8 KiB
  static constexpr size_t min_bytes_for_regions = size_t{1} << 21;
  static_assert(max_slab_bytes == SlabRegions::piece_bytes);

  struct Slab {
    char* memory;
    uint32_t arity;
    uint32_t used;      // words handed out so far, free nodes included
    uint32_t capacity;  // words in all
    uint32_t region;    // that holds the memory; none if it is not in a region
    // The slab of a large node counts as one word. In a place without a slab, memory is null and
    // capacity is the next such place.
  };
  struct SizeClass {
    uint32_t free_list = none;
    uint32_t current = none;  // the slab that is being filled
    size_t next_bytes = first_slab_bytes;
  };

  static uint32_t words_of(uint64_t arity) {
    return arity > max_slab_arity ? 1 : static_cast<uint32_t>(sizeof(Term_) / word + arity);
  }
  static size_t bytes_of(const Slab& slab) {
    return slab.arity > max_slab_arity ? sizeof(Term_) + slab.arity * word : slab.capacity * word;
  }
  uint32_t add_slab(uint64_t arity, size_t bytes, uint32_t capacity);
  void free_memory(const Slab& slab) noexcept;
  uint32_t allocate_elsewhere(uint64_t arity);
  uint32_t allocate_large(uint64_t arity);
  void put_on_free_list(uint32_t handle, uint64_t arity) noexcept;
  size_t sweep_slab(uint32_t slab, const std::vector<bool>& seen) noexcept;
  void release(uint32_t slab) noexcept;

  SlabRegions regions;
  std::vector<Slab> directory;
  std::vector<SizeClass> classes;  // by arity, up to the largest one asked for
  uint32_t vacant = none;          // the first place without a slab
  size_t slabs_held = 0;
  size_t bytes_held = 0;
};

}  // namespace quill

#endif
