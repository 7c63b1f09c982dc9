// What a symbol is, as a value: the one door to all operators, for programs that treat many of them
// alike, such as bindings, evaluators and file formats.
//
//   const Operator op = m.operator_of(t->symbol);
//   switch (op.tag) {
//     case SymbolTag::BV_ADD:     ... op.numbers[0] is the width ...
//     case SymbolTag::BV_EXTRACT: ... op.numbers is {highest bit, lowest bit, width of the operand}
//     ...
//   }
//   assert(m.make_operator(op, t->arguments()) == t);
//
// An Operator is made by operator_of, or by hand from a tag and what the maker of its symbol takes.
// Its types belong to one manager.

#ifndef QUILL_TERMS_TERMMANAGER_OPERATOR_H
#define QUILL_TERMS_TERMMANAGER_OPERATOR_H

#include <array>
#include <cstdint>

#include "quill/terms/termmanager/symbol_tag.h"
#include "quill/utils/qnumber.h"

namespace quill {

class DataType;
class Symbol;

struct Operator {
  enum class Kind : uint8_t {
    Operator,      // of a theory, among them true and false
    Numeral,       // is_number gives its value
    RoundingMode,  // one of the four constants
    Constant,      // a user's
    Variable,      // of make_fresh_variable
    Function       // a user's, with arguments
  };

  Kind kind = Kind::Operator;

  // Which operator; NONE for all other kinds.
  SymbolTag::tag tag = SymbolTag::NONE;

  // The numbers that the maker of the symbol takes, in its order: make_bv_add_symbol(width),
  // make_fp_cast_symbol(e1, m1, e2, m2). 0 where there are fewer.
  std::array<uint64_t, 4> numbers{};

  // Of an array operator: the type of the indices and that of the elements. The first of them also
  // is the type of the operands of PLUS, TIMES, LEQ and EQUAL, and of the branches of TERM_ITE.
  std::array<const DataType*, 2> types{};

  // Of INT_MODULAR_CONGRUENCE.
  QNumber modulus = 0;

  // The symbol itself, for every kind other than Operator.
  const Symbol* symbol = nullptr;

  bool operator==(const Operator&) const = default;
};

}  // namespace quill

#endif
