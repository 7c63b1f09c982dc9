// Arithmetic on the numerals of an input: what (/ 1 3) spells, and what constant terms come to.
//
// SMT-LIB has neither negative numerals nor fractions; the manager has both. What would be much
// longer than both of its operands and than 65536 bits is refused with Exception.
//
// Constant divisors and, in linear logics, constant factors may be sums and products, too.

#ifndef QUILL_FRONTENDS_SMT2_NUMERALS_H
#define QUILL_FRONTENDS_SMT2_NUMERALS_H

#include "quill/terms/term.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/qnumber.h"

namespace quill::smt2 {

// Precondition: the divisor is not zero.
QNumber quotient(const QNumber& dividend, const QNumber& divisor);

// The value of a numeral, or of sums and products of a few dozen numerals. False for other terms,
// and for larger ones.
bool constant_value(const TermManager& manager, const Term_* t, QNumber& value);

}  // namespace quill::smt2

#endif
