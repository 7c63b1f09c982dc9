// Measures the front end on scripts that the benchmark has written: a graph with shared terms, a
// chain, and declarations. The time is for each byte read and includes the manager's.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "benchmarks/term_shapes.h"
#include "quill/frontends/smt2/smt2.h"
#include "quill/printers/outterm.h"
#include "quill/terms/termmanager/term_manager.h"

namespace {

using quill::Term_;
using quill::TermManager;
using quill::bench::Terms;

void read(benchmark::State& state, const std::string& text) {
  for (auto _ : state) {
    TermManager manager;
    std::istringstream input(text);
    benchmark::DoNotOptimize(quill::smt2::read(input, manager));
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}

std::string declarations(size_t count) {
  std::string text = "(set-logic QF_BV)\n";
  for (size_t i = 0; i < count; ++i) {
    text += "(declare-const x" + std::to_string(i) + " (_ BitVec 32))\n";
  }
  return text;
}

std::string assertion(TermManager& manager, const Term_* root) {
  std::ostringstream text;
  text << "(assert " << quill::outterm(&manager, manager.make_equal(root, root)) << ")\n";
  return text.str();
}

void shared_graph(benchmark::State& state) {
  TermManager manager;
  const size_t terms = static_cast<size_t>(state.range(0));
  const Term_* root = quill::bench::make_connected_graph(manager, terms, 1);
  read(state, declarations(100) + assertion(manager, root));
}

void chain(benchmark::State& state) {
  TermManager manager;
  Terms terms = quill::bench::make_constants(manager, "x", 1, 32);
  quill::bench::add_shape(manager, quill::bench::Shape::LeftChain, terms,
                          static_cast<size_t>(state.range(0)));
  read(state, declarations(1) + assertion(manager, terms.back()));
}

void declared_constants(benchmark::State& state) {
  read(state, declarations(static_cast<size_t>(state.range(0))));
}

BENCHMARK(shared_graph)->ArgName("terms")->Arg(1'000)->Arg(100'000);
BENCHMARK(chain)->ArgName("terms")->Arg(1'000)->Arg(100'000);
BENCHMARK(declared_constants)->ArgName("terms")->Arg(1'000)->Arg(100'000);

}  // namespace
