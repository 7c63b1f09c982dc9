// The operators on bit-vectors of one width, and those between bit-vectors and integers, defined by
// the rows of operator_family.h.

#include "quill/terms/termmanager/families.h"
#include "quill/terms/termmanager/misuse_checks.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill {

// In the same file as its callers, so that it is inlined into them.
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
  return Families::width_symbol<SymbolTag::BV_NOT>(*this, width);
}
const Term_* TermManager::make_bv_not(const Term_* t) {
  return Families::bv_unary<SymbolTag::BV_NOT>(*this, t);
}
bool TermManager::is_bv_not(const Symbol* s, size_t* width) const {
  return Families::is_width_symbol<SymbolTag::BV_NOT>(*this, s, width);
}

const Symbol* TermManager::make_bv_and_symbol(size_t width) {
  return Families::width_symbol<SymbolTag::BV_AND>(*this, width);
}
const Term_* TermManager::make_bv_and(const Term_* a, const Term_* b) {
  return Families::bv_binary<SymbolTag::BV_AND>(*this, a, b);
}
bool TermManager::is_bv_and(const Symbol* s, size_t* width) const {
  return Families::is_width_symbol<SymbolTag::BV_AND>(*this, s, width);
}

const Symbol* TermManager::make_bv_or_symbol(size_t width) {
  return Families::width_symbol<SymbolTag::BV_OR>(*this, width);
}
const Term_* TermManager::make_bv_or(const Term_* a, const Term_* b) {
  return Families::bv_binary<SymbolTag::BV_OR>(*this, a, b);
}
bool TermManager::is_bv_or(const Symbol* s, size_t* width) const {
  return Families::is_width_symbol<SymbolTag::BV_OR>(*this, s, width);
}

const Symbol* TermManager::make_bv_xor_symbol(size_t width) {
  return Families::width_symbol<SymbolTag::BV_XOR>(*this, width);
}
const Term_* TermManager::make_bv_xor(const Term_* a, const Term_* b) {
  return Families::bv_binary<SymbolTag::BV_XOR>(*this, a, b);
}
bool TermManager::is_bv_xor(const Symbol* s, size_t* width) const {
  return Families::is_width_symbol<SymbolTag::BV_XOR>(*this, s, width);
}

const Symbol* TermManager::make_bv_ult_symbol(size_t width) {
  return Families::width_symbol<SymbolTag::BV_ULT>(*this, width);
}
const Term_* TermManager::make_bv_ult(const Term_* a, const Term_* b) {
  return Families::bv_binary<SymbolTag::BV_ULT>(*this, a, b);
}
bool TermManager::is_bv_ult(const Symbol* s, size_t* width) const {
  return Families::is_width_symbol<SymbolTag::BV_ULT>(*this, s, width);
}

const Symbol* TermManager::make_bv_slt_symbol(size_t width) {
  return Families::width_symbol<SymbolTag::BV_SLT>(*this, width);
}
const Term_* TermManager::make_bv_slt(const Term_* a, const Term_* b) {
  return Families::bv_binary<SymbolTag::BV_SLT>(*this, a, b);
}
bool TermManager::is_bv_slt(const Symbol* s, size_t* width) const {
  return Families::is_width_symbol<SymbolTag::BV_SLT>(*this, s, width);
}

const Symbol* TermManager::make_bv_ule_symbol(size_t width) {
  return Families::width_symbol<SymbolTag::BV_ULE>(*this, width);
}
const Term_* TermManager::make_bv_ule(const Term_* a, const Term_* b) {
  return Families::bv_binary<SymbolTag::BV_ULE>(*this, a, b);
}
bool TermManager::is_bv_ule(const Symbol* s, size_t* width) const {
  return Families::is_width_symbol<SymbolTag::BV_ULE>(*this, s, width);
}

const Symbol* TermManager::make_bv_sle_symbol(size_t width) {
  return Families::width_symbol<SymbolTag::BV_SLE>(*this, width);
}
const Term_* TermManager::make_bv_sle(const Term_* a, const Term_* b) {
  return Families::bv_binary<SymbolTag::BV_SLE>(*this, a, b);
}
bool TermManager::is_bv_sle(const Symbol* s, size_t* width) const {
  return Families::is_width_symbol<SymbolTag::BV_SLE>(*this, s, width);
}

