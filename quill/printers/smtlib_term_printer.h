// What the printers of SMT-LIB notations share: the manager, the choices, and the names of symbols.

#ifndef QUILL_PRINTERS_SMTLIB_TERM_PRINTER_H
#define QUILL_PRINTERS_SMTLIB_TERM_PRINTER_H

#include <iosfwd>
#include <string>

#include "quill/printers/configuration.h"
#include "quill/printers/term_printer.h"
#include "quill/smtlib/logic.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill {

class SmtLibTermPrinter : public TermPrinter {
 public:
  // Writes one term. The printer defines what the flag turns on.
  virtual void print_atom(std::ostream& out, const Term_* t, bool flag) = 0;

 protected:
  // Null choices and empty texts mean the defaults. The printer only reads the manager.
  SmtLibTermPrinter(const TermManager* owner, const Configuration::Printer* choices,
                    const std::string& names_of_lets, const std::string& names_of_renamed);

  const TermManager& manager;
  const Configuration::Printer configuration;
  const Logic logic;                // the configured one
  const std::string let_prefix;     // of the names that let binds
  const std::string rename_prefix;  // of symbols that SMT-LIB cannot name (see name_escape.h)
};

}  // namespace quill

#endif
