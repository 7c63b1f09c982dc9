// How the symbols of the theories are written in SMT-LIB 2.6, by tag.
//
// A tag says what a symbol is meant for, not that the symbol is fit for it: the caller of
// add_interpreted_symbol chooses any tag for any type. A symbol is written as an operator only if
// its argument and result types are those of the operator and, where the types do not tell
// everything, it belongs to the operator's family; any other symbol is written by its name. Code
// that reads the arguments of a term by the tag of its symbol must call operator_tag() for the tag.

#ifndef QUILL_SMTLIB_OPERATOR_TEXTS_H
#define QUILL_SMTLIB_OPERATOR_TEXTS_H

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

#include "quill/terms/termmanager/symbol_tag.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill {

// What is written at the head of an application, besides the text.
enum class SmtLib2Head : uint8_t {
  Name,     // text
  Range,    // (_ text msb lsb)
  Amount,   // (_ text k)
  Width,    // (_ text w), the width of the result
  Format,   // (_ text e s), the format of the result; s counts the hidden bit
  Sort,     // (as text S), the sort of the result
  Modulus,  // text, and every operand a is written as (mod a n)

  // Former spellings.
  NAME = Name,
  RANGE = Range,
  AMOUNT = Amount,
  WIDTH = Width,
  FORMAT = Format,
  SORT = Sort,
  MODULUS = Modulus,
};

struct SmtLib2Operator {
  SymbolTag::tag tag;
  std::string_view text;
  std::string_view types;  // of the operands and of the result, one letter each, see below
  SmtLib2Head head;
  bool left_associative;  // (op (op a b) c) may be written (op a b c)
  bool standard;          // whether the standard has the operator; some readers have it in any case
};

// The letters of types:
//
//   B  Bool           M  rounding mode            The small letters are the same type in all places
//   I  Int            V  a bit-vector             of one operator:
//   R  Real           1  a bit-vector of width 1  n  Int or Real      f  a floating-point type
//                     F  a floating-point type    v  a bit-vector     t  any type except Bool
//                                                 a  an array with indices x and elements e

