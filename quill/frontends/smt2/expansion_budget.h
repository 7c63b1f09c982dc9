// Limits how much larger than its text a script may become while it is read and written.
//
// Two kinds of terms are larger than the text that spells them by more than a constant factor:
// `distinct` is made of all pairs of its arguments, and conversions and constants whose width is a
// mere number are written bit by bit. Both are counted over the whole script, before they are
// built. Definitions with parameters count again with each use; shared terms count once.

#ifndef QUILL_FRONTENDS_SMT2_EXPANSION_BUDGET_H
#define QUILL_FRONTENDS_SMT2_EXPANSION_BUDGET_H

#include <cstdint>

#include "quill/frontends/smt2/parse_error.h"
#include "quill/frontends/smt2/read_options.h"
#include "quill/frontends/smt2/value.h"

namespace quill::smt2 {

class ExpansionBudget {
 public:
  explicit ExpansionBudget(const ReadOptions& options_) : options(options_) {}

  // Counts a `distinct` of this many arguments. One of two is no larger than its text.
  void spend_distinct(uint64_t num_args, Position position);

  // Counts a conversion of this many bits, unless conversions are not written bit by bit.
  void spend_conversion(uint64_t bits, Position position);

  // Counts this many constants of a format of this many bits. Formats of up to 128 bits are free:
  // their constants are not much longer than the text that spells them.
  void spend_floats(uint64_t count, uint64_t bits, Position position);

  // Throws ParseError, and counts nothing, if the new total is more than the options allow.
  void spend(const Expansion& more, Position position);

  const Expansion& spent() const { return total; }

 private:
  const ReadOptions options;
  Expansion total;
};

}  // namespace quill::smt2

#endif
