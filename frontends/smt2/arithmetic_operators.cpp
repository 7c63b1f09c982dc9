#include "frontends/smt2/arithmetic_operators.h"

#include <vector>

#include "frontends/smt2/numerals.h"
#include "quill/terms/derived.h"

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

// The conjunction of an order between neighbours: of left <= right with the operands in their order
// or exchanged, and negated or not.
Value chain(TermBuilder& b, const Application& a, bool exchanged, bool negated_order) {
  const DataType* sort = b.expect_arithmetic(a);
  std::vector<const Term_*> links;
  for (size_t i = 0; i + 1 < a.args.size(); ++i) {
    const Term_* left = a.args[i].term;
    const Term_* right = a.args[i + 1].term;
    const Term_* link = exchanged ? b.leq(right, left, sort) : b.leq(left, right, sort);
    links.push_back(negated_order ? b.manager.make_not(link) : link);
  }
  return b.boolean(make_and(b.manager, links));
}

}  // namespace

Value build_plus(TermBuilder& b, const Application& a) {
  return fold_left(b, a, &TermBuilder::plus);
}

Value build_times(TermBuilder& b, const Application& a) {
  return fold_left(b, a, &TermBuilder::times);
}

Value build_minus(TermBuilder& b, const Application& a) {
  const DataType* sort = b.expect_arithmetic(a);
  const Term_* result = a.args[0].term;
  if (a.args.size() == 1) {
    QNumber value;
    if (b.manager.is_number(result->symbol, &value)) {
      return {b.manager.make_number(negated(value)), sort};
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
  const Term_* result = a.args[0].term;
  for (size_t i = 1; i < a.args.size(); ++i) {
    QNumber divisor;
    if (!b.manager.is_number(a.args[i].term->symbol, &divisor)) {
      throw ParseError(a.position, "unsupported: division by a term that is not a number");
    }
    if (divisor.is_zero()) throw ParseError(a.position, "unsupported: division by zero");
    QNumber dividend;
    if (b.manager.is_number(result->symbol, &dividend)) {
      result = b.manager.make_number(quotient(dividend, divisor));
    } else {
      const Term_* factor = b.manager.make_number(quotient(QNumber(1), divisor));
      result = b.times(factor, result, b.real_type);
    }
  }
  return {result, b.real_type};
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
