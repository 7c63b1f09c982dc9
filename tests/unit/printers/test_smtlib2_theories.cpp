#include <gtest/gtest.h>

#include <cstddef>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "quill/derived/derived.h"
#include "quill/printers/smtlib2_term_printer.h"
#include "quill/smtlib/operator_texts.h"
#include "quill/smtlib/syntax.h"
#include "tests/support/manager_test.h"

namespace quill {
namespace {

// By tag.
constexpr const char* tag_names[] = {
    "NONE",
    "TRUE",
    "FALSE",
    "AND",
    "OR",
    "NOT",
    "IFF",
    "PLUS",
    "TIMES",
    "FLOOR",
    "LEQ",
    "EQUAL",
    "TERM_ITE",
    "INT_MODULAR_CONGRUENCE",
    "BV_CONCAT",
    "BV_EXTRACT",
    "BV_NOT",
    "BV_AND",
    "BV_OR",
    "BV_XOR",
    "BV_ULT",
    "BV_SLT",
    "BV_ULE",
    "BV_SLE",
    "BV_COMP",
    "BV_NEG",
    "BV_ADD",
    "BV_SUB",
    "BV_MUL",
    "BV_UDIV",
    "BV_SDIV",
    "BV_UREM",
    "BV_SREM",
    "BV_LSHL",
    "BV_LSHR",
    "BV_ASHR",
    "BV_ROTATE_LEFT",
    "BV_ROTATE_RIGHT",
    "BV_ZERO_EXTEND",
    "BV_SIGN_EXTEND",
    "ARRAY_READ",
    "ARRAY_WRITE",
    "ARRAY_CONST",
    "FP_EQUAL",
    "FP_LT",
    "FP_LE",
    "FP_NEG",
    "FP_ADD",
    "FP_SUB",
    "FP_MUL",
    "FP_DIV",
    "FP_SQRT",
    "FP_ABS",
    "FP_MIN",
    "FP_MAX",
    "FP_CAST",
    "FP_ROUND_TO_INT",
    "FP_FROM_SBV",
    "FP_FROM_UBV",
    "FP_TO_BV",
    "FP_AS_IEEEBV",
    "FP_ISNAN",
    "FP_ISINF",
    "FP_ISZERO",
    "FP_ISSUBNORMAL",
    "FP_ISNORMAL",
    "FP_ISNEG",
    "FP_ISPOS",
    "FP_FROM_IEEEBV",
    "INT_FROM_UBV",
    "INT_FROM_SBV",
    "INT_TO_BV",
};

class SmtLib2Theories : public testing::ManagerTest {
 protected:
  std::string text(const Term_* t,
                   Configuration::Dialect dialect = Configuration::Dialect::Extensions) {
    Configuration::Printer choices;
    choices.dialect = dialect;
    std::ostringstream out;
    SmtLib2TermPrinter(&m, &choices, "", "", true, nullptr).print_term(out, t);
    return out.str();
  }
  std::string type_text(const DataType* type) {
    std::ostringstream out;
    print_type(out, m, type);
    return out.str();
  }
  // A term for every tag but NONE, headed by a symbol of that tag.
  std::vector<const Term_*> terms_by_tag();

