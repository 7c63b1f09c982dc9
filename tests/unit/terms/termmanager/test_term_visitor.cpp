#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <map>
#include <new>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "quill/terms/signature.h"
#include "quill/terms/term_bank.h"
#include "quill/terms/termmanager/term_visitor.h"
#include "quill/terms/type_universe.h"
#include "quill/utils/scope_guard.h"
#include "tests/support/failing_memory.h"

namespace quill {
namespace {

using Terms = std::vector<const Term_*>;

// Terms whose symbols take as many arguments as they are given.
class Graph {
 public:
  const Term_* make(const std::string& name, const Terms& args = {}) {
    std::vector<const DataType*> type = {universe.get_application_type()};
    type.insert(type.end(), args.size() + 1, universe.make_type("S"));
    return bank.make_term(signature.add_symbol(name.c_str(), universe.make_type(type)),
                          args.data());
  }

  TypeUniverse universe;
  Signature signature{&universe};
  TermBank bank;
};

// Writes down each call as +name or -name, and answers as it is told.
struct Recorder {
  std::string calls;
  std::map<std::string, int> answers;  // by call; 2 for all others

  int visit(const Term_* t, bool preorder) {
    const std::string call = (preorder ? "+" : "-") + std::string(t->symbol->name);
    if (!calls.empty()) calls += ' ';
    calls += call;
    const auto it = answers.find(call);
    return it != answers.end() ? it->second : 2;
  }
};

size_t marked(const std::vector<bool>& marks) {
  size_t n = 0;
  for (const bool bit : marks) n += bit;
  return n;
}

class TermVisitorTest : public ::testing::Test {
 protected:
  std::string walk(const Term_* root, bool dag_mode, std::map<std::string, int> answers = {}) {
    Recorder recorder{"", std::move(answers)};
    TermVisitor<Recorder> visitor(&recorder, dag_mode);
    std::vector<bool> marks;
    visitor.set_marks(&marks);
    visitor.visit(root, /*clear_marks=*/true);
    EXPECT_EQ(marked(marks), 0U);
    return recorder.calls;
  }

