// Arithmetic on the numerals of an input: computes what (- 3) and (/ 1 3) spell.
//
// SMT-LIB has neither negative numerals nor fractions; the manager has both. The results have the
// form in which the manager keys its numerals.
//
// Throws Exception for results that would be much longer than both operands and than 65536 bits.
//
// Constant divisors and, in linear logics, constant factors may also be sums and products.

#ifndef QUILL_FRONTENDS_SMT2_NUMERALS_H
#define QUILL_FRONTENDS_SMT2_NUMERALS_H

#include "quill/terms/term.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/qnumber.h"

namespace quill::smt2 {

// The divisor must not be zero.
QNumber quotient(const QNumber& dividend, const QNumber& divisor);

// The value of a numeral, or of sums and products of a few dozen numerals. Returns false for other
// terms and for larger ones.
bool constant_value(const TermManager& manager, const Term_* t, QNumber& value);

}  // namespace quill::smt2

#endif
