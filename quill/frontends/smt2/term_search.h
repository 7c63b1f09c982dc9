// Searches the graph below a term without recursion, visiting each shared term once.

#ifndef QUILL_FRONTENDS_SMT2_TERM_SEARCH_H
#define QUILL_FRONTENDS_SMT2_TERM_SEARCH_H

#include <vector>

#include "quill/terms/term.h"
#include "quill/utils/hash_set.h"

namespace quill::smt2 {

// The terms that are roots or below a root.
class ReachableTerms {
 public:
  void add_root(const Term_* root);
  bool contains(const Term_* term) const { return seen.find(term) != seen.end(); }

 private:
  hsh::HashSet<const Term_*> seen;
  std::vector<const Term_*> pending;
};

}  // namespace quill::smt2

#endif
