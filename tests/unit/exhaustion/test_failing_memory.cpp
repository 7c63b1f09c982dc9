// Running out of memory, at every allocation of a script that reaches all of the library.
//
// What must hold after each failure: the call threw std::bad_alloc and nothing else; all tables
// agree; the stores have the terms that they had; every object handed out before is unchanged; and
// the same call and all later ones give what they give in a run without failures, with the same ids
// and texts. At the end no GMP number is left. The sanitizers find other leaks.

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "quill/utils/qnumber.h"
#include "tests/support/failing_memory.h"
#include "tests/unit/exhaustion/failing_pools.h"
#include "tests/unit/exhaustion/script.h"

namespace quill::testing {
namespace {

struct Sizes {
  explicit Sizes(const TermManager& m)
      : types(m.get_universe()->size()),
        symbols(m.get_signature()->size()),
        terms(m.get_bank()->size()),
        id_bound(m.get_bank()->id_bound()) {}
  bool operator==(const Sizes&) const = default;
  bool has_terms_of(const Sizes& other) const {
    return terms == other.terms && id_bound == other.id_bound;
  }
  size_t types;
  size_t symbols;
  size_t terms;
  uint64_t id_bound;
};

std::ostream& operator<<(std::ostream& out, const Sizes& s) {
  return out << s.types << " types, " << s.symbols << " symbols, " << s.terms
             << " terms, ids below " << s.id_bound;
}

// A run of the script, with what it handed out and what is known about it.
class Performance {
 public:
  explicit Performance(const std::vector<Call>& calls) : script(calls), state(calls.size()) {}

  // The next call, which makes so many allocations before one fails. Nothing if it ran out of
  // memory, and then it is still the next one.
  std::optional<Outcome> attempt(size_t successes, Failures failures) {
    state.take_text();
    try {
      const FailingMemory memory(successes, failures);
      const auto note = [&] {
        failed = memory.has_failed();
        asked = memory.asked();
      };
      try {
        Outcome outcome = next().run(state);
        note();
        return outcome;
      } catch (...) {
        note();
        throw;
      }
    } catch (const std::bad_alloc&) {
      return std::nullopt;
    } catch (const std::exception& e) {
      ADD_FAILURE() << next().text << ": " << e.what();
      return std::nullopt;
    }
  }

  // Keeps the outcome of the next call, and returns what is to be known about it.
  std::string finish(Outcome outcome) {
    EXPECT_TRUE(state.out().good());
    outcome.text += state.take_text();
    if (next().effect == Effect::Collect) forget_all_but(next().kept);
    descriptions.push_back(description(state, outcome));
    state.outcomes.push_back(std::move(outcome));
    return descriptions.back();
  }

  // Attempts that nothing hinders.
  std::string perform() {
    std::optional<Outcome> outcome = attempt(SIZE_MAX, Failures::Once);
    EXPECT_TRUE(outcome.has_value()) << next().text;
    return finish(std::move(outcome).value_or(Outcome()));
  }

  // Whether what was handed out by this call, if it is still there, is what it was.
  void expect_unharmed(size_t position) const {
    if (forgotten.count(position) != 0) return;
    EXPECT_EQ(description(state, state.outcomes[position]), descriptions[position])
        << script[position].text;
  }

  void expect_consistent() const {
    EXPECT_EQ(state.m.check_consistency(), "");
    EXPECT_EQ(state.other.check_consistency(), "");
  }

  // What a failed request for a fresh variable uses up.
  void use_up_fresh_number() {
    const DataType* integers = state.m.get_int_type();
    const DataType* function = state.m.get_function_type({integers, integers}, integers);
    EXPECT_THROW(state.m.make_fresh_variable(function), TermManager::error);
  }

  const Call& next() const { return script[state.outcomes.size()]; }
  size_t position() const { return state.outcomes.size(); }
  Sizes sizes() const { return Sizes(state.m); }
  Sizes other_sizes() const { return Sizes(state.other); }

  // Of the last attempt.
  bool failed = false;
  size_t asked = 0;

 private:
  void forget_all_but(const std::vector<size_t>& kept) {
    const std::set<size_t> stay(kept.begin(), kept.end());
    for (size_t i = 0; i < state.outcomes.size(); ++i) {
      const bool is_object = state.outcomes[i].text.empty() && !state.outcomes[i].answer;
      if (is_object && stay.count(i) == 0) forgotten.insert(i);
    }
  }

