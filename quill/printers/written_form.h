// How an application is written: its operator and the operands that stand behind it.
//
// Mostly the symbol and its arguments. Subtraction and negation, which have no symbols, are written
// as such:
//
//   a + (-1) * b     (- a b)
//   (-1) * b         (- b)      unless b is a numeral, because (- 3) reads as the numeral -3
//
// so that difference constraints keep the shape that readers of difference logic ask for.

#ifndef QUILL_PRINTERS_WRITTEN_FORM_H
#define QUILL_PRINTERS_WRITTEN_FORM_H

#include <cstdint>

#include "quill/printers/smtlib2_operators.h"
#include "quill/terms/term.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill {

struct WrittenForm {
  enum Kind : uint8_t { Application, Subtraction, Negation };

  struct Operand {
    const Term_* term;
    const DataType* expected;  // what its place asks for; the term's own type may be a subtype
  };

  WrittenForm(const TermManager& manager, const Term_* t);

  uint64_t num_operands() const {
    return kind == Application ? term->symbol->arity : kind == Subtraction ? 2 : 1;
  }

  Operand operand(uint64_t i) const;

  // Whether the first operand, written in the same form, can be opened up: (op (op a b) c) as (op a
  // b c).
  bool joins_with(const WrittenForm& first) const {
    return first.term->symbol == term->symbol && first.kind == kind &&
           (kind == Subtraction || (op != nullptr && kind == Application && op->left_associative));
  }

  const Term_* term;
  Kind kind = Application;
  const SmtLib2Operator* op;  // null: written by the name of the symbol
};

}  // namespace quill

#endif
