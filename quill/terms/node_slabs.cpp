#include "quill/terms/node_slabs.h"

#include <algorithm>
#include <new>

#include "quill/utils/address_sanitizer.h"

namespace quill {

// The largest slab number is not used, because its last handle is none. A test builds this file
// with a lower limit.
#ifndef QUILL_MAX_SLABS
#define QUILL_MAX_SLABS ((size_t{1} << 19) - 1)
#endif

namespace {

constexpr size_t max_slabs = QUILL_MAX_SLABS;

// Accesses to fields of nodes that may be free and therefore poisoned.
[[gnu::no_sanitize_address]] bool is_live(const Term_* node) { return node->symbol != nullptr; }
[[gnu::no_sanitize_address]] uint32_t next_free(const Term_* node) {
  return static_cast<uint32_t>(node->id);
}
[[gnu::no_sanitize_address]] void set_free(Term_* node, uint32_t next) {
  node->symbol = nullptr;
  node->id = next;
}

}  // namespace

NodeSlabs::~NodeSlabs() {
  for (const Slab& slab : directory) {
    if (slab.region == none) ::operator delete(slab.memory);
  }
}

uint32_t NodeSlabs::add_slab(uint64_t arity, size_t bytes, uint32_t capacity) {
  if (vacant == none) {
    if (directory.size() == max_slabs) throw std::bad_alloc();
    directory.push_back({nullptr, 0, 0, none, none});
    vacant = static_cast<uint32_t>(directory.size() - 1);
  }
  const bool in_region = bytes == max_slab_bytes && bytes_held >= min_bytes_for_regions;
  const auto [memory, region] =
      in_region ? regions.allocate()
                : SlabRegions::Piece{static_cast<char*>(::operator new(bytes)), none};
  const uint32_t slab = vacant;
  vacant = directory[slab].capacity;
  directory[slab] = {memory, static_cast<uint32_t>(arity), 0, capacity, region};
  ++slabs_held;
  bytes_held += bytes;
  return slab;
}

void NodeSlabs::free_memory(const Slab& slab) noexcept {
  if (slab.region == none) {
    ::operator delete(slab.memory);
  } else {
    unpoison(slab.memory, max_slab_bytes);
    regions.free({slab.memory, slab.region});
  }
}

void NodeSlabs::release(uint32_t slab) noexcept {
  --slabs_held;
  bytes_held -= bytes_of(directory[slab]);
  free_memory(directory[slab]);
  directory[slab] = {nullptr, 0, 0, vacant, none};
  vacant = slab;
}

// Returns a node in a slab of its own.
uint32_t NodeSlabs::allocate_large(uint64_t arity) {
  if (arity > std::min<uint64_t>(UINT32_MAX, (SIZE_MAX - sizeof(Term_)) / word))
    throw std::bad_alloc();
  const uint32_t slab = add_slab(arity, sizeof(Term_) + arity * word, /*capacity=*/1);
  directory[slab].used = 1;
  return slab << offset_bits;
}

// Returns a node from the free list, or from a new slab if the current one is full.
uint32_t NodeSlabs::allocate_elsewhere(uint64_t arity) {
  if (arity > max_slab_arity) return allocate_large(arity);
  if (arity >= classes.size()) classes.resize(arity + 1);
  SizeClass& size_class = classes[arity];
  const uint32_t words = words_of(arity);
  if (size_class.free_list != none) {
    const uint32_t handle = size_class.free_list;
    size_class.free_list = next_free(node(handle));
    unpoison(node(handle), words * word);
    return handle;
  }
  const size_t bytes = std::max(size_class.next_bytes, words * word);
  size_class.current = add_slab(arity, bytes, static_cast<uint32_t>(bytes / word));
  size_class.next_bytes = std::min(2 * size_class.next_bytes, max_slab_bytes);
  directory[size_class.current].used = words;
  return size_class.current << offset_bits;
}

void NodeSlabs::put_on_free_list(uint32_t handle, uint64_t arity) noexcept {
  set_free(node(handle), classes[arity].free_list);
  classes[arity].free_list = handle;
  poison(node(handle), words_of(arity) * word);
}

void NodeSlabs::free(uint32_t handle) noexcept {
  const uint64_t arity = directory[handle >> offset_bits].arity;
  if (arity > max_slab_arity) {
    release(handle >> offset_bits);
  } else {
    put_on_free_list(handle, arity);
  }
}

// Rebuilds all lists from the highest handle down, so that each begins with its lowest handle.
size_t NodeSlabs::sweep(const std::vector<bool>& seen) noexcept {
  for (SizeClass& size_class : classes) size_class.free_list = none;
  vacant = none;
  size_t freed = 0;
  for (uint32_t slab = static_cast<uint32_t>(directory.size()); slab-- > 0;) {
    if (directory[slab].memory != nullptr) {
      freed += sweep_slab(slab, seen);
    } else {
      directory[slab].capacity = vacant;
      vacant = slab;
    }
  }
  regions.give_back();
  return freed;
}

size_t NodeSlabs::sweep_slab(uint32_t slab, const std::vector<bool>& seen) noexcept {
  const uint64_t arity = directory[slab].arity;
  const bool is_large = arity > max_slab_arity;
  const uint32_t words = words_of(arity);
  const uint32_t free_before = is_large ? none : classes[arity].free_list;
  size_t freed = 0;
  bool is_empty = true;
  for (uint32_t offset = directory[slab].used; offset != 0;) {
    offset -= words;
    const uint32_t handle = slab << offset_bits | offset;
    const Term_* candidate = node(handle);
    if (is_live(candidate)) {
      if (candidate->id < seen.size() && seen[candidate->id]) {
        is_empty = false;
        continue;
      }
      ++freed;
    }
    if (!is_large) put_on_free_list(handle, arity);
  }
  if (!is_empty) return freed;
  if (!is_large) {
    SizeClass& size_class = classes[arity];
    size_class.free_list = free_before;  // without the nodes of this slab
    if (size_class.current == slab) size_class.current = none;
    size_class.next_bytes = std::max(size_class.next_bytes / 2, first_slab_bytes);
  }
  release(slab);
  return freed;
}

uint32_t NodeSlabs::first_live(uint32_t handle) const {
  for (uint32_t slab = handle >> offset_bits; slab < directory.size(); ++slab) {
    const uint32_t words = words_of(directory[slab].arity);
    for (uint32_t offset = handle & offset_mask; offset < directory[slab].used; offset += words) {
      const uint32_t candidate = slab << offset_bits | offset;
      if (is_live(node(candidate))) return candidate;
    }
    handle = 0;
  }
  return none;
}

uint32_t NodeSlabs::next(uint32_t handle) const {
  const Slab& slab = directory[handle >> offset_bits];
  const uint32_t offset = (handle & offset_mask) + words_of(slab.arity);
  if (offset < slab.used) return handle - (handle & offset_mask) + offset;
  return ((handle >> offset_bits) + 1) << offset_bits;
}

}  // namespace quill
