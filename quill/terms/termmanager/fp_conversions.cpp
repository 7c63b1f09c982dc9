// Conversions between floating-point formats, and between floating point and bit-vectors.
//
// All families share one kind of key, four numbers. Each fills it in its own way; unused numbers
// are 0:
//
//   cast           source e, m    target e, m
//   from_sbv/ubv   0, width       target e, m
//   to_bv          source e, m    0, width
//   as_ieeebv      e, m           0, e + m + 1
//   from_ieeebv    0, e + m + 1   e, m

#include "quill/terms/termmanager/families.h"
#include "quill/terms/termmanager/misuse_checks.h"
#include "quill/terms/termmanager/result_widths.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill {

namespace {

void write(size_t* output, uint64_t value) {
  if (output != nullptr) *output = value;
}

}  // namespace

const Symbol* TermManager::make_fp_cast_symbol(size_t e1, size_t m1, size_t e2, size_t m2) {
  constexpr SymbolTag::tag tag = SymbolTag::FP_CAST;
  const FPFormatCast key{e1, m1, e2, m2};
  if (const Symbol* present = Families::find_conversion<tag>(*this, key)) return present;
  Transaction making(*this);
  const DataType* operand = get_fp_type(e1, m1);
  const DataType* result = get_fp_type(e2, m2);
  const Symbol* s =
      Families::make_conversion_symbol<tag>(*this, key, operand, result, {e1, m1, e2, m2});
  making.commit();
  return s;
}
const Term_* TermManager::make_fp_cast(size_t e2, size_t m2, const Term_* rm, const Term_* t) {
  constexpr OperatorFamily family = operator_family(SymbolTag::FP_CAST);
  const auto [e1, m1] = Families::require_fp(*this, t, family.complaint);
  return apply(make_fp_cast_symbol(e1, m1, e2, m2), {rm, t}, family.operation);
}
bool TermManager::is_fp_cast(const Symbol* s, size_t* e1, size_t* m1, size_t* e2,
                             size_t* m2) const {
  const FPFormatCast* key = Families::find_conversion_key<SymbolTag::FP_CAST>(*this, s);
  if (key == nullptr) return false;
  write(e1, key->a);
  write(m1, key->b);
  write(e2, key->c);
  write(m2, key->d);
  return true;
}

// From a signed or unsigned bit-vector of w bits.
template <SymbolTag::tag Tag>
const Symbol* TermManager::Families::from_bv_symbol(TermManager& m, size_t w, size_t e,
                                                    size_t significand) {
  const FPFormatCast key{0, w, e, significand};
  if (const Symbol* present = find_conversion<Tag>(m, key)) return present;
  Transaction making(m);
  const DataType* operand = m.get_bv_type(w);
  const DataType* result = m.get_fp_type(e, significand);
  const Symbol* s = make_conversion_symbol<Tag>(m, key, operand, result, {w, e, significand});
  making.commit();
  return s;
}
template <SymbolTag::tag Tag>
const Term_* TermManager::Families::from_bv(TermManager& m, size_t e, size_t significand,
                                            const Term_* rm, const Term_* t) {
  constexpr OperatorFamily family = operator_family(Tag);
  const size_t w = require_bv(m, t, family.complaint);
  return m.apply(from_bv_symbol<Tag>(m, w, e, significand), {rm, t}, family.operation);
}
template <SymbolTag::tag Tag>
bool TermManager::Families::is_from_bv(const TermManager& m, const Symbol* s, size_t* w, size_t* e,
                                       size_t* significand) {
  const FPFormatCast* key = find_conversion_key<Tag>(m, s);
  if (key == nullptr) return false;
  write(w, key->b);
  write(e, key->c);
  write(significand, key->d);
  return true;
}

const Symbol* TermManager::make_fp_from_sbv_symbol(size_t w, size_t e, size_t m) {
  return Families::from_bv_symbol<SymbolTag::FP_FROM_SBV>(*this, w, e, m);
}
const Term_* TermManager::make_fp_from_sbv(size_t e, size_t m, const Term_* rm, const Term_* t) {
  return Families::from_bv<SymbolTag::FP_FROM_SBV>(*this, e, m, rm, t);
}
bool TermManager::is_fp_from_sbv(const Symbol* s, size_t* w, size_t* e, size_t* m) const {
  return Families::is_from_bv<SymbolTag::FP_FROM_SBV>(*this, s, w, e, m);
}