  const std::vector<Call>& script;
  State state;
  std::vector<std::string> descriptions;
  std::set<size_t> forgotten;
};

const std::vector<Call>& script() {
  static const std::vector<Call> calls = make_script();
  return calls;
}

TEST(FailingMemory, TheScriptHasSomeTwoThousandCalls) {
  EXPECT_GT(script().size(), 2000U);
  EXPECT_LT(script().size(), 4000U);
}

// A call fails at its first allocation, then at its second one and so on until it succeeds. Types
// and symbols that an attempt left behind make the next one shorter: it begins again with the first
// allocation. For calls of very many allocations, the attempts become sparser.
TEST(FailingMemory, EachCallFailsAtEachAllocationAndThenSucceeds) {
  const size_t chunks_before = pool_chunks();
  Performance unharmed(script());
  Performance run(script());
  size_t failures = 0;
  while (run.position() < script().size() && !HasFailure()) {
    const Call& call = run.next();
    SCOPED_TRACE(call.text + ", call " + std::to_string(run.position()));
    const Sizes before = run.sizes();
    const Sizes other_before = run.other_sizes();
    size_t fresh_numbers = 0;
    std::optional<Outcome> outcome;
    for (size_t successes = 0; !outcome && !HasFailure();) {
      const Sizes here = run.sizes();
      const Sizes other_here = run.other_sizes();
      for (const Failures mode : {Failures::FromThenOn, Failures::Once}) {
        outcome = run.attempt(successes, mode);
        if (outcome) break;
        EXPECT_TRUE(run.failed) << "std::bad_alloc without a reason";
        ++failures;
        ++fresh_numbers;
        if (run.position() != 0) run.expect_unharmed(failures * 7 % run.position());
        if (call.effect != Effect::Several) {
          EXPECT_TRUE(run.sizes().has_terms_of(before));
          EXPECT_TRUE(run.other_sizes().has_terms_of(other_before));
        }
        if (failures % 8 == 0 || !(run.sizes() == here)) run.expect_consistent();
      }
      const bool has_changed = !(run.sizes() == here && run.other_sizes() == other_here);
      successes = has_changed ? 0 : successes + 1 + successes / 8;
    }
    if (HasFailure()) break;
    if (call.effect == Effect::Fresh) {
      while (fresh_numbers-- > 0) unharmed.use_up_fresh_number();
    }
    const std::string expected = unharmed.perform();
    EXPECT_EQ(run.finish(std::move(*outcome)), expected);
    EXPECT_EQ(run.sizes(), unharmed.sizes());
    EXPECT_EQ(run.other_sizes(), unharmed.other_sizes());
  }
  run.expect_consistent();
  EXPECT_GT(failures, 5000U);
  EXPECT_GT(pool_chunks(), chunks_before);
}

// The k-th allocation of the whole script fails, for k = first, first + step and so on; the rest of
// the script follows undisturbed.
void fail_at_allocations(size_t first, size_t step) {
  std::vector<std::string> expected;
  std::vector<size_t> allocations;
  {
    Performance unharmed(script());
    while (unharmed.position() < script().size()) {
      expected.push_back(unharmed.perform());
      allocations.push_back(unharmed.asked);
    }
  }
  size_t total = 0;
  for (const size_t n : allocations) total += n;
  for (size_t k = first; k < total && !::testing::Test::HasFailure(); k += step) {
    SCOPED_TRACE("allocation " + std::to_string(k));
    Performance run(script());
    size_t left = k;
    while (left >= allocations[run.position()]) {
      left -= allocations[run.position()];
      run.perform();
    }
    const size_t victim = run.position();
    const Effect effect = run.next().effect;
    const Sizes before = run.sizes();
    std::optional<Outcome> outcome = run.attempt(left, Failures::Once);
    EXPECT_TRUE(run.failed);
    if (outcome) {
      EXPECT_EQ(run.finish(std::move(*outcome)), expected[victim]);
    } else {
      if (effect != Effect::Several) {
        EXPECT_TRUE(run.sizes().has_terms_of(before));
      }
      for (size_t i = 0; i < victim; ++i) run.expect_unharmed(i);
    }
    run.expect_consistent();
    // A failed request for a fresh variable leaves its number out, so that all later names differ.
    if (effect == Effect::Fresh) continue;
    while (run.position() < script().size() && !::testing::Test::HasFailure()) {
      const size_t position = run.position();
      ASSERT_EQ(run.perform(), expected[position]) << script()[position].text;
    }
    run.expect_consistent();
  }
}

TEST(FailingMemory, TheScriptGoesOnAfterAFailureHereAndThere) {
  fail_at_allocations(/*first=*/1, /*step=*/2999);
}

// Tests that take too long for the suite; scripts/soak runs them.
TEST(FailingMemory, DISABLED_TheScriptGoesOnAfterAFailureAnywhere) {
  fail_at_allocations(/*first=*/0, /*step=*/1);
}

// One printer writes the commands that define the names in a term's text, and then the text.
TEST(FailingMemory, WhatWasNotWrittenToItsEndIsNotDefined) {
  TermManager m;
  const DataType* format = m.get_fp_type(3, 4);
  const Term_* sum = m.make_fp_add(m.make_fprounding_even(), m.make_fp_nan(3, 4),
                                   m.make_constant(m.make_symbol("x", format)));
  const Term_* t = m.make_equal(m.make_fp_as_ieeebv(sum), m.make_bv_number(5, 8));
  SmtLib2TermPrinter::Annotations annotations;
  annotations[sum].push_back({"named", "the-sum"});

  std::string room(10'000, ' ');
  for (const Failures mode : {Failures::FromThenOn, Failures::Once}) {
    BitDefinitions definitions(m);
    Configuration::Printer choices{.dialect = Configuration::Dialect::Standard, .logic = ""};
    SmtLib2TermPrinter printer(&m, &choices, "", "", /*share=*/true, &annotations);
    printer.set_definitions(&definitions);
    std::ostringstream out;
    for (size_t successes = 0;; ++successes) {
      out.str(room);  // which is enough, so that the stream allocates nothing
      try {
        const FailingMemory memory(successes, mode);
        printer.print_definitions(out, t);
        break;
      } catch (const std::bad_alloc&) {
        EXPECT_TRUE(definitions.all().empty());
      }
    }
    printer.print_term(out, t);
    const std::string expected =
        "(declare-const quill!ieee_nan_1 (_ BitVec 8))\n"
        "(declare-const quill!ieee_bits_1 (_ BitVec 8))\n"
        "(assert (and (= ((_ to_fp 3 5) quill!ieee_bits_1) (! (fp.add RNE (fp #b0 #b111 #b1000) x) "
        ":named the-sum)) (or (not (fp.isNaN the-sum)) (= quill!ieee_bits_1 quill!ieee_nan_1))))\n"
        "(= quill!ieee_bits_1 (_ bv5 8))";
    EXPECT_EQ(out.str().substr(0, expected.size()), expected);
  }
}

// Lets the action fail at its first allocation, at its second one and so on, in growing steps,
// until it succeeds. Returns how often it failed.
template <class Action>
size_t insist(const Action& action) {
  size_t failures = 0;
  for (size_t successes = 0;; successes += 1 + successes / 4) {
    try {
      const FailingMemory memory(successes, Failures::FromThenOn);
      action();
      return failures;
    } catch (const std::bad_alloc&) {
      ++failures;
    }
  }
}

// The script's tables stay small. These outgrow what operator new gives.
TEST(FailingMemory, LargeTablesOutliveTheFailureOfTheirGrowth) {
  constexpr size_t count = 200'000;
  const size_t blocks_before = large_blocks();
  TermManager m;
  const DataType* sort = m.get_simple_type("S", false);
  const Symbol* f = m.make_symbol("f", m.get_function_type({sort}, sort));
  const Symbol* g = m.make_symbol("g", m.get_function_type({sort, sort}, sort));
  const Term_* x = m.make_constant(m.make_symbol("x", sort));
  const Term_* y = m.make_constant(m.make_symbol("y", sort));
  const uint64_t first_id = m.get_bank()->id_bound();
  std::vector<const Term_*> args{x, y};
  const Term_* t = x;
  size_t failures = 0;
  for (size_t i = 0; i < count; ++i) {
    const Symbol* s = i % 2 == 0 ? f : g;
    args.assign({t, x});
    args.resize(s->arity);
    failures += insist([&] { t = m.make_term(s, args); });
    ASSERT_EQ(t->id, first_id + i);
  }
  EXPECT_GT(failures, 50U);
  EXPECT_EQ(m.check_consistency(), "");

  const Term_* image = nullptr;
  failures = insist([&] { image = m.substitute(t, {x}, {y}); });
  EXPECT_GT(failures, 10U);
  EXPECT_EQ(image->id, first_id + 2 * count - 1);

  TermManager other;
  const Term_* copy = nullptr;
  insist([&] { copy = other.copy_term(m, t); });
  EXPECT_EQ(other.get_bank()->size(), 2 + 1 + count);  // true, false, x

  insist([&] { m.gc({image}, {}, {}); });
  EXPECT_EQ(m.get_bank()->size(), 2 + 1 + count);
  EXPECT_EQ(m.check_consistency(), "");
  EXPECT_GT(large_blocks(), blocks_before);
}

TEST(FailingMemory, NoNumberOfGmpIsLeftBehind) {
  const auto run = [] {
    Performance unharmed(script());
    while (unharmed.position() < script().size()) unharmed.perform();
  };
  run();  // the scratch integer of the thread grows once
  const size_t before = gmp_blocks();
  run();
  EXPECT_EQ(gmp_blocks(), before);
  // No number of the script has more than a few hundred bits.
  EXPECT_LT(largest_gmp_block(), 100'000'000U);
}

}  // namespace
}  // namespace quill::testing
