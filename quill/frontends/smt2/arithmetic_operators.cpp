#include "quill/frontends/smt2/arithmetic_operators.h"

#include <string>
#include <vector>

#include "quill/derived/derived.h"
#include "quill/frontends/smt2/numerals.h"
#include "quill/printers/written_form.h"
#include "quill/utils/qnumber_arithmetic.h"

namespace quill::smt2 {

namespace {

using Combine = const Term_* (TermBuilder::*)(const Term_*, const Term_*, const DataType*);

Value fold_left(TermBuilder& b, const Application& a, Combine combine) {
  const DataType* sort = b.expect_arithmetic(a);
  const Term_* result = a.args[0].term;
  for (size_t i = 1; i < a.args.size(); ++i) {
    result = (b.*combine)(result, a.args[i].term, sort);
  }
  return {result, sort};
}

// The conjunction of an order between neighbours: of left <= right with the operands in this order
// or exchanged, negated or not.
Value chain(TermBuilder& b, const Application& a, bool exchanged, bool negated_order) {
  const DataType* sort = b.expect_arithmetic(a);
  std::vector<const Term_*>& links = b.fresh_terms();
  for (size_t i = 0; i + 1 < a.args.size(); ++i) {
    const Term_* left = a.args[i].term;
    const Term_* right = a.args[i + 1].term;
    const Term_* link = exchanged ? b.leq(right, left, sort) : b.leq(left, right, sort);
    links.push_back(negated_order ? b.manager.make_not(link) : link);
  }
  return b.boolean(make_and(b.manager, links));
}

bool is_number(const TermBuilder& b, const Term_* t) {
  return b.manager.is_number(t->symbol, nullptr);
}

// The numeral for a constant; any other term as it is.
const Term_* folded(TermBuilder& b, const Term_* t) {
  QNumber value;
  if (is_number(b, t) || !constant_value(b.manager, t, value)) return t;
  return b.manager.make_number(value);
}

// In logics of floating-point numbers without the theory of an operator, the operator only spells
// constants: its arguments must be numbers, and its divisors must not be zero.
void expect_constants(const TermBuilder& b, const Application& a, Theory theory, size_t num_args,
                      const char* example) {
  if (b.logic.has(theory)) return;
  bool constant = a.args.size() == num_args;
  for (size_t i = 0; constant && i < num_args; ++i) {
    QNumber value;
    constant = b.manager.is_number(a.args[i].term->symbol, &value) && (i == 0 || !value.is_zero());
  }
  if (!constant) {
    b.reject(a,
             "is there in the logic " + b.logic.name() + " only for constants such as " + example);
  }
}

QNumber divisor_of(const TermBuilder& b, const Application& a, size_t index) {
  QNumber divisor;
  if (!constant_value(b.manager, a.args[index].term, divisor)) {
    throw ParseError(a.position, "unsupported: division by a term that is not a number");
  }
  return divisor;
}

const Term_* divide_by_zero(TermBuilder& b, Division op, const Term_* dividend) {
  const Symbol* function =
      b.undefined_functions.get(zero_division_name(op), zero_division_type(b.manager, op));
  return b.manager.make_uninterpreted_function(function, {dividend});
}

}  // namespace

Value build_plus(TermBuilder& b, const Application& a) {
  return fold_left(b, a, &TermBuilder::plus);
}

Value build_times(TermBuilder& b, const Application& a) {
  const DataType* sort = b.expect_arithmetic(a);
  const Term_* result = a.args[0].term;
  for (size_t i = 1; i < a.args.size(); ++i) {
    const Term_* factor = a.args[i].term;
    if (b.logic.is_linear() && !is_number(b, factor) && !is_numeral_product(b.manager, result)) {
      factor = folded(b, factor);
      if (!is_number(b, factor)) result = folded(b, result);
    }
    result = b.times(result, factor, sort);
  }
  return {result, sort};
}

Value build_minus(TermBuilder& b, const Application& a) {
  const DataType* sort = b.expect_arithmetic(a);
  expect_constants(b, a, Theory::Arithmetic, 1, "(- 0.1)");
  const Term_* result = a.args[0].term;
  if (a.args.size() == 1) {
    QNumber value;
    if (b.manager.is_number(result->symbol, &value)) {
      return {b.manager.make_number(numbers::negated(value)), sort};
    }
    return {b.negative(result, sort), sort};
  }
  for (size_t i = 1; i < a.args.size(); ++i) {
    const Term_* subtrahend = b.negative(a.args[i].term, sort);
    result = b.plus(result, subtrahend, sort);
  }
  return {result, sort};
}

Value build_divide(TermBuilder& b, const Application& a) {
  b.expect_all(a, b.real_type);
  expect_constants(b, a, Theory::Reals, 2, "(/ 1 3)");
  const Term_* result = a.args[0].term;
  for (size_t i = 1; i < a.args.size(); ++i) {
    const QNumber divisor = divisor_of(b, a, i);
    QNumber dividend;
    if (divisor.is_zero()) {
      result = divide_by_zero(b, Division::Divide, result);
    } else if (b.manager.is_number(result->symbol, &dividend)) {
      result = b.manager.make_number(quotient(dividend, divisor));
    } else {
      result = make_divide(b.manager, result, divisor);
    }
  }
  return {result, b.real_type};
}

Value build_div(TermBuilder& b, const Application& a) {
  b.expect_all(a, b.int_type);
  const Term_* result = a.args[0].term;
  for (size_t i = 1; i < a.args.size(); ++i) {
    const QNumber divisor = divisor_of(b, a, i);
    result = divisor.is_zero() ? divide_by_zero(b, Division::Div, result)
                               : make_div(b.manager, result, divisor);
  }
  return {result, b.int_type};
}

Value build_mod(TermBuilder& b, const Application& a) {
  b.expect_all(a, b.int_type);
  const QNumber divisor = divisor_of(b, a, 1);
  const Term_* dividend = a.args[0].term;
  return {divisor.is_zero() ? divide_by_zero(b, Division::Mod, dividend)
                            : make_mod(b.manager, dividend, divisor),
          b.int_type};
}

Value build_abs(TermBuilder& b, const Application& a) {
  const DataType* sort = b.expect_arithmetic(a);
  if (sort == b.real_type) b.has_abs_of_reals = true;
  return {make_abs(b.manager, a.args[0].term, sort), sort};
}

Value build_divisible(TermBuilder& b, const Application& a) {
  b.expect_all(a, b.int_type);
  const std::string& index = a.indices[0];
  if (index.find_first_not_of("0123456789") != std::string::npos || index == "0") {
    b.reject(a, "takes a positive number as its index, not " + shown(index));
  }
  return b.boolean(make_divisible(b.manager, a.args[0].term, QNumber::from_string(index)));
}

Value build_leq(TermBuilder& b, const Application& a) {
  return chain(b, a, /*exchanged=*/false, /*negated_order=*/false);
}

Value build_lt(TermBuilder& b, const Application& a) {
  return chain(b, a, /*exchanged=*/true, /*negated_order=*/true);
}

Value build_geq(TermBuilder& b, const Application& a) {
  return chain(b, a, /*exchanged=*/true, /*negated_order=*/false);
}

Value build_gt(TermBuilder& b, const Application& a) {
  return chain(b, a, /*exchanged=*/false, /*negated_order=*/true);
}

Value build_to_real(TermBuilder& b, const Application& a) {
  b.expect(a, 0, b.real_type);
  return {a.args[0].term, b.real_type};
}

Value build_to_int(TermBuilder& b, const Application& a) {
  b.expect(a, 0, b.real_type);
  return {b.manager.make_floor(a.args[0].term), b.int_type};
}

Value build_is_int(TermBuilder& b, const Application& a) {
  b.expect(a, 0, b.real_type);
  const Term_* floor = b.manager.make_floor(a.args[0].term);
  return b.boolean(b.equal(a.args[0].term, floor, b.real_type));
}

}  // namespace quill::smt2
