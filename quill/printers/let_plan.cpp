#include "quill/printers/let_plan.h"

#include <algorithm>
#include <new>

#include "quill/terms/term_table.h"
#include "quill/terms/termmanager/misuse_checks.h"

namespace quill {

namespace {

// Whether a name for the term would be no shorter than the term. This holds for one operator with
// one constant after it, such as (not p) and (- x), and for a product of numerals.
bool is_tiny(const TermManager& manager, const WrittenForm& form) {
  if (form.num_operands() == 1 && form.operand(0).term->symbol->arity == 0) {
    switch (form.kind) {
      case WrittenForm::Application:
        return form.op() == nullptr || form.op()->head == SmtLib2Head::Name;
      case WrittenForm::Negation:
      case WrittenForm::AbsoluteValue:
        return true;
      case WrittenForm::Subtraction:
      case WrittenForm::IntegerDivision:
      case WrittenForm::Residue:
        return false;
    }
  }
  return form.tag == SymbolTag::TIMES && is_numeral_product(manager, form.term);
}

}  // namespace

LetPlan::LetPlan(const TermManager& manager, const Term_* root, WrittenForms& forms,
                 bool with_names) {
  require_own(manager, root);
  if (root->symbol->arity == 0) {
    constants.push_back(root);
    return;
  }
  collect(manager, root, forms);
  if (with_names) {
    bind();
  } else {
    std::fill(states.begin(), states.end(), NotBound);
  }
}

// Numbers the subterms level by level and counts the places of each.
void LetPlan::collect(const TermManager& manager, const Term_* root, WrittenForms& forms) {
  constexpr size_t max_places = constant_bit - 2;
  constexpr size_t look_ahead = 16;
  GrowingArray<const Term_*> places;  // the terms in the operands' places on this level
  GrowingArray<const Term_*> lower;   // the same on the next level
  size_t num_places = 0;              // on all levels
  TermTable<uint32_t> met(manager.get_bank()->id_bound());  // by term, as in operands, plus one
  const auto enter = [&](const Term_* t) {
    const WrittenForm form = forms.of(t);
    const uint64_t num_operands = form.num_operands();
    if (num_operands > max_places - num_places) throw std::bad_alloc();  // out of numbers
    if (form.op() != nullptr && !form.op()->standard) extensions = true;
    nodes.push_back(Node(form, static_cast<uint32_t>(num_places)));
    states.push_back(is_tiny(manager, form) ? NotBound : OnePlace);
    num_places += num_operands;
    const Term_** const below = lower.extend(num_operands);
    for (uint64_t i = 0; i < num_operands; ++i) below[i] = form.operand(i).term;
  };
  met.insert(root, 1);
  enter(root);
  while (!lower.empty()) {
    places.swap(lower);
    lower.clear();
    uint32_t* next_operand = operands.extend(places.size());
    for (size_t at = 0; at < places.size(); ++at) {
      if (at + look_ahead < places.size()) __builtin_prefetch(places[at + look_ahead]);
      const Term_* t = places[at];
      const bool is_constant = t->symbol->arity == 0;
      const auto next =
          static_cast<uint32_t>(is_constant ? constant_bit + constants.size() : nodes.size());
      const uint32_t what = met.insert(t, next + 1) - 1;
      *next_operand++ = what;
      if (what == next) {
        if (is_constant) {
          constants.push_back(t);
        } else {
          enter(t);
        }
      } else if (!is_constant && states[what] != NotBound) {
        states[what] += states[what] == OnePlace ? 2 : 1;
      }
    }
  }
  nodes.push_back(Node(nodes[0], static_cast<uint32_t>(num_places)));
}

// Walks down from the root and comes to a node after it has been to all places of the node. A node
// therefore belongs to the group before the earliest group that has a place of it. A node that is
// not bound is written in its only place and belongs to the group of that place.
void LetPlan::bind() {
  constexpr size_t look_ahead = 4;
  GrowingArray<uint32_t> group;  // the bound nodes of a group, and the nodes written inside them
  GrowingArray<uint32_t> earlier;
  states[0] = NotBound;
  earlier.push_back(0);
  while (!earlier.empty()) {
    group.swap(earlier);
    earlier.clear();
    for (size_t at = 0; at < group.size(); ++at) {
      if (at + 2 * look_ahead < group.size()) {
        __builtin_prefetch(&nodes[group[at + 2 * look_ahead]]);
        __builtin_prefetch(&operands[nodes[group[at + look_ahead]].first_operand]);
      }
      const uint32_t first = first_operand(group[at]);
      for (uint32_t place = end_of_operands(group[at]); place-- != first;) {
        const uint32_t below = operands[place];
        if (below >= constant_bit) continue;
        uint32_t& state = states[below];
        switch (state) {
          case NotBound:  // tiny, and so is all below it
            break;
          case OnePlace:
            state = NotBound;
            group.push_back(below);
            break;
          case LastOfMany:
            bound.push_back(below);
            state = num_bindings();
            earlier.push_back(below);
            break;
          default:
            --state;
        }
      }
    }
    if (!earlier.empty()) ends.push_back(num_bindings());
  }
  // So far `ends` holds the number of the first binding of each group, counted from the last one
  // back.
  uint32_t later = 0;
  for (uint32_t& end : ends) {
    const uint32_t here = end;
    end = num_bindings() - later;
    later = here;
  }
  std::reverse(ends.begin(), ends.end());
}

}  // namespace quill
