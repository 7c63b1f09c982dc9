// The symbols of users.

#include "quill/terms/termmanager/used_symbols.h"

#include "quill/terms/subterms.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/hash_set.h"

namespace quill {

std::vector<const Symbol*> free_symbols(const TermManager& m, TermSpan roots) {
  hsh::HashSet<const Symbol*> seen;
  std::vector<const Symbol*> symbols;
  for (const Term_* t : preorder(roots)) {
    if (!m.is_interpreted(t->symbol) && seen.insert(t->symbol)) symbols.push_back(t->symbol);
  }
  return symbols;
}

std::vector<const Symbol*> free_symbols(const TermManager& m, const Term_* root) {
  return free_symbols(m, TermSpan(&root, 1));
}

std::vector<const Symbol*> user_symbols(const TermManager& m) {
  const Signature& signature = *m.get_signature();
  std::vector<const Symbol*> symbols;
  for (size_t i = 0; i < signature.size(); ++i) {
    if (!m.is_interpreted(signature.symbol(i))) symbols.push_back(signature.symbol(i));
  }
  return symbols;
}

}  // namespace quill
