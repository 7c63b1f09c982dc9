#include "quill/terms/slab_regions.h"

#include <algorithm>
#include <bit>

#include "quill/utils/huge_pages.h"

namespace quill {

namespace {
constexpr uint32_t all_pieces = UINT32_MAX;
static_assert(huge_pages::page_bytes / SlabRegions::piece_bytes == 32, "a bit for each piece");
}  // namespace

SlabRegions::~SlabRegions() {
  for (const Region& region : regions) {
    if (region.memory != nullptr) huge_pages::deallocate(region.memory, huge_pages::page_bytes);
  }
}

SlabRegions::Piece SlabRegions::allocate() {
  while (first < regions.size() && regions[first].free == 0) first++;
  if (first == regions.size()) regions.push_back({nullptr, all_pieces, 0});
  Region& region = regions[first];
  if (region.memory == nullptr) {
    region.memory = static_cast<char*>(huge_pages::allocate(huge_pages::page_bytes));
  }
  const int piece = std::countr_zero(region.free);
  region.free &= region.free - 1;
  region.stale &= region.free;
  return {region.memory + static_cast<size_t>(piece) * piece_bytes, static_cast<uint32_t>(first)};
}

void SlabRegions::free(Piece piece) noexcept {
  Region& region = regions[piece.region];
  const size_t number = static_cast<size_t>(piece.memory - region.memory) / piece_bytes;
  region.free |= uint32_t{1} << number;
  region.stale |= uint32_t{1} << number;
  first = std::min<size_t>(first, piece.region);
}

void SlabRegions::give_back() noexcept {
  for (Region& region : regions) {
    if (region.memory != nullptr && region.free == all_pieces) {
      huge_pages::deallocate(region.memory, huge_pages::page_bytes);
      region = {nullptr, all_pieces, 0};
    }
    while (region.stale != 0) {
      // Returns the lowest run of pieces at once.
      const int from = std::countr_zero(region.stale);
      const int length = std::countr_one(region.stale >> from);
      huge_pages::discard(region.memory + static_cast<size_t>(from) * piece_bytes,
                          static_cast<size_t>(length) * piece_bytes);
      region.stale &= static_cast<uint32_t>(~(((uint64_t{1} << length) - 1) << from));
    }
  }
}

}  // namespace quill
