#include "quill/printers/written_form.h"

namespace quill {

namespace {

bool is_minus_one(const TermManager& manager, const Term_* t) {
  QNumber value;
  return manager.is_number(t->symbol, &value) && value == QNumber(-1);
}

// Whether t is (-1) * b for a b that is not a numeral.
bool is_negation(const TermManager& manager, const Term_* t) {
  return manager.get_tag(t->symbol) == SymbolTag::TIMES && is_minus_one(manager, t->args[0]) &&
         !manager.is_number(t->args[1]->symbol, nullptr);
}

// Whether t is (-1) * b for any b, as the second operand of a subtraction.
bool is_subtrahend(const TermManager& manager, const Term_* t) {
  return manager.get_tag(t->symbol) == SymbolTag::TIMES && is_minus_one(manager, t->args[0]);
}

}  // namespace

WrittenForm::WrittenForm(const TermManager& manager, const Term_* t)
    : term(t), op(find_smtlib2_operator(manager.get_tag(t->symbol))) {
  if (op == nullptr) return;
  if (op->tag == SymbolTag::TIMES && is_negation(manager, t)) {
    kind = Negation;
  } else if (op->tag == SymbolTag::PLUS && is_subtrahend(manager, t->args[1]) &&
             t->args[1]->symbol->get_output_type() == t->symbol->get_output_type()) {
    kind = Subtraction;
  }
}

WrittenForm::Operand WrittenForm::operand(uint64_t i) const {
  switch (kind) {
    case Application:
      break;
    case Subtraction:
      if (i == 1) return {term->args[1]->args[1], term->symbol->type->get_component(2)};
      break;
    case Negation:
      return {term->args[1], term->symbol->type->get_component(2)};
  }
  return {term->args[i], term->symbol->type->get_component(i + 1)};
}

}  // namespace quill
