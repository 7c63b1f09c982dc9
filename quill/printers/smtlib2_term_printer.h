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
// the term is a numeral. Annotated terms are kept out of lets, which readers refuse: lets
// are moved below them or beside them, and what is above them is written as a tree. Only where that
// tree would be many times as large as the graph are annotations written inside lets.
//
// Operators that the standard does not have are written as extensions of the standard or, when the
// configuration asks for the standard, as standard_encoding.h says. Where the encoding needs
// constants of its own, they have to be declared before the term: print_definitions() writes the
// commands. A printer that is given no definitions writes such constants just by their names.
//
// Nothing is recursive, and nothing of the manager is changed.

#ifndef QUILL_PRINTERS_SMTLIB2_TERM_PRINTER_H
#define QUILL_PRINTERS_SMTLIB2_TERM_PRINTER_H

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "quill/printers/bit_definitions.h"
#include "quill/printers/let_plan.h"
#include "quill/printers/smtlib_term_printer.h"
#include "quill/printers/standard_encoding.h"
#include "quill/printers/symbol_texts.h"
#include "quill/printers/text_buffer.h"
#include "quill/printers/written_form.h"
#include "quill/utils/growing_array.h"
#include "quill/utils/hash_map.h"
#include "quill/utils/hash_set.h"

namespace quill {

class SmtLib2TermPrinter : public SmtLibTermPrinter {
 public:
  // Pairs of key and value for each annotated term; the key with or without its colon.
  using Annotations = hsh::HashMap<const Term_*, std::vector<std::pair<std::string, std::string>>>;
  using TermSet = hsh::HashSet<const Term_*>;

  // `let_names` is the prefix of the names that let binds, `renamed` that of symbols which SMT-LIB
  // can't name; empty for the defaults. Annotations may be null; they must outlive the printer, and
  // their terms must not be freed before it.
  SmtLib2TermPrinter(TermManager* owner, Configuration::Printer* choices,
                     const std::string& let_names, const std::string& renamed, bool share_by_let,
                     const Annotations* annotations_of_terms);

  // The definitions that the text can rely on, which print_definitions() adds to. Not owned; null
  // for none, as initially.
  void set_definitions(BitDefinitions* made) { definitions = made; }

  // Lets the texts continue each other: what is annotated in one of them is not annotated in those
  // after it, which write its name. The terms that were annotated, also by print_definitions(), are
  // entered. The others were in no place that is annotated: not below the term, hidden by an
  // encoding, or, in texts that continue each other, within lets or an Int numeral in a place that
  // makes it a Real. Not owned; null, as initially, for texts that are each on their own.
  void set_annotated(TermSet* in_all_texts) { annotated_in_texts = in_all_texts; }

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
  void print_term(std::ostream& out, const Term_* t) {
    print_atom(out, t, /*with_annotations=*/true);
  }

 private:
  // An application that is being written.
  struct OpenTerm {
    uint32_t node;  // in the plan
    uint32_t next;  // the operand to write next
    uint32_t end;
    bool is_plain;   // operands are nothing but written, and nothing but a parenthesis follows them
    bool is_joined;  // in the parentheses of the application below, as its first operand
    bool is_annotated;
    bool is_real;  // within to_real
  };
  using OpenTerms = GrowingArray<OpenTerm>;

  using Weights = std::vector<uint64_t>;  // by node of a plan

  // How the terms of a plan are written; `above` and `named` may be null.
  struct Choices {
    const LetPlan& plan;   // bound terms are written by their names
    const Weights* above;  // the nodes without weight are written with lets of their own
    TermSet* named;  // annotations are written, and terms that have been given a name are here

    bool have_exceptions() const { return above != nullptr || named != nullptr; }
  };

  bool print_encoded(std::ostream& out, const Term_* t, const DataType* expected,
                     bool with_annotations);
  void print_copy(std::ostream& out, StandardEncoding& encoding, const Term_* copy,
                  const DataType* expected, bool with_annotations) const;
  std::vector<const Term_*> annotate_copies(const StandardEncoding& encoding,
                                            Annotations& of_copies,
                                            TermSet& annotated_copies) const;
  void require_own_annotations();
  void find_terms_with_annotations(const std::vector<const Term_*>& post_order,
                                   TermSet& with_annotations) const;
  void print_annotated(TextBuffer& out, const Term_* root, const DataType* expected);
  Weights weigh_terms_above_annotated(const LetPlan& plan) const;
  bool is_repeated_numeral(const Term_* t, const TermSet& named) const;
  bool is_of_place(const Term_* t, const DataType* expected) const;
  bool print_annotation_start(TextBuffer& out, const Term_* t, TermSet& named) const;
  void print_annotation_end(TextBuffer& out, const Term_* t) const;
  void print_unannotated(TextBuffer& out, const Term_* root, const DataType* expected);
  void print_with_lets(TextBuffer& out, const DataType* expected, const Choices& choices);
  void print_tree(TextBuffer& out, OpenTerms& open, LetPlan::Operand root, const DataType* expected,
                  const Choices& choices);
  void begin(TextBuffer& out, OpenTerms& open, LetPlan::Operand operand, const DataType* expected,
             const Choices& choices, bool as_value = false);
  void open_applications(TextBuffer& out, OpenTerms& open, uint32_t node, const Choices& choices);
  void close_application(TextBuffer& out, const OpenTerm& closed, const LetPlan& plan) const;
  void finish(TextBuffer& out, const Term_* t, bool annotated, bool to_real) const;
  void print_operator(TextBuffer& out, const WrittenForm& form);
  void print_operator_of_other_form(TextBuffer& out, const WrittenForm& form);
  void print_closing(TextBuffer& out, const WrittenForm& form) const;
  void print_divisor(TextBuffer& out, const WrittenForm& form) const;
  bool may_join(const Term_* operand, bool with_annotations);
  bool needs_to_real(const Term_* t, const DataType* expected) const;
  bool is_annotated(const Term_* t) const {
    if (annotations == nullptr) return false;
    const auto found = annotations->find(t);
    return found != annotations->end() && !found->second.empty() &&
           annotated_before.find(t) == annotated_before.end();
  }

  const bool with_abs;  // whether absolute values are written as such
  const bool share;
  const Annotations* const annotations;
  BitDefinitions* definitions = nullptr;
  TermSet* annotated_in_texts = nullptr;
  TermSet annotated_before;  // by print_definitions()
  // When it was checked that the manager owns what is annotated: with so many annotated terms, and
  // after so many collections.
  struct Checked {
    size_t count = 0;
    uint64_t generation = 0;
    friend bool operator==(const Checked&, const Checked&) = default;
  } annotations_checked;

  // Of the text that is being printed.
  std::optional<SymbolTexts> texts;
  std::optional<WrittenForms> forms;
  std::optional<WrittenForms> annotated_forms;  // in which annotated terms are not hidden
};

}  // namespace quill

#endif
