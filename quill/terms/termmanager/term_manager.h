// The term manager makes and owns the types, symbols and terms of a solver instance.
//
//   TermManager m;
//   const Term_* x = m.make_constant(m.make_symbol("x", m.get_int_type()));
//   const Term_* bound = m.make_leq(x, m.make_number(7));
//   assert(bound == m.make_leq(x, m.make_number(7)));  // terms are shared
//   std::cout << outterm(&m, bound) << '\n';           // (<= x 7)
//
// docs/cheat_sheet.md lists the call for each operator of SMT-LIB. Operators that have no symbol of
// their own are free functions in quill/derived/, among them lists, implication, distinct,
// if-then-else and equality over any type, bvuge and fp.geq.
//
// The manager owns everything it returns. Pointers stay valid until it is destroyed, unless
// free_type or gc frees the object; equal requests return equal pointers. Destruction frees the
// terms, then the symbols, then the types, and then the tables. A manager is neither copied nor
// moved.
//
// Requests are checked before anything changes. A refused request throws TermManager::error, or
// Exception where a member says so; the text says what is wrong. A request that runs out of memory
// throws std::bad_alloc. Either way all stores and tables are as they were before, with two
// exceptions: the builder of an operator of operator_families makes the operator's symbol and its
// types before it checks the operands, and substitution and copying keep what they have made so
// far. Builders do not simplify: they choose the symbol and pass the arguments on in the given
// order.
//
// Callers must not pass an object that belongs to another manager or was freed, nor null where the
// member does not say what null means. Debug builds check this in every call and abort with a
// message (see misuse_checks.h).
//
// Only one thread may use a manager at a time. A delegate, an overridden make_term and the callback
// of a visitor may call back into it (see term_factory.h); the other state that builders share (the
// name buffer, the list of types) is never in use while such code runs.

#ifndef QUILL_TERMS_TERMMANAGER_TERM_MANAGER_H
#define QUILL_TERMS_TERMMANAGER_TERM_MANAGER_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "quill/terms/data_type.h"
#include "quill/terms/signature.h"
#include "quill/terms/symbol.h"
#include "quill/terms/term.h"
#include "quill/terms/term_bank.h"
#include "quill/terms/termmanager/array_symbols.h"
#include "quill/terms/termmanager/family_keys.h"
#include "quill/terms/termmanager/operator.h"
#include "quill/terms/termmanager/operator_family.h"
#include "quill/terms/termmanager/recent_numerals.h"
#include "quill/terms/termmanager/symbol_tag.h"
#include "quill/terms/termmanager/term_factory.h"
#include "quill/terms/termmanager/two_way_map.h"
#include "quill/terms/termmanager/type_keyed_symbols.h"
#include "quill/terms/type_universe.h"
#include "quill/utils/exception.h"
#include "quill/utils/guarded_table.h"
#include "quill/utils/hash_map.h"
#include "quill/utils/heap.h"
#include "quill/utils/ieee_float.h"
#include "quill/utils/qnumber.h"

namespace quill {

class TermManager : public TermFactory {
 public:
  // An ill-typed or unsupported request.
  class error : public Exception {
   public:
    using Exception::Exception;
  };

  using BVIndex1 = FamilyKeys::BVIndex1;
  using BVIndex2 = FamilyKeys::BVIndex2;
  using ArrIndex = FamilyKeys::ArrIndex;
  using FPFormatCast = FamilyKeys::FPFormatCast;

  // Hashes and compares keys that point to numbers by value.
  using NumberCache_hash_eq = Hasher<const QNumber*>;

  //---------------------------------------------------------------------------------------------
  // Construction, stores and switches, in 'standard_signature.cpp'

  // Makes the standard signature: the types Bool, Real and Int (a subtype of Real), the
  // connectives, linear arithmetic and the rounding modes.
  TermManager();
  ~TermManager() override;
  TermManager(const TermManager&) = delete;
  TermManager& operator=(const TermManager&) = delete;

  const TypeUniverse* get_universe() const { return universe.get(); }
  const Signature* get_signature() const { return signature.get(); }
  const TermBank* get_bank() const { return bank.get(); }

  // Whether requests are checked; initially they are. Without checks the manager builds even
  // ill-typed terms, out-of-range numerals and formats that are too small, and the caller must make
  // sure that the number of arguments is right.
  void set_typecheck_enabled(bool enabled) { typecheck_enabled = enabled; }
  bool get_typecheck_enabled() const { return typecheck_enabled; }

  // A factory to ask before a term is built (see TermFactory), and whether it is asked; initially
  // it is not. The manager does not own it.
  void set_delegate(TermFactory* factory) { delegate = factory; }
  TermFactory* get_delegate() const { return delegate; }
  void set_delegate_enabled(bool enabled) { delegate_enabled = enabled; }
  bool get_delegate_enabled() const { return delegate_enabled; }

  // Whether get_function_type refuses Bool arguments; initially it does.
  void set_reject_bool_arguments(bool reject) { reject_bool_arguments = reject; }
  bool get_reject_bool_arguments() const { return reject_bool_arguments; }

  //---------------------------------------------------------------------------------------------
  // Interpreted symbols and classification, in 'classification.cpp'

  // Registers `name`, between backquotes, as a symbol of the theories. Registering it again
  // replaces the tag. Throws Exception if the symbol exists with another type.
  const Symbol* add_interpreted_symbol(const char* name, const DataType* type, SymbolTag::tag tag);

  // Whether the symbol has a fixed meaning: a symbol of the theories or a numeral.
  bool is_interpreted(const Symbol* s) const;
  // Whether the symbol takes arguments and has no fixed meaning. False for constants.
  bool is_uninterpreted_function(const Symbol* s) const;

  // Whether the arity is 0 and the name begins with an apostrophe.
  bool is_variable(const Symbol* s) const;
  // Whether the arity is 0 and the symbol is neither interpreted nor a variable.
  bool is_constant(const Symbol* s) const;

  // NONE for a symbol without a tag.
  SymbolTag::tag get_tag(const Symbol* s) const;

  //---------------------------------------------------------------------------------------------
  // Types, in 'types.cpp'
  //
  // Equal requests return the same object, so types can be compared by address.

