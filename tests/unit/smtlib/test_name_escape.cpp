#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "quill/smtlib/name_escape.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill {
namespace {

constexpr NameKind symbol = NameKind::Symbol;
constexpr NameKind sort = NameKind::Sort;

// --- What each side cannot have, written down a second time ---

bool all_digits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// The text before and after the first `mark`; the whole text and nothing if there is none.
std::pair<std::string_view, std::string_view> split(std::string_view text, char mark) {
  const size_t at = text.find(mark);
  if (at == std::string_view::npos) return {text, {}};
  return {text.substr(0, at), text.substr(at + 1)};
}

bool spells_a_numeral(std::string_view name) {
  if (!name.empty() && name[0] == '-') name.remove_prefix(1);
  if (all_digits(name)) return true;
  const auto [n, d] = split(name, '/');
  if (all_digits(n) && all_digits(d)) return true;
  const auto [value, widths] = split(name, '_');
  if (!all_digits(value)) return false;
  if (all_digits(widths)) return true;
  const auto [e, m] = split(widths, '_');
  return all_digits(e) && all_digits(m);
}

// Names that a term manager refuses, or takes for its own.
bool managers_own(std::string_view name, NameKind kind) {
  if (kind == symbol) {
    return name.empty() || name[0] == '`' || (name[0] == '\'' && all_digits(name.substr(1))) ||
           spells_a_numeral(name);
  }
  constexpr std::string_view own[] = {"Bool", "Real", "Int", "Array", "BitVec", "FPRounding", "FP"};
  if (std::find(std::begin(own), std::end(own), name) != std::end(own)) return true;
  const auto [e, m] = split(name, ':');
  return all_digits(name) || (all_digits(e) && all_digits(m));
}

constexpr std::string_view theory_symbols[] = {
    "wand",    "^",      "*",     "+",      "-",      "/",       "<",        "<=",
    "=",       "=>",     ">",     ">=",     "RNA",    "RNE",     "RTN",      "RTP",
    "RTZ",     "abs",    "and",   "bvadd",  "bvult",  "concat",  "distinct", "div",
    "extract", "false",  "fp",    "fp.add", "is_int", "ite",     "mod",      "not",
    "or",      "select", "store", "to_fp",  "to_int", "to_real", "true",     "xor"};
constexpr std::string_view theory_sorts[] = {
    "Array", "BitVec", "Bool", "Float32", "FloatingPoint", "Int", "Real", "RoundingMode", "String"};

// Names that readers of SMT-LIB accept in a declaration, if need be between bars. Of the theories'
// names only those are known here that the tests below may come upon.
bool declarable(std::string_view name, NameKind kind) {
  if (name == "_" || name == "as") return false;
  if (!name.empty() && (name[0] == '@' || name[0] == '.')) return false;
  for (const char c : name) {
    if (c == '|' || c == '\\' || c == '\x7f') return false;
    if (static_cast<unsigned char>(c) < 32 && c != '\t' && c != '\n' && c != '\r') return false;
  }
  if (std::find(std::begin(theory_symbols), std::end(theory_symbols), name) !=
      std::end(theory_symbols)) {
    return false;
  }
  return kind == symbol || std::find(std::begin(theory_sorts), std::end(theory_sorts), name) ==
                               std::end(theory_sorts);
}

// Takes the name both ways. What arrives must be a name that the other side can have.
void expect_round_trips(const std::string& name, NameKind kind) {
  if (declarable(name, kind)) {
    const std::string inside = name_from_smtlib(name, kind);
    EXPECT_FALSE(managers_own(inside, kind)) << testing::PrintToString(name);
    EXPECT_EQ(name_to_smtlib(inside, kind), name);
  }
  if (!managers_own(name, kind)) {
    const std::string outside = name_to_smtlib(name, kind);
    EXPECT_TRUE(declarable(outside, kind)) << testing::PrintToString(name);
    EXPECT_EQ(name_from_smtlib(outside, kind), name);
  }
}

// --- Examples ---

TEST(NameEscape, OrdinaryNamesAreTheSameOnBothSides) {
  for (const char* const name :
       {"x",          "x1",    "a b",      "let",       "!",   "par", "a.b", "?x",
        "$x",         "~",     "\xc3\xa9", "a'b",       "'",   "'1a", "7up", "1.5",
        "1/",         "5_",    "5_8_",     "5_8_23_1",  "--1", "a`b", "\"",  ";",
        "(BitVec 8)", "quill", "quill?",   "check-sat", "a\nb"}) {
    EXPECT_EQ(name_from_smtlib(name, symbol), name);
    EXPECT_EQ(name_to_smtlib(name, symbol), name);
  }
}

TEST(NameEscape, NamesThatTheManagerCannotHaveAreEscapedOnTheWayIn) {
  const struct {
    const char* outside;
    const char* inside;
  } cases[] = {
      {"", "quill!"},         {"`", "quill!!60"},         {"`a`", "quill!!60a!60"},
      {"'1", "quill!!271"},   {"'007", "quill!!27007"},   {"7", "quill!7"},
      {"-7", "quill!!2d7"},   {"1/2", "quill!1!2f2"},     {"-22/7", "quill!!2d22!2f7"},
      {"5_8", "quill!5!5f8"}, {"-5_8", "quill!!2d5!5f8"}, {"0_8_23", "quill!0!5f8!5f23"},
  };
  for (const auto& [outside, inside] : cases) {
    EXPECT_EQ(name_from_smtlib(outside, symbol), inside);
    EXPECT_EQ(name_to_smtlib(inside, symbol), outside);
  }
}

TEST(NameEscape, NamesThatReadersRefuseAreEscapedOnTheWayOut) {
  const struct {
    const char* inside;
    const char* outside;
  } cases[] = {
      {"a|b", "quill!a!7cb"},         {"a\\b", "quill!a!5cb"},      {"|", "quill!!7c"},
      {"\x01", "quill!!01"},          {"\x7f", "quill!!7f"},        {"@x", "quill!!40x"},
      {".x", "quill!!2ex"},           {"_", "quill!!5f"},           {"as", "quill!as"},
      {"and", "quill!and"},           {"+", "quill!!2b"},           {"<=", "quill!!3c!3d"},
      {"to_real", "quill!to!5freal"}, {"fp.add", "quill!fp!2eadd"}, {"RNE", "quill!RNE"},
      {"true", "quill!true"},
  };
  for (const auto& [inside, outside] : cases) {
    EXPECT_EQ(name_to_smtlib(inside, symbol), outside);
    EXPECT_EQ(name_from_smtlib(outside, symbol), inside);
  }
}

TEST(NameEscape, SortsOfTheManagersOwnAreEscapedOnTheWayIn) {
  const struct {
    const char* outside;
    const char* inside;
  } cases[] = {
      {"32", "quill!32"},
      {"8:23", "quill!8!3a23"},
      {"FPRounding", "quill!FPRounding"},
      {"FP", "quill!FP"},
  };
  for (const auto& [outside, inside] : cases) {
    EXPECT_EQ(name_from_smtlib(outside, sort), inside);
    EXPECT_EQ(name_to_smtlib(inside, sort), outside);
  }
}

TEST(NameEscape, SortsOfTheStandardAreEscapedOnTheWayOut) {
  const struct {
    const char* inside;
    const char* outside;
  } cases[] = {
      {"RoundingMode", "quill!RoundingMode"},
      {"FloatingPoint", "quill!FloatingPoint"},
      {"Float32", "quill!Float32"},
      {"String", "quill!String"},
      {"a|b", "quill!a!7cb"},
      {"@", "quill!!40"},
      {"and", "quill!and"},
  };
  for (const auto& [inside, outside] : cases) {
    EXPECT_EQ(name_to_smtlib(inside, sort), outside);
    EXPECT_EQ(name_from_smtlib(outside, sort), inside);
  }
}

TEST(NameEscape, SortsAndSymbolsHaveDifferentNames) {
  EXPECT_EQ(name_to_smtlib("Float32", sort), "quill!Float32");
  EXPECT_EQ(name_to_smtlib("Float32", symbol), "Float32");
  EXPECT_EQ(name_from_smtlib("32", sort), "quill!32");
  EXPECT_EQ(name_from_smtlib("5_8", sort), "5_8");
  EXPECT_EQ(name_from_smtlib("8:23", symbol), "8:23");
  EXPECT_EQ(name_from_smtlib("", sort), "");
  EXPECT_EQ(name_from_smtlib("FP", symbol), "FP");
  EXPECT_EQ(name_from_smtlib("rat", sort), "rat");
}

TEST(NameEscape, EscapesOfTheFirstKindGetALayerOnTheWayIn) {
  EXPECT_EQ(name_from_smtlib("quill!7", symbol), "quill!quill!217");
  EXPECT_EQ(name_to_smtlib("quill!quill!217", symbol), "quill!7");
  EXPECT_EQ(name_from_smtlib("quill!quill!217", symbol), "quill!quill!21quill!21217");
  EXPECT_EQ(name_to_smtlib("quill!quill!21quill!21217", symbol), "quill!quill!217");
}

TEST(NameEscape, EscapesOfTheSecondKindGetALayerOnTheWayOut) {
  EXPECT_EQ(name_to_smtlib("quill!and", symbol), "quill!quill!21and");
  EXPECT_EQ(name_from_smtlib("quill!quill!21and", symbol), "quill!and");
}

TEST(NameEscape, EscapesOfOrdinaryNamesAreOrdinary) {
  EXPECT_EQ(name_from_smtlib("quill!x", symbol), "quill!x");
  EXPECT_EQ(name_to_smtlib("quill!x", symbol), "quill!x");
  EXPECT_EQ(name_from_smtlib("quill!x", sort), "quill!x");
}

TEST(NameEscape, WhatIsNotExactlyAnEscapeIsOrdinary) {
  for (const char* const name : {"quill!7!", "quill!7!2", "quill!!7C", "quill!!37", "quill!!61nd",
                                 "quill!a b", "quill!7!zz", "Quill!7", "quill7", "quill!7_"}) {
    EXPECT_EQ(name_from_smtlib(name, symbol), name);
    EXPECT_EQ(name_to_smtlib(name, symbol), name);
  }
}

TEST(NameEscape, PrefixCanBeChosen) {
  EXPECT_EQ(name_to_smtlib("a|b", symbol, "u_"), "u_a!7cb");
  EXPECT_EQ(name_from_smtlib("u_a!7cb", symbol, "u_"), "a|b");
  EXPECT_EQ(name_from_smtlib("7", symbol, "u_"), "u_7");
  EXPECT_EQ(name_to_smtlib("u_7", symbol, "u_"), "7");
  EXPECT_EQ(name_to_smtlib("quill!7", symbol, "u_"), "quill!7");
}

// --- Both ways ---

TEST(NameEscape, NamesOfOneByteGoBothWays) {
  for (int c = 0; c < 256; ++c) {
    expect_round_trips(std::string(1, static_cast<char>(c)), symbol);
    expect_round_trips(std::string(1, static_cast<char>(c)), sort);
  }
}

TEST(NameEscape, NamesOfTwoBytesGoBothWays) {
  for (int c = 0; c < 256; ++c) {
    for (int d = 0; d < 256; ++d) {
      const std::string name{static_cast<char>(c), static_cast<char>(d)};
      expect_round_trips(name, symbol);
      expect_round_trips(name, sort);
    }
  }
}

TEST(NameEscape, EscapesOfNamesOfOneByteGoBothWays) {
  for (int c = 0; c < 256; ++c) {
    const std::string hex = {"0123456789abcdef"[c / 16], "0123456789abcdef"[c % 16]};
    for (const std::string& name :
         {"quill!!" + hex, std::string("quill!") + static_cast<char>(c), "quill!quill!21!21" + hex,
          "quill!quill!21" + std::string(1, static_cast<char>(c))}) {
      expect_round_trips(name, symbol);
      expect_round_trips(name, sort);
    }
  }
}

TEST(NameEscape, WordsOfTheStandardGoBothWays) {
  for (const std::string_view name : {"BINARY",
                                      "DECIMAL",
                                      "HEXADECIMAL",
                                      "NUMERAL",
                                      "STRING",
                                      "_",
                                      "!",
                                      "as",
                                      "let",
                                      "exists",
                                      "forall",
                                      "match",
                                      "par",
                                      "assert",
                                      "check-sat",
                                      "check-sat-assuming",
                                      "declare-const",
                                      "declare-datatype",
                                      "declare-datatypes",
                                      "declare-fun",
                                      "declare-sort",
                                      "define-fun",
                                      "define-fun-rec",
                                      "define-funs-rec",
                                      "define-sort",
                                      "echo",
                                      "exit",
                                      "get-assertions",
                                      "get-assignment",
                                      "get-info",
                                      "get-model",
                                      "get-option",
                                      "get-proof",
                                      "get-unsat-assumptions",
                                      "get-unsat-core",
                                      "get-value",
                                      "pop",
                                      "push",
                                      "reset",
                                      "reset-assertions",
                                      "set-info",
                                      "set-logic",
                                      "set-option"}) {
    expect_round_trips(std::string(name), symbol);
    expect_round_trips(std::string(name), sort);
  }
  for (const std::string_view name : theory_symbols) expect_round_trips(std::string(name), symbol);
  for (const std::string_view name : theory_sorts) expect_round_trips(std::string(name), sort);
}

TEST(NameEscape, RandomNamesGoBothWays) {
  const std::vector<std::string> pieces = {
      "quill!", "quill",   "!",    "!21",    "!7c", "!5f", "!2f", "!00", "!zz", "!",
      "|",      "\\",      "`",    "'",      "@",   ".",   "_",   "/",   "-",   ":",
      "0",      "1",       "8",    "23",     "42",  "a",   "b",   "Z",   "and", "as",
      "+",      "to_real", "Bool", "BitVec", "FP",  " ",   "\n"};
  std::mt19937 random(20240229);
  const auto below = [&](size_t n) {
    return std::uniform_int_distribution<size_t>(0, n - 1)(random);
  };
  for (int n = 0; n < 200000; ++n) {
    std::string name;
    const size_t length = below(6);
    for (size_t i = 0; i < length; ++i) {
      if (below(4) == 0) {
        name += static_cast<char>(below(256));
      } else {
        name += pieces[below(pieces.size())];
      }
    }
    expect_round_trips(name, symbol);
    expect_round_trips(name, sort);
    if (HasFailure()) FAIL() << "the name " << testing::PrintToString(name);
  }
}

TEST(NameEscape, DifferentNamesStayDifferent) {
  const std::string inside[] = {"quill!7", "quill!quill!217", "and", "quill!and", "x", "quill!x"};
  const std::string outside[] = {"7", "quill!7", "quill!and", "quill!quill!21and", "x", "quill!x"};
  for (size_t a = 0; a < std::size(inside); ++a) {
    for (size_t b = 0; b < a; ++b) {
      EXPECT_NE(name_to_smtlib(inside[a], symbol), name_to_smtlib(inside[b], symbol));
      EXPECT_NE(name_from_smtlib(outside[a], symbol), name_from_smtlib(outside[b], symbol));
    }
  }
}

TEST(NameEscape, ManagerAcceptsEveryNameFromSmtLib) {
  TermManager m;
  for (const char* const name : {"", "`a", "'1", "7", "1/2", "5_8", "0_8_23", "-3"}) {
    const Symbol* s = m.make_symbol(name_from_smtlib(name, symbol), m.get_int_type());
    EXPECT_TRUE(m.is_constant(s)) << name;
    EXPECT_EQ(name_to_smtlib(s->name, symbol), name);
  }
  // None of them is in the way of what the manager makes itself.
  EXPECT_STREQ(m.make_number(7)->symbol->name, "7");
  EXPECT_STREQ(m.make_fresh_variable(m.get_int_type())->symbol->name, "'1");
}

}  // namespace
}  // namespace quill
