// The expansions of derived.h. They stand with the term manager because they build through it; the
// header only names it.

#include "quill/terms/derived.h"

#include "quill/terms/termmanager/term_manager.h"

namespace quill {

namespace {

using Builder = const Term_* (TermManager::*)(const Term_*, const Term_*);

const Term_* fold(TermManager& m, TermSpan terms, Builder builder, const Term_* if_empty) {
  if (terms.empty()) return if_empty;
  const Term_* result = terms[0];
  for (const Term_* t : terms.subspan(1)) result = (m.*builder)(result, t);
  return result;
}

bool is_bool(const TermManager& m, const Term_* t) {
  return t->symbol->get_output_type() == m.get_bool_type();
}

}  // namespace

// Operands are built in statements of their own throughout: the order in which terms come into
// being fixes their ids.

const Term_* make_implies(TermManager& m, const Term_* a, const Term_* b) {
  const Term_* not_a = m.make_not(a);
  return m.make_or(not_a, b);
}

const Term_* make_xor(TermManager& m, const Term_* a, const Term_* b) {
  return m.make_not(m.make_iff(a, b));
}

const Term_* make_equals(TermManager& m, const Term_* a, const Term_* b) {
  return is_bool(m, a) ? m.make_iff(a, b) : m.make_equal(a, b);
}

const Term_* make_distinct(TermManager& m, TermSpan terms) {
  const Term_* result = nullptr;
  for (size_t i = 0; i < terms.size(); i++) {
    for (size_t j = i + 1; j < terms.size(); j++) {
      const Term_* differ = m.make_not(make_equals(m, terms[i], terms[j]));
      result = result == nullptr ? differ : m.make_and(result, differ);
    }
  }
  return result != nullptr ? result : m.make_true();
}

const Term_* make_ite(TermManager& m, const Term_* cond, const Term_* then_term,
                      const Term_* else_term) {
  if (!is_bool(m, then_term)) return m.make_term_ite(cond, then_term, else_term);
  const Term_* if_true = make_implies(m, cond, then_term);
  const Term_* if_false = m.make_or(cond, else_term);
  return m.make_and(if_true, if_false);
}

const Term_* make_geq(TermManager& m, const Term_* a, const Term_* b) { return m.make_leq(b, a); }

const Term_* make_lt(TermManager& m, const Term_* a, const Term_* b) {
  return m.make_not(m.make_leq(b, a));
}

const Term_* make_gt(TermManager& m, const Term_* a, const Term_* b) {
  return m.make_not(m.make_leq(a, b));
}

const Term_* make_minus(TermManager& m, const Term_* a) {
  const Term_* minus_one = m.make_number(-1);
  return m.make_times(minus_one, a);
}

const Term_* make_minus(TermManager& m, const Term_* a, const Term_* b) {
  const Term_* minus_b = make_minus(m, b);
  return m.make_plus(a, minus_b);
}

const Term_* make_is_int(TermManager& m, const Term_* a) {
  const Term_* floor = m.make_floor(a);
  return m.make_equal(a, floor);
}

const Term_* make_and(TermManager& m, TermSpan terms) {
  return fold(m, terms, &TermManager::make_and, m.make_true());
}

const Term_* make_or(TermManager& m, TermSpan terms) {
  return fold(m, terms, &TermManager::make_or, m.make_false());
}

const Term_* make_plus(TermManager& m, TermSpan terms) {
  return terms.empty() ? m.make_number(0) : fold(m, terms, &TermManager::make_plus, nullptr);
}

const Term_* make_times(TermManager& m, TermSpan terms) {
  return terms.empty() ? m.make_number(1) : fold(m, terms, &TermManager::make_times, nullptr);
}

}  // namespace quill