  const DataType* get_bool_type() const { return bool_type; }
  const DataType* get_rat_type() const { return rat_type; }  // SMT-LIB: Real
  const DataType* get_int_type() const { return int_type; }
  const DataType* get_fprounding_type() const { return fprounding_type; }

  // The simple type of this name. With only_existing, null unless get_simple_type has made it
  // before.
  const DataType* get_simple_type(const std::string& name, bool only_existing);

  // The simple type, named by w in decimal, that is the width parameter of bit-vector types.
  const DataType* get_type_from_width(size_t w);
  // The width of a type made by get_type_from_width; 0 for any other type, so for (_ BitVec 8),
  // too: its width is bv_width.
  size_t get_width_from_type(const DataType* t) const;

  const DataType* get_bv_type(size_t w);

  // Binary floating-point values with e exponent bits and m significand bits, not counting the
  // hidden bit (IEEE 754-2019; in SMT-LIB (_ FloatingPoint e m+1)). Throws if checks are on and e
  // or m is below 2.
  const DataType* get_fp_type(size_t e, size_t m);

  // Throws for Bool and for function types.
  const DataType* get_array_type(const DataType* index, const DataType* element);

  // Throws if an argument or the result has a function type, and for Bool arguments while they are
  // rejected. Without arguments the result is not a function type to is_function_type, and its
  // symbols are constants of the result type.
  const DataType* get_function_type(const std::vector<const DataType*>& args,
                                    const DataType* result);

  // Any other compound type. Throws if a component is Bool or a function type.
  const DataType* get_compound_type(const std::vector<const DataType*>& components);

  // Recognisers. Outputs may be null, and are written only if the answer is true. A hand-made
  // compound with the head of a bit-vector or floating-point type and some other type as its
  // parameter is recognised, with widths of 0.
  bool is_function_type(const DataType* t, std::vector<const DataType*>* args,
                        const DataType** result) const;
  bool is_bv_type(const DataType* t, size_t* width) const;
  bool is_fp_type(const DataType* t, size_t* e, size_t* m) const;
  bool is_array_type(const DataType* t, const DataType** index, const DataType** element) const;

  bool is_subtype(const DataType* a, const DataType* b) const;
  // The larger of two related types. Throws if neither is a subtype of the other.
  const DataType* get_supertype(const DataType* a, const DataType* b) const;

  // Whether the type is Bool, the rounding-mode type or a bit-vector type, and how many values it
  // has. For a floating-point type the answer is false, but the number of bit patterns is written.
  // size may be null.
  bool is_finite_domain_type(const DataType* t, QNumber* size) const;

  // Frees a type. It is misuse if another type or a symbol uses the type; so it is for a standard
  // type, which release builds keep. The cost does not depend on how many types and symbols there
  // are.
  void free_type(const DataType* t);

  //---------------------------------------------------------------------------------------------
  // User symbols and their terms, in 'symbols.cpp'

  // Throws if the name is empty, begins with a backquote or contains a NUL byte. Throws Exception
  // if a symbol of another type has the name (see Signature::add_symbol).
  const Symbol* make_symbol(const std::string& name, const DataType* type);

  // A symbol whose name is the first free one of name, name_0, name_1 and so on.
  const Symbol* make_unique_symbol(const std::string& name, const DataType* type);

  // A constant whose name is an apostrophe and a number that is never used again, even if the
  // request fails. Throws for a function type, and if a symbol already has the name. The delegate
  // is not asked.
  const Term_* make_fresh_variable(const DataType* type);

  const Term_* make_constant(const Symbol* s);
  const Term_* make_uninterpreted_function(const Symbol* s, const std::vector<const Term_*>& args);

  // Releases the name of the symbol, so that it can be used again. The symbol itself and its terms
  // live on. A second call does nothing; it is misuse once another symbol has the name.
  void free_symbol(const Symbol* s);

  // The term with this id, or null. A linear search, for debugging.
  const Term_* debug_get_term(unsigned long id) const;

  //---------------------------------------------------------------------------------------------
  // Terms of the core and of arithmetic, in 'make_term.cpp'

  // Checks the request, asks the delegate if one is enabled, and builds the term. While checks are
  // on, throws if the number of arguments or the type of an argument is wrong. All builders except
  // make_true, make_false and those of numerals and fresh variables do the same, and call this
  // member if it is overridden or a delegate is enabled.
  const Term_* make_term(const Symbol* s, const std::vector<const Term_*>& args) override;

  // The last step of make_term. Neither checks the request nor asks the delegate.
  const Term_* do_make_term(const Symbol* s, const std::vector<const Term_*>& args);

  // Throws an error that names the operation `where`, unless the type of t is `expected` or a
  // subtype of it. Otherwise returns true.
  bool typecheck(const Term_* t, const DataType* expected, const char* where) const;
  // The same for the number and the types of all arguments of an application. Does nothing when
  // checks are off.
  void typecheck(const Symbol* s, const std::vector<const Term_*>& args);

  // An application of any binary symbol. Type errors name the operation opname.
  const Term_* make_bin(const Symbol* s, const Term_* a, const Term_* b, const char* opname);

  const Term_* make_true() const { return true_term; }
  const Term_* make_false() const { return false_term; }
  const Term_* make_and(const Term_* a, const Term_* b);
  const Term_* make_or(const Term_* a, const Term_* b);
  const Term_* make_iff(const Term_* a, const Term_* b);
  const Term_* make_not(const Term_* a);

  // Over Int if both arguments are Int, over Real otherwise.
  const Term_* make_leq(const Term_* a, const Term_* b);
  const Term_* make_plus(const Term_* a, const Term_* b);
  const Term_* make_times(const Term_* a, const Term_* b);
  // The greatest integer that is at most a (SMT-LIB: to_int).
  const Term_* make_floor(const Term_* a);

  // Equality has one symbol for each type except Bool; for Bool use make_iff, and where the type
  // may be any, make_equals (quill/derived/derived.h). The type of `a`
  // decides; Int and Real are compared over Real. Throws for Bool and for unrelated types, and then
  // makes nothing.
  const Symbol* make_equality_symbol(const DataType* t);
  const Term_* make_equal(const Term_* a, const Term_* b);

