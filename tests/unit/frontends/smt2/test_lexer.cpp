#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "quill/frontends/smt2/lexer.h"

namespace quill::smt2 {
namespace {

std::vector<std::pair<TokenKind, std::string>> tokens_of(const std::string& text) {
  std::istringstream input(text);
  Lexer lexer(input);
  std::vector<std::pair<TokenKind, std::string>> tokens;
  for (lexer.next(); lexer.token.kind != TokenKind::End; lexer.next()) {
    tokens.emplace_back(lexer.token.kind, lexer.token.text);
  }
  return tokens;
}

std::string error_of(const std::string& text) {
  try {
    tokens_of(text);
  } catch (const ParseError& error) {
    return error.what();
  }
  return "";
}

using Tokens = std::vector<std::pair<TokenKind, std::string>>;

TEST(Lexer, SplitsACommand) {
  EXPECT_EQ(tokens_of("(push 1)"), (Tokens{{TokenKind::Open, ""},
                                           {TokenKind::Symbol, "push"},
                                           {TokenKind::Numeral, "1"},
                                           {TokenKind::Close, ""}}));
}

TEST(Lexer, PassesOverAByteOrderMarkAtTheStart) {
  const std::string mark = "\xEF\xBB\xBF";
  EXPECT_EQ(tokens_of(mark + "a"), (Tokens{{TokenKind::Symbol, "a"}}));
  EXPECT_EQ(tokens_of(mark), Tokens());
  EXPECT_EQ(error_of(mark + "'"),
            "1:1: an apostrophe stands outside of |quoted symbols| and strings");
  EXPECT_EQ(error_of(mark + "a\n'"),
            "2:1: an apostrophe stands outside of |quoted symbols| and strings");
  const std::string elsewhere =
      "the byte 0xEF stands outside of |quoted symbols|, strings and comments";
  EXPECT_EQ(error_of(mark + mark), "1:1: " + elsewhere);
  EXPECT_EQ(error_of(" " + mark), "1:2: " + elsewhere);
  EXPECT_EQ(error_of("\xEF\xBB"), "1:1: " + elsewhere);
}

TEST(Lexer, ReadsEveryKindOfToken) {
  EXPECT_EQ(tokens_of("a |b c| :k 0 12 1.50 #b01 #xaF \"s\""),
            (Tokens{{TokenKind::Symbol, "a"},
                    {TokenKind::Symbol, "b c"},
                    {TokenKind::Keyword, "k"},
                    {TokenKind::Numeral, "0"},
                    {TokenKind::Numeral, "12"},
                    {TokenKind::Decimal, "1.50"},
                    {TokenKind::Binary, "01"},
                    {TokenKind::Hexadecimal, "aF"},
                    {TokenKind::String, "s"}}));
}

TEST(Lexer, ReadsAllCharactersOfSimpleSymbols) {
  EXPECT_EQ(tokens_of("~!@$%^&*_-+=<>.?/aZ9"),
            (Tokens{{TokenKind::Symbol, "~!@$%^&*_-+=<>.?/aZ9"}}));
}

TEST(Lexer, TellsQuotedSymbolsFromSimpleOnes) {
  std::istringstream input("let |let|");
  Lexer lexer(input);
  lexer.next();
  EXPECT_TRUE(lexer.token.is_word("let"));
  lexer.next();
  EXPECT_EQ(lexer.token.text, "let");
  EXPECT_FALSE(lexer.token.is_word("let"));
}

TEST(Lexer, KeepsNewlinesAndOtherBytesInQuotedSymbols) {
  EXPECT_EQ(tokens_of("|a\n;\"(\xC3\xA4|"), (Tokens{{TokenKind::Symbol, "a\n;\"(\xC3\xA4"}}));
}

TEST(Lexer, ReadsTheEmptyQuotedSymbol) {
  EXPECT_EQ(tokens_of("||"), (Tokens{{TokenKind::Symbol, ""}}));
}

TEST(Lexer, ReadsADoubledQuoteAsOne) {
  EXPECT_EQ(tokens_of("\"a\"\"b\""), (Tokens{{TokenKind::String, "a\"b"}}));
}

TEST(Lexer, SpellsAStringAsItStood) {
  std::istringstream input("\"a\"\"b\"");
  Lexer lexer(input);
  lexer.next();
  EXPECT_EQ(lexer.token.spelling(), "\"a\"\"b\"");
}

TEST(Lexer, SkipsComments) {
  EXPECT_EQ(tokens_of("a ; b ( \" |\n c ;"),
            (Tokens{{TokenKind::Symbol, "a"}, {TokenKind::Symbol, "c"}}));
}

TEST(Lexer, CountsLinesAndColumnsFromOne) {
  std::istringstream input("a\n  |b\nc| d");
  Lexer lexer(input);
  lexer.next();
  EXPECT_EQ(lexer.token.position.line, 1u);
  EXPECT_EQ(lexer.token.position.column, 1u);
  lexer.next();
  EXPECT_EQ(lexer.token.position.line, 2u);
  EXPECT_EQ(lexer.token.position.column, 3u);
  lexer.next();
  EXPECT_EQ(lexer.token.position.line, 3u);
  EXPECT_EQ(lexer.token.position.column, 4u);
}

TEST(Lexer, KnowsWhereThePreviousTokenEnded) {
  std::istringstream input("ab\n\n c");
  Lexer lexer(input);
  lexer.next();
  lexer.next();
  EXPECT_EQ(lexer.end_of_previous().line, 1u);
  EXPECT_EQ(lexer.end_of_previous().column, 3u);
}

TEST(Lexer, ReadsTokensLongerThanABlock) {
  const std::string numeral(200000, '7');
  EXPECT_EQ(tokens_of("a " + numeral),
            (Tokens{{TokenKind::Symbol, "a"}, {TokenKind::Numeral, numeral}}));
}

// The input is read in blocks of 65536 bytes; each byte of the text comes first in one once.
TEST(Lexer, ReadsEveryKindOfTokenAcrossTheEdgesOfBlocks) {
  const std::string text = "abc |d\ne| :key 12 1.50 #b01 #xaF \"s\"\"\"\"t\" ; comment ( \n(xyz)";
  const auto expected = tokens_of(text);
  ASSERT_EQ(expected.size(), 11u);
  for (size_t blanks = 65536 - text.size() - 2; blanks <= 65536; ++blanks) {
    EXPECT_EQ(tokens_of(std::string(blanks, ' ') + text), expected) << blanks << " blanks";
  }
}

TEST(Lexer, CountsColumnsAcrossTheEdgesOfBlocks) {
  std::istringstream input(std::string(65530, ' ') + "abcdefghij |k\n" + std::string(70000, 'l') +
                           "| m");
  Lexer lexer(input);
  lexer.next();
  EXPECT_EQ(lexer.token.position.column, 65531u);
  lexer.next();
  EXPECT_EQ(lexer.token.position.column, 65542u);
  lexer.next();
  EXPECT_EQ(lexer.token.position.line, 2u);
  EXPECT_EQ(lexer.token.position.column, 70003u);
  EXPECT_EQ(lexer.end_of_previous().column, 70002u);
}

TEST(Lexer, ReadsCommentsLongerThanABlock) {
  EXPECT_EQ(tokens_of("a;" + std::string(200000, 'x') + "\nb"),
            (Tokens{{TokenKind::Symbol, "a"}, {TokenKind::Symbol, "b"}}));
}

TEST(Lexer, EndsForEver) {
  std::istringstream input("a");
  Lexer lexer(input);
  for (int i = 0; i < 3; ++i) lexer.next();
  EXPECT_EQ(lexer.token.kind, TokenKind::End);
}

struct Fault {
  const char* text;
  const char* error;
};

class LexerFaults : public testing::TestWithParam<Fault> {};

TEST_P(LexerFaults, AreNamed) { EXPECT_EQ(error_of(GetParam().text), GetParam().error); }

INSTANTIATE_TEST_SUITE_P(
    All, LexerFaults,
    testing::Values(
        Fault{"12ab", "1:1: '12ab' is neither a number nor a symbol"},
        Fault{"1e5", "1:1: '1e5' is neither a number nor a symbol"},
        Fault{"1.5x", "1:1: '1.5x' is neither a number nor a symbol"},
        Fault{"1.2.3", "1:1: the decimal '1.2.3' has more than one point"},
        Fault{"3.", "1:1: the decimal '3.' has no digits after the point"},
        Fault{"03", "1:1: the numeral '03' begins with 0"},
        Fault{"00.5", "1:1: the decimal '00.5' begins with 0"},
        Fault{" 'v", "1:2: an apostrophe stands outside of |quoted symbols| and strings"},
        Fault{"a'", "1:2: an apostrophe stands outside of |quoted symbols| and strings"},
        Fault{"`", "1:1: the character '`' stands outside of |quoted symbols| and strings"},
        Fault{"\xC3(",
              "1:1: the byte 0xC3 stands outside of |quoted symbols|, strings and comments"},
        Fault{"\x01", "1:1: the control character 0x01"},
        Fault{"|a\\b|", "1:3: a backslash in a |quoted symbol|"},
        Fault{"a\n|bc", "2:3: the input ends inside the |quoted symbol| that begins at 2:1"},
        Fault{"\"a\nb", "2:1: the input ends inside the string that begins at 1:1"},
        Fault{"\"a\n", "1:3: the input ends inside the string that begins at 1:1"},
        Fault{"|", "1:1: the input ends inside the |quoted symbol| that begins at 1:1"},
        Fault{":", "1:1: a colon without a keyword"},
        Fault{"#q", "1:1: '#' begins neither #b nor #x"},
        Fault{"#x", "1:1: a hexadecimal literal without digits"},
        Fault{"#b", "1:1: a binary literal without digits"},
        Fault{"#b012", "1:1: '#b012' is not a binary literal"},
        Fault{"#xfg", "1:1: '#xfg' is not a hexadecimal literal"}));

TEST(LexerFaults, NulBytesAreNamed) {
  EXPECT_EQ(error_of(std::string("a \0", 3)), "1:3: a NUL byte");
  EXPECT_EQ(error_of(std::string("a\0", 2)), "1:2: a NUL byte");
  EXPECT_EQ(error_of(std::string("|\0|", 3)), "1:2: a NUL byte in a |quoted symbol|");
  EXPECT_EQ(error_of(std::string("\"\0\"", 3)), "1:2: a NUL byte in a string");
}

TEST(LexerFaults, LongTokensAreCut) {
  EXPECT_EQ(error_of(std::string(1000, '1') + "x"),
            "1:1: '" + std::string(60, '1') + "...' is neither a number nor a symbol");
}

TEST(Lexer, ReportsAStreamThatCannotBeRead) {
  std::istringstream input("a");
  input.setstate(std::ios::badbit);
  Lexer lexer(input);
  EXPECT_THROW(lexer.next(), InputError);
}

// ----- what is expected -------------------------------------------------------------------------

template <class Check>
std::string error_of_check(const std::string& text, const Check& check) {
  std::istringstream input(text);
  Lexer lexer(input);
  lexer.next();
  try {
    check(lexer);
  } catch (const ParseError& error) {
    return error.what();
  }
  return "";
}

TEST(Lexer, TellsWhatIsExpected) {
  const auto expect_string = [](Lexer& lexer) { lexer.expect(TokenKind::String, "a string is"); };
  EXPECT_EQ(error_of_check(" \"x\"", expect_string), "");
  EXPECT_EQ(error_of_check(" x", expect_string), "1:2: a string is expected, not 'x'");
  EXPECT_EQ(error_of_check("\n)", expect_string), "2:1: a string is expected, not ')'");
  EXPECT_EQ(error_of_check("", expect_string),
            "1:1: a string is expected, not the end of the input");
}

TEST(Lexer, TellsWhereTheInputEnds) {
  const auto require_second = [](Lexer& lexer) {
    lexer.next();
    lexer.require_more("inside a term");
  };
  EXPECT_EQ(error_of_check("x y", require_second), "");
  EXPECT_EQ(error_of_check("x  ", require_second), "1:2: the input ends inside a term");
}

}  // namespace
}  // namespace quill::smt2
