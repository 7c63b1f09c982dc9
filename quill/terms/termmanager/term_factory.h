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
// Rules for a delegate: `args` may be the manager's own scratch vector, which every builder of that
// manager overwrites, so copy what is needed before calling one. Builders of the same manager call
// the delegate again; the plain term is had from TermManager::do_make_term.
//
// The other way to intercept requests is to derive from TermManager and override make_term, which
// all builders call.
class TermFactory {
 public:
  virtual ~TermFactory() = default;
  virtual const Term_* make_term(const Symbol* symbol, const std::vector<const Term_*>& args) = 0;
};

}  // namespace quill

#endif
