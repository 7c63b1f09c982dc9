// Measures printing: a graph with shared terms, a tower whose tree has 2^levels leaves, a chain
// without sharing, and one wide conjunction. The time is for each term.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <ostream>

#include "benchmarks/measure.h"
#include "benchmarks/term_shapes.h"
#include "quill/printers/outterm.h"
#include "quill/terms/termmanager/term_manager.h"

namespace {

using quill::Term_;
using quill::TermManager;
using quill::bench::Terms;

void print(benchmark::State& state, TermManager& manager, const Term_* root) {
  size_t bytes = 0;
  for (auto _ : state) {
    quill::bench::CountingBuffer text;
    std::ostream out(&text);
    out << quill::outterm(&manager, root);
    bytes = text.bytes();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(manager.get_bank()->size()));
  state.counters["bytes"] = static_cast<double>(bytes);
}

void shared_graph(benchmark::State& state) {
  TermManager manager;
  const size_t terms = static_cast<size_t>(state.range(0));
  print(state, manager, quill::bench::make_connected_graph(manager, terms, 1));
}

void tower(benchmark::State& state) {
  TermManager manager;
  const Terms leaves = quill::bench::make_constants(manager, "x", 2, 32);
  const Term_* top = leaves[0];
  for (int64_t level = 0; level < state.range(0); ++level) {
    top = manager.make_bv_add(top, manager.make_bv_xor(top, leaves[1]));
  }
  print(state, manager, top);
}

void chain(benchmark::State& state) {
  TermManager manager;
  Terms terms = quill::bench::make_constants(manager, "x", 1, 32);
  quill::bench::add_shape(manager, quill::bench::Shape::LeftChain, terms,
                          static_cast<size_t>(state.range(0)));
  print(state, manager, terms.back());
}

// One function with very many arguments, each a small term of its own.
void flat(benchmark::State& state) {
  TermManager manager;
  const quill::DataType* bits = manager.get_bv_type(32);
  const size_t count = static_cast<size_t>(state.range(0));
  const Terms constants = quill::bench::make_constants(manager, "x", count / 2, 32);
  Terms arguments;
  for (const Term_* constant : constants) arguments.push_back(manager.make_bv_not(constant));
  const quill::Symbol* f = manager.make_symbol(
      "f",
      manager.get_function_type(std::vector<const quill::DataType*>(arguments.size(), bits), bits));
  print(state, manager, manager.make_uninterpreted_function(f, arguments));
}

BENCHMARK(shared_graph)->ArgName("terms")->Arg(1'000)->Arg(100'000);
BENCHMARK(tower)->ArgName("levels")->Arg(100)->Arg(10'000);
BENCHMARK(chain)->ArgName("terms")->Arg(1'000)->Arg(1'000'000);
BENCHMARK(flat)->ArgName("terms")->Arg(1'000)->Arg(1'000'000);

}  // namespace
