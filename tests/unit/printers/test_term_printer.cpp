#include <gtest/gtest.h>

#include <ostream>
#include <sstream>
#include <type_traits>

#include "quill/printers/smtlib2_term_printer.h"
#include "quill/printers/term_printer.h"

namespace quill {
namespace {

class FramedPrinter : public TermPrinter {
 public:
  void print_start(std::ostream& out) override { out << "start "; }
  void print_end(std::ostream& out) override { out << " end"; }
  void print_define_section_start(std::ostream& out) override { out << "["; }
  void print_define_section_end(std::ostream& out) override { out << "]"; }
};

void call_hooks(TermPrinter& printer, std::ostream& out) {
  printer.print_start(out);
  printer.print_define_section_start(out);
  printer.print_define_section_end(out);
  printer.print_end(out);
}

TEST(TermPrinter, HooksWriteNothingUnlessOverridden) {
  TermPrinter printer;
  std::ostringstream out;
  call_hooks(printer, out);
  EXPECT_EQ(out.str(), "");
}

TEST(TermPrinter, HooksCanBeOverridden) {
  FramedPrinter printer;
  std::ostringstream out;
  call_hooks(printer, out);
  EXPECT_EQ(out.str(), "start [] end");
}

TEST(TermPrinter, SmtLib2PrinterIsOne) {
  TermManager m;
  SmtLib2TermPrinter printer(&m, nullptr, "", "", true, nullptr);
  std::ostringstream out;
  call_hooks(printer, out);
  printer.print_atom(out, m.make_true(), true);
  EXPECT_EQ(out.str(), "true");
}

TEST(TermPrinter, IsDestroyedThroughItsBase) {
  EXPECT_TRUE(std::has_virtual_destructor_v<TermPrinter>);
}

}  // namespace
}  // namespace quill
