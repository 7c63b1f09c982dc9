// Requests that run out of memory, at each of their allocations, leave the manager as it was: every
// store, every table, every switch. When they are repeated, they do what they do without a failure.
//
// Each attempt has its own manager. Where something may stay after a failure, the test says so.

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/failing_memory.h"
#include "tests/support/manager_test.h"
#include "tests/support/operator_rows.h"
#include "tests/support/unchanged.h"

namespace quill::testing {
namespace {

using Types = std::vector<const DataType*>;
using Lines = std::vector<std::string>;
using Request = std::function<void()>;

// Makes what a request needs on a manager, and returns the request.
using Setup = std::function<Request(TermManager&)>;

// The stores' indexes hold 32 objects, then 64 and 128, before they grow; no index holds the
// application type. Fills all three stores up to such a bound, so that the next object of each kind
// makes its store grow.
void fill_up(TermManager& m) {
  for (int i = 0; m.get_bank()->size() < 64; ++i) {
    m.make_constant(m.make_symbol("padding " + std::to_string(i), m.get_int_type()));
  }
  for (int i = 0; m.get_signature()->size() < 128; ++i) {
    m.make_symbol("more padding " + std::to_string(i), m.get_int_type());
  }
  for (int i = 0; m.get_universe()->size() < 65; ++i) {
    m.get_simple_type("padding " + std::to_string(i), /*only_existing=*/false);
  }
}

enum class Stores { WithRoom, Full };

struct Attempt {
  Attempt(const Setup& setup, Stores stores) : request(setup(m)) {
    if (stores == Stores::Full) fill_up(m);
  }
  // Makes one allocation fail, or all from there on.
  void perform_without_memory(size_t successes, Failures mode) {
    const FailingMemory memory(successes, mode);
    try {
      request();
    } catch (const std::bad_alloc&) {
      ran_out = true;
    } catch (const Exception&) {
      // A refusal is a result like any other.
    }
    failed = memory.has_failed();
  }
  void perform() const {
    try {
      request();
    } catch (const Exception&) {
    }
  }

