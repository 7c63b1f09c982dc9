// Substitution: one walk that rebuilds a term bottom-up, with the substitution itself as the memo.

#include "quill/terms/termmanager/term_manager.h"
#include "quill/terms/termmanager/term_visitor.h"
#include "quill/utils/scope_guard.h"

namespace quill {

namespace {

struct SubstitutionCallback {
  TermManager* manager;
  TermManager::TermMap* images;
  std::vector<const Term_*> args;

  int visit(const Term_* t, bool preorder) {
    const bool known = images->find(t) != images->end();
    if (preorder) return known ? 1 : 2;
    if (known) return 2;
    args.clear();
    // Each argument has its image by now, given or made earlier in this walk.
    for (uint64_t i = 0; i < t->symbol->arity; i++)
      args.push_back(images->find(t->args[i])->second);
    const Term_* image = manager->make_term(t->symbol, args);
    images->insert({t, image});
    return 2;
  }
};

}  // namespace

const Term_* TermManager::substitute(const Term_* t, TermMap& subst, std::vector<bool>& lent_marks,
                                     bool check) {
  if (check) {
    for (const auto& [from, to] : subst) {
      if (!is_subtype(to->symbol->get_output_type(), from->symbol->get_output_type())) {
        throw error("substitution between terms of incompatible types");
      }
    }
  }
  const ScopedValue<bool> checking(typecheck_enabled, check);
  SubstitutionCallback callback{this, &subst, {}};
  TermVisitor<SubstitutionCallback> visitor(&callback, /*dag_mode=*/true);
  visitor.set_marks(&lent_marks);
  visitor.visit(t, /*clear_marks=*/true);
  return subst[t];
}

const Term_* TermManager::substitute(const Term_* t, const std::vector<const Term_*>& from,
                                     const std::vector<const Term_*>& to, TermMap& cache,
                                     std::vector<bool>& lent_marks) {
  if (from.size() != to.size()) throw error("Incompatible arguments to substitute");
  for (size_t i = 0; i < from.size(); i++) {
    if (typecheck_enabled &&
        !is_subtype(to[i]->symbol->get_output_type(), from[i]->symbol->get_output_type())) {
      throw error("substitution between terms of incompatible types");
    }
    cache[from[i]] = to[i];
  }
  // The pairs are sound, and so is what is rebuilt with them.
  return substitute(t, cache, lent_marks, /*check=*/false);
}

const Term_* TermManager::substitute(const Term_* t, const std::vector<const Term_*>& from,
                                     const std::vector<const Term_*>& to) {
  TermMap cache;
  return substitute(t, from, to, cache, marks);
}

}  // namespace quill
