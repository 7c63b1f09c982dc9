#include "simplifying_factory.h"

#include <gmp.h>

using quill::GmpInteger;
using quill::QNumber;
using quill::SymbolTag;

namespace {

void set(mpz_ptr z, const QNumber& integer) {
  if (integer.is_big()) {
    mpz_set(z, integer.big_num());
  } else {
    mpz_set_si(z, integer.num);
  }
}

// The bits of a bit-vector of the width as a signed number.
void set_signed(mpz_ptr z, const QNumber& bits, std::size_t width) {
  set(z, bits);
  if (mpz_tstbit(z, width - 1) == 0) return;
  GmpInteger modulus;
  mpz_setbit(modulus, width);
  mpz_sub(z, z, modulus);
}

}  // namespace

SimplifyingFactory::Term SimplifyingFactory::make_term(const quill::Symbol* symbol,
                                                       const std::vector<Term>& args) {
  const Term a = !args.empty() ? args[0] : nullptr;
  const Term b = args.size() > 1 ? args[1] : nullptr;
  const Term t = manager.make_true();
  const Term f = manager.make_false();
  std::size_t width = 0;
  switch (manager.get_tag(symbol)) {
    case SymbolTag::NOT:
      return simplify_not(a);
    case SymbolTag::AND:
      return simplify_junction(a, b, t, f);
    case SymbolTag::OR:
      return simplify_junction(a, b, f, t);
    case SymbolTag::IFF:
      return simplify_iff(a, b);
    case SymbolTag::EQUAL:
      return simplify_equality(a, b);
    case SymbolTag::TERM_ITE: {
      const Term chosen = a == t || b == args[2] ? b : a == f ? args[2] : nullptr;
      const bool fits = chosen != nullptr && chosen->type() == symbol->get_output_type();
      return fits ? chosen : nullptr;
    }
    case SymbolTag::PLUS:
    case SymbolTag::TIMES:
    case SymbolTag::LEQ:
      return simplify_arithmetic(symbol, a, b);
    default:
      if (b == nullptr || !manager.is_bv_type(a->type(), &width)) return nullptr;
      return simplify_bit_vectors(symbol, a, b, width);
  }
}

SimplifyingFactory::Term SimplifyingFactory::simplify_not(Term a) {
  if (a == manager.make_true()) return manager.make_false();
  if (a == manager.make_false()) return manager.make_true();
  return manager.get_tag(a->symbol) == SymbolTag::NOT ? a->args[0] : nullptr;
}

SimplifyingFactory::Term SimplifyingFactory::simplify_junction(Term a, Term b, Term neutral,
                                                               Term absorbing) {
  if (a == neutral || a == b) return b;
  if (b == neutral) return a;
  return a == absorbing || b == absorbing || are_complements(a, b) ? absorbing : nullptr;
}

SimplifyingFactory::Term SimplifyingFactory::simplify_iff(Term a, Term b) {
  if (a == b) return manager.make_true();
  if (are_complements(a, b)) return manager.make_false();
  if (a == manager.make_true()) return b;
  if (b == manager.make_true()) return a;
  if (a == manager.make_false()) return manager.make_not(b);
  if (b == manager.make_false()) return manager.make_not(a);
  return nullptr;
}

// Different numerals are different values, except in floating point, where both may be NaN.
SimplifyingFactory::Term SimplifyingFactory::simplify_equality(Term a, Term b) {
  if (a == b) return manager.make_true();
  if (!manager.is_number(a->symbol, nullptr) || !manager.is_number(b->symbol, nullptr)) {
    return nullptr;
  }
  const bool is_float = manager.is_fp_type(a->type(), nullptr, nullptr);
  return is_float ? nullptr : manager.make_false();
}

