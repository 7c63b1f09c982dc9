// Measures hsh::HashSet with keys in random order, the case that bench_hash_map.cpp leaves out:
// insertion, look-up, and erasure with reuse of the nodes.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "benchmarks/term_shapes.h"
#include "quill/utils/hash_set.h"

namespace {

using Set = quill::hsh::HashSet<uint64_t>;

std::vector<uint64_t> make_keys(const benchmark::State& state) {
  quill::bench::Random random(1);
  std::vector<uint64_t> keys;
  for (int64_t i = 0; i < state.range(0); ++i) keys.push_back(random.next());
  return keys;
}

void insert(benchmark::State& state) {
  const std::vector<uint64_t> keys = make_keys(state);
  for (auto _ : state) {
    Set set;
    for (const uint64_t key : keys) set.insert(key);
    benchmark::DoNotOptimize(set.count);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void find_present(benchmark::State& state) {
  const std::vector<uint64_t> keys = make_keys(state);
  Set set;
  for (const uint64_t key : keys) set.insert(key);
  for (auto _ : state) {
    for (const uint64_t key : keys) benchmark::DoNotOptimize(set.find(key));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

// One key is erased and a new one is inserted.
void replace(benchmark::State& state) {
  const std::vector<uint64_t> keys = make_keys(state);
  Set set;
  for (const uint64_t key : keys) set.insert(key);
  uint64_t round = 0;
  for (auto _ : state) {
    for (const uint64_t key : keys) {
      set.erase(set.find(key + round));
      set.insert(key + round + 1);
    }
    ++round;
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(insert)->ArgName("keys")->Arg(100)->Arg(10'000)->Arg(1'000'000);
BENCHMARK(find_present)->ArgName("keys")->Arg(100)->Arg(10'000)->Arg(1'000'000);
BENCHMARK(replace)->ArgName("keys")->Arg(100)->Arg(10'000)->Arg(1'000'000);

}  // namespace
