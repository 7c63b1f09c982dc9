// make_term: typechecking, delegates and overrides, and the last step into the bank; the helpers in
// which all builders end; and the builders of the Boolean and arithmetic core.

#include <cassert>
#include <span>
#include <typeinfo>

#include "quill/terms/termmanager/families.h"
#include "quill/terms/termmanager/misuse_checks.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/terms/termmanager/transaction.h"
#include "quill/terms/termmanager/trial.h"
#include "quill/utils/scope_guard.h"

namespace quill {

// Whether other code has to see requests before the bank does: the make_term of a derived class, a
// delegate, or a symbol on trial, which has to learn of requests. If another module has a type
// record of its own for TermManager, its plain managers merely take the slower path.
inline bool TermManager::is_intercepted() const {
  return delegate_enabled || trials != nullptr || &typeid(*this) != &typeid(TermManager);
}

//----------------------------------------------------------------------------------------------
// Requests that may call back
//
// A builder of a plain manager checks its arguments and asks the bank. If a delegate or an
// overridden make_term sees the request first, the arguments travel in a vector. The code that is
// called may request other terms before it reads that vector, so each open request has a vector of
// its own, which is kept for the next request at the same depth of nesting.

// Records a request for the length of a scope.
class TermManager::Interception {
 public:
  // Refers to the arguments in the vector of the caller.
  Interception(TermManager& owner, const Symbol* symbol, const std::vector<const Term_*>& given,
               const char* operation)
      : Interception(owner, symbol, operation) {
    request().args = &given;
  }
  // Copies the arguments.
  Interception(TermManager& owner, const Symbol* symbol, std::initializer_list<const Term_*> given,
               const char* operation)
      : Interception(owner, symbol, operation) {
    request().own_args.assign(given);
    request().args = &request().own_args;
  }
  Interception(const Interception&) = delete;
  Interception& operator=(const Interception&) = delete;
  // A nested request restores the name of the operation, so that an error of the outer request
  // names the outer operation. The outermost request leaves what typechecking left.
  ~Interception() {
    --manager.requests_under_way;
    if (manager.requests_under_way != 0) manager.current_operation = operation_before;
  }

  const std::vector<const Term_*>& args() const { return *request().args; }

  // Sets the operation that a type error names while requests are open. An overridden make_term
  // hands on its request, perhaps with other arguments, and may have requested other terms before.
  // Any other request that it makes directly is named after its symbol.
  [[gnu::noinline]] static void name_operation(TermManager& manager, const Symbol* symbol,
                                               const std::vector<const Term_*>& args) {
    const Request& request = *manager.requests[manager.requests_under_way - 1];
    const bool is_handed_on = request.args == &args || request.symbol == symbol;
    manager.current_operation = is_handed_on ? request.operation.c_str() : "";
  }

  // A delegate does not hand its request on: while it runs, neither the operation nor the symbol
  // nor the arguments of the request are set, so that errors of the requests that it makes name
  // those requests.
  [[gnu::noinline]] static const Term_* ask_delegate(TermManager& manager, const Symbol* symbol,
                                                     const std::vector<const Term_*>& args) {
    const Symbol* no_symbol = nullptr;
    const std::vector<const Term_*>* no_args = nullptr;
    const bool is_request = manager.requests_under_way != 0;
    Request* const request =
        is_request ? manager.requests[manager.requests_under_way - 1].get() : nullptr;
    const ScopedValue<const Symbol*> forget_symbol(is_request ? request->symbol : no_symbol,
                                                   nullptr);
    const ScopedValue<const std::vector<const Term_*>*> forget_args(
        is_request ? request->args : no_args, nullptr);
    const ScopedValue<const char*> operation(manager.current_operation, "");
    return manager.delegate->make_term(symbol, args);
  }

 private:
  Interception(TermManager& manager_, const Symbol* symbol, const char* operation)
      : manager(manager_), position(manager_.requests_under_way) {
    if (manager.requests.size() == position) {
      manager.requests.push_back(std::make_unique<Request>());
    }
    request().symbol = symbol;
    request().operation = operation;  // a copy, because a nested request may change the text
    operation_before = manager.current_operation;
    manager.current_operation = request().operation.c_str();
    ++manager.requests_under_way;
  }

  Request& request() const { return *manager.requests[position]; }

