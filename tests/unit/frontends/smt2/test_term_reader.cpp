#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "quill/frontends/smt2/term_reader.h"
#include "tests/unit/frontends/smt2/read_and_print.h"

namespace quill::smt2 {
namespace {

const std::string bools =
    "(declare-const p Bool)(declare-const q Bool)(declare-const r Bool)(declare-const s Bool)";
const std::string ints = "(declare-const i Int)(declare-const j Int)";
const std::string reals = "(declare-const x Real)(declare-const y Real)";
const std::string all = bools + ints + reals;

std::string term(const std::string& text, const std::string& logic = "") {
  const std::string set_logic = logic.empty() ? "" : "(set-logic " + logic + ")";
  return asserted(set_logic + all + "(assert " + text + ")");
}

std::string real_term(const std::string& text) {
  return asserted("(set-logic QF_LRA)" + bools + reals + "(assert " + text + ")");
}

// One term over the symbols of a manager.
class ReadTerm : public testing::Test {
 protected:
  ReadTerm() {
    read_text(all, m);
    p = read_term("p", m);
    q = read_term("q", m);
    r = read_term("r", m);
    i = read_term("i", m);
    j = read_term("j", m);
    x = read_term("x", m);
  }

  const Symbol* interpreted(const std::string& name) const {
    return m.get_signature()->get_symbol(("`" + name + "`").c_str());
  }
  const Term_* number(int64_t n, int64_t d = 1) { return m.make_number(QNumber(n, d)); }