  // If-then-else has one symbol for each type except Bool; for Bool, and where the type may be any,
  // use make_ite (quill/derived/derived.h). The type
  // of then_term decides; if one branch is Int and the other Real, it is Real.
  const Symbol* make_term_ite_symbol(const DataType* t);
  const Term_* make_term_ite(const Term_* cond, const Term_* then_term, const Term_* else_term);
  bool is_term_ite(const Symbol* s, const DataType** out_type) const;

  //---------------------------------------------------------------------------------------------
  // Bit-vectors, in 'bv_operators.cpp'
  //
  // Each operator has three members:
  //
  //   make_bv_X_symbol(width)   the symbol for bit-vectors of this width, made by the first request
  //   make_bv_X(a, b)           the term; the first operand must be a bit-vector and gives the
  //                             width; make_term checks the other one after the symbol is made
  //   is_bv_X(s, &width)        whether s is such a symbol, and its width; width may be null, and
  //                             is written only if the answer is true
  //
  // The meanings are those of the SMT-LIB 2.6 theory FixedSizeBitVectors (shifts: lshl is bvshl).
  // The comparisons ult, slt, ule and sle give Bool, comp gives a bit-vector of width 1.
  const Symbol* make_bv_not_symbol(size_t width);
  const Term_* make_bv_not(const Term_* t);
  bool is_bv_not(const Symbol* s, size_t* width) const;
  const Symbol* make_bv_and_symbol(size_t width);
  const Term_* make_bv_and(const Term_* a, const Term_* b);
  bool is_bv_and(const Symbol* s, size_t* width) const;
  const Symbol* make_bv_or_symbol(size_t width);
  const Term_* make_bv_or(const Term_* a, const Term_* b);
  bool is_bv_or(const Symbol* s, size_t* width) const;
  const Symbol* make_bv_xor_symbol(size_t width);
  const Term_* make_bv_xor(const Term_* a, const Term_* b);
  bool is_bv_xor(const Symbol* s, size_t* width) const;
  const Symbol* make_bv_ult_symbol(size_t width);
  const Term_* make_bv_ult(const Term_* a, const Term_* b);
  bool is_bv_ult(const Symbol* s, size_t* width) const;
  const Symbol* make_bv_slt_symbol(size_t width);
  const Term_* make_bv_slt(const Term_* a, const Term_* b);
  bool is_bv_slt(const Symbol* s, size_t* width) const;
  const Symbol* make_bv_ule_symbol(size_t width);
  const Term_* make_bv_ule(const Term_* a, const Term_* b);
  bool is_bv_ule(const Symbol* s, size_t* width) const;
  const Symbol* make_bv_sle_symbol(size_t width);
  const Term_* make_bv_sle(const Term_* a, const Term_* b);
  bool is_bv_sle(const Symbol* s, size_t* width) const;
  const Symbol* make_bv_comp_symbol(size_t width);
  const Term_* make_bv_comp(const Term_* a, const Term_* b);
  bool is_bv_comp(const Symbol* s, size_t* width) const;
  const Symbol* make_bv_neg_symbol(size_t width);
  const Term_* make_bv_neg(const Term_* t);
  bool is_bv_neg(const Symbol* s, size_t* width) const;
  const Symbol* make_bv_add_symbol(size_t width);
  const Term_* make_bv_add(const Term_* a, const Term_* b);
  bool is_bv_add(const Symbol* s, size_t* width) const;
  const Symbol* make_bv_sub_symbol(size_t width);
  const Term_* make_bv_sub(const Term_* a, const Term_* b);
  bool is_bv_sub(const Symbol* s, size_t* width) const;
  const Symbol* make_bv_mul_symbol(size_t width);
  const Term_* make_bv_mul(const Term_* a, const Term_* b);
  bool is_bv_mul(const Symbol* s, size_t* width) const;
  const Symbol* make_bv_udiv_symbol(size_t width);
  const Term_* make_bv_udiv(const Term_* a, const Term_* b);
  bool is_bv_udiv(const Symbol* s, size_t* width) const;
  const Symbol* make_bv_sdiv_symbol(size_t width);
  const Term_* make_bv_sdiv(const Term_* a, const Term_* b);
  bool is_bv_sdiv(const Symbol* s, size_t* width) const;
  const Symbol* make_bv_urem_symbol(size_t width);
  const Term_* make_bv_urem(const Term_* a, const Term_* b);
  bool is_bv_urem(const Symbol* s, size_t* width) const;
  const Symbol* make_bv_srem_symbol(size_t width);
  const Term_* make_bv_srem(const Term_* a, const Term_* b);
  bool is_bv_srem(const Symbol* s, size_t* width) const;
  const Symbol* make_bv_lshl_symbol(size_t width);
  const Term_* make_bv_lshl(const Term_* a, const Term_* b);
  bool is_bv_lshl(const Symbol* s, size_t* width) const;
  const Symbol* make_bv_lshr_symbol(size_t width);
  const Term_* make_bv_lshr(const Term_* a, const Term_* b);
  bool is_bv_lshr(const Symbol* s, size_t* width) const;
  const Symbol* make_bv_ashr_symbol(size_t width);
  const Term_* make_bv_ashr(const Term_* a, const Term_* b);
  bool is_bv_ashr(const Symbol* s, size_t* width) const;
  // Between Int and bit-vectors: the value of t as an unsigned number (SMT-LIB 2.7: ubv_to_int) or
  // as a signed number (sbv_to_int), and the bit-vector that is congruent to the Int t modulo
  // 2^width (int_to_bv).
  const Symbol* make_int_from_ubv_symbol(size_t width);
  const Term_* make_int_from_ubv(const Term_* t);
  bool is_int_from_ubv(const Symbol* s, size_t* width) const;
  const Symbol* make_int_from_sbv_symbol(size_t width);
  const Term_* make_int_from_sbv(const Term_* t);
  bool is_int_from_sbv(const Symbol* s, size_t* width) const;
  const Symbol* make_int_to_bv_symbol(size_t width);
  const Term_* make_int_to_bv(size_t width, const Term_* t);
  bool is_int_to_bv(const Symbol* s, size_t* width) const;

  //---------------------------------------------------------------------------------------------
  // Bit-vectors with indices, in 'bv_indexed_operators.cpp'
  //
  // The same triples, with one or two more numbers. Bits are counted from the least significant
  // one, bit 0. The builders check the numbers, the makers of symbols do not. Both throw Exception,
  // not error, if the result has more than 2^64-1 bits. Rotation by any amount and extension by 0
  // bits are operators of their own.

