// Measures how symbols are made: named ones, unique ones on one base, fresh variables; and the
// signature without the manager.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "quill/terms/signature.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/terms/type_universe.h"

namespace {

using quill::TermManager;

// The names x0, x1, ...
std::vector<std::string> make_names(const benchmark::State& state) {
  std::vector<std::string> names;
  for (int64_t i = 0; i < state.range(0); ++i) names.push_back("x" + std::to_string(i));
  return names;
}

void signature_add(benchmark::State& state) {
  const std::vector<std::string> names = make_names(state);
  for (auto _ : state) {
    quill::TypeUniverse universe;
    quill::Signature signature(&universe);
    const quill::DataType* type = universe.make_type("S");
    for (const std::string& name : names) {
      benchmark::DoNotOptimize(signature.add_symbol(name.c_str(), type));
    }
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void signature_get(benchmark::State& state) {
  const std::vector<std::string> names = make_names(state);
  quill::TypeUniverse universe;
  quill::Signature signature(&universe);
  const quill::DataType* type = universe.make_type("S");
  for (const std::string& name : names) signature.add_symbol(name.c_str(), type);
  for (auto _ : state) {
    for (const std::string& name : names) {
      benchmark::DoNotOptimize(signature.get_symbol(name.c_str()));
    }
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

// The three ways to a symbol, in a manager that is destroyed with them.
template <class Make>
void make_symbols(benchmark::State& state, Make make) {
  const std::vector<std::string> names = make_names(state);
  for (auto _ : state) {
    TermManager manager;
    for (const std::string& name : names) benchmark::DoNotOptimize(make(manager, name));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void named(benchmark::State& state) {
  make_symbols(state, [](TermManager& m, const std::string& name) {
    return m.make_symbol(name, m.get_int_type());
  });
}

void unique(benchmark::State& state) {
  make_symbols(state, [](TermManager& m, const std::string&) {
    return m.make_unique_symbol("base", m.get_int_type());
  });
}

void fresh_variables(benchmark::State& state) {
  make_symbols(state, [](TermManager& m, const std::string&) {
    return m.make_fresh_variable(m.get_int_type());
  });
}

BENCHMARK(signature_add)->ArgName("names")->Arg(1'000)->Arg(1'000'000);
BENCHMARK(signature_get)->ArgName("names")->Arg(1'000)->Arg(1'000'000);
BENCHMARK(named)->ArgName("names")->Arg(1'000)->Arg(1'000'000);
BENCHMARK(unique)->ArgName("names")->Arg(1'000)->Arg(1'000'000);
BENCHMARK(fresh_variables)->ArgName("names")->Arg(1'000)->Arg(1'000'000);

}  // namespace
