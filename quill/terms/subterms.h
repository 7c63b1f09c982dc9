// The terms at and below some roots, one after the other:
//
//   for (const Term_* t : postorder(root)) ...         // arguments before the terms they are in
//   for (const Term_* t : preorder({a, b})) ...        // terms before their arguments
//
// Each term comes once, however often it occurs. Arguments are taken from the first to the last,
// and roots in the given order.
//
// A range walks as it is read: a loop may be left at any time, terms may be made in it, and several
// ranges may be read at once. Nothing recurses. Each term and each argument costs constant time;
// the range keeps a bit for each id (see term_id_set.h) and the path to the current term. A
// collection must not free terms of the range while it is read.
//
// A range is read once, through one iterator; begin() a second time goes on where the first reading
// stopped. It is neither copied nor moved. After std::bad_alloc it must not be read on.
//
// for_each_subterm calls a function that may end the walk or leave out arguments; TermVisitor
// visits each term twice, before its arguments and after them.

#ifndef QUILL_TERMS_SUBTERMS_H
#define QUILL_TERMS_SUBTERMS_H

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <type_traits>
#include <utility>
#include <vector>

#include "quill/terms/term.h"
#include "quill/terms/term_id_set.h"
#include "quill/terms/walk.h"
#include "quill/utils/growing_array.h"

namespace quill {

enum class SubtermOrder { Preorder, Postorder };

template <SubtermOrder order>
class Subterms {
 public:
  explicit Subterms(TermSpan roots_) : roots(roots_.begin(), roots_.end()) {}
  Subterms(const Subterms&) = delete;
  Subterms& operator=(const Subterms&) = delete;

  class Iterator {
   public:
    using value_type = const Term_*;
    using difference_type = ptrdiff_t;
    using iterator_concept = std::input_iterator_tag;

    Iterator() = default;
    explicit Iterator(Subterms* range_) : range(range_) {}

    const Term_* operator*() const { return range->current; }
    Iterator& operator++() {
      range->advance();
      return *this;
    }
    void operator++(int) { range->advance(); }
    bool operator==(std::default_sentinel_t) const { return range->current == nullptr; }

   private:
    Subterms* range = nullptr;
  };

  Iterator begin() {
    if (current == nullptr) advance();
    return Iterator(this);
  }
  std::default_sentinel_t end() const { return {}; }

  // Leaves out the arguments of the current term, unless other terms lead to them.
  void skip_arguments() requires(order == SubtermOrder::Preorder) {
    if (!path.empty() && path.back().term == current) path.pop_back();
  }

 private:
  struct Step {
    const Term_* term;
    const Term_* const* next;  // argument to look at
  };

  void advance() {
    while (true) {
      if (path.empty()) {
        if (next_root == roots.size()) {
          current = nullptr;
          return;
        }
        const Term_* root = roots[next_root++];
        assert(root != nullptr && root->symbol != nullptr && "a walk begins at a freed term");
        if (!seen.insert(root)) continue;
        path.push_back({root, root->args});
        if constexpr (order == SubtermOrder::Preorder) {
          current = root;
          return;
        }
      }
      Step& step = path.back();
      const Term_* const* const end = step.term->args + step.term->symbol->arity;
      const Term_* const* next = step.next;
      while (next != end && !seen.insert(*next)) ++next;
      if (next != end) {
        const Term_* t = *next;
        step.next = next + 1;
        if constexpr (order == SubtermOrder::Preorder) {
          path.push_back({t, t->args});
        } else if (t->symbol->arity != 0) {
          path.push_back({t, t->args});
          continue;  // its turn comes after its arguments
        }
        current = t;
        return;
      }
      if constexpr (order == SubtermOrder::Postorder) current = step.term;
      path.pop_back();
      if constexpr (order == SubtermOrder::Postorder) return;
    }
  }

  std::vector<const Term_*> roots;
  size_t next_root = 0;
  TermIdSet seen;
  GrowingArray<Step> path;
  const Term_* current = nullptr;
};

inline Subterms<SubtermOrder::Postorder> postorder(TermSpan roots) {
  return Subterms<SubtermOrder::Postorder>(roots);
}
inline Subterms<SubtermOrder::Postorder> postorder(std::initializer_list<const Term_*> roots) {
  return postorder(TermSpan(roots.begin(), roots.size()));
}
inline Subterms<SubtermOrder::Postorder> postorder(const Term_* root) {
  return postorder(TermSpan(&root, 1));
}

inline Subterms<SubtermOrder::Preorder> preorder(TermSpan roots) {
  return Subterms<SubtermOrder::Preorder>(roots);
}
inline Subterms<SubtermOrder::Preorder> preorder(std::initializer_list<const Term_*> roots) {
  return preorder(TermSpan(roots.begin(), roots.size()));
}
inline Subterms<SubtermOrder::Preorder> preorder(const Term_* root) {
  return preorder(TermSpan(&root, 1));
}

// Calls action(t) for each term at and below the roots, before its arguments. The action returns
// nothing, or a Walk. False if it has ended the walk. What it throws ends the walk, too.
template <class Action>
bool for_each_subterm(TermSpan roots, Action action) {
  using Answer = std::invoke_result_t<Action&, const Term_*>;
  static_assert(std::is_void_v<Answer> || std::is_same_v<Answer, Walk>,
                "the action of for_each_subterm returns nothing or a quill::Walk");
  auto terms = preorder(roots);
  for (const Term_* t : terms) {
    if constexpr (std::is_void_v<Answer>) {
      action(t);
    } else {
      const Walk answer = action(t);
      if (answer == Walk::Stop) return false;
      if (answer == Walk::SkipArguments) terms.skip_arguments();
    }
  }
  return true;
}
template <class Action>
bool for_each_subterm(const Term_* root, Action action) {
  return for_each_subterm(TermSpan(&root, 1), std::move(action));
}

}  // namespace quill

#endif
