// The symbols of the theories in SMT-LIB 2.6, by tag.

#ifndef QUILL_PRINTERS_SMTLIB2_OPERATORS_H
#define QUILL_PRINTERS_SMTLIB2_OPERATORS_H

#include <cstddef>
#include <iterator>

#include "quill/terms/termmanager/symbol_tag.h"

namespace quill {

struct SmtLib2Operator {
  SymbolTag::tag tag;
  const char* text;
  bool left_associative;  // (op (op a b) c) may be written (op a b c)
};

// clang-format off
constexpr SmtLib2Operator smtlib2_operators[] = {
    {SymbolTag::NONE,     "",       false},
    {SymbolTag::TRUE,     "true",   false},
    {SymbolTag::FALSE,    "false",  false},
    {SymbolTag::AND,      "and",    true},
    {SymbolTag::OR,       "or",     true},
    {SymbolTag::NOT,      "not",    false},
    {SymbolTag::IFF,      "=",      false},
    {SymbolTag::PLUS,     "+",      true},
    {SymbolTag::TIMES,    "*",      true},
    {SymbolTag::FLOOR,    "to_int", false},
    {SymbolTag::LEQ,      "<=",     false},
    {SymbolTag::EQUAL,    "=",      false},
    {SymbolTag::TERM_ITE, "ite",    false},
};
// clang-format on

constexpr bool smtlib2_operators_in_order() {
  for (size_t i = 0; i < std::size(smtlib2_operators); i++) {
    if (smtlib2_operators[i].tag != static_cast<SymbolTag::tag>(i)) return false;
  }
  return std::size(smtlib2_operators) == SymbolTag::TERM_ITE + 1;
}
static_assert(smtlib2_operators_in_order(), "one row for each tag up to TERM_ITE, in order");

// The row of a tag, or null for NONE and for tags without a form of their own.
constexpr const SmtLib2Operator* find_smtlib2_operator(SymbolTag::tag tag) {
  if (tag == SymbolTag::NONE || static_cast<size_t>(tag) >= std::size(smtlib2_operators))
    return nullptr;
  return &smtlib2_operators[tag];
}

}  // namespace quill

#endif
