#include "quill/frontends/smt2/expansion_budget.h"

#include <string>

namespace quill::smt2 {

namespace {

constexpr uint64_t widest_free_format = 128;

uint64_t saturating_sum(uint64_t a, uint64_t b) {
  return a > ~uint64_t{0} - b ? ~uint64_t{0} : a + b;
}

uint64_t saturating_product(uint64_t a, uint64_t b) {
  return b != 0 && a > ~uint64_t{0} / b ? ~uint64_t{0} : a * b;
}

}  // namespace

void ExpansionBudget::spend_distinct(uint64_t num_args, Position position) {
  if (num_args <= 2) return;
  const bool even = num_args % 2 == 0;
  const uint64_t pairs =
      saturating_product(even ? num_args / 2 : num_args, even ? num_args - 1 : (num_args - 1) / 2);
  spend({pairs, 0}, position);
}

void ExpansionBudget::spend_conversion(uint64_t bits, Position position) {
  if (options.expands_conversions) spend({0, bits}, position);
}

void ExpansionBudget::spend_floats(uint64_t count, uint64_t bits, Position position) {
  if (bits <= widest_free_format) return;
  spend({0, saturating_product(count, bits)}, position);
}

void ExpansionBudget::spend(const Expansion& more, Position position) {
  const auto check = [&](uint64_t number, uint64_t limit, const std::string& what) {
    if (number <= limit) return;
    throw ParseError(position, what + std::to_string(number) + " by now, but at most " +
                                   std::to_string(limit) + " are allowed");
  };
  const Expansion sum{saturating_sum(total.pairs, more.pairs),
                      saturating_sum(total.bits, more.bits)};
  check(sum.pairs, options.max_pairs, "the pairs of all 'distinct' in the script are ");
  check(sum.bits, options.max_bits,
        "the bits of conversions and wide constants in the script are ");
  total = sum;
}

}  // namespace quill::smt2
