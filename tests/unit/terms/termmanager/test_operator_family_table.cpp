// Every operator that has a family of symbols, against the independent table of the tests.

#include <gtest/gtest.h>

#include <cstddef>
#include <iterator>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "quill/terms/termmanager/operator_family.h"
#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/failing_memory.h"
#include "tests/support/manager_test.h"
#include "tests/support/operator_rows.h"

namespace quill {
namespace {

using testing::Bench;
using testing::Failure;
using testing::Names;
using testing::not_asked;
using testing::nothing_made;
using testing::Row;
using testing::sizes;
using testing::symbol_made;
using testing::Terms;
using testing::untouched;

const std::vector<Row>& table() { return testing::operator_rows(); }

std::string quoted(const Row& row) { return '`' + std::string(row.name) + '`'; }

const Symbol* find(const TermManager& m, const Row& row) {
  return m.get_signature()->get_symbol(quoted(row).c_str());
}

// What the builder throws, its exact class checked.
std::string refusal(Bench& bench, const Row& row, const Names& args) {
  return testing::error_of<TermManager::error>([&] { row.build(bench.m, bench.terms(args)); });
}

class OperatorFamilyTable : public ::testing::TestWithParam<Row> {};

INSTANTIATE_TEST_SUITE_P(Operators, OperatorFamilyTable, ::testing::ValuesIn(table()),
                         [](const auto& param) { return std::string(param.param.operation); });

TEST(OperatorFamilies, EveryTagFrom13To71HasOneRow) {
  ASSERT_EQ(table().size(), 59U);
  for (size_t i = 0; i < 59; ++i) EXPECT_EQ(table()[i].tag, static_cast<int>(13 + i));
}

TEST(OperatorFamilies, AManagerStartsWithoutSymbolsOfFamilies) {
  const TermManager m;
  EXPECT_EQ(m.get_signature()->size(), 19U);
  for (const Row& row : table()) EXPECT_EQ(find(m, row), nullptr) << row.operation;
}

TEST_P(OperatorFamilyTable, SymbolHasItsNameTagTypeAndArity) {
  const Row& row = GetParam();
  TermManager m;
  const Symbol* s = row.make_symbol(m);
  EXPECT_EQ(s->name, quoted(row));
  EXPECT_EQ(static_cast<int>(m.get_tag(s)), row.tag);
  EXPECT_EQ(s->type->to_str(), row.type);
  EXPECT_EQ(s->type->get_component(0), m.get_universe()->get_application_type());
  EXPECT_EQ(s->arity, row.arity);
  EXPECT_EQ(find(m, row), s);
  EXPECT_EQ(m.get_signature()->size(), 20U);
  EXPECT_TRUE(m.is_interpreted(s));
  EXPECT_FALSE(m.is_uninterpreted_function(s));
}

TEST_P(OperatorFamilyTable, SecondRequestGivesTheSameSymbolAndMakesNothing) {
  const Row& row = GetParam();
  TermManager m;
  const Symbol* s = row.make_symbol(m);
  const auto before = sizes(m);
  EXPECT_EQ(row.make_symbol(m), s);
  EXPECT_EQ(sizes(m), before);
}

TEST_P(OperatorFamilyTable, BuilderAppliesTheSymbolToItsArguments) {
  const Row& row = GetParam();
  Bench bench;
  const Terms args = bench.terms(row.args);
  const Term_* t = row.build(bench.m, args);
  EXPECT_EQ(t->symbol, row.make_symbol(bench.m));
  const size_t first = args.size() - row.arity;
  for (size_t i = 0; i < row.arity; ++i) EXPECT_EQ(t->args[i], args[first + i]);
  EXPECT_EQ(t->type(), t->symbol->type->get_component(row.arity + 1));
}

TEST_P(OperatorFamilyTable, EqualRequestsGiveTheSameTerm) {
  const Row& row = GetParam();
  Bench bench;
  const Term_* t = row.build(bench.m, bench.terms(row.args));
  const auto before = sizes(bench.m);
  EXPECT_EQ(row.build(bench.m, bench.terms(row.args)), t);
  EXPECT_EQ(sizes(bench.m), before);
}

TEST_P(OperatorFamilyTable, RefusesWrongArgumentsWithItsOwnWords) {
  const Row& row = GetParam();
  for (const Failure& failure : row.failures) {
    Bench bench;
    EXPECT_EQ(refusal(bench, row, failure.args), failure.message);
    // And again, when the symbol is there.
    row.make_symbol(bench.m);
    EXPECT_EQ(refusal(bench, row, failure.args), failure.message);
  }
}

// Hands every request on with arguments that no operator takes, so that the type error shows the
// name under which the builder reports it.
class MixedUpArguments : public TermManager {
 public:
  const Term_* make_term(const Symbol* s, const Terms& args) override {
    if (s->arity == 0) return TermManager::make_term(s, args);
    return TermManager::make_term(s, Terms(args.size(), stranger));
  }

