// Scripts that take the bits of floating-point values: the constants that the writer defines.

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "tests/unit/frontends/smt2/read_and_print.h"

namespace quill::smt2 {
namespace {

const std::string declarations =
    "(set-logic ALL)\n"
    "(declare-const f (_ FloatingPoint 2 3))\n"
    "(declare-const g (_ FloatingPoint 2 3))\n"
    "(declare-const b (_ BitVec 5))\n";

// What the writer says about the constant with this number, which holds the bits of a term.
std::string definition(const std::string& number, const std::string& term,
                       const std::string& number_of_nan, bool with_nan) {
  const std::string nan = "quill!ieee_nan_" + number_of_nan;
  const std::string bits = "quill!ieee_bits_" + number;
  return (with_nan ? "(declare-const " + nan + " (_ BitVec 5))\n" : "") + "(declare-const " + bits +
         " (_ BitVec 5))\n(assert (and (= ((_ to_fp 2 3) " + bits + ") " + term +
         ") (or (not (fp.isNaN " + term + ")) (= " + bits + " " + nan + "))))\n";
}

std::string printed_with_extensions(const std::string& text) {
  TermManager manager;
  const Script script = read_text(text, manager);
  std::ostringstream output;
  write(output, manager, script, Configuration::Dialect::Extensions);
  return output.str();
}

TEST(WrittenDefinitions, StandBeforeTheCommand) {
  const std::string expected = declarations + definition("1", "f", "1", true) +
                               "(assert (= quill!ieee_bits_1 b))\n(check-sat)\n";
  EXPECT_EQ(printed(declarations + "(assert (= (fp.to_ieee_bv f) b))(check-sat)"), expected);
  EXPECT_EQ(printed(expected), expected);
}

TEST(WrittenDefinitions, AreWrittenOnce) {
  EXPECT_EQ(printed(declarations + "(assert (= (fp.to_ieee_bv f) b))"
                                   "(assert (= (fp.to_ieee_bv f) (fp.to_ieee_bv g)))"),
            declarations + definition("1", "f", "1", true) + "(assert (= quill!ieee_bits_1 b))\n" +
                definition("2", "g", "1", false) +
                "(assert (= quill!ieee_bits_1 quill!ieee_bits_2))\n");
}

TEST(WrittenDefinitions, EndWithTheirScope) {
  const std::string assertion = "(assert (= (fp.to_ieee_bv f) b))\n";
  EXPECT_EQ(printed(declarations + "(push 2)\n" + assertion + "(pop 1)\n" + assertion +
                    "(pop 1)\n" + assertion + "(push 1)\n" + assertion + "(pop 1)\n" + assertion),
            declarations + "(push 2)\n" + definition("1", "f", "1", true) +
                "(assert (= quill!ieee_bits_1 b))\n(pop 1)\n" + definition("2", "f", "2", true) +
                "(assert (= quill!ieee_bits_2 b))\n(pop 1)\n" + definition("3", "f", "3", true) +
                "(assert (= quill!ieee_bits_3 b))\n(push 1)\n"
                "(assert (= quill!ieee_bits_3 b))\n(pop 1)\n"
                "(assert (= quill!ieee_bits_3 b))\n");
}

TEST(WrittenDefinitions, EndWithResets) {
  const std::string assertion = "(assert (= (fp.to_ieee_bv f) b))\n";
  EXPECT_EQ(printed("(set-option :global-declarations true)\n" + declarations + assertion +
                    "(reset-assertions)\n" + assertion),
            "(set-option :global-declarations true)\n" + declarations +
                definition("1", "f", "1", true) +
                "(assert (= quill!ieee_bits_1 b))\n(reset-assertions)\n" +
                definition("2", "f", "2", true) + "(assert (= quill!ieee_bits_2 b))\n");
  EXPECT_EQ(printed(declarations + assertion + "(reset)\n" + declarations + assertion),
            declarations + definition("1", "f", "1", true) +
                "(assert (= quill!ieee_bits_1 b))\n(reset)\n" + declarations +
                definition("2", "f", "2", true) + "(assert (= quill!ieee_bits_2 b))\n");
}

TEST(WrittenDefinitions, OfValuesAskedForStandBeforeTheAnswer) {
  EXPECT_EQ(
      printed(declarations +
              "(check-sat)(get-info :name)(get-value ((fp.to_ieee_bv f)))"
              "(check-sat-assuming ((= (fp.to_ieee_bv g) b)))(get-value ((fp.to_ieee_bv f)))"),
      declarations + definition("1", "f", "1", true) +
          "(check-sat)\n(get-info :name)\n(get-value (quill!ieee_bits_1))\n" +
          definition("2", "g", "1", false) +
          "(check-sat-assuming ((= quill!ieee_bits_2 b)))\n(get-value "
          "(quill!ieee_bits_1))\n");
}

TEST(WrittenDefinitions, OfValuesBehindOtherCommandsStandThere) {
  EXPECT_EQ(printed(declarations + "(check-sat)(push 1)(get-value ((fp.to_ieee_bv f)))"),
            declarations + "(check-sat)\n(push 1)\n" + definition("1", "f", "1", true) +
                "(get-value (quill!ieee_bits_1))\n");
}

TEST(WrittenDefinitions, AvoidNamesOfTheScript) {
  const std::string text = declarations +
                           "(push 1)\n(declare-const quill!ieee_bits_1 Bool)\n(pop 1)\n"
                           "(assert (! (= f g) :named quill!ieee_nan_1))\n"
                           "(assert (= (fp.to_ieee_bv f) b))\n"
                           "(declare-const quill!ieee_bits_2 Bool)\n";
  const std::string output = printed(text);
  EXPECT_NE(output.find("(declare-const quill!ieee_bits_3 (_ BitVec 5))\n"), std::string::npos);
  EXPECT_NE(output.find("(declare-const quill!ieee_nan_2 (_ BitVec 5))\n"), std::string::npos);
  EXPECT_EQ(printed(output), output);
}

TEST(WrittenDefinitions, GiveTheNamesOfTermsInside) {
  EXPECT_EQ(printed(declarations + "(assert (= (fp.to_ieee_bv (! (fp.neg f) :named n)) b))"
                                   "(check-sat)(get-value (n))"),
            declarations +
                "(declare-const quill!ieee_nan_1 (_ BitVec 5))\n"
                "(declare-const quill!ieee_bits_1 (_ BitVec 5))\n"
                "(assert (and (= ((_ to_fp 2 3) quill!ieee_bits_1) (! (fp.neg f) :named n)) "
                "(or (not (fp.isNaN n)) (= quill!ieee_bits_1 quill!ieee_nan_1))))\n"
                "(assert (= quill!ieee_bits_1 b))\n(check-sat)\n(get-value (n))\n");
}

TEST(WrittenDefinitions, OfNamedValuesAskedForGiveTheNamesThere) {
  const std::string output =
      printed(declarations +
              "(check-sat)(get-value ((fp.to_ieee_bv (! (fp.neg f) :named n))))"
              "(get-value (n))");
  EXPECT_EQ(output,
            declarations +
                "(declare-const quill!ieee_nan_1 (_ BitVec 5))\n"
                "(declare-const quill!ieee_bits_1 (_ BitVec 5))\n"
                "(assert (and (= ((_ to_fp 2 3) quill!ieee_bits_1) (! (fp.neg f) :named n)) "
                "(or (not (fp.isNaN n)) (= quill!ieee_bits_1 quill!ieee_nan_1))))\n"
                "(check-sat)\n(get-value (quill!ieee_bits_1))\n(get-value (n))\n");
}

TEST(WrittenDefinitions, NameTheSortOfBitVectorsInTheLogic) {
  EXPECT_EQ(printed("(set-logic QF_FP)(declare-const f Float32)"
                    "(assert (fp.eq f ((_ to_fp 8 24) (fp.to_ieee_bv f))))")
                .substr(0, 19),
            "(set-logic QF_BVFP)");
}

TEST(WrittenDefinitions, ConversionsNeedNone) {
  EXPECT_EQ(printed("(declare-const b (_ BitVec 2))(assert (= (sbv_to_int b) 1))"),
            "(declare-const b (_ BitVec 2))\n"
            "(assert (= (- (bv2nat b) (ite (= ((_ extract 1 1) b) (_ bv1 1)) 4 0)) 1))\n");
}

TEST(WrittenDefinitions, AreNotNeededWithExtensions) {
  const std::string text = declarations +
                           "(assert (= (fp.to_ieee_bv f) b))\n"
                           "(assert (= b ((_ int2bv 5) (sbv_to_int b))))\n";
  EXPECT_EQ(printed_with_extensions(text), text);
}

}  // namespace
}  // namespace quill::smt2
