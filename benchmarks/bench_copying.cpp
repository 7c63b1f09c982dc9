// Measures copying between managers: a whole graph, and three terms of a manager with very many
// terms.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <optional>

#include "benchmarks/term_shapes.h"
#include "quill/terms/termmanager/term_manager.h"

namespace {

using quill::Term_;
using quill::TermManager;
using quill::bench::Shape;
using quill::bench::Terms;

void copy_whole(benchmark::State& state, const TermManager& source, const Term_* root) {
  std::optional<TermManager> target(std::in_place);
  for (auto _ : state) {
    benchmark::DoNotOptimize(target->copy_term(source, root));
    state.PauseTiming();
    target.emplace();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void shared_graph(benchmark::State& state) {
  TermManager source;
  const size_t terms = static_cast<size_t>(state.range(0));
  const Term_* root = quill::bench::make_connected_graph(source, terms, 1);
  copy_whole(state, source, root);
}

void chain(benchmark::State& state) {
  TermManager source;
  Terms terms = quill::bench::make_constants(source, "x", 1, 32);
  quill::bench::add_shape(source, Shape::LeftChain, terms, static_cast<size_t>(state.range(0)));
  copy_whole(state, source, terms.back());
}

// The three terms have the largest ids. The target has their copies from the first call on, or is a
// new manager each time.
void three_terms(benchmark::State& state, bool to_new_manager) {
  TermManager source;
  Terms terms = quill::bench::make_constants(source, "x", 1, 32);
  quill::bench::add_shape(source, Shape::LeftChain, terms, static_cast<size_t>(state.range(0)));
  const Term_* last = quill::bench::make_constants(source, "last", 1, 32)[0];
  const Term_* root = source.make_bv_not(source.make_bv_neg(last));
  std::optional<TermManager> target(std::in_place);
  for (auto _ : state) {
    benchmark::DoNotOptimize(target->copy_term(source, root));
    if (!to_new_manager) continue;
    state.PauseTiming();
    target.emplace();
    state.ResumeTiming();
  }
}

void sizes_of_source(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("terms")->Arg(1'000)->Arg(100'000)->Arg(10'000'000);
}

BENCHMARK(shared_graph)->ArgName("terms")->Arg(1'000)->Arg(100'000)->Arg(1'000'000);
BENCHMARK(chain)->ArgName("terms")->Arg(1'000)->Arg(100'000)->Arg(1'000'000);
BENCHMARK_CAPTURE(three_terms, again, /*to_new_manager=*/false)->Apply(sizes_of_source);
BENCHMARK_CAPTURE(three_terms, to_new_manager, /*to_new_manager=*/true)->Apply(sizes_of_source);

}  // namespace