const Symbol* TermManager::make_bv_comp_symbol(size_t width) {
  return Families::width_symbol<SymbolTag::BV_COMP>(*this, width);
}
const Term_* TermManager::make_bv_comp(const Term_* a, const Term_* b) {
  return Families::bv_binary<SymbolTag::BV_COMP>(*this, a, b);
}
bool TermManager::is_bv_comp(const Symbol* s, size_t* width) const {
  return Families::is_width_symbol<SymbolTag::BV_COMP>(*this, s, width);
}

const Symbol* TermManager::make_bv_neg_symbol(size_t width) {
  return Families::width_symbol<SymbolTag::BV_NEG>(*this, width);
}
const Term_* TermManager::make_bv_neg(const Term_* t) {
  return Families::bv_unary<SymbolTag::BV_NEG>(*this, t);
}
bool TermManager::is_bv_neg(const Symbol* s, size_t* width) const {
  return Families::is_width_symbol<SymbolTag::BV_NEG>(*this, s, width);
}

const Symbol* TermManager::make_bv_add_symbol(size_t width) {
  return Families::width_symbol<SymbolTag::BV_ADD>(*this, width);
}
const Term_* TermManager::make_bv_add(const Term_* a, const Term_* b) {
  return Families::bv_binary<SymbolTag::BV_ADD>(*this, a, b);
}
bool TermManager::is_bv_add(const Symbol* s, size_t* width) const {
  return Families::is_width_symbol<SymbolTag::BV_ADD>(*this, s, width);
}

const Symbol* TermManager::make_bv_sub_symbol(size_t width) {
  return Families::width_symbol<SymbolTag::BV_SUB>(*this, width);
}
const Term_* TermManager::make_bv_sub(const Term_* a, const Term_* b) {
  return Families::bv_binary<SymbolTag::BV_SUB>(*this, a, b);
}
bool TermManager::is_bv_sub(const Symbol* s, size_t* width) const {
  return Families::is_width_symbol<SymbolTag::BV_SUB>(*this, s, width);
}

const Symbol* TermManager::make_bv_mul_symbol(size_t width) {
  return Families::width_symbol<SymbolTag::BV_MUL>(*this, width);
}
const Term_* TermManager::make_bv_mul(const Term_* a, const Term_* b) {
  return Families::bv_binary<SymbolTag::BV_MUL>(*this, a, b);
}
bool TermManager::is_bv_mul(const Symbol* s, size_t* width) const {
  return Families::is_width_symbol<SymbolTag::BV_MUL>(*this, s, width);
}

const Symbol* TermManager::make_bv_udiv_symbol(size_t width) {
  return Families::width_symbol<SymbolTag::BV_UDIV>(*this, width);
}
const Term_* TermManager::make_bv_udiv(const Term_* a, const Term_* b) {
  return Families::bv_binary<SymbolTag::BV_UDIV>(*this, a, b);
}
bool TermManager::is_bv_udiv(const Symbol* s, size_t* width) const {
  return Families::is_width_symbol<SymbolTag::BV_UDIV>(*this, s, width);
}

const Symbol* TermManager::make_bv_sdiv_symbol(size_t width) {
  return Families::width_symbol<SymbolTag::BV_SDIV>(*this, width);
}
const Term_* TermManager::make_bv_sdiv(const Term_* a, const Term_* b) {
  return Families::bv_binary<SymbolTag::BV_SDIV>(*this, a, b);
}
bool TermManager::is_bv_sdiv(const Symbol* s, size_t* width) const {
  return Families::is_width_symbol<SymbolTag::BV_SDIV>(*this, s, width);
}

const Symbol* TermManager::make_bv_urem_symbol(size_t width) {
  return Families::width_symbol<SymbolTag::BV_UREM>(*this, width);
}
const Term_* TermManager::make_bv_urem(const Term_* a, const Term_* b) {
  return Families::bv_binary<SymbolTag::BV_UREM>(*this, a, b);
}
bool TermManager::is_bv_urem(const Symbol* s, size_t* width) const {
  return Families::is_width_symbol<SymbolTag::BV_UREM>(*this, s, width);
}

