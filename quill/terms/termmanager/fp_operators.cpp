// The operators on floating-point values of one format, and the rounding modes.

#include "quill/terms/termmanager/family_builders.h"
#include "quill/terms/termmanager/misuse_checks.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill {

// Beside its callers, into which it is inlined.
bool TermManager::is_fp_symbol(const hsh::HashMap<const Symbol*, IEEEFloat::format>& by_symbol,
                               const Symbol* s, size_t* e, size_t* m) const {
  require_own(*this, s);
  const auto found = by_symbol.find(s);
  if (found == by_symbol.end()) return false;
  if (e != nullptr) *e = found->second.e;
  if (m != nullptr) *m = found->second.m;
  return true;
}

const Symbol* TermManager::make_fp_equal_symbol(size_t e, size_t m) {
  return format_symbol<SymbolTag::FP_EQUAL>(e, m);
}
const Term_* TermManager::make_fp_equal(const Term_* a, const Term_* b) {
  return fp_with<SymbolTag::FP_EQUAL>(a, {a, b});
}
bool TermManager::is_fp_equal(const Symbol* s, size_t* e, size_t* m) const {
  return is_fp_symbol(format_families[family_slot(SymbolTag::FP_EQUAL)].by_symbol, s, e, m);
}

const Symbol* TermManager::make_fp_lt_symbol(size_t e, size_t m) {
  return format_symbol<SymbolTag::FP_LT>(e, m);
}
const Term_* TermManager::make_fp_lt(const Term_* a, const Term_* b) {
  return fp_with<SymbolTag::FP_LT>(a, {a, b});
}
bool TermManager::is_fp_lt(const Symbol* s, size_t* e, size_t* m) const {
  return is_fp_symbol(format_families[family_slot(SymbolTag::FP_LT)].by_symbol, s, e, m);
}

const Symbol* TermManager::make_fp_le_symbol(size_t e, size_t m) {
  return format_symbol<SymbolTag::FP_LE>(e, m);
}
const Term_* TermManager::make_fp_le(const Term_* a, const Term_* b) {
  return fp_with<SymbolTag::FP_LE>(a, {a, b});
}
bool TermManager::is_fp_le(const Symbol* s, size_t* e, size_t* m) const {
  return is_fp_symbol(format_families[family_slot(SymbolTag::FP_LE)].by_symbol, s, e, m);
}

const Symbol* TermManager::make_fp_neg_symbol(size_t e, size_t m) {
  return format_symbol<SymbolTag::FP_NEG>(e, m);
}
const Term_* TermManager::make_fp_neg(const Term_* t) { return fp_with<SymbolTag::FP_NEG>(t, {t}); }
bool TermManager::is_fp_neg(const Symbol* s, size_t* e, size_t* m) const {
  return is_fp_symbol(format_families[family_slot(SymbolTag::FP_NEG)].by_symbol, s, e, m);
}

const Symbol* TermManager::make_fp_add_symbol(size_t e, size_t m) {
  return format_symbol<SymbolTag::FP_ADD>(e, m);
}
const Term_* TermManager::make_fp_add(const Term_* rm, const Term_* a, const Term_* b) {
  return fp_with<SymbolTag::FP_ADD>(a, {rm, a, b});
}
bool TermManager::is_fp_add(const Symbol* s, size_t* e, size_t* m) const {
  return is_fp_symbol(format_families[family_slot(SymbolTag::FP_ADD)].by_symbol, s, e, m);
}

const Symbol* TermManager::make_fp_sub_symbol(size_t e, size_t m) {
  return format_symbol<SymbolTag::FP_SUB>(e, m);
}
const Term_* TermManager::make_fp_sub(const Term_* rm, const Term_* a, const Term_* b) {
  return fp_with<SymbolTag::FP_SUB>(a, {rm, a, b});
}
bool TermManager::is_fp_sub(const Symbol* s, size_t* e, size_t* m) const {
  return is_fp_symbol(format_families[family_slot(SymbolTag::FP_SUB)].by_symbol, s, e, m);
}

const Symbol* TermManager::make_fp_mul_symbol(size_t e, size_t m) {
  return format_symbol<SymbolTag::FP_MUL>(e, m);
}
const Term_* TermManager::make_fp_mul(const Term_* rm, const Term_* a, const Term_* b) {
  return fp_with<SymbolTag::FP_MUL>(a, {rm, a, b});
}
bool TermManager::is_fp_mul(const Symbol* s, size_t* e, size_t* m) const {
  return is_fp_symbol(format_families[family_slot(SymbolTag::FP_MUL)].by_symbol, s, e, m);
}

