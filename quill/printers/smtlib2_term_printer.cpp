#include "quill/printers/smtlib2_term_printer.h"

#include <cassert>
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
    if (!print_encoded(out, t, expected, with_annotations)) print_annotated(out, t, expected);
  } else {
    print_unannotated(out, t, expected);
  }
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
  if (configuration.dialect == Configuration::Dialect::Extensions) return;
  const StandardEncoding::Need need = StandardEncoding::need_of(manager, t);
  if (need.bit_values.empty()) return;

  // A value that was defined before is defined again when names are to be given inside it.
  TermSet with_annotations;
  find_terms_with_annotations(need.terms, with_annotations);
  std::vector<const Term_*> to_assert;
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
  if (to_assert.empty()) return;

  StandardEncoding encoding(manager, *definitions);
  const Term_* all = nullptr;
  for (const Term_* value : to_assert) all = encoding.add_defining_condition(all, value);
  out << "(assert ";
  print_copy(out, encoding, all, nullptr, /*with_annotations=*/true);
  out << ")\n";
  for (const Term_* copied : encoding.copied()) {
    if (is_annotated(copied)) annotated_before.insert(copied);
  }
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

void SmtLib2TermPrinter::print_annotated(std::ostream& out, const Term_* root,
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
      work.push_back(end_of_annotation(t));
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

// The plan knows at no cost whether there is anything to encode.
void SmtLib2TermPrinter::print_unannotated(std::ostream& out, const Term_* root,
                                           const DataType* expected) {
  if (share && root->symbol->arity != 0) {
    const LetPlan plan(manager, root,
                       [&](const Term_* t) { return form_of(t, /*with_annotations=*/false); });
    if (!plan.has_extensions() || !print_encoded(out, root, expected, /*with_annotations=*/false)) {
      print_with_lets(out, root, expected, plan, nullptr);
    }
  } else if (!print_encoded(out, root, expected, /*with_annotations=*/false)) {
    print_with_bindings(out, root, expected, nullptr, nullptr);
  }
}

// With a set of named terms the annotations are written, too.
void SmtLib2TermPrinter::print_with_lets(std::ostream& out, const Term_* root,
                                         const DataType* expected, const LetPlan& plan,
                                         TermSet* named) const {
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
      work.push_back(end_of_annotation(t));
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
      if (form.has_modulus()) {
        work.back().text = " (mod ";
        work.back().divided = form.term;
      }
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
  } else if (form.kind == WrittenForm::Residue) {
    out << "= (mod";
  } else if (form.kind == WrittenForm::AbsoluteValue) {
    out << "abs";
  } else if (form.kind != WrittenForm::Application) {
    out << '-';
  } else if (form.op != nullptr) {
    print_theory_head(out, form);
  } else {
    print_head(out, form.term->symbol);
  }
}

void SmtLib2TermPrinter::print_theory_head(std::ostream& out, const WrittenForm& form) const {
  const Symbol* s = form.term->symbol;
  const char* const text = form.op->text;
  size_t first = 0;
  size_t second = 0;
  switch (form.op->head) {
    case SmtLib2Head::NAME:
      out << text;
      return;
    case SmtLib2Head::RANGE:
      manager.is_bv_extract(s, &first, &second, nullptr);
      out << "(_ " << text << ' ' << std::to_string(first) << ' ' << std::to_string(second) << ')';
      return;
    case SmtLib2Head::AMOUNT:
      for (const auto is_operator :
           {&TermManager::is_bv_rotate_left, &TermManager::is_bv_rotate_right,
            &TermManager::is_bv_zero_extend, &TermManager::is_bv_sign_extend}) {
        if ((manager.*is_operator)(s, &first, nullptr)) break;
      }
      out << "(_ " << text << ' ' << std::to_string(first) << ')';
      return;
    case SmtLib2Head::WIDTH:
      manager.is_bv_type(s->get_output_type(), &first);
      out << "(_ " << text << ' ' << std::to_string(first) << ')';
      return;
    case SmtLib2Head::FORMAT:
      manager.is_fp_type(s->get_output_type(), &first, &second);
      out << "(_ " << text << ' ' << std::to_string(first) << ' ' << std::to_string(second + 1)
          << ')';
      return;
    case SmtLib2Head::SORT:
      out << "(as " << text << ' ';
      print_type(out, manager, s->get_output_type(), rename_prefix, logic);
      out << ')';
      return;
    case SmtLib2Head::MODULUS:
      out << text << " (mod";
      return;
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
  Item item{nullptr, nullptr, ")"};
  if (form.kind == WrittenForm::IntegerDivision) item.text = "";
  if (form.kind == WrittenForm::IntegerDivision || form.kind == WrittenForm::Residue ||
      form.has_modulus()) {
    item.divided = form.term;
    item.form = form.kind;
  }
  return item;
}

SmtLib2TermPrinter::Item SmtLib2TermPrinter::end_of_annotation(const Term_* t) {
  Item item{nullptr, nullptr, ""};
  item.annotated = t;
  return item;
}

void SmtLib2TermPrinter::print_text(std::ostream& out, const Item& item) const {
  if (item.annotated != nullptr) print_annotation_end(out, item.annotated);
  if (item.divided != nullptr) {
    WrittenForm form(manager, item.divided, with_abs);
    form.kind = item.form;
    out << ' ' << form.divisor(manager) << ')';
    if (form.kind == WrittenForm::Residue) out << ' ' << form.residue(manager);
  }
  out << item.text;
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
  if (print_numeral(out, s, expected)) return;
  if (const SmtLib2Operator* op = find_smtlib2_operator(manager.get_tag(s))) {
    out << op->text;
  } else if (const char* mode = rounding_mode(s)) {
    out << mode;
  } else {
    print_symbol(out, s->name, rename_prefix, logic);
  }
}

// False for a symbol that is no numeral, and for a floating-point numeral that has no bits of its
// format, as managers that check nothing can make them.
bool SmtLib2TermPrinter::print_numeral(std::ostream& out, const Symbol* s,
                                       const DataType* expected) const {
  QNumber value;
  size_t width = 0;
  size_t e = 0;
  size_t m = 0;
  if (!manager.is_number(s, &value)) return false;
  if (manager.is_bv_type(s->type, &width)) {
    out << "(_ bv" << value.to_str() << ' ' << std::to_string(width) << ')';
  } else if (manager.is_fp_type(s->type, &e, &m)) {
    return print_fp_bits(out, value, e, m);
  } else {
    print_number(out, value, /*as_real=*/expected == manager.get_rat_type() ||
                                 s->type == manager.get_rat_type());
  }
  return true;
}

const char* SmtLib2TermPrinter::rounding_mode(const Symbol* s) const {
  if (manager.is_fprounding_even(s)) return "RNE";
  if (manager.is_fprounding_zero(s)) return "RTZ";
  if (manager.is_fprounding_plus_inf(s)) return "RTP";
  if (manager.is_fprounding_minus_inf(s)) return "RTN";
  return nullptr;
}

// Whether an Int term stands where Real is asked for. Numerals are written with a point there
// instead.
bool SmtLib2TermPrinter::needs_to_real(const Term_* t, const DataType* expected) const {
  return expected == manager.get_rat_type() &&
         t->symbol->get_output_type() == manager.get_int_type() &&
         !manager.is_number(t->symbol, nullptr);
}

}  // namespace quill
