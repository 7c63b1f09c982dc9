#include "quill/frontends/smt2/fp_conversions.h"

#include <string>

#include "quill/derived/derived_fp.h"
#include "quill/frontends/smt2/fp_operators.h"
#include "quill/frontends/smt2/numerals.h"
#include "quill/smtlib/operator_texts.h"

namespace quill::smt2 {

namespace {

const Term_* from_constant(TermBuilder& b, const Application& a, IEEEFloat::format format) {
  const Term_* mode = a.args[0].term;
  const std::string what = a.args[1].sort == b.int_type ? "an Int" : "a Real";
  QNumber value;
  if (!constant_value(b.manager, a.args[1].term, value)) {
    throw ParseError(a.position, "unsupported: 'to_fp' of " + what + " that is not a constant");
  }
  if (find_rounding_mode(b.manager, mode->symbol) == nullptr) {
    throw ParseError(a.position, "unsupported: 'to_fp' of " + what +
                                     " under a rounding mode that is not a constant");
  }
  expect_spellable(b, a, format);
  return b.manager.make_fp_rat_number(value, format.e, format.m, mode);
}

}  // namespace

Value build_to_fp(TermBuilder& b, const Application& a) {
  const auto [e, m] = format_from_indices(b, a);
  TermManager& manager = b.manager;
  if (a.args.size() == 1) {
    b.expect(a, 0, manager.get_bv_type(e + m + 1));
    return value_of_float(manager.make_fp_from_ieeebv(e, m, a.args[0].term));
  }
  expect_rounding_mode(b, a);
  const Term_* mode = a.args[0].term;
  const Value& operand = a.args[1];
  if (manager.is_fp_type(operand.sort, nullptr, nullptr)) {
    return value_of_float(manager.make_fp_cast(e, m, mode, operand.term));
  }
  if (manager.is_bv_type(operand.sort, nullptr)) {
    return value_of_float(manager.make_fp_from_sbv(e, m, mode, operand.term));
  }
  if (!b.is_arithmetic(operand.sort)) {
    b.reject_argument(a, 1, "a number or a bit-vector");
  }
  return value_of_float(from_constant(b, a, {e, m}));
}

Value build_to_fp_unsigned(TermBuilder& b, const Application& a) {
  const auto [e, m] = format_from_indices(b, a);
  expect_rounding_mode(b, a);
  b.expect_bit_vector(a, 1);
  return value_of_float(b.manager.make_fp_from_ubv(e, m, a.args[0].term, a.args[1].term));
}

Value build_fp_to_sbv(TermBuilder& b, const Application& a) {
  const uint64_t width = b.index(a, 0);
  b.sorts.bit_vector(width, a.position);
  expect_rounding_mode(b, a);
  expect_float(b, a, 1);
  return value_of_float(b.manager.make_fp_to_bv(width, a.args[0].term, a.args[1].term));
}

Value build_fp_to_ubv(TermBuilder& b, const Application& a) {
  const uint64_t width = b.index(a, 0);
  b.sorts.bit_vector(width, a.position);
  if (width > ~uint64_t{0} - 2) b.reject(a, "has a width that is too large");
  expect_rounding_mode(b, a);
  const IEEEFloat::format format = expect_float(b, a, 1);
  expect_spellable(b, a, format, /*count=*/2);  // for the bounds of the defined values
  const Symbol* function =
      b.undefined_functions.get(undefined_fp_to_ubv_name(format.e, format.m, width),
                                undefined_fp_to_ubv_type(b.manager, format.e, format.m, width));
  const Term_* mode = a.args[0].term;
  const Term_* operand = a.args[1].term;
  const Term_* argument = make_fp_with_one_nan(b.manager, operand);
  const Term_* undefined = b.manager.make_uninterpreted_function(function, {mode, argument});
  return value_of_float(make_fp_to_ubv(b.manager, width, mode, operand, undefined));
}

Value build_fp_to_ieee_bv(TermBuilder& b, const Application& a) {
  expect_float(b, a, 0);
  return value_of_float(b.manager.make_fp_as_ieeebv(a.args[0].term));
}

}  // namespace quill::smt2