const Symbol* TermManager::make_fp_div_symbol(size_t e, size_t m) {
  return format_symbol<SymbolTag::FP_DIV>(e, m);
}
const Term_* TermManager::make_fp_div(const Term_* rm, const Term_* a, const Term_* b) {
  return fp_with<SymbolTag::FP_DIV>(a, {rm, a, b});
}
bool TermManager::is_fp_div(const Symbol* s, size_t* e, size_t* m) const {
  return is_fp_symbol(format_families[family_slot(SymbolTag::FP_DIV)].by_symbol, s, e, m);
}

const Symbol* TermManager::make_fp_sqrt_symbol(size_t e, size_t m) {
  return format_symbol<SymbolTag::FP_SQRT>(e, m);
}
const Term_* TermManager::make_fp_sqrt(const Term_* rm, const Term_* t) {
  return fp_with<SymbolTag::FP_SQRT>(t, {rm, t});
}
bool TermManager::is_fp_sqrt(const Symbol* s, size_t* e, size_t* m) const {
  return is_fp_symbol(format_families[family_slot(SymbolTag::FP_SQRT)].by_symbol, s, e, m);
}

const Symbol* TermManager::make_fp_abs_symbol(size_t e, size_t m) {
  return format_symbol<SymbolTag::FP_ABS>(e, m);
}
const Term_* TermManager::make_fp_abs(const Term_* t) { return fp_with<SymbolTag::FP_ABS>(t, {t}); }
bool TermManager::is_fp_abs(const Symbol* s, size_t* e, size_t* m) const {
  return is_fp_symbol(format_families[family_slot(SymbolTag::FP_ABS)].by_symbol, s, e, m);
}

const Symbol* TermManager::make_fp_min_symbol(size_t e, size_t m) {
  return format_symbol<SymbolTag::FP_MIN>(e, m);
}
const Term_* TermManager::make_fp_min(const Term_* a, const Term_* b) {
  return fp_with<SymbolTag::FP_MIN>(a, {a, b});
}
bool TermManager::is_fp_min(const Symbol* s, size_t* e, size_t* m) const {
  return is_fp_symbol(format_families[family_slot(SymbolTag::FP_MIN)].by_symbol, s, e, m);
}

const Symbol* TermManager::make_fp_max_symbol(size_t e, size_t m) {
  return format_symbol<SymbolTag::FP_MAX>(e, m);
}
const Term_* TermManager::make_fp_max(const Term_* a, const Term_* b) {
  return fp_with<SymbolTag::FP_MAX>(a, {a, b});
}
bool TermManager::is_fp_max(const Symbol* s, size_t* e, size_t* m) const {
  return is_fp_symbol(format_families[family_slot(SymbolTag::FP_MAX)].by_symbol, s, e, m);
}

const Symbol* TermManager::make_fp_round_to_int_symbol(size_t e, size_t m) {
  return format_symbol<SymbolTag::FP_ROUND_TO_INT>(e, m);
}
const Term_* TermManager::make_fp_round_to_int(const Term_* rm, const Term_* t) {
  return fp_with<SymbolTag::FP_ROUND_TO_INT>(t, {rm, t});
}
bool TermManager::is_fp_round_to_int(const Symbol* s, size_t* e, size_t* m) const {
  return is_fp_symbol(format_families[family_slot(SymbolTag::FP_ROUND_TO_INT)].by_symbol, s, e, m);
}

const Symbol* TermManager::make_fp_isnan_symbol(size_t e, size_t m) {
  return format_symbol<SymbolTag::FP_ISNAN>(e, m);
}
const Term_* TermManager::make_fp_isnan(const Term_* t) {
  return fp_with<SymbolTag::FP_ISNAN>(t, {t});
}
bool TermManager::is_fp_isnan(const Symbol* s, size_t* e, size_t* m) const {
  return is_fp_symbol(format_families[family_slot(SymbolTag::FP_ISNAN)].by_symbol, s, e, m);
}

const Symbol* TermManager::make_fp_isinf_symbol(size_t e, size_t m) {
  return format_symbol<SymbolTag::FP_ISINF>(e, m);
}
const Term_* TermManager::make_fp_isinf(const Term_* t) {
  return fp_with<SymbolTag::FP_ISINF>(t, {t});
}
bool TermManager::is_fp_isinf(const Symbol* s, size_t* e, size_t* m) const {
  return is_fp_symbol(format_families[family_slot(SymbolTag::FP_ISINF)].by_symbol, s, e, m);
}

