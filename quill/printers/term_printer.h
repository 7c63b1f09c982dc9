// The base of everything that writes terms: hooks around what is written.

#ifndef QUILL_PRINTERS_TERM_PRINTER_H
#define QUILL_PRINTERS_TERM_PRINTER_H

#include <iosfwd>

namespace quill {

class TermPrinter {
 public:
  virtual ~TermPrinter() = default;

  // Around a whole output, and around its definitions. They write nothing unless overridden.
  virtual void print_start(std::ostream&) {}
  virtual void print_end(std::ostream&) {}
  virtual void print_define_section_start(std::ostream&) {}
  virtual void print_define_section_end(std::ostream&) {}
};

}  // namespace quill

#endif
