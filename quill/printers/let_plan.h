// Which subterms of a printed term are bound by let, and in which order.
//
// A subterm is bound when it occurs more than once, unless it is tiny: a constant, one operator
// without indices and one constant after it, such as (not p), or a product of a few numerals.
// Bindings are put into groups, one let for each: the last group is referred to by none of them,
// the one before by the last alone, and so on, so that the lets nest no deeper than they must. The
// order within a group depends on the term alone.
//
// Representation: the subterms that are no constants are nodes, numbered from the root at 0 on,
// level by level; constants have numbers of their own. Nodes and operands lie in two arrays, and an
// array by node holds the number of its binding. They are small, because most reads of them are at
// random, and hold all that writing needs of a node: terms lie anywhere in memory, and are read
// once, when they are met.
//
// Cost: time and memory linear in the number of distinct subterms and their arguments. No walk
// waits for memory: it is known early which terms and nodes will be read, and they are fetched.

#ifndef QUILL_PRINTERS_LET_PLAN_H
#define QUILL_PRINTERS_LET_PLAN_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "quill/printers/written_form.h"
#include "quill/terms/term.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/growing_array.h"

namespace quill {

class LetPlan {
 public:
  // What is written for an operand.
  class Operand {
   public:
    static constexpr Operand constant(uint32_t number) { return {Constant, number}; }
    static constexpr Operand node(uint32_t number) { return {Node, number}; }
    static constexpr Operand binding(uint32_t number) { return {Binding, number}; }

    constexpr bool is_constant() const { return kind == Constant; }
    constexpr bool is_node() const { return kind == Node; }
    constexpr bool is_binding() const { return kind == Binding; }
    constexpr uint32_t number() const { return value; }
    friend bool operator==(const Operand&, const Operand&) = default;

   private:
    enum Kind : uint32_t { Constant, Node, Binding };
    constexpr Operand(Kind what, uint32_t which) : kind(what), value(which) {}
    Kind kind;
    uint32_t value;
  };

  // Without names nothing is bound.
  LetPlan(const TermManager& manager, const Term_* root, WrittenForms& forms,
          bool with_names = true);

  // Bindings are numbered from 1 on, group by group.
  uint32_t num_bindings() const { return static_cast<uint32_t>(bound.size()); }
  uint32_t bound_node(uint32_t number) const { return bound[bound.size() - number]; }

  // The number of the last binding of each group.
  const std::vector<uint32_t>& group_ends() const { return ends; }

  // Whether some operator in the text is none of the standard.
  bool has_extensions() const { return extensions; }

  // The whole term: node 0 or constant 0.
  Operand root() const { return nodes.empty() ? Operand::constant(0) : Operand::node(0); }

  uint32_t num_nodes() const { return static_cast<uint32_t>(states.size()); }
  uint32_t num_constants() const { return static_cast<uint32_t>(constants.size()); }
  const Term_* constant(uint32_t number) const { return constants[number]; }

  // How a node is written, and where its operands are.
  const WrittenForm& form(uint32_t node) const { return nodes[node]; }
  uint32_t first_operand(uint32_t node) const { return nodes[node].first_operand; }
  uint32_t end_of_operands(uint32_t node) const { return nodes[node + 1].first_operand; }
  Operand operand(uint32_t place) const {
    const uint32_t below = operands[place];
    if (below >= constant_bit) return Operand::constant(below - constant_bit);
    const uint32_t back = states[below];
    return back == 0 ? Operand::node(below) : Operand::binding(num_bindings() + 1 - back);
  }

  // The term that an operand stands for.
  const Term_* term(Operand what) const {
    if (what.is_constant()) return constant(what.number());
    return form(what.is_node() ? what.number() : bound_node(what.number())).term;
  }

  // While a binding is written: fetches what those a little later will need.
  void prefetch_binding(uint32_t number) const {
    constexpr uint32_t look_ahead = 6;
    if (number + 2 * look_ahead > bound.size()) return;
    __builtin_prefetch(&nodes[bound_node(number + 2 * look_ahead)]);
    __builtin_prefetch(&operands[nodes[bound_node(number + look_ahead)].first_operand]);
  }

 private:
  static constexpr uint32_t constant_bit = uint32_t{1} << 31;

  // What is known of a node until its places are counted, and while they are counted down; then the
  // number of its binding, from the last one back, or 0.
  enum State : uint32_t {
    NotBound = 0,
    OnePlace = 1,
    LastOfMany = 2,  // and one more for every further place
  };

  struct Node : WrittenForm {
    Node(const WrittenForm& form, uint32_t first) : WrittenForm(form), first_operand(first) {}
    uint32_t first_operand;
  };
  static_assert(sizeof(Node) <= 2 * sizeof(void*), "nodes are read at random");

  void collect(const TermManager& manager, const Term_* root, WrittenForms& forms);
  void bind();

  GrowingArray<Node> nodes;         // and one after the last, for the end of its operands
  GrowingArray<uint32_t> operands;  // nodes, or constants with the bit set
  GrowingArray<uint32_t> states;    // by node
  GrowingArray<const Term_*> constants;
  GrowingArray<uint32_t> bound;  // the nodes to bind, from the last binding back
  std::vector<uint32_t> ends;
  bool extensions = false;
};

}  // namespace quill

#endif
