// Names that :named gives: each is written where it has the scope and the sort that it had, and
// stays a label of an assertion if it was one.

#include <gtest/gtest.h>

#include <string>

#include "tests/unit/frontends/smt2/read_and_print.h"

namespace quill::smt2 {
namespace {

const std::string declarations =
    "(declare-const x Int)\n(declare-const p Bool)\n(declare-const q Bool)\n";

// The printed script without the declarations, which begin it; the print must print as itself.
std::string named(const std::string& commands) {
  const std::string text = printed(declarations + commands);
  EXPECT_EQ(printed(text), text);
  EXPECT_EQ(text.substr(0, declarations.size()), declarations);
  return text.substr(declarations.size());
}

// ----- definitions ------------------------------------------------------------------------------

TEST(NamedTerms, OutliveTheScopeOfTheirFirstUse) {
  const std::string text =
      "(define-fun f () Bool (! (<= x 0) :named n))\n(push 1)\n(assert f)\n(pop 1)\n";
  EXPECT_EQ(named(text + "(assert n)\n(check-sat)\n"), text + "(assert n)\n(check-sat)\n");
  EXPECT_EQ(named(text + "(check-sat-assuming (n))\n"), text + "(check-sat-assuming (n))\n");
  EXPECT_EQ(named(text + "(check-sat)\n(get-value (n f))\n"),
            text + "(check-sat)\n(get-value (n f))\n");
}

TEST(NamedTerms, OfConstantDefinitionsStayInThem) {
  const std::string text =
      "(define-const f Bool (! (<= x 0) :named n))\n(push 1)\n(assert f)\n(pop 1)\n(assert n)\n";
  EXPECT_EQ(named(text), text);
}

TEST(NamedTerms, KeepTheirDefinitionOnly) {
  EXPECT_EQ(
      named("(define-fun f () Bool (<= x 0))(define-fun g () Bool (or f (! (not f) :named n)))"
            "(assert (and f g n))(assert g)(assert f)"),
      "(define-fun g () Bool (or (<= x 0) (! (not (<= x 0)) :named n)))\n"
      "(assert (let ((@1 (<= x 0))) (let ((@2 (not @1))) (and @1 (or @1 @2) @2))))\n"
      "(assert g)\n"
      "(assert (<= x 0))\n");
}

TEST(NamedTerms, OfUnusedDefinitionsAreKept) {
  const std::string text =
      "(push 1)\n(define-fun f () Bool (! p :named n))\n(check-sat)\n(get-assignment)\n(pop 1)\n"
      "(define-fun f () Int (! x :named n))\n(get-value (n))\n";
  EXPECT_EQ(named(text), text);
}

TEST(NamedTerms, OfOneTermAreAllKept) {
  const std::string text =
      "(assert (! (<= x 0) :named a))\n(define-fun d () Bool (! (<= x 0) :named b))\n(assert a)\n"
      "(assert b)\n";
  EXPECT_EQ(named(text), text);
}

TEST(NamedTerms, OfDefinitionsWithParametersGetADefinition) {
  EXPECT_EQ(named("(define-fun f ((y Int)) Bool (or (<= y 3) (! (<= x 0) :named a) (! p :named b)))"
                  "(push 1)(assert (f 2))(pop 1)(assert (and a b))(assert b)"),
            "(define-fun quill!named_1 () Bool (! (<= x 0) :named a))\n"
            "(define-fun quill!named_2 () Bool (! p :named b))\n"
            "(push 1)\n"
            "(assert (or (<= 2 3) (<= x 0) p))\n"
            "(pop 1)\n"
            "(assert (and (<= x 0) p))\n"
            "(assert b)\n");
}

TEST(NamedTerms, OfKeptDefinitionsAreWrittenAsNamesNeedIt) {
  const std::string text =
      "(define-fun |a b| () Bool (! (<= x 0) :named |let|))\n(assert |a b|)\n(assert |let|)\n";
  EXPECT_EQ(named(text), text);
  // The manager spells the two names alike.
  EXPECT_EQ(named("(declare-const quill!!40y Bool)(define-fun |@y| () Bool (! p :named n))"
                  "(assert (and quill!!40y |@y|))(assert |@y|)"),
            "(declare-const quill!!40y Bool)\n"
            "(define-fun quill!!40y!5f0 () Bool (! p :named n))\n"
            "(assert (and quill!!40y p))\n"
            "(assert quill!!40y!5f0)\n");
}

// ----- let --------------------------------------------------------------------------------------

TEST(NamedTerms, OfUnusedVariablesGetADefinition) {
  EXPECT_EQ(named("(assert (let ((y (! (<= x 0) :named n))) p))(assert n)"),
            "(define-fun quill!named_1 () Bool (! (<= x 0) :named n))\n"
            "(assert p)\n"
            "(assert n)\n");
  EXPECT_EQ(named("(check-sat-assuming ((let ((y (! (<= x 0) :named n))) p)))"),
            "(define-fun quill!named_1 () Bool (! (<= x 0) :named n))\n"
            "(check-sat-assuming (p))\n");
  EXPECT_EQ(named("(define-fun f () Bool (let ((y (! (<= x 0) :named n))) p))(assert (or f n))"),
            "(define-fun quill!named_1 () Bool (! (<= x 0) :named n))\n"
            "(assert (or p (<= x 0)))\n");
}

// No definition may come between an answer and what is asked about it.
TEST(NamedTerms, OfUnusedVariablesInQuestionsAreDefinedBeforeTheAnswer) {
  const std::string question = "(get-value ((let ((y (! (<= x 0) :named n))) p)))";
  const std::string definition = "(define-fun quill!named_1 () Bool (! (<= x 0) :named n))\n";
  EXPECT_EQ(named("(check-sat)(get-info :name)" + question),
            definition + "(check-sat)\n(get-info :name)\n(get-value (p))\n");
  EXPECT_EQ(named("(check-sat)(get-assignment)" + question),
            "(check-sat)\n(get-assignment)\n" + definition + "(get-value (p))\n");
}

TEST(NamedTerms, ThatAreAddedClashWithNothing) {
  EXPECT_EQ(
      named("(declare-const quill!named_1 Bool)(define-fun quill!named_3 () Bool (! q :named k))"
            "(assert (let ((a (! p :named m)) (b (! q :named n))) quill!named_1))"
            "(assert (! q :named quill!named_4))"),
      "(declare-const quill!named_1 Bool)\n"
      "(define-fun quill!named_3 () Bool (! q :named k))\n"
      "(define-fun quill!named_2 () Bool (! p :named m))\n"
      "(define-fun quill!named_5 () Bool (! q :named n))\n"
      "(assert quill!named_1)\n"
      "(assert (! q :named quill!named_4))\n");
}

// ----- commands with several terms --------------------------------------------------------------

TEST(NamedTerms, AreNamedOnceInACommand) {
  EXPECT_EQ(named("(check-sat-assuming ((! p :named n) (or p q)))"),
            "(check-sat-assuming ((! p :named n) (or n q)))\n");
  EXPECT_EQ(
      named("(check-sat)(get-value ((or p q) (! (and p (! q :named m)) :named n) m (and p q)))"),
      "(check-sat)\n(get-value ((or p (! q :named m)) (! (and p m) :named n) m n))\n");
}

// ----- labels -----------------------------------------------------------------------------------

TEST(NamedTerms, OfDefinitionsAreNoLabels) {
  const std::string text =
      "(define-fun f () Bool (! (<= x 0) :named n))\n(assert f)\n(assert (! (<= 1 x) :named k))\n"
      "(check-sat)\n(get-unsat-core)\n";
  EXPECT_EQ(named(text), text);
}

TEST(NamedTerms, ArePutOnNamesAndKeptDefinitions) {
  const std::string text =
      "(define-fun f () Bool (! (<= x 0) :named n))\n(assert (! f :named m))\n"
      "(assert (! n :named k))\n(define-fun g () Bool (! f :named l))\n";
  EXPECT_EQ(named(text), text);
}

TEST(NamedTerms, OfArgumentsAreNoLabelsOfTheResult) {
  EXPECT_EQ(named("(define-fun same ((b Bool)) Bool b)(assert (same (! p :named n)))"
                  "(assert (! (same (! q :named a)) :named b))"),
            "(define-fun quill!named_1 () Bool (! p :named n))\n"
            "(assert p)\n"
            "(define-fun quill!named_2 () Bool (! q :named a))\n"
            "(assert (! q :named b))\n");
}

TEST(NamedTerms, AreLabelsThroughLetAndInnerAnnotations) {
  EXPECT_EQ(named("(assert (let ((y (! (<= x 0) :named a))) y))"
                  "(assert (! (! (or p q) :named b) :named c))"
                  "(assert (! (or (! p :named d) q) :named e :named f))"),
            "(assert (! (<= x 0) :named a))\n"
            "(assert (! (or p q) :named b :named c))\n"
            "(assert (! (or (! p :named d) q) :named e :named f))\n");
}

// ----- sorts ------------------------------------------------------------------------------------

TEST(NamedTerms, KeepTheirSort) {
  const std::string real = "(declare-const y Real)\n";
  EXPECT_EQ(named(real + "(assert (= y (! (to_real x) :named n)))(get-value (n))"),
            real + "(define-fun quill!named_1 () Real (! (to_real x) :named n))\n" +
                "(assert (= y (to_real x)))\n(get-value (n))\n");
  EXPECT_EQ(named(real + "(assert (and (= y 3.0) (= x (! 3 :named n))))"),
            real + "(assert (and (= y 3.0) (= x (! 3 :named n))))\n");
  EXPECT_EQ(named(real + "(assert (and (= x 3) (= y (! 3.0 :named n))))"),
            real + "(define-fun quill!named_1 () Real (! 3.0 :named n))\n" +
                "(assert (and (= x 3) (= y 3.0)))\n");
}

// ----- what the standard has no operator for ----------------------------------------------------

// The assertion as written lacks the named value in the middle, because the bits are extended.
TEST(NamedTerms, ThatAnEncodingHidesGetADefinition) {
  const std::string bits = "(declare-const b (_ BitVec 4))\n";
  EXPECT_EQ(
      named(bits + "(assert (= ((_ int2bv 6) (! (bv2nat b) :named n)) #b000000))(get-value (n))"),
      bits + "(define-fun quill!named_1 () Int (! (bv2nat b) :named n))\n" +
          "(assert (= ((_ zero_extend 2) b) (_ bv0 6)))\n(get-value (n))\n");
}

// The definition is not kept when its only name is given elsewhere.
TEST(NamedTerms, BelowTheBitsOfAValueGetADefinition) {
  EXPECT_EQ(named("(declare-const f (_ FloatingPoint 2 3))"
                  "(define-fun d () (_ BitVec 5) (fp.to_ieee_bv (! (fp.neg f) :named n)))"
                  "(get-value (d n))"),
            "(declare-const f (_ FloatingPoint 2 3))\n"
            "(declare-const quill!ieee_nan_1 (_ BitVec 5))\n"
            "(declare-const quill!ieee_bits_1 (_ BitVec 5))\n"
            "(assert (and (= ((_ to_fp 2 3) quill!ieee_bits_1) (fp.neg f)) "
            "(or (not (fp.isNaN (fp.neg f))) (= quill!ieee_bits_1 quill!ieee_nan_1))))\n"
            "(define-fun quill!named_1 () (_ FloatingPoint 2 3) (! (fp.neg f) :named n))\n"
            "(get-value (quill!ieee_bits_1 n))\n");
}

// ----- terms that need let ----------------------------------------------------------------------

// Some readers refuse names within let.
TEST(NamedTerms, ThatWouldBeNamedWithinLetGetADefinition) {
  std::string script = "(define-fun f0 ((y Bool)) Bool (xor y (not y)))";
  for (int i = 1; i <= 4; ++i) {
    const std::string before = "f" + std::to_string(i - 1);
    script += "(define-fun f" + std::to_string(i) + " ((y Bool)) Bool (" + before + " (" + before +
              " y)))";
  }
  const std::string text = named(script + "(assert (f4 (! (and p q) :named n)))");
  EXPECT_EQ(text.substr(0, text.find("(assert")),
            "(define-fun quill!named_1 () Bool (! (and p q) :named n))\n");
  EXPECT_EQ(text.find("named", text.find("(assert")), std::string::npos);
}

// Terms that are not annotated in the end stay shared.
TEST(NamedTerms, ThatAreDefinedApartLeaveTheCommandItsLets) {
  EXPECT_EQ(named("(assert (distinct 6 0.5 (! 6 :named n) 17))"),
            "(define-fun quill!named_1 () Int (! 6 :named n))\n"
            "(assert (let ((@1 (not (= 6.0 17.0)))) (and (not (= 6.0 (/ 1.0 2.0))) "
            "(not (= 6.0 6.0)) @1 (not (= (/ 1.0 2.0) 6.0)) (not (= (/ 1.0 2.0) 17.0)) @1)))\n");
  EXPECT_EQ(named("(assert (and (= (to_real (! 6 :named n)) 0.5) (not (! (and p q) :named m))"
                  "(or (distinct 6 0.5 6 17) q)))"),
            "(define-fun quill!named_1 () Int (! 6 :named n))\n"
            "(assert (and (= 6.0 (/ 1.0 2.0)) (not (! (and p q) :named m)) "
            "(let ((@1 (not (= 6.0 17.0)))) (or (and (not (= 6.0 (/ 1.0 2.0))) (not (= 6.0 6.0)) "
            "@1 (not (= (/ 1.0 2.0) 6.0)) (not (= (/ 1.0 2.0) 17.0)) @1) q))))\n");
}

}  // namespace
}  // namespace quill::smt2
