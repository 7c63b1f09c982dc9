#include "quill/frontends/smt2/numerals.h"

#include <algorithm>
#include <cassert>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string>
#include <system_error>

#include "quill/smtlib/operator_texts.h"
#include "quill/utils/exception.h"
#include "quill/utils/gmp_integer.h"

namespace quill::smt2 {

namespace {

void load(mpz_ptr target, mpz_srcptr big_part, int64_t small_part, bool big) {
  if (big) {
    mpz_set(target, big_part);
  } else {
    static_assert(sizeof(long) == sizeof(int64_t));
    mpz_set_si(target, static_cast<long>(small_part));
  }
}

void load_numerator(mpz_ptr target, const QNumber& q) {
  load(target, q.is_big() ? q.big_num() : nullptr, q.num, q.is_big());
}

void load_denominator(mpz_ptr target, const QNumber& q) {
  load(target, q.is_big() ? q.big_den() : nullptr, q.den, q.is_big());
}

// The length of a number in bits.
size_t length(const QNumber& q) {
  if (!q.is_big()) return 64;
  return std::max(mpz_sizeinbase(q.big_num(), 2), mpz_sizeinbase(q.big_den(), 2));
}

QNumber fraction(mpz_srcptr numerator, mpz_srcptr denominator) {
  QNumber result(numerator, denominator);
  result.normalize();
  // Goes through the text, because a number does not become small by itself.
  return QNumber::from_string(result.to_str());
}

constexpr size_t longest_computed = size_t{1} << 16;

// Terms are shared: without a bound, n lets of a few bytes could square a number n times. A number
// that the input spells out may have any length.
QNumber fraction(mpz_srcptr numerator, mpz_srcptr denominator, const QNumber& a, const QNumber& b) {
  const QNumber result = fraction(numerator, denominator);
  const size_t longest = std::max(longest_computed, 64 + std::max(length(a), length(b)));
  if (length(result) > longest) {
    throw Exception("unsupported: a number of more than ")
        << longest_computed << " bits that is computed from others";
  }
  return result;
}

__extension__ using int128 = __int128;

// Whether the parts, which need not be reduced, fit into words. If so, sets result to the fraction.
bool small_fraction(int128 numerator, int128 denominator, QNumber& result) {
  constexpr int128 largest = INT64_MAX;
  if (numerator < -largest || numerator > largest || denominator < -largest ||
      denominator > largest) {
    return false;
  }
  result = QNumber(static_cast<int64_t>(numerator), static_cast<int64_t>(denominator));
  result.normalize();
  return true;
}

constexpr unsigned largest_constant = 64;  // in terms

// The recursion depth is bounded by the budget.
bool evaluate(const TermManager& manager, const Term_* t, QNumber& value, unsigned& budget) {
  if (budget == 0) return false;
  budget--;
  if (manager.is_number(t->symbol, &value)) return !manager.is_bv_type(t->symbol->type, nullptr);
  const SymbolTag::tag tag = operator_tag(manager, t->symbol);
  if (tag != SymbolTag::PLUS && tag != SymbolTag::TIMES) return false;
  QNumber left;
  QNumber right;
  if (!evaluate(manager, t->args[0], left, budget) ||
      !evaluate(manager, t->args[1], right, budget)) {
    return false;
  }
  value = tag == SymbolTag::PLUS ? sum(left, right) : product(left, right);
  return true;
}

}  // namespace

QNumber negated(const QNumber& number) {
  if (!number.is_big()) return QNumber(-number.num, number.den);
  const std::string text = number.to_str();
  return QNumber::from_string(text[0] == '-' ? text.substr(1) : "-" + text);
}

QNumber sum(const QNumber& a, const QNumber& b) {
  QNumber result;
  if (!a.is_big() && !b.is_big() &&
      small_fraction(int128{a.num} * b.den + int128{b.num} * a.den, int128{a.den} * b.den,
                     result)) {
    return result;
  }
  GmpInteger numerator, denominator, other, factor;
  load_numerator(numerator, a);
  load_denominator(factor, b);
  mpz_mul(numerator, numerator, factor);
  load_numerator(other, b);
  load_denominator(denominator, a);
  mpz_mul(other, other, denominator);
  mpz_add(numerator, numerator, other);
  mpz_mul(denominator, denominator, factor);
  return fraction(numerator, denominator, a, b);
}

QNumber product(const QNumber& a, const QNumber& b) {
  QNumber result;
  if (!a.is_big() && !b.is_big() &&
      small_fraction(int128{a.num} * b.num, int128{a.den} * b.den, result)) {
    return result;
  }
  GmpInteger numerator, denominator, factor;
  load_numerator(numerator, a);
  load_numerator(factor, b);
  mpz_mul(numerator, numerator, factor);
  load_denominator(denominator, a);
  load_denominator(factor, b);
  mpz_mul(denominator, denominator, factor);
  return fraction(numerator, denominator, a, b);
}

QNumber quotient(const QNumber& dividend, const QNumber& divisor) {
  assert(!divisor.is_zero());
  QNumber result;
  if (!dividend.is_big() && !divisor.is_big() &&
      small_fraction(int128{dividend.num} * divisor.den, int128{dividend.den} * divisor.num,
                     result)) {
    return result;
  }
  GmpInteger numerator, denominator, factor;
  load_numerator(numerator, dividend);
  load_denominator(factor, divisor);
  mpz_mul(numerator, numerator, factor);
  load_denominator(denominator, dividend);
  load_numerator(factor, divisor);
  mpz_mul(denominator, denominator, factor);
  return fraction(numerator, denominator, dividend, divisor);
}

QNumber number_from_digits(std::string_view digits, int base) {
  int64_t small = 0;
  const char* end = digits.data() + digits.size();
  if (std::from_chars(digits.data(), end, small, base).ec == std::errc()) return QNumber(small);
  GmpInteger value;
  [[maybe_unused]] const int status = mpz_set_str(value, std::string(digits).c_str(), base);
  assert(status == 0);
  GmpInteger one;
  mpz_set_ui(one, 1);
  return fraction(value, one);
}

bool fits_into_bits(const QNumber& number, uint64_t width) {
  GmpInteger value;
  load_numerator(value, number);
  return mpz_sgn(static_cast<mpz_srcptr>(value)) == 0 || mpz_sizeinbase(value, 2) <= width;
}

bool constant_value(const TermManager& manager, const Term_* t, QNumber& value) {
  unsigned budget = largest_constant;
  return evaluate(manager, t, value, budget);
}

}  // namespace quill::smt2
