#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "quill/derived/derived.h"
#include "quill/printers/smtlib2_term_printer.h"
#include "quill/smtlib/logic.h"
#include "quill/smtlib/name_escape.h"
#include "quill/smtlib/syntax.h"
#include "quill/smtlib/theory_names.h"

namespace quill {
namespace {

TEST(Logic, IsReadAsACombination) {
  const Logic logic("QF_AUFLIRA");
  EXPECT_TRUE(logic.has(Theory::Core));
  EXPECT_TRUE(logic.has(Theory::Arrays));
  EXPECT_TRUE(logic.has(Theory::Ints));
  EXPECT_TRUE(logic.has(Theory::Reals));
  EXPECT_TRUE(logic.has(Theory::RealsInts));
  EXPECT_TRUE(logic.has(Theory::Arithmetic));
  EXPECT_FALSE(logic.has(Theory::BitVectors));
  EXPECT_FALSE(logic.has(Theory::Extensions));
  EXPECT_FALSE(logic.has(Theory::NoTheory));
  EXPECT_TRUE(logic.is_linear());
}

TEST(Logic, OfNoNameAndAllAndUnknownNamesHaveEverything) {
  for (const Logic& logic : {Logic(), Logic("ALL"), Logic("QF_SOMETHING")}) {
    EXPECT_TRUE(logic.has(Theory::Strings));
    EXPECT_TRUE(logic.has(Theory::Extensions));
    EXPECT_FALSE(logic.has(Theory::NoTheory));
    EXPECT_FALSE(logic.is_linear());
    EXPECT_FALSE(logic.is_nonlinear());
    EXPECT_FALSE(logic.numerals_are_real());
    EXPECT_TRUE(
        logic.covers({true, true, true, true, true, true, true, true, true, true, true, true}));
  }
}

TEST(Logic, NumeralsAreRealWithoutIntegers) {
  EXPECT_TRUE(Logic("QF_RDL").numerals_are_real());
  EXPECT_TRUE(Logic("QF_UFNRA").numerals_are_real());
  EXPECT_TRUE(Logic("QF_FP").numerals_are_real());
  EXPECT_FALSE(Logic("QF_LIRA").numerals_are_real());
  EXPECT_FALSE(Logic("QF_UF").numerals_are_real());
}

TEST(Logic, OrdersProducts) {
  EXPECT_TRUE(Logic("QF_IDL").is_linear());
  EXPECT_TRUE(Logic("QF_UFLRA").is_linear());
  EXPECT_FALSE(Logic("QF_NIA").is_linear());
  EXPECT_TRUE(Logic("QF_NIA").is_nonlinear());
  EXPECT_FALSE(Logic("QF_UF").is_nonlinear());
  EXPECT_FALSE(Logic("QF_UF").is_linear());
}

TEST(Logic, IsExtendedByWhatIsNeeded) {
  LogicNeeds functions;
  functions.free_functions = true;
  EXPECT_EQ(Logic("QF_LIA").extended_by(functions).name(), "QF_UFLIA");
  EXPECT_EQ(Logic("QF_RDL").extended_by(functions).name(), "QF_UFRDL");
  EXPECT_EQ(Logic("QF_LIRA").extended_by(functions).name(), "ALL");
  EXPECT_EQ(Logic("LIA").extended_by(functions).name(), "ALL");
  EXPECT_EQ(Logic("QF_UFLIRA").extended_by(functions).name(), "QF_UFLIRA");
  LogicNeeds reals;
  reals.reals = true;
  EXPECT_EQ(Logic("QF_LIA").extended_by(reals).name(), "QF_LIRA");
  EXPECT_EQ(Logic("QF_UF").extended_by(reals).name(), "QF_UFLRA");
  LogicNeeds products;
  products.ints = products.linear = products.nonlinear = true;
  EXPECT_EQ(Logic("QF_UFIDL").extended_by(products).name(), "QF_UFNIA");
  EXPECT_EQ(Logic("QF_LRA").extended_by(products).name(), "QF_NIRA");
}

TEST(Logic, IsExtendedByTheories) {
  LogicNeeds arrays;
  arrays.arrays = true;
  EXPECT_EQ(Logic("QF_BV").extended_by(arrays).name(), "QF_ABV");
  EXPECT_EQ(Logic("QF_LIA").extended_by(arrays).name(), "QF_ALIA");
  EXPECT_EQ(Logic("QF_UF").extended_by(arrays).name(), "ALL");
  LogicNeeds vectors;
  vectors.bit_vectors = true;
  EXPECT_EQ(Logic("QF_UF").extended_by(vectors).name(), "QF_UFBV");
  EXPECT_EQ(Logic("QF_FP").extended_by(vectors).name(), "QF_BVFP");
  EXPECT_EQ(Logic("QF_LIA").extended_by(vectors).name(), "ALL");
  LogicNeeds floats;
  floats.floating_point = true;
  EXPECT_EQ(Logic("QF_BV").extended_by(floats).name(), "QF_BVFP");
  EXPECT_EQ(Logic("QF_LRA").extended_by(floats).name(), "QF_FPLRA");
  EXPECT_EQ(Logic("QF_ABV").extended_by(floats).name(), "ALL");
}

TEST(Logic, OfFloatsHasBitsButNoBitVectors) {
  LogicNeeds bits;
  bits.bits = true;
  EXPECT_EQ(Logic("QF_FP").extended_by(bits).name(), "QF_FP");
  EXPECT_EQ(Logic("QF_UF").extended_by(bits).name(), "QF_UFBV");
  EXPECT_TRUE(Logic("QF_FP").has(Theory::Bits));
  EXPECT_TRUE(Logic("QF_BV").has(Theory::Bits));
  EXPECT_FALSE(Logic("QF_AUFLIRA").has(Theory::Bits));
  EXPECT_FALSE(Logic("QF_FP").has(Theory::BitVectors));
}

TEST(Logic, OfArraysHasSortsButNoFunctions) {
  LogicNeeds sorts;
  sorts.free_sorts = true;
  EXPECT_EQ(Logic("QF_AX").extended_by(sorts).name(), "QF_AX");
  EXPECT_EQ(Logic("QF_ABV").extended_by(sorts).name(), "QF_AUFBV");
  LogicNeeds functions;
  functions.free_functions = true;
  EXPECT_EQ(Logic("QF_AX").extended_by(functions).name(), "ALL");
  EXPECT_EQ(Logic("QF_UF").extended_by(functions).name(), "QF_UF");
}

TEST(Logic, ThatHasEverythingIsAll) {
  LogicNeeds everything;
  everything.everything = true;
  EXPECT_EQ(Logic("QF_AUFBV").extended_by(everything).name(), "ALL");
  EXPECT_EQ(Logic("ALL").extended_by(everything).name(), "ALL");
  EXPECT_EQ(Logic().extended_by(everything).name(), "");
}

TEST(TheoryNames, BelongToTheirTheory) {
  EXPECT_TRUE(is_theory_symbol("select", Logic("QF_AX")));
  EXPECT_FALSE(is_theory_symbol("select", Logic("QF_UF")));
  EXPECT_TRUE(is_theory_symbol("mod", Logic("QF_IDL")));
  EXPECT_FALSE(is_theory_symbol("mod", Logic("QF_LRA")));
  EXPECT_TRUE(is_theory_symbol("+", Logic("QF_RDL")));
  EXPECT_FALSE(is_theory_symbol("to_real", Logic("QF_LRA")));
  EXPECT_TRUE(is_theory_sort("Int", Logic("QF_LIRA")));
  EXPECT_FALSE(is_theory_sort("Int", Logic("QF_LRA")));
  EXPECT_FALSE(is_theory_symbol("sin"));
  EXPECT_EQ(find_theory_symbol("implies"), nullptr);
  EXPECT_EQ(find_theory_symbol(""), nullptr);
}

TEST(TheoryNames, AreEscapedWhereReadersReserveThem) {
  const auto out = [](const char* name, const char* logic) {
    return name_to_smtlib(name, NameKind::Symbol, default_escape_prefix, Logic(logic));
  };
  EXPECT_EQ(out("select", "QF_UF"), "select");
  EXPECT_EQ(out("select", "QF_AX"), "quill!select");
  EXPECT_EQ(out("select", "ALL"), "quill!select");
  EXPECT_EQ(out("abs", "QF_LRA"), "quill!abs");  // only readers have it for reals
  EXPECT_EQ(out("sin", "QF_LRA"), "sin");
  EXPECT_EQ(out("sin", "ALL"), "quill!sin");
  EXPECT_EQ(out("bvadd", "QF_UFLIRA"), "quill!bvadd");  // no reader's list has the logic
  EXPECT_EQ(out("quill!select", "QF_UF"), "quill!select");
  EXPECT_EQ(out("quill!select", "ALL"), "quill!quill!21select");
  for (const char* logic : {"QF_UF", "QF_AX", "QF_LRA", "ALL"}) {
    for (const char* name : {"select", "quill!select", "abs", "sin", "quill!quill!21sin", "7up"}) {
      EXPECT_EQ(
          name_from_smtlib(out(name, logic), NameKind::Symbol, default_escape_prefix, Logic(logic)),
          name);
    }
  }
}

class PrintedInLogic : public ::testing::Test {
 protected:
  std::string text(const Term_* t, const char* logic) {
    Configuration::Printer configuration;
    configuration.logic = logic;
    std::ostringstream out;
    SmtLib2TermPrinter(&m, &configuration, "", "", true, nullptr).print_term(out, t);
    return out.str();
  }

