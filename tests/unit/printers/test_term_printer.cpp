#include <gtest/gtest.h>

#include <ostream>
#include <sstream>
#include <type_traits>

#include "quill/printers/smtlib2_term_printer.h"
#include "quill/printers/term_printer.h"

namespace quill {
namespace {

class NamePrinter : public TermPrinter {
 public:
  void print_atom(std::ostream& out, const Term_* t, bool flag) override {
    out << t->symbol->name << (flag ? "!" : "");
  }
};

class FramedPrinter : public NamePrinter {
 public:
  void print_start(std::ostream& out) override { out << "start "; }
  void print_end(std::ostream& out) override { out << " end"; }
  void print_define_section_start(std::ostream& out) override { out << "["; }
  void print_define_section_end(std::ostream& out) override { out << "]"; }
};

void print_all(TermPrinter& printer, std::ostream& out, const Term_* t) {
  printer.print_start(out);
  printer.print_define_section_start(out);
  printer.print_define_section_end(out);
  printer.print_atom(out, t, true);
  printer.print_end(out);
}

TEST(TermPrinter, HooksWriteNothingUnlessOverridden) {
  TermManager m;
  NamePrinter printer;
  std::ostringstream out;
  print_all(printer, out, m.make_true());
  EXPECT_EQ(out.str(), "`true`!");
}

TEST(TermPrinter, HooksCanBeOverridden) {
  TermManager m;
  FramedPrinter printer;
  std::ostringstream out;
  print_all(printer, out, m.make_true());
  EXPECT_EQ(out.str(), "start []`true`! end");
}

TEST(TermPrinter, SmtLib2PrinterIsOne) {
  TermManager m;
  SmtLib2TermPrinter printer(&m, nullptr, "", "", true, nullptr);
  std::ostringstream out;
  print_all(printer, out, m.make_true());
  EXPECT_EQ(out.str(), "true");
}

TEST(TermPrinter, IsAbstractAndDestroyedThroughItsBase) {
  EXPECT_TRUE(std::is_abstract_v<TermPrinter>);
  EXPECT_TRUE(std::has_virtual_destructor_v<TermPrinter>);
}

}  // namespace
}  // namespace quill
