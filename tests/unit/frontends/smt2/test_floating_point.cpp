#include <gtest/gtest.h>

#include <string>

#include "tests/unit/frontends/smt2/read_and_print.h"

namespace quill::smt2 {
namespace {

const std::string names =
    "(declare-const x (_ FloatingPoint 5 11))(declare-const y Float16)(declare-const z Float16)"
    "(declare-const d Float64)(declare-const r RoundingMode)(declare-const c (_ BitVec 16))"
    "(declare-const i Int)(declare-const q Real)(declare-const p Bool)";

// The term in the manager's own notation.
std::string term(const std::string& text) {
  TermManager m;
  const Script script = read_text(names + "(get-value (" + text + "))", m);
  return script.commands.back().terms[0].value.term->to_str();
}

std::string error(const std::string& text) {
  return error_of(names + "\n(get-value (" + text + "))");
}

// ----- constants --------------------------------------------------------------------------------

TEST(FloatingPoint, RoundingModesHaveTwoNamesEach) {
  EXPECT_EQ(term("RNE"), term("roundNearestTiesToEven"));
  EXPECT_EQ(term("RTZ"), term("roundTowardZero"));
  EXPECT_EQ(term("RTP"), term("roundTowardPositive"));
  EXPECT_EQ(term("RTN"), term("roundTowardNegative"));
  TermManager m;
  EXPECT_EQ(read_term("RNE", m), m.make_fprounding_even());
  EXPECT_EQ(read_term("RTZ", m), m.make_fprounding_zero());
  EXPECT_EQ(read_term("RTP", m), m.make_fprounding_plus_inf());
  EXPECT_EQ(read_term("RTN", m), m.make_fprounding_minus_inf());
}

TEST(FloatingPoint, TheFifthModeIsUnsupported) {
  EXPECT_EQ(error("RNA"),
            "2:13: unsupported: the operator 'RNA' of the theory of floating-point numbers");
  EXPECT_EQ(error("(fp.neg (fp.add roundNearestTiesToAway x y))"),
            "2:29: unsupported: the operator 'roundNearestTiesToAway' of the theory of "
            "floating-point numbers");
}

TEST(FloatingPoint, RoundingModesAreCompared) {
  TermManager m;
  const Term_* r = m.make_constant(m.make_symbol("r", m.get_fprounding_type()));
  EXPECT_EQ(read_term("(= r RTZ)", m), m.make_equal(r, m.make_fprounding_zero()));
  EXPECT_EQ(read_term("(distinct r RTZ)", m),
            m.make_not(m.make_equal(r, m.make_fprounding_zero())));
}

TEST(FloatingPoint, SpecialValuesAreNumerals) {
  EXPECT_EQ(term("(_ +oo 5 11)"), "31744_5_10");
  EXPECT_EQ(term("(_ -oo 5 11)"), "64512_5_10");
  EXPECT_EQ(term("(_ NaN 5 11)"), "32256_5_10");
  EXPECT_EQ(term("(_ +zero 5 11)"), "0_5_10");
  EXPECT_EQ(term("(_ -zero 5 11)"), "32768_5_10");
  EXPECT_EQ(term("(_ -zero 15 113)"), "170141183460469231731687303715884105728_15_112");
}

TEST(FloatingPoint, LiteralsAreNumerals) {
  EXPECT_EQ(term("(fp #b1 #b00011 #b0000000001)"), "35841_5_10");
  EXPECT_EQ(term("(fp (_ bv1 1) #b00011 (_ bv1 10))"), "35841_5_10");
  EXPECT_EQ(term("(fp #b0 #x7f #b00000000000000000000000)"), "1065353216_8_23");
  // A NaN keeps the bits that it was written with.
  EXPECT_EQ(term("(fp #b1 #b11111 #b0000000001)"), "64513_5_10");
}

TEST(FloatingPoint, PartsThatAreTermsAreConcatenated) {
  EXPECT_EQ(term("(fp #b1 #b00011 ((_ extract 9 0) c))"),
            "(`fpfromieeebv__16_5_10` (`bvconcat_6_10` (`bvconcat_1_5` 1_1 3_5) "
            "(`bvextract_9_0_16` c)))");
}

TEST(FloatingPoint, LiteralsNeedPartsOfFittingWidths) {
  EXPECT_EQ(error("(fp #b00 #b00011 #b0000000001)"),
            "2:13: argument 1 of 'fp' has sort (_ BitVec 2), but (_ BitVec 1) is expected");
  EXPECT_EQ(error("(fp #b0 x #b0000000001)"),
            "2:13: argument 2 of 'fp' has sort (_ FloatingPoint 5 11), but a bit-vector is "
            "expected");
  EXPECT_EQ(error("(fp #b0 #b00 1.0)"),
            "2:13: argument 3 of 'fp' has sort Real, but a bit-vector is expected");
  EXPECT_EQ(error("(fp #b0 #b1 #b0000)"),
            "2:13: (_ FloatingPoint 1 5) is no sort: it needs two bits of exponent and two of "
            "significand at least");
  EXPECT_EQ(error("(fp #b0 #b11 #b0)"),
            "2:13: unsupported: the sort (_ FloatingPoint 2 2), whose significand has fewer than "
            "three bits");
  EXPECT_EQ(error("(fp #b0 #b11)"), "2:13: 'fp' takes 3 arguments, not 2");
}

TEST(FloatingPoint, SpecialValuesNeedAFormat) {
  EXPECT_EQ(error("+oo"), "2:13: '+oo' takes 2 indices, not 0");
  EXPECT_EQ(error("(_ NaN 5)"), "2:13: 'NaN' takes 2 indices, not 1");
  EXPECT_EQ(error("(_ NaN 1 11)"),
            "2:13: (_ FloatingPoint 1 11) is no sort: it needs two bits of exponent and two of "
            "significand at least");
  EXPECT_EQ(error("(_ -zero 2 2)"),
            "2:13: unsupported: the sort (_ FloatingPoint 2 2), whose significand has fewer than "
            "three bits");
  EXPECT_EQ(error("(_ +oo 5 x)"), "2:13: '+oo' takes numerals as indices, not 'x'");
}

TEST(FloatingPoint, ConstantsOfExcessiveFormatsAreUnsupported) {
  const std::string why = "2:13: unsupported: floating-point constants of more than 1048576 bits";
  EXPECT_EQ(error("(_ NaN 3 1048574)"), why);
  EXPECT_EQ(error("(_ +zero 4294967296 4294967296)"), why);
  EXPECT_EQ(error("((_ to_fp 3 1048574) RNE 1.0)"), why);
  EXPECT_EQ(error("(fp #b0 (_ bv0 5) (_ bv0 1048571))"), why);
  EXPECT_EQ(error("((_ fp.to_ubv 8) r ((_ to_fp 3 1048574) r x))"), why);
}

TEST(FloatingPoint, TheWidestConstantsAreRead) {
  EXPECT_EQ(term("(_ +zero 2 1048574)"), "0_2_1048573");
}

// ----- operators --------------------------------------------------------------------------------

TEST(FloatingPoint, OperatorsAreThoseOfTheManager) {
  const char* const rows[][2] = {
      {"(fp.abs x)", "(`fpabs_5_10` x)"},
      {"(fp.neg x)", "(`fpneg_5_10` x)"},
      {"(fp.add r x y)", "(`fpadd_5_10` r x y)"},
      {"(fp.sub r x y)", "(`fpsub_5_10` r x y)"},
      {"(fp.mul r x y)", "(`fpmul_5_10` r x y)"},
      {"(fp.div r x y)", "(`fpdiv_5_10` r x y)"},
      {"(fp.sqrt r x)", "(`fpsqrt_5_10` r x)"},
      {"(fp.roundToIntegral r x)", "(`fproundtoint_5_10` r x)"},
      {"(fp.min x y)", "(`fpmin_5_10` x y)"},
      {"(fp.max x y)", "(`fpmax_5_10` x y)"},
      {"(fp.leq x y)", "(`fple_5_10` x y)"},
      {"(fp.lt x y)", "(`fplt_5_10` x y)"},
      {"(fp.geq x y)", "(`fple_5_10` y x)"},
      {"(fp.gt x y)", "(`fplt_5_10` y x)"},
      {"(fp.eq x y)", "(`fpeq_5_10` x y)"},
      {"(fp.isNormal x)", "(`fpisnormal_5_10` x)"},
      {"(fp.isSubnormal x)", "(`fpissubnormal_5_10` x)"},
      {"(fp.isZero x)", "(`fpiszero_5_10` x)"},
      {"(fp.isInfinite x)", "(`fpisinf_5_10` x)"},
      {"(fp.isNaN x)", "(`fpisnan_5_10` x)"},
      {"(fp.isNegative x)", "(`fpisneg_5_10` x)"},
      {"(fp.isPositive x)", "(`fpispos_5_10` x)"},
      {"(= x y)", "(`=_(FP |5:10|)` x y)"},
      {"(ite p x y)", "(`ite_(FP |5:10|)` p x y)"},
      {"((_ to_fp 5 11) c)", "(`fpfromieeebv__16_5_10` c)"},
      {"((_ to_fp 8 24) r x)", "(`fpcast__5_10_8_23` r x)"},
      {"((_ to_fp 5 11) r x)", "(`fpcast__5_10_5_10` r x)"},
      {"((_ to_fp 8 24) r c)", "(`fpfromsbv__16_8_23` r c)"},
      {"((_ to_fp_unsigned 8 24) r c)", "(`fpfromubv__16_8_23` r c)"},
      {"((_ fp.to_sbv 8) r x)", "(`fptobv__5_10_8` r x)"},
      {"(fp.to_ieee_bv x)", "(`fpasbv__5_10_16` x)"},
  };
  for (const auto& row : rows) EXPECT_EQ(term(row[0]), row[1]);
}

TEST(FloatingPoint, ChainsAreConjunctions) {
  EXPECT_EQ(term("(fp.lt x y z)"), "(`and` (`fplt_5_10` x y) (`fplt_5_10` y z))");
  EXPECT_EQ(term("(fp.leq x y z)"), "(`and` (`fple_5_10` x y) (`fple_5_10` y z))");
  EXPECT_EQ(term("(fp.gt x y z)"), "(`and` (`fplt_5_10` y x) (`fplt_5_10` z y))");
  EXPECT_EQ(term("(fp.geq x y z)"), "(`and` (`fple_5_10` y x) (`fple_5_10` z y))");
  EXPECT_EQ(term("(fp.eq x y z x)"),
            "(`and` (`and` (`fpeq_5_10` x y) (`fpeq_5_10` y z)) (`fpeq_5_10` z x))");
}

TEST(FloatingPoint, OperandsMustBeOfOneFormat) {
  EXPECT_EQ(error("(fp.add r x d)"),
            "2:13: argument 3 of 'fp.add' has sort (_ FloatingPoint 11 53), but "
            "(_ FloatingPoint 5 11) is expected");
  EXPECT_EQ(error("(fp.lt x y d)"),
            "2:13: argument 3 of 'fp.lt' has sort (_ FloatingPoint 11 53), but "
            "(_ FloatingPoint 5 11) is expected");
  EXPECT_EQ(error("(fp.max d x)"),
            "2:13: argument 2 of 'fp.max' has sort (_ FloatingPoint 5 11), but "
            "(_ FloatingPoint 11 53) is expected");
}

TEST(FloatingPoint, OperandsMustBeFloatsUnderARoundingMode) {
  EXPECT_EQ(error("(fp.add x y z)"),
            "2:13: argument 1 of 'fp.add' has sort (_ FloatingPoint 5 11), but RoundingMode is "
            "expected");
  EXPECT_EQ(error("(fp.sqrt r c)"),
            "2:13: argument 2 of 'fp.sqrt' has sort (_ BitVec 16), but a floating-point number is "
            "expected");
  EXPECT_EQ(error("(fp.isNaN 1.0)"),
            "2:13: argument 1 of 'fp.isNaN' has sort Real, but a floating-point number is "
            "expected");
  EXPECT_EQ(error("(fp.to_ieee_bv c)"),
            "2:13: argument 1 of 'fp.to_ieee_bv' has sort (_ BitVec 16), but a floating-point "
            "number is expected");
}

TEST(FloatingPoint, OperandsAreCounted) {
  EXPECT_EQ(error("(fp.add r x)"), "2:13: 'fp.add' takes 3 arguments, not 2");
  EXPECT_EQ(error("(fp.neg r x)"), "2:13: 'fp.neg' takes 1 argument, not 2");
  EXPECT_EQ(error("(fp.sqrt r x y)"), "2:13: 'fp.sqrt' takes 2 arguments, not 3");
  EXPECT_EQ(error("(fp.leq x)"), "2:13: 'fp.leq' takes at least 2 arguments, not 1");
}

TEST(FloatingPoint, RemFmaAndToRealAreUnsupported) {
  const std::string of = " of the theory of floating-point numbers";
  EXPECT_EQ(error("(fp.rem x y)"), "2:14: unsupported: the operator 'fp.rem'" + of);
  EXPECT_EQ(error("(fp.fma r x y z)"), "2:14: unsupported: the operator 'fp.fma'" + of);
  EXPECT_EQ(error("(fp.to_real x)"), "2:14: unsupported: the operator 'fp.to_real'" + of);
}

// ----- conversions ------------------------------------------------------------------------------

TEST(FloatingPoint, ConstantsAreRoundedWhenTheyAreRead) {
  // 0.1 lies between 11878 and 11879 units of 2^-4 / 1024.
  EXPECT_EQ(term("((_ to_fp 5 11) RNE 0.1)"), "11878_5_10");
  EXPECT_EQ(term("((_ to_fp 5 11) RTP 0.1)"), "11879_5_10");
  EXPECT_EQ(term("((_ to_fp 5 11) RTN (- 0.1))"), "44647_5_10");
  EXPECT_EQ(term("((_ to_fp 5 11) RTZ (- 0.1))"), "44646_5_10");
  EXPECT_EQ(term("((_ to_fp 5 11) RNE 3)"), "16896_5_10");
  EXPECT_EQ(term("((_ to_fp 5 11) RNE (/ 1 3))"), "13653_5_10");
  EXPECT_EQ(term("((_ to_fp 5 11) RNE (- (/ 1.0 3.0)))"), "46421_5_10");
  EXPECT_EQ(term("((_ to_fp 5 11) RNE 0.0)"), "0_5_10");
  EXPECT_EQ(term("((_ to_fp 5 11) RNE 1000000.0)"), "31744_5_10");
  EXPECT_EQ(term("((_ to_fp 5 11) RTZ 1000000.0)"), "31743_5_10");
}

TEST(FloatingPoint, ConstantsMayBeSumsAndProducts) {
  EXPECT_EQ(term("((_ to_fp 5 11) RNE (+ 1 2))"), "16896_5_10");
  EXPECT_EQ(term("((_ to_fp 5 11) RNE (- 5.0 (* 2 1)))"), "16896_5_10");
  EXPECT_EQ(term("((_ to_fp 5 11) RNE (/ (+ 4 5) 3))"), "16896_5_10");
  EXPECT_EQ(term("(let ((v 3.0)) ((_ to_fp 5 11) RNE v))"), "16896_5_10");
}

TEST(FloatingPoint, RealsThatAreNoConstantsAreUnsupported) {
  EXPECT_EQ(error("((_ to_fp 5 11) RNE q)"),
            "2:13: unsupported: 'to_fp' of a Real that is not a constant");
  EXPECT_EQ(error("((_ to_fp 5 11) RNE (+ q 1))"),
            "2:13: unsupported: 'to_fp' of a Real that is not a constant");
  EXPECT_EQ(error("((_ to_fp 5 11) RNE i)"),
            "2:13: unsupported: 'to_fp' of an Int that is not a constant");
  EXPECT_EQ(error("((_ to_fp 5 11) r 0.1)"),
            "2:13: unsupported: 'to_fp' of a Real under a rounding mode that is not a constant");
  EXPECT_EQ(error("((_ to_fp 5 11) (ite p RNE RTZ) 1)"),
            "2:13: unsupported: 'to_fp' of an Int under a rounding mode that is not a constant");
}

TEST(FloatingPoint, ConversionsCheckTheirOperands) {
  EXPECT_EQ(error("((_ to_fp 8 24) c)"),
            "2:13: argument 1 of 'to_fp' has sort (_ BitVec 16), but (_ BitVec 32) is expected");
  EXPECT_EQ(error("((_ to_fp 8 24) x)"),
            "2:13: argument 1 of 'to_fp' has sort (_ FloatingPoint 5 11), but (_ BitVec 32) is "
            "expected");
  EXPECT_EQ(error("((_ to_fp 8 24) x r)"),
            "2:13: argument 1 of 'to_fp' has sort (_ FloatingPoint 5 11), but RoundingMode is "
            "expected");
  EXPECT_EQ(error("((_ to_fp 8 24) r p)"),
            "2:13: argument 2 of 'to_fp' has sort Bool, but a number or a bit-vector is expected");
  EXPECT_EQ(error("((_ to_fp 8 24) r c c)"), "2:13: 'to_fp' takes at most 2 arguments, not 3");
  EXPECT_EQ(error("((_ to_fp 1 24) r c)"),
            "2:13: (_ FloatingPoint 1 24) is no sort: it needs two bits of exponent and two of "
            "significand at least");
  EXPECT_EQ(error("((_ to_fp_unsigned 8 24) r x)"),
            "2:13: argument 2 of 'to_fp_unsigned' has sort (_ FloatingPoint 5 11), but a "
            "bit-vector is expected");
  EXPECT_EQ(error("((_ fp.to_sbv 0) r x)"), "2:13: a bit-vector needs a width of at least 1");
  EXPECT_EQ(error("((_ fp.to_ubv 0) r x)"), "2:13: a bit-vector needs a width of at least 1");
  EXPECT_EQ(error("((_ fp.to_sbv 8) r c)"),
            "2:13: argument 2 of 'fp.to_sbv' has sort (_ BitVec 16), but a floating-point number "
            "is expected");
  EXPECT_EQ(error("((_ fp.to_ubv 18446744073709551614) r x)"),
            "2:13: 'fp.to_ubv' has a width that is too large");
}

TEST(FloatingPoint, ToUbvIsAWiderSignedConversion) {
  EXPECT_EQ(term("((_ fp.to_ubv 8) r x)"),
            "(`ite_(BitVec 8)` (`and` (`and` (`fple_5_10` 48128_5_10 x) "
            "(`fple_5_10` x 23552_5_10)) (`=_(BitVec 2)` (`bvextract_9_8_10` "
            "#13=(`fptobv__5_10_10` r x)) 0_2)) (`bvextract_7_0_10` #13) "
            "(quill!fp_to_ubv_5_10_8 r (`ite_(FP |5:10|)` (`fpisnan_5_10` x) 32256_5_10 x)))");
}

TEST(FloatingPoint, ToUbvDeclaresAFunctionForEachFormatAndWidth) {
  const std::string text = printed(
      "(declare-const x Float16)(declare-const d Float64)"
      "(push 1)(assert (= ((_ fp.to_ubv 2) RTZ x) ((_ fp.to_ubv 2) RNE x)))(pop 1)"
      "(assert (= ((_ fp.to_ubv 2) RTZ d) #b00))(assert (= ((_ fp.to_ubv 3) RTZ x) #b000))");
  EXPECT_EQ(text.substr(0, text.find("(declare-const")),
            "(declare-fun quill!fp_to_ubv_5_10_2 (RoundingMode (_ FloatingPoint 5 11)) "
            "(_ BitVec 2))\n"
            "(declare-fun quill!fp_to_ubv_11_52_2 (RoundingMode (_ FloatingPoint 11 53)) "
            "(_ BitVec 2))\n"
            "(declare-fun quill!fp_to_ubv_5_10_3 (RoundingMode (_ FloatingPoint 5 11)) "
            "(_ BitVec 3))\n");
}

// Solvers tell NaNs apart as arguments of functions.
TEST(FloatingPoint, ToUbvIsAFunctionOfOneNan) {
  EXPECT_EQ(printed("(declare-const x Float16)(assert (= ((_ fp.to_ubv 2) RTZ x) #b00))"),
            "(declare-fun quill!fp_to_ubv_5_10_2 (RoundingMode (_ FloatingPoint 5 11)) "
            "(_ BitVec 2))\n"
            "(declare-const x (_ FloatingPoint 5 11))\n"
            "(assert (let ((@1 ((_ fp.to_sbv 4) RTZ x))) (= (ite (and "
            "(fp.leq (fp #b1 #b01111 #b0000000000) x) (fp.leq x (fp #b0 #b10001 #b0000000000)) "
            "(= ((_ extract 3 2) @1) (_ bv0 2))) ((_ extract 1 0) @1) "
            "(quill!fp_to_ubv_5_10_2 RTZ "
            "(ite (fp.isNaN x) (fp #b0 #b11111 #b1000000000) x))) (_ bv0 2))))\n");
}

TEST(FloatingPoint, ToUbvKeepsOutOfTheWayOfTheUsersNames) {
  const std::string text = printed(
      "(declare-const x Float16)(declare-const quill!fp_to_ubv_5_10_2 Bool)"
      "(assert (= ((_ fp.to_ubv 2) RTZ x) #b00))");
  EXPECT_NE(text.find("(declare-fun quill!fp_to_ubv_5_10_2_0 (RoundingMode "), std::string::npos)
      << text;
  EXPECT_NE(text.find("(quill!fp_to_ubv_5_10_2_0 RTZ "), std::string::npos) << text;
}

TEST(FloatingPoint, ToUbvIsTakenBackWhenTheScriptIsFaulty) {
  TermManager m;
  EXPECT_THROW(read_text("(declare-const x Float16)"
                         "(assert (= ((_ fp.to_ubv 2) RTZ x) #b00))(assert y)",
                         m),
               ParseError);
  EXPECT_EQ(m.get_signature()->get_symbol("quill!fp_to_ubv_5_10_2"), nullptr);
}

TEST(FloatingPoint, WhatIsWrittenReadsBackToTheSameTerms) {
  TermManager m;
  const Script first = read_text(names +
                                     "(assert (= ((_ fp.to_ubv 8) r x) #x03))"
                                     "(assert (fp.lt x ((_ to_fp 5 11) RNE (- 0.1)) (_ NaN 5 11)))",
                                 m);
  std::ostringstream output;
  write(output, m, first);
  const Script second = read_text(output.str(), m);
  ASSERT_EQ(first.commands.size(), second.commands.size());
  for (size_t i = first.commands.size() - 2; i < first.commands.size(); ++i) {
    EXPECT_EQ(first.commands[i].terms[0].value.term, second.commands[i].terms[0].value.term);
  }
}

// ----- logics -----------------------------------------------------------------------------------

TEST(FloatingPointLogics, HaveConstantsOfSortRealWithoutArithmetic) {
  for (const std::string logic : {"QF_FP", "QF_BVFP", "QF_FPLRA", "ALL"}) {
    const std::string head = "(set-logic " + logic + ")(declare-const x Float16)";
    for (const std::string constant :
         {"3", "3.0", "(- (- 3))", "(/ 6 2)", "(- (/ (- 6) 2))", "(/ 9.0 (/ 6 2.0))"}) {
      EXPECT_EQ(asserted(head + "(assert (= x ((_ to_fp 5 11) RNE " + constant + ")))"),
                "(= x (fp #b0 #b10000 #b1000000000))")
          << logic << " " << constant;
    }
  }
}

TEST(FloatingPointLogics, HaveDecimalsBesideIntegers) {
  const std::string head = "(set-logic QF_FPLIA)(declare-const i Int)(declare-const x Float16)";
  EXPECT_EQ(asserted(head + "(assert (= x ((_ to_fp 5 11) RNE (- 1.5))))"),
            "(= x (fp #b1 #b01111 #b1000000000))");
  EXPECT_EQ(error_of(head + "(assert (= i 1.5 (/ i 2)))"),
            "1:84: '/' is there in the logic QF_FPLIA only for constants such as (/ 1 3)");
}

TEST(FloatingPointLogics, HaveNoOtherArithmetic) {
  const std::string head = "(set-logic QF_FP)\n";
  const std::string for_constants = " is there in the logic QF_FP only for constants such as ";
  EXPECT_EQ(error_of(head + "(assert (= 1 (- 2 1)))"), "2:14: '-'" + for_constants + "(- 0.1)");
  EXPECT_EQ(error_of(head + "(assert (= 1 (- (ite true 1 2))))"),
            "2:14: '-'" + for_constants + "(- 0.1)");
  EXPECT_EQ(error_of(head + "(assert (= 1 (/ 1 0)))"), "2:14: '/'" + for_constants + "(/ 1 3)");
  EXPECT_EQ(error_of(head + "(assert (= 1 (/ 4 2 2)))"), "2:14: '/'" + for_constants + "(/ 1 3)");
  EXPECT_EQ(error_of(head + "(assert (= 1 (+ 1 1)))"),
            "2:15: unknown symbol '+' (the logic QF_FP does not have it)");
  EXPECT_EQ(error_of(head + "(assert (< 1 2))"),
            "2:10: unknown symbol '<' (the logic QF_FP does not have it)");
  EXPECT_EQ(error_of(head + "(declare-const q Real)"),
            "2:18: unknown sort 'Real' (the logic QF_FP does not have it)");
  EXPECT_EQ(error_of("(set-logic QF_BV)\n(assert (= 1 1))"),
            "2:12: the logic QF_BV has no number '1'");
}

TEST(FloatingPointLogics, LeaveTheNamesOfArithmeticToTheUser) {
  const std::string text =
      "(set-logic QF_FP)\n"
      "(declare-const - Bool)\n"
      "(declare-const / Bool)\n"
      "(declare-const + Bool)\n"
      "(assert (and - / +))\n";
  EXPECT_EQ(printed(text), text);
  EXPECT_EQ(asserted("(set-logic QF_FP)(define-fun - ((a Bool)) Bool (not a))"
                     "(declare-const p Bool)(assert (- p))"),
            "(not p)");
  EXPECT_EQ(error_of("(set-logic QF_FP)(define-fun - ((a Bool)) Bool (not a))\n"
                     "(assert (= 1 (- 1)))"),
            "2:14: argument 1 of '-' has sort Real, but Bool is expected");
}

TEST(FloatingPointLogics, LeaveANameOfReadersToTheUser) {
  const std::string text = printed(
      "(set-logic QF_FP)(declare-const fp.to_ieee_bv Bool)"
      "(assert fp.to_ieee_bv)");
  EXPECT_EQ(text.substr(text.find('\n') + 1),
            "(declare-const quill!fp!2eto!5fieee!5fbv Bool)\n(assert quill!fp!2eto!5fieee!5fbv)\n");
}

TEST(FloatingPointLogics, GiveNamesOfTheTheoryToTheUserElsewhere) {
  EXPECT_EQ(error_of("(set-logic QF_FP)\n(declare-const RNE Bool)"),
            "2:16: 'RNE' is an operator of the theory of floating-point numbers and cannot be "
            "declared");
  EXPECT_EQ(asserted("(set-logic QF_UF)(declare-const RNE Bool)(assert (and RNE true))"),
            "(and RNE true)");
}

}  // namespace
}  // namespace quill::smt2
