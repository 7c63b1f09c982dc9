#include "quill/printers/smtlib2_term_printer.h"

#include <cassert>
#include <ostream>
#include <string>
#include <utility>

#include "quill/printers/smtlib2_syntax.h"
#include "quill/terms/termmanager/ownership.h"
#include "quill/utils/scope_guard.h"

namespace quill {

namespace {
constexpr LetPlan::Operand no_plan = LetPlan::Operand::constant();
}  // namespace

SmtLib2TermPrinter::SmtLib2TermPrinter(TermManager* owner, Configuration::Printer* choices,
                                       const std::string& let_names, const std::string& renamed,
                                       bool share_by_let, const Annotations* annotations_of_terms)
    : SmtLibTermPrinter(owner, choices, let_names, renamed),
      with_abs(logic.is_nonlinear()),
      share(share_by_let),
      annotations(annotations_of_terms) {}

void SmtLib2TermPrinter::print_atom(std::ostream& out, const Term_* t, bool with_annotations) {
  print_term(out, t, nullptr, with_annotations);
}

void SmtLib2TermPrinter::print_term(std::ostream& out, const Term_* t, const DataType* expected,
                                    bool with_annotations) {
  require_own(manager, t);
  require_own(manager, expected);
  // The symbols of the last text may have been freed.
  texts.emplace(manager, rename_prefix, logic);
  TextBuffer buffer(out);
  if (with_annotations && annotations != nullptr && annotations->count != 0) {
    if (!print_encoded(out, t, expected, with_annotations)) print_annotated(buffer, t, expected);
  } else {
    print_unannotated(buffer, t, expected);
  }
  buffer.flush();
}

//---------------------------------------------------------------------------------------------
// What the standard has no operator for

// False, and nothing is written, when the term can be written as it is.
bool SmtLib2TermPrinter::print_encoded(std::ostream& out, const Term_* t, const DataType* expected,
                                       bool with_annotations) {
  if (configuration.dialect == Configuration::Dialect::Extensions) return false;
  const StandardEncoding::Need need = StandardEncoding::need_of(manager, t);
  if (!need.any) return false;
  BitDefinitions for_this_term(manager);
  BitDefinitions& used = definitions != nullptr ? *definitions : for_this_term;
  for (const Term_* value : need.bit_values) used.define(value);
  StandardEncoding encoding(manager, used);
  const Term_* copy = encoding.encode(t);
  print_copy(out, encoding, copy, expected, with_annotations);
  return true;
}

// Writes a term of the encoding's manager, annotated like the terms that it is a copy of.
void SmtLib2TermPrinter::print_copy(std::ostream& out, StandardEncoding& encoding,
                                    const Term_* copy, const DataType* expected,
                                    bool with_annotations) const {
  Annotations of_copies;
  if (with_annotations && annotations != nullptr) {
    for (const Term_* t : encoding.copied()) {
      if (!is_annotated(t)) continue;
      auto& list = of_copies[encoding.copy_of(t)];
      for (const auto& annotation : annotations->find(t)->second) list.push_back(annotation);
    }
  }
  Configuration::Printer choices = configuration;
  choices.dialect = Configuration::Dialect::Extensions;
  const bool as_real = expected == manager.get_rat_type();
  SmtLib2TermPrinter printer(&encoding.manager(), &choices, let_prefix, rename_prefix, share,
                             &of_copies);
  printer.print_term(out, copy, as_real ? encoding.manager().get_rat_type() : nullptr);
}

void SmtLib2TermPrinter::print_definitions(std::ostream& out, const Term_* t) {
  assert(definitions != nullptr);
  require_own(manager, t);
  if (configuration.dialect == Configuration::Dialect::Extensions) return;
  const StandardEncoding::Need need = StandardEncoding::need_of(manager, t);
  if (need.bit_values.empty()) return;

  // A value that was defined before is defined again when names are to be given inside it.
  TermSet with_annotations;
  find_terms_with_annotations(need.terms, with_annotations);
  std::vector<const Term_*> to_assert;
  // Definitions that were not written to their end must not count as written.
  ScopeGuard undo([this, before = definitions->mark()] { definitions->take_back_to(before); });
  for (const Term_* value : need.bit_values) {
    const bool is_new = definitions->find(value) == nullptr;
    for (size_t i = definitions->define(value); i < definitions->all().size(); i++) {
      const BitDefinitions::Definition& made = definitions->all()[i];
      out << "(declare-const ";
      print_symbol(out, made.name, rename_prefix, logic);
      out << " (_ BitVec " << std::to_string(made.format.e + made.format.m + 1) << "))\n";
    }
    if (is_new || with_annotations.find(value) != with_annotations.end()) {
      to_assert.push_back(value);
    }
  }
  if (to_assert.empty()) {
    undo.dismiss();
    return;
  }

  StandardEncoding encoding(manager, *definitions);
  const Term_* all = nullptr;
  for (const Term_* value : to_assert) all = encoding.add_defining_condition(all, value);
  out << "(assert ";
  print_copy(out, encoding, all, nullptr, /*with_annotations=*/true);
  out << ")\n";
  std::vector<const Term_*> annotated_now;
  for (const Term_* copied : encoding.copied()) {
    if (is_annotated(copied)) annotated_now.push_back(copied);
  }
  size_t entered = 0;
  ScopeGuard undo_annotated([&] {
    while (entered != 0) annotated_before.erase(annotated_before.find(annotated_now[--entered]));
  });
  for (; entered < annotated_now.size(); entered++) annotated_before.insert(annotated_now[entered]);
  undo_annotated.dismiss();
  undo.dismiss();
}

// Of some terms and everything below them, operands before operators: those in whose text something
// is annotated. The operand of fp_as_ieeebv does not appear there.
void SmtLib2TermPrinter::find_terms_with_annotations(const std::vector<const Term_*>& post_order,
                                                     TermSet& with_annotations) const {
  if (annotations == nullptr || annotations->count == 0) return;
  for (const Term_* t : post_order) {
    bool found = is_annotated(t);
    if (!manager.is_fp_as_ieeebv(t->symbol, nullptr, nullptr)) {
      for (uint64_t i = 0; i < t->symbol->arity; i++) {
        found = found || with_annotations.find(t->args[i]) != with_annotations.end();
      }
    }
    if (found) with_annotations.insert(t);
  }
}

//---------------------------------------------------------------------------------------------
// Annotations
//
// The terms above an annotated one are written without let, operator by operator; everything else
// below them, and what is inside an annotation, is written with lets of its own.

void SmtLib2TermPrinter::print_annotated(TextBuffer& out, const Term_* root,
                                         const DataType* expected) {
  constexpr uint64_t max_blowup = 16;
  constexpr uint64_t always_allowed = 1000;
  Weights above;
  weigh_terms_above_annotated(root, above);
  const auto weight = above.find(root);
  if (share && weight != above.end() &&
      weight->second > max_blowup * above.count + always_allowed) {
    const LetPlan plan(manager, root,
                       [&](const Term_* t) { return form_of(t, /*with_annotations=*/true); });
    TermSet named;
    print_with_lets(out, root, expected, plan, &named);
  } else {
    OpenTerms open;
    TermSet named;
    print_tree(out, open, {root, no_plan, expected}, {nullptr, &above, &named});
  }
}

// For each term below which, strictly, there is an annotated one: how many of these terms are
// written when it is written as a tree, as far as 64 bits can count.
void SmtLib2TermPrinter::weigh_terms_above_annotated(const Term_* root, Weights& above) const {
  struct Frame {
    WrittenForm form;
    uint64_t next;  // the operand to go to next
  };
  TermSet reached;
  std::vector<Frame> open{{form_of(root, /*with_annotations=*/true), 0}};
  reached.insert(root);
  while (!open.empty()) {
    Frame& frame = open.back();
    if (frame.next == frame.form.num_operands()) {
      uint64_t weight = 0;
      for (uint64_t i = 0; i < frame.form.num_operands(); i++) {
        const Term_* operand = frame.form.operand(i).term;
        const auto found = above.find(operand);
        uint64_t added = is_annotated(operand) ? 1 : 0;
        if (found != above.end()) added = found->second;
        weight = weight > UINT64_MAX - added ? UINT64_MAX : weight + added;
      }
      if (weight != 0) above[frame.form.term] = weight == UINT64_MAX ? weight : weight + 1;
      open.pop_back();
      continue;
    }
    const Term_* operand = frame.form.operand(frame.next++).term;
    if (reached.insert(operand)) open.push_back({form_of(operand, /*with_annotations=*/true), 0});
  }
}

// The name of a numeral has the sort of the place in which it was written first, so that the
// numeral itself is written elsewhere.
bool SmtLib2TermPrinter::is_repeated_numeral(const Term_* t, const TermSet& named) const {
  return named.find(t) != named.end() && manager.is_number(t->symbol, nullptr);
}

// Begins an annotation. False when the term was written before: then it has been written again, by
// its name.
bool SmtLib2TermPrinter::print_annotation_start(TextBuffer& out, const Term_* t,
                                                TermSet& named) const {
  if (named.find(t) != named.end()) {
    for (const auto& [key, value] : annotations->find(t)->second) {
      if (key == "named" || key == ":named") {
        out << value;
        return false;
      }
    }
  }
  named.insert(t);
  out << "(! ";
  return true;
}

void SmtLib2TermPrinter::print_annotation_end(TextBuffer& out, const Term_* t) const {
  for (const auto& [key, value] : annotations->find(t)->second) {
    out << (key.substr(0, 1) == ":" ? " " : " :") << key << ' ' << value;
  }
  out << ')';
}

//---------------------------------------------------------------------------------------------
// Terms and their lets

// The plan knows at no cost whether there is anything to encode.
void SmtLib2TermPrinter::print_unannotated(TextBuffer& out, const Term_* root,
                                           const DataType* expected) {
  if (share && root->symbol->arity != 0) {
    const LetPlan plan(manager, root,
                       [&](const Term_* t) { return form_of(t, /*with_annotations=*/false); });
    if (!plan.has_extensions() ||
        !print_encoded(out.flush(), root, expected, /*with_annotations=*/false)) {
      print_with_lets(out, root, expected, plan, nullptr);
    }
  } else if (!print_encoded(out.flush(), root, expected, /*with_annotations=*/false)) {
    OpenTerms open;
    print_tree(out, open, {root, no_plan, expected}, {nullptr, nullptr, nullptr});
  }
}

// With a set of named terms the annotations are written, too.
void SmtLib2TermPrinter::print_with_lets(TextBuffer& out, const Term_* root,
                                         const DataType* expected, const LetPlan& plan,
                                         TermSet* named) {
  OpenTerms open;
  const Choices choices{&plan, nullptr, named};
  uint32_t number = 0;
  for (const size_t end : plan.group_ends()) {
    out << "(let (";
    for (const uint32_t first = number; number < end; number++) {
      const uint32_t node = plan.bindings()[number];
      plan.prefetch_binding(number);
      out << (number == first ? "(" : " (") << let_prefix << uint64_t{number} + 1 << ' ';
      print_tree(out, open, {plan.form(node).term, LetPlan::Operand::node(node), nullptr}, choices);
      out << ')';
    }
    out << ") ";
  }
  print_tree(out, open, {root, LetPlan::Operand::node(0), expected}, choices);
  for (size_t i = 0; i < plan.group_ends().size(); i++) out << ')';
}

// Writes the root itself, whether it is bound or not, and what is below it as chosen. Needs an
// empty stack.
void SmtLib2TermPrinter::print_tree(TextBuffer& out, OpenTerms& open, const Place& root,
                                    const Choices& choices) {
  begin(out, open, root, choices);
  while (!open.empty()) {
    OpenTerm& frame = open.back();
    const WrittenForm& form = frame.form;
    if (frame.next == frame.end) {
      if (!frame.is_joined) print_closing(out, form);
      finish(out, form.term, frame.is_annotated, frame.is_real);
      open.pop_back();
      continue;
    }
    const uint32_t i = frame.next++;
    if (i > 0 && form.has_modulus()) {
      print_divisor(out, form);
      out << " (mod ";
    } else {
      out << ' ';
    }
    const Place operand = operand_of(frame, i, choices);
    if (operand.term == nullptr) {
      out << let_prefix << uint64_t{operand.node.number()};
    } else {
      begin(out, open, operand, choices);
    }
  }
}

// The term is null if it is bound and nothing else of it matters.
SmtLib2TermPrinter::Place SmtLib2TermPrinter::operand_of(const OpenTerm& parent, uint64_t i,
                                                         const Choices& choices) const {
  LetPlan::Operand node = no_plan;
  if (choices.plan != nullptr) {
    node = choices.plan->operand(parent.node, i);
    // What the plan has at hand is mostly enough; the terms themselves may be far away.
    if (!parent.form.takes_reals && choices.named == nullptr) {
      if (node.is_binding()) return {nullptr, node, nullptr};
      if (!node.is_constant()) return {choices.plan->form(node.number()).term, node, nullptr};
    }
  }
  const WrittenForm::Operand operand = parent.form.operand(i);
  return {operand.term, node, operand.expected};
}

// Writes a term up to its first operand, or the whole of a term that has none or is bound.
void SmtLib2TermPrinter::begin(TextBuffer& out, OpenTerms& open, const Place& place,
                               const Choices& choices) {
  const Term_* t = place.term;
  const bool has_lets_of_its_own =
      choices.above != nullptr && choices.above->find(t) == choices.above->end();
  if (has_lets_of_its_own && !is_annotated(t)) {
    print_unannotated(out, t, place.expected);
    return;
  }
  const bool to_real = needs_to_real(t, place.expected);
  const DataType* expected = to_real ? nullptr : place.expected;
  if (to_real) out << "(to_real ";
  const bool is_bound = place.node.is_binding();
  const bool annotate = !is_bound && choices.named != nullptr && is_annotated(t) &&
                        !is_repeated_numeral(t, *choices.named);
  if (annotate && !print_annotation_start(out, t, *choices.named)) {
    finish(out, t, /*annotated=*/false, to_real);
    return;
  }
  if (is_bound) {
    out << let_prefix << uint64_t{place.node.number()};
  } else if (has_lets_of_its_own) {
    print_unannotated(out, t, expected);
  } else if (choices.plan != nullptr ? place.node.is_constant() : t->symbol->arity == 0) {
    out << texts->of(t->symbol, expected == manager.get_rat_type());
  } else {
    const uint32_t node = place.node.number();
    const WrittenForm form = form_at(t, node, choices);
    print_operator(out, form);
    open_application(open, form, node, choices);
    open.back().is_annotated = annotate;
    open.back().is_real = to_real;
    open_first_operands(open, choices);
    return;
  }
  finish(out, t, annotate, to_real);
}

void SmtLib2TermPrinter::finish(TextBuffer& out, const Term_* t, bool annotated,
                                bool to_real) const {
  if (annotated) print_annotation_end(out, t);
  if (to_real) out << ')';
}

// An application whose parenthesis and operator have been written.
void SmtLib2TermPrinter::open_application(OpenTerms& open, const WrittenForm& form, uint32_t node,
                                          const Choices& choices) const {
  const uint64_t num_operands =
      choices.plan != nullptr ? choices.plan->num_operands(node) : form.num_operands();
  open.push_back({form, 0, static_cast<uint32_t>(num_operands), node, false, false, false});
}

// Opens up first operands that may be written in the same parentheses.
void SmtLib2TermPrinter::open_first_operands(OpenTerms& open, const Choices& choices) const {
  for (;;) {
    OpenTerm& frame = open.back();
    const Place first = operand_of(frame, 0, choices);
    if (choices.plan != nullptr) {
      if (first.node.is_constant() || first.node.is_binding()) return;
    } else if (first.term->symbol->arity == 0) {
      return;
    }
    const uint32_t node = first.node.number();
    const WrittenForm form = form_at(first.term, node, choices);
    if (!frame.form.joins_with(form) || !may_join(first.term, choices.named != nullptr)) return;
    frame.next = 1;
    open_application(open, form, node, choices);
    open.back().is_joined = true;
  }
}

void SmtLib2TermPrinter::print_operator(TextBuffer& out, const WrittenForm& form) {
  switch (form.kind) {
    case WrittenForm::Application:
      if (form.op() != nullptr && form.op()->head == SmtLib2Head::NAME) {
        out << '(' << form.op()->text;
      } else {
        out << '(' << texts->of(form.term->symbol);
      }
      return;
    case WrittenForm::Subtraction:
    case WrittenForm::Negation:
      out << "(-";
      return;
    case WrittenForm::IntegerDivision:
      out << "(div";
      return;
    case WrittenForm::AbsoluteValue:
      out << "(abs";
      return;
    case WrittenForm::Residue:
      out << "(= (mod";
      return;
  }
}

// What ends an application.
void SmtLib2TermPrinter::print_closing(TextBuffer& out, const WrittenForm& form) const {
  const bool is_residue = form.kind == WrittenForm::Residue;
  if (form.kind == WrittenForm::IntegerDivision || is_residue || form.has_modulus()) {
    print_divisor(out, form);
    if (form.kind == WrittenForm::IntegerDivision) return;
  }
  if (is_residue) out << ' ' << form.residue(manager).to_str();
  out << ')';
}

// The number behind an operand of div or mod, and the parenthesis.
void SmtLib2TermPrinter::print_divisor(TextBuffer& out, const WrittenForm& form) const {
  out << ' ' << form.divisor(manager).to_str() << ')';
}

WrittenForm SmtLib2TermPrinter::form_at(const Term_* t, uint32_t node,
                                        const Choices& choices) const {
  return choices.plan != nullptr ? choices.plan->form(node) : form_of(t, choices.named != nullptr);
}

// The written form; with annotations, all arguments are written where a hidden one has some.
WrittenForm SmtLib2TermPrinter::form_of(const Term_* t, bool with_annotations) const {
  WrittenForm form(manager, t, with_abs);
  if (!with_annotations) return form;
  for (const Term_* hidden : form.hidden_terms()) {
    if (hidden != nullptr && is_annotated(hidden)) form.kind = WrittenForm::Application;
  }
  return form;
}

// Whether a first operand may be opened up, as far as annotations go.
bool SmtLib2TermPrinter::may_join(const Term_* operand, bool with_annotations) const {
  if (!with_annotations) return true;
  return !is_annotated(operand) && form_of(operand, /*with_annotations=*/true).kind ==
                                       form_of(operand, /*with_annotations=*/false).kind;
}

// Whether an Int term stands where Real is asked for. Numerals are written with a point there
// instead.
bool SmtLib2TermPrinter::needs_to_real(const Term_* t, const DataType* expected) const {
  return expected == manager.get_rat_type() &&
         t->symbol->get_output_type() == manager.get_int_type() &&
         !manager.is_number(t->symbol, nullptr);
}

}  // namespace quill
