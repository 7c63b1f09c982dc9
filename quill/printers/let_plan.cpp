#include "quill/printers/let_plan.h"

#include <algorithm>

namespace quill {

namespace {

// One name with one constant behind it, such as (not p) and (- x): no longer than a name for it
// would be.
bool is_tiny(const WrittenForm& form) {
  if (form.num_operands() != 1 || form.operand(0).term->symbol->arity != 0) return false;
  switch (form.kind) {
    case WrittenForm::Application:
      return form.op == nullptr || form.op->head == SmtLib2Head::NAME;
    case WrittenForm::Negation:
    case WrittenForm::AbsoluteValue:
      return true;
    case WrittenForm::Subtraction:
    case WrittenForm::IntegerDivision:
    case WrittenForm::Residue:
      return false;
  }
  return false;
}

}  // namespace

LetPlan::LetPlan(const TermManager& manager, const Term_* root, const FormOf& form_of) {
  collect(root, form_of);
  bind(manager, root, form_of);
}

// Counts the places in which each subterm is written, and lists the subterms with operands before
// operators.
void LetPlan::collect(const Term_* root, const FormOf& form_of) {
  if (root->symbol->arity == 0) return;
  struct Frame {
    WrittenForm form;
    uint64_t next;  // the operand to go to next
  };
  std::vector<Frame> open{{form_of(root), 0}};
  nodes[root].occurrences = 1;
  while (!open.empty()) {
    Frame& frame = open.back();
    if (frame.next == frame.form.num_operands()) {
      if (frame.form.op != nullptr && !frame.form.op->standard) extensions = true;
      post_order.push_back(frame.form.term);
      open.pop_back();
      continue;
    }
    const Term_* operand = frame.form.operand(frame.next++).term;
    if (operand->symbol->arity != 0 && nodes[operand].occurrences++ == 0) {
      open.push_back({form_of(operand), 0});
    }
  }
}

void LetPlan::bind(const TermManager& manager, const Term_* root, const FormOf& form_of) {
  // The level of a term is the number of groups that must come before it.
  std::vector<size_t> sizes;  // of the groups
  for (const Term_* t : post_order) {
    const WrittenForm form = form_of(t);
    Node& node = nodes[t];
    for (uint64_t i = 0; i < form.num_operands(); i++) {
      const auto operand = nodes.find(form.operand(i).term);
      if (operand == nodes.end()) continue;
      const bool is_bound = operand->second.number != 0;
      node.level = std::max(node.level, operand->second.level + (is_bound ? 1 : 0));
    }
    if (t == root || node.occurrences < 2 || is_tiny(form) || is_numeral_product(manager, t)) {
      continue;
    }
    node.number = 1;  // bound; which number follows below
    if (node.level == sizes.size()) sizes.push_back(0);
    sizes[node.level]++;
    bound.push_back(t);
  }

  size_t end = 0;
  for (const size_t size : sizes) ends.push_back(end += size);
  std::stable_sort(bound.begin(), bound.end(), [this](const Term_* a, const Term_* b) {
    return nodes.find(a)->second.level < nodes.find(b)->second.level;
  });
  for (size_t i = 0; i < bound.size(); i++) nodes[bound[i]].number = i + 1;
}

}  // namespace quill
