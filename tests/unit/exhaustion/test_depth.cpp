// Terms a million deep, types a hundred thousand deep, and types that are graphs of 2^40 paths, in
// every operation, on a stack of 256 KiB.

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "quill/printers/outterm.h"
#include "quill/printers/smtlib2_term_printer.h"
#include "quill/smtlib/syntax.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/terms/termmanager/term_visitor.h"
#include "tests/support/small_stack.h"

namespace quill {
namespace {

using testing::run_on_small_stack;

std::string repeated(const std::string& text, size_t count) {
  std::string result;
  for (size_t i = 0; i < count; ++i) result += text;
  return result;
}

//---------------------------------------------------------------------------------------------
// Terms

constexpr size_t depth = 1'000'000;

// (not (not ... p)).
struct DeepTerm {
  DeepTerm() {
    p = m.make_constant(m.make_symbol("p", m.get_bool_type()));
    negated = p;
    for (size_t i = 0; i < depth; ++i) negated = m.make_not(negated);
  }

  TermManager m;
  const Term_* p;
  const Term_* negated;
};

size_t depth_of(const Term_* t) {
  size_t levels = 0;
  for (; t->symbol->arity != 0; t = t->args[t->symbol->arity - 1]) levels++;
  return levels;
}

struct Counter {
  size_t before = 0;
  size_t after = 0;
  int visit(const Term_*, bool preorder) {
    ++(preorder ? before : after);
    return 2;
  }
};

TEST(Depth, TermsAreVisitedBothWays) {
  run_on_small_stack([] {
    DeepTerm t;
    for (const bool once : {true, false}) {
      Counter counter;
      TermVisitor<Counter> visitor(&counter, once);
      visitor.visit(t.negated, /*clear_marks=*/true);
      EXPECT_EQ(counter.before, depth + 1);
      EXPECT_EQ(counter.after, depth + 1);
    }
  });
}

TEST(Depth, TermsAreSubstitutedIn) {
  run_on_small_stack([] {
    DeepTerm t;
    TermManager& m = t.m;
    const Term_* q = m.make_constant(m.make_symbol("q", m.get_bool_type()));
    const Term_* image = m.substitute(t.negated, {t.p}, {q});
    EXPECT_EQ(depth_of(image), depth);
    TermManager::TermMap cache;
    std::vector<bool> marks;
    EXPECT_EQ(m.substitute(t.negated, {t.p}, {q}, cache, marks), image);
    TermManager::TermMap map;
    map[t.p] = q;
    EXPECT_EQ(m.substitute(t.negated, map, marks, /*check=*/true), image);
  });
}

TEST(Depth, TermsAreCopied) {
  run_on_small_stack([] {
    DeepTerm t;
    TermManager other;
    EXPECT_EQ(depth_of(other.copy_term(t.m, t.negated)), depth);
    TermManager::TermMap replaced;
    replaced[t.p] = other.make_true();
    EXPECT_EQ(depth_of(other.copy_term_with_subst(t.m, t.negated, replaced)), depth);
    std::vector<const Term_*> copies;
    other.copy_terms(t.m, {t.p, t.negated}, copies, /*use_manager_marks=*/true);
    EXPECT_EQ(depth_of(copies[1]), depth);
    EXPECT_EQ(other.check_consistency(), "");
  });
}

TEST(Depth, TermsAreCollected) {
  run_on_small_stack([] {
    DeepTerm t;
    const size_t all = t.m.get_bank()->size();
    t.m.gc({t.negated}, {}, {});
    EXPECT_EQ(t.m.get_bank()->size(), all);
    t.m.gc({t.p}, {}, {});
    EXPECT_EQ(t.m.get_bank()->size(), 3U);
    EXPECT_EQ(t.m.check_consistency(), "");
  });
}

TEST(Depth, TermsAreWrittenForMessages) {
  run_on_small_stack([] {
    DeepTerm t;
    EXPECT_TRUE(t.negated->to_str() == repeated("(`not` ", depth) + "p" + std::string(depth, ')'));
    EXPECT_EQ(t.negated->to_shallow_str(),
              "(`not` #" + std::to_string(t.negated->args[0]->id) + ")");
    EXPECT_EQ(t.m.to_shallow_str_literal(t.negated).substr(0, 12), "(`not` (`not");
    EXPECT_LT(t.m.to_shallow_str_literal(t.negated).size(), 200U);
    EXPECT_THROW(t.m.make_plus(t.negated, t.p), TermManager::error);
  });
}

TEST(Depth, TermsAreWrittenInSmtLib) {
  run_on_small_stack([] {
    DeepTerm t;
    const std::string text = repeated("(not ", depth) + "p" + std::string(depth, ')');
    std::ostringstream out;
    out << outterm(&t.m, t.negated);
    EXPECT_TRUE(out.str() == text);
    const std::vector<const Term_*> list{t.negated, t.p};
    out << outtermlist(&t.m, &list) << outshallowterm(&t.m, t.negated);
    EXPECT_GT(out.str().size(), 2 * text.size());

    out.str("");
    SmtLib2TermPrinter(&t.m, nullptr, "", "", /*share_by_let=*/false, nullptr)
        .print_term(out, t.negated);
    EXPECT_TRUE(out.str() == text);

    out.str("");
    SmtLib2TermPrinter::Annotations annotations;
    annotations[t.p].push_back({"named", "here"});
    SmtLib2TermPrinter(&t.m, nullptr, "", "", /*share_by_let=*/true, &annotations)
        .print_term(out, t.negated);
    EXPECT_TRUE(out.str() ==
                repeated("(not ", depth) + "(! p :named here)" + std::string(depth, ')'));
  });
}

// Bits of a value that is deep, and in which bits of deep values are taken.
TEST(Depth, OperatorsThatTheStandardLacksAreEncoded) {
  run_on_small_stack([] {
    constexpr size_t levels = 100'000;
    TermManager m;
    const Term_* value = m.make_constant(m.make_symbol("x", m.get_fp_type(3, 4)));
    for (size_t i = 0; i < levels; ++i) value = m.make_fp_neg(value);
    const Term_* t = m.make_int_from_sbv(m.make_fp_as_ieeebv(value));
    for (size_t i = 0; i < levels; ++i) t = m.make_plus(t, m.make_times(t, t));
    BitDefinitions definitions(m);
    Configuration::Printer choices{.dialect = Configuration::Dialect::Standard, .logic = ""};
    SmtLib2TermPrinter printer(&m, &choices, "", "", /*share_by_let=*/true, nullptr);
    printer.set_definitions(&definitions);
    std::ostringstream out;
    printer.print_definitions(out, t);
    printer.print_term(out, t);
    EXPECT_EQ(definitions.all().size(), 2U);
    EXPECT_GT(out.str().size(), 7 * levels + 20 * levels);
    EXPECT_LT(out.str().size(), 200 * levels);
  });
}

//---------------------------------------------------------------------------------------------
// Types

constexpr size_t nesting = 100'000;

// (Array Int (Array Int ... Int)), or with the index nested.
const DataType* nested(TermManager& m, bool in_index) {
  const DataType* type = m.get_int_type();
  for (size_t i = 0; i < nesting; ++i) {
    type = in_index ? m.get_array_type(type, m.get_int_type())
                    : m.get_array_type(m.get_int_type(), type);
  }
  return type;
}

// 2^levels times Int.
const DataType* shared(TermManager& m, size_t levels) {
  const DataType* type = m.get_int_type();
  for (size_t i = 0; i < levels; ++i) type = m.get_array_type(type, type);
  return type;
}

std::string written(const TermManager& m, const DataType* type) {
  std::ostringstream out;
  print_type(out, m, type);
  return out.str();
}

TEST(Depth, NestedTypesAreWritten) {
  run_on_small_stack([] {
    TermManager m;
    const DataType* in_element = nested(m, /*in_index=*/false);
    const DataType* in_index = nested(m, /*in_index=*/true);
    const std::string text = repeated("(Array Int ", nesting) + "Int" + std::string(nesting, ')');
    EXPECT_TRUE(in_element->to_str() == text);
    EXPECT_TRUE(written(m, in_element) == text);
    EXPECT_TRUE(written(m, in_index) ==
                repeated("(Array ", nesting) + "Int" + repeated(" Int)", nesting));
  });
}

// Also what is asked of terms and symbols of such types.
void expect_all_operations(TermManager& m, const DataType* type) {
  const size_t types = m.get_universe()->size();
  const DataType* function = m.get_function_type({type, type}, type);
  const Term_* a = m.make_constant(m.make_symbol("a", type));
  const Term_* b = m.make_fresh_variable(type);
  const Symbol* f = m.make_unique_symbol("f", function);
  const Term_* t = m.make_uninterpreted_function(f, {a, b});
  const Term_* equal = m.make_equal(t, a);
  const Term_* chosen = m.make_term_ite(equal, t, a);
  const DataType* index = nullptr;
  const DataType* element = nullptr;
  ASSERT_TRUE(m.is_array_type(type, &index, &element));
  const Term_* i = m.make_constant(m.make_symbol("i", index));
  const Term_* read = m.make_array_read(chosen, i);
  const Term_* write = m.make_array_write(chosen, i, read);
  const Term_* filled = m.make_array_const(type, read);
  const Term_* whole = m.make_equal(write, filled);
  EXPECT_EQ(equal->symbol->name, "`=_" + type->to_str() + "`");
  EXPECT_FALSE(m.is_finite_domain_type(type, nullptr));
  EXPECT_TRUE(m.is_subtype(type, type));
  EXPECT_THROW(m.get_supertype(type, function), TermManager::error);
  EXPECT_THROW(m.make_and(a, equal), TermManager::error);
  EXPECT_THROW(m.make_symbol("a", function), Exception);
  EXPECT_NE(m.get_compound_type({type, type}), nullptr);

  TermManager other;
  const Term_* copy = other.copy_term(m, whole);
  EXPECT_STREQ(copy->args[1]->symbol->name, whole->args[1]->symbol->name);
  std::vector<const DataType*> copied_types;
  other.copy_types(m, {function, type}, copied_types);
  EXPECT_TRUE(copied_types[1]->to_str() == type->to_str());
  std::vector<const Symbol*> copied_symbols;
  other.copy_symbols(m, {f, equal->symbol}, copied_symbols);
  EXPECT_EQ(other.check_consistency(), "");
  EXPECT_EQ(m.substitute(whole, {a}, {b})->symbol, whole->symbol);

  m.gc({}, {}, {type});
  EXPECT_EQ(m.get_universe()->size(), types);
  EXPECT_EQ(m.check_consistency(), "");
  m.free_type(type);
  EXPECT_EQ(m.get_universe()->size(), types - 1);
  m.gc({}, {}, {});
  EXPECT_EQ(m.check_consistency(), "");
}

TEST(Depth, NestedTypesTakePartInEveryOperation) {
  run_on_small_stack([] {
    for (const bool in_index : {false, true}) {
      TermManager m;
      m.gc({}, {}, {});
      expect_all_operations(m, nested(m, in_index));
    }
  });
}

TEST(Depth, SharedTypesTakePartInEveryOperation) {
  run_on_small_stack([] {
    TermManager m;
    m.gc({}, {}, {});
    expect_all_operations(m, shared(m, 40));
  });
}

TEST(Depth, TheTextOfASharedTypeIsBoundedByTheNumberOfItsTypes) {
  run_on_small_stack([] {
    TermManager m;
    EXPECT_EQ(shared(m, 3)->to_str(), "(Array #1=(Array (Array Int Int) (Array Int Int)) #1#)");
    EXPECT_LT(shared(m, 40)->to_str().size(), 41 * sizeof("#00=(Array  #00#)"));
    EXPECT_LT(shared(m, 10'000)->to_str().size(), 10'000 * sizeof("#00000=(Array  #00000#)"));
  });
}

// Graphs of six levels, each an array of two of the types so far: no two have the same text.
TEST(Depth, TextsOfSharedTypesTellThemApart) {
  TermManager m;
  std::vector<const DataType*> types{m.get_int_type(), m.get_rat_type()};
  std::set<std::string> texts;
  std::set<const DataType*> distinct;
  for (size_t i = 0; i < 60; ++i) {
    for (size_t j = 0; j < 60; ++j) {
      if (i >= types.size() || j >= types.size()) continue;
      const DataType* type = m.get_array_type(types[i], types[j]);
      distinct.insert(type);
      texts.insert(type->to_str());
      if (types.size() < 60) types.push_back(type);
    }
  }
  // The same two large types in any order: (X Y X Y), (X Y Y X) and so on.
  for (size_t choice = 0; choice < 16; ++choice) {
    const auto pick = [&](size_t place) { return types[50 + (choice >> place & 1)]; };
    const DataType* type = m.get_function_type({pick(0), pick(1), pick(2)}, pick(3));
    distinct.insert(type);
    texts.insert(type->to_str());
  }
  EXPECT_EQ(texts.size(), distinct.size());
  EXPECT_GT(texts.size(), 3000U);
}

// Sorts have no let: what would take the disk is refused, and what is only large is written.
TEST(Depth, SortsThatAreTooLargeAreRefusedBeforeAnythingIsWritten) {
  run_on_small_stack([] {
    TermManager m;
    EXPECT_EQ(written(m, shared(m, 2)), "(Array (Array Int Int) (Array Int Int))");
    EXPECT_EQ(written(m, shared(m, 15)).size(), 32768 * 3 + 32767 * sizeof("(Array  )") - 32767);
    for (const size_t levels : {24u, 25u, 40u, 64u, 65u, 1000u}) {
      std::ostringstream out;
      try {
        print_type(out, m, shared(m, levels));
        ADD_FAILURE() << levels;
      } catch (const Exception& e) {
        EXPECT_STREQ(e.what(), "a sort of more than 16777216 names is too large to write");
      }
      EXPECT_EQ(out.str(), "");
    }
    const DataType* type = shared(m, 41);
    const Term_* element = m.make_constant(m.make_symbol("x", shared(m, 40)));
    std::ostringstream out;
    EXPECT_THROW(out << outterm(&m, m.make_array_const(type, element)), Exception);
    EXPECT_EQ(out.str(), "");
  });
}

}  // namespace
}  // namespace quill
