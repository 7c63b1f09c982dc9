// The builders of the Boolean and arithmetic core, equality and if-then-else among them.

#include "quill/terms/termmanager/misuse_checks.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/terms/termmanager/transaction.h"
#include "quill/terms/termmanager/trial.h"

namespace quill {

const Term_* TermManager::make_and(const Term_* a, const Term_* b) {
  return make_binary(and_symbol, a, b, "make_and");
}

const Term_* TermManager::make_or(const Term_* a, const Term_* b) {
  return make_binary(or_symbol, a, b, "make_or");
}

const Term_* TermManager::make_iff(const Term_* a, const Term_* b) {
  return make_binary(iff_symbol, a, b, "make_iff");
}

const Term_* TermManager::make_not(const Term_* a) { return apply(not_symbol, {a}, "make_not"); }

const Term_* TermManager::make_floor(const Term_* a) {
  return apply(floor_symbol, {a}, "make_floor");
}

bool TermManager::both_int(const Term_* a, const Term_* b) const {
  require_own(*this, {a, b});
  return a->type() == int_type && b->type() == int_type;
}

const Term_* TermManager::make_leq(const Term_* a, const Term_* b) {
  return make_binary(both_int(a, b) ? int_leq_symbol : rat_leq_symbol, a, b, "make_leq");
}

const Term_* TermManager::make_plus(const Term_* a, const Term_* b) {
  return make_binary(both_int(a, b) ? int_plus_symbol : rat_plus_symbol, a, b, "make_plus");
}

const Term_* TermManager::make_times(const Term_* a, const Term_* b) {
  return make_binary(both_int(a, b) ? int_times_symbol : rat_times_symbol, a, b, "make_times");
}

//----------------------------------------------------------------------------------------------
// Equality and if-then-else, which have one symbol for each type

// A type in names of symbols.
std::string TermManager::name_of_type(const DataType* t) const {
  return t == rat_type ? "rat" : t == int_type ? "int" : t->to_str();
}

// Makes the symbol of a type; its own type is put together in scratch_types.
const Symbol* TermManager::make_type_keyed_symbol(TypeKeyedSymbols& table, const DataType* t,
                                                  const char* prefix, SymbolTag::tag tag) {
  name_buffer = '`';
  name_buffer += prefix;
  name_buffer += name_of_type(t);
  name_buffer += '`';
  Transaction making(*this);
  const Symbol* s = making.add_symbol(tag);
  table.insert(t, s);
  making.commit();
  if (trials != nullptr) trials->symbol_made(s, making.replaced_tag());
  return s;
}

// Builds an application whose symbol has still to be made. When the request is refused the symbol
// goes again.
const Term_* TermManager::apply_first(TypeKeyedSymbols& table,
                                      const Symbol* (TermManager::*make_symbol_of)(const DataType*),
                                      const DataType* type,
                                      std::initializer_list<const Term_*> args,
                                      const char* operation) {
  Trial trial(*this, table, type);
  const Symbol* s = (this->*make_symbol_of)(type);
  const Term_* t = apply(s, args, operation);
  trial.keep();
  return t;
}

// A request that comes from another one was given the symbol, or a term was built with it.
void TermManager::note_given_on_trial(const Symbol* s) {
  for (Trial* trial = trials; trial != nullptr; trial = trial->outer) trial->note_given(s);
}

const Symbol* TermManager::make_equality_symbol(const DataType* t) {
  require_own(*this, t);
  if (t == bool_type) throw error("Equality arguments can't be Boolean");
  if (const Symbol* present = equality_symbols.find(t)) {
    note_given(present);
    return present;
  }
  scratch_types = {universe->get_application_type(), t, t, bool_type};
  return make_type_keyed_symbol(equality_symbols, t, "=_", SymbolTag::EQUAL);
}

const Term_* TermManager::make_equal(const Term_* a, const Term_* b) {
  require_own(*this, {a, b});
  const DataType* type = a->type();
  const Symbol* s;
  if (is_real_or_int(type)) {
    s = both_int(a, b) ? int_equal_symbol : rat_equal_symbol;
  } else {
    s = equality_symbols.find(type);
    if (s == nullptr) {
      return apply_first(equality_symbols, &TermManager::make_equality_symbol, type, {a, b},
                         "make_equal");
    }
  }
  return make_binary(s, a, b, "make_equal");
}

const Symbol* TermManager::make_term_ite_symbol(const DataType* t) {
  require_own(*this, t);
  if (t == bool_type) throw error("Term-ITE arguments can't be Boolean");
  if (const Symbol* present = term_ite_symbols.find(t)) {
    note_given(present);
    return present;
  }
  scratch_types = {universe->get_application_type(), bool_type, t, t, t};
  return make_type_keyed_symbol(term_ite_symbols, t, "ite_", SymbolTag::TERM_ITE);
}

const Term_* TermManager::make_term_ite(const Term_* cond, const Term_* then_term,
                                        const Term_* else_term) {
  require_own(*this, {cond, then_term, else_term});
  const DataType* type = then_term->type();
  if (is_real_or_int(type)) type = both_int(then_term, else_term) ? int_type : rat_type;
  const Symbol* s = term_ite_symbols.find(type);
  if (s == nullptr) {
    return apply_first(term_ite_symbols, &TermManager::make_term_ite_symbol, type,
                       {cond, then_term, else_term}, "make_term_ite");
  }
  return apply(s, {cond, then_term, else_term}, "make_term_ite");
}

bool TermManager::is_term_ite(const Symbol* s, const DataType** out_type) const {
  require_own(*this, s);
  if (!term_ite_symbols.contains(s)) return false;
  if (out_type != nullptr) *out_type = s->type->get_component(2);
  return true;
}

}  // namespace quill
