// Which subterms of a printed term are bound by let, and in which order.
//
// A subterm is bound when it occurs more than once, unless it is tiny: a constant, one operator
// without indices and one constant behind it, such as (not p), or a product of a few numerals.
// Bindings are put into groups, one let for each: group 0 refers to no binding, group n + 1 to some
// binding of group n, so that the lets nest no deeper than they must. Within a group the order is
// that of a walk from the left, and depends on the term alone.
//
// Cost: time and memory linear in the number of distinct subterms and their arguments.

#ifndef QUILL_PRINTERS_LET_PLAN_H
#define QUILL_PRINTERS_LET_PLAN_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "quill/printers/written_form.h"
#include "quill/terms/term.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/hash_map.h"

namespace quill {

class LetPlan {
 public:
  // How terms are to be written: which operands stand where.
  using FormOf = std::function<WrittenForm(const Term_*)>;

  LetPlan(const TermManager& manager, const Term_* root, const FormOf& form_of);

  // The bound terms, group by group; the number of a binding is its position here plus one.
  const std::vector<const Term_*>& bindings() const { return bound; }

  // The position behind the last binding of each group.
  const std::vector<size_t>& group_ends() const { return ends; }

  // Whether some operator in the text is none of the standard.
  bool has_extensions() const { return extensions; }

  // The number of the binding, 0 if the term is not bound.
  uint64_t binding_number(const Term_* t) const {
    const auto found = nodes.find(t);
    return found != nodes.end() ? found->second.number : 0;
  }

 private:
  struct Node {
    uint64_t occurrences = 0;
    uint64_t number = 0;
    size_t level = 0;
  };

  void collect(const Term_* root, const FormOf& form_of);
  void bind(const TermManager& manager, const Term_* root, const FormOf& form_of);

  hsh::HashMap<const Term_*, Node> nodes;  // every subterm that is not a constant
  std::vector<const Term_*> post_order;
  std::vector<const Term_*> bound;
  std::vector<size_t> ends;
  bool extensions = false;
};

}  // namespace quill

#endif