  TermManager m;
  const Term_* const i = m.make_constant(m.make_symbol("i", m.get_int_type()));
  const Term_* const x = m.make_constant(m.make_symbol("x", m.get_rat_type()));
};

TEST_F(PrintedInLogic, SymbolsAreRenamedByTheLogic) {
  const Term_* t = m.make_constant(m.make_symbol("concat", m.get_int_type()));
  EXPECT_EQ(text(t, "QF_LIA"), "concat");
  EXPECT_EQ(text(t, "QF_BV"), "quill!concat");
  EXPECT_EQ(text(t, ""), "quill!concat");
}

TEST_F(PrintedInLogic, FloorsOfPartsOfIntegersAreDivisions) {
  EXPECT_EQ(text(make_div(m, i, 3), ""), "(div i 3)");
  EXPECT_EQ(text(make_div(m, make_div(m, i, 3), 4), ""), "(div (div i 3) 4)");
  EXPECT_EQ(text(make_div(m, m.make_number(7), 2), ""), "(div 7 2)");
  EXPECT_EQ(text(m.make_floor(m.make_times(m.make_number({2, 3}), i)), ""),
            "(to_int (* (/ 2.0 3.0) (to_real i)))");
  EXPECT_EQ(text(m.make_floor(m.make_times(m.make_number({1, 3}), x)), ""),
            "(to_int (* (/ 1.0 3.0) x))");
}

TEST_F(PrintedInLogic, DivisionsAreSharedWithoutWhatTheyHide) {
  const Term_* quotient = make_div(m, i, 3);
  EXPECT_EQ(text(m.make_plus(quotient, quotient), ""), "(let ((@1 (div i 3))) (+ @1 @1))");
  const Term_* part = quotient->args[0];
  EXPECT_EQ(text(m.make_leq(part, quotient), ""),
            "(<= (* (/ 1.0 3.0) (to_real i)) (to_real (div i 3)))");
}

TEST_F(PrintedInLogic, AbsoluteValuesHaveAnOperatorInNonlinearLogics) {
  EXPECT_EQ(text(make_abs(m, i), "QF_NIA"), "(abs i)");
  EXPECT_EQ(text(make_abs(m, x), "QF_NRA"), "(ite (<= 0.0 x) x (- x))");
  EXPECT_EQ(text(make_abs(m, i), "QF_LIA"), "(ite (<= 0 i) i (- i))");
  EXPECT_EQ(text(make_abs(m, i), ""), "(ite (<= 0 i) i (- i))");
  EXPECT_EQ(text(make_abs(m, i, m.get_rat_type()), "QF_NIRA"), "(abs (to_real i))");
}

TEST_F(PrintedInLogic, HiddenTermsWithAnnotationsAreWritten) {
  const Term_* quotient = make_div(m, i, 3);
  SmtLib2TermPrinter::Annotations annotations;
  annotations[quotient->args[0]] = {{"named", "n"}};
  std::ostringstream out;
  SmtLib2TermPrinter(&m, nullptr, "", "", true, &annotations).print_term(out, quotient);
  EXPECT_EQ(out.str(), "(to_int (! (* (/ 1.0 3.0) (to_real i)) :named n))");
}

TEST_F(PrintedInLogic, WordsAtTheHeadAreQualified) {
  const DataType* type = m.get_function_type({m.get_int_type()}, m.get_int_type());
  const Term_* t = m.make_uninterpreted_function(m.make_symbol("match", type), {i});
  EXPECT_EQ(text(t, "QF_UFLIA"), "((as |match| Int) i)");
}

}  // namespace
}  // namespace quill
