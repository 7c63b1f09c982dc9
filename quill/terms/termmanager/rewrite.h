// Rewriting from the arguments up.
//
//   TermValues<const Term_*> memo(m);
//   const Term_* simple = rewrite(m, root, memo, [&](const Term_* t) {
//     return is_double_negation(t) ? t->args[0]->args[0] : t;
//   });
//
// For each term at and below the roots, arguments first, the function gets the term with rewritten
// arguments and returns what replaces it, the term itself if nothing does. What it returns is not
// rewritten again. A term whose arguments stay is handed on as it is; any other is built with
// make_term of its symbol, which checks types and asks the delegate.
//
// The memo leads from each finished term to its image. It may be kept for later calls with the same
// function: terms that have an image are not looked at again. The caller may enter images of its
// own before, as for a substitution. If the function or the manager throws, the memo keeps what is
// finished, and a later call goes on from there.
//
// Linear in the terms reached and their arguments; nothing recurses. The function may build terms
// and start walks and other rewritings with other memos. No collection may free terms of the memo.

#ifndef QUILL_TERMS_TERMMANAGER_REWRITE_H
#define QUILL_TERMS_TERMMANAGER_REWRITE_H

#include <cassert>
#include <initializer_list>
#include <type_traits>
#include <vector>

#include "quill/terms/term.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/terms/termmanager/term_values.h"
#include "quill/utils/growing_array.h"

namespace quill {

template <class Function>
const Term_* rewrite(TermManager& m, const Term_* root, TermValues<const Term_*>& memo,
                     Function function) {
  static_assert(std::is_convertible_v<std::invoke_result_t<Function&, const Term_*>, const Term_*>,
                "the function of rewrite gets a term and returns the term that replaces it");
  struct Step {
    const Term_* term;
    const Term_* const* next;  // argument to look at
  };
  GrowingArray<Step> path;
  std::vector<const Term_*> images;
  if (!memo.contains(root)) path.push_back({root, root->args});
  while (!path.empty()) {
    Step& step = path.back();
    const Term_* t = step.term;
    const Term_* const* const end = t->args + t->symbol->arity;
    while (step.next != end && memo.contains(*step.next)) ++step.next;
    if (step.next != end) {
      const Term_* argument = *step.next++;
      path.push_back({argument, argument->args});
      continue;
    }
    images.clear();
    bool is_changed = false;
    for (const Term_* argument : t->arguments()) {
      images.push_back(*memo.find(argument));
      is_changed |= images.back() != argument;
    }
    const Term_* image = function(is_changed ? m.make_term(t->symbol, images) : t);
    assert(image != nullptr && "the function of rewrite returned no term");
    memo.insert(t, image);
    path.pop_back();
  }
  return *memo.find(root);
}

// The images of several roots, in their order.
template <class Function>
std::vector<const Term_*> rewrite(TermManager& m, TermSpan roots, TermValues<const Term_*>& memo,
                                  Function function) {
  std::vector<const Term_*> images;
  images.reserve(roots.size());
  for (const Term_* root : roots) images.push_back(rewrite(m, root, memo, std::ref(function)));
  return images;
}

}  // namespace quill

#endif
