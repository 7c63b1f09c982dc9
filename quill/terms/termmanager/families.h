// The templates from which the members of the operator families are made, and the loop over all
// families. Private to the sources of the term manager.
//
// Each template knows the row of its operator at compile time, so that a builder needs only a type
// test, one look-up and the request itself.

#ifndef QUILL_TERMS_TERMMANAGER_FAMILIES_H
#define QUILL_TERMS_TERMMANAGER_FAMILIES_H

#include <array>
#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <string>
#include <vector>

#include "quill/terms/termmanager/misuse_checks.h"
#include "quill/terms/termmanager/operator.h"
#include "quill/terms/termmanager/operator_family.h"
#include "quill/terms/termmanager/result_widths.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/terms/termmanager/transaction.h"

namespace quill {

class TermManager::Families {
 public:
  //--------------------------------------------------------------------------------------------
  // Types, names and operands, in 'families.cpp'

  // Puts a function type with `operands` operands of one type in scratch_types.
  static void set_scratch_types(TermManager& m, size_t operands, const DataType* operand,
                                const DataType* result);

  // Puts the base and the numbers in name_buffer, joined by "_" and between backquotes. No "_"
  // follows the base unless `separated`.
  static void compose_name(TermManager& m, const char* base, bool separated,
                           std::initializer_list<size_t> numbers);

  // How the name of a symbol spells a type.
  static std::string name_of_type(const TermManager& m, const DataType* t);

  [[noreturn]] static void reject_operand(const Term_* t, const char* complaint);

  // The width of a bit-vector. Throws for any other term.
  static size_t require_bv(const TermManager& m, const Term_* t, const char* complaint) {
    require_own(m, t);
    size_t width = 0;
    if (!m.is_bv_type(t->type(), &width)) reject_operand(t, complaint);
    return width;
  }

  // The format of a floating-point value. Throws for any other term.
  static IEEEFloat::format require_fp(const TermManager& m, const Term_* t, const char* complaint) {
    require_own(m, t);
    IEEEFloat::format format;
    if (!m.is_fp_type(t->type(), &format.e, &format.m)) reject_operand(t, complaint);
    return format;
  }

  //--------------------------------------------------------------------------------------------
  // Makers for all families. A map by keys is a GuardedMap, or the HashMap that a caller passes to
  // the public makers.

  // Makes the function symbol whose type is in scratch_types and whose name, between backquotes, is
  // in name_buffer, and enters it in the maps of its family: all or nothing. The caller has made
  // the types in scratch_types within a transaction of its own.
  template <class Key, class ByKey>
  static const Symbol* add_symbol(TermManager& m, SymbolTag::tag tag, const Key& key,
                                  hsh::HashMap<const Symbol*, Key>& by_symbol, ByKey& by_key) {
    Transaction making(m);
    const Symbol* s = making.add_symbol(tag);
    insert_in_both(by_symbol, by_key, key, s);
    making.commit();
    return s;
  }

  // The symbol of any family whose operands are bit-vectors of one width, which is the last of the
  // numbers. A null result type means the type of the operands.
  template <class Key, class ByKey>
  static const Symbol* make_bv_symbol(TermManager& m, const char* name, SymbolTag::tag tag,
                                      const Key& key, std::initializer_list<size_t> numbers,
                                      size_t arity, hsh::HashMap<const Symbol*, Key>& by_symbol,
                                      ByKey& by_key, const DataType* result_type) {
    if (const Symbol* present = find_or_null(by_key, key)) return present;
    Transaction making(m);
    const DataType* type = m.get_bv_type(std::data(numbers)[numbers.size() - 1]);
    set_scratch_types(m, arity, type, result_type != nullptr ? result_type : type);
    compose_name(m, name, /*separated=*/true, numbers);
    const Symbol* s = add_symbol(m, tag, key, by_symbol, by_key);
    making.commit();
    return s;
  }

