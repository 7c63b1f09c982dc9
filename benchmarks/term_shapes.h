// Graphs of bit-vector terms in shapes that stores of terms find easy or hard, for benchmarks. A
// shape built twice with the same seed makes the same requests.

#ifndef BENCHMARKS_TERM_SHAPES_H
#define BENCHMARKS_TERM_SHAPES_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"

namespace quill::bench {

using Terms = std::vector<const Term_*>;

// Random numbers (splitmix64), the same on every system.
class Random {
 public:
  explicit Random(uint64_t seed) : state(seed) {}

  uint64_t next() {
    uint64_t z = state += 0x9e3779b97f4a7c15;
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9;
    z = (z ^ (z >> 27)) * 0x94d049bb133111eb;
    return z ^ (z >> 31);
  }

  // Below bound, which is below 2^32.
  size_t below(size_t bound) { return static_cast<size_t>(((next() >> 32) * bound) >> 32); }

 private:
  uint64_t state;
};

// Constants prefix0, prefix1, ... of so many bits.
inline Terms make_constants(TermManager& manager, const std::string& prefix, size_t count,
                            size_t width) {
  Terms constants;
  for (size_t i = 0; i < count; ++i) {
    const Symbol* s = manager.make_symbol(prefix + std::to_string(i), manager.get_bv_type(width));
    constants.push_back(manager.make_constant(s));
  }
  return constants;
}

// One of five operators.
inline const Term_* make_some_operator(TermManager& manager, uint64_t choice, const Term_* a,
                                       const Term_* b) {
  switch (choice % 5) {
    case 0:
      return manager.make_bv_add(a, b);
    case 1:
      return manager.make_bv_mul(a, b);
    case 2:
      return manager.make_bv_and(a, b);
    case 3:
      return manager.make_bv_or(a, b);
    default:
      return manager.make_bv_xor(a, b);
  }
}

// Appends `count` terms to a list that holds constants; the arguments of each are two terms before
// it.
inline void add_random_graph(TermManager& manager, Terms& terms, size_t count, uint64_t seed) {
  Random random(seed);
  for (size_t i = 0; i < count; ++i) {
    const uint64_t choice = random.next() >> 8;
    const Term_* a = terms[random.below(terms.size())];
    terms.push_back(make_some_operator(manager, choice, a, terms[random.below(terms.size())]));
  }
}

// A graph whose root reaches most of `count` terms; the arguments of each are two of the last
// hundred terms before it.
inline const Term_* make_connected_graph(TermManager& manager, size_t count, uint64_t seed) {
  Terms terms = make_constants(manager, "x", 100, 32);
  Random random(seed);
  for (size_t i = 0; i < count; ++i) {
    const Term_* other = terms[terms.size() - 1 - random.below(100)];
    terms.push_back(make_some_operator(manager, random.next() >> 8, terms.back(), other));
  }
  return terms.back();
}

enum class Shape : uint8_t { RandomGraph, LeftChain, RightChain, Grid, ExtractGrid };
inline constexpr const char* shape_names[] = {"random_graph", "left_chain", "right_chain", "grid",
                                              "extract_grid"};

// The constants that a shape of so many terms is built from.
inline Terms make_leaves(TermManager& manager, Shape shape, size_t count) {
  switch (shape) {
    case Shape::RandomGraph:
    case Shape::LeftChain:
    case Shape::RightChain:
      return make_constants(manager, "x", 1000, 32);
    case Shape::Grid: {
      size_t side = 1;
      while (side * side < count) side++;
      return make_constants(manager, "x", side, 32);
    }
    case Shape::ExtractGrid:
      return make_constants(manager, "x", count / (64 * 65 / 2) + 1, 64);
  }
  return {};
}

// Appends the terms of a shape to its leaves: (op t x) and (op x t) for the chains, (op x_i x_j)
// for all i and j, and x_i[msb:lsb] for all ranges of 64 bits.
inline void add_shape(TermManager& manager, Shape shape, Terms& terms, size_t count) {
  const size_t leaves = terms.size();
  switch (shape) {
    case Shape::RandomGraph:
      add_random_graph(manager, terms, count, 1);
      return;
    case Shape::LeftChain:
      for (size_t i = 0; i < count; ++i) {
        terms.push_back(manager.make_bv_add(terms.back(), terms[0]));
      }
      return;
    case Shape::RightChain:
      for (size_t i = 0; i < count; ++i) {
        terms.push_back(manager.make_bv_add(terms[0], terms.back()));
      }
      return;
    case Shape::Grid:
      for (size_t i = 0; i < count; ++i) {
        terms.push_back(manager.make_bv_add(terms[i / leaves], terms[i % leaves]));
      }
      return;
    case Shape::ExtractGrid:
      for (size_t leaf = 0; leaf < leaves; ++leaf) {
        for (size_t msb = 0; msb < 64; ++msb) {
          for (size_t lsb = 0; lsb <= msb && terms.size() < leaves + count; ++lsb) {
            terms.push_back(manager.make_bv_extract(msb, lsb, terms[leaf]));
          }
        }
      }
      return;
  }
}

}  // namespace quill::bench

#endif
