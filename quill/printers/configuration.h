// What can be chosen about printed text.

#ifndef QUILL_PRINTERS_CONFIGURATION_H
#define QUILL_PRINTERS_CONFIGURATION_H

#include <cstdint>
#include <string>

namespace quill {

struct Configuration {
  // How operators are written for which SMT-LIB 2.6 has no function: the bits of a floating-point
  // value (fp_as_ieeebv), and the conversions int_from_sbv and int_to_bv.
  enum class Dialect : uint8_t {
    // In terms of what the standard has: see standard_encoding.h. Definitions may have to stand
    // before the term, so this is for whole scripts.
    Standard,
    // As functions that some readers have: fp.to_ieee_bv, sbv_to_int, (_ int2bv w). A term that
    // stands alone says all that it means.
    Extensions,
  };

  struct Printer {
    Dialect dialect = Dialect::Extensions;

    // The logic in which the text is to be read: names of its theories are not written for symbols
    // of other meanings. Empty: every theory is in use.
    std::string logic;

    // Whether absolute values are written as (abs a) in nonlinear logics of reals, too, where the
    // standard lacks the name. Solvers know it there, and reason better with it than with what it
    // stands for.
    bool abs_of_reals = false;
  };
};

}  // namespace quill

#endif
