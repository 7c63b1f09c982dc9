// Concatenation, extraction, rotation and extension of bit-vectors.

#include "quill/terms/termmanager/families.h"
#include "quill/terms/termmanager/misuse_checks.h"
#include "quill/terms/termmanager/result_widths.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill {

// In the same file as its callers, so that it is inlined into them.
bool TermManager::is_bv_symbol(const Symbol* s,
                               const hsh::HashMap<const Symbol*, BVIndex1>& by_symbol,
                               size_t* first, size_t* second) const {
  require_own(*this, s);
  const auto found = by_symbol.find(s);
  if (found == by_symbol.end()) return false;
  if (first != nullptr) *first = found->second.a;
  if (second != nullptr) *second = found->second.b;
  return true;
}

bool TermManager::is_bv_symbol(const Symbol* s,
                               const hsh::HashMap<const Symbol*, BVIndex2>& by_symbol,
                               size_t* first, size_t* second, size_t* third) const {
  require_own(*this, s);
  const auto found = by_symbol.find(s);
  if (found == by_symbol.end()) return false;
  if (first != nullptr) *first = found->second.a;
  if (second != nullptr) *second = found->second.b;
  if (third != nullptr) *third = found->second.c;
  return true;
}

const Symbol* TermManager::make_bv_concat_symbol(size_t w1, size_t w2) {
  constexpr SymbolTag::tag tag = SymbolTag::BV_CONCAT;
  auto& [by_symbol, by_key] = index2_families[family_slot(tag)];
  const size_t width = sum_of_widths(w1, w2);
  const BVIndex2 key{w1, w2, width};
  if (const Symbol* present = find_or_null(by_key, key)) return present;
  Transaction making(*this);
  const DataType* first = get_bv_type(w1);
  const DataType* second = get_bv_type(w2);
  const DataType* result = get_bv_type(width);
  scratch_types = {universe->get_application_type(), first, second, result};
  Families::compose_name(*this, operator_family(tag).base, operator_family(tag).separated,
                         {w1, w2});
  const Symbol* s = Families::add_symbol(*this, tag, key, by_symbol, by_key);
  making.commit();
  return s;
}
const Term_* TermManager::make_bv_concat(const Term_* a, const Term_* b) {
  constexpr OperatorFamily family = operator_family(SymbolTag::BV_CONCAT);
  const size_t w1 = Families::require_bv(*this, a, family.complaint);
  const size_t w2 = Families::require_bv(*this, b, family.complaint);
  return make_binary(make_bv_concat_symbol(w1, w2), a, b, family.operation);
}
bool TermManager::is_bv_concat(const Symbol* s, size_t* w1, size_t* w2) const {
  return is_bv_symbol(s, index2_families[family_slot(SymbolTag::BV_CONCAT)].by_object, w1, w2,
                      nullptr);
}

[[gnu::cold]] void TermManager::Families::reject_empty_range(size_t msb, size_t lsb) {
  throw Exception("bv extraction of an empty range: [") << msb << ":" << lsb << "]";
}

[[gnu::cold]] void TermManager::Families::reject_range(size_t msb, size_t lsb, size_t width) {
  throw Exception("range too large in bv extraction. arg has width ")
      << width << ", but range is [" << msb << ":" << lsb << "]";
}

// Apart from the look-up, which thereby stays small.
[[gnu::noinline]] const Symbol* TermManager::Families::add_extract_symbol(TermManager& m,
                                                                          const BVIndex2& key) {
  constexpr OperatorFamily family = operator_family(SymbolTag::BV_EXTRACT);
  const auto [msb, lsb, width] = key;
  Transaction making(m);
  const DataType* operand = m.get_bv_type(width);
  const DataType* result = m.get_bv_type(msb - lsb + 1);
  set_scratch_types(m, 1, operand, result);
  compose_name(m, family.base, family.separated, {msb, lsb, width});
  auto& [by_symbol, by_key] = m.index2_families[family_slot(SymbolTag::BV_EXTRACT)];
  const Symbol* s = add_symbol(m, SymbolTag::BV_EXTRACT, key, by_symbol, by_key);
  making.commit();
  return s;
}

