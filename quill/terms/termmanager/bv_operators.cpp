// The operators on bit-vectors of one width, and between bit-vectors and integers: members over the
// rows of operator_family.h.

#include "quill/terms/termmanager/family_builders.h"
#include "quill/terms/termmanager/misuse_checks.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill {

// Beside its callers, into which it is inlined.
bool TermManager::is_bv_symbol(const Symbol* s,
                               const hsh::HashMap<const Symbol*, size_t>& by_symbol,
                               size_t* width) const {
  require_own(*this, s);
  const auto found = by_symbol.find(s);
  if (found == by_symbol.end()) return false;
  if (width != nullptr) *width = found->second;
  return true;
}

const Symbol* TermManager::make_bv_not_symbol(size_t width) {
  return width_symbol<SymbolTag::BV_NOT>(width);
}
const Term_* TermManager::make_bv_not(const Term_* t) { return bv_unary<SymbolTag::BV_NOT>(t); }
bool TermManager::is_bv_not(const Symbol* s, size_t* width) const {
  return is_width_symbol<SymbolTag::BV_NOT>(s, width);
}

const Symbol* TermManager::make_bv_and_symbol(size_t width) {
  return width_symbol<SymbolTag::BV_AND>(width);
}
const Term_* TermManager::make_bv_and(const Term_* a, const Term_* b) {
  return bv_binary<SymbolTag::BV_AND>(a, b);
}
bool TermManager::is_bv_and(const Symbol* s, size_t* width) const {
  return is_width_symbol<SymbolTag::BV_AND>(s, width);
}

const Symbol* TermManager::make_bv_or_symbol(size_t width) {
  return width_symbol<SymbolTag::BV_OR>(width);
}
const Term_* TermManager::make_bv_or(const Term_* a, const Term_* b) {
  return bv_binary<SymbolTag::BV_OR>(a, b);
}
bool TermManager::is_bv_or(const Symbol* s, size_t* width) const {
  return is_width_symbol<SymbolTag::BV_OR>(s, width);
}

const Symbol* TermManager::make_bv_xor_symbol(size_t width) {
  return width_symbol<SymbolTag::BV_XOR>(width);
}
const Term_* TermManager::make_bv_xor(const Term_* a, const Term_* b) {
  return bv_binary<SymbolTag::BV_XOR>(a, b);
}
bool TermManager::is_bv_xor(const Symbol* s, size_t* width) const {
  return is_width_symbol<SymbolTag::BV_XOR>(s, width);
}

const Symbol* TermManager::make_bv_ult_symbol(size_t width) {
  return width_symbol<SymbolTag::BV_ULT>(width);
}
const Term_* TermManager::make_bv_ult(const Term_* a, const Term_* b) {
  return bv_binary<SymbolTag::BV_ULT>(a, b);
}
bool TermManager::is_bv_ult(const Symbol* s, size_t* width) const {
  return is_width_symbol<SymbolTag::BV_ULT>(s, width);
}

const Symbol* TermManager::make_bv_slt_symbol(size_t width) {
  return width_symbol<SymbolTag::BV_SLT>(width);
}
const Term_* TermManager::make_bv_slt(const Term_* a, const Term_* b) {
  return bv_binary<SymbolTag::BV_SLT>(a, b);
}
bool TermManager::is_bv_slt(const Symbol* s, size_t* width) const {
  return is_width_symbol<SymbolTag::BV_SLT>(s, width);
}

const Symbol* TermManager::make_bv_ule_symbol(size_t width) {
  return width_symbol<SymbolTag::BV_ULE>(width);
}
const Term_* TermManager::make_bv_ule(const Term_* a, const Term_* b) {
  return bv_binary<SymbolTag::BV_ULE>(a, b);
}
bool TermManager::is_bv_ule(const Symbol* s, size_t* width) const {
  return is_width_symbol<SymbolTag::BV_ULE>(s, width);
}

