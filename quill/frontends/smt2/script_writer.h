// Writes a script as SMT-LIB 2.6 text, one command per line.
//
// Definitions are not written, because the terms have them expanded, except definitions in which
// :named gives a name. Each name is given in its own command, or in a definition before it (see
// name_places.h), so that it keeps its scope. Options and information are kept, and so are all
// commands that ask for something. A logic that does not cover what is written is replaced by one
// that does. Reading the text and writing it again gives the same bytes.
//
// In the standard dialect the bits of a floating-point value are a constant that the text declares
// and defines before the first command that needs it, in the scope of that command (see
// quill/printers/standard_encoding.h). What get-value needs is defined before the check-sat that it
// asks about.

#ifndef QUILL_FRONTENDS_SMT2_SCRIPT_WRITER_H
#define QUILL_FRONTENDS_SMT2_SCRIPT_WRITER_H

#include <ostream>

#include "quill/frontends/smt2/script.h"
#include "quill/printers/configuration.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill::smt2 {

// The manager must be the one into which the script was read.
void write(std::ostream& out, TermManager& manager, const Script& script,
           Configuration::Dialect dialect = Configuration::Dialect::Standard);

}  // namespace quill::smt2

#endif
