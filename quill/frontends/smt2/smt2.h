// Reads SMT-LIB 2.6 into a term manager and writes it back.
//
//   quill::TermManager manager;
//   std::ifstream file("problem.smt2");
//   quill::smt2::Script script = quill::smt2::read(file, manager);
//   quill::smt2::write(std::cout, manager, script);
//
// Supported are the theories Core, Ints, Reals, Reals_Ints, FixedSizeBitVectors, FloatingPoint and
// ArraysEx, and uninterpreted sorts and functions. Quantifiers, strings and datatypes are not
// supported. Reading is iterative: the stack limits neither the depth of terms nor that of sorts.

#ifndef QUILL_FRONTENDS_SMT2_SMT2_H
#define QUILL_FRONTENDS_SMT2_SMT2_H

#include <istream>
#include <string_view>

#include "quill/frontends/smt2/parse_error.h"
#include "quill/frontends/smt2/read_options.h"
#include "quill/frontends/smt2/script.h"
#include "quill/frontends/smt2/script_stats.h"
#include "quill/frontends/smt2/script_transformations.h"
#include "quill/frontends/smt2/script_writer.h"
#include "quill/terms/term.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill::smt2 {

// Reads a script up to its end or to (exit). Symbols that are still declared at that point stay
// declared in the manager. Functions with Bool arguments are allowed during the call.
// Throws ParseError for a fault of the script (no name that it declared is then left in the
// manager) and InputError if the stream cannot be read.
Script read(std::istream& input, TermManager& manager, const ReadOptions& options = {});

// Reads one term over the symbols in the manager's signature, with the names of all supported
// theories. Throws ParseError.
const Term_* read_term(std::string_view text, TermManager& manager);

// The same over the symbols that a script has left declared, for a term that will be put into the
// script. What the standard leaves undefined, such as division by zero, has the same meaning as in
// the script, or is a function with a name that the script does not use.
const Term_* read_term(std::string_view text, TermManager& manager, const Script& script,
                       const ReadOptions& options = {});

}  // namespace quill::smt2

#endif
