// Copying large or deep terms on a small stack, and copying by several threads at a time.

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/small_stack.h"

namespace quill {
namespace {

using testing::run_on_small_stack;

using Terms = std::vector<const Term_*>;
using Types = std::vector<const DataType*>;

const Term_* chain(TermManager& m, size_t length) {
  const DataType* integers = m.get_int_type();
  const Symbol* f = m.make_symbol("f", m.get_function_type({integers, integers}, integers));
  const Term_* t = m.make_constant(m.make_symbol("x", integers));
  for (size_t i = 0; i < length; ++i) t = m.make_uninterpreted_function(f, {t, t});
  return t;
}

TEST(CopyingLarge, AChainOfAMillionTerms) {
  run_on_small_stack([] {
    TermManager a;
    TermManager b;
    const Term_* t = chain(a, 1000000);
    const Term_* copy = b.copy_term(a, t);
    EXPECT_EQ(b.get_bank()->size(), a.get_bank()->size());
    size_t depth = 0;
    while (copy->symbol->arity == 2 && copy->args[0] == copy->args[1]) {
      copy = copy->args[0];
      ++depth;
    }
    EXPECT_EQ(depth, 1000000U);
    EXPECT_STREQ(copy->symbol->name, "x");
  });
}

TEST(CopyingLarge, AChainCopiedWithASubstitution) {
  run_on_small_stack([] {
    TermManager a;
    TermManager b;
    const Term_* t = chain(a, 100000);
    TermManager::TermMap subst;
    subst[a.make_constant(a.get_signature()->get_symbol("x"))] = b.make_number(7);
    const Term_* copy = b.copy_term_with_subst(a, t, subst);
    const size_t standard_terms = TermManager().get_bank()->size();
    EXPECT_EQ(b.get_bank()->size(), standard_terms + 1 + 100000);
    while (copy->symbol->arity != 0) copy = copy->args[0];
    EXPECT_EQ(copy, b.make_number(7));
  });
}

TEST(CopyingLarge, AChainWhoseRootsAreCopiedTogether) {
  TermManager a;
  TermManager b;
  Terms roots;
  for (const Term_* t = chain(a, 300); t->symbol->arity != 0; t = t->args[0]) roots.push_back(t);
  Terms copies;
  b.copy_terms(a, roots, copies, /*use_manager_marks=*/true);
  for (size_t i = 0; i + 1 < copies.size(); ++i) EXPECT_EQ(copies[i]->args[1], copies[i + 1]);
}

TEST(CopyingLarge, ArraysOfArraysAHundredThousandDeep) {
  run_on_small_stack([] {
    const auto nest = [](TermManager& m, bool in_index) {
      const DataType* type = m.get_int_type();
      for (int i = 0; i < 100000; ++i) {
        type = in_index ? m.get_array_type(type, m.get_rat_type())
                        : m.get_array_type(m.get_rat_type(), type);
      }
      return type;
    };
    TermManager a;
    TermManager b;
    Types copies;
    b.copy_types(a, {nest(a, true), nest(a, false)}, copies);
    EXPECT_EQ(copies, (Types{nest(b, true), nest(b, false)}));
  });
}

TEST(CopyingLarge, SymbolsOverTypesAHundredThousandDeep) {
  run_on_small_stack([] {
    TermManager a;
    TermManager b;
    const DataType* type = a.get_int_type();
    for (int i = 0; i < 100000; ++i) type = a.get_array_type(a.get_int_type(), type);
    const Term_* v = a.make_constant(a.make_symbol("v", type));
    const Term_* t = a.make_equal(a.make_array_read(v, a.make_number(0)),
                                  a.make_array_read(v, a.make_number(1)));
    const Term_* copy = b.copy_term(a, t);
    EXPECT_STREQ(copy->symbol->name, t->symbol->name);
    EXPECT_STREQ(copy->args[0]->symbol->name, t->args[0]->symbol->name);
    EXPECT_EQ(a.copy_term(b, copy), t);
  });
}

TEST(CopyingLarge, CompoundsAHundredThousandDeep) {
  run_on_small_stack([] {
    const auto nest = [](TermManager& m) {
      const DataType* type = m.get_int_type();
      for (int i = 0; i < 100000; ++i) type = m.get_compound_type({type, m.get_rat_type(), type});
      return type;
    };
    TermManager a;
    TermManager b;
    Types copies;
    b.copy_types(a, {nest(a)}, copies);
    EXPECT_EQ(copies, Types{nest(b)});
  });
}

TEST(CopyingLarge, AFunctionTypeOfAMillionComponents) {
  run_on_small_stack([] {
    const auto function_type = [](TermManager& m) {
      Types args;
      for (size_t i = 0; i < 1000000; ++i) args.push_back(m.get_bv_type(i % 1000));
      return m.get_function_type(args, m.get_bool_type());
    };
    TermManager a;
    TermManager b;
    const Symbol* f = a.make_symbol("f", function_type(a));
    std::vector<const Symbol*> copies;
    b.copy_symbols(a, {f}, copies);
    EXPECT_EQ(copies[0]->arity, 1000000U);
    EXPECT_EQ(copies[0]->type, function_type(b));
  });
}

TEST(CopyingLarge, ATermOfAMillionArguments) {
  TermManager a;
  TermManager b;
  const DataType* integers = a.get_int_type();
  const Symbol* f = a.make_symbol("f", a.get_function_type(Types(1000000, integers), integers));
  Terms args;
  for (int i = 0; i < 1000000; ++i) args.push_back(a.make_number(i % 1000));
  const Term_* t = a.make_uninterpreted_function(f, args);
  const Term_* copy = b.copy_term(a, t);
  EXPECT_EQ(copy->symbol->arity, 1000000U);
  EXPECT_EQ(copy->args[999999], b.make_number(999));
  EXPECT_EQ(a.copy_term(b, copy), t);
}

// Each thread has a destination of its own.
TEST(CopyingLarge, ThreadsCopyFromOneManager) {
  TermManager a;
  const DataType* bytes = a.get_bv_type(8);
  const DataType* array = a.get_array_type(bytes, a.get_fp_type(5, 10));
  const Term_* v = a.make_constant(a.make_symbol("v", array));
  const Term_* x = a.make_constant(a.make_symbol("x", bytes));
  Terms roots;
  const Term_* index = x;
  for (int i = 0; i < 2000; ++i) {
    index = a.make_bv_add(index, a.make_bv_number(i % 256, 8));
    const Term_* element = a.make_fp_bits_number(i, 5, 10);
    v = a.make_array_write(v, index, element);
    const Term_* rational = a.make_number(QNumber(i + 1, 3000));
    roots.push_back(a.make_and(a.make_equal(a.make_array_read(v, x), element),
                               a.make_leq(rational, a.make_number(i))));
  }
  const size_t terms = a.get_bank()->size();
  constexpr size_t num_threads = 4;
  std::vector<TermManager> destinations(num_threads);
  std::vector<Terms> copies(num_threads);
  std::vector<std::thread> threads;
  for (size_t n = 0; n < num_threads; ++n) {
    threads.emplace_back([&, n] {
      for (const Term_* t : roots) {
        if (t->id % 97 == 0) destinations[n].copy_term(a, t);
      }
      copies[n].push_back(destinations[n].copy_term(a, roots.back()));
      destinations[n].copy_terms(a, {roots[7], roots[100]}, copies[n], n % 2 == 0);
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (size_t n = 0; n < num_threads; ++n) {
    EXPECT_EQ(a.copy_term(destinations[n], copies[n][0]), roots.back());
    EXPECT_EQ(a.copy_term(destinations[n], copies[n][1]), roots[7]);
    EXPECT_EQ(a.copy_term(destinations[n], copies[n][2]), roots[100]);
  }
  EXPECT_EQ(a.get_bank()->size(), terms);
}

}  // namespace
}  // namespace quill