const Symbol* TermManager::make_bv_sle_symbol(size_t width) {
  return width_symbol<SymbolTag::BV_SLE>(width);
}
const Term_* TermManager::make_bv_sle(const Term_* a, const Term_* b) {
  return bv_binary<SymbolTag::BV_SLE>(a, b);
}
bool TermManager::is_bv_sle(const Symbol* s, size_t* width) const {
  return is_width_symbol<SymbolTag::BV_SLE>(s, width);
}

const Symbol* TermManager::make_bv_comp_symbol(size_t width) {
  return width_symbol<SymbolTag::BV_COMP>(width);
}
const Term_* TermManager::make_bv_comp(const Term_* a, const Term_* b) {
  return bv_binary<SymbolTag::BV_COMP>(a, b);
}
bool TermManager::is_bv_comp(const Symbol* s, size_t* width) const {
  return is_width_symbol<SymbolTag::BV_COMP>(s, width);
}

const Symbol* TermManager::make_bv_neg_symbol(size_t width) {
  return width_symbol<SymbolTag::BV_NEG>(width);
}
const Term_* TermManager::make_bv_neg(const Term_* t) { return bv_unary<SymbolTag::BV_NEG>(t); }
bool TermManager::is_bv_neg(const Symbol* s, size_t* width) const {
  return is_width_symbol<SymbolTag::BV_NEG>(s, width);
}

const Symbol* TermManager::make_bv_add_symbol(size_t width) {
  return width_symbol<SymbolTag::BV_ADD>(width);
}
const Term_* TermManager::make_bv_add(const Term_* a, const Term_* b) {
  return bv_binary<SymbolTag::BV_ADD>(a, b);
}
bool TermManager::is_bv_add(const Symbol* s, size_t* width) const {
  return is_width_symbol<SymbolTag::BV_ADD>(s, width);
}

const Symbol* TermManager::make_bv_sub_symbol(size_t width) {
  return width_symbol<SymbolTag::BV_SUB>(width);
}
const Term_* TermManager::make_bv_sub(const Term_* a, const Term_* b) {
  return bv_binary<SymbolTag::BV_SUB>(a, b);
}
bool TermManager::is_bv_sub(const Symbol* s, size_t* width) const {
  return is_width_symbol<SymbolTag::BV_SUB>(s, width);
}

const Symbol* TermManager::make_bv_mul_symbol(size_t width) {
  return width_symbol<SymbolTag::BV_MUL>(width);
}
const Term_* TermManager::make_bv_mul(const Term_* a, const Term_* b) {
  return bv_binary<SymbolTag::BV_MUL>(a, b);
}
bool TermManager::is_bv_mul(const Symbol* s, size_t* width) const {
  return is_width_symbol<SymbolTag::BV_MUL>(s, width);
}

const Symbol* TermManager::make_bv_udiv_symbol(size_t width) {
  return width_symbol<SymbolTag::BV_UDIV>(width);
}
const Term_* TermManager::make_bv_udiv(const Term_* a, const Term_* b) {
  return bv_binary<SymbolTag::BV_UDIV>(a, b);
}
bool TermManager::is_bv_udiv(const Symbol* s, size_t* width) const {
  return is_width_symbol<SymbolTag::BV_UDIV>(s, width);
}

const Symbol* TermManager::make_bv_sdiv_symbol(size_t width) {
  return width_symbol<SymbolTag::BV_SDIV>(width);
}
const Term_* TermManager::make_bv_sdiv(const Term_* a, const Term_* b) {
  return bv_binary<SymbolTag::BV_SDIV>(a, b);
}
bool TermManager::is_bv_sdiv(const Symbol* s, size_t* width) const {
  return is_width_symbol<SymbolTag::BV_SDIV>(s, width);
}

const Symbol* TermManager::make_bv_urem_symbol(size_t width) {
  return width_symbol<SymbolTag::BV_UREM>(width);
}
const Term_* TermManager::make_bv_urem(const Term_* a, const Term_* b) {
  return bv_binary<SymbolTag::BV_UREM>(a, b);
}
bool TermManager::is_bv_urem(const Symbol* s, size_t* width) const {
  return is_width_symbol<SymbolTag::BV_UREM>(s, width);
}

