#include "quill/printers/let_plan.h"

#include <algorithm>
#include <new>

#include "quill/terms/termmanager/ownership.h"

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
  require_own(manager, root);
  collect(root, form_of);
  bind(manager);
  name_bound_operands();
}

// Counts the places in which each subterm is written, and lists the subterms with operands before
// operators.
void LetPlan::collect(const Term_* root, const FormOf& form_of) {
  if (root->symbol->arity == 0) return;
  constexpr size_t max_operands = INT32_MAX;
  constexpr uint64_t max_prefetched = 4;
  struct Frame {
    uint32_t node;
    uint32_t next;  // the operand to go to next
    uint32_t num_operands;
  };
  Array<Frame> open;
  TermTable<uint32_t> numbers;
  const auto add_node = [&](const Term_* t) {
    const WrittenForm form = form_of(t);
    const uint64_t num_operands = form.num_operands();
    const size_t first_operand = operands.size();
    // The walk comes to the operands later, and would wait for each: they lie anywhere in memory.
    for (uint64_t i = std::min(num_operands, max_prefetched); i-- > 0;) {
      __builtin_prefetch(form.operand(i).term);
    }
    if (num_operands > max_operands - first_operand) throw std::bad_alloc();  // out of numbers
    open.push_back({static_cast<uint32_t>(nodes.size()), 0, static_cast<uint32_t>(num_operands)});
    nodes.push_back({form, static_cast<uint32_t>(first_operand), 1, 0, 0});
    operands.resize(first_operand + num_operands, Operand::constant());
  };
  numbers.insert(root, 0);
  add_node(root);
  while (!open.empty()) {
    Frame& frame = open.back();
    const Node& node = nodes[frame.node];
    if (frame.next == frame.num_operands) {
      if (node.form.op != nullptr && !node.form.op->standard) extensions = true;
      post_order.push_back(frame.node);
      open.pop_back();
      continue;
    }
    const uint32_t place = node.first_operand + frame.next;
    const Term_* operand = node.form.operand(frame.next++).term;
    if (operand->symbol->arity == 0) continue;
    const uint32_t next = static_cast<uint32_t>(nodes.size());
    const uint32_t number = numbers.insert(operand, next);
    operands[place] = Operand::node(number);
    if (number == next) {
      add_node(operand);
    } else {
      nodes[number].occurrences++;
    }
  }
}

void LetPlan::bind(const TermManager& manager) {
  // The level of a term is the number of groups that must come before it.
  std::vector<size_t> sizes;  // of the groups
  std::vector<uint32_t> shared;
  for (const uint32_t at : post_order) {
    Node& node = nodes[at];
    const WrittenForm& form = node.form;
    const Operand* operand = operands.data() + node.first_operand;
    for (uint64_t i = form.num_operands(); i-- > 0; operand++) {
      if (operand->is_constant()) continue;
      const Node& below = nodes[operand->number()];
      node.level = std::max(node.level, below.level + (below.number != 0 ? 1 : 0));
    }
    if (at == 0 || node.occurrences < 2 || is_tiny(form) ||
        is_numeral_product(manager, form.term)) {
      continue;
    }
    node.number = 1;  // bound; which number follows below
    if (node.level == sizes.size()) sizes.push_back(0);
    sizes[node.level]++;
    shared.push_back(at);
  }

  size_t end = 0;
  for (const size_t size : sizes) ends.push_back(end += size);
  std::vector<size_t> next(sizes.size());  // the position of the next binding of each group
  for (size_t level = 1; level < sizes.size(); level++) next[level] = ends[level - 1];
  bound.resize(end);
  for (const uint32_t at : shared) {
    const size_t position = next[nodes[at].level]++;
    bound[position] = at;
    nodes[at].number = static_cast<uint32_t>(position + 1);
  }
}

void LetPlan::name_bound_operands() {
  if (bound.empty()) return;
  for (Operand& operand : operands) {
    if (operand.is_constant()) continue;
    const uint32_t number = nodes[operand.number()].number;
    if (number != 0) operand = Operand::binding(number);
  }
}

}  // namespace quill
