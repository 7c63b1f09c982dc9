// Measures operators with parameters: `first` makes a symbol for each request, `again` finds it.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <optional>

#include "benchmarks/term_shapes.h"
#include "quill/terms/termmanager/term_manager.h"

namespace {

using quill::Term_;
using quill::TermManager;

// A manager with operands. A request is a number below `requests`, each with parameters of its own.
class Operators {
 public:
  static constexpr size_t requests = 2016;  // ranges msb:lsb with lsb < msb < 64

  Operators() {
    bits = quill::bench::make_constants(manager, "b", 1, 64)[0];
    rounding = manager.make_fprounding_even();
    for (size_t i = 0; i < 45; ++i) {
      const quill::DataType* type = manager.get_fp_type(2 + i, 50);
      floats.push_back(manager.make_constant(manager.make_symbol("f" + std::to_string(i), type)));
    }
    index = manager.get_int_type();
    for (size_t i = 0; i < requests; ++i) {
      const quill::DataType* type = manager.get_array_type(index, manager.get_bv_type(i + 1));
      arrays.push_back(manager.make_constant(manager.make_symbol("a" + std::to_string(i), type)));
    }
    integer = manager.make_number(7);
  }

  const Term_* extract(size_t i) {
    size_t msb = 1;
    for (; i >= msb; ++msb) i -= msb;
    return manager.make_bv_extract(msb, i, bits);
  }
  const Term_* zero_extend(size_t i) { return manager.make_bv_zero_extend(i, bits); }
  const Term_* rotate(size_t i) { return manager.make_bv_rotate_left(i, bits); }
  const Term_* fp_cast(size_t i) {
    return manager.make_fp_cast(2 + i / 45, 51, rounding, floats[i % 45]);
  }
  const Term_* array_read(size_t i) { return manager.make_array_read(arrays[i], integer); }
  const Term_* congruence(size_t i) {
    return manager.make_int_modular_congruence(quill::QNumber(i + 1), integer, integer);
  }

 private:
  TermManager manager;
  const Term_* bits;
  const Term_* rounding;
  const Term_* integer;
  const quill::DataType* index;
  quill::bench::Terms floats;
  quill::bench::Terms arrays;
};

using Builder = const Term_* (Operators::*)(size_t);

void make_all(Operators& operators, Builder build) {
  for (size_t i = 0; i < Operators::requests; ++i) {
    benchmark::DoNotOptimize((operators.*build)(i));
  }
}

void first(benchmark::State& state, Builder build) {
  std::optional<Operators> operators(std::in_place);
  for (auto _ : state) {
    make_all(*operators, build);
    state.PauseTiming();
    operators.emplace();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(Operators::requests));
}

void again(benchmark::State& state, Builder build) {
  Operators operators;
  make_all(operators, build);
  for (auto _ : state) make_all(operators, build);
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(Operators::requests));
}

#define QUILL_BENCHMARK_OPERATOR(name)              \
  BENCHMARK_CAPTURE(first, name, &Operators::name); \
  BENCHMARK_CAPTURE(again, name, &Operators::name)

QUILL_BENCHMARK_OPERATOR(extract);
QUILL_BENCHMARK_OPERATOR(zero_extend);
QUILL_BENCHMARK_OPERATOR(rotate);
QUILL_BENCHMARK_OPERATOR(fp_cast);
QUILL_BENCHMARK_OPERATOR(array_read);
QUILL_BENCHMARK_OPERATOR(congruence);

}  // namespace
