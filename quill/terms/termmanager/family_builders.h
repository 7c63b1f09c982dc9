// What the members of the operator families are made of. Private to the sources of the term
// manager.
//
// The row of an operator is known when these templates are compiled, so that a builder comes down
// to a look at a type, one look-up and make_term.

#ifndef QUILL_TERMS_TERMMANAGER_FAMILY_BUILDERS_H
#define QUILL_TERMS_TERMMANAGER_FAMILY_BUILDERS_H

#include "quill/terms/termmanager/misuse_checks.h"
#include "quill/terms/termmanager/operator_family.h"
#include "quill/terms/termmanager/result_widths.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/terms/termmanager/transaction.h"

namespace quill {

// Makes the function symbol whose type is in scratch_types and whose name, between backquotes, is
// in name_buffer, and enters it in the maps of its family: all or nothing. The types in
// scratch_types are the maker's, who makes them within a transaction of its own.
template <class Key, class ByKey>
const Symbol* TermManager::add_family_symbol(SymbolTag::tag tag, const Key& key,
                                             hsh::HashMap<const Symbol*, Key>& by_symbol,
                                             ByKey& by_key) {
  Transaction making(*this);
  const Symbol* s = making.add_symbol(tag);
  insert_in_both(by_symbol, by_key, key, s);
  making.commit();
  return s;
}

// The width of a bit-vector. Throws for any other term.
inline size_t TermManager::require_bv(const Term_* t, const char* complaint) const {
  require_own(*this, t);
  size_t width = 0;
  if (!is_bv_type(t->type(), &width)) reject_operand(t, complaint);
  return width;
}

// The format of a floating-point value. Throws for any other term.
inline IEEEFloat::format TermManager::require_fp(const Term_* t, const char* complaint) const {
  require_own(*this, t);
  IEEEFloat::format format;
  if (!is_fp_type(t->type(), &format.e, &format.m)) reject_operand(t, complaint);
  return format;
}

// The symbol of any family whose operands are bit-vectors of one width, the last of the numbers. No
// result type means that of the operands. The map by keys has a guard, or is that of a caller of
// the public makers.
template <class Key, class ByKey>
const Symbol* TermManager::make_bv_family_symbol(const char* name, SymbolTag::tag tag,
                                                 const Key& key,
                                                 std::initializer_list<size_t> numbers,
                                                 size_t arity,
                                                 hsh::HashMap<const Symbol*, Key>& by_symbol,
                                                 ByKey& by_key, const DataType* result_type) {
  const auto found = by_key.find(key);
  if (found != by_key.end()) return found->second;
  Transaction making(*this);
  const DataType* type = get_bv_type(std::data(numbers)[numbers.size() - 1]);
  set_scratch_types(arity, type, result_type != nullptr ? result_type : type);
  compose_family_name(name, /*separated=*/true, numbers);
  const Symbol* s = add_family_symbol(tag, key, by_symbol, by_key);
  making.commit();
  return s;
}

// The symbol of any family keyed by one format: an optional rounding mode, one or two operands of
// the format, and a result that is Bool or of the format.
template <class ByFormat>
const Symbol* TermManager::make_format_symbol(
    const char* name, bool separated, SymbolTag::tag tag, bool rounding, size_t operands,
    bool bool_result, ByFormat& by_format,
    hsh::HashMap<const Symbol*, IEEEFloat::format>& by_symbol, size_t e, size_t m) {
  const IEEEFloat::format key{e, m};
  const auto found = by_format.find(key);
  if (found != by_format.end()) return found->second;
  Transaction making(*this);
  const DataType* type = get_fp_type(e, m);
  set_scratch_types(operands, type, bool_result ? bool_type : type);
  if (rounding) scratch_types.insert(scratch_types.begin() + 1, fprounding_type);
  compose_family_name(name, separated, {e, m});
  const Symbol* s = add_family_symbol(tag, key, by_symbol, by_format);
  making.commit();
  return s;
}

//----------------------------------------------------------------------------------------------
// Families keyed by a width

template <SymbolTag::tag Tag>
const Symbol* TermManager::width_symbol(size_t width) {
  constexpr OperatorFamily family = operator_family(Tag);
  static_assert(family.key == FamilyKey::Width && family.separated);
  auto& [by_symbol, by_width] = width_families[family_slot(Tag)];
  if constexpr (family.result == FamilyResult::Bit) {
    const auto found = by_width.find(width);
    if (found != by_width.end()) return found->second;
    Transaction making(*this);
    const DataType* result = get_bv_type(1);
    const Symbol* s = make_bv_family_symbol(family.base, Tag, width, {width}, family.arity,
                                            by_symbol, by_width, result);
    making.commit();
    return s;
  } else {
    const DataType* result = nullptr;  // bit-vectors of the width
    if constexpr (family.result == FamilyResult::Bool) result = bool_type;
    if constexpr (family.result == FamilyResult::Int) result = int_type;
    return make_bv_family_symbol(family.base, Tag, width, {width}, family.arity, by_symbol,
                                 by_width, result);
  }
}

// The symbol for the width of an operand.
template <SymbolTag::tag Tag>
const Symbol* TermManager::width_symbol_for(const Term_* operand) {
  require_own(*this, operand);
  const DataType* type = operand->type();
  LatestUse& latest = latest_uses[family_slot(Tag)];
  if (latest.operand == type) return latest.symbol;
  if (!is_bv_type(type, nullptr)) reject_operand(operand, operator_family(Tag).complaint);
  const size_t* width = bv_widths.find_key(type->get_component(1));
  const Symbol* s = width_symbol<Tag>(width != nullptr ? *width : 0);
  // The type of a width that nobody has asked for yet may still get it.
  if (width != nullptr) latest = {type, s};
  return s;
}

template <SymbolTag::tag Tag>
const Term_* TermManager::bv_unary(const Term_* t) {
  return apply(width_symbol_for<Tag>(t), {t}, operator_family(Tag).operation);
}

template <SymbolTag::tag Tag>
const Term_* TermManager::bv_binary(const Term_* a, const Term_* b) {
  return make_binary(width_symbol_for<Tag>(a), a, b, operator_family(Tag).operation);
}

template <SymbolTag::tag Tag>
bool TermManager::is_width_symbol(const Symbol* s, size_t* width) const {
  return is_bv_symbol(s, width_families[family_slot(Tag)].by_symbol, width);
}

//----------------------------------------------------------------------------------------------
// Families keyed by an amount and a width

template <SymbolTag::tag Tag>
const Symbol* TermManager::index1_symbol(size_t k, size_t width) {
  constexpr OperatorFamily family = operator_family(Tag);
  static_assert(family.key == FamilyKey::Index1 && family.separated);
  auto& [by_symbol, by_key] = index1_families[family_slot(Tag)];
  if constexpr (family.result == FamilyResult::Wider) {
    const auto found = by_key.find({k, width});
    if (found != by_key.end()) return found->second;
    const size_t sum = sum_of_widths(k, width);
    Transaction making(*this);
    const DataType* result = get_bv_type(sum);
    const Symbol* s = make_bv_family_symbol(family.base, Tag, BVIndex1{k, width}, {k, width},
                                            family.arity, by_symbol, by_key, result);
    making.commit();
    return s;
  } else {
    return make_bv_family_symbol(family.base, Tag, BVIndex1{k, width}, {k, width}, family.arity,
                                 by_symbol, by_key,
                                 /*result_type=*/nullptr);
  }
}

template <SymbolTag::tag Tag>
const Term_* TermManager::bv_index1(size_t k, const Term_* t) {
  constexpr OperatorFamily family = operator_family(Tag);
  const size_t width = require_bv(t, family.complaint);
  const Symbol* s = index1_symbol<Tag>(k, width);
  return apply(s, {t}, family.operation);
}

//----------------------------------------------------------------------------------------------
// Families keyed by a format

template <SymbolTag::tag Tag>
const Symbol* TermManager::format_symbol(size_t e, size_t m) {
  constexpr OperatorFamily family = operator_family(Tag);
  static_assert(family.key == FamilyKey::Format);
  auto& [by_symbol, by_format] = format_families[family_slot(Tag)];
  return make_format_symbol(family.base, family.separated, Tag, family.rounding,
                            family.arity - (family.rounding ? 1 : 0),
                            family.result == FamilyResult::Bool, by_format, by_symbol, e, m);
}

// The format is that of the given operand, which is one of the arguments.
template <SymbolTag::tag Tag>
const Term_* TermManager::fp_with(const Term_* operand, std::initializer_list<const Term_*> args) {
  constexpr OperatorFamily family = operator_family(Tag);
  const IEEEFloat::format format = require_fp(operand, family.complaint);
  const Symbol* s = format_symbol<Tag>(format.e, format.m);
  return apply(s, args, family.operation);
}

}  // namespace quill

#endif
