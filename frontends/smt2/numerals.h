// Arithmetic on the numerals of an input: what (- 3) and (/ 1 3) spell.
//
// SMT-LIB has neither negative numerals nor fractions; the manager has both. The results are in the
// form in which the manager keys its numerals.

#ifndef FRONTENDS_SMT2_NUMERALS_H
#define FRONTENDS_SMT2_NUMERALS_H

#include "quill/utils/qnumber.h"

namespace quill::smt2 {

QNumber negated(const QNumber& number);

// Precondition: the divisor is not zero.
QNumber quotient(const QNumber& dividend, const QNumber& divisor);

}  // namespace quill::smt2

#endif
