// The subcommands of quill-smt2, as functions from a file to a text.
//
// The text is complete before any of it is written, so that a faulty script leaves standard output
// empty. Files are named as on the command line; "-" is standard input.

#ifndef APPS_QUILL_SMT2_COMMANDS_H
#define APPS_QUILL_SMT2_COMMANDS_H

#include <cstdint>
#include <string>
#include <vector>

#include "quill/printers/configuration.h"
#include "quill/utils/exception.h"

namespace quill::smt2::app {

// Standard output cannot take the text.
class OutputError : public Exception {
 public:
  using Exception::Exception;
};

// All throw ParseError for a fault of the script, also if the script has more pairs or bits than
// may be made (ReadOptions), and Exception for a file that cannot be read.
std::string print_script(const std::string& file, uint64_t max_expansion,
                         Configuration::Dialect dialect);
std::string script_statistics(const std::string& file, uint64_t max_expansion, bool with_timing);

// The script with constants replaced; each setting is NAME=TERM. Throws Exception for a setting
// of any other form.
std::string substitute_in_script(const std::string& file, const std::vector<std::string>& settings,
                                 uint64_t max_expansion, Configuration::Dialect dialect);

// The script, written from a copy in another manager.
std::string copy_script(const std::string& file, uint64_t max_expansion,
                        Configuration::Dialect dialect);

// What a collection frees when it keeps the assertions in force at the end of the script.
std::string collection_report(const std::string& file, uint64_t max_expansion);

// The script, written after a collection that keeps what its commands mention.
std::string collect_and_print(const std::string& file, uint64_t max_expansion,
                              Configuration::Dialect dialect);

// Writes to standard output and flushes. Returns false if nobody reads standard output any more;
// throws OutputError if the write fails otherwise.
bool write_output(const std::string& text);

}  // namespace quill::smt2::app

#endif
