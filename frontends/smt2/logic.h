// What the logic of a script provides: the theories whose names it reserves.
//
// A logic's name is read as a combination (QF_AUFLIRA: arrays, uninterpreted functions, linear
// arithmetic over integers and reals). ALL, no logic and names that are no such combination provide
// every theory. That a logic is linear, or without quantifiers, restricts nothing here.

#ifndef FRONTENDS_SMT2_LOGIC_H
#define FRONTENDS_SMT2_LOGIC_H

#include <cstdint>
#include <string>

namespace quill::smt2 {

enum class Theory : uint8_t {
  CORE,
  INTS,
  REALS,
  ARITHMETIC,  // what Ints and Reals have in common
  REALS_INTS,  // what takes both, such as to_real
  ARRAYS,
  BIT_VECTORS,
  FLOATING_POINT,
  STRINGS,
};

// The theory in words, for messages: "the theory of arrays".
const char* describe(Theory theory);

class Logic {
 public:
  // No logic: every theory.
  Logic() = default;
  explicit Logic(const std::string& logic_name);

  // Empty when no logic is set.
  const std::string& name() const { return logic_name; }

  bool has(Theory theory) const { return (theories & bits_of(theory)) != 0; }

  // Numerals are reals where the logic has reals and no integers.
  bool numerals_are_real() const { return has(Theory::REALS) && !has(Theory::INTS); }

 private:
  static constexpr uint32_t bit(Theory theory) { return 1u << static_cast<unsigned>(theory); }
  static constexpr uint32_t bits_of(Theory theory) {
    return theory == Theory::ARITHMETIC ? bit(Theory::INTS) | bit(Theory::REALS) : bit(theory);
  }

  std::string logic_name;
  uint32_t theories = ~0u;
};

}  // namespace quill::smt2

#endif
