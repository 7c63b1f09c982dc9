// Measures how the shape of the graph affects the time that a term takes: `build` if the term is
// new, `again` if it exists. With a good index and hash, no shape costs much more than the random
// graph.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>

#include "benchmarks/measure.h"
#include "benchmarks/term_shapes.h"
#include "quill/terms/termmanager/term_manager.h"

namespace {

using quill::TermManager;
using quill::bench::Shape;
using quill::bench::Terms;

void shapes(benchmark::State& state) {
  const Shape shape = static_cast<Shape>(state.range(0));
  const size_t count = static_cast<size_t>(state.range(1));
  state.SetLabel(quill::bench::shape_names[state.range(0)]);
  double build = 0;
  double again = 0;
  for (auto _ : state) {
    TermManager manager;
    Terms terms = quill::bench::make_leaves(manager, shape, count);
    const size_t leaves = terms.size();
    terms.reserve(leaves + count);
    double start = quill::bench::cpu_nanoseconds();
    quill::bench::add_shape(manager, shape, terms, count);
    build += quill::bench::cpu_nanoseconds() - start;
    terms.resize(leaves);
    start = quill::bench::cpu_nanoseconds();
    quill::bench::add_shape(manager, shape, terms, count);
    again += quill::bench::cpu_nanoseconds() - start;
  }
  const double terms_made = static_cast<double>(state.iterations() * state.range(1));
  state.counters["build"] = build / terms_made;
  state.counters["again"] = again / terms_made;
}

BENCHMARK(shapes)
    ->ArgNames({"shape", "terms"})
    ->ArgsProduct({{0, 1, 2, 3, 4}, {10'000, 2'000'000}});

}  // namespace
