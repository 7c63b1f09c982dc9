// Measures the builders of the manager, one of each shape. `hit` asks for existing terms, `miss`
// for new ones, in a manager that grows.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "benchmarks/term_shapes.h"
#include "quill/terms/termmanager/term_manager.h"

namespace {

using quill::DataType;
using quill::QNumber;
using quill::Symbol;
using quill::Term_;
using quill::TermManager;
using quill::bench::Terms;

// A manager with the operands of the requests below. A request is a number; numbers below the
// square of `side` are distinct requests.
class Builders {
 public:
  static constexpr size_t side = 1024;

  Builders() : bits(quill::bench::make_constants(manager, "b", side, 32)) {
    const DataType* integer = manager.get_int_type();
    for (size_t i = 0; i < side; ++i) {
      const std::string number = std::to_string(i);
      integers.push_back(manager.make_constant(manager.make_symbol("i" + number, integer)));
      propositions.push_back(
          manager.make_constant(manager.make_symbol("p" + number, manager.get_bool_type())));
    }
    function = manager.make_symbol("f", manager.get_function_type({integer, integer}, integer));
  }

  const Term_* bv_add(size_t i) { return manager.make_bv_add(bits[i / side], bits[i % side]); }
  const Term_* bv_ult(size_t i) { return manager.make_bv_ult(bits[i / side], bits[i % side]); }
  const Term_* plus(size_t i) { return manager.make_plus(integers[i / side], integers[i % side]); }
  const Term_* conjunction(size_t i) {
    return manager.make_and(propositions[i / side], propositions[i % side]);
  }
  const Term_* equality(size_t i) {
    return manager.make_equal(integers[i / side], integers[i % side]);
  }
  const Term_* if_then_else(size_t i) {
    return manager.make_term_ite(propositions[i / side], integers[i % side], integers[0]);
  }
  const Term_* application(size_t i) {
    arguments = {integers[i / side], integers[i % side]};
    return manager.make_uninterpreted_function(function, arguments);
  }
  const Term_* numeral(size_t i) { return manager.make_number(QNumber(i)); }
  const Term_* fraction(size_t i) {
    QNumber value(2 * i + 1, 1 << 20);
    return manager.make_number(value);
  }
  const Term_* bv_numeral(size_t i) { return manager.make_bv_number(QNumber(i), 32); }
  const Term_* fp_numeral(size_t i) { return manager.make_fp_bits_number(QNumber(i), 8, 23); }

 private:
  TermManager manager;
  Terms bits;
  Terms integers;
  Terms propositions;
  const Symbol* function;
  Terms arguments;
};

using Builder = const Term_* (Builders::*)(size_t);

void make_all(Builders& builders, Builder build, int64_t count) {
  for (int64_t i = 0; i < count; ++i) {
    benchmark::DoNotOptimize((builders.*build)(static_cast<size_t>(i)));
  }
}

void hit(benchmark::State& state, Builder build) {
  Builders builders;
  make_all(builders, build, state.range(0));
  for (auto _ : state) make_all(builders, build, state.range(0));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void miss(benchmark::State& state, Builder build) {
  std::optional<Builders> builders(std::in_place);
  for (auto _ : state) {
    make_all(*builders, build, state.range(0));
    state.PauseTiming();
    builders.emplace();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("terms")->Arg(10'000)->Arg(1'000'000);
}

#define QUILL_BENCHMARK_BUILDER(name)                          \
  BENCHMARK_CAPTURE(hit, name, &Builders::name)->Apply(sizes); \
  BENCHMARK_CAPTURE(miss, name, &Builders::name)->Apply(sizes)

QUILL_BENCHMARK_BUILDER(bv_add);
QUILL_BENCHMARK_BUILDER(bv_ult);
QUILL_BENCHMARK_BUILDER(plus);
QUILL_BENCHMARK_BUILDER(conjunction);
QUILL_BENCHMARK_BUILDER(equality);
QUILL_BENCHMARK_BUILDER(if_then_else);
QUILL_BENCHMARK_BUILDER(application);
QUILL_BENCHMARK_BUILDER(numeral);
QUILL_BENCHMARK_BUILDER(fraction);
QUILL_BENCHMARK_BUILDER(bv_numeral);
QUILL_BENCHMARK_BUILDER(fp_numeral);

}  // namespace
