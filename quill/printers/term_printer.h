// The base of everything that writes terms: hooks around what is written.

#ifndef QUILL_PRINTERS_TERM_PRINTER_H
#define QUILL_PRINTERS_TERM_PRINTER_H

#include <iosfwd>

#include "quill/terms/term.h"

namespace quill {

class TermPrinter {
 public:
  virtual ~TermPrinter() = default;

  // Around a whole output, and around its definitions. They write nothing unless overridden.
  virtual void print_start(std::ostream&) { nothing(); }
  virtual void print_end(std::ostream&) { nothing(); }
  virtual void print_define_section_start(std::ostream&) { nothing(); }
  virtual void print_define_section_end(std::ostream&) { nothing(); }

  // Writes one term. See the printer for what the flag turns on.
  virtual void print_atom(std::ostream& out, const Term_* t, bool flag) = 0;

 private:
  static void nothing() {}
};

}  // namespace quill

#endif
