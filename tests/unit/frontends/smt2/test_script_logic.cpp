#include <gtest/gtest.h>

#include <string>

#include "quill/frontends/smt2/script_logic.h"
#include "tests/unit/frontends/smt2/read_and_print.h"

namespace quill::smt2 {
namespace {

const std::string i = "(declare-const i Int)";
const std::string x = "(declare-const x Real)";

TEST(ScriptLogic, IsKeptWhereItCovers) {
  EXPECT_EQ(logic_of("(set-logic QF_LIA)" + i + "(assert (= (* 2 i) (div i 3)))"), "QF_LIA");
  EXPECT_EQ(logic_of("(set-logic QF_IDL)" + i + "(assert (< (- i i) 3))"), "QF_IDL");
  EXPECT_EQ(logic_of("(set-logic QF_LIRA)" + i + x + "(assert (= x (to_real i)))"), "QF_LIRA");
  EXPECT_EQ(logic_of("(set-logic QF_UFLIRA)(declare-fun f (Int) Real)"), "QF_UFLIRA");
  EXPECT_EQ(logic_of("(set-logic QF_UF)(declare-sort S 0)(declare-fun f (S) S)"), "QF_UF");
  EXPECT_EQ(logic_of("(set-logic ALL)" + i + "(assert (= i (* i i)))"), "ALL");
  EXPECT_EQ(logic_of("(set-logic MY_LOGIC)(declare-fun f (Int) Real)"), "MY_LOGIC");
  EXPECT_EQ(logic_of(i), "");
}

TEST(ScriptLogic, GetsFreeFunctions) {
  EXPECT_EQ(logic_of("(set-logic QF_LIA)(declare-fun f (Int) Int)"), "QF_UFLIA");
  EXPECT_EQ(logic_of("(set-logic QF_IDL)(declare-sort S 0)"), "QF_UFIDL");
  EXPECT_EQ(logic_of("(set-logic QF_NRA)(declare-fun f (Real) Real)"), "QF_UFNRA");
  // No list of logics has QF_UFLIRA.
  EXPECT_EQ(logic_of("(set-logic QF_LIRA)(declare-fun f (Int) Int)"), "ALL");
}

TEST(ScriptLogic, GetsProducts) {
  EXPECT_EQ(logic_of("(set-logic QF_LIA)" + i + "(assert (= i (* i i)))"), "QF_NIA");
  EXPECT_EQ(logic_of("(set-logic QF_UFLRA)" + x + "(assert (= x (* x 2 x)))"), "QF_UFNRA");
  EXPECT_EQ(logic_of("(set-logic QF_IDL)" + i + "(assert (= i (* 2 i)))"), "QF_LIA");
  EXPECT_EQ(logic_of("(set-logic QF_IDL)" + i + "(assert (= i (mod i 2)))"), "QF_LIA");
  EXPECT_EQ(logic_of("(set-logic QF_RDL)" + x + "(assert (= x (+ x x)))"), "QF_LRA");
}

TEST(ScriptLogic, StaysDifferenceLogicInItsForms) {
  const std::string head = "(set-logic QF_IDL)" + i + "(declare-const j Int)(declare-const k Int)";
  for (const char* term : {"(<= (- i j) 3)", "(= 3 (- i j))", "(< i (+ j 3))", "(<= (- i 3) j)",
                           "(= (+ 3 i) (+ j 2))", "(distinct i j k)", "(= i (ite (= j k) j k))"}) {
    EXPECT_EQ(logic_of(head + "(assert " + term + ")"), "QF_IDL") << term;
  }
  for (const char* term : {"(<= (- i j) k)", "(<= (+ i j) 3)", "(= (- i j) (- j i))", "(= i (- j))",
                           "(<= (- i (+ j 3)) 2)", "(<= (- i j) (+ 1 2))", "(<= (- i j k) 2)"}) {
    EXPECT_EQ(logic_of(head + "(assert " + term + ")"), "QF_LIA") << term;
  }
}

TEST(ScriptLogic, IsOneForEachStretchBetweenResets) {
  EXPECT_EQ(printed("(set-logic QF_LIA)(declare-fun f (Int) Int)(reset)(set-logic QF_LIA)" + i),
            "(set-logic QF_UFLIA)\n(declare-fun f (Int) Int)\n(reset)\n(set-logic QF_LIA)\n"
            "(declare-const i Int)\n");
}

TEST(ScriptLogic, SeesWhatNamesUncover) {
  // A named product in a quotient cannot be left out, so the quotient is written as to_int.
  EXPECT_EQ(logic_of("(set-logic QF_LIRA)" + i + "(assert (= i (to_int (* (/ 1 3) (to_real i)))))"),
            "QF_LIRA");
  EXPECT_EQ(asserted("(set-logic QF_LIRA)" + i +
                     "(assert (= i (to_int (! (* (/ 1 3) (to_real i)) :named n))))"),
            "(= i (to_int (! (* (/ 1.0 3.0) (to_real i)) :named n)))");
  EXPECT_EQ(asserted(i + "(assert (= i (+ i (! (* (- 1) i) :named n))))"),
            "(= i (+ i (! (- i) :named n)))");
}

TEST(ScriptLogic, NamesOfHiddenNumeralsAreKept) {
  const std::string head = "(set-logic QF_LIA)" + i;
  EXPECT_EQ(asserted(head + "(assert (= i (* (! (- 1) :named n) i)))"),
            "(= i (* (! (- 1) :named n) i))");
  EXPECT_EQ(asserted(head + "(assert (= i (+ i (* (! (- 1) :named n) i))))"),
            "(= i (+ i (* (! (- 1) :named n) i)))");
}

// ----- products in linear logics
// ------------------------------------------------------------------

std::string linear(const std::string& term) {
  return asserted("(set-logic QF_LIA)" + i + "(assert (= i " + term + "))");
}

TEST(LinearProducts, FoldConstantFactorsThatReadersDoNotSee) {
  EXPECT_EQ(linear("(* (+ 1 1) i)"), "(= i (* 2 i))");
  EXPECT_EQ(linear("(* i (* 2 3))"), "(= i (* i 6))");
  EXPECT_EQ(linear("(* (- (* 2 3)) i)"), "(= i (* (- 6) i))");
}

TEST(LinearProducts, KeepWhatReadersSee) {
  EXPECT_EQ(linear("(* 2 3 i)"), "(= i (* 2 3 i))");
  EXPECT_EQ(linear("(* (* 2 3) i)"), "(= i (* 2 3 i))");
  EXPECT_EQ(linear("(* (* 2 3) (* 4 5))"), "(= i (* 2 3 (* 4 5)))");
  EXPECT_EQ(linear("(* 2 (* 3 i))"), "(= i (* 2 (* 3 i)))");
  EXPECT_EQ(linear("(* 1 (+ 1 1))"), "(= i (* 1 (+ 1 1)))");
}

TEST(LinearProducts, AreNotFoldedInOtherLogics) {
  EXPECT_EQ(asserted(i + "(assert (= i (* (+ 1 1) i)))"), "(= i (* (+ 1 1) i))");
}

// ----- names
// --------------------------------------------------------------------------------------

TEST(LogicNames, AreFreeWhereTheLogicDoesNotHaveTheTheory) {
  const std::string text =
      "(set-logic QF_UF)\n"
      "(declare-sort U 0)\n"
      "(declare-fun select (U) U)\n"
      "(declare-const concat U)\n"
      "(declare-const mod U)\n"
      "(declare-const abs U)\n"
      "(declare-fun + (U U) U)\n"
      "(declare-const RNE U)\n"
      "(assert (= (select concat) (+ mod abs) RNE))\n";
  const std::string once = printed(text);
  EXPECT_EQ(once,
            text.substr(0, text.find("(assert")) +
                "(assert (let ((@1 (+ mod abs))) (and (= (select concat) @1) (= @1 RNE))))\n");
  EXPECT_EQ(printed(once), once);
}

TEST(LogicNames, AreRenamedWhereTheWrittenLogicHasTheTheory) {
  EXPECT_EQ(printed("(set-logic QF_LIRA)(declare-fun select (Int) Int)"),
            "(set-logic ALL)\n(declare-fun quill!select (Int) Int)\n");
}

TEST(LogicNames, ThatOnlyReadersReserveAreFreeToReadAndRenamed) {
  EXPECT_EQ(printed("(set-logic QF_LRA)(declare-const abs Real)(assert (= abs 1))"),
            "(set-logic QF_LRA)\n(declare-const quill!abs Real)\n(assert (= quill!abs 1.0))\n");
  EXPECT_EQ(printed("(declare-const sin Real)"), "(declare-const quill!sin Real)\n");
  EXPECT_EQ(printed("(set-logic QF_LRA)(declare-const sin Real)"),
            "(set-logic QF_LRA)\n(declare-const sin Real)\n");
}

TEST(LogicNames, AreKeptApartWhereTheManagerSpellsThemAlike) {
  EXPECT_EQ(printed("(declare-const sin Int)(declare-const quill!sin Int)(assert (= sin quill!sin))"
                    "(assert (! (= 1 2) :named |quill!!40x|))(declare-const @x Bool)(assert @x)"
                    "(declare-sort @S 0)(declare-sort quill!!40S 0)"),
            "(declare-const quill!sin Int)\n"
            "(declare-const sin_0 Int)\n"
            "(assert (= quill!sin sin_0))\n"
            "(assert (! (= 1 2) :named quill!!40x))\n"
            "(declare-const quill!!40x!5f0 Bool)\n"
            "(assert quill!!40x!5f0)\n"
            "(declare-sort quill!!40S 0)\n"
            "(declare-sort quill!!40S!5f0 0)\n");
}

TEST(LogicNames, WordsAtTheHeadOfAnApplicationAreQualified) {
  const std::string text =
      "(declare-fun |let| (Int) Bool)\n(declare-const |forall| Int)\n"
      "(assert ((as |let| Bool) |forall|))\n";
  EXPECT_EQ(printed(text), text);
}

}  // namespace
}  // namespace quill::smt2
