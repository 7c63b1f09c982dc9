#include <gtest/gtest.h>

#include <ios>
#include <locale>
#include <sstream>
#include <string>

#include "quill/frontends/smt2/script_stats.h"
#include "tests/support/grouped_digits.h"
#include "tests/unit/frontends/smt2/read_and_print.h"

namespace quill::smt2 {
namespace {

std::string stats_of(const std::string& text) {
  TermManager manager;
  const Script script = read_text(text, manager);
  std::ostringstream output;
  output << compute_stats(manager, script);
  return output.str();
}

TEST(ScriptStats, OfNothingAreZero) {
  EXPECT_EQ(stats_of(""),
            "commands: 0\n"
            "assertions: 0\n"
            "terms: 0\n"
            "symbols: 0 (0 interpreted, 0 uninterpreted)\n"
            "types: 0\n"
            "depth: 0\n"
            "size as a graph: 0\n"
            "size as a tree: 0\n"
            "sharing: 1.00\n");
}

TEST(ScriptStats, CountSharedTermsOnceInTheGraph) {
  // (f i), i, 1, (<= 1 (f i)), (<= (f i) i) and the conjunction; the tree has (f i) and i twice.
  EXPECT_EQ(stats_of("(declare-const i Int)(declare-fun f (Int) Int)"
                     "(assert (<= 1 (f i) i))(check-sat)"),
            "commands: 4\n"
            "assertions: 1\n"
            "terms: 6\n"
            "symbols: 5 (3 interpreted, 2 uninterpreted)\n"
            "types: 2\n"
            "depth: 4\n"
            "size as a graph: 6\n"
            "size as a tree: 9\n"
            "sharing: 1.50\n");
}

TEST(ScriptStats, CountTermsOfAllCommands) {
  TermManager m;
  const Script script = read_text(
      "(declare-const p Bool)(declare-const q Bool)(declare-const r Bool)(declare-const s Bool)"
      "(assert p)(check-sat-assuming (q))(get-value (r))",
      m);
  const ScriptStats stats = compute_stats(m, script);
  EXPECT_EQ(stats.graph_size, 3u);
  EXPECT_EQ(stats.uninterpreted_symbols, 3u);
}

// More symbols, in turn and again, than the survey remembers without a look-up.
TEST(ScriptStats, CountEachOfVeryManySymbolsOnce) {
  std::string text;
  for (int i = 0; i < 3000; ++i) {
    text +=
        "(declare-const x" + std::to_string(i) + " Bool)(assert (not x" + std::to_string(i) + "))";
  }
  TermManager m;
  const ScriptStats stats = compute_stats(m, read_text(text, m));
  EXPECT_EQ(stats.uninterpreted_symbols, 3000u);
  EXPECT_EQ(stats.interpreted_symbols, 1u);
  EXPECT_EQ(stats.graph_size, 6000u);
}

TEST(ScriptStats, CountTypesOfArguments) {
  TermManager m;
  const Script script = read_text("(assert (= 1.0 2.0))", m);
  // Bool of the equality, Real of its arguments, Int of the numerals.
  EXPECT_EQ(compute_stats(m, script).types, 3u);
}

std::string doubled(int times) {
  std::string text = "p";
  for (int k = 0; k < times; ++k) text = "(let ((p (and p p))) " + text + ")";
  return "(declare-const p Bool)(assert " + text + ")";
}

TEST(ScriptStats, CountTheTreeUpToTheLargestNumber) {
  TermManager m;
  // Doubled n times, a constant has 2^(n+1) - 1 nodes.
  EXPECT_EQ(compute_stats(m, read_text(doubled(62), m)).tree_size, 9223372036854775807u);
  EXPECT_EQ(compute_stats(m, read_text(doubled(63), m)).tree_size, 18446744073709551615u);
  EXPECT_EQ(compute_stats(m, read_text(doubled(64), m)).tree_size, 18446744073709551615u);
}

TEST(ScriptStats, ShowASaturatedTreeAsALowerBound) {
  const std::string text = stats_of(doubled(100));
  EXPECT_NE(text.find("size as a tree: >= 18446744073709551615\n"), std::string::npos) << text;
  EXPECT_NE(text.find("sharing: >= 182641030432767840.00\n"), std::string::npos) << text;
}

TEST(ScriptStats, AreWrittenInTheSameWayToEveryStream) {
  ScriptStats stats;
  stats.commands = 2000;
  stats.graph_size = 1000;
  stats.tree_size = 12345;
  std::ostringstream output;
  output.imbue(testing::locale_with_grouped_digits());
  output << std::hex << std::showbase << stats;
  EXPECT_EQ(output.str(),
            "commands: 2000\n"
            "assertions: 0\n"
            "terms: 1000\n"
            "symbols: 0 (0 interpreted, 0 uninterpreted)\n"
            "types: 0\n"
            "depth: 0\n"
            "size as a graph: 1000\n"
            "size as a tree: 12345\n"
            "sharing: 12.35\n");
}

TEST(ScriptStats, LeaveTheFormatOfTheStreamAlone) {
  std::ostringstream output;
  output.imbue(std::locale::classic());
  output << ScriptStats() << 0.5;
  EXPECT_EQ(output.str().substr(output.str().size() - 4), "\n0.5");
}

}  // namespace
}  // namespace quill::smt2
