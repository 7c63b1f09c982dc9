// The choices that a caller has about reading a script.

#ifndef QUILL_FRONTENDS_SMT2_READ_OPTIONS_H
#define QUILL_FRONTENDS_SMT2_READ_OPTIONS_H

#include <cstdint>
#include <string>

namespace quill::smt2 {

struct ReadOptions {
  // The logic in force until the script sets one. It decides which names belong to theories, and
  // whether 3 is an Int. Empty: all theories.
  std::string default_logic;

  // Limits for terms that are larger than their text by more than a constant factor, counted over
  // the whole script; the reader rejects a script that exceeds them. They count the pairs of the
  // arguments of `distinct`, and the bits that are written one by one: those of conversions between
  // integers and bit-vectors and of wide floating-point constants.
  uint64_t max_pairs = 2'000'000;
  uint64_t max_bits = 2'000'000;

  // Whether the script will be written with conversions expressed by operators of the standard. If
  // not, conversions do not count.
  bool expands_conversions = true;
};

}  // namespace quill::smt2

#endif
