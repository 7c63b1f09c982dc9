// Compares designs for a store of terms, without types and symbols: how a request is hashed, where
// nodes live, and how a node is found. docs/performance.md has the results. The first design is
// that of the term bank.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "benchmarks/measure.h"
#include "benchmarks/term_shapes.h"
#include "quill/utils/huge_pages.h"
#include "quill/utils/intern_index.h"

namespace {

using quill::InternIndex;
using quill::bench::cpu_nanoseconds;
using quill::bench::Random;

// All tables of the indices ask for huge pages, as InternIndex does.
template <class T>
using Table = std::vector<T, quill::huge_pages::Allocator<T>>;

struct Node {
  uint64_t id;
  uint64_t symbol;
  const Node* args[2];
};

// Which property of an argument is hashed.
struct HashAddresses {
  static uint64_t key(const Node* n) { return reinterpret_cast<std::uintptr_t>(n); }
};
struct HashIds {
  static uint64_t key(const Node* n) { return n->id; }
};

// Where nodes live. Both number them from 0.
class Slabs {
 public:
  Node* allocate() {
    if (count % slab_nodes == 0) slabs.push_back(std::make_unique<Node[]>(slab_nodes));
    return at(count++);
  }
  Node* at(size_t i) const { return &slabs[i / slab_nodes][i % slab_nodes]; }
  size_t size() const { return count; }

 private:
  static constexpr size_t slab_nodes = 2048;
  std::vector<std::unique_ptr<Node[]>> slabs;
  size_t count = 0;
};
class SingleNodes {
 public:
  Node* allocate() {
    nodes.push_back(std::make_unique<Node>());
    return nodes.back().get();
  }
  Node* at(size_t i) const { return nodes[i].get(); }
  size_t size() const { return nodes.size(); }

 private:
  std::vector<std::unique_ptr<Node>> nodes;
};

// How a node is found. Each index calls hash_of(node) only when growth needs the hash.
//
// Slots of 32 bits of hash and a number: growth reads no node.
class HashSlots {
 public:
  template <class Equal, class HashOf>
  bool insert_if_new(uint32_t hash, size_t next, const Equal& equal, const HashOf&, size_t* found) {
    const uint32_t handle = index.find(hash, equal);
    if (handle != InternIndex::none) {
      *found = handle;
      return false;
    }
    index.reserve_one();
    index.insert(hash, static_cast<uint32_t>(next));
    return true;
  }

 private:
  InternIndex index;
};

// Slots that hold only a number, 4 bytes: every probe reads a node, and growth reads all nodes.
class BareSlots {
 public:
  template <class Equal, class HashOf>
  bool insert_if_new(uint32_t hash, size_t next, const Equal& equal, const HashOf& hash_of,
                     size_t* found) {
    if (2 * (taken + 1) > slots.size()) grow(hash_of);
    size_t i = hash & (slots.size() - 1);
    for (; slots[i] != none; i = (i + 1) & (slots.size() - 1)) {
      if (equal(slots[i])) {
        *found = slots[i];
        return false;
      }
    }
    slots[i] = static_cast<uint32_t>(next);
    ++taken;
    return true;
  }

 private:
  static constexpr uint32_t none = UINT32_MAX;

  template <class HashOf>
  void grow(const HashOf& hash_of) {
    Table<uint32_t> larger(slots.empty() ? 64 : 2 * slots.size(), none);
    for (const uint32_t slot : slots) {
      if (slot == none) continue;
      size_t i = hash_of(slot) & (larger.size() - 1);
      while (larger[i] != none) i = (i + 1) & (larger.size() - 1);
      larger[i] = slot;
    }
    slots.swap(larger);
  }

  Table<uint32_t> slots;
  size_t taken = 0;
};

// Chains from buckets, one bucket for each node on average; the hash is in the link, so that growth
// reads only links.
class Chains {
 public:
  template <class Equal, class HashOf>
  bool insert_if_new(uint32_t hash, size_t next, const Equal& equal, const HashOf&, size_t* found) {
    if (links.size() == buckets.size()) grow();
    uint32_t& bucket = buckets[hash & (buckets.size() - 1)];
    for (uint32_t i = bucket; i != none; i = links[i].next) {
      if (links[i].hash == hash && equal(i)) {
        *found = i;
        return false;
      }
    }
    links.push_back({hash, bucket});
    bucket = static_cast<uint32_t>(next);
    return true;
  }