  Graph g;
  const Term_* a = g.make("a");
  const Term_* b = g.make("b");
};

constexpr bool as_dag = true;
constexpr bool as_tree = false;

TEST_F(TermVisitorTest, IsNotCopied) {
  EXPECT_FALSE(std::is_copy_constructible_v<TermVisitor<Recorder>>);
  EXPECT_FALSE(std::is_copy_assignable_v<TermVisitor<Recorder>>);
}

// --- Call sequences ---

TEST_F(TermVisitorTest, AConstantIsVisitedBeforeAndAfter) {
  EXPECT_EQ(walk(a, as_dag), "+a -a");
  EXPECT_EQ(walk(a, as_tree), "+a -a");
}

TEST_F(TermVisitorTest, TheLastArgumentIsWalkedFirst) {
  const Term_* f = g.make("f", {a, b});
  EXPECT_EQ(walk(f, as_dag), "+f +b -b +a -a -f");
  EXPECT_EQ(walk(f, as_tree), "+f +b -b +a -a -f");
}

TEST_F(TermVisitorTest, ARepeatedArgumentIsVisitedOnceInADagAndTwiceInATree) {
  const Term_* f = g.make("f", {a, a});
  EXPECT_EQ(walk(f, as_dag), "+f +a -a -f");
  EXPECT_EQ(walk(f, as_tree), "+f +a -a +a -a -f");
}

TEST_F(TermVisitorTest, ASharedSubtermIsVisitedByItsLastParentOnly) {
  const Term_* h = g.make("h", {a});
  const Term_* f = g.make("f", {h, g.make("k", {h})});
  EXPECT_EQ(walk(f, as_dag), "+f +k +h +a -a -h -k -f");
  EXPECT_EQ(walk(f, as_tree), "+f +k +h +a -a -h -k +h +a -a -h -f");
}

// --- Answers ---

TEST_F(TermVisitorTest, OneLeavesOutTheArguments) {
  const Term_* f = g.make("f", {g.make("h", {a}), b});
  EXPECT_EQ(walk(f, as_dag, {{"+f", 1}}), "+f -f");
  EXPECT_EQ(walk(f, as_dag, {{"+h", 1}}), "+f +b -b +h -h -f");
  EXPECT_EQ(walk(f, as_tree, {{"+h", 1}}), "+f +b -b +h -h -f");
}

TEST_F(TermVisitorTest, ATermLeftOutIsStillReachedThroughAnotherParent) {
  const Term_* f = g.make("f", {a, g.make("h", {a})});
  EXPECT_EQ(walk(f, as_dag, {{"+h", 1}}), "+f +h -h +a -a -f");
}

TEST_F(TermVisitorTest, ZeroStopsTheWalkAtOnce) {
  const Term_* f = g.make("f", {g.make("h", {a}), b});
  for (const bool dag_mode : {as_dag, as_tree}) {
    EXPECT_EQ(walk(f, dag_mode, {{"+f", 0}}), "+f");
    EXPECT_EQ(walk(f, dag_mode, {{"+b", 0}}), "+f +b");
    EXPECT_EQ(walk(f, dag_mode, {{"-b", 0}}), "+f +b -b");
    EXPECT_EQ(walk(f, dag_mode, {{"-a", 0}}), "+f +b -b +h +a -a");
    EXPECT_EQ(walk(f, dag_mode, {{"-f", 0}}), "+f +b -b +h +a -a -h -f");
  }
}

TEST_F(TermVisitorTest, AnyOtherAnswerGoesOn) {
  const Term_* f = g.make("f", {a});
  for (const int answer : {-1, 2, 3, 1000}) {
    EXPECT_EQ(walk(f, as_dag, {{"+f", answer}, {"-a", answer}}), "+f +a -a -f");
  }
  EXPECT_EQ(walk(f, as_dag, {{"-a", 1}, {"-f", 1}}), "+f +a -a -f");
}

// --- Several walks ---

TEST_F(TermVisitorTest, WithoutClearingALaterWalkLeavesOutWhatIsDone) {
  Recorder recorder;
  TermVisitor<Recorder> visitor(&recorder, as_dag);
  visitor.visit(g.make("g", {a}), false);
  visitor.visit(g.make("h", {a}), false);
  EXPECT_EQ(recorder.calls, "+g +a -a -g +h -h");
  visitor.visit(g.make("h", {a}), false);
  EXPECT_EQ(recorder.calls, "+g +a -a -g +h -h");
}

TEST_F(TermVisitorTest, AWalkThatClearsAlsoClearsWhatEarlierWalksMarked) {
  Recorder recorder;
  std::vector<bool> marks;
  TermVisitor<Recorder> visitor(&recorder, as_dag);
  visitor.set_marks(&marks);
  visitor.visit(g.make("g", {a}), false);
  EXPECT_EQ(marked(marks), 4U);
  visitor.visit(g.make("h", {a}), true);
  EXPECT_EQ(marked(marks), 0U);
  visitor.visit(a, true);
  EXPECT_EQ(recorder.calls, "+g +a -a -g +h -h +a -a");
}

TEST_F(TermVisitorTest, AWalkThatClearsIsFollowedByAFreshOne) {
  Recorder recorder;
  TermVisitor<Recorder> visitor(&recorder, as_dag);
  const Term_* f = g.make("f", {a});
  visitor.visit(f, true);
  visitor.visit(f, true);
  EXPECT_EQ(recorder.calls, "+f +a -a -f +f +a -a -f");
}

// --- Marks ---

TEST_F(TermVisitorTest, MarksDoneAndEntered) {
  Recorder recorder;
  std::vector<bool> marks;
  TermVisitor<Recorder> visitor(&recorder, as_dag);
  visitor.set_marks(&marks);
  const Term_* f = g.make("f", {a});  // id 2
  recorder.answers["-a"] = 0;
  visitor.visit(f, false);
  EXPECT_EQ(marks[2 * a->id], true);
  EXPECT_EQ(marks[2 * a->id + 1], true);
  EXPECT_EQ(marks[2 * f->id], false);  // no post-visit
  EXPECT_EQ(marks[2 * f->id + 1], true);
}

TEST_F(TermVisitorTest, MarksThatTheCallbackSetsCountAtOnce) {
  struct Marker {
    std::vector<bool>* marks;
    const Term_* done;
    std::string calls;

    int visit(const Term_* t, bool preorder) {
      calls += (preorder ? '+' : '-') + std::string(t->symbol->name);
      marks->resize(2 * done->id + 2);
      (*marks)[2 * done->id] = true;
      return 2;
    }
  };
  const Term_* c = g.make("c");
  g.bank.remove_unseen({false, true, true});
  const Term_* f = g.make("f", {b, c});
  ASSERT_EQ(f->id, 0U);  // below its arguments
  std::vector<bool> marks(2);
  Marker marker{&marks, c, ""};
  TermVisitor<Marker> visitor(&marker, as_dag);
  visitor.set_marks(&marks);
  visitor.visit(f, /*clear_marks=*/true);
  EXPECT_EQ(marker.calls, "+f+b-b-f");
}

TEST_F(TermVisitorTest, ATreeWalkLeavesNoMarksOnFinishedTerms) {
  Recorder recorder;
  std::vector<bool> marks;
  TermVisitor<Recorder> visitor(&recorder, as_tree);
  visitor.set_marks(&marks);
  visitor.visit(g.make("f", {a, b}), false);
  EXPECT_EQ(marked(marks), 0U);
}

TEST_F(TermVisitorTest, TheMarksGrowToHoldATermOfALargeId) {
  const Term_* last = nullptr;
  for (int i = 0; i < 5000; ++i) last = g.make("c" + std::to_string(i));
  EXPECT_EQ(last->id, 5001U);
  Recorder recorder;
  std::vector<bool> marks(10);
  TermVisitor<Recorder> visitor(&recorder, as_dag);
  visitor.set_marks(&marks);
  visitor.visit(last, false);
  EXPECT_EQ(recorder.calls, "+c4999 -c4999");
  EXPECT_EQ(marks.size(), 10004U);  // 2 * 5001 + 2
  EXPECT_TRUE(marks[10002]);
  EXPECT_TRUE(marks[10003]);
}

TEST_F(TermVisitorTest, TheMarksAtLeastDoubleWhenTheyGrow) {
  Recorder recorder;
  std::vector<bool> marks(6);
  TermVisitor<Recorder> visitor(&recorder, as_dag);
  visitor.set_marks(&marks);
  visitor.visit(g.make("c"), false);  // id 2: bits 4 and 5 fit
  EXPECT_EQ(marks.size(), 6U);
  visitor.visit(g.make("d"), false);  // id 3
  EXPECT_EQ(marks.size(), 12U);
}

TEST_F(TermVisitorTest, MarksSetOutsideAWalkAreLeftAlone) {
  Recorder recorder;
  std::vector<bool> marks(4);
  marks[2 * b->id] = true;
  TermVisitor<Recorder> visitor(&recorder, as_dag);
  visitor.set_marks(&marks);
  visitor.visit(g.make("f", {a, b}), true);
  EXPECT_EQ(recorder.calls, "+f +a -a -f");
  EXPECT_EQ(marked(marks), 1U);
  EXPECT_TRUE(marks[2 * b->id]);
}

TEST_F(TermVisitorTest, DestructionLeavesLentMarksAsTheyAre) {
  std::vector<bool> marks;
  {
    Recorder recorder;
    TermVisitor<Recorder> visitor(&recorder, as_dag);
    visitor.set_marks(&marks);
    visitor.visit(a, false);
  }
  EXPECT_EQ(marked(marks), 2U);
}

// --- Exceptions ---

struct Thrower {
  const Term_* victim;
  bool at_preorder;
  int visit(const Term_* t, bool preorder) {
    if (t == victim && preorder == at_preorder) throw std::runtime_error("callback");
    return 2;
  }
};

TEST_F(TermVisitorTest, AnExceptionOfTheCallbackClearsTheMarks) {
  const Term_* f = g.make("f", {a, b});
  for (const bool dag_mode : {as_dag, as_tree}) {
    for (const Term_* victim : {a, b, f}) {
      for (const bool at_preorder : {true, false}) {
        std::vector<bool> marks;
        Thrower thrower{victim, at_preorder};
        TermVisitor<Thrower> visitor(&thrower, dag_mode);
        visitor.set_marks(&marks);
        EXPECT_THROW(visitor.visit(f, true), std::runtime_error);
        EXPECT_EQ(marked(marks), 0U);
        // Nothing is left of the walk: the next one starts afresh and ends the same way.
        EXPECT_THROW(visitor.visit(f, true), std::runtime_error);
        EXPECT_EQ(marked(marks), 0U);
      }
    }
  }
}

TEST_F(TermVisitorTest, AnExceptionLeavesTheMarksOfAWalkThatDoesNotClear) {
  const Term_* f = g.make("f", {a, b});
  std::vector<bool> marks;
  Thrower thrower{a, true};
  TermVisitor<Thrower> visitor(&thrower, as_dag);
  visitor.set_marks(&marks);
  EXPECT_THROW(visitor.visit(f, false), std::runtime_error);
  EXPECT_EQ(marked(marks), 3U);  // f entered, b entered and done
}

struct Silent {
  int visit(const Term_*, bool) { return 2; }
};

// The stack, the marks and the list of visited terms all grow during the walk.
TEST_F(TermVisitorTest, ExhaustedMemoryClearsTheMarks) {
  const Term_* root = a;
  for (int i = 0; i < 12; ++i) root = g.make("f", {root, root, b});
  for (const bool clean_start : {true, false}) {
    size_t k = 0;
    for (bool finished = false; !finished; ++k) {
      ASSERT_LT(k, 1000);
      std::vector<bool> marks;
      if (!clean_start) marks.resize(1000);
      Silent callback;
      TermVisitor<Silent> visitor(&callback, as_dag);
      visitor.set_marks(&marks);
      try {
        const testing::FailingMemory after(k);
        visitor.visit(root, true);
        finished = true;
      } catch (const std::bad_alloc&) {
      }
      ASSERT_EQ(marked(marks), 0U) << "allocation " << k;
    }
    EXPECT_GT(k, 5U);
  }
}

// --- Walks within walks ---

// Walks with the same visitor, or with another one, when it is called as it is told.
struct Nesting {
  struct Inner {
    const Term_* root;
    bool clear_marks;
  };

