#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "quill/derived/derived.h"
#include "quill/printers/smtlib2_term_printer.h"
#include "quill/smtlib/name_escape.h"
#include "tests/support/manager_test.h"

namespace quill {
namespace {

using Annotations = SmtLib2TermPrinter::Annotations;

std::string repeat(std::string_view text, size_t times) {
  std::string out;
  for (size_t n = 0; n < times; ++n) out += text;
  return out;
}

class SmtLib2Printer : public testing::ManagerTest {
 protected:
  const Symbol* function(const char* name, const std::vector<const DataType*>& args,
                         const DataType* result) {
    return m.make_symbol(name, m.get_function_type(args, result));
  }
  const Term_* number(const QNumber& value) { return m.make_number(value); }
  const Term_* apply(const Symbol* s, const std::vector<const Term_*>& args) {
    return m.make_uninterpreted_function(s, args);
  }

  std::string text(const Term_* t) {
    std::ostringstream out;
    SmtLib2TermPrinter(&m, nullptr, "", "", true, nullptr).print_atom(out, t, true);
    return out.str();
  }
  std::string tree(const Term_* t) {
    std::ostringstream out;
    SmtLib2TermPrinter(&m, nullptr, "", "", false, nullptr).print_atom(out, t, true);
    return out.str();
  }
  std::string annotated(const Term_* t, const Annotations& annotations) {
    std::ostringstream out;
    SmtLib2TermPrinter(&m, nullptr, "", "", true, &annotations).print_atom(out, t, true);
    return out.str();
  }

