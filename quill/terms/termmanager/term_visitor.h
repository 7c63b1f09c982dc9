// A walk over the graph below a term, without recursion.
//
// The visitor calls the callback twice for each term, before its arguments and after them:
//
//   Walk visit(const Term_* t, bool preorder)       // or int
//
//   answer                  at the pre-visit                              at the post-visit
//   Walk::Stop, 0           stop the whole walk                           stop the whole walk
//   Walk::SkipArguments, 1  skip the arguments; the post-visit follows    go on
//   Walk::Continue, others  go on with the arguments                      go on
//
// Any other type does not compile: a bool would mean 0 and 1. Ranges are easier to use where one
// visit of each term is enough (see quill/terms/subterms.h).
//
// In dag mode each term is visited once however many parents it has; otherwise once for every path
// that leads to it. Arguments are finished in reverse order, each before its parents.
//
// TermVisitor<C> calls C::visit itself, even if a class derived from C overrides it. To choose a
// callback at run time, use VisitForwarder.
//
// A callback may call every member of every manager except gc, free_type, free_symbol and the
// destructor (see term_factory.h). It may start walks, both with other visitors that have their own
// marks and with the visitor that calls it. An inner walk with the same visitor has its own part of
// the work stack and shares the marks with the outer walk:
//   - In dag mode each walk skips what the other one has finished. If an inner walk reaches a term
//     that the outer walk has entered and not left, the inner walk makes its post-visit and the
//     outer walk makes none. (In the other mode the outer walk makes one, too.)
//   - An inner walk with clear_marks also clears the marks of the outer walk. The outer walk
//     continues from its work stack and makes the post-visits of the terms that it has entered; if
//     it meets a finished term again, it visits the term again. The marks that the rest of the
//     outer walk sets are cleared at its end if its own clear_marks says so.
// The callback must not destroy the visitor, set other marks, or shorten the mark vector.
//
// Representation: two bits per term id in a mark vector, done (2 id) and entered (2 id + 1); a bit
// beyond the end reads as clear. The marks are cleared through the list of visited terms, which in
// dag mode holds every term that has a mark, so the cost of a walk depends only on the part of the
// graph that it reaches. Marks that are kept from walk to walk go by id: after a collection that
// has freed marked terms, later terms with their ids would be skipped, so the next walk must begin
// with clear marks. Users can lend a mark vector, to reuse its storage from walk to walk. All walks
// of a visitor share one array as the work stack; each walk uses the part above those of the walks
// that enclose it.

#ifndef QUILL_TERMS_TERMMANAGER_TERM_VISITOR_H
#define QUILL_TERMS_TERMMANAGER_TERM_VISITOR_H

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

#include "quill/terms/term.h"
#include "quill/terms/walk.h"
#include "quill/utils/growing_array.h"

namespace quill {

// A base class for callbacks that are chosen at run time.
class TermVisitorCallback {
 public:
  virtual ~TermVisitorCallback() = default;
  virtual int visit(const Term_*, bool /*preorder*/) { return 2; }
};

// Calls a callback through its virtual table:
//
//   VisitForwarder forwarder(chosen);  // a TermVisitorCallback*, not owned
//   TermVisitor<VisitForwarder> visitor(&forwarder, /*visit_once=*/true);
class VisitForwarder {
 public:
  explicit VisitForwarder(TermVisitorCallback* callback_) : callback(callback_) {}
  int visit(const Term_* t, bool preorder) { return callback->visit(t, preorder); }

 private:
  TermVisitorCallback* callback;
};

// Clears the marks of the visited terms, and the list itself, at the end of its scope.
class CacheCleaner {
 public:
  CacheCleaner(std::vector<bool>* marks_, std::vector<const Term_*>* visited_)
      : marks(marks_), visited(visited_) {}
  CacheCleaner(const CacheCleaner&) = delete;
  CacheCleaner& operator=(const CacheCleaner&) = delete;
  ~CacheCleaner() {
    if (marks == nullptr) return;
    const size_t size = marks->size();
    for (const Term_* t : *visited) {
      const size_t bit = 2 * size_t{static_cast<uint32_t>(t->id)};  // as in TermVisitor
      if (bit + 1 < size) {
        (*marks)[bit] = false;
        (*marks)[bit + 1] = false;
      } else if (bit < size) {
        (*marks)[bit] = false;
      }
    }
    visited->clear();
  }

 private:
  std::vector<bool>* marks;  // null: not armed
  std::vector<const Term_*>* visited;
};

template <class C>
class TermVisitor {
 public:
  TermVisitor(C* callback_, bool dag_mode_)
      : callback(callback_), dag_mode(dag_mode_), marks(&own_marks) {}
  TermVisitor(const TermVisitor&) = delete;
  TermVisitor& operator=(const TermVisitor&) = delete;

  // Uses these marks instead of the visitor's own. Call it before the first walk, with all marks
  // clear. The visitor does not own the vector, which must not be shortened during a walk.
  void set_marks(std::vector<bool>* lent) { marks = lent; }

