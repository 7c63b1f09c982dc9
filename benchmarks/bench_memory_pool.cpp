// Measures MemoryPool: nodes of a new pool, and nodes that are given back and taken again.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "quill/utils/memory_pool.h"

namespace {

using Pool = quill::MemoryPool<32, false>;
using ZeroPool = quill::MemoryPool<32, true>;

// Including growth and the release of the chunks.
template <class AnyPool>
void fill(benchmark::State& state) {
  for (auto _ : state) {
    AnyPool pool;
    for (int64_t i = 0; i < state.range(0); ++i) benchmark::DoNotOptimize(pool.allocate());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void reuse(benchmark::State& state) {
  Pool pool;
  std::vector<void*> nodes(static_cast<size_t>(state.range(0)));
  for (void*& node : nodes) node = pool.allocate();
  for (auto _ : state) {
    for (void* node : nodes) pool.deallocate(node);
    for (void*& node : nodes) node = pool.allocate();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(fill<Pool>)->ArgName("nodes")->Arg(100)->Arg(10'000)->Arg(1'000'000);
BENCHMARK(fill<ZeroPool>)->ArgName("nodes")->Arg(100)->Arg(10'000)->Arg(1'000'000);
BENCHMARK(reuse)->ArgName("nodes")->Arg(100)->Arg(10'000)->Arg(1'000'000);

}  // namespace
