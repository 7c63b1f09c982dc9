// Requests that are refused, each for all possible reasons, leave the manager as it was: every
// store, every table, every switch. Where something may stay, the test says so.

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/manager_test.h"
#include "tests/support/operator_rows.h"
#include "tests/support/unchanged.h"

namespace quill {
namespace {

using testing::Bench;
using testing::constant;
using testing::Failure;
using testing::refusal;
using testing::Row;
using testing::StateBefore;
using testing::Terms;
using Types = std::vector<const DataType*>;

//------------------------------------------------------------------------------------------------
// Types

TEST(RefusedRequests, OfTypes) {
  TermManager m;
  const DataType* integers = m.get_int_type();
  const DataType* reals = m.get_rat_type();
  const DataType* booleans = m.get_bool_type();
  const DataType* function = m.get_function_type({integers}, reals);

  const char* too_small = "error: too small exponent and/or mantissa width for FP numbers: ";
  EXPECT_EQ(refusal(m, [&] { m.get_fp_type(1, 10); }),
            std::string(too_small) + "1, 10 (min is 2, 2)");
  EXPECT_EQ(refusal(m, [&] { m.get_fp_type(8, 1); }),
            std::string(too_small) + "8, 1 (min is 2, 2)");
  EXPECT_EQ(refusal(m, [&] { m.get_fp_type(0, 0); }),
            std::string(too_small) + "0, 0 (min is 2, 2)");

  const char* no_bool = "error: Arrays with Bool as argument are not supported";
  EXPECT_EQ(refusal(m, [&] { m.get_array_type(booleans, integers); }), no_bool);
  EXPECT_EQ(refusal(m, [&] { m.get_array_type(integers, booleans); }), no_bool);
  const char* no_function = "error: Arrays with functions as arguments are not supported";
  EXPECT_EQ(refusal(m, [&] { m.get_array_type(function, integers); }), no_function);
  EXPECT_EQ(refusal(m, [&] { m.get_array_type(integers, function); }), no_function);

  const char* higher_order = "error: Higher-order functions not supported";
  EXPECT_EQ(refusal(m, [&] { m.get_function_type({booleans}, integers); }),
            "error: Functions with Bool arguments not supported");
  EXPECT_EQ(refusal(m, [&] { m.get_function_type({reals, function}, integers); }), higher_order);
  EXPECT_EQ(refusal(m, [&] { m.get_function_type({reals, reals}, function); }), higher_order);

  const char* compound = "error: Higher-order compound types not supported";
  EXPECT_EQ(refusal(m, [&] { m.get_compound_type({reals, booleans}); }), compound);
  EXPECT_EQ(refusal(m, [&] { m.get_compound_type({reals, function}); }), compound);

  EXPECT_EQ(refusal(m, [&] { m.get_supertype(booleans, reals); }),
            "error: unrelated types: Bool and Real");
}

//------------------------------------------------------------------------------------------------
// Symbols

TEST(RefusedRequests, OfSymbols) {
  TermManager m;
  const DataType* integers = m.get_int_type();
  const DataType* reals = m.get_rat_type();
  const DataType* function = m.get_function_type({integers}, reals);
  m.make_symbol("x", integers);
  const std::string nul("x\0y", 3);

  EXPECT_EQ(refusal(m, [&] { m.make_symbol("", integers); }), "error: Empty name for symbol");
  EXPECT_EQ(refusal(m, [&] { m.make_symbol("`x`", integers); }),
            "error: Symbols can't start with the \"`\" character");
  EXPECT_EQ(refusal(m, [&] { m.make_symbol(nul, integers); }),
            "error: Symbols can't contain the NUL character");
  EXPECT_EQ(refusal(m, [&] { m.make_symbol("x", reals); }),
            "Exception: the symbol x already exists with type Int, it can't be declared with type "
            "Real");
  EXPECT_EQ(refusal(m, [&] { m.make_symbol("x", function); }),
            "Exception: the symbol x already exists with type Int, it can't be declared with type "
            "(-> Int Real)");

  EXPECT_EQ(refusal(m, [&] { m.make_unique_symbol("", integers); }),
            "error: Empty name for symbol");
  EXPECT_EQ(refusal(m, [&] { m.make_unique_symbol("`x`", integers); }),
            "error: Symbols can't start with the \"`\" character");
  EXPECT_EQ(refusal(m, [&] { m.make_unique_symbol(nul, integers); }),
            "error: Symbols can't contain the NUL character");

  EXPECT_EQ(refusal(m, [&] { m.add_interpreted_symbol("and", integers, SymbolTag::BV_ADD); }),
            "Exception: the symbol `and` already exists with type (-> Bool Bool Bool), it can't be "
            "declared with type Int");
}

// A number of a fresh variable is never used again, not even that of one that was refused.
TEST(RefusedRequests, OfFreshVariablesUseUpTheirNumbers) {
  TermManager m;
  m.make_symbol("'1", m.get_int_type());
  const DataType* function = m.get_function_type({m.get_int_type()}, m.get_rat_type());
  EXPECT_EQ(refusal(m, [&] { m.make_fresh_variable(m.get_int_type()); }),
            "error: impossible to create variable '1, because there's already a symbol with the "
            "same name\n"
            "fresh_counter: 2\n"
            "-fresh_counter: 1");
  EXPECT_EQ(refusal(m, [&] { m.make_fresh_variable(function); }),
            "error: Higher-order variables are not supported\n"
            "fresh_counter: 3\n"
            "-fresh_counter: 2");
}

//------------------------------------------------------------------------------------------------
// Terms

TEST(RefusedRequests, OfApplications) {
  TermManager m;
  const DataType* integers = m.get_int_type();
  const DataType* reals = m.get_rat_type();
  const Symbol* f = m.make_symbol("f", m.get_function_type({integers, reals}, reals));
  const Term_* i = constant(m, "i", integers);
  const Term_* r = constant(m, "r", reals);
  const Term_* p = constant(m, "p", m.get_bool_type());

  EXPECT_EQ(refusal(m, [&] { m.make_constant(f); }),
            "error: wrong arity for symbol f. expected 2, got 0");
  EXPECT_EQ(refusal(m, [&] { m.make_uninterpreted_function(f, {i}); }),
            "error: wrong arity for symbol f. expected 2, got 1");
  EXPECT_EQ(refusal(m,
                    [&] {
                      m.make_uninterpreted_function(f, {r, i});
                    }),
            "error: type error. term r has type Real, but Int was expected. "
            "(make_uninterpreted_function)");
  EXPECT_EQ(refusal(m,
                    [&] {
                      m.make_term(f, {i, r, r});
                    }),
            "error: wrong arity for symbol f. expected 2, got 3");
  EXPECT_EQ(refusal(m, [&] { m.typecheck(p, integers, "here"); }),
            "error: type error. term p has type Bool, but Int was expected. (here)");
  EXPECT_EQ(refusal(m, [&] { m.typecheck(f, {i}); }),
            "error: wrong arity for symbol f. expected 2, got 1");
  EXPECT_EQ(refusal(m, [&] { m.make_bin(f, i, p, "my_builder"); }),
            "error: type error. term p has type Bool, but Real was expected. (my_builder)");
}

TEST(RefusedRequests, OfTheCoreAndOfArithmetic) {
  TermManager m;
  const Term_* i = constant(m, "i", m.get_int_type());
  const Term_* p = constant(m, "p", m.get_bool_type());
  const std::string i_no_bool = "error: type error. term i has type Int, but Bool was expected. ";
  const std::string p_no_real = "error: type error. term p has type Bool, but Real was expected. ";

  EXPECT_EQ(refusal(m, [&] { m.make_and(i, p); }), i_no_bool + "(make_and)");
  EXPECT_EQ(refusal(m, [&] { m.make_and(p, i); }), i_no_bool + "(make_and)");
  EXPECT_EQ(refusal(m, [&] { m.make_or(p, i); }), i_no_bool + "(make_or)");
  EXPECT_EQ(refusal(m, [&] { m.make_iff(p, i); }), i_no_bool + "(make_iff)");
  EXPECT_EQ(refusal(m, [&] { m.make_not(i); }), i_no_bool + "(make_not)");
  EXPECT_EQ(refusal(m, [&] { m.make_leq(p, i); }), p_no_real + "(make_leq)");
  EXPECT_EQ(refusal(m, [&] { m.make_plus(i, p); }), p_no_real + "(make_plus)");
  EXPECT_EQ(refusal(m, [&] { m.make_times(i, p); }), p_no_real + "(make_times)");
  EXPECT_EQ(refusal(m, [&] { m.make_floor(p); }), p_no_real + "(make_floor)");
}

// Twice each: the first request of a type has a symbol to make, the second finds it.
TEST(RefusedRequests, OfEqualitiesAndIfThenElse) {
  TermManager m;
  const DataType* sort = m.get_simple_type("S", /*only_existing=*/false);
  const Term_* x = constant(m, "x", sort);
  const Term_* i = constant(m, "i", m.get_int_type());
  const Term_* p = constant(m, "p", m.get_bool_type());
  const std::string no_equality = "error: Equality arguments can't be Boolean";
  const std::string no_ite = "error: Term-ITE arguments can't be Boolean";

  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(refusal(m, [&] { m.make_equality_symbol(m.get_bool_type()); }), no_equality);
    EXPECT_EQ(refusal(m, [&] { m.make_equal(p, p); }), no_equality);
    EXPECT_EQ(refusal(m, [&] { m.make_equal(p, x); }), no_equality);
    EXPECT_EQ(refusal(m, [&] { m.make_equal(x, i); }),
              "error: type error. term i has type Int, but S was expected. (make_equal)");
    EXPECT_EQ(refusal(m, [&] { m.make_equal(i, x); }),
              "error: type error. term x has type S, but Real was expected. (make_equal)");

    EXPECT_EQ(refusal(m, [&] { m.make_term_ite_symbol(m.get_bool_type()); }), no_ite);
    EXPECT_EQ(refusal(m, [&] { m.make_term_ite(p, p, p); }), no_ite);
    EXPECT_EQ(refusal(m, [&] { m.make_term_ite(x, x, x); }),
              "error: type error. term x has type S, but Bool was expected. (make_term_ite)");
    EXPECT_EQ(refusal(m, [&] { m.make_term_ite(p, x, i); }),
              "error: type error. term i has type Int, but S was expected. (make_term_ite)");
    EXPECT_EQ(refusal(m, [&] { m.make_term_ite(i, i, i); }),
              "error: type error. term i has type Int, but Bool was expected. (make_term_ite)");
    EXPECT_EQ(refusal(m, [&] { m.make_term_ite(p, i, p); }),
              "error: type error. term p has type Bool, but Real was expected. (make_term_ite)");
    m.make_equal(x, x);
    m.make_term_ite(p, x, x);
    m.make_term_ite(p, i, i);
    m.make_term_ite_symbol(m.get_rat_type());
  }
}

TEST(RefusedRequests, OfEqualitiesAndIfThenElseWhoseNameIsTaken) {
  TermManager m;
  const DataType* sort = m.get_simple_type("S", /*only_existing=*/false);
  const Term_* x = constant(m, "x", sort);
  const Term_* p = constant(m, "p", m.get_bool_type());
  m.add_interpreted_symbol("=_S", sort, SymbolTag::EQUAL);
  m.add_interpreted_symbol("ite_S", sort, SymbolTag::TERM_ITE);
  const std::string no_equality =
      "Exception: the symbol `=_S` already exists with type S, it can't be declared with type "
      "(-> S S Bool)";
  const std::string no_ite =
      "Exception: the symbol `ite_S` already exists with type S, it can't be declared with type "
      "(-> Bool S S S)";
  EXPECT_EQ(refusal(m, [&] { m.make_equality_symbol(sort); }), no_equality);
  EXPECT_EQ(refusal(m, [&] { m.make_equal(x, x); }), no_equality);
  EXPECT_EQ(refusal(m, [&] { m.make_term_ite_symbol(sort); }), no_ite);
  EXPECT_EQ(refusal(m, [&] { m.make_term_ite(p, x, x); }), no_ite);
}

// Refuses what it is asked for.
class Refusing : public TermFactory {
 public:
  const Term_* make_term(const Symbol*, const Terms&) override {
    throw TermManager::error("not today");
  }
};

TEST(RefusedRequests, ByADelegate) {
  Bench bench;
  TermManager& m = bench.m;
  const DataType* sort = m.get_simple_type("S", /*only_existing=*/false);
  const Term_* x = constant(m, "x", sort);
  const Term_* p = bench.terms({"p"})[0];
  for (const Row& row : testing::operator_rows()) row.make_symbol(m);
  Refusing refusing;
  m.set_delegate(&refusing);
  m.set_delegate_enabled(true);
  const std::string no = "error: not today";
  EXPECT_EQ(refusal(m, [&] { m.make_and(p, p); }), no);
  EXPECT_EQ(refusal(m, [&] { m.make_constant(m.make_symbol("p", m.get_bool_type())); }), no);
  EXPECT_EQ(refusal(m, [&] { m.make_equal(x, x); }), no);
  EXPECT_EQ(refusal(m, [&] { m.make_term_ite(p, x, x); }), no);
  for (const Row& row : testing::operator_rows()) {
    EXPECT_EQ(refusal(m, [&] { row.build(m, bench.terms(row.args)); }), no) << row.operation;
  }
}

//------------------------------------------------------------------------------------------------
// Numerals

TEST(RefusedRequests, OfNumerals) {
  TermManager m;
  EXPECT_EQ(refusal(m, [&] { m.make_bv_number(QNumber(5, 2), 8); }),
            "error: can't make a bv number from a fractional number: 5/2");
  EXPECT_EQ(refusal(m, [&] { m.make_bv_number(-1, 8); }),
            "error: can't make a bv number from a negative number: -1");
  EXPECT_EQ(refusal(m, [&] { m.make_bv_number(256, 8); }),
            "Exception: the number 256 doesn't fit in 8 bits");
  const QNumber big = QNumber::from_string("18446744073709551616");
  EXPECT_EQ(refusal(m, [&] { m.make_bv_number(big, 64); }),
            "Exception: the number 18446744073709551616 doesn't fit in 64 bits");

  EXPECT_EQ(refusal(m, [&] { m.make_fp_bits_number(QNumber(5, 2), 3, 4); }),
            "error: can't make a FP number from a fractional number: 5/2");
  EXPECT_EQ(refusal(m, [&] { m.make_fp_bits_number(-1, 3, 4); }),
            "error: can't make a FP number from a negative number: -1");
  EXPECT_EQ(refusal(m, [&] { m.make_fp_bits_number(256, 3, 4); }),
            "Exception: the number 256 doesn't fit in 8 bits");
  EXPECT_EQ(refusal(m, [&] { m.make_fp_bits_number(0, SIZE_MAX, 1); }),
            "Exception: a bit pattern of 1 + 18446744073709551615 + 1 bits is too wide");

  const Term_* x = constant(m, "x", m.get_int_type());
  EXPECT_EQ(refusal(m, [&] { m.make_fp_rat_number(QNumber(1, 3), 3, 4, x); }),
            "error: unsupported rounding mode: x");
}

TEST(RefusedRequests, OfNumeralsOfFormatsThatAreTooSmall) {
  TermManager m;
  const Term_* even = m.make_fprounding_even();
  const std::string too_small =
      "error: too small exponent and/or mantissa width for FP numbers: 1, 1 (min is 2, 2)";
  EXPECT_EQ(refusal(m, [&] { m.make_fp_bits_number(1, 1, 1); }), too_small);
  EXPECT_EQ(refusal(m, [&] { m.make_fp_rat_number(QNumber(1, 3), 1, 1, even); }), too_small);
  EXPECT_EQ(refusal(m, [&] { m.make_fp_plus_inf(1, 1); }), too_small);
  EXPECT_EQ(refusal(m, [&] { m.make_fp_minus_inf(1, 1); }), too_small);
  EXPECT_EQ(refusal(m, [&] { m.make_fp_nan(1, 1); }), too_small);
}

TEST(RefusedRequests, OfNumeralsWhoseNameIsTaken) {
  TermManager m;
  const DataType* sort = m.get_simple_type("S", /*only_existing=*/false);
  const auto taken = [&](const char* name, const DataType* type) {
    m.make_symbol(name, type);
    return "error: a symbol for " + std::string(name) +
           " already exists, but it has the wrong type: " + type->to_str();
  };
  std::string expected = taken("7", sort);
  EXPECT_EQ(refusal(m, [&] { m.make_number(7); }), expected);
  expected = taken("1/3", m.get_bool_type());
  EXPECT_EQ(refusal(m, [&] { m.make_number(QNumber(1, 3)); }), expected);
  EXPECT_EQ(refusal(m, [&] { m.make_number(QNumber(2, 6)); }), expected);
  expected = taken("-7", m.get_function_type({m.get_int_type()}, m.get_int_type()));
  EXPECT_EQ(refusal(m, [&] { m.make_number(-7); }), expected);

  // The types of the numerals are not there yet.
  expected = taken("5_8", m.get_int_type());
  EXPECT_EQ(refusal(m, [&] { m.make_bv_number(5, 8); }), expected);
  expected = taken("0_8", m.get_bv_type(9));
  EXPECT_EQ(refusal(m, [&] { m.make_bv_number(0, 8); }), expected);
  expected = taken("0_3_4", m.get_rat_type());
  EXPECT_EQ(refusal(m, [&] { m.make_fp_bits_number(0, 3, 4); }), expected);
  EXPECT_EQ(refusal(m, [&] { m.make_fp_rat_number(0, 3, 4, m.make_fprounding_even()); }),
            expected + "\nterm 2 = `fprounding_even`#15");
  expected = taken("112_3_4", m.get_fp_type(4, 3));
  EXPECT_EQ(refusal(m, [&] { m.make_fp_plus_inf(3, 4); }), expected);
  expected = taken("240_3_4", m.get_bv_type(9));
  EXPECT_EQ(refusal(m, [&] { m.make_fp_minus_inf(3, 4); }), expected);
  expected = taken("120_3_4", m.get_int_type());
  EXPECT_EQ(refusal(m, [&] { m.make_fp_nan(3, 4); }), expected);

  // And when they are.
  m.get_bv_type(8);
  m.get_fp_type(3, 4);
  EXPECT_EQ(refusal(m, [&] { m.make_bv_number(5, 8); }),
            "error: a symbol for 5_8 already exists, but it has the wrong type: Int");
  EXPECT_EQ(refusal(m, [&] { m.make_fp_bits_number(0, 3, 4); }),
            "error: a symbol for 0_3_4 already exists, but it has the wrong type: Real");
}

//------------------------------------------------------------------------------------------------
// Operator families

class RefusedOperators : public ::testing::TestWithParam<Row> {};

INSTANTIATE_TEST_SUITE_P(Operators, RefusedOperators, ::testing::ValuesIn(testing::operator_rows()),
                         [](const auto& param) { return std::string(param.param.operation); });

// Who takes the name of an operator's symbol before the operator does.
std::string take_name(TermManager& m, const Row& row, const char* taken_type) {
  const std::string type_text(taken_type);
  const DataType* type = type_text == "Int"
                             ? m.get_int_type()
                             : m.get_function_type({m.get_int_type()}, m.get_rat_type());
  m.add_interpreted_symbol(row.name, type, SymbolTag::PLUS);
  return "Exception: the symbol `" + std::string(row.name) + "` already exists with type " +
         type_text + ", it can't be declared with type " + row.type;
}

TEST_P(RefusedOperators, MakerWhoseNameIsTakenMakesNothing) {
  const Row& row = GetParam();
  for (const char* taken_type : {"Int", "(-> Int Real)"}) {
    TermManager m;
    const std::string expected = take_name(m, row, taken_type);
    EXPECT_EQ(refusal(m, [&] { row.make_symbol(m); }), expected);
    EXPECT_EQ(refusal(m, [&] { row.make_symbol(m); }), expected) << "the second time";
  }
}

TEST_P(RefusedOperators, MakerWhoseNameIsTakenMakesNothingAmongAllOthers) {
  const Row& row = GetParam();
  TermManager m;
  const std::string expected = take_name(m, row, "Int");
  for (const Row& other : testing::operator_rows()) {
    if (other.tag != row.tag) other.make_symbol(m);
  }
  EXPECT_EQ(refusal(m, [&] { row.make_symbol(m); }), expected);
}

TEST_P(RefusedOperators, BuilderWhoseNameIsTakenMakesNothing) {
  const Row& row = GetParam();
  Bench bench;
  const std::string expected = take_name(bench.m, row, "Int");
  const Terms args = bench.terms(row.args);
  EXPECT_EQ(refusal(bench.m, [&] { row.build(bench.m, args); }), expected);
  EXPECT_EQ(refusal(bench.m, [&] { row.build(bench.m, args); }), expected) << "the second time";
}

TEST_P(RefusedOperators, BuilderThatRefusesItsOperandMakesNothing) {
  const Row& row = GetParam();
  for (const Failure& failure : row.failures) {
    if (failure.leaves != testing::nothing_made) continue;
    const std::string expected = std::string("error: ") + failure.message;
    Bench bench;
    const Terms args = bench.terms(failure.args);
    EXPECT_EQ(refusal(bench.m, [&] { row.build(bench.m, args); }), expected);
    row.make_symbol(bench.m);
    EXPECT_EQ(refusal(bench.m, [&] { row.build(bench.m, args); }), expected) << "with the symbol";
  }
}

// An operand that make_term refuses comes after the symbol: that one stays, as its maker would have
// left it, and nothing else does.
TEST_P(RefusedOperators, BuilderWhoseOperandsAreIllTypedMakesItsSymbolAndNothingElse) {
  const Row& row = GetParam();
  for (const Failure& failure : row.failures) {
    if (failure.leaves != testing::symbol_made) continue;
    const std::string expected = std::string("error: ") + failure.message;
    Bench twin;
    row.make_symbol(twin.m);
    Bench bench;
    const Terms args = bench.terms(failure.args);
    EXPECT_THROW(row.build(bench.m, args), TermManager::error);
    EXPECT_EQ(bench.m.describe_state(), twin.m.describe_state()) << failure.message;
    EXPECT_EQ(refusal(bench.m, [&] { row.build(bench.m, args); }), expected) << "with the symbol";
  }
}

// What comes before make_term fails without a name: an error of a later direct request names the
// symbol of that request.
TEST_P(RefusedOperators, ARefusalBeforeMakeTermNamesNoLaterError) {
  const Row& row = GetParam();
  for (const bool has_name : {false, true}) {
    Bench bench;
    TermManager& m = bench.m;
    if (has_name) take_name(m, row, "Int");
    const Symbol* f =
        m.make_symbol("later", m.get_function_type({m.get_int_type()}, m.get_int_type()));
    const auto expect_its_own_name = [&] {
      EXPECT_EQ(refusal(m, [&] { m.make_term(f, bench.terms({"f"})); }),
                "error: type error. term f has type (FP |8:23|), but Int was expected. (later)");
    };
    for (const Failure& failure : row.failures) {
      if (!has_name && failure.leaves != testing::nothing_made) continue;
      EXPECT_THROW(row.build(m, bench.terms(failure.args)), Exception);
      expect_its_own_name();
      m.make_not(m.make_true());
    }
    if (!has_name) continue;
    EXPECT_THROW(row.build(m, bench.terms(row.args)), Exception);
    expect_its_own_name();
  }
}

// Every way in which the numbers of a maker or builder are refused.
struct RefusedNumbers {
  const char* text;
  std::function<void(TermManager&)> request;
  const char* expected;
};

const std::vector<RefusedNumbers>& refused_numbers() {
  static const char* const format_1_1 =
      "error: too small exponent and/or mantissa width for FP numbers: 1, 1 (min is 2, 2)";
  static const char* const format_8_1 =
      "error: too small exponent and/or mantissa width for FP numbers: 8, 1 (min is 2, 2)";
  static const char* const too_wide =
      "Exception: a bit pattern of 1 + 18446744073709551615 + 2 bits is too wide";
  // clang-format off
  static const std::vector<RefusedNumbers> rows = {
      {"fp_equal", [](TermManager& m) { m.make_fp_equal_symbol(8, 1); }, format_8_1},
      {"fp_lt", [](TermManager& m) { m.make_fp_lt_symbol(8, 1); }, format_8_1},
      {"fp_le", [](TermManager& m) { m.make_fp_le_symbol(8, 1); }, format_8_1},
      {"fp_neg", [](TermManager& m) { m.make_fp_neg_symbol(8, 1); }, format_8_1},
      {"fp_add", [](TermManager& m) { m.make_fp_add_symbol(8, 1); }, format_8_1},
      {"fp_sub", [](TermManager& m) { m.make_fp_sub_symbol(8, 1); }, format_8_1},
      {"fp_mul", [](TermManager& m) { m.make_fp_mul_symbol(8, 1); }, format_8_1},
      {"fp_div", [](TermManager& m) { m.make_fp_div_symbol(8, 1); }, format_8_1},
      {"fp_sqrt", [](TermManager& m) { m.make_fp_sqrt_symbol(8, 1); }, format_8_1},
      {"fp_abs", [](TermManager& m) { m.make_fp_abs_symbol(8, 1); }, format_8_1},
      {"fp_min", [](TermManager& m) { m.make_fp_min_symbol(8, 1); }, format_8_1},
      {"fp_max", [](TermManager& m) { m.make_fp_max_symbol(8, 1); }, format_8_1},
      {"fp_round_to_int", [](TermManager& m) { m.make_fp_round_to_int_symbol(8, 1); }, format_8_1},
      {"fp_isnan", [](TermManager& m) { m.make_fp_isnan_symbol(8, 1); }, format_8_1},
      {"fp_isinf", [](TermManager& m) { m.make_fp_isinf_symbol(8, 1); }, format_8_1},
      {"fp_iszero", [](TermManager& m) { m.make_fp_iszero_symbol(8, 1); }, format_8_1},
      {"fp_issubnormal", [](TermManager& m) { m.make_fp_issubnormal_symbol(8, 1); }, format_8_1},
      {"fp_isnormal", [](TermManager& m) { m.make_fp_isnormal_symbol(8, 1); }, format_8_1},
      {"fp_isneg", [](TermManager& m) { m.make_fp_isneg_symbol(8, 1); }, format_8_1},
      {"fp_ispos", [](TermManager& m) { m.make_fp_ispos_symbol(8, 1); }, format_8_1},
      {"fp_cast from", [](TermManager& m) { m.make_fp_cast_symbol(1, 1, 8, 23); }, format_1_1},
      {"fp_cast to", [](TermManager& m) { m.make_fp_cast_symbol(8, 23, 1, 1); }, format_1_1},
      {"fp_from_sbv", [](TermManager& m) { m.make_fp_from_sbv_symbol(8, 1, 1); }, format_1_1},
      {"fp_from_ubv", [](TermManager& m) { m.make_fp_from_ubv_symbol(8, 1, 1); }, format_1_1},
      {"fp_to_bv", [](TermManager& m) { m.make_fp_to_bv_symbol(1, 1, 8); }, format_1_1},
      {"fp_as_ieeebv", [](TermManager& m) { m.make_fp_as_ieeebv_symbol(1, 1); }, format_1_1},
      {"fp_from_ieeebv", [](TermManager& m) { m.make_fp_from_ieeebv_symbol(1, 1); }, format_1_1},
      {"wide fp_as_ieeebv", [](TermManager& m) { m.make_fp_as_ieeebv_symbol(SIZE_MAX, 2); }, too_wide},
      {"wide fp_from_ieeebv", [](TermManager& m) { m.make_fp_from_ieeebv_symbol(SIZE_MAX, 2); }, too_wide},
      {"wide concat", [](TermManager& m) { m.make_bv_concat_symbol(SIZE_MAX, 1); }, "Exception: a bit-vector of 18446744073709551615 + 1 bits is too wide"},
      {"wide zero_extend", [](TermManager& m) { m.make_bv_zero_extend_symbol(SIZE_MAX, 1); }, "Exception: a bit-vector of 18446744073709551615 + 1 bits is too wide"},
      {"wide sign_extend", [](TermManager& m) { m.make_bv_sign_extend_symbol(1, SIZE_MAX); }, "Exception: a bit-vector of 1 + 18446744073709551615 bits is too wide"},
      {"modulus 0", [](TermManager& m) { m.make_int_modular_congruence_symbol(0); }, "Exception: invalid modulus in make_int_modular_congruence_symbol: 0"},
      {"modulus -3", [](TermManager& m) { m.make_int_modular_congruence_symbol(-3); }, "Exception: invalid modulus in make_int_modular_congruence_symbol: -3"},
      {"modulus 5/2", [](TermManager& m) { m.make_int_modular_congruence_symbol(QNumber(5, 2)); }, "Exception: invalid modulus in make_int_modular_congruence_symbol: 5/2"},
      {"read of Bool", [](TermManager& m) { m.make_array_read_symbol(m.get_bool_type(), m.get_int_type()); }, "error: Arrays with Bool as argument are not supported"},
      {"write of Bool", [](TermManager& m) { m.make_array_write_symbol(m.get_int_type(), m.get_bool_type()); }, "error: Arrays with Bool as argument are not supported"},
      {"const of Bool", [](TermManager& m) { m.make_array_const_symbol(m.get_bool_type(), m.get_bool_type()); }, "error: Arrays with Bool as argument are not supported"},
  };
  // clang-format on
  return rows;
}

TEST(RefusedRequests, OfNumbersThatNoOperatorHas) {
  for (const RefusedNumbers& row : refused_numbers()) {
    TermManager m;
    EXPECT_EQ(refusal(m, [&] { row.request(m); }), row.expected) << row.text;
  }
  // The same with the types of the operands at hand.
  Bench bench;
  for (const RefusedNumbers& row : refused_numbers()) {
    EXPECT_EQ(refusal(bench.m, [&] { row.request(bench.m); }), row.expected) << row.text;
  }
}

TEST(RefusedRequests, OfBuildersWithNumbersThatNoOperatorHas) {
  Bench bench;
  TermManager& m = bench.m;
  const Terms t = bench.terms({"rm", "f", "x8", "i"});
  const Term_* rm = t[0];
  const Term_* f = t[1];
  const Term_* x8 = t[2];
  const Term_* i = t[3];
  const Term_* x1 = constant(m, "x1", m.get_bv_type(1));
  const Term_* x3 = constant(m, "x3", m.get_bv_type(3));
  const Term_* wide = constant(m, "wide", m.get_bv_type(SIZE_MAX));
  const std::string too_small =
      "error: too small exponent and/or mantissa width for FP numbers: 1, 1 (min is 2, 2)";
  const std::string sum = "Exception: a bit-vector of ";

  EXPECT_EQ(refusal(m, [&] { m.make_fp_cast(1, 1, rm, f); }), too_small);
  EXPECT_EQ(refusal(m, [&] { m.make_fp_from_sbv(1, 1, rm, x8); }), too_small);
  EXPECT_EQ(refusal(m, [&] { m.make_fp_from_ubv(1, 1, rm, x8); }), too_small);
  EXPECT_EQ(refusal(m, [&] { m.make_fp_from_ieeebv(1, 1, x3); }), too_small);
  EXPECT_EQ(refusal(m, [&] { m.make_fp_from_ieeebv(SIZE_MAX, 2, x8); }),
            "Exception: a bit pattern of 1 + 18446744073709551615 + 2 bits is too wide");
  EXPECT_EQ(refusal(m, [&] { m.make_bv_extract(3, 4, x8); }),
            "Exception: bv extraction of an empty range: [3:4]");
  EXPECT_EQ(refusal(m, [&] { m.make_bv_extract(8, 0, x8); }),
            "Exception: range too large in bv extraction. arg has width 8, but range is [8:0]");
  EXPECT_EQ(refusal(m, [&] { m.make_bv_concat(wide, x1); }),
            sum + "18446744073709551615 + 1 bits is too wide");
  EXPECT_EQ(refusal(m, [&] { m.make_bv_zero_extend(1, wide); }),
            sum + "1 + 18446744073709551615 bits is too wide");
  EXPECT_EQ(refusal(m, [&] { m.make_bv_sign_extend(SIZE_MAX, x1); }),
            sum + "18446744073709551615 + 1 bits is too wide");
  EXPECT_EQ(refusal(m, [&] { m.make_int_modular_congruence(0, i, i); }),
            "Exception: invalid modulus in make_int_modular_congruence_symbol: 0");
}

// Formats that are too small are refused also where somebody made them while checks were off.
TEST(RefusedRequests, OfSmallFormatsThatAreThere) {
  TermManager m;
  m.set_typecheck_enabled(false);
  const Term_* f = constant(m, "f", m.get_fp_type(1, 1));
  const Term_* bits = constant(m, "bits", m.get_bv_type(3));
  const Term_* rm = m.make_fprounding_even();
  m.set_typecheck_enabled(true);
  const std::string too_small =
      "error: too small exponent and/or mantissa width for FP numbers: 1, 1 (min is 2, 2)";
  EXPECT_EQ(refusal(m, [&] { m.make_fp_neg(f); }), too_small);
  EXPECT_EQ(refusal(m, [&] { m.make_fp_add(rm, f, f); }), too_small);
  EXPECT_EQ(refusal(m, [&] { m.make_fp_isnan(f); }), too_small);
  EXPECT_EQ(refusal(m, [&] { m.make_fp_cast(8, 23, rm, f); }), too_small);
  EXPECT_EQ(refusal(m, [&] { m.make_fp_to_bv(8, rm, f); }), too_small);
  EXPECT_EQ(refusal(m, [&] { m.make_fp_as_ieeebv(f); }), too_small);
  EXPECT_EQ(refusal(m, [&] { m.make_fp_from_ieeebv(1, 1, bits); }), too_small);
}

//------------------------------------------------------------------------------------------------
// Substitution and copying

TEST(RefusedRequests, OfSubstitutions) {
  TermManager m;
  const Term_* i = constant(m, "i", m.get_int_type());
  const Term_* r = constant(m, "r", m.get_rat_type());
  const Term_* t = m.make_leq(i, m.make_plus(i, i));
  const std::string incompatible = "error: substitution between terms of incompatible types";
  const std::string lengths = "error: Incompatible arguments to substitute";

  EXPECT_EQ(refusal(m, [&] { m.substitute(t, {i}, {r}); }), incompatible);
  EXPECT_EQ(refusal(m, [&] { m.substitute(t, {i, i}, {i}); }), lengths);
  EXPECT_EQ(refusal(m, [&] { m.substitute(t, {}, {i}); }), lengths);

  TermManager::TermMap cache;
  std::vector<bool> marks;
  EXPECT_EQ(refusal(m, [&] { m.substitute(t, {i}, {i, i}, cache, marks); }), lengths);
  EXPECT_EQ(cache.count, 0U);
  // The pairs before the offending one stay in the caller's cache.
  EXPECT_EQ(refusal(m, [&] { m.substitute(t, {r, i}, {i, r}, cache, marks); }), incompatible);
  EXPECT_EQ(cache.count, 1U);
  EXPECT_EQ(cache.find(r)->second, i);

  TermManager::TermMap pairs;
  pairs[i] = r;
  EXPECT_EQ(refusal(m, [&] { m.substitute(t, pairs, marks, /*check=*/true); }), incompatible);
  EXPECT_EQ(pairs.count, 1U);
}

// Refuses the product, and builds what comes before it.
class RefusesTimes : public TermManager {
 public:
  const Term_* make_term(const Symbol* s, const Terms& args) override {
    if (refuses && std::string(s->name) == "`*_int`") throw error("no products");
    return TermManager::make_term(s, args);
  }
  bool refuses = false;
};

// What a substitution has built before it fails stays; the switch for checks is back.
TEST(RefusedRequests, OfASubstitutionInTheMiddleLeaveTheTermsBelow) {
  RefusesTimes m;
  const Term_* i = constant(m, "i", m.get_int_type());
  const Term_* j = constant(m, "j", m.get_int_type());
  const Term_* t = m.make_leq(i, m.make_times(m.make_plus(i, i), i));
  ASSERT_EQ(t->id, 6U);
  m.refuses = true;
  EXPECT_EQ(refusal(m, [&] { m.substitute(t, {i}, {j}); }),
            "error: no products\n"
            "term 7 = `+_int`#10 3 3");
  EXPECT_EQ(refusal(m, [&] { m.substitute(t, {i}, {j}); }), "error: no products");
  TermManager::TermMap cache;
  std::vector<bool> marks;
  EXPECT_EQ(refusal(m, [&] { m.substitute(t, {i}, {j}, cache, marks); }), "error: no products");
  EXPECT_TRUE(m.get_typecheck_enabled());
}

// The source of a copy is only read; what the destination has made before the failure stays there.
TEST(RefusedRequests, OfCopies) {
  TermManager source;
  const DataType* sort = source.get_simple_type("S", /*only_existing=*/false);
  const Term_* x = constant(source, "x", sort);
  const Symbol* f = source.make_symbol("f", source.get_function_type({sort}, sort));
  const Term_* t = source.make_uninterpreted_function(f, {x});
  const Symbol* strange = source.add_interpreted_symbol("strange", sort, SymbolTag::NONE);

  TermManager m;
  m.make_symbol("f", m.get_int_type());
  EXPECT_EQ(refusal(source, [&] { m.copy_term(source, t); }),
            "error: wrong arity for symbol f. expected 0, got 1");
  EXPECT_EQ(refusal(m, [&] { m.copy_term(source, t); }),
            "error: wrong arity for symbol f. expected 0, got 1");

  TermManager other;
  other.make_symbol("f", other.get_int_type());
  EXPECT_EQ(refusal(other, [&] { other.copy_term(source, t); }),
            "error: wrong arity for symbol f. expected 0, got 1\n"
            "simple_types S -> S\n"
            "symbol x#20 of S, no tag\n"
            "term 2 = x#20\n"
            "type 15 S");
  std::vector<const Symbol*> copies;
  EXPECT_EQ(refusal(other, [&] { other.copy_symbols(source, {strange}, copies); }),
            "error: Symbols can't start with the \"`\" character");
  EXPECT_TRUE(copies.empty());
}

}  // namespace
}  // namespace quill