  // The concatenation; the bits of a are the more significant ones.
  const Symbol* make_bv_concat_symbol(size_t w1, size_t w2);
  const Term_* make_bv_concat(const Term_* a, const Term_* b);
  bool is_bv_concat(const Symbol* s, size_t* w1, size_t* w2) const;

  // Bits msb down to lsb of a bit-vector of width w. The builder throws Exception, not error, if
  // the range is empty or reaches beyond the width.
  const Symbol* make_bv_extract_symbol(size_t msb, size_t lsb, size_t w);
  const Term_* make_bv_extract(size_t msb, size_t lsb, const Term_* t);
  bool is_bv_extract(const Symbol* s, size_t* msb, size_t* lsb, size_t* w) const;

  // Rotation of a bit-vector of width w by k bits, and extension by k bits.
  const Symbol* make_bv_rotate_left_symbol(size_t k, size_t w);
  const Term_* make_bv_rotate_left(size_t k, const Term_* t);
  bool is_bv_rotate_left(const Symbol* s, size_t* k, size_t* w) const;
  const Symbol* make_bv_rotate_right_symbol(size_t k, size_t w);
  const Term_* make_bv_rotate_right(size_t k, const Term_* t);
  bool is_bv_rotate_right(const Symbol* s, size_t* k, size_t* w) const;
  const Symbol* make_bv_zero_extend_symbol(size_t k, size_t w);
  const Term_* make_bv_zero_extend(size_t k, const Term_* t);
  bool is_bv_zero_extend(const Symbol* s, size_t* k, size_t* w) const;
  const Symbol* make_bv_sign_extend_symbol(size_t k, size_t w);
  const Term_* make_bv_sign_extend(size_t k, const Term_* t);
  bool is_bv_sign_extend(const Symbol* s, size_t* k, size_t* w) const;

  //---------------------------------------------------------------------------------------------
  // Floating point, in 'fp_operators.cpp'
  //
  // The same triples, keyed by the format (e, m) of get_fp_type; rm is a term of the rounding-mode
  // type. The first floating-point operand gives the format. The meanings are those of the SMT-LIB
  // 2.6 theory FloatingPoint, after IEEE 754-2019 (equal is fp.eq, not equality).
  const Symbol* make_fp_equal_symbol(size_t e, size_t m);
  const Term_* make_fp_equal(const Term_* a, const Term_* b);
  bool is_fp_equal(const Symbol* s, size_t* e, size_t* m) const;
  const Symbol* make_fp_lt_symbol(size_t e, size_t m);
  const Term_* make_fp_lt(const Term_* a, const Term_* b);
  bool is_fp_lt(const Symbol* s, size_t* e, size_t* m) const;
  const Symbol* make_fp_le_symbol(size_t e, size_t m);
  const Term_* make_fp_le(const Term_* a, const Term_* b);
  bool is_fp_le(const Symbol* s, size_t* e, size_t* m) const;
  const Symbol* make_fp_neg_symbol(size_t e, size_t m);
  const Term_* make_fp_neg(const Term_* t);
  bool is_fp_neg(const Symbol* s, size_t* e, size_t* m) const;
  const Symbol* make_fp_add_symbol(size_t e, size_t m);
  const Term_* make_fp_add(const Term_* rm, const Term_* a, const Term_* b);
  bool is_fp_add(const Symbol* s, size_t* e, size_t* m) const;
  const Symbol* make_fp_sub_symbol(size_t e, size_t m);
  const Term_* make_fp_sub(const Term_* rm, const Term_* a, const Term_* b);
  bool is_fp_sub(const Symbol* s, size_t* e, size_t* m) const;
  const Symbol* make_fp_mul_symbol(size_t e, size_t m);
  const Term_* make_fp_mul(const Term_* rm, const Term_* a, const Term_* b);
  bool is_fp_mul(const Symbol* s, size_t* e, size_t* m) const;
  const Symbol* make_fp_div_symbol(size_t e, size_t m);
  const Term_* make_fp_div(const Term_* rm, const Term_* a, const Term_* b);
  bool is_fp_div(const Symbol* s, size_t* e, size_t* m) const;
  const Symbol* make_fp_sqrt_symbol(size_t e, size_t m);
  const Term_* make_fp_sqrt(const Term_* rm, const Term_* t);
  bool is_fp_sqrt(const Symbol* s, size_t* e, size_t* m) const;
  const Symbol* make_fp_abs_symbol(size_t e, size_t m);
  const Term_* make_fp_abs(const Term_* t);
  bool is_fp_abs(const Symbol* s, size_t* e, size_t* m) const;
  const Symbol* make_fp_min_symbol(size_t e, size_t m);
  const Term_* make_fp_min(const Term_* a, const Term_* b);
  bool is_fp_min(const Symbol* s, size_t* e, size_t* m) const;
  const Symbol* make_fp_max_symbol(size_t e, size_t m);
  const Term_* make_fp_max(const Term_* a, const Term_* b);
  bool is_fp_max(const Symbol* s, size_t* e, size_t* m) const;
  const Symbol* make_fp_round_to_int_symbol(size_t e, size_t m);
  const Term_* make_fp_round_to_int(const Term_* rm, const Term_* t);
  bool is_fp_round_to_int(const Symbol* s, size_t* e, size_t* m) const;
  const Symbol* make_fp_isnan_symbol(size_t e, size_t m);
  const Term_* make_fp_isnan(const Term_* t);
  bool is_fp_isnan(const Symbol* s, size_t* e, size_t* m) const;
  const Symbol* make_fp_isinf_symbol(size_t e, size_t m);
  const Term_* make_fp_isinf(const Term_* t);
  bool is_fp_isinf(const Symbol* s, size_t* e, size_t* m) const;
  const Symbol* make_fp_iszero_symbol(size_t e, size_t m);
  const Term_* make_fp_iszero(const Term_* t);
  bool is_fp_iszero(const Symbol* s, size_t* e, size_t* m) const;
  const Symbol* make_fp_issubnormal_symbol(size_t e, size_t m);
  const Term_* make_fp_issubnormal(const Term_* t);
  bool is_fp_issubnormal(const Symbol* s, size_t* e, size_t* m) const;
  const Symbol* make_fp_isnormal_symbol(size_t e, size_t m);
  const Term_* make_fp_isnormal(const Term_* t);
  bool is_fp_isnormal(const Symbol* s, size_t* e, size_t* m) const;
  const Symbol* make_fp_isneg_symbol(size_t e, size_t m);
  const Term_* make_fp_isneg(const Term_* t);
  bool is_fp_isneg(const Symbol* s, size_t* e, size_t* m) const;
  const Symbol* make_fp_ispos_symbol(size_t e, size_t m);
  const Term_* make_fp_ispos(const Term_* t);
  bool is_fp_ispos(const Symbol* s, size_t* e, size_t* m) const;