  int visit(const Term_* t, bool preorder) {
    const std::string call = (preorder ? "+" : "-") + std::string(t->symbol->name);
    calls += (calls.empty() ? "" : " ") + call;
    const auto found = inner.find(call);
    if (found != inner.end()) {
      const Inner walk = found->second;
      inner.erase(found);
      calls += " (";
      visitor->visit(walk.root, walk.clear_marks);
      calls += " )";
    }
    const auto answer = answers.find(call);
    return answer != answers.end() ? answer->second : 2;
  }

  TermVisitor<Nesting>* visitor = nullptr;
  std::map<std::string, Inner> inner;  // by call, each for the first time that it is made
  std::map<std::string, int> answers;
  std::string calls;
};

class WalksWithinWalks : public TermVisitorTest {
 protected:
  std::string walk_with(bool dag_mode, std::map<std::string, Nesting::Inner> inner,
                        std::map<std::string, int> answers = {}) {
    Nesting callback;
    callback.inner = std::move(inner);
    callback.answers = std::move(answers);
    TermVisitor<Nesting> visitor(&callback, dag_mode);
    std::vector<bool> marks;
    visitor.set_marks(&marks);
    callback.visitor = &visitor;
    visitor.visit(f, /*clear_marks=*/true);
    EXPECT_EQ(marked(marks), 0U);
    return callback.calls;
  }

