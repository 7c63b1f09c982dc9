#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <ios>
#include <sstream>
#include <string>
#include <vector>

#include "quill/frontends/smt2/numerals.h"
#include "quill/frontends/smt2/script_writer.h"
#include "tests/support/grouped_digits.h"
#include "tests/unit/frontends/smt2/read_and_print.h"

namespace quill::smt2 {
namespace {

TEST(ScriptWriter, WritesEveryCommandBack) {
  const std::string text =
      "(set-logic QF_UFLIA)\n"
      "(set-option :produce-models true)\n"
      "(set-info :status sat)\n"
      "(set-info :source |a\nb|)\n"
      "(set-info :notes \"a \"\"b\"\"\")\n"
      "(set-info :list (a (b c) ()))\n"
      "(set-info :flag)\n"
      "(declare-sort S 0)\n"
      "(declare-sort T 2)\n"
      "(declare-const c (T S Int))\n"
      "(declare-fun f (S Bool) Int)\n"
      "(declare-fun g () Bool)\n"
      "(push 2)\n"
      "(assert g)\n"
      "(check-sat)\n"
      "(check-sat-assuming (g (not g)))\n"
      "(check-sat-assuming ())\n"
      "(get-value (g c))\n"
      "(get-model)\n"
      "(get-assertions)\n"
      "(get-assignment)\n"
      "(get-proof)\n"
      "(get-unsat-core)\n"
      "(get-unsat-assumptions)\n"
      "(get-info :name)\n"
      "(get-option :produce-models)\n"
      "(echo \"a \"\"quoted\"\" text\")\n"
      "(pop 2)\n"
      "(reset-assertions)\n"
      "(reset)\n"
      "(exit)\n";
  EXPECT_EQ(printed(text), text);
}

TEST(ScriptWriter, WritesOneCommandALine) {
  EXPECT_EQ(printed("(push)(push\n3)(pop)( echo ; comment\n\"a\" ) (set-info   :k  ( a\n b ) )"),
            "(push 1)\n(push 3)\n(pop 1)\n(echo \"a\")\n(set-info :k (a b))\n");
}

TEST(ScriptWriter, WritesCountsInTheSameWayToEveryStream) {
  const std::string text =
      "(declare-sort S 10)\n"
      "(push 2000)\n"
      "(pop 1000)\n";
  TermManager manager;
  const Script script = read_text(text, manager);
  std::ostringstream output;
  output.imbue(testing::locale_with_grouped_digits());
  output << std::hex << std::showbase << std::showpos;
  write(output, manager, script);
  EXPECT_EQ(output.str(), text);
}

TEST(ScriptWriter, LeavesDefinitionsOut) {
  EXPECT_EQ(printed("(define-sort I () Int)(define-fun f ((a I)) I a)(define-const c I 1)"
                    "(assert (= (f c) 2))"),
            "(assert (= 1 2))\n");
}

TEST(ScriptWriter, KeepsNames) {
  EXPECT_EQ(
      printed("(declare-const p Bool)(declare-const q Bool)"
              "(assert (! (or (! p :named a) q) :named b))(assert (and a b))(get-value (a b p))"),
      "(declare-const p Bool)\n"
      "(declare-const q Bool)\n"
      "(assert (! (or (! p :named a) q) :named b))\n"
      "(assert (and p (or p q)))\n"
      "(get-value (a b p))\n");
}

TEST(ScriptWriter, NamesATermAtItsFirstPlaceOnly) {
  EXPECT_EQ(asserted("(declare-const p Bool)(assert (and (! (not p) :named a) (or a p)))"),
            "(and (! (not p) :named a) (or a p))");
}

// The name has one sort, the numeral has that of its place.
TEST(ScriptWriter, WritesNamedNumeralsOutBehindTheirName) {
  const std::string declarations = "(declare-const i Int)\n(declare-const x Real)\n";
  const std::string assertion = "(assert (and (= i (! 3 :named n)) (= x 3.0) (= i 3)))\n";
  EXPECT_EQ(printed(declarations + assertion), declarations + assertion);
  EXPECT_EQ(printed(declarations + "(assert (and (= i (! 3 :named n)) (= x n) (= i n)))"),
            declarations + assertion);
}

TEST(ScriptWriter, NamesMayBeUsedAgainBehindPop) {
  const std::string text =
      "(declare-const p Bool)\n"
      "(push 1)\n"
      "(assert (! p :named a))\n"
      "(pop 1)\n"
      "(assert (! (not p) :named a))\n";
  EXPECT_EQ(printed(text), text);
}

TEST(ScriptWriter, QuotesWhatNeedsBars) {
  const std::string text =
      "(declare-sort |a sort| 0)\n"
      "(declare-const |a b| |a sort|)\n"
      "(declare-const |let| Bool)\n"
      "(declare-const |assert| Bool)\n"
      "(declare-const |'1| Bool)\n"
      "(declare-const || Bool)\n"
      "(declare-const |1/2| Bool)\n"
      "(assert (! |let| :named |a name|))\n"
      "(get-value (|a b| |assert| |'1| || |1/2| |a name|))\n";
  EXPECT_EQ(printed(text), text);
}

// The print prints as itself.
TEST(ScriptWriter, IsAFixedPoint) {
  const std::string texts[] = {
      "(declare-const i Int)(declare-const x Real)"
      "(assert (= (- i 3 (- 2) (- i)) (to_int (/ x 3 (- 7)))))",
      "(set-logic QF_LRA)(declare-const x Real)(assert (< 1 x (/ 2 3) (* 2 x) (- (/ 1 3))))",
      "(set-logic QF_IDL)(declare-const a Int)(declare-const b Int)"
      "(assert (distinct (- a b) 1 (- 4)))(assert (< (- a b) (- 3)))",
      "(declare-const i Int)(assert (= (* 2 3 i) (* (* 2 3) i) (* 2 (* 3 i)) (- (- i)) (+ 1 2)))",
      "(declare-const i Int)(declare-const x Real)"
      "(assert (ite (is_int x) (= x i) (= (ite (< x 1) 1 x) (+ x 1 i))))",
      "(declare-const p Bool)(declare-const q Bool)"
      "(assert (let ((a (xor p q)) (b (=> p q p))) (= a b (and a b) (or a b a))))",
  };
  for (const std::string& text : texts) {
    const std::string once = printed(text);
    EXPECT_EQ(printed(once), once);
  }
}

TEST(ScriptWriter, PrintsWhatReadsBackToTheSameTerms) {
  const std::string declarations = "(declare-const i Int)(declare-const x Real)";
  const std::string terms[] = {
      "(= (- i 3 (- 2) (- i)) (to_int (/ x 3 (- 7))))",
      "(= (* 2 3 i) (* 2 (* 3 i)))",
      "(= x i)",
      "(= (+ x 1 i) (to_real (+ i 1)))",
      "(distinct x 1 2.5)",
      "(is_int (to_real i))",
  };
  for (const std::string& term : terms) {
    TermManager m;
    const Script first = read_text(declarations + "(assert " + term + ")", m);
    std::ostringstream output;
    write(output, m, first);
    const Script second = read_text(output.str(), m);
    EXPECT_EQ(first.commands.back().terms[0].value.term, second.commands.back().terms[0].value.term)
        << output.str();
  }
}

// A script whose terms were not read, but made by a user who gives any tag to any symbol.
TEST(ScriptWriter, WritesSymbolsThatWereRegisteredByHand) {
  for (int tag = 0; tag <= SymbolTag::INT_TO_BV; ++tag) {
    TermManager m;
    Script script;
    Command logic;
    logic.kind = CommandKind::SetLogic;
    logic.text = "QF_IDL";
    script.commands.push_back(logic);
    const DataType* int_type = m.get_int_type();
    const DataType* bits = m.get_bv_type(8);
    const DataType* single = m.get_fp_type(8, 23);
    const auto constant = [&](const char* name, const DataType* type) {
      return m.make_constant(m.make_symbol(name, type));
    };
    const Term_* i = constant("i", int_type);
    const auto assert_that = [&](const Term_* t) {
      Command command;
      command.terms.push_back({{t, m.get_bool_type()}, ""});
      script.commands.push_back(command);
    };
    for (const Term_* operand :
         {i, constant("x", m.get_rat_type()), constant("b", bits), constant("f", single)}) {
      const DataType* argument = operand->symbol->type;
      for (const DataType* result : {m.get_bool_type(), int_type, m.get_rat_type(), bits, single}) {
        for (size_t arity = 0; arity <= 4; ++arity) {
          const std::vector<const DataType*> arguments(arity, argument);
          const DataType* type = arity == 0 ? result : m.get_function_type(arguments, result);
          const Symbol* s = m.add_interpreted_symbol("op", type, static_cast<SymbolTag::tag>(tag));
          m.free_symbol(s);
          const Term_* t = m.do_make_term(s, std::vector<const Term_*>(arity, operand));
          QNumber value;
          EXPECT_FALSE(constant_value(m, t, value));
          if (result == m.get_bool_type()) {
            assert_that(m.make_not(t));
          } else {
            assert_that(m.make_equal(t, t));
          }
          if (result != int_type && result != m.get_rat_type()) continue;
          const Term_* minus = m.make_times(m.make_number(-1), t);
          assert_that(m.make_leq(m.make_plus(i, t), m.make_plus(i, minus)));
          assert_that(m.make_equal(m.make_floor(t), t));
        }
      }
    }
    for (const auto dialect :
         {Configuration::Dialect::Standard, Configuration::Dialect::Extensions}) {
      std::ostringstream output;
      write(output, m, script, dialect);
      const std::string text = output.str();
      EXPECT_EQ(text.substr(text.size() - 3), "))\n");
      EXPECT_GE(std::count(text.begin(), text.end(), '\n'),
                static_cast<ptrdiff_t>(script.commands.size()));
    }
  }
}

TEST(ScriptWriter, WritesTheStandardUnlessAskedForExtensions) {
  const std::string text =
      "(declare-const b (_ BitVec 8))\n(declare-const i Int)\n(assert (= i (sbv_to_int b)))\n";
  TermManager m;
  const Script script = read_text(text, m);
  std::ostringstream standard;
  write(standard, m, script);
  EXPECT_EQ(standard.str(),
            "(declare-const b (_ BitVec 8))\n(declare-const i Int)\n"
            "(assert (= i (- (bv2nat b) (ite (= ((_ extract 7 7) b) (_ bv1 1)) 256 0))))\n");
  std::ostringstream extended;
  write(extended, m, script, Configuration::Dialect::Extensions);
  EXPECT_EQ(extended.str(), text);
}

}  // namespace
}  // namespace quill::smt2
