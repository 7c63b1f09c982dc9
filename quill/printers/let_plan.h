// Which subterms of a printed term are bound by let, and in which order.
//
// A subterm is bound when it occurs more than once, unless it is tiny: a constant, one operator
// without indices followed by one constant, such as (not p), or a product of a few numerals.
// Bindings form groups, one let for each: no binding refers to the last group, only the last group
// refers to the one before, and so on, so that lets nest no deeper than they must. The order within
// a group depends only on the term.
//
// Representation: the subterms that are not constants are nodes, numbered level by level, the root
// being 0; constants have numbers of their own. Nodes and operands are in two arrays, and an array
// by node holds the number of its binding. The arrays are small, because most reads of them are at
// random, and they hold all that writing needs of a node: terms are anywhere in memory, so they are
// read only once, when the plan first meets them.
//
// Cost: time and memory linear in the number of distinct subterms and their arguments. Walks
// prefetch the terms and nodes that they will read, which are known early, so that they need not
// wait for memory.

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
  // What to write for an operand.
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
    constexpr Operand(Kind kind_, uint32_t value_) : kind(kind_), value(value_) {}
    Kind kind;
    uint32_t value;
  };

  // Binds nothing if with_names is false.
  LetPlan(const TermManager& manager, const Term_* root, WrittenForms& forms,
          bool with_names = true);

  // Bindings are numbered from 1, group by group.
  uint32_t num_bindings() const { return static_cast<uint32_t>(bound.size()); }
  uint32_t bound_node(uint32_t number) const { return bound[bound.size() - number]; }

  // The number of the last binding of each group.
  const std::vector<uint32_t>& group_ends() const { return ends; }

  // Whether the text has an operator that is not in the standard.
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

  // The term that an operand represents.
  const Term_* term(Operand what) const {
    if (what.is_constant()) return constant(what.number());
    return form(what.is_node() ? what.number() : bound_node(what.number())).term;
  }

  // Called while a binding is written; prefetches what the bindings a little later will need.
  void prefetch_binding(uint32_t number) const {
    constexpr uint32_t look_ahead = 6;
    if (number + 2 * look_ahead > bound.size()) return;
    __builtin_prefetch(&nodes[bound_node(number + 2 * look_ahead)]);
    __builtin_prefetch(&operands[nodes[bound_node(number + look_ahead)].first_operand]);
  }

 private:
  static constexpr uint32_t constant_bit = uint32_t{1} << 31;

  // Until the places of a node have been counted, and while they are counted down, one of these
  // states. After that the number of the node's binding, counted from the last one back, or 0.
  enum State : uint32_t {
    NotBound = 0,
    OnePlace = 1,
    LastOfMany = 2,  // each further place adds one
  };

  struct Node : WrittenForm {
    Node(const WrittenForm& form, uint32_t first_operand_)
        : WrittenForm(form), first_operand(first_operand_) {}
    uint32_t first_operand;
  };
  static_assert(sizeof(Node) <= 2 * sizeof(void*), "nodes are read at random");

  void collect(const TermManager& manager, const Term_* root, WrittenForms& forms);
  void bind();

  GrowingArray<Node> nodes;         // and one more, for the end of the last operands
  GrowingArray<uint32_t> operands;  // nodes, or constants with constant_bit set
  GrowingArray<uint32_t> states;    // by node
  GrowingArray<const Term_*> constants;
  GrowingArray<uint32_t> bound;  // the nodes to bind, from the last binding back
  std::vector<uint32_t> ends;
  bool extensions = false;
};

}  // namespace quill

#endif
