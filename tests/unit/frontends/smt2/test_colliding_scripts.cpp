// Scripts that were made to collide in the tables of reader and manager, compared with ordinary
// ones of the same form: reading, printing and counting them may visit at most five times as many
// entries.

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "quill/frontends/smt2/script_stats.h"
#include "quill/utils/entry_count.h"
#include "tests/support/colliding_names.h"
#include "tests/unit/frontends/smt2/read_and_print.h"

namespace quill::smt2 {
namespace {

constexpr size_t pieces = 20000;
constexpr size_t buckets = 42073;  // of a table with 20,000 elements

using Piece = std::function<std::string(size_t i)>;

struct Kind {
  const char* name;
  const char* beginning;  // of the script
  const char* command;    // with a $ in place of the piece
  Piece colliding;
  Piece ordinary;
};

void PrintTo(const Kind& kind, std::ostream* out) { *out << kind.name; }

std::string colliding_name(size_t i) {
  static const std::vector<std::string> names = testing::colliding_names(pieces);
  return "|" + names[i] + "|";
}
std::string ordinary_name(size_t i) {
  static const std::vector<std::string> names = testing::ordinary_names(pieces);
  return "|" + names[i] + "|";
}
std::string multiple(size_t i) { return std::to_string((i + 1) * buckets); }
std::string number(size_t i) { return std::to_string(i + 1); }

const char* const names = "(set-logic QF_UF)";
const char* const numbers = "(set-logic QF_LIA)";
const char* const bits = "(set-logic QF_BV)(declare-const a (_ BitVec 64))";
const char* const floats = "(set-logic QF_FP)";

const std::vector<Kind> kinds = {
    {"constants", names, "(declare-const $ Bool)", colliding_name, ordinary_name},
    {"functions", names, "(declare-fun $ (Bool) Bool)", colliding_name, ordinary_name},
    {"definitions", names, "(define-fun $ () Bool true)", colliding_name, ordinary_name},
    {"sorts", names, "(declare-sort $ 0)", colliding_name, ordinary_name},
    {"abbreviations", names, "(define-sort $ () Bool)", colliding_name, ordinary_name},
    {"bound_names", names, "(assert (let (($ true)) $))", colliding_name, ordinary_name},
    {"parameters", names, "(push 1)(define-fun f (($ Bool)) Bool $)(pop 1)", colliding_name,
     ordinary_name},
    {"labels", names, "(assert (! true :named $))", colliding_name, ordinary_name},
    {"numerals", numbers, "(assert (< 0 $))", multiple, number},
    {"bit_vectors", bits, "(assert (bvult a (_ bv$ 64)))", multiple, number},
    {"widths", bits, "(push 1)(declare-const b (_ BitVec $))(assert (= b (bvadd b b)))(pop 1)",
     multiple, number},
    {"rotations", bits, "(assert (= a ((_ rotate_left $) a)))", multiple, number},
    {"formats", floats, "(push 1)(declare-const b (_ FloatingPoint 5 $))(pop 1)", multiple,
     [](size_t i) { return number(i + 2); }},
};

std::string script(const Kind& kind, const Piece& piece) {
  std::string text = kind.beginning;
  for (size_t i = 0; i < pieces; ++i) {
    for (const char* c = kind.command; *c != '\0'; ++c) {
      if (*c == '$') {
        text += piece(i);
      } else {
        text += *c;
      }
    }
    text += '\n';
  }
  return text;
}

uint64_t entries_for(const std::string& text) {
  const uint64_t before = entries_looked_at();
  TermManager manager;
  const Script read = read_text(text, manager);
  EXPECT_GE(read.commands.size(), pieces);
  compute_stats(manager, read);
  std::ostringstream output;
  write(output, manager, read);
  return entries_looked_at() - before;
}

class CollidingScripts : public ::testing::TestWithParam<Kind> {};
INSTANTIATE_TEST_SUITE_P(Kinds, CollidingScripts, ::testing::ValuesIn(kinds),
                         [](const auto& kind) { return kind.param.name; });

TEST_P(CollidingScripts, CostLittleMoreThanOthers) {
  const uint64_t ordinary = entries_for(script(GetParam(), GetParam().ordinary));
  EXPECT_LE(entries_for(script(GetParam(), GetParam().colliding)), 5 * ordinary);
}

}  // namespace
}  // namespace quill::smt2
