#include "quill/printers/let_plan.h"

#include <algorithm>
#include <new>

#include "quill/terms/term_table.h"
#include "quill/terms/termmanager/ownership.h"

namespace quill {

LetPlan::LetPlan(const TermManager& manager, const Term_* root, const FormOf& form_of) {
  require_own(manager, root);
  if (root->symbol->arity == 0) return;
  collect(manager, root, form_of);
  bind(manager);
}

// Numbers the subterms, level by level, and notes which of them occur more than once. In this order
// it is known early which terms will be read, wherever in memory they lie.
void LetPlan::collect(const TermManager& manager, const Term_* root, const FormOf& form_of) {
  constexpr size_t max_operands = INT32_MAX;
  constexpr size_t look_ahead = 16;
  GrowingArray<const Term_*> places;  // what stands in the places of operands on this level
  GrowingArray<const Term_*> lower;   // and on the next
  size_t num_places = 0;              // on all levels
  TermTable<uint32_t> met(manager.get_bank()->id_bound());  // a term's node plus one
  const auto enter = [&](const Term_* t) {
    const WrittenForm form = form_of(t);
    const uint64_t num_operands = form.num_operands();
    if (num_operands > max_operands - num_places) throw std::bad_alloc();  // out of numbers
    if (form.op() != nullptr && !form.op()->standard) extensions = true;
    forms.push_back(form);
    repeated.push_back(0);
    first_operands.push_back(static_cast<uint32_t>(num_places));
    num_places += num_operands;
    for (uint64_t i = 0; i < num_operands; i++) lower.push_back(form.operand(i).term);
  };
  met.insert(root, 1);
  enter(root);
  while (!lower.empty()) {
    places.swap(lower);
    lower.clear();
    for (size_t at = 0; at < places.size(); at++) {
      if (at + look_ahead < places.size()) __builtin_prefetch(places[at + look_ahead]);
      const Term_* t = places[at];
      if (t->symbol->arity == 0) {
        operands.push_back(constant);
        continue;
      }
      const uint32_t next = static_cast<uint32_t>(forms.size());
      const uint32_t node = met.insert(t, next + 1) - 1;
      operands.push_back(node);
      if (node == next) {
        enter(t);
      } else {
        repeated[node] = 1;
      }
    }
  }
  first_operands.push_back(static_cast<uint32_t>(num_places));
}

// Not one name with one constant behind it, such as (not p) and (- x), which is no longer than a
// name for it would be, nor a product of numerals.
bool LetPlan::is_worth_a_name(const TermManager& manager, uint32_t node) const {
  const WrittenForm& form = forms[node];
  if (num_operands(node) == 1 && operands[first_operands[node]] == constant) {
    switch (form.kind) {
      case WrittenForm::Application:
        return form.op() != nullptr && form.op()->head != SmtLib2Head::NAME;
      case WrittenForm::Negation:
      case WrittenForm::AbsoluteValue:
        return false;
      case WrittenForm::Subtraction:
      case WrittenForm::IntegerDivision:
      case WrittenForm::Residue:
        return true;
    }
  }
  return form.tag != SymbolTag::TIMES || !is_numeral_product(manager, form.term);
}

// A walk from the left. The level of a node is the number of groups that must come before it; while
// the walk lasts, numbers[] holds the level that the operators above it have at least.
void LetPlan::bind(const TermManager& manager) {
  constexpr uint32_t unknown = UINT32_MAX;
  struct Frame {
    uint32_t node;
    uint32_t next;  // the operand to go to next
    uint32_t level;
  };
  std::vector<size_t> sizes;  // of the groups
  struct Shared {
    uint32_t node;
    uint32_t level;
  };
  GrowingArray<Shared> shared;  // the nodes to bind, operands before operators
  GrowingArray<Frame> open;
  open.push_back({0, 0, 0});
  numbers.assign(forms.size(), unknown);
  while (!open.empty()) {
    Frame& frame = open.back();
    if (frame.next != first_operands[frame.node + 1]) {
      const uint32_t below = operands[frame.next];
      if (below == constant) {
        frame.next++;
      } else if (numbers[below] == unknown) {
        open.push_back({below, first_operands[below], 0});
      } else {
        frame.level = std::max(frame.level, numbers[below]);
        frame.next++;
      }
      continue;
    }
    const auto [node, next, level] = frame;
    open.pop_back();
    numbers[node] = level;
    if (repeated[node] == 0 || !is_worth_a_name(manager, node)) continue;
    numbers[node]++;
    shared.push_back({node, level});
    if (level == sizes.size()) sizes.push_back(0);
    sizes[level]++;
  }

  size_t end = 0;
  for (const size_t size : sizes) ends.push_back(end += size);
  std::vector<size_t> next(sizes.size());  // the position of the next binding of each group
  for (size_t level = 1; level < sizes.size(); level++) next[level] = ends[level - 1];
  bound.resize(end);
  numbers.assign(forms.size(), 0);
  for (const auto& [node, level] : shared) {
    const size_t position = next[level]++;
    bound[position] = node;
    numbers[node] = static_cast<uint32_t>(position + 1);
  }
}

}  // namespace quill
