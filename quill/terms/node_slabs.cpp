#include "quill/terms/node_slabs.h"

#include <algorithm>
#include <new>

#include "quill/utils/scope_guard.h"

namespace quill {

NodeSlabs::~NodeSlabs() {
  for (const Slab& slab : directory) ::operator delete(slab.memory);
}

uint32_t NodeSlabs::add_slab(uint64_t arity, size_t bytes, uint32_t capacity) {
  if (directory.size() == max_slabs - 1) throw std::bad_alloc();  // the last handles stand for none
  char* memory = static_cast<char*>(::operator new(bytes));
  ScopeGuard undo([&] { ::operator delete(memory); });
  directory.push_back({memory, arity, 0, capacity});
  undo.dismiss();
  return static_cast<uint32_t>(directory.size() - 1);
}

// A node of its own slab; the directory entries of freed ones are used again, the last one freed
// first.
uint32_t NodeSlabs::allocate_large(uint64_t arity) {
  if (arity > (SIZE_MAX - sizeof(Term_)) / word) throw std::bad_alloc();
  const size_t bytes = sizeof(Term_) + arity * word;
  uint32_t slab = vacant;
  if (slab == none) {
    slab = add_slab(arity, bytes, /*capacity=*/1);
  } else {
    char* memory = static_cast<char*>(::operator new(bytes));
    vacant = directory[slab].capacity;
    directory[slab] = {memory, arity, 0, 1};
  }
  directory[slab].used = 1;
  return slab << offset_bits;
}

void NodeSlabs::free_large(uint32_t slab) noexcept {
  ::operator delete(directory[slab].memory);
  directory[slab] = {nullptr, max_slab_arity + 1, 0, vacant};
  vacant = slab;
}

uint32_t NodeSlabs::allocate(uint64_t arity) {
  if (arity > max_slab_arity) return allocate_large(arity);
  if (arity >= classes.size()) classes.resize(arity + 1);
  SizeClass& size_class = classes[arity];
  if (size_class.free_list != none) {
    const uint32_t handle = size_class.free_list;
    size_class.free_list = static_cast<uint32_t>(node(handle)->id);
    return handle;
  }
  const uint32_t words = words_of(arity);
  if (size_class.current == none ||
      directory[size_class.current].used + words > directory[size_class.current].capacity) {
    const size_t bytes = std::max(size_class.next_bytes, words * word);
    size_class.current = add_slab(arity, bytes, static_cast<uint32_t>(bytes / word));
    size_class.next_bytes = std::min(2 * size_class.next_bytes, max_slab_bytes);
  }
  Slab& slab = directory[size_class.current];
  const uint32_t handle = size_class.current << offset_bits | slab.used;
  slab.used += words;
  return handle;
}

void NodeSlabs::free(uint32_t handle) noexcept {
  const uint64_t arity = directory[handle >> offset_bits].arity;
  if (arity > max_slab_arity) return free_large(handle >> offset_bits);
  node(handle)->symbol = nullptr;
  SizeClass& size_class = classes[arity];
  node(handle)->id = size_class.free_list;
  size_class.free_list = handle;
}

uint32_t NodeSlabs::first_live(uint32_t handle) const {
  for (uint32_t slab = handle >> offset_bits; slab < directory.size(); slab++) {
    const uint32_t words = words_of(directory[slab].arity);
    for (uint32_t offset = handle & offset_mask; offset < directory[slab].used; offset += words) {
      const uint32_t candidate = slab << offset_bits | offset;
      if (node(candidate)->symbol != nullptr) return candidate;
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
