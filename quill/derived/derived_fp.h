// Operators of SMT-LIB 2.6's theory FloatingPoint that the term manager has no symbol for. Each is
// built from symbols that the manager has; see derived.h.
//
// Formats (e, m) are those of TermManager::get_fp_type: m counts the significand's bits without the
// hidden bit.

#ifndef QUILL_DERIVED_DERIVED_FP_H
#define QUILL_DERIVED_DERIVED_FP_H

#include <cstddef>
#include <string>

#include "quill/terms/data_type.h"
#include "quill/terms/symbol.h"
#include "quill/terms/term.h"

namespace quill {

class TermManager;

// a >= b is b <= a;  a > b is b < a. Both are false where a or b is NaN.
const Term_* make_fp_geq(TermManager& m, const Term_* a, const Term_* b);
const Term_* make_fp_gt(TermManager& m, const Term_* a, const Term_* b);

// The zeros of the format, as numerals.
const Term_* make_fp_plus_zero(TermManager& m, size_t e, size_t mantissa);
const Term_* make_fp_minus_zero(TermManager& m, size_t e, size_t mantissa);

// The value made of three bit-vectors. The sign has one bit; the widths of the other two are the
// format. The result is a numeral if all three are numerals, otherwise make_fp_from_ieeebv of their
// concatenation, (sign exponent) significand.
const Term_* make_fp_from_parts(TermManager& m, const Term_* sign, const Term_* exponent,
                                const Term_* significand);

// The float rounded to an integral value in the mode rm, as an unsigned number of w bits (SMT-LIB:
// fp.to_ubv); `undefined` if that value does not fit, and for infinities and NaN. r is the
// conversion of the float to a signed number of w + 2 bits; limit is the float 2^w, or the largest
// finite float if the format does not reach 2^w:
//
//   ite(((-1.0 <= a) and (a <= limit)) and (r[w+1:w] = 00), r[w-1:0], undefined)
//
// The comparisons ensure that r is defined: it lies in -1 .. 2^w, which fits into w + 2 bits, and
// its two top bits are zero exactly for 0 .. 2^w - 1. Throws when w is 0 or w + 2 is not a valid
// width.
const Term_* make_fp_to_ubv(TermManager& m, size_t w, const Term_* rm, const Term_* a,
                            const Term_* undefined);

// The float as an argument of a function: ite(isnan(a), NaN, a). All NaNs are one value, but some
// solvers take the bits of arguments for their values and tell NaNs apart.
const Term_* make_fp_with_one_nan(TermManager& m, const Term_* a);

// The same with a function symbol for the undefined values, which may depend on the mode and the
// float but are the same throughout:
//
//   quill!fp_to_ubv_E_M_W  (FPRounding (FP E M)) (BitVec W)
//
// The function is applied to the mode and to make_fp_with_one_nan of the float. Throws when a
// symbol of another type has the name.
const Term_* make_fp_to_ubv(TermManager& m, size_t w, const Term_* rm, const Term_* a);
std::string undefined_fp_to_ubv_name(size_t e, size_t mantissa, size_t w);
const DataType* undefined_fp_to_ubv_type(TermManager& m, size_t e, size_t mantissa, size_t w);
const Symbol* make_undefined_fp_to_ubv_symbol(TermManager& m, size_t e, size_t mantissa, size_t w);

}  // namespace quill

#endif
