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
    {"*",                       Theory::ARITHMETIC,      Theory::ARITHMETIC},
    {"+",                       Theory::ARITHMETIC,      Theory::ARITHMETIC},
    {"+oo",                     Theory::FLOATING_POINT,  Theory::FLOATING_POINT, true},
    {"+zero",                   Theory::FLOATING_POINT,  Theory::FLOATING_POINT, true},
    {"-",                       Theory::ARITHMETIC,      Theory::ARITHMETIC},
    {"-oo",                     Theory::FLOATING_POINT,  Theory::FLOATING_POINT, true},
    {"-zero",                   Theory::FLOATING_POINT,  Theory::FLOATING_POINT, true},
    {"/",                       Theory::REALS,           Theory::REALS},
    {"<",                       Theory::ARITHMETIC,      Theory::ARITHMETIC},
    {"<=",                      Theory::ARITHMETIC,      Theory::ARITHMETIC},
    {"=",                       Theory::CORE,            Theory::CORE},
    {"=>",                      Theory::CORE,            Theory::CORE},
    {">",                       Theory::ARITHMETIC,      Theory::ARITHMETIC},
    {">=",                      Theory::ARITHMETIC,      Theory::ARITHMETIC},
    {"NaN",                     Theory::FLOATING_POINT,  Theory::FLOATING_POINT, true},
    {"RNA",                     Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"RNE",                     Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"RTN",                     Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"RTP",                     Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"RTZ",                     Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"^",                       Theory::NONE,            Theory::ARITHMETIC},
    {"abs",                     Theory::INTS,            Theory::ARITHMETIC},
    {"and",                     Theory::CORE,            Theory::CORE},
    {"arccos",                  Theory::NONE,            Theory::EXTENSIONS},
    {"arccot",                  Theory::NONE,            Theory::EXTENSIONS},
    {"arccsc",                  Theory::NONE,            Theory::EXTENSIONS},
    {"arcsec",                  Theory::NONE,            Theory::EXTENSIONS},
    {"arcsin",                  Theory::NONE,            Theory::EXTENSIONS},
    {"arctan",                  Theory::NONE,            Theory::EXTENSIONS},
    {"bag",                     Theory::NONE,            Theory::EXTENSIONS},
    {"bag.card",                Theory::NONE,            Theory::EXTENSIONS},
    {"bag.choose",              Theory::NONE,            Theory::EXTENSIONS},
    {"bag.count",               Theory::NONE,            Theory::EXTENSIONS},
    {"bag.difference_remove",   Theory::NONE,            Theory::EXTENSIONS},
    {"bag.difference_subtract", Theory::NONE,            Theory::EXTENSIONS},
    {"bag.duplicate_removal",   Theory::NONE,            Theory::EXTENSIONS},
    {"bag.empty",               Theory::NONE,            Theory::EXTENSIONS},
    {"bag.filter",              Theory::NONE,            Theory::EXTENSIONS},
    {"bag.fold",                Theory::NONE,            Theory::EXTENSIONS},
    {"bag.from_set",            Theory::NONE,            Theory::EXTENSIONS},
    {"bag.inter_min",           Theory::NONE,            Theory::EXTENSIONS},
    {"bag.is_singleton",        Theory::NONE,            Theory::EXTENSIONS},
    {"bag.map",                 Theory::NONE,            Theory::EXTENSIONS},
    {"bag.member",              Theory::NONE,            Theory::EXTENSIONS},
    {"bag.partition",           Theory::NONE,            Theory::EXTENSIONS},
    {"bag.subbag",              Theory::NONE,            Theory::EXTENSIONS},
    {"bag.to_set",              Theory::NONE,            Theory::EXTENSIONS},
    {"bag.union_disjoint",      Theory::NONE,            Theory::EXTENSIONS},
    {"bag.union_max",           Theory::NONE,            Theory::EXTENSIONS},
    {"bv2nat",                  Theory::NONE,            Theory::BITS},
    {"bvadd",                   Theory::BIT_VECTORS,     Theory::BITS},
    {"bvand",                   Theory::BIT_VECTORS,     Theory::BITS},
    {"bvashr",                  Theory::BIT_VECTORS,     Theory::BITS},
    {"bvcomp",                  Theory::BIT_VECTORS,     Theory::BITS},
    {"bvlshr",                  Theory::BIT_VECTORS,     Theory::BITS},
    {"bvmul",                   Theory::BIT_VECTORS,     Theory::BITS},
    {"bvnand",                  Theory::BIT_VECTORS,     Theory::BITS},
    {"bvneg",                   Theory::BIT_VECTORS,     Theory::BITS},
    {"bvnego",                  Theory::NONE,            Theory::BITS},
    {"bvnor",                   Theory::BIT_VECTORS,     Theory::BITS},
    {"bvnot",                   Theory::BIT_VECTORS,     Theory::BITS},
    {"bvor",                    Theory::BIT_VECTORS,     Theory::BITS},
    {"bvredand",                Theory::NONE,            Theory::BITS},
    {"bvredor",                 Theory::NONE,            Theory::BITS},
    {"bvsaddo",                 Theory::NONE,            Theory::BITS},
    {"bvsdiv",                  Theory::BIT_VECTORS,     Theory::BITS},
    {"bvsdivo",                 Theory::NONE,            Theory::BITS},
    {"bvsge",                   Theory::BIT_VECTORS,     Theory::BITS},
    {"bvsgt",                   Theory::BIT_VECTORS,     Theory::BITS},
    {"bvshl",                   Theory::BIT_VECTORS,     Theory::BITS},
    {"bvsle",                   Theory::BIT_VECTORS,     Theory::BITS},
    {"bvslt",                   Theory::BIT_VECTORS,     Theory::BITS},
    {"bvsmod",                  Theory::BIT_VECTORS,     Theory::BITS},
    {"bvsmulo",                 Theory::NONE,            Theory::BITS},
    {"bvsrem",                  Theory::BIT_VECTORS,     Theory::BITS},
    {"bvssubo",                 Theory::NONE,            Theory::BITS},
    {"bvsub",                   Theory::BIT_VECTORS,     Theory::BITS},
    {"bvuaddo",                 Theory::NONE,            Theory::BITS},
    {"bvudiv",                  Theory::BIT_VECTORS,     Theory::BITS},
    {"bvuge",                   Theory::BIT_VECTORS,     Theory::BITS},
    {"bvugt",                   Theory::BIT_VECTORS,     Theory::BITS},
    {"bvule",                   Theory::BIT_VECTORS,     Theory::BITS},
    {"bvult",                   Theory::BIT_VECTORS,     Theory::BITS},
    {"bvumulo",                 Theory::NONE,            Theory::BITS},
    {"bvurem",                  Theory::BIT_VECTORS,     Theory::BITS},
    {"bvusubo",                 Theory::NONE,            Theory::BITS},
    {"bvxnor",                  Theory::BIT_VECTORS,     Theory::BITS},
    {"bvxor",                   Theory::BIT_VECTORS,     Theory::BITS},
    {"char",                    Theory::STRINGS,         Theory::STRINGS, true},
    {"concat",                  Theory::BIT_VECTORS,     Theory::BITS},
    {"const",                   Theory::NONE,            Theory::ARRAYS},
    {"cos",                     Theory::NONE,            Theory::EXTENSIONS},
    {"cot",                     Theory::NONE,            Theory::EXTENSIONS},
    {"csc",                     Theory::NONE,            Theory::EXTENSIONS},
    {"distinct",                Theory::CORE,            Theory::CORE},
    {"div",                     Theory::INTS,            Theory::INTS},
    {"divisible",               Theory::INTS,            Theory::INTS, true},
    {"eqrange",                 Theory::NONE,            Theory::ARRAYS},
    {"exp",                     Theory::NONE,            Theory::EXTENSIONS},
    {"extract",                 Theory::BIT_VECTORS,     Theory::BITS, true},
    {"false",                   Theory::CORE,            Theory::CORE},
    {"fp",                      Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"fp.abs",                  Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"fp.add",                  Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"fp.div",                  Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"fp.eq",                   Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"fp.fma",                  Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"fp.geq",                  Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"fp.gt",                   Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"fp.isInfinite",           Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"fp.isNaN",                Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"fp.isNegative",           Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"fp.isNormal",             Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"fp.isPositive",           Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"fp.isSubnormal",          Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"fp.isZero",               Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"fp.leq",                  Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"fp.lt",                   Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"fp.max",                  Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"fp.min",                  Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"fp.mul",                  Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"fp.neg",                  Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"fp.rem",                  Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"fp.roundToIntegral",      Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"fp.sqrt",                 Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"fp.sub",                  Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"fp.to_ieee_bv",           Theory::NONE,            Theory::FLOATING_POINT},
    {"fp.to_real",              Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"fp.to_sbv",               Theory::FLOATING_POINT,  Theory::FLOATING_POINT, true},
    {"fp.to_ubv",               Theory::FLOATING_POINT,  Theory::FLOATING_POINT, true},
    {"int.pow2",                Theory::NONE,            Theory::ARITHMETIC},
    {"int2bv",                  Theory::NONE,            Theory::BITS, true},
    {"int_to_bv",               Theory::NONE,            Theory::BITS, true},
    {"is_int",                  Theory::REALS_INTS,      Theory::REALS_INTS},
    {"ite",                     Theory::CORE,            Theory::CORE},
    {"mod",                     Theory::INTS,            Theory::INTS},
    {"nat2bv",                  Theory::NONE,            Theory::BITS, true},
    {"not",                     Theory::CORE,            Theory::CORE},
    {"or",                      Theory::CORE,            Theory::CORE},
    {"pto",                     Theory::NONE,            Theory::EXTENSIONS},
    {"re.*",                    Theory::STRINGS,         Theory::STRINGS},
    {"re.+",                    Theory::STRINGS,         Theory::STRINGS},
    {"re.++",                   Theory::STRINGS,         Theory::STRINGS},
    {"re.^",                    Theory::STRINGS,         Theory::STRINGS, true},
    {"re.all",                  Theory::STRINGS,         Theory::STRINGS},
    {"re.allchar",              Theory::STRINGS,         Theory::STRINGS},
    {"re.comp",                 Theory::STRINGS,         Theory::STRINGS},
    {"re.diff",                 Theory::STRINGS,         Theory::STRINGS},
    {"re.inter",                Theory::STRINGS,         Theory::STRINGS},
    {"re.loop",                 Theory::STRINGS,         Theory::STRINGS, true},
    {"re.none",                 Theory::STRINGS,         Theory::STRINGS},
    {"re.opt",                  Theory::STRINGS,         Theory::STRINGS},
    {"re.range",                Theory::STRINGS,         Theory::STRINGS},
    {"re.union",                Theory::STRINGS,         Theory::STRINGS},
    {"real.pi",                 Theory::NONE,            Theory::EXTENSIONS},
    {"rel.aggr",                Theory::NONE,            Theory::EXTENSIONS},
    {"rel.group",               Theory::NONE,            Theory::EXTENSIONS},
    {"rel.iden",                Theory::NONE,            Theory::EXTENSIONS},
    {"rel.join",                Theory::NONE,            Theory::EXTENSIONS},
    {"rel.join_image",          Theory::NONE,            Theory::EXTENSIONS},
    {"rel.product",             Theory::NONE,            Theory::EXTENSIONS},
    {"rel.project",             Theory::NONE,            Theory::EXTENSIONS},
    {"rel.tclosure",            Theory::NONE,            Theory::EXTENSIONS},
    {"rel.transpose",           Theory::NONE,            Theory::EXTENSIONS},
    {"repeat",                  Theory::BIT_VECTORS,     Theory::BITS, true},
    {"rotate_left",             Theory::BIT_VECTORS,     Theory::BITS, true},
    {"rotate_right",            Theory::BIT_VECTORS,     Theory::BITS, true},
    {"roundNearestTiesToAway",  Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"roundNearestTiesToEven",  Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"roundTowardNegative",     Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"roundTowardPositive",     Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"roundTowardZero",         Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"sbv_to_int",              Theory::NONE,            Theory::BITS},
    {"sec",                     Theory::NONE,            Theory::EXTENSIONS},
    {"select",                  Theory::ARRAYS,          Theory::ARRAYS},
    {"sep",                     Theory::NONE,            Theory::EXTENSIONS},
    {"sep.emp",                 Theory::NONE,            Theory::EXTENSIONS},
    {"sep.nil",                 Theory::NONE,            Theory::EXTENSIONS},
    {"seq.++",                  Theory::STRINGS,         Theory::STRINGS},
    {"seq.at",                  Theory::STRINGS,         Theory::STRINGS},
    {"seq.contains",            Theory::STRINGS,         Theory::STRINGS},
    {"seq.empty",               Theory::STRINGS,         Theory::STRINGS},
    {"seq.extract",             Theory::STRINGS,         Theory::STRINGS},
    {"seq.indexof",             Theory::STRINGS,         Theory::STRINGS},
    {"seq.len",                 Theory::STRINGS,         Theory::STRINGS},
    {"seq.nth",                 Theory::STRINGS,         Theory::STRINGS},
    {"seq.prefixof",            Theory::STRINGS,         Theory::STRINGS},
    {"seq.replace",             Theory::STRINGS,         Theory::STRINGS},
    {"seq.replace_all",         Theory::NONE,            Theory::STRINGS},
    {"seq.rev",                 Theory::STRINGS,         Theory::STRINGS},
    {"seq.suffixof",            Theory::STRINGS,         Theory::STRINGS},
    {"seq.unit",                Theory::STRINGS,         Theory::STRINGS},
    {"seq.update",              Theory::STRINGS,         Theory::STRINGS},
    {"set.card",                Theory::NONE,            Theory::EXTENSIONS},
    {"set.choose",              Theory::NONE,            Theory::EXTENSIONS},
    {"set.complement",          Theory::NONE,            Theory::EXTENSIONS},
    {"set.empty",               Theory::NONE,            Theory::EXTENSIONS},
    {"set.filter",              Theory::NONE,            Theory::EXTENSIONS},
    {"set.fold",                Theory::NONE,            Theory::EXTENSIONS},
    {"set.insert",              Theory::NONE,            Theory::EXTENSIONS},
    {"set.inter",               Theory::NONE,            Theory::EXTENSIONS},
    {"set.is_singleton",        Theory::NONE,            Theory::EXTENSIONS},
    {"set.map",                 Theory::NONE,            Theory::EXTENSIONS},
    {"set.member",              Theory::NONE,            Theory::EXTENSIONS},
    {"set.minus",               Theory::NONE,            Theory::EXTENSIONS},
    {"set.singleton",           Theory::NONE,            Theory::EXTENSIONS},
    {"set.subset",              Theory::NONE,            Theory::EXTENSIONS},
    {"set.union",               Theory::NONE,            Theory::EXTENSIONS},
    {"set.universe",            Theory::NONE,            Theory::EXTENSIONS},
    {"sign_extend",             Theory::BIT_VECTORS,     Theory::BITS, true},
    {"sin",                     Theory::NONE,            Theory::EXTENSIONS},
    {"sqrt",                    Theory::NONE,            Theory::EXTENSIONS},
    {"store",                   Theory::ARRAYS,          Theory::ARRAYS},
    {"str.++",                  Theory::STRINGS,         Theory::STRINGS},
    {"str.<",                   Theory::STRINGS,         Theory::STRINGS},
    {"str.<=",                  Theory::STRINGS,         Theory::STRINGS},
    {"str.at",                  Theory::STRINGS,         Theory::STRINGS},
    {"str.contains",            Theory::STRINGS,         Theory::STRINGS},
    {"str.from_code",           Theory::STRINGS,         Theory::STRINGS},
    {"str.from_int",            Theory::STRINGS,         Theory::STRINGS},
    {"str.in_re",               Theory::STRINGS,         Theory::STRINGS},
    {"str.indexof",             Theory::STRINGS,         Theory::STRINGS},
    {"str.indexof_re",          Theory::NONE,            Theory::STRINGS},
    {"str.is_digit",            Theory::STRINGS,         Theory::STRINGS},
    {"str.len",                 Theory::STRINGS,         Theory::STRINGS},
    {"str.prefixof",            Theory::STRINGS,         Theory::STRINGS},
    {"str.replace",             Theory::STRINGS,         Theory::STRINGS},
    {"str.replace_all",         Theory::STRINGS,         Theory::STRINGS},
    {"str.replace_re",          Theory::STRINGS,         Theory::STRINGS},
    {"str.replace_re_all",      Theory::STRINGS,         Theory::STRINGS},
    {"str.rev",                 Theory::NONE,            Theory::STRINGS},
    {"str.substr",              Theory::STRINGS,         Theory::STRINGS},
    {"str.suffixof",            Theory::STRINGS,         Theory::STRINGS},
    {"str.to_code",             Theory::STRINGS,         Theory::STRINGS},
    {"str.to_int",              Theory::STRINGS,         Theory::STRINGS},
    {"str.to_lower",            Theory::NONE,            Theory::STRINGS},
    {"str.to_re",               Theory::STRINGS,         Theory::STRINGS},
    {"str.to_upper",            Theory::NONE,            Theory::STRINGS},
    {"str.update",              Theory::NONE,            Theory::STRINGS},
    {"table.aggr",              Theory::NONE,            Theory::EXTENSIONS},
    {"table.group",             Theory::NONE,            Theory::EXTENSIONS},
    {"table.join",              Theory::NONE,            Theory::EXTENSIONS},
    {"table.product",           Theory::NONE,            Theory::EXTENSIONS},
    {"table.project",           Theory::NONE,            Theory::EXTENSIONS},
    {"tan",                     Theory::NONE,            Theory::EXTENSIONS},
    {"to_fp",                   Theory::FLOATING_POINT,  Theory::FLOATING_POINT, true},
    {"to_fp_unsigned",          Theory::FLOATING_POINT,  Theory::FLOATING_POINT, true},
    {"to_int",                  Theory::REALS_INTS,      Theory::REALS_INTS},
    {"to_real",                 Theory::REALS_INTS,      Theory::REALS_INTS},
    {"true",                    Theory::CORE,            Theory::CORE},
    {"tuple",                   Theory::NONE,            Theory::EXTENSIONS},
    {"ubv_to_int",              Theory::NONE,            Theory::BITS},
    {"wand",                    Theory::NONE,            Theory::EXTENSIONS},
    {"xor",                     Theory::CORE,            Theory::CORE},
    {"zero_extend",             Theory::BIT_VECTORS,     Theory::BITS, true},
};

