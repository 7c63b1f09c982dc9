#include <gtest/gtest.h>

#include <string>

#include "tests/unit/frontends/smt2/read_and_print.h"

namespace quill::smt2 {
namespace {

const std::string ints = "(set-logic QF_LIA)(declare-const i Int)(declare-const j Int)";

std::string term(const std::string& text) { return asserted(ints + "(assert " + text + ")"); }

TEST(Division, DivByAConstantStaysDiv) {
  EXPECT_EQ(term("(= j (div i 3))"), "(= j (div i 3))");
  EXPECT_EQ(term("(= j (div i 1))"), "(= j (div i 1))");
  EXPECT_EQ(term("(= j (div i (- 3)))"), "(= j (- (div i 3)))");
  EXPECT_EQ(term("(= j (div i 123456789012345678901234567890))"),
            "(= j (div i 123456789012345678901234567890))");
}

TEST(Division, DivNestsToTheLeft) {
  EXPECT_EQ(term("(= j (div i 3 (- 2)))"), "(= j (- (div (div i 3) 2)))");
}

TEST(Division, DivIsTheFloorOfAProduct) {
  TermManager m;
  const Term_* i = m.make_constant(m.make_symbol("i", m.get_int_type()));
  EXPECT_EQ(read_term("(div i 3)", m), read_term("(to_int (* (/ 1 3) (to_real i)))", m));
  EXPECT_EQ(read_term("(div i 3)", m), m.make_floor(m.make_times(m.make_number({1, 3}), i)));
}

TEST(Division, ModIsWhatDivLeaves) {
  EXPECT_EQ(term("(= j (mod i 3))"), "(= j (- i (* 3 (div i 3))))");
  EXPECT_EQ(term("(= j (mod i (- 3)))"), "(= j (- i (* 3 (div i 3))))");
}

TEST(Division, DivisibleIsAProduct) {
  EXPECT_EQ(term("((_ divisible 3) i)"), "(= i (* 3 (div i 3)))");
}

TEST(Division, AbsIsAnIfThenElse) {
  EXPECT_EQ(term("(= j (abs i))"), "(= j (ite (<= 0 i) i (- i)))");
  EXPECT_EQ(asserted("(set-logic QF_LRA)(declare-const x Real)(assert (= x (abs (- 3))))"),
            "(= x (ite (<= 0.0 (- 3.0)) (- 3.0) (* (- 1.0) (- 3.0))))");
}

TEST(Division, AbsIsWrittenAsSuchInNonlinearLogicsOfIntegers) {
  const std::string squares = "(declare-const i Int)(assert (= i (abs (* i i))))";
  EXPECT_EQ(asserted("(set-logic QF_NIA)" + squares), "(= i (abs (* i i)))");
  EXPECT_EQ(asserted("(set-logic QF_UFNIA)" + squares), "(= i (abs (* i i)))");
  EXPECT_EQ(asserted("(set-logic QF_NIRA)" + squares), "(= i (abs (* i i)))");
}

TEST(Division, AbsIsUnknownInLogicsOfReals) {
  const std::string reals = "(declare-const x Real)(assert (= x (ite (<= 0.0 x) x (- x))))";
  const std::string written = "(= x (ite (<= 0.0 x) x (- x)))";
  EXPECT_EQ(asserted("(set-logic QF_NRA)" + reals), written);
  EXPECT_EQ(asserted("(set-logic QF_UFNRA)" + reals), written);
  EXPECT_EQ(asserted("(set-logic QF_NIRA)" + reals), "(= x (abs x))");
}

// If strict readers refuse the script itself, its print keeps abs, with which solvers can reason.
TEST(Division, AbsStaysInScriptsOfRealsThatUseIt) {
  const std::string logic = "(set-logic QF_NRA)(declare-const x Real)";
  EXPECT_EQ(asserted(logic + "(assert (= x (abs x)))"), "(= x (abs x))");
  EXPECT_EQ(asserted(logic + "(define-fun f ((y Real)) Real (abs y))(assert (= x (f x)))"),
            "(= x (abs x))");
  EXPECT_EQ(asserted(logic + "(assert (= x (abs x)))(assert (< x (ite (<= 0.0 x) x (- x))))"),
            "(not (<= (abs x) x))");
  EXPECT_EQ(asserted("(set-logic QF_LRA)(declare-const x Real)(assert (= x (abs x)))"),
            "(= x (ite (<= 0.0 x) x (- x)))");
}

TEST(Division, ConstantsAreWhatHasAValue) {
  EXPECT_EQ(term("(= j (div i (+ 1 2)))"), "(= j (div i 3))");
  EXPECT_EQ(asserted("(declare-const x Real)(assert (= x (/ x (/ 1 3))))"), "(= x (* 3.0 x))");
  EXPECT_EQ(asserted("(declare-const x Real)(assert (= x (/ x (to_real 3))))"),
            "(= x (* (/ 1.0 3.0) x))");
}

TEST(Division, ByATermIsUnsupported) {
  const std::string why = "unsupported: division by a term that is not a number";
  EXPECT_EQ(error_of(ints + "\n(assert (= j (div i j)))"), "2:14: " + why);
  EXPECT_EQ(error_of(ints + "\n(assert (= j (mod i j)))"), "2:14: " + why);
}

// (let ((a0 (/ 1 N))) (let ((a1 (/ a0 (/ 1 a0)))) ...: a number squared so many times.
std::string squared(int times, const std::string& number) {
  std::string text = "(declare-const r Real)(assert (let ((a0 (/ 1 " + number + ")))";
  for (int i = 0; i < times; ++i) {
    const std::string a = "a" + std::to_string(i);
    text += "(let ((a" + std::to_string(i + 1) + " (/ " + a + " (/ 1 " + a + "))))";
  }
  return text + "(> r a" + std::to_string(times) + ")" + repeated(")", static_cast<size_t>(times)) +
         "))";
}

TEST(Division, OfNumbersThatAreComputedHasABound) {
  const auto is_refused = [](const std::string& text) {
    return error_of(text).find(
               "unsupported: a number of more than 65536 bits that is computed from others") !=
           std::string::npos;
  };
  EXPECT_EQ(error_of(squared(15, "2")), "");  // 2^-32768
  EXPECT_TRUE(is_refused(squared(16, "2")));
  EXPECT_TRUE(is_refused(squared(60, "123456789")));
}

TEST(Division, OfNumbersThatAreWrittenHasNone) {
  const std::string n = "1" + std::string(30000, '0');
  const std::string d = std::string(30000, '3');
  EXPECT_EQ(asserted("(declare-const r Real)(assert (<= r (/ " + n + " " + d + ")))"),
            "(<= r (/ " + n + ".0 " + d + ".0))");
  EXPECT_EQ(error_of("(declare-const r Real)(assert (<= r (/ (/ " + n + " " + d + ") 7)))"), "");
}

TEST(Division, HasFaultsOfItsOwn) {
  EXPECT_EQ(error_of(ints + "\n(assert (= j (div i)))"),
            "2:14: 'div' takes at least 2 arguments, not 1");
  EXPECT_EQ(error_of(ints + "\n(assert (= j (mod i 2 2)))"),
            "2:14: 'mod' takes 2 arguments, not 3");
  EXPECT_EQ(error_of(ints + "\n(assert ((_ divisible 0) i))"),
            "2:9: 'divisible' takes a positive number as its index, not '0'");
  EXPECT_EQ(error_of(ints + "\n(assert ((_ divisible x) i))"),
            "2:9: 'divisible' takes a positive number as its index, not 'x'");
  EXPECT_EQ(error_of("(declare-const x Real)\n(assert (= 1 (div x 2)))"),
            "2:14: argument 1 of 'div' has sort Real, but Int is expected");
}

// ----- by zero
// ------------------------------------------------------------------------------------

TEST(DivisionByZero, IsAFunctionOfTheDividend) {
  EXPECT_EQ(
      printed("(set-logic QF_LIRA)\n(set-option :produce-models true)\n(declare-const i Int)\n"
              "(declare-const x Real)\n"
              "(assert (= (div i 0) (mod i 0)))(assert (= x (/ x 0 0.0)))"),
      "(set-logic ALL)\n"
      "(set-option :produce-models true)\n"
      "(declare-fun quill!div_by_zero (Int) Int)\n"
      "(declare-fun quill!mod_by_zero (Int) Int)\n"
      "(declare-fun quill!divide_by_zero (Real) Real)\n"
      "(declare-const i Int)\n"
      "(declare-const x Real)\n"
      "(assert (= (quill!div_by_zero i) (quill!mod_by_zero i)))\n"
      "(assert (= x (quill!divide_by_zero (quill!divide_by_zero x))))\n");
}

TEST(DivisionByZero, IsDeclaredOutsideOfAllScopes) {
  EXPECT_EQ(printed("(set-logic QF_LIA)(declare-const i Int)(push 1)(assert (= i (div 1 0)))(pop 1)"
                    "(assert (= i (div 2 0)))"),
            "(set-logic QF_UFLIA)\n"
            "(declare-fun quill!div_by_zero (Int) Int)\n"
            "(declare-const i Int)\n"
            "(push 1)\n"
            "(assert (= i (quill!div_by_zero 1)))\n"
            "(pop 1)\n"
            "(assert (= i (quill!div_by_zero 2)))\n");
}

TEST(DivisionByZero, IsDeclaredAgainWhereDeclarationsEnd) {
  const std::string body = "(assert (= 1 (div 1 0)))";
  const std::string declaration = "(declare-fun quill!div_by_zero (Int) Int)\n";
  const std::string assertion = "(assert (= 1 (quill!div_by_zero 1)))\n";
  EXPECT_EQ(printed(body + "(reset-assertions)" + body + "(reset)" + body),
            declaration + assertion + "(reset-assertions)\n" + declaration + assertion +
                "(reset)\n" + declaration + assertion);
  const std::string global = "(set-option :global-declarations true)\n";
  EXPECT_EQ(printed(global + body + "(reset-assertions)" + body),
            global + declaration + assertion + "(reset-assertions)\n" + assertion);
}

TEST(DivisionByZero, KeepsOutOfTheWayOfTheUsersNames) {
  EXPECT_EQ(
      printed("(declare-const quill!div_by_zero Int)(assert (= quill!div_by_zero (div 1 0)))"),
      "(declare-fun quill!div_by_zero_0 (Int) Int)\n"
      "(declare-const quill!div_by_zero Int)\n"
      "(assert (= quill!div_by_zero (quill!div_by_zero_0 1)))\n");
  EXPECT_EQ(printed("(assert (= 1 (div 1 0)))(declare-fun quill!div_by_zero (Int) Int)"
                    "(assert (= 1 (quill!div_by_zero (div 1 0))))"),
            "(declare-fun quill!div_by_zero (Int) Int)\n"
            "(assert (= 1 (quill!div_by_zero 1)))\n"
            "(declare-fun quill!div_by_zero_0 (Int) Int)\n"
            "(assert (= 1 (quill!div_by_zero_0 (quill!div_by_zero 1))))\n");
}

// This includes names that were in use in a scope that has ended: the function's declaration comes
// before that scope.
TEST(DivisionByZero, KeepsOutOfTheWayOfNamesThatWerePopped) {
  const std::string declaration = "(declare-fun quill!div_by_zero_0 (Int) Int)\n";
  const std::string assertion = "(assert (= 1 (quill!div_by_zero_0 1)))\n";
  const std::string scopes[] = {
      "(push 1)\n(declare-fun quill!div_by_zero (Int Int) Int)\n(pop 1)\n",
      "(push 1)\n(declare-fun quill!div_by_zero (Int) Int)\n(pop 1)\n",
      "(push 2)\n(assert (! true :named quill!div_by_zero))\n(pop 1)\n",
      "(push 1)\n(define-fun quill!div_by_zero () Bool (! true :named n))\n(pop 1)\n",
  };
  for (const std::string& scope : scopes) {
    const std::string text = printed(scope + "(assert (= 1 (div 1 0)))");
    EXPECT_EQ(text, declaration + scope + assertion);
    EXPECT_EQ(printed(text), text);
  }
}

TEST(DivisionByZero, TakesNamesThatEndedWithTheirDeclarations) {
  const std::string scope = "(push 1)\n(declare-fun quill!div_by_zero (Int Int) Int)\n";
  const std::string division =
      "(declare-fun quill!div_by_zero (Int) Int)\n(assert (= 1 (quill!div_by_zero 1)))\n";
  for (const char* end : {"(reset)\n", "(reset-assertions)\n", "(pop 1)\n(reset)\n"}) {
    EXPECT_EQ(printed(scope + end + "(assert (= 1 (div 1 0)))"), scope + end + division);
  }
}

TEST(DivisionByZero, CanBeCopiedBehindANameThatWasPopped) {
  TermManager m;
  const Script script = read_text(
      "(push 1)(declare-fun quill!div_by_zero (Int Int) Int)"
      "(assert (= 1 (quill!div_by_zero 1 2)))(pop 1)(assert (= 1 (div 1 0)))",
      m);
  TermManager other;
  const Script copied = copy(m, script, other);
  std::ostringstream first;
  write(first, m, script);
  std::ostringstream second;
  write(second, other, copied);
  EXPECT_EQ(first.str(), second.str());
}

TEST(DivisionByZero, ReadsBackToTheSameTerms) {
  TermManager m;
  const Script first = read_text(
      "(set-logic QF_LIA)(declare-const i Int)(push 1)(assert (= i (div i 0) (mod i 0)))", m);
  std::ostringstream output;
  write(output, m, first);
  const Script second = read_text(output.str(), m);
  EXPECT_EQ(first.commands.back().terms[0].value.term, second.commands.back().terms[0].value.term);
  // And so does the script itself.
  const Script third = read_text(
      "(set-logic QF_LIA)(declare-const i Int)(push 1)(assert (= i (div i 0) (mod i 0)))", m);
  EXPECT_EQ(first.commands.back().terms[0].value.term, third.commands.back().terms[0].value.term);
}

TEST(DivisionByZero, IsTakenBackWhenTheScriptIsFaulty) {
  TermManager m;
  EXPECT_THROW(read_text("(assert (= 1 (div 1 0)))(assert x)", m), ParseError);
  EXPECT_EQ(m.get_signature()->get_symbol("quill!div_by_zero"), nullptr);
}

}  // namespace
}  // namespace quill::smt2
