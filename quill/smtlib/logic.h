// What a logic of SMT-LIB 2.6 provides: theories, whose names it reserves, and the kinds of terms
// that it admits.
//
// A logic's name is read as a combination of pieces: QF_AUFLIRA has arrays, uninterpreted functions
// and linear arithmetic over integers and reals. ALL, the absence of a logic, and names that are
// not such a combination provide everything.

#ifndef QUILL_SMTLIB_LOGIC_H
#define QUILL_SMTLIB_LOGIC_H

#include <cstdint>
#include <string>
#include <string_view>

namespace quill {

enum class Theory : uint8_t {
  NoTheory,  // no logic has it
  Core,
  Ints,
  Reals,
  Arithmetic,  // what Ints and Reals have in common
  RealsInts,   // what needs both, such as to_real
  Arrays,
  BitVectors,
  FloatingPoint,
  Bits,  // what bit-vectors and floating-point numbers have in common: sorts and literals
  Strings,
  Extensions,  // theories beyond the standard, which readers have in logics that provide everything

  // Former spellings.
  NONE = NoTheory,
  CORE = Core,
  INTS = Ints,
  REALS = Reals,
  ARITHMETIC = Arithmetic,
  REALS_INTS = RealsInts,
  ARRAYS = Arrays,
  BIT_VECTORS = BitVectors,
  FLOATING_POINT = FloatingPoint,
  BITS = Bits,
  STRINGS = Strings,
  EXTENSIONS = Extensions,
};

// The theory in words, for messages: "the theory of arrays".
const char* describe(Theory theory);

// What terms may need of a logic: a set of flags.
struct LogicNeeds {
  bool ints = false;
  bool reals = false;
  bool both = false;            // to_real, to_int
  bool free_functions = false;  // uninterpreted functions with arguments
  bool linear = false;          // more than differences: products with numbers, division by numbers
  bool nonlinear = false;       // products of terms
  bool free_sorts = false;      // uninterpreted sorts
  bool arrays = false;
  bool bits = false;         // bit-vector terms that do not name their sort
  bool bit_vectors = false;  // the sort by name, or operators
  bool floating_point = false;
  bool everything = false;  // what readers have only in logics that provide everything
};

class Logic {
 public:
  // No logic: provides everything.
  Logic() = default;
  explicit Logic(std::string_view logic_name_);

  // Empty when no logic is set.
  const std::string& name() const { return logic_name; }

  bool has(Theory theory) const { return (theories & bits_of(theory)) != 0; }

  // Whether readers reserve a name that they give to the theory `readers`, so that no symbol can be
  // written by it. In a combination that they do not know, readers have everything.
  bool is_taken(Theory readers) const {
    return has(readers) || (!widely_known && readers != Theory::NoTheory);
  }

  // Whether products must have a constant factor.
  bool is_linear() const { return order == Order::Difference || order == Order::Linear; }

  // Whether the name says that terms may be multiplied: true for N logics, false for ALL.
  bool is_nonlinear() const { return order == Order::Any && !has(Theory::Extensions); }

  // Numerals are reals if the logic has no integers, and has reals or makes floating-point numbers
  // from numerals.
  bool numerals_are_real() const {
    return !has(Theory::Ints) && (has(Theory::Reals) || has(Theory::FloatingPoint));
  }

  bool covers(const LogicNeeds& needs) const;

  // This logic if it covers the needs; otherwise the smallest combination of this logic and the
  // needs that readers know by name, or ALL.
  Logic extended_by(const LogicNeeds& needs) const;

 private:
  enum class Order : uint8_t { NoProducts, Difference, Linear, Any };

  static constexpr uint32_t bit(Theory theory) { return 1u << static_cast<unsigned>(theory); }
  static constexpr uint32_t bits_of(Theory theory) {
    return theory == Theory::NoTheory     ? 0
           : theory == Theory::Arithmetic ? bit(Theory::Ints) | bit(Theory::Reals)
           : theory == Theory::Bits       ? bit(Theory::BitVectors) | bit(Theory::FloatingPoint)
                                          : bit(theory);
  }

  std::string logic_name;
  uint32_t theories = ~0u;
  bool free_sorts = true;
  bool free_functions = true;
  bool widely_known = true;  // whether readers with a fixed list of logics know this one
  Order order = Order::Any;  // of the products in arithmetic
};

}  // namespace quill

#endif
