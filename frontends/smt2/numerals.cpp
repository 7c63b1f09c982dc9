#include "frontends/smt2/numerals.h"

#include <cassert>
#include <string>

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

}  // namespace

QNumber negated(const QNumber& number) {
  if (!number.is_big()) return QNumber(-number.num, number.den);
  const std::string text = number.to_str();
  return QNumber::from_string(text[0] == '-' ? text.substr(1) : "-" + text);
}

QNumber quotient(const QNumber& dividend, const QNumber& divisor) {
  assert(!divisor.is_zero());
  GmpInteger numerator, denominator, factor;
  load_numerator(numerator, dividend);
  load_denominator(factor, divisor);
  mpz_mul(numerator, numerator, factor);
  load_denominator(denominator, dividend);
  load_numerator(factor, divisor);
  mpz_mul(denominator, denominator, factor);
  QNumber result(static_cast<mpz_srcptr>(numerator), static_cast<mpz_srcptr>(denominator));
  result.normalize();
  // Through the text, because a number does not become small by itself.
  return QNumber::from_string(result.to_str());
}

}  // namespace quill::smt2
