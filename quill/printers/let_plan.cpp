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

// Numbers the subterms and notes which of them occur more than once.
void LetPlan::collect(const TermManager& manager, const Term_* root, const FormOf& form_of) {
  constexpr size_t max_operands = INT32_MAX;
  constexpr uint64_t max_prefetched = 4;
  struct Frame {
    WrittenForm form;
    uint32_t met;   // how many terms were met before
    uint32_t next;  // the operand to go to next
    uint32_t num_operands;
  };
  Array<Frame> open;
  Array<uint32_t> found;  // what stands for the operands that the open terms are done with
  TermTable<uint32_t> met(manager.get_bank()->id_bound());  // counts from 1
  Array<uint32_t> nodes;  // of the terms in the order in which they were met; only of closed ones
  const auto enter = [&](const Term_* t) {
    const WrittenForm form = form_of(t);
    const uint64_t num_operands = form.num_operands();
    // The walk comes to the operands later, and would wait for each.
    for (uint64_t i = std::min(num_operands, max_prefetched); i-- > 0;) {
      __builtin_prefetch(form.operand(i).term);
    }
    if (num_operands > max_operands - operands.size() - found.size()) throw std::bad_alloc();
    open.push_back(
        {form, static_cast<uint32_t>(nodes.size()), 0, static_cast<uint32_t>(num_operands)});
    nodes.push_back(0);
  };
  met.insert(root, 1);
  enter(root);
  while (!open.empty()) {
    Frame& frame = open.back();
    if (frame.next != frame.num_operands) {
      const Term_* operand = frame.form.operand(frame.next++).term;
      if (operand->symbol->arity == 0) {
        found.push_back(constant);
        continue;
      }
      const uint32_t next = static_cast<uint32_t>(nodes.size());
      const uint32_t before = met.insert(operand, next + 1) - 1;
      if (before == next) {
        enter(operand);
      } else {
        repeated[nodes[before]] = 1;
        found.push_back(nodes[before]);
      }
      continue;
    }
    const uint32_t node = static_cast<uint32_t>(forms.size());
    if (frame.form.op != nullptr && !frame.form.op->standard) extensions = true;
    forms.push_back(frame.form);
    first_operands.push_back(static_cast<uint32_t>(operands.size()));
    operands.insert(operands.end(), found.end() - frame.num_operands, found.end());
    repeated.push_back(0);
    found.resize(found.size() - frame.num_operands);
    found.push_back(node);
    nodes[frame.met] = node;
    open.pop_back();
  }
  first_operands.push_back(static_cast<uint32_t>(operands.size()));
}

// Not one name with one constant behind it, such as (not p) and (- x), which is no longer than a
// name for it would be, nor a product of numerals.
bool LetPlan::is_worth_a_name(const TermManager& manager, uint32_t node) const {
  const WrittenForm& form = forms[node];
  if (num_operands(node) == 1 && operands[first_operands[node]] == constant) {
    switch (form.kind) {
      case WrittenForm::Application:
        return form.op != nullptr && form.op->head != SmtLib2Head::NAME;
      case WrittenForm::Negation:
      case WrittenForm::AbsoluteValue:
        return false;
      case WrittenForm::Subtraction:
      case WrittenForm::IntegerDivision:
      case WrittenForm::Residue:
        return true;
    }
  }
  return form.op == nullptr || form.op->tag != SymbolTag::TIMES ||
         !is_numeral_product(manager, form.term);
}

void LetPlan::bind(const TermManager& manager) {
  // The level of a node is the number of groups that must come before it. For the time being its
  // number is one more if it is bound, and the level itself otherwise.
  std::vector<size_t> sizes;  // of the groups
  numbers.resize(forms.size());
  const uint32_t* operand = operands.data();
  for (uint32_t node = 0; node < forms.size(); node++) {
    uint32_t level = 0;
    for (const uint32_t* end = operands.data() + first_operands[node + 1]; operand != end;
         operand++) {
      if (*operand != constant) level = std::max(level, numbers[*operand]);
    }
    const bool is_bound = repeated[node] != 0 && node != root() && is_worth_a_name(manager, node);
    repeated[node] = is_bound;
    numbers[node] = level;
    if (!is_bound) continue;
    numbers[node]++;
    if (level == sizes.size()) sizes.push_back(0);
    sizes[level]++;
  }

  size_t end = 0;
  for (const size_t size : sizes) ends.push_back(end += size);
  std::vector<size_t> next(sizes.size());  // the position of the next binding of each group
  for (size_t level = 1; level < sizes.size(); level++) next[level] = ends[level - 1];
  bound.resize(end);
  for (uint32_t node = 0; node < forms.size(); node++) {
    if (repeated[node] == 0) {
      numbers[node] = 0;
      continue;
    }
    const size_t position = next[numbers[node] - 1]++;
    bound[position] = node;
    numbers[node] = static_cast<uint32_t>(position + 1);
  }
}

}  // namespace quill
