// Measures what an empty manager costs, and the destruction of a full one.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <optional>

#include "benchmarks/term_shapes.h"
#include "quill/terms/termmanager/term_manager.h"

namespace {

using quill::TermManager;
using quill::bench::Shape;
using quill::bench::Terms;

void create_and_destroy(benchmark::State& state) {
  for (auto _ : state) {
    TermManager manager;
    benchmark::DoNotOptimize(manager.make_true());
  }
}

void destroy(benchmark::State& state) {
  const Shape shape = static_cast<Shape>(state.range(0));
  const size_t count = static_cast<size_t>(state.range(1));
  state.SetLabel(quill::bench::shape_names[state.range(0)]);
  for (auto _ : state) {
    state.PauseTiming();
    std::optional<TermManager> manager(std::in_place);
    Terms terms = quill::bench::make_leaves(*manager, shape, count);
    quill::bench::add_shape(*manager, shape, terms, count);
    state.ResumeTiming();
    manager.reset();
    state.PauseTiming();  // the destruction of the list is not measured
    terms = Terms();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * state.range(1));
}

BENCHMARK(create_and_destroy);
BENCHMARK(destroy)
    ->ArgNames({"shape", "terms"})
    ->ArgsProduct({{0, 1, 2, 3, 4}, {10'000, 10'000'000}})
    ->Iterations(1);

}  // namespace
