#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "quill/frontends/smt2/script_reader.h"
#include "tests/unit/frontends/smt2/read_and_print.h"

namespace quill::smt2 {
namespace {

TEST(ScriptReader, KeepsTheCommandsInOrder) {
  TermManager m;
  const Script script =
      read_text("(set-logic QF_UF)(declare-const p Bool)(assert p)(check-sat)", m);
  ASSERT_EQ(script.commands.size(), 4u);
  EXPECT_EQ(script.logic, "QF_UF");
  EXPECT_EQ(script.commands[0].kind, CommandKind::SetLogic);
  EXPECT_EQ(script.commands[1].kind, CommandKind::DeclareConst);
  EXPECT_STREQ(script.commands[1].symbol->name, "p");
  EXPECT_EQ(script.commands[2].kind, CommandKind::Assert);
  EXPECT_EQ(script.commands[2].terms[0].value.term, m.make_constant(script.commands[1].symbol));
  EXPECT_EQ(script.commands[3].kind, CommandKind::CheckSat);
}

TEST(ScriptReader, StopsBehindExit) {
  TermManager m;
  EXPECT_EQ(read_text("(exit)(nonsense", m).commands.size(), 1u);
}

TEST(ScriptReader, ReadsTheEmptyScript) {
  TermManager m;
  EXPECT_EQ(read_text(" ; nothing\n", m).commands.size(), 0u);
}

TEST(ScriptReader, RestoresTheSwitchForBoolArguments) {
  TermManager m;
  read_text("(declare-fun f (Bool) Bool)", m);
  EXPECT_TRUE(m.get_reject_bool_arguments());
  m.set_reject_bool_arguments(false);
  read_text("(check-sat)", m);
  EXPECT_FALSE(m.get_reject_bool_arguments());
  m.set_reject_bool_arguments(true);
  EXPECT_THROW(read_text("(nonsense)", m), ParseError);
  EXPECT_TRUE(m.get_reject_bool_arguments());
}

TEST(ScriptReader, LeavesDeclarationsInTheManager) {
  TermManager m;
  const Script script = read_text("(declare-const p Bool)", m);
  EXPECT_EQ(m.get_signature()->get_symbol("p"), script.commands[0].symbol);
}

TEST(ScriptReader, TakesDeclarationsBackWhenTheScriptIsFaulty) {
  TermManager m;
  EXPECT_THROW(read_text("(declare-const p Bool)(assert q)", m), ParseError);
  EXPECT_EQ(m.get_signature()->get_symbol("p"), nullptr);
}

TEST(ScriptReader, KeepsSymbolsThatTheManagerHadBefore) {
  TermManager m;
  const Symbol* p = m.make_symbol("p", m.get_bool_type());
  const Script script = read_text("(push 1)(declare-const p Bool)(pop 1)", m);
  EXPECT_EQ(script.commands[1].symbol, p);
  EXPECT_EQ(m.get_signature()->get_symbol("p"), p);
}

TEST(ScriptReader, RefusesASymbolThatTheManagerHasOfAnotherSort) {
  TermManager m;
  m.make_symbol("p", m.get_int_type());
  try {
    read_text("(declare-const p Bool)", m);
    FAIL();
  } catch (const ParseError& error) {
    EXPECT_STREQ(error.what(), "1:16: the manager has a symbol 'p' of another sort");
  }
}

TEST(ScriptReader, GivesNamesBackAtPop) {
  TermManager m;
  const Script script =
      read_text("(push 1)(declare-const k Int)(pop 1)(push 1)(declare-const k Bool)(assert k)", m);
  EXPECT_EQ(script.commands[1].symbol->type, m.get_int_type());
  EXPECT_EQ(script.commands[4].symbol->type, m.get_bool_type());
}

TEST(ScriptReader, PopsSeveralLevels) {
  EXPECT_EQ(
      error_of("(push 1)(declare-const a Bool)(push 2)(declare-const b Bool)(pop 2)(assert a)"),
      "");
  EXPECT_EQ(error_of("(push 3)(declare-const a Bool)(pop 1)(assert a)"),
            "1:46: unknown symbol 'a'");
  EXPECT_EQ(error_of("(declare-const a Bool)(push 2)(pop 2)(assert a)"), "");
}

TEST(ScriptReader, OpensVeryManyLevelsAtOnce) {
  EXPECT_EQ(error_of("(push 18446744073709551615)(pop 18446744073709551614)(pop 1)"), "");
  EXPECT_EQ(error_of("(push 18446744073709551615)(push 1)"),
            "1:34: the number of levels is too large");
  EXPECT_EQ(error_of("(push 18446744073709551616)"),
            "1:7: the number of levels is too large: '18446744073709551616'");
}

TEST(ScriptReader, GlobalDeclarationsOutlivePop) {
  EXPECT_EQ(
      error_of("(set-option :global-declarations true)(push 1)(declare-sort S 0)"
               "(declare-const k S)(define-fun f () Bool true)(pop 1)(assert (and f (= k k)))"),
      "");
  EXPECT_EQ(error_of("(set-option :global-declarations false)(push 1)(declare-const k Bool)(pop 1)"
                     "\n(assert k)"),
            "2:9: unknown symbol 'k'");
}

TEST(ScriptReader, ResetForgetsEverything) {
  EXPECT_EQ(error_of("(set-logic QF_UF)(set-option :global-declarations true)(declare-const k Bool)"
                     "(reset)(set-logic QF_LIA)(declare-const k Int)(assert (= k 1))"),
            "");
}

TEST(ScriptReader, ResetAssertionsForgetsDeclarationsUnlessTheyAreGlobal) {
  EXPECT_EQ(error_of("(declare-const k Bool)(reset-assertions)\n(assert k)"),
            "2:9: unknown symbol 'k'");
  EXPECT_EQ(error_of("(set-option :global-declarations true)(declare-const k Bool)"
                     "(reset-assertions)(assert k)"),
            "");
}

TEST(ScriptReader, ReservesTheNamesOfTheLogicOnly) {
  EXPECT_EQ(error_of("(set-logic QF_UF)(declare-sort U 0)(declare-fun select (U U) U)"
                     "(declare-const mod U)(declare-const + U)(assert (= (select mod +) +))"),
            "");
  EXPECT_EQ(error_of("(set-logic QF_LIA)(declare-const select Int)(assert (= select 1))"), "");
  EXPECT_EQ(error_of("(declare-const select Int)"),
            "1:16: 'select' is an operator of the theory of arrays and cannot be declared");
}

TEST(ScriptReader, TakesBarsForNoPartOfTheName) {
  EXPECT_EQ(error_of("(declare-const |x| Bool)(assert x)(declare-const |let| Bool)(assert |let|)"),
            "");
}

TEST(ScriptReader, ExpandsDefinitions) {
  const std::string head =
      "(declare-const i Int)(define-fun double ((n Int)) Int (* 2 n))"
      "(define-fun twice ((n Int)) Int (double (double n)))"
      "(define-const four Int 4)(define-fun big () Bool (> i four))";
  EXPECT_EQ(asserted(head + "(assert (= (twice i) 8))"), "(= (* 2 (* 2 i)) 8)");
  EXPECT_EQ(asserted(head + "(assert big)"), "(not (<= i 4))");
}

TEST(ScriptReader, ReplacesParametersAllAtOnce) {
  EXPECT_EQ(asserted("(declare-const a Int)(declare-const b Int)"
                     "(define-fun less ((a Int) (b Int)) Bool (<= a b))(assert (less b a))"),
            "(<= b a)");
}

TEST(ScriptReader, ParametersShadowGlobalNames) {
  EXPECT_EQ(asserted("(declare-const p Bool)(declare-const q Bool)"
                     "(define-fun f ((p Bool)) Bool (not p))(assert (and p (f q)))"),
            "(and p (not q))");
}

TEST(ScriptReader, TakesIntArgumentsOfRealParameters) {
  EXPECT_EQ(asserted("(declare-const i Int)(define-fun half ((x Real)) Real (/ x 2))"
                     "(assert (= (half i) (half 3)))"),
            "(= (* (/ 1.0 2.0) (to_real i)) (* (/ 1.0 2.0) 3.0))");
}

TEST(ScriptReader, NumbersBodiesOfRealDefinitionsAsReal) {
  EXPECT_EQ(asserted("(define-fun c () Real 3)(assert (= c 4))"), "(= 3.0 4.0)");
}

TEST(ScriptReader, ExpandsDefinedSorts) {
  TermManager m;
  const Script script = read_text(
      "(declare-sort P 2)(declare-sort L 1)(define-sort Q (A B) (P B (L A)))"
      "(define-sort I () Int)(declare-const a (Q I Real))(declare-const b (P Real (L Int)))",
      m);
  EXPECT_EQ(script.commands[4].symbol->type, script.commands[5].symbol->type);
}

TEST(ScriptReader, SharesSortsWhileExpanding) {
  std::string text = "(declare-sort P 2)(define-sort D0 (X) (P X X))";
  for (int k = 1; k < 100; ++k) {
    const std::string before = "D" + std::to_string(k - 1);
    text +=
        "(define-sort D" + std::to_string(k) + " (X) (P (" + before + " X) (" + before + " X)))";
  }
  EXPECT_EQ(error_of(text + "(declare-const c (D99 Int))"), "");
}

TEST(ScriptReader, ReadsDeepSorts) {
  const size_t depth = 1000000;
  EXPECT_EQ(error_of("(declare-sort L 1)(declare-const c " + repeated("(L ", depth) + "Int" +
                     repeated(")", depth) + ")"),
            "");
}

TEST(ScriptReader, ASortMayHaveTheNameOfOneOfTheManagers) {
  EXPECT_EQ(asserted("(set-logic QF_UF)(declare-sort FPRounding 0)(declare-const a FPRounding)"
                     "(assert (= a a))"),
            "(= a a)");
  TermManager m;
  const Script script = read_text("(declare-sort FPRounding 0)(declare-const a FPRounding)", m);
  EXPECT_NE(script.commands[1].symbol->type, m.get_fprounding_type());
}

TEST(ScriptReader, TellsNamesOfNumeralsFromNumerals) {
  EXPECT_EQ(asserted("(declare-const |3| Int)(assert (= |3| 3))"), "(= |3| 3)");
}

TEST(ScriptReader, UsesTheDefaultLogic) {
  TermManager m;
  std::istringstream input("(declare-const x Real)(assert (= x 3))");
  const Script script = read(input, m, {.default_logic = "QF_LRA"});
  EXPECT_EQ(script.logic, "");
  EXPECT_EQ(script.commands[1].terms[0].value.term->symbol,
            m.get_signature()->get_symbol("`=_rat`"));
}

using Fault = std::pair<const char*, const char*>;

class ScriptFaults : public testing::TestWithParam<Fault> {};

TEST_P(ScriptFaults, AreNamed) { EXPECT_EQ(error_of(GetParam().first), GetParam().second); }

INSTANTIATE_TEST_SUITE_P(
    All, ScriptFaults,
    testing::Values(
        Fault{"p", "1:1: a command is expected, not 'p'"}, Fault{")", "1:1: a ')' too many"},
        Fault{"()", "1:2: the name of a command is expected, not ')'"},
        Fault{"((assert))", "1:2: the name of a command is expected, not '('"},
        Fault{"(frobnicate)", "1:2: unknown command 'frobnicate'"},
        Fault{"(assert-soft true)",
              "1:2: unsupported: the command 'assert-soft', which is not of the standard"},
        Fault{"(minimize 1)",
              "1:2: unsupported: the command 'minimize', which is not of the standard"},
        Fault{"(check-sat-using smt)",
              "1:2: unsupported: the command 'check-sat-using', which is not of the standard"},
        Fault{"(|check-sat-using| smt)", "1:2: unknown command '|check-sat-using|'"},
        Fault{"(declare-const p Bool)\n(assert (and p\n p\n(check-sat)",
              "4:2: a term is expected, not the command 'check-sat': the parenthesis opened on "
              "line 2 is not closed"},
        Fault{"(assert (let ((a true))\n(and a\n(or a\n(minimize 1)",
              "4:2: a term is expected, not the command 'minimize': the parenthesis opened on "
              "line 3 is not closed"},
        Fault{"(assert\n(check-sat)",
              "2:2: a term is expected, not the command 'check-sat': the parenthesis opened on "
              "line 1 is not closed"},
        Fault{"(get-value\n(true\n(check-sat)",
              "3:2: a term is expected, not the command 'check-sat': the parenthesis opened on "
              "line 2 is not closed"},
        Fault{"(declare-fun push (Bool) Bool)(assert (push true 1))",
              "1:39: 'push' takes 1 argument, not 2"},
        Fault{"(|assert| true)", "1:2: unknown command '|assert|'"},
        Fault{"(declare-datatypes)", "1:2: unsupported: the command 'declare-datatypes'"},
        Fault{"(define-fun-rec)", "1:2: unsupported: the command 'define-fun-rec'"},
        Fault{"(check-sat", "1:11: the input ends inside 'check-sat'"},
        Fault{"(check-sat\n\n", "1:11: the input ends inside 'check-sat'"},
        Fault{"(assert true\n(check-sat)",
              "1:13: a ')' is expected here to close 'assert', not '('"},
        Fault{"(assert", "1:8: the input ends where a term is expected"},
        Fault{"(assert 1)", "1:9: the asserted term has sort Int, not Bool"},
        Fault{"(declare-const true Bool)",
              "1:16: 'true' is an operator of the core theory and cannot be declared"},
        Fault{"(declare-const let Bool)", "1:16: a symbol is expected, not 'let'"},
        Fault{"(declare-const 1 Bool)", "1:16: a symbol is expected, not '1'"},
        Fault{"(declare-const p Bool)(declare-fun p () Int)", "1:36: 'p' is already declared"},
        Fault{"(declare-const p Color)", "1:18: unknown sort 'Color'"},
        Fault{"(set-logic QF_UF)(declare-const p Int)",
              "1:35: unknown sort 'Int' (the logic QF_UF does not have it)"},
        Fault{"(declare-const p (Seq Int))",
              "1:19: unsupported: the sort 'Seq' of the theory of strings"},
        Fault{"(declare-const p (_ String 8))",
              "1:21: unsupported: the sort 'String' of the theory of strings"},
        Fault{"(declare-const p (Int Int))", "1:19: the sort 'Int' takes no arguments"},
        Fault{"(declare-const p ())", "1:19: the name of a sort is expected, not ')'"},
        Fault{"(declare-sort S 1)(declare-const p S)",
              "1:36: the sort 'S' takes 1 argument, not 0"},
        Fault{"(declare-sort S 2)(declare-const p (S Int))",
              "1:37: the sort 'S' takes 2 arguments, not 1"},
        Fault{"(declare-sort S 0)(declare-const p (S))", "1:37: the sort 'S' between parentheses"},
        Fault{"(declare-sort S 1)(declare-const p (S Bool))",
              "1:37: unsupported: Bool as an argument of the sort 'S'"},
        Fault{"(declare-sort S 0)(declare-sort S 0)", "1:33: the sort 'S' is already declared"},
        Fault{"(declare-sort Int 0)", "1:15: the sort 'Int' belongs to a theory of the logic"},
        Fault{"(declare-sort S x)", "1:17: the arity of the sort is expected, not 'x'"},
        Fault{"(define-sort D (X X) X)", "1:19: the parameter 'X' appears twice"},
        Fault{"(declare-sort L 1)(define-sort D (X) (L X))(declare-const c (D Bool))",
              "1:62: unsupported: Bool as an argument of a sort in the definition of 'D'"},
        Fault{"(define-fun f ((a Int) (a Int)) Int a)", "1:25: the parameter 'a' appears twice"},
        Fault{"(define-fun f ((a Int)) Int (f a))", "1:30: unknown symbol 'f'"},
        Fault{"(define-fun f () Int true)", "1:22: the body has sort Bool, but Int is declared"},
        Fault{"(define-fun f ((a Int)) Int a)(assert (= 1 (f)))",
              "1:44: 'f' takes 1 argument, not 0"},
        Fault{"(define-fun f ((a Int)) Int a)(assert (= 1 (f true)))",
              "1:44: argument 1 of 'f' has sort Bool, but Int is expected"},
        Fault{"(define-fun f ((a Bool)) Bool (! a :named n))",
              "1:43: the term named 'n' mentions parameters of the definition around it"},
        Fault{"(define-fun n () Bool (! true :named n))",
              "1:13: the body of 'n' gives a term this name"},
        Fault{"(define-const n Bool (! true :named n))",
              "1:15: the body of 'n' gives a term this name"},
        Fault{"(define-const x Int (! 3 :named x))(reset)",
              "1:15: the body of 'x' gives a term this name"},
        Fault{"(push 1)(define-const x Int (+ 1 (! 3 :named x)))(pop 1)",
              "1:23: the body of 'x' gives a term this name"},
        Fault{"(push 1)(pop 2)", "1:14: 'pop' of 2 levels, but 1 are open"},
        Fault{"(push x)", "1:7: the number of levels is expected, not 'x'"},
        Fault{"(set-logic QF_UF)(set-logic QF_UF)", "1:29: the logic is already QF_UF"},
        Fault{"(declare-const p Bool)(set-logic QF_UF)",
              "1:34: 'set-logic' behind declarations or assertions"},
        Fault{"(set-logic 1)", "1:12: the name of a logic is expected, not '1'"},
        Fault{"(set-info p)", "1:11: a keyword is expected, not 'p'"},
        Fault{"(echo p)", "1:7: a string is expected, not 'p'"},
        Fault{"(get-value ())", "1:12: 'get-value' without a term"},
        Fault{"(check-sat-assuming (1))", "1:21: an assumption has sort Int, not Bool"}));

TEST(ScriptFaults, AMessageIsOneLineWhateverTheNames) {
  EXPECT_EQ(error_of("(assert |a\nb|)"), "1:9: unknown symbol '|a?b|'");
}

}  // namespace
}  // namespace quill::smt2
