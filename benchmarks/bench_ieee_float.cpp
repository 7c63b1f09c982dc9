// Measures IEEEFloat: rounding of rationals to several formats, and bit patterns.

#include <benchmark/benchmark.h>

#include <cstdint>

#include "quill/utils/ieee_float.h"

namespace {

using quill::IEEEFloat;
using quill::QNumber;

IEEEFloat::format format_of(const benchmark::State& state) {
  return {static_cast<uint64_t>(state.range(0)), static_cast<uint64_t>(state.range(1))};
}

void round(benchmark::State& state, const char* text) {
  const QNumber value = QNumber::from_string(text);
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        IEEEFloat::from_number(value, format_of(state), IEEEFloat::ROUND_EVEN).get_bits());
  }
}

void from_bits(benchmark::State& state) {
  const QNumber bits(21845);
  for (auto _ : state) {
    benchmark::DoNotOptimize(IEEEFloat::from_bits(bits, format_of(state)).get_bits());
  }
}

// Half, single, double and quadruple precision.
void formats(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"e", "m"})->Args({5, 10})->Args({8, 23})->Args({11, 52})->Args({15, 112});
}

BENCHMARK_CAPTURE(round, third, "1/3")->Apply(formats);
BENCHMARK_CAPTURE(round, large, "-123456789012345678901234567890/7")->Apply(formats);
BENCHMARK(from_bits)->Apply(formats);

}  // namespace
