#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/qnumber.h"
#include "tests/support/manager_test.h"

namespace quill {
namespace {

class ModularCongruence : public testing::ManagerTest {
 protected:
  // What the modulus is refused with; its class is the base of all exceptions.
  std::string refusal(const QNumber& modulus) {
    return base_exception_of([&] { m.make_int_modular_congruence_symbol(modulus); });
  }
};

TEST_F(ModularCongruence, SymbolIsNamedByTheModulusAndMadeOnce) {
  const Symbol* s = m.make_int_modular_congruence_symbol(7);
  EXPECT_STREQ(s->name, "`int_mod_congr_7`");
  EXPECT_EQ(m.get_tag(s), 13);
  EXPECT_EQ(s->type->to_str(), "(-> Int Int Bool)");
  EXPECT_EQ(m.make_int_modular_congruence_symbol(7), s);
  EXPECT_NE(m.make_int_modular_congruence_symbol(8), s);
}

TEST_F(ModularCongruence, OneIsTheLeastModulus) {
  EXPECT_STREQ(m.make_int_modular_congruence_symbol(1)->name, "`int_mod_congr_1`");
}

TEST_F(ModularCongruence, OtherNumbersAreRefused) {
  const auto before = sizes();
  EXPECT_EQ(refusal(0), "invalid modulus in make_int_modular_congruence_symbol: 0");
  EXPECT_EQ(refusal(-3), "invalid modulus in make_int_modular_congruence_symbol: -3");
  EXPECT_EQ(refusal(QNumber(5, 2)), "invalid modulus in make_int_modular_congruence_symbol: 5/2");
  EXPECT_EQ(refusal(QNumber(-1, 2)), "invalid modulus in make_int_modular_congruence_symbol: -1/2");
  EXPECT_EQ(refusal(QNumber::from_string("-100000000000000000000")),
            "invalid modulus in make_int_modular_congruence_symbol: -100000000000000000000");
  EXPECT_EQ(sizes(), before);
}

TEST_F(ModularCongruence, OtherNumbersAreRefusedAlsoWithoutChecks) {
  m.set_typecheck_enabled(false);
  EXPECT_EQ(refusal(0), "invalid modulus in make_int_modular_congruence_symbol: 0");
}

TEST_F(ModularCongruence, BuilderLooksAtTheModulusFirst) {
  const Term_* r = constant("r", m.get_rat_type());
  EXPECT_EQ(base_exception_of([&] { m.make_int_modular_congruence(0, r, r); }),
            "invalid modulus in make_int_modular_congruence_symbol: 0");
}

TEST_F(ModularCongruence, RecogniserTellsTheModulus) {
  const Symbol* s = m.make_int_modular_congruence_symbol(7);
  QNumber q(77);
  EXPECT_FALSE(m.is_int_modular_congruence(m.make_int_to_bv_symbol(7), &q));
  EXPECT_EQ(q, QNumber(77));
  EXPECT_TRUE(m.is_int_modular_congruence(s, &q));
  EXPECT_EQ(q, QNumber(7));
  EXPECT_TRUE(m.is_int_modular_congruence(s, nullptr));
}

TEST_F(ModularCongruence, ModulusIsCopied) {
  QNumber modulus = QNumber::from_string("100000000000000000000");
  const Symbol* s = m.make_int_modular_congruence_symbol(modulus);
  modulus = QNumber(3);
  QNumber q;
  EXPECT_TRUE(m.is_int_modular_congruence(s, &q));
  EXPECT_EQ(q.to_str(), "100000000000000000000");
}

TEST_F(ModularCongruence, BigModuliAreNamedInFull) {
  const Symbol* s =
      m.make_int_modular_congruence_symbol(QNumber::from_string("100000000000000000000"));
  EXPECT_STREQ(s->name, "`int_mod_congr_100000000000000000000`");
  EXPECT_EQ(m.make_int_modular_congruence_symbol(QNumber::from_string("100000000000000000000")), s);
}

TEST_F(ModularCongruence, OneValueInAnyFormHasOneSymbol) {
  const Symbol* s = m.make_int_modular_congruence_symbol(7);
  QNumber big = QNumber::from_string("100000000000000000000");
  big = QNumber(7);
  ASSERT_TRUE(big.is_big());
  EXPECT_EQ(m.make_int_modular_congruence_symbol(big), s);
  EXPECT_EQ(m.make_int_modular_congruence_symbol(QNumber(14, 2)), s);
}

TEST_F(ModularCongruence, FirstRequestInAnotherFormIsTheSame) {
  QNumber big = QNumber::from_string("100000000000000000000");
  big = QNumber(7);
  const Symbol* s = m.make_int_modular_congruence_symbol(big);
  EXPECT_STREQ(s->name, "`int_mod_congr_7`");
  EXPECT_EQ(m.make_int_modular_congruence_symbol(7), s);
  EXPECT_EQ(m.get_tag(s), 13);
}

TEST_F(ModularCongruence, ArgumentsAreLeftToTheTypecheck) {
  const Term_* i = constant("i", m.get_int_type());
  const Term_* r = constant("r", m.get_rat_type());
  EXPECT_EQ(
      error_of([&] { m.make_int_modular_congruence(7, i, r); }),
      "type error. term r has type Real, but Int was expected. (make_int_modular_congruence)");
  EXPECT_NE(m.get_signature()->get_symbol("`int_mod_congr_7`"), nullptr);
}

TEST_F(ModularCongruence, TermIsBool) {
  const Term_* i = constant("i", m.get_int_type());
  const Term_* j = constant("j", m.get_int_type());
  const Term_* t = m.make_int_modular_congruence(7, i, j);
  EXPECT_EQ(t->type(), m.get_bool_type());
  EXPECT_EQ(t->args[0], i);
  EXPECT_EQ(t->args[1], j);
  EXPECT_NE(m.make_int_modular_congruence(7, j, i), t);
}

}  // namespace
}  // namespace quill
