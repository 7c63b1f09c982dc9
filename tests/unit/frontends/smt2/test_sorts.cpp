#include <gtest/gtest.h>

#include <string>

#include "quill/frontends/smt2/theory_sorts.h"
#include "tests/unit/frontends/smt2/read_and_print.h"

namespace quill::smt2 {
namespace {

// The type of the symbol that the last command of a script declares.
std::string type_of(const std::string& text) {
  TermManager manager;
  return read_text(text, manager).commands.back().symbol->type->to_str();
}

std::string type_of_sort(const std::string& sort) {
  return type_of("(declare-fun z () " + sort + ")");
}

std::string error_of_sort(const std::string& sort) {
  return error_of("(declare-fun z () " + sort + ")");
}

// --- Bit-vectors ---

TEST(Sorts, BitVectors) {
  EXPECT_EQ(type_of_sort("(_ BitVec 1)"), "(BitVec 1)");
  EXPECT_EQ(type_of_sort("(_ BitVec 18446744073709551615)"), "(BitVec 18446744073709551615)");
}

TEST(Sorts, WidthsMustBeNumbersInRange) {
  EXPECT_EQ(error_of_sort("(_ BitVec 0)"), "1:22: a bit-vector needs a width of at least 1");
  EXPECT_EQ(error_of_sort("(_ BitVec -8)"),
            "1:29: the sort 'BitVec' takes numerals as indices, not '-8'");
  EXPECT_EQ(error_of_sort("(_ BitVec #x8)"),
            "1:29: the sort 'BitVec' takes numerals as indices, not '#x8'");
  EXPECT_EQ(error_of_sort("(_ BitVec 18446744073709551616)"),
            "1:29: the index '18446744073709551616' of the sort 'BitVec' is too large");
}

TEST(Sorts, NumbersOfIndicesMustFit) {
  EXPECT_EQ(error_of_sort("(_ BitVec)"), "1:22: the sort 'BitVec' takes 1 index, not 0");
  EXPECT_EQ(error_of_sort("(_ BitVec 8 8)"), "1:22: the sort 'BitVec' takes 1 index, not 2");
  EXPECT_EQ(error_of_sort("(_ FloatingPoint 8)"),
            "1:22: the sort 'FloatingPoint' takes 2 indices, not 1");
  EXPECT_EQ(error_of_sort("(_ Int 3)"), "1:22: the sort 'Int' takes no indices");
  EXPECT_EQ(error_of_sort("(_ Array 3)"), "1:22: the sort 'Array' takes no indices");
  EXPECT_EQ(error_of_sort("BitVec"), "1:19: the sort 'BitVec' is written (_ BitVec width)");
  EXPECT_EQ(error_of_sort("FloatingPoint"),
            "1:19: the sort 'FloatingPoint' is written (_ FloatingPoint e s)");
  EXPECT_EQ(error_of_sort("(BitVec 8)"), "1:20: the sort 'BitVec' is written (_ BitVec 8)");
  EXPECT_EQ(error_of_sort("(FloatingPoint 8 24)"),
            "1:20: the sort 'FloatingPoint' is written (_ FloatingPoint 8 24)");
  EXPECT_EQ(error_of_sort("(BitVec)"), "1:20: the sort 'BitVec' is written (_ BitVec width)");
  EXPECT_EQ(error_of_sort("(FloatingPoint 8 Int)"),
            "1:20: the sort 'FloatingPoint' is written (_ FloatingPoint e s)");
  EXPECT_EQ(error_of_sort("(-> Int Int)"), "1:20: unsupported: sorts of functions (->)");
}

TEST(Sorts, IndexedOnesMustBeComplete) {
  EXPECT_EQ(error_of("(declare-fun z () (_ BitVec 8"), "1:30: the input ends inside a sort");
  EXPECT_EQ(error_of("(declare-fun z () (_"), "1:21: the input ends inside a sort");
  EXPECT_EQ(error_of_sort("(_ 8 BitVec)"), "1:22: a name is expected behind '_', not '8'");
}

// --- Floating point ---

TEST(Sorts, FloatingPoint) {
  EXPECT_EQ(type_of_sort("(_ FloatingPoint 8 24)"), "(FP |8:23|)");
  EXPECT_EQ(type_of_sort("(_ FloatingPoint 2 3)"), "(FP |2:2|)");
  EXPECT_EQ(type_of_sort("Float16"), "(FP |5:10|)");
  EXPECT_EQ(type_of_sort("Float32"), "(FP |8:23|)");
  EXPECT_EQ(type_of_sort("Float64"), "(FP |11:52|)");
  EXPECT_EQ(type_of_sort("Float128"), "(FP |15:112|)");
  EXPECT_EQ(type_of_sort("RoundingMode"), "FPRounding");
}

TEST(Sorts, FormatsMustBeThoseOfTheManager) {
  EXPECT_EQ(error_of_sort("(_ FloatingPoint 1 24)"),
            "1:22: (_ FloatingPoint 1 24) is no sort: it needs two bits of exponent and two of "
            "significand at least");
  EXPECT_EQ(error_of_sort("(_ FloatingPoint 8 1)"),
            "1:22: (_ FloatingPoint 8 1) is no sort: it needs two bits of exponent and two of "
            "significand at least");
  EXPECT_EQ(error_of_sort("(_ FloatingPoint 2 2)"),
            "1:22: unsupported: the sort (_ FloatingPoint 2 2), whose significand has fewer than "
            "three bits");
  EXPECT_EQ(error_of_sort("(_ FloatingPoint 18446744073709551615 3)"),
            "1:22: the widths of (_ FloatingPoint 18446744073709551615 3) are too large");
}

// --- Logics ---

TEST(Sorts, BelongToTheirLogics) {
  EXPECT_EQ(error_of("(set-logic QF_LIA)(declare-fun z () (_ BitVec 8))"),
            "1:40: unknown sort 'BitVec' (the logic QF_LIA does not have it)");
  EXPECT_EQ(error_of("(set-logic QF_BV)(declare-fun z () Float32)"),
            "1:36: unknown sort 'Float32' (the logic QF_BV does not have it)");
  EXPECT_EQ(error_of("(set-logic QF_LIA)(declare-fun z () (Array Int Int))"),
            "1:38: unknown sort 'Array' (the logic QF_LIA does not have it)");
  EXPECT_EQ(type_of("(set-logic QF_FP)(declare-fun z () (_ BitVec 8))"), "(BitVec 8)");
}

TEST(Sorts, NamesOfTheoriesAreFreeInOtherLogics) {
  EXPECT_EQ(type_of("(set-logic QF_UF)(declare-sort BitVec 0)(declare-fun z () BitVec)"),
            "|quill!BitVec|");
  EXPECT_EQ(error_of("(set-logic QF_FP)(declare-sort BitVec 0)"),
            "1:32: the sort 'BitVec' belongs to a theory of the logic");
}

// --- Arrays ---

TEST(Sorts, Arrays) {
  EXPECT_EQ(type_of_sort("(Array Int (Array (_ BitVec 8) Real))"),
            "(Array Int (Array (BitVec 8) Real))");
  EXPECT_EQ(error_of_sort("Array"), "1:19: the sort 'Array' takes 2 arguments, not 0");
  EXPECT_EQ(error_of_sort("(Array Int)"), "1:20: the sort 'Array' takes 2 arguments, not 1");
  EXPECT_EQ(error_of_sort("(Array Int Int Int)"),
            "1:20: the sort 'Array' takes 2 arguments, not 3");
}

TEST(Sorts, BoolInArraysIsHeldAsOneBit) {
  EXPECT_EQ(type_of_sort("(Array Bool Bool)"), "(Array (BitVec 1) (BitVec 1))");
  EXPECT_EQ(type_of_sort("(Array Int (Array Bool Int))"), "(Array Int (Array (BitVec 1) Int))");
  EXPECT_EQ(type_of("(declare-fun f ((Array Int Bool) Bool) Bool)"),
            "(-> (Array Int (BitVec 1)) Bool Bool)");
  EXPECT_EQ(type_of("(declare-sort List 1)(declare-fun l () (List (Array Int Bool)))"),
            "(List (Array Int (BitVec 1)))");
}

TEST(Sorts, BoolInDeclaredSortsIsUnsupported) {
  EXPECT_EQ(error_of("(declare-sort List 1)(declare-fun l () (List Bool))"),
            "1:41: unsupported: Bool as an argument of the sort 'List'");
  EXPECT_EQ(
      error_of("(declare-sort List 1)(define-sort L (X) (List X))(declare-fun l () (L Bool))"),
      "1:69: unsupported: Bool as an argument of a sort in the definition of 'L'");
}

TEST(Sorts, DefinedSortsOverArrays) {
  const std::string define = "(define-sort Map (K V) (Array K (Array V K)))";
  EXPECT_EQ(type_of(define + "(declare-fun z () (Map Int Real))"), "(Array Int (Array Real Int))");
  EXPECT_EQ(type_of(define + "(declare-fun z () (Map Bool Int))"),
            "(Array (BitVec 1) (Array Int (BitVec 1)))");
  EXPECT_EQ(type_of("(define-sort Flags () (Array Int Bool))(define-sort M (X) (Array X Flags))"
                    "(declare-fun z () (M (_ BitVec 3)))"),
            "(Array (BitVec 3) (Array Int (BitVec 1)))");
}

TEST(Sorts, MayBeNestedDeeply) {
  const size_t depth = 20000;
  std::string sort = "Bool";
  const std::string text = repeated("(Array Int ", depth) + "Bool" + repeated(")", depth);
  TermManager manager;
  const Script script = read_text("(declare-fun z () " + text + ")(assert (= z z))", manager);
  const DataType* type = script.commands[0].symbol->type;
  size_t levels = 0;
  for (const DataType* element = nullptr; manager.is_array_type(type, nullptr, &element);
       type = element) {
    ++levels;
  }
  EXPECT_EQ(levels, depth);
  EXPECT_EQ(type, manager.get_bv_type(1));
}

TEST(Sorts, AreNamedInMessagesAsInScripts) {
  const auto message = [](const std::string& sort) {
    return error_of("(declare-sort S 0)(declare-fun z () " + sort + ")(assert (and z true))");
  };
  const std::string head = "argument 1 of 'and' has sort ";
  const auto names = [&](const std::string& sort) {
    return message(sort).find(head + sort + ", but Bool is expected") != std::string::npos;
  };
  EXPECT_TRUE(names("(_ BitVec 8)"));
  EXPECT_TRUE(names("(_ FloatingPoint 8 24)"));
  EXPECT_TRUE(names("RoundingMode"));
  EXPECT_TRUE(names("(Array Int (Array Bool S))"));
}

// --- The types that hold sorts ---

TEST(TheorySorts, HeldTypesAreTheSortsThemselvesWithoutBool) {
  TermManager m;
  TheorySorts sorts(m);
  const DataType* numbers = sorts.array(m.get_int_type(), m.get_int_type());
  EXPECT_EQ(sorts.held(numbers), numbers);
  EXPECT_FALSE(sorts.take_bool_arrays());
  const DataType* flags = sorts.array(m.get_int_type(), m.get_bool_type());
  EXPECT_NE(flags, m.get_array_type(m.get_int_type(), m.get_bv_type(1)));
  EXPECT_EQ(sorts.held(flags), m.get_array_type(m.get_int_type(), m.get_bv_type(1)));
  EXPECT_EQ(sorts.held(numbers), numbers);
  EXPECT_EQ(sorts.held(m.get_bool_type()), m.get_bool_type());
  EXPECT_TRUE(sorts.take_bool_arrays());
  EXPECT_FALSE(sorts.take_bool_arrays());
}

TEST(TheorySorts, ComponentsOfArraysAreSorts) {
  TermManager m;
  TheorySorts sorts(m);
  const DataType* index = nullptr;
  const DataType* element = nullptr;
  EXPECT_TRUE(sorts.is_array(sorts.array(m.get_bool_type(), m.get_rat_type()), &index, &element));
  EXPECT_EQ(index, m.get_bool_type());
  EXPECT_EQ(element, m.get_rat_type());
  EXPECT_FALSE(sorts.is_array(m.get_bv_type(8), &index, &element));
}

}  // namespace
}  // namespace quill::smt2
