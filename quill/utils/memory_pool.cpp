// The growth routines that the common node sizes share, compiled once.

#include "quill/utils/memory_pool.h"

namespace quill {

template void MemoryPool<24, false>::grow_pool();
template void MemoryPool<32, false>::grow_pool();
template void MemoryPool<40, false>::grow_pool();

}  // namespace quill