  const DataType* const bool_type = m.get_bool_type();
  const DataType* const int_type = m.get_int_type();
  const DataType* const real_type = m.get_rat_type();
  const Term_* const p = constant("p", bool_type);
  const Term_* const q = constant("q", bool_type);
  const Term_* const r = constant("r", bool_type);
  const Term_* const i = constant("i", int_type);
  const Term_* const j = constant("j", int_type);
  const Term_* const k = constant("k", int_type);
  const Term_* const x = constant("x", real_type);
  const Term_* const y = constant("y", real_type);
};

// --- Operators ---

TEST_F(SmtLib2Printer, OperatorsHaveTheirNamesInTheStandard) {
  const struct {
    const Term_* term;
    const char* expected;
  } cases[] = {
      {m.make_true(), "true"},
      {m.make_false(), "false"},
      {p, "p"},
      {m.make_not(p), "(not p)"},
      {m.make_and(p, q), "(and p q)"},
      {m.make_or(p, q), "(or p q)"},
      {m.make_iff(p, q), "(= p q)"},
      {m.make_plus(i, j), "(+ i j)"},
      {m.make_plus(x, y), "(+ x y)"},
      {m.make_times(i, j), "(* i j)"},
      {m.make_times(x, y), "(* x y)"},
      {m.make_leq(i, j), "(<= i j)"},
      {m.make_leq(x, y), "(<= x y)"},
      {m.make_equal(i, j), "(= i j)"},
      {m.make_equal(x, y), "(= x y)"},
      {m.make_floor(x), "(to_int x)"},
      {m.make_term_ite(p, i, j), "(ite p i j)"},
      {m.make_term_ite(p, x, y), "(ite p x y)"},
  };
  for (const auto& [term, expected] : cases) EXPECT_EQ(text(term), expected);
}

TEST_F(SmtLib2Printer, EqualityAndIfThenElseOfOtherTypes) {
  const DataType* sort = m.get_simple_type("U", false);
  const Term_* u = constant("u", sort);
  const Term_* v = constant("v", sort);
  EXPECT_EQ(text(m.make_equal(u, v)), "(= u v)");
  EXPECT_EQ(text(m.make_term_ite(p, u, v)), "(ite p u v)");
}

TEST_F(SmtLib2Printer, UsersFunctionsAreWrittenByName) {
  const Symbol* f = function("f", {int_type, real_type}, int_type);
  const Symbol* g = function("a function", {int_type}, int_type);
  EXPECT_EQ(text(apply(f, {i, x})), "(f i x)");
  EXPECT_EQ(text(apply(g, {apply(f, {j, y})})), "(|a function| (f j y))");
}

TEST_F(SmtLib2Printer, NamesAreQuotedAndEscaped) {
  EXPECT_EQ(text(constant("a b", bool_type)), "|a b|");
  EXPECT_EQ(text(constant("a|b", bool_type)), "quill!a!7cb");
  EXPECT_EQ(text(constant("and", bool_type)), "quill!and");
  EXPECT_EQ(text(constant(name_from_smtlib("7", NameKind::Symbol), int_type)), "|7|");
  EXPECT_EQ(text(m.make_fresh_variable(int_type)), "|'1|");
}

// --- Operators of any number of operands ---

TEST_F(SmtLib2Printer, LeftChainsAreWrittenInOnePairOfParentheses) {
  EXPECT_EQ(text(make_and(m, {p, q, r, p})), "(and p q r p)");
  EXPECT_EQ(text(make_or(m, {p, q, r})), "(or p q r)");
  EXPECT_EQ(text(make_plus(m, {i, j, k})), "(+ i j k)");
  EXPECT_EQ(text(make_times(m, {x, y, x})), "(* x y x)");
}

TEST_F(SmtLib2Printer, RightOperandsStayNested) {
  EXPECT_EQ(text(m.make_and(p, m.make_and(q, r))), "(and p (and q r))");
  EXPECT_EQ(text(m.make_plus(i, m.make_plus(j, k))), "(+ i (+ j k))");
  EXPECT_EQ(text(m.make_and(m.make_and(p, q), m.make_and(q, r))), "(and p q (and q r))");
}

TEST_F(SmtLib2Printer, DifferentOperatorsStayNested) {
  EXPECT_EQ(text(m.make_or(m.make_and(p, q), r)), "(or (and p q) r)");
  EXPECT_EQ(text(m.make_times(m.make_plus(i, j), k)), "(* (+ i j) k)");
}

TEST_F(SmtLib2Printer, OtherOperatorsStayNested) {
  EXPECT_EQ(text(m.make_iff(m.make_iff(p, q), r)), "(= (= p q) r)");
  const Symbol* f = function("f", {int_type, int_type}, int_type);
  EXPECT_EQ(text(apply(f, {apply(f, {i, j}), k})), "(f (f i j) k)");
}

TEST_F(SmtLib2Printer, IntSumsStayNestedInRealSums) {
  EXPECT_EQ(text(m.make_plus(m.make_plus(i, j), x)), "(+ (to_real (+ i j)) x)");
}

TEST_F(SmtLib2Printer, SharedOperandsStayNested) {
  const Term_* both = m.make_and(p, q);
  EXPECT_EQ(text(m.make_or(m.make_and(both, r), both)),
            "(let ((@1 (and p q))) (or (and @1 r) @1))");
  EXPECT_EQ(text(m.make_and(both, both)), "(let ((@1 (and p q))) (and @1 @1))");
}

// --- Differences ---

TEST_F(SmtLib2Printer, DifferencesAndNegations) {
  EXPECT_EQ(text(make_minus(m, i, j)), "(- i j)");
  EXPECT_EQ(text(make_minus(m, x, y)), "(- x y)");
  EXPECT_EQ(text(make_minus(m, i)), "(- i)");
  EXPECT_EQ(text(make_minus(m, make_minus(m, i))), "(- (- i))");
  EXPECT_EQ(text(make_minus(m, i, number(3))), "(- i 3)");
  EXPECT_EQ(text(make_minus(m, number(5), number(3))), "(- 5 3)");
  EXPECT_EQ(text(make_minus(m, x, number(3))), "(+ x (to_real (* (- 1) 3)))");
  EXPECT_EQ(text(make_minus(m, i, make_minus(m, j))), "(- i (- j))");
  EXPECT_EQ(text(make_minus(m, m.make_plus(i, j))), "(- (+ i j))");
}

TEST_F(SmtLib2Printer, ChainsOfDifferences) {
  EXPECT_EQ(text(make_minus(m, make_minus(m, i, j), k)), "(- i j k)");
  EXPECT_EQ(text(make_minus(m, i, make_minus(m, j, k))), "(- i (- j k))");
  EXPECT_EQ(text(m.make_plus(make_minus(m, i, j), k)), "(+ (- i j) k)");
  EXPECT_EQ(text(make_minus(m, m.make_plus(i, j), k)), "(- (+ i j) k)");
}

TEST_F(SmtLib2Printer, ProductsWithMinusOneThatAreNoDifferences) {
  const Term_* minus_one = number(-1);
  EXPECT_EQ(text(m.make_times(minus_one, number(3))), "(* (- 1) 3)");
  EXPECT_EQ(text(m.make_times(minus_one, number(QNumber(1, 3)))), "(* (- 1.0) (/ 1.0 3.0))");
  EXPECT_EQ(text(m.make_times(i, minus_one)), "(* i (- 1))");
  EXPECT_EQ(text(m.make_times(number(-2), i)), "(* (- 2) i)");
  EXPECT_EQ(text(m.make_plus(make_minus(m, i), j)), "(+ (- i) j)");
  EXPECT_EQ(text(m.make_times(m.make_times(minus_one, i), j)), "(* (- i) j)");
}

TEST_F(SmtLib2Printer, NegatedIntInARealSumIsNotSubtracted) {
  EXPECT_EQ(text(make_minus(m, x, i)), "(+ x (to_real (- i)))");
}

TEST_F(SmtLib2Printer, NegationOverRealOfAnInt) {
  const Symbol* times = m.get_signature()->get_symbol("`*_rat`");
  EXPECT_EQ(text(m.make_term(times, {number(-1), i})), "(- (to_real i))");
}

TEST_F(SmtLib2Printer, SharedOperandsOfDifferencesAreBound) {
  const Term_* sum = m.make_plus(i, j);
  EXPECT_EQ(text(m.make_leq(make_minus(m, k, sum), sum)), "(let ((@1 (+ i j))) (<= (- k @1) @1))");
}

TEST_F(SmtLib2Printer, SharedDifferencesDoNotOpenUp) {
  const Term_* difference = make_minus(m, i, j);
  EXPECT_EQ(text(m.make_leq(make_minus(m, difference, k), difference)),
            "(let ((@1 (- i j))) (<= (- @1 k) @1))");
}

// --- Int and Real ---

TEST_F(SmtLib2Printer, IntTermsInRealPlacesAreConverted) {
  const Symbol* f = function("f", {real_type}, real_type);
  EXPECT_EQ(text(m.make_plus(x, i)), "(+ x (to_real i))");
  EXPECT_EQ(text(m.make_leq(i, x)), "(<= (to_real i) x)");
  EXPECT_EQ(text(m.make_equal(i, x)), "(= (to_real i) x)");
  EXPECT_EQ(text(m.make_term_ite(p, i, x)), "(ite p (to_real i) x)");
  EXPECT_EQ(text(m.make_floor(i)), "(to_int (to_real i))");
  EXPECT_EQ(text(apply(f, {i})), "(f (to_real i))");
  EXPECT_EQ(text(m.make_plus(x, m.make_times(number(2), i))), "(+ x (to_real (* 2 i)))");
  EXPECT_EQ(text(m.make_equal(x, m.make_floor(x))), "(= x (to_real (to_int x)))");
}

TEST_F(SmtLib2Printer, NumeralsInRealPlacesAreDecimals) {
  const Symbol* f = function("f", {real_type}, real_type);
  EXPECT_EQ(text(m.make_plus(x, number(3))), "(+ x 3.0)");
  EXPECT_EQ(text(m.make_times(number(2), x)), "(* 2.0 x)");
  EXPECT_EQ(text(m.make_leq(x, number(-3))), "(<= x (- 3.0))");
  EXPECT_EQ(text(m.make_equal(number(0), x)), "(= 0.0 x)");
  EXPECT_EQ(text(m.make_term_ite(p, number(1), x)), "(ite p 1.0 x)");
  EXPECT_EQ(text(m.make_floor(number(3))), "(to_int 3.0)");
  EXPECT_EQ(text(apply(f, {number(3)})), "(f 3.0)");
}

TEST_F(SmtLib2Printer, ANumeralIsWrittenAsEachPlaceAsks) {
  const Symbol* f = function("f", {int_type, real_type, int_type, real_type, int_type}, bool_type);
  EXPECT_EQ(text(apply(f, {number(1), number(1), number(1), number(1), number(1)})),
            "(f 1 1.0 1 1.0 1)");
}

TEST_F(SmtLib2Printer, Numerals) {
  EXPECT_EQ(text(number(3)), "3");
  EXPECT_EQ(text(number(-3)), "(- 3)");
  EXPECT_EQ(text(number(QNumber(1, 3))), "(/ 1.0 3.0)");
  EXPECT_EQ(text(number(QNumber(-1, 3))), "(- (/ 1.0 3.0))");
  EXPECT_EQ(text(m.make_plus(i, number(-3))), "(+ i (- 3))");
  EXPECT_EQ(text(m.make_plus(x, number(QNumber(-22, 7)))), "(+ x (- (/ 22.0 7.0)))");
}

TEST_F(SmtLib2Printer, NumeralOfTypeRealIsADecimal) {
  const Term_* seven = constant("7", real_type);
  EXPECT_EQ(m.make_number(7), seven);
  EXPECT_EQ(text(seven), "7.0");
}

TEST_F(SmtLib2Printer, BitVectorNumerals) {
  EXPECT_EQ(text(m.make_bv_number(5, 8)), "(_ bv5 8)");
  EXPECT_EQ(text(m.make_bv_number(QNumber::from_string("18446744073709551616"), 65)),
            "(_ bv18446744073709551616 65)");
  const Term_* b = constant("b", m.get_bv_type(8));
  EXPECT_EQ(text(m.make_equal(b, m.make_bv_number(255, 8))), "(= b (_ bv255 8))");
}

TEST_F(SmtLib2Printer, PlaceOfTheWholeTermMayAskForAReal) {
  SmtLib2TermPrinter printer(&m, nullptr, "", "", true, nullptr);
  const auto in_real_place = [&](const Term_* t) {
    std::ostringstream out;
    printer.print_term(out, t, real_type);
    return out.str();
  };
  const Term_* sum = m.make_plus(i, j);
  EXPECT_EQ(in_real_place(i), "(to_real i)");
  EXPECT_EQ(in_real_place(number(3)), "3.0");
  EXPECT_EQ(in_real_place(x), "x");
  EXPECT_EQ(in_real_place(m.make_times(sum, sum)), "(let ((@1 (+ i j))) (to_real (* @1 @1)))");
}

TEST_F(SmtLib2Printer, BoundIntTermIsConvertedWhereItIsUsed) {
  const Term_* sum = m.make_plus(i, j);
  EXPECT_EQ(text(m.make_and(m.make_leq(sum, x), m.make_leq(sum, k))),
            "(let ((@1 (+ i j))) (and (<= (to_real @1) x) (<= @1 k)))");
}

// --- Sharing ---

TEST_F(SmtLib2Printer, BindingsAreGroupedByLevel) {
  const Term_* ij = m.make_plus(i, j);
  const Term_* ji = m.make_plus(j, i);
  const Term_* product = m.make_times(ij, ji);
  EXPECT_EQ(text(m.make_plus(m.make_times(product, product), m.make_plus(ij, ji))),
            "(let ((@1 (+ i j)) (@2 (+ j i))) (let ((@3 (* @1 @2))) "
            "(+ (* @3 @3) (+ @1 @2))))");
}

TEST_F(SmtLib2Printer, BindingsAreInTheLastLetThatServes) {
  const Term_* ij = m.make_plus(i, j);
  const Term_* ji = m.make_plus(j, i);
  const Term_* product = m.make_times(ij, ij);
  EXPECT_EQ(text(m.make_and(m.make_leq(product, product), m.make_leq(ji, ji))),
            "(let ((@1 (+ i j))) (let ((@2 (* @1 @1)) (@3 (+ j i))) "
            "(and (<= @2 @2) (<= @3 @3))))");
}

TEST_F(SmtLib2Printer, TinyTermsAreWrittenAgain) {
  const Symbol* f = function("f", {int_type}, int_type);
  const Term_* not_p = m.make_not(p);
  const Term_* minus = make_minus(m, i);
  const Term_* floor = m.make_floor(x);
  const Term_* application = apply(f, {i});
  EXPECT_EQ(text(m.make_iff(not_p, not_p)), "(= (not p) (not p))");
  EXPECT_EQ(text(m.make_leq(minus, minus)), "(<= (- i) (- i))");
  EXPECT_EQ(text(m.make_leq(floor, floor)), "(<= (to_int x) (to_int x))");
  EXPECT_EQ(text(m.make_leq(application, application)), "(<= (f i) (f i))");
}

TEST_F(SmtLib2Printer, ConstantFactorsStayInOnePairOfParentheses) {
  const Term_* six = m.make_times(number(2), number(3));
  EXPECT_EQ(text(m.make_leq(m.make_times(six, i), m.make_times(six, j))),
            "(<= (* 2 3 i) (* 2 3 j))");
  EXPECT_EQ(text(m.make_leq(m.make_times(six, x), m.make_times(six, y))),
            "(<= (* (to_real (* 2 3)) x) (* (to_real (* 2 3)) y))");
}

TEST_F(SmtLib2Printer, ConstantFactorsOfTypeRealStayInOnePairOfParentheses) {
  const Term_* product = m.make_times(number(QNumber(1, 2)), number(3));
  EXPECT_EQ(text(m.make_leq(m.make_times(product, x), m.make_times(product, y))),
            "(<= (* (/ 1.0 2.0) 3.0 x) (* (/ 1.0 2.0) 3.0 y))");
}

TEST_F(SmtLib2Printer, WithoutSharingTheTermIsATree) {
  const Term_* both = m.make_and(p, q);
  const Term_* t = m.make_iff(both, m.make_not(both));
  EXPECT_EQ(tree(t), "(= (and p q) (not (and p q)))");
  EXPECT_EQ(tree(m.make_and(both, both)), "(and p q (and p q))");
}

// Written as a tree, what is above the annotated term would have 2^40 leaves.
TEST_F(SmtLib2Printer, SharingAboveAnAnnotationStaysLinear) {
  SmtLib2TermPrinter::Annotations annotations;
  annotations[p] = {{"named", "n"}};
  const Term_* t = m.make_and(p, q);
  for (int level = 0; level < 40; ++level) t = m.make_or(m.make_and(t, q), m.make_not(t));
  SmtLib2TermPrinter printer(&m, nullptr, "", "", true, &annotations);
  std::ostringstream out;
  printer.print_term(out, t);
  EXPECT_LT(out.str().size(), 5000U);
  EXPECT_EQ(out.str().substr(0, 90),
            "(let ((@1 (and (! p :named n) q))) (let ((@2 (or (and @1 q) (not @1)))) (let ((@3 (or "
            "(and");
}

TEST_F(SmtLib2Printer, AnEmptyListOfAnnotationsIsNone) {
  SmtLib2TermPrinter::Annotations annotations;
  annotations[p];
  SmtLib2TermPrinter printer(&m, nullptr, "", "", true, &annotations);
  std::ostringstream out;
  printer.print_term(out, m.make_and(p, q));
  EXPECT_EQ(out.str(), "(and p q)");
}

TEST_F(SmtLib2Printer, PrefixesOfNamesCanBeChosen) {
  SmtLib2TermPrinter printer(&m, nullptr, "?v", "u!", true, nullptr);
  const Term_* both = m.make_and(constant("a|b", bool_type), p);
  std::ostringstream out;
  printer.print_term(out, m.make_iff(both, both));
  EXPECT_EQ(out.str(), "(let ((?v1 (and u!a!7cb p))) (= ?v1 ?v1))");
}

TEST_F(SmtLib2Printer, EveryTermHasLetsOfItsOwn) {
  SmtLib2TermPrinter printer(&m, nullptr, "", "", true, nullptr);
  const Term_* both = m.make_and(p, q);
  std::ostringstream out;
  printer.print_term(out, m.make_iff(both, both));
  out << '\n';
  printer.print_term(out, both);
  EXPECT_EQ(out.str(), "(let ((@1 (and p q))) (= @1 @1))\n(and p q)");
}

// --- Size ---

TEST_F(SmtLib2Printer, DoublingGraphIsWrittenInLinearSize) {
  const Term_* t = i;
  for (int n = 0; n < 100; ++n) t = m.make_plus(t, t);
  std::string expected = "(let ((@1 (+ i i))) ";
  for (int n = 1; n < 99; ++n) {
    const std::string before = "@" + std::to_string(n);
    expected += "(let ((@" + std::to_string(n + 1) + " (+ " + before + " " + before + "))) ";
  }
  expected += "(+ @99 @99)" + std::string(99, ')');
  EXPECT_EQ(text(t), expected);
}

TEST_F(SmtLib2Printer, ChainOfAMillionIsWritten) {
  constexpr size_t depth = 1000000;
  const Symbol* f = function("f", {int_type}, int_type);
  const Term_* t = i;
  for (size_t n = 0; n < depth; ++n) t = apply(f, {t});
  EXPECT_TRUE(text(t) == repeat("(f ", depth) + "i" + std::string(depth, ')'));
}

TEST_F(SmtLib2Printer, AMillionOperandsAreWrittenInOnePairOfParentheses) {
  constexpr size_t count = 1000000;
  const std::vector<const Term_*> operands(count, p);
  EXPECT_TRUE(text(make_and(m, operands)) == "(and" + repeat(" p", count) + ")");
}

TEST_F(SmtLib2Printer, AMillionOperandsToTheRightAreWritten) {
  constexpr size_t count = 1000000;
  const Term_* t = p;
  for (size_t n = 1; n < count; ++n) t = m.make_and(p, t);
  EXPECT_TRUE(text(t) == repeat("(and p ", count - 1) + "p" + std::string(count - 1, ')'));
}

TEST_F(SmtLib2Printer, AHundredThousandNestedLetsAreWritten) {
  const Term_* t = i;
  for (int n = 0; n < 100000; ++n) t = m.make_plus(t, t);
  const std::string written = text(t);
  EXPECT_EQ(written.substr(0, 33), "(let ((@1 (+ i i))) (let ((@2 (+ ");
  EXPECT_EQ(written.substr(written.size() - 99999 - 18, 19), " (+ @99999 @99999))");
}

TEST_F(SmtLib2Printer, ChainAboveAnAnnotationIsWritten) {
  constexpr size_t depth = 100000;
  const Symbol* f = function("f", {int_type}, int_type);
  const Term_* t = i;
  for (size_t n = 0; n < depth; ++n) t = apply(f, {t});
  Annotations annotations;
  annotations[i] = {{"named", "n"}};
  EXPECT_TRUE(annotated(t, annotations) ==
              repeat("(f ", depth) + "(! i :named n)" + std::string(depth, ')'));
}

// --- Annotations ---

TEST_F(SmtLib2Printer, AnnotationsStandBehindTheTerm) {
  Annotations annotations;
  const Term_* both = m.make_and(p, q);
  annotations[both] = {{"named", "n"}};
  EXPECT_EQ(annotated(both, annotations), "(! (and p q) :named n)");
}

TEST_F(SmtLib2Printer, KeysMayHaveTheirColon) {
  Annotations annotations;
  annotations[p] = {{":named", "n"}};
  EXPECT_EQ(annotated(p, annotations), "(! p :named n)");
}

TEST_F(SmtLib2Printer, SeveralAnnotationsStandInOrder) {
  Annotations annotations;
  annotations[p] = {{"weight", "5"}, {":named", "n"}, {"pattern", "(p)"}};
  EXPECT_EQ(annotated(m.make_not(p), annotations), "(not (! p :weight 5 :named n :pattern (p)))");
}

TEST_F(SmtLib2Printer, NamedTermsAreWrittenByNameTheSecondTime) {
  Annotations annotations;
  const Term_* both = m.make_and(p, q);
  annotations[both] = {{":weight", "5"}, {":named", "n"}};
  EXPECT_EQ(annotated(m.make_or(m.make_not(both), both), annotations),
            "(or (not (! (and p q) :weight 5 :named n)) n)");
  EXPECT_EQ(annotated(m.make_iff(both, both), annotations),
            "(= (! (and p q) :weight 5 :named n) n)");
}

TEST_F(SmtLib2Printer, AnnotationsWithoutNameAreWrittenEachTime) {
  Annotations annotations;
  annotations[p] = {{"weight", "5"}};
  EXPECT_EQ(annotated(m.make_iff(p, p), annotations), "(= (! p :weight 5) (! p :weight 5))");
}

TEST_F(SmtLib2Printer, FirstOccurrenceIsTheFirstInTheText) {
  Annotations annotations;
  const Term_* both = m.make_and(p, q);
  const Term_* t = m.make_and(m.make_and(r, m.make_not(both)), both);
  annotations[both] = {{"named", "n"}};
  EXPECT_EQ(annotated(t, annotations), "(and r (not (! (and p q) :named n)) n)");
}

TEST_F(SmtLib2Printer, AnnotationsMayBeNested) {
  Annotations annotations;
  const Term_* both = m.make_and(p, q);
  const Term_* t = m.make_not(both);
  annotations[both] = {{"named", "inner"}};
  annotations[t] = {{"named", "outer"}};
  EXPECT_EQ(annotated(m.make_or(t, both), annotations),
            "(or (! (not (! (and p q) :named inner)) :named outer) inner)");
}

TEST_F(SmtLib2Printer, LetsStandInsideAnAnnotation) {
  Annotations annotations;
  const Term_* both = m.make_and(p, q);
  const Term_* t = m.make_iff(both, both);
  annotations[t] = {{"named", "top"}};
  EXPECT_EQ(annotated(t, annotations), "(! (let ((@1 (and p q))) (= @1 @1)) :named top)");
}

TEST_F(SmtLib2Printer, LetsStandBesideAnAnnotatedTerm) {
  Annotations annotations;
  const Term_* both = m.make_and(p, q);
  annotations[r] = {{"named", "n"}};
  EXPECT_EQ(annotated(m.make_or(m.make_iff(both, both), r), annotations),
            "(or (let ((@1 (and p q))) (= @1 @1)) (! r :named n))");
}

TEST_F(SmtLib2Printer, AnnotatedTermsAreNeverInsideALet) {
  Annotations annotations;
  const Term_* both = m.make_and(p, q);
  const Term_* either = m.make_or(r, p);
  annotations[either] = {{"named", "n"}};
  EXPECT_EQ(annotated(m.make_or(m.make_iff(both, either), both), annotations),
            "(or (= (and p q) (! (or r p) :named n)) (and p q))");
}

TEST_F(SmtLib2Printer, SharedTermAboveAnAnnotatedOneIsWrittenAgain) {
  Annotations annotations;
  const Term_* both = m.make_and(p, q);
  annotations[p] = {{"named", "n"}};
  EXPECT_EQ(annotated(m.make_iff(both, both), annotations), "(= (and (! p :named n) q) (and n q))");
}

TEST_F(SmtLib2Printer, AnnotatedOperandsStayNested) {
  Annotations annotations;
  const Term_* both = m.make_and(p, q);
  annotations[both] = {{"named", "n"}};
  EXPECT_EQ(annotated(m.make_and(both, r), annotations), "(and (! (and p q) :named n) r)");
}

TEST_F(SmtLib2Printer, OperandsAboveAnAnnotatedTermOpenUp) {
  Annotations annotations;
  annotations[p] = {{"named", "n"}};
  EXPECT_EQ(annotated(make_and(m, {p, q, r}), annotations), "(and (! p :named n) q r)");
  EXPECT_EQ(annotated(make_and(m, {q, r, p}), annotations), "(and q r (! p :named n))");
}

TEST_F(SmtLib2Printer, AnnotatedIntTermIsConvertedOutsideItsAnnotation) {
  Annotations annotations;
  const Term_* sum = m.make_plus(i, j);
  annotations[sum] = {{"named", "s"}};
  EXPECT_EQ(annotated(m.make_leq(sum, x), annotations), "(<= (to_real (! (+ i j) :named s)) x)");
  EXPECT_EQ(annotated(m.make_and(m.make_leq(sum, x), m.make_leq(x, sum)), annotations),
            "(and (<= (to_real (! (+ i j) :named s)) x) (<= x (to_real s)))");
}

TEST_F(SmtLib2Printer, AnnotatedNegationIsNotHiddenInADifference) {
  Annotations annotations;
  const Term_* minus = make_minus(m, j);
  annotations[minus] = {{"named", "n"}};
  EXPECT_EQ(annotated(m.make_plus(i, minus), annotations), "(+ i (! (- j) :named n))");
}

TEST_F(SmtLib2Printer, AnnotationsElsewhereDoNotMatter) {
  Annotations annotations;
  annotations[r] = {{"named", "n"}};
  const Term_* both = m.make_and(p, q);
  EXPECT_EQ(annotated(m.make_iff(both, both), annotations), "(let ((@1 (and p q))) (= @1 @1))");
}

TEST_F(SmtLib2Printer, AnnotationsCanBeLeftOut) {
  Annotations annotations;
  const Term_* both = m.make_and(p, q);
  annotations[both] = {{"named", "n"}};
  SmtLib2TermPrinter printer(&m, nullptr, "", "", true, &annotations);
  std::ostringstream out;
  printer.print_atom(out, m.make_iff(both, both), /*with_annotations=*/false);
  EXPECT_EQ(out.str(), "(let ((@1 (and p q))) (= @1 @1))");
}

// --- Independence ---

TEST_F(SmtLib2Printer, PrintingLeavesTheManagerAsItWas) {
  const auto sizes = [this] {
    return std::array<size_t, 3>{m.get_universe()->size(), m.get_signature()->size(),
                                 m.get_bank()->size()};
  };
  const Term_* sum = m.make_plus(i, make_minus(m, j));
  const Term_* t = m.make_and(m.make_leq(sum, x), m.make_equal(sum, number(-3)));
  Annotations annotations;
  annotations[sum] = {{"named", "s"}};
  const auto before = sizes();
  const std::string first = text(t);
  tree(t);
  annotated(t, annotations);
  EXPECT_EQ(sizes(), before);
  EXPECT_EQ(text(t), first);
}

TEST_F(SmtLib2Printer, TextDoesNotDependOnTheHistoryOfTheManager) {
  // The same term twice; in the second manager its parts are made among others, in another order.
  const Term_* ij = m.make_plus(i, j);
  const Term_* ji = m.make_plus(j, i);
  const Term_* t = m.make_and(m.make_leq(m.make_times(ij, ji), ji), m.make_leq(ji, ij));

  TermManager other;
  for (int n = 0; n < 100; ++n) other.make_number(n);
  const DataType* type = other.get_int_type();
  const Term_* j2 = other.make_constant(other.make_symbol("j", type));
  const Term_* i2 = other.make_constant(other.make_symbol("i", type));
  const Term_* ji2 = other.make_plus(j2, i2);
  const Term_* ij2 = other.make_plus(i2, j2);
  const Term_* right = other.make_leq(ji2, ij2);
  const Term_* left = other.make_leq(other.make_times(ij2, ji2), ji2);
  std::ostringstream out;
  SmtLib2TermPrinter(&other, nullptr, "", "", true, nullptr)
      .print_term(out, other.make_and(left, right));

  const char* const expected =
      "(let ((@1 (+ i j)) (@2 (+ j i))) (and (<= (* @1 @2) @2) (<= @2 @1)))";
  EXPECT_EQ(text(t), expected);
  EXPECT_EQ(out.str(), expected);
}

}  // namespace
}  // namespace quill
