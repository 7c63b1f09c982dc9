#include "quill/frontends/smt2/term_search.h"

namespace quill::smt2 {

void ReachableTerms::add_root(const Term_* root) {
  pending.push_back(root);
  while (!pending.empty()) {
    const Term_* term = pending.back();
    pending.pop_back();
    if (!seen.insert(term)) continue;
    for (const Term_* argument : term->arguments()) pending.push_back(argument);
  }
}

}  // namespace quill::smt2
