// The tags of interpreted symbols.
//
// Front ends may store these values or switch on them, so the values never change. Symbols over
// Real and over Int share their tags (PLUS, TIMES, LEQ); the argument type tells them apart.

#ifndef QUILL_TERMS_TERMMANAGER_SYMBOL_TAG_H
#define QUILL_TERMS_TERMMANAGER_SYMBOL_TAG_H

namespace quill {

// Some system headers define these two words as macros.
#pragma push_macro("TRUE")
#pragma push_macro("FALSE")
#undef TRUE
#undef FALSE

struct SymbolTag {
  enum tag {
    NONE = 0,  // uninterpreted symbols, numerals, and the four rounding-mode constants

    // Core and arithmetic
    TRUE,
    FALSE,
    AND,
    OR,
    NOT,
    IFF,
    PLUS,
    TIMES,
    FLOOR,
    LEQ,
    EQUAL,
    TERM_ITE,
    INT_MODULAR_CONGRUENCE,

    // Bit-vectors
    BV_CONCAT,
    BV_EXTRACT,
    BV_NOT,
    BV_AND,
    BV_OR,
    BV_XOR,
    BV_ULT,
    BV_SLT,
    BV_ULE,
    BV_SLE,
    BV_COMP,
    BV_NEG,
    BV_ADD,
    BV_SUB,
    BV_MUL,
    BV_UDIV,
    BV_SDIV,
    BV_UREM,
    BV_SREM,
    BV_LSHL,
    BV_LSHR,
    BV_ASHR,
    BV_ROTATE_LEFT,
    BV_ROTATE_RIGHT,
    BV_ZERO_EXTEND,
    BV_SIGN_EXTEND,

    // Arrays
    ARRAY_READ,
    ARRAY_WRITE,
    ARRAY_CONST,

    // Floating point
    FP_EQUAL,
    FP_LT,
    FP_LE,
    FP_NEG,
    FP_ADD,
    FP_SUB,
    FP_MUL,
    FP_DIV,
    FP_SQRT,
    FP_ABS,
    FP_MIN,
    FP_MAX,
    FP_CAST,
    FP_ROUND_TO_INT,
    FP_FROM_SBV,
    FP_FROM_UBV,
    FP_TO_BV,
    FP_AS_IEEEBV,
    FP_ISNAN,
    FP_ISINF,
    FP_ISZERO,
    FP_ISSUBNORMAL,
    FP_ISNORMAL,
    FP_ISNEG,
    FP_ISPOS,
    FP_FROM_IEEEBV,

    // Integers and bit-vectors
    INT_FROM_UBV,
    INT_FROM_SBV,
    INT_TO_BV,

    // TRUE and FALSE, for programs in which a header defines these names as macros.
    TRUE_TAG = TRUE,
    FALSE_TAG = FALSE
  };
};

#pragma pop_macro("FALSE")
#pragma pop_macro("TRUE")

static_assert(SymbolTag::TERM_ITE == 12 && SymbolTag::BV_NOT == 16 && SymbolTag::BV_ASHR == 35 &&
                  SymbolTag::ARRAY_READ == 40 && SymbolTag::FP_EQUAL == 43 &&
                  SymbolTag::FP_CAST == 55 && SymbolTag::FP_ISNAN == 61 &&
                  SymbolTag::INT_TO_BV == 71,
              "the values are fixed");

}  // namespace quill

#endif
