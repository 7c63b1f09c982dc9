// Substitution: one walk rebuilds the term bottom-up and uses the substitution itself as the memo.

#include "quill/terms/term_table.h"
#include "quill/terms/termmanager/lent_marks.h"
#include "quill/terms/termmanager/misuse_checks.h"
#include "quill/terms/termmanager/substitution_arguments.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/terms/termmanager/term_visitor.h"
#include "quill/utils/scope_guard.h"

namespace quill {

namespace {

// The images are in the caller's map or, if no caller passes one, in a leaner table. Returns the
// place of an image, or null for a term that is not a key.
const Term_* const* find_image(const TermManager::TermMap& images, const Term_* t) {
  const auto found = images.find(t);
  return found != images.end() ? &found->second : nullptr;
}
void add_image(TermManager::TermMap& images, const Term_* t, const Term_* image) {
  images.insert({t, image});
}

using ImageTable = TermTable<const Term_*>;
const Term_* const* find_image(const ImageTable& images, const Term_* t) { return images.find(t); }
void add_image(ImageTable& images, const Term_* t, const Term_* image) { images.insert(t, image); }

// The image of a term that the walk has finished. A delegate may have removed it from the caller's
// map in the meantime.
template <class Images>
const Term_* image_of(const Images& images, const Term_* t) {
  const Term_* const* found = find_image(images, t);
  if (found == nullptr) reject_substitution();
  return require_image(*found);
}

template <class Images>
struct SubstitutionCallback {
  TermManager* manager;
  Images* images;
  std::vector<const Term_*> args;
  bool known = false;  // whether the term pre-visited last is a key

  int visit(const Term_* t, bool preorder) {
    if (preorder) {
      const Term_* const* image = find_image(*images, t);
      known = image != nullptr;
      if (!known) return 2;
      require_image(*image);
      return 1;  // the post-visit of the same term is next
    }
    if (known) {
      known = false;
      return 2;
    }
    // Each argument has its image by now, given or made earlier in this walk.
    const uint64_t arity = t->symbol->arity;
    args.resize(arity);
    for (uint64_t i = 0; i < arity; ++i) args[i] = image_of(*images, t->args[i]);
    const Term_* image = require_image(manager->make_term(t->symbol, args));
    require_own(*manager, image);
    add_image(*images, t, image);
    return 2;
  }
};

template <class Images>
const Term_* rebuild(TermManager& manager, const Term_* t, Images& images,
                     std::vector<bool>& marks) {
  SubstitutionCallback<Images> callback{&manager, &images, {}};
  TermVisitor<SubstitutionCallback<Images>> visitor(&callback, /*dag_mode=*/true);
  LentMarks lent(marks);
  visitor.set_marks(lent.get());
  visitor.visit(t, /*clear_marks=*/true);
  const Term_* image = image_of(images, t);
  require_own(manager, image);
  return image;
}

// The image of a term must have its type or a subtype of it.
void require_subtype(const TermManager& m, const Term_* image, const Term_* t) {
  if (m.is_subtype(image->type(), t->type())) return;
  throw TermManager::error("substitution between terms of incompatible types");
}

}  // namespace

const Term_* TermManager::substitute(const Term_* t, TermMap& subst, std::vector<bool>& lent_marks,
                                     bool check) {
  require_own(*this, t);
  // Without `check` the map may be the memo of many calls, and looking at all of it would take too
  // long.
  require_own_pairs(*this, *this, subst, check ? SIZE_MAX : 100);
  if (check) {
    for (const auto& [from, to] : subst) {
      require_image(to);
      require_subtype(*this, to, from);
    }
  }
  const ScopedValue<bool> checking(typecheck_enabled, check);
  return rebuild(*this, t, subst, lent_marks);
}

// Refuses null, checks the types of the pairs while checks are on, and enters each pair that
// passes.
template <class Enter>
void TermManager::enter_pairs(const std::vector<const Term_*>& from,
                              const std::vector<const Term_*>& to, const Enter& enter) const {
  require_own_or_null(*this, from);
  require_own_or_null(*this, to);
  if (from.size() != to.size()) reject_substitution();
  for (size_t i = 0; i < from.size(); ++i) {
    if (from[i] == nullptr || to[i] == nullptr) reject_substitution();
    if (typecheck_enabled) require_subtype(*this, to[i], from[i]);
    enter(from[i], to[i]);
  }
}

const Term_* TermManager::substitute(const Term_* t, const std::vector<const Term_*>& from,
                                     const std::vector<const Term_*>& to, TermMap& cache,
                                     std::vector<bool>& lent_marks) {
  enter_pairs(from, to, [&](const Term_* f, const Term_* image) { cache[f] = image; });
  // The pairs have been checked, so the rebuilt terms need no check.
  return substitute(t, cache, lent_marks, /*check=*/false);
}

const Term_* TermManager::substitute(const Term_* t, const std::vector<const Term_*>& from,
                                     const std::vector<const Term_*>& to) {
  require_own(*this, t);
  ImageTable images(bank->id_bound());
  enter_pairs(from, to,
              [&](const Term_* f, const Term_* image) { images.insert(f, image) = image; });
  const ScopedValue<bool> checking(typecheck_enabled, false);
  return rebuild(*this, t, images, marks);
}

}  // namespace quill
