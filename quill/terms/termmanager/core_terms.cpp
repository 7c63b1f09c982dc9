// Construction and typechecking of terms, and the builders of the Boolean and arithmetic core.

#include <cassert>
#include <cstring>

#include "quill/terms/termmanager/new_symbol.h"
#include "quill/terms/termmanager/ownership.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill {

const Term_* TermManager::make_term(const Symbol* s, const std::vector<const Term_*>& args) {
  typecheck(s, args);
  if (delegate_enabled && delegate != nullptr) {
    if (const Term_* t = delegate->make_term(s, args)) return t;
  }
  // As do_make_term, which would ask for the owners again.
  assert(args.size() == s->arity && "wrong number of arguments for a symbol");
  return bank->make_term(s, args.empty() ? nullptr : args.data());
}

const Term_* TermManager::do_make_term(const Symbol* s, const std::vector<const Term_*>& args) {
  require_own(*this, s);
  require_own(*this, args);
  assert(args.size() == s->arity && "wrong number of arguments for a symbol");
  return bank->make_term(s, args.empty() ? nullptr : args.data());
}

bool TermManager::typecheck(const Term_* t, const DataType* expected, const char* where) const {
  require_own(*this, t);
  require_own(*this, expected);
  const DataType* actual = t->symbol->get_output_type();
  if (universe->is_subtype(actual, expected)) return true;
  throw error("type error. term ")
      << t->to_shallow_str() << " has type " << actual->to_str() << ", but " << expected->to_str()
      << " was expected. (" << where << ")";
}

void TermManager::typecheck(const Symbol* s, const std::vector<const Term_*>& args) {
  require_own(*this, s);
  require_own(*this, args);
  if (!typecheck_enabled) return;
  const size_t count = args.size();
  if (s->arity != count) reject_arity(s, count);
  // Nearly all arguments have the very type that is asked for.
  const DataType* type = s->type;
  for (size_t i = 0; i < count; i++) {
    if (args[i]->symbol->get_output_type() != type->get_component(i + 1)) {
      typecheck_from(i, s, args);
      break;
    }
  }
  current_operation = "";
}

void TermManager::reject_arity(const Symbol* s, size_t given) const {
  throw error("wrong arity for symbol ")
      << s->name << ". expected " << s->arity << ", got " << given;
}

// The arguments from the given one on, subtypes among them.
void TermManager::typecheck_from(size_t first, const Symbol* s,
                                 const std::vector<const Term_*>& args) {
  // A request that comes from no builder is named after its symbol. If it fails the name stays, so
  // it must not be the symbol's own text, which may be freed.
  const bool from_builder = *current_operation != '\0';
  for (size_t i = first; i < args.size(); i++) {
    const DataType* expected = s->type->get_component(i + 1);
    if (universe->is_subtype(args[i]->symbol->get_output_type(), expected)) continue;
    if (!from_builder) {
      operation_text = s->name;
      current_operation = operation_text.c_str();
    }
    typecheck(args[i], expected, current_operation);
  }
}

const Term_* TermManager::make_bin(const Symbol* s, const Term_* a, const Term_* b,
                                   const char* opname) {
  require_own(*this, s);
  operation_text = opname;  // which may be a symbol's own text, see typecheck
  return make_binary(s, a, b, operation_text.c_str());
}

// make_bin for names of operations that live for ever.
const Term_* TermManager::make_binary(const Symbol* s, const Term_* a, const Term_* b,
                                      const char* operation) {
  scratch_pair[0] = a;
  scratch_pair[1] = b;
  current_operation = operation;
  return make_term(s, scratch_pair);
}

const Term_* TermManager::make_and(const Term_* a, const Term_* b) {
  return make_binary(and_symbol, a, b, "make_and");
}

const Term_* TermManager::make_or(const Term_* a, const Term_* b) {
  return make_binary(or_symbol, a, b, "make_or");
}

const Term_* TermManager::make_iff(const Term_* a, const Term_* b) {
  return make_binary(iff_symbol, a, b, "make_iff");
}

const Term_* TermManager::make_not(const Term_* a) {
  scratch_args.clear();
  scratch_args.push_back(a);
  current_operation = "make_not";
  return make_term(not_symbol, scratch_args);
}