const Symbol* TermManager::make_bv_extract_symbol(size_t msb, size_t lsb, size_t w) {
  const BVIndex2 key{msb, lsb, w};
  const Symbol* present = index2_families[family_slot(SymbolTag::BV_EXTRACT)].find(key);
  return present != nullptr ? present : Families::add_extract_symbol(*this, key);
}
const Term_* TermManager::make_bv_extract(size_t msb, size_t lsb, const Term_* t) {
  constexpr OperatorFamily family = operator_family(SymbolTag::BV_EXTRACT);
  Families::check_range(msb, lsb);
  const size_t w = Families::require_bv(*this, t, family.complaint);
  Families::check_range_within(msb, lsb, w);
  return apply(make_bv_extract_symbol(msb, lsb, w), {t}, family.operation);
}
bool TermManager::is_bv_extract(const Symbol* s, size_t* msb, size_t* lsb, size_t* w) const {
  return is_bv_symbol(s, index2_families[family_slot(SymbolTag::BV_EXTRACT)].by_object, msb, lsb,
                      w);
}

const Symbol* TermManager::make_bv_rotate_left_symbol(size_t k, size_t w) {
  return Families::index1_symbol<SymbolTag::BV_ROTATE_LEFT>(*this, k, w);
}
const Term_* TermManager::make_bv_rotate_left(size_t k, const Term_* t) {
  return Families::bv_index1<SymbolTag::BV_ROTATE_LEFT>(*this, k, t);
}
bool TermManager::is_bv_rotate_left(const Symbol* s, size_t* k, size_t* w) const {
  return Families::is_index1_symbol<SymbolTag::BV_ROTATE_LEFT>(*this, s, k, w);
}

const Symbol* TermManager::make_bv_rotate_right_symbol(size_t k, size_t w) {
  return Families::index1_symbol<SymbolTag::BV_ROTATE_RIGHT>(*this, k, w);
}
const Term_* TermManager::make_bv_rotate_right(size_t k, const Term_* t) {
  return Families::bv_index1<SymbolTag::BV_ROTATE_RIGHT>(*this, k, t);
}
bool TermManager::is_bv_rotate_right(const Symbol* s, size_t* k, size_t* w) const {
  return Families::is_index1_symbol<SymbolTag::BV_ROTATE_RIGHT>(*this, s, k, w);
}

const Symbol* TermManager::make_bv_zero_extend_symbol(size_t k, size_t w) {
  return Families::index1_symbol<SymbolTag::BV_ZERO_EXTEND>(*this, k, w);
}
const Term_* TermManager::make_bv_zero_extend(size_t k, const Term_* t) {
  return Families::bv_index1<SymbolTag::BV_ZERO_EXTEND>(*this, k, t);
}
bool TermManager::is_bv_zero_extend(const Symbol* s, size_t* k, size_t* w) const {
  return Families::is_index1_symbol<SymbolTag::BV_ZERO_EXTEND>(*this, s, k, w);
}

const Symbol* TermManager::make_bv_sign_extend_symbol(size_t k, size_t w) {
  return Families::index1_symbol<SymbolTag::BV_SIGN_EXTEND>(*this, k, w);
}
const Term_* TermManager::make_bv_sign_extend(size_t k, const Term_* t) {
  return Families::bv_index1<SymbolTag::BV_SIGN_EXTEND>(*this, k, t);
}
bool TermManager::is_bv_sign_extend(const Symbol* s, size_t* k, size_t* w) const {
  return Families::is_index1_symbol<SymbolTag::BV_SIGN_EXTEND>(*this, s, k, w);
}

}  // namespace quill
