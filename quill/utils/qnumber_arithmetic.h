// Arithmetic on exact rational numbers, and their conversion to GMP's numbers, machine words,
// digits and bits.
//
//   QNumber mean = numbers::quotient(numbers::sum(a, b), 2);
//
// They are in a namespace of their own, so that a program that has a sum of its own keeps it.
// Operands may have any form, unnormalised ones included. Results are canonical (see qnumber.h):
// normalised, and small whenever the value fits, so that equal results are equal keys.
//
// Small operands whose result is small need neither GMP nor memory. The other operations take the
// time of GMP's: linear for sums, comparisons and bits, a little more for products and quotients,
// and for the greatest common divisor that normalises a fraction. They throw std::bad_alloc when
// there is no memory for a result, as far as GMP lets them; a power of two is limited as BVNumber
// says.

#ifndef QUILL_UTILS_QNUMBER_ARITHMETIC_H
#define QUILL_UTILS_QNUMBER_ARITHMETIC_H

#include <gmp.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "quill/utils/qnumber.h"

namespace quill::numbers {

// ----- arithmetic -------------------------------------------------------------------------------

QNumber negated(const QNumber& a);
QNumber absolute(const QNumber& a);
QNumber sum(const QNumber& a, const QNumber& b);
QNumber difference(const QNumber& a, const QNumber& b);
QNumber product(const QNumber& a, const QNumber& b);

// These three throw Exception for division by zero.
QNumber reciprocal(const QNumber& a);
QNumber quotient(const QNumber& a, const QNumber& b);
// The largest integer that is not above a / b, and what is left: a - b * floor_quotient(a, b),
// which is 0 or has the sign of b.
QNumber floor_quotient(const QNumber& a, const QNumber& b);
QNumber floor_remainder(const QNumber& a, const QNumber& b);

// The largest integer that is not above a.
QNumber floor_of(const QNumber& a);

// 2^n. Throws std::bad_alloc for n above 2^32.
QNumber power_of_two(uint64_t n);

// Less than, equal to or greater than 0 when a is less than, equal to or greater than b in value.
int compare(const QNumber& a, const QNumber& b);

// ----- GMP and machine words --------------------------------------------------------------------

// Stores the parts of a, as it is, unreduced if it is unnormalised.
void get_numerator(mpz_ptr out, const QNumber& a);
void get_denominator(mpz_ptr out, const QNumber& a);
// Stores the value, reduced. The target must have been initialised.
void get_rational(mpq_ptr out, const QNumber& a);

QNumber from_integer(mpz_srcptr a);
// Throws Exception when d is 0.
QNumber from_fraction(mpz_srcptr n, mpz_srcptr d);
QNumber from_rational(mpq_srcptr a);

// The value, if it is an integer that fits.
std::optional<int64_t> to_int64(const QNumber& a);
std::optional<uint64_t> to_uint64(const QNumber& a);

// ----- digits and bits of integers --------------------------------------------------------------

// The integer that the digits spell in base 2, 10 or 16, after an optional "-"; letters may be
// capital or small. Throws Exception for another text. No prefix is read or written.
QNumber from_digits(std::string_view text, int base);

// Digits in base 2, 10 or 16, small letters, with a "-" before those of a negative number. With
// num_digits, zeros in front fill up to so many. Throws Exception for fractions.
std::string to_digits(const QNumber& a, int base, uint64_t num_digits = 0);

// How many bits the absolute value of an integer has; 0 for 0.
uint64_t bit_length(const QNumber& a);

// The bit of weight 2^i of an integer in two's complement, which continues with its sign for ever.
bool test_bit(const QNumber& a, uint64_t i);

}  // namespace quill::numbers

#endif
