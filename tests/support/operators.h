// Every operator in a list that is independent of the library's: how its symbol and its term are
// made, and how its symbol is recognised.

#ifndef TESTS_SUPPORT_OPERATORS_H
#define TESTS_SUPPORT_OPERATORS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "quill/utils/qnumber.h"

namespace quill {
class DataType;
class Symbol;
class Term_;
class TermManager;
}  // namespace quill

namespace quill::testing {

using Terms = std::vector<const Term_*>;
using Names = std::vector<std::string>;

// What makers and builders take besides terms, in their order. They read what they need.
struct Parameters {
  std::array<size_t, 4> numbers{};
  std::array<const DataType*, 2> types{};
  QNumber number{};  // of any size
};

// The text for outputs of recognisers that were not requested, or not written.
constexpr const char* untouched = "untouched";
constexpr const char* not_asked = "not asked";

// A recogniser of any signature, with its outputs as text.
struct Recogniser {
  size_t outputs = 0;
  // Bit i of the mask: whether the i-th output pointer is not null.
  std::function<bool(const TermManager&, const Symbol*, unsigned mask, Names& texts)> ask = nullptr;
  // The outputs as numbers, into an array that may be null; only if all are numbers. Nothing but
  // the library allocates.
  std::function<bool(const TermManager&, const Symbol*, std::array<size_t, 4>*)> read = nullptr;
};

// What the symbol's maker takes, and what its name ends with.
enum class Indices {
  None,     // and there is no maker
  Type,     // of the operands
  Modulus,  // any integer
  Width,
  TwoWidths,         // of the operands
  Part,              // the highest bit, the lowest, and the width of the operand
  Amount,            // and the width of the operand
  Array,             // the type of the indices and that of the elements
  Format,            // exponent and significand
  FormatAndItsBits,  // the maker takes the format; in the name its width follows
  BitsAndFormat,     // the maker takes the format; in the name its width comes first
  TwoFormats,        // of the operand and of the result
  WidthAndFormat,    // of the operand and of the result
  FormatAndWidth     // of the operand and of the result
};

struct Operator {
  int tag;
  const char* operation;  // what the errors of the builder call it
  const char* stem;       // what comes before the indices in the symbol's name
  Indices indices;
  uint64_t arity;
  std::function<const Term_*(TermManager&, const Parameters&, std::span<const Term_* const>)> build;
  std::function<const Symbol*(TermManager&, const Parameters&)> make_symbol;  // or none
  Recogniser recognise;                                                       // or none
};

// In the order of the tags, from 1 to 71.
const std::vector<Operator>& operators();

// The operators from tag 13 on, each of which has a family of symbols.
std::span<const Operator> operator_families();

const Operator& operator_of(int tag);

}  // namespace quill::testing

#endif
