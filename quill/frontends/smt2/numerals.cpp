#include "quill/frontends/smt2/numerals.h"

#include <algorithm>
#include <cstddef>

#include "quill/smtlib/operator_texts.h"
#include "quill/utils/exception.h"
#include "quill/utils/qnumber_arithmetic.h"

namespace quill::smt2 {

namespace {

// The length of a number in bits.
size_t length(const QNumber& q) {
  if (!q.is_big()) return 64;
  return std::max(mpz_sizeinbase(q.big_num(), 2), mpz_sizeinbase(q.big_den(), 2));
}

constexpr size_t longest_computed = size_t{1} << 16;

// Terms are shared: without a bound, n lets of a few bytes could square a number n times. A number
// that the input spells out may have any length.
QNumber bounded(QNumber result, const QNumber& a, const QNumber& b) {
  const size_t longest = std::max(longest_computed, 64 + std::max(length(a), length(b)));
  if (length(result) > longest) {
    throw Exception("unsupported: a number of more than ")
        << longest_computed << " bits that is computed from others";
  }
  return result;
}

constexpr unsigned largest_constant = 64;  // in terms

// The recursion depth is bounded by the budget.
bool evaluate(const TermManager& manager, const Term_* t, QNumber& value, unsigned& budget) {
  if (budget == 0) return false;
  --budget;
  if (manager.is_number(t->symbol, &value)) return !manager.is_bv_type(t->symbol->type, nullptr);
  const SymbolTag::tag tag = operator_tag(manager, t->symbol);
  if (tag != SymbolTag::PLUS && tag != SymbolTag::TIMES) return false;
  QNumber left;
  QNumber right;
  if (!evaluate(manager, t->args[0], left, budget) ||
      !evaluate(manager, t->args[1], right, budget)) {
    return false;
  }
  value = tag == SymbolTag::PLUS ? bounded(numbers::sum(left, right), left, right)
                                 : bounded(numbers::product(left, right), left, right);
  return true;
}

}  // namespace

QNumber quotient(const QNumber& dividend, const QNumber& divisor) {
  return bounded(numbers::quotient(dividend, divisor), dividend, divisor);
}

bool constant_value(const TermManager& manager, const Term_* t, QNumber& value) {
  unsigned budget = largest_constant;
  return evaluate(manager, t, value, budget);
}

}  // namespace quill::smt2
