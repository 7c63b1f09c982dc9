#include <gtest/gtest.h>

#include <string>

#include "tests/unit/frontends/smt2/read_and_print.h"

namespace quill::smt2 {
namespace {

const std::string declarations =
    "(declare-fun a () (Array Int Real))(declare-fun i () Int)(declare-fun x () Real)"
    "(declare-fun flags () (Array Int Bool))(declare-fun bits () (Array Int (_ BitVec 1)))"
    "(declare-fun set () (Array Bool Bool))(declare-fun p () Bool)(declare-fun q () Bool)"
    "(declare-fun u () (_ BitVec 1))";

class Arrays : public ::testing::Test {
 protected:
  // The term of (get-value (term)) after the declarations.
  const Term_* read_in(const std::string& term) {
    return read_text(declarations + "(get-value (" + term + "))", m)
        .commands.back()
        .terms[0]
        .value.term;
  }

  std::string text_of(const std::string& term) { return read_in(term)->to_str(); }

  TermManager m;
};

// What the reader says about a term after the declarations, without the position.
std::string complaint(const std::string& term) {
  const std::string error = error_of(declarations + "\n(get-value (" + term + "))");
  const size_t colon = error.find(": ");
  return colon == std::string::npos ? error : error.substr(colon + 2);
}

// --- Operators ---

TEST_F(Arrays, SelectAndStore) {
  const Term_* a = read_in("a");
  const Term_* i = read_in("i");
  const Term_* x = read_in("x");
  EXPECT_EQ(read_in("(select a i)"), m.make_array_read(a, i));
  EXPECT_EQ(read_in("(store a i x)"), m.make_array_write(a, i, x));
  EXPECT_EQ(read_in("(store a i i)"), m.make_array_write(a, i, i));  // an Int is a Real
  EXPECT_EQ(read_in("(= a (store a 3 x))"),
            m.make_equal(a, m.make_array_write(a, m.make_number(3), x)));
  EXPECT_EQ(read_in("(ite p a (store a 3 x))"),
            m.make_term_ite(read_in("p"), a, m.make_array_write(a, m.make_number(3), x)));
}

TEST_F(Arrays, ConstantArrays) {
  const DataType* type = m.get_array_type(m.get_int_type(), m.get_rat_type());
  EXPECT_EQ(read_in("((as const (Array Int Real)) x)"), m.make_array_const(type, read_in("x")));
  EXPECT_EQ(read_in("((as const (Array Int Real)) (+ x 1.0))"),
            m.make_array_const(type, m.make_plus(read_in("x"), m.make_number(1))));
  EXPECT_EQ(read_in("(select ((as const (Array Int Real)) x) 3)"),
            m.make_array_read(m.make_array_const(type, read_in("x")), m.make_number(3)));
}

TEST_F(Arrays, OfArrays) {
  const std::string nested =
      "(declare-fun n () (Array Int (Array Int Bool)))(assert (select (select n 1) 2))";
  TermManager manager;
  EXPECT_EQ(read_text(nested, manager).commands.back().terms[0].value.term->to_str(),
            "(`=_(BitVec 1)` (`read_int_(BitVec 1)` (`read_int_(Array Int (BitVec 1))` n 1) 2) "
            "1_1)");
}

TEST_F(Arrays, IllSortedApplicationsAreRefused) {
  EXPECT_EQ(complaint("(select a p)"), "argument 2 of 'select' has sort Bool, but Int is expected");
  EXPECT_EQ(complaint("(select i i)"),
            "argument 1 of 'select' has sort Int, but an array is expected");
  EXPECT_EQ(complaint("(select a x)"), "argument 2 of 'select' has sort Real, but Int is expected");
  EXPECT_EQ(complaint("(store a i p)"),
            "argument 3 of 'store' has sort Bool, but Real is expected");
  EXPECT_EQ(complaint("(store flags i u)"),
            "argument 3 of 'store' has sort (_ BitVec 1), but Bool is expected");
  EXPECT_EQ(complaint("(store bits i p)"),
            "argument 3 of 'store' has sort Bool, but (_ BitVec 1) is expected");
  EXPECT_EQ(complaint("(select a i i)"), "'select' takes 2 arguments, not 3");
  EXPECT_EQ(complaint("(store a i)"), "'store' takes 3 arguments, not 2");
}

TEST_F(Arrays, IllSortedConstantArraysAreRefused) {
  EXPECT_EQ(complaint("(const x)"), "'const' is written ((as const sort) value)");
  EXPECT_EQ(complaint("((as const Int) 3)"), "'const' names the sort Int, which has no arrays");
  EXPECT_EQ(complaint("((as const (Array Int Bool)) u)"),
            "argument 1 of 'const' has sort (_ BitVec 1), but Bool is expected");
  EXPECT_EQ(complaint("(as const (Array Int Bool))"), "'const' is a function and needs arguments");
}

// --- Bool in arrays ---

TEST_F(Arrays, BoolElementsAreBits) {
  EXPECT_EQ(text_of("(select flags i)"), "(`=_(BitVec 1)` (`read_int_(BitVec 1)` flags i) 1_1)");
  EXPECT_EQ(text_of("(store flags i p)"),
            "(`write_int_(BitVec 1)` flags i (`ite_(BitVec 1)` p 1_1 0_1))");
  EXPECT_EQ(text_of("(select set p)"),
            "(`=_(BitVec 1)` (`read_(BitVec 1)_(BitVec 1)` set (`ite_(BitVec 1)` p 1_1 0_1)) 1_1)");
}

TEST_F(Arrays, BoolConstantsAreBits) {
  EXPECT_EQ(read_in("(store flags i true)"),
            m.make_array_write(read_in("flags"), read_in("i"), m.make_bv_number(QNumber(1), 1)));
  EXPECT_EQ(read_in("((as const (Array Int Bool)) false)"),
            m.make_array_const(m.get_array_type(m.get_int_type(), m.get_bv_type(1)),
                               m.make_bv_number(QNumber(), 1)));
}

TEST_F(Arrays, ConversionsThatMeetVanish) {
  const Term_* flags = read_in("flags");
  const Term_* i = read_in("i");
  EXPECT_EQ(read_in("(store flags i (select flags i))"),
            m.make_array_write(flags, i, m.make_array_read(flags, i)));
  EXPECT_EQ(read_in("(store flags i (= u #b1))"), m.make_array_write(flags, i, read_in("u")));
  EXPECT_NE(read_in("(store flags i (= u #b0))"), m.make_array_write(flags, i, read_in("u")));
}

TEST_F(Arrays, OfBoolAreToldFromThoseOfOneBit) {
  EXPECT_EQ(
      complaint("(= flags bits)"),
      "argument 2 of '=' has sort (Array Int (_ BitVec 1)), but (Array Int Bool) is expected");
  EXPECT_EQ(complaint("(ite p bits flags)"),
            "argument 3 of 'ite' has sort (Array Int Bool), but (Array Int (_ BitVec 1)) is "
            "expected");
  EXPECT_EQ(complaint("(distinct flags ((as const (Array Int (_ BitVec 1))) u))"),
            "argument 2 of 'distinct' has sort (Array Int (_ BitVec 1)), but (Array Int Bool) is "
            "expected");
  EXPECT_EQ(complaint("(as bits (Array Int Bool))"),
            "'as' names the sort (Array Int Bool), but the term has sort (Array Int (_ BitVec 1))");
  EXPECT_EQ(complaint("(and (select bits i) p)"),
            "argument 1 of 'and' has sort (_ BitVec 1), but Bool is expected");
}

TEST_F(Arrays, OfBoolPassThroughCoreOperators) {
  const Term_* flags = read_in("flags");
  const Term_* written = read_in("(store flags i p)");
  EXPECT_EQ(read_in("(= flags (store flags i p))"), m.make_equal(flags, written));
  EXPECT_EQ(read_in("(distinct flags (store flags i p))"),
            m.make_not(m.make_equal(flags, written)));
  EXPECT_EQ(read_in("(ite q flags (store flags i p))"),
            m.make_term_ite(read_in("q"), flags, written));
  EXPECT_EQ(read_in("(let ((g flags)) (store g i p))"), written);
}

TEST_F(Arrays, OfBoolPassThroughFunctionsAndDefinitions) {
  const std::string functions =
      "(declare-fun f ((Array Int Bool) Bool) (Array Bool Int))"
      "(define-fun put ((g (Array Int Bool)) (v Bool)) (Array Int Bool) (store g 0 v))"
      "(define-fun empty () (Array Int Bool) ((as const (Array Int Bool)) false))";
  const auto sort_error = [&](const std::string& term) {
    return error_of(declarations + functions + "\n(get-value (" + term + "))");
  };
  EXPECT_EQ(sort_error("(select (f (put empty true) q) (select (put flags p) 3))"), "");
  EXPECT_EQ(sort_error("(f bits q)"),
            "2:13: argument 1 of 'f' has sort (Array Int (_ BitVec 1)), but (Array Int Bool) is "
            "expected");
  EXPECT_EQ(sort_error("(put bits q)"),
            "2:13: argument 1 of 'put' has sort (Array Int (_ BitVec 1)), but (Array Int Bool) is "
            "expected");
  EXPECT_EQ(sort_error("(= (f flags q) ((as const (Array (_ BitVec 1) Int)) 3))"),
            "2:13: argument 2 of '=' has sort (Array (_ BitVec 1) Int), but (Array Bool Int) is "
            "expected");
}

TEST_F(Arrays, AnInstanceOfADefinitionIsExact) {
  EXPECT_EQ(
      asserted(declarations +
               "(define-fun put ((g (Array Int Bool)) (v Bool)) (Array Int Bool) (store g 0 v))"
               "(assert (select (put flags (select flags 1)) 2))"),
      "(= (select (store flags 0 (ite (= (select flags 1) (_ bv1 1)) (_ bv1 1) (_ bv0 1))) 2) "
      "(_ bv1 1))");
}

// --- Scripts ---

TEST_F(Arrays, BodiesOfDefinitionsMustHaveTheSort) {
  EXPECT_EQ(error_of(declarations + "\n(define-fun d () (Array Int Bool) bits)"),
            "2:35: the body has sort (Array Int (_ BitVec 1)), but (Array Int Bool) is declared");
}

TEST_F(Arrays, SortsInScriptsAreTheManagersTypes) {
  const Script script = read_text(declarations + "(get-value (flags))", m);
  EXPECT_EQ(script.commands.back().terms[0].value.sort,
            m.get_array_type(m.get_int_type(), m.get_bv_type(1)));
  EXPECT_FALSE(script.commands[0].has_bool_arrays);
  EXPECT_TRUE(script.commands[3].has_bool_arrays);
}

TEST_F(Arrays, OneSymbolServesBothSortsAfterPop) {
  EXPECT_EQ(error_of("(push 1)(declare-fun z () (Array Int Bool))(assert (select z 0))(pop 1)"
                     "(declare-fun z () (Array Int (_ BitVec 1)))(assert (= #b1 (select z 0)))"),
            "");
}

TEST_F(Arrays, OfBoolAndConstantOnesAskForEveryTheory) {
  EXPECT_EQ(logic_of("(set-logic QF_AX)(declare-fun z () (Array Bool Bool))"), "ALL");
  EXPECT_EQ(logic_of("(set-logic QF_ABV)(define-sort B () (Array (_ BitVec 8) Bool))"), "ALL");
  EXPECT_EQ(logic_of("(set-logic QF_ALIA)(declare-fun z () (Array Int Int))"
                     "(assert (= z ((as const (Array Int Int)) 0)))"),
            "ALL");
  EXPECT_EQ(logic_of("(declare-fun z () (Array Bool Bool))"), "");
  EXPECT_EQ(logic_of("(set-logic QF_AX)(declare-fun z () (Array Bool Bool))(reset)"
                     "(set-logic QF_ALIA)(declare-fun z () (Array Int Int))"),
            "QF_ALIA");
}

TEST_F(Arrays, AreWrittenAsTheyAreHeld) {
  EXPECT_EQ(printed("(set-logic QF_AX)(declare-fun z () (Array Bool Bool))"
                    "(declare-fun p () Bool)(assert (select z p))"),
            "(set-logic ALL)\n"
            "(declare-fun z () (Array (_ BitVec 1) (_ BitVec 1)))\n"
            "(declare-fun p () Bool)\n"
            "(assert (= (select z (ite p (_ bv1 1) (_ bv0 1))) (_ bv1 1)))\n");
}

TEST_F(Arrays, NamesAreFreeInLogicsWithoutArrays) {
  EXPECT_EQ(error_of("(set-logic QF_UF)(declare-fun select (Bool) Bool)"
                     "(declare-fun const () Bool)(assert (select const))"),
            "");
  EXPECT_EQ(error_of("(set-logic QF_AX)(declare-fun select () Bool)"),
            "1:31: 'select' is an operator of the theory of arrays and cannot be declared");
}

TEST_F(Arrays, ConstIsFreeInLogicsWithArrays) {
  EXPECT_EQ(printed("(set-logic QF_AX)(declare-fun const () Bool)(assert const)"),
            "(set-logic QF_AX)\n(declare-fun quill!const () Bool)\n(assert quill!const)\n");
}

// The line that asserts an equation with a constant array of this value; it reads back to itself.
std::string written_value(const std::string& element, const std::string& value) {
  const std::string sort = "(Array Int " + element + ")";
  const std::string text = printed("(declare-const a " + sort + ")(assert (= a ((as const " + sort +
                                   ") " + value + ")))");
  EXPECT_EQ(printed(text), text);
  const std::string head = "(assert (= a ((as const " + sort + ") ";
  const size_t start = text.find(head);
  if (start == std::string::npos) return text;
  return text.substr(start + head.size(), text.size() - start - head.size() - 4);
}

// Readers require values there, and take neither (/ 1.0 2.0) nor (- 0.5) nor (fp ...) for one.
TEST_F(Arrays, OfARationalHaveItSpelledAsAValue) {
  const std::pair<const char*, const char*> cases[] = {
      {"0.5", "0.5"},
      {"(/ 1.0 2.0)", "0.5"},
      {"(/ 1 20)", "0.05"},
      {"1.250", "1.25"},
      {"(/ 1 3)", "(/ 1 3)"},
      {"(/ 7.0 6.0)", "(/ 7 6)"},
      {"(- 0.5)", "(/ (- 1) 2)"},
      {"(- (/ 1 3))", "(/ (- 1) 3)"},
      {"(- 2.0)", "(/ (- 2) 1)"},
      {"0.0", "0.0"},
      {"7.0", "7.0"},
      {"123456789012345678901234567890.5", "123456789012345678901234567890.5"},
      {"(- 123456789012345678901234567890.0)", "(/ (- 123456789012345678901234567890) 1)"},
      {"(! 0.5 :named h)", "(! 0.5 :named h)"},
  };
  for (const auto& [value, text] : cases) EXPECT_EQ(written_value("Real", value), text);
  EXPECT_EQ(written_value("Int", "(- 5)"), "(- 5)");
  EXPECT_EQ(written_value("(Array Int Real)", "((as const (Array Int Real)) (- 0.5))"),
            "((as const (Array Int Real)) (/ (- 1) 2))");
  EXPECT_EQ(written_value("Real", "(+ 0.5 0.5)"), "(+ (/ 1.0 2.0) (/ 1.0 2.0))");
}

TEST_F(Arrays, OfAFloatHaveItSpelledAsAValueWhereItHasAName) {
  const std::string sort = "(_ FloatingPoint 5 11)";
  for (const std::string value :
       {"(_ +oo 5 11)", "(_ -oo 5 11)", "(_ +zero 5 11)", "(_ -zero 5 11)", "(_ NaN 5 11)"}) {
    EXPECT_EQ(written_value(sort, value), value);
  }
  for (const std::string value :
       {"(fp #b0 #b01111 #b0000000000)", "(fp #b1 #b11111 #b1000000000)",
        "(fp #b0 #b11111 #b0000000001)", "(fp #b1 #b00000 #b0000000001)"}) {
    EXPECT_EQ(written_value(sort, value), value);
  }
}

}  // namespace
}  // namespace quill::smt2