 private:
  static constexpr uint32_t none = UINT32_MAX;
  struct Link {  // of the node with the same number
    uint32_t hash;
    uint32_t next;
  };

  void grow() {
    buckets.assign(buckets.empty() ? 64 : 2 * buckets.size(), none);
    for (uint32_t i = 0; i < links.size(); ++i) {
      uint32_t& bucket = buckets[links[i].hash & (buckets.size() - 1)];
      links[i].next = bucket;
      bucket = i;
    }
  }

  Table<uint32_t> buckets;
  Table<Link> links;
};

template <class Hash, class Nodes, class Index>
class Store {
 public:
  const Node* make(uint64_t symbol, const Node* a, const Node* b) {
    const auto equal = [&](size_t i) {
      const Node* n = nodes.at(i);
      return n->symbol == symbol && n->args[0] == a && n->args[1] == b;
    };
    const auto hash_of = [this](size_t i) {
      const Node* n = nodes.at(i);
      return hash(n->symbol, n->args[0], n->args[1]);
    };
    size_t found = 0;
    const size_t next = nodes.size();
    if (!index.insert_if_new(hash(symbol, a, b), next, equal, hash_of, &found)) {
      return nodes.at(found);
    }
    Node* n = nodes.allocate();
    *n = {next, symbol, {a, b}};
    return n;
  }

 private:
  static uint32_t hash(uint64_t symbol, const Node* a, const Node* b) {
    uint64_t h = symbol * 0x9e3779b97f4a7c15;
    for (const Node* n : {a, b}) {
      h = ((h ^ (h >> 32)) + (n == nullptr ? 0 : Hash::key(n))) * 0xd1b54a32d192ed03;
    }
    return InternIndex::fold(h);
  }

  Nodes nodes;
  Index index;
};

// A random graph, built and asked for again.
template <class AnyStore>
void random_graph(benchmark::State& state) {
  const size_t count = static_cast<size_t>(state.range(0));
  const size_t leaves = 1000;
  double build = 0;
  double again = 0;
  for (auto _ : state) {
    AnyStore store;
    std::vector<const Node*> nodes;
    nodes.reserve(leaves + count);
    for (size_t i = 0; i < leaves; ++i) nodes.push_back(store.make(5 + i, nullptr, nullptr));
    for (double* time : {&build, &again}) {
      nodes.resize(leaves);
      Random random(1);
      const double start = cpu_nanoseconds();
      for (size_t i = 0; i < count; ++i) {
        const uint64_t symbol = (random.next() >> 8) % 5;
        const Node* a = nodes[random.below(nodes.size())];
        nodes.push_back(store.make(symbol, a, nodes[random.below(nodes.size())]));
      }
      *time += cpu_nanoseconds() - start;
    }
  }
  const double made = static_cast<double>(state.iterations() * state.range(0));
  state.counters["build"] = build / made;
  state.counters["again"] = again / made;
}

using AsTheBank = Store<HashAddresses, Slabs, HashSlots>;
using HashingIds = Store<HashIds, Slabs, HashSlots>;
using AllocatingEachNode = Store<HashAddresses, SingleNodes, HashSlots>;
using WithBareSlots = Store<HashAddresses, Slabs, BareSlots>;
using WithChains = Store<HashAddresses, Slabs, Chains>;

BENCHMARK(random_graph<AsTheBank>)->ArgName("terms")->Arg(10'000)->Arg(2'000'000);
BENCHMARK(random_graph<HashingIds>)->ArgName("terms")->Arg(10'000)->Arg(2'000'000);
BENCHMARK(random_graph<AllocatingEachNode>)->ArgName("terms")->Arg(10'000)->Arg(2'000'000);
BENCHMARK(random_graph<WithBareSlots>)->ArgName("terms")->Arg(10'000)->Arg(2'000'000);
BENCHMARK(random_graph<WithChains>)->ArgName("terms")->Arg(10'000)->Arg(2'000'000);

}  // namespace
