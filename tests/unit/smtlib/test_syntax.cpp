#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <string_view>

#include "quill/smtlib/name_escape.h"
#include "quill/smtlib/syntax.h"

namespace quill {
namespace {

std::string printed_symbol(std::string_view name) {
  std::ostringstream out;
  print_symbol(out, name);
  return out.str();
}

std::string printed_number(const QNumber& value, bool as_real) {
  std::ostringstream out;
  print_number(out, value, as_real);
  return out.str();
}

std::string printed_type(const TermManager& m, const DataType* type) {
  std::ostringstream out;
  print_type(out, m, type);
  return out.str();
}

// --- Symbols ---

TEST(SmtLib2Syntax, SymbolsArePrintedWithBarsWhereNeeded) {
  const struct {
    const char* name;
    const char* expected;
  } cases[] = {
      // Every character that a plain symbol may hold.
      {"x", "x"},
      {"abcXYZ019", "abcXYZ019"},
      {"~!@$%^&*_-+=<>.?/", "~!@$%^&*_-+=<>.?/"},
      {"?x", "?x"},
      {"$x", "$x"},
      {"x@y", "x@y"},
      {"a.b", "a.b"},
      {"--", "--"},
      {"-x", "-x"},
      {"+-3", "+-3"},
      {"rat", "rat"},
      {"Int", "Int"},
      // Characters and places that ask for bars.
      {"a b", "|a b|"},
      {"a\nb", "|a\nb|"},
      {"'", "|'|"},
      {"'1", "|'1|"},
      {"a`b", "|a`b|"},
      {"(f x)", "|(f x)|"},
      {"a:b", "|a:b|"},
      {":key", "|:key|"},
      {"a;b", "|a;b|"},
      {"\"a\"", "|\"a\"|"},
      {"a#b", "|a#b|"},
      {"{}", "|{}|"},
      {"a,b", "|a,b|"},
      {"[0]", "|[0]|"},
      {"\xc3\xa9", "|\xc3\xa9|"},
      {"7up", "|7up|"},
      {"1.5", "|1.5|"},
      {"-3x", "|-3x|"},
      {"+3", "|+3|"},
      // Reserved words and names of commands.
      {"!", "|!|"},
      {"let", "|let|"},
      {"forall", "|forall|"},
      {"exists", "|exists|"},
      {"match", "|match|"},
      {"par", "|par|"},
      {"NUMERAL", "|NUMERAL|"},
      {"STRING", "|STRING|"},
      {"assert", "|assert|"},
      {"check-sat", "|check-sat|"},
      {"push", "|push|"},
      {"exit", "|exit|"},
      {"set-logic", "|set-logic|"},
      {"define-funs-rec", "|define-funs-rec|"},
      {"lets", "lets"},
      {"Let", "Let"},
      // Names that cannot be written, or not for the user's own symbols.
      {"a|b", "quill!a!7cb"},
      {"a\\b", "quill!a!5cb"},
      {"\x01", "quill!!01"},
      {"_", "quill!!5f"},
      {"as", "quill!as"},
      {"@1", "quill!!401"},
      {".1", "quill!!2e1"},
      {"and", "quill!and"},
      {"-", "quill!!2d"},
      {"=", "quill!!3d"},
      {"to_int", "quill!to!5fint"},
      {"bvadd", "quill!bvadd"},
      {"select", "quill!select"},
      {"roundTowardZero", "quill!roundTowardZero"},
      // Names that the manager could not have had.
      {"quill!", "||"},
      {"quill!7", "|7|"},
      {"quill!!2d3", "|-3|"},
      {"quill!!271", "|'1|"},
      {"quill!!60and!60", "|`and`|"},
  };
  for (const auto& [name, expected] : cases) EXPECT_EQ(printed_symbol(name), expected);
}

TEST(SmtLib2Syntax, PrefixOfEscapesCanBeChosen) {
  std::ostringstream out;
  print_symbol(out, "a|b", "u!");
  EXPECT_EQ(out.str(), "u!a!7cb");
}

TEST(SmtLib2Syntax, LongNamesArePrintedWhole) {
  const std::string name(10000, 'x');
  EXPECT_EQ(printed_symbol(name), name);
  EXPECT_EQ(printed_symbol(name + " "), "|" + name + " |");
}

TEST(SmtLib2Syntax, QuotedTextIsNotEscaped) {
  std::ostringstream out;
  print_quoted(out, "and");
  out << ' ';
  print_quoted(out, "a b");
  out << ' ';
  print_quoted(out, "");
  EXPECT_EQ(out.str(), "and |a b| ||");
}

TEST(SmtLib2Syntax, SimpleSymbols) {
  EXPECT_TRUE(is_simple_symbol("x"));
  EXPECT_TRUE(is_simple_symbol("-"));
  EXPECT_TRUE(is_simple_symbol("and"));
  EXPECT_FALSE(is_simple_symbol(""));
  EXPECT_FALSE(is_simple_symbol("0"));
  EXPECT_FALSE(is_simple_symbol("-0"));
  EXPECT_FALSE(is_simple_symbol("_"));
  EXPECT_FALSE(is_simple_symbol(std::string_view("a\0b", 3)));
}

TEST(SmtLib2Syntax, TheoryNames) {
  EXPECT_TRUE(is_theory_symbol("*"));            // the first
  EXPECT_TRUE(is_theory_symbol("zero_extend"));  // and the last of the table
  EXPECT_TRUE(is_theory_symbol("fp.isNaN"));
  EXPECT_FALSE(is_theory_symbol("AND"));
  EXPECT_FALSE(is_theory_symbol("implies"));
  EXPECT_FALSE(is_theory_symbol(""));
  EXPECT_TRUE(is_theory_sort("Array"));
  EXPECT_TRUE(is_theory_sort("String"));
  EXPECT_FALSE(is_theory_sort("array"));
  EXPECT_FALSE(is_theory_sort("and"));
}

// --- Numbers ---

TEST(SmtLib2Syntax, Integers) {
  EXPECT_EQ(printed_number(0, false), "0");
  EXPECT_EQ(printed_number(3, false), "3");
  EXPECT_EQ(printed_number(-3, false), "(- 3)");
  EXPECT_EQ(printed_number(QNumber::from_string("-123456789012345678901234567890"), false),
            "(- 123456789012345678901234567890)");
}

TEST(SmtLib2Syntax, Reals) {
  EXPECT_EQ(printed_number(0, true), "0.0");
  EXPECT_EQ(printed_number(3, true), "3.0");
  EXPECT_EQ(printed_number(-3, true), "(- 3.0)");
  EXPECT_EQ(printed_number(QNumber(1, 3), true), "(/ 1.0 3.0)");
  EXPECT_EQ(printed_number(QNumber(-1, 3), true), "(- (/ 1.0 3.0))");
  EXPECT_EQ(printed_number(QNumber::from_string("100000000000000000000/3"), true),
            "(/ 100000000000000000000.0 3.0)");
}

// --- Types ---

TEST(SmtLib2Syntax, SortsOfTheStandard) {
  TermManager m;
  const DataType* int_type = m.get_int_type();
  const DataType* real_type = m.get_rat_type();
  EXPECT_EQ(printed_type(m, m.get_bool_type()), "Bool");
  EXPECT_EQ(printed_type(m, int_type), "Int");
  EXPECT_EQ(printed_type(m, real_type), "Real");
  EXPECT_EQ(printed_type(m, m.get_fprounding_type()), "RoundingMode");
  EXPECT_EQ(printed_type(m, m.get_bv_type(8)), "(_ BitVec 8)");
  EXPECT_EQ(printed_type(m, m.get_fp_type(8, 23)), "(_ FloatingPoint 8 24)");
  EXPECT_EQ(printed_type(m, m.get_array_type(int_type, real_type)), "(Array Int Real)");
  EXPECT_EQ(printed_type(m, m.get_array_type(m.get_bv_type(8),
                                             m.get_array_type(int_type, m.get_fp_type(5, 10)))),
            "(Array (_ BitVec 8) (Array Int (_ FloatingPoint 5 11)))");
}

TEST(SmtLib2Syntax, SortsOfTheUser) {
  TermManager m;
  const struct {
    const char* name;
    const char* expected;
  } cases[] = {
      {"U", "U"},
      {"rat", "rat"},
      {"int", "int"},
      {"a_b", "a_b"},
      {"a b", "|a b|"},
      {"(BitVec 8)", "|(BitVec 8)|"},
      {"let", "|let|"},
      {"and", "quill!and"},
      {"a|b", "quill!a!7cb"},
      {"RoundingMode", "quill!RoundingMode"},
      {"Float64", "quill!Float64"},
  };
  for (const auto& [name, expected] : cases) {
    EXPECT_EQ(printed_type(m, m.get_simple_type(name, false)), expected);
  }
}

TEST(SmtLib2Syntax, SortsOfTheUserNamedLikeTheManagersOwn) {
  TermManager m;
  m.get_bv_type(32);
  m.get_fp_type(8, 23);
  const struct {
    const char* name;
    const char* expected;
  } cases[] = {{"FPRounding", "FPRounding"}, {"FP", "FP"}, {"32", "|32|"}, {"8:23", "|8:23|"}};
  for (const auto& [name, expected] : cases) {
    const DataType* type = m.get_simple_type(name_from_smtlib(name, NameKind::Sort), false);
    EXPECT_EQ(printed_type(m, type), expected);
    EXPECT_EQ(printed_type(m, m.get_array_type(type, type)),
              std::string("(Array ") + expected + " " + expected + ")");
  }
  EXPECT_EQ(printed_type(m, m.get_bv_type(32)), "(_ BitVec 32)");
}

TEST(SmtLib2Syntax, SortConstructorsOfTheUser) {
  TermManager m;
  const DataType* list = m.get_simple_type("List", false);
  const DataType* pair = m.get_simple_type("a pair", false);
  const DataType* int_list = m.get_compound_type({list, m.get_int_type()});
  EXPECT_EQ(printed_type(m, int_list), "(List Int)");
  EXPECT_EQ(printed_type(m, m.get_compound_type({pair, int_list, m.get_bv_type(4)})),
            "(|a pair| (List Int) (_ BitVec 4))");
}

TEST(SmtLib2Syntax, PrefixOfEscapesCanBeChosenForTypes) {
  TermManager m;
  const DataType* head = m.get_simple_type("a|b", false);
  std::ostringstream out;
  print_type(out, m, m.get_compound_type({head, m.get_int_type()}), "u!");
  EXPECT_EQ(out.str(), "(u!a!7cb Int)");
}

TEST(SmtLib2Syntax, DeeplyNestedTypesArePrinted) {
  TermManager m;
  constexpr int depth = 100000;
  const DataType* type = m.get_int_type();
  std::string expected;
  for (int n = 0; n < depth; ++n) {
    type = m.get_array_type(m.get_bv_type(8), type);
    expected += "(Array (_ BitVec 8) ";
  }
  expected += "Int" + std::string(depth, ')');
  EXPECT_TRUE(printed_type(m, type) == expected);
}

}  // namespace
}  // namespace quill
