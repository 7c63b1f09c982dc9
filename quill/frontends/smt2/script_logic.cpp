#include "quill/frontends/smt2/script_logic.h"

#include "quill/frontends/smt2/name_places.h"
#include "quill/printers/written_form.h"
#include "quill/smtlib/operator_texts.h"
#include "quill/utils/hash_set.h"

namespace quill::smt2 {

namespace {

// What the commands of one stretch need from a logic.
class Survey {
 public:
  explicit Survey(const TermManager& manager_) : manager(manager_) {}

  // Add names first: a named term is written in full in the terms that it is part of.
  void add_names(const Command& command) {
    for (const NamedTerm& name : command.named_terms) named.insert(name.term);
  }
  void add(const Command& command);
  LogicNeeds needs;

 private:
  void add_type(const DataType* type, bool is_named);
  void add_declaration(const Symbol* symbol);
  void add_symbol(const Symbol* symbol);
  void add_term(const Term_* root);
  void add_application(const WrittenForm& form);
  bool is_numeral(const Term_* t) const { return manager.is_number(t->symbol, nullptr); }
  bool is_operation(const Term_* t) const;
  bool is_in_difference_form(const WrittenForm& form) const;
  bool is_difference(const Term_* t) const;

  const TermManager& manager;
  hsh::HashSet<const Term_*> named;
  hsh::HashSet<const Term_*> seen;
  hsh::HashSet<const DataType*> seen_types[2];  // 0: of types not named in the text, 1: of named
  std::vector<const Term_*> pending;
};

void Survey::add(const Command& command) {
  if (command.kind == CommandKind::DeclareSort) needs.free_sorts = true;
  if (command.has_bool_arrays) needs.everything = true;
  if (command.symbol != nullptr) add_declaration(command.symbol);
  const bool is_definition = !command.stored_name.empty();
  for (const ScriptTerm& term : command.terms) {
    add_type(term.value.sort, /*is_named=*/is_definition);
    add_term(term.value.term);
  }
  // Names that are given apart from the command are given in definitions, which name the sorts.
  for (const NamedTerm& name : command.named_terms) {
    if (seen.find(name.term) == seen.end()) add_type(sort_of(name), /*is_named=*/true);
    add_term(name.term);
  }
}

// Logics of floating-point numbers have bit-vectors, but some of their readers do not know the name
// of the sort.
void Survey::add_type(const DataType* root, bool is_named) {
  std::vector<const DataType*> types = {root};
  while (!types.empty()) {
    const DataType* type = types.back();
    types.pop_back();
    if (!seen_types[is_named ? 1 : 0].insert(type)) continue;
    if (type == manager.get_int_type()) needs.ints = true;
    if (type == manager.get_rat_type()) needs.reals = true;
    if (manager.is_bv_type(type, nullptr)) (is_named ? needs.bit_vectors : needs.bits) = true;
    if (type == manager.get_fprounding_type() || manager.is_fp_type(type, nullptr, nullptr)) {
      needs.floating_point = true;
    }
    if (manager.is_array_type(type, nullptr, nullptr)) needs.arrays = true;
    for (size_t i = 0; i < type->num_components(); ++i) types.push_back(type->get_component(i));
  }
}

void Survey::add_declaration(const Symbol* symbol) {
  if (symbol->arity != 0) needs.free_functions = true;
  for (uint64_t i = 1; i <= symbol->arity; ++i) {
    add_type(symbol->type->get_component(i), /*is_named=*/true);
  }
  add_type(symbol->get_output_type(), /*is_named=*/true);
}

// An arithmetic numeral is written as its place requires, so its own type says nothing.
void Survey::add_symbol(const Symbol* symbol) {
  const DataType* result = symbol->get_output_type();
  if (manager.is_number(symbol, nullptr) && manager.is_subtype(result, manager.get_rat_type())) {
    return;
  }
  if (symbol->arity != 0 && manager.is_uninterpreted_function(symbol)) needs.free_functions = true;
  for (uint64_t i = 1; i <= symbol->arity; ++i) {
    add_type(symbol->type->get_component(i), /*is_named=*/false);
  }
  if (!is_operator(manager, symbol, SymbolTag::FLOOR)) add_type(result, /*is_named=*/false);
}

void Survey::add_term(const Term_* root) {
  if (seen.insert(root)) pending.push_back(root);
  while (!pending.empty()) {
    const Term_* t = pending.back();
    pending.pop_back();
    WrittenForm form(manager, t);
    for (const Term_* hidden : form.hidden_terms()) {
      if (hidden != nullptr && named.find(hidden) != named.end()) {
        form.kind = WrittenForm::Application;
      }
    }
    add_application(form);
    for (uint64_t i = 0; i < form.num_operands(); ++i) {
      const WrittenForm::Operand operand = form.operand(i);
      if (operand.expected == manager.get_rat_type() && !is_numeral(operand.term) &&
          operand.term->type() == manager.get_int_type()) {
        needs.both = true;
      }
      if (seen.insert(operand.term)) pending.push_back(operand.term);
    }
  }
}

void Survey::add_application(const WrittenForm& form) {
  const Term_* t = form.term;
  if (form.kind == WrittenForm::IntegerDivision) {
    needs.ints = true;
    needs.linear = true;
    return;
  }
  add_symbol(t->symbol);
  const auto tag = static_cast<SymbolTag::tag>(form.tag);
  if (tag >= SymbolTag::BV_CONCAT && tag <= SymbolTag::BV_SIGN_EXTEND) needs.bit_vectors = true;
  switch (tag) {
    case SymbolTag::FLOOR:
      needs.both = true;
      break;
    case SymbolTag::TIMES:
      needs.linear = true;
      if (!is_numeral(t->args[1]) && !is_numeral_product(manager, t->args[0])) {
        needs.nonlinear = true;
      }
      break;
    case SymbolTag::ARRAY_CONST:
      needs.everything = true;
      break;
    case SymbolTag::INT_FROM_UBV:
    case SymbolTag::FP_AS_IEEEBV:  // written as a declared constant, which names its sort
      needs.bit_vectors = true;
      break;
    case SymbolTag::INT_MODULAR_CONGRUENCE:
      needs.linear = true;
      break;
    case SymbolTag::INT_FROM_SBV:
    case SymbolTag::INT_TO_BV:
      // Written by operators of arithmetic.
      needs.bit_vectors = true;
      needs.linear = true;
      break;
    case SymbolTag::PLUS:
      if (!is_in_difference_form(form)) needs.linear = true;
      break;
    case SymbolTag::LEQ:
    case SymbolTag::EQUAL:
      // A difference of two terms may only be compared with a number.
      if ((is_difference(t->args[0]) && !is_numeral(t->args[1])) ||
          (is_difference(t->args[1]) && !is_numeral(t->args[0]))) {
        needs.linear = true;
      }
      break;
    default:
      break;
  }
}

bool Survey::is_operation(const Term_* t) const {
  const SymbolTag::tag tag = operator_tag(manager, t->symbol);
  return tag == SymbolTag::PLUS || tag == SymbolTag::TIMES || tag == SymbolTag::FLOOR;
}

// Whether a sum is (- a b), (+ a 3), (+ 3 a) or (- a 3) for terms a and b that are not operations.
bool Survey::is_in_difference_form(const WrittenForm& form) const {
  const Term_* a = form.operand(0).term;
  const Term_* b = form.operand(1).term;
  if (is_operation(a) || is_operation(b)) return false;
  return form.kind == WrittenForm::Subtraction || is_numeral(a) || is_numeral(b);
}

// Whether t is (- a b) for a b that is not a number.
bool Survey::is_difference(const Term_* t) const {
  const WrittenForm form(manager, t);
  return form.kind == WrittenForm::Subtraction && !is_numeral(form.operand(1).term);
}

}  // namespace

std::vector<Logic> written_logics(const TermManager& manager, const Script& script) {
  std::vector<Logic> logics;
  const auto& commands = script.commands;
  for (size_t first = 0; first <= commands.size();) {
    Logic logic;
    Survey survey(manager);
    size_t end = first;
    for (; end < commands.size() && commands[end].kind != CommandKind::Reset; ++end) {
      if (commands[end].kind == CommandKind::SetLogic) logic = Logic(commands[end].text);
      survey.add_names(commands[end]);
    }
    for (size_t i = first; i < end; ++i) survey.add(commands[i]);
    logics.push_back(logic.extended_by(survey.needs));
    first = end + 1;
  }
  return logics;
}

}  // namespace quill::smt2
