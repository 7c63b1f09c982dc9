// The choices that a caller has about printed text.

#ifndef QUILL_PRINTERS_CONFIGURATION_H
#define QUILL_PRINTERS_CONFIGURATION_H

#include <cstdint>
#include <string>

namespace quill {

struct Configuration {
  // How to write the operators for which SMT-LIB 2.6 has no function: the bits of a floating-point
  // value (fp_as_ieeebv), and the conversions int_from_sbv and int_to_bv.
  enum class Dialect : uint8_t {
    // By operators of the standard, see standard_encoding.h. Definitions may have to be written
    // before the term, so this is for whole scripts.
    Standard,
    // As functions that some readers have: fp.to_ieee_bv, sbv_to_int, (_ int2bv w). A term written
    // on its own is then complete.
    Extensions,
  };

  struct Printer {
    Dialect dialect = Dialect::Extensions;

    // The logic in which the text will be read: symbols with other meanings are not written by the
    // names of its theories. Empty: every theory is in use.
    std::string logic;

    // Whether absolute values are also written as (abs a) in nonlinear logics of reals, where the
    // standard does not have the name. Solvers know it there, and reason better with it than with
    // its expansion.
    bool abs_of_reals = false;
  };
};

}  // namespace quill

#endif
