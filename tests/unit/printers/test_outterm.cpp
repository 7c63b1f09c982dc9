#include <gtest/gtest.h>

#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

#include "quill/printers/outterm.h"
#include "quill/printers/smtlib2_term_printer.h"
#include "tests/support/manager_test.h"

namespace quill {
namespace {

class Outterm : public testing::ManagerTest {
 protected:
  template <class Adaptor>
  static std::string text(const Adaptor& adaptor) {
    std::ostringstream out;
    out << adaptor;
    return out.str();
  }

  const Term_* const p = constant("p", m.get_bool_type());
  const Term_* const q = constant("q", m.get_bool_type());
};

TEST_F(Outterm, WritesTheTermInSmtLib) {
  EXPECT_EQ(text(outterm(&m, p)), "p");
  EXPECT_EQ(text(outterm(&m, m.make_iff(p, m.make_not(q)))), "(= p (not q))");
}

TEST_F(Outterm, BindsSharedTerms) {
  const Term_* both = m.make_and(p, q);
  EXPECT_EQ(text(outterm(&m, m.make_iff(both, both))), "(let ((@1 (and p q))) (= @1 @1))");
}

TEST_F(Outterm, ShallowAdaptorWritesTheSame) {
  const Term_* both = m.make_and(p, q);
  const Term_* t = m.make_or(m.make_not(both), both);
  EXPECT_EQ(text(outshallowterm(&m, t)), "(let ((@1 (and p q))) (or (not @1) @1))");
  EXPECT_EQ(text(outshallowterm(&m, t)), text(outterm(&m, t)));
}

TEST_F(Outterm, ShallowAdaptorIsAsDeep) {
  const Term_* t = p;
  for (int n = 0; n < 100; ++n) t = m.make_not(t);
  std::string expected;
  for (int n = 0; n < 100; ++n) expected += "(not ";
  EXPECT_EQ(text(outshallowterm(&m, t)), expected + "p" + std::string(100, ')'));
}

// No definition can come before a term that is printed alone.
TEST_F(Outterm, OperatorsThatTheStandardLacksHaveTheirOperands) {
  const DataType* single = m.get_fp_type(8, 23);
  const Term_* f = m.make_fp_as_ieeebv(constant("f", single));
  const Term_* g = m.make_fp_as_ieeebv(constant("g", single));
  const Term_* value = m.make_int_from_sbv(constant("b", m.get_bv_type(8)));
  const Term_* low = m.make_int_to_bv(8, constant("i", m.get_int_type()));
  EXPECT_EQ(text(outterm(&m, f)), "(fp.to_ieee_bv f)");
  EXPECT_EQ(text(outterm(&m, g)), "(fp.to_ieee_bv g)");
  EXPECT_EQ(text(outshallowterm(&m, m.make_bv_ult(f, g))),
            "(bvult (fp.to_ieee_bv f) (fp.to_ieee_bv g))");
  const std::vector<const Term_*> terms{f, g, value, low};
  EXPECT_EQ(text(outtermlist(&m, &terms)),
            "[ (fp.to_ieee_bv f) (fp.to_ieee_bv g) (sbv_to_int b) ((_ int2bv 8) i) ]");
}

// A printer with a default configuration writes them in the same way, too.
TEST_F(Outterm, APrinterWithoutConfigurationWritesThemTheSame) {
  const Term_* bits = m.make_fp_as_ieeebv(constant("f", m.get_fp_type(8, 23)));
  Configuration::Printer choices;
  for (Configuration::Printer* given : {static_cast<Configuration::Printer*>(nullptr), &choices}) {
    SmtLib2TermPrinter printer(&m, given, "", "", /*share_by_let=*/true, nullptr);
    BitDefinitions definitions(m);
    printer.set_definitions(&definitions);
    std::ostringstream out;
    printer.print_definitions(out, bits);
    printer.print_atom(out, bits, /*with_annotations=*/true);
    EXPECT_EQ(out.str(), "(fp.to_ieee_bv f)");
    EXPECT_TRUE(definitions.all().empty());
  }
}

TEST_F(Outterm, TheirNamesAreNotThoseOfTheUsersSymbols) {
  const DataType* bits = m.get_bv_type(32);
  const DataType* type = m.get_function_type({m.get_fp_type(8, 23)}, bits);
  const Term_* f = constant("f", m.get_fp_type(8, 23));
  const Term_* users = m.make_uninterpreted_function(m.make_symbol("fp.to_ieee_bv", type), {f});
  EXPECT_EQ(text(outterm(&m, m.make_bv_ult(users, m.make_fp_as_ieeebv(f)))),
            "(bvult (quill!fp!2eto!5fieee!5fbv f) (fp.to_ieee_bv f))");
  EXPECT_EQ(text(outterm(&m, constant("sbv_to_int", bits))), "quill!sbv!5fto!5fint");
  EXPECT_EQ(text(outterm(&m, constant("int2bv", bits))), "quill!int2bv");
}

TEST_F(Outterm, EmptyList) {
  const std::vector<const Term_*> none;
  EXPECT_EQ(text(outtermlist(&m, &none)), "[ ]");
}

TEST_F(Outterm, ListsAreInOrderWithABlankBehindEachTerm) {
  const std::vector<const Term_*> one{p};
  const std::vector<const Term_*> terms{q, m.make_and(p, q), q};
  EXPECT_EQ(text(outtermlist(&m, &one)), "[ p ]");
  EXPECT_EQ(text(outtermlist(&m, &terms)), "[ q (and p q) q ]");
}

TEST_F(Outterm, TermsOfAListShareNothing) {
  const Term_* both = m.make_and(p, q);
  const Term_* t = m.make_iff(both, both);
  const std::vector<const Term_*> terms{both, t, t};
  EXPECT_EQ(text(outtermlist(&m, &terms)),
            "[ (and p q) (let ((@1 (and p q))) (= @1 @1)) (let ((@1 (and p q))) (= @1 @1)) ]");
}

TEST_F(Outterm, OutputsCanBeChained) {
  std::ostringstream out;
  out << outterm(&m, p) << ' ' << outshallowterm(&m, q) << '.';
  EXPECT_EQ(out.str(), "p q.");
}

TEST_F(Outterm, AConstManagerIsEnough) {
  const TermManager& reader = m;
  const Term_* t = m.make_and(p, q);
  std::ostringstream out;
  out << outterm(&reader, t);
  EXPECT_EQ(out.str(), "(and p q)");
  EXPECT_EQ(to_smtlib(reader, t), "(and p q)");
  EXPECT_EQ(to_smtlib(m, m.make_number(QNumber(-1, 3))), "(- (/ 1.0 3.0))");
}

TEST_F(Outterm, FlagsOfTheStreamDoNotReachTheText) {
  std::ostringstream out;
  out << std::hex << std::showbase << outterm(&m, m.make_number(255)) << ' '
      << outterm(&m, m.make_bv_number(255, 32));
  EXPECT_EQ(out.str(), "255 (_ bv255 32)");
}

TEST_F(Outterm, WhatTheStreamThrowsPassesThrough) {
  struct Full : std::streambuf {
  } buffer;  // takes no character
  std::ostream out(&buffer);
  out.exceptions(std::ios::badbit | std::ios::failbit);
  EXPECT_THROW(out << outterm(&m, m.make_and(p, q)), std::ios::failure);
}

}  // namespace
}  // namespace quill