  const Term_* h = g.make("h", {a});
  const Term_* f = g.make("f", {h, b});
};

TEST_F(WalksWithinWalks, TheOuterOneLeavesOutWhatTheInnerOneHasFinished) {
  EXPECT_EQ(walk_with(as_dag, {{"+f", {h, false}}}), "+f ( +h +a -a -h ) +b -b -f");
  EXPECT_EQ(walk_with(as_dag, {{"+b", {h, false}}}), "+f +b ( +h +a -a -h ) -b -f");
  EXPECT_EQ(walk_with(as_dag, {{"-b", {a, false}}}), "+f +b -b ( +a -a ) +h -h -f");
}

TEST_F(WalksWithinWalks, ATreeIsWalkedAlong) {
  EXPECT_EQ(walk_with(as_tree, {{"+f", {h, false}}}), "+f ( +h +a -a -h ) +b -b +h +a -a -h -f");
}

TEST_F(WalksWithinWalks, TheInnerOneLeavesOutWhatTheOuterOneHasFinished) {
  EXPECT_EQ(walk_with(as_dag, {{"+h", {b, false}}}), "+f +b -b +h ( ) +a -a -h -f");
  EXPECT_EQ(walk_with(as_dag, {{"-f", {b, false}}}), "+f +b -b +h +a -a -h -f ( )");
}

// f and h are on the outer work stack, and a has not been entered when its pre-visit begins.
TEST_F(WalksWithinWalks, WhatTheOuterOneHasEnteredIsPostVisitedOnce) {
  EXPECT_EQ(walk_with(as_dag, {{"+a", {f, false}}}), "+f +b -b +h +a ( -f ) -a -h");
  EXPECT_EQ(walk_with(as_dag, {{"-a", {h, false}}}), "+f +b -b +h +a -a ( -h ) -f");
  EXPECT_EQ(walk_with(as_dag, {{"+a", {a, false}}}), "+f +b -b +h +a ( +a -a ) -a -h -f");
}

TEST_F(WalksWithinWalks, WithClearMarksTheOuterOneGoesOnFromItsStack) {
  EXPECT_EQ(walk_with(as_dag, {{"+f", {h, true}}}), "+f ( +h +a -a -h ) +b -b +h +a -a -h -f");
  EXPECT_EQ(walk_with(as_dag, {{"+a", {b, true}}}), "+f +b -b +h +a ( ) -a -h -f");
  EXPECT_EQ(walk_with(as_dag, {{"-a", {b, true}}}), "+f +b -b +h +a -a ( ) -h -f");
  EXPECT_EQ(walk_with(as_dag, {{"-f", {b, true}}}), "+f +b -b +h +a -a -h -f ( )");
  EXPECT_EQ(walk_with(as_tree, {{"+a", {b, true}}}), "+f +b -b +h +a ( +b -b ) -a -h -f");
}

TEST_F(WalksWithinWalks, AnInnerOneAfterOneThatClearedMeetsOpenTermsAnew) {
  EXPECT_EQ(walk_with(as_dag, {{"+h", {b, true}}, {"+a", {f, false}}}),
            "+f +b -b +h ( ) +a ( +f +b -b -h -f ) -a");
}

TEST_F(WalksWithinWalks, ThatStopDoNotStopTheOuterOne) {
  EXPECT_EQ(walk_with(as_dag, {{"+f", {h, false}}}, {{"+a", 0}}), "+f ( +h +a ) +b -b -h -f");
  EXPECT_EQ(walk_with(as_dag, {{"+f", {h, true}}}, {{"-a", 0}}), "+f ( +h +a -a ) +b -b +h +a -a");
}

// The marks are those of the visitor itself.
TEST_F(WalksWithinWalks, TheNextWalkStartsAfresh) {
  for (const bool clear_marks : {true, false}) {
    Nesting callback;
    callback.inner = {{"-h", {a, clear_marks}}};
    TermVisitor<Nesting> visitor(&callback, as_dag);
    callback.visitor = &visitor;
    visitor.visit(f, true);
    callback.calls.clear();
    visitor.visit(f, true);
    EXPECT_EQ(callback.calls, "+f +b -b +h +a -a -h -f");
  }
}

TEST_F(WalksWithinWalks, WithMarksOfTheirOwnAreIndependent) {
  struct Other {
    int visit(const Term_* t, bool preorder) {
      calls += (preorder ? " +" : " -") + std::string(t->symbol->name);
      if (preorder && t == root->args[0]) {
        Recorder recorder;
        TermVisitor<Recorder> visitor(&recorder, as_dag);
        visitor.visit(root, true);
        calls += " ( " + recorder.calls + " )";
      }
      return 2;
    }
    const Term_* root;
    std::string calls;
  };
  Other callback{f, ""};
  TermVisitor<Other> visitor(&callback, as_dag);
  visitor.visit(f, true);
  EXPECT_EQ(callback.calls, " +f +b -b +h ( +f +b -b +h +a -a -h -f ) +a -a -h -f");
}

// Each walk has as many terms on its stack as make it grow several times.
TEST_F(WalksWithinWalks, TheStackOfTheOuterOneIsKeptWhileItsStorageMoves) {
  Terms many;
  for (int i = 0; i < 5000; ++i) many.push_back(g.make("c" + std::to_string(i)));
  const Term_* wide = g.make("wide", many);
  const Term_* root = g.make("root", {a, b, wide, h});
  struct Counter {
    int visit(const Term_* t, bool preorder) {
      if (preorder && t == trigger) {
        trigger = nullptr;
        visitor->visit(inner, false);
      }
      (preorder ? before : after)++;
      return 2;
    }
    TermVisitor<Counter>* visitor = nullptr;
    const Term_* trigger = nullptr;
    const Term_* inner = nullptr;
    int before = 0;
    int after = 0;
  };
  Counter counter;
  TermVisitor<Counter> visitor(&counter, as_dag);
  counter.visitor = &visitor;
  counter.trigger = h;
  counter.inner = wide;
  visitor.visit(root, true);
  EXPECT_EQ(counter.before, 5005);
  EXPECT_EQ(counter.after, 5005);
}

// In each pre-visit and each post-visit; this takes hours if each one looks at the outer stack.
TEST_F(WalksWithinWalks, ThatClearCostNoMoreThanTheyReach) {
  struct Clearing {
    int visit(const Term_* t, bool) {
      ++calls;
      if (t != leaf) visitor->visit(leaf, true);
      return 2;
    }
    TermVisitor<Clearing>* visitor = nullptr;
    const Term_* leaf = nullptr;
    size_t calls = 0;
  };
  const Term_* t = a;
  const Symbol* s = h->symbol;
  for (int level = 0; level < 200000; ++level) t = g.bank.make_term(s, &t);
  Clearing callback;
  callback.leaf = b;
  TermVisitor<Clearing> visitor(&callback, as_dag);
  std::vector<bool> marks;
  visitor.set_marks(&marks);
  callback.visitor = &visitor;
  visitor.visit(t, true);
  EXPECT_EQ(callback.calls, 3U * 2U * 200001U);
  EXPECT_EQ(marked(marks), 0U);
}

TEST_F(WalksWithinWalks, AnExceptionThatLeavesOnlyTheInnerOneEndsOnlyThat) {
  struct Catching {
    int visit(const Term_* t, bool preorder) {
      calls += (preorder ? " +" : " -") + std::string(t->symbol->name);
      if (preorder && t == victim && depth == 1) throw std::runtime_error("callback");
      if (preorder && t == trigger && depth == 0) {
        ++depth;
        EXPECT_THROW(visitor->visit(inner, clear_marks), std::runtime_error);
        --depth;
        calls += " !";
      }
      return 2;
    }
    const Term_* trigger;
    const Term_* inner;
    const Term_* victim;
    bool clear_marks;
    TermVisitor<Catching>* visitor = nullptr;
    int depth = 0;
    std::string calls = "";
  };
  for (const bool clear_marks : {true, false}) {
    Catching callback{b, h, a, clear_marks};
    TermVisitor<Catching> visitor(&callback, as_dag);
    std::vector<bool> marks;
    visitor.set_marks(&marks);
    callback.visitor = &visitor;
    visitor.visit(f, true);
    // Without clearing, h stays entered and gets its post-visit when it is met again.
    EXPECT_EQ(callback.calls,
              clear_marks ? " +f +b +h +a ! -b +h +a -a -h -f" : " +f +b +h +a ! -b -h -f");
    EXPECT_EQ(marked(marks), 0U);
  }
}

// --- The base for callbacks chosen at run time ---

TEST(TermVisitorCallback, GoesOnUnlessOverridden) {
  Graph g;
  TermVisitorCallback callback;
  EXPECT_EQ(callback.visit(g.make("a"), true), 2);
  EXPECT_EQ(callback.visit(g.make("a"), false), 2);
  EXPECT_TRUE(std::has_virtual_destructor_v<TermVisitorCallback>);
}

TEST(TermVisitorCallback, DrivesAWalkThroughTheForwarder) {
  struct Counter : TermVisitorCallback {
    int visit(const Term_*, bool preorder) override { return preorder ? ++before : ++after; }
    int before = 1;
    int after = 1;
  };
  Graph g;
  Counter counter;
  VisitForwarder forwarder(&counter);
  TermVisitor<VisitForwarder> visitor(&forwarder, as_dag);
  visitor.visit(g.make("f", {g.make("a"), g.make("b")}), true);
  EXPECT_EQ(counter.before, 4);
  EXPECT_EQ(counter.after, 4);
}

// The class that the visitor is made for says which function is called.
TEST(TermVisitorCallback, AnOverriddenVisitOfItsClassIsCalledItself) {
  struct Base {
    virtual ~Base() = default;
    virtual int visit(const Term_*, bool) { return ++calls, 2; }
    int calls = 0;
  };
  struct Derived : Base {
    int visit(const Term_*, bool) override { return ++overridden_calls, 2; }
    int overridden_calls = 0;
  };
  Graph g;
  const Term_* f = g.make("f", {g.make("a"), g.make("b")});
  Derived callback;
  TermVisitor<Base> of_base(&callback, as_dag);
  of_base.visit(f, true);
  EXPECT_EQ(callback.calls, 6);
  EXPECT_EQ(callback.overridden_calls, 0);
  TermVisitor<Derived> of_derived(&callback, as_tree);
  of_derived.visit(f, true);
  EXPECT_EQ(callback.calls, 6);
  EXPECT_EQ(callback.overridden_calls, 6);
}

TEST(TermVisitorCallback, AnInheritedVisitIsCalled) {
  struct Derived : Recorder {};
  Graph g;
  Derived callback;
  TermVisitor<Derived> visitor(&callback, as_dag);
  visitor.visit(g.make("f", {g.make("a")}), true);
  EXPECT_EQ(callback.calls, "+f +a -a -f");
}

// --- Against a naive recursive visitor ---

// Does by recursion and sets what the visitor does by a stack and bits, walks within walks
// included.
template <class C>
class NaiveVisitor {
 public:
  NaiveVisitor(C* receiver, bool visit_once) : callback(receiver), dag_mode(visit_once) {}

