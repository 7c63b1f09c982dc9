// The interface for building a term from a symbol and its arguments. Term managers implement it,
// and so do the delegates that they ask first.

#ifndef QUILL_TERMS_TERMMANAGER_TERM_FACTORY_H
#define QUILL_TERMS_TERMMANAGER_TERM_FACTORY_H

#include <vector>

#include "quill/terms/term.h"

namespace quill {

// A delegate that is set and enabled in a TermManager gets every request that passes the typecheck.
// make_true, make_false, numerals and fresh variables are not requests. The delegate returns the
// term to use, whose type is not checked, or null to let the manager build the plain term. What it
// throws reaches the caller of the builder.
//
// The other way to intercept requests is to derive from TermManager and override make_term, which
// all builders then call.
//
// A delegate, an overridden make_term and the callback of a TermVisitor may call every member of
// every manager, including the one that called them, at any depth of nesting; excepted are gc,
// free_type, free_symbol and the destructor. Such a call does what it would do outside any
// request. The outer requests still build the terms that they were asked for, from the arguments
// that they were given, and their errors name their own operations. Builders of the same manager
// ask the delegate again; TermManager::do_make_term builds the plain term without asking. In
// particular:
//   - A delegate may set another delegate or turn itself off, which takes effect with the next
//     request, but it must not be destroyed while it is running.
//   - A substitution sets the typecheck switch while it rebuilds and restores it at the end, so a
//     change made in between is lost.
//   - Vectors and maps passed to a call must not be changed during the call, except that nested
//     substitutions may use the same map and the same marks.
//   - An override must not keep the symbol of a request that it refuses, nor a delegate that of a
//     request in which it throws: the manager removes a symbol that it made for a refused request
//     (see TermManager::make_equal).
//   - An override hands on the request when it calls TermManager::make_term with the symbol or with
//     the very argument vector that it was given: a type error then names the operation of the
//     request. Any other call is a request of its own, and a type error names its symbol.
class TermFactory {
 public:
  virtual ~TermFactory() = default;
  virtual const Term_* make_term(const Symbol* symbol, const std::vector<const Term_*>& args) = 0;
};

}  // namespace quill

#endif
