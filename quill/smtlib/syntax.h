// The lexical side of SMT-LIB 2.6: which names need bars, and how symbols, sorts and numerals are
// written.

#ifndef QUILL_SMTLIB_SYNTAX_H
#define QUILL_SMTLIB_SYNTAX_H

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>

#include "quill/smtlib/logic.h"
#include "quill/smtlib/name_escape.h"
#include "quill/terms/data_type.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/qnumber.h"

namespace quill {

// Whether every reader takes the name for a simple symbol: one that needs no bars and is not a
// reserved word, a command name or a number with a sign.
bool is_simple_symbol(std::string_view name);

// Whether a theory of the logic gives the name a meaning: as an operator or a constant, or as a
// sort.
bool is_theory_symbol(std::string_view name, const Logic& logic = Logic());
bool is_theory_sort(std::string_view name, const Logic& logic = Logic());

// Whether some readers take the name at the head of an application, even between bars, for a word
// of the language: (|let| x). They read ((as |let| Int) x) correctly.
bool needs_qualified_head(std::string_view name);

// Writes the name, between bars if it needs them. It must contain neither a bar nor a backslash.
void print_quoted(std::ostream& out, std::string_view name);

// Writes a name of the manager, escaped and between bars as needed (see name_escape.h).
void print_symbol(std::ostream& out, std::string_view manager_name,
                  std::string_view escape_prefix = default_escape_prefix,
                  const Logic& logic = Logic());

// Writes a type as a sort: (_ BitVec 8), (_ FloatingPoint 8 24), RoundingMode, (Array Int Real),
// (List Int). Sorts have no let, so the text can be far larger than the type, whose components are
// shared. Throws Exception before it writes anything if the text has more than max_names_in_sort
// names.
constexpr uint64_t max_names_in_sort = uint64_t{1} << 24;
void print_type(std::ostream& out, const TermManager& manager, const DataType* type,
                std::string_view escape_prefix = default_escape_prefix,
                const Logic& logic = Logic());

// The number of significand bits with the hidden bit, as SMT-LIB counts them: m + 1.
std::string significand_text(size_t m);

// Writes a bit-vector of `width` bits, given by its value as an unsigned number, as (_ bv5 8).
// Returns false, and writes nothing, when no bit-vector of this width has the value.
bool print_bv_value(std::ostream& out, const QNumber& value, size_t width);

// Writes the value of format (e, m) with these bits as (fp #b0 #b10 #b011): sign, exponent and
// significand, even for values that have a name, such as infinities. Returns false, and writes
// nothing, when no value of the format has these bits, or e or m is 0: SMT-LIB cannot write a part
// without bits. Throws std::bad_alloc for more than 2^32 bits.
bool print_fp_bits(std::ostream& out, const QNumber& bits, size_t e, size_t m);

// Writes the infinities, the zeros and the NaN that IEEEFloat makes by their names: (_ +oo 5 11).
// Returns false, and writes nothing, for other bits.
bool print_fp_special(std::ostream& out, const QNumber& bits, size_t e, size_t m);

// Writes an integer as 3 or (- 3); with as_real, any rational: 3.0, (- 3.0), (/ 1.0 3.0).
void print_number(std::ostream& out, const QNumber& value, bool as_real);

// Writes a rational such that operators apply only to integers: 3.0 and 0.5 if the decimal digits
// end, otherwise (/ 1 3), (/ (- 1) 2) and (/ (- 3) 1).
void print_real_value(std::ostream& out, const QNumber& value);

}  // namespace quill

#endif
