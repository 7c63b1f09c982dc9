#include <gtest/gtest.h>

#include <string>

#include "quill/derived/derived_bv.h"
#include "tests/unit/frontends/smt2/read_and_print.h"

namespace quill::smt2 {
namespace {

const std::string declarations =
    "(declare-fun a () (_ BitVec 8))(declare-fun b () (_ BitVec 8))"
    "(declare-fun c () (_ BitVec 8))(declare-fun w () (_ BitVec 16))(declare-fun i () Int)";

class BitVectors : public ::testing::Test {
 protected:
  const Term_* read_in(const std::string& term) {
    return read_text(declarations + "(get-value (" + term + "))", m)
        .commands.back()
        .terms[0]
        .value.term;
  }

  std::string text_of(const std::string& term) { return read_in(term)->to_str(); }

  const Term_* bits(int value, size_t width) { return m.make_bv_number(QNumber(value), width); }

  TermManager m;
  const Term_* const a = read_in("a");
  const Term_* const b = read_in("b");
  const Term_* const c = read_in("c");
  const Term_* const w = read_in("w");
  const Term_* const i = read_in("i");
};

// What the reader says about a term after the declarations, without the position.
std::string complaint(const std::string& term) {
  const std::string error = error_of(declarations + "\n(get-value (" + term + "))");
  const size_t colon = error.find(": ");
  return colon == std::string::npos ? error : error.substr(colon + 2);
}

// --- Literals ---

TEST_F(BitVectors, Literals) {
  EXPECT_EQ(read_in("#b1"), bits(1, 1));
  EXPECT_EQ(read_in("#b00000101"), bits(5, 8));
  EXPECT_EQ(read_in("#xaF"), bits(175, 8));
  EXPECT_EQ(read_in("#x00000"), bits(0, 20));
  EXPECT_EQ(read_in("(_ bv5 8)"), bits(5, 8));
  EXPECT_EQ(read_in("(_ bv255 8)"), read_in("#xFF"));
  EXPECT_EQ(read_in("(_ bv0 1)"), bits(0, 1));
}

TEST_F(BitVectors, LiteralsOfThousandsOfBits) {
  const std::string ones(4000, '1');
  const std::string digits(1000, 'f');
  const Term_* t = read_in("#b" + ones);
  EXPECT_EQ(t, read_in("#x" + digits));
  EXPECT_EQ(t->type(), m.get_bv_type(4000));
  EXPECT_EQ(read_in("#b" + std::string(5000, '0')), bits(0, 5000));
}

TEST_F(BitVectors, LiteralsMustFit) {
  EXPECT_EQ(complaint("(_ bv256 8)"), "the number '256' does not fit into 8 bits");
  EXPECT_EQ(complaint("(_ bv2 1)"), "the number '2' does not fit into 1 bit");
  EXPECT_EQ(complaint("(_ bv18446744073709551616 64)"),
            "the number '18446744073709551616' does not fit into 64 bits");
  EXPECT_EQ(complaint("(_ bv18446744073709551615 64)"), "");
  EXPECT_EQ(complaint("(_ bv1 0)"), "a bit-vector needs a width of at least 1");
  EXPECT_EQ(complaint("(_ bv1 -8)"), "'bv1' takes numerals as indices, not '-8'");
  EXPECT_EQ(complaint("(_ bv1 18446744073709551616)"),
            "the index '18446744073709551616' of 'bv1' is too large");
  EXPECT_EQ(complaint("(_ bv-1 8)"), "unknown symbol 'bv-1'");
  EXPECT_EQ(complaint("(_ bv 8)"), "unknown symbol 'bv'");
  EXPECT_EQ(complaint("bv1"), "unknown symbol 'bv1'");
}

TEST_F(BitVectors, LiteralsAreNoFunctions) {
  EXPECT_EQ(complaint("((_ bv1 8) a)"), "a constant is applied to arguments");
  EXPECT_EQ(complaint("(_ bv1 8 8)"), "a ')' is missing: the identifier is not closed");
  EXPECT_EQ(complaint("(_ bv1)"), "an index is expected, not ')'");
}

TEST_F(BitVectors, LiteralsBelongToTheirLogics) {
  EXPECT_EQ(error_of("(set-logic QF_UF)(assert (= #b1 #b1))"),
            "1:29: the logic QF_UF has no bit-vector '#b1'");
  EXPECT_EQ(error_of("(set-logic QF_UF)(assert (= (_ bv1 1) (_ bv1 1)))"),
            "1:32: unknown symbol 'bv1'");
  EXPECT_EQ(error_of("(set-logic QF_FP)(assert (= #b1 (_ bv1 1)))"), "");
  EXPECT_EQ(error_of("(set-logic QF_UFBV)(declare-fun bv1 () Bool)(assert bv1)"), "");
}

// --- Operators with a symbol of the manager ---

TEST_F(BitVectors, UnaryOperators) {
  EXPECT_EQ(read_in("(bvnot a)"), m.make_bv_not(a));
  EXPECT_EQ(read_in("(bvneg a)"), m.make_bv_neg(a));
}

TEST_F(BitVectors, BinaryOperators) {
  EXPECT_EQ(read_in("(bvand a b)"), m.make_bv_and(a, b));
  EXPECT_EQ(read_in("(bvor a b)"), m.make_bv_or(a, b));
  EXPECT_EQ(read_in("(bvxor a b)"), m.make_bv_xor(a, b));
  EXPECT_EQ(read_in("(bvadd a b)"), m.make_bv_add(a, b));
  EXPECT_EQ(read_in("(bvsub a b)"), m.make_bv_sub(a, b));
  EXPECT_EQ(read_in("(bvmul a b)"), m.make_bv_mul(a, b));
  EXPECT_EQ(read_in("(bvudiv a b)"), m.make_bv_udiv(a, b));
  EXPECT_EQ(read_in("(bvurem a b)"), m.make_bv_urem(a, b));
  EXPECT_EQ(read_in("(bvsdiv a b)"), m.make_bv_sdiv(a, b));
  EXPECT_EQ(read_in("(bvsrem a b)"), m.make_bv_srem(a, b));
  EXPECT_EQ(read_in("(bvshl a b)"), m.make_bv_lshl(a, b));
  EXPECT_EQ(read_in("(bvlshr a b)"), m.make_bv_lshr(a, b));
  EXPECT_EQ(read_in("(bvashr a b)"), m.make_bv_ashr(a, b));
  EXPECT_EQ(read_in("(bvcomp a b)"), m.make_bv_comp(a, b));
}

TEST_F(BitVectors, Comparisons) {
  EXPECT_EQ(read_in("(bvult a b)"), m.make_bv_ult(a, b));
  EXPECT_EQ(read_in("(bvule a b)"), m.make_bv_ule(a, b));
  EXPECT_EQ(read_in("(bvugt a b)"), m.make_bv_ult(b, a));
  EXPECT_EQ(read_in("(bvuge a b)"), m.make_bv_ule(b, a));
  EXPECT_EQ(read_in("(bvslt a b)"), m.make_bv_slt(a, b));
  EXPECT_EQ(read_in("(bvsle a b)"), m.make_bv_sle(a, b));
  EXPECT_EQ(read_in("(bvsgt a b)"), m.make_bv_slt(b, a));
  EXPECT_EQ(read_in("(bvsge a b)"), m.make_bv_sle(b, a));
}

TEST_F(BitVectors, ManyArgumentsNestToTheLeft) {
  EXPECT_EQ(read_in("(bvadd a b c)"), m.make_bv_add(m.make_bv_add(a, b), c));
  EXPECT_EQ(read_in("(bvmul a b c)"), m.make_bv_mul(m.make_bv_mul(a, b), c));
  EXPECT_EQ(read_in("(bvand a b c)"), m.make_bv_and(m.make_bv_and(a, b), c));
  EXPECT_EQ(read_in("(bvor a b c)"), m.make_bv_or(m.make_bv_or(a, b), c));
  EXPECT_EQ(read_in("(bvxor a b c)"), m.make_bv_xor(m.make_bv_xor(a, b), c));
  EXPECT_EQ(read_in("(concat a w b)"), m.make_bv_concat(m.make_bv_concat(a, w), b));
}

TEST_F(BitVectors, IndexedOperators) {
  EXPECT_EQ(read_in("((_ extract 7 0) a)"), m.make_bv_extract(7, 0, a));
  EXPECT_EQ(read_in("((_ extract 3 3) a)"), m.make_bv_extract(3, 3, a));
  EXPECT_EQ(read_in("((_ zero_extend 0) a)"), m.make_bv_zero_extend(0, a));
  EXPECT_EQ(read_in("((_ sign_extend 24) a)"), m.make_bv_sign_extend(24, a));
  EXPECT_EQ(read_in("((_ rotate_left 0) a)"), m.make_bv_rotate_left(0, a));
  EXPECT_EQ(read_in("((_ rotate_left 19) a)"), m.make_bv_rotate_left(19, a));
  EXPECT_EQ(read_in("((_ rotate_right 18446744073709551615) a)"),
            m.make_bv_rotate_right(~size_t{0}, a));
}

TEST_F(BitVectors, ConversionsToAndFromIntegers) {
  EXPECT_EQ(read_in("(bv2nat a)"), m.make_int_from_ubv(a));
  EXPECT_EQ(read_in("(ubv_to_int a)"), m.make_int_from_ubv(a));
  EXPECT_EQ(read_in("(sbv_to_int a)"), m.make_int_from_sbv(a));
  EXPECT_EQ(read_in("((_ int2bv 12) i)"), m.make_int_to_bv(12, i));
  EXPECT_EQ(read_in("((_ nat2bv 12) i)"), m.make_int_to_bv(12, i));
  EXPECT_EQ(read_in("((_ int_to_bv 12) i)"), m.make_int_to_bv(12, i));
  EXPECT_EQ(complaint("((_ int2bv 0) i)"), "a bit-vector needs a width of at least 1");
  EXPECT_EQ(complaint("((_ int2bv 8) a)"),
            "argument 1 of 'int2bv' has sort (_ BitVec 8), but Int is expected");
  EXPECT_EQ(complaint("(bv2nat i)"),
            "argument 1 of 'bv2nat' has sort Int, but a bit-vector is expected");
}

// --- Derived operators ---

TEST_F(BitVectors, DerivedOperators) {
  EXPECT_EQ(read_in("(bvnand a b)"), make_bv_nand(m, a, b));
  EXPECT_EQ(read_in("(bvnor a b)"), make_bv_nor(m, a, b));
  EXPECT_EQ(read_in("(bvxnor a b)"), make_bv_xnor(m, a, b));
  EXPECT_EQ(read_in("(bvsmod a b)"), make_bv_smod(m, a, b));
  EXPECT_EQ(read_in("((_ repeat 1) a)"), a);
  EXPECT_EQ(read_in("((_ repeat 5) a)"), make_bv_repeat(m, 5, a));
  EXPECT_EQ(read_in("(bvredor a)"), make_bv_redor(m, a));
  EXPECT_EQ(read_in("(bvredand a)"), make_bv_redand(m, a));
}

TEST_F(BitVectors, OverflowPredicates) {
  EXPECT_EQ(read_in("(bvnego a)"), make_bv_nego(m, a));
  EXPECT_EQ(read_in("(bvuaddo a b)"), make_bv_uaddo(m, a, b));
  EXPECT_EQ(read_in("(bvsaddo a b)"), make_bv_saddo(m, a, b));
  EXPECT_EQ(read_in("(bvumulo a b)"), make_bv_umulo(m, a, b));
  EXPECT_EQ(read_in("(bvsmulo a b)"), make_bv_smulo(m, a, b));
  EXPECT_EQ(read_in("(bvusubo a b)"), make_bv_usubo(m, a, b));
  EXPECT_EQ(read_in("(bvssubo a b)"), make_bv_ssubo(m, a, b));
  EXPECT_EQ(read_in("(bvsdivo a b)"), make_bv_sdivo(m, a, b));
}

TEST_F(BitVectors, CoreOperatorsTakeThem) {
  EXPECT_EQ(read_in("(= a b c)"), m.make_and(m.make_equal(a, b), m.make_equal(b, c)));
  EXPECT_EQ(read_in("(distinct a b)"), m.make_not(m.make_equal(a, b)));
  EXPECT_EQ(read_in("(ite (bvult a b) a b)"), m.make_term_ite(m.make_bv_ult(a, b), a, b));
}

// --- Errors ---

TEST_F(BitVectors, WidthsMustAgree) {
  EXPECT_EQ(complaint("(bvadd a w)"),
            "argument 2 of 'bvadd' has sort (_ BitVec 16), but (_ BitVec 8) is expected");
  EXPECT_EQ(complaint("(bvand a b w)"),
            "argument 3 of 'bvand' has sort (_ BitVec 16), but (_ BitVec 8) is expected");
  EXPECT_EQ(complaint("(bvsmulo a w)"),
            "argument 2 of 'bvsmulo' has sort (_ BitVec 16), but (_ BitVec 8) is expected");
  EXPECT_EQ(complaint("(= a w)"),
            "argument 2 of '=' has sort (_ BitVec 16), but (_ BitVec 8) is expected");
}

TEST_F(BitVectors, ArgumentsMustBeBitVectors) {
  EXPECT_EQ(complaint("(bvnot i)"),
            "argument 1 of 'bvnot' has sort Int, but a bit-vector is expected");
  EXPECT_EQ(complaint("(concat a i)"),
            "argument 2 of 'concat' has sort Int, but a bit-vector is expected");
  EXPECT_EQ(complaint("((_ rotate_left 1) i)"),
            "argument 1 of 'rotate_left' has sort Int, but a bit-vector is expected");
  EXPECT_EQ(complaint("((_ repeat 2) true)"),
            "argument 1 of 'repeat' has sort Bool, but a bit-vector is expected");
}

TEST_F(BitVectors, NumbersOfArgumentsMustFit) {
  EXPECT_EQ(complaint("(bvnot a b)"), "'bvnot' takes 1 argument, not 2");
  EXPECT_EQ(complaint("(bvsub a b c)"), "'bvsub' takes 2 arguments, not 3");
  EXPECT_EQ(complaint("(bvxnor a b c)"), "'bvxnor' takes 2 arguments, not 3");
  EXPECT_EQ(complaint("(bvadd a)"), "'bvadd' takes at least 2 arguments, not 1");
  EXPECT_EQ(complaint("(bvult a b c)"), "'bvult' takes 2 arguments, not 3");
}

TEST_F(BitVectors, IndicesMustFit) {
  EXPECT_EQ(complaint("((_ extract 8 0) a)"),
            "'extract' takes bits 8 down to 0 of a bit-vector of width 8");
  EXPECT_EQ(complaint("((_ extract 0 1) a)"), "'extract' takes bits 0 down to 1, which are none");
  EXPECT_EQ(complaint("((_ extract 1 -1) a)"), "'extract' takes numerals as indices, not '-1'");
  EXPECT_EQ(complaint("((_ extract 1) a)"), "'extract' takes 2 indices, not 1");
  EXPECT_EQ(complaint("(extract a)"), "'extract' takes 2 indices, not 0");
  EXPECT_EQ(complaint("(extract 3 0 a)"), "'extract' is written ((_ extract 3 0) a)");
  EXPECT_EQ(complaint("(extract 3 0 (bvnot a))"), "'extract' is written ((_ extract 3 0) ...)");
  EXPECT_EQ(complaint("(repeat 2 a b)"), "'repeat' is written ((_ repeat 2) a b)");
  EXPECT_EQ(complaint("(_ extract 3 0 a)"),
            "'extract' has its arguments behind the indices: ((_ extract 3 0) a)");
  EXPECT_EQ(complaint("(_ extract 3 0 (bvnot a))"),
            "'extract' has its arguments behind the indices: ((_ extract 3 0) ...)");
  EXPECT_EQ(complaint("(_ extract 3 (bvnot a))"), "an index is expected, not '('");
  EXPECT_EQ(complaint("((_ repeat 0) a)"),
            "'repeat' takes a positive number as its index, not '0'");
  EXPECT_EQ(complaint("((_ zero_extend 99999999999999999999) a)"),
            "the index '99999999999999999999' of 'zero_extend' is too large");
  EXPECT_EQ(complaint("((_ bvadd 1) a b)"), "'bvadd' takes no indices");
}

TEST_F(BitVectors, WidthsOfResultsDoNotWrap) {
  const std::string too_wide = "gives a bit-vector of more bits than 64-bit numbers count";
  EXPECT_EQ(complaint("((_ zero_extend 18446744073709551608) a)"), "'zero_extend' " + too_wide);
  EXPECT_EQ(complaint("((_ zero_extend 18446744073709551607) a)"), "");
  EXPECT_EQ(complaint("((_ sign_extend 18446744073709551608) a)"), "'sign_extend' " + too_wide);
  EXPECT_EQ(complaint("((_ repeat 2305843009213693952) a)"), "'repeat' " + too_wide);
  EXPECT_EQ(complaint("((_ repeat 2305843009213693951) a)"), "");
  EXPECT_EQ(complaint("(concat ((_ zero_extend 18446744073709551607) a) #b1)"),
            "'concat' " + too_wide);
  const std::string wide = "((_ zero_extend 9223372036854775800) a)";
  EXPECT_EQ(complaint("(bvumulo " + wide + wide + ")"),
            "'bvumulo' has arguments that are too wide to be multiplied in twice their width");
}

// --- Names and logics ---

TEST_F(BitVectors, NamesBeyondTheStandardAreFree) {
  EXPECT_EQ(error_of("(set-logic QF_BV)(declare-fun bvadd () Bool)"),
            "1:31: 'bvadd' is an operator of the theory of bit-vectors and cannot be declared");
  const char* const names[][2] = {{"bv2nat", "bv2nat"},
                                  {"ubv_to_int", "ubv!5fto!5fint"},
                                  {"sbv_to_int", "sbv!5fto!5fint"},
                                  {"bvredor", "bvredor"},
                                  {"bvredand", "bvredand"},
                                  {"bvnego", "bvnego"},
                                  {"bvuaddo", "bvuaddo"},
                                  {"bvsaddo", "bvsaddo"},
                                  {"bvumulo", "bvumulo"},
                                  {"bvsmulo", "bvsmulo"},
                                  {"bvusubo", "bvusubo"},
                                  {"bvssubo", "bvssubo"},
                                  {"bvsdivo", "bvsdivo"},
                                  {"int2bv", "int2bv"},
                                  {"nat2bv", "nat2bv"},
                                  {"int_to_bv", "int!5fto!5fbv"}};
  for (const auto& [name, escaped] : names) {
    const std::string head = "(set-logic QF_UFBV)\n(declare-fun ";
    const std::string read = head + name + " (Bool) Bool)\n(assert (" + name + " true))\n";
    EXPECT_EQ(printed(read),
              head + "quill!" + escaped + " (Bool) Bool)\n(assert (quill!" + escaped + " true))\n");
  }
}

TEST_F(BitVectors, NamesAreFreeInOtherLogics) {
  EXPECT_EQ(printed("(set-logic QF_UF)(declare-fun concat () Bool)(assert concat)"),
            "(set-logic QF_UF)\n(declare-fun concat () Bool)\n(assert concat)\n");
  EXPECT_EQ(error_of("(set-logic QF_UF)(declare-fun p () Bool)(assert (bvredor p))"),
            "1:50: unknown symbol 'bvredor' (the logic QF_UF does not have it)");
}

TEST_F(BitVectors, TheWrittenLogicCoversThem) {
  const std::string vector = "(declare-fun a () (_ BitVec 8))";
  EXPECT_EQ(logic_of("(set-logic QF_BV)" + vector + "(assert (bvult a #x05))"), "QF_BV");
  EXPECT_EQ(logic_of("(set-logic QF_BV)" + vector + "(declare-fun f (Bool) Bool)"), "QF_UFBV");
  // Conversions need integers, and no list of logics has both.
  EXPECT_EQ(logic_of("(set-logic QF_BV)" + vector + "(assert (= (bv2nat a) (bv2nat a)))"), "ALL");
  EXPECT_EQ(logic_of("(set-logic QF_UFBVLIA)" + vector + "(assert (= (bv2nat a) 3))"),
            "QF_UFBVLIA");
}

TEST_F(BitVectors, LogicsOfFloatsHaveThem) {
  // Readers know the literals there, but not all of them the sort.
  EXPECT_EQ(logic_of("(set-logic QF_FP)(declare-fun f () Float32)"
                     "(assert (= f ((_ to_fp 8 24) #x00000001)))"),
            "QF_FP");
  EXPECT_EQ(logic_of("(set-logic QF_FP)(declare-fun a () (_ BitVec 32))"), "QF_BVFP");
  EXPECT_EQ(logic_of("(set-logic QF_FP)(assert (bvult #x5 #x6))"), "QF_BVFP");
}

TEST_F(BitVectors, ReadingTwiceGivesTheSameTerms) {
  const std::string term = "(bvsmod (concat a ((_ repeat 3) b)) ((_ int2bv 32) (sbv_to_int w)))";
  EXPECT_EQ(read_in(term), read_in(term));
}

}  // namespace
}  // namespace quill::smt2
