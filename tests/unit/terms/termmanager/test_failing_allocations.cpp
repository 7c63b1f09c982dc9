// A script of calls on a manager, each of which is made to fail at every allocation in turn. What
// must hold after each failure: every store and table is as it was, the same call succeeds when it
// is repeated, and it and all later calls give what they give on a manager where nothing failed.
// The sanitizers find leaks and uses of freed memory.

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <string>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/failing_memory.h"
#include "tests/support/unchanged.h"

namespace quill {
namespace {

using Terms = std::vector<const Term_*>;
using Types = std::vector<const DataType*>;

// What a call returned, whichever it is.
struct Outcome {
  const DataType* type = nullptr;
  const Symbol* symbol = nullptr;
  const Term_* term = nullptr;
};

// The manager and what the script has made so far. Room is reserved, so that keeping an outcome
// allocates nothing.
struct State {
  State() { outcomes.reserve(200); }
  const DataType* type(size_t i) const { return outcomes[i].type; }
  const Symbol* symbol(size_t i) const { return outcomes[i].symbol; }
  const Term_* term(size_t i) const { return outcomes[i].term; }

  TermManager m;
  std::vector<Outcome> outcomes;
};

struct Sizes {
  explicit Sizes(const TermManager& m)
      : types(m.get_universe()->size()),
        symbols(m.get_signature()->size()),
        terms(m.get_bank()->size()),
        id_bound(m.get_bank()->id_bound()) {}
  bool operator==(const Sizes&) const = default;
  size_t types;
  size_t symbols;
  size_t terms;
  uint64_t id_bound;
};

std::ostream& operator<<(std::ostream& out, const Sizes& s) {
  return out << s.types << " types, " << s.symbols << " symbols, " << s.terms
             << " terms, ids below " << s.id_bound;
}

struct Call {
  const char* text;
  std::function<Outcome(State&)> run;
};

Outcome of(const DataType* type) { return {type, nullptr, nullptr}; }
Outcome of(const Symbol* symbol) { return {nullptr, symbol, nullptr}; }
Outcome of(const Term_* term) { return {nullptr, nullptr, term}; }

const std::vector<Call>& script() {
  static const std::string long_name = "a name that is too long to be kept in place";
  static const std::vector<Call> calls = {
      // 0
      {"get_simple_type", [](State& s) { return of(s.m.get_simple_type("S", false)); }},
      {"get_simple_type, long", [](State& s) { return of(s.m.get_simple_type(long_name, false)); }},
      {"get_type_from_width", [](State& s) { return of(s.m.get_type_from_width(7)); }},
      {"get_bv_type of a known width", [](State& s) { return of(s.m.get_bv_type(7)); }},
      {"get_bv_type", [](State& s) { return of(s.m.get_bv_type(32)); }},
      // 5
      {"get_fp_type", [](State& s) { return of(s.m.get_fp_type(8, 23)); }},
      {"get_array_type",
       [](State& s) { return of(s.m.get_array_type(s.m.get_int_type(), s.m.get_rat_type())); }},
      {"get_array_type, nested",
       [](State& s) { return of(s.m.get_array_type(s.type(6), s.type(6))); }},
      {"get_function_type",
       [](State& s) {
         return of(s.m.get_function_type({s.type(0), s.m.get_int_type()}, s.m.get_bool_type()));
       }},
      {"get_compound_type",
       [](State& s) {
         return of(s.m.get_compound_type({s.type(0), s.type(1)}));
       }},
      // 10
      {"make_symbol", [](State& s) { return of(s.m.make_symbol("x", s.m.get_int_type())); }},
      {"make_symbol, long", [](State& s) { return of(s.m.make_symbol(long_name, s.type(0))); }},
      {"make_symbol of a function", [](State& s) { return of(s.m.make_symbol("p", s.type(8))); }},
      {"make_symbol again", [](State& s) { return of(s.m.make_symbol("x", s.m.get_int_type())); }},
      {"make_unique_symbol",
       [](State& s) { return of(s.m.make_unique_symbol("x", s.m.get_int_type())); }},
      // 15
      {"make_unique_symbol again",
       [](State& s) { return of(s.m.make_unique_symbol("x", s.m.get_int_type())); }},
      {"make_unique_symbol, long",
       [](State& s) { return of(s.m.make_unique_symbol(long_name, s.type(0))); }},
      {"make_fresh_variable",
       [](State& s) { return of(s.m.make_fresh_variable(s.m.get_int_type())); }},
      {"make_fresh_variable of Bool",
       [](State& s) { return of(s.m.make_fresh_variable(s.m.get_bool_type())); }},
      {"make_constant x", [](State& s) { return of(s.m.make_constant(s.symbol(10))); }},
      // 20
      {"make_constant x_0", [](State& s) { return of(s.m.make_constant(s.symbol(14))); }},
      {"make_constant, long name", [](State& s) { return of(s.m.make_constant(s.symbol(11))); }},
      {"make_uninterpreted_function",
       [](State& s) {
         return of(s.m.make_uninterpreted_function(s.symbol(12), {s.term(21), s.term(19)}));
       }},
      {"make_not", [](State& s) { return of(s.m.make_not(s.term(22))); }},
      {"make_and", [](State& s) { return of(s.m.make_and(s.term(22), s.term(23))); }},
      // 25
      {"make_or", [](State& s) { return of(s.m.make_or(s.term(22), s.term(23))); }},
      {"make_iff", [](State& s) { return of(s.m.make_iff(s.term(24), s.term(25))); }},
      {"make_leq", [](State& s) { return of(s.m.make_leq(s.term(19), s.term(20))); }},
      {"make_plus", [](State& s) { return of(s.m.make_plus(s.term(19), s.term(20))); }},
      {"make_times", [](State& s) { return of(s.m.make_times(s.term(19), s.term(28))); }},
      // 30
      {"make_equal of Int", [](State& s) { return of(s.m.make_equal(s.term(28), s.term(29))); }},
      {"make_equality_symbol", [](State& s) { return of(s.m.make_equality_symbol(s.type(7))); }},
      {"make_equality_symbol again",
       [](State& s) { return of(s.m.make_equality_symbol(s.type(7))); }},
      {"make_equal of S", [](State& s) { return of(s.m.make_equal(s.term(21), s.term(21))); }},
      {"make_term_ite_symbol", [](State& s) { return of(s.m.make_term_ite_symbol(s.type(4))); }},
      // 35
      {"make_term_ite of Int",
       [](State& s) { return of(s.m.make_term_ite(s.term(24), s.term(19), s.term(20))); }},
      {"make_term_ite of S",
       [](State& s) { return of(s.m.make_term_ite(s.term(24), s.term(21), s.term(21))); }},
      {"make_number", [](State& s) { return of(s.m.make_number(7)); }},
      {"make_number again", [](State& s) { return of(s.m.make_number(7)); }},
      {"make_number of a fraction", [](State& s) { return of(s.m.make_number(QNumber(-22, 7))); }},
      // 40
      {"make_number of a fraction to be normalised",
       [](State& s) { return of(s.m.make_number(QNumber(10, 4))); }},
      {"make_number, big",
       [](State& s) {
         return of(s.m.make_number(QNumber::from_string("123456789012345678901234567890")));
       }},
      {"make_bv_number of a known width", [](State& s) { return of(s.m.make_bv_number(5, 7)); }},
      {"make_bv_number again", [](State& s) { return of(s.m.make_bv_number(5, 7)); }},
      {"make_bv_number", [](State& s) { return of(s.m.make_bv_number(5, 8)); }},
      // 45
      {"make_bv_number, wide", [](State& s) { return of(s.m.make_bv_number(0, 128)); }},
      {"make_floor", [](State& s) { return of(s.m.make_floor(s.term(39))); }},
      {"make_equal of bit-vectors",
       [](State& s) { return of(s.m.make_equal(s.term(42), s.term(43))); }},
      {"add_interpreted_symbol",
       [](State& s) {
         return of(s.m.add_interpreted_symbol("op", s.type(8), SymbolTag::BV_COMP));
       }},
      {"make_term",
       [](State& s) {
         return of(s.m.make_term(s.symbol(48), {s.term(21), s.term(37)}));
       }},
      // 50
      {"make_symbol for a numeral",
       [](State& s) { return of(s.m.make_symbol("99", s.m.get_int_type())); }},
      {"make_number of a declared name", [](State& s) { return of(s.m.make_number(99)); }},
      {"get_fp_type again", [](State& s) { return of(s.m.get_fp_type(8, 23)); }},
      {"get_fp_type of another format", [](State& s) { return of(s.m.get_fp_type(11, 52)); }},
      {"get_array_type of formats",
       [](State& s) { return of(s.m.get_array_type(s.type(53), s.type(5))); }},
      // 55
      {"make_symbol of an array", [](State& s) { return of(s.m.make_symbol("a", s.type(54))); }},
      {"make_constant of an array", [](State& s) { return of(s.m.make_constant(s.symbol(55))); }},
      {"make_equal of arrays", [](State& s) { return of(s.m.make_equal(s.term(56), s.term(56))); }},
      {"make_plus of a deeper term",
       [](State& s) { return of(s.m.make_plus(s.term(39), s.term(46))); }},
      {"make_unique_symbol of a taken name",
       [](State& s) { return of(s.m.make_unique_symbol("x_0", s.m.get_int_type())); }},
      // 60
      {"make_fresh_variable once more",
       [](State& s) { return of(s.m.make_fresh_variable(s.type(0))); }},
      {"make_number to the end", [](State& s) { return of(s.m.make_number(-1)); }},
      {"make_leq to the end", [](State& s) { return of(s.m.make_leq(s.term(58), s.term(61))); }},
  };
  return calls;
}

constexpr size_t first_fresh_variable = 17;
constexpr size_t second_fresh_variable = 18;

bool is_fresh(const Call& call) { return std::string(call.text).find("make_fresh_variable") == 0; }

// Everything that can be said about an outcome without addresses. The number in the name of a fresh
// variable is left out, because the numbers of failed ones are not used again.
std::string description(const TermManager& m, const Outcome& outcome, bool fresh) {
  if (outcome.type != nullptr) return outcome.type->to_str();
  const Symbol* s = outcome.symbol != nullptr ? outcome.symbol : outcome.term->symbol;
  std::string text = fresh ? "fresh" : s->name;
  text += " : " + s->type->to_str() + ", tag " + std::to_string(m.get_tag(s));
  QNumber value;
  if (m.is_number(s, &value)) text += ", value " + value.to_str();
  if (m.is_term_ite(s, nullptr)) text += ", an if-then-else";
  if (outcome.term == nullptr) return text;
  text += ", id " + std::to_string(outcome.term->id);
  return fresh ? text : text + ", " + outcome.term->to_str();
}

// The stores' indexes hold 32 objects, then 64 and 128, before they grow; no index holds the
// application type. The first slab of constants holds 64. Fills all three stores up to such a
// bound, so that the next object of each kind makes its store grow.
void fill_up(State& s) {
  const DataType* type = s.m.get_int_type();
  for (int i = 0; s.m.get_bank()->size() < 64; ++i) {
    s.m.make_constant(s.m.make_symbol("padding " + std::to_string(i), type));
  }
  for (int i = 0; s.m.get_signature()->size() < 128; ++i) {
    s.m.make_symbol("more padding " + std::to_string(i), type);
  }
  for (int i = 0; s.m.get_universe()->size() < 65; ++i) {
    s.m.get_simple_type("padding " + std::to_string(i), false);
  }
}

void run_until(State& s, size_t end, bool padded) {
  for (size_t i = 0; i < end; ++i) s.outcomes.push_back(script()[i].run(s));
  if (padded) fill_up(s);
}

// Makes call number `victim` fail at its k-th allocation and all later ones. False when it makes
// fewer.
bool fail(State& s, size_t victim, size_t k) {
  const testing::FailingMemory after(k);
  try {
    script()[victim].run(s);
  } catch (const std::bad_alloc&) {
    return true;
  }
  return false;
}

struct Line {
  std::string text;
  Sizes sizes;
};

// Runs the rest of the script.
std::vector<Line> finish(State& s, size_t begin) {
  std::vector<Line> lines;
  for (size_t i = begin; i < script().size(); ++i) {
    const Call& call = script()[i];
    s.outcomes.push_back(call.run(s));
    lines.push_back({description(s.m, s.outcomes.back(), is_fresh(call)), Sizes(s.m)});
  }
  return lines;
}

TEST(FailingAllocations, TheScriptItselfIsSound) {
  ASSERT_EQ(script().size(), 63U);
  State s;
  const std::vector<Line> lines = finish(s, 0);
  EXPECT_EQ(lines[14].text, "x_0 : Int, tag 0");
  EXPECT_EQ(lines[17].text, "fresh : Int, tag 0, id 2");
  EXPECT_EQ(lines[32].text, lines[31].text);
  EXPECT_EQ(lines[39].text, "-22/7 : Real, tag 0, value -22/7, id 20, -22/7");
  EXPECT_EQ(lines[62].text,
            "`<=_rat` : (-> Real Real Bool), tag 10, id 35, "
            "(`<=_rat` (`+_rat` -22/7 (`floor` -22/7)) -1)");
  // Nothing is beyond the bounds that fill_up fills to.
  EXPECT_LT(s.m.get_bank()->size(), 64U);
  EXPECT_LT(s.m.get_signature()->size(), 128U);
  EXPECT_LT(s.m.get_universe()->size(), 65U);
}

// With and without padding.
class FailingAllocationsAt : public ::testing::TestWithParam<bool> {};

INSTANTIATE_TEST_SUITE_P(Stores, FailingAllocationsAt, ::testing::Bool(),
                         [](const auto& param) { return param.param ? "Full" : "WithRoom"; });

TEST_P(FailingAllocationsAt, AFailedCallLeavesEverythingAsItWas) {
  for (size_t victim = 0; victim < script().size(); ++victim) {
    for (size_t k = 0;; ++k) {
      State s;
      run_until(s, victim, GetParam());
      const testing::StateBefore before(s.m);
      if (!fail(s, victim, k)) break;
      // The number of a fresh variable is used up.
      const char* expected =
          !is_fresh(script()[victim])       ? ""
          : victim == first_fresh_variable  ? "\nfresh_counter: 2\n-fresh_counter: 1"
          : victim == second_fresh_variable ? "\nfresh_counter: 3\n-fresh_counter: 2"
                                            : "\nfresh_counter: 4\n-fresh_counter: 3";
      EXPECT_EQ(before.changes(), expected) << script()[victim].text << ", allocation " << k;
    }
  }
}

TEST_P(FailingAllocationsAt, AfterAFailureAllCallsGiveWhatTheyGiveOnAFreshManager) {
  size_t failures = 0;
  for (size_t victim = 0; victim < script().size(); ++victim) {
    State unharmed;
    run_until(unharmed, victim, GetParam());
    const std::vector<Line> expected = finish(unharmed, victim);
    for (size_t k = 0;; ++k) {
      State s;
      run_until(s, victim, GetParam());
      if (!fail(s, victim, k)) break;
      ++failures;
      const std::vector<Line> actual = finish(s, victim);
      for (size_t i = 0; i < expected.size(); ++i) {
        ASSERT_EQ(actual[i].text, expected[i].text)
            << script()[victim + i].text << " after the failure of " << script()[victim].text
            << ", allocation " << k;
        ASSERT_EQ(actual[i].sizes, expected[i].sizes)
            << script()[victim + i].text << " after the failure of " << script()[victim].text
            << ", allocation " << k;
      }
    }
  }
  EXPECT_GT(failures, 100U);
}

}  // namespace
}  // namespace quill
