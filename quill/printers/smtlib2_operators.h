// How the symbols of the theories are written in SMT-LIB 2.6, by tag.

#ifndef QUILL_PRINTERS_SMTLIB2_OPERATORS_H
#define QUILL_PRINTERS_SMTLIB2_OPERATORS_H

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

#include "quill/terms/termmanager/symbol_tag.h"

namespace quill {

// What stands at the head of an application, besides the text.
enum class SmtLib2Head : uint8_t {
  NAME,     // text
  RANGE,    // (_ text msb lsb)
  AMOUNT,   // (_ text k)
  WIDTH,    // (_ text w), the width of the result
  FORMAT,   // (_ text e s), the format of the result; s counts the hidden bit
  SORT,     // (as text S), the sort of the result
  MODULUS,  // text, and every operand a is written (mod a n)
};

struct SmtLib2Operator {
  SymbolTag::tag tag;
  std::string_view text;
  SmtLib2Head head;
  bool left_associative;  // (op (op a b) c) may be written (op a b c)
  bool standard;          // whether the standard has the operator; readers may, in any case
};

// clang-format off
constexpr SmtLib2Operator smtlib2_operators[] = {
    {SymbolTag::NONE,                    "",                    SmtLib2Head::NAME,     false, true},
    {SymbolTag::TRUE,                    "true",                SmtLib2Head::NAME,     false, true},
    {SymbolTag::FALSE,                   "false",               SmtLib2Head::NAME,     false, true},
    {SymbolTag::AND,                     "and",                 SmtLib2Head::NAME,     true,  true},
    {SymbolTag::OR,                      "or",                  SmtLib2Head::NAME,     true,  true},
    {SymbolTag::NOT,                     "not",                 SmtLib2Head::NAME,     false, true},
    {SymbolTag::IFF,                     "=",                   SmtLib2Head::NAME,     false, true},
    {SymbolTag::PLUS,                    "+",                   SmtLib2Head::NAME,     true,  true},
    {SymbolTag::TIMES,                   "*",                   SmtLib2Head::NAME,     true,  true},
    {SymbolTag::FLOOR,                   "to_int",              SmtLib2Head::NAME,     false, true},
    {SymbolTag::LEQ,                     "<=",                  SmtLib2Head::NAME,     false, true},
    {SymbolTag::EQUAL,                   "=",                   SmtLib2Head::NAME,     false, true},
    {SymbolTag::TERM_ITE,                "ite",                 SmtLib2Head::NAME,     false, true},
    {SymbolTag::INT_MODULAR_CONGRUENCE,  "=",                   SmtLib2Head::MODULUS,  false, true},
    {SymbolTag::BV_CONCAT,               "concat",              SmtLib2Head::NAME,     true,  true},
    {SymbolTag::BV_EXTRACT,              "extract",             SmtLib2Head::RANGE,    false, true},
    {SymbolTag::BV_NOT,                  "bvnot",               SmtLib2Head::NAME,     false, true},
    {SymbolTag::BV_AND,                  "bvand",               SmtLib2Head::NAME,     true,  true},
    {SymbolTag::BV_OR,                   "bvor",                SmtLib2Head::NAME,     true,  true},
    {SymbolTag::BV_XOR,                  "bvxor",               SmtLib2Head::NAME,     true,  true},
    {SymbolTag::BV_ULT,                  "bvult",               SmtLib2Head::NAME,     false, true},
    {SymbolTag::BV_SLT,                  "bvslt",               SmtLib2Head::NAME,     false, true},
    {SymbolTag::BV_ULE,                  "bvule",               SmtLib2Head::NAME,     false, true},
    {SymbolTag::BV_SLE,                  "bvsle",               SmtLib2Head::NAME,     false, true},
    {SymbolTag::BV_COMP,                 "bvcomp",              SmtLib2Head::NAME,     false, true},
    {SymbolTag::BV_NEG,                  "bvneg",               SmtLib2Head::NAME,     false, true},
    {SymbolTag::BV_ADD,                  "bvadd",               SmtLib2Head::NAME,     true,  true},
    {SymbolTag::BV_SUB,                  "bvsub",               SmtLib2Head::NAME,     false, true},
    {SymbolTag::BV_MUL,                  "bvmul",               SmtLib2Head::NAME,     true,  true},
    {SymbolTag::BV_UDIV,                 "bvudiv",              SmtLib2Head::NAME,     false, true},
    {SymbolTag::BV_SDIV,                 "bvsdiv",              SmtLib2Head::NAME,     false, true},
    {SymbolTag::BV_UREM,                 "bvurem",              SmtLib2Head::NAME,     false, true},
    {SymbolTag::BV_SREM,                 "bvsrem",              SmtLib2Head::NAME,     false, true},
    {SymbolTag::BV_LSHL,                 "bvshl",               SmtLib2Head::NAME,     false, true},
    {SymbolTag::BV_LSHR,                 "bvlshr",              SmtLib2Head::NAME,     false, true},
    {SymbolTag::BV_ASHR,                 "bvashr",              SmtLib2Head::NAME,     false, true},
    {SymbolTag::BV_ROTATE_LEFT,          "rotate_left",         SmtLib2Head::AMOUNT,   false, true},
    {SymbolTag::BV_ROTATE_RIGHT,         "rotate_right",        SmtLib2Head::AMOUNT,   false, true},
    {SymbolTag::BV_ZERO_EXTEND,          "zero_extend",         SmtLib2Head::AMOUNT,   false, true},
    {SymbolTag::BV_SIGN_EXTEND,          "sign_extend",         SmtLib2Head::AMOUNT,   false, true},
    {SymbolTag::ARRAY_READ,              "select",              SmtLib2Head::NAME,     false, true},
    {SymbolTag::ARRAY_WRITE,             "store",               SmtLib2Head::NAME,     false, true},
    {SymbolTag::ARRAY_CONST,             "const",               SmtLib2Head::SORT,     false, true},
    {SymbolTag::FP_EQUAL,                "fp.eq",               SmtLib2Head::NAME,     false, true},
    {SymbolTag::FP_LT,                   "fp.lt",               SmtLib2Head::NAME,     false, true},
    {SymbolTag::FP_LE,                   "fp.leq",              SmtLib2Head::NAME,     false, true},
    {SymbolTag::FP_NEG,                  "fp.neg",              SmtLib2Head::NAME,     false, true},
    {SymbolTag::FP_ADD,                  "fp.add",              SmtLib2Head::NAME,     false, true},
    {SymbolTag::FP_SUB,                  "fp.sub",              SmtLib2Head::NAME,     false, true},
    {SymbolTag::FP_MUL,                  "fp.mul",              SmtLib2Head::NAME,     false, true},
    {SymbolTag::FP_DIV,                  "fp.div",              SmtLib2Head::NAME,     false, true},
    {SymbolTag::FP_SQRT,                 "fp.sqrt",             SmtLib2Head::NAME,     false, true},
    {SymbolTag::FP_ABS,                  "fp.abs",              SmtLib2Head::NAME,     false, true},
    {SymbolTag::FP_MIN,                  "fp.min",              SmtLib2Head::NAME,     false, true},
    {SymbolTag::FP_MAX,                  "fp.max",              SmtLib2Head::NAME,     false, true},
    {SymbolTag::FP_CAST,                 "to_fp",               SmtLib2Head::FORMAT,   false, true},
    {SymbolTag::FP_ROUND_TO_INT,         "fp.roundToIntegral",  SmtLib2Head::NAME,     false, true},
    {SymbolTag::FP_FROM_SBV,             "to_fp",               SmtLib2Head::FORMAT,   false, true},
    {SymbolTag::FP_FROM_UBV,             "to_fp_unsigned",      SmtLib2Head::FORMAT,   false, true},
    {SymbolTag::FP_TO_BV,                "fp.to_sbv",           SmtLib2Head::WIDTH,    false, true},
    {SymbolTag::FP_AS_IEEEBV,            "fp.to_ieee_bv",       SmtLib2Head::NAME,     false, false},
    {SymbolTag::FP_ISNAN,                "fp.isNaN",            SmtLib2Head::NAME,     false, true},
    {SymbolTag::FP_ISINF,                "fp.isInfinite",       SmtLib2Head::NAME,     false, true},
    {SymbolTag::FP_ISZERO,               "fp.isZero",           SmtLib2Head::NAME,     false, true},
    {SymbolTag::FP_ISSUBNORMAL,          "fp.isSubnormal",      SmtLib2Head::NAME,     false, true},
    {SymbolTag::FP_ISNORMAL,             "fp.isNormal",         SmtLib2Head::NAME,     false, true},
    {SymbolTag::FP_ISNEG,                "fp.isNegative",       SmtLib2Head::NAME,     false, true},
    {SymbolTag::FP_ISPOS,                "fp.isPositive",       SmtLib2Head::NAME,     false, true},
    {SymbolTag::FP_FROM_IEEEBV,          "to_fp",               SmtLib2Head::FORMAT,   false, true},
    {SymbolTag::INT_FROM_UBV,            "bv2nat",              SmtLib2Head::NAME,     false, true},
    {SymbolTag::INT_FROM_SBV,            "sbv_to_int",          SmtLib2Head::NAME,     false, false},
    {SymbolTag::INT_TO_BV,               "int2bv",              SmtLib2Head::WIDTH,    false, false},
};
// clang-format on

constexpr bool smtlib2_operators_complete() {
  for (size_t i = 0; i < std::size(smtlib2_operators); i++) {
    if (smtlib2_operators[i].tag != static_cast<SymbolTag::tag>(i)) return false;
  }
  return std::size(smtlib2_operators) == SymbolTag::INT_TO_BV + 1;
}
static_assert(smtlib2_operators_complete(), "one row for each tag, in order");

// The row of a tag, or null for NONE.
constexpr const SmtLib2Operator* find_smtlib2_operator(SymbolTag::tag tag) {
  return tag == SymbolTag::NONE ? nullptr : &smtlib2_operators[tag];
}

}  // namespace quill

#endif
