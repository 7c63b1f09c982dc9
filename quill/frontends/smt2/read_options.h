// What a caller may choose about reading a script.

#ifndef QUILL_FRONTENDS_SMT2_READ_OPTIONS_H
#define QUILL_FRONTENDS_SMT2_READ_OPTIONS_H

#include <cstdint>
#include <string>

namespace quill::smt2 {

struct ReadOptions {
  // The logic in force until the script sets one: it decides which names belong to theories, and
  // whether 3 is an Int. Empty: all theories.
  std::string default_logic;

  // What is larger than its text by no constant factor, counted over the whole script and refused
  // beyond these numbers: pairs of the arguments of `distinct`, and bits that are written one by
  // one, those of conversions between integers and bit-vectors and of wide floating-point
  // constants.
  uint64_t max_pairs = 2'000'000;
  uint64_t max_bits = 2'000'000;

  // Whether the script is to be written with conversions in terms of the standard. They do not
  // count otherwise.
  bool expands_conversions = true;
};

}  // namespace quill::smt2

#endif
