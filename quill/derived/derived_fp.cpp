// The expansions of derived_fp.h.

#include "quill/derived/derived_fp.h"

#include <cstdint>
#include <new>

#include "quill/terms/termmanager/misuse_checks.h"
#include "quill/terms/termmanager/result_widths.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/bv_number.h"
#include "quill/utils/gmp_integer.h"
#include "quill/utils/ieee_float.h"
#include "quill/utils/qnumber.h"

namespace quill {

namespace {

IEEEFloat::format format_of(const TermManager& m, const Term_* t, const char* where) {
  require_own(m, t);
  IEEEFloat::format format;
  if (!m.is_fp_type(t->type(), &format.e, &format.m)) {
    throw TermManager::error("type error. term ")
        << t->to_shallow_str() << " is not a FP (" << where << ")";
  }
  return format;
}

size_t width_of(const TermManager& m, const Term_* t, const char* where) {
  require_own(m, t);
  size_t width = 0;
  if (!m.is_bv_type(t->type(), &width)) {
    throw TermManager::error("type error. term ")
        << t->to_shallow_str() << " is not a bit-vector (" << where << ")";
  }
  return width;
}

// The largest width of floating-point values, see ieee_float.h.
constexpr uint64_t max_bits = uint64_t{1} << 32;

// bits becomes bits * 2^width + number.
void append(mpz_ptr bits, const QNumber& number, size_t width) {
  mpz_mul_2exp(bits, bits, width);
  if (number.is_big()) {
    mpz_add(bits, bits, number.big_num());
  } else {
    mpz_add_ui(bits, bits, static_cast<unsigned long>(number.num));
  }
}

// The bits of 2^w, or of the largest finite value if the format does not reach 2^w. The exponent
// field of 2^w exceeds the bias, 2^(e-1) - 1, by w.
QNumber limit_bits(IEEEFloat::format format, size_t w) {
  GmpInteger bias;
  mpz_setbit(bias, format.e - 1);
  mpz_sub_ui(bias, bias, 1);
  GmpInteger bits;
  if (mpz_cmp_ui(bias, w) >= 0) {
    mpz_add_ui(bits, bias, w);
    mpz_mul_2exp(bits, bits, format.m);
  } else {
    // One less than infinity, whose exponent field is all ones.
    mpz_setbit(bits, format.e);
    mpz_sub_ui(bits, bits, 1);
    mpz_mul_2exp(bits, bits, format.m);
    mpz_sub_ui(bits, bits, 1);
  }
  return QNumber(bits);
}

}  // namespace

const Term_* make_fp_geq(TermManager& m, const Term_* a, const Term_* b) {
  return m.make_fp_le(b, a);
}

const Term_* make_fp_gt(TermManager& m, const Term_* a, const Term_* b) {
  return m.make_fp_lt(b, a);
}

const Term_* make_fp_plus_zero(TermManager& m, size_t e, size_t mantissa) {
  return m.make_fp_bits_number(QNumber(0), e, mantissa);
}

const Term_* make_fp_minus_zero(TermManager& m, size_t e, size_t mantissa) {
  QNumber bits;
  BVNumber::pow2(ieee_width(e, mantissa) - 1, &bits);
  return m.make_fp_bits_number(bits, e, mantissa);
}

const Term_* make_fp_from_parts(TermManager& m, const Term_* sign, const Term_* exponent,
                                const Term_* significand) {
  require_own(m, {sign, exponent, significand});
  constexpr const char* where = "make_fp_from_parts";
  if (m.get_typecheck_enabled()) m.typecheck(sign, m.get_bv_type(1), where);
  const size_t e = width_of(m, exponent, where);
  const size_t mantissa = width_of(m, significand, where);
  QNumber parts[3];
  if (m.is_number(sign->symbol, &parts[0]) && m.is_number(exponent->symbol, &parts[1]) &&
      m.is_number(significand->symbol, &parts[2])) {
    if (ieee_width(e, mantissa) > max_bits) throw std::bad_alloc();
    GmpInteger bits;
    append(bits, parts[0], 1);
    append(bits, parts[1], e);
    append(bits, parts[2], mantissa);
    return m.make_fp_bits_number(QNumber(bits), e, mantissa);
  }
  const Term_* head = m.make_bv_concat(sign, exponent);
  const Term_* bits = m.make_bv_concat(head, significand);
  return m.make_fp_from_ieeebv(e, mantissa, bits);
}

const Term_* make_fp_to_ubv(TermManager& m, size_t w, const Term_* rm, const Term_* a,
                            const Term_* undefined) {
  require_own(m, {rm, a, undefined});
  constexpr const char* where = "make_fp_to_ubv";
  const IEEEFloat::format format = format_of(m, a, where);
  if (w == 0 || w > SIZE_MAX - 2) {
    throw TermManager::error("can't convert to a bit-vector of width ")
        << w << " (" << where << ")";
  }
  if (m.get_typecheck_enabled()) m.typecheck(undefined, m.get_bv_type(w), where);
  // Exact in any mode: -1 is a value of every format. This call also throws for formats that are
  // too wide for limit_bits.
  const Term_* even = m.make_fprounding_even();
  const Term_* minus_one = m.make_fp_rat_number(QNumber(-1), format.e, format.m, even);
  const Term_* limit = m.make_fp_bits_number(limit_bits(format, w), format.e, format.m);
  const Term_* above = m.make_fp_le(minus_one, a);
  const Term_* below = m.make_fp_le(a, limit);
  const Term_* wide = m.make_fp_to_bv(w + 2, rm, a);
  const Term_* top = m.make_bv_extract(w + 1, w, wide);
  const Term_* zero = m.make_bv_number(QNumber(0), 2);
  const Term_* fits = m.make_equal(top, zero);
  const Term_* bounded = m.make_and(above, below);
  const Term_* defined = m.make_and(bounded, fits);
  const Term_* result = m.make_bv_extract(w - 1, 0, wide);
  return m.make_term_ite(defined, result, undefined);
}

const Term_* make_fp_with_one_nan(TermManager& m, const Term_* a) {
  const IEEEFloat::format format = format_of(m, a, "make_fp_with_one_nan");
  return m.make_term_ite(m.make_fp_isnan(a), m.make_fp_nan(format.e, format.m), a);
}

const Term_* make_fp_to_ubv(TermManager& m, size_t w, const Term_* rm, const Term_* a) {
  require_own(m, {rm, a});
  const IEEEFloat::format format = format_of(m, a, "make_fp_to_ubv");
  const Symbol* function = make_undefined_fp_to_ubv_symbol(m, format.e, format.m, w);
  const Term_* argument = make_fp_with_one_nan(m, a);
  return make_fp_to_ubv(m, w, rm, a, m.make_uninterpreted_function(function, {rm, argument}));
}

std::string undefined_fp_to_ubv_name(size_t e, size_t mantissa, size_t w) {
  return "quill!fp_to_ubv_" + std::to_string(e) + "_" + std::to_string(mantissa) + "_" +
         std::to_string(w);
}

const DataType* undefined_fp_to_ubv_type(TermManager& m, size_t e, size_t mantissa, size_t w) {
  const DataType* operand = m.get_fp_type(e, mantissa);
  const DataType* result = m.get_bv_type(w);
  return m.get_function_type({m.get_fprounding_type(), operand}, result);
}

const Symbol* make_undefined_fp_to_ubv_symbol(TermManager& m, size_t e, size_t mantissa, size_t w) {
  const DataType* type = undefined_fp_to_ubv_type(m, e, mantissa, w);
  return m.make_symbol(undefined_fp_to_ubv_name(e, mantissa, w), type);
}

}  // namespace quill
