#include "quill/printers/written_form.h"

#include <utility>

#include "quill/utils/qnumber_arithmetic.h"

namespace quill {

namespace {

// Whether t is an arithmetic numeral. Numerals of other types may have any value if nothing is
// checked.
bool is_arithmetic_number(const TermManager& manager, const Term_* t, QNumber* value) {
  const DataType* type = t->type();
  return (type == manager.get_int_type() || type == manager.get_rat_type()) &&
         manager.is_number(t->symbol, value);
}

bool is_product(const TermManager& manager, const Term_* t) {
  return is_operator(manager, t->symbol, SymbolTag::TIMES);
}

bool is_minus_one(const TermManager& manager, const Term_* t) {
  QNumber value;
  return is_arithmetic_number(manager, t, &value) && value == QNumber(-1);
}

// Whether t is (-1) * b for any b, like the second operand of a subtraction. Most products fail
// before the comparison of types, which takes longest.
bool is_subtrahend(const TermManager& manager, const Term_* t) {
  return manager.get_tag(t->symbol) == SymbolTag::TIMES && t->symbol->arity == 2 &&
         is_minus_one(manager, t->args[0]) && is_product(manager, t);
}

// The same for a b that is not a numeral.
bool is_negation(const TermManager& manager, const Term_* t) {
  return is_subtrahend(manager, t) && !manager.is_number(t->args[1]->symbol, nullptr);
}

// Whether t is (1/c) * i, a product over Real, for an Int i and an integer c > 0.
bool is_part_of_int(const TermManager& manager, const Term_* t) {
  QNumber factor;
  if (!is_product(manager, t) || t->type() != manager.get_rat_type() ||
      t->args[1]->type() != manager.get_int_type() ||
      !is_arithmetic_number(manager, t->args[0], &factor)) {
    return false;
  }
  if (factor.is_big()) return mpz_cmp_ui(factor.big_num(), 1) == 0;
  return factor.num == 1;
}

// Whether the second operand of a congruence is an integer.
bool is_congruence_to_numeral(const TermManager& manager, const Term_* t) {
  QNumber value;
  return is_arithmetic_number(manager, t->args[1], &value) && value.is_integer();
}

// Whether t is ite(0 <= a, a, (-1) * a) with all operators over the type of a.
bool is_absolute_value(const TermManager& manager, const Term_* t) {
  const DataType* type = t->type();
  if (type != manager.get_int_type() && type != manager.get_rat_type()) return false;
  const Term_* condition = t->args[0];
  const Term_* otherwise = t->args[2];
  QNumber bound;
  return is_operator(manager, condition->symbol, SymbolTag::LEQ) &&
         condition->symbol->type->get_component(1) == type && condition->args[1] == t->args[1] &&
         is_arithmetic_number(manager, condition->args[0], &bound) && bound.is_zero() &&
         is_subtrahend(manager, otherwise) && otherwise->args[1] == t->args[1] &&
         otherwise->type() == type;
}

}  // namespace

WrittenForm::WrittenForm(const TermManager& manager, const Term_* term_, bool with_abs)
    : term(term_), tag(static_cast<uint8_t>(operator_tag(manager, term_->symbol))) {
  static_assert(std::size(smtlib2_operators) <= UINT8_MAX);
  const DataType* type = term_->symbol->type;
  takes_reals = asks_for_value();
  for (size_t i = type->num_components(); i-- > 1 && !takes_reals;) {
    takes_reals = type->get_component(i) == manager.get_rat_type();
  }
  find_kind(manager, with_abs);
}

// Finds the kind. Returns whether the kind depends on the arguments at all.
bool WrittenForm::find_kind(const TermManager& manager, bool with_abs) {
  switch (tag) {
    case SymbolTag::TIMES:
      if (is_negation(manager, term)) kind = Negation;
      return true;
    case SymbolTag::PLUS:
      if (is_subtrahend(manager, term->args[1]) && term->args[1]->type() == term->type()) {
        kind = Subtraction;
      }
      return true;
    case SymbolTag::FLOOR:
      if (is_part_of_int(manager, term->args[0])) kind = IntegerDivision;
      return true;
    case SymbolTag::TERM_ITE:
      if (with_abs && is_absolute_value(manager, term)) kind = AbsoluteValue;
      return with_abs;
    case SymbolTag::INT_MODULAR_CONGRUENCE:
      if (is_congruence_to_numeral(manager, term)) kind = Residue;
      return true;
    default:
      return false;
  }
}

WrittenForms::WrittenForms(const TermManager& manager_, bool with_abs_, Condition must_be_written_)
    : manager(manager_), with_abs(with_abs_), must_be_written(std::move(must_be_written_)) {}

const WrittenForms::Entry& WrittenForms::enter(const Term_* t, size_t place) {
  WrittenForm form(manager, t, with_abs);
  const bool is_application = !form.find_kind(manager, with_abs);
  entries[neighbour_of(place)] = entries[place];
  entries[place] = {t->symbol, form.tag, form.takes_reals, is_application};
  return entries[place];
}

WrittenForm WrittenForms::form(const Term_* t, const Entry& entry) const {
  WrittenForm form(t, entry.tag, entry.takes_reals);
  form.find_kind(manager, with_abs);
  if (must_be_written) {
    for (const Term_* hidden : form.hidden_terms()) {
      if (hidden != nullptr && must_be_written(hidden)) form.kind = WrittenForm::Application;
    }
  }
  return form;
}

QNumber WrittenForm::divisor(const TermManager& manager) const {
  QNumber value;
  if (kind != IntegerDivision) {
    manager.is_int_modular_congruence(term->symbol, &value);
    return value;
  }
  manager.is_number(term->args[0]->args[0]->symbol, &value);  // 1/c
  return numbers::reciprocal(value);
}

QNumber WrittenForm::residue(const TermManager& manager) const {
  QNumber value;
  manager.is_number(term->args[1]->symbol, &value);
  return numbers::floor_remainder(value, divisor(manager));
}

bool is_numeral_product(const TermManager& manager, const Term_* t) {
  constexpr unsigned max_factors = 8;
  for (unsigned factors = 1; factors <= max_factors; ++factors) {
    if (t->symbol->arity == 0) return manager.is_number(t->symbol, nullptr);
    if (!is_product(manager, t) || !manager.is_number(t->args[1]->symbol, nullptr)) {
      return false;
    }
    t = t->args[0];
  }
  return false;
}

WrittenForm::Operand WrittenForm::operand_of_other_form(uint64_t i) const {
  switch (kind) {
    case Application:
      break;
    case Subtraction:
      if (i == 1) return {term->args[1]->args[1], term->symbol->type->get_component(2)};
      break;
    case Residue:
      break;
    case Negation:
      return {term->args[1], term->symbol->type->get_component(2)};
    case AbsoluteValue:
      return {term->args[1], term->type()};
    case IntegerDivision:
      return {term->args[0]->args[1], term->type()};
  }
  return {term->args[i], term->symbol->type->get_component(i + 1)};
}

}  // namespace quill