  void visit(const Term_* root, bool clear) {
    const ScopeGuard clearing([this, clear] {
      if (!clear) return;
      done.clear();
      entered.clear();
    });
    walk(root);
  }

  std::set<const Term_*> done;
  std::set<const Term_*> entered;

 private:
  bool is_finished(const Term_* t) const { return dag_mode && done.count(t) != 0; }

  // False when the walk is to stop.
  bool walk(const Term_* t) {
    if (is_finished(t)) return true;
    if (entered.count(t) == 0) {
      const int answer = callback->visit(t, true);
      entered.insert(t);
      if (answer == 0) return false;
      Terms pushed;
      for (uint64_t i = 0; answer != 1 && i < t->symbol->arity; ++i) {
        if (!is_finished(t->args[i])) pushed.push_back(t->args[i]);
      }
      for (size_t i = pushed.size(); i-- > 0;) {
        if (!walk(pushed[i])) return false;
      }
      if (!pushed.empty() && is_finished(t)) return true;  // by an inner walk
    }
    const int answer = callback->visit(t, false);
    if (dag_mode) {
      done.insert(t);
    } else {
      entered.erase(t);
    }
    return answer != 0;
  }

  C* callback;
  bool dag_mode;
};

// All graphs of n nodes, each with up to max_arity arguments among the nodes before it.
void for_all_graphs(size_t n, size_t max_arity, Graph& g, Terms& nodes,
                    const std::function<void(const Terms&)>& action) {
  if (nodes.size() == n) return action(nodes);
  const std::string name = "n" + std::to_string(nodes.size()) + "_";
  for (size_t arity = 0; arity <= (nodes.empty() ? 0 : max_arity); ++arity) {
    size_t lists = 1;
    for (size_t i = 0; i < arity; ++i) lists *= nodes.size();
    for (size_t list = 0; list < lists; ++list) {
      Terms args;
      for (size_t i = 0, rest = list; i < arity; i++, rest /= nodes.size()) {
        args.push_back(nodes[rest % nodes.size()]);
      }
      nodes.push_back(g.make(name + std::to_string(arity), args));
      for_all_graphs(n, max_arity, g, nodes, action);
      nodes.pop_back();
    }
  }
}

// A call is 2 * node + (0 before, 1 after); the answers are given by call.
struct Table {
  const Terms* nodes;
  const std::vector<int>* answers;
  std::vector<size_t> calls;
  int visit(const Term_* t, bool preorder) {
    size_t node = 0;
    while ((*nodes)[node] != t) node++;
    calls.push_back(2 * node + (preorder ? 0 : 1));
    return (*answers)[calls.back()];
  }
};

void compare(const Terms& nodes, const std::vector<int>& answers, bool dag_mode) {
  Table actual{&nodes, &answers, {}};
  Table expected{&nodes, &answers, {}};
  std::vector<bool> marks;
  TermVisitor<Table> visitor(&actual, dag_mode);
  visitor.set_marks(&marks);
  NaiveVisitor<Table> naive(&expected, dag_mode);
  visitor.visit(nodes.back(), true);
  naive.visit(nodes.back(), true);
  ASSERT_EQ(actual.calls, expected.calls);
  ASSERT_EQ(marked(marks), 0U);
}

TEST(TermVisitorAgainstRecursion, AllGraphsOfFourNodesWithUpToThreeArguments) {
  Graph g;
  size_t graphs = 0;
  for (size_t n = 1; n <= 4; ++n) {
    Terms nodes;
    const std::vector<int> answers(2 * n, 2);
    for_all_graphs(n, 3, g, nodes, [&](const Terms& graph) {
      ++graphs;
      compare(graph, answers, as_dag);
      compare(graph, answers, as_tree);
    });
  }
  // The second node has 4 choices of arguments, the third 15, the fourth 40.
  EXPECT_EQ(graphs, 1U + 4U + 60U + 2400U);
}

TEST(TermVisitorAgainstRecursion, AllGraphsOfFiveNodesWithUpToTwoArguments) {
  Graph g;
  std::mt19937 random(7);
  size_t graphs = 0;
  Terms nodes;
  const std::vector<int> go_on(10, 2);
  for_all_graphs(5, 2, g, nodes, [&](const Terms& graph) {
    ++graphs;
    for (const bool dag_mode : {as_dag, as_tree}) {
      compare(graph, go_on, dag_mode);
      for (int round = 0; round < 8; ++round) {
        std::vector<int> answers = go_on;
        for (int& answer : answers) {
          if (random() % 4 == 0) answer = static_cast<int>(random() % 3);
        }
        compare(graph, answers, dag_mode);
      }
    }
  });
  // The second node has 3 choices of arguments, the third 7, the fourth 13, the fifth 21.
  EXPECT_EQ(graphs, 3U * 7U * 13U * 21U);
}

TEST(TermVisitorAgainstRecursion, AllGraphsOfThreeNodesWithAllAnswers) {
  Graph g;
  size_t walks = 0;
  for (size_t n = 1; n <= 3; ++n) {
    Terms nodes;
    size_t tables = 1;
    for (size_t i = 0; i < 2 * n; ++i) tables *= 3;
    for_all_graphs(n, 2, g, nodes, [&](const Terms& graph) {
      for (size_t table = 0; table < tables; ++table) {
        std::vector<int> answers;
        for (size_t i = 0, rest = table; i < 2 * n; i++, rest /= 3) {
          answers.push_back(static_cast<int>(rest % 3));
        }
        compare(graph, answers, as_dag);
        compare(graph, answers, as_tree);
        ++walks;
      }
    });
  }
  EXPECT_EQ(walks, 9U + 3U * 81U + 21U * 729U);
}

TEST(TermVisitorAgainstRecursion, AllGraphsOfFourNodesWithRandomAnswers) {
  Graph g;
  std::mt19937 random(5);
  Terms nodes;
  for_all_graphs(4, 2, g, nodes, [&](const Terms& graph) {
    for (int round = 0; round < 60; ++round) {
      std::vector<int> answers(8, 2);
      for (int& answer : answers) {
        if (random() % 4 == 0) answer = static_cast<int>(random() % 3);
      }
      compare(graph, answers, round % 2 == 0);
    }
  });
}

// The answers follow from the number of the call, so that one term is answered differently on
// different paths.
struct Script {
  std::vector<int> answers;
  std::vector<std::pair<uint64_t, bool>> calls;
  int visit(const Term_* t, bool preorder) {
    calls.emplace_back(t->id, preorder);
    return answers[calls.size() % answers.size()];
  }
};

// Several walks by one visitor, with and without clearing, stopped now and then.
TEST(TermVisitorAgainstRecursion, RandomGraphsRootsAndAnswersOverSeveralWalks) {
  std::mt19937 random(6);
  size_t calls = 0;
  for (int round = 0; round < 1500; ++round) {
    Graph g;
    Terms nodes;
    const size_t size = 2 + random() % 40;
    const bool dag_mode = random() % 3 != 0;
    for (size_t i = 0; i < size; ++i) {
      Terms args;
      const size_t arity = nodes.empty() ? 0 : random() % 4;
      for (size_t k = 0; k < arity; ++k) {
        // Trees are kept small: their nodes take their arguments from further below.
        const size_t limit = dag_mode ? nodes.size() : (nodes.size() + 1) / 2;
        args.push_back(nodes[random() % limit]);
      }
      nodes.push_back(g.make("n" + std::to_string(i), args));
    }
    Script actual;
    for (int i = 0; i < 97; ++i) {
      const auto draw = random() % 40;
      actual.answers.push_back(draw == 0 ? 0 : draw < 6 ? 1 : 2);
    }
    Script expected = actual;
    std::vector<bool> marks;
    TermVisitor<Script> visitor(&actual, dag_mode);
    visitor.set_marks(&marks);
    NaiveVisitor<Script> naive(&expected, dag_mode);
    for (int n = 0; n < 12; ++n) {
      const Term_* root = nodes[random() % nodes.size()];
      const bool clear = random() % 3 == 0;
      visitor.visit(root, clear);
      naive.visit(root, clear);
      ASSERT_EQ(actual.calls, expected.calls) << "round " << round;
      for (const Term_* t : nodes) {
        const auto bit = [&](uint64_t i) { return i < marks.size() && marks[i]; };
        ASSERT_EQ(bit(2 * t->id), naive.done.count(t) != 0);
        ASSERT_EQ(bit(2 * t->id + 1), naive.entered.count(t) != 0);
      }
    }
    calls += actual.calls.size();
  }
  EXPECT_GT(calls, 50000U);
}

// Answers and inner walks follow from the number of the call.
template <template <class> class Visitor>
struct NestingScript {
  struct Step {
    int answer = 2;
    const Term_* inner = nullptr;  // the root of a walk to make before the answer
    bool clear_marks = false;
    bool fails = false;
  };

