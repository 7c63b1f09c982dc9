// Measures InternIndex alone, with random hashes and objects that cost nothing to compare.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "benchmarks/term_shapes.h"
#include "quill/utils/intern_index.h"

namespace {

using quill::InternIndex;

std::vector<uint32_t> make_hashes(const benchmark::State& state) {
  quill::bench::Random random(1);
  std::vector<uint32_t> hashes;
  for (int64_t i = 0; i < state.range(0); ++i) {
    hashes.push_back(InternIndex::fold(random.next()));
  }
  return hashes;
}

void fill(InternIndex& index, const std::vector<uint32_t>& hashes) {
  for (uint32_t handle = 0; handle < hashes.size(); ++handle) {
    index.reserve_one();
    index.insert(hashes[handle], handle);
  }
}

void insert(benchmark::State& state) {
  const std::vector<uint32_t> hashes = make_hashes(state);
  for (auto _ : state) {
    InternIndex index;
    fill(index, hashes);
    benchmark::DoNotOptimize(index.size());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void find_present(benchmark::State& state) {
  const std::vector<uint32_t> hashes = make_hashes(state);
  InternIndex index;
  fill(index, hashes);
  for (auto _ : state) {
    for (const uint32_t hash : hashes) {
      benchmark::DoNotOptimize(index.find(hash, [](uint32_t) { return true; }));
    }
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void find_absent(benchmark::State& state) {
  const std::vector<uint32_t> hashes = make_hashes(state);
  InternIndex index;
  fill(index, hashes);
  for (auto _ : state) {
    for (const uint32_t hash : hashes) {
      benchmark::DoNotOptimize(index.find(~hash, [](uint32_t) { return false; }));
    }
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

// An entry is erased and inserted again.
void erase_and_insert(benchmark::State& state) {
  const std::vector<uint32_t> hashes = make_hashes(state);
  InternIndex index;
  fill(index, hashes);
  for (auto _ : state) {
    for (uint32_t handle = 0; handle < hashes.size(); ++handle) {
      index.erase(hashes[handle], handle);
      index.insert(hashes[handle], handle);
    }
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(insert)->ArgName("entries")->Arg(100)->Arg(10'000)->Arg(1'000'000);
BENCHMARK(find_present)->ArgName("entries")->Arg(100)->Arg(10'000)->Arg(1'000'000);
BENCHMARK(find_absent)->ArgName("entries")->Arg(100)->Arg(10'000)->Arg(1'000'000);
BENCHMARK(erase_and_insert)->ArgName("entries")->Arg(100)->Arg(10'000)->Arg(1'000'000);

}  // namespace