  // The symbol of any family keyed by one format. It takes an optional rounding mode and then
  // operands of the format, and gives Bool or a value of the format.
  template <class ByFormat>
  static const Symbol* make_format_symbol(TermManager& m, const char* name, bool separated,
                                          SymbolTag::tag tag, bool rounding, size_t operands,
                                          bool bool_result, ByFormat& by_format,
                                          hsh::HashMap<const Symbol*, IEEEFloat::format>& by_symbol,
                                          const IEEEFloat::format& key) {
    if (const Symbol* present = find_or_null(by_format, key)) return present;
    return add_format_symbol(m, name, separated, tag, rounding, operands, bool_result, by_format,
                             by_symbol, key);
  }

  // The same for a format that has no symbol. Apart, so that the look-up stays small.
  template <class ByFormat>
  [[gnu::noinline]] static const Symbol* add_format_symbol(
      TermManager& m, const char* name, bool separated, SymbolTag::tag tag, bool rounding,
      size_t operands, bool bool_result, ByFormat& by_format,
      hsh::HashMap<const Symbol*, IEEEFloat::format>& by_symbol, const IEEEFloat::format& key) {
    Transaction making(m);
    const DataType* type = m.get_fp_type(key.e, key.m);
    set_scratch_types(m, operands, type, bool_result ? m.bool_type : type);
    if (rounding) m.scratch_types.insert(m.scratch_types.begin() + 1, m.fprounding_type);
    compose_name(m, name, separated, {key.e, key.m});
    const Symbol* s = add_symbol(m, tag, key, by_symbol, by_format);
    making.commit();
    return s;
  }

  //--------------------------------------------------------------------------------------------
  // Families keyed by a width

  template <SymbolTag::tag Tag>
  static const Symbol* width_symbol(TermManager& m, size_t width) {
    constexpr OperatorFamily family = operator_family(Tag);
    static_assert(family.key == FamilyKey::Width && family.separated);
    auto& [by_symbol, by_width] = m.width_families[family_slot(Tag)];
    if constexpr (family.result == FamilyResult::Bit) {
      if (const Symbol* present = find_or_null(by_width, width)) return present;
      Transaction making(m);
      const DataType* result = m.get_bv_type(1);
      const Symbol* s = make_bv_symbol(m, family.base, Tag, width, {width}, family.arity, by_symbol,
                                       by_width, result);
      making.commit();
      return s;
    } else {
      const DataType* result = nullptr;  // the type of the operands
      if constexpr (family.result == FamilyResult::Bool) result = m.bool_type;
      if constexpr (family.result == FamilyResult::Int) result = m.int_type;
      return make_bv_symbol(m, family.base, Tag, width, {width}, family.arity, by_symbol, by_width,
                            result);
    }
  }

  // The symbol for the width of the operand.
  template <SymbolTag::tag Tag>
  static const Symbol* width_symbol_for(TermManager& m, const Term_* operand) {
    require_own(m, operand);
    const DataType* type = operand->type();
    const LatestUse& latest = m.latest_uses[family_slot(Tag)];
    return latest.operand == type ? latest.symbol : other_width_symbol_for<Tag>(m, operand);
  }

  // The same for an operand of another width than the latest one. Apart, so that the look at the
  // latest one stays small.
  template <SymbolTag::tag Tag>
  [[gnu::noinline]] static const Symbol* other_width_symbol_for(TermManager& m,
                                                                const Term_* operand) {
    const DataType* type = operand->type();
    if (!m.is_bv_type(type, nullptr)) reject_operand(operand, operator_family(Tag).complaint);
    const size_t* width = m.bv_widths.find_key(type->get_component(1));
    const Symbol* s = width_symbol<Tag>(m, width != nullptr ? *width : 0);
    // A type whose parameter has no width yet may get one later, so its symbol is not remembered.
    if (width != nullptr) m.latest_uses[family_slot(Tag)] = {type, s};
    return s;
  }

  template <SymbolTag::tag Tag>
  static const Term_* bv_unary(TermManager& m, const Term_* t) {
    return m.apply(width_symbol_for<Tag>(m, t), {t}, operator_family(Tag).operation);
  }

  template <SymbolTag::tag Tag>
  static const Term_* bv_binary(TermManager& m, const Term_* a, const Term_* b) {
    return m.make_binary(width_symbol_for<Tag>(m, a), a, b, operator_family(Tag).operation);
  }

