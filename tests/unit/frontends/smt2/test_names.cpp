#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/unit/frontends/smt2/read_and_print.h"

namespace quill::smt2 {
namespace {

// ----- names of symbols
// ---------------------------------------------------------------------------

class AwkwardNames : public testing::TestWithParam<const char*> {};

// As constant, function, parameter, variable of let, and name of a term.
TEST_P(AwkwardNames, MayBeUsedEverywhere) {
  const std::string name = std::string("|") + GetParam() + "|";
  const std::string constant = "(declare-const " + name + " Int)\n(assert (= " + name + " 1))\n";
  EXPECT_EQ(printed(constant), constant);
  EXPECT_EQ(
      asserted("(define-fun f ((" + name + " Int)) Int (+ " + name + " 1))(assert (= (f 2) 3))"),
      "(= (+ 2 1) 3)");
  EXPECT_EQ(asserted("(assert (let ((" + name + " 5)) (= " + name + " 4)))"), "(= 5 4)");
  const std::string named =
      "(assert (! (= 1 2) :named " + name + "))\n(get-value (" + name + "))\n";
  EXPECT_EQ(printed(named), named);
}

INSTANTIATE_TEST_SUITE_P(
    All, AwkwardNames,
    testing::Values("", "3", "-3", "5_8", "0_8_23", "1/2", "-1/2", "`x", "`", "'1", "a b", "(", ";",
                    "\"", "\n", "1.5", "#b1", ":key", "\xc3\xa4", "!", "BINARY", "DECIMAL",
                    "HEXADECIMAL", "NUMERAL", "STRING", "exists", "forall", "lambda", "let",
                    "match", "par", "assert", "check-sat", "check-sat-assuming", "declare-const",
                    "declare-datatype", "declare-datatypes", "declare-fun", "declare-sort",
                    "define-const", "define-fun", "define-fun-rec", "define-funs-rec",
                    "define-sort", "echo", "exit", "get-assertions", "get-assignment", "get-info",
                    "get-model", "get-option", "get-proof", "get-unsat-assumptions",
                    "get-unsat-core", "get-value", "pop", "push", "reset", "reset-assertions",
                    "set-info", "set-logic", "set-option"));

class IndexedOperators : public testing::TestWithParam<const char*> {};

TEST_P(IndexedOperators, AreFreeNamesWithoutIndices) {
  const std::string name = GetParam();
  for (const std::string logic :
       {"", "(set-logic ALL)\n", "(set-logic QF_UFBV)\n", "(set-logic QF_FP)\n",
        "(set-logic QF_UFLIA)\n", "(set-logic QF_S)\n"}) {
    const std::string uses = logic + "(declare-const " + name + " Bool)(assert " + name + ")";
    const std::string text = printed(uses);
    EXPECT_NE(text, "");
    EXPECT_EQ(printed(text), text);
    EXPECT_EQ(
        error_of(logic + "(declare-fun " + name + " (Bool) Bool)(assert (" + name + " true))"), "");
    EXPECT_EQ(
        error_of(logic + "(define-fun " + name + " ((a Bool)) Bool a)(assert (" + name + " true))"),
        "");
    EXPECT_EQ(error_of(logic + "(define-const " + name + " Bool true)(assert " + name + ")"), "");
    EXPECT_EQ(error_of(logic + "(assert (! true :named " + name + "))(assert " + name + ")"), "");
  }
}

INSTANTIATE_TEST_SUITE_P(All, IndexedOperators,
                         testing::Values("+oo", "+zero", "-oo", "-zero", "NaN", "char", "divisible",
                                         "extract", "fp.to_sbv", "fp.to_ubv", "int2bv", "int_to_bv",
                                         "nat2bv", "re.^", "re.loop", "repeat", "rotate_left",
                                         "rotate_right", "sign_extend", "to_fp", "to_fp_unsigned",
                                         "zero_extend"));

TEST(Names, OfIndexedOperatorsLeaveTheOperatorsAlone) {
  EXPECT_EQ(printed("(set-logic QF_BV)\n(declare-const extract (_ BitVec 8))\n"
                    "(assert (= ((_ extract 3 0) extract) #x0))\n"),
            "(set-logic QF_BV)\n(declare-const quill!extract (_ BitVec 8))\n"
            "(assert (= ((_ extract 3 0) quill!extract) (_ bv0 4)))\n");
  EXPECT_EQ(printed("(declare-const divisible Bool)(declare-const i Int)"
                    "(assert (= divisible ((_ divisible 2) i)))"),
            "(declare-const quill!divisible Bool)\n(declare-const i Int)\n"
            "(assert (= quill!divisible (= i (* 2 (div i 2)))))\n");
}

TEST(Names, OfIndexedOperatorsAreKeptInLogicsWithoutThem) {
  const std::string text = "(set-logic QF_UF)\n(declare-const extract Bool)\n(assert extract)\n";
  EXPECT_EQ(printed(text), text);
}

TEST(Names, OfNumeralsAreNoNumerals) {
  TermManager m;
  const Script script = read_text(
      "(declare-const |3| Int)(declare-const |1/2| Real)"
      "(assert (= |3| 3))(assert (= |1/2| 0.5))",
      m);
  const Term_* first = script.commands[2].terms[0].value.term;
  EXPECT_NE(first->args[0], first->args[1]);
  EXPECT_EQ(first->args[1], m.make_number(3));
  const Term_* second = script.commands[3].terms[0].value.term;
  EXPECT_NE(second->args[0], second->args[1]);
}

TEST(Names, WithAndWithoutBarsAreOne) {
  EXPECT_EQ(printed("(declare-const |x| Bool)(assert x)(assert |x|)"),
            "(declare-const x Bool)\n(assert x)\n(assert x)\n");
}

TEST(Names, OfTenThousandCharactersAreKept) {
  const std::string text = "(declare-const |" + repeated("a ", 5000) + "| Int)\n";
  EXPECT_EQ(printed(text), text);
}

TEST(Names, BoundByLetClashWithNothing) {
  const std::string text =
      "(declare-const |1| Bool)\n(declare-const quill!!401 Bool)\n"
      "(assert (let ((@1 (not (= |1| quill!!401)))) (and @1 (or @1 quill!!401))))\n";
  EXPECT_EQ(printed(text), text);
}

// ----- numerals
// -----------------------------------------------------------------------------------

TEST(Names, NumeralsMayBeOfAnyLength) {
  const std::string digits = repeated("1234567890", 10000);
  EXPECT_EQ(asserted("(declare-const i Int)(assert (= i (- " + digits + ")))"),
            "(= i (- " + digits + "))");
  EXPECT_EQ(asserted("(declare-const x Real)(assert (= x 0." + repeated("0", 50) + "1))"),
            "(= x (/ 1.0 1" + repeated("0", 51) + ".0))");
}

// ----- sorts
// --------------------------------------------------------------------------------------

class AwkwardSorts : public testing::TestWithParam<const char*> {};

TEST_P(AwkwardSorts, AreSortsOfTheUser) {
  const std::string name = GetParam();
  const std::string text = "(set-logic QF_UF)\n(declare-sort " + name + " 0)\n(declare-const a " +
                           name + ")\n(declare-const b " + name + ")\n(assert (not (= a b)))\n";
  EXPECT_EQ(printed(text), text);
  TermManager m;
  const Script script = read_text(text, m);
  const DataType* sort = script.commands[1].sort;
  EXPECT_NE(sort, m.get_fprounding_type());
  EXPECT_NE(sort, m.get_int_type());
  EXPECT_NE(sort, m.get_type_from_width(32));
  EXPECT_FALSE(m.is_finite_domain_type(sort, nullptr));
}

INSTANTIATE_TEST_SUITE_P(All, AwkwardSorts,
                         testing::Values("FPRounding", "FP", "BitVec", "Array", "|32|", "|8:23|",
                                         "Int", "Real", "RoundingMode", "rat", "int", "a_b",
                                         "|(BitVec 8)|", "|`sort_parameter_0|", "|0|", "->"));

TEST(Sorts, NamedLikeHeadsOfTheManagersTypesMakeTypesOfTheirOwn) {
  TermManager m;
  const Script script = read_text(
      "(set-logic QF_UF)(declare-sort BitVec 1)(declare-sort |8| 0)(declare-const a (BitVec |8|))"
      "(declare-sort Array 2)(declare-const b (Array |8| |8|))",
      m);
  EXPECT_FALSE(m.is_bv_type(script.commands[3].symbol->type, nullptr));
  EXPECT_FALSE(m.is_array_type(script.commands[5].symbol->type, nullptr, nullptr));
}

TEST(Sorts, ParametersClashWithNoSort) {
  TermManager m;
  const Script script = read_text(
      "(declare-sort P 2)(declare-sort |0| 0)(define-sort D (X) (P X |0|))"
      "(declare-const a (D Int))(declare-const b (P Int |0|))",
      m);
  EXPECT_EQ(script.commands[3].symbol->type, script.commands[4].symbol->type);
}

// ----- scopes
// -------------------------------------------------------------------------------------

TEST(Scopes, PopGivesNamesBackForOtherSorts) {
  const std::string text =
      "(push 1)\n(declare-sort S 0)\n(declare-const k S)\n(assert (! (= k k) :named n))\n(pop 1)\n"
      "(declare-const k Int)\n(declare-const n Bool)\n(declare-sort S 1)\n"
      "(declare-const c (S Int))\n(assert (and n (= k 1)))\n";
  EXPECT_EQ(printed(text), text);
}

TEST(Scopes, ParametersAndLetShadow) {
  EXPECT_EQ(asserted("(declare-const x Int)(define-fun f ((x Bool)) Bool (let ((x (not x))) x))"
                     "(declare-const p Bool)(assert (and (f p) (= x 1)))"),
            "(and (not p) (= x 1))");
}

}  // namespace
}  // namespace quill::smt2
