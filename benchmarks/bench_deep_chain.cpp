// Measures the operations on a chain of nested terms, stage by stage, in nanoseconds for each term
// of the chain. No stage recurses over terms: run it with a stack of 256 KiB (ulimit -s 256).

#include <benchmark/benchmark.h>

#include <cstdint>
#include <optional>
#include <ostream>

#include "benchmarks/measure.h"
#include "quill/printers/outterm.h"
#include "quill/terms/termmanager/term_manager.h"

namespace {

using quill::Term_;
using quill::TermManager;
using quill::bench::time_stage;

void deep_chain(benchmark::State& state) {
  const int64_t length = state.range(0);
  for (auto _ : state) {
    std::optional<TermManager> manager(std::in_place);
    std::optional<TermManager> other(std::in_place);
    const quill::DataType* bits = manager->get_bv_type(32);
    const Term_* leaf = manager->make_constant(manager->make_symbol("x", bits));
    const Term_* step = manager->make_constant(manager->make_symbol("c", bits));
    const Term_* new_leaf = manager->make_constant(manager->make_symbol("y", bits));

    const Term_* chain = leaf;
    time_stage(state, "build", length, [&] {
      for (int64_t i = 0; i < length; ++i) chain = manager->make_bv_add(chain, step);
    });
    time_stage(state, "again", length, [&] {
      const Term_* same = leaf;
      for (int64_t i = 0; i < length; ++i) same = manager->make_bv_add(same, step);
      if (same != chain) state.SkipWithError("the chain was built twice");
    });
    time_stage(state, "substitute", length, [&] {
      const Term_* image = manager->substitute(chain, {leaf}, {new_leaf});
      benchmark::DoNotOptimize(image);
    });
    time_stage(state, "copy", length,
               [&] { benchmark::DoNotOptimize(other->copy_term(*manager, chain)); });
    time_stage(state, "print", length, [&] {
      quill::bench::CountingBuffer text;
      std::ostream out(&text);
      out << quill::outterm(&*manager, chain);
      benchmark::DoNotOptimize(text.bytes());
    });
    // Frees the image of the substitution; the walk goes down the whole chain.
    time_stage(state, "collect", length, [&] { manager->gc({chain}, {}, {}); });
    if (manager->get_bank()->size() < static_cast<size_t>(length)) {
      state.SkipWithError("the chain was collected");
    }
    time_stage(state, "destroy", 2 * length, [&] {
      manager.reset();
      other.reset();
    });
  }
}

BENCHMARK(deep_chain)->ArgName("terms")->Arg(10'000)->Arg(10'000'000)->Iterations(1);

}  // namespace