  template <SymbolTag::tag Tag>
  static bool is_width_symbol(const TermManager& m, const Symbol* s, size_t* width) {
    return m.is_bv_symbol(s, m.width_families[family_slot(Tag)].by_object, width);
  }

  //--------------------------------------------------------------------------------------------
  // Families keyed by an amount and a width

  template <SymbolTag::tag Tag>
  static const Symbol* index1_symbol(TermManager& m, size_t k, size_t width) {
    constexpr OperatorFamily family = operator_family(Tag);
    static_assert(family.key == FamilyKey::Index1 && family.separated);
    auto& [by_symbol, by_key] = m.index1_families[family_slot(Tag)];
    const BVIndex1 key{k, width};
    if constexpr (family.result == FamilyResult::Wider) {
      if (const Symbol* present = find_or_null(by_key, key)) return present;
      const size_t sum = sum_of_widths(k, width);
      Transaction making(m);
      const DataType* result = m.get_bv_type(sum);
      const Symbol* s = make_bv_symbol(m, family.base, Tag, key, {k, width}, family.arity,
                                       by_symbol, by_key, result);
      making.commit();
      return s;
    } else {
      return make_bv_symbol(m, family.base, Tag, key, {k, width}, family.arity, by_symbol, by_key,
                            /*result_type=*/nullptr);
    }
  }

  template <SymbolTag::tag Tag>
  static const Term_* bv_index1(TermManager& m, size_t k, const Term_* t) {
    constexpr OperatorFamily family = operator_family(Tag);
    const size_t width = require_bv(m, t, family.complaint);
    const Symbol* s = index1_symbol<Tag>(m, k, width);
    return m.apply(s, {t}, family.operation);
  }

  template <SymbolTag::tag Tag>
  static bool is_index1_symbol(const TermManager& m, const Symbol* s, size_t* k, size_t* width) {
    return m.is_bv_symbol(s, m.index1_families[family_slot(Tag)].by_object, k, width);
  }

  //--------------------------------------------------------------------------------------------
  // Families keyed by two or three numbers, in 'bv_indexed_operators.cpp'

  // Throws Exception unless the bits from lsb to msb are some, and some of `width`.
  static void check_range(size_t msb, size_t lsb) {
    if (lsb > msb) reject_empty_range(msb, lsb);
  }
  static void check_range_within(size_t msb, size_t lsb, size_t width) {
    if (msb >= width) reject_range(msb, lsb, width);
  }
  [[noreturn]] static void reject_empty_range(size_t msb, size_t lsb);
  [[noreturn]] static void reject_range(size_t msb, size_t lsb, size_t width);

  // Makes the symbol of an extraction that has none.
  static const Symbol* add_extract_symbol(TermManager& m, const BVIndex2& key);

  //--------------------------------------------------------------------------------------------
  // Families keyed by a format

  template <SymbolTag::tag Tag>
  static const Symbol* format_symbol(TermManager& m, size_t e, size_t s) {
    constexpr OperatorFamily family = operator_family(Tag);
    static_assert(family.key == FamilyKey::Format);
    auto& [by_symbol, by_format] = m.format_families[family_slot(Tag)];
    return make_format_symbol(m, family.base, family.separated, Tag, family.rounding,
                              family.arity - (family.rounding ? 1 : 0),
                              family.result == FamilyResult::Bool, by_format, by_symbol,
                              IEEEFloat::format{e, s});
  }

  // The format is that of `operand`, which is also one of the arguments.
  template <SymbolTag::tag Tag>
  static const Term_* fp_with(TermManager& m, const Term_* operand,
                              std::initializer_list<const Term_*> args) {
    constexpr OperatorFamily family = operator_family(Tag);
    const IEEEFloat::format format = require_fp(m, operand, family.complaint);
    const Symbol* s = format_symbol<Tag>(m, format.e, format.m);
    return m.apply(s, args, family.operation);
  }

  template <SymbolTag::tag Tag>
  static bool is_format_symbol(const TermManager& m, const Symbol* s, size_t* e, size_t* sig) {
    return m.is_fp_symbol(m.format_families[family_slot(Tag)].by_object, s, e, sig);
  }

