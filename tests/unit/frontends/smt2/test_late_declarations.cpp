#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "quill/frontends/smt2/late_declarations.h"
#include "tests/unit/frontends/smt2/read_and_print.h"

namespace quill::smt2 {
namespace {

using Settings = std::vector<std::pair<std::string, std::string>>;

// The script with constants replaced, as it is written; or the message of a refusal.
std::string substituted(const std::string& text, const Settings& settings) {
  TermManager manager;
  Script script = read_text(text, manager);
  TermManager::TermMap images;
  for (const auto& [name, term] : settings) {
    const Term_* constant = read_term(name, manager, script);
    images[constant] = read_term(term, manager, script);
  }
  try {
    substitute(manager, script, images);
  } catch (const Exception& refusal) {
    return refusal.what();
  }
  std::ostringstream output;
  write(output, manager, script);
  return output.str();
}

TEST(LateDeclarations, ComeBeforeWhatMentionsThem) {
  EXPECT_EQ(substituted("(declare-const x Int)\n(assert (<= x 0))\n(declare-const y Int)\n"
                        "(assert (<= y 1))\n",
                        {{"x", "y"}}),
            "(declare-const x Int)\n(declare-const y Int)\n(assert (<= y 0))\n"
            "(assert (<= y 1))\n");
}

TEST(LateDeclarations, ComeBeforeTheNamesOfTermsThatMentionThem) {
  EXPECT_EQ(substituted("(declare-const x Int)\n(declare-const p Bool)\n"
                        "(assert (let ((b (! (<= x 0) :named n))) p))\n(declare-const y Int)\n",
                        {{"x", "y"}}),
            "(declare-const x Int)\n(declare-const p Bool)\n(declare-const y Int)\n"
            "(define-fun quill!named_1 () Bool (! (<= y 0) :named n))\n(assert p)\n");
  EXPECT_EQ(substituted("(declare-const x Int)\n(define-fun f () Bool (! (<= x 0) :named n))\n"
                        "(declare-const y Int)\n(assert f)\n",
                        {{"x", "y"}}),
            "(declare-const x Int)\n(declare-const y Int)\n"
            "(define-fun f () Bool (! (<= y 0) :named n))\n(assert f)\n");
}

TEST(LateDeclarations, DoNotTakeTheNamesOfTermsAndOfKeptDefinitions) {
  const std::string head =
      "(declare-const x Int)\n(define-fun quill!div_by_zero () Bool (! (<= 0 0) :named "
      "quill!div_by_zero_0))\n";
  EXPECT_EQ(substituted(head + "(assert (<= x 0))\n", {{"x", "(div x 0)"}}),
            head +
                "(declare-fun quill!div_by_zero_1 (Int) Int)\n"
                "(assert (<= (quill!div_by_zero_1 x) 0))\n");
}

TEST(LateDeclarations, AreMadeOfFunctionsForWhatIsLeftOpen) {
  const std::string head = "(declare-const x Real)\n(declare-const y Real)\n";
  EXPECT_EQ(substituted(head + "(assert (<= x 0.0))\n", {{"x", "(/ y 0)"}}),
            head +
                "(declare-fun quill!divide_by_zero (Real) Real)\n"
                "(assert (<= (quill!divide_by_zero y) 0.0))\n");
}

TEST(LateDeclarations, AreTheFunctionsThatTheScriptHasForWhatIsLeftOpen) {
  const std::string head = "(declare-const x Real)\n(declare-const y Real)\n";
  EXPECT_EQ(substituted(head + "(assert (<= (/ x 0.0) 0.0))\n", {{"x", "(/ y 0)"}}),
            "(declare-fun quill!divide_by_zero (Real) Real)\n" + head +
                "(assert (<= (quill!divide_by_zero (quill!divide_by_zero y)) 0.0))\n");
}

TEST(LateDeclarations, AreNotThoseThatTheUserHasByThatName) {
  const std::string head =
      "(declare-fun quill!divide_by_zero (Real) Real)\n"
      "(declare-const x Real)\n(declare-const y Real)\n";
  EXPECT_EQ(substituted(head + "(assert (<= (quill!divide_by_zero x) 0.0))\n", {{"x", "(/ y 0)"}}),
            head +
                "(declare-fun quill!divide_by_zero_0 (Real) Real)\n"
                "(assert (<= (quill!divide_by_zero (quill!divide_by_zero_0 y)) 0.0))\n");
  const std::string popped =
      "(declare-const x Int)\n(push 1)\n"
      "(declare-fun quill!div_by_zero (Int) Int)\n"
      "(assert (<= x (quill!div_by_zero 1)))\n(pop 1)\n";
  EXPECT_EQ(substituted(popped, {{"x", "(div 2 0)"}}),
            "(declare-const x Int)\n(push 1)\n(declare-fun quill!div_by_zero (Int) Int)\n"
            "(declare-fun quill!div_by_zero_0 (Int) Int)\n"
            "(assert (<= (quill!div_by_zero_0 2) (quill!div_by_zero 1)))\n(pop 1)\n");
}

TEST(LateDeclarations, StandInTheScopeThatNeedsThem) {
  EXPECT_EQ(substituted("(declare-const x Int)\n(push 1)\n(assert (<= x 0))\n(pop 1)\n"
                        "(declare-const y Int)\n(assert (<= x 1))\n",
                        {{"x", "y"}}),
            "(declare-const x Int)\n(push 1)\n(declare-const y Int)\n(assert (<= y 0))\n(pop 1)\n"
            "(declare-const y Int)\n(assert (<= y 1))\n");
  EXPECT_EQ(substituted("(declare-const x Int)\n(assert (<= x 0))\n(push 1)\n"
                        "(declare-const y Int)\n(assert (<= x 1))\n",
                        {{"x", "y"}}),
            "(declare-const x Int)\n(declare-const y Int)\n(assert (<= y 0))\n(push 1)\n"
            "(assert (<= y 1))\n");
}

TEST(LateDeclarations, BringTheirSorts) {
  EXPECT_EQ(substituted("(declare-const x Int)\n(assert (<= x 0))\n(declare-sort S 0)\n"
                        "(declare-sort P 1)\n(declare-const u (P S))\n"
                        "(declare-fun f ((P S)) Int)\n",
                        {{"x", "(f u)"}}),
            "(declare-const x Int)\n(declare-sort S 0)\n(declare-sort P 1)\n"
            "(declare-fun f ((P S)) Int)\n(declare-const u (P S))\n(assert (<= (f u) 0))\n");
}

TEST(LateDeclarations, ComeBeforeTheCheckThatIsAskedAbout) {
  EXPECT_EQ(substituted("(declare-const x Int)\n(check-sat)\n(get-model)\n(get-value (x))\n"
                        "(declare-const y Int)\n",
                        {{"x", "y"}}),
            "(declare-const x Int)\n(declare-const y Int)\n(check-sat)\n(get-model)\n"
            "(get-value (y))\n");
}

TEST(LateDeclarations, AreNoneForNamesThatSomethingElseHasThere) {
  const std::string message = "'y' would be declared where something else has this name";
  EXPECT_EQ(substituted("(declare-const x Int)(push 1)(declare-const y Bool)(assert (<= x 0))"
                        "(pop 1)(declare-const y Int)",
                        {{"x", "y"}}),
            message);
  EXPECT_EQ(substituted("(declare-const x Int)(push 1)(assert (<= x 0))(declare-const y Bool)"
                        "(pop 1)(declare-const y Int)",
                        {{"x", "y"}}),
            message);
  EXPECT_EQ(substituted("(declare-const x Int)(push 1)(assert (! (<= x 0) :named y))"
                        "(pop 1)(declare-const y Int)",
                        {{"x", "y"}}),
            message);
}

TEST(LateDeclarations, AreAllOrNothing) {
  const std::string text =
      "(declare-const x Int)\n(assert (<= x 5))\n(push 1)\n"
      "(declare-const y Bool)\n(assert (<= x 0))\n(pop 1)\n"
      "(declare-const y Int)\n";
  TermManager manager;
  Script script = read_text(text, manager);
  TermManager::TermMap images;
  images[read_term("x", manager, script)] = read_term("y", manager, script);
  EXPECT_THROW(substitute(manager, script, images), Exception);
  std::ostringstream output;
  write(output, manager, script);
  EXPECT_EQ(output.str(), text);
}

TEST(LateDeclarations, LeaveScriptsAloneThatHaveThemInTime) {
  const std::string text = "(declare-const y Int)\n(declare-const x Int)\n(assert (<= x 0))\n";
  EXPECT_EQ(substituted(text, {{"x", "(+ y 1)"}}),
            "(declare-const y Int)\n(declare-const x Int)\n(assert (<= (+ y 1) 0))\n");
}

// ----- terms for scripts ------------------------------------------------------------------------

std::string error_in(const std::string& text, const std::string& term) {
  TermManager manager;
  const Script script = read_text(text, manager);
  try {
    read_term(term, manager, script);
  } catch (const ParseError& error) {
    return error.text();
  }
  return "";
}

TEST(TermsForScripts, TellWhatTheNamesWere) {
  const std::string text =
      "(declare-const x Int)(push 1)(declare-const y Int)(declare-fun g (Int) Int)(pop 1)"
      "(define-fun d () Int 3)(define-const e Int 4)(define-fun f ((a Int)) Int a)"
      "(assert (! (<= x 0) :named n))";
  EXPECT_EQ(error_in(text, "x"), "");
  EXPECT_EQ(error_in(text, "y"), "'y' is declared in a scope that has ended");
  EXPECT_EQ(error_in(text, "(g 1)"), "'g' is declared in a scope that has ended");
  EXPECT_EQ(error_in(text, "(+ 1 d)"), "'d' is defined: what it stands for is in its place");
  EXPECT_EQ(error_in(text, "e"), "'e' is defined: what it stands for is in its place");
  EXPECT_EQ(error_in(text, "(f 1)"), "'f' is defined: what it stands for is in its place");
  EXPECT_EQ(error_in(text, "n"), "'n' is the name of a term and not a symbol");
  EXPECT_EQ(error_in(text, "z"), "unknown symbol 'z'");
}

TEST(TermsForScripts, MayApplyFunctionsOfBool) {
  EXPECT_EQ(error_in("(declare-fun f (Bool) Bool)", "(f (f true))"), "");
}

// ----- everything by everything -----------------------------------------------------------------

struct RandomText {
  explicit RandomText(uint32_t seed) : random(seed) {}

