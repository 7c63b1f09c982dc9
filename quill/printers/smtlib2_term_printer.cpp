#include "quill/printers/smtlib2_term_printer.h"

#include <memory>
#include <string>

#include "quill/printers/smtlib2_term_writer.h"

namespace quill {

SmtLib2TermPrinter::SmtLib2TermPrinter(TermManager* owner, Configuration::Printer* choices,
                                       const std::string& let_names, const std::string& renamed,
                                       bool share_by_let, const Annotations* annotations_of_terms)
    : SmtLibTermPrinter(owner, choices, let_names, renamed),
      writer(std::make_unique<SmtLib2TermWriter>(
          SmtLib2TermWriter::Context{manager, configuration, logic, let_prefix, rename_prefix},
          share_by_let, annotations_of_terms)) {}

SmtLib2TermPrinter::~SmtLib2TermPrinter() = default;

void SmtLib2TermPrinter::set_definitions(BitDefinitions* made) { writer->set_definitions(made); }

void SmtLib2TermPrinter::set_annotated(TermSet* in_all_texts) {
  writer->set_annotated(in_all_texts);
}

void SmtLib2TermPrinter::print_definitions(std::ostream& out, const Term_* t) {
  writer->print_definitions(out, t);
}

void SmtLib2TermPrinter::print_atom(std::ostream& out, const Term_* t, bool with_annotations) {
  writer->print_term(out, t, nullptr, with_annotations);
}

void SmtLib2TermPrinter::print_term(std::ostream& out, const Term_* t, const DataType* expected,
                                    bool with_annotations) {
  writer->print_term(out, t, expected, with_annotations);
}

void SmtLib2TermPrinter::print_term(std::ostream& out, const Term_* t) {
  print_atom(out, t, /*with_annotations=*/true);
}

}  // namespace quill
