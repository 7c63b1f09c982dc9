#include "quill/printers/smtlib2_term_writer.h"

#include <algorithm>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

#include "quill/smtlib/syntax.h"
#include "quill/terms/termmanager/misuse_checks.h"
#include "quill/utils/scope_guard.h"

namespace quill {

SmtLib2TermWriter::SmtLib2TermWriter(const Context& context, bool share_by_let,
                                     const Annotations* annotations_of_terms)
    : manager(context.manager),
      configuration(context.configuration),
      logic(context.logic),
      let_prefix(context.let_prefix),
      rename_prefix(context.rename_prefix),
      // The standard has abs over Int; strict readers do not know the name in logics of reals.
      with_abs(logic.is_nonlinear() && (configuration.abs_of_reals || logic.has(Theory::Ints))),
      share(share_by_let),
      annotations(annotations_of_terms) {
  require_own_annotations();
}

// Debug builds only. A script may print many terms with many names: the annotations are checked
// again only if their number has changed or something was freed.
void SmtLib2TermWriter::require_own_annotations() {
#ifndef NDEBUG
  if (annotations == nullptr) return;
  const Checked now{annotations->count, manager.gc_generation()};
  if (now == annotations_checked) return;
  for (const auto& entry : *annotations) require_own(manager, entry.first);
  annotations_checked = now;
#endif
}

void SmtLib2TermWriter::print_term(std::ostream& out, const Term_* t, const DataType* expected,
                                   bool with_annotations) {
  require_own(manager, t);
  require_own_or_null(manager, expected);
  require_own_annotations();
  // The symbols of the last text may have been freed.
  texts.emplace(manager, rename_prefix, logic);
  forms.emplace(manager, with_abs);
  TextBuffer buffer(out);
  if (with_annotations && annotations != nullptr && annotations->count != 0) {
    annotated_forms.emplace(manager, with_abs,
                            [this](const Term_* hidden) { return is_annotated(hidden); });
    if (!print_encoded(out, t, expected, with_annotations)) print_annotated(buffer, t, expected);
  } else {
    print_unannotated(buffer, t, expected);
  }
  buffer.flush();
}

//---------------------------------------------------------------------------------------------
// Operators that the standard does not have

// Returns false, and writes nothing, if the term can be written as it is.
bool SmtLib2TermWriter::print_encoded(std::ostream& out, const Term_* t, const DataType* expected,
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

// Writes a term of the encoding's manager, annotated like the originals of its subterms.
void SmtLib2TermWriter::print_copy(std::ostream& out, StandardEncoding& encoding, const Term_* copy,
                                   const DataType* expected, bool with_annotations) const {
  Annotations of_copies;
  TermSet annotated_copies;
  std::vector<const Term_*> annotated;
  if (with_annotations && annotations != nullptr) {
    annotated = annotate_copies(encoding, of_copies, annotated_copies);
  }
  Configuration::Printer choices = configuration;
  choices.dialect = Configuration::Dialect::Extensions;
  const bool as_real = expected == manager.get_rat_type();
  SmtLib2TermWriter writer({encoding.manager(), choices, logic, let_prefix, rename_prefix}, share,
                           &of_copies);
  if (annotated_in_texts != nullptr) writer.set_annotated(&annotated_copies);
  writer.print_term(out, copy, as_real ? encoding.manager().get_rat_type() : nullptr,
                    /*with_annotations=*/true);
  if (annotated_in_texts == nullptr) return;
  for (const Term_* t : annotated) {
    if (annotated_copies.find(encoding.copy_of(t)) != annotated_copies.end()) {
      annotated_in_texts->insert(t);
    }
  }
}

// Gives the copies the annotations of their originals, returns these originals, and enters the
// copies of originals that an earlier text annotated. If texts continue each other, each copy is
// annotated like only one original, so that the caller can tell which originals were annotated; an
// original that was annotated before takes precedence, because its name is known already.
std::vector<const Term_*> SmtLib2TermWriter::annotate_copies(const StandardEncoding& encoding,
                                                             Annotations& of_copies,
                                                             TermSet& annotated_copies) const {
  std::vector<const Term_*> originals;
  const auto add = [&](const Term_* t) {
    auto& list = of_copies[encoding.copy_of(t)];
    if (annotated_in_texts != nullptr && !list.empty()) return;
    for (const auto& annotation : annotations->find(t)->second) list.push_back(annotation);
    originals.push_back(t);
  };
  const auto was_annotated = [&](const Term_* t) {
    return annotated_in_texts != nullptr &&
           annotated_in_texts->find(t) != annotated_in_texts->end();
  };
  for (const Term_* t : encoding.copied()) {
    if (!is_annotated(t) || !was_annotated(t)) continue;
    add(t);
    annotated_copies.insert(encoding.copy_of(t));
  }
  for (const Term_* t : encoding.copied()) {
    if (is_annotated(t) && !was_annotated(t)) add(t);
  }
  return originals;
}

void SmtLib2TermWriter::print_definitions(std::ostream& out, const Term_* t) {
  assert(definitions != nullptr);
  require_own(manager, t);
  require_own_annotations();
  if (configuration.dialect == Configuration::Dialect::Extensions) return;
  const StandardEncoding::Need need = StandardEncoding::need_of(manager, t);
  if (need.bit_values.empty()) return;

  // A value that was defined before is defined again if names are to be given inside it.
  TermSet with_annotations;
  find_terms_with_annotations(need.terms, with_annotations);
  std::vector<const Term_*> to_assert;
  // Definitions that were not written completely must not count as written.
  ScopeGuard undo([this, before = definitions->mark()] { definitions->take_back_to(before); });
  for (const Term_* value : need.bit_values) {
    const bool is_new = definitions->find(value) == nullptr;
    for (size_t i = definitions->define(value); i < definitions->all().size(); ++i) {
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
  for (; entered < annotated_now.size(); ++entered) annotated_before.insert(annotated_now[entered]);
  undo_annotated.dismiss();
  undo.dismiss();
}

// Given some terms and everything below them, operands before operators, finds those whose text has
// annotations in it. Values whose bits are taken do not appear in the text.
void SmtLib2TermWriter::find_terms_with_annotations(const std::vector<const Term_*>& post_order,
                                                    TermSet& with_annotations) const {
  if (annotations == nullptr || annotations->count == 0) return;
  for (const Term_* t : post_order) {
    bool found = is_annotated(t);
    if (!StandardEncoding::takes_bits(manager, t)) {
      for (const Term_* argument : t->arguments()) {
        found = found || with_annotations.find(argument) != with_annotations.end();
      }
    }
    if (found) with_annotations.insert(t);
  }
}

//---------------------------------------------------------------------------------------------
// Annotations
//
// The terms above an annotated one are written without let, operator by operator; everything else
// below those terms, and the inside of an annotation, is written with lets of its own.

void SmtLib2TermWriter::print_annotated(TextBuffer& out, const Term_* root,
                                        const DataType* expected) {
  constexpr uint64_t max_blowup = 16;
  constexpr uint64_t always_allowed = 1000;
  TermSet in_this_text;
  TermSet& named = annotated_in_texts != nullptr ? *annotated_in_texts : in_this_text;
  const LetPlan tree(manager, root, *annotated_forms, /*with_names=*/false);
  const Weights above = weigh_terms_above_annotated(tree);
  const auto num_above = static_cast<uint64_t>(
      std::count_if(above.begin(), above.end(), [](uint64_t weight) { return weight != 0; }));
  if (share && num_above != 0 && above[0] > max_blowup * num_above + always_allowed) {
    const LetPlan plan(manager, root, *annotated_forms);
    print_with_lets(out, expected,
                    {plan, nullptr, annotated_in_texts != nullptr ? nullptr : &named});
  } else {
    print_with_lets(out, expected, {tree, &above, &named});
  }
}

// For each node that has an annotated node strictly below it: how many such nodes are written when
// it is written as a tree, annotated nodes included, saturating at 64 bits.
SmtLib2TermWriter::Weights SmtLib2TermWriter::weigh_terms_above_annotated(
    const LetPlan& plan) const {
  Weights above(plan.num_nodes(), 0);
  std::vector<bool> reached(plan.num_nodes(), false);
  GrowingArray<uint32_t> open;
  if (plan.root().is_node()) open.push_back(0);
  while (!open.empty()) {
    const uint32_t node = open.back();
    const uint32_t end = plan.end_of_operands(node);
    if (!reached[node]) {
      reached[node] = true;
      for (uint32_t i = plan.first_operand(node); i < end; ++i) {
        const LetPlan::Operand operand = plan.operand(i);
        if (operand.is_node() && !reached[operand.number()]) open.push_back(operand.number());
      }
      continue;
    }
    open.pop_back();
    uint64_t weight = 0;
    for (uint32_t i = plan.first_operand(node); i < end; ++i) {
      const LetPlan::Operand operand = plan.operand(i);
      uint64_t added = is_annotated(plan.term(operand)) ? 1 : 0;
      if (operand.is_node() && above[operand.number()] != 0) added = above[operand.number()];
      weight = weight > UINT64_MAX - added ? UINT64_MAX : weight + added;
    }
    above[node] = weight == 0 || weight == UINT64_MAX ? weight : weight + 1;
  }
  return above;
}

// The name of a numeral has the sort of the place where it was written first, so elsewhere the
// numeral itself is written.
bool SmtLib2TermWriter::is_repeated_numeral(const Term_* t, const TermSet& named) const {
  return named.find(t) != named.end() && manager.is_number(t->symbol, nullptr);
}

// Whether an Int numeral is written as a Real because of its place, in a logic whose readers tell
// the two apart. Texts that continue each other do not annotate it there, because its name would be
// that of a Real.
bool SmtLib2TermWriter::is_of_place(const Term_* t, const DataType* expected) const {
  return annotated_in_texts != nullptr && expected == manager.get_rat_type() &&
         t->type() == manager.get_int_type() && manager.is_number(t->symbol, nullptr) &&
         logic.has(Theory::Ints) && logic.has(Theory::Reals);
}

// Begins an annotation. If the term was written before and has a name, writes the name instead and
// returns false.
bool SmtLib2TermWriter::print_annotation_start(TextBuffer& out, const Term_* t,
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

void SmtLib2TermWriter::print_annotation_end(TextBuffer& out, const Term_* t) const {
  for (const auto& [key, value] : annotations->find(t)->second) {
    out << (key.substr(0, 1) == ":" ? " " : " :") << key << ' ' << value;
  }
  out << ')';
}

//---------------------------------------------------------------------------------------------
// Terms and their lets

void SmtLib2TermWriter::print_unannotated(TextBuffer& out, const Term_* root,
                                          const DataType* expected) {
  const LetPlan plan(manager, root, *forms, share);
  // The plan knows at no extra cost whether there is anything to encode.
  if (plan.has_extensions() &&
      print_encoded(out.flush(), root, expected, /*with_annotations=*/false)) {
    return;
  }
  print_with_lets(out, expected, {plan, nullptr, nullptr});
}

// Writes the annotations as well if `named` is given.
void SmtLib2TermWriter::print_with_lets(TextBuffer& out, const DataType* expected,
                                        const Choices& choices) {
  const LetPlan& plan = choices.plan;
  const std::string_view prefix = let_prefix;
  OpenTerms open;
  uint32_t number = 1;
  for (const uint32_t end : plan.group_ends()) {
    out << "(let (";
    for (const uint32_t first = number; number <= end; ++number) {
      plan.prefetch_binding(number);
      out.write(std::string_view(number == first ? "(" : " ("), prefix, uint64_t{number}, ' ');
      print_tree(out, open, LetPlan::Operand::node(plan.bound_node(number)), nullptr, choices);
      out << ')';
    }
    out << ") ";
  }
  print_tree(out, open, plan.root(), expected, choices);
  for (size_t i = 0; i < plan.group_ends().size(); ++i) out << ')';
}

// Writes the root itself, whether it is bound or not, and everything below it as `choices` says.
// Needs an empty stack.
void SmtLib2TermWriter::print_tree(TextBuffer& out, OpenTerms& open, LetPlan::Operand root,
                                   const DataType* expected, const Choices& choices) {
  const LetPlan& plan = choices.plan;
  const std::string_view prefix = let_prefix;
  if (!choices.have_exceptions() && expected == nullptr && root.is_node()) {
    open_applications(out, open, root.number(), choices);
  } else {
    begin(out, open, root, expected, choices);
  }
  while (!open.empty()) {
    OpenTerm& frame = open.back();
    if (frame.next == frame.end) {
      close_application(out, frame, plan);
      open.pop_back();
      continue;
    }
    const uint32_t place = frame.next++;
    const LetPlan::Operand operand = plan.operand(place);
    if (frame.is_plain) {
      if (operand.is_binding()) {
        out.write(' ', prefix, uint64_t{operand.number()});
      } else if (operand.is_constant()) {
        out.write(' ', std::string_view(texts->of(plan.constant(operand.number())->symbol)));
      } else {
        out << ' ';
        open_applications(out, open, operand.number(), choices);
      }
      continue;
    }
    const WrittenForm& form = plan.form(frame.node);
    const uint32_t i = place - plan.first_operand(frame.node);
    if (i > 0 && form.has_modulus()) {
      print_divisor(out, form);
      out << " (mod ";
    } else {
      out << ' ';
    }
    begin(out, open, operand, form.operand(i).expected, choices, form.asks_for_value());
  }
}

// Writes a term up to its first operand; writes all of a term that has none or is bound.
void SmtLib2TermWriter::begin(TextBuffer& out, OpenTerms& open, LetPlan::Operand operand,
                              const DataType* expected, const Choices& choices, bool as_value) {
  const Term_* t = choices.plan.term(operand);
  const bool has_lets_of_its_own =
      choices.above != nullptr && operand.is_node() && (*choices.above)[operand.number()] == 0;
  if (has_lets_of_its_own && !is_annotated(t)) {
    print_unannotated(out, t, expected);
    return;
  }
  const bool to_real = needs_to_real(t, expected);
  if (to_real) {
    out << "(to_real ";
    expected = nullptr;
  }
  const bool annotate = !operand.is_binding() && choices.named != nullptr && is_annotated(t) &&
                        !is_repeated_numeral(t, *choices.named) && !is_of_place(t, expected);
  if (annotate && !print_annotation_start(out, t, *choices.named)) {
    finish(out, t, /*annotated=*/false, to_real);
    return;
  }
  if (operand.is_binding()) {
    out << let_prefix << uint64_t{operand.number()};
  } else if (has_lets_of_its_own) {
    print_unannotated(out, t, expected);
  } else if (operand.is_constant()) {
    const bool as_real = expected == manager.get_rat_type();
    out << (as_value ? texts->of_value(t->symbol, as_real) : texts->of(t->symbol, as_real));
  } else {
    const size_t height = open.size();
    open_applications(out, open, operand.number(), choices);
    open[height].is_annotated = annotate;
    open[height].is_real = to_real;
    return;
  }
  finish(out, t, annotate, to_real);
}

void SmtLib2TermWriter::finish(TextBuffer& out, const Term_* t, bool annotated,
                               bool to_real) const {
  if (annotated) print_annotation_end(out, t);
  if (to_real) out << ')';
}

// Writes an application up to its first operand, and opens first operands that can be written in
// the same parentheses.
inline void SmtLib2TermWriter::open_applications(TextBuffer& out, OpenTerms& open, uint32_t node,
                                                 const Choices& choices) {
  const LetPlan& plan = choices.plan;
  const WrittenForm* form = &plan.form(node);
  const bool is_plain = form->is_plain() && !choices.have_exceptions();
  print_operator(out, *form);
  for (bool is_joined = false;; is_joined = true) {
    uint32_t first = plan.first_operand(node);
    const uint32_t end = plan.end_of_operands(node);
    const LetPlan::Operand operand = plan.operand(first);
    const WrittenForm* first_form = nullptr;
    if (operand.is_node() && form->joins_with(plan.form(operand.number())) &&
        may_join(plan.term(operand), choices.named != nullptr)) {
      first_form = &plan.form(operand.number());
      ++first;
    }
    open.push_back({node, first, end, is_plain, is_joined, false, false});
    if (first_form == nullptr) return;
    node = operand.number();
    form = first_form;
  }
}

inline void SmtLib2TermWriter::close_application(TextBuffer& out, const OpenTerm& closed,
                                                 const LetPlan& plan) const {
  if (closed.is_plain) {
    if (!closed.is_joined) out << ')';
    if (closed.is_real) out << ')';
    return;
  }
  const WrittenForm& form = plan.form(closed.node);
  if (!closed.is_joined) print_closing(out, form);
  finish(out, form.term, closed.is_annotated, closed.is_real);
}

inline void SmtLib2TermWriter::print_operator(TextBuffer& out, const WrittenForm& form) {
  if (form.kind == WrittenForm::Application) {
    if (form.op() != nullptr && form.op()->head == SmtLib2Head::Name) {
      out.write('(', form.op()->text);
    } else {
      out.write('(', std::string_view(texts->of(form.term->symbol)));
    }
  } else {
    print_operator_of_other_form(out, form);
  }
}

void SmtLib2TermWriter::print_operator_of_other_form(TextBuffer& out, const WrittenForm& form) {
  switch (form.kind) {
    case WrittenForm::Application:
      break;
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

// Writes the end of an application.
void SmtLib2TermWriter::print_closing(TextBuffer& out, const WrittenForm& form) const {
  const bool is_residue = form.kind == WrittenForm::Residue;
  if (form.kind == WrittenForm::IntegerDivision || is_residue || form.has_modulus()) {
    print_divisor(out, form);
    if (form.kind == WrittenForm::IntegerDivision) return;
  }
  if (is_residue) out << ' ' << form.residue(manager).to_str();
  out << ')';
}

// Writes the number after an operand of div or mod, and the parenthesis.
void SmtLib2TermWriter::print_divisor(TextBuffer& out, const WrittenForm& form) const {
  out << ' ' << form.divisor(manager).to_str() << ')';
}

// Whether annotations allow a first operand to be opened up.
bool SmtLib2TermWriter::may_join(const Term_* operand, bool with_annotations) {
  if (!with_annotations) return true;
  return !is_annotated(operand) && annotated_forms->of(operand).kind == forms->of(operand).kind;
}

// Whether an Int term is in a place of type Real and needs to_real. Integer numerals get a point
// there instead.
bool SmtLib2TermWriter::needs_to_real(const Term_* t, const DataType* expected) const {
  QNumber value;
  return expected == manager.get_rat_type() && t->type() == manager.get_int_type() &&
         !(manager.is_number(t->symbol, &value) && value.is_integer());
}

}  // namespace quill