  TermManager m;
  Request request;
  bool failed = false;   // an allocation did
  bool ran_out = false;  // and so did the request
};

// What a failure may leave.
struct Leaves {
  std::vector<std::string> changes;  // one of these; none at all for any step of the request
  bool repeats = true;               // whether the same request then gives what it gives elsewhere
};
const Leaves nothing{{""}};
const Leaves used_number{{"\nfresh_counter: 2\n-fresh_counter: 1"}, /*repeats=*/false};
const Leaves any_steps{{}};

// Makes the request fail at its first allocation, at its second one and so on, until it succeeds.
// For requests of many steps the attempts become sparser.
void fail_everywhere(const std::string& text, const Setup& setup, const Leaves& leaves,
                     Stores stores, Failures mode) {
  size_t failures = 0;
  Attempt unharmed(setup, stores);
  unharmed.perform();
  const std::string expected = unharmed.m.describe_state();
  for (size_t successes = 0;; successes += 1 + (leaves.changes.empty() ? successes / 4 : 0)) {
    SCOPED_TRACE(text + ", allocation " + std::to_string(successes));
    Attempt attempt(setup, stores);
    const StateBefore before(attempt.m);
    attempt.perform_without_memory(successes, mode);
    if (!attempt.failed) break;
    ++failures;
    if (!attempt.ran_out) {
      // The request succeeded without this allocation.
    } else if (leaves.changes.empty()) {
      ASSERT_EQ(attempt.m.check_consistency(), "");
    } else {
      const std::string changes = before.changes();
      const auto allowed = std::find(leaves.changes.begin(), leaves.changes.end(), changes);
      ASSERT_NE(allowed, leaves.changes.end()) << changes;
    }
    if (!leaves.repeats) continue;
    if (attempt.ran_out) attempt.perform();
    const std::string actual = attempt.m.describe_state();
    if (actual != expected) {
      ASSERT_EQ(changed_lines(expected, actual), Lines());
    }
  }
  // There may be room for a constant.
  EXPECT_TRUE(failures > 0 || stores == Stores::WithRoom) << text;
}

void fail_everywhere(const std::string& text, const Setup& setup, const Leaves& leaves = nothing) {
  fail_everywhere(text, setup, leaves, Stores::WithRoom, Failures::FromThenOn);
  fail_everywhere(text, setup, leaves, Stores::WithRoom, Failures::Once);
  fail_everywhere(text, setup, leaves, Stores::Full, Failures::Once);
}

// For allocations at which most other requests have failed, too.
void fail_once_everywhere(const std::string& text, const Setup& setup,
                          const Leaves& leaves = nothing) {
  fail_everywhere(text, setup, leaves, Stores::WithRoom, Failures::Once);
}

//------------------------------------------------------------------------------------------------
// Operator families

class WholeStateOfOperators : public ::testing::TestWithParam<Row> {};

INSTANTIATE_TEST_SUITE_P(Operators, WholeStateOfOperators, ::testing::ValuesIn(operator_rows()),
                         [](const auto& param) { return std::string(param.param.operation); });

// The types of the symbol, as somebody else would make them.
const DataType* make_type(TermManager& m, const Row& row) {
  TermManager other;
  Types types;
  m.copy_types(other, {row.make_symbol(other)->type}, types);
  return types[0];
}

TEST_P(WholeStateOfOperators, AfterAFailedMaker) {
  const Row& row = GetParam();
  fail_everywhere("on a fresh manager",
                  [&](TermManager& m) { return [&] { row.make_symbol(m); }; });
  fail_once_everywhere("with the types at hand", [&](TermManager& m) {
    make_type(m, row);
    return [&] { row.make_symbol(m); };
  });
}

// The symbol exists: a user made it, with another tag. The maker overwrites the tag, and a failure
// restores it.
TEST_P(WholeStateOfOperators, AfterAFailedMakerOfARegisteredSymbol) {
  const Row& row = GetParam();
  fail_once_everywhere("of a registered symbol", [&](TermManager& m) {
    m.add_interpreted_symbol(row.name, make_type(m, row), SymbolTag::PLUS);
    return [&] { row.make_symbol(m); };
  });
}

TEST(WholeState, AMakerThatFailsPutsBackTheTagThatItOverwrote) {
  TermManager m;
  const DataType* bv8 = m.get_bv_type(8);
  const Symbol* add =
      m.add_interpreted_symbol("bvadd_8", m.get_function_type({bv8, bv8}, bv8), SymbolTag::PLUS);
  size_t failures = 0;
  for (;; ++failures) {
    try {
      const FailingMemory memory(failures, Failures::Once);
      m.make_bv_add_symbol(8);
      break;
    } catch (const std::bad_alloc&) {
      ASSERT_EQ(m.get_tag(add), SymbolTag::PLUS) << "allocation " << failures;
      ASSERT_FALSE(m.is_bv_add(add, nullptr)) << "allocation " << failures;
    }
  }
  EXPECT_GT(failures, 0U);
  EXPECT_EQ(m.make_bv_add_symbol(8), add);
  EXPECT_EQ(m.get_tag(add), SymbolTag::BV_ADD);
  EXPECT_TRUE(m.is_bv_add(add, nullptr));
}

TEST_P(WholeStateOfOperators, AfterAFailedMakerWhoseNameIsTaken) {
  const Row& row = GetParam();
  fail_once_everywhere("of a taken name", [&](TermManager& m) {
    m.add_interpreted_symbol(row.name, m.get_int_type(), SymbolTag::PLUS);
    return [&] { row.make_symbol(m); };
  });
}

TEST_P(WholeStateOfOperators, AfterAFailedBuilderThatHasItsSymbol) {
  const Row& row = GetParam();
  for (const Names& names : {row.args, row.failures.back().args}) {
    fail_once_everywhere("of operands", [&](TermManager& m) {
      row.make_symbol(m);
      return [&, args = Operands(m).terms(names)] { row.build(m, args); };
    });
  }
}

// The symbol comes before the term and before the check of the operands. When these fail it stays,
// as the maker leaves it.
TEST_P(WholeStateOfOperators, AfterAFailedBuilderThatMakesItsSymbol) {
  const Row& row = GetParam();
  Bench bench;
  const StateBefore before(bench.m);
  row.make_symbol(bench.m);
  const Leaves symbol{{"", before.changes()}};
  for (const Names& names : {row.args, row.failures.back().args}) {
    fail_once_everywhere(
        "of operands",
        [&](TermManager& m) {
          return [&, args = Operands(m).terms(names)] { row.build(m, args); };
        },
        symbol);
  }
  fail_once_everywhere("of a taken name", [&](TermManager& m) {
    m.add_interpreted_symbol(row.name, m.get_int_type(), SymbolTag::PLUS);
    return [&, args = Operands(m).terms(row.args)] { row.build(m, args); };
  });
}

//------------------------------------------------------------------------------------------------
// Types

TEST(WholeState, AfterAFailedRequestForAType) {
  const std::string short_name = "S";
  const std::string long_name = "a name that is too long to be kept in place";
  for (const std::string& name : {short_name, long_name}) {
    fail_everywhere("get_simple_type", [&](TermManager& m) {
      return [&] { m.get_simple_type(name, /*only_existing=*/false); };
    });
  }
  fail_everywhere("get_type_from_width",
                  [](TermManager& m) { return [&] { m.get_type_from_width(8); }; });
  fail_everywhere("get_type_from_width of a sort's name", [](TermManager& m) {
    m.get_simple_type("8", /*only_existing=*/false);
    return [&] { m.get_type_from_width(8); };
  });
  fail_everywhere("get_bv_type", [](TermManager& m) { return [&] { m.get_bv_type(8); }; });
  fail_everywhere("get_bv_type of a known width", [](TermManager& m) {
    m.get_type_from_width(8);
    return [&] { m.get_bv_type(8); };
  });
  fail_everywhere("get_bv_type of a sort's name", [](TermManager& m) {
    m.get_simple_type("8", /*only_existing=*/false);
    return [&] { m.get_bv_type(8); };
  });
  fail_everywhere("get_fp_type", [](TermManager& m) { return [&] { m.get_fp_type(8, 23); }; });
  fail_everywhere("get_fp_type of a sort's name", [](TermManager& m) {
    m.get_simple_type("8:23", /*only_existing=*/false);
    return [&] { m.get_fp_type(8, 23); };
  });
  fail_everywhere("get_fp_type that is refused",
                  [](TermManager& m) { return [&] { m.get_fp_type(8, 1); }; });
  fail_everywhere("get_array_type", [](TermManager& m) {
    return [&] { m.get_array_type(m.get_int_type(), m.get_rat_type()); };
  });
  fail_everywhere("get_function_type", [](TermManager& m) {
    return [&, args = Types(2, m.get_rat_type())] { m.get_function_type(args, m.get_int_type()); };
  });
  fail_everywhere("get_compound_type", [](TermManager& m) {
    return [&, components = Types(3, m.get_rat_type())] { m.get_compound_type(components); };
  });
}

//------------------------------------------------------------------------------------------------
// Symbols

TEST(WholeState, AfterAFailedRequestForASymbol) {
  const std::string short_name = "x";
  const std::string long_name = "a name that is too long to be kept in place";
  for (const std::string& name : {short_name, long_name}) {
    fail_everywhere("make_symbol",
                    [&](TermManager& m) { return [&] { m.make_symbol(name, m.get_int_type()); }; });
    fail_everywhere("make_symbol of a taken name", [&](TermManager& m) {
      m.make_symbol(name, m.get_int_type());
      return [&] { m.make_symbol(name, m.get_rat_type()); };
    });
    fail_everywhere("make_unique_symbol", [&](TermManager& m) {
      return [&] { m.make_unique_symbol(name, m.get_int_type()); };
    });
    fail_everywhere("make_unique_symbol of a taken name", [&](TermManager& m) {
      m.make_symbol(name, m.get_int_type());
      return [&] { m.make_unique_symbol(name, m.get_int_type()); };
    });
    fail_everywhere("make_unique_symbol of a name that came back", [&](TermManager& m) {
      m.make_symbol(name, m.get_int_type());
      const Symbol* first = m.make_unique_symbol(name, m.get_int_type());
      m.make_unique_symbol(name, m.get_int_type());
      m.free_symbol(first);
      return [&] { m.make_unique_symbol(name, m.get_int_type()); };
    });
    fail_everywhere("add_interpreted_symbol", [&](TermManager& m) {
      return [&] { m.add_interpreted_symbol(name.c_str(), m.get_int_type(), SymbolTag::PLUS); };
    });
    fail_everywhere("add_interpreted_symbol of a taken name", [&](TermManager& m) {
      m.add_interpreted_symbol(name.c_str(), m.get_int_type(), SymbolTag::PLUS);
      return [&] { m.add_interpreted_symbol(name.c_str(), m.get_rat_type(), SymbolTag::LEQ); };
    });
  }
  fail_everywhere(
      "make_fresh_variable",
      [](TermManager& m) { return [&] { m.make_fresh_variable(m.get_int_type()); }; }, used_number);
  fail_everywhere(
      "make_fresh_variable of a taken name",
      [](TermManager& m) {
        m.make_symbol("'1", m.get_int_type());
        return [&] { m.make_fresh_variable(m.get_int_type()); };
      },
      used_number);
}

//------------------------------------------------------------------------------------------------
// Terms

TEST(WholeState, AfterAFailedRequestForATerm) {
  fail_everywhere("make_constant", [](TermManager& m) {
    return [&, s = m.make_symbol("x", m.get_int_type())] { m.make_constant(s); };
  });
  fail_everywhere("make_uninterpreted_function", [](TermManager& m) {
    const DataType* integers = m.get_int_type();
    const Symbol* f = m.make_symbol("f", m.get_function_type({integers, integers}, integers));
    return [&, f, args = Terms(2, constant(m, "x", integers))] {
      m.make_uninterpreted_function(f, args);
    };
  });
  fail_everywhere("make_uninterpreted_function that is refused", [](TermManager& m) {
    const DataType* integers = m.get_int_type();
    const Symbol* f = m.make_symbol("f", m.get_function_type({integers, integers}, integers));
    return [&, f, args = Terms(2, constant(m, "r", m.get_rat_type()))] {
      m.make_uninterpreted_function(f, args);
    };
  });
  using Binary = const Term_* (TermManager::*)(const Term_*, const Term_*);
  for (const Binary builder : {&TermManager::make_and, &TermManager::make_or,
                               &TermManager::make_iff, &TermManager::make_plus}) {
    fail_everywhere("a binary builder", [=](TermManager& m) {
      return [&m, builder, p = constant(m, "p", m.get_bool_type())] { (m.*builder)(p, p); };
    });
  }
  for (const Binary builder : {&TermManager::make_leq, &TermManager::make_plus,
                               &TermManager::make_times, &TermManager::make_equal}) {
    fail_everywhere("a binary builder of arithmetic", [=](TermManager& m) {
      return [&m, builder, i = constant(m, "i", m.get_int_type())] { (m.*builder)(i, i); };
    });
  }
  fail_everywhere("make_not", [](TermManager& m) {
    return [&, p = constant(m, "p", m.get_bool_type())] { m.make_not(p); };
  });
  fail_everywhere("make_floor", [](TermManager& m) {
    return [&, r = constant(m, "r", m.get_rat_type())] { m.make_floor(r); };
  });
}

// The symbol that such a request makes is removed with it.
TEST(WholeState, AfterAFailedEqualityOrIfThenElse) {
  const auto sort = [](TermManager& m) { return m.get_simple_type("S", /*only_existing=*/false); };
  fail_everywhere("make_equality_symbol", [=](TermManager& m) {
    return [&, type = sort(m)] { m.make_equality_symbol(type); };
  });
  fail_everywhere("make_term_ite_symbol", [=](TermManager& m) {
    return [&, type = sort(m)] { m.make_term_ite_symbol(type); };
  });
  for (const bool has_symbols : {false, true}) {
    const auto prepare = [=](TermManager& m) {
      if (!has_symbols) return;
      m.make_equality_symbol(sort(m));
      m.make_term_ite_symbol(sort(m));
      m.make_term_ite_symbol(m.get_int_type());
      m.make_term_ite_symbol(m.get_rat_type());
    };
    fail_everywhere("make_equal", [=](TermManager& m) {
      prepare(m);
      return [&, x = constant(m, "x", sort(m))] { m.make_equal(x, x); };
    });
    fail_everywhere("make_equal that is refused", [=](TermManager& m) {
      prepare(m);
      return [&, x = constant(m, "x", sort(m)), i = constant(m, "i", m.get_int_type())] {
        m.make_equal(x, i);
      };
    });
    for (const bool is_int : {false, true}) {
      fail_everywhere("make_term_ite", [=](TermManager& m) {
        prepare(m);
        const Term_* x = constant(m, "x", is_int ? m.get_int_type() : sort(m));
        return [&, x, p = constant(m, "p", m.get_bool_type())] { m.make_term_ite(p, x, x); };
      });
    }
    fail_everywhere("make_term_ite that is refused", [=](TermManager& m) {
      prepare(m);
      return [&, x = constant(m, "x", sort(m))] { m.make_term_ite(x, x, x); };
    });
  }
  for (const char* name : {"=_S", "ite_S"}) {
    fail_everywhere("of a registered symbol", [=](TermManager& m) {
      const DataType* type = sort(m);
      const DataType* booleans = m.get_bool_type();
      m.set_reject_bool_arguments(false);
      const bool is_equality = name[0] == '=';
      m.add_interpreted_symbol(name,
                               is_equality ? m.get_function_type({type, type}, booleans)
                                           : m.get_function_type({booleans, type, type}, type),
                               SymbolTag::PLUS);
      return [&, is_equality, x = constant(m, "x", type), p = constant(m, "p", booleans)] {
        is_equality ? m.make_equal(x, x) : m.make_term_ite(p, x, x);
      };
    });
    fail_everywhere("of a taken name", [=](TermManager& m) {
      m.add_interpreted_symbol(name, sort(m), SymbolTag::PLUS);
      return [&, is_equality = name[0] == '=', x = constant(m, "x", sort(m)),
              p = constant(m, "p", m.get_bool_type())] {
        is_equality ? m.make_equal(x, x) : m.make_term_ite(p, x, x);
      };
    });
  }
}

//------------------------------------------------------------------------------------------------
// Numerals

TEST(WholeState, AfterAFailedNumeral) {
  const std::vector<QNumber> values = {7, QNumber(-22, 7), QNumber(10, 4),
                                       QNumber::from_string("123456789012345678901234567890"),
                                       QNumber::from_string("1/123456789012345678901234567890")};
  for (const QNumber& value : values) {
    fail_everywhere("make_number", [&](TermManager& m) { return [&] { m.make_number(value); }; });
  }
  fail_everywhere("make_number of a declared name", [](TermManager& m) {
    m.make_symbol("7", m.get_int_type());
    return [&, value = QNumber(7)] { m.make_number(value); };
  });
  fail_everywhere("make_number of a taken name", [](TermManager& m) {
    m.make_symbol("7", m.get_bool_type());
    return [&, value = QNumber(7)] { m.make_number(value); };
  });

  const QNumber five(5);
  fail_everywhere("make_bv_number",
                  [&](TermManager& m) { return [&] { m.make_bv_number(five, 8); }; });
  fail_everywhere("make_bv_number of many bits",
                  [&](TermManager& m) { return [&] { m.make_bv_number(values[3], 128); }; });
  fail_everywhere("make_bv_number of a known width", [&](TermManager& m) {
    m.get_bv_type(8);
    return [&] { m.make_bv_number(five, 8); };
  });
  fail_everywhere("make_bv_number of a declared name", [&](TermManager& m) {
    m.make_symbol("5_8", m.get_bv_type(8));
    return [&] { m.make_bv_number(five, 8); };
  });
  fail_everywhere("make_bv_number of a declared name and a hand-built type", [&](TermManager& m) {
    const DataType* head = m.get_universe()->type(5);
    EXPECT_EQ(head->get_name(), "BitVec");
    const DataType* eight = m.get_simple_type("8", /*only_existing=*/false);
    m.make_symbol("5_8", m.get_compound_type({head, eight}));
    return [&] { m.make_bv_number(five, 8); };
  });
  fail_everywhere("make_bv_number of a taken name", [&](TermManager& m) {
    m.make_symbol("5_8", m.get_int_type());
    return [&] { m.make_bv_number(five, 8); };
  });
  fail_everywhere("make_bv_number that is refused",
                  [&](TermManager& m) { return [&] { m.make_bv_number(five, 2); }; });

  fail_everywhere("make_fp_bits_number",
                  [&](TermManager& m) { return [&] { m.make_fp_bits_number(five, 8, 23); }; });
  fail_everywhere("make_fp_bits_number of a declared name", [&](TermManager& m) {
    m.make_symbol("5_8_23", m.get_fp_type(8, 23));
    return [&] { m.make_fp_bits_number(five, 8, 23); };
  });
  fail_everywhere("make_fp_bits_number of a taken name", [&](TermManager& m) {
    m.make_symbol("5_8_23", m.get_int_type());
    return [&] { m.make_fp_bits_number(five, 8, 23); };
  });
  fail_everywhere("make_fp_bits_number that is refused",
                  [&](TermManager& m) { return [&] { m.make_fp_bits_number(five, 1, 1); }; });
  fail_everywhere("make_fp_rat_number", [&](TermManager& m) {
    return [&, even = m.make_fprounding_even()] { m.make_fp_rat_number(values[1], 8, 23, even); };
  });
  fail_everywhere("make_fp_plus_inf",
                  [](TermManager& m) { return [&] { m.make_fp_plus_inf(11, 52); }; });
  fail_everywhere("make_fp_minus_inf",
                  [](TermManager& m) { return [&] { m.make_fp_minus_inf(11, 52); }; });
  fail_everywhere("make_fp_nan", [](TermManager& m) { return [&] { m.make_fp_nan(11, 52); }; });
}

//------------------------------------------------------------------------------------------------
// Giving back, substitution, copying and collection

TEST(WholeState, AfterAFailedFreeSymbol) {
  fail_everywhere("free_symbol", [](TermManager& m) {
    const DataType* integers = m.get_int_type();
    m.make_symbol("x", integers);
    const Symbol* first = m.make_unique_symbol("x", integers);
    m.make_unique_symbol("x", integers);
    return [&, first] { m.free_symbol(first); };
  });
}

TEST(WholeState, AfterAFailedSubstitutionOfOneStep) {
  fail_everywhere("substitute", [](TermManager& m) {
    const Term_* x = constant(m, "x", m.get_int_type());
    const Term_* y = constant(m, "y", m.get_int_type());
    return
        [&m, t = m.make_plus(x, x), from = Terms{x}, to = Terms{y}] { m.substitute(t, from, to); };
  });
}

TEST(WholeState, AfterAFailureOfManySteps) {
  fail_once_everywhere(
      "substitute",
      [](TermManager& m) {
        const Term_* x = constant(m, "x", m.get_int_type());
        const Term_* y = constant(m, "y", m.get_int_type());
        const Term_* t = x;
        for (int i = 0; i < 10; ++i) t = m.make_plus(m.make_times(t, x), t);
        return [&m, t, from = Terms{x}, to = Terms{y}] { m.substitute(t, from, to); };
      },
      any_steps);
  auto source = std::make_shared<Bench>();
  auto all = std::make_shared<Terms>();
  for (const Row& row : operator_rows()) {
    all->push_back(row.build(source->m, source->terms(row.args)));
  }
  fail_once_everywhere(
      "copy_terms",
      [=](TermManager& m) {
        return [&m, source, all] {
          Terms copies;
          m.copy_terms(source->m, *all, copies, /*use_manager_marks=*/true);
        };
      },
      any_steps);
}

TEST(WholeState, AfterAFailedCollection) {
  fail_once_everywhere("gc", [](TermManager& m) {
    const Operands operands(m);
    Terms kept;
    for (const Row& row : operator_rows()) {
      if (row.tag % 6 != 0) continue;
      const Term_* t = row.build(m, operands.terms(row.args));
      m.make_number(row.tag);
      m.make_bv_number(row.tag, 7);
      m.make_fp_bits_number(row.tag, 5, 6);
      if (row.tag % 12 == 0) kept.push_back(t);
    }
    return [&m, kept, symbols = std::vector<const Symbol*>{m.make_symbol("kept", m.get_int_type())},
            types = Types{m.get_bv_type(77)}] { m.gc(kept, symbols, types); };
  });
}

// The collection replaces large tables by small ones, and keeps the large ones if it cannot.
TEST(WholeState, AfterACollectionThatHasNoMemoryForSmallerTables) {
  fail_once_everywhere("gc of large tables", [](TermManager& m) {
    Terms kept;
    for (size_t i = 0; i < 950; ++i) {  // enough for 2593 buckets
      const Term_* number = m.make_number(i);
      m.make_bv_add_symbol(1 + i);
      if (i % 300 == 0) kept.push_back(number);
    }
    return [&m, kept] { m.gc(kept, {}, {}); };
  });
}

}  // namespace
}  // namespace quill::testing
