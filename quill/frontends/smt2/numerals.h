// Arithmetic on the numerals of an input: what (- 3) and (/ 1 3) spell.
//
// SMT-LIB has neither negative numerals nor fractions; the manager has both. The results are in the
// form in which the manager keys its numerals.
//
// What would be much longer than both of its operands and than 65536 bits is refused with
// Exception.
//
// Constant divisors and, in linear logics, constant factors may be sums and products, too.

#ifndef QUILL_FRONTENDS_SMT2_NUMERALS_H
#define QUILL_FRONTENDS_SMT2_NUMERALS_H

#include <cstdint>
#include <string_view>

#include "quill/terms/term.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/qnumber.h"

namespace quill::smt2 {

QNumber negated(const QNumber& number);
QNumber sum(const QNumber& a, const QNumber& b);
QNumber product(const QNumber& a, const QNumber& b);

// Precondition: the divisor is not zero.
QNumber quotient(const QNumber& dividend, const QNumber& divisor);

// The number that the digits, at least one, spell in base 2 or 16; upper and lower case are alike.
QNumber number_from_digits(std::string_view digits, int base);

// Whether the integer, which is not negative, is less than 2^width.
bool fits_into_bits(const QNumber& number, uint64_t width);

// The value of a numeral, or of sums and products of a few dozen numerals. False for other terms,
// and for larger ones.
bool constant_value(const TermManager& manager, const Term_* t, QNumber& value);

}  // namespace quill::smt2

#endif