  //--------------------------------------------------------------------------------------------
  // Conversions of floating-point values, which are keyed by two formats or widths

  // The symbol with this key, or null.
  template <SymbolTag::tag Tag>
  static const Symbol* find_conversion(const TermManager& m, const FPFormatCast& key) {
    return m.cast_families[family_slot(Tag)].find(key);
  }

  // The key of a symbol of this family, or null.
  template <SymbolTag::tag Tag>
  static const FPFormatCast* find_conversion_key(const TermManager& m, const Symbol* s) {
    require_own(m, s);
    return m.cast_families[family_slot(Tag)].find_key(s);
  }

  template <SymbolTag::tag Tag>
  static const Symbol* make_conversion_symbol(TermManager& m, const FPFormatCast& key,
                                              const DataType* operand, const DataType* result,
                                              std::initializer_list<size_t> numbers) {
    constexpr OperatorFamily family = operator_family(Tag);
    set_scratch_types(m, 1, operand, result);
    if (family.rounding) m.scratch_types.insert(m.scratch_types.begin() + 1, m.fprounding_type);
    compose_name(m, family.base, family.separated, numbers);
    auto& [by_symbol, by_key] = m.cast_families[family_slot(Tag)];
    return add_symbol(m, Tag, key, by_symbol, by_key);
  }

  // From bit-vectors, in 'fp_conversions.cpp'.
  template <SymbolTag::tag Tag>
  static const Symbol* from_bv_symbol(TermManager& m, size_t w, size_t e, size_t significand);
  template <SymbolTag::tag Tag>
  static const Term_* from_bv(TermManager& m, size_t e, size_t significand, const Term_* rm,
                              const Term_* t);
  template <SymbolTag::tag Tag>
  static bool is_from_bv(const TermManager& m, const Symbol* s, size_t* w, size_t* e,
                         size_t* significand);

  //--------------------------------------------------------------------------------------------
  // Arrays, in 'arrays.cpp'

  // Makes the symbol of an array family: `components` are the types after the application type.
  static const Symbol* make_array_symbol(TermManager& m, SymbolTag::tag tag, const ArrIndex& key,
                                         std::initializer_list<const DataType*> components);

  //--------------------------------------------------------------------------------------------
  // All operators, in 'generic_operators.cpp'

  static const Symbol* standard_symbol(const TermManager& m, SymbolTag::tag tag,
                                       const DataType* type);
  static bool is_operator(const TermManager& m, const Symbol* s, SymbolTag::tag tag, Operator& op);
  static std::array<uint64_t, 4> conversion_numbers(SymbolTag::tag tag, const FPFormatCast& key);
  template <SymbolTag::tag Tag>
  static const Symbol* symbol_of_row(TermManager& m, const Operator& op);
  static const Symbol* symbol_of_family(TermManager& m, const Operator& op);
  static void check_operands(const TermManager& m, const Operator& op, const OperatorFamily& family,
                             const std::vector<const Term_*>& args);
  static const Term_* make_type_keyed(TermManager& m, const Operator& op,
                                      const std::vector<const Term_*>& args);

  //--------------------------------------------------------------------------------------------

  // Calls action(row, symbols) for each row of operator_families, in order. The symbols are a
  // SymbolFamily, or the ArraySymbols of an array family; const when the manager is.
  template <class Manager, class Action>
  static void for_each(Manager& m, Action action) {
    for (const OperatorFamily& row : operator_families) {
      const size_t slot = family_slot(row.tag);
      switch (row.key) {
        case FamilyKey::Width:
          action(row, m.width_families[slot]);
          break;
        case FamilyKey::Index1:
          action(row, m.index1_families[slot]);
          break;
        case FamilyKey::Index2:
          action(row, m.index2_families[slot]);
          break;
        case FamilyKey::Format:
          action(row, m.format_families[slot]);
          break;
        case FamilyKey::Cast:
          action(row, m.cast_families[slot]);
          break;
        case FamilyKey::Array:
          action(row, m.array_families[slot]);
          break;
        case FamilyKey::Modulus:
          action(row, m.modular_congruences);
          break;
      }
    }
  }
};

}  // namespace quill

#endif
