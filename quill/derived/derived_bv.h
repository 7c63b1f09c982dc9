// Operators of bit-vectors that SMT-LIB has and the term manager has no symbol for. Each is built
// from symbols that the manager has; see derived.h.
//
// Operators on two vectors take two of the same width w in bits, and give Bool unless their comment
// says otherwise. 0 is the numeral zero of the width in question, and (= a b) the equality of
// bit-vectors.

#ifndef QUILL_DERIVED_DERIVED_BV_H
#define QUILL_DERIVED_DERIVED_BV_H

#include <cstddef>
#include <initializer_list>

#include "quill/terms/term.h"

namespace quill {

class TermManager;

// Of width w:  a nand b is not (a and b);  a nor b is not (a or b);  a xnor b is not (a xor b).
const Term_* make_bv_nand(TermManager& m, const Term_* a, const Term_* b);
const Term_* make_bv_nor(TermManager& m, const Term_* a, const Term_* b);
const Term_* make_bv_xnor(TermManager& m, const Term_* a, const Term_* b);

// The binary builders over a list of at least one term, folded from the left: (a, b, c) gives ((a
// op b) op c), and one term gives itself. Throw error for an empty list, which has no width.
const Term_* make_bv_and(TermManager& m, TermSpan terms);
const Term_* make_bv_or(TermManager& m, TermSpan terms);
const Term_* make_bv_xor(TermManager& m, TermSpan terms);
const Term_* make_bv_add(TermManager& m, TermSpan terms);
const Term_* make_bv_mul(TermManager& m, TermSpan terms);
const Term_* make_bv_concat(TermManager& m, TermSpan terms);

// The same for lists written in place: make_bv_add(m, {a, b, c}).
inline const Term_* make_bv_and(TermManager& m, std::initializer_list<const Term_*> terms) {
  return make_bv_and(m, TermSpan(terms.begin(), terms.size()));
}
inline const Term_* make_bv_or(TermManager& m, std::initializer_list<const Term_*> terms) {
  return make_bv_or(m, TermSpan(terms.begin(), terms.size()));
}
inline const Term_* make_bv_xor(TermManager& m, std::initializer_list<const Term_*> terms) {
  return make_bv_xor(m, TermSpan(terms.begin(), terms.size()));
}
inline const Term_* make_bv_add(TermManager& m, std::initializer_list<const Term_*> terms) {
  return make_bv_add(m, TermSpan(terms.begin(), terms.size()));
}
inline const Term_* make_bv_mul(TermManager& m, std::initializer_list<const Term_*> terms) {
  return make_bv_mul(m, TermSpan(terms.begin(), terms.size()));
}
inline const Term_* make_bv_concat(TermManager& m, std::initializer_list<const Term_*> terms) {
  return make_bv_concat(m, TermSpan(terms.begin(), terms.size()));
}

// Unsigned:  a >= b is b <= a;  a > b is b < a.  Likewise for signed numbers.
const Term_* make_bv_uge(TermManager& m, const Term_* a, const Term_* b);
const Term_* make_bv_ugt(TermManager& m, const Term_* a, const Term_* b);
const Term_* make_bv_sge(TermManager& m, const Term_* a, const Term_* b);
const Term_* make_bv_sgt(TermManager& m, const Term_* a, const Term_* b);

// Of width w: the signed remainder with the sign of the divisor b. With r = srem(a, b)
//
//   ite((= r 0) or (0 sle (r xor b)), r, r + b)
//
// The result is a for b = 0, as for srem.
const Term_* make_bv_smod(TermManager& m, const Term_* a, const Term_* b);

// Of width 1: whether some bit is set, and whether all bits are:
//
//   redor(a)    not comp(a, 0)
//   redand(a)   comp(a, not 0)
const Term_* make_bv_redor(TermManager& m, const Term_* a);
const Term_* make_bv_redand(TermManager& m, const Term_* a);

// Of width n * w: the vector repeated n times, for n of at least 1.
//
//   repeat(1, a)        a
//   repeat(2k, a)       concat(repeat(k, a), repeat(k, a))
//   repeat(2k + 1, a)   concat(a, repeat(2k, a))
//
// Throws for n = 0, and when n * w is not a valid width.
const Term_* make_bv_repeat(TermManager& m, size_t n, const Term_* a);

// Whether the exact result does not fit into w bits, unsigned (u) or signed (s):
//
//   nego(a)      (a slt 0) and (-a slt 0)
//   uaddo(a, b)  (a + b) ult a
//   saddo(a, b)  ((a xor s) and (b xor s)) slt 0     with s = a + b
//   usubo(a, b)  a ult b
//   ssubo(a, b)  ((a xor b) and (a xor d)) slt 0     with d = a - b
//   umulo(a, b)  not (= high 0)      high: the upper half of the product of a and b, each extended
//                                    by w zeros
//   smulo(a, b)  not (= p x)         p: the product of a and b, each extended by w copies of its
//                                    sign; x: a * b, extended likewise
//   sdivo(a, b)  nego(a) and (= b (not 0))
//
// umulo and smulo throw when 2 * w is not a valid width.
const Term_* make_bv_nego(TermManager& m, const Term_* a);
const Term_* make_bv_uaddo(TermManager& m, const Term_* a, const Term_* b);
const Term_* make_bv_saddo(TermManager& m, const Term_* a, const Term_* b);
const Term_* make_bv_usubo(TermManager& m, const Term_* a, const Term_* b);
const Term_* make_bv_ssubo(TermManager& m, const Term_* a, const Term_* b);
const Term_* make_bv_umulo(TermManager& m, const Term_* a, const Term_* b);
const Term_* make_bv_smulo(TermManager& m, const Term_* a, const Term_* b);
const Term_* make_bv_sdivo(TermManager& m, const Term_* a, const Term_* b);

}  // namespace quill

#endif