  size_t below(size_t count) { return static_cast<size_t>(random() % count); }

  std::string term() {
    const std::string leaf[] = {"x", "y", "z", "3", "(div y 0)", "(mod x 0)"};
    const std::string head[] = {"(+ ", "(f ", "(- "};
    std::string text = leaf[below(std::size(leaf))];
    while (below(2) == 0) text = head[below(std::size(head))] + text + ")";
    return text;
  }

  // Commands that are refused are left out.
  std::string script() {
    std::string text;
    for (size_t length = 4 + below(16); length != 0; --length) {
      const std::string number = std::to_string(text.size());
      const std::string commands[] = {
          "(declare-const x Int)",
          "(declare-const y Int)",
          "(declare-const z Int)",
          "(declare-const z Bool)",
          "(declare-fun f (Int) Int)",
          "(declare-fun quill!div_by_zero_0 (Int) Int)",
          "(declare-sort S 0)",
          "(declare-const s S)",
          "(push 1)",
          "(push 2)",
          "(pop 1)",
          "(reset)",
          "(reset-assertions)",
          "(set-option :global-declarations true)",
          "(set-option :global-declarations false)",
          "(set-logic ALL)",
          "(echo \"a\")",
          "(check-sat)",
          "(assert (<= " + term() + " " + term() + "))",
          "(assert (<= " + term() + " " + term() + "))",
          "(assert (! (<= " + term() + " 0) :named n" + number + "))",
          "(get-value (" + term() + "))",
          "(check-sat-assuming ((<= 1 " + term() + ")))",
      };
      const std::string& command = commands[below(std::size(commands))];
      if (error_of(text + command).empty()) text += command + "\n";
    }
    return text;
  }

  std::mt19937 random;
};

TEST(LateDeclarations, MakeEveryRandomSubstitutionReadable) {
  size_t replaced = 0;
  size_t refused = 0;
  for (uint32_t seed = 0; seed < 600; ++seed) {
    RandomText random(seed);
    const std::string text = random.script();
    Settings settings;
    for (const std::string name : {"x", "y", "z"}) {
      const std::string term = random.term();
      if (random.below(2) == 0 || !error_in(text, name).empty()) continue;
      if (error_in(text, "(+ " + name + " " + term + ")").empty()) settings.push_back({name, term});
    }
    if (settings.empty()) continue;
    const std::string result = substituted(text, settings);
    if (result.find("would be declared where") != std::string::npos) {
      ++refused;
      continue;
    }
    ++replaced;
    ASSERT_EQ(error_of(result), "") << text << "becomes\n" << result;
    ASSERT_EQ(printed(result), result) << text;
  }
  EXPECT_GT(replaced, 60u);
  EXPECT_LT(refused, replaced / 10);
}

}  // namespace
}  // namespace quill::smt2
