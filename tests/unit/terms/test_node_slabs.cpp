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
#include "quill/utils/address_sanitizer.h"
#include "tests/support/failing_memory.h"

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
  for (int round = 0; round < 300; ++round) {
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
  for (uint64_t i = 0; i < 20000; ++i) {
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
    for (int i = 0; i < 3000; ++i) {
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
    size_t k = 0;
    uint32_t handle = NodeSlabs::none;
    for (;; ++k) {
      const testing::FailingMemory after(k);
      try {
        handle = slabs.allocate(arity);
        break;
      } catch (const std::bad_alloc&) {
      }
    }
    EXPECT_GT(k, 0U);
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
        const testing::FailingMemory none(0);
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

// --- Sweeps ---

// A node that a sweep can judge.
uint32_t allocate_with_id(NodeSlabs& slabs, uint64_t arity, uint64_t id) {
  const uint32_t handle = allocate(slabs, arity);
  slabs.node(handle)->id = id;
  return handle;
}

TEST(NodeSlabs, ASweepTakesTheNodesThatAreNotMarked) {
  NodeSlabs slabs;
  Handles handles;
  for (uint64_t id = 0; id < 6; ++id) handles.push_back(allocate_with_id(slabs, id % 2, id));
  EXPECT_EQ(slabs.sweep({true, false, false, true, true}), 3U);
  EXPECT_EQ(live(slabs), Handles({handles[0], handles[4], handles[3]}));
  EXPECT_EQ(slabs.sweep({true, false, false, true, true}), 0U);
  EXPECT_EQ(live(slabs), Handles({handles[0], handles[4], handles[3]}));
}

TEST(NodeSlabs, SweptNodesAreUsedAgainFromTheLowestOn) {
  NodeSlabs slabs;
  Handles handles;
  for (uint64_t id = 0; id < 100; ++id) handles.push_back(allocate_with_id(slabs, 1, id));
  slabs.free(handles[50]);
  std::vector<bool> seen(100, true);
  for (const size_t id : std::vector<size_t>{10, 70, 20, 90}) seen[id] = false;
  EXPECT_EQ(slabs.sweep(seen), 4U);
  for (const size_t id : std::vector<size_t>{10, 20, 50, 70, 90})
    EXPECT_EQ(allocate(slabs, 1), handles[id]);
}

// 64 nodes without arguments fill the first slab.
TEST(NodeSlabs, ASweepReleasesSlabsWithoutALiveNode) {
  NodeSlabs slabs;
  Handles handles;
  for (uint64_t id = 0; id < 64 + 128 + 1; ++id) {
    handles.push_back(allocate_with_id(slabs, 0, id));
  }
  EXPECT_EQ(slabs.num_slabs(), 3U);
  EXPECT_EQ(slabs.num_bytes(), 1024U + 2048 + 4096);
  std::vector<bool> seen(193);
  seen[63] = true;
  seen[192] = true;
  EXPECT_EQ(slabs.sweep(seen), 191U);
  EXPECT_EQ(slabs.num_slabs(), 2U);
  EXPECT_EQ(slabs.num_bytes(), 1024U + 4096);
  EXPECT_EQ(live(slabs), Handles({handles[63], handles[192]}));
  // First the 63 free nodes of the first slab, then what is left of the last one, then a new slab
  // in the place of the one that was released.
  for (size_t i = 0; i < 63; ++i) EXPECT_EQ(allocate(slabs, 0), handles[i]);
  for (uint32_t i = 1; i < 256; ++i) EXPECT_EQ(allocate(slabs, 0), handles[192] + 2 * i);
  EXPECT_EQ(slabs.num_slabs(), 2U);
  EXPECT_EQ(allocate(slabs, 0), handles[64]);
  EXPECT_EQ(slabs.num_slabs(), 3U);
  EXPECT_EQ(slabs.num_bytes(), 1024U + 4096 + 4096);
}

TEST(NodeSlabs, ASweepReleasesTheSlabThatIsBeingFilled) {
  NodeSlabs slabs;
  const uint32_t a = allocate_with_id(slabs, 3, 0);
  allocate_with_id(slabs, 3, 1);
  EXPECT_EQ(slabs.sweep({}), 2U);
  EXPECT_EQ(slabs.num_slabs(), 0U);
  EXPECT_EQ(slabs.num_bytes(), 0U);
  EXPECT_EQ(live(slabs), Handles());
  EXPECT_EQ(allocate(slabs, 3), a);
  EXPECT_EQ(slabs.num_slabs(), 1U);
}

TEST(NodeSlabs, ASweepReleasesSlabsWhoseNodesWereFreedBefore) {
  NodeSlabs slabs;
  slabs.free(allocate(slabs, 3));
  EXPECT_EQ(slabs.sweep({}), 0U);
  EXPECT_EQ(slabs.num_slabs(), 0U);
}

TEST(NodeSlabs, ASweepJudgesLargeNodesToo) {
  NodeSlabs slabs;
  const uint32_t a = allocate_with_id(slabs, 2000, 0);
  const uint32_t b = allocate_with_id(slabs, 3000, 1);
  const uint32_t c = allocate_with_id(slabs, 4000, 2);
  EXPECT_EQ(slabs.num_bytes(), 3 * 16U + 8 * 9000);
  EXPECT_EQ(slabs.sweep({false, true}), 2U);
  EXPECT_EQ(live(slabs), Handles({b}));
  EXPECT_EQ(slabs.num_bytes(), 16U + 8 * 3000);
  EXPECT_EQ(allocate(slabs, 1), a);  // any slab may take a place
  EXPECT_EQ(allocate(slabs, 1500), c);
  EXPECT_EQ(live(slabs), Handles({a, b, c}));
}

TEST(NodeSlabsDeathTest, TheUseOfASweptNodeIsReported) {
  if (!has_address_sanitizer) GTEST_SKIP() << "needs the address sanitizer";
  NodeSlabs slabs;
  const uint32_t freed = allocate_with_id(slabs, 1, 0);
  const uint32_t kept = allocate_with_id(slabs, 1, 1);
  slabs.sweep({false, true});
  EXPECT_DEATH(EXPECT_EQ(slabs.node(freed)->id, 0U), "use-after-poison");
  EXPECT_DEATH(EXPECT_EQ(slabs.node(freed)->args[0], nullptr), "use-after-poison");
  EXPECT_EQ(slabs.node(kept)->id, 1U);
  EXPECT_EQ(allocate_with_id(slabs, 1, 2), freed);
  EXPECT_EQ(slabs.node(freed)->id, 2U);
}

// Of all memory that they ever had, whether it went back in a sweep or with the slabs themselves.
TEST(NodeSlabs, MemoryThatGoesBackIsNoLongerPoisoned) {
  if (!has_address_sanitizer) GTEST_SKIP() << "needs the address sanitizer";
  std::vector<void*> nodes;
  {
    NodeSlabs slabs;
    std::vector<bool> seen;
    for (uint64_t id = 0; id < 200000; ++id) {  // 8 MB, all but the first in regions of huge pages
      const uint32_t handle = allocate_with_id(slabs, 3, id);
      nodes.push_back(slabs.address(handle));
      seen.push_back(id > 100000 && id % 2 == 0);
    }
    slabs.sweep(seen);
    EXPECT_TRUE(is_any_poisoned(nodes[199999], 40));
  }
  size_t poisoned = 0;
  for (size_t i = 100000; i < nodes.size(); ++i) poisoned += is_any_poisoned(nodes[i], 40) ? 1 : 0;
  EXPECT_EQ(poisoned, 0U);
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
  for (int step = 0; step < 20000; ++step) {
    const size_t target = step % 4000 < 2000 ? 400 : 10;
    if (model.size() < target && random() % 3 != 0) {
      const Node node = {arities[random() % 7], static_cast<char>('a' + random() % 26)};
      ASSERT_TRUE(model.emplace(allocate(slabs, node.arity, node.filling), node).second);
    } else if (!model.empty()) {
      const auto victim = std::next(model.begin(), static_cast<ptrdiff_t>(random() % model.size()));
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
