// Where the functions that stand for values that the standard leaves open are declared.

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "tests/unit/frontends/smt2/read_and_print.h"

namespace quill::smt2 {
namespace {

const std::string use = "(declare-const x Int)\n(assert (= (div x 0) 1))\n";
const std::string declaration = "(declare-fun quill!div_by_zero (Int) Int)\n";
const std::string written_use = "(declare-const x Int)\n(assert (= (quill!div_by_zero x) 1))\n";

// The commands in front of the script come first, and then what it declares.
void expect_declared_behind(const std::string& front, const std::string& written_front) {
  EXPECT_EQ(printed(front + use), written_front + declaration + written_use);
}

TEST(DeclarationsPlace, IsBehindALogicWhateverComesBeforeIt) {
  for (const std::string first :
       {"", "(echo \"a\")\n", "(reset)\n", "(set-info :status sat)\n", "(get-info :name)\n",
        "(set-option :produce-models true)\n", "(get-option :produce-models)\n",
        "(reset-assertions)\n", "(check-sat)\n", "(get-model)\n", "(push 1)\n(pop 1)\n",
        "(echo \"a\")\n(reset)\n(echo \"b\")\n(set-info :status sat)\n"}) {
    expect_declared_behind(first + "(set-logic QF_NIA)\n", first + "(set-logic QF_UFNIA)\n");
  }
}

TEST(DeclarationsPlace, IsBehindSettingsThatFollowMessages) {
  const std::string settings = "(echo \"a\")\n(set-option :produce-models true)\n";
  expect_declared_behind(settings, settings);
  const std::string more = "(get-info :name)\n(set-info :status sat)\n";
  expect_declared_behind("(set-logic QF_NIA)\n" + more, "(set-logic QF_UFNIA)\n" + more);
}

TEST(DeclarationsPlace, IsBeforeCommandsThatSolveAndOpenScopes) {
  EXPECT_EQ(printed("(check-sat)\n(echo \"a\")\n" + use),
            declaration + "(check-sat)\n(echo \"a\")\n" + written_use);
  EXPECT_EQ(printed("(push 1)\n(echo \"a\")\n" + use),
            declaration + "(push 1)\n(echo \"a\")\n" + written_use);
}

TEST(DeclarationsPlace, IsBehindEachReset) {
  EXPECT_EQ(
      printed("(set-logic QF_NIA)\n" + use + "(reset)\n(echo \"a\")\n(set-logic QF_NIA)\n" + use),
      "(set-logic QF_UFNIA)\n" + declaration + written_use +
          "(reset)\n(echo \"a\")\n(set-logic QF_UFNIA)\n" + declaration + written_use);
}

TEST(DeclarationsPlace, IsKeptByResetAssertionsWhereDeclarationsWereGlobal) {
  const std::string uses =
      "(assert (= (quill!div_by_zero 1) 1))\n(reset-assertions)\n"
      "(assert (= (quill!div_by_zero 2) 1))\n";
  EXPECT_EQ(printed("(set-option :global-declarations true)\n(push 1)\n"
                    "(set-option :global-declarations false)\n(assert (= (div 1 0) 1))\n"
                    "(reset-assertions)\n(assert (= (div 2 0) 1))\n"),
            "(set-option :global-declarations true)\n" + declaration +
                "(push 1)\n(set-option :global-declarations false)\n" + uses);
}

TEST(DeclarationsPlace, AllowsNoLogicBehindTermsAndInsideOfScopes) {
  EXPECT_EQ(error_of("(get-value ((div 1 0)))(set-logic QF_LIA)"),
            "1:35: 'set-logic' behind a command with terms");
  EXPECT_EQ(error_of("(check-sat-assuming (true))(set-logic QF_LIA)"),
            "1:39: 'set-logic' behind a command with terms");
  EXPECT_EQ(error_of("(get-value (1))(reset)(check-sat-assuming ())(set-logic QF_LIA)"), "");
  EXPECT_EQ(error_of("(push 1)(set-logic QF_LIA)"), "1:20: 'set-logic' inside of a 'push'");
  EXPECT_EQ(error_of("(push 2)(pop 1)(set-logic QF_LIA)"), "1:27: 'set-logic' inside of a 'push'");
  EXPECT_EQ(error_of("(push 2)(pop 2)(set-logic QF_LIA)"), "");
}

// Scripts over all commands that determine where a declaration may be.
std::string random_script(uint32_t seed) {
  std::mt19937 random(seed);
  const std::string commands[] = {
      "(echo \"a\")",
      "(reset)",
      "(reset-assertions)",
      "(set-logic QF_NIA)",
      "(set-logic ALL)",
      "(set-info :status sat)",
      "(set-option :produce-models true)",
      "(set-option :global-declarations true)",
      "(set-option :global-declarations false)",
      "(get-info :name)",
      "(push 1)",
      "(push 2)",
      "(pop 1)",
      "(check-sat)",
      "(assert (= (div 1 0) 1))",
      "(assert (= (mod 1 0) 1))",
      "(assert (= (/ 1.0 0.0) 1.0))",
      "(get-value ((div 1 0)))",
      "(check-sat-assuming ((= 1 (mod 1 0))))",
      "(declare-const x Int)",
      "(define-const d Int (div 1 0))",
  };
  std::string script;
  for (auto length = 1 + random() % 12; length != 0; --length) {
    const std::string& command = commands[random() % std::size(commands)];
    if (error_of(script + command).empty()) script += command + "\n";
  }
  return script;
}

// The first set-logic that comes after a declaration; empty if there is none.
std::string misplaced_in(const std::string& text) {
  std::istringstream lines(text);
  std::string line;
  bool declared = false;
  while (std::getline(lines, line)) {
    if (line == "(reset)") declared = false;
    if (line.rfind("(declare-", 0) == 0) declared = true;
    if (declared && line.rfind("(set-logic", 0) == 0) return line;
  }
  return "";
}

TEST(DeclarationsPlace, IsRightInRandomScripts) {
  for (uint32_t seed = 0; seed < 500; ++seed) {
    const std::string script = random_script(seed);
    const std::string text = printed(script);
    ASSERT_EQ(misplaced_in(text), "") << script << "is written as\n" << text;
    ASSERT_EQ(error_of(text), "") << script << "is written as\n" << text;
    ASSERT_EQ(printed(text), text) << script;
  }
}

}  // namespace
}  // namespace quill::smt2
