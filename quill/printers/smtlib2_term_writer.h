// The implementation of SmtLib2TermPrinter; see there for what is written.
//
// A text is written in three steps. A plan of the term (see let_plan.h) determines which subterms
// let binds; forms (see written_form.h) determine the operator and the operands by which each
// application is written; and one walk with a stack writes them, with the texts of the symbols (see
// symbol_texts.h), each of which is composed once per text.

#ifndef QUILL_PRINTERS_SMTLIB2_TERM_WRITER_H
#define QUILL_PRINTERS_SMTLIB2_TERM_WRITER_H

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "quill/printers/annotations.h"
#include "quill/printers/bit_definitions.h"
#include "quill/printers/configuration.h"
#include "quill/printers/let_plan.h"
#include "quill/printers/standard_encoding.h"
#include "quill/printers/symbol_texts.h"
#include "quill/printers/text_buffer.h"
#include "quill/printers/written_form.h"
#include "quill/smtlib/logic.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/growing_array.h"

namespace quill {

class SmtLib2TermWriter {
 public:
  using Annotations = TermAnnotations;

  // The parts of its base class that a printer hands to the writer, which they outlive.
  struct Context {
    const TermManager& manager;
    const Configuration::Printer& configuration;
    const Logic& logic;
    const std::string& let_prefix;
    const std::string& rename_prefix;
  };

  SmtLib2TermWriter(const Context& context, bool share_by_let,
                    const Annotations* annotations_of_terms);

  void set_definitions(BitDefinitions* made) { definitions = made; }
  void set_annotated(TermSet* in_all_texts) { annotated_in_texts = in_all_texts; }
  void print_definitions(std::ostream& out, const Term_* t);
  void print_term(std::ostream& out, const Term_* t, const DataType* expected,
                  bool with_annotations);

 private:
  // An application that is being written.
  struct OpenTerm {
    uint32_t node;  // in the plan
    uint32_t next;  // the operand to write next
    uint32_t end;
    bool is_plain;   // operands are just written, and only a parenthesis follows them
    bool is_joined;  // in the parentheses of the application above it, as its first operand
    bool is_annotated;
    bool is_real;  // within to_real
  };
  using OpenTerms = GrowingArray<OpenTerm>;

  using Weights = std::vector<uint64_t>;  // by node of a plan

  // How the terms of a plan are written; `above` and `named` may be null.
  struct Choices {
    const LetPlan& plan;   // bound terms are written by their names
    const Weights* above;  // nodes of weight 0 are written with lets of their own
    TermSet* named;  // if given, annotations are written; holds the terms that already have a name

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

  const TermManager& manager;
  const Configuration::Printer& configuration;
  const Logic& logic;
  const std::string& let_prefix;
  const std::string& rename_prefix;
  const bool with_abs;  // whether absolute values are written as such
  const bool share;
  const Annotations* const annotations;
  BitDefinitions* definitions = nullptr;
  TermSet* annotated_in_texts = nullptr;
  TermSet annotated_before;  // by print_definitions()
  // The state in which the writer last checked that the manager owns the annotated terms: their
  // number and the number of collections.
  struct Checked {
    size_t count = 0;
    uint64_t generation = 0;
    friend bool operator==(const Checked&, const Checked&) = default;
  } annotations_checked;

  // For the text that is being printed.
  std::optional<SymbolTexts> texts;
  std::optional<WrittenForms> forms;
  std::optional<WrittenForms> annotated_forms;  // the same with annotated terms not hidden
};

}  // namespace quill

#endif
