#include "quill/printers/smtlib_term_printer.h"

#include "quill/smtlib/name_escape.h"

namespace quill {

// A name that begins with @ can be bound by let but not declared, so the default prefix clashes
// with no symbol.
SmtLibTermPrinter::SmtLibTermPrinter(const TermManager* owner,
                                     const Configuration::Printer* choices,
                                     const std::string& names_of_lets,
                                     const std::string& names_of_renamed)
    : manager(*owner),
      configuration(choices != nullptr ? *choices : Configuration::Printer()),
      logic(configuration.logic.empty() ? Logic() : Logic(configuration.logic)),
      let_prefix(names_of_lets.empty() ? "@" : names_of_lets),
      rename_prefix(names_of_renamed.empty() ? default_escape_prefix : names_of_renamed) {}

}  // namespace quill
