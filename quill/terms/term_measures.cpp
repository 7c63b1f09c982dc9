// Sizes of graphs of terms.

#include "quill/terms/term_measures.h"

#include <algorithm>

#include "quill/terms/id_pages.h"
#include "quill/terms/subterms.h"

namespace quill {

namespace {

// The value of the root when that of each term comes from those of its arguments.
template <class Combine>
uint64_t fold(const Term_* root, Combine combine) {
  IdPages<uint64_t> values;
  for (const Term_* t : postorder(root)) {
    uint64_t value = 0;
    for (const Term_* argument : t->arguments()) value = combine(value, values.get(argument->id));
    values[t->id] = value == UINT64_MAX ? value : value + 1;
  }
  return values.get(root->id);
}

}  // namespace

size_t dag_size(TermSpan roots) {
  size_t count = 0;
  for ([[maybe_unused]] const Term_* t : postorder(roots)) ++count;
  return count;
}

size_t dag_size(const Term_* root) { return dag_size(TermSpan(&root, 1)); }

uint64_t tree_size(const Term_* root) {
  return fold(root, [](uint64_t a, uint64_t b) { return a > UINT64_MAX - b ? UINT64_MAX : a + b; });
}

uint64_t depth(const Term_* root) {
  return fold(root, [](uint64_t a, uint64_t b) { return std::max(a, b); });
}

bool contains(const Term_* root, const Term_* t) {
  for (const Term_* below : preorder(root)) {
    if (below == t) return true;
  }
  return false;
}

}  // namespace quill
