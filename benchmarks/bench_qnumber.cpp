// Measures QNumber in both forms: small, in two words, and big, in a block of GMP integers.

#include <benchmark/benchmark.h>

#include <string>

#include "quill/utils/qnumber.h"

namespace {

using quill::QNumber;

constexpr const char* small_text = "-123456/789";
constexpr const char* big_text =
    "123456789012345678901234567890123456789/98765432109876543210987654321";

void make_from_word(benchmark::State& state) {
  long value = 0;
  for (auto _ : state) benchmark::DoNotOptimize(QNumber(value++));
}

void make_from_word_big(benchmark::State& state) {
  unsigned long value = 1UL << 63;
  for (auto _ : state) benchmark::DoNotOptimize(QNumber(value++));
}

// With operands within the table of greatest common divisors, and beyond it.
void normalize(benchmark::State& state) {
  long part = 6 * state.range(0);
  for (auto _ : state) {
    QNumber number(part, part / 2);
    number.normalize();
    benchmark::DoNotOptimize(number);
  }
}

void normalize_big(benchmark::State& state) {
  const QNumber big = QNumber::from_string(big_text);
  for (auto _ : state) {
    QNumber number(big);
    number.normalize();
    benchmark::DoNotOptimize(number);
  }
}

void read(benchmark::State& state, const char* text) {
  for (auto _ : state) benchmark::DoNotOptimize(QNumber::from_string(text));
}

void write(benchmark::State& state, const char* text) {
  const QNumber number = QNumber::from_string(text);
  for (auto _ : state) benchmark::DoNotOptimize(number.to_str());
}

void copy(benchmark::State& state, const char* text) {
  const QNumber number = QNumber::from_string(text);
  for (auto _ : state) {
    QNumber other(number);
    benchmark::DoNotOptimize(other);
  }
}

void hash_and_compare(benchmark::State& state, const char* text) {
  const QNumber a = QNumber::from_string(text);
  const QNumber b(a);
  for (auto _ : state) {
    benchmark::DoNotOptimize(a.hash());
    benchmark::DoNotOptimize(a == b);
  }
}

BENCHMARK(make_from_word);
BENCHMARK(make_from_word_big);
BENCHMARK(normalize)->ArgName("part")->Arg(100)->Arg(1'000'000'000);
BENCHMARK(normalize_big);
BENCHMARK_CAPTURE(read, small, small_text);
BENCHMARK_CAPTURE(read, big, big_text);
BENCHMARK_CAPTURE(write, small, small_text);
BENCHMARK_CAPTURE(write, big, big_text);
BENCHMARK_CAPTURE(copy, small, small_text);
BENCHMARK_CAPTURE(copy, big, big_text);
BENCHMARK_CAPTURE(hash_and_compare, small, small_text);
BENCHMARK_CAPTURE(hash_and_compare, big, big_text);

}  // namespace