// clang-format off
constexpr SmtLib2Operator smtlib2_operators[] = {
    {SymbolTag::NONE,                   "",                   "",     SmtLib2Head::Name,    false, true},
    {SymbolTag::TRUE_TAG,               "true",               "B",    SmtLib2Head::Name,    false, true},
    {SymbolTag::FALSE_TAG,              "false",              "B",    SmtLib2Head::Name,    false, true},
    {SymbolTag::AND,                    "and",                "BBB",  SmtLib2Head::Name,    true,  true},
    {SymbolTag::OR,                     "or",                 "BBB",  SmtLib2Head::Name,    true,  true},
    {SymbolTag::NOT,                    "not",                "BB",   SmtLib2Head::Name,    false, true},
    {SymbolTag::IFF,                    "=",                  "BBB",  SmtLib2Head::Name,    false, true},
    {SymbolTag::PLUS,                   "+",                  "nnn",  SmtLib2Head::Name,    true,  true},
    {SymbolTag::TIMES,                  "*",                  "nnn",  SmtLib2Head::Name,    true,  true},
    {SymbolTag::FLOOR,                  "to_int",             "RI",   SmtLib2Head::Name,    false, true},
    {SymbolTag::LEQ,                    "<=",                 "nnB",  SmtLib2Head::Name,    false, true},
    {SymbolTag::EQUAL,                  "=",                  "ttB",  SmtLib2Head::Name,    false, true},
    {SymbolTag::TERM_ITE,               "ite",                "Bttt", SmtLib2Head::Name,    false, true},
    {SymbolTag::INT_MODULAR_CONGRUENCE, "=",                  "IIB",  SmtLib2Head::Modulus, false, true},
    {SymbolTag::BV_CONCAT,              "concat",             "VVV",  SmtLib2Head::Name,    true,  true},
    {SymbolTag::BV_EXTRACT,             "extract",            "VV",   SmtLib2Head::Range,   false, true},
    {SymbolTag::BV_NOT,                 "bvnot",              "vv",   SmtLib2Head::Name,    false, true},
    {SymbolTag::BV_AND,                 "bvand",              "vvv",  SmtLib2Head::Name,    true,  true},
    {SymbolTag::BV_OR,                  "bvor",               "vvv",  SmtLib2Head::Name,    true,  true},
    {SymbolTag::BV_XOR,                 "bvxor",              "vvv",  SmtLib2Head::Name,    true,  true},
    {SymbolTag::BV_ULT,                 "bvult",              "vvB",  SmtLib2Head::Name,    false, true},
    {SymbolTag::BV_SLT,                 "bvslt",              "vvB",  SmtLib2Head::Name,    false, true},
    {SymbolTag::BV_ULE,                 "bvule",              "vvB",  SmtLib2Head::Name,    false, true},
    {SymbolTag::BV_SLE,                 "bvsle",              "vvB",  SmtLib2Head::Name,    false, true},
    {SymbolTag::BV_COMP,                "bvcomp",             "vv1",  SmtLib2Head::Name,    false, true},
    {SymbolTag::BV_NEG,                 "bvneg",              "vv",   SmtLib2Head::Name,    false, true},
    {SymbolTag::BV_ADD,                 "bvadd",              "vvv",  SmtLib2Head::Name,    true,  true},
    {SymbolTag::BV_SUB,                 "bvsub",              "vvv",  SmtLib2Head::Name,    false, true},
    {SymbolTag::BV_MUL,                 "bvmul",              "vvv",  SmtLib2Head::Name,    true,  true},
    {SymbolTag::BV_UDIV,                "bvudiv",             "vvv",  SmtLib2Head::Name,    false, true},
    {SymbolTag::BV_SDIV,                "bvsdiv",             "vvv",  SmtLib2Head::Name,    false, true},
    {SymbolTag::BV_UREM,                "bvurem",             "vvv",  SmtLib2Head::Name,    false, true},
    {SymbolTag::BV_SREM,                "bvsrem",             "vvv",  SmtLib2Head::Name,    false, true},
    {SymbolTag::BV_LSHL,                "bvshl",              "vvv",  SmtLib2Head::Name,    false, true},
    {SymbolTag::BV_LSHR,                "bvlshr",             "vvv",  SmtLib2Head::Name,    false, true},
    {SymbolTag::BV_ASHR,                "bvashr",             "vvv",  SmtLib2Head::Name,    false, true},
    {SymbolTag::BV_ROTATE_LEFT,         "rotate_left",        "vv",   SmtLib2Head::Amount,  false, true},
    {SymbolTag::BV_ROTATE_RIGHT,        "rotate_right",       "vv",   SmtLib2Head::Amount,  false, true},
    {SymbolTag::BV_ZERO_EXTEND,         "zero_extend",        "VV",   SmtLib2Head::Amount,  false, true},
    {SymbolTag::BV_SIGN_EXTEND,         "sign_extend",        "VV",   SmtLib2Head::Amount,  false, true},
    {SymbolTag::ARRAY_READ,             "select",             "axe",  SmtLib2Head::Name,    false, true},
    {SymbolTag::ARRAY_WRITE,            "store",              "axea", SmtLib2Head::Name,    false, true},
    {SymbolTag::ARRAY_CONST,            "const",              "ea",   SmtLib2Head::Sort,    false, true},
    {SymbolTag::FP_EQUAL,               "fp.eq",              "ffB",  SmtLib2Head::Name,    false, true},
    {SymbolTag::FP_LT,                  "fp.lt",              "ffB",  SmtLib2Head::Name,    false, true},
    {SymbolTag::FP_LE,                  "fp.leq",             "ffB",  SmtLib2Head::Name,    false, true},
    {SymbolTag::FP_NEG,                 "fp.neg",             "ff",   SmtLib2Head::Name,    false, true},
    {SymbolTag::FP_ADD,                 "fp.add",             "Mfff", SmtLib2Head::Name,    false, true},
    {SymbolTag::FP_SUB,                 "fp.sub",             "Mfff", SmtLib2Head::Name,    false, true},
    {SymbolTag::FP_MUL,                 "fp.mul",             "Mfff", SmtLib2Head::Name,    false, true},
    {SymbolTag::FP_DIV,                 "fp.div",             "Mfff", SmtLib2Head::Name,    false, true},
    {SymbolTag::FP_SQRT,                "fp.sqrt",            "Mff",  SmtLib2Head::Name,    false, true},
    {SymbolTag::FP_ABS,                 "fp.abs",             "ff",   SmtLib2Head::Name,    false, true},
    {SymbolTag::FP_MIN,                 "fp.min",             "fff",  SmtLib2Head::Name,    false, true},
    {SymbolTag::FP_MAX,                 "fp.max",             "fff",  SmtLib2Head::Name,    false, true},
    {SymbolTag::FP_CAST,                "to_fp",              "MFF",  SmtLib2Head::Format,  false, true},
    {SymbolTag::FP_ROUND_TO_INT,        "fp.roundToIntegral", "Mff",  SmtLib2Head::Name,    false, true},
    {SymbolTag::FP_FROM_SBV,            "to_fp",              "MVF",  SmtLib2Head::Format,  false, true},
    {SymbolTag::FP_FROM_UBV,            "to_fp_unsigned",     "MVF",  SmtLib2Head::Format,  false, true},
    {SymbolTag::FP_TO_BV,               "fp.to_sbv",          "MFV",  SmtLib2Head::Width,   false, true},
    {SymbolTag::FP_AS_IEEEBV,           "fp.to_ieee_bv",      "FV",   SmtLib2Head::Name,    false, false},
    {SymbolTag::FP_ISNAN,               "fp.isNaN",           "FB",   SmtLib2Head::Name,    false, true},
    {SymbolTag::FP_ISINF,               "fp.isInfinite",      "FB",   SmtLib2Head::Name,    false, true},
    {SymbolTag::FP_ISZERO,              "fp.isZero",          "FB",   SmtLib2Head::Name,    false, true},
    {SymbolTag::FP_ISSUBNORMAL,         "fp.isSubnormal",     "FB",   SmtLib2Head::Name,    false, true},
    {SymbolTag::FP_ISNORMAL,            "fp.isNormal",        "FB",   SmtLib2Head::Name,    false, true},
    {SymbolTag::FP_ISNEG,               "fp.isNegative",      "FB",   SmtLib2Head::Name,    false, true},
    {SymbolTag::FP_ISPOS,               "fp.isPositive",      "FB",   SmtLib2Head::Name,    false, true},
    {SymbolTag::FP_FROM_IEEEBV,         "to_fp",              "VF",   SmtLib2Head::Format,  false, true},
    {SymbolTag::INT_FROM_UBV,           "bv2nat",             "VI",   SmtLib2Head::Name,    false, true},
    {SymbolTag::INT_FROM_SBV,           "sbv_to_int",         "VI",   SmtLib2Head::Name,    false, false},
    {SymbolTag::INT_TO_BV,              "int2bv",             "IV",   SmtLib2Head::Width,   false, false},
};
// clang-format on