  // The four rounding modes: to nearest with ties to even, toward zero, toward plus infinity and
  // toward minus infinity. Every manager has them as constants; a mode is recognised by its symbol.
  const Symbol* get_fprounding_even() const;
  const Symbol* get_fprounding_zero() const;
  const Symbol* get_fprounding_plus_inf() const;
  const Symbol* get_fprounding_minus_inf() const;
  const Symbol* make_fprounding_even_symbol() const;
  const Symbol* make_fprounding_zero_symbol() const;
  const Symbol* make_fprounding_plus_inf_symbol() const;
  const Symbol* make_fprounding_minus_inf_symbol() const;
  const Term_* make_fprounding_even();
  const Term_* make_fprounding_zero();
  const Term_* make_fprounding_plus_inf();
  const Term_* make_fprounding_minus_inf();
  bool is_fprounding_even(const Symbol* s) const;
  bool is_fprounding_zero(const Symbol* s) const;
  bool is_fprounding_plus_inf(const Symbol* s) const;
  bool is_fprounding_minus_inf(const Symbol* s) const;

  //---------------------------------------------------------------------------------------------
  // Floating-point conversions, in 'fp_conversions.cpp'
  //
  // Builders take the numbers of the target first, then the terms. A bit pattern of more than
  // 2^64-1 bits throws Exception, not error.

  // From format (e1, m1) to (e2, m2).
  const Symbol* make_fp_cast_symbol(size_t e1, size_t m1, size_t e2, size_t m2);
  const Term_* make_fp_cast(size_t e2, size_t m2, const Term_* rm, const Term_* t);
  bool is_fp_cast(const Symbol* s, size_t* e1, size_t* m1, size_t* e2, size_t* m2) const;

  // From a signed or unsigned number of w bits.
  const Symbol* make_fp_from_sbv_symbol(size_t w, size_t e, size_t m);
  const Term_* make_fp_from_sbv(size_t e, size_t m, const Term_* rm, const Term_* t);
  bool is_fp_from_sbv(const Symbol* s, size_t* w, size_t* e, size_t* m) const;
  const Symbol* make_fp_from_ubv_symbol(size_t w, size_t e, size_t m);
  const Term_* make_fp_from_ubv(size_t e, size_t m, const Term_* rm, const Term_* t);
  bool is_fp_from_ubv(const Symbol* s, size_t* w, size_t* e, size_t* m) const;

  // To a signed number of w bits.
  const Symbol* make_fp_to_bv_symbol(size_t e, size_t m, size_t w);
  const Term_* make_fp_to_bv(size_t w, const Term_* rm, const Term_* t);
  bool is_fp_to_bv(const Symbol* s, size_t* e, size_t* m, size_t* w) const;

  // To and from the bit pattern of e + m + 1 bits: sign, exponent, significand.
  const Symbol* make_fp_as_ieeebv_symbol(size_t e, size_t m);
  const Term_* make_fp_as_ieeebv(const Term_* t);
  bool is_fp_as_ieeebv(const Symbol* s, size_t* e, size_t* m) const;
  const Symbol* make_fp_from_ieeebv_symbol(size_t e, size_t m);
  const Term_* make_fp_from_ieeebv(size_t e, size_t m, const Term_* t);
  bool is_fp_from_ieeebv(const Symbol* s, size_t* e, size_t* m) const;

  //---------------------------------------------------------------------------------------------
  // Symbols of any family, by its maps, in 'families.cpp' (the recognisers are in the files of the
  // operators)

  // The symbol of the family of bit-vector operators that has these two maps, and its recogniser. A
  // null result type means bit-vectors of the operands' width.
  const Symbol* make_bv_symbol(const char* name, SymbolTag::tag tag, size_t width, size_t arity,
                               hsh::HashMap<const Symbol*, size_t>& by_symbol,
                               hsh::HashMap<size_t, const Symbol*>& by_width,
                               const DataType* result_type);
  bool is_bv_symbol(const Symbol* s, const hsh::HashMap<const Symbol*, size_t>& by_symbol,
                    size_t* width) const;
  const Symbol* make_bv_symbol(const char* name, SymbolTag::tag tag, size_t first, size_t width,
                               size_t arity, hsh::HashMap<const Symbol*, BVIndex1>& by_symbol,
                               hsh::HashMap<BVIndex1, const Symbol*>& by_key,
                               const DataType* result_type);
  bool is_bv_symbol(const Symbol* s, const hsh::HashMap<const Symbol*, BVIndex1>& by_symbol,
                    size_t* first, size_t* second) const;
  bool is_bv_symbol(const Symbol* s, const hsh::HashMap<const Symbol*, BVIndex2>& by_symbol,
                    size_t* first, size_t* second, size_t* third) const;

  // The same, keyed by formats. kind is a sum: 1 for a Bool result, 2 for a rounding mode as the
  // first operand.
  const Symbol* make_fp_symbol(const char* name, SymbolTag::tag tag, int kind,
                               hsh::HashMap<IEEEFloat::format, const Symbol*>& by_format,
                               hsh::HashMap<const Symbol*, IEEEFloat::format>& by_symbol, size_t e,
                               size_t m);
  const Symbol* make_fp_is_symbol(const char* name, SymbolTag::tag tag,
                                  hsh::HashMap<IEEEFloat::format, const Symbol*>& by_format,
                                  hsh::HashMap<const Symbol*, IEEEFloat::format>& by_symbol,
                                  size_t e, size_t m);
  bool is_fp_symbol(const hsh::HashMap<const Symbol*, IEEEFloat::format>& by_symbol,
                    const Symbol* s, size_t* e, size_t* m) const;

