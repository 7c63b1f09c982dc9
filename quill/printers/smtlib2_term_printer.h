// Writes terms in SMT-LIB 2.6.
//
//   SmtLib2TermPrinter printer(&manager, nullptr, "", "", /*share=*/true, nullptr);
//   printer.print_term(std::cout, t);
//
// What is written reads back as the same term: operators as the standard names them, chains of one
// left-associative operator in one pair of parentheses, (- a b) and (- b) for differences and
// negations, numerals with a point and to_real where Real is asked for. Shared subterms are bound
// by let, so that the text is linear in the size of the graph; without sharing it is as large as
// the term written as a tree. Symbols are renamed where the configured logic gives their names to a
// theory.
//
// Binding n is named by the prefix and n, @1 unless another prefix is chosen. A name that begins
// with @ can be bound but not declared, so the default clashes with no symbol; a prefix of the
// caller's choice should begin with @ or a point as well.
//
// Terms can carry annotations, (! t :key value). An annotated term is annotated where it is written
// first; where a name is among its annotations (:named), the name is written from then on, unless
// the term is a numeral. Annotations are not written inside let, because readers reject that: lets
// are moved below or beside annotated terms, and what is above them is written as a tree. Only
// where that tree would be many times as large as the graph are annotations written inside lets.
//
// Operators that the standard does not have are written as extensions of the standard or, when the
// configuration asks for the standard, as standard_encoding.h says. Where the encoding needs
// constants of its own, they have to be declared before the term: print_definitions() writes the
// commands. A printer that is given no definitions writes such constants just by their names.
//
// Nothing is recursive, and nothing of the manager is changed.

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

  // `let_names` is the prefix of the names that let binds, `renamed` that of symbols which SMT-LIB
  // can't name; empty for the defaults. Annotations may be null; they must outlive the printer, and
  // their terms must not be freed before it.
  SmtLib2TermPrinter(TermManager* owner, Configuration::Printer* choices,
                     const std::string& let_names, const std::string& renamed, bool share_by_let,
                     const Annotations* annotations_of_terms);
  ~SmtLib2TermPrinter() override;

  // The definitions that the text can rely on, which print_definitions() adds to. Not owned; null
  // for none, as initially.
  void set_definitions(BitDefinitions* made);

  // Lets the texts continue each other: what is annotated in one of them is not annotated in those
  // after it, which write its name. The terms that were annotated, also by print_definitions(), are
  // entered. The others were in no place that is annotated: not below the term, hidden by an
  // encoding, or, in texts that continue each other, within lets or an Int numeral in a place that
  // makes it a Real. Not owned; null, as initially, for texts that are each on their own.
  void set_annotated(TermSet* in_all_texts);

  // Writes the commands that define what a text of the term relies on and that is not defined yet:
  //
  //   (declare-const quill!ieee_nan_1 (_ BitVec 32))
  //   (declare-const quill!ieee_bits_1 (_ BitVec 32))
  //   (assert ...)
  //
  // Annotated terms that appear there are annotated there and no more in what is written later.
  // Needs definitions. Writes nothing unless the configuration asks for the standard. When it
  // throws, the commands are to be written again: nothing of what it wrote counts as defined.
  void print_definitions(std::ostream& out, const Term_* t);

  // Writes the term; with_annotations false leaves the annotations out.
  void print_atom(std::ostream& out, const Term_* t, bool with_annotations) override;

  // The same in a place of type `expected`, of which the type of the term may be a subtype.
  void print_term(std::ostream& out, const Term_* t, const DataType* expected,
                  bool with_annotations = true);
  void print_term(std::ostream& out, const Term_* t);

 private:
  const std::unique_ptr<SmtLib2TermWriter> writer;
};

}  // namespace quill

#endif
