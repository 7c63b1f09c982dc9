// What the subcommands of quill-smt2 do, as functions from a file to a text.
//
// The text is complete before anything of it is written, so that a faulty script leaves standard
// output empty. Files are named as on the command line; "-" is standard input.

#ifndef APPS_QUILL_SMT2_COMMANDS_H
#define APPS_QUILL_SMT2_COMMANDS_H

#include <string>

#include "quill/utils/exception.h"

namespace quill::smt2::app {

// Standard output cannot take the text.
class OutputError : public Exception {
 public:
  using Exception::Exception;
};

// Both throw ParseError for a fault of the script and Exception for a file that cannot be read.
std::string print_script(const std::string& file);
std::string script_statistics(const std::string& file, bool with_timing);

// Writes to standard output and flushes. False when nobody reads it any more; throws OutputError
// when it fails otherwise.
bool write_output(const std::string& text);

}  // namespace quill::smt2::app

#endif
