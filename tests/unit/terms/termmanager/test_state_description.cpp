#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"

namespace quill {
namespace {

using Lines = std::multiset<std::string>;

Lines lines_of(const std::string& text) {
  Lines lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.insert(line);
  return lines;
}

// The lines that the action adds to the description, sorted, and those that it takes away with a
// minus before them.
template <class Action>
std::vector<std::string> changes(const TermManager& m, Action action) {
  Lines before = lines_of(m.describe_state());
  action();
  std::vector<std::string> found;
  for (const std::string& line : lines_of(m.describe_state())) {
    const auto same = before.find(line);
    if (same != before.end()) {
      before.erase(same);
    } else {
      found.push_back(line);
    }
  }
  for (const std::string& line : before) found.push_back("-" + line);
  return found;
}

using Changes = std::vector<std::string>;

TEST(StateDescription, OfEqualHistoriesIsEqual) {
  const auto live = [](TermManager& m) {
    for (size_t w = 1; w < 40; ++w) {
      const Term_* x = m.make_fresh_variable(m.get_bv_type(w));
      m.make_equal(m.make_bv_add(x, x), m.make_bv_number(1, w));
      m.make_array_read_symbol(m.get_bv_type(w), m.get_int_type());
      m.make_number(QNumber(static_cast<long>(w), 7));
      m.make_fp_add_symbol(w + 1, w + 2);
      m.make_int_modular_congruence_symbol(QNumber(static_cast<long>(w)));
    }
  };
  TermManager m;
  TermManager other;
  live(m);
  EXPECT_NE(m.describe_state(), other.describe_state());
  live(other);
  EXPECT_EQ(m.describe_state(), other.describe_state());
  EXPECT_EQ(m.describe_state(), m.describe_state());
}

TEST(StateDescription, ShowsTypesAndTheirTables) {
  TermManager m;
  EXPECT_EQ(changes(m, [&] { m.get_bv_type(8); }),
            (Changes{"bv_widths 8 -> 8", "bv_widths 8 -> 8", "bv_widths types: 1", "type 15 8",
                     "type 16 (BitVec 8)", "-bv_widths types: 0"}));
  EXPECT_EQ(
      changes(m, [&] { m.get_fp_type(8, 23); }),
      (Changes{"fp_formats 8 23 -> |8:23|", "fp_formats types: 1", "fp_formats |8:23| -> 8 23",
               "type 17 |8:23|", "type 18 (FP |8:23|)", "-fp_formats types: 0"}));
  EXPECT_EQ(changes(m, [&] { m.get_simple_type("S", /*only_existing=*/false); }),
            (Changes{"simple_types S -> S", "type 19 S"}));
}

TEST(StateDescription, ShowsSymbolsTheirTagsAndWhetherTheyHaveTheirName) {
  TermManager m;
  const Symbol* x = nullptr;
  EXPECT_EQ(changes(m, [&] { x = m.make_symbol("x", m.get_int_type()); }),
            (Changes{"symbol x#19 of Int, no tag"}));
  EXPECT_EQ(
      changes(m, [&] { m.free_symbol(x); }),
      (Changes{"symbol x#19 of Int, no tag, name given back", "-symbol x#19 of Int, no tag"}));
  EXPECT_EQ(changes(m, [&] { m.add_interpreted_symbol("c", m.get_int_type(), SymbolTag::PLUS); }),
            (Changes{"symbol `c`#20 of Int, tag 7", "tags `c`#20 -> 7"}));
}

TEST(StateDescription, ShowsTermsWithTheIdsOfTheirArguments) {
  TermManager m;
  EXPECT_EQ(changes(m, [&] { m.make_and(m.make_true(), m.make_false()); }),
            (Changes{"term 2 = `and`#3 0 1"}));
}

TEST(StateDescription, ShowsNumeralsByFormAndValue) {
  TermManager m;
  EXPECT_EQ(changes(m, [&] { m.make_number(7); }),
            (Changes{"number_cache 7 -> 2", "number_values 7#19 -> 7", "symbol 7#19 of Int, no tag",
                     "term 2 = 7#19"}));
}

TEST(StateDescription, ShowsFamiliesInBothDirections) {
  TermManager m;
  m.get_bv_type(8);
  EXPECT_EQ(changes(m, [&] { m.make_bv_not_symbol(8); }),
            (Changes{"bvnot 8 -> `bvnot_8`#19", "bvnot `bvnot_8`#19 -> 8",
                     "symbol `bvnot_8`#19 of (-> (BitVec 8) (BitVec 8)), tag 16",
                     "tags `bvnot_8`#19 -> 16", "type 17 (-> (BitVec 8) (BitVec 8))"}));
  m.get_array_type(m.get_int_type(), m.get_int_type());
  EXPECT_EQ(changes(m, [&] { m.make_array_read_symbol(m.get_int_type(), m.get_int_type()); }),
            (Changes{"read_ Int Int -> `read_int_int`#20",
                     "symbol `read_int_int`#20 of (-> (Array Int Int) Int Int), tag 40",
                     "tags `read_int_int`#20 -> 40", "type 19 (-> (Array Int Int) Int Int)"}));
  EXPECT_EQ(changes(m, [&] { m.make_equality_symbol(m.get_fprounding_type()); }),
            (Changes{"equality_symbols FPRounding -> `=_FPRounding`#21",
                     "equality_symbols `=_FPRounding`#21 -> known", "equality_symbols symbols: 3",
                     "symbol `=_FPRounding`#21 of (-> FPRounding FPRounding Bool), tag 11",
                     "tags `=_FPRounding`#21 -> 11", "type 20 (-> FPRounding FPRounding Bool)",
                     "-equality_symbols symbols: 2"}));
}

TEST(StateDescription, ShowsSwitchesAndCounters) {
  TermManager m;
  EXPECT_EQ(changes(m, [&] { m.set_typecheck_enabled(false); }),
            (Changes{"typecheck_enabled: 0", "-typecheck_enabled: 1"}));
  EXPECT_EQ(changes(m, [&] { m.set_delegate_enabled(true); }),
            (Changes{"delegate_enabled: 1", "-delegate_enabled: 0"}));
  EXPECT_EQ(changes(m, [&] { m.set_reject_bool_arguments(false); }),
            (Changes{"reject_bool_arguments: 0", "-reject_bool_arguments: 1"}));
  EXPECT_EQ(changes(m, [&] { m.make_fresh_variable(m.get_int_type()); }),
            (Changes{"fresh_counter: 2", "symbol '1#19 of Int, no tag", "term 2 = '1#19",
                     "-fresh_counter: 1"}));
  EXPECT_EQ(changes(m, [&] { m.gc({}, {}, {}); }),
            (Changes{"freed symbols: 1", "freed terms: 1", "generation: 1", "-freed symbols: 0",
                     "-freed terms: 0", "-generation: 0", "-symbol '1#19 of Int, no tag",
                     "-term 2 = '1#19"}));
}

}  // namespace
}  // namespace quill
