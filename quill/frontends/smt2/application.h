// An operator of a theory, as a row of the table in operators.cpp, and one use of it in an input.

#ifndef QUILL_FRONTENDS_SMT2_APPLICATION_H
#define QUILL_FRONTENDS_SMT2_APPLICATION_H

#include <cstddef>
#include <span>
#include <string>

#include "quill/frontends/smt2/parse_error.h"
#include "quill/frontends/smt2/value.h"

namespace quill::smt2 {

class TermBuilder;
struct Operator;

// One use of an operator in an input.
struct Application {
  const Operator& op;
  Position position;
  std::span<const std::string> indices;
  std::span<const Value> args;
  const DataType* sort = nullptr;  // set by (as name sort), otherwise null
};

inline constexpr size_t any_number = ~size_t{0};

struct Operator {
  const char* name;
  size_t num_indices;  // in (_ name index ...); 0 for a plain name
  size_t min_args;
  size_t max_args;
  Value (*build)(TermBuilder&, const Application&);
  // Whether it helps to spell constants of sort Real, as in (- 0.1) and (/ 1 3). Logics of
  // floating-point numbers have these operators for to_fp, even if they have no arithmetic.
  bool spells_constants = false;

  bool is_constant() const { return max_args == 0; }
};

}  // namespace quill::smt2

#endif
