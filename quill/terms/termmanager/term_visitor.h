// A walk over the graph below a term, without recursion.
//
// The callback is asked twice about each term, before its arguments and after them:
//
//   int visit(const Term_* t, bool preorder)
//
//   answer    at the pre-visit                                       at the post-visit
//   0         stop the whole walk                                    stop the whole walk
//   1         leave out the arguments; the post-visit follows        go on
//   other     go on with the arguments                               go on
//
// In dag mode each term is visited once however many parents it has; otherwise once for every path
// that leads to it. Arguments are finished in reverse order, each before its parents.
//
// The visitor of class TermVisitor<C> calls C::visit itself, also where a class derived from C
// overrides it. A callback that is chosen at run time is called through VisitForwarder.
//
// What a callback may do. It may call every member of every manager except gc, free_type,
// free_symbol and the destructor (see term_factory.h). It may walk: with other visitors that have
// marks of their own, and with the very visitor that calls it. Such an inner walk has a work stack
// of its own and shares the marks with the outer walk:
//   - In dag mode each walk leaves out what the other one has finished. An inner walk that reaches
//     a term which the outer walk has entered and not left makes the post-visit of it, and the
//     outer walk makes none. (Otherwise the outer walk makes one, too.)
//   - An inner walk with clear_marks also clears what the outer walk has marked. The outer walk
//     goes on from its work stack and makes the post-visits of the terms that it has entered; a
//     finished term that it meets again is visited again. The marks of the rest of the outer walk
//     are cleared at its end, if its own clear_marks says so.
// The callback must not destroy the visitor, lend it other marks, or make the marks shorter.
//
// Representation: two bits per term id in a mark vector, done (2 id) and entered (2 id + 1); a bit
// beyond the end reads as clear. The list of visited terms is all that is needed to clear the marks
// again, so that a walk costs as much as the part of the graph that it reaches: in dag mode it
// holds every term that has a mark. Marks can be lent by the user, to reuse their storage from walk
// to walk. All walks of a visitor use one array as the work stack, each the part of it above the
// walks that it runs within.

#ifndef QUILL_TERMS_TERMMANAGER_TERM_VISITOR_H
#define QUILL_TERMS_TERMMANAGER_TERM_VISITOR_H

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "quill/terms/term.h"
#include "quill/utils/growing_array.h"

namespace quill {

// A base for callbacks that are chosen at run time.
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
  explicit VisitForwarder(TermVisitorCallback* receiver) : callback(receiver) {}
  int visit(const Term_* t, bool preorder) { return callback->visit(t, preorder); }

 private:
  TermVisitorCallback* callback;
};

// Clears the marks of the visited terms, and the list, when it goes out of scope.
class CacheCleaner {
 public:
  CacheCleaner(std::vector<bool>* marked, std::vector<const Term_*>* reached)
      : marks(marked), visited(reached) {}
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
  TermVisitor(C* receiver, bool visit_once)
      : callback(receiver), dag_mode(visit_once), marks(&own_marks) {}
  TermVisitor(const TermVisitor&) = delete;
  TermVisitor& operator=(const TermVisitor&) = delete;

  // Marks to use instead of the visitor's own; to be set before the first walk, and all clear. Not
  // owned, and not to be made shorter during a walk.
  void set_marks(std::vector<bool>* lent) { marks = lent; }

  // Walks what is below root. With clear_marks the next walk starts afresh, also when this one was
  // stopped or the callback threw; without it, in dag mode, a later walk leaves out the terms that
  // are done.
  void visit(const Term_* root, bool clear_marks) {
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
      // Downwards from argument to argument: the one that was pushed last is not done.
      while (!is_open(entry) && !is_marked(entered_bit(t))) {
        const int answer = callback->C::visit(t, true);
        visited.push_back(t);  // first, so that no bit is ever set that the list does not clear
        mark_entered(t);
        if (answer == 0) return;
        if (answer == 1 || !push_arguments(t)) break;
        entry = stack.back();
        t = term_of(entry);
      }
      // It stays on the stack for so long, which tells a walk that the callback begins that it is
      // an inner one.
      const int answer = callback->C::visit(t, false);
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
  // Ids are below 2^32, as the bank's handles are; said here, the signed arithmetic inside of
  // vector<bool> folds away.
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

  // Asking a vector<bool> for its size takes longer than all the rest.
  bool is_within(size_t bit) { return bit < num_marks || is_within_size(bit); }

  [[gnu::noinline]] bool is_within_size(size_t bit) {
    if (!relisting) num_marks = marks->size();
    return bit < marks->size();
  }

  [[gnu::noinline]] void prepare_mark_of_done(const Term_* t) {
    if (relisting) visited.push_back(t);
    if (!is_within(done_bit(t))) grow(t);
  }

  // Makes room for both bits of a term, doubling, so that marking is constant time on average.
  [[gnu::noinline]] void grow(const Term_* t) {
    marks->resize(std::max(entered_bit(t) + 1, 2 * marks->size()));
    if (!relisting) num_marks = marks->size();
  }

  // A term that waits to be entered, or, with the lowest bit set, one that has been and waits for
  // its arguments above it.
  using Entry = uintptr_t;
  static Entry waiting(const Term_* t) { return reinterpret_cast<Entry>(t); }
  static bool is_open(Entry entry) { return (entry & 1) != 0; }
  static const Term_* term_of(Entry entry) {
    return reinterpret_cast<const Term_*>(entry & ~Entry{1});
  }

  // What a walk has to itself: the part of the work stack from `begin` on, released on every way
  // out. What is below it belongs to the walks that are under way.
  class Frame {
   public:
    Frame(TermVisitor* owner, bool clears_marks)
        : begin(owner->stack.size()), visitor(owner), clears(clears_marks) {
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

  // Opens the term on top and pushes the arguments that a walk still has to visit; false, without a
  // change, if there are none.
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
  // As many marks as there are, or fewer. 0 while `relisting`: then no term can be marked as done
  // without a look at that flag, which therefore costs the usual walk nothing.
  size_t num_marks = 0;
  // Whether an inner walk has emptied the list of the visited terms. Until the outermost walk ends,
  // each term that is marked as done is listed once more.
  bool relisting = false;
  GrowingArray<Entry> stack;
  std::vector<const Term_*>
      visited;  // since the marks were last cleared, in the order of pre-visits
};

}  // namespace quill

#endif
