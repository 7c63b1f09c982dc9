// Measures managers that hold very many binary terms: how much memory a term takes, how the time
// for a term grows with their number, and how much memory a collection gives back to the system.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>

#include "benchmarks/measure.h"
#include "benchmarks/term_shapes.h"
#include "quill/terms/termmanager/term_manager.h"

namespace {

using quill::TermManager;
using quill::bench::Random;
using quill::bench::resident_bytes;
using quill::bench::resident_bytes_in_use;
using quill::bench::Shape;
using quill::bench::Terms;
using quill::bench::time_stage;

// A random graph, built, and asked for again. The times include the picking of arguments at random
// from the program's list of terms; the list is not part of the memory for each term.
void grow(benchmark::State& state) {
  const size_t count = static_cast<size_t>(state.range(0));
  for (auto _ : state) {
    TermManager manager;
    Terms terms = quill::bench::make_leaves(manager, Shape::RandomGraph, count);
    const size_t leaves = terms.size();
    terms.resize(leaves + count);  // makes the list resident before memory is measured
    terms.resize(leaves);
    const double empty = resident_bytes_in_use();
    time_stage(state, "build", state.range(0),
               [&] { quill::bench::add_shape(manager, Shape::RandomGraph, terms, count); });
    const double full = resident_bytes();
    state.counters["bytes_per_term"] =
        (full - empty) / static_cast<double>(manager.get_bank()->size());
    terms.resize(leaves);
    time_stage(state, "again", state.range(0),
               [&] { quill::bench::add_shape(manager, Shape::RandomGraph, terms, count); });
  }
}

enum class Kept { Oldest, Contiguous, Strewn };

// Collects a grid, whose terms do not refer to each other, and keeps one term in a hundred.
void collect(benchmark::State& state, Kept kept) {
  const size_t count = static_cast<size_t>(state.range(0));
  for (auto _ : state) {
    TermManager manager;
    Terms terms = quill::bench::make_leaves(manager, Shape::Grid, count);
    const size_t leaves = terms.size();
    terms.resize(leaves + count);
    terms.resize(leaves);
    Terms roots(terms);
    roots.resize(leaves + count / 100);
    roots.resize(leaves);
    const double empty = resident_bytes_in_use();
    quill::bench::add_shape(manager, Shape::Grid, terms, count);
    const double full = resident_bytes();

    Random random(2);
    for (size_t i = 0; i < count / 100; ++i) {
      size_t choice = i;
      if (kept == Kept::Contiguous) choice += count / 2;
      if (kept == Kept::Strewn) choice = 100 * i + random.below(100);
      roots.push_back(terms[leaves + choice]);
    }
    time_stage(state, "collect", state.range(0), [&] { manager.gc(roots, {}, {}); });
    const double left = resident_bytes();
    if (manager.get_bank()->size() > leaves + count / 100 + 100) {
      state.SkipWithError("terms were left");
    }
    state.counters["megabytes_before"] = (full - empty) / 1e6;
    state.counters["megabytes_after"] = (left - empty) / 1e6;
    state.counters["percent_returned"] = 100 * (full - left) / (full - empty);

    // Freed memory is reused.
    time_stage(state, "again", state.range(0), [&] {
      terms.resize(leaves);
      quill::bench::add_shape(manager, Shape::Grid, terms, count);
    });
    state.counters["megabytes_again"] = (resident_bytes() - empty) / 1e6;
  }
}

void sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("terms")->Iterations(1);
  benchmark->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->Arg(10'000'000)->Arg(30'000'000);
  benchmark->Arg(50'000'000);
}

void collection_sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("terms")->Iterations(1)->Arg(10'000)->Arg(1'000'000)->Arg(50'000'000);
}

BENCHMARK(grow)->Apply(sizes);
BENCHMARK_CAPTURE(collect, oldest, Kept::Oldest)->Apply(collection_sizes);
BENCHMARK_CAPTURE(collect, contiguous, Kept::Contiguous)->Apply(collection_sizes);
BENCHMARK_CAPTURE(collect, strewn, Kept::Strewn)->Apply(collection_sizes);

}  // namespace
