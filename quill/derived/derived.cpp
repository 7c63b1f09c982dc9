// The expansions of derived.h.

#include "quill/derived/derived.h"

#include <string>

#include "quill/terms/termmanager/misuse_checks.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/qnumber_arithmetic.h"

namespace quill {

namespace {

using Builder = const Term_* (TermManager::*)(const Term_*, const Term_*);

const Term_* fold(TermManager& m, TermSpan terms, Builder builder, const Term_* if_empty) {
  require_own(m, terms);
  if (terms.empty()) return if_empty;
  const Term_* result = terms[0];
  for (const Term_* t : terms.subspan(1)) result = (m.*builder)(result, t);
  return result;
}

// The symbol of an arithmetic operator over the given type, whatever types its arguments have.
const Symbol* operator_over(const TermManager& m, const DataType* type, const char* base) {
  const char* over = type == m.get_int_type() ? "_int`" : "_rat`";
  return m.get_signature()->get_symbol((std::string("`") + base + over).c_str());
}

// Checks the operands of div and mod.
void require_ints(const TermManager& m, const Term_* a, const QNumber& c, const char* where) {
  if (!c.is_integer()) {
    throw TermManager::error("the divisor must be an integer: ") << c << " (" << where << ")";
  }
  if (m.get_typecheck_enabled()) m.typecheck(a, m.get_int_type(), where);
}

const Term_* divide_by_zero(TermManager& m, Division op, const Term_* a) {
  return m.make_uninterpreted_function(make_zero_division_symbol(m, op), {a});
}

bool is_bool(const TermManager& m, const Term_* t) {
  require_own(m, t);
  return t->type() == m.get_bool_type();
}

}  // namespace

// Throughout, operands are built in statements of their own: the order in which terms are made
// determines their ids.

const Term_* make_implies(TermManager& m, const Term_* a, const Term_* b) {
  require_own(m, {a, b});
  const Term_* not_a = m.make_not(a);
  return m.make_or(not_a, b);
}

const Term_* make_xor(TermManager& m, const Term_* a, const Term_* b) {
  require_own(m, {a, b});
  return m.make_not(m.make_iff(a, b));
}

const Term_* make_equals(TermManager& m, const Term_* a, const Term_* b) {
  require_own(m, {a, b});
  return is_bool(m, a) ? m.make_iff(a, b) : m.make_equal(a, b);
}

const Term_* make_distinct(TermManager& m, TermSpan terms) {
  require_own(m, terms);
  const Term_* result = nullptr;
  for (size_t i = 0; i < terms.size(); ++i) {
    for (size_t j = i + 1; j < terms.size(); ++j) {
      const Term_* differ = m.make_not(make_equals(m, terms[i], terms[j]));
      result = result == nullptr ? differ : m.make_and(result, differ);
    }
  }
  return result != nullptr ? result : m.make_true();
}

const Term_* make_ite(TermManager& m, const Term_* cond, const Term_* then_term,
                      const Term_* else_term) {
  require_own(m, {cond, then_term, else_term});
  if (!is_bool(m, then_term)) return m.make_term_ite(cond, then_term, else_term);
  const Term_* if_true = make_implies(m, cond, then_term);
  const Term_* if_false = m.make_or(cond, else_term);
  return m.make_and(if_true, if_false);
}

const Term_* make_geq(TermManager& m, const Term_* a, const Term_* b) { return m.make_leq(b, a); }

const Term_* make_lt(TermManager& m, const Term_* a, const Term_* b) {
  require_own(m, {a, b});
  return m.make_not(m.make_leq(b, a));
}

const Term_* make_gt(TermManager& m, const Term_* a, const Term_* b) {
  require_own(m, {a, b});
  return m.make_not(m.make_leq(a, b));
}

const Term_* make_minus(TermManager& m, const Term_* a) {
  require_own(m, a);
  const Term_* minus_one = m.make_number(-1);
  return m.make_times(minus_one, a);
}

const Term_* make_minus(TermManager& m, const Term_* a, const Term_* b) {
  require_own(m, {a, b});
  const Term_* minus_b = make_minus(m, b);
  return m.make_plus(a, minus_b);
}

const Term_* make_is_int(TermManager& m, const Term_* a) {
  require_own(m, a);
  const Term_* floor = m.make_floor(a);
  return m.make_equal(a, floor);
}

const Term_* make_abs(TermManager& m, const Term_* a, const DataType* type) {
  require_own(m, a);
  require_own(m, type);
  const Term_* zero = m.make_number(0);
  const Term_* minus_one = m.make_number(-1);
  const Term_* not_negative = m.make_bin(operator_over(m, type, "<="), zero, a, "make_abs");
  const Term_* minus_a = m.make_bin(operator_over(m, type, "*"), minus_one, a, "make_abs");
  return m.make_term(m.make_term_ite_symbol(type), {not_negative, a, minus_a});
}

const Term_* make_abs(TermManager& m, const Term_* a) {
  require_own(m, a);
  return make_abs(m, a, a->type());
}

const char* zero_division_name(Division op) {
  switch (op) {
    case Division::Div:
      return "quill!div_by_zero";
    case Division::Mod:
      return "quill!mod_by_zero";
    case Division::Divide:
      return "quill!divide_by_zero";
  }
  return "";
}

const DataType* zero_division_type(TermManager& m, Division op) {
  const DataType* type = op == Division::Divide ? m.get_rat_type() : m.get_int_type();
  return m.get_function_type({type}, type);
}

const Symbol* make_zero_division_symbol(TermManager& m, Division op) {
  return m.make_symbol(zero_division_name(op), zero_division_type(m, op));
}

const Term_* make_divide(TermManager& m, const Term_* a, const QNumber& c) {
  if (!c.is_canonical()) return make_divide(m, a, c.canonical());
  require_own(m, a);
  if (c.is_zero()) return divide_by_zero(m, Division::Divide, a);
  const Term_* factor = m.make_number(numbers::reciprocal(c));
  return m.make_bin(operator_over(m, m.get_rat_type(), "*"), factor, a, "make_divide");
}

const Term_* make_div(TermManager& m, const Term_* a, const QNumber& c) {
  if (!c.is_canonical()) return make_div(m, a, c.canonical());
  require_own(m, a);
  require_ints(m, a, c, "make_div");
  if (c.is_zero()) return divide_by_zero(m, Division::Div, a);
  const Term_* quotient = m.make_floor(make_divide(m, a, numbers::absolute(c)));
  return c.is_negative() ? make_minus(m, quotient) : quotient;
}

const Term_* make_mod(TermManager& m, const Term_* a, const QNumber& c) {
  if (!c.is_canonical()) return make_mod(m, a, c.canonical());
  require_own(m, a);
  require_ints(m, a, c, "make_mod");
  if (c.is_zero()) return divide_by_zero(m, Division::Mod, a);
  const QNumber divisor = numbers::absolute(c);
  const Term_* quotient = make_div(m, a, divisor);
  const Term_* factor = m.make_number(divisor);
  const Term_* multiple = m.make_times(factor, quotient);
  return make_minus(m, a, multiple);
}

const Term_* make_divisible(TermManager& m, const Term_* a, const QNumber& n) {
  if (!n.is_canonical()) return make_divisible(m, a, n.canonical());
  require_own(m, a);
  require_ints(m, a, n, "make_divisible");
  if (n.is_negative() || n.is_zero()) {
    throw TermManager::error("the divisor must be positive: ") << n << " (make_divisible)";
  }
  const Term_* quotient = make_div(m, a, n);
  const Term_* factor = m.make_number(n);
  const Term_* multiple = m.make_times(factor, quotient);
  return m.make_equal(a, multiple);
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