const Symbol* TermManager::make_bv_srem_symbol(size_t width) {
  return width_symbol<SymbolTag::BV_SREM>(width);
}
const Term_* TermManager::make_bv_srem(const Term_* a, const Term_* b) {
  return bv_binary<SymbolTag::BV_SREM>(a, b);
}
bool TermManager::is_bv_srem(const Symbol* s, size_t* width) const {
  return is_width_symbol<SymbolTag::BV_SREM>(s, width);
}

const Symbol* TermManager::make_bv_lshl_symbol(size_t width) {
  return width_symbol<SymbolTag::BV_LSHL>(width);
}
const Term_* TermManager::make_bv_lshl(const Term_* a, const Term_* b) {
  return bv_binary<SymbolTag::BV_LSHL>(a, b);
}
bool TermManager::is_bv_lshl(const Symbol* s, size_t* width) const {
  return is_width_symbol<SymbolTag::BV_LSHL>(s, width);
}

const Symbol* TermManager::make_bv_lshr_symbol(size_t width) {
  return width_symbol<SymbolTag::BV_LSHR>(width);
}
const Term_* TermManager::make_bv_lshr(const Term_* a, const Term_* b) {
  return bv_binary<SymbolTag::BV_LSHR>(a, b);
}
bool TermManager::is_bv_lshr(const Symbol* s, size_t* width) const {
  return is_width_symbol<SymbolTag::BV_LSHR>(s, width);
}

const Symbol* TermManager::make_bv_ashr_symbol(size_t width) {
  return width_symbol<SymbolTag::BV_ASHR>(width);
}
const Term_* TermManager::make_bv_ashr(const Term_* a, const Term_* b) {
  return bv_binary<SymbolTag::BV_ASHR>(a, b);
}
bool TermManager::is_bv_ashr(const Symbol* s, size_t* width) const {
  return is_width_symbol<SymbolTag::BV_ASHR>(s, width);
}

const Symbol* TermManager::make_int_from_ubv_symbol(size_t width) {
  return width_symbol<SymbolTag::INT_FROM_UBV>(width);
}
const Term_* TermManager::make_int_from_ubv(const Term_* t) {
  return bv_unary<SymbolTag::INT_FROM_UBV>(t);
}
bool TermManager::is_int_from_ubv(const Symbol* s, size_t* width) const {
  return is_width_symbol<SymbolTag::INT_FROM_UBV>(s, width);
}

const Symbol* TermManager::make_int_from_sbv_symbol(size_t width) {
  return width_symbol<SymbolTag::INT_FROM_SBV>(width);
}
const Term_* TermManager::make_int_from_sbv(const Term_* t) {
  return bv_unary<SymbolTag::INT_FROM_SBV>(t);
}
bool TermManager::is_int_from_sbv(const Symbol* s, size_t* width) const {
  return is_width_symbol<SymbolTag::INT_FROM_SBV>(s, width);
}

// The one family of this kind whose operand is no bit-vector: the width is all that a builder has.
const Symbol* TermManager::make_int_to_bv_symbol(size_t width) {
  constexpr SymbolTag::tag tag = SymbolTag::INT_TO_BV;
  auto& [by_symbol, by_width] = width_families[family_slot(tag)];
  const auto found = by_width.find(width);
  if (found != by_width.end()) return found->second;
  Transaction making(*this);
  const DataType* type = get_bv_type(width);
  set_scratch_types(1, int_type, type);
  compose_family_name(operator_family(tag).base, operator_family(tag).separated, {width});
  const Symbol* s = add_family_symbol(tag, width, by_symbol, by_width);
  making.commit();
  return s;
}
const Term_* TermManager::make_int_to_bv(size_t width, const Term_* t) {
  const Symbol* s = make_int_to_bv_symbol(width);
  return apply(s, {t}, operator_family(SymbolTag::INT_TO_BV).operation);
}
bool TermManager::is_int_to_bv(const Symbol* s, size_t* width) const {
  return is_width_symbol<SymbolTag::INT_TO_BV>(s, width);
}

}  // namespace quill
