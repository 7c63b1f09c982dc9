#include "quill/frontends/smt2/command_names.h"

#include <algorithm>
#include <iterator>

namespace quill::smt2 {

namespace {

constexpr std::string_view standard_commands[] = {"assert",
                                                  "check-sat",
                                                  "check-sat-assuming",
                                                  "declare-const",
                                                  "declare-datatype",
                                                  "declare-datatypes",
                                                  "declare-fun",
                                                  "declare-sort",
                                                  "declare-sort-parameter",
                                                  "define-const",
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
                                                  "set-option"};

constexpr std::string_view foreign_commands[] = {"apply",
                                                 "assert-and-track",
                                                 "assert-not",
                                                 "assert-rewrite",
                                                 "assert-soft",
                                                 "block-model",
                                                 "block-model-values",
                                                 "check-sat-assuming-model",
                                                 "check-sat-using",
                                                 "check-synth",
                                                 "constraint",
                                                 "dbg-stats",
                                                 "declare-codatatype",
                                                 "declare-codatatypes",
                                                 "declare-heap",
                                                 "declare-map",
                                                 "declare-pool",
                                                 "declare-rel",
                                                 "declare-tactic",
                                                 "declare-var",
                                                 "define",
                                                 "define-simplifier",
                                                 "display",
                                                 "eliminate",
                                                 "eval",
                                                 "get-abduct",
                                                 "get-abduct-next",
                                                 "get-difficulty",
                                                 "get-interpolant",
                                                 "get-interpolant-next",
                                                 "get-learned-literals",
                                                 "get-objectives",
                                                 "get-qe",
                                                 "get-qe-disjunct",
                                                 "get-timeout-core",
                                                 "get-user-tactics",
                                                 "help",
                                                 "help-tactic",
                                                 "include",
                                                 "labels",
                                                 "maximize",
                                                 "mbi",
                                                 "minimize",
                                                 "model-add",
                                                 "model-del",
                                                 "model-eval",
                                                 "poly/factor",
                                                 "query",
                                                 "rule",
                                                 "set-simplifier",
                                                 "simplify",
                                                 "synth-fun"};

static_assert(std::is_sorted(std::begin(standard_commands), std::end(standard_commands)));
static_assert(std::is_sorted(std::begin(foreign_commands), std::end(foreign_commands)));

}  // namespace

bool is_foreign_command(std::string_view name) {
  return std::binary_search(std::begin(foreign_commands), std::end(foreign_commands), name);
}

bool is_command_name(std::string_view name) {
  return std::binary_search(std::begin(standard_commands), std::end(standard_commands), name) ||
         is_foreign_command(name);
}

}  // namespace quill::smt2
