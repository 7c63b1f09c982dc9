// The operators on floating-point values of one format, and the rounding modes.

#include "quill/terms/termmanager/families.h"
#include "quill/terms/termmanager/misuse_checks.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill {

// In the same file as its callers, so that it is inlined into them.
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
  return Families::format_symbol<SymbolTag::FP_EQUAL>(*this, e, m);
}
const Term_* TermManager::make_fp_equal(const Term_* a, const Term_* b) {
  return Families::fp_with<SymbolTag::FP_EQUAL>(*this, a, {a, b});
}
bool TermManager::is_fp_equal(const Symbol* s, size_t* e, size_t* m) const {
  return Families::is_format_symbol<SymbolTag::FP_EQUAL>(*this, s, e, m);
}

const Symbol* TermManager::make_fp_lt_symbol(size_t e, size_t m) {
  return Families::format_symbol<SymbolTag::FP_LT>(*this, e, m);
}
const Term_* TermManager::make_fp_lt(const Term_* a, const Term_* b) {
  return Families::fp_with<SymbolTag::FP_LT>(*this, a, {a, b});
}
bool TermManager::is_fp_lt(const Symbol* s, size_t* e, size_t* m) const {
  return Families::is_format_symbol<SymbolTag::FP_LT>(*this, s, e, m);
}

const Symbol* TermManager::make_fp_le_symbol(size_t e, size_t m) {
  return Families::format_symbol<SymbolTag::FP_LE>(*this, e, m);
}
const Term_* TermManager::make_fp_le(const Term_* a, const Term_* b) {
  return Families::fp_with<SymbolTag::FP_LE>(*this, a, {a, b});
}
bool TermManager::is_fp_le(const Symbol* s, size_t* e, size_t* m) const {
  return Families::is_format_symbol<SymbolTag::FP_LE>(*this, s, e, m);
}

const Symbol* TermManager::make_fp_neg_symbol(size_t e, size_t m) {
  return Families::format_symbol<SymbolTag::FP_NEG>(*this, e, m);
}
const Term_* TermManager::make_fp_neg(const Term_* t) {
  return Families::fp_with<SymbolTag::FP_NEG>(*this, t, {t});
}
bool TermManager::is_fp_neg(const Symbol* s, size_t* e, size_t* m) const {
  return Families::is_format_symbol<SymbolTag::FP_NEG>(*this, s, e, m);
}

const Symbol* TermManager::make_fp_add_symbol(size_t e, size_t m) {
  return Families::format_symbol<SymbolTag::FP_ADD>(*this, e, m);
}
const Term_* TermManager::make_fp_add(const Term_* rm, const Term_* a, const Term_* b) {
  return Families::fp_with<SymbolTag::FP_ADD>(*this, a, {rm, a, b});
}
bool TermManager::is_fp_add(const Symbol* s, size_t* e, size_t* m) const {
  return Families::is_format_symbol<SymbolTag::FP_ADD>(*this, s, e, m);
}

const Symbol* TermManager::make_fp_sub_symbol(size_t e, size_t m) {
  return Families::format_symbol<SymbolTag::FP_SUB>(*this, e, m);
}
const Term_* TermManager::make_fp_sub(const Term_* rm, const Term_* a, const Term_* b) {
  return Families::fp_with<SymbolTag::FP_SUB>(*this, a, {rm, a, b});
}
bool TermManager::is_fp_sub(const Symbol* s, size_t* e, size_t* m) const {
  return Families::is_format_symbol<SymbolTag::FP_SUB>(*this, s, e, m);
}

const Symbol* TermManager::make_fp_mul_symbol(size_t e, size_t m) {
  return Families::format_symbol<SymbolTag::FP_MUL>(*this, e, m);
}
const Term_* TermManager::make_fp_mul(const Term_* rm, const Term_* a, const Term_* b) {
  return Families::fp_with<SymbolTag::FP_MUL>(*this, a, {rm, a, b});
}
bool TermManager::is_fp_mul(const Symbol* s, size_t* e, size_t* m) const {
  return Families::is_format_symbol<SymbolTag::FP_MUL>(*this, s, e, m);
}

const Symbol* TermManager::make_fp_div_symbol(size_t e, size_t m) {
  return Families::format_symbol<SymbolTag::FP_DIV>(*this, e, m);
}
const Term_* TermManager::make_fp_div(const Term_* rm, const Term_* a, const Term_* b) {
  return Families::fp_with<SymbolTag::FP_DIV>(*this, a, {rm, a, b});
}
bool TermManager::is_fp_div(const Symbol* s, size_t* e, size_t* m) const {
  return Families::is_format_symbol<SymbolTag::FP_DIV>(*this, s, e, m);
}

const Symbol* TermManager::make_fp_sqrt_symbol(size_t e, size_t m) {
  return Families::format_symbol<SymbolTag::FP_SQRT>(*this, e, m);
}
const Term_* TermManager::make_fp_sqrt(const Term_* rm, const Term_* t) {
  return Families::fp_with<SymbolTag::FP_SQRT>(*this, t, {rm, t});
}
bool TermManager::is_fp_sqrt(const Symbol* s, size_t* e, size_t* m) const {
  return Families::is_format_symbol<SymbolTag::FP_SQRT>(*this, s, e, m);
}

const Symbol* TermManager::make_fp_abs_symbol(size_t e, size_t m) {
  return Families::format_symbol<SymbolTag::FP_ABS>(*this, e, m);
}
const Term_* TermManager::make_fp_abs(const Term_* t) {
  return Families::fp_with<SymbolTag::FP_ABS>(*this, t, {t});
}
bool TermManager::is_fp_abs(const Symbol* s, size_t* e, size_t* m) const {
  return Families::is_format_symbol<SymbolTag::FP_ABS>(*this, s, e, m);
}

