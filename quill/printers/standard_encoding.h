// Rewrites terms for readers of plain SMT-LIB 2.6: makes copies in which operators that the
// standard does not have are expressed by operators that it has.
//
//   int_from_sbv b    (- (bv2nat b) (ite (= ((_ extract w-1 w-1) b) #b1) 2^w 0))
//   int_to_bv t       (concat b_w-1 ... b_0), where q_0 is t, q_i+1 is (div q_i 2) and b_i is
//                     (ite (= (mod q_i 2) 1) #b1 #b0)
//                     if t is itself the value of a bit-vector: that bit-vector, extended or
//                     truncated
//   fp_as_ieeebv f    a constant, defined by the assertion of
//                     (= ((_ to_fp e s) constant) f), (or (not (fp.isNaN f)) (= constant nan))
//
// for numbers of w bits. Each value has one constant, and each format has a constant nan, which
// holds the bits of every NaN: both may be any bits of a NaN. The constants come from
// BitDefinitions; whoever writes the copies must first write the declarations and assertions of the
// constants.
//
// (mod t n) means the expansion of derived.h. Halving needs no numbers larger than t itself, so
// that the text of int_to_bv is linear in w, and solvers cope better with it than with the
// remainders modulo 2, 4, 8 and so on. The text of int_from_sbv contains the number 2^w, which is
// as long as w. Both operators are left as they are above max_encoded_width bits and for 0 bits.
// Each of the three operators is also left as it is if its operand does not have the type that it
// takes; managers that check nothing can build such terms.
//
// The copies are in a manager that the encoding owns, so the manager of the terms is only read.
// Copies of symbols get the names of their originals but give them up at once. Therefore symbols
// that share a name, of which all but one were freed in the manager of the terms, remain distinct,
// and operators and numerals that the encoding makes find no other symbol in their place. A symbol
// that somebody registered by add_interpreted_symbol cannot be copied, because nobody knows what it
// means; it is registered again with its name, type and tag, which is all that its text depends on.
//
// Cost: time and memory linear in the number of distinct subterms and in the widths of the
// rewritten operators; nothing is recursive. Each encoding makes a manager.

#ifndef QUILL_PRINTERS_STANDARD_ENCODING_H
#define QUILL_PRINTERS_STANDARD_ENCODING_H

#include <cstddef>
#include <string>
#include <vector>

#include "quill/printers/bit_definitions.h"
#include "quill/terms/term.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/guarded_table.h"
#include "quill/utils/hash_map.h"
#include "quill/utils/name_hash.h"

namespace quill {

class StandardEncoding {
 public:
  static constexpr size_t max_encoded_width = size_t{1} << 16;

  // What must be rewritten in a term.
  struct Need {
    bool any = false;
    // The values whose bits are taken, each once, after the values below it.
    std::vector<const Term_*> bit_values;
    // The term and everything below it, operands before operators.
    std::vector<const Term_*> terms;
  };
  static Need need_of(const TermManager& manager, const Term_* root);

  // Whether applications of the symbol to operands of its types are rewritten, and whether this
  // term is.
  static bool is_rewritten(const TermManager& manager, const Symbol* s);
  static bool is_rewritten(const TermManager& manager, const Term_* t);

  // Whether the term is rewritten as a constant that holds the bits of its argument; the argument
  // then does not appear.
  static bool takes_bits(const TermManager& manager, const Term_* t);

  // Both must outlive the encoding.
  StandardEncoding(const TermManager& source_, const BitDefinitions& bits_);

  // The copy of a term. All values whose bits are taken in it must be defined.
  const Term_* encode(const Term_* root);

  // The conjunction of `others`, unless null, and the condition that defines the constant for the
  // bits of this value.
  const Term_* add_defining_condition(const Term_* others, const Term_* value);

  // The terms that were copied, operands before operators, without terms that occur only below the
  // operand of fp_as_ieeebv.
  const std::vector<const Term_*>& copied() const { return originals; }
  const Term_* copy_of(const Term_* t) const { return copies.find(t)->second; }

  // The manager of the copies.
  TermManager& manager() { return target; }

 private:
  using Symbols = std::vector<const Symbol*>;

  void copy_new_symbols(const Symbols& new_symbols);
  void copy_operators(const Symbols& operators);
  const Symbol* copy_by_hand(const Symbol* s);
  const Symbol* copy_numeral(const Symbol* s, const QNumber& value);
  const Symbol* make_nameless(const std::string& name, const DataType* type);
  const Symbol* find_same(const Symbol* s) const;
  bool is_same(const Symbol* copy, const Symbol* s) const;
  void free_name(const char* name);
  const Term_* rewrite(const Term_* t);
  const Term_* bits_constant(const BitDefinitions::Definition& definition);
  const Term_* signed_value(const Term_* b, size_t width);
  const Term_* resized(const Term_* value, size_t width);
  const Term_* low_bits(const Term_* number, size_t width);

  const TermManager& source;
  const BitDefinitions& bits;
  TermManager target;
  TermManager::TermMap copies;
  std::vector<const Term_*> originals;
  hsh::HashMap<const Symbol*, const Symbol*> symbols;  // to their copies
  hsh::HashMap<const DataType*, const DataType*> types;
  hsh::GuardedMap<std::string, const Term_*, NameHash> constants;  // of the definitions, by name
};

}  // namespace quill

#endif
