// Copying terms, symbols and types from another manager: the public members and the walk over
// terms.

#include "quill/terms/termmanager/lent_marks.h"
#include "quill/terms/termmanager/misuse_checks.h"
#include "quill/terms/termmanager/substitution_arguments.h"
#include "quill/terms/termmanager/term_copy_callback.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/terms/termmanager/term_visitor.h"

namespace quill {

TermManager::TermCopyCallback::TermCopyCallback(TermManager& receiver, const TermManager& owner,
                                                const TermMap& replacements)
    : destination(&receiver), source(&owner), substitution(&replacements) {
  // Types that every manager has from the start correspond to each other.
  types[source->bool_type] = destination->bool_type;
  types[source->rat_type] = destination->rat_type;
  types[source->int_type] = destination->int_type;
  types[source->fprounding_type] = destination->fprounding_type;
  types[source->universe->get_application_type()] = destination->universe->get_application_type();
}

int TermManager::TermCopyCallback::visit(const Term_* t, bool preorder) {
  const auto replacement = substitution->find(t);
  const bool is_replaced = replacement != substitution->end();
  if (preorder) {
    if (!is_replaced) return 2;
    terms[t] = require_image(replacement->second);
    return 1;
  }
  if (is_replaced) return 2;
  const Symbol* s = copy_symbol(t->symbol);
  const uint64_t arity = t->symbol->arity;
  args.clear();
  args.reserve(arity);
  for (uint64_t i = 0; i < arity; ++i) args.push_back(copy_of(t->args[i]));
  // The destination's symbol of this name may have another arity, and without checks make_term does
  // not look at it.
  if (!destination->typecheck_enabled && arity != s->arity) destination->reject_arity(s, arity);
  const Term_* copy = require_image(destination->make_term(s, args));
  require_own(*destination, copy);
  terms[t] = copy;
  return 2;
}

const Term_* TermManager::copy_term(const TermManager& src, const Term_* t) {
  return copy_term_with_subst(src, t, {});
}

const Term_* TermManager::copy_term_with_subst(const TermManager& src, const Term_* t,
                                               const TermMap& subst) {
  require_own(src, t);
  require_own_pairs(src, *this, subst);
  if (&src == this && subst.begin() == subst.end()) return t;
  TermCopyCallback callback(*this, src, subst);
  TermVisitor<TermCopyCallback> visitor(&callback, /*dag_mode=*/true);
  // A new vector would have to be cleared up to the largest id that the walk meets, which may cost
  // far more than the walk. The kept marks are cleared through the list of visited terms.
  LentMarks lent(marks);
  visitor.set_marks(lent.get());
  visitor.visit(t, /*clear_marks=*/true);
  return callback.copy_of(t);
}

void TermManager::copy_terms(const TermManager& src, const std::vector<const Term_*>& in,
                             std::vector<const Term_*>& out, bool use_manager_marks) {
  require_own(src, in);
  if (in.empty()) return;
  const size_t count = in.size();  // fixed first, because `out` may be `in`
  if (&src == this) {
    for (size_t i = 0; i < count; ++i) out.push_back(in[i]);
    return;
  }
  const TermMap none;
  TermCopyCallback callback(*this, src, none);
  TermVisitor<TermCopyCallback> visitor(&callback, /*dag_mode=*/true);
  std::vector<bool> unused;
  LentMarks lent(use_manager_marks ? marks : unused);
  if (use_manager_marks) visitor.set_marks(lent.get());
  for (size_t i = 0; i < count; ++i) {
    const Term_* t = in[i];
    visitor.visit(t, /*clear_marks=*/true);
    out.push_back(callback.copy_of(t));
  }
}

void TermManager::copy_symbols(const TermManager& src, const std::vector<const Symbol*>& in,
                               std::vector<const Symbol*>& out) {
  require_own(src, in);
  if (in.empty()) return;
  const TermMap none;
  TermCopyCallback callback(*this, src, none);
  const size_t count = in.size();
  for (size_t i = 0; i < count; ++i) out.push_back(callback.copy_symbol(in[i]));
}

void TermManager::copy_types(const TermManager& src, const std::vector<const DataType*>& in,
                             std::vector<const DataType*>& out) {
  require_own(src, in);
  if (in.empty()) return;
  const TermMap none;
  TermCopyCallback callback(*this, src, none);
  const size_t count = in.size();
  for (size_t i = 0; i < count; ++i) out.push_back(callback.copy_type(in[i]));
}

}  // namespace quill