  //---------------------------------------------------------------------------------------------
  // Arrays, in 'arrays.cpp'

  // The element of a at i.
  const Symbol* make_array_read_symbol(const DataType* idx, const DataType* elem);
  const Term_* make_array_read(const Term_* a, const Term_* i);
  bool is_array_read(const Symbol* s, const DataType** idx, const DataType** elem) const;

  // The array that holds v at i and equals a elsewhere.
  const Symbol* make_array_write_symbol(const DataType* idx, const DataType* elem);
  const Term_* make_array_write(const Term_* a, const Term_* i, const Term_* v);
  bool is_array_write(const Symbol* s, const DataType** idx, const DataType** elem) const;

  // The array of this type that holds v everywhere.
  const Symbol* make_array_const_symbol(const DataType* idx, const DataType* elem);
  const Term_* make_array_const(const DataType* arrtype, const Term_* v);
  bool is_array_const(const Symbol* s, const DataType** idx, const DataType** elem) const;

  //---------------------------------------------------------------------------------------------
  // Integers modulo a constant, in 'modular_congruence.cpp'

  // Whether a and b leave the same remainder. Throws Exception, not error, unless the modulus is an
  // integer that is at least 1.
  const Symbol* make_int_modular_congruence_symbol(const QNumber& modulus);
  const Term_* make_int_modular_congruence(const QNumber& modulus, const Term_* a, const Term_* b);
  bool is_int_modular_congruence(const Symbol* s, QNumber* modulus) const;

  //---------------------------------------------------------------------------------------------
  // Numerals, in 'numbers.cpp'
  //
  // A numeral is a constant whose name spells its value. If a user symbol already has the name, it
  // becomes the numeral if its type fits; otherwise the request throws.

  // An integer has type Int, any other rational has type Real.
  const Term_* make_number(const QNumber& value);

  // The bit-vector of `width` bits whose value as an unsigned number is `value`. While checks are
  // on, throws error for a fraction or a negative number, and Exception for a number that needs
  // more bits.
  const Term_* make_bv_number(const QNumber& value, size_t width);

  // The floating-point value of format (e, m) with this bit pattern: sign, exponent and
  // significand, e + m + 1 bits in all. Throws like make_bv_number and get_fp_type.
  const Term_* make_fp_bits_number(const QNumber& bits, size_t e, size_t m);

  // The value of format (e, m) to which `value` is rounded (IEEE 754-2019) in the given mode, which
  // must be one of the four constants.
  const Term_* make_fp_rat_number(const QNumber& value, size_t e, size_t m, const Term_* rounding);

  // The infinities, and the positive NaN with only the top bit of the significand set. Other NaN
  // patterns are numerals of their own.
  const Term_* make_fp_plus_inf(size_t e, size_t m);
  const Term_* make_fp_minus_inf(size_t e, size_t m);
  const Term_* make_fp_nan(size_t e, size_t m);

  // Whether the symbol is a numeral, and its value.
  bool is_number(const Symbol* s, QNumber* value) const;

  //---------------------------------------------------------------------------------------------
  // All operators through one door, in 'generic_operators.cpp'

  // What the symbol is: which operator with which parameters, or which other kind of symbol. A
  // symbol that a caller has registered with the tag of an operator is a function, or a constant.
  Operator operator_of(const Symbol* s) const;

  // The symbol of which operator_of says this; made if it is not there. Throws what the maker of
  // the symbol throws, and error if no operator has the tag or is over the type.
  const Symbol* symbol_of(const Operator& op);

  // The term of the operator's symbol. Throws what the builder of the operator throws, and error
  // for another number of arguments.
  const Term_* make_operator(const Operator& op, const std::vector<const Term_*>& args);
  const Term_* make_operator(const Operator& op, std::initializer_list<const Term_*> args) {
    return make_operator(op, std::vector<const Term_*>(args));
  }
  const Term_* make_operator(const Operator& op, TermSpan args) {
    return make_operator(op, std::vector<const Term_*>(args.begin(), args.end()));
  }

  //---------------------------------------------------------------------------------------------
  // What terms and types say, in 'inspection.cpp'
  //
  // For callers that know what they have: each throws error for anything else. To ask whether a
  // term is a numeral, use is_number; for types, the recognisers.

  // The value of a numeral: of a bit-vector as an unsigned number, of Int, and of Int or Real.
  // (quill/utils/qnumber_arithmetic.h has single bits, digits and 64-bit integers of it.)
  QNumber bv_value(const Term_* t) const;
  QNumber int_value(const Term_* t) const;
  QNumber real_value(const Term_* t) const;
  // IEEEFloat::to_double and to_float give it as a number of C++.
  IEEEFloat fp_value(const Term_* t) const;

  // The bits of a bit-vector type, or of the type of a term.
  size_t bv_width(const DataType* type) const;
  size_t bv_width(const Term_* t) const;

  // The exponent bits and the significand bits without the hidden one: (8, 23) for binary32.
  IEEEFloat::format fp_format(const DataType* type) const;
  IEEEFloat::format fp_format(const Term_* t) const;

  struct ArraySorts {
    const DataType* index = nullptr;
    const DataType* element = nullptr;
  };
  ArraySorts array_sorts(const DataType* type) const;
  ArraySorts array_sorts(const Term_* t) const;

  struct FunctionSorts {
    std::vector<const DataType*> arguments;
    const DataType* result = nullptr;
  };
  FunctionSorts function_sorts(const DataType* type) const;
  FunctionSorts function_sorts(const Symbol* s) const;

  //---------------------------------------------------------------------------------------------
  // Substitution, in 'substitution.cpp'

  using TermMap = hsh::HashMap<const Term_*, const Term_*>;

  // Replaces each key of subst in t by its value, all at once, and rebuilds the terms above through
  // make_term. The type of a value must be that of its key or a subtype. On return subst holds the
  // image of every subterm visited, so passing it again reuses the work. `marks` is all clear on
  // entry and on return. `check` switches the check of the pairs and the typechecking of the
  // rebuild on or off.
  //
  // Every key is replaced. A null image is refused where it is read, by the check of the pairs or
  // by the walk, before a term that would hold it is made.
  const Term_* substitute(const Term_* t, TermMap& subst, std::vector<bool>& marks, bool check);

