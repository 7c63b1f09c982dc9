#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <set>
#include <vector>

#include "quill/utils/memory_pool.h"
#include "quill/utils/xmalloc.h"

namespace quill {
namespace {

template <class Pool>
size_t number_of_chunks(const Pool& pool) {
  size_t chunks = 0;
  for (auto* chunk = pool.chunks; chunk != nullptr; chunk = chunk->next) ++chunks;
  return chunks;
}

// How many nodes each of the first `chunks` chunks hands out.
template <class Pool>
std::vector<size_t> chunk_sizes(Pool& pool, size_t chunks) {
  std::vector<size_t> sizes;
  for (size_t i = 0; i < chunks; ++i) {
    size_t nodes = 0;
    do {
      pool.allocate();
      ++nodes;
    } while (pool.free_list != nullptr);
    sizes.push_back(nodes);
  }
  return sizes;
}

TEST(Xmalloc, ZeroBytesYieldABlock) {
  char* memory = xmalloc<char>(0);
  EXPECT_NE(memory, nullptr);
  std::free(memory);
}

TEST(Xmalloc, ExhaustionThrows) {
  volatile size_t too_much = std::numeric_limits<size_t>::max() / 2;
  // An optimizer may drop an allocation whose result nobody reads, and its failure with it.
  char* volatile memory = nullptr;
  EXPECT_THROW(memory = xmalloc<char>(too_much), std::bad_alloc);
  EXPECT_EQ(memory, nullptr);
}

TEST(MemoryPool, StartsWithoutAChunk) {
  MemoryPool<24, false> pool;
  EXPECT_EQ(pool.chunk_elems, 16U);
  EXPECT_EQ(pool.growth, 2.0F);
  EXPECT_EQ(pool.max_chunk_elems, 8192U);
  EXPECT_EQ(pool.chunks, nullptr);
  EXPECT_EQ(pool.free_list, nullptr);
}

template <class Pool>
class MemoryPoolOfSize : public ::testing::Test {};

using Pools = ::testing::Types<MemoryPool<8, false>, MemoryPool<24, false>, MemoryPool<32, false>,
                               MemoryPool<40, false>, MemoryPool<64, false>, MemoryPool<24, true>>;
TYPED_TEST_SUITE(MemoryPoolOfSize, Pools);

TYPED_TEST(MemoryPoolOfSize, ChunksDoubleUpTo8192Nodes) {
  TypeParam pool;
  const std::vector<size_t> expected = {16, 32, 64, 128, 256, 512, 1024, 2048, 4096, 8192, 8192};
  EXPECT_EQ(chunk_sizes(pool, 11), expected);
  EXPECT_EQ(number_of_chunks(pool), 11U);
}

TEST(MemoryPool, SlotsAreHandedOutInAddressOrderBehindTheLink) {
  MemoryPool<40, false> pool;
  for (size_t i = 0; i < 16; ++i) {
    char* node = static_cast<char*>(pool.allocate());
    EXPECT_EQ(node, reinterpret_cast<char*>(pool.chunks) + 8 + 40 * i);
  }
  EXPECT_EQ(pool.free_list, nullptr);
}

TEST(MemoryPool, ANewChunkLinksToTheOneBefore) {
  MemoryPool<24, false> pool;
  pool.allocate();
  const auto* first = pool.chunks;
  EXPECT_EQ(first->next, nullptr);
  for (int i = 0; i < 16; ++i) pool.allocate();
  EXPECT_NE(pool.chunks, first);
  EXPECT_EQ(pool.chunks->next, first);
}

TEST(MemoryPool, LiveNodesAreDistinctAndKeepTheirBytes) {
  MemoryPool<32, false> pool;
  std::vector<unsigned char*> nodes;
  for (int i = 0; i < 1000; ++i) {
    nodes.push_back(static_cast<unsigned char*>(pool.allocate()));
    std::memset(nodes.back(), i % 251, 32);
  }
  for (int i = 0; i < 1000; ++i) {
    const unsigned char* node = nodes[static_cast<size_t>(i)];
    EXPECT_TRUE(std::all_of(node, node + 32, [i](unsigned char c) { return c == i % 251; }));
  }
}

TEST(MemoryPool, TheNodeGivenBackLastIsHandedOutFirst) {
  MemoryPool<24, false> pool;
  void* a = pool.allocate();
  void* b = pool.allocate();
  pool.deallocate(a);
  pool.deallocate(b);
  EXPECT_EQ(pool.allocate(), b);
  EXPECT_EQ(pool.allocate(), a);
}

TEST(MemoryPool, NodesGivenBackAreUsedBeforeANewChunk) {
  MemoryPool<24, false> pool;
  std::set<void*> nodes;
  for (int i = 0; i < 16; ++i) nodes.insert(pool.allocate());
  for (void* node : nodes) pool.deallocate(node);
  std::set<void*> again;
  for (int i = 0; i < 16; ++i) again.insert(pool.allocate());
  EXPECT_EQ(again, nodes);
  EXPECT_EQ(number_of_chunks(pool), 1U);
  pool.allocate();
  EXPECT_EQ(number_of_chunks(pool), 2U);
}

TEST(MemoryPool, AZeroFilledNodeIsZeroAlsoWhenItWasUsedBefore) {
  MemoryPool<24, true> pool;
  const unsigned char zero[24] = {};
  void* node = pool.allocate();
  EXPECT_EQ(std::memcmp(node, zero, 24), 0);
  std::memset(node, 0xab, 24);
  pool.deallocate(node);
  ASSERT_EQ(pool.allocate(), node);
  EXPECT_EQ(std::memcmp(node, zero, 24), 0);
}

TEST(MemoryPool, OtherwiseAUsedNodeKeepsItsBytesBehindTheLink) {
  MemoryPool<24, false> pool;
  unsigned char* node = static_cast<unsigned char*>(pool.allocate());
  std::memset(node, 0xab, 24);
  pool.deallocate(node);
  ASSERT_EQ(pool.allocate(), node);
  EXPECT_EQ(node[8], 0xab);
  EXPECT_EQ(node[23], 0xab);
}

TEST(MemoryPool, TheGrowthFactorAppliesToEachChunk) {
  MemoryPool<24, false> pool;
  pool.growth = 1.5F;
  EXPECT_EQ(chunk_sizes(pool, 6), (std::vector<size_t>{16, 24, 36, 54, 81, 121}));
}

TEST(MemoryPool, ABoundOfZeroIsNone) {
  MemoryPool<8, false> pool;
  pool.chunk_elems = 8192;
  pool.max_chunk_elems = 0;
  EXPECT_EQ(chunk_sizes(pool, 3), (std::vector<size_t>{8192, 16384, 32768}));
}

TEST(MemoryPool, ChunkSizesAboveTwoToThe63AreConvertedExactly) {
  MemoryPool<8, false> pool;
  pool.max_chunk_elems = 0;
  pool.growth = 576460752303423488.0F;  // 2^59, times 16 nodes
  pool.allocate();
  EXPECT_EQ(pool.chunk_elems, 9223372036854775808U);
}

TEST(MemoryPool, ChunkSizesThatFitNoWordAreTheLargestWord) {
  MemoryPool<8, false> pool;
  pool.max_chunk_elems = 0;
  pool.growth = 1e30F;
  pool.allocate();
  EXPECT_EQ(pool.chunk_elems, 18446744073709551615U);
}

// 2^57 nodes of 24 bytes are more than malloc ever gives, 2^62 are more than a word counts.
TEST(MemoryPool, AFailedChunkLeavesThePoolAsItWas) {
  for (const uint64_t elems : {uint64_t{1} << 57, uint64_t{1} << 62}) {
    MemoryPool<24, false> pool;
    for (int i = 0; i < 16; ++i) pool.allocate();
    const auto* chunk = pool.chunks;
    pool.chunk_elems = elems;
    EXPECT_THROW(pool.allocate(), std::bad_alloc);
    EXPECT_EQ(pool.chunk_elems, elems);
    EXPECT_EQ(pool.chunks, chunk);
    EXPECT_EQ(pool.free_list, nullptr);
    pool.chunk_elems = 32;
    EXPECT_NE(pool.allocate(), nullptr);
    EXPECT_EQ(number_of_chunks(pool), 2U);
  }
}

}  // namespace
}  // namespace quill