const Symbol* TermManager::make_bv_srem_symbol(size_t width) {
  return Families::width_symbol<SymbolTag::BV_SREM>(*this, width);
}
const Term_* TermManager::make_bv_srem(const Term_* a, const Term_* b) {
  return Families::bv_binary<SymbolTag::BV_SREM>(*this, a, b);
}
bool TermManager::is_bv_srem(const Symbol* s, size_t* width) const {
  return Families::is_width_symbol<SymbolTag::BV_SREM>(*this, s, width);
}

const Symbol* TermManager::make_bv_lshl_symbol(size_t width) {
  return Families::width_symbol<SymbolTag::BV_LSHL>(*this, width);
}
const Term_* TermManager::make_bv_lshl(const Term_* a, const Term_* b) {
  return Families::bv_binary<SymbolTag::BV_LSHL>(*this, a, b);
}
bool TermManager::is_bv_lshl(const Symbol* s, size_t* width) const {
  return Families::is_width_symbol<SymbolTag::BV_LSHL>(*this, s, width);
}

const Symbol* TermManager::make_bv_lshr_symbol(size_t width) {
  return Families::width_symbol<SymbolTag::BV_LSHR>(*this, width);
}
const Term_* TermManager::make_bv_lshr(const Term_* a, const Term_* b) {
  return Families::bv_binary<SymbolTag::BV_LSHR>(*this, a, b);
}
bool TermManager::is_bv_lshr(const Symbol* s, size_t* width) const {
  return Families::is_width_symbol<SymbolTag::BV_LSHR>(*this, s, width);
}

const Symbol* TermManager::make_bv_ashr_symbol(size_t width) {
  return Families::width_symbol<SymbolTag::BV_ASHR>(*this, width);
}
const Term_* TermManager::make_bv_ashr(const Term_* a, const Term_* b) {
  return Families::bv_binary<SymbolTag::BV_ASHR>(*this, a, b);
}
bool TermManager::is_bv_ashr(const Symbol* s, size_t* width) const {
  return Families::is_width_symbol<SymbolTag::BV_ASHR>(*this, s, width);
}

const Symbol* TermManager::make_int_from_ubv_symbol(size_t width) {
  return Families::width_symbol<SymbolTag::INT_FROM_UBV>(*this, width);
}
const Term_* TermManager::make_int_from_ubv(const Term_* t) {
  return Families::bv_unary<SymbolTag::INT_FROM_UBV>(*this, t);
}
bool TermManager::is_int_from_ubv(const Symbol* s, size_t* width) const {
  return Families::is_width_symbol<SymbolTag::INT_FROM_UBV>(*this, s, width);
}

const Symbol* TermManager::make_int_from_sbv_symbol(size_t width) {
  return Families::width_symbol<SymbolTag::INT_FROM_SBV>(*this, width);
}
const Term_* TermManager::make_int_from_sbv(const Term_* t) {
  return Families::bv_unary<SymbolTag::INT_FROM_SBV>(*this, t);
}
bool TermManager::is_int_from_sbv(const Symbol* s, size_t* width) const {
  return Families::is_width_symbol<SymbolTag::INT_FROM_SBV>(*this, s, width);
}

// The only family keyed by a width whose operand is not a bit-vector, so the caller gives the
// width.
const Symbol* TermManager::make_int_to_bv_symbol(size_t width) {
  constexpr SymbolTag::tag tag = SymbolTag::INT_TO_BV;
  auto& [by_symbol, by_width] = width_families[family_slot(tag)];
  if (const Symbol* present = find_or_null(by_width, width)) return present;
  Transaction making(*this);
  const DataType* type = get_bv_type(width);
  Families::set_scratch_types(*this, 1, int_type, type);
  Families::compose_name(*this, operator_family(tag).base, operator_family(tag).separated, {width});
  const Symbol* s = Families::add_symbol(*this, tag, width, by_symbol, by_width);
  making.commit();
  return s;
}
const Term_* TermManager::make_int_to_bv(size_t width, const Term_* t) {
  const Symbol* s = make_int_to_bv_symbol(width);
  return apply(s, {t}, operator_family(SymbolTag::INT_TO_BV).operation);
}
bool TermManager::is_int_to_bv(const Symbol* s, size_t* width) const {
  return Families::is_width_symbol<SymbolTag::INT_TO_BV>(*this, s, width);
}

}  // namespace quill
