#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <map>
#include <new>
#include <random>
#include <type_traits>
#include <utility>
#include <vector>

#include "quill/terms/node_slabs.h"
#include "tests/unit/utils/failing_allocation.h"

namespace quill {
namespace {

constexpr uint64_t largest_in_slabs = 1022;  // one argument more and a node has a slab of its own

// Takes a node and fills all of it, so that the sanitizers see every byte used.
uint32_t allocate(NodeSlabs& slabs, uint64_t arity, char filling = 'x') {
  const uint32_t handle = slabs.allocate(arity);
  std::memset(slabs.address(handle), filling, 16 + 8 * arity);
  return handle;
}

std::vector<uint32_t> live(const NodeSlabs& slabs) {
  std::vector<uint32_t> handles;
  for (uint32_t h = slabs.first_live(0); h != NodeSlabs::none;
       h = slabs.first_live(slabs.next(h))) {
    handles.push_back(h);
  }
  return handles;
}

using Handles = std::vector<uint32_t>;

TEST(NodeSlabs, AreNotCopied) {
  EXPECT_FALSE(std::is_copy_constructible_v<NodeSlabs>);
  EXPECT_FALSE(std::is_copy_assignable_v<NodeSlabs>);
}

TEST(NodeSlabs, ANewStoreHasNoLiveNode) {
  const NodeSlabs slabs;
  EXPECT_EQ(slabs.first_live(0), NodeSlabs::none);
}

TEST(NodeSlabs, NodesOfOneArityLieSideBySide) {
  NodeSlabs slabs;
  const char* first = static_cast<char*>(slabs.address(allocate(slabs, 2)));
  const char* second = static_cast<char*>(slabs.address(allocate(slabs, 2)));
  EXPECT_EQ(second - first, 32);  // the header and two arguments
}

TEST(NodeSlabs, NodesAreAlignedAndDoNotOverlap) {
  NodeSlabs slabs;
  std::map<uintptr_t, uintptr_t> ranges;  // from, to
  for (int round = 0; round < 300; round++) {
    for (const uint64_t arity : {uint64_t{0}, uint64_t{1}, uint64_t{2}, uint64_t{5}, uint64_t{100},
                                 largest_in_slabs, largest_in_slabs + 1}) {
      const auto from = reinterpret_cast<uintptr_t>(slabs.address(allocate(slabs, arity)));
      EXPECT_EQ(from % 8, 0U);
      ASSERT_TRUE(ranges.emplace(from, from + 16 + 8 * arity).second);
    }
  }
  uintptr_t end = 0;
  for (const auto& [from, to] : ranges) {
    ASSERT_LE(end, from);
    end = to;
  }
}

TEST(NodeSlabs, NodesStayWhereTheyAre) {
  NodeSlabs slabs;
  std::vector<std::pair<uint32_t, void*>> nodes;
  for (uint64_t i = 0; i < 20000; i++) {
    const uint32_t handle = allocate(slabs, i % 4);
    nodes.emplace_back(handle, slabs.address(handle));
  }
  for (const auto& [handle, address] : nodes) EXPECT_EQ(slabs.address(handle), address);
}

TEST(NodeSlabs, AFreedNodeIsTheNextOfItsArity) {
  NodeSlabs slabs;
  const uint32_t a = allocate(slabs, 2);
  const uint32_t b = allocate(slabs, 2);
  allocate(slabs, 2);
  slabs.free(a);
  slabs.free(b);
  EXPECT_NE(allocate(slabs, 3), b);
  EXPECT_EQ(allocate(slabs, 2), b);
  EXPECT_EQ(allocate(slabs, 2), a);
}

TEST(NodeSlabs, LiveNodesAreVisitedInTheOrderOfSlabs) {
  NodeSlabs slabs;
  const uint32_t a0 = allocate(slabs, 0);
  const uint32_t b1 = allocate(slabs, 1);
  const uint32_t c0 = allocate(slabs, 0);
  const uint32_t d = allocate(slabs, 5000);
  const uint32_t e1 = allocate(slabs, 1);
  EXPECT_EQ(live(slabs), Handles({a0, c0, b1, e1, d}));
  slabs.free(b1);
  slabs.free(a0);
  EXPECT_EQ(live(slabs), Handles({c0, e1, d}));
  slabs.free(d);
  slabs.free(e1);
  slabs.free(c0);
  EXPECT_EQ(live(slabs), Handles());
}

TEST(NodeSlabs, LargeNodesOfDifferentSizesTakeEachOthersPlaces) {
  NodeSlabs slabs;
  const uint32_t a = allocate(slabs, 2000);
  const uint32_t b = allocate(slabs, 3000);
  slabs.free(a);
  slabs.free(b);
  EXPECT_EQ(allocate(slabs, 5000), b);
  EXPECT_EQ(allocate(slabs, 1500), a);
  EXPECT_EQ(live(slabs), Handles({a, b}));
}

// A large node that stays freed must not be taken for memory, nor be freed again.
TEST(NodeSlabs, AFreedLargeNodeIsSkipped) {
  NodeSlabs slabs;
  const uint32_t a = allocate(slabs, 2000);
  const uint32_t b = allocate(slabs, 2000);
  slabs.free(a);
  EXPECT_EQ(live(slabs), Handles({b}));
}

// 64 nodes without arguments fill the first slab of 1 KiB; later ones double up to 64 KiB.
TEST(NodeSlabs, AllNodesOfManySlabsAreVisited) {
  for (const uint64_t arity : {uint64_t{0}, uint64_t{1}, uint64_t{61}, largest_in_slabs}) {
    NodeSlabs slabs;
    Handles handles;
    for (int i = 0; i < 3000; i++) {
      handles.push_back(allocate(slabs, arity));
      const size_t n = handles.size();
      if (n >= 140 && n % 500 != 0) continue;
      EXPECT_EQ(live(slabs), handles) << arity << ' ' << n;
    }
  }
}

TEST(NodeSlabs, AFailedRequestChangesNothing) {
  for (const uint64_t arity : {uint64_t{0}, uint64_t{3}, largest_in_slabs, uint64_t{2000}}) {
    NodeSlabs slabs;
    const uint32_t before = allocate(slabs, 7);
    long k = 0;
    uint32_t handle = NodeSlabs::none;
    for (;; k++) {
      const testing::FailingAllocation after(k);
      try {
        handle = slabs.allocate(arity);
        break;
      } catch (const std::bad_alloc&) {
      }
    }
    EXPECT_GT(k, 0);
    std::memset(slabs.address(handle), 'x', 16 + 8 * arity);
    EXPECT_EQ(live(slabs), Handles({before, handle})) << "arity " << arity;
  }
}

TEST(NodeSlabs, AFailedRequestLeavesThePlaceOfAFreedLargeNodeFree) {
  NodeSlabs slabs;
  const uint32_t a = allocate(slabs, 2000);
  slabs.free(a);
  EXPECT_THROW(
      {
        const testing::FailingAllocation none(0);
        slabs.allocate(4000);
      },
      std::bad_alloc);
  EXPECT_EQ(live(slabs), Handles());
  EXPECT_EQ(allocate(slabs, 4000), a);
}

TEST(NodeSlabs, AnImpossibleArityIsRefused) {
  NodeSlabs slabs;
  EXPECT_THROW(slabs.allocate(UINT64_MAX), std::bad_alloc);
  EXPECT_THROW(slabs.allocate(UINT64_MAX / 8), std::bad_alloc);
  EXPECT_EQ(live(slabs), Handles());
}

TEST(NodeSlabs, AgreeWithAModelOverRandomOperations) {
  std::mt19937 random(321);
  const uint64_t arities[] = {0, 1, 2, 5, largest_in_slabs, largest_in_slabs + 1, 1500};
  NodeSlabs slabs;
  struct Node {
    uint64_t arity;
    char filling;
  };
  std::map<uint32_t, Node> model;
  for (int step = 0; step < 20000; step++) {
    const size_t target = step % 4000 < 2000 ? 400 : 10;
    if (model.size() < target && random() % 3 != 0) {
      const Node node = {arities[random() % 7], static_cast<char>('a' + random() % 26)};
      ASSERT_TRUE(model.emplace(allocate(slabs, node.arity, node.filling), node).second);
    } else if (!model.empty()) {
      const auto victim =
          std::next(model.begin(), static_cast<std::ptrdiff_t>(random() % model.size()));
      const char* bytes = static_cast<char*>(slabs.address(victim->first));
      const std::vector<char> expected(16 + 8 * victim->second.arity, victim->second.filling);
      ASSERT_EQ(std::memcmp(bytes, expected.data(), expected.size()), 0);
      slabs.free(victim->first);
      model.erase(victim);
    }
    if (step % 50 == 0) {
      Handles expected;
      for (const auto& [handle, node] : model) expected.push_back(handle);
      ASSERT_EQ(live(slabs), expected);
    }
  }
}

}  // namespace
}  // namespace quill
