#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <new>
#include <numeric>
#include <vector>

#include "quill/utils/address_sanitizer.h"
#include "quill/utils/huge_pages.h"

namespace quill {
namespace {

constexpr size_t page = size_t{1} << 21;

TEST(HugePages, SizesAreRoundedUpToWholePages) {
  EXPECT_EQ(huge_pages::page_bytes, 2097152U);
  EXPECT_EQ(huge_pages::round_up(0), 0U);
  EXPECT_EQ(huge_pages::round_up(1), page);
  EXPECT_EQ(huge_pages::round_up(page), page);
  EXPECT_EQ(huge_pages::round_up(page + 1), 2 * page);
}

TEST(HugePages, BlocksAreAlignedToPagesAndCanBeWritten) {
  for (const size_t pages : {1u, 2u, 5u}) {
    void* block = huge_pages::allocate(pages * page);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(block) % page, 0U);
    std::memset(block, 'x', pages * page);
    EXPECT_EQ(static_cast<char*>(block)[pages * page - 1], 'x');
    huge_pages::deallocate(block, pages * page);
  }
}

TEST(HugePages, WhatNoSystemHasIsRefused) {
  EXPECT_THROW(huge_pages::allocate(size_t{1} << 62), std::bad_alloc);
  EXPECT_THROW(huge_pages::allocate(SIZE_MAX - page + 1), std::bad_alloc);
  EXPECT_THROW(huge_pages::Allocator<uint64_t>().allocate(SIZE_MAX / 8), std::bad_alloc);
}

TEST(HugePages, ADiscardedPartCanBeWrittenAgainAndTheRestStays) {
  char* block = static_cast<char*>(huge_pages::allocate(page));
  std::memset(block, 'x', page);
  huge_pages::discard(block + 65536, 65536);
  EXPECT_EQ(block[65535], 'x');
  EXPECT_EQ(block[131072], 'x');
  std::memset(block + 65536, 'y', 65536);
  EXPECT_EQ(block[65536], 'y');
  huge_pages::deallocate(block, page);
}

// The address sanitizer goes by addresses, and those of a block that went back come again.
TEST(HugePages, ABlockThatGoesBackIsNoLongerPoisoned) {
  void* block = huge_pages::allocate(page);
  poison(static_cast<char*>(block) + 4096, page - 8192);
  huge_pages::deallocate(block, page);
  EXPECT_FALSE(is_any_poisoned(block, page));
}

TEST(HugePages, VectorsKeepTheirContentsAcrossTheSizeOfAPage) {
  std::vector<uint64_t, huge_pages::Allocator<uint64_t>> v;
  for (uint64_t i = 0; i < 600000; ++i) v.push_back(i);  // 4.8 MB
  EXPECT_EQ(std::accumulate(v.begin(), v.end(), uint64_t{0}), 179999700000U);
  v.resize(3);
  v.shrink_to_fit();
  EXPECT_EQ(v[2], 2U);
}

}  // namespace
}  // namespace quill
