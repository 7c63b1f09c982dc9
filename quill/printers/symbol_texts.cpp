#include "quill/printers/symbol_texts.h"

#include <string>

#include "quill/smtlib/syntax.h"

namespace quill {

SymbolTexts::SymbolTexts(const TermManager& manager_, const std::string& rename_prefix_,
                         const Logic& logic_)
    : manager(manager_), rename_prefix(rename_prefix_), logic(logic_) {}

const std::string& SymbolTexts::of(const Symbol* s, bool as_real) {
  Latest& last = latest[as_real];
  if (last.symbol == s) return *last.text;
  const auto found = texts[as_real].find(s);
  if (found != texts[as_real].end()) {
    last = {s, &found->second};
    return found->second;
  }
  text.clear();
  text.str(std::string());
  if (s->arity == 0) {
    write_constant(s, as_real);
  } else if (const SmtLib2Operator* op = find_smtlib2_operator(operator_tag(manager, s))) {
    write_theory_head(*op, s);
  } else {
    write_head(s);
  }
  return texts[as_real][s] = text.str();
}

const std::string& SymbolTexts::of_value(const Symbol* s, bool as_real) {
  const auto found = values[as_real].find(s);
  if (found != values[as_real].end()) return found->second;
  text.clear();
  text.str(std::string());
  return values[as_real][s] = write_value(s, as_real) ? text.str() : of(s, as_real);
}

// Returns false, and writes nothing, if the value is written as in other places.
bool SymbolTexts::write_value(const Symbol* s, bool as_real) {
  QNumber value;
  size_t e = 0;
  size_t m = 0;
  if (!manager.is_number(s, &value)) return false;
  if (manager.is_fp_type(s->type, &e, &m)) return print_fp_special(text, value, e, m);
  if (s->type != manager.get_rat_type() && (s->type != manager.get_int_type() || !as_real)) {
    return false;
  }
  if (s->type == manager.get_int_type() && !value.is_integer()) return false;
  print_real_value(text, value);
  return true;
}

void SymbolTexts::write_theory_head(const SmtLib2Operator& op, const Symbol* s) {
  size_t first = 0;
  size_t second = 0;
  switch (op.head) {
    case SmtLib2Head::Name:
      text << op.text;
      return;
    case SmtLib2Head::Range:
      manager.is_bv_extract(s, &first, &second, nullptr);
      text << "(_ " << op.text << ' ' << std::to_string(first) << ' ' << std::to_string(second)
           << ')';
      return;
    case SmtLib2Head::Amount:
      for (const auto is_operator :
           {&TermManager::is_bv_rotate_left, &TermManager::is_bv_rotate_right,
            &TermManager::is_bv_zero_extend, &TermManager::is_bv_sign_extend}) {
        if ((manager.*is_operator)(s, &first, nullptr)) break;
      }
      text << "(_ " << op.text << ' ' << std::to_string(first) << ')';
      return;
    case SmtLib2Head::Width:
      manager.is_bv_type(s->get_output_type(), &first);
      text << "(_ " << op.text << ' ' << std::to_string(first) << ')';
      return;
    case SmtLib2Head::Format:
      manager.is_fp_type(s->get_output_type(), &first, &second);
      text << "(_ " << op.text << ' ' << std::to_string(first) << ' ' << significand_text(second)
           << ')';
      return;
    case SmtLib2Head::Sort:
      text << "(as " << op.text << ' ';
      print_type(text, manager, s->get_output_type(), rename_prefix, logic);
      text << ')';
      return;
    case SmtLib2Head::Modulus:
      text << op.text << " (mod";
      return;
  }
}

void SymbolTexts::write_head(const Symbol* function) {
  const std::string name = name_to_smtlib(function->name, NameKind::Symbol, rename_prefix, logic);
  if (!needs_qualified_head(name)) {
    print_quoted(text, name);
    return;
  }
  text << "(as ";
  print_quoted(text, name);
  text << ' ';
  print_type(text, manager, function->get_output_type(), rename_prefix, logic);
  text << ')';
}

void SymbolTexts::write_constant(const Symbol* s, bool as_real) {
  if (write_numeral(s, as_real)) return;
  if (const SmtLib2Operator* op = find_smtlib2_operator(operator_tag(manager, s))) {
    text << op->text;
  } else if (const RoundingModeText* mode = find_rounding_mode(manager, s)) {
    text << mode->text;
  } else {
    print_symbol(text, s->name, rename_prefix, logic);
  }
}

// Returns false for a symbol that is not a numeral, and for a numeral whose type does not contain
// the value. Managers that check nothing can make such numerals, and a user's Int whose name spells
// a fraction becomes one when somebody requests the fraction.
bool SymbolTexts::write_numeral(const Symbol* s, bool as_real) {
  QNumber value;
  size_t width = 0;
  size_t e = 0;
  size_t m = 0;
  if (!manager.is_number(s, &value)) return false;
  if (manager.is_bv_type(s->type, &width)) {
    return print_bv_value(text, value, width);
  } else if (manager.is_fp_type(s->type, &e, &m)) {
    return print_fp_bits(text, value, e, m);
  } else if (s->type == manager.get_int_type() && !value.is_integer()) {
    return false;
  } else {
    print_number(text, value, as_real || s->type == manager.get_rat_type());
  }
  return true;
}

}  // namespace quill