constexpr bool smtlib2_operators_complete() {
  for (size_t i = 0; i < std::size(smtlib2_operators); ++i) {
    if (smtlib2_operators[i].tag != static_cast<SymbolTag::tag>(i)) return false;
  }
  return std::size(smtlib2_operators) == SymbolTag::INT_TO_BV + 1;
}
static_assert(smtlib2_operators_complete(), "one row for each tag, in order");

// The row of a tag, or null for NONE.
constexpr const SmtLib2Operator* find_smtlib2_operator(SymbolTag::tag tag) {
  return tag == SymbolTag::NONE ? nullptr : &smtlib2_operators[tag];
}

// The rounding modes, which have no tags. The manager has none for roundNearestTiesToAway.
struct RoundingModeText {
  bool (TermManager::*is_mode)(const Symbol*) const;
  const char* text;
};
inline constexpr RoundingModeText rounding_mode_texts[] = {
    {&TermManager::is_fprounding_even, "RNE"},
    {&TermManager::is_fprounding_zero, "RTZ"},
    {&TermManager::is_fprounding_plus_inf, "RTP"},
    {&TermManager::is_fprounding_minus_inf, "RTN"},
};

// The row of the mode, or null for other symbols.
const RoundingModeText* find_rounding_mode(const TermManager& manager, const Symbol* s);

// The tag of a symbol that is written as the operator of its tag; NONE for any other symbol.
SymbolTag::tag operator_tag(const TermManager& manager, const Symbol* s);

// Whether the symbol is written as the operator of this tag. Same as comparing operator_tag(), but
// faster where most symbols have other tags.
bool is_operator(const TermManager& manager, const Symbol* s, SymbolTag::tag tag);

// Whether the symbol is written as an operator whose type does not tell everything, such as
// indices, so that the manager's families must know it.
bool is_operator_by_family(const TermManager& manager, const Symbol* s);

}  // namespace quill

#endif
