// How an application is written: its operator and the operands after it.
//
// Usually these are the symbol and its arguments. Subtraction and negation, which have no symbols,
// are written as such:
//
//   a + (-1) * b     (- a b)
//   (-1) * b         (- b)      unless b is a numeral, because (- 3) reads as the numeral -3
//
// so that difference constraints keep the shape that readers of difference logic expect. Likewise
// integer division, which readers of linear logics over Int know:
//
//   floor((1/c) * i)     (div i c)     for an Int i and a positive integer c
//
// and absolute values, in logics whose readers know them and reason with them:
//
//   ite(0 <= a, a, (-1) * a)     (abs a)
//
// Congruence modulo n is written with the remainders of its operands; if the second operand is a
// numeral, with its remainder r in [0, n):
//
//   a = b modulo n     (= (mod a n) (mod b n)), which counts as an application
//   a = 17 modulo n    (= (mod a n) r)

#ifndef QUILL_PRINTERS_WRITTEN_FORM_H
#define QUILL_PRINTERS_WRITTEN_FORM_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>

#include "quill/smtlib/operator_texts.h"
#include "quill/terms/term.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/qnumber.h"

namespace quill {

struct WrittenForm {
  enum Kind : uint8_t {
    Application,
    Subtraction,
    Negation,
    IntegerDivision,
    AbsoluteValue,
    Residue,
  };

  struct Operand {
    const Term_* term;
    const DataType* expected;  // the type of the place; the term's own type may be a subtype
  };

  WrittenForm(const TermManager& manager, const Term_* term_, bool with_abs = false);

  uint64_t num_operands() const {
    return kind == Application ? term->symbol->arity : kind == Subtraction ? 2 : 1;
  }

  // The terms below this one that are not written, although operands below them are; otherwise
  // null.
  std::array<const Term_*, 4> hidden_terms() const {
    const auto first = [](const Term_* t) { return t->args[0]; };
    switch (kind) {
      case Application:
        break;
      case Negation:
        return {first(term)};
      case Subtraction:
        return {term->args[1], first(term->args[1])};
      case IntegerDivision:
        return {first(term), first(first(term))};
      case AbsoluteValue:
        return {first(term), first(first(term)), term->args[2], first(term->args[2])};
      case Residue:
        return {term->args[1]};
    }
    return {};
  }

  // The number that the form writes beside its operands: the divisor of an IntegerDivision, the
  // modulus of a Residue and of an application of congruence.
  QNumber divisor(const TermManager& manager) const;
  // For Residue: the number with which the remainder is compared.
  QNumber residue(const TermManager& manager) const;

  Operand operand(uint64_t i) const {
    if (kind != Application) return operand_of_other_form(i);
    return {term->args[i], term->symbol->type->get_component(i + 1)};
  }

  // Whether it is written only by the texts of its symbol and its operands, whatever these are.
  bool is_plain() const {
    return kind == Application && !takes_reals && tag != SymbolTag::INT_MODULAR_CONGRUENCE;
  }

  // Whether a constant as its operand must be spelled such that readers see a value.
  bool asks_for_value() const { return tag == SymbolTag::ARRAY_CONST; }

  // Whether it is a congruence that has each operand under its own mod.
  bool has_modulus() const {
    return kind == Application && op() != nullptr && op()->head == SmtLib2Head::Modulus;
  }

  // Whether the first operand, written in the form `first`, can be opened up: (op (op a b) c)
  // becomes (op a b c).
  bool joins_with(const WrittenForm& first) const {
    return first.tag == tag && first.kind == kind &&
           (kind == Subtraction ||
            (op() != nullptr && kind == Application && op()->left_associative)) &&
           // Concatenations of one chain differ in their widths.
           (tag == SymbolTag::BV_CONCAT || first.term->symbol == term->symbol);
  }

  // The operator, or null if the symbol is written by its name.
  const SmtLib2Operator* op() const {
    return find_smtlib2_operator(static_cast<SymbolTag::tag>(tag));
  }

  const Term_* term;
  uint8_t tag;  // of the operator that its symbol is written as
  Kind kind = Application;
  bool takes_reals = false;  // whether some place, or the result, is Real or must hold a value

 private:
  friend class WrittenForms;

  // An application.
  WrittenForm(const Term_* term_, uint8_t tag_, bool takes_reals_)
      : term(term_), tag(tag_), takes_reals(takes_reals_) {}

  bool find_kind(const TermManager& manager, bool with_abs);
  Operand operand_of_other_form(uint64_t i) const;
};

// Makes the forms of many terms of one manager, which have few symbols: finds once what depends
// only on the symbol, and remembers it. Must not be used after a symbol was freed.
class WrittenForms {
 public:
  using Condition = std::function<bool(const Term_*)>;

  // If there is a condition, terms that meet it must not be hidden: instead of a form that does not
  // write such a term, an application is written.
  explicit WrittenForms(const TermManager& manager_, bool with_abs_ = false,
                        Condition must_be_written_ = nullptr);

  WrittenForm of(const Term_* t) {
    const size_t place = place_of(t->symbol);
    const Entry* entry = &entries[place];
    if (entry->symbol != t->symbol) entry = &entries[neighbour_of(place)];
    if (entry->symbol != t->symbol) entry = &enter(t, place);
    return entry->is_application ? WrittenForm(t, entry->tag, entry->takes_reals) : form(t, *entry);
  }

 private:
  struct Entry {
    const Symbol* symbol = nullptr;
    uint8_t tag = 0;
    bool takes_reals = false;
    bool is_application = false;  // whatever the arguments are
  };
  static constexpr size_t log2_entries = 5;

  static size_t place_of(const Symbol* s) {
    const auto address = reinterpret_cast<uintptr_t>(s);
    return address * uint64_t{0x9e3779b97f4a7c15} >> (64 - log2_entries);
  }
  static size_t neighbour_of(size_t place) { return place ^ 1; }
  const Entry& enter(const Term_* t, size_t place);
  WrittenForm form(const Term_* t, const Entry& entry) const;

  const TermManager& manager;
  const bool with_abs;
  const Condition must_be_written;
  // Each symbol is in its place or next to it; it moves there when another symbol needs its place.
  std::array<Entry, size_t{1} << log2_entries> entries;
};

// Whether t is a numeral or a product of a few numerals, (* (* 2 3) 5). Readers of linear logics
// must see that a factor is constant, so such a product is joined with the product that it is a
// factor of.
bool is_numeral_product(const TermManager& manager, const Term_* t);

}  // namespace quill

#endif
