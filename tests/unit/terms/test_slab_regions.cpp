#include <gtest/gtest.h>
#include <sys/mman.h>

#include <cstdint>
#include <cstring>
#include <random>
#include <set>
#include <vector>

#include "quill/terms/slab_regions.h"

namespace quill {
namespace {

constexpr size_t piece_bytes = 65536;

TEST(SlabRegions, PiecesLieSideBySideInARegionOfThirtyTwo) {
  SlabRegions regions;
  const SlabRegions::Piece first = regions.allocate();
  EXPECT_EQ(first.region, 0U);
  EXPECT_EQ(reinterpret_cast<uintptr_t>(first.memory) % 2097152, 0U);
  for (size_t i = 1; i < 32; ++i) {
    const SlabRegions::Piece piece = regions.allocate();
    EXPECT_EQ(piece.region, 0U);
    EXPECT_EQ(piece.memory, first.memory + i * piece_bytes);
  }
  EXPECT_EQ(regions.allocate().region, 1U);
}

TEST(SlabRegions, TheLowestFreePieceIsHandedOutFirst) {
  SlabRegions regions;
  std::vector<SlabRegions::Piece> pieces;
  for (int i = 0; i < 70; ++i) pieces.push_back(regions.allocate());
  for (const size_t i : {65u, 40u, 3u, 31u}) regions.free(pieces[i]);
  for (const size_t i : {3u, 31u, 40u, 65u}) EXPECT_EQ(regions.allocate().memory, pieces[i].memory);
}

TEST(SlabRegions, GivingBackLeavesThePiecesInUseAlone) {
  SlabRegions regions;
  std::vector<SlabRegions::Piece> pieces;
  for (int i = 0; i < 96; ++i) {
    pieces.push_back(regions.allocate());
    std::memset(pieces.back().memory, i, piece_bytes);
  }
  // All of the second region, and runs at both ends and in the middle of the others.
  const std::set<int> kept{4, 5, 9, 63 + 8};
  for (int i = 0; i < 96; ++i) {
    if (kept.count(i) == 0) regions.free(pieces[static_cast<size_t>(i)]);
  }
  regions.give_back();
  for (const int i : kept) {
    for (size_t at = 0; at < piece_bytes; ++at) {
      ASSERT_EQ(pieces[static_cast<size_t>(i)].memory[at], i);
    }
  }
  // All places serve again.
  for (int i = 0; i < 92; ++i) std::memset(regions.allocate().memory, 'z', piece_bytes);
  for (const int i : kept) EXPECT_EQ(pieces[static_cast<size_t>(i)].memory[piece_bytes - 1], i);
  EXPECT_EQ(regions.allocate().region, 3U);
}

// Whether the page at an address has memory.
bool is_resident(char* address) {
  unsigned char page = 0;
  EXPECT_EQ(mincore(address, 1, &page), 0);
  return (page & 1) != 0;
}

TEST(SlabRegions, MemoryOfFreePiecesGoesBackToTheSystem) {
  SlabRegions regions;
  std::vector<SlabRegions::Piece> pieces{regions.allocate()};
  if (is_resident(pieces[0].memory)) GTEST_SKIP() << "the system does not tell what has memory";
  while (pieces.size() < 32) pieces.push_back(regions.allocate());
  for (const SlabRegions::Piece& piece : pieces) std::memset(piece.memory, 'x', piece_bytes);
  const auto is_freed = [](size_t i) { return i < 3 || i == 7 || (i >= 20 && i < 32); };
  for (size_t i = 0; i < 32; ++i) {
    if (is_freed(i)) regions.free(pieces[i]);
  }
  for (const SlabRegions::Piece& piece : pieces) EXPECT_TRUE(is_resident(piece.memory));
  regions.give_back();
  for (size_t i = 0; i < 32; ++i) {
    EXPECT_EQ(is_resident(pieces[i].memory), !is_freed(i)) << i;
    EXPECT_EQ(is_resident(pieces[i].memory + piece_bytes - 4096), !is_freed(i)) << i;
  }
}

TEST(SlabRegions, RandomUseNeverSharesAPiece) {
  SlabRegions regions;
  std::mt19937 random(7);
  std::vector<SlabRegions::Piece> held;
  std::set<char*> addresses;
  for (int step = 0; step < 20000; ++step) {
    const unsigned what = random() % 16;
    if (what == 0) {
      regions.give_back();
    } else if (what < 9 || held.empty()) {
      held.push_back(regions.allocate());
      ASSERT_TRUE(addresses.insert(held.back().memory).second);
      held.back().memory[0] = 'x';
    } else {
      const size_t i = random() % held.size();
      ASSERT_EQ(held[i].memory[0], 'x');
      addresses.erase(held[i].memory);
      regions.free(held[i]);
      held[i] = held.back();
      held.pop_back();
    }
  }
  EXPECT_EQ(addresses.size(), held.size());
}

}  // namespace
}  // namespace quill