const Symbol* TermManager::make_fp_iszero_symbol(size_t e, size_t m) {
  return format_symbol<SymbolTag::FP_ISZERO>(e, m);
}
const Term_* TermManager::make_fp_iszero(const Term_* t) {
  return fp_with<SymbolTag::FP_ISZERO>(t, {t});
}
bool TermManager::is_fp_iszero(const Symbol* s, size_t* e, size_t* m) const {
  return is_fp_symbol(format_families[family_slot(SymbolTag::FP_ISZERO)].by_symbol, s, e, m);
}

const Symbol* TermManager::make_fp_issubnormal_symbol(size_t e, size_t m) {
  return format_symbol<SymbolTag::FP_ISSUBNORMAL>(e, m);
}
const Term_* TermManager::make_fp_issubnormal(const Term_* t) {
  return fp_with<SymbolTag::FP_ISSUBNORMAL>(t, {t});
}
bool TermManager::is_fp_issubnormal(const Symbol* s, size_t* e, size_t* m) const {
  return is_fp_symbol(format_families[family_slot(SymbolTag::FP_ISSUBNORMAL)].by_symbol, s, e, m);
}

const Symbol* TermManager::make_fp_isnormal_symbol(size_t e, size_t m) {
  return format_symbol<SymbolTag::FP_ISNORMAL>(e, m);
}
const Term_* TermManager::make_fp_isnormal(const Term_* t) {
  return fp_with<SymbolTag::FP_ISNORMAL>(t, {t});
}
bool TermManager::is_fp_isnormal(const Symbol* s, size_t* e, size_t* m) const {
  return is_fp_symbol(format_families[family_slot(SymbolTag::FP_ISNORMAL)].by_symbol, s, e, m);
}

const Symbol* TermManager::make_fp_isneg_symbol(size_t e, size_t m) {
  return format_symbol<SymbolTag::FP_ISNEG>(e, m);
}
const Term_* TermManager::make_fp_isneg(const Term_* t) {
  return fp_with<SymbolTag::FP_ISNEG>(t, {t});
}
bool TermManager::is_fp_isneg(const Symbol* s, size_t* e, size_t* m) const {
  return is_fp_symbol(format_families[family_slot(SymbolTag::FP_ISNEG)].by_symbol, s, e, m);
}

const Symbol* TermManager::make_fp_ispos_symbol(size_t e, size_t m) {
  return format_symbol<SymbolTag::FP_ISPOS>(e, m);
}
const Term_* TermManager::make_fp_ispos(const Term_* t) {
  return fp_with<SymbolTag::FP_ISPOS>(t, {t});
}
bool TermManager::is_fp_ispos(const Symbol* s, size_t* e, size_t* m) const {
  return is_fp_symbol(format_families[family_slot(SymbolTag::FP_ISPOS)].by_symbol, s, e, m);
}

const Symbol* TermManager::get_fprounding_even() const { return rounding_symbols[0]; }
const Symbol* TermManager::get_fprounding_zero() const { return rounding_symbols[1]; }
const Symbol* TermManager::get_fprounding_plus_inf() const { return rounding_symbols[2]; }
const Symbol* TermManager::get_fprounding_minus_inf() const { return rounding_symbols[3]; }

const Symbol* TermManager::make_fprounding_even_symbol() const { return rounding_symbols[0]; }
const Symbol* TermManager::make_fprounding_zero_symbol() const { return rounding_symbols[1]; }
const Symbol* TermManager::make_fprounding_plus_inf_symbol() const { return rounding_symbols[2]; }
const Symbol* TermManager::make_fprounding_minus_inf_symbol() const { return rounding_symbols[3]; }

const Term_* TermManager::make_fprounding_even() { return make_constant(rounding_symbols[0]); }
const Term_* TermManager::make_fprounding_zero() { return make_constant(rounding_symbols[1]); }
const Term_* TermManager::make_fprounding_plus_inf() { return make_constant(rounding_symbols[2]); }
const Term_* TermManager::make_fprounding_minus_inf() { return make_constant(rounding_symbols[3]); }

bool TermManager::is_fprounding_even(const Symbol* s) const {
  require_own(*this, s);
  return s == rounding_symbols[0];
}
bool TermManager::is_fprounding_zero(const Symbol* s) const {
  require_own(*this, s);
  return s == rounding_symbols[1];
}
bool TermManager::is_fprounding_plus_inf(const Symbol* s) const {
  require_own(*this, s);
  return s == rounding_symbols[2];
}
bool TermManager::is_fprounding_minus_inf(const Symbol* s) const {
  require_own(*this, s);
  return s == rounding_symbols[3];
}

}  // namespace quill
