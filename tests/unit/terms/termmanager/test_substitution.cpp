#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <new>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/scope_guard.h"
#include "tests/support/failing_memory.h"
#include "tests/support/manager_test.h"

namespace quill {
namespace {

using Terms = std::vector<const Term_*>;
using TermMap = TermManager::TermMap;

// A manager that writes down which terms are built, and can be told to fail.
class Recording : public TermManager {
 public:
  const Term_* make_term(const Symbol* s, const Terms& args) override {
    if (recording) {
      requests += std::string(requests.empty() ? "" : " ") + s->name;
      checked = get_typecheck_enabled();
      if (requests_until_failure == 0) throw std::runtime_error("make_term");
      --requests_until_failure;
    }
    return TermManager::make_term(s, args);
  }

  bool recording = false;
  std::string requests;  // the symbols, in the order of the requests
  bool checked = false;  // whether checks were on at the last request
  int requests_until_failure = 1000000;
};

bool all_clear(const std::vector<bool>& marks) {
  for (const bool bit : marks) {
    if (bit) return false;
  }
  return true;
}

class SubstitutionTest : public testing::ManagerTestOf<Recording> {
 protected:
  const Term_* f(const Term_* s, const Term_* t) {
    return m.make_uninterpreted_function(binary, {s, t});
  }
  const Term_* g(const Term_* t) { return m.make_uninterpreted_function(unary, {t}); }

  // The text of the TermManager::error that the request throws; checks that it builds no term.
  std::string error_of(const std::function<void()>& request) {
    const size_t before = m.get_bank()->size();
    const std::string text = testing::error_of<TermManager::error>(request);
    EXPECT_EQ(m.get_bank()->size(), before);
    return text;
  }