inline constexpr TheoryName theory_sorts[] = {
    {"Array",         Theory::ARRAYS,          Theory::ARRAYS},
    {"Bag",           Theory::NONE,            Theory::EXTENSIONS},
    {"BitVec",        Theory::BITS,            Theory::BITS},
    {"Bool",          Theory::CORE,            Theory::CORE},
    {"Float128",      Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"Float16",       Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"Float32",       Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"Float64",       Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"FloatingPoint", Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"Int",           Theory::INTS,            Theory::INTS},
    {"Real",          Theory::REALS,           Theory::REALS},
    {"RegEx",         Theory::NONE,            Theory::EXTENSIONS},
    {"RegLan",        Theory::STRINGS,         Theory::STRINGS},
    {"Relation",      Theory::NONE,            Theory::CORE},
    {"RoundingMode",  Theory::FLOATING_POINT,  Theory::FLOATING_POINT},
    {"Seq",           Theory::STRINGS,         Theory::STRINGS},
    {"Set",           Theory::NONE,            Theory::EXTENSIONS},
    {"String",        Theory::STRINGS,         Theory::STRINGS},
    {"Table",         Theory::NONE,            Theory::CORE},
    {"Tuple",         Theory::NONE,            Theory::CORE},
};
// clang-format on

template <size_t count>
constexpr bool ascend_by_name(const TheoryName (&table)[count]) {
  for (size_t i = 1; i < count; i++) {
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
  for (size_t i = 0; i < count; i++) {
    if (table[i].name == name) return table[i].indexed == indexed;
  }
  return false;
}

// Whether a theory of the standard has the name. For compile-time checks of other tables. It
// searches by index, because with sanitizers g++ does not accept a comparison with a null pointer
// as constant.
template <size_t count>
constexpr bool has_theory(const TheoryName (&table)[count], std::string_view name) {
  for (size_t i = 0; i < count; i++) {
    if (table[i].name == name) return table[i].theory != Theory::NONE;
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
