// Measures substitute: ten constants of a shared graph and of a chain replaced by others, and a
// second call that finds all images in the map of the first.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "benchmarks/term_shapes.h"
#include "quill/terms/termmanager/term_manager.h"

namespace {

using quill::Term_;
using quill::TermManager;
using quill::bench::Terms;

// Each call uses different constants as replacements, so that all images are new. The images of the
// previous call are collected while the clock is stopped.
void substitute(benchmark::State& state, TermManager& manager, const Term_* root,
                const Terms& from) {
  int64_t round = 0;
  for (auto _ : state) {
    state.PauseTiming();
    manager.gc({root}, {}, {});
    const Terms to =
        quill::bench::make_constants(manager, "y" + std::to_string(round++) + "_", from.size(), 32);
    state.ResumeTiming();
    benchmark::DoNotOptimize(manager.substitute(root, from, to));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

Terms first_constants(TermManager& manager, size_t count) {
  return quill::bench::make_constants(manager, "x", count, 32);
}

void shared_graph(benchmark::State& state) {
  TermManager manager;
  const size_t terms = static_cast<size_t>(state.range(0));
  const Term_* root = quill::bench::make_connected_graph(manager, terms, 1);
  substitute(state, manager, root, first_constants(manager, 10));
}

void chain(benchmark::State& state) {
  TermManager manager;
  Terms terms = first_constants(manager, 1);
  quill::bench::add_shape(manager, quill::bench::Shape::LeftChain, terms,
                          static_cast<size_t>(state.range(0)));
  substitute(state, manager, terms.back(), {terms[0]});
}

// The map holds the image of the root.
void known_images(benchmark::State& state) {
  TermManager manager;
  const size_t terms = static_cast<size_t>(state.range(0));
  const Term_* root = quill::bench::make_connected_graph(manager, terms, 1);
  const Terms from = first_constants(manager, 10);
  const Terms to = quill::bench::make_constants(manager, "y", 10, 32);
  TermManager::TermMap cache;
  std::vector<bool> marks;
  manager.substitute(root, from, to, cache, marks);
  for (auto _ : state) {
    benchmark::DoNotOptimize(manager.substitute(root, cache, marks, false));
  }
}

BENCHMARK(shared_graph)->ArgName("terms")->Arg(1'000)->Arg(100'000)->Arg(1'000'000);
BENCHMARK(chain)->ArgName("terms")->Arg(1'000)->Arg(100'000)->Arg(1'000'000);
BENCHMARK(known_images)->ArgName("terms")->Arg(1'000)->Arg(100'000);

}  // namespace
