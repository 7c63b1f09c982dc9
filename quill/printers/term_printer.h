// The base of everything that writes terms: hooks before and after the text.

#ifndef QUILL_PRINTERS_TERM_PRINTER_H
#define QUILL_PRINTERS_TERM_PRINTER_H

#include <iosfwd>

namespace quill {

class TermPrinter {
 public:
  virtual ~TermPrinter() = default;

  // Called before and after a whole output and its definitions. They write nothing unless
  // overridden.
  virtual void print_start(std::ostream&) {}
  virtual void print_end(std::ostream&) {}
  virtual void print_define_section_start(std::ostream&) {}
  virtual void print_define_section_end(std::ostream&) {}
};

}  // namespace quill

#endif