  TermManager& manager;
  const size_t position;
  const char* operation_before;
};

// Calls the virtual make_term; see apply.
const Term_* TermManager::apply_intercepted(const Symbol* s,
                                            std::initializer_list<const Term_*> args,
                                            const char* operation) {
  note_given(s);
  const Interception request(*this, s, args, operation);
  const Term_* t = make_term(s, request.args());
  require_own_or_null(*this, t);
  return t;
}

// The end of most builders: checks and builds an application on behalf of the named operation.
const Term_* TermManager::apply(const Symbol* s, std::initializer_list<const Term_*> args,
                                const char* operation) {
  if (is_intercepted()) return apply_intercepted(s, args, operation);
  current_operation = operation;
  check_arguments(s, args.begin(), args.size());
  assert(args.size() == s->arity && "wrong number of arguments for a symbol");
  return bank->make_term(s, args.begin());
}

// The same for arguments in a vector of the caller.
const Term_* TermManager::apply_to(const Symbol* s, const std::vector<const Term_*>& args,
                                   const char* operation) {
  if (is_intercepted()) {
    note_given(s);
    const Interception request(*this, s, args, operation);
    const Term_* t = make_term(s, args);
    require_own_or_null(*this, t);
    return t;
  }
  require_own(*this, s);
  current_operation = operation;
  check_arguments(s, args.data(), args.size());
  return do_make_term(s, args);
}

const Term_* TermManager::make_term(const Symbol* s, const std::vector<const Term_*>& args) {
  typecheck(s, args);
  if (delegate_enabled && delegate != nullptr) {
    if (const Term_* t = Interception::ask_delegate(*this, s, args)) {
      require_own(*this, t);
      return t;
    }
  }
  return do_make_term(s, args);
}

const Term_* TermManager::do_make_term(const Symbol* s, const std::vector<const Term_*>& args) {
  require_own(*this, s);
  require_own(*this, args);
  assert(args.size() == s->arity && "wrong number of arguments for a symbol");
  const Term_* t = bank->make_term(s, args.empty() ? nullptr : args.data());
  note_given(s);
  return t;
}

bool TermManager::typecheck(const Term_* t, const DataType* expected, const char* where) const {
  require_own(*this, t);
  require_own(*this, expected);
  const DataType* actual = t->type();
  if (universe->is_subtype(actual, expected)) return true;
  throw error("type error. term ")
      << t->to_shallow_str() << " has type " << actual->to_str() << ", but " << expected->to_str()
      << " was expected. (" << where << ")";
}

void TermManager::typecheck(const Symbol* s, const std::vector<const Term_*>& args) {
  require_own(*this, s);
  if (requests_under_way != 0) Interception::name_operation(*this, s, args);
  check_arguments(s, args.data(), args.size());
}

// Checks the number and the types of the arguments. Does nothing when checks are off.
inline void TermManager::check_arguments(const Symbol* s, const Term_* const* args, size_t count) {
  require_own(*this, std::span(args, count));
  if (!typecheck_enabled) return;
  if (s->arity != count) reject_arity(s, count);
  // Nearly all arguments have exactly the expected type.
  const DataType* type = s->type;
  for (size_t i = 0; i < count; ++i) {
    if (args[i]->type() != type->get_component(i + 1)) {
      check_arguments_from(i, s, args, count);
      break;
    }
  }
  current_operation = "";
}

void TermManager::reject_arity(const Symbol* s, size_t given) const {
  throw error("wrong arity for symbol ")
      << s->name << ". expected " << s->arity << ", got " << given;
}

// Checks the arguments from position `first` on, accepting subtypes.
void TermManager::check_arguments_from(size_t first, const Symbol* s, const Term_* const* args,
                                       size_t count) {
  // A request that comes from no builder is named after its symbol. The name outlives a failed
  // request, so it must be a copy: the symbol may be freed.
  const bool from_builder = *current_operation != '\0';
  for (size_t i = first; i < count; ++i) {
    const DataType* expected = s->type->get_component(i + 1);
    if (universe->is_subtype(args[i]->type(), expected)) continue;
    if (from_builder) {
      operation_text = current_operation;
    } else {
      operation_text = s->name;
    }
    current_operation = operation_text.c_str();
    typecheck(args[i], expected, current_operation);
  }
}

const Term_* TermManager::make_bin(const Symbol* s, const Term_* a, const Term_* b,
                                   const char* opname) {
  require_own(*this, s);
  operation_text = opname;  // a copy, because a symbol may own the text; see check_arguments_from
  return make_binary(s, a, b, operation_text.c_str());
}

// make_bin for a name that needs no copy.
const Term_* TermManager::make_binary(const Symbol* s, const Term_* a, const Term_* b,
                                      const char* operation) {
  if (is_intercepted()) return apply_intercepted(s, {a, b}, operation);
  const Term_* const args[2] = {a, b};
  current_operation = operation;
  check_arguments(s, args, 2);
  assert(s->arity == 2 && "wrong number of arguments for a symbol");
  return bank->make_term(s, args);
}

//----------------------------------------------------------------------------------------------
// The Boolean and arithmetic core. These builders are in this file so that apply and make_binary
// are inlined into them; in another file each takes nine instructions more.

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

// Makes the symbol for t. scratch_types holds the components of its own type.
const Symbol* TermManager::make_type_keyed_symbol(TypeKeyedSymbols& table, const DataType* t,
                                                  const char* prefix, SymbolTag::tag tag) {
  name_buffer = '`';
  name_buffer += prefix;
  name_buffer += Families::name_of_type(*this, t);
  name_buffer += '`';
  Transaction making(*this);
  const Symbol* s = making.add_symbol(tag);
  table.insert(t, s);
  making.commit();
  if (trials != nullptr) trials->symbol_made(s, making.replaced_tag());
  return s;
}

// Builds an application whose symbol does not exist yet. If the request is refused, the symbol is
// removed again.
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

// Tells every open trial that a request was given the symbol, or that a term was built with it.
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
