#include "quill/frontends/smt2/term_builder.h"

#include "quill/frontends/smt2/indices.h"
#include "quill/frontends/smt2/numerals.h"
#include "quill/frontends/smt2/sort_text.h"
#include "quill/utils/qnumber.h"
#include "quill/utils/qnumber_arithmetic.h"

namespace quill::smt2 {

TermBuilder::TermBuilder(TermManager& manager_, Scopes& scopes, TheorySorts& sorts_,
                         const Logic& logic_, const ReadOptions& options)
    : manager(manager_),
      sorts(sorts_),
      logic(logic_),
      undefined_functions(manager_, scopes),
      budget(options),
      bool_type(manager_.get_bool_type()),
      int_type(manager_.get_int_type()),
      real_type(manager_.get_rat_type()),
      leq_symbols(standard("<=")),
      plus_symbols(standard("+")),
      times_symbols(standard("*")) {}

TermBuilder::Pair TermBuilder::standard(const char* base_name) const {
  const std::string base = base_name;
  const Signature* signature = manager.get_signature();
  return {signature->get_symbol(("`" + base + "_int`").c_str()),
          signature->get_symbol(("`" + base + "_rat`").c_str())};
}

void TermBuilder::reject(const Application& application, const std::string& why) const {
  throw ParseError(application.position, "'" + std::string(application.op.name) + "' " + why);
}

uint64_t TermBuilder::index(const Application& application, size_t number) const {
  return index_value(application.indices[number], "", application.op.name, application.position);
}

void TermBuilder::reject_argument(const Application& application, size_t index,
                                  const std::string& expected) const {
  throw ParseError(application.position, "argument " + std::to_string(index + 1) + " of '" +
                                             application.op.name + "' has sort " +
                                             sort_text(manager, application.args[index].sort) +
                                             ", but " + expected + " is expected");
}

void TermBuilder::expect(const Application& application, size_t index, const DataType* sort) const {
  if (fits(application.args[index].sort, sort)) return;
  reject_argument(application, index, sort_text(manager, sort));
}

uint64_t TermBuilder::expect_bit_vector(const Application& application, size_t index) const {
  size_t width = 0;
  if (!manager.is_bv_type(application.args[index].sort, &width)) {
    reject_argument(application, index, "a bit-vector");
  }
  return width;
}

void TermBuilder::expect_all(const Application& application, const DataType* sort) const {
  for (size_t i = 0; i < application.args.size(); ++i) expect(application, i, sort);
}

const DataType* TermBuilder::expect_arithmetic(const Application& application) const {
  const DataType* sort = int_type;
  for (size_t i = 0; i < application.args.size(); ++i) {
    const DataType* given = application.args[i].sort;
    if (!is_arithmetic(given)) reject_argument(application, i, "a number");
    if (given == real_type) sort = real_type;
  }
  return sort;
}

const DataType* TermBuilder::expect_common(const Application& application, size_t first) const {
  const DataType* sort = application.args[first].sort;
  for (size_t i = first + 1; i < application.args.size(); ++i) {
    const DataType* given = application.args[i].sort;
    if (fits(sort, given)) {
      sort = given;
    } else {
      expect(application, i, sort);
    }
  }
  return sort;
}

const Term_* TermBuilder::equal(const Term_* a, const Term_* b, const DataType* sort) {
  if (sort == bool_type) return manager.make_iff(a, b);
  return manager.make_bin(manager.make_equality_symbol(sorts.held(sort)), a, b, "make_equal");
}

const Term_* TermBuilder::if_then_else(const Term_* condition, const Term_* a, const Term_* b,
                                       const DataType* sort) {
  return manager.make_term(manager.make_term_ite_symbol(sorts.held(sort)), {condition, a, b});
}

const Term_* TermBuilder::leq(const Term_* a, const Term_* b, const DataType* sort) {
  const Symbol* symbol = sort == int_type ? leq_symbols.integer : leq_symbols.rational;
  return manager.make_bin(symbol, a, b, "make_leq");
}

const Term_* TermBuilder::plus(const Term_* a, const Term_* b, const DataType* sort) {
  const Symbol* symbol = sort == int_type ? plus_symbols.integer : plus_symbols.rational;
  return manager.make_bin(symbol, a, b, "make_plus");
}

const Term_* TermBuilder::times(const Term_* a, const Term_* b, const DataType* sort) {
  const Symbol* symbol = sort == int_type ? times_symbols.integer : times_symbols.rational;
  return manager.make_bin(symbol, a, b, "make_times");
}

const Term_* TermBuilder::negative(const Term_* a, const DataType* sort) {
  const Term_* minus_one = manager.make_number(QNumber(-1));
  return times(minus_one, a, sort);
}

const Term_* TermBuilder::bit(bool is_set) {
  return manager.make_bv_number(QNumber(is_set ? 1 : 0), 1);
}

const Term_* TermBuilder::to_held(const Term_* t, const DataType* sort) {
  if (sort != bool_type) return t;
  if (t == manager.make_true()) return bit(true);
  if (t == manager.make_false()) return bit(false);
  const Term_* one = bit(true);
  if (t->symbol == manager.make_equality_symbol(manager.get_bv_type(1)) && t->args[1] == one) {
    return t->args[0];
  }
  return manager.make_term_ite(t, one, bit(false));
}

const Term_* TermBuilder::from_held(const Term_* t, const DataType* sort) {
  if (sort != bool_type) return t;
  return manager.make_equal(t, bit(true));
}

Value TermBuilder::number(const Token& token) {
  const bool decimal = token.kind == TokenKind::Decimal;
  // Floating-point numbers are made from constants of sort Real, even in logics without reals.
  if (!logic.has(decimal ? Theory::Reals : Theory::Arithmetic) &&
      !logic.has(Theory::FloatingPoint)) {
    throw ParseError(token.position,
                     "the logic " + logic.name() + " has no number " + token.description());
  }
  const Term_* term = manager.make_number(QNumber::from_string(token.text));
  return {term, decimal || logic.numerals_are_real() ? real_type : int_type};
}

Value TermBuilder::bits(const Token& token) {
  if (!logic.has(Theory::Bits)) {
    throw ParseError(token.position,
                     "the logic " + logic.name() + " has no bit-vector " + token.description());
  }
  const bool binary = token.kind == TokenKind::Binary;
  const uint64_t width = binary ? token.text.size() : 4 * token.text.size();
  const QNumber value = numbers::from_digits(token.text, binary ? 2 : 16);
  const Term_* term = manager.make_bv_number(value, width);
  return {term, term->type()};
}

Value TermBuilder::bit_vector_number(const std::string& digits, uint64_t width, Position position) {
  const DataType* sort = sorts.bit_vector(width, position);
  const QNumber value = QNumber::from_string(digits);
  if (numbers::bit_length(value) > width) {
    throw ParseError(position, "the number " + shown(digits) + " does not fit into " +
                                   std::to_string(width) + (width == 1 ? " bit" : " bits"));
  }
  return {manager.make_bv_number(value, width), sort};
}

}  // namespace quill::smt2