  // Walks root and all that is below it. With clear_marks the next walk starts afresh, even if this
  // one was stopped or the callback threw. Without it, in dag mode, later walks skip the terms that
  // are done.
  void visit(const Term_* root, bool clear_marks) {
    using Answer = decltype(callback->C::visit(root, true));
    static_assert(
        std::is_same_v<Answer, Walk> || std::is_same_v<Answer, int>,
        "the visit of a callback returns quill::Walk or int: 0 stops the walk, 1 skips the "
        "arguments, all else goes on");
    assert((root == nullptr || root->symbol != nullptr) && "a walk begins at a freed term");
    const CacheCleaner cleaner(clear_marks ? marks : nullptr, &visited);
    const Frame frame(this, clear_marks);
    stack.push_back(waiting(root));
    while (stack.size() != frame.begin) {
      Entry entry = stack.back();
      const Term_* t = term_of(entry);
      if (dag_mode && is_marked(done_bit(t))) {
        stack.pop_back();
        continue;
      }
      // Go down from argument to argument; the one pushed last is not done.
      while (!is_open(entry) && !is_marked(entered_bit(t))) {
        const int answer = static_cast<int>(callback->C::visit(t, true));
        visited.push_back(t);  // first, so that the list leads to every bit that is set
        mark_entered(t);
        if (answer == 0) return;
        if (answer == 1 || !push_arguments(t)) break;
        entry = stack.back();
        t = term_of(entry);
      }
      // The entry stays on the stack during this call, so that a walk that the callback starts
      // knows that it is an inner one.
      const int answer = static_cast<int>(callback->C::visit(t, false));
      stack.pop_back();
      if (dag_mode) {
        mark_done(t);
      } else {
        (*marks)[entered_bit(t)] = false;
      }
      if (answer == 0) return;
    }
  }

 private:
  // Ids are below 2^32, as the bank's handles are. The cast tells the compiler, which can then fold
  // away the signed arithmetic inside vector<bool>.
  static size_t done_bit(const Term_* t) { return 2 * size_t{static_cast<uint32_t>(t->id)}; }
  static size_t entered_bit(const Term_* t) { return done_bit(t) + 1; }

  bool is_marked(size_t bit) { return is_within(bit) && (*marks)[bit]; }

  void mark_entered(const Term_* t) {
    if (!is_within(entered_bit(t))) grow(t);
    (*marks)[entered_bit(t)] = true;
  }

  void mark_done(const Term_* t) {
    if (done_bit(t) >= num_marks) prepare_mark_of_done(t);
    (*marks)[done_bit(t)] = true;
  }

  // vector<bool>::size() takes longer than all the rest, so num_marks is asked first.
  bool is_within(size_t bit) { return bit < num_marks || is_within_size(bit); }

  [[gnu::noinline]] bool is_within_size(size_t bit) {
    if (!relisting) num_marks = marks->size();
    return bit < marks->size();
  }

  [[gnu::noinline]] void prepare_mark_of_done(const Term_* t) {
    if (relisting) visited.push_back(t);
    if (!is_within(done_bit(t))) grow(t);
  }

  // Makes room for both bits of a term. Doubles the vector, so that marking takes amortised
  // constant time.
  [[gnu::noinline]] void grow(const Term_* t) {
    marks->resize(std::max(entered_bit(t) + 1, 2 * marks->size()));
    if (!relisting) num_marks = marks->size();
  }

  // A term that waits to be entered. If the lowest bit is set, the term has been entered and waits
  // for its arguments, which are above it.
  using Entry = uintptr_t;
  static Entry waiting(const Term_* t) { return reinterpret_cast<Entry>(t); }
  static bool is_open(Entry entry) { return (entry & 1) != 0; }
  static const Term_* term_of(Entry entry) {
    return reinterpret_cast<const Term_*>(entry & ~Entry{1});
  }

  // The part of the work stack that belongs to one walk, from `begin` on; released on every way
  // out. What is below it belongs to the enclosing walks.
  class Frame {
   public:
    Frame(TermVisitor* visitor_, bool clears_)
        : begin(visitor_->stack.size()), visitor(visitor_), clears(clears_) {
      visitor->num_marks = visitor->marks->size();
    }
    Frame(const Frame&) = delete;
    Frame& operator=(const Frame&) = delete;
    ~Frame() {
      visitor->stack.truncate(begin);
      if (begin != 0) {
        visitor->return_to_outer_walk(clears);
      } else {
        visitor->relisting = false;
      }
    }

    const size_t begin;

   private:
    TermVisitor* visitor;
    bool clears;
  };

  [[gnu::noinline]] void return_to_outer_walk(bool marks_were_cleared) {
    if (marks_were_cleared) relisting = true;
    if (relisting) num_marks = 0;
  }

  // Opens the term on top of the stack and pushes the arguments that the walk still has to visit.
  // If there are none, returns false and changes nothing.
  bool push_arguments(const Term_* t) {
    const size_t top = stack.size() - 1;
    const uint64_t arity = t->symbol->arity;
    for (uint64_t i = 0; i < arity; ++i) {
      if (!dag_mode || !is_marked(done_bit(t->args[i]))) stack.push_back(waiting(t->args[i]));
    }
    if (stack.size() == top + 1) return false;
    stack[top] |= 1;
    return true;
  }

  C* callback;
  bool dag_mode;
  std::vector<bool> own_marks;
  std::vector<bool>* marks;
  // At most the number of marks. It is 0 while `relisting`: marking a term as done then takes the
  // slow path, which looks at that flag, so that the flag costs other walks nothing.
  size_t num_marks = 0;
  // Whether an inner walk has emptied the list of visited terms. Until the outermost walk ends,
  // each term that is marked as done is then listed again.
  bool relisting = false;
  GrowingArray<Entry> stack;
  std::vector<const Term_*>
      visited;  // since the marks were last cleared, in the order of pre-visits
};

}  // namespace quill

#endif
