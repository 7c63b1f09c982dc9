// A delegate that simplifies terms while they are built: constants are folded, double negations and
// neutral operands disappear. Every rule gives a term that is equal to the plain one in all
// interpretations.
//
//   quill::TermManager manager;
//   SimplifyingFactory factory(manager);
//   manager.set_delegate(&factory);
//   manager.set_delegate_enabled(true);
//   manager.make_not(manager.make_not(p));      // is p
//
// What a delegate has to keep in mind, and where this one does:
//
// - `args` may be the manager's own scratch vector, which the builders overwrite. Operands are
//   therefore copied out of it before a builder is called.
// - Builders that are called here call the delegate again: this is how simplifications cascade, and
//   why every rule must lead to a smaller term.
// - If a term needs no simplification, the delegate returns null and leaves it to the manager. To
//   get the plain term, call TermManager::do_make_term; make_term would call the delegate again.
// - The manager does not check the type of the result, so the delegate never returns a term of
//   another type, not even of a subtype.

#ifndef EXAMPLES_SIMPLIFIER_SIMPLIFYING_FACTORY_H
#define EXAMPLES_SIMPLIFIER_SIMPLIFYING_FACTORY_H

#include <cstddef>
#include <vector>

#include "quill/quill.h"

class SimplifyingFactory : public quill::TermFactory {
 public:
  using Term = const quill::Term_*;

  explicit SimplifyingFactory(quill::TermManager& manager_) : manager(manager_) {}

  // The simplified term, or null if no rule applies.
  Term make_term(const quill::Symbol* symbol, const std::vector<Term>& args) override;

 private:
  Term simplify_not(Term a);
  // `neutral` is true for conjunctions and false for disjunctions; the other one absorbs.
  Term simplify_junction(Term a, Term b, Term neutral, Term absorbing);
  Term simplify_iff(Term a, Term b);
  Term simplify_equality(Term a, Term b);
  Term simplify_arithmetic(const quill::Symbol* symbol, Term a, Term b);
  Term simplify_bit_vectors(const quill::Symbol* symbol, Term a, Term b, std::size_t width);
  Term fold_bit_vectors(const quill::Symbol* symbol, Term a, Term b, std::size_t width);

  bool are_complements(Term a, Term b) const;
  bool is_number(Term t, long value) const;

  quill::TermManager& manager;
};

#endif
