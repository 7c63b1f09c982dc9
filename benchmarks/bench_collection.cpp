// Measures gc on a grid of terms that do not refer to each other, of which one in a hundred is
// kept: the oldest terms, or terms scattered over the grid; and on a graph that is kept whole,
// where gc only walks.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>

#include "benchmarks/term_shapes.h"
#include "quill/terms/termmanager/term_manager.h"

namespace {

using quill::Term_;
using quill::TermManager;
using quill::bench::Shape;
using quill::bench::Terms;

void collect_grid(benchmark::State& state, bool strewn) {
  TermManager manager;
  const size_t count = static_cast<size_t>(state.range(0));
  Terms terms = quill::bench::make_leaves(manager, Shape::Grid, count);
  const size_t leaves = terms.size();
  for (auto _ : state) {
    state.PauseTiming();
    terms.resize(leaves);
    quill::bench::add_shape(manager, Shape::Grid, terms, count);
    Terms roots(terms.begin(), terms.begin() + static_cast<std::ptrdiff_t>(leaves));
    for (size_t i = 0; i < count / 100; ++i) {
      roots.push_back(terms[leaves + (strewn ? 100 * i + 7 * i % 100 : i)]);
    }
    state.ResumeTiming();
    manager.gc(roots, {}, {});
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void oldest_kept(benchmark::State& state) { collect_grid(state, /*strewn=*/false); }
void strewn_kept(benchmark::State& state) { collect_grid(state, /*strewn=*/true); }

void all_kept(benchmark::State& state) {
  TermManager manager;
  const size_t terms = static_cast<size_t>(state.range(0));
  const Term_* root = quill::bench::make_connected_graph(manager, terms, 1);
  for (auto _ : state) manager.gc({root}, {}, {});
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(oldest_kept)->ArgName("terms")->Arg(10'000)->Arg(1'000'000);
BENCHMARK(strewn_kept)->ArgName("terms")->Arg(10'000)->Arg(1'000'000);
BENCHMARK(all_kept)->ArgName("terms")->Arg(10'000)->Arg(1'000'000);

}  // namespace