 private:
  const Term_* stranger =
      make_constant(make_symbol("stranger", get_simple_type("Stranger", false)));
};

TEST_P(OperatorFamilyTable, BuilderNamesItselfAndCallsTheVirtualMakeTerm) {
  const Row& row = GetParam();
  Bench bench(std::make_unique<MixedUpArguments>());
  const std::string expected = row.make_symbol(bench.m)->type->get_component(1)->to_str();
  EXPECT_EQ(refusal(bench, row, row.args), "type error. term stranger has type Stranger, but " +
                                               expected + " was expected. (" + row.operation + ")");
}

TEST_P(OperatorFamilyTable, EveryArgumentIsLookedAt) {
  const Row& row = GetParam();
  std::vector<bool> refused(row.args.size(), false);
  for (const Failure& failure : row.failures) {
    for (size_t i = 0; i < row.args.size(); ++i) {
      if (failure.args[i] != row.args[i]) refused[i] = true;
    }
  }
  EXPECT_EQ(refused, std::vector<bool>(row.args.size(), true));
}

TEST_P(OperatorFamilyTable, OwnCheckMakesNothing) {
  const Row& row = GetParam();
  for (const Failure& failure : row.failures) {
    if (failure.leaves != nothing_made) continue;
    Bench bench;
    const auto before = sizes(bench.m);
    refusal(bench, row, failure.args);
    EXPECT_EQ(find(bench.m, row), nullptr) << failure.message;
    EXPECT_EQ(sizes(bench.m), before) << failure.message;
  }
}

TEST_P(OperatorFamilyTable, TypecheckLeavesTheSymbolAndNoTerm) {
  const Row& row = GetParam();
  for (const Failure& failure : row.failures) {
    if (failure.leaves != symbol_made) continue;
    Bench bench;
    const auto before = sizes(bench.m);
    refusal(bench, row, failure.args);
    const Symbol* s = find(bench.m, row);
    ASSERT_NE(s, nullptr) << failure.message;
    EXPECT_EQ(row.make_symbol(bench.m), s) << failure.message;
    EXPECT_EQ(bench.m.get_signature()->size(), before[1] + 1) << failure.message;
    EXPECT_EQ(bench.m.get_bank()->size(), before[2]) << failure.message;
  }
}

TEST_P(OperatorFamilyTable, WithoutChecksOnlyTheOwnCheckRefuses) {
  const Row& row = GetParam();
  for (const Failure& failure : row.failures) {
    Bench bench;
    bench.m.set_typecheck_enabled(false);
    const bool own = failure.leaves == nothing_made;
    EXPECT_EQ(refusal(bench, row, failure.args), own ? failure.message : "no error");
  }
}

TEST_P(OperatorFamilyTable, RecogniserFillsExactlyTheOutputsThatAreGiven) {
  const Row& row = GetParam();
  TermManager m;
  const Symbol* s = row.make_symbol(m);
  ASSERT_EQ(row.recognise.outputs, row.outputs.size());
  for (unsigned mask = 0; mask < 1U << row.outputs.size(); ++mask) {
    Names texts;
    EXPECT_TRUE(row.recognise.ask(m, s, mask, texts));
    for (size_t i = 0; i < row.outputs.size(); ++i) {
      const bool asked = (mask >> i & 1U) != 0;
      EXPECT_EQ(texts[i], asked ? row.outputs[i] : not_asked) << "mask " << mask;
    }
  }
}

void expect_not_recognised(const TermManager& m, const Row& row, const Symbol* s) {
  for (unsigned mask = 0; mask < 1U << row.outputs.size(); ++mask) {
    Names texts;
    EXPECT_FALSE(row.recognise.ask(m, s, mask, texts)) << s->name;
    for (size_t i = 0; i < row.outputs.size(); ++i) {
      const bool asked = (mask >> i & 1U) != 0;
      EXPECT_EQ(texts[i], asked ? untouched : not_asked) << s->name << ", mask " << mask;
    }
  }
}

TEST_P(OperatorFamilyTable, SymbolsOfOtherFamiliesAreNotRecognised) {
  const Row& row = GetParam();
  TermManager m;
  std::vector<const Symbol*> symbols;
  for (const Row& other : table()) symbols.push_back(other.make_symbol(m));
  for (size_t i = 0; i < symbols.size(); ++i) {
    if (table()[i].tag != row.tag) expect_not_recognised(m, row, symbols[i]);
  }
  EXPECT_EQ(m.get_signature()->size(), 19U + 59U);
}

TEST_P(OperatorFamilyTable, StandardSymbolsAndNumeralsAreNotRecognised) {
  const Row& row = GetParam();
  TermManager m;
  for (const char* name : {"`true`", "`not`", "`and`", "`+_int`", "`<=_rat`", "`floor`",
                           "`fprounding_even`", "`fprounding_minus_inf`"}) {
    const Symbol* s = m.get_signature()->get_symbol(name);
    ASSERT_NE(s, nullptr) << name;
    expect_not_recognised(m, row, s);
  }
  expect_not_recognised(m, row, m.make_number(7)->symbol);
  expect_not_recognised(m, row, m.make_bv_number(7, 8)->symbol);
  expect_not_recognised(m, row, m.make_fp_bits_number(7, 8, 23)->symbol);
}

TEST_P(OperatorFamilyTable, UsersSymbolOfTheSameNameAndTypeIsNotRecognised) {
  const Row& row = GetParam();
  TermManager m;
  const Symbol* theirs = row.make_symbol(m);
  const Symbol* users = m.make_symbol(row.name, theirs->type);
  EXPECT_NE(users, theirs);
  expect_not_recognised(m, row, users);
  EXPECT_EQ(m.get_tag(users), SymbolTag::NONE);
  EXPECT_TRUE(m.is_uninterpreted_function(users));
  EXPECT_EQ(row.make_symbol(m), theirs);
}

TEST_P(OperatorFamilyTable, UsersSymbolOfTheSameNameMayComeFirst) {
  const Row& row = GetParam();
  TermManager m;
  const Symbol* users = m.make_symbol(row.name, m.get_int_type());
  const Symbol* theirs = row.make_symbol(m);
  EXPECT_NE(users, theirs);
  expect_not_recognised(m, row, users);
  Names texts;
  EXPECT_TRUE(row.recognise.ask(m, theirs, 0, texts));
}

#ifdef NDEBUG

// Debug builds stop here instead.
TEST_P(OperatorFamilyTable, SymbolOfAnotherManagerIsNotRecognised) {
  const Row& row = GetParam();
  TermManager m;
  TermManager other;
  row.make_symbol(m);
  expect_not_recognised(m, row, row.make_symbol(other));
}

#else

using OperatorFamilyTableDeathTest = OperatorFamilyTable;

TEST_P(OperatorFamilyTableDeathTest, SymbolOfAnotherManager) {
  const Row& row = GetParam();
  TermManager m;
  TermManager other;
  const Symbol* s = row.make_symbol(other);
  Names texts;
  EXPECT_DEATH(row.recognise.ask(m, s, 0, texts), "quill: misuse: a symbol of another manager");
}

TEST_P(OperatorFamilyTableDeathTest, FreedSymbol) {
  const Row& row = GetParam();
  TermManager m;
  const Symbol* s = row.make_symbol(m);
  m.gc({}, {}, {});
  Names texts;
  EXPECT_DEATH(row.recognise.ask(m, s, 0, texts), "quill: misuse: a symbol that was freed");
}

TEST_P(OperatorFamilyTableDeathTest, OperandOfAnotherManager) {
  const Row& row = GetParam();
  Bench bench;
  Bench other;
  for (size_t i = row.args.size() - row.arity; i < row.args.size(); ++i) {
    Terms args = bench.terms(row.args);
    args[i] = other.terms(row.args)[i];
    EXPECT_DEATH(row.build(bench.m, args), "quill: misuse: a term of another manager") << i;
  }
}

TEST_P(OperatorFamilyTableDeathTest, FreedOperand) {
  const Row& row = GetParam();
  for (size_t i = row.args.size() - row.arity; i < row.args.size(); ++i) {
    Bench bench;
    Terms args = bench.terms(row.args);
    const Term_* freed = bench.m.make_fresh_variable(args[i]->type());
    bench.m.gc(args, {}, {});
    args[i] = freed;
    EXPECT_DEATH(row.build(bench.m, args), "quill: misuse: a term that was freed") << i;
  }
}

INSTANTIATE_TEST_SUITE_P(Operators, OperatorFamilyTableDeathTest, ::testing::ValuesIn(table()),
                         [](const auto& param) { return std::string(param.param.operation); });

#endif

//------------------------------------------------------------------------------------------------
// Out of memory

// Runs the request with its k-th allocation and all later ones failing. Whether it ran out of
// memory.
template <class Request>
bool runs_out(size_t k, Request request) {
  const testing::FailingMemory after(k);
  try {
    request();
  } catch (const std::bad_alloc&) {
    return true;
  }
  return false;
}

// Everything that the row says of the symbol holds.
void expect_whole(TermManager& m, const Row& row, const Symbol* s) {
  EXPECT_EQ(s->name, quoted(row));
  EXPECT_EQ(static_cast<int>(m.get_tag(s)), row.tag);
  EXPECT_EQ(s->type->to_str(), row.type);
  EXPECT_EQ(find(m, row), s);
  EXPECT_EQ(row.make_symbol(m), s);
  Names texts;
  EXPECT_TRUE(row.recognise.ask(m, s, (1U << row.outputs.size()) - 1, texts));
  EXPECT_EQ(texts, row.outputs);
}

TEST_P(OperatorFamilyTable, MakerThatRanOutOfMemoryMadeNoSymbolAndWorksAgain) {
  const Row& row = GetParam();
  TermManager unharmed;
  row.make_symbol(unharmed);
  size_t k = 0;
  for (;; ++k) {
    TermManager m;
    if (!runs_out(k, [&] { row.make_symbol(m); })) break;
    EXPECT_EQ(m.get_signature()->size(), 19U) << "allocation " << k;
    EXPECT_EQ(find(m, row), nullptr) << "allocation " << k;
    const Symbol* s = row.make_symbol(m);
    expect_whole(m, row, s);
    EXPECT_EQ(sizes(m), sizes(unharmed)) << "allocation " << k;
  }
  EXPECT_GT(k, 0U);
}

TEST_P(OperatorFamilyTable, BuilderThatRanOutOfMemoryMadeNoTermAndWorksAgain) {
  const Row& row = GetParam();
  Bench unharmed;
  row.build(unharmed.m, unharmed.terms(row.args));
  size_t k = 0;
  for (;; ++k) {
    Bench bench;
    const Terms args = bench.terms(row.args);
    const auto before = sizes(bench.m);
    if (!runs_out(k, [&] { row.build(bench.m, args); })) break;
    EXPECT_EQ(bench.m.get_bank()->size(), before[2]) << "allocation " << k;
    // A symbol that was made is there as a whole.
    if (const Symbol* s = find(bench.m, row)) {
      expect_whole(bench.m, row, s);
    } else {
      EXPECT_EQ(bench.m.get_signature()->size(), before[1]) << "allocation " << k;
    }
    const Term_* t = row.build(bench.m, args);
    expect_whole(bench.m, row, t->symbol);
    EXPECT_EQ(sizes(bench.m), sizes(unharmed.m)) << "allocation " << k;
  }
  EXPECT_GT(k, 0U);
}

TEST(OperatorFamilies, PairIsEnteredInBothMapsOrInNone) {
  TermManager m;
  SymbolFamily<size_t> family;
  const auto enter = [&](size_t key, const Symbol* s) {
    insert_in_both(family.by_object, family.by_key, key, s);
  };
  long failures = 0;
  for (size_t key = 0; key < 200; ++key) {
    const Symbol* s = m.make_symbol("s" + std::to_string(key), m.get_int_type());
    for (size_t k = 0; runs_out(k, [&] { enter(key, s); }); ++k) {
      ++failures;
      EXPECT_EQ(family.by_object.find(s), family.by_object.end());
      EXPECT_EQ(family.by_key.find(key), family.by_key.end());
    }
    EXPECT_EQ(family.by_object.find(s)->second, key);
    EXPECT_EQ(family.by_key.find(key)->second, s);
  }
  EXPECT_GT(failures, 4);
  EXPECT_EQ(std::distance(family.by_object.begin(), family.by_object.end()), 200);
  EXPECT_EQ(std::distance(family.by_key.begin(), family.by_key.end()), 200);
}

}  // namespace
}  // namespace quill
