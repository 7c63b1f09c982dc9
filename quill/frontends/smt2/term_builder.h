// Builds terms from values: translates SMT-LIB's operators into those of the manager.
//
// The manager has separate operators for Int and for Real, and its builders choose by the types of
// the arguments. Here the SMT-LIB sort decides: 1 < 2 in a logic of reals compares reals, although
// the manager's type of both numerals is Int.
//
// Int together with Real is read as Real throughout.

#ifndef QUILL_FRONTENDS_SMT2_TERM_BUILDER_H
#define QUILL_FRONTENDS_SMT2_TERM_BUILDER_H

#include <string>
#include <vector>

#include "quill/frontends/smt2/application.h"
#include "quill/frontends/smt2/expansion_budget.h"
#include "quill/frontends/smt2/lexer.h"
#include "quill/frontends/smt2/scopes.h"
#include "quill/frontends/smt2/theory_sorts.h"
#include "quill/frontends/smt2/undefined_functions.h"
#include "quill/frontends/smt2/value.h"
#include "quill/smtlib/logic.h"
#include "quill/terms/termmanager/term_manager.h"

namespace quill::smt2 {

class TermBuilder {
 public:
  TermBuilder(TermManager& manager_, Scopes& scopes, TheorySorts& sorts_, const Logic& logic_,
              const ReadOptions& options);
  TermBuilder(const TermBuilder&) = delete;
  TermBuilder& operator=(const TermBuilder&) = delete;

  TermManager& manager;
  TheorySorts& sorts;
  const Logic& logic;  // the logic in force, which set-logic and reset change
  UndefinedFunctions undefined_functions;
  ExpansionBudget budget;
  bool has_abs_of_reals = false;  // whether one has been built
  const DataType* const bool_type;
  const DataType* const int_type;
  const DataType* const real_type;

  // Returns an empty vector for the operator that is being built. All operators use the same
  // vector, so that they need not allocate.
  std::vector<const Term_*>& fresh_terms() {
    terms.clear();
    return terms;
  }

  bool is_arithmetic(const DataType* sort) const { return sort == int_type || sort == real_type; }

  // Whether a value of sort `given` is allowed where `asked` is required.
  bool fits(const DataType* given, const DataType* asked) const {
    return given == asked || (given == int_type && asked == real_type);
  }

  // ----- checks; they throw ParseError that names the operator and the argument -----------------

  void expect(const Application& application, size_t index, const DataType* sort) const;
  void expect_all(const Application& application, const DataType* sort) const;
  // The common sort of all arguments, Int or Real.
  const DataType* expect_arithmetic(const Application& application) const;
  // The common sort of the arguments from `first` on.
  const DataType* expect_common(const Application& application, size_t first) const;

  // The width of an argument, which must be a bit-vector.
  uint64_t expect_bit_vector(const Application& application, size_t index) const;

  // The value of index `number`, which must be a numeral that fits into 64 bits.
  uint64_t index(const Application& application, size_t number) const;

  [[noreturn]] void reject(const Application& application, const std::string& why) const;
  [[noreturn]] void reject_argument(const Application& application, size_t index,
                                    const std::string& expected) const;

  // ----- terms, for arguments of the given sort -------------------------------------------------

  Value boolean(const Term_* term) const { return {term, bool_type}; }
  const Term_* equal(const Term_* a, const Term_* b, const DataType* sort);
  const Term_* if_then_else(const Term_* condition, const Term_* a, const Term_* b,
                            const DataType* sort);
  const Term_* leq(const Term_* a, const Term_* b, const DataType* sort);
  const Term_* plus(const Term_* a, const Term_* b, const DataType* sort);
  const Term_* times(const Term_* a, const Term_* b, const DataType* sort);
  const Term_* negative(const Term_* a, const DataType* sort);

  // to_held converts a term of the given sort that is an index or element of an array to the type
  // that the manager holds, and from_held converts it back:
  //
  //   Bool      (ite b #b1 #b0), but #b1 and #b0 for true and false, and t for (= t #b1), which is
  //             what from_held makes of t
  //   others    the term itself
  const Term_* to_held(const Term_* t, const DataType* sort);
  const Term_* from_held(const Term_* t, const DataType* sort);

  // A numeral or decimal from an input.
  Value number(const Token& token);
  // The bit-vector that a binary or hexadecimal token spells.
  Value bits(const Token& token);
  // (_ bvN width), with N in decimal.
  Value bit_vector_number(const std::string& digits, uint64_t width, Position position);

 private:
  // The two forms of an operator of the manager.
  struct Pair {
    const Symbol* integer;
    const Symbol* rational;
  };
  Pair standard(const char* base_name) const;
  const Term_* bit(bool is_set);

  const Pair leq_symbols;
  const Pair plus_symbols;
  const Pair times_symbols;
  std::vector<const Term_*> terms;
};

}  // namespace quill::smt2

#endif
