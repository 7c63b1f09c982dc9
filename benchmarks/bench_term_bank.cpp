// Measures TermBank without the manager: nothing is checked and no operator is looked up.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "benchmarks/term_shapes.h"
#include "quill/terms/signature.h"
#include "quill/terms/term_bank.h"
#include "quill/terms/type_universe.h"

namespace {

using quill::Symbol;
using quill::Term_;
using quill::TermBank;

struct Requests {
  const Symbol* symbol;
  size_t arity;
  std::vector<const Term_*> arguments;  // arity for each request
};

// A bank with constants, and distinct requests over them: the arguments of request i are the digits
// of i in the base of the number of constants.
class BankBenchmark : public benchmark::Fixture {
 public:
  void SetUp(benchmark::State& state) override {
    universe.emplace();
    signature.emplace(&*universe);
    bank.emplace();
    const size_t arity = static_cast<size_t>(state.range(0));
    const size_t count = static_cast<size_t>(state.range(1));
    const quill::DataType* type = universe->make_type("S");
    const size_t num_constants = arity == 1 ? count : 4096;
    for (size_t i = 0; i < num_constants; ++i) {
      const Symbol* s = signature->add_symbol(("c" + std::to_string(i)).c_str(), type);
      constants.push_back(bank->make_term(s, nullptr));
    }
    std::vector<const quill::DataType*> function = {universe->get_application_type()};
    function.insert(function.end(), arity + 1, type);
    requests = {signature->add_symbol("f", universe->make_type(function)), arity, {}};
    for (size_t i = 0; i < count; ++i) {
      size_t rest = i;
      for (size_t k = 0; k < arity; k++, rest /= num_constants) {
        requests.arguments.push_back(constants[rest % num_constants]);
      }
    }
  }

  void TearDown(benchmark::State&) override {
    bank.reset();
    signature.reset();
    universe.reset();
    constants.clear();
  }

  void make_all() {
    const Term_* const* arguments = requests.arguments.data();
    const Term_* const* end = arguments + requests.arguments.size();
    for (; arguments != end; arguments += requests.arity) {
      benchmark::DoNotOptimize(bank->make_term(requests.symbol, arguments));
    }
  }

 protected:
  std::optional<quill::TypeUniverse> universe;
  std::optional<quill::Signature> signature;
  std::optional<TermBank> bank;
  std::vector<const Term_*> constants;
  Requests requests;
};

// Existing terms.
BENCHMARK_DEFINE_F(BankBenchmark, hit)(benchmark::State& state) {
  make_all();
  for (auto _ : state) make_all();
  state.SetItemsProcessed(state.iterations() * state.range(1));
}

// New terms, with the growth of the bank.
BENCHMARK_DEFINE_F(BankBenchmark, miss)(benchmark::State& state) {
  for (auto _ : state) {
    make_all();
    state.PauseTiming();
    TearDown(state);
    SetUp(state);
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * state.range(1));
}

// New terms in a bank that was as large before: freed nodes and ids are reused.
BENCHMARK_DEFINE_F(BankBenchmark, miss_after_removal)(benchmark::State& state) {
  make_all();
  const std::vector<bool> constants_only(constants.size(), true);
  for (auto _ : state) {
    state.PauseTiming();
    bank->remove_unseen(constants_only);
    state.ResumeTiming();
    make_all();
  }
  state.SetItemsProcessed(state.iterations() * state.range(1));
}

// How long it takes to free them all.
BENCHMARK_DEFINE_F(BankBenchmark, remove)(benchmark::State& state) {
  const std::vector<bool> constants_only(constants.size(), true);
  for (auto _ : state) {
    state.PauseTiming();
    make_all();
    state.ResumeTiming();
    bank->remove_unseen(constants_only);
  }
  state.SetItemsProcessed(state.iterations() * state.range(1));
}

void arities_and_sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"arity", "terms"})->ArgsProduct({{1, 2, 8}, {10'000, 1'000'000}});
}

BENCHMARK_REGISTER_F(BankBenchmark, hit)->Apply(arities_and_sizes);
BENCHMARK_REGISTER_F(BankBenchmark, miss)->Apply(arities_and_sizes);
BENCHMARK_REGISTER_F(BankBenchmark, miss_after_removal)->Apply(arities_and_sizes);
BENCHMARK_REGISTER_F(BankBenchmark, remove)->Apply(arities_and_sizes);

}  // namespace