  TermManager m;
  const Term_* p;
  const Term_* q;
  const Term_* r;
  const Term_* i;
  const Term_* j;
  const Term_* x;
};

TEST_F(ReadTerm, FoldsAndToTheLeft) {
  EXPECT_EQ(read_term("(and p q r)", m), m.make_and(m.make_and(p, q), r));
}

TEST_F(ReadTerm, TakesAndOfOneTermForTheTerm) { EXPECT_EQ(read_term("(and p)", m), p); }

TEST_F(ReadTerm, FoldsImplicationToTheRight) {
  EXPECT_EQ(read_term("(=> p q r)", m), read_term("(=> p (=> q r))", m));
  EXPECT_EQ(read_term("(=> p q)", m), m.make_or(m.make_not(p), q));
}

TEST_F(ReadTerm, FoldsXorToTheLeft) {
  EXPECT_EQ(read_term("(xor p q r)", m), m.make_not(m.make_iff(m.make_not(m.make_iff(p, q)), r)));
}

TEST_F(ReadTerm, ReadsEqualityOfBoolsAsIff) {
  EXPECT_EQ(read_term("(= p q)", m), m.make_iff(p, q));
}

TEST_F(ReadTerm, ReadsChains) {
  EXPECT_EQ(read_term("(= p q r)", m), m.make_and(m.make_iff(p, q), m.make_iff(q, r)));
  EXPECT_EQ(read_term("(<= i j 3)", m), m.make_and(m.make_leq(i, j), m.make_leq(j, number(3))));
}

TEST_F(ReadTerm, ReadsDistinctPairwise) {
  const Term_* pq = m.make_not(m.make_iff(p, q));
  const Term_* pr = m.make_not(m.make_iff(p, r));
  const Term_* qr = m.make_not(m.make_iff(q, r));
  EXPECT_EQ(read_term("(distinct p q r)", m), m.make_and(m.make_and(pq, pr), qr));
}

TEST_F(ReadTerm, ReadsIfThenElse) {
  EXPECT_EQ(read_term("(ite p i j)", m), m.make_term_ite(p, i, j));
  EXPECT_EQ(read_term("(ite p q r)", m), m.make_and(m.make_or(m.make_not(p), q), m.make_or(p, r)));
}

TEST_F(ReadTerm, ReadsOrders) {
  EXPECT_EQ(read_term("(< i j)", m), m.make_not(m.make_leq(j, i)));
  EXPECT_EQ(read_term("(> i j)", m), m.make_not(m.make_leq(i, j)));
  EXPECT_EQ(read_term("(>= i j)", m), m.make_leq(j, i));
}

TEST_F(ReadTerm, ReadsDifferences) {
  const Term_* minus_j = m.make_times(number(-1), j);
  EXPECT_EQ(read_term("(- i j)", m), m.make_plus(i, minus_j));
  EXPECT_EQ(read_term("(- j)", m), minus_j);
  EXPECT_EQ(read_term("(- i j j)", m), m.make_plus(m.make_plus(i, minus_j), minus_j));
}

TEST_F(ReadTerm, ReadsNegatedNumeralsAsNumerals) {
  EXPECT_EQ(read_term("(- 3)", m), number(-3));
  EXPECT_EQ(read_term("(- (- 3))", m), number(3));
  EXPECT_EQ(read_term("(- 0)", m), number(0));
  EXPECT_EQ(read_term("(- 9223372036854775807)", m), number(-9223372036854775807));
}

TEST_F(ReadTerm, ReadsQuotientsOfNumeralsAsNumerals) {
  EXPECT_EQ(read_term("(/ 1 3)", m), number(1, 3));
  EXPECT_EQ(read_term("(/ (- 1) 3.0)", m), number(-1, 3));
  EXPECT_EQ(read_term("(/ 1.5 2.5)", m), number(3, 5));
  EXPECT_EQ(read_term("(/ 4 2)", m), number(2));
  EXPECT_EQ(read_term("(/ 100 5 4)", m), number(5));
}

TEST_F(ReadTerm, ReadsDivisionByANumeralAsAFactor) {
  EXPECT_EQ(read_term("(/ x 3)", m), m.make_times(number(1, 3), x));
  EXPECT_EQ(read_term("(/ x (- 3))", m), m.make_times(number(-1, 3), x));
}

TEST_F(ReadTerm, ReadsDecimalsExactly) {
  EXPECT_EQ(read_term("0.125", m), number(1, 8));
  EXPECT_EQ(read_term("3.0", m), number(3));
}

TEST_F(ReadTerm, ReadsLongNumerals) {
  const std::string digits = "1" + std::string(100, '0');
  EXPECT_STREQ(read_term(digits, m)->symbol->name, digits.c_str());
  EXPECT_STREQ(read_term("(- " + digits + ")", m)->symbol->name, ("-" + digits).c_str());
}

TEST_F(ReadTerm, ComparesOverRealWhereASideIsReal) {
  EXPECT_EQ(read_term("(= 1.0 2)", m)->symbol, interpreted("=_rat"));
  EXPECT_EQ(read_term("(= 1 2)", m)->symbol, interpreted("=_int"));
  EXPECT_EQ(read_term("(<= i 2.0)", m)->symbol, interpreted("<=_rat"));
  EXPECT_EQ(read_term("(+ (to_real i) 1.0)", m)->symbol, interpreted("+_rat"));
  EXPECT_EQ(read_term("(* 2.0 3.0)", m)->symbol, interpreted("*_rat"));
}

TEST_F(ReadTerm, TakesToRealForTheTermItself) { EXPECT_EQ(read_term("(to_real i)", m), i); }

TEST_F(ReadTerm, ReadsToIntAndIsIntThroughFloor) {
  EXPECT_EQ(read_term("(to_int x)", m), m.make_floor(x));
  EXPECT_EQ(read_term("(is_int x)", m), m.make_equal(x, m.make_floor(x)));
}

TEST_F(ReadTerm, BindsInParallel) {
  EXPECT_EQ(read_term("(let ((p q) (q p)) (and p q))", m), m.make_and(q, p));
}

TEST_F(ReadTerm, LetsShadowOperators) {
  EXPECT_EQ(read_term("(let ((and p) (true q)) (or and true))", m), m.make_or(p, q));
}

TEST_F(ReadTerm, EndsTheScopeOfLet) {
  EXPECT_EQ(read_term("(and (let ((p q)) p) p)", m), m.make_and(q, p));
}

TEST_F(ReadTerm, ReadsAnnotationsOver) {
  EXPECT_EQ(read_term("(! p :a :b (c (d) \"e\") :f 1)", m), p);
}

TEST_F(ReadTerm, ReadsAscribedSorts) { EXPECT_EQ(read_term("(as i Int)", m), i); }

TEST_F(ReadTerm, RefusesASecondTerm) {
  try {
    read_term("p q", m);
    FAIL();
  } catch (const ParseError& error) {
    EXPECT_STREQ(error.what(), "1:3: one term is expected, but 'q' follows it");
  }
}

TEST(TermReader, ReadsNumeralsAsRealsInLogicsWithoutIntegers) {
  EXPECT_EQ(real_term("(< x 3)"), "(not (<= 3.0 x))");
  EXPECT_EQ(real_term("(= 1 2)"), "(= 1.0 2.0)");
  EXPECT_EQ(real_term("(distinct x 1 2)"),
            "(and (not (= x 1.0)) (not (= x 2.0)) (not (= 1.0 2.0)))");
  EXPECT_EQ(real_term("(= x (ite p 1 2))"), "(= x (ite p 1.0 2.0))");
}

TEST(TermReader, WritesCoercionsWhereTheyAreNeeded) {
  EXPECT_EQ(term("(= x i)"), "(= x (to_real i))");
  EXPECT_EQ(term("(< x (+ i 1))"), "(not (<= (to_real (+ i 1)) x))");
  EXPECT_EQ(term("(= x (ite p i 1))"), "(= x (to_real (ite p i 1)))");
}

TEST(TermReader, ReadsAMillionNestedParentheses) {
  const size_t depth = 1000000;
  const std::string nested = repeated("(not ", depth) + "p" + repeated(")", depth);
  TermManager manager;
  const Script script = read_text("(declare-const p Bool)(assert " + nested + ")", manager);
  EXPECT_EQ(compute_stats(manager, script).depth, depth + 1);
}

TEST(TermReader, ReadsAMillionNestedLets) {
  const size_t depth = 1000000;
  const std::string nested = repeated("(let ((p (not p))) ", depth) + "p" + repeated(")", depth);
  TermManager manager;
  const Script script = read_text("(declare-const p Bool)(assert " + nested + ")", manager);
  EXPECT_EQ(compute_stats(manager, script).depth, depth + 1);
}

TEST(TermReader, ReadsAMillionNestedAnnotations) {
  const size_t depth = 1000000;
  const std::string nested = repeated("(! ", depth) + "p" + repeated(" :a)", depth);
  EXPECT_EQ(asserted("(declare-const p Bool)(assert " + nested + ")"), "p");
}

TEST(TermReader, SharesWhatLetShares) {
  std::string nested = "p";
  for (int k = 0; k < 100; ++k) nested = "(let ((p (and p p))) " + nested + ")";
  TermManager manager;
  const Script script = read_text("(declare-const p Bool)(assert " + nested + ")", manager);
  EXPECT_EQ(compute_stats(manager, script).graph_size, 101u);
}

using Fault = std::pair<const char*, const char*>;

class TermFaults : public testing::TestWithParam<Fault> {};

TEST_P(TermFaults, AreNamed) {
  EXPECT_EQ(error_of(all + "(declare-fun f (Int Real) Int)\n(assert " + GetParam().first + ")"),
            GetParam().second);
}

INSTANTIATE_TEST_SUITE_P(
    All, TermFaults,
    testing::Values(
        Fault{"()", "2:9: () is not a term"},
        Fault{"(p)", "2:9: 'p' is not a function and takes no arguments"},
        Fault{"(true)", "2:9: 'true' is not a function and takes no arguments"},
        Fault{"(not p q)", "2:9: 'not' takes 1 argument, not 2"},
        Fault{"(ite p q)", "2:9: 'ite' takes 3 arguments, not 2"},
        Fault{"(=> p)", "2:9: '=>' takes at least 2 arguments, not 1"},
        Fault{"(and)", "2:9: 'and' takes at least 1 argument, not 0"},
        Fault{"and", "2:9: 'and' is a function and needs arguments"},
        Fault{"(= f f)", "2:12: 'f' is a function and needs arguments"},
        Fault{"z", "2:9: unknown symbol 'z'"}, Fault{"(z p)", "2:10: unknown symbol 'z'"},
        Fault{"(implies p p)", "2:10: unknown symbol 'implies' (the standard has '=>')"},
        Fault{"(iff p p)", "2:10: unknown symbol 'iff' (the standard has '=')"},
        Fault{"(-> p p)", "2:10: unknown symbol '->' (the standard has '=>')"},
        Fault{"(if p p p)", "2:10: unknown symbol 'if' (the standard has 'ite')"},
        Fault{"(= i -3)", "2:14: unknown symbol '-3' (negative numbers are written (- '3'))"},
        Fault{"(let ((v p)) (let ((w v)) p) v", "2:37: a ')' is missing: the 'let' is not closed"},
        Fault{"(let ((v p) (w v)) w)", "2:24: unknown symbol 'v'"},
        Fault{"(let ((v p) (v q)) v)", "2:9: 'let' binds the same variable twice"},
        Fault{"(let () p)", "2:15: 'let' without a binding"},
        Fault{"(let p)", "2:14: the bindings of 'let' are expected, not 'p'"},
        Fault{"(let (p) p)", "2:15: a binding of 'let' is expected, not 'p'"},
        Fault{"(let ((1 p)) p)", "2:16: a variable is expected, not '1'"},
        Fault{"(! p)", "2:9: '!' without an attribute"},
        Fault{"(! p :named and)",
              "2:21: 'and' is an operator of the core theory and cannot name a term"},
        Fault{"(! p :named p)", "2:21: the name 'p' is already in use"},
        Fault{"(! p :named 1)", "2:21: a symbol is expected behind :named, not '1'"},
        Fault{"(and p i)", "2:9: argument 2 of 'and' has sort Int, but Bool is expected"},
        Fault{"(= i p)", "2:9: argument 2 of '=' has sort Bool, but Int is expected"},
        Fault{"(< i p)", "2:9: argument 2 of '<' has sort Bool, but a number is expected"},
        Fault{"(ite p i q)", "2:9: argument 3 of 'ite' has sort Bool, but Int is expected"},
        Fault{"(ite i p q)", "2:9: argument 1 of 'ite' has sort Int, but Bool is expected"},
        Fault{"(f i)", "2:9: 'f' takes 2 arguments, not 1"},
        Fault{"(f x x)", "2:9: argument 1 of 'f' has sort Real, but Int is expected"},
        Fault{"(as i Real)", "2:9: 'as' names the sort Real, but the term has sort Int"},
        Fault{"((as f Real) i x)", "2:9: 'as' names the sort Real, but the term has sort Int"},
        Fault{"((p) q)",
              "2:11: a symbol, (_ ...) or (as ...) is expected at the head of an application"},
        Fault{"(1 p)", "2:10: '1' cannot be applied to arguments"},
        Fault{"(_ and 1)", "2:12: 'and' takes no indices"},
        Fault{"(forall ((k Int)) p)", "2:10: unsupported: quantifiers (forall)"},
        Fault{"(exists ((k Int)) p)", "2:10: unsupported: quantifiers (exists)"},
        Fault{"(match p ((q r)))", "2:10: unsupported: the construct 'match'"},
        Fault{"let", "2:9: a term is expected, not 'let'"},
        Fault{":a", "2:9: a term is expected, not ':a'"},
        Fault{"\"a\"", "2:9: unsupported: a string as a term"},
        Fault{"#b1", "2:9: the asserted term has sort (_ BitVec 1), not Bool"},
        Fault{"(str.++ p p)", "2:10: unsupported: the operator 'str.++' of the theory of strings"},
        Fault{"(= x (/ x y))", "2:14: unsupported: division by a term that is not a number"},
        Fault{"(to_int p)", "2:9: argument 1 of 'to_int' has sort Bool, but Real is expected"},
        Fault{"(and p (or q", "2:22: the input ends where a term is expected"},
        Fault{"p\n(", "2:10: a ')' is expected here to close 'assert', not '('"}));

TEST(TermFaults, NamesAreUnknownOutsideOfTheLogic) {
  EXPECT_EQ(error_of("(set-logic QF_LIA)\n(assert (= 1 (to_int 1.5)))"),
            "2:15: unknown symbol 'to_int' (the logic QF_LIA does not have it)");
  EXPECT_EQ(error_of("(set-logic QF_UF)\n(assert (= 1 2))"),
            "2:12: the logic QF_UF has no number '1'");
  EXPECT_EQ(error_of("(set-logic QF_LIA)\n(assert (= 1 2.5))"),
            "2:14: the logic QF_LIA has no number '2.5'");
}

TEST(TermFaults, ADeepFaultIsOneShortLine) {
  const std::string nested = repeated("(not ", 1000000) + "i" + repeated(")", 1000000);
  EXPECT_EQ(error_of(ints + "(assert\n" + nested + ")"),
            "2:4999996: argument 1 of 'not' has sort Int, but Bool is expected");
}

}  // namespace
}  // namespace quill::smt2
