// The names that theories give a meaning in SMT-LIB 2.6: one table for symbols, one for sorts.
//
// A name is reserved where the logic has its theory: a script cannot declare it there. Readers
// reserve more names, for operators of their own or in logics with fewer theories; a symbol with
// such a name can be read, but has to be written by another name.

#ifndef QUILL_SMTLIB_THEORY_NAMES_H
#define QUILL_SMTLIB_THEORY_NAMES_H

#include <cstddef>
#include <iterator>
#include <string_view>

#include "quill/smtlib/logic.h"

namespace quill {

struct TheoryName {
  std::string_view name;
  Theory theory;   // whose name it is; NONE for a name that only readers reserve
  Theory readers;  // where readers reserve the name
  // Whether it is an operator only with indices, as in (_ extract 7 0): without them the user may
  // declare the name, whatever the logic is.
  bool indexed = false;
};

// Both tables ascend by name.
// clang-format off
inline constexpr TheoryName theory_symbols[] = {
    {"*",                       Theory::Arithmetic,    Theory::Arithmetic},
    {"+",                       Theory::Arithmetic,    Theory::Arithmetic},
    {"+oo",                     Theory::FloatingPoint, Theory::FloatingPoint, true},
    {"+zero",                   Theory::FloatingPoint, Theory::FloatingPoint, true},
    {"-",                       Theory::Arithmetic,    Theory::Arithmetic},
    {"-oo",                     Theory::FloatingPoint, Theory::FloatingPoint, true},
    {"-zero",                   Theory::FloatingPoint, Theory::FloatingPoint, true},
    {"/",                       Theory::Reals,         Theory::Reals},
    {"<",                       Theory::Arithmetic,    Theory::Arithmetic},
    {"<=",                      Theory::Arithmetic,    Theory::Arithmetic},
    {"=",                       Theory::Core,          Theory::Core},
    {"=>",                      Theory::Core,          Theory::Core},
    {">",                       Theory::Arithmetic,    Theory::Arithmetic},
    {">=",                      Theory::Arithmetic,    Theory::Arithmetic},
    {"NaN",                     Theory::FloatingPoint, Theory::FloatingPoint, true},
    {"RNA",                     Theory::FloatingPoint, Theory::FloatingPoint},
    {"RNE",                     Theory::FloatingPoint, Theory::FloatingPoint},
    {"RTN",                     Theory::FloatingPoint, Theory::FloatingPoint},
    {"RTP",                     Theory::FloatingPoint, Theory::FloatingPoint},
    {"RTZ",                     Theory::FloatingPoint, Theory::FloatingPoint},
    {"^",                       Theory::NoTheory,      Theory::Arithmetic},
    {"abs",                     Theory::Ints,          Theory::Arithmetic},
    {"and",                     Theory::Core,          Theory::Core},
    {"arccos",                  Theory::NoTheory,      Theory::Extensions},
    {"arccot",                  Theory::NoTheory,      Theory::Extensions},
    {"arccsc",                  Theory::NoTheory,      Theory::Extensions},
    {"arcsec",                  Theory::NoTheory,      Theory::Extensions},
    {"arcsin",                  Theory::NoTheory,      Theory::Extensions},
    {"arctan",                  Theory::NoTheory,      Theory::Extensions},
    {"bag",                     Theory::NoTheory,      Theory::Extensions},
    {"bag.card",                Theory::NoTheory,      Theory::Extensions},
    {"bag.choose",              Theory::NoTheory,      Theory::Extensions},
    {"bag.count",               Theory::NoTheory,      Theory::Extensions},
    {"bag.difference_remove",   Theory::NoTheory,      Theory::Extensions},
    {"bag.difference_subtract", Theory::NoTheory,      Theory::Extensions},
    {"bag.duplicate_removal",   Theory::NoTheory,      Theory::Extensions},
    {"bag.empty",               Theory::NoTheory,      Theory::Extensions},
    {"bag.filter",              Theory::NoTheory,      Theory::Extensions},
    {"bag.fold",                Theory::NoTheory,      Theory::Extensions},
    {"bag.from_set",            Theory::NoTheory,      Theory::Extensions},
    {"bag.inter_min",           Theory::NoTheory,      Theory::Extensions},
    {"bag.is_singleton",        Theory::NoTheory,      Theory::Extensions},
    {"bag.map",                 Theory::NoTheory,      Theory::Extensions},
    {"bag.member",              Theory::NoTheory,      Theory::Extensions},
    {"bag.partition",           Theory::NoTheory,      Theory::Extensions},
    {"bag.subbag",              Theory::NoTheory,      Theory::Extensions},
    {"bag.to_set",              Theory::NoTheory,      Theory::Extensions},
    {"bag.union_disjoint",      Theory::NoTheory,      Theory::Extensions},
    {"bag.union_max",           Theory::NoTheory,      Theory::Extensions},
    {"bv2nat",                  Theory::NoTheory,      Theory::Bits},
    {"bvadd",                   Theory::BitVectors,    Theory::Bits},
    {"bvand",                   Theory::BitVectors,    Theory::Bits},
    {"bvashr",                  Theory::BitVectors,    Theory::Bits},
    {"bvcomp",                  Theory::BitVectors,    Theory::Bits},
    {"bvlshr",                  Theory::BitVectors,    Theory::Bits},
    {"bvmul",                   Theory::BitVectors,    Theory::Bits},
    {"bvnand",                  Theory::BitVectors,    Theory::Bits},
    {"bvneg",                   Theory::BitVectors,    Theory::Bits},
    {"bvnego",                  Theory::NoTheory,      Theory::Bits},
    {"bvnor",                   Theory::BitVectors,    Theory::Bits},
    {"bvnot",                   Theory::BitVectors,    Theory::Bits},
    {"bvor",                    Theory::BitVectors,    Theory::Bits},
    {"bvredand",                Theory::NoTheory,      Theory::Bits},
    {"bvredor",                 Theory::NoTheory,      Theory::Bits},
    {"bvsaddo",                 Theory::NoTheory,      Theory::Bits},
    {"bvsdiv",                  Theory::BitVectors,    Theory::Bits},
    {"bvsdivo",                 Theory::NoTheory,      Theory::Bits},
    {"bvsge",                   Theory::BitVectors,    Theory::Bits},
    {"bvsgt",                   Theory::BitVectors,    Theory::Bits},
    {"bvshl",                   Theory::BitVectors,    Theory::Bits},
    {"bvsle",                   Theory::BitVectors,    Theory::Bits},
    {"bvslt",                   Theory::BitVectors,    Theory::Bits},
    {"bvsmod",                  Theory::BitVectors,    Theory::Bits},
    {"bvsmulo",                 Theory::NoTheory,      Theory::Bits},
    {"bvsrem",                  Theory::BitVectors,    Theory::Bits},
    {"bvssubo",                 Theory::NoTheory,      Theory::Bits},
    {"bvsub",                   Theory::BitVectors,    Theory::Bits},
    {"bvuaddo",                 Theory::NoTheory,      Theory::Bits},
    {"bvudiv",                  Theory::BitVectors,    Theory::Bits},
    {"bvuge",                   Theory::BitVectors,    Theory::Bits},
    {"bvugt",                   Theory::BitVectors,    Theory::Bits},
    {"bvule",                   Theory::BitVectors,    Theory::Bits},
    {"bvult",                   Theory::BitVectors,    Theory::Bits},
    {"bvumulo",                 Theory::NoTheory,      Theory::Bits},
    {"bvurem",                  Theory::BitVectors,    Theory::Bits},
    {"bvusubo",                 Theory::NoTheory,      Theory::Bits},
    {"bvxnor",                  Theory::BitVectors,    Theory::Bits},
    {"bvxor",                   Theory::BitVectors,    Theory::Bits},
    {"char",                    Theory::Strings,       Theory::Strings, true},
    {"concat",                  Theory::BitVectors,    Theory::Bits},
    {"const",                   Theory::NoTheory,      Theory::Arrays},
    {"cos",                     Theory::NoTheory,      Theory::Extensions},
    {"cot",                     Theory::NoTheory,      Theory::Extensions},
    {"csc",                     Theory::NoTheory,      Theory::Extensions},
    {"distinct",                Theory::Core,          Theory::Core},
    {"div",                     Theory::Ints,          Theory::Ints},
    {"divisible",               Theory::Ints,          Theory::Ints, true},
    {"eqrange",                 Theory::NoTheory,      Theory::Arrays},
    {"exp",                     Theory::NoTheory,      Theory::Extensions},
    {"extract",                 Theory::BitVectors,    Theory::Bits, true},
    {"false",                   Theory::Core,          Theory::Core},
    {"fp",                      Theory::FloatingPoint, Theory::FloatingPoint},
    {"fp.abs",                  Theory::FloatingPoint, Theory::FloatingPoint},
    {"fp.add",                  Theory::FloatingPoint, Theory::FloatingPoint},
    {"fp.div",                  Theory::FloatingPoint, Theory::FloatingPoint},
    {"fp.eq",                   Theory::FloatingPoint, Theory::FloatingPoint},
    {"fp.fma",                  Theory::FloatingPoint, Theory::FloatingPoint},
    {"fp.geq",                  Theory::FloatingPoint, Theory::FloatingPoint},
    {"fp.gt",                   Theory::FloatingPoint, Theory::FloatingPoint},
    {"fp.isInfinite",           Theory::FloatingPoint, Theory::FloatingPoint},
    {"fp.isNaN",                Theory::FloatingPoint, Theory::FloatingPoint},
    {"fp.isNegative",           Theory::FloatingPoint, Theory::FloatingPoint},
    {"fp.isNormal",             Theory::FloatingPoint, Theory::FloatingPoint},
    {"fp.isPositive",           Theory::FloatingPoint, Theory::FloatingPoint},
    {"fp.isSubnormal",          Theory::FloatingPoint, Theory::FloatingPoint},
    {"fp.isZero",               Theory::FloatingPoint, Theory::FloatingPoint},
    {"fp.leq",                  Theory::FloatingPoint, Theory::FloatingPoint},
    {"fp.lt",                   Theory::FloatingPoint, Theory::FloatingPoint},
    {"fp.max",                  Theory::FloatingPoint, Theory::FloatingPoint},
    {"fp.min",                  Theory::FloatingPoint, Theory::FloatingPoint},
    {"fp.mul",                  Theory::FloatingPoint, Theory::FloatingPoint},
    {"fp.neg",                  Theory::FloatingPoint, Theory::FloatingPoint},
    {"fp.rem",                  Theory::FloatingPoint, Theory::FloatingPoint},
    {"fp.roundToIntegral",      Theory::FloatingPoint, Theory::FloatingPoint},
    {"fp.sqrt",                 Theory::FloatingPoint, Theory::FloatingPoint},
    {"fp.sub",                  Theory::FloatingPoint, Theory::FloatingPoint},
    {"fp.to_ieee_bv",           Theory::NoTheory,      Theory::FloatingPoint},
    {"fp.to_real",              Theory::FloatingPoint, Theory::FloatingPoint},
    {"fp.to_sbv",               Theory::FloatingPoint, Theory::FloatingPoint, true},
    {"fp.to_ubv",               Theory::FloatingPoint, Theory::FloatingPoint, true},
    {"int.pow2",                Theory::NoTheory,      Theory::Arithmetic},
    {"int2bv",                  Theory::NoTheory,      Theory::Bits, true},
    {"int_to_bv",               Theory::NoTheory,      Theory::Bits, true},
    {"is_int",                  Theory::RealsInts,     Theory::RealsInts},
    {"ite",                     Theory::Core,          Theory::Core},
    {"mod",                     Theory::Ints,          Theory::Ints},
    {"nat2bv",                  Theory::NoTheory,      Theory::Bits, true},
    {"not",                     Theory::Core,          Theory::Core},
    {"or",                      Theory::Core,          Theory::Core},
    {"pto",                     Theory::NoTheory,      Theory::Extensions},
    {"re.*",                    Theory::Strings,       Theory::Strings},
    {"re.+",                    Theory::Strings,       Theory::Strings},
    {"re.++",                   Theory::Strings,       Theory::Strings},
    {"re.^",                    Theory::Strings,       Theory::Strings, true},
    {"re.all",                  Theory::Strings,       Theory::Strings},
    {"re.allchar",              Theory::Strings,       Theory::Strings},
    {"re.comp",                 Theory::Strings,       Theory::Strings},
    {"re.diff",                 Theory::Strings,       Theory::Strings},
    {"re.inter",                Theory::Strings,       Theory::Strings},
    {"re.loop",                 Theory::Strings,       Theory::Strings, true},
    {"re.none",                 Theory::Strings,       Theory::Strings},
    {"re.opt",                  Theory::Strings,       Theory::Strings},
    {"re.range",                Theory::Strings,       Theory::Strings},
    {"re.union",                Theory::Strings,       Theory::Strings},
    {"real.pi",                 Theory::NoTheory,      Theory::Extensions},
    {"rel.aggr",                Theory::NoTheory,      Theory::Extensions},
    {"rel.group",               Theory::NoTheory,      Theory::Extensions},
    {"rel.iden",                Theory::NoTheory,      Theory::Extensions},
    {"rel.join",                Theory::NoTheory,      Theory::Extensions},
    {"rel.join_image",          Theory::NoTheory,      Theory::Extensions},
    {"rel.product",             Theory::NoTheory,      Theory::Extensions},
    {"rel.project",             Theory::NoTheory,      Theory::Extensions},
    {"rel.tclosure",            Theory::NoTheory,      Theory::Extensions},
    {"rel.transpose",           Theory::NoTheory,      Theory::Extensions},
    {"repeat",                  Theory::BitVectors,    Theory::Bits, true},
    {"rotate_left",             Theory::BitVectors,    Theory::Bits, true},
    {"rotate_right",            Theory::BitVectors,    Theory::Bits, true},
    {"roundNearestTiesToAway",  Theory::FloatingPoint, Theory::FloatingPoint},
    {"roundNearestTiesToEven",  Theory::FloatingPoint, Theory::FloatingPoint},
    {"roundTowardNegative",     Theory::FloatingPoint, Theory::FloatingPoint},
    {"roundTowardPositive",     Theory::FloatingPoint, Theory::FloatingPoint},
    {"roundTowardZero",         Theory::FloatingPoint, Theory::FloatingPoint},
    {"sbv_to_int",              Theory::NoTheory,      Theory::Bits},
    {"sec",                     Theory::NoTheory,      Theory::Extensions},
    {"select",                  Theory::Arrays,        Theory::Arrays},
    {"sep",                     Theory::NoTheory,      Theory::Extensions},
    {"sep.emp",                 Theory::NoTheory,      Theory::Extensions},
    {"sep.nil",                 Theory::NoTheory,      Theory::Extensions},
    {"seq.++",                  Theory::Strings,       Theory::Strings},
    {"seq.at",                  Theory::Strings,       Theory::Strings},
    {"seq.contains",            Theory::Strings,       Theory::Strings},
    {"seq.empty",               Theory::Strings,       Theory::Strings},
    {"seq.extract",             Theory::Strings,       Theory::Strings},
    {"seq.indexof",             Theory::Strings,       Theory::Strings},
    {"seq.len",                 Theory::Strings,       Theory::Strings},
    {"seq.nth",                 Theory::Strings,       Theory::Strings},
    {"seq.prefixof",            Theory::Strings,       Theory::Strings},
    {"seq.replace",             Theory::Strings,       Theory::Strings},
    {"seq.replace_all",         Theory::NoTheory,      Theory::Strings},
    {"seq.rev",                 Theory::Strings,       Theory::Strings},
    {"seq.suffixof",            Theory::Strings,       Theory::Strings},
    {"seq.unit",                Theory::Strings,       Theory::Strings},
    {"seq.update",              Theory::Strings,       Theory::Strings},
    {"set.card",                Theory::NoTheory,      Theory::Extensions},
    {"set.choose",              Theory::NoTheory,      Theory::Extensions},
    {"set.complement",          Theory::NoTheory,      Theory::Extensions},
    {"set.empty",               Theory::NoTheory,      Theory::Extensions},
    {"set.filter",              Theory::NoTheory,      Theory::Extensions},
    {"set.fold",                Theory::NoTheory,      Theory::Extensions},
    {"set.insert",              Theory::NoTheory,      Theory::Extensions},
    {"set.inter",               Theory::NoTheory,      Theory::Extensions},
    {"set.is_singleton",        Theory::NoTheory,      Theory::Extensions},
    {"set.map",                 Theory::NoTheory,      Theory::Extensions},
    {"set.member",              Theory::NoTheory,      Theory::Extensions},
    {"set.minus",               Theory::NoTheory,      Theory::Extensions},
    {"set.singleton",           Theory::NoTheory,      Theory::Extensions},
    {"set.subset",              Theory::NoTheory,      Theory::Extensions},
    {"set.union",               Theory::NoTheory,      Theory::Extensions},
    {"set.universe",            Theory::NoTheory,      Theory::Extensions},
    {"sign_extend",             Theory::BitVectors,    Theory::Bits, true},
    {"sin",                     Theory::NoTheory,      Theory::Extensions},
    {"sqrt",                    Theory::NoTheory,      Theory::Extensions},
    {"store",                   Theory::Arrays,        Theory::Arrays},
    {"str.++",                  Theory::Strings,       Theory::Strings},
    {"str.<",                   Theory::Strings,       Theory::Strings},
    {"str.<=",                  Theory::Strings,       Theory::Strings},
    {"str.at",                  Theory::Strings,       Theory::Strings},
    {"str.contains",            Theory::Strings,       Theory::Strings},
    {"str.from_code",           Theory::Strings,       Theory::Strings},
    {"str.from_int",            Theory::Strings,       Theory::Strings},
    {"str.in_re",               Theory::Strings,       Theory::Strings},
    {"str.indexof",             Theory::Strings,       Theory::Strings},
    {"str.indexof_re",          Theory::NoTheory,      Theory::Strings},
    {"str.is_digit",            Theory::Strings,       Theory::Strings},
    {"str.len",                 Theory::Strings,       Theory::Strings},
    {"str.prefixof",            Theory::Strings,       Theory::Strings},
    {"str.replace",             Theory::Strings,       Theory::Strings},
    {"str.replace_all",         Theory::Strings,       Theory::Strings},
    {"str.replace_re",          Theory::Strings,       Theory::Strings},
    {"str.replace_re_all",      Theory::Strings,       Theory::Strings},
    {"str.rev",                 Theory::NoTheory,      Theory::Strings},
    {"str.substr",              Theory::Strings,       Theory::Strings},
    {"str.suffixof",            Theory::Strings,       Theory::Strings},
    {"str.to_code",             Theory::Strings,       Theory::Strings},
    {"str.to_int",              Theory::Strings,       Theory::Strings},
    {"str.to_lower",            Theory::NoTheory,      Theory::Strings},
    {"str.to_re",               Theory::Strings,       Theory::Strings},
    {"str.to_upper",            Theory::NoTheory,      Theory::Strings},
    {"str.update",              Theory::NoTheory,      Theory::Strings},
    {"table.aggr",              Theory::NoTheory,      Theory::Extensions},
    {"table.group",             Theory::NoTheory,      Theory::Extensions},
    {"table.join",              Theory::NoTheory,      Theory::Extensions},
    {"table.product",           Theory::NoTheory,      Theory::Extensions},
    {"table.project",           Theory::NoTheory,      Theory::Extensions},
    {"tan",                     Theory::NoTheory,      Theory::Extensions},
    {"to_fp",                   Theory::FloatingPoint, Theory::FloatingPoint, true},
    {"to_fp_unsigned",          Theory::FloatingPoint, Theory::FloatingPoint, true},
    {"to_int",                  Theory::RealsInts,     Theory::RealsInts},
    {"to_real",                 Theory::RealsInts,     Theory::RealsInts},
    {"true",                    Theory::Core,          Theory::Core},
    {"tuple",                   Theory::NoTheory,      Theory::Extensions},
    {"ubv_to_int",              Theory::NoTheory,      Theory::Bits},
    {"wand",                    Theory::NoTheory,      Theory::Extensions},
    {"xor",                     Theory::Core,          Theory::Core},
    {"zero_extend",             Theory::BitVectors,    Theory::Bits, true},
};

inline constexpr TheoryName theory_sorts[] = {
    {"Array",         Theory::Arrays,        Theory::Arrays},
    {"Bag",           Theory::NoTheory,      Theory::Extensions},
    {"BitVec",        Theory::Bits,          Theory::Bits},
    {"Bool",          Theory::Core,          Theory::Core},
    {"Float128",      Theory::FloatingPoint, Theory::FloatingPoint},
    {"Float16",       Theory::FloatingPoint, Theory::FloatingPoint},
    {"Float32",       Theory::FloatingPoint, Theory::FloatingPoint},
    {"Float64",       Theory::FloatingPoint, Theory::FloatingPoint},
    {"FloatingPoint", Theory::FloatingPoint, Theory::FloatingPoint},
    {"Int",           Theory::Ints,          Theory::Ints},
    {"Real",          Theory::Reals,         Theory::Reals},
    {"RegEx",         Theory::NoTheory,      Theory::Extensions},
    {"RegLan",        Theory::Strings,       Theory::Strings},
    {"Relation",      Theory::NoTheory,      Theory::Core},
    {"RoundingMode",  Theory::FloatingPoint, Theory::FloatingPoint},
    {"Seq",           Theory::Strings,       Theory::Strings},
    {"Set",           Theory::NoTheory,      Theory::Extensions},
    {"String",        Theory::Strings,       Theory::Strings},
    {"Table",         Theory::NoTheory,      Theory::Core},
    {"Tuple",         Theory::NoTheory,      Theory::Core},
};
// clang-format on

template <size_t count>
constexpr bool ascend_by_name(const TheoryName (&table)[count]) {
  for (size_t i = 1; i < count; ++i) {
    if (table[i - 1].name >= table[i].name) return false;
  }
  return true;
}
static_assert(ascend_by_name(theory_symbols) && ascend_by_name(theory_sorts),
              "the tables are searched by bisection");

template <size_t count>
constexpr const TheoryName* find_by_name(const TheoryName (&table)[count], std::string_view name) {
  size_t first = 0;
  for (size_t length = count; length != 0;) {
    const size_t half = length / 2;
    if (table[first + half].name < name) {
      first += half + 1;
      length -= half + 1;
    } else {
      length = half;
    }
  }
  return first != count && table[first].name == name ? &table[first] : nullptr;
}

// Whether the table has the name as an operator with or without indices, as `indexed` says. For
// compile-time checks of other tables.
template <size_t count>
constexpr bool has_row(const TheoryName (&table)[count], std::string_view name, bool indexed) {
  for (size_t i = 0; i < count; ++i) {
    if (table[i].name == name) return table[i].indexed == indexed;
  }
  return false;
}

// Whether a theory of the standard has the name. For compile-time checks of other tables. It
// searches by index, because with sanitizers g++ does not accept a comparison with a null pointer
// as constant.
template <size_t count>
constexpr bool has_theory(const TheoryName (&table)[count], std::string_view name) {
  for (size_t i = 0; i < count; ++i) {
    if (table[i].name == name) return table[i].theory != Theory::NoTheory;
  }
  return false;
}

// The row of a name, or null for a name that is free everywhere.
constexpr const TheoryName* find_theory_symbol(std::string_view name) {
  return find_by_name(theory_symbols, name);
}
constexpr const TheoryName* find_theory_sort(std::string_view name) {
  return find_by_name(theory_sorts, name);
}

}  // namespace quill

#endif
