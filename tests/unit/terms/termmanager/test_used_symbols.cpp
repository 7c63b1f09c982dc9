#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"
#include "quill/terms/termmanager/used_symbols.h"
#include "tests/support/manager_test.h"
#include "tests/support/small_stack.h"

namespace quill {
namespace {

class UsedSymbols : public testing::ManagerTest {
 protected:
  static std::string names(const std::vector<const Symbol*>& symbols) {
    std::string text;
    for (const Symbol* s : symbols) text += (text.empty() ? "" : " ") + std::string(s->name);
    return text;
  }
};

TEST_F(UsedSymbols, AreThoseWithoutAFixedMeaningInTheOrderOfAWalk) {
  const DataType* integer = m.get_int_type();
  const Symbol* f = m.make_symbol("f", m.get_function_type({integer}, integer));
  const Term_* y = constant("y", integer);
  const Term_* x = constant("x", integer);
  const Term_* fx = m.make_uninterpreted_function(f, {x});
  const Term_* fy = m.make_uninterpreted_function(f, {y});
  const Term_* t = m.make_leq(m.make_plus(fx, m.make_number(7)), m.make_plus(fy, x));
  EXPECT_EQ(names(free_symbols(m, t)), "f x y");
  EXPECT_EQ(names(free_symbols(m, std::vector<const Term_*>{y, t})), "y f x");
  EXPECT_EQ(names(free_symbols(m, m.make_true())), "");
  EXPECT_EQ(names(user_symbols(m)), "f y x");
}

TEST_F(UsedSymbols, NumeralsAndRoundingModesAreNone) {
  const Term_* v = m.make_fresh_variable(m.get_fp_type(8, 23));
  const Term_* t =
      m.make_fp_add(m.make_constant(m.get_fprounding_even()), v, m.make_fp_bits_number(0, 8, 23));
  EXPECT_EQ(names(free_symbols(m, t)), v->symbol->name);
  EXPECT_EQ(names(user_symbols(m)), v->symbol->name);
}

TEST_F(UsedSymbols, OfALargeTermAreFoundOnASmallStack) {
  const Term_* t = constant("p", m.get_bool_type());
  for (int i = 0; i < 1'000'000; ++i) t = m.make_not(t);
  std::string found;
  testing::run_on_small_stack([&] { found = names(free_symbols(m, t)); });
  EXPECT_EQ(found, "p");
}

}  // namespace
}  // namespace quill
