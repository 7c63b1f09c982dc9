// The expansions of derived_bv.h.

#include "quill/derived/derived_bv.h"

#include <cstdint>
#include <vector>

#include "quill/terms/termmanager/misuse_checks.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill {

namespace {

size_t width_of(const TermManager& m, const Term_* a) {
  require_own(m, a);
  size_t width = 0;
  if (!m.is_bv_type(a->type(), &width)) {
    throw TermManager::error("type error. term ")
        << m.to_shallow_str_literal(a) << " is not a bit-vector";
  }
  return width;
}

const Term_* zero_like(TermManager& m, const Term_* a) {
  return m.make_bv_number(QNumber(), width_of(m, a));
}

const Term_* ones_like(TermManager& m, const Term_* a) { return m.make_bv_not(zero_like(m, a)); }

const Term_* is_negative(TermManager& m, const Term_* a) {
  return m.make_bv_slt(a, zero_like(m, a));
}

// The width of a, after checking that n times that many bits are a width, too.
size_t multipliable_width(const TermManager& m, const Term_* a, size_t n) {
  const size_t width = width_of(m, a);
  if (n == 0) throw TermManager::error("a bit-vector cannot be repeated no times");
  if (width > SIZE_MAX / n) {
    throw TermManager::error("a bit-vector of ") << n << " times " << width << " bits is too wide";
  }
  return width;
}

using Builder = const Term_* (TermManager::*)(const Term_*, const Term_*);

const Term_* fold(TermManager& m, TermSpan terms, Builder builder, const char* operation) {
  require_own(m, terms);
  if (terms.empty()) throw TermManager::error(operation) << " needs at least one term";
  width_of(m, terms[0]);
  const Term_* result = terms[0];
  for (const Term_* t : terms.subspan(1)) result = (m.*builder)(result, t);
  return result;
}

}  // namespace

const Term_* make_bv_and(TermManager& m, TermSpan terms) {
  return fold(m, terms, &TermManager::make_bv_and, "make_bv_and");
}

const Term_* make_bv_or(TermManager& m, TermSpan terms) {
  return fold(m, terms, &TermManager::make_bv_or, "make_bv_or");
}

const Term_* make_bv_xor(TermManager& m, TermSpan terms) {
  return fold(m, terms, &TermManager::make_bv_xor, "make_bv_xor");
}

const Term_* make_bv_add(TermManager& m, TermSpan terms) {
  return fold(m, terms, &TermManager::make_bv_add, "make_bv_add");
}

const Term_* make_bv_mul(TermManager& m, TermSpan terms) {
  return fold(m, terms, &TermManager::make_bv_mul, "make_bv_mul");
}

const Term_* make_bv_concat(TermManager& m, TermSpan terms) {
  return fold(m, terms, &TermManager::make_bv_concat, "make_bv_concat");
}

const Term_* make_bv_nand(TermManager& m, const Term_* a, const Term_* b) {
  require_own(m, {a, b});
  return m.make_bv_not(m.make_bv_and(a, b));
}

const Term_* make_bv_nor(TermManager& m, const Term_* a, const Term_* b) {
  require_own(m, {a, b});
  return m.make_bv_not(m.make_bv_or(a, b));
}

const Term_* make_bv_xnor(TermManager& m, const Term_* a, const Term_* b) {
  require_own(m, {a, b});
  return m.make_bv_not(m.make_bv_xor(a, b));
}

const Term_* make_bv_uge(TermManager& m, const Term_* a, const Term_* b) {
  return m.make_bv_ule(b, a);
}

const Term_* make_bv_ugt(TermManager& m, const Term_* a, const Term_* b) {
  return m.make_bv_ult(b, a);
}

const Term_* make_bv_sge(TermManager& m, const Term_* a, const Term_* b) {
  return m.make_bv_sle(b, a);
}

const Term_* make_bv_sgt(TermManager& m, const Term_* a, const Term_* b) {
  return m.make_bv_slt(b, a);
}