const Term_* TermManager::make_floor(const Term_* a) {
  scratch_args.clear();
  scratch_args.push_back(a);
  current_operation = "make_floor";
  return make_term(floor_symbol, scratch_args);
}

bool TermManager::both_int(const Term_* a, const Term_* b) const {
  require_own(*this, {a, b});
  return a->symbol->get_output_type() == int_type && b->symbol->get_output_type() == int_type;
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

// The symbol of a type in a family with one symbol for each type; its own type is put together in
// scratch_types.
const Symbol* TermManager::make_type_keyed_symbol(TypeKeyedSymbols& table, const DataType* t,
                                                  const char* prefix, SymbolTag::tag tag) {
  name_buffer = '`';
  name_buffer += prefix;
  name_buffer += name_of_type(t);
  name_buffer += '`';
  NewSymbol added(*this, tag);
  table.insert(t, added.symbol());
  return added.keep();
}

// A type in names of symbols.
std::string TermManager::name_of_type(const DataType* t) const {
  return t == rat_type ? "rat" : t == int_type ? "int" : t->to_str();
}

// Typechecks the operands of a request whose symbol is still to be made, so that a refused request
// makes none.
void TermManager::check_before_new_symbol(const DataType* t, const char* operation,
                                          std::initializer_list<ExpectedType> operands) {
  if (!typecheck_enabled || t == bool_type) return;
  current_operation = operation;
  for (const auto& [operand, expected] : operands) typecheck(operand, expected, current_operation);
}

const Symbol* TermManager::make_equality_symbol(const DataType* t) {
  require_own(*this, t);
  if (t == bool_type) throw error("Equality arguments can't be Boolean");
  if (const Symbol* present = equality_symbols.find(t)) return present;
  scratch_types = {universe->get_application_type(), t, t, bool_type};
  return make_type_keyed_symbol(equality_symbols, t, "=_", SymbolTag::EQUAL);
}

const Term_* TermManager::make_equal(const Term_* a, const Term_* b) {
  require_own(*this, {a, b});
  const DataType* type = a->symbol->get_output_type();
  const Symbol* s;
  if (is_real_or_int(type)) {
    s = both_int(a, b) ? int_equal_symbol : rat_equal_symbol;
  } else {
    s = equality_symbols.find(type);
    if (s == nullptr) {
      check_before_new_symbol(type, "make_equal", {{b, type}});
      s = make_equality_symbol(type);
    }
  }
  return make_binary(s, a, b, "make_equal");
}

const Symbol* TermManager::make_term_ite_symbol(const DataType* t) {
  require_own(*this, t);
  if (t == bool_type) throw error("Term-ITE arguments can't be Boolean");
  if (const Symbol* present = term_ite_symbols.find(t)) return present;
  scratch_types = {universe->get_application_type(), bool_type, t, t, t};
  return make_type_keyed_symbol(term_ite_symbols, t, "ite_", SymbolTag::TERM_ITE);
}

const Term_* TermManager::make_term_ite(const Term_* cond, const Term_* then_term,
                                        const Term_* else_term) {
  require_own(*this, {cond, then_term, else_term});
  const DataType* type = then_term->symbol->get_output_type();
  if (is_real_or_int(type)) type = both_int(then_term, else_term) ? int_type : rat_type;
  const Symbol* s = term_ite_symbols.find(type);
  if (s == nullptr) {
    check_before_new_symbol(type, "make_term_ite",
                            {{cond, bool_type}, {then_term, type}, {else_term, type}});
    s = make_term_ite_symbol(type);
  }
  scratch_args.clear();
  scratch_args.push_back(cond);
  scratch_args.push_back(then_term);
  scratch_args.push_back(else_term);
  current_operation = "make_term_ite";
  return make_term(s, scratch_args);
}

bool TermManager::is_term_ite(const Symbol* s, const DataType** out_type) const {
  require_own(*this, s);
  if (!term_ite_symbols.contains(s)) return false;
  if (out_type != nullptr) *out_type = s->type->get_component(2);
  return true;
}

}  // namespace quill
