// A pool of equally sized nodes, cut from chunks that grow.
//
// Each chunk is one malloc: a word that links to the previous chunk, then `chunk_elems` slots of
// Size bytes. The free slots form the free list, linked through their first words:
//
//   chunks -> [link][slot 0][slot 1]...    the link leads to the previous chunk; null in the first
//
// A fresh chunk hands out its slots in address order; a node given back is the next one to be
// handed out. With the initial fields the chunks hold 16, 32, 64, ..., 4096, 8192, 8192, ... nodes.
// Nodes never move, and their memory goes back to the system only when the pool is destroyed. The
// pool knows nothing about the objects in its nodes, which must be destroyed before it. Allocating
// a node and giving it back cost a few instructions each.
//
// ZeroFilled decides what a node holds when it is handed out: only zero bytes, or anything.

#ifndef QUILL_UTILS_MEMORY_POOL_H
#define QUILL_UTILS_MEMORY_POOL_H

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

#include "quill/utils/xmalloc.h"

namespace quill {

template <size_t Size, bool ZeroFilled>
class MemoryPool {
  static_assert(Size >= sizeof(void*) && Size % alignof(void*) == 0,
                "a free node holds a pointer in its first word");

 public:
  MemoryPool() = default;
  MemoryPool(const MemoryPool&) = delete;
  MemoryPool& operator=(const MemoryPool&) = delete;

  ~MemoryPool() {
    while (chunks != nullptr) {
      Link* previous = chunks->next;
      std::free(chunks);
      chunks = previous;
    }
  }

  // Returns Size bytes, aligned for pointers. Throws std::bad_alloc and then leaves the pool
  // unchanged.
  void* allocate() {
    if (free_list == nullptr) grow_pool();
    Link* node = free_list;
    free_list = node->next;
    if constexpr (ZeroFilled) std::memset(static_cast<void*>(node), 0, Size);
    return node;
  }

  // `node` comes from this pool and no longer holds an object.
  void deallocate(void* node) noexcept { free_list = ::new (node) Link{free_list}; }

  void swap(MemoryPool& other) noexcept {
    std::swap(chunk_elems, other.chunk_elems);
    std::swap(growth, other.growth);
    std::swap(max_chunk_elems, other.max_chunk_elems);
    std::swap(chunks, other.chunks);
    std::swap(free_list, other.free_list);
  }

  struct Link {
    Link* next;
  };

  uint64_t chunk_elems = 16;        // how many nodes the next chunk will hold
  float growth = 2.0F;              // factor on chunk_elems after each chunk, at least 1
  uint64_t max_chunk_elems = 8192;  // bound of chunk_elems, 0 for none
  Link* chunks = nullptr;           // newest first
  Link* free_list = nullptr;

 private:
  void grow_pool();
};

template <size_t Size, bool ZeroFilled>
void MemoryPool<Size, ZeroFilled>::grow_pool() {
  assert(free_list == nullptr && "the pool grows while it still has free nodes");
  assert(chunk_elems > 0 && growth >= 1.0F && "the next chunk would hold no node");
  if (chunk_elems > (std::numeric_limits<size_t>::max() - sizeof(Link)) / Size) {
    throw std::bad_alloc();
  }
  char* chunk = xmalloc<char>(chunk_elems * Size + sizeof(Link));
  chunks = ::new (chunk) Link{chunks};

  // Linking from the last slot down writes every slot only once.
  char* first_slot = chunk + sizeof(Link);
  Link* head = nullptr;
  for (uint64_t i = chunk_elems; i-- > 0;) head = ::new (first_slot + i * Size) Link{head};
  free_list = head;

  const float wanted = static_cast<float>(chunk_elems) * growth;
  // 2^64 is the first float that does not fit.
  uint64_t next_elems = wanted < 18446744073709551616.0F ? static_cast<uint64_t>(wanted)
                                                         : std::numeric_limits<uint64_t>::max();
  if (max_chunk_elems != 0 && next_elems > max_chunk_elems) next_elems = max_chunk_elems;
  chunk_elems = next_elems;
}

// The node sizes of most tables: elements of two, three and four words, each with the link of its
// chain.
extern template void MemoryPool<24, false>::grow_pool();
extern template void MemoryPool<32, false>::grow_pool();
extern template void MemoryPool<40, false>::grow_pool();

}  // namespace quill

#endif