  const DataType* const int_type = m.get_int_type();
  const DataType* const real_type = m.get_rat_type();
  const DataType* const array_type = m.get_array_type(int_type, real_type);
  const Term_* const p = constant("p", m.get_bool_type());
  const Term_* const q = constant("q", m.get_bool_type());
  const Term_* const i = constant("i", int_type);
  const Term_* const j = constant("j", int_type);
  const Term_* const x = constant("x", real_type);
  const Term_* const y = constant("y", real_type);
  const Term_* const b = constant("b", m.get_bv_type(8));
  const Term_* const c = constant("c", m.get_bv_type(8));
  const Term_* const d = constant("d", m.get_bv_type(32));
  const Term_* const a = constant("a", array_type);
  const Term_* const f = constant("f", m.get_fp_type(8, 23));
  const Term_* const g = constant("g", m.get_fp_type(8, 23));
  const Term_* const r = constant("r", m.get_fprounding_type());
};

std::vector<const Term_*> SmtLib2Theories::terms_by_tag() {
  return {
      m.make_true(),
      m.make_false(),
      m.make_and(p, q),
      m.make_or(p, q),
      m.make_not(p),
      m.make_iff(p, q),
      m.make_plus(i, j),
      m.make_times(i, j),
      m.make_floor(x),
      m.make_leq(i, j),
      m.make_equal(i, j),
      m.make_term_ite(p, i, j),
      m.make_int_modular_congruence(7, i, j),
      m.make_bv_concat(b, c),
      m.make_bv_extract(6, 2, b),
      m.make_bv_not(b),
      m.make_bv_and(b, c),
      m.make_bv_or(b, c),
      m.make_bv_xor(b, c),
      m.make_bv_ult(b, c),
      m.make_bv_slt(b, c),
      m.make_bv_ule(b, c),
      m.make_bv_sle(b, c),
      m.make_bv_comp(b, c),
      m.make_bv_neg(b),
      m.make_bv_add(b, c),
      m.make_bv_sub(b, c),
      m.make_bv_mul(b, c),
      m.make_bv_udiv(b, c),
      m.make_bv_sdiv(b, c),
      m.make_bv_urem(b, c),
      m.make_bv_srem(b, c),
      m.make_bv_lshl(b, c),
      m.make_bv_lshr(b, c),
      m.make_bv_ashr(b, c),
      m.make_bv_rotate_left(3, b),
      m.make_bv_rotate_right(3, b),
      m.make_bv_zero_extend(3, b),
      m.make_bv_sign_extend(3, b),
      m.make_array_read(a, i),
      m.make_array_write(a, i, x),
      m.make_array_const(array_type, x),
      m.make_fp_equal(f, g),
      m.make_fp_lt(f, g),
      m.make_fp_le(f, g),
      m.make_fp_neg(f),
      m.make_fp_add(r, f, g),
      m.make_fp_sub(r, f, g),
      m.make_fp_mul(r, f, g),
      m.make_fp_div(r, f, g),
      m.make_fp_sqrt(r, f),
      m.make_fp_abs(f),
      m.make_fp_min(f, g),
      m.make_fp_max(f, g),
      m.make_fp_cast(11, 52, r, f),
      m.make_fp_round_to_int(r, f),
      m.make_fp_from_sbv(11, 52, r, b),
      m.make_fp_from_ubv(11, 52, r, b),
      m.make_fp_to_bv(16, r, f),
      m.make_fp_as_ieeebv(f),
      m.make_fp_isnan(f),
      m.make_fp_isinf(f),
      m.make_fp_iszero(f),
      m.make_fp_issubnormal(f),
      m.make_fp_isnormal(f),
      m.make_fp_isneg(f),
      m.make_fp_ispos(f),
      m.make_fp_from_ieeebv(8, 23, d),
      m.make_int_from_ubv(b),
      m.make_int_from_sbv(b),
      m.make_int_to_bv(2, i),
  };
}

// --- Operators ---

TEST_F(SmtLib2Theories, TheDocumentedTableIsWhatIsWritten) {
  std::ifstream file(QUILL_SOURCE_DIR "/docs/smtlib.md");
  ASSERT_TRUE(file);
  const std::vector<const Term_*> terms = terms_by_tag();
  const std::regex row("\\| ([0-9]+) \\| `([A-Z_]+)` \\| `(.*)` \\| (?:`(.*)` )?\\|");
  size_t tag = 0;
  for (std::string line; std::getline(file, line);) {
    std::smatch parts;
    if (!std::regex_match(line, parts, row)) continue;
    ASSERT_LT(tag, 72U);
    EXPECT_EQ(parts[1], std::to_string(tag));
    EXPECT_EQ(parts[2], tag_names[tag]);
    const Term_* t = tag == 0 ? f : terms[tag - 1];
    const std::string standard = text(t, Configuration::Dialect::Standard);
    EXPECT_EQ(parts[3], standard);
    EXPECT_EQ(parts[4].matched ? parts[4] : parts[3], text(t, Configuration::Dialect::Extensions));
    ++tag;
  }
  EXPECT_EQ(tag, 72U);
}

TEST_F(SmtLib2Theories, EveryTagHasItsText) {
  const std::vector<std::string> expected = {
      "true",
      "false",
      "(and p q)",
      "(or p q)",
      "(not p)",
      "(= p q)",
      "(+ i j)",
      "(* i j)",
      "(to_int x)",
      "(<= i j)",
      "(= i j)",
      "(ite p i j)",
      "(= (mod i 7) (mod j 7))",
      "(concat b c)",
      "((_ extract 6 2) b)",
      "(bvnot b)",
      "(bvand b c)",
      "(bvor b c)",
      "(bvxor b c)",
      "(bvult b c)",
      "(bvslt b c)",
      "(bvule b c)",
      "(bvsle b c)",
      "(bvcomp b c)",
      "(bvneg b)",
      "(bvadd b c)",
      "(bvsub b c)",
      "(bvmul b c)",
      "(bvudiv b c)",
      "(bvsdiv b c)",
      "(bvurem b c)",
      "(bvsrem b c)",
      "(bvshl b c)",
      "(bvlshr b c)",
      "(bvashr b c)",
      "((_ rotate_left 3) b)",
      "((_ rotate_right 3) b)",
      "((_ zero_extend 3) b)",
      "((_ sign_extend 3) b)",
      "(select a i)",
      "(store a i x)",
      "((as const (Array Int Real)) x)",
      "(fp.eq f g)",
      "(fp.lt f g)",
      "(fp.leq f g)",
      "(fp.neg f)",
      "(fp.add r f g)",
      "(fp.sub r f g)",
      "(fp.mul r f g)",
      "(fp.div r f g)",
      "(fp.sqrt r f)",
      "(fp.abs f)",
      "(fp.min f g)",
      "(fp.max f g)",
      "((_ to_fp 11 53) r f)",
      "(fp.roundToIntegral r f)",
      "((_ to_fp 11 53) r b)",
      "((_ to_fp_unsigned 11 53) r b)",
      "((_ fp.to_sbv 16) r f)",
      "(fp.to_ieee_bv f)",
      "(fp.isNaN f)",
      "(fp.isInfinite f)",
      "(fp.isZero f)",
      "(fp.isSubnormal f)",
      "(fp.isNormal f)",
      "(fp.isNegative f)",
      "(fp.isPositive f)",
      "((_ to_fp 8 24) d)",
      "(bv2nat b)",
      "(sbv_to_int b)",
      "((_ int2bv 2) i)",
  };
  const std::vector<const Term_*> terms = terms_by_tag();
  ASSERT_EQ(terms.size(), 71U);
  ASSERT_EQ(expected.size(), 71U);
  for (size_t n = 0; n < terms.size(); ++n) {
    EXPECT_EQ(m.get_tag(terms[n]->symbol), static_cast<SymbolTag::tag>(n + 1));
    EXPECT_EQ(text(terms[n]), expected[n]);
  }
}

TEST_F(SmtLib2Theories, ChainsOfBitVectorsAreWrittenInOnePairOfParentheses) {
  const auto chain = [&](auto make) { return text((m.*make)((m.*make)(b, c), b)); };
  EXPECT_EQ(chain(&TermManager::make_bv_and), "(bvand b c b)");
  EXPECT_EQ(chain(&TermManager::make_bv_or), "(bvor b c b)");
  EXPECT_EQ(chain(&TermManager::make_bv_xor), "(bvxor b c b)");
  EXPECT_EQ(chain(&TermManager::make_bv_add), "(bvadd b c b)");
  EXPECT_EQ(chain(&TermManager::make_bv_mul), "(bvmul b c b)");
  EXPECT_EQ(chain(&TermManager::make_bv_concat), "(concat b c b)");
  EXPECT_EQ(chain(&TermManager::make_bv_sub), "(bvsub (bvsub b c) b)");
  EXPECT_EQ(chain(&TermManager::make_bv_udiv), "(bvudiv (bvudiv b c) b)");
  EXPECT_EQ(chain(&TermManager::make_bv_lshl), "(bvshl (bvshl b c) b)");
}

TEST_F(SmtLib2Theories, ConcatenationsToTheRightStayNested) {
  const Term_* bc = m.make_bv_concat(b, c);
  EXPECT_EQ(text(m.make_bv_concat(b, bc)), "(concat b (concat b c))");
  EXPECT_EQ(text(m.make_bv_concat(bc, bc)), "(let ((@1 (concat b c))) (concat @1 @1))");
}

TEST_F(SmtLib2Theories, OperatorsWithIndicesAreBoundByLet) {
  const Term_* low = m.make_bv_extract(3, 0, b);
  EXPECT_EQ(text(m.make_bv_ult(low, low)), "(let ((@1 ((_ extract 3 0) b))) (bvult @1 @1))");
  const Term_* minus = m.make_bv_neg(b);
  EXPECT_EQ(text(m.make_bv_ult(minus, minus)), "(bvult (bvneg b) (bvneg b))");
}

TEST_F(SmtLib2Theories, IndicesAreThoseOfTheOperator) {
  EXPECT_EQ(text(m.make_bv_extract(7, 7, b)), "((_ extract 7 7) b)");
  EXPECT_EQ(text(m.make_bv_rotate_left(0, b)), "((_ rotate_left 0) b)");
  EXPECT_EQ(text(m.make_bv_rotate_right(100, b)), "((_ rotate_right 100) b)");
  EXPECT_EQ(text(m.make_bv_zero_extend(0, b)), "((_ zero_extend 0) b)");
  EXPECT_EQ(text(m.make_bv_sign_extend(4000, b)), "((_ sign_extend 4000) b)");
  EXPECT_EQ(text(m.make_fp_cast(2, 2, r, f)), "((_ to_fp 2 3) r f)");
  EXPECT_EQ(text(m.make_fp_to_bv(1, r, f)), "((_ fp.to_sbv 1) r f)");
}

// --- Congruence ---

TEST_F(SmtLib2Theories, CongruenceToANumeralHasItsRemainder) {
  const auto congruence = [&](const QNumber& modulus, const QNumber& value) {
    return text(m.make_int_modular_congruence(modulus, i, m.make_number(value)));
  };
  EXPECT_EQ(congruence(7, 0), "(= (mod i 7) 0)");
  EXPECT_EQ(congruence(7, 6), "(= (mod i 7) 6)");
  EXPECT_EQ(congruence(7, 7), "(= (mod i 7) 0)");
  EXPECT_EQ(congruence(7, 23), "(= (mod i 7) 2)");
  EXPECT_EQ(congruence(7, -1), "(= (mod i 7) 6)");
  EXPECT_EQ(congruence(7, -14), "(= (mod i 7) 0)");
  EXPECT_EQ(congruence(1, 5), "(= (mod i 1) 0)");
  EXPECT_EQ(congruence(QNumber::from_string("100000000000000000000"), -1),
            "(= (mod i 100000000000000000000) 99999999999999999999)");
  EXPECT_EQ(congruence(7, QNumber::from_string("100000000000000000000")), "(= (mod i 7) 2)");
}

TEST_F(SmtLib2Theories, CongruenceOfANumeralKeepsIt) {
  EXPECT_EQ(text(m.make_int_modular_congruence(7, m.make_number(9), i)), "(= (mod 9 7) (mod i 7))");
}

TEST_F(SmtLib2Theories, CongruencesAreShared) {
  const Term_* sum = m.make_plus(i, j);
  const Term_* congruence = m.make_int_modular_congruence(5, sum, m.make_times(sum, j));
  EXPECT_EQ(text(m.make_iff(congruence, m.make_not(congruence))),
            "(let ((@1 (+ i j))) (let ((@2 (= (mod @1 5) (mod (* @1 j) 5)))) (= @2 (not @2))))");
  const Term_* residue = m.make_int_modular_congruence(5, i, m.make_number(1));
  EXPECT_EQ(text(m.make_iff(residue, m.make_not(residue))),
            "(let ((@1 (= (mod i 5) 1))) (= @1 (not @1)))");
}

TEST_F(SmtLib2Theories, AnnotatedNumeralOfACongruenceIsWritten) {
  const Term_* nine = m.make_number(9);
  SmtLib2TermPrinter::Annotations annotations;
  annotations[nine] = {{"named", "n"}};
  std::ostringstream out;
  SmtLib2TermPrinter(&m, nullptr, "", "", true, &annotations)
      .print_term(out, m.make_int_modular_congruence(7, i, nine));
  EXPECT_EQ(out.str(), "(= (mod i 7) (mod (! 9 :named n) 7))");
}

// --- Constants ---

TEST_F(SmtLib2Theories, RoundingModes) {
  EXPECT_EQ(text(m.make_fprounding_even()), "RNE");
  EXPECT_EQ(text(m.make_fprounding_zero()), "RTZ");
  EXPECT_EQ(text(m.make_fprounding_plus_inf()), "RTP");
  EXPECT_EQ(text(m.make_fprounding_minus_inf()), "RTN");
  EXPECT_EQ(text(m.make_fp_add(m.make_fprounding_even(), f, g)), "(fp.add RNE f g)");
}

TEST_F(SmtLib2Theories, AUsersSymbolNamedLikeARoundingModeIsRenamed) {
  EXPECT_EQ(text(constant("RNE", m.get_fprounding_type())), "quill!RNE");
}

TEST_F(SmtLib2Theories, FloatingPointNumeralsAreBits) {
  EXPECT_EQ(text(m.make_fp_bits_number(0, 2, 2)), "(fp #b0 #b00 #b00)");
  EXPECT_EQ(text(m.make_fp_bits_number(16, 2, 2)), "(fp #b1 #b00 #b00)");
  EXPECT_EQ(text(m.make_fp_bits_number(11, 2, 3)), "(fp #b0 #b01 #b011)");
  EXPECT_EQ(text(m.make_fp_bits_number(63, 2, 3)), "(fp #b1 #b11 #b111)");
  EXPECT_EQ(text(m.make_fp_rat_number(1, 8, 23, m.make_fprounding_even())),
            "(fp #b0 #b01111111 #b00000000000000000000000)");
  EXPECT_EQ(text(m.make_fp_rat_number(QNumber(-1, 10), 11, 52, m.make_fprounding_even())),
            "(fp #b1 #b01111111011 #b1001100110011001100110011001100110011001100110011010)");
}

TEST_F(SmtLib2Theories, InfinitiesAndNanAreBitsToo) {
  EXPECT_EQ(text(m.make_fp_plus_inf(3, 4)), "(fp #b0 #b111 #b0000)");
  EXPECT_EQ(text(m.make_fp_minus_inf(3, 4)), "(fp #b1 #b111 #b0000)");
  EXPECT_EQ(text(m.make_fp_nan(3, 4)), "(fp #b0 #b111 #b1000)");
}

TEST_F(SmtLib2Theories, FloatingPointNumeralsOfThousandsOfBits) {
  const std::string exponent(1000, '1');
  const std::string significand = "1" + std::string(2999, '0');
  EXPECT_EQ(text(m.make_fp_nan(1000, 3000)), "(fp #b0 #b" + exponent + " #b" + significand + ")");
  EXPECT_EQ(text(m.make_fp_bits_number(1, 1000, 3000)),
            "(fp #b0 #b" + std::string(1000, '0') + " #b" + std::string(2999, '0') + "1)");
}

TEST_F(SmtLib2Theories, BitVectorNumeralsOfThousandsOfBits) {
  const Term_* t = m.make_bv_number(QNumber::from_string("1" + std::string(900, '0')), 3000);
  EXPECT_EQ(text(t), "(_ bv1" + std::string(900, '0') + " 3000)");
}

// Managers that check nothing can make them.
TEST_F(SmtLib2Theories, NumeralsThatAreNoBitsOfTheirFormatAreWrittenByName) {
  m.set_typecheck_enabled(false);
  EXPECT_EQ(text(m.make_fp_bits_number(64, 2, 3)), "|64_2_3|");
  EXPECT_EQ(text(m.make_fp_bits_number(-1, 2, 3)), "|-1_2_3|");
  EXPECT_EQ(text(m.make_fp_bits_number(QNumber(1, 2), 2, 3)), "|1/2_2_3|");
  EXPECT_EQ(text(m.make_fp_bits_number(0, 0, 3)), "|0_0_3|");
  EXPECT_EQ(text(m.make_fp_bits_number(0, 3, 0)), "|0_3_0|");
}

TEST_F(SmtLib2Theories, NumeralsThatNoBitVectorOfTheirWidthIsAreWrittenByName) {
  EXPECT_EQ(text(m.make_bv_number(255, 8)), "(_ bv255 8)");
  m.set_typecheck_enabled(false);
  EXPECT_EQ(text(m.make_bv_number(255, 8)), "(_ bv255 8)");
  EXPECT_EQ(text(m.make_bv_number(256, 8)), "|256_8|");
  EXPECT_EQ(text(m.make_bv_number(-1, 8)), "|-1_8|");
  EXPECT_EQ(text(m.make_bv_number(QNumber(1, 2), 8)), "|1/2_8|");
  EXPECT_EQ(text(m.make_bv_number(QNumber(4, 2), 8)), "(_ bv2 8)");
  EXPECT_EQ(text(m.make_bv_number(1, 0)), "|1_0|");
  const QNumber large = QNumber::from_string("18446744073709551615");
  EXPECT_EQ(text(m.make_bv_number(large, 64)), "(_ bv18446744073709551615 64)");
  EXPECT_EQ(text(m.make_bv_number(large, 63)), "|18446744073709551615_63|");
  EXPECT_EQ(text(m.make_bv_number(QNumber::from_string("-18446744073709551615"), 64)),
            "|-18446744073709551615_64|");
}

// A user symbol becomes the numeral that its name spells, and keeps its type.
TEST_F(SmtLib2Theories, AnIntThatIsAFractionIsWrittenByName) {
  const Term_* half = constant("1/2", int_type);
  EXPECT_EQ(m.make_number(QNumber(1, 2)), half);
  EXPECT_EQ(text(half), "|1/2|");
  EXPECT_EQ(text(m.make_leq(x, half)), "(<= x (to_real |1/2|))");
}

TEST_F(SmtLib2Theories, NumeralsOfOtherTypesAreNoFactors) {
  m.set_typecheck_enabled(false);
  const Symbol* times = m.make_times(i, j)->symbol;
  const Symbol* plus = m.make_plus(i, j)->symbol;
  const Term_* product = m.make_uninterpreted_function(times, {m.make_bv_number(-1, 8), j});
  EXPECT_EQ(text(m.make_uninterpreted_function(plus, {i, product})), "(+ i (* |-1_8| j))");
  EXPECT_EQ(text(m.make_int_modular_congruence(7, i, m.make_bv_number(9, 8))),
            "(= (mod i 7) (mod (_ bv9 8) 7))");
}

// --- Types ---

TEST_F(SmtLib2Theories, Sorts) {
  const DataType* bits = m.get_bv_type(8);
  const DataType* floats = m.get_fp_type(8, 23);
  const DataType* modes = m.get_fprounding_type();
  EXPECT_EQ(type_text(bits), "(_ BitVec 8)");
  EXPECT_EQ(type_text(m.get_bv_type(100000)), "(_ BitVec 100000)");
  EXPECT_EQ(type_text(floats), "(_ FloatingPoint 8 24)");
  EXPECT_EQ(type_text(m.get_fp_type(2, 2)), "(_ FloatingPoint 2 3)");
  EXPECT_EQ(type_text(modes), "RoundingMode");
  EXPECT_EQ(type_text(m.get_array_type(modes, m.get_array_type(bits, floats))),
            "(Array RoundingMode (Array (_ BitVec 8) (_ FloatingPoint 8 24)))");
  EXPECT_EQ(type_text(m.get_array_type(m.get_array_type(int_type, real_type), bits)),
            "(Array (Array Int Real) (_ BitVec 8))");
  const DataType* list = m.get_simple_type("List", false);
  EXPECT_EQ(type_text(m.get_compound_type({list, floats})), "(List (_ FloatingPoint 8 24))");
}

TEST_F(SmtLib2Theories, ConstantArraysOfArrays) {
  const DataType* rows = m.get_array_type(m.get_bv_type(4), array_type);
  EXPECT_EQ(text(m.make_array_const(rows, m.make_array_const(array_type, m.make_number(0)))),
            "((as const (Array (_ BitVec 4) (Array Int Real))) ((as const (Array Int Real)) 0.0))");
}

TEST_F(SmtLib2Theories, IntsInArraysOfRealsAreConverted) {
  EXPECT_EQ(text(m.make_array_write(a, m.make_number(3), j)), "(store a 3 (to_real j))");
  EXPECT_EQ(text(m.make_array_write(a, i, m.make_number(3))), "(store a i 3.0)");
}

}  // namespace
}  // namespace quill
