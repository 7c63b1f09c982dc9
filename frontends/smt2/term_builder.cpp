#include "frontends/smt2/term_builder.h"

#include "frontends/smt2/sort_text.h"
#include "quill/utils/qnumber.h"

namespace quill::smt2 {

TermBuilder::TermBuilder(TermManager& term_manager, Scopes& scopes, const Logic& script_logic)
    : manager(term_manager),
      logic(script_logic),
      zero_divisions(term_manager, scopes),
      bool_type(term_manager.get_bool_type()),
      int_type(term_manager.get_int_type()),
      real_type(term_manager.get_rat_type()),
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

void TermBuilder::expect(const Application& application, size_t index, const DataType* sort) const {
  const DataType* given = application.args[index].sort;
  if (fits(given, sort)) return;
  throw ParseError(application.position, "argument " + std::to_string(index + 1) + " of '" +
                                             application.op.name + "' has sort " +
                                             sort_text(manager, given) + ", but " +
                                             sort_text(manager, sort) + " is expected");
}

void TermBuilder::expect_all(const Application& application, const DataType* sort) const {
  for (size_t i = 0; i < application.args.size(); ++i) expect(application, i, sort);
}

const DataType* TermBuilder::expect_arithmetic(const Application& application) const {
  const DataType* sort = int_type;
  for (size_t i = 0; i < application.args.size(); ++i) {
    const DataType* given = application.args[i].sort;
    if (!is_arithmetic(given)) {
      throw ParseError(application.position, "argument " + std::to_string(i + 1) + " of '" +
                                                 application.op.name + "' has sort " +
                                                 sort_text(manager, given) +
                                                 ", but a number is expected");
    }
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
  return manager.make_bin(manager.make_equality_symbol(sort), a, b, "make_equal");
}

const Term_* TermBuilder::if_then_else(const Term_* condition, const Term_* a, const Term_* b,
                                       const DataType* sort) {
  return manager.make_term(manager.make_term_ite_symbol(sort), {condition, a, b});
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

Value TermBuilder::number(const Token& token) {
  const bool decimal = token.kind == TokenKind::DECIMAL;
  if (!logic.has(decimal ? Theory::REALS : Theory::ARITHMETIC)) {
    throw ParseError(token.position,
                     "the logic " + logic.name() + " has no number " + token.description());
  }
  const Term_* term = manager.make_number(QNumber::from_string(token.text));
  return {term, decimal || logic.numerals_are_real() ? real_type : int_type};
}

}  // namespace quill::smt2
