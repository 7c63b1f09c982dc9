// make_term: typechecking, delegates and overridden functions, and the last step into the bank; and
// the helpers in which all builders end.

#include <cassert>
#include <span>
#include <typeinfo>

#include "quill/terms/termmanager/misuse_checks.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/terms/termmanager/transaction.h"
#include "quill/terms/termmanager/trial.h"
#include "quill/utils/scope_guard.h"

namespace quill {

// Whether somebody's code sees requests before the bank does: the make_term of a derived class, or
// a delegate. A derived class of another module may have a type record of its own; it is then only
// the longer way that is taken, as it is while a symbol is on trial, which has to learn of
// requests.
inline bool TermManager::is_intercepted() const {
  return delegate_enabled || trials != nullptr || &typeid(*this) != &typeid(TermManager);
}

//----------------------------------------------------------------------------------------------
// Requests that may call back
//
// A builder of a plain manager checks its arguments and asks the bank. Where a delegate or an
// overridden make_term sees the request first, the arguments travel in a vector, and what they call
// may ask for other terms before it uses that vector: each request under way therefore has one of
// its own, kept for the next request at the same depth of nesting.

// Puts a request on record for the length of a scope.
class TermManager::Interception {
 public:
  // With the arguments in the caller's own vector.
  Interception(TermManager& owner, const Symbol* symbol, const std::vector<const Term_*>& given,
               const char* operation)
      : Interception(owner, symbol, operation) {
    request().args = &given;
  }
  // With a copy of the arguments.
  Interception(TermManager& owner, const Symbol* symbol, std::initializer_list<const Term_*> given,
               const char* operation)
      : Interception(owner, symbol, operation) {
    request().own_args.assign(given);
    request().args = &request().own_args;
  }
  Interception(const Interception&) = delete;
  Interception& operator=(const Interception&) = delete;
  // A nested request leaves the name of the operation as it found it, so that an error of the outer
  // one names the outer one. The outermost one leaves what typechecking left.
  ~Interception() {
    --manager.requests_under_way;
    if (manager.requests_under_way != 0) manager.current_operation = operation_before;
  }

  const std::vector<const Term_*>& args() const { return *request().args; }

  // The operation that an error of what is asked for now names, while requests are under way. An
  // overridden make_term hands on what it was asked for, perhaps with arguments of its own, and may
  // have asked for other terms before. What it asks for directly is named after its symbol.
  [[gnu::noinline]] static void name_operation(TermManager& manager, const Symbol* symbol,
                                               const std::vector<const Term_*>& args) {
    const Request& request = *manager.requests[manager.requests_under_way - 1];
    const bool is_handed_on = request.args == &args || request.symbol == symbol;
    manager.current_operation = is_handed_on ? request.operation.c_str() : "";
  }

  // A delegate hands nothing on. Errors of requests that it makes name these, not later ones.
  [[gnu::noinline]] static const Term_* ask_delegate(TermManager& manager, const Symbol* symbol,
                                                     const std::vector<const Term_*>& args) {
    const Symbol* nothing = nullptr;
    const Symbol*& asked_for = manager.requests_under_way != 0
                                   ? manager.requests[manager.requests_under_way - 1]->symbol
                                   : nothing;
    const ScopedValue<const Symbol*> none(asked_for, nullptr);
    const ScopedValue<const char*> operation(manager.current_operation, "");
    return manager.delegate->make_term(symbol, args);
  }

 private:
  Interception(TermManager& owner, const Symbol* symbol, const char* operation)
      : manager(owner), position(owner.requests_under_way) {
    if (manager.requests.size() == position) {
      manager.requests.push_back(std::make_unique<Request>());
    }
    request().symbol = symbol;
    request().operation = operation;  // which may be a text that a nested request changes
    operation_before = manager.current_operation;
    manager.current_operation = request().operation.c_str();
    ++manager.requests_under_way;
  }

  Request& request() const { return *manager.requests[position]; }

  TermManager& manager;
  const size_t position;
  const char* operation_before;
};

// The general way to the virtual make_term; see apply.
const Term_* TermManager::apply_intercepted(const Symbol* s,
                                            std::initializer_list<const Term_*> args,
                                            const char* operation) {
  note_given(s);
  const Interception request(*this, s, args, operation);
  const Term_* t = make_term(s, request.args());
  require_own_or_null(*this, t);
  return t;
}

// What all builders end in: checks and builds an application, on behalf of the named operation.
const Term_* TermManager::apply(const Symbol* s, std::initializer_list<const Term_*> args,
                                const char* operation) {
  if (is_intercepted()) return apply_intercepted(s, args, operation);
  current_operation = operation;
  check_arguments(s, args.begin(), args.size());
  assert(args.size() == s->arity && "wrong number of arguments for a symbol");
  return bank->make_term(s, args.begin());
}

// The same for arguments that are in a vector of the caller's.
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

// The arguments of an application, and their number. Does nothing when checks are off.
inline void TermManager::check_arguments(const Symbol* s, const Term_* const* args, size_t count) {
  require_own(*this, std::span(args, count));
  if (!typecheck_enabled) return;
  if (s->arity != count) reject_arity(s, count);
  // Nearly all arguments have the very type that is asked for.
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

// The arguments from the given one on, subtypes among them.
void TermManager::check_arguments_from(size_t first, const Symbol* s, const Term_* const* args,
                                       size_t count) {
  // A request that comes from no builder is named after its symbol. If it fails the name stays, so
  // it must not be the symbol's own text, which may be freed.
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
  operation_text = opname;  // which may be a symbol's own text, see check_arguments_from
  return make_binary(s, a, b, operation_text.c_str());
}

// make_bin for names of operations that live for ever.
const Term_* TermManager::make_binary(const Symbol* s, const Term_* a, const Term_* b,
                                      const char* operation) {
  if (is_intercepted()) return apply_intercepted(s, {a, b}, operation);
  const Term_* const args[2] = {a, b};
  current_operation = operation;
  check_arguments(s, args, 2);
  assert(s->arity == 2 && "wrong number of arguments for a symbol");
  return bank->make_term(s, args);
}

}  // namespace quill