  const DataType* int_type = m.get_int_type();
  const DataType* rat_type = m.get_rat_type();
  const Symbol* unary = m.make_symbol("g", m.get_function_type({int_type}, int_type));
  const Symbol* binary = m.make_symbol("f", m.get_function_type({int_type, int_type}, int_type));
  const Term_* x = constant("x", int_type);
  const Term_* y = constant("y", int_type);
  const Term_* z = constant("z", int_type);
  const Term_* r = constant("r", rat_type);
  std::vector<bool> marks;
};

// --- What is built ---

TEST_F(SubstitutionTest, TheEmptySubstitutionYieldsTheTermItself) {
  const Term_* t = f(x, g(x));
  const size_t before = m.get_bank()->size();
  EXPECT_EQ(m.substitute(t, {}, {}), t);
  TermMap subst;
  EXPECT_EQ(m.substitute(t, subst, marks, true), t);
  EXPECT_EQ(m.get_bank()->size(), before);
  EXPECT_EQ(subst.count, 3U);
  EXPECT_EQ(subst[t], t);
  EXPECT_EQ(subst[g(x)], g(x));
  EXPECT_EQ(subst[x], x);
}

TEST_F(SubstitutionTest, EveryOccurrenceIsReplaced) {
  EXPECT_EQ(m.substitute(f(x, g(x)), {x}, {y}), f(y, g(y)));
}

TEST_F(SubstitutionTest, ASharedSubtermIsRebuiltOnce) {
  const Term_* t = f(x, g(x));
  m.recording = true;
  m.substitute(t, {x}, {y});
  EXPECT_EQ(m.requests, "g f");
}

// The rebuild goes through make_term even where nothing changes.
TEST_F(SubstitutionTest, EveryVisitedTermIsRebuilt) {
  const Term_* t = f(f(x, y), g(z));
  m.recording = true;
  EXPECT_EQ(m.substitute(t, {}, {}), t);
  EXPECT_EQ(m.requests, "z g y x f f");
}

TEST_F(SubstitutionTest, AKeyAtTheRootIsReplacedWithoutDescending) {
  const Term_* t = f(x, g(x));
  TermMap subst;
  subst[t] = z;
  m.recording = true;
  EXPECT_EQ(m.substitute(t, subst, marks, true), z);
  EXPECT_EQ(m.requests, "");
  EXPECT_EQ(subst.count, 1U);
}

TEST_F(SubstitutionTest, SubtermsBelowAKeyAreNotEntered) {
  const Term_* t = f(g(x), y);
  TermMap subst;
  subst[g(x)] = z;
  EXPECT_EQ(m.substitute(t, subst, marks, true), f(z, y));
  EXPECT_EQ(subst.find(x), subst.end());
}

TEST_F(SubstitutionTest, PairsApplyAllAtOnce) {
  EXPECT_EQ(m.substitute(f(x, y), {x, y}, {y, x}), f(y, x));
  EXPECT_EQ(m.substitute(g(x), {x}, {g(x)}), g(g(x)));
  EXPECT_EQ(m.substitute(f(x, y), {x, y}, {y, z}), f(y, z));
}

TEST_F(SubstitutionTest, APairOfALargerTermGoesBeforeThoseBelowIt) {
  EXPECT_EQ(m.substitute(f(g(x), x), {g(x), x}, {z, y}), f(z, y));
}

TEST_F(SubstitutionTest, ATermThatDoesNotOccurChangesNothing) {
  const Term_* t = f(x, y);
  EXPECT_EQ(m.substitute(t, {z}, {x}), t);
}

TEST_F(SubstitutionTest, OfTwoPairsForOneTermTheLaterOneCounts) {
  EXPECT_EQ(m.substitute(g(x), {x, x}, {y, z}), g(z));
}

TEST_F(SubstitutionTest, ASubtypeMayReplaceItsSupertype) {
  EXPECT_EQ(m.substitute(m.make_leq(r, r), {r}, {x})->to_str(), "(`<=_rat` x x)");
}

// --- The map ---

TEST_F(SubstitutionTest, TheMapHoldsThePairsAndTheImages) {
  const Term_* t = f(x, g(x));
  TermMap cache;
  m.substitute(t, {x}, {y}, cache, marks);
  EXPECT_EQ(cache.count, 3U);
  EXPECT_EQ(cache[x], y);
  EXPECT_EQ(cache[g(x)], g(y));
  EXPECT_EQ(cache[t], f(y, g(y)));
}

TEST_F(SubstitutionTest, AMapThatIsPassedAgainSparesTheWork) {
  const Term_* shared = g(g(x));
  const Term_* first = f(shared, y);
  const Term_* second = f(shared, z);
  TermMap cache;
  m.substitute(first, {x}, {y}, cache, marks);
  m.recording = true;
  const Term_* image = m.substitute(second, {x}, {y}, cache, marks);
  EXPECT_EQ(m.requests, "z f");
  m.recording = false;
  EXPECT_EQ(image, f(g(g(y)), z));
}

// --- Checks ---

TEST_F(SubstitutionTest, VectorsOfDifferentLengthAreRefused) {
  const char* const text = "Incompatible arguments to substitute";
  EXPECT_EQ(error_of([&] { m.substitute(x, {x}, {y, z}); }), text);
  EXPECT_EQ(error_of([&] { m.substitute(x, {x, y}, {z}); }), text);
  m.set_typecheck_enabled(false);
  EXPECT_EQ(error_of([&] { m.substitute(x, {x}, {}); }), text);
}

TEST_F(SubstitutionTest, AReplacementOfALargerTypeIsRefused) {
  const char* const text = "substitution between terms of incompatible types";
  const Term_* t = g(x);
  EXPECT_EQ(error_of([&] { m.substitute(t, {x}, {r}); }), text);
  EXPECT_EQ(error_of([&] { m.substitute(t, {x}, {m.make_true()}); }), text);
  TermMap subst;
  subst[x] = r;
  EXPECT_EQ(error_of([&] { m.substitute(t, subst, marks, true); }), text);
  EXPECT_EQ(subst.count, 1U);
}

// The result type of an application counts, and not the type of its symbol.
TEST_F(SubstitutionTest, PairsAreComparedByTheTypesOfTheirTerms) {
  EXPECT_EQ(m.substitute(g(x), {x}, {g(y)}), g(g(y)));
  EXPECT_EQ(m.substitute(g(g(x)), {g(x)}, {y}), g(y));
}

TEST_F(SubstitutionTest, PairsBeforeTheOffendingOneStayInTheMap) {
  const Term_* t = f(x, y);
  TermMap cache;
  EXPECT_EQ(error_of([&] {
              m.substitute(t, {x, y, z}, {z, r, x}, cache, marks);
            }),
            "substitution between terms of incompatible types");
  EXPECT_EQ(cache.count, 1U);
  EXPECT_EQ(cache[x], z);
}

TEST_F(SubstitutionTest, TheVectorFormDoesNotCheckWhileChecksAreOff) {
  const Term_* t = g(x);
  m.set_typecheck_enabled(false);
  EXPECT_EQ(m.substitute(t, {x}, {r})->to_str(), "(g r)");
}

TEST_F(SubstitutionTest, TheMapFormChecksAsItIsToldWhateverTheSwitch) {
  const Term_* t = g(x);
  TermMap subst;
  subst[x] = r;
  EXPECT_EQ(m.substitute(t, subst, marks, false)->to_str(), "(g r)");
  m.set_typecheck_enabled(false);
  TermMap again;
  again[x] = r;
  EXPECT_EQ(error_of([&] { m.substitute(t, again, marks, true); }),
            "substitution between terms of incompatible types");
}

TEST_F(SubstitutionTest, TheSwitchIsSetForTheRebuildAndRestored) {
  const Term_* t = g(x);
  for (const bool before : {true, false}) {
    for (const bool check : {true, false}) {
      m.set_typecheck_enabled(before);
      m.recording = true;
      TermMap subst;
      m.substitute(t, subst, marks, check);
      EXPECT_EQ(m.checked, check);
      EXPECT_EQ(m.get_typecheck_enabled(), before);
    }
  }
}

TEST_F(SubstitutionTest, TheVectorFormsRebuildWithoutChecks) {
  const Term_* t = g(x);
  m.recording = true;
  m.substitute(t, {x}, {y});
  EXPECT_FALSE(m.checked);
  EXPECT_TRUE(m.get_typecheck_enabled());
  m.substitute(t, {}, {});
  EXPECT_FALSE(m.checked);
  EXPECT_TRUE(m.get_typecheck_enabled());
}

// --- Null images ---

const char* const incompatible = "Incompatible arguments to substitute";

// Looking for a pair with [] is enough to make one with a null image.
TEST_F(SubstitutionTest, AKeyWithANullImageIsRefusedWhereverItIs) {
  const Term_* t = f(g(x), f(y, g(g(x))));
  for (const Term_* key : {x, y, g(x), g(g(x)), t}) {
    for (const bool before : {true, false}) {
      for (const bool check : {true, false}) {
        m.set_typecheck_enabled(before);
        TermMap subst;
        ASSERT_EQ(subst[key], nullptr);
        EXPECT_EQ(error_of([&] { m.substitute(t, subst, marks, check); }), incompatible);
        EXPECT_EQ(m.get_typecheck_enabled(), before);
        EXPECT_TRUE(all_clear(marks));
        EXPECT_EQ(subst[key], nullptr);
        EXPECT_EQ(m.check_consistency(), "");
      }
    }
  }
}

// The pair is looked at when the pairs are checked, and when the walk comes to it.
TEST_F(SubstitutionTest, ANullImageThatTheWalkDoesNotMeetCountsOnlyForTheCheck) {
  const Term_* t = f(x, y);
  TermMap subst;
  subst[z] = nullptr;
  EXPECT_EQ(error_of([&] { m.substitute(t, subst, marks, true); }), incompatible);
  EXPECT_EQ(subst.count, 1U);
  EXPECT_EQ(m.substitute(t, subst, marks, false), t);
  EXPECT_EQ(subst.count, 4U);
}

TEST_F(SubstitutionTest, WhatWasRebuiltBeforeANullImageStaysInTheMap) {
  const Term_* t = f(g(x), g(y));
  TermMap subst;
  subst[x] = nullptr;
  m.recording = true;
  EXPECT_EQ(error_of([&] { m.substitute(t, subst, marks, false); }), incompatible);
  EXPECT_EQ(m.requests, "y g");
  EXPECT_EQ(subst.count, 3U);
  EXPECT_TRUE(all_clear(marks));
  m.recording = false;
  subst[x] = z;
  EXPECT_EQ(m.substitute(t, subst, marks, false), f(g(z), g(y)));
}

TEST_F(SubstitutionTest, ANullInAVectorIsRefused) {
  const Term_* t = f(x, g(y));
  for (const bool checks : {true, false}) {
    m.set_typecheck_enabled(checks);
    EXPECT_EQ(error_of([&] { m.substitute(t, {x}, {nullptr}); }), incompatible);
    EXPECT_EQ(error_of([&] { m.substitute(t, {nullptr}, {x}); }), incompatible);
    EXPECT_EQ(error_of([&] { m.substitute(t, {nullptr}, {nullptr}); }), incompatible);
    EXPECT_EQ(error_of([&] { m.substitute(t, {z}, {nullptr}); }), incompatible);
    EXPECT_EQ(error_of([&] { m.substitute(t, {t}, {nullptr}); }), incompatible);
    TermMap cache;
    EXPECT_EQ(error_of([&] {
                m.substitute(t, {x, y, z}, {z, nullptr, x}, cache, marks);
              }),
              incompatible);
    EXPECT_EQ(cache.count, 1U);
    EXPECT_EQ(cache[x], z);
    EXPECT_EQ(error_of([&] { m.substitute(t, {y, nullptr}, {z, x}, cache, marks); }), incompatible);
    EXPECT_EQ(cache.count, 2U);
    EXPECT_TRUE(all_clear(marks));
    EXPECT_EQ(m.get_typecheck_enabled(), checks);
    EXPECT_EQ(m.check_consistency(), "");
  }
}

TEST_F(SubstitutionTest, ANullImageInTheCacheIsRefused) {
  TermMap cache;
  cache[y] = nullptr;
  const Term_* t = f(x, g(y));
  EXPECT_EQ(error_of([&] { m.substitute(t, {x}, {z}, cache, marks); }), incompatible);
  EXPECT_TRUE(all_clear(marks));
  EXPECT_EQ(m.check_consistency(), "");
}

// An override of make_term must not return null, and the map may change under the walk.
class Careless : public TermManager {
 public:
  const Term_* make_term(const Symbol* s, const Terms& args) override {
    if (s == without_term) return nullptr;
    const Term_* t = TermManager::make_term(s, args);
    if (s == meddling) meddle();
    return t;
  }
  const Symbol* without_term = nullptr;
  const Symbol* meddling = nullptr;
  std::function<void()> meddle;
};

class CarelessSubstitution : public testing::ManagerTestOf<Careless> {
 protected:
  const Term_* const x = constant("x", m.get_int_type());
  const Term_* const y = constant("y", m.get_int_type());
  const Term_* const sum = m.make_plus(x, y);
  const Term_* const floor = m.make_floor(sum);
  std::vector<bool> marks;
};

TEST_F(CarelessSubstitution, ATermThatAnOverrideDoesNotMakeIsRefused) {
  for (const Term_* t : {x, sum, floor}) {
    m.without_term = t->symbol;
    TermMap subst;
    for (const bool check : {true, false}) {
      EXPECT_EQ(error_of([&] { m.substitute(floor, subst, marks, check); }), incompatible);
      EXPECT_EQ(subst.find(t), subst.end());
    }
    EXPECT_EQ(error_of([&] { m.substitute(floor, {y}, {y}); }), incompatible);
    EXPECT_TRUE(m.get_typecheck_enabled());
    EXPECT_TRUE(all_clear(marks));
    m.without_term = nullptr;
    EXPECT_EQ(m.substitute(floor, {y}, {y}), floor);
    EXPECT_EQ(m.check_consistency(), "");
  }
}

TEST_F(CarelessSubstitution, AnImageThatWasTakenOutOfTheMapOnTheWayIsRefused) {
  // The walk finishes y, then x, then the sum.
  const std::vector<std::function<void(TermMap&)>> ways = {
      [this](TermMap& subst) { subst[y] = nullptr; },
      [this](TermMap& subst) { subst.erase(subst.find(y)); },
  };
  for (const auto& way : ways) {
    TermMap subst;
    m.meddling = x->symbol;
    m.meddle = [&] { way(subst); };
    EXPECT_EQ(error_of([&] { m.substitute(floor, subst, marks, false); }), incompatible);
    EXPECT_TRUE(all_clear(marks));
    EXPECT_EQ(m.check_consistency(), "");
  }
}

// --- Ways out ---

TEST_F(SubstitutionTest, AFailedRebuildRestoresSwitchAndMarksAndKeepsTheImages) {
  const Term_* t = f(g(x), g(y));
  TermMap subst;
  subst[x] = z;
  m.recording = true;
  m.requests_until_failure = 2;  // y and g(y) succeed, g(x) does not
  EXPECT_THROW(m.substitute(t, subst, marks, false), std::runtime_error);
  EXPECT_TRUE(m.get_typecheck_enabled());
  EXPECT_TRUE(all_clear(marks));
  EXPECT_EQ(m.requests, "y g g");
  EXPECT_EQ(subst.count, 3U);
  m.recording = false;
  EXPECT_EQ(m.substitute(t, subst, marks, false), f(g(z), g(y)));
}

TEST_F(SubstitutionTest, TheMarksAreClearOnReturn) {
  const Term_* t = f(g(x), g(y));
  TermMap subst;
  m.substitute(t, subst, marks, true);
  EXPECT_GE(marks.size(), 2 * t->id + 2);
  EXPECT_TRUE(all_clear(marks));
}

TEST_F(SubstitutionTest, TheManagersOwnMarksServeManyCalls) {
  const Term_* t = f(g(x), g(y));
  for (int round = 0; round < 3; ++round) {
    EXPECT_EQ(m.substitute(t, {x}, {z}), f(g(z), g(y)));
    m.recording = true;
    m.requests_until_failure = 1;
    EXPECT_THROW(m.substitute(t, {x}, {y}), std::runtime_error);
    m.recording = false;
    m.requests_until_failure = 1000000;
  }
}

// Whatever allocation fails, the next substitution with the same marks is right.
TEST_F(SubstitutionTest, ExhaustedMemoryLeavesMarksAndSwitchAsTheyWere) {
  const Term_* t = x;
  for (int i = 0; i < 12; ++i) t = f(t, g(t));
  size_t k = 0;
  for (bool finished = false; !finished; ++k) {
    ASSERT_LT(k, 1000);
    std::vector<bool> own_marks;
    TermMap subst;
    subst[x] = y;
    try {
      const testing::FailingMemory after(k);
      m.substitute(t, subst, own_marks, true);
      finished = true;
    } catch (const std::bad_alloc&) {
    }
    ASSERT_TRUE(all_clear(own_marks)) << "allocation " << k;
    ASSERT_TRUE(m.get_typecheck_enabled());
  }
  EXPECT_GT(k, 5U);
  const Term_* expected = y;
  for (int i = 0; i < 12; ++i) expected = f(expected, g(expected));
  EXPECT_EQ(m.substitute(t, {x}, {y}), expected);
}

// --- Other factories ---

// Replaces every g(...) that is built by z.
class Collapsing : public TermFactory {
 public:
  const Term_* make_term(const Symbol* s, const Terms&) override {
    return s == victim ? replacement : nullptr;
  }
  const Symbol* victim = nullptr;
  const Term_* replacement = nullptr;
};

TEST_F(SubstitutionTest, TheRebuildGoesThroughTheDelegate) {
  const Term_* t = f(g(x), y);
  const Term_* expected = f(z, y);
  Collapsing delegate;
  delegate.victim = unary;
  delegate.replacement = z;
  m.set_delegate(&delegate);
  m.set_delegate_enabled(true);
  EXPECT_EQ(m.substitute(t, {}, {}), expected);
}

// --- One substitution within another ---

// The forms of substitute, each as one function.
using Form = const Term_* (*)(TermManager& m, const Term_* t, const Terms& from, const Terms& to,
                              std::vector<bool>& marks);

const Term_* by_map(TermManager& m, const Term_* t, const Terms& from, const Terms& to,
                    std::vector<bool>& marks) {
  TermMap subst;
  for (size_t i = 0; i < from.size(); ++i) subst[from[i]] = to[i];
  return m.substitute(t, subst, marks, true);
}
const Term_* by_vectors(TermManager& m, const Term_* t, const Terms& from, const Terms& to,
                        std::vector<bool>& marks) {
  TermMap cache;
  return m.substitute(t, from, to, cache, marks);
}
const Term_* by_pairs_alone(TermManager& m, const Term_* t, const Terms& from, const Terms& to,
                            std::vector<bool>&) {
  return m.substitute(t, from, to);
}
const std::vector<Form> all_forms = {by_map, by_vectors, by_pairs_alone};

// At each request it substitutes in a term of its own, within which it does nothing, and then
// declines.
class NestedSubstitution : public TermFactory {
 public:
  const Term_* make_term(const Symbol*, const Terms&) override {
    if (busy) return nullptr;
    const ScopedValue<bool> within(busy, true);
    results.push_back(form(*manager, root, from, to, *marks));
    return nullptr;
  }
  TermManager* manager = nullptr;
  Form form = nullptr;
  const Term_* root = nullptr;
  Terms from;
  Terms to;
  std::vector<bool>* marks = nullptr;
  bool busy = false;
  Terms results;
};

// Marks of the outer walk that the inner one took for its own would make it leave out terms, which
// would then be null arguments.
TEST_F(SubstitutionTest, ADelegateMaySubstituteWithTheSameMarks) {
  const Term_* t = f(f(g(x), y), g(f(x, y)));
  const Term_* expected = f(f(g(z), y), g(f(z, y)));
  for (const Form outer : all_forms) {
    for (const Form inner : all_forms) {
      NestedSubstitution delegate;
      delegate.manager = &m;
      delegate.form = inner;
      delegate.root = f(g(f(x, y)), f(g(x), y));
      delegate.from = {y};
      delegate.to = {g(x)};
      delegate.marks = &marks;
      const Term_* inner_result = f(g(f(x, g(x))), f(g(x), g(x)));
      m.set_delegate(&delegate);
      m.set_delegate_enabled(true);
      EXPECT_EQ(outer(m, t, {x}, {z}, marks), expected);
      m.set_delegate_enabled(false);
      EXPECT_EQ(delegate.results, Terms(6, inner_result));  // y and the five rebuilt
      EXPECT_TRUE(all_clear(marks));
      EXPECT_EQ(m.check_consistency(), "");
    }
  }
}

// A manager that substitutes within each request before it builds the term.
class SubstitutingManager : public TermManager {
 public:
  const Term_* make_term(const Symbol* s, const Terms& args) override {
    if (form != nullptr && depth < 2) {
      const ScopedValue<int> within(depth, depth + 1);
      results.push_back(form(*this, root, from, to, marks));
    }
    return TermManager::make_term(s, args);
  }
  Form form = nullptr;
  const Term_* root = nullptr;
  Terms from;
  Terms to;
  std::vector<bool> marks;
  int depth = 0;
  Terms results;
};

TEST(SubstitutionInOverriddenMakeTerm, MayUseTheSameMarksTwoDeep) {
  for (const Form outer : all_forms) {
    for (const Form inner : all_forms) {
      SubstitutingManager m;
      const DataType* type = m.get_int_type();
      const auto constant = [&](const char* name) {
        return m.make_constant(m.make_symbol(name, type));
      };
      const Term_* x = constant("x");
      const Term_* y = constant("y");
      const Term_* z = constant("z");
      const Term_* t = m.make_plus(m.make_plus(x, y), m.make_times(y, x));
      m.root = m.make_times(m.make_plus(x, y), y);
      m.from = {y};
      m.to = {z};
      m.form = inner;
      const Term_* result = outer(m, t, {x}, {z}, m.marks);
      m.form = nullptr;
      EXPECT_EQ(result, m.make_plus(m.make_plus(z, y), m.make_times(y, z)));
      const Term_* inner_result = m.make_times(m.make_plus(x, z), z);
      // The outer one rebuilds four terms; the inner one three, and the one within it as many.
      EXPECT_EQ(m.results, Terms(4 * (3 + 1), inner_result));
      EXPECT_TRUE(all_clear(m.marks));
      EXPECT_EQ(m.check_consistency(), "");
    }
  }
}

// What the walks leave of their marks serves the next call.
TEST_F(SubstitutionTest, NestedWalksKeepTheLargerMarks) {
  NestedSubstitution delegate;
  delegate.manager = &m;
  delegate.form = by_vectors;
  delegate.root = g(x);
  delegate.marks = &marks;
  m.set_delegate(&delegate);
  m.set_delegate_enabled(true);
  const Term_* last = y;
  for (int i = 0; i < 1000; ++i) last = g(last);
  by_vectors(m, last, {}, {}, marks);
  EXPECT_GE(marks.size(), 2 * last->id + 2);
  EXPECT_TRUE(all_clear(marks));
}

// --- Against a naive recursive substitution ---

const Term_* naive_substitute(TermManager& m, const Term_* t,
                              const std::map<const Term_*, const Term_*>& pairs) {
  const auto found = pairs.find(t);
  if (found != pairs.end()) return found->second;
  Terms args;
  for (uint64_t i = 0; i < t->symbol->arity; ++i) {
    args.push_back(naive_substitute(m, t->args[i], pairs));
  }
  return m.make_term(t->symbol, args);
}

TEST_F(SubstitutionTest, AgreesWithRecursionOnRandomTerms) {
  std::mt19937 random(8);
  for (int round = 0; round < 500; ++round) {
    Terms nodes = {x, y, z};
    for (int i = 0; i < 25; ++i) {
      const size_t n = nodes.size();
      nodes.push_back(random() % 3 == 0
                          ? g(nodes[random() % n])
                          : f(nodes[random() % n], nodes[n / 2 + random() % (n - n / 2)]));
    }
    Terms from;
    Terms to;
    std::map<const Term_*, const Term_*> pairs;
    for (auto n = random() % 5; n > 0; --n) {
      from.push_back(nodes[random() % nodes.size()]);
      to.push_back(nodes[random() % nodes.size()]);
      pairs[from.back()] = to.back();
    }
    const Term_* t = nodes.back();
    ASSERT_EQ(m.substitute(t, from, to), naive_substitute(m, t, pairs)) << "round " << round;
  }
}

// --- Depth ---

TEST_F(SubstitutionTest, AChainOfAMillionIsRebuilt) {
  const Term_* t = x;
  for (int level = 0; level < 1000000; ++level) t = m.do_make_term(unary, {t});
  const Term_* image = m.substitute(t, {x}, {y});
  EXPECT_NE(image, t);
  EXPECT_EQ(image->id, t->id + 1000000);
  EXPECT_EQ(m.substitute(image, {y}, {x}), t);
}

TEST_F(SubstitutionTest, SharedTermsAreRebuiltOnce) {
  const Term_* t = x;
  for (int level = 0; level < 60; ++level) t = f(t, t);
  const size_t before = m.get_bank()->size();
  m.substitute(t, {x}, {y});
  EXPECT_EQ(m.get_bank()->size(), before + 60);
}

}  // namespace
}  // namespace quill
