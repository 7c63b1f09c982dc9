// A term: one node of the shared graph, a symbol applied to argument terms.
//
// Representation: one allocation that holds the header and the arguments. Terms are unique within
// their bank (see term_bank.h, which makes and frees them) and never change, so two terms are equal
// exactly when their addresses are.

#ifndef QUILL_TERMS_TERM_H
#define QUILL_TERMS_TERM_H

#include <cstdint>
#include <iosfwd>
#include <span>
#include <string>

#include "quill/terms/symbol.h"
#include "quill/utils/hash.h"

namespace quill {

class Term_ {
 public:
  Term_(const Term_&) = delete;
  Term_& operator=(const Term_&) = delete;

  // Unique among the live terms of one bank, dense from 0, and constant while the term lives.
  uint64_t id;

  const Symbol* symbol;

  // As many as the symbol's arity.
#ifdef __clang__
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wc99-extensions"
#endif
  __extension__ const Term_* args[];
#ifdef __clang__
#pragma clang diagnostic pop
#endif

  // The type of the term: the output type of its symbol.
  const DataType* type() const { return symbol->get_output_type(); }

  std::span<const Term_* const> arguments() const { return {args, symbol->arity}; }

  // The whole term in prefix notation, with the names of its symbols as they are stored; a constant
  // prints its name. A non-constant subterm that occurs again is printed once, as #ID=(...), and as
  // #ID from then on, so the text is linear in the number of distinct subterms and their arguments.
  std::string to_str() const;

  // One level: arguments that are constants by name, others as #ID; three dots after eight
  // arguments.
  std::string to_shallow_str() const;

 private:
  friend class TermBank;

  Term_(uint64_t id_, const Symbol* symbol_) : id(id_), symbol(symbol_) {}
  ~Term_() = default;
};

// One level of the term as to_shallow_str gives it, cut off after 200 bytes; "null" for null.
std::ostream& operator<<(std::ostream& out, const Term_* t);

// Terms in a row: a vector, an array, or the arguments of a term.
using TermSpan = std::span<const Term_* const>;

// Whether the one term is older than the other, for ordered containers. A collection may give the
// ids of freed terms to later ones.
struct OlderTerm {
  bool operator()(const Term_* a, const Term_* b) const { return a->id < b->id; }
};

// Terms hash by their id, so that the order of tables keyed by terms does not depend on addresses.
template <>
struct Hasher<const Term_*> {
  uint64_t operator()(const Term_* t) const { return t->id; }
};

}  // namespace quill

#endif
