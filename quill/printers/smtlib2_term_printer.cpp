#include "quill/printers/smtlib2_term_printer.h"

#include <ostream>
#include <string>

#include "quill/printers/smtlib2_syntax.h"

namespace quill {

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
  if (with_annotations && annotations != nullptr && annotations->count != 0) {
    print_annotated(out, t, expected);
  } else {
    print_unannotated(out, t, expected);
  }
}

//---------------------------------------------------------------------------------------------
// Annotations
//
// The terms above an annotated one are written without let, operator by operator; everything else
// below them, and what is inside an annotation, is written with lets of its own.

void SmtLib2TermPrinter::print_annotated(std::ostream& out, const Term_* root,
                                         const DataType* expected) {
  constexpr uint64_t max_blowup = 16;
  constexpr uint64_t always_allowed = 1000;
  Weights above;
  weigh_terms_above_annotated(root, above);
  const auto weight = above.find(root);
  if (share && weight != above.end() &&
      weight->second > max_blowup * above.count + always_allowed) {
    TermSet named;
    print_with_lets(out, root, expected, &named);
  } else {
    print_above_annotated(out, root, expected, above);
  }
}

void SmtLib2TermPrinter::print_above_annotated(std::ostream& out, const Term_* root,
                                               const DataType* expected, const Weights& above) {
  TermSet named;  // written before, and to be written by name from now on
  std::vector<Item> work{{root, expected, ""}};
  while (!work.empty()) {
    const Item item = work.back();
    work.pop_back();
    const Term_* t = item.term;
    print_text(out, item);
    if (t == nullptr) continue;

    const bool is_above = above.find(t) != above.end();
    if (needs_to_real(t, item.expected) && (is_annotated(t) || is_above)) {
      out << "(to_real ";
      work.push_back({nullptr, nullptr, ")"});
      work.push_back({t, nullptr, ""});
      continue;
    }
    if (is_annotated(t) && !is_repeated_numeral(t, named)) {
      if (!print_annotation_start(out, t, named)) continue;
      work.push_back({nullptr, nullptr, "", nullptr, t});
    }
    if (!is_above) {
      print_unannotated(out, t, item.expected);
      continue;
    }
    const WrittenForm form = form_of(t, /*with_annotations=*/true);
    print_operator(out, form);
    work.push_back(closing(form));
    push_operands(work, form, [this](const Term_* operand) {
      return may_join(operand, /*with_annotations=*/true);
    });
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
bool SmtLib2TermPrinter::print_annotation_start(std::ostream& out, const Term_* t,
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

void SmtLib2TermPrinter::print_annotation_end(std::ostream& out, const Term_* t) const {
  for (const auto& [key, value] : annotations->find(t)->second) {
    out << (key.substr(0, 1) == ":" ? " " : " :") << key << ' ' << value;
  }
  out << ')';
}

//---------------------------------------------------------------------------------------------
// Terms and their lets

void SmtLib2TermPrinter::print_unannotated(std::ostream& out, const Term_* root,
                                           const DataType* expected) const {
  if (!share || root->symbol->arity == 0) {
    print_with_bindings(out, root, expected, nullptr, nullptr);
  } else {
    print_with_lets(out, root, expected, nullptr);
  }
}

// With a set of named terms the annotations are written, too.
void SmtLib2TermPrinter::print_with_lets(std::ostream& out, const Term_* root,
                                         const DataType* expected, TermSet* named) const {
  const LetPlan plan(manager, root, [&](const Term_* t) {
    return form_of(t, /*with_annotations=*/named != nullptr);
  });
  size_t number = 0;
  for (const size_t end : plan.group_ends()) {
    out << "(let (";
    for (const size_t first = number; number < end; number++) {
      out << (number == first ? "(" : " (") << let_prefix << std::to_string(number + 1) << ' ';
      print_with_bindings(out, plan.bindings()[number], nullptr, &plan, named);
      out << ')';
    }
    out << ") ";
  }
  print_with_bindings(out, root, expected, &plan, named);
  for (size_t i = 0; i < plan.group_ends().size(); i++) out << ')';
}

// Writes the root itself, and bound terms below it by their names. Without a plan nothing is bound.
void SmtLib2TermPrinter::print_with_bindings(std::ostream& out, const Term_* root,
                                             const DataType* expected, const LetPlan* plan,
                                             TermSet* named) const {
  const bool with_annotations = named != nullptr;
  const auto binding_number = [&](const Term_* t) {
    return plan == nullptr || t == root ? 0 : plan->binding_number(t);
  };
  std::vector<Item> work{{root, expected, ""}};
  while (!work.empty()) {
    const Item item = work.back();
    work.pop_back();
    print_text(out, item);
    const Term_* t = item.term;
    if (t == nullptr) continue;

    const uint64_t number = binding_number(t);
    const bool annotate =
        number == 0 && with_annotations && is_annotated(t) && !is_repeated_numeral(t, *named);
    const DataType* asked = item.expected;
    if (needs_to_real(t, asked)) {
      out << "(to_real ";
      work.push_back({nullptr, nullptr, ")"});
    }
    if (annotate) {
      if (!print_annotation_start(out, t, *named)) continue;
      work.push_back({nullptr, nullptr, "", nullptr, t});
    }
    if (number != 0) {
      out << let_prefix << std::to_string(number);
    } else if (t->symbol->arity == 0) {
      print_constant(out, t->symbol, asked);
    } else {
      const WrittenForm form = form_of(t, with_annotations);
      print_operator(out, form);
      work.push_back(closing(form));
      push_operands(work, form, [&](const Term_* operand) {
        return binding_number(operand) == 0 && may_join(operand, with_annotations);
      });
    }
  }
}

// Pushes the operands, the first one on top, and opens up first operands that may be written in the
// same parentheses.
template <class MayJoin>
void SmtLib2TermPrinter::push_operands(std::vector<Item>& work, WrittenForm form,
                                       const MayJoin& may_be_opened) const {
  for (;;) {
    for (uint64_t i = form.num_operands(); i-- > 1;) {
      const WrittenForm::Operand operand = form.operand(i);
      work.push_back({operand.term, operand.expected, " "});
    }
    const WrittenForm::Operand first = form.operand(0);
    const WrittenForm first_form(manager, first.term, with_abs);
    if (first.term->symbol->arity == 0 || !form.joins_with(first_form) ||
        !may_be_opened(first.term)) {
      work.push_back({first.term, first.expected, " "});
      return;
    }
    form = first_form;
  }
}

void SmtLib2TermPrinter::print_operator(std::ostream& out, const WrittenForm& form) const {
  out << '(';
  if (form.kind == WrittenForm::IntegerDivision) {
    out << "div";
  } else if (form.kind == WrittenForm::AbsoluteValue) {
    out << "abs";
  } else if (form.kind != WrittenForm::Application) {
    out << '-';
  } else if (form.op != nullptr) {
    out << form.op->text;
  } else {
    print_head(out, form.term->symbol);
  }
}

void SmtLib2TermPrinter::print_head(std::ostream& out, const Symbol* function) const {
  const std::string name = name_to_smtlib(function->name, NameKind::Symbol, rename_prefix, logic);
  if (!needs_qualified_head(name)) {
    print_quoted(out, name);
    return;
  }
  out << "(as ";
  print_quoted(out, name);
  out << ' ';
  print_type(out, manager, function->get_output_type(), rename_prefix, logic);
  out << ')';
}

// What ends an application.
SmtLib2TermPrinter::Item SmtLib2TermPrinter::closing(const WrittenForm& form) {
  if (form.kind != WrittenForm::IntegerDivision) return {nullptr, nullptr, ")"};
  return {nullptr, nullptr, " ", form.reciprocal_of_divisor()};
}

void SmtLib2TermPrinter::print_text(std::ostream& out, const Item& item) const {
  out << item.text;
  if (item.annotated != nullptr) print_annotation_end(out, item.annotated);
  if (item.reciprocal == nullptr) return;
  QNumber value;
  manager.is_number(item.reciprocal->symbol, &value);
  const std::string text = value.to_str();
  const size_t bar = text.find('/');
  out << (bar == std::string::npos ? "1" : text.substr(bar + 1)) << ')';
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

void SmtLib2TermPrinter::print_constant(std::ostream& out, const Symbol* s,
                                        const DataType* expected) const {
  QNumber value;
  size_t width = 0;
  if (manager.is_number(s, &value)) {
    if (manager.is_bv_type(s->type, &width)) {
      out << "(_ bv" << value.to_str() << ' ' << std::to_string(width) << ')';
    } else {
      print_number(out, value, /*as_real=*/expected == manager.get_rat_type() ||
                                   s->type == manager.get_rat_type());
    }
  } else if (const SmtLib2Operator* op = find_smtlib2_operator(manager.get_tag(s))) {
    out << op->text;
  } else {
    print_symbol(out, s->name, rename_prefix, logic);
  }
}

// Whether an Int term stands where Real is asked for. Numerals are written with a point there
// instead.
bool SmtLib2TermPrinter::needs_to_real(const Term_* t, const DataType* expected) const {
  return expected == manager.get_rat_type() &&
         t->symbol->get_output_type() == manager.get_int_type() &&
         !manager.is_number(t->symbol, nullptr);
}

}  // namespace quill