const Symbol* TermManager::make_fp_from_ubv_symbol(size_t w, size_t e, size_t m) {
  return Families::from_bv_symbol<SymbolTag::FP_FROM_UBV>(*this, w, e, m);
}
const Term_* TermManager::make_fp_from_ubv(size_t e, size_t m, const Term_* rm, const Term_* t) {
  return Families::from_bv<SymbolTag::FP_FROM_UBV>(*this, e, m, rm, t);
}
bool TermManager::is_fp_from_ubv(const Symbol* s, size_t* w, size_t* e, size_t* m) const {
  return Families::is_from_bv<SymbolTag::FP_FROM_UBV>(*this, s, w, e, m);
}

const Symbol* TermManager::make_fp_to_bv_symbol(size_t e, size_t m, size_t w) {
  constexpr SymbolTag::tag tag = SymbolTag::FP_TO_BV;
  const FPFormatCast key{e, m, 0, w};
  if (const Symbol* present = Families::find_conversion<tag>(*this, key)) return present;
  Transaction making(*this);
  const DataType* operand = get_fp_type(e, m);
  const DataType* result = get_bv_type(w);
  const Symbol* s = Families::make_conversion_symbol<tag>(*this, key, operand, result, {e, m, w});
  making.commit();
  return s;
}
const Term_* TermManager::make_fp_to_bv(size_t w, const Term_* rm, const Term_* t) {
  constexpr OperatorFamily family = operator_family(SymbolTag::FP_TO_BV);
  const auto [e, m] = Families::require_fp(*this, t, family.complaint);
  return apply(make_fp_to_bv_symbol(e, m, w), {rm, t}, family.operation);
}
bool TermManager::is_fp_to_bv(const Symbol* s, size_t* e, size_t* m, size_t* w) const {
  const FPFormatCast* key = Families::find_conversion_key<SymbolTag::FP_TO_BV>(*this, s);
  if (key == nullptr) return false;
  write(e, key->a);
  write(m, key->b);
  write(w, key->d);
  return true;
}

const Symbol* TermManager::make_fp_as_ieeebv_symbol(size_t e, size_t m) {
  constexpr SymbolTag::tag tag = SymbolTag::FP_AS_IEEEBV;
  const size_t width = ieee_width(e, m);
  const FPFormatCast key{e, m, 0, width};
  if (const Symbol* present = Families::find_conversion<tag>(*this, key)) return present;
  Transaction making(*this);
  const DataType* operand = get_fp_type(e, m);
  const DataType* result = get_bv_type(width);
  const Symbol* s =
      Families::make_conversion_symbol<tag>(*this, key, operand, result, {e, m, width});
  making.commit();
  return s;
}
const Term_* TermManager::make_fp_as_ieeebv(const Term_* t) {
  constexpr OperatorFamily family = operator_family(SymbolTag::FP_AS_IEEEBV);
  const auto [e, m] = Families::require_fp(*this, t, family.complaint);
  return apply(make_fp_as_ieeebv_symbol(e, m), {t}, family.operation);
}
bool TermManager::is_fp_as_ieeebv(const Symbol* s, size_t* e, size_t* m) const {
  const FPFormatCast* key = Families::find_conversion_key<SymbolTag::FP_AS_IEEEBV>(*this, s);
  if (key == nullptr) return false;
  write(e, key->a);
  write(m, key->b);
  return true;
}

const Symbol* TermManager::make_fp_from_ieeebv_symbol(size_t e, size_t m) {
  constexpr SymbolTag::tag tag = SymbolTag::FP_FROM_IEEEBV;
  const size_t width = ieee_width(e, m);
  const FPFormatCast key{0, width, e, m};
  if (const Symbol* present = Families::find_conversion<tag>(*this, key)) return present;
  Transaction making(*this);
  const DataType* operand = get_bv_type(width);
  const DataType* result = get_fp_type(e, m);
  const Symbol* s =
      Families::make_conversion_symbol<tag>(*this, key, operand, result, {width, e, m});
  making.commit();
  return s;
}
const Term_* TermManager::make_fp_from_ieeebv(size_t e, size_t m, const Term_* t) {
  constexpr OperatorFamily family = operator_family(SymbolTag::FP_FROM_IEEEBV);
  if (Families::require_bv(*this, t, family.complaint) != ieee_width(e, m))
    Families::reject_operand(t, family.complaint);
  return apply(make_fp_from_ieeebv_symbol(e, m), {t}, family.operation);
}
bool TermManager::is_fp_from_ieeebv(const Symbol* s, size_t* e, size_t* m) const {
  const FPFormatCast* key = Families::find_conversion_key<SymbolTag::FP_FROM_IEEEBV>(*this, s);
  if (key == nullptr) return false;
  write(e, key->c);
  write(m, key->d);
  return true;
}

}  // namespace quill
