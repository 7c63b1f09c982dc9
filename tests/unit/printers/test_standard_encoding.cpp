#include <gtest/gtest.h>

#include <array>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "quill/derived/derived.h"
#include "quill/printers/smtlib2_term_printer.h"
#include "quill/printers/standard_encoding.h"
#include "tests/support/manager_test.h"

namespace quill {
namespace {

using Annotations = SmtLib2TermPrinter::Annotations;

class Standard : public testing::ManagerTest {
 protected:
  std::string text(const Term_* t, const Annotations* annotations = nullptr, bool share = true) {
    std::ostringstream out;
    SmtLib2TermPrinter(&m, &standard, "", "", share, annotations).print_term(out, t);
    return out.str();
  }
  // What has to come before the term.
  std::string definitions_of(const Term_* t) {
    SmtLib2TermPrinter printer(&m, &standard, "", "", true, nullptr);
    printer.set_definitions(&definitions);
    std::ostringstream out;
    printer.print_definitions(out, t);
    return out.str();
  }

  Configuration::Printer standard{.dialect = Configuration::Dialect::Standard, .logic = ""};
  BitDefinitions definitions{m};
  const DataType* const single = m.get_fp_type(8, 23);
  const Term_* const p = constant("p", m.get_bool_type());
  const Term_* const i = constant("i", m.get_int_type());
  const Term_* const b = constant("b", m.get_bv_type(8));
  const Term_* const f = constant("f", single);
  const Term_* const g = constant("g", single);
  const Term_* const h = constant("h", m.get_fp_type(5, 10));
};

TEST_F(Standard, SignedValueIsTheUnsignedOneOrLessByAPowerOfTwo) {
  EXPECT_EQ(text(m.make_int_from_sbv(b)),
            "(- (bv2nat b) (ite (= ((_ extract 7 7) b) (_ bv1 1)) 256 0))");
  const Term_* bit = constant("bit", m.get_bv_type(1));
  EXPECT_EQ(text(m.make_int_from_sbv(bit)),
            "(- (bv2nat bit) (ite (= ((_ extract 0 0) bit) (_ bv1 1)) 2 0))");
  const Term_* wide = constant("wide", m.get_bv_type(64));
  EXPECT_EQ(text(m.make_int_from_sbv(wide)),
            "(- (bv2nat wide) (ite (= ((_ extract 63 63) wide) (_ bv1 1)) "
            "18446744073709551616 0))");
}

TEST_F(Standard, LowBitsComeFromHalving) {
  EXPECT_EQ(text(m.make_int_to_bv(1, i)), "(ite (= (- i (* 2 (div i 2))) 1) (_ bv1 1) (_ bv0 1))");
  EXPECT_EQ(text(m.make_int_to_bv(3, i)),
            "(let ((@1 (div i 2))) (let ((@2 (div @1 2))) "
            "(concat (ite (= (- @2 (* 2 (div @2 2))) 1) (_ bv1 1) (_ bv0 1)) "
            "(ite (= (- @1 (* 2 @2)) 1) (_ bv1 1) (_ bv0 1)) "
            "(ite (= (- i (* 2 @1)) 1) (_ bv1 1) (_ bv0 1)))))");
}

TEST_F(Standard, LowBitsOfTheValueOfABitVectorAreItsOwn) {
  const Term_* value = m.make_int_from_ubv(b);
  EXPECT_EQ(text(m.make_int_to_bv(7, value)), "((_ extract 6 0) b)");
  EXPECT_EQ(text(m.make_int_to_bv(8, value)), "b");
  EXPECT_EQ(text(m.make_int_to_bv(9, value)), "((_ zero_extend 1) b)");
  const Term_* signed_value = m.make_int_from_sbv(b);
  EXPECT_EQ(text(m.make_int_to_bv(7, signed_value)), "((_ extract 6 0) b)");
  EXPECT_EQ(text(m.make_int_to_bv(8, signed_value)), "b");
  EXPECT_EQ(text(m.make_int_to_bv(9, signed_value)), "((_ sign_extend 1) b)");
}

TEST_F(Standard, TheEncodedTermIsTheOneThatItsTextDescribes) {
  BitDefinitions none(m);
  StandardEncoding encoding(m, none);
  const Term_* copy = encoding.encode(m.make_int_from_sbv(b));
  TermManager& target = encoding.manager();
  const Term_* c = encoding.copy_of(b);
  const Term_* is_negative =
      target.make_equal(target.make_bv_extract(7, 7, c), target.make_bv_number(1, 1));
  EXPECT_EQ(copy, make_minus(target, target.make_int_from_ubv(c),
                             target.make_term_ite(is_negative, target.make_number(256),
                                                  target.make_number(0))));
}

TEST_F(Standard, TextOfLowBitsIsLinearInTheirNumber) {
  const size_t some = text(m.make_int_to_bv(1000, i)).size();
  const size_t twice_as_many = text(m.make_int_to_bv(2000, i)).size();
  EXPECT_LT(twice_as_many, 2 * some + 10000);
}

TEST_F(Standard, OperatorsAboveTheLargestWidthAreWrittenAsExtensions) {
  constexpr size_t limit = StandardEncoding::max_encoded_width;
  EXPECT_EQ(limit, 65536U);
  EXPECT_EQ(text(m.make_int_to_bv(limit + 1, i)), "((_ int2bv 65537) i)");
  EXPECT_TRUE(StandardEncoding::is_rewritten(m, m.make_int_to_bv_symbol(limit)));
  EXPECT_FALSE(StandardEncoding::is_rewritten(m, m.make_int_to_bv_symbol(limit + 1)));
  EXPECT_TRUE(StandardEncoding::is_rewritten(m, m.make_int_from_sbv_symbol(limit)));
  EXPECT_FALSE(StandardEncoding::is_rewritten(m, m.make_int_from_sbv_symbol(limit + 1)));
  EXPECT_FALSE(StandardEncoding::is_rewritten(m, m.make_int_from_sbv_symbol(0)));
}

TEST_F(Standard, SignedValuesOfAnyWidthAreWritten) {
  const auto value_of = [&](size_t width) {
    return m.make_int_from_sbv(constant("w" + std::to_string(width), m.get_bv_type(width)));
  };
  EXPECT_EQ(text(value_of(65'536)).substr(0, 60),
            "(- (bv2nat w65536) (ite (= ((_ extract 65535 65535) w65536) ");
  EXPECT_EQ(text(value_of(65'537)), "(sbv_to_int w65537)");
  EXPECT_EQ(text(value_of((size_t{1} << 32) + 1)), "(sbv_to_int w4294967297)");
  EXPECT_EQ(text(value_of(SIZE_MAX)), "(sbv_to_int w18446744073709551615)");
  EXPECT_EQ(text(value_of(0)), "(sbv_to_int w0)");
}

TEST_F(Standard, LowBitsOfValuesOfAnyWidthAreWritten) {
  const Term_* huge = constant("huge", m.get_bv_type(SIZE_MAX));
  EXPECT_EQ(text(m.make_int_to_bv(8, m.make_int_from_sbv(huge))), "((_ extract 7 0) huge)");
  const Term_* nothing = constant("nothing", m.get_bv_type(0));
  EXPECT_EQ(text(m.make_int_to_bv(8, m.make_int_from_ubv(nothing))), "((_ zero_extend 8) nothing)");
  EXPECT_EQ(text(m.make_int_to_bv(0, m.make_int_from_sbv(b))),
            "((_ int2bv 0) (- (bv2nat b) (ite (= ((_ extract 7 7) b) (_ bv1 1)) 256 0)))");
}

// Managers that check nothing build them.
TEST_F(Standard, OperatorsOnOperandsOfAnotherTypeAreLeftAsTheyAre) {
  m.set_typecheck_enabled(false);
  const auto applied = [&](const Symbol* s, const Term_* t) {
    return m.make_uninterpreted_function(s, {t});
  };
  const Term_* value = applied(m.make_int_from_sbv_symbol(8), i);
  const Term_* resized = applied(m.make_int_to_bv_symbol(4), m.make_int_from_sbv(b));
  EXPECT_EQ(text(value), "(sbv_to_int i)");
  EXPECT_EQ(text(applied(m.make_int_to_bv_symbol(4), b)), "((_ int2bv 4) b)");
  EXPECT_EQ(text(applied(m.make_fp_as_ieeebv_symbol(8, 23), h)), "(fp.to_ieee_bv h)");
  EXPECT_EQ(text(m.make_equal(applied(m.make_int_to_bv_symbol(1), value), resized)),
            "(= (ite (= (- (sbv_to_int i) (* 2 (div (sbv_to_int i) 2))) 1) (_ bv1 1) (_ bv0 1)) "
            "((_ extract 3 0) b))");
  EXPECT_EQ(definitions_of(applied(m.make_fp_as_ieeebv_symbol(8, 23), h)), "");
}

TEST_F(Standard, RewrittenOperatorsMayBeNested) {
  const Term_* sum = m.make_plus(m.make_int_from_sbv(b), i);
  EXPECT_EQ(text(m.make_int_from_sbv(m.make_int_to_bv(1, sum))),
            "(let ((@1 (+ (- (bv2nat b) (ite (= ((_ extract 7 7) b) (_ bv1 1)) 256 0)) i))) "
            "(let ((@2 (ite (= (- @1 (* 2 (div @1 2))) 1) (_ bv1 1) (_ bv0 1)))) "
            "(- (bv2nat @2) (ite (= ((_ extract 0 0) @2) (_ bv1 1)) 2 0))))");
}

TEST_F(Standard, WithoutSharingItIsATree) {
  EXPECT_EQ(text(m.make_int_to_bv(2, i), nullptr, /*share=*/false),
            "(concat (ite (= (- (div i 2) (* 2 (div (div i 2) 2))) 1) (_ bv1 1) (_ bv0 1)) "
            "(ite (= (- i (* 2 (div i 2))) 1) (_ bv1 1) (_ bv0 1)))");
}

TEST_F(Standard, ARealPlaceAsksForAReal) {
  std::ostringstream out;
  SmtLib2TermPrinter(&m, &standard, "", "", true, nullptr)
      .print_term(out, m.make_int_from_sbv(b), m.get_rat_type());
  EXPECT_EQ(out.str(), "(to_real (- (bv2nat b) (ite (= ((_ extract 7 7) b) (_ bv1 1)) 256 0)))");
}

// --- Bits of floating-point values ---

TEST_F(Standard, BitsAreAConstant) {
  const Term_* bits = m.make_fp_as_ieeebv(f);
  EXPECT_EQ(text(m.make_bv_add(bits, m.make_fp_as_ieeebv(g))),
            "(bvadd quill!ieee_bits_1 quill!ieee_bits_2)");
  EXPECT_EQ(text(m.make_bv_add(bits, bits)), "(bvadd quill!ieee_bits_1 quill!ieee_bits_1)");
}

TEST_F(Standard, DefinitionsDeclareAndAssert) {
  EXPECT_EQ(definitions_of(m.make_fp_as_ieeebv(f)),
            "(declare-const quill!ieee_nan_1 (_ BitVec 32))\n"
            "(declare-const quill!ieee_bits_1 (_ BitVec 32))\n"
            "(assert (and (= ((_ to_fp 8 24) quill!ieee_bits_1) f) "
            "(or (not (fp.isNaN f)) (= quill!ieee_bits_1 quill!ieee_nan_1))))\n");
}

TEST_F(Standard, WhatIsDefinedIsNotDefinedAgain) {
  const Term_* of_f = m.make_fp_as_ieeebv(f);
  definitions_of(of_f);
  EXPECT_EQ(definitions_of(of_f), "");
  EXPECT_EQ(definitions_of(m.make_bv_add(of_f, m.make_fp_as_ieeebv(g))),
            "(declare-const quill!ieee_bits_2 (_ BitVec 32))\n"
            "(assert (and (= ((_ to_fp 8 24) quill!ieee_bits_2) g) "
            "(or (not (fp.isNaN g)) (= quill!ieee_bits_2 quill!ieee_nan_1))))\n");
}

TEST_F(Standard, DefinitionsMayRelyOnOthers) {
  const Term_* inner = m.make_fp_from_ieeebv(8, 23, m.make_bv_not(m.make_fp_as_ieeebv(f)));
  EXPECT_EQ(definitions_of(m.make_fp_as_ieeebv(inner)),
            "(declare-const quill!ieee_nan_1 (_ BitVec 32))\n"
            "(declare-const quill!ieee_bits_1 (_ BitVec 32))\n"
            "(declare-const quill!ieee_bits_2 (_ BitVec 32))\n"
            "(assert (let ((@1 ((_ to_fp 8 24) (bvnot quill!ieee_bits_1)))) "
            "(and (= ((_ to_fp 8 24) quill!ieee_bits_1) f) "
            "(or (not (fp.isNaN f)) (= quill!ieee_bits_1 quill!ieee_nan_1)) "
            "(= ((_ to_fp 8 24) quill!ieee_bits_2) @1) "
            "(or (not (fp.isNaN @1)) (= quill!ieee_bits_2 quill!ieee_nan_1)))))\n");
}

TEST_F(Standard, FormatsHaveNansOfTheirOwn) {
  const Term_* t = m.make_bv_concat(m.make_fp_as_ieeebv(h), m.make_fp_as_ieeebv(f));
  EXPECT_EQ(definitions_of(t).substr(0, 190),
            "(declare-const quill!ieee_nan_1 (_ BitVec 16))\n"
            "(declare-const quill!ieee_bits_1 (_ BitVec 16))\n"
            "(declare-const quill!ieee_nan_2 (_ BitVec 32))\n"
            "(declare-const quill!ieee_bits_2 (_ BitVec 32))\n");
}

TEST_F(Standard, TermsWithoutBitsNeedNoDefinitions) {
  EXPECT_EQ(definitions_of(m.make_int_from_sbv(b)), "");
  EXPECT_EQ(definitions_of(p), "");
}

TEST_F(Standard, DefinitionsServeTheText) {
  SmtLib2TermPrinter printer(&m, &standard, "", "", true, nullptr);
  printer.set_definitions(&definitions);
  definitions.define(g);
  std::ostringstream out;
  printer.print_term(out, m.make_fp_as_ieeebv(g));
  EXPECT_EQ(out.str(), "quill!ieee_bits_1");
}

// --- Annotations ---

TEST_F(Standard, AnnotationsAreKept) {
  Annotations annotations;
  const Term_* value = m.make_int_from_sbv(b);
  annotations[value] = {{"named", "n"}};
  annotations[b] = {{"named", "k"}};
  EXPECT_EQ(text(m.make_leq(value, i), &annotations),
            "(<= (! (- (bv2nat (! b :named k)) (ite (= ((_ extract 7 7) k) (_ bv1 1)) 256 0)) "
            ":named n) i)");
}

TEST_F(Standard, NamesInsideABitsValueAreGivenInItsDefinition) {
  Annotations annotations;
  annotations[f] = {{"named", "n"}};
  const Term_* t =
      m.make_and(m.make_equal(m.make_fp_as_ieeebv(f), m.make_fp_as_ieeebv(g)), m.make_fp_isnan(f));
  SmtLib2TermPrinter printer(&m, &standard, "", "", true, &annotations);
  printer.set_definitions(&definitions);
  std::ostringstream out;
  printer.print_definitions(out, t);
  EXPECT_EQ(out.str(),
            "(declare-const quill!ieee_nan_1 (_ BitVec 32))\n"
            "(declare-const quill!ieee_bits_1 (_ BitVec 32))\n"
            "(declare-const quill!ieee_bits_2 (_ BitVec 32))\n"
            "(assert (and (= ((_ to_fp 8 24) quill!ieee_bits_1) (! f :named n)) "
            "(or (not (fp.isNaN n)) (= quill!ieee_bits_1 quill!ieee_nan_1)) "
            "(= ((_ to_fp 8 24) quill!ieee_bits_2) g) "
            "(or (not (fp.isNaN g)) (= quill!ieee_bits_2 quill!ieee_nan_1))))\n");
  out.str("");
  printer.print_term(out, t);
  EXPECT_EQ(out.str(), "(and (= quill!ieee_bits_1 quill!ieee_bits_2) (fp.isNaN f))");
}

TEST_F(Standard, ADefinitionIsRepeatedForANameInside) {
  const Term_* bits = m.make_fp_as_ieeebv(m.make_fp_neg(f));
  definitions_of(bits);
  Annotations annotations;
  annotations[f] = {{"named", "n"}};
  SmtLib2TermPrinter printer(&m, &standard, "", "", true, &annotations);
  printer.set_definitions(&definitions);
  std::ostringstream out;
  printer.print_definitions(out, bits);
  EXPECT_EQ(out.str(),
            "(assert (and (= ((_ to_fp 8 24) quill!ieee_bits_1) (fp.neg (! f :named n))) "
            "(or (not (fp.isNaN (fp.neg n))) (= quill!ieee_bits_1 quill!ieee_nan_1))))\n");
  out.str("");
  printer.print_definitions(out, bits);
  EXPECT_EQ(out.str(), "");
}

// --- Names ---

TEST_F(Standard, SymbolsOfOneNameAreToldApart) {
  const DataType* int_type = m.get_int_type();
  const Symbol* old_function = m.make_symbol("v", m.get_function_type({int_type}, int_type));
  const Term_* application = m.make_uninterpreted_function(old_function, {i});
  m.free_symbol(old_function);
  const Symbol* old_constant = m.make_symbol("v", int_type);
  const Term_* old_term = m.make_constant(old_constant);
  m.free_symbol(old_constant);
  const Term_* new_term = constant("v", m.get_bv_type(8));
  const Term_* sum = m.make_plus(m.make_int_from_sbv(new_term), m.make_plus(old_term, application));
  EXPECT_EQ(text(sum),
            "(+ (- (bv2nat v) (ite (= ((_ extract 7 7) v) (_ bv1 1)) 256 0)) (+ v (v i)))");
}

TEST_F(Standard, UnusualNamesAndTypesAreKept) {
  const DataType* sort = m.get_simple_type("a sort", false);
  m.set_reject_bool_arguments(false);
  const Symbol* function =
      m.make_symbol("a function", m.get_function_type({m.get_bool_type(), sort}, m.get_bv_type(8)));
  const Term_* t = m.make_uninterpreted_function(function, {p, m.make_fresh_variable(sort)});
  EXPECT_EQ(text(m.make_int_from_sbv(t)),
            "(let ((@1 (|a function| p |'1|))) "
            "(- (bv2nat @1) (ite (= ((_ extract 7 7) @1) (_ bv1 1)) 256 0)))");
}

// Whoever registers a symbol chooses its name, its type and its tag.
class ByHand : public Standard {
 protected:
  const Term_* function(const char* name, const DataType* argument, const DataType* result,
                        SymbolTag::tag tag, const Term_* operand) {
    const DataType* type = m.get_function_type({argument}, result);
    return m.make_uninterpreted_function(m.add_interpreted_symbol(name, type, tag), {operand});
  }

  // The text of a term, alone and beside something that has to be encoded.
  void expect_beside(const Term_* t, const std::string& expected) {
    EXPECT_EQ(text(t), expected);
    m.set_reject_bool_arguments(false);
    const DataType* type = m.get_function_type({t->type(), int_type}, single);
    const Symbol* pair = m.make_symbol("pair", type);
    m.free_symbol(pair);  // so that another one can have the name
    EXPECT_EQ(
        text(m.make_uninterpreted_function(pair, {t, m.make_int_from_sbv(b)})),
        "(pair " + expected + " (- (bv2nat b) (ite (= ((_ extract 7 7) b) (_ bv1 1)) 256 0)))");
  }

  const DataType* const int_type = m.get_int_type();
};

TEST_F(ByHand, SymbolsAreWrittenBesideWhatIsEncoded) {
  expect_beside(function("op", int_type, int_type, SymbolTag::NONE, i), "(|`op`| i)");
}

TEST_F(ByHand, SymbolsAreWrittenAboveWhatIsEncoded) {
  const Term_* value = m.make_int_from_sbv(b);
  EXPECT_EQ(text(function("op", int_type, int_type, SymbolTag::NONE, value)),
            "(|`op`| (- (bv2nat b) (ite (= ((_ extract 7 7) b) (_ bv1 1)) 256 0)))");
}

TEST_F(ByHand, SymbolsAreWrittenInDefinitions) {
  const Term_* value = function("op", single, single, SymbolTag::NONE, f);
  EXPECT_EQ(definitions_of(m.make_fp_as_ieeebv(value)),
            "(declare-const quill!ieee_nan_1 (_ BitVec 32))\n"
            "(declare-const quill!ieee_bits_1 (_ BitVec 32))\n"
            "(assert (and (= ((_ to_fp 8 24) quill!ieee_bits_1) (|`op`| f)) "
            "(or (not (fp.isNaN (|`op`| f))) (= quill!ieee_bits_1 quill!ieee_nan_1))))\n");
}

TEST_F(ByHand, ConstantsAreWritten) {
  expect_beside(m.make_constant(m.add_interpreted_symbol("c", int_type, SymbolTag::ARRAY_WRITE)),
                "|`c`|");
  expect_beside(m.make_and(p, m.make_constant(m.add_interpreted_symbol("yes", m.get_bool_type(),
                                                                       SymbolTag::TRUE))),
                "(and p true)");
}

TEST_F(ByHand, OperatorsAreWrittenByTheirTags) {
  const DataType* bits = m.get_bv_type(8);
  expect_beside(function("op", bits, bits, SymbolTag::BV_NOT, b), "(bvnot b)");
  expect_beside(function("low", bits, m.get_bv_type(4), SymbolTag::BV_EXTRACT, b), "(|`low`| b)");
  expect_beside(function("value", bits, int_type, SymbolTag::INT_FROM_SBV, b), "(sbv_to_int b)");
}

// Names of operators that the encoding makes, and of those that every manager has.
TEST_F(ByHand, NamesOfOperatorsStandInNobodysWay) {
  for (const char* name :
       {"ubv2int_8", "bvextract_7_7_8", "=_(BitVec 1)", "ite_int", "bvzext_1_8"}) {
    const DataType* type = m.get_simple_type("S", /*only_existing=*/false);
    const Term_* c = m.make_constant(m.add_interpreted_symbol(name, type, SymbolTag::NONE));
    expect_beside(c, "|`" + std::string(name) + "`|");
    m.free_symbol(c->symbol);
  }
  m.free_symbol(m.make_and(p, p)->symbol);
  expect_beside(m.make_constant(m.add_interpreted_symbol("and", int_type, SymbolTag::NONE)),
                "|`and`|");
}

TEST_F(ByHand, OneNameAfterTheOther) {
  const Term_* first = function("op", int_type, int_type, SymbolTag::NONE, i);
  m.free_symbol(first->symbol);
  const Term_* second = function("op", m.get_bv_type(8), int_type, SymbolTag::NONE, b);
  expect_beside(m.make_plus(first, second), "(+ (|`op`| i) (|`op`| b))");
}

TEST_F(ByHand, OperatorsOfTheManagerBesideThemKeepTheirIndices) {
  const Term_* low = m.make_bv_extract(6, 2, b);
  const Term_* rotated = m.make_bv_rotate_left(3, b);
  const Term_* congruence = m.make_int_modular_congruence(
      7, i, function("op", int_type, int_type, SymbolTag::NONE, m.make_int_from_ubv(low)));
  const Term_* t = m.make_and(congruence, m.make_bv_ult(rotated, b));
  expect_beside(t,
                "(and (= (mod i 7) (mod (|`op`| (bv2nat ((_ extract 6 2) b))) 7)) "
                "(bvult ((_ rotate_left 3) b) b))");
}

// --- User names that look like the manager's own ---

TEST_F(ByHand, ConstantsNamedLikeNumeralsAreNone) {
  const DataType* bit = m.get_bv_type(1);
  expect_beside(constant("1_1", bit), "|1_1|");
  const Term_* three = constant("3", int_type);
  m.free_symbol(three->symbol);
  expect_beside(m.make_plus(three, m.make_number(3)), "(+ |3| 3)");
  const Term_* five = m.make_bv_number(5, 8);
  m.free_symbol(five->symbol);
  EXPECT_EQ(
      text(m.make_plus(m.make_int_from_sbv(b), m.make_int_from_ubv(m.make_bv_add(
                                                   five, constant("5_8", m.get_bv_type(8)))))),
      "(+ (- (bv2nat b) (ite (= ((_ extract 7 7) b) (_ bv1 1)) 256 0)) "
      "(bv2nat (bvadd (_ bv5 8) |5_8|)))");
}

TEST_F(ByHand, NumeralsThatTheirTypesDoNotHaveAreWrittenByName) {
  const Term_* half = constant("1/2", int_type);
  EXPECT_EQ(m.make_number(QNumber(1, 2)), half);
  m.set_typecheck_enabled(false);
  expect_beside(half, "|1/2|");
  expect_beside(m.make_bv_number(256, 8), "|256_8|");
  expect_beside(m.make_fp_bits_number(-1, 8, 23), "|-1_8_23|");
}

// --- Independence and size ---

TEST_F(Standard, TheManagerIsOnlyRead) {
  const Term_* t = m.make_leq(m.make_int_from_sbv(m.make_fp_as_ieeebv(f)), m.make_int_from_sbv(b));
  const auto sizes = [this] {
    return std::array<size_t, 3>{m.get_universe()->size(), m.get_signature()->size(),
                                 m.get_bank()->size()};
  };
  const auto before = sizes();
  const std::string first = text(t);
  definitions_of(t);
  EXPECT_EQ(sizes(), before);
  EXPECT_EQ(text(t), first);
}

TEST_F(Standard, ThreadsMayPrintAtTheSameTime) {
  const Term_* t =
      m.make_int_from_sbv(m.make_int_to_bv(100, m.make_plus(m.make_int_from_sbv(b), i)));
  const std::string expected = text(t);
  std::vector<std::string> texts(4);
  std::vector<std::thread> threads;
  for (std::string& written : texts) {
    threads.emplace_back([&] {
      for (int n = 0; n < 20; ++n) written = text(t);
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const std::string& written : texts) EXPECT_EQ(written, expected);
}

TEST_F(Standard, LongChainsAreRewritten) {
  const Term_* t = i;
  for (int n = 0; n < 5000; ++n) {
    t = m.make_plus(i, m.make_int_from_sbv(m.make_int_to_bv(2, t)));
  }
  const std::string written = text(t);
  EXPECT_EQ(written.substr(0, 22), "(let ((@1 (div i 2))) ");
  EXPECT_LT(written.size(), 5000U * 400);
}

TEST_F(Standard, LongChainsOfBitsAreDefinedInLinearSize) {
  const Term_* t = f;
  for (int n = 0; n < 2000; ++n) t = m.make_fp_from_ieeebv(8, 23, m.make_fp_as_ieeebv(t));
  const std::string written = definitions_of(t);
  EXPECT_LT(written.size(), 2000U * 300);
}

}  // namespace
}  // namespace quill