const Symbol* TermManager::make_fp_min_symbol(size_t e, size_t m) {
  return Families::format_symbol<SymbolTag::FP_MIN>(*this, e, m);
}
const Term_* TermManager::make_fp_min(const Term_* a, const Term_* b) {
  return Families::fp_with<SymbolTag::FP_MIN>(*this, a, {a, b});
}
bool TermManager::is_fp_min(const Symbol* s, size_t* e, size_t* m) const {
  return Families::is_format_symbol<SymbolTag::FP_MIN>(*this, s, e, m);
}

const Symbol* TermManager::make_fp_max_symbol(size_t e, size_t m) {
  return Families::format_symbol<SymbolTag::FP_MAX>(*this, e, m);
}
const Term_* TermManager::make_fp_max(const Term_* a, const Term_* b) {
  return Families::fp_with<SymbolTag::FP_MAX>(*this, a, {a, b});
}
bool TermManager::is_fp_max(const Symbol* s, size_t* e, size_t* m) const {
  return Families::is_format_symbol<SymbolTag::FP_MAX>(*this, s, e, m);
}

const Symbol* TermManager::make_fp_round_to_int_symbol(size_t e, size_t m) {
  return Families::format_symbol<SymbolTag::FP_ROUND_TO_INT>(*this, e, m);
}
const Term_* TermManager::make_fp_round_to_int(const Term_* rm, const Term_* t) {
  return Families::fp_with<SymbolTag::FP_ROUND_TO_INT>(*this, t, {rm, t});
}
bool TermManager::is_fp_round_to_int(const Symbol* s, size_t* e, size_t* m) const {
  return Families::is_format_symbol<SymbolTag::FP_ROUND_TO_INT>(*this, s, e, m);
}

const Symbol* TermManager::make_fp_isnan_symbol(size_t e, size_t m) {
  return Families::format_symbol<SymbolTag::FP_ISNAN>(*this, e, m);
}
const Term_* TermManager::make_fp_isnan(const Term_* t) {
  return Families::fp_with<SymbolTag::FP_ISNAN>(*this, t, {t});
}
bool TermManager::is_fp_isnan(const Symbol* s, size_t* e, size_t* m) const {
  return Families::is_format_symbol<SymbolTag::FP_ISNAN>(*this, s, e, m);
}

const Symbol* TermManager::make_fp_isinf_symbol(size_t e, size_t m) {
  return Families::format_symbol<SymbolTag::FP_ISINF>(*this, e, m);
}
const Term_* TermManager::make_fp_isinf(const Term_* t) {
  return Families::fp_with<SymbolTag::FP_ISINF>(*this, t, {t});
}
bool TermManager::is_fp_isinf(const Symbol* s, size_t* e, size_t* m) const {
  return Families::is_format_symbol<SymbolTag::FP_ISINF>(*this, s, e, m);
}

const Symbol* TermManager::make_fp_iszero_symbol(size_t e, size_t m) {
  return Families::format_symbol<SymbolTag::FP_ISZERO>(*this, e, m);
}
const Term_* TermManager::make_fp_iszero(const Term_* t) {
  return Families::fp_with<SymbolTag::FP_ISZERO>(*this, t, {t});
}
bool TermManager::is_fp_iszero(const Symbol* s, size_t* e, size_t* m) const {
  return Families::is_format_symbol<SymbolTag::FP_ISZERO>(*this, s, e, m);
}

const Symbol* TermManager::make_fp_issubnormal_symbol(size_t e, size_t m) {
  return Families::format_symbol<SymbolTag::FP_ISSUBNORMAL>(*this, e, m);
}
const Term_* TermManager::make_fp_issubnormal(const Term_* t) {
  return Families::fp_with<SymbolTag::FP_ISSUBNORMAL>(*this, t, {t});
}
bool TermManager::is_fp_issubnormal(const Symbol* s, size_t* e, size_t* m) const {
  return Families::is_format_symbol<SymbolTag::FP_ISSUBNORMAL>(*this, s, e, m);
}

const Symbol* TermManager::make_fp_isnormal_symbol(size_t e, size_t m) {
  return Families::format_symbol<SymbolTag::FP_ISNORMAL>(*this, e, m);
}
const Term_* TermManager::make_fp_isnormal(const Term_* t) {
  return Families::fp_with<SymbolTag::FP_ISNORMAL>(*this, t, {t});
}
bool TermManager::is_fp_isnormal(const Symbol* s, size_t* e, size_t* m) const {
  return Families::is_format_symbol<SymbolTag::FP_ISNORMAL>(*this, s, e, m);
}

const Symbol* TermManager::make_fp_isneg_symbol(size_t e, size_t m) {
  return Families::format_symbol<SymbolTag::FP_ISNEG>(*this, e, m);
}
const Term_* TermManager::make_fp_isneg(const Term_* t) {
  return Families::fp_with<SymbolTag::FP_ISNEG>(*this, t, {t});
}
bool TermManager::is_fp_isneg(const Symbol* s, size_t* e, size_t* m) const {
  return Families::is_format_symbol<SymbolTag::FP_ISNEG>(*this, s, e, m);
}

const Symbol* TermManager::make_fp_ispos_symbol(size_t e, size_t m) {
  return Families::format_symbol<SymbolTag::FP_ISPOS>(*this, e, m);
}
const Term_* TermManager::make_fp_ispos(const Term_* t) {
  return Families::fp_with<SymbolTag::FP_ISPOS>(*this, t, {t});
}
bool TermManager::is_fp_ispos(const Symbol* s, size_t* e, size_t* m) const {
  return Families::is_format_symbol<SymbolTag::FP_ISPOS>(*this, s, e, m);
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
