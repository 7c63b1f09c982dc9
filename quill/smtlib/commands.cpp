#include "quill/smtlib/commands.h"

#include <algorithm>
#include <iterator>

namespace quill {

namespace {

// clang-format off
constexpr std::string_view foreign_commands[] = {
    "apply", "assert-and-track", "assert-not", "assert-rewrite", "assert-soft", "block-model",
    "block-model-values", "check-sat-assuming-model", "check-sat-using", "check-synth",
    "constraint", "dbg-stats", "declare-codatatype", "declare-codatatypes", "declare-heap",
    "declare-map", "declare-pool", "declare-rel", "declare-sort-parameter", "declare-tactic",
    "declare-var", "define", "define-simplifier", "display", "eliminate", "eval", "get-abduct",
    "get-abduct-next", "get-difficulty", "get-interpolant", "get-interpolant-next",
    "get-learned-literals", "get-objectives", "get-qe", "get-qe-disjunct", "get-timeout-core",
    "get-user-tactics", "help", "help-tactic", "include", "labels", "maximize", "mbi", "minimize",
    "model-add", "model-del", "model-eval", "poly/factor", "query", "rule", "set-simplifier",
    "simplify", "synth-fun",
};
// clang-format on

static_assert(std::ranges::is_sorted(foreign_commands), "the table is searched by bisection");

}  // namespace

const CommandRow* find_command(std::string_view name) {
  const CommandRow* row = std::ranges::lower_bound(standard_commands, name, {}, &CommandRow::name);
  return row != std::end(standard_commands) && row->name == name ? row : nullptr;
}

bool is_foreign_command(std::string_view name) {
  return std::ranges::binary_search(foreign_commands, name);
}

bool is_command_name(std::string_view name) {
  return find_command(name) != nullptr || is_foreign_command(name);
}

}  // namespace quill