  int visit(const Term_* t, bool preorder) {
    calls.emplace_back(t->id, preorder);
    const Step& step = (*steps)[calls.size() % steps->size()];
    if (step.inner != nullptr && depth < 3 && calls.size() < longest) {
      ++depth;
      try {
        visitor->visit(step.inner, step.clear_marks);
      } catch (const std::runtime_error&) {
        calls.emplace_back(UINT64_MAX, false);
      }
      --depth;
    }
    if (step.fails) throw std::runtime_error("callback");
    return step.answer;
  }

  static constexpr size_t longest = 3000;
  const std::vector<Step>* steps;
  Visitor<NestingScript>* visitor = nullptr;
  std::vector<std::pair<uint64_t, bool>> calls = {};
  int depth = 0;
};

TEST(TermVisitorAgainstRecursion, RandomWalksWithinWalks) {
  std::mt19937 random(9);
  using Actual = NestingScript<TermVisitor>;
  using Expected = NestingScript<NaiveVisitor>;
  size_t inner_walks = 0;
  for (int round = 0; round < 3000; ++round) {
    Graph g;
    Terms nodes;
    const size_t size = 2 + random() % 15;
    const bool dag_mode = random() % 3 != 0;
    for (size_t i = 0; i < size; ++i) {
      Terms args;
      const size_t arity = nodes.empty() ? 0 : random() % 4;
      for (size_t k = 0; k < arity; ++k) {
        const size_t limit = dag_mode ? nodes.size() : (nodes.size() + 1) / 2;
        args.push_back(nodes[random() % limit]);
      }
      nodes.push_back(g.make("n" + std::to_string(i), args));
    }
    std::vector<Actual::Step> steps(41);
    std::vector<Expected::Step> expected_steps(41);
    for (size_t i = 0; i < steps.size(); ++i) {
      const auto draw = random() % 40;
      steps[i].answer = draw == 0 ? 0 : draw < 4 ? 1 : 2;
      if (random() % 4 == 0) steps[i].inner = nodes[random() % nodes.size()];
      steps[i].clear_marks = random() % 3 == 0;
      steps[i].fails = random() % 60 == 0;
      expected_steps[i] = {steps[i].answer, steps[i].inner, steps[i].clear_marks, steps[i].fails};
    }
    Actual actual{&steps};
    Expected expected{&expected_steps};
    std::vector<bool> marks;
    TermVisitor<Actual> visitor(&actual, dag_mode);
    visitor.set_marks(&marks);
    NaiveVisitor<Expected> naive(&expected, dag_mode);
    actual.visitor = &visitor;
    expected.visitor = &naive;
    for (int n = 0; n < 4; ++n) {
      const Term_* root = nodes[random() % nodes.size()];
      const bool clear = random() % 2 == 0;
      bool failed = false;
      bool is_to_fail = false;
      try {
        visitor.visit(root, clear);
      } catch (const std::runtime_error&) {
        failed = true;
      }
      try {
        naive.visit(root, clear);
      } catch (const std::runtime_error&) {
        is_to_fail = true;
      }
      ASSERT_EQ(failed, is_to_fail) << "round " << round;
      ASSERT_EQ(actual.calls, expected.calls) << "round " << round;
      for (const Term_* t : nodes) {
        const auto bit = [&](uint64_t i) { return i < marks.size() && marks[i]; };
        ASSERT_EQ(bit(2 * t->id), naive.done.count(t) != 0) << "round " << round;
        ASSERT_EQ(bit(2 * t->id + 1), naive.entered.count(t) != 0) << "round " << round;
      }
    }
    inner_walks += actual.calls.size();
  }
  EXPECT_GT(inner_walks, 50000U);
}

// --- Depth ---

TEST(TermVisitorOnDeepTerms, AChainOfAMillionIsWalked) {
  struct Counter {
    size_t before = 0;
    size_t after = 0;
    int visit(const Term_*, bool preorder) {
      (preorder ? before : after)++;
      return 2;
    }
  };
  Graph g;
  const Term_* t = g.make("a");
  const Symbol* f = g.make("f", {t})->symbol;
  for (int level = 0; level < 1000000; ++level) t = g.bank.make_term(f, &t);
  for (const bool dag_mode : {as_dag, as_tree}) {
    Counter counter;
    TermVisitor<Counter> visitor(&counter, dag_mode);
    visitor.visit(t, true);
    EXPECT_EQ(counter.before, 1000001U);
    EXPECT_EQ(counter.after, 1000001U);
  }
}

// Sixty levels of f(t, t): 2^61 paths, 61 terms.
TEST(TermVisitorOnDeepTerms, SharedTermsAreWalkedOnceInADag) {
  Graph g;
  const Term_* t = g.make("a");
  for (int level = 0; level < 60; ++level) t = g.make("f", {t, t});
  Script script{{2}, {}};
  TermVisitor<Script> visitor(&script, as_dag);
  visitor.visit(t, true);
  EXPECT_EQ(script.calls.size(), 122U);
}

}  // namespace
}  // namespace quill
