// Helpers of the benchmarks that measure stages of one run, memory, or output.

#ifndef BENCHMARKS_MEASURE_H
#define BENCHMARKS_MEASURE_H

#include <benchmark/benchmark.h>
#include <time.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <streambuf>
#include <string>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace quill::bench {

// The processor time of this thread, in nanoseconds, which excludes that of other programs.
inline double cpu_nanoseconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return 1e9 * static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec);
}

// Runs a stage and reports what it takes for each of `items` as the counter `name`, in nanoseconds.
template <class Stage>
void time_stage(benchmark::State& state, const std::string& name, int64_t items, Stage&& stage) {
  const double start = cpu_nanoseconds();
  stage();
  state.counters[name] = (cpu_nanoseconds() - start) / static_cast<double>(items);
}

// The resident memory of the process, in bytes; 0 if the system does not report it.
inline double resident_bytes() {
  std::ifstream statm("/proc/self/statm");
  double all = 0;
  double resident = 0;
  statm >> all >> resident;
  return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

// The same without freed memory that the allocator keeps, where the allocator can be asked to give
// it back.
inline double resident_bytes_in_use() {
#ifdef __GLIBC__
  malloc_trim(0);
#endif
  return resident_bytes();
}

// A stream buffer that counts the characters written and keeps none.
class CountingBuffer : public std::streambuf {
 public:
  CountingBuffer() { setp(buffer, end()); }
  size_t bytes() const { return flushed + static_cast<size_t>(pptr() - pbase()); }

 private:
  char* end() { return buffer + sizeof buffer; }
  int_type overflow(int_type c) override {
    flushed = bytes();
    setp(buffer, end());
    return traits_type::eq_int_type(c, traits_type::eof()) ? traits_type::not_eof(c)
                                                           : sputc(traits_type::to_char_type(c));
  }

  char buffer[1 << 14];
  size_t flushed = 0;
};

}  // namespace quill::bench

#endif
