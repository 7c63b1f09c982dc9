// Which subterms of a printed term are bound by let, and in which order.
//
// A subterm is bound when it occurs more than once, unless it is tiny: a constant, one operator
// without indices and one constant behind it, such as (not p), or a product of a few numerals.
// Bindings are put into groups, one let for each: group 0 refers to no binding, group n + 1 to some
// binding of group n, so that the lets nest no deeper than they must. Within a group the order is
// that of a walk from the left, and depends on the term alone.
//
// Representation: the subterms that are no constants are nodes, numbered from the root at 0 on.
// Arrays by node hold how it is written, where its operands begin in the one array of all operands,
// and the number of its binding. They are small, because most reads of them are at random, and hold
// all that writing needs of a node but what the terms alone know: terms lie anywhere in memory, and
// are read once, when they are met.
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
#include "quill/utils/growing_array.h"
#include "quill/utils/huge_pages.h"

namespace quill {

class LetPlan {
 public:
  // How terms are to be written: which operands stand where.
  using FormOf = std::function<WrittenForm(const Term_*)>;

  // What is written for an operand.
  class Operand {
   public:
    static constexpr Operand constant() { return Operand(UINT32_MAX); }
    static constexpr Operand node(uint32_t number) { return Operand(number); }
    static constexpr Operand binding(uint32_t number) { return Operand(number | binding_bit); }

    bool is_constant() const { return code == UINT32_MAX; }
    bool is_binding() const { return (code & binding_bit) != 0 && !is_constant(); }
    // Of a node, or of a binding.
    uint32_t number() const { return code & ~binding_bit; }
    friend bool operator==(const Operand&, const Operand&) = default;

   private:
    static constexpr uint32_t binding_bit = uint32_t{1} << 31;
    explicit constexpr Operand(uint32_t value) : code(value) {}
    uint32_t code;
  };

  LetPlan(const TermManager& manager, const Term_* root, const FormOf& form_of);

  // The bound nodes, group by group; the number of a binding is its position here plus one.
  const std::vector<uint32_t>& bindings() const { return bound; }

  // The position behind the last binding of each group.
  const std::vector<size_t>& group_ends() const { return ends; }

  // Whether some operator in the text is none of the standard.
  bool has_extensions() const { return extensions; }

  // How a node is written, and what for its operands. The root is node 0, unless it is a constant.
  const WrittenForm& form(uint32_t node) const { return forms[node]; }
  uint32_t num_operands(uint32_t node) const {
    return first_operands[node + 1] - first_operands[node];
  }
  Operand operand(uint32_t node, uint64_t i) const {
    const uint32_t below = operands[first_operands[node] + i];
    if (below == constant) return Operand::constant();
    return numbers[below] != 0 ? Operand::binding(numbers[below]) : Operand::node(below);
  }

  // While the binding at a position is written: fetches what those a little later will need.
  void prefetch_binding(size_t position) const {
    constexpr size_t look_ahead = 6;
    if (position + 2 * look_ahead >= bound.size()) return;
    const uint32_t late = bound[position + 2 * look_ahead];
    __builtin_prefetch(&forms[late]);
    __builtin_prefetch(&first_operands[late]);
    __builtin_prefetch(&operands[first_operands[bound[position + look_ahead]]]);
  }

 private:
  static constexpr uint32_t constant = UINT32_MAX;

  void collect(const TermManager& manager, const Term_* root, const FormOf& form_of);
  void bind(const TermManager& manager);
  bool is_worth_a_name(const TermManager& manager, uint32_t node) const;

  GrowingArray<WrittenForm> forms;
  GrowingArray<uint32_t> first_operands;  // and, at the end, how many there are
  GrowingArray<uint32_t> operands;        // nodes, or `constant`
  GrowingArray<uint8_t> repeated;         // whether the node occurs more than once
  std::vector<uint32_t, huge_pages::Allocator<uint32_t>> numbers;  // of bindings; 0: not bound
  std::vector<uint32_t> bound;
  std::vector<size_t> ends;
  bool extensions = false;
};

}  // namespace quill

#endif
