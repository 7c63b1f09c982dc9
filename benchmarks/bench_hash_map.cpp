// Measures hsh::HashMap with keys as the library uses them: small numbers in order (ids) and
// addresses.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <utility>
#include <vector>

#include "quill/utils/hash_map.h"

namespace {

using Map = quill::hsh::HashMap<uint64_t, uint64_t>;

// The keys 0, stride, 2 * stride, ...; a stride of 32 stands for addresses.
std::vector<uint64_t> make_keys(const benchmark::State& state) {
  std::vector<uint64_t> keys;
  for (int64_t i = 0; i < state.range(0); ++i) {
    keys.push_back(static_cast<uint64_t>(i * state.range(1)));
  }
  return keys;
}

void fill(Map& map, const std::vector<uint64_t>& keys) {
  for (const uint64_t key : keys) map.insert(std::make_pair(key, key));
}

// Filling an empty map, including growth and the release of the nodes.
void insert(benchmark::State& state) {
  const std::vector<uint64_t> keys = make_keys(state);
  for (auto _ : state) {
    Map map;
    fill(map, keys);
    benchmark::DoNotOptimize(map.count);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void find_present(benchmark::State& state) {
  const std::vector<uint64_t> keys = make_keys(state);
  Map map;
  fill(map, keys);
  for (auto _ : state) {
    for (const uint64_t key : keys) benchmark::DoNotOptimize(map.find(key));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void find_absent(benchmark::State& state) {
  const std::vector<uint64_t> keys = make_keys(state);
  Map map;
  fill(map, keys);
  const uint64_t beyond = keys.back() + 1;
  for (auto _ : state) {
    for (const uint64_t key : keys) benchmark::DoNotOptimize(map.find(beyond + key));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void walk(benchmark::State& state) {
  Map map;
  fill(map, make_keys(state));
  for (auto _ : state) {
    uint64_t sum = 0;
    for (const auto& entry : map) sum += entry.second;
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void sizes_and_strides(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"keys", "stride"})->ArgsProduct({{100, 10'000, 1'000'000}, {1, 32}});
}

BENCHMARK(insert)->Apply(sizes_and_strides);
BENCHMARK(find_present)->Apply(sizes_and_strides);
BENCHMARK(find_absent)->Apply(sizes_and_strides);
BENCHMARK(walk)->Apply(sizes_and_strides);

}  // namespace