const Term_* make_bv_smod(TermManager& m, const Term_* a, const Term_* b) {
  require_own(m, {a, b});
  const Term_* r = m.make_bv_srem(a, b);
  const Term_* zero = zero_like(m, a);
  const Term_* is_zero = m.make_equal(r, zero);
  const Term_* has_sign_of_b = m.make_bv_sle(zero, m.make_bv_xor(r, b));
  const Term_* adjusted = m.make_bv_add(r, b);
  return m.make_term_ite(m.make_or(is_zero, has_sign_of_b), r, adjusted);
}

const Term_* make_bv_redor(TermManager& m, const Term_* a) {
  require_own(m, a);
  return m.make_bv_not(m.make_bv_comp(a, zero_like(m, a)));
}

const Term_* make_bv_redand(TermManager& m, const Term_* a) {
  return m.make_bv_comp(a, ones_like(m, a));
}

const Term_* make_bv_repeat(TermManager& m, size_t n, const Term_* a) {
  require_own(m, a);
  multipliable_width(m, a, n);
  size_t bit = 1;
  while (bit <= n / 2) bit *= 2;
  const Term_* result = a;
  while (bit > 1) {
    bit /= 2;
    result = m.make_bv_concat(result, result);
    if ((n & bit) != 0) result = m.make_bv_concat(a, result);
  }
  return result;
}

const Term_* make_bv_nego(TermManager& m, const Term_* a) {
  require_own(m, a);
  const Term_* negative = is_negative(m, a);
  return m.make_and(negative, is_negative(m, m.make_bv_neg(a)));
}

const Term_* make_bv_uaddo(TermManager& m, const Term_* a, const Term_* b) {
  require_own(m, {a, b});
  return m.make_bv_ult(m.make_bv_add(a, b), a);
}

const Term_* make_bv_saddo(TermManager& m, const Term_* a, const Term_* b) {
  require_own(m, {a, b});
  const Term_* s = m.make_bv_add(a, b);
  const Term_* differs_from_a = m.make_bv_xor(a, s);
  return is_negative(m, m.make_bv_and(differs_from_a, m.make_bv_xor(b, s)));
}

const Term_* make_bv_usubo(TermManager& m, const Term_* a, const Term_* b) {
  return m.make_bv_ult(a, b);
}

const Term_* make_bv_ssubo(TermManager& m, const Term_* a, const Term_* b) {
  require_own(m, {a, b});
  const Term_* d = m.make_bv_sub(a, b);
  const Term_* signs_differ = m.make_bv_xor(a, b);
  return is_negative(m, m.make_bv_and(signs_differ, m.make_bv_xor(a, d)));
}

const Term_* make_bv_umulo(TermManager& m, const Term_* a, const Term_* b) {
  require_own(m, {a, b});
  const size_t w = multipliable_width(m, a, 2);
  const Term_* wide_a = m.make_bv_zero_extend(w, a);
  const Term_* product = m.make_bv_mul(wide_a, m.make_bv_zero_extend(w, b));
  const Term_* high = m.make_bv_extract(2 * w - 1, w, product);
  return m.make_not(m.make_equal(high, zero_like(m, high)));
}

const Term_* make_bv_smulo(TermManager& m, const Term_* a, const Term_* b) {
  require_own(m, {a, b});
  const size_t w = multipliable_width(m, a, 2);
  const Term_* wide_a = m.make_bv_sign_extend(w, a);
  const Term_* product = m.make_bv_mul(wide_a, m.make_bv_sign_extend(w, b));
  const Term_* wrapped = m.make_bv_sign_extend(w, m.make_bv_mul(a, b));
  return m.make_not(m.make_equal(product, wrapped));
}

const Term_* make_bv_sdivo(TermManager& m, const Term_* a, const Term_* b) {
  require_own(m, {a, b});
  const Term_* is_least = make_bv_nego(m, a);
  return m.make_and(is_least, m.make_equal(b, ones_like(m, b)));
}

}  // namespace quill