  // Replaces from[i] by to[i]; if a term occurs twice in `from`, the later pair counts. Null is
  // always refused; the types of the pairs are checked while checks are on. Pairs before an
  // offending one stay in the cache.
  const Term_* substitute(const Term_* t, const std::vector<const Term_*>& from,
                          const std::vector<const Term_*>& to, TermMap& cache,
                          std::vector<bool>& marks);
  const Term_* substitute(const Term_* t, const std::vector<const Term_*>& from,
                          const std::vector<const Term_*>& to);

  //---------------------------------------------------------------------------------------------
  // Copying from another manager, in 'copying.cpp', 'copying_symbols.cpp' and 'copying_types.cpp'
  //
  // Makes terms, symbols and types of src again in this manager, as if they had been built here. If
  // a symbol of this manager has the name of the one to copy, it is the copy, whatever its type.
  // Otherwise the symbols of an operator are copied by its parameters, numerals by value, and other
  // symbols and named types by name. Terms are rebuilt through make_term, including constants and
  // numerals. What already belongs to this manager is its own copy.
  //
  // src is only read, so several threads may copy from one manager at the same time, each into a
  // manager of its own, while no thread changes it. Copying throws what the makers and make_term
  // throw, and keeps what it has made until then. A symbol that add_interpreted_symbol registered
  // in src can't be copied unless this manager has a symbol of its name.
  //
  // A call copies each term, symbol and type once, except that copy_terms rebuilds shared terms for
  // each root that leads to them. The forms with an output append to it, in order; if one fails, it
  // has appended what comes before the failure.

  const Term_* copy_term(const TermManager& src, const Term_* t);

  // The keys of subst are terms of src. Their values are terms of this manager, which are used as
  // the copies. What is below a key is not copied. A null value is refused when the walk reaches
  // its key.
  const Term_* copy_term_with_subst(const TermManager& src, const Term_* t, const TermMap& subst);

  // With use_manager_marks the walks use the mark vector that the manager keeps. Otherwise they use
  // one for this call, of two bits for each id of src up to the largest one met.
  void copy_terms(const TermManager& src, const std::vector<const Term_*>& in,
                  std::vector<const Term_*>& out, bool use_manager_marks);

  void copy_symbols(const TermManager& src, const std::vector<const Symbol*>& in,
                    std::vector<const Symbol*>& out);
  void copy_types(const TermManager& src, const std::vector<const DataType*>& in,
                  std::vector<const DataType*>& out);

  //---------------------------------------------------------------------------------------------
  // Collection, in 'garbage_collection.cpp'

  // Frees everything except the given terms, with all that is below them and the symbols and types
  // of these; the given symbols, with their types; the given types, with their components; and what
  // every manager has from the start. Pointers to anything else become invalid, including those in
  // maps of the caller. What is kept keeps its address and its id; ids of freed terms are used
  // again, the lowest first. A request for something that was freed makes it anew. If gc throws
  // std::bad_alloc, nothing has changed. No other operation of the manager may be running.
  void gc(const std::vector<const Term_*>& terms, const std::vector<const Symbol*>& symbols,
          const std::vector<const DataType*>& types);

  // The number of collections so far. As long as it stays the same, each id means the same term.
  uint64_t gc_generation() const { return generation; }

  // What the last collection freed, and the term bank's memory that went back to the system.
  struct CollectionStatistics {
    size_t terms = 0;
    size_t symbols = 0;
    size_t types = 0;
    size_t slabs = 0;
    size_t slab_bytes = 0;
    size_t index_bytes = 0;
  };
  const CollectionStatistics& get_last_collection() const { return last_collection; }

  // In 'consistency_check.cpp': says which table disagrees with another one or with the stores, and
  // how; the empty text if none does. Takes time O(n log n) in the size of the manager. For
  // debugging.
  std::string check_consistency() const;

  // In 'state_description.cpp': every entry of every store and table, one per line, with the
  // switches and counters. The same history gives the same text. For debugging, to see what a
  // request has changed.
  std::string describe_state() const;

  //---------------------------------------------------------------------------------------------
  // Text for messages, in 'shallow_literal.cpp'

  // The term on one line, down to depth 10; and, or, iff and if-then-else terms are not spelled
  // out. A text of more than 16384 bytes is cut after that many bytes and then ends with "...".
  std::string to_shallow_str_literal(const Term_* t) const;

  //---------------------------------------------------------------------------------------------

 private:
  void initialize_standard_signature();
  using StandardTypes = std::array<const DataType*, 8>;
  StandardTypes standard_types() const;
  void check_user_name(const std::string& name) const;
  const Symbol* add_function_symbol(const char* name, SymbolTag::tag tag);
  const Symbol* make_type_keyed_symbol(TypeKeyedSymbols& table, const DataType* t,
                                       const char* prefix, SymbolTag::tag tag);
  bool is_intercepted() const;
  const Term_* apply(const Symbol* s, std::initializer_list<const Term_*> args,
                     const char* operation);
  const Term_* apply_to(const Symbol* s, const std::vector<const Term_*>& args,
                        const char* operation);
  const Term_* apply_intercepted(const Symbol* s, std::initializer_list<const Term_*> args,
                                 const char* operation);
  const Term_* apply_first(TypeKeyedSymbols& table,
                           const Symbol* (TermManager::*make_symbol_of)(const DataType*),
                           const DataType* type, std::initializer_list<const Term_*> args,
                           const char* operation);
  const Term_* make_binary(const Symbol* s, const Term_* a, const Term_* b, const char* operation);
  [[noreturn, gnu::cold]] void reject_arity(const Symbol* s, size_t given) const;
  void check_arguments(const Symbol* s, const Term_* const* args, size_t count);
  void check_arguments_from(size_t first, const Symbol* s, const Term_* const* args, size_t count);
  template <class Enter>
  void enter_pairs(const std::vector<const Term_*>& from, const std::vector<const Term_*>& to,
                   const Enter& enter) const;
  bool both_int(const Term_* a, const Term_* b) const;
  bool is_real_or_int(const DataType* t) const {
    return t == int_type || universe->is_subtype(t, rat_type);
  }
  void require_bits(const QNumber& value, uint64_t bits, const char* kind) const;
  [[noreturn]] void reject_numeral(const std::string& name, const Symbol* present) const;
  const Term_* make_numeral(const Symbol* present, const DataType* type, const QNumber& value,
                            bool enter_in_cache);
  template <class MakeType>
  const Term_* make_named_numeral(const std::string& name, const QNumber& value,
                                  MakeType make_type);

