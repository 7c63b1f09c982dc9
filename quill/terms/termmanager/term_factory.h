// What builds a term from a symbol and its arguments: a term manager, or a delegate that stands
// before one.

#ifndef QUILL_TERMS_TERMMANAGER_TERM_FACTORY_H
#define QUILL_TERMS_TERMMANAGER_TERM_FACTORY_H

#include <vector>

#include "quill/terms/term.h"

namespace quill {

// A delegate set in a TermManager gets every request that passed the typecheck; numerals and fresh
// variables are not requests. It returns the term to use, whose type is not checked, or null to let
// the manager build the plain term. What it throws reaches the caller of the builder.
//
// The other way to intercept requests is to derive from TermManager and override make_term, which
// all builders call.
//
// What they may call. A delegate, an overridden make_term and the callback of a TermVisitor may
// call every member of every manager, the manager that called them included, except gc, free_type,
// free_symbol and the destructor, and may do so at any depth of nesting. Such a call returns,
// throws and makes what it would without the requests around it. Those get the term that was asked
// for, from the arguments that were given, and their errors name the operation that was asked for.
// Builders of the same manager ask the delegate again; TermManager::do_make_term builds the plain
// term without asking. In particular:
//   - A delegate may set another delegate, or turn itself off, which holds from the next request
//     on, but it must not be destroyed while it is running.
//   - A substitution sets the typecheck switch for its rebuild and puts it back at its end: what is
//     set in between does not last.
//   - The vectors and maps given to a call that is under way must not be changed, except that
//     nested substitutions may use the same map and the same marks.
//   - An override must not keep the symbol of a request that it refuses, nor a delegate that of a
//     request in which it throws: the manager takes a symbol back that the request has made (see
//     TermManager::make_equal).
//   - An override that calls TermManager::make_term with the symbol that it was given hands on the
//     request, whatever the arguments: a type error names the operation that was asked for. With
//     another symbol it makes a request of its own, which is named after that symbol.
class TermFactory {
 public:
  virtual ~TermFactory() = default;
  virtual const Term_* make_term(const Symbol* symbol, const std::vector<const Term_*>& args) = 0;
};

}  // namespace quill

#endif
