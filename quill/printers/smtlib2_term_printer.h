// Writes terms in SMT-LIB 2.6.
//
//   SmtLib2TermPrinter printer(&manager, nullptr, "", "", /*share=*/true, nullptr);
//   printer.print_term(std::cout, t);
//
// The text reads back as the same term. Operators have the names of the standard, chains of one
// left-associative operator are in one pair of parentheses, differences and negations are (- a b)
// and (- b), and where Real is expected, numerals have a point and other Int terms a to_real.
// Shared subterms are bound by let, so that the text is linear in the size of the graph; without
// sharing it is as large as the term written as a tree. Symbols are renamed if the configured logic
// gives their names to a theory.
//
// Binding n is named by the prefix and n, by default @1, @2 and so on. A name that begins with @
// can be bound but not declared, so the default clashes with no symbol; a prefix that the caller
// chooses should also begin with @ or a point.
//
// Terms can carry annotations, (! t :key value). An annotated term is annotated where it is first
// written. If its annotations contain a name (:named), the name is written from then on, unless the
// term is a numeral. Annotations are not written inside let, because readers reject that: lets move
// below or beside annotated terms, and what is above them is written as a tree. Only if that tree
// would be many times as large as the graph are annotations written inside lets.
//
// Operators that the standard does not have are written as extensions of the standard or, if the
// configuration asks for the standard, as standard_encoding.h says. If the encoding needs constants
// of its own, they must be declared before the term: print_definitions() writes the commands. A
// printer without definitions writes only the names of such constants.
//
// Nothing is recursive, and the manager is not changed.

#ifndef QUILL_PRINTERS_SMTLIB2_TERM_PRINTER_H
#define QUILL_PRINTERS_SMTLIB2_TERM_PRINTER_H

#include <iosfwd>
#include <memory>
#include <string>

#include "quill/printers/annotations.h"
#include "quill/printers/bit_definitions.h"
#include "quill/printers/smtlib_term_printer.h"

namespace quill {

class SmtLib2TermWriter;

class SmtLib2TermPrinter : public SmtLibTermPrinter {
 public:
  using Annotations = TermAnnotations;
  using TermSet = quill::TermSet;

  // `let_names` is the prefix of the names that let binds; `renamed` is the prefix for symbols that
  // SMT-LIB cannot name. Empty prefixes mean the defaults. Annotations may be null; they must
  // outlive the printer, and their terms must not be freed before it.
  SmtLib2TermPrinter(TermManager* owner, Configuration::Printer* choices,
                     const std::string& let_names, const std::string& renamed, bool share_by_let,
                     const Annotations* annotations_of_terms);
  ~SmtLib2TermPrinter() override;

  // The definitions that the text can rely on and that print_definitions() adds to. Not owned; null
  // for none, as initially.
  void set_definitions(BitDefinitions* made);

  // Makes the texts continue each other: a term that is annotated in one text is not annotated in
  // later ones, which write its name. The printer enters the terms that it has annotated, also in
  // print_definitions(). A term that it has not entered was in no place that is annotated: not
  // below the term, hidden by an encoding, or, in texts that continue each other, within lets or an
  // Int numeral in a place that makes it a Real. Not owned; null, as initially, for independent
  // texts.
  void set_annotated(TermSet* in_all_texts);

  // Writes the commands that define what a text of the term relies on, as far as they are not
  // written yet:
  //
  //   (declare-const quill!ieee_nan_1 (_ BitVec 32))
  //   (declare-const quill!ieee_bits_1 (_ BitVec 32))
  //   (assert ...)
  //
  // Annotated terms that appear there are annotated there and not in what is written later. Needs
  // definitions. Writes nothing unless the configuration asks for the standard. If this throws, the
  // caller must write the commands again: nothing of what was written counts as defined.
  void print_definitions(std::ostream& out, const Term_* t);

  // Writes the term; without annotations if with_annotations is false.
  void print_atom(std::ostream& out, const Term_* t, bool with_annotations) override;

  // The same for a place of type `expected`; the type of the term may be a subtype of it.
  void print_term(std::ostream& out, const Term_* t, const DataType* expected,
                  bool with_annotations = true);
  void print_term(std::ostream& out, const Term_* t);

 private:
  const std::unique_ptr<SmtLib2TermWriter> writer;
};

}  // namespace quill

#endif
