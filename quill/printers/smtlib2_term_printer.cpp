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
  TermSet above;
  find_terms_above_annotated(root, above);
  TermSet named;  // written before, and to be written by name from now on

  struct Step {
    enum What { Text, Write, EndAnnotation } what;
    Item item;
  };
  std::vector<Step> work{{Step::Write, {root, expected, ""}}};
  std::vector<Item> operands;
  while (!work.empty()) {
    const Step step = work.back();
    work.pop_back();
    const Term_* t = step.item.term;
    print_text(out, step.item);
    if (step.what == Step::EndAnnotation) print_annotation_end(out, t);
    if (step.what != Step::Write) continue;

    if (needs_to_real(t, step.item.expected) && (is_annotated(t) || above.find(t) != above.end())) {
      out << "(to_real ";
      work.push_back({Step::Text, {nullptr, nullptr, ")"}});
      work.push_back({Step::Write, {t, nullptr, ""}});
      continue;
    }
    if (named.find(t) != named.end() && manager.is_number(t->symbol, nullptr)) {
      // Its name has the sort of the place in which it was written first.
      print_constant(out, t->symbol, step.item.expected);
      continue;
    }
    if (is_annotated(t)) {
      if (!print_annotation_start(out, t, named)) continue;
      work.push_back({Step::EndAnnotation, {t, nullptr, ""}});
    }
    if (above.find(t) == above.end()) {
      print_unannotated(out, t, step.item.expected);
      continue;
    }
    const WrittenForm form = form_of(t);
    print_operator(out, form);
    work.push_back({Step::Text, closing(form)});
    operands.clear();
    push_operands(operands, form, [this](const Term_* operand) {
      return !is_annotated(operand) &&
             form_of(operand).kind == WrittenForm(manager, operand, with_abs).kind;
    });
    for (const Item& operand : operands) work.push_back({Step::Write, operand});
  }
}

// The terms below which, strictly, there is an annotated one.
void SmtLib2TermPrinter::find_terms_above_annotated(const Term_* root, TermSet& above) const {
  struct Frame {
    WrittenForm form;
    uint64_t next;  // the operand to go to next
  };
  TermSet reached;
  std::vector<Frame> open{{form_of(root), 0}};
  reached.insert(root);
  while (!open.empty()) {
    Frame& frame = open.back();
    if (frame.next == frame.form.num_operands()) {
      for (uint64_t i = 0; i < frame.form.num_operands(); i++) {
        const Term_* operand = frame.form.operand(i).term;
        if (is_annotated(operand) || above.find(operand) != above.end())
          above.insert(frame.form.term);
      }
      open.pop_back();
      continue;
    }
    const Term_* operand = frame.form.operand(frame.next++).term;
    if (reached.insert(operand)) open.push_back({form_of(operand), 0});
  }
}

// Begins an annotation. False when the term was written before: then it has been written again, by
// its name.
bool SmtLib2TermPrinter::print_annotation_start(std::ostream& out, const Term_* t, TermSet& named) {
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
    print_with_bindings(out, root, expected, nullptr);
    return;
  }
  const LetPlan plan(manager, root, configuration);
  size_t number = 0;
  for (const size_t end : plan.group_ends()) {
    out << "(let (";
    for (const size_t first = number; number < end; number++) {
      out << (number == first ? "(" : " (") << let_prefix << number + 1 << ' ';
      print_with_bindings(out, plan.bindings()[number], nullptr, &plan);
      out << ')';
    }
    out << ") ";
  }
  print_with_bindings(out, root, expected, &plan);
  for (size_t i = 0; i < plan.group_ends().size(); i++) out << ')';
}

// Writes the root itself, and bound terms below it by their names. Without a plan nothing is bound.
void SmtLib2TermPrinter::print_with_bindings(std::ostream& out, const Term_* root,
                                             const DataType* expected, const LetPlan* plan) const {
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

    if (needs_to_real(t, item.expected)) {
      out << "(to_real ";
      work.push_back({nullptr, nullptr, ")"});
    }
    if (const uint64_t number = binding_number(t); number != 0) {
      out << let_prefix << number;
    } else if (t->symbol->arity == 0) {
      print_constant(out, t->symbol, item.expected);
    } else {
      const WrittenForm form(manager, t, with_abs);
      print_operator(out, form);
      work.push_back(closing(form));
      push_operands(work, form, [&](const Term_* operand) { return binding_number(operand) == 0; });
    }
  }
}

// Pushes the operands, the first one on top, and opens up first operands that may be written in the
// same parentheses.
template <class MayJoin>
void SmtLib2TermPrinter::push_operands(std::vector<Item>& work, WrittenForm form,
                                       const MayJoin& may_join) const {
  for (;;) {
    for (uint64_t i = form.num_operands(); i-- > 1;) {
      const WrittenForm::Operand operand = form.operand(i);
      work.push_back({operand.term, operand.expected, " "});
    }
    const WrittenForm::Operand first = form.operand(0);
    const WrittenForm first_form(manager, first.term, with_abs);
    if (first.term->symbol->arity == 0 || !form.joins_with(first_form) || !may_join(first.term)) {
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
  if (item.reciprocal == nullptr) return;
  QNumber value;
  manager.is_number(item.reciprocal->symbol, &value);
  const std::string text = value.to_str();
  const size_t bar = text.find('/');
  out << (bar == std::string::npos ? "1" : text.substr(bar + 1)) << ')';
}

// The written form, but with all arguments written where a hidden one has an annotation.
WrittenForm SmtLib2TermPrinter::form_of(const Term_* t) const {
  WrittenForm form(manager, t, with_abs);
  for (const Term_* hidden : form.hidden_arguments()) {
    if (hidden != nullptr && is_annotated(hidden)) form.kind = WrittenForm::Application;
  }
  return form;
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
