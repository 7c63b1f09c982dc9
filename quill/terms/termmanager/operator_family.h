// The families of interpreted symbols that exist once per parameter: what differs between
// operators, as data.
//
// A family makes its symbols on demand and keeps them by their parameters. Its row below holds
// every datum that the makers, builders and recognisers need, with all irregularities of spelling;
// the functions over rows hold none.
//
// A new operator needs a tag at the end of SymbolTag, a row here with the counts below, three
// members in term_manager.h with their one-line definitions in the source of its section, and a row
// in the tests' own table.

#ifndef QUILL_TERMS_TERMMANAGER_OPERATOR_FAMILY_H
#define QUILL_TERMS_TERMMANAGER_OPERATOR_FAMILY_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>

#include "quill/terms/termmanager/symbol_tag.h"

namespace quill {

// What a family is keyed by.
enum class FamilyKey : uint8_t {
  Width,    // of the bit-vectors
  Index1,   // BVIndex1: amount and width
  Index2,   // BVIndex2: two or three numbers
  Format,   // IEEEFloat::format
  Cast,     // FPFormatCast: two formats or widths
  Array,    // ArrIndex: index and element type
  Modulus,  // QNumber
};
constexpr size_t num_family_keys = 7;

// The result type of a family's symbols.
enum class FamilyResult : uint8_t {
  Same,  // the type of the operands, for bit-vectors of the key's width and floating point of its
         // format
  Bool,
  Bit,  // bit-vectors of width 1
  Int,
  Wider,   // bit-vectors of amount + width bits
  ByMaker  // the family's own maker knows
};

struct OperatorFamily {
  SymbolTag::tag tag;
  FamilyKey key;
  const char* base;  // what names of symbols begin with
  bool separated;    // whether "_" is between the base and the first number
  uint8_t arity;     // with the rounding mode
  bool rounding;     // whether the first argument is a rounding mode
  FamilyResult result;
  const char* operation;  // the builder in type errors, as they spell it
  const char* complaint;  // after a term that is not of the kind that the builder looks for; "" if
                          // it looks for none
};

// In the order in which the manager keeps the families.
// clang-format off
constexpr OperatorFamily operator_families[] = {
    {SymbolTag::INT_MODULAR_CONGRUENCE, FamilyKey::Modulus, "int_mod_congr_", false, 2, false, FamilyResult::Bool,    "make_int_modular_congruence", ""},
    {SymbolTag::BV_CONCAT,        FamilyKey::Index2, "bvconcat_",      false, 2, false, FamilyResult::ByMaker, "make_bv_concat",       " is not  a bit vector"},
    {SymbolTag::BV_EXTRACT,       FamilyKey::Index2, "bvextract_",     false, 1, false, FamilyResult::ByMaker, "make_bv_extract",      " is not a bit-vector"},
    {SymbolTag::BV_NOT,           FamilyKey::Width,  "bvnot",          true,  1, false, FamilyResult::Same,    "make_bv_not",          "is not a bit-vector"},
    {SymbolTag::BV_AND,           FamilyKey::Width,  "bvand",          true,  2, false, FamilyResult::Same,    "make_bv_and",          " is not a bit vector"},
    {SymbolTag::BV_OR,            FamilyKey::Width,  "bvor",           true,  2, false, FamilyResult::Same,    "make_bv_or",           " is not a bit vector"},
    {SymbolTag::BV_XOR,           FamilyKey::Width,  "bvxor",          true,  2, false, FamilyResult::Same,    "make_bv_xor",          " is not a bit vector"},
    {SymbolTag::BV_ULT,           FamilyKey::Width,  "bvult",          true,  2, false, FamilyResult::Bool,    "make_bv_ult",          " is not a bit vector"},
    {SymbolTag::BV_SLT,           FamilyKey::Width,  "bvslt",          true,  2, false, FamilyResult::Bool,    "make_bv_slt",          " is not a bit vector"},
    {SymbolTag::BV_ULE,           FamilyKey::Width,  "bvule",          true,  2, false, FamilyResult::Bool,    "make_bv_ule",          " is not a bit vector"},
    {SymbolTag::BV_SLE,           FamilyKey::Width,  "bvsle",          true,  2, false, FamilyResult::Bool,    "make_bv_sle",          " is not a bit vector"},
    {SymbolTag::BV_COMP,          FamilyKey::Width,  "bvcomp",         true,  2, false, FamilyResult::Bit,     "make_bv_comp",         " is not a bit vector"},
    {SymbolTag::BV_NEG,           FamilyKey::Width,  "bvneg",          true,  1, false, FamilyResult::Same,    "make_bv_neg",          "is not a bit-vector"},
    {SymbolTag::BV_ADD,           FamilyKey::Width,  "bvadd",          true,  2, false, FamilyResult::Same,    "make_bv_add",          " is not a bit vector"},
    {SymbolTag::BV_SUB,           FamilyKey::Width,  "bvsub",          true,  2, false, FamilyResult::Same,    "make_bv_sub",          " is not a bit vector"},
    {SymbolTag::BV_MUL,           FamilyKey::Width,  "bvmul",          true,  2, false, FamilyResult::Same,    "make_bv_mul",          " is not a bit vector"},
    {SymbolTag::BV_UDIV,          FamilyKey::Width,  "bvudiv",         true,  2, false, FamilyResult::Same,    "make_bv_udiv",         " is not a bit vector"},
    {SymbolTag::BV_SDIV,          FamilyKey::Width,  "bvsdiv",         true,  2, false, FamilyResult::Same,    "make_bv_sdiv",         " is not a bit vector"},
    {SymbolTag::BV_UREM,          FamilyKey::Width,  "bvurem",         true,  2, false, FamilyResult::Same,    "make_bv_urem",         " is not a bit vector"},
    {SymbolTag::BV_SREM,          FamilyKey::Width,  "bvsrem",         true,  2, false, FamilyResult::Same,    "make_bv_srem",         " is not a bit vector"},
    {SymbolTag::BV_LSHL,          FamilyKey::Width,  "bvlshl",         true,  2, false, FamilyResult::Same,    "make_bv_lshl",         " is not a bit vector"},
    {SymbolTag::BV_LSHR,          FamilyKey::Width,  "bvlshr",         true,  2, false, FamilyResult::Same,    "make_bv_lshr",         " is not a bit vector"},
    {SymbolTag::BV_ASHR,          FamilyKey::Width,  "bvashr",         true,  2, false, FamilyResult::Same,    "make_bv_ashr",         " is not a bit vector"},
    {SymbolTag::BV_ROTATE_LEFT,   FamilyKey::Index1, "bvrol",          true,  1, false, FamilyResult::Same,    "make_bv_rotate_left",  "is not a bit-vector"},
    {SymbolTag::BV_ROTATE_RIGHT,  FamilyKey::Index1, "bvror",          true,  1, false, FamilyResult::Same,    "make_bv_rotate_right", "is not a bit-vector"},
    {SymbolTag::BV_ZERO_EXTEND,   FamilyKey::Index1, "bvzext",         true,  1, false, FamilyResult::Wider,   "make_bv_zero_extend",  "is not a bit-vector"},
    {SymbolTag::BV_SIGN_EXTEND,   FamilyKey::Index1, "bvsext",         true,  1, false, FamilyResult::Wider,   "make_bv_sign_extend",  "is not a bit-vector"},
    {SymbolTag::ARRAY_READ,       FamilyKey::Array,  "read_",          false, 2, false, FamilyResult::ByMaker, "make_array_read",      " is not an array"},
    {SymbolTag::ARRAY_WRITE,      FamilyKey::Array,  "write_",         false, 3, false, FamilyResult::ByMaker, "make_array_write",     " is not an array"},
    {SymbolTag::ARRAY_CONST,      FamilyKey::Array,  "const_",         false, 1, false, FamilyResult::ByMaker, "make_array_const",     " is not an array"},
    {SymbolTag::FP_EQUAL,         FamilyKey::Format, "fpeq",           true,  2, false, FamilyResult::Bool,    "make_fp_equal",        " is not a FP"},
    {SymbolTag::FP_LT,            FamilyKey::Format, "fplt",           true,  2, false, FamilyResult::Bool,    "make_fp_lt",           " is not a FP"},
    {SymbolTag::FP_LE,            FamilyKey::Format, "fple",           true,  2, false, FamilyResult::Bool,    "make_fp_le",           " is not a FP"},
    {SymbolTag::FP_NEG,           FamilyKey::Format, "fpneg",          true,  1, false, FamilyResult::Same,    "make_fp_neg",          " is not a FP"},
    {SymbolTag::FP_ADD,           FamilyKey::Format, "fpadd",          true,  3, true,  FamilyResult::Same,    "make_fp_add",          " is not a FP"},
    {SymbolTag::FP_SUB,           FamilyKey::Format, "fpsub",          true,  3, true,  FamilyResult::Same,    "make_fp_sub",          " is not a FP"},
    {SymbolTag::FP_MUL,           FamilyKey::Format, "fpmul",          true,  3, true,  FamilyResult::Same,    "make_fp_mul",          " is not a FP"},
    {SymbolTag::FP_DIV,           FamilyKey::Format, "fpdiv",          true,  3, true,  FamilyResult::Same,    "make_fp_div",          " is not a FP"},
    {SymbolTag::FP_SQRT,          FamilyKey::Format, "fpsqrt_",        false, 2, true,  FamilyResult::Same,    "make_fp_sqrt",         " is not a FP"},
    {SymbolTag::FP_ABS,           FamilyKey::Format, "fpabs_",         false, 1, false, FamilyResult::Same,    "make_fp_abs",          " is not a FP"},
    {SymbolTag::FP_MIN,           FamilyKey::Format, "fpmin",          true,  2, false, FamilyResult::Same,    "make_fp_min",          " is not a FP"},
    {SymbolTag::FP_MAX,           FamilyKey::Format, "fpmax",          true,  2, false, FamilyResult::Same,    "make_fp_max",          " is not a FP"},
    {SymbolTag::FP_ISNAN,         FamilyKey::Format, "fpisnan",        true,  1, false, FamilyResult::Bool,    "make_fp_isnan",        " is not a FP"},
    {SymbolTag::FP_ISINF,         FamilyKey::Format, "fpisinf",        true,  1, false, FamilyResult::Bool,    "make_fp_isinf",        " is not a FP"},
    {SymbolTag::FP_ISZERO,        FamilyKey::Format, "fpiszero",       true,  1, false, FamilyResult::Bool,    "make_fp_iszero",       " is not a FP"},
    {SymbolTag::FP_ISSUBNORMAL,   FamilyKey::Format, "fpissubnormal",  true,  1, false, FamilyResult::Bool,    "make_fp_issubnormal",  " is not a FP"},
    {SymbolTag::FP_ISNORMAL,      FamilyKey::Format, "fpisnormal",     true,  1, false, FamilyResult::Bool,    "make_fp_isnormal",     " is not a FP"},
    {SymbolTag::FP_ISNEG,         FamilyKey::Format, "fpisneg",        true,  1, false, FamilyResult::Bool,    "make_fp_isneg",        " is not a FP"},
    {SymbolTag::FP_ISPOS,         FamilyKey::Format, "fpispos",        true,  1, false, FamilyResult::Bool,    "make_fp_ispos",        " is not a FP"},
    {SymbolTag::FP_CAST,          FamilyKey::Cast,   "fpcast_",        true,  2, true,  FamilyResult::ByMaker, "make_fp_cast",         " is not a FP"},
    {SymbolTag::FP_ROUND_TO_INT,  FamilyKey::Format, "fproundtoint_",  false, 2, true,  FamilyResult::Same,    "make_fp_round_to_int", " is not a FP"},
    {SymbolTag::FP_TO_BV,         FamilyKey::Cast,   "fptobv_",        true,  2, true,  FamilyResult::ByMaker, "make_fp_to_bv",        " is not a FP"},
    {SymbolTag::FP_FROM_UBV,      FamilyKey::Cast,   "fpfromubv_",     true,  2, true,  FamilyResult::ByMaker, "make_fp_from_ubv",     " is not a BV"},
    {SymbolTag::FP_FROM_SBV,      FamilyKey::Cast,   "fpfromsbv_",     true,  2, true,  FamilyResult::ByMaker, "make_fp_from_sbv",     " is not a BV"},
    {SymbolTag::FP_AS_IEEEBV,     FamilyKey::Cast,   "fpasbv_",        true,  1, false, FamilyResult::ByMaker, "make_fp_as_ieeebv",    " is not a FP"},
    {SymbolTag::FP_FROM_IEEEBV,   FamilyKey::Cast,   "fpfromieeebv_",  true,  1, false, FamilyResult::ByMaker, "make_fp_from_ieeebv",  " is not of the correct BV type"},
    {SymbolTag::INT_TO_BV,        FamilyKey::Width,  "int2bv_",        false, 1, false, FamilyResult::ByMaker, "make_int_to_bv",       ""},
    {SymbolTag::INT_FROM_SBV,     FamilyKey::Width,  "sbv2int",        true,  1, false, FamilyResult::Int,     "make_int_fromsbv",     " is not a bit vector"},
    {SymbolTag::INT_FROM_UBV,     FamilyKey::Width,  "ubv2int",        true,  1, false, FamilyResult::Int,     "make_int_fromubv",     " is not a bit vector"},
};
// clang-format on

constexpr size_t num_operator_families = std::size(operator_families);

// For each tag from INT_MODULAR_CONGRUENCE on, the position of its row; no_family for a tag without
// one.
constexpr size_t no_family = SIZE_MAX;
constexpr auto family_positions = [] {
  std::array<size_t, SymbolTag::INT_TO_BV + 1> positions{};
  positions.fill(no_family);
  for (size_t i = 0; i < num_operator_families; ++i) positions[operator_families[i].tag] = i;
  return positions;
}();

// The position of a family among those with its kind of key, by tag.
constexpr auto family_slots = [] {
  std::array<size_t, SymbolTag::INT_TO_BV + 1> slots{};
  std::array<size_t, num_family_keys> counts{};
  for (const OperatorFamily& family : operator_families) {
    slots[family.tag] = counts[static_cast<size_t>(family.key)]++;
  }
  return slots;
}();

// Whether the symbols with this tag, which may be any number, are those of a family.
constexpr bool has_family(size_t tag) {
  return tag < family_positions.size() && family_positions[tag] != no_family;
}

constexpr bool operator_families_complete() {
  for (size_t tag = 0; tag < family_positions.size(); ++tag) {
    if (has_family(tag) != (tag >= SymbolTag::INT_MODULAR_CONGRUENCE)) return false;
  }
  return num_operator_families == family_positions.size() - SymbolTag::INT_MODULAR_CONGRUENCE;
}
static_assert(operator_families_complete(),
              "every tag from INT_MODULAR_CONGRUENCE on has exactly one row");

constexpr const OperatorFamily& operator_family(SymbolTag::tag tag) {
  return operator_families[family_positions[tag]];
}

// The number of families with this kind of key.
constexpr size_t count_families(FamilyKey key) {
  size_t count = 0;
  for (const OperatorFamily& family : operator_families) count += family.key == key;
  return count;
}

// The position of a family among those with its kind of key.
constexpr size_t family_slot(SymbolTag::tag tag) { return family_slots[tag]; }

static_assert(count_families(FamilyKey::Width) == 23 && count_families(FamilyKey::Index1) == 4 &&
                  count_families(FamilyKey::Index2) == 2 &&
                  count_families(FamilyKey::Format) == 20 && count_families(FamilyKey::Cast) == 6 &&
                  count_families(FamilyKey::Array) == 3 && count_families(FamilyKey::Modulus) == 1,
              "23 width-keyed families, 6 indexed ones, 20 floating-point operators, 6 "
              "conversions, 3 for arrays");

}  // namespace quill

#endif
