// The size and shape of a script's terms.
//
// Everything is counted over the terms that the commands list (assertions, assumptions, terms to
// evaluate) and the terms below them; definitions count where they are used.

#ifndef QUILL_FRONTENDS_SMT2_SCRIPT_STATS_H
#define QUILL_FRONTENDS_SMT2_SCRIPT_STATS_H

#include <cstdint>
#include <ostream>

#include "quill/frontends/smt2/script.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill::smt2 {

struct ScriptStats {
  uint64_t commands = 0;
  uint64_t assertions = 0;
  uint64_t graph_size = 0;           // distinct terms
  uint64_t tree_size = 0;            // terms if nothing were shared; stops at its largest value
  uint64_t depth = 0;                // of the deepest term: 1 for a constant, 0 if there is no term
  uint64_t interpreted_symbols = 0;  // operators and numerals
  uint64_t uninterpreted_symbols = 0;
  uint64_t types = 0;  // of the terms and of the arguments of their symbols

  static constexpr uint64_t saturated = ~uint64_t{0};
};

ScriptStats compute_stats(const TermManager& manager, const Script& script);

// Writes one "key: value" per line. A tree size that was too large to count is shown as a lower
// bound: ">= 18446744073709551615".
std::ostream& operator<<(std::ostream& out, const ScriptStats& stats);

}  // namespace quill::smt2

#endif
