// Builders of the conversions of theory FloatingPoint; see operators.h for how they are called.
//
//   ((_ to_fp e s) bits)         the value with these bits
//   ((_ to_fp e s) rm f)         from another format
//   ((_ to_fp e s) rm bv)        from a signed number, to_fp_unsigned from an unsigned one
//   ((_ to_fp e s) rm c)         the numeral that the constant c of sort Real or Int rounds to; the
//                                mode must be one of the four constants
//   ((_ fp.to_sbv w) rm f)       the manager's conversion to a signed number
//   ((_ fp.to_ubv w) rm f)       through a wider signed number, see quill/derived/derived_fp.h; a
//                                function where out of range, see undefined_functions.h
//   (fp.to_ieee_bv f)            the bits; an operator that some readers have beyond the standard

#ifndef QUILL_FRONTENDS_SMT2_FP_CONVERSIONS_H
#define QUILL_FRONTENDS_SMT2_FP_CONVERSIONS_H

#include "quill/frontends/smt2/application.h"
#include "quill/frontends/smt2/term_builder.h"

namespace quill::smt2 {

Value build_to_fp(TermBuilder& b, const Application& a);
Value build_to_fp_unsigned(TermBuilder& b, const Application& a);
Value build_fp_to_sbv(TermBuilder& b, const Application& a);
Value build_fp_to_ubv(TermBuilder& b, const Application& a);
Value build_fp_to_ieee_bv(TermBuilder& b, const Application& a);

}  // namespace quill::smt2

#endif