  class Interception;
  class Transaction;
  class Trial;
  class TermCopyCallback;
  void restore_tag(const Symbol* s, std::optional<SymbolTag::tag> tag) noexcept;
  void note_given(const Symbol* s) {
    if (trials != nullptr) note_given_on_trial(s);
  }
  void note_given_on_trial(const Symbol* s);

  // What the members of the operator families are made of; see 'families.h'.
  class Families;

  heap::ReleaseAtEnd memory;
  static constexpr size_t bytes_of_an_entry = 64;  // about: a symbol or type, with its tables

  // The stores. Terms point to symbols and symbols to types, so they are freed in the opposite
  // order.
  std::unique_ptr<TypeUniverse> universe;
  std::unique_ptr<Signature> signature;
  std::unique_ptr<TermBank> bank;

  // Types that every manager has; the heads are component 0 of the parametric types.
  const DataType* bool_type = nullptr;
  const DataType* rat_type = nullptr;
  const DataType* int_type = nullptr;
  const DataType* array_type_head = nullptr;
  const DataType* bv_type_head = nullptr;
  const DataType* fprounding_type = nullptr;
  const DataType* fp_type_head = nullptr;

  // Parameter types, and the named types that get_simple_type made.
  ParameterTypes<size_t> bv_widths;
  ParameterTypes<IEEEFloat::format> fp_formats;
  hsh::GuardedMap<std::string, const DataType*> simple_types;

  // The tag of every symbol that add_interpreted_symbol registered.
  hsh::HashMap<const Symbol*, SymbolTag::tag> tags;

  // The standard signature.
  const Symbol* true_symbol = nullptr;
  const Symbol* false_symbol = nullptr;
  const Symbol* and_symbol = nullptr;
  const Symbol* or_symbol = nullptr;
  const Symbol* not_symbol = nullptr;
  const Symbol* iff_symbol = nullptr;
  const Symbol* rat_equal_symbol = nullptr;
  const Symbol* rat_leq_symbol = nullptr;
  const Symbol* rat_plus_symbol = nullptr;
  const Symbol* rat_times_symbol = nullptr;
  const Symbol* int_equal_symbol = nullptr;
  const Symbol* int_leq_symbol = nullptr;
  const Symbol* int_plus_symbol = nullptr;
  const Symbol* int_times_symbol = nullptr;
  const Symbol* floor_symbol = nullptr;
  const Term_* true_term = nullptr;
  const Term_* false_term = nullptr;
  TypeKeyedSymbols equality_symbols;
  TypeKeyedSymbols term_ite_symbols;

  // The value of every numeral, and arithmetic numerals by value. The keys of the cache point at
  // the values: nodes of the table never move.
  hsh::HashMap<const Symbol*, QNumber> number_values;
  hsh::GuardedMap<const QNumber*, const Term_*> number_cache;

  RecentNumerals recent_numerals;

  // The operator families, by the kind of their keys and within it in the order of
  // operator_families.
  SymbolFamily<QNumber> modular_congruences;
  std::array<SymbolFamily<BVIndex2>, count_families(FamilyKey::Index2)> index2_families;
  std::array<SymbolFamily<size_t>, count_families(FamilyKey::Width)> width_families;
  std::array<SymbolFamily<BVIndex1>, count_families(FamilyKey::Index1)> index1_families;
  std::array<ArraySymbols, count_families(FamilyKey::Array)> array_families;
  std::array<SymbolFamily<IEEEFloat::format>, count_families(FamilyKey::Format)> format_families;
  std::array<SymbolFamily<FPFormatCast>, count_families(FamilyKey::Cast)> cast_families;

  // For each operator keyed by a width, the symbol of the latest request and the type of its
  // operand, which the next request is likely to have, too. Dropped whenever symbols or types are
  // freed.
  struct LatestUse {
    const DataType* operand = nullptr;
    const Symbol* symbol = nullptr;
  };
  std::array<LatestUse, count_families(FamilyKey::Width)> latest_uses{};

  // The rounding-mode constants: to nearest with ties to even, toward zero, toward plus and toward
  // minus infinity.
  const Symbol* rounding_symbols[4] = {};

  // Scratch space, kept so that building a name or a type allocates nothing beyond what the stores
  // keep. Set before use, never cleared after; nothing calls back between the two.
  std::vector<const DataType*> scratch_types;
  std::string name_buffer;

  // The public builder that is running, for type errors; "" between builders. A type error leaves
  // it as it was.
  const char* current_operation = "";
  std::string operation_text;  // keeps a name that a caller or a symbol lent

  // The requests that a delegate or an overridden make_term sees, from the outermost one to the
  // innermost; the records after those are kept for later requests.
  struct Request {
    const Symbol* symbol = nullptr;
    std::string operation;
    std::vector<const Term_*> own_args;
    const std::vector<const Term_*>* args = nullptr;  // own_args or a vector of the caller's
  };
  std::vector<std::unique_ptr<Request>> requests;
  size_t requests_under_way = 0;

  // What open transactions have entered in tables, the latest entry last; see 'transaction.h'.
  struct UndoEntry {
    enum Kind : uint8_t { Width, Format, Tag };
    Kind kind;
    size_t width = 0;
    IEEEFloat::format format{};
    const Symbol* symbol = nullptr;
    std::optional<SymbolTag::tag> tag{};  // what the symbol had before
  };
  std::vector<UndoEntry> undo_log;
  size_t open_transactions = 0;
  Trial* trials = nullptr;  // the innermost one; see 'trial.h'

  bool typecheck_enabled = true;
  bool delegate_enabled = false;
  bool reject_bool_arguments = true;
  TermFactory* delegate = nullptr;
  uint32_t fresh_counter = 1;  // the number of the next fresh variable

  uint64_t generation = 0;
  CollectionStatistics last_collection;

  std::vector<bool>
      marks;  // lent to one walk at a time, to reuse its storage; all clear in between
};

}  // namespace quill

#endif
