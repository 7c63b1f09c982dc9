// Measures TermVisitor: each term of a shared graph once, and each path of a tree.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "benchmarks/term_shapes.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/terms/termmanager/term_visitor.h"

namespace {

using quill::Term_;
using quill::TermManager;

struct Count {
  int64_t visited = 0;
  int visit(const Term_*, bool preorder) {
    visited += !preorder;
    return 2;
  }
};

// With marks that are kept from walk to walk, as a user with many walks keeps them.
void walk(benchmark::State& state, const Term_* root, bool once) {
  std::vector<bool> marks;
  Count count;
  quill::TermVisitor<Count> visitor(&count, once);
  visitor.set_marks(&marks);
  for (auto _ : state) visitor.visit(root, true);
  state.SetItemsProcessed(count.visited);
}

void shared_graph(benchmark::State& state) {
  TermManager manager;
  const size_t terms = static_cast<size_t>(state.range(0));
  walk(state, quill::bench::make_connected_graph(manager, terms, 1), true);
}

void chain(benchmark::State& state) {
  TermManager manager;
  quill::bench::Terms terms = quill::bench::make_constants(manager, "x", 1, 32);
  quill::bench::add_shape(manager, quill::bench::Shape::LeftChain, terms,
                          static_cast<size_t>(state.range(0)));
  walk(state, terms.back(), true);
}

// Every level doubles the paths.
void tree(benchmark::State& state) {
  TermManager manager;
  const Term_* root = quill::bench::make_constants(manager, "x", 1, 32)[0];
  for (int64_t paths = 1; paths < state.range(0); paths *= 2) {
    root = manager.make_bv_add(root, root);
  }
  walk(state, root, false);
}

// A walk that reaches three terms of a large manager, with marks of its own.
void small_part(benchmark::State& state) {
  TermManager manager;
  quill::bench::Terms terms = quill::bench::make_constants(manager, "x", 1, 32);
  quill::bench::add_shape(manager, quill::bench::Shape::LeftChain, terms,
                          static_cast<size_t>(state.range(0)));
  const Term_* root = manager.make_bv_not(manager.make_bv_neg(terms[0]));
  walk(state, root, true);
}

BENCHMARK(shared_graph)->ArgName("terms")->Arg(1'000)->Arg(100'000)->Arg(1'000'000);
BENCHMARK(chain)->ArgName("terms")->Arg(1'000)->Arg(100'000)->Arg(1'000'000);
BENCHMARK(tree)->ArgName("paths")->Arg(1'000)->Arg(1'000'000);
BENCHMARK(small_part)->ArgName("terms")->Arg(1'000)->Arg(10'000'000);

}  // namespace