// Folds integers; fractions are left as they are.
SimplifyingFactory::Term SimplifyingFactory::simplify_arithmetic(const quill::Symbol* symbol,
                                                                 Term a, Term b) {
  const SymbolTag::tag tag = manager.get_tag(symbol);
  if (tag == SymbolTag::LEQ && a == b) return manager.make_true();
  QNumber x;
  QNumber y;
  if (manager.is_number(a->symbol, &x) && manager.is_number(b->symbol, &y) && x.is_integer() &&
      y.is_integer()) {
    GmpInteger p;
    GmpInteger q;
    set(p, x);
    set(q, y);
    if (tag == SymbolTag::LEQ) {
      return mpz_cmp(p, q) <= 0 ? manager.make_true() : manager.make_false();
    }
    if (symbol->get_output_type() != manager.get_int_type()) return nullptr;
    if (tag == SymbolTag::PLUS) {
      mpz_add(p, p, q);
    } else {
      mpz_mul(p, p, q);
    }
    return manager.make_number(QNumber(p));
  }
  if (tag == SymbolTag::LEQ) return nullptr;
  const long neutral = tag == SymbolTag::PLUS ? 0 : 1;
  const Term rest = is_number(a, neutral) ? b : is_number(b, neutral) ? a : nullptr;
  if (rest == nullptr || rest->type() != symbol->get_output_type()) {
    return nullptr;
  }
  return rest;
}

SimplifyingFactory::Term SimplifyingFactory::simplify_bit_vectors(const quill::Symbol* symbol,
                                                                  Term a, Term b,
                                                                  std::size_t width) {
  if (manager.is_number(a->symbol, nullptr) && manager.is_number(b->symbol, nullptr)) {
    return fold_bit_vectors(symbol, a, b, width);
  }
  switch (manager.get_tag(symbol)) {
    case SymbolTag::BV_ADD:
    case SymbolTag::BV_OR:
    case SymbolTag::BV_XOR:
      if (is_number(a, 0)) return b;
      if (is_number(b, 0)) return a;
      return nullptr;
    case SymbolTag::BV_SUB:
    case SymbolTag::BV_LSHL:
    case SymbolTag::BV_LSHR:
    case SymbolTag::BV_ASHR:
      return is_number(b, 0) ? a : nullptr;
    case SymbolTag::BV_AND:
      if (is_number(a, 0) || a == b) return a;
      return is_number(b, 0) ? b : nullptr;
    case SymbolTag::BV_MUL:
      if (is_number(a, 0) || is_number(b, 1)) return a;
      return is_number(b, 0) || is_number(a, 1) ? b : nullptr;
    case SymbolTag::BV_ULE:
    case SymbolTag::BV_SLE:
      return a == b ? manager.make_true() : nullptr;
    case SymbolTag::BV_ULT:
    case SymbolTag::BV_SLT:
      return a == b ? manager.make_false() : nullptr;
    default:
      return nullptr;
  }
}

SimplifyingFactory::Term SimplifyingFactory::fold_bit_vectors(const quill::Symbol* symbol, Term a,
                                                              Term b, std::size_t width) {
  QNumber x;
  QNumber y;
  manager.is_number(a->symbol, &x);
  manager.is_number(b->symbol, &y);
  const SymbolTag::tag tag = manager.get_tag(symbol);
  GmpInteger p;
  GmpInteger q;
  if (tag == SymbolTag::BV_SLT || tag == SymbolTag::BV_SLE) {
    set_signed(p, x, width);
    set_signed(q, y, width);
  } else {
    set(p, x);
    set(q, y);
  }
  const int order = mpz_cmp(p, q);
  const auto truth = [this](bool holds) {
    return holds ? manager.make_true() : manager.make_false();
  };
  switch (tag) {
    case SymbolTag::BV_ULT:
    case SymbolTag::BV_SLT:
      return truth(order < 0);
    case SymbolTag::BV_ULE:
    case SymbolTag::BV_SLE:
      return truth(order <= 0);
    case SymbolTag::BV_AND:
      mpz_and(p, p, q);
      break;
    case SymbolTag::BV_OR:
      mpz_ior(p, p, q);
      break;
    case SymbolTag::BV_XOR:
      mpz_xor(p, p, q);
      break;
    case SymbolTag::BV_ADD:
      mpz_add(p, p, q);
      break;
    case SymbolTag::BV_SUB:
      mpz_sub(p, p, q);
      break;
    case SymbolTag::BV_MUL:
      mpz_mul(p, p, q);
      break;
    default:
      return nullptr;
  }
  mpz_fdiv_r_2exp(p, p, width);
  return manager.make_bv_number(QNumber(p), width);
}

bool SimplifyingFactory::are_complements(Term a, Term b) const {
  return (manager.get_tag(a->symbol) == SymbolTag::NOT && a->args[0] == b) ||
         (manager.get_tag(b->symbol) == SymbolTag::NOT && b->args[0] == a);
}

bool SimplifyingFactory::is_number(Term t, long value) const {
  QNumber number;
  return manager.is_number(t->symbol, &number) && number == QNumber(value);
}
