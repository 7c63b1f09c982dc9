// Misuse in debug builds: every call that takes a term, a symbol or a type is given one of another
// manager, one that was freed, and a null pointer. The operators are in
// test_operator_family_table.cpp, the printers in test_misused_terms.cpp.

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "quill/derived/derived.h"
#include "quill/derived/derived_bv.h"
#include "quill/derived/derived_fp.h"
#include "quill/terms/termmanager/misuse_checks.h"
#include "quill/terms/termmanager/term_manager.h"
#include "quill/terms/termmanager/term_visitor.h"
#include "quill/utils/address_sanitizer.h"
#include "tests/support/manager_test.h"

namespace quill {
namespace {

using Terms = std::vector<const Term_*>;
using Symbols = std::vector<const Symbol*>;
using Types = std::vector<const DataType*>;

#ifndef NDEBUG

// What is given besides the object that is wrong.
struct Bench {
  TermManager m;
  const DataType* integers = m.get_int_type();
  const DataType* bytes = m.get_bv_type(8);
  const Term_* p = testing::constant(m, "p", m.get_bool_type());
  const Term_* both = m.make_and(p, p);
  const Term_* i = testing::constant(m, "i", integers);
  const Term_* floor = m.make_floor(i);
  const Term_* x = testing::constant(m, "x", bytes);
  const Term_* f = testing::constant(m, "f", m.get_fp_type(8, 23));
  const Term_* bit = testing::constant(m, "bit", m.get_bv_type(1));
  const Term_* even = m.make_fprounding_even();
  const Symbol* function = m.make_symbol("fun", m.get_function_type({integers}, integers));
};

template <class Object>
struct Call {
  const char* name;
  std::function<void(Bench&, const Object*)> call;
  bool null_has_a_meaning = false;

  // So that a failed test names its call in a line.
  friend void PrintTo(const Call& row, std::ostream* out) { *out << row.name; }
};

using TermCall = Call<Term_>;
using SymbolCall = Call<Symbol>;
using TypeCall = Call<DataType>;

// clang-format off
const std::vector<TermCall> term_calls = {
    {"make_term", [](Bench& b, const Term_* t) { b.m.make_term(b.function, {t}); }},
    {"do_make_term", [](Bench& b, const Term_* t) { b.m.do_make_term(b.function, {t}); }},
    {"make_uninterpreted_function",
     [](Bench& b, const Term_* t) { b.m.make_uninterpreted_function(b.function, {t}); }},
    {"typecheck", [](Bench& b, const Term_* t) { b.m.typecheck(t, b.integers, "here"); }},
    {"typecheck_of_arguments", [](Bench& b, const Term_* t) { b.m.typecheck(b.function, {t}); }},
    {"make_bin_first",
     [](Bench& b, const Term_* t) { b.m.make_bin(b.both->symbol, t, b.p, "here"); }},
    {"make_bin_second",
     [](Bench& b, const Term_* t) { b.m.make_bin(b.both->symbol, b.p, t, "here"); }},
    {"make_and_first", [](Bench& b, const Term_* t) { b.m.make_and(t, b.p); }},
    {"make_and_second", [](Bench& b, const Term_* t) { b.m.make_and(b.p, t); }},
    {"make_or", [](Bench& b, const Term_* t) { b.m.make_or(b.p, t); }},
    {"make_iff", [](Bench& b, const Term_* t) { b.m.make_iff(b.p, t); }},
    {"make_not", [](Bench& b, const Term_* t) { b.m.make_not(t); }},
    {"make_leq_first", [](Bench& b, const Term_* t) { b.m.make_leq(t, b.i); }},
    {"make_leq_second", [](Bench& b, const Term_* t) { b.m.make_leq(b.i, t); }},
    {"make_plus", [](Bench& b, const Term_* t) { b.m.make_plus(b.i, t); }},
    {"make_times", [](Bench& b, const Term_* t) { b.m.make_times(b.i, t); }},
    {"make_floor", [](Bench& b, const Term_* t) { b.m.make_floor(t); }},
    {"make_equal_first", [](Bench& b, const Term_* t) { b.m.make_equal(t, b.x); }},
    {"make_equal_second", [](Bench& b, const Term_* t) { b.m.make_equal(b.x, t); }},
    {"make_term_ite_condition", [](Bench& b, const Term_* t) { b.m.make_term_ite(t, b.x, b.x); }},
    {"make_term_ite_then", [](Bench& b, const Term_* t) { b.m.make_term_ite(b.p, t, b.x); }},
    {"make_term_ite_else", [](Bench& b, const Term_* t) { b.m.make_term_ite(b.p, b.x, t); }},
    {"make_fp_rat_number", [](Bench& b, const Term_* t) { b.m.make_fp_rat_number(1, 8, 23, t); }},
    {"substitute_in", [](Bench& b, const Term_* t) { b.m.substitute(t, {b.i}, {b.i}); }},
    {"substitute_from", [](Bench& b, const Term_* t) { b.m.substitute(b.i, {t}, {b.i}); }, /*null_has_a_meaning=*/true},
    {"substitute_to", [](Bench& b, const Term_* t) { b.m.substitute(b.i, {b.i}, {t}); }, /*null_has_a_meaning=*/true},
    {"substitute_with_cache",
     [](Bench& b, const Term_* t) {
       TermManager::TermMap cache;
       std::vector<bool> marks;
       b.m.substitute(b.i, {b.i}, {t}, cache, marks);
     }, /*null_has_a_meaning=*/true},
    {"substitute_map_in",
     [](Bench& b, const Term_* t) {
       TermManager::TermMap map;
       std::vector<bool> marks;
       b.m.substitute(t, map, marks, /*check=*/false);
     }},
    {"substitute_map_to",
     [](Bench& b, const Term_* t) {
       TermManager::TermMap map;
       map[b.i] = t;
       std::vector<bool> marks;
       b.m.substitute(b.i, map, marks, /*check=*/true);
     }, /*null_has_a_meaning=*/true},
    {"substitute_map_to_unchecked",
     [](Bench& b, const Term_* t) {
       TermManager::TermMap map;
       map[b.i] = t;
       std::vector<bool> marks;
       b.m.substitute(b.floor, map, marks, /*check=*/false);
     }, /*null_has_a_meaning=*/true},
    {"substitute_map_to_of_the_root",
     [](Bench& b, const Term_* t) {
       TermManager::TermMap map;
       map[b.i] = t;
       std::vector<bool> marks;
       b.m.substitute(b.i, map, marks, /*check=*/false);
     }, /*null_has_a_meaning=*/true},
    {"substitute_map_unused_from",
     [](Bench& b, const Term_* t) {
       TermManager::TermMap map;
       if (t != nullptr) map[t] = b.i;
       std::vector<bool> marks;
       b.m.substitute(b.floor, map, marks, /*check=*/false);
     }, /*null_has_a_meaning=*/true},
    {"substitute_map_unused_to",
     [](Bench& b, const Term_* t) {
       TermManager::TermMap map;
       map[b.x] = t;
       std::vector<bool> marks;
       b.m.substitute(b.floor, map, marks, /*check=*/false);
     }, /*null_has_a_meaning=*/true},
    {"substitute_cache_unused_to",
     [](Bench& b, const Term_* t) {
       TermManager::TermMap cache;
       cache[b.x] = t;
       std::vector<bool> marks;
       b.m.substitute(b.floor, {}, {}, cache, marks);
     }, /*null_has_a_meaning=*/true},
    {"copy_term", [](Bench& b, const Term_* t) { TermManager().copy_term(b.m, t); }},
    {"copy_term_to_the_same_manager", [](Bench& b, const Term_* t) { b.m.copy_term(b.m, t); }},
    {"copy_term_with_subst_in",
     [](Bench& b, const Term_* t) { TermManager().copy_term_with_subst(b.m, t, {}); }},
    {"copy_term_with_subst_to",
     [](Bench& b, const Term_* t) {
       TermManager source;
       const Term_* copied = source.make_true();
       TermManager::TermMap map;
       map[copied] = t;
       b.m.copy_term_with_subst(source, copied, map);
     }, /*null_has_a_meaning=*/true},
    {"copy_term_with_subst_unused_from",
     [](Bench& b, const Term_* t) {
       TermManager::TermMap map;
       TermManager destination;
       if (t != nullptr) map[t] = destination.make_true();
       destination.copy_term_with_subst(b.m, b.floor, map);
     }, /*null_has_a_meaning=*/true},
    {"copy_term_with_subst_unused_to",
     [](Bench& b, const Term_* t) {
       TermManager source;
       TermManager::TermMap map;
       map[source.make_false()] = t;
       b.m.copy_term_with_subst(source, source.make_true(), map);
     }, /*null_has_a_meaning=*/true},
    {"copy_term_with_subst_unused_to_of_the_same_manager",
     [](Bench& b, const Term_* t) {
       TermManager::TermMap map;
       map[b.x] = t;
       b.m.copy_term_with_subst(b.m, b.floor, map);
     }, /*null_has_a_meaning=*/true},
    {"copy_terms",
     [](Bench& b, const Term_* t) {
       Terms out;
       TermManager().copy_terms(b.m, {b.i, t}, out, /*use_manager_marks=*/true);
     }},
    {"gc", [](Bench& b, const Term_* t) { b.m.gc({b.i, t}, {}, {}); }},
    {"to_shallow_str_literal", [](Bench& b, const Term_* t) { b.m.to_shallow_str_literal(t); }},
    {"bv_value", [](Bench& b, const Term_* t) { b.m.bv_value(t); }},
    {"make_operator",
     [](Bench& b, const Term_* t) {
       b.m.make_operator({.tag = SymbolTag::NOT}, {t});
     }},
    {"int_value", [](Bench& b, const Term_* t) { b.m.int_value(t); }},
    {"real_value", [](Bench& b, const Term_* t) { b.m.real_value(t); }},
    {"fp_value", [](Bench& b, const Term_* t) { b.m.fp_value(t); }},
    {"bv_width", [](Bench& b, const Term_* t) { b.m.bv_width(t); }},
    {"fp_format", [](Bench& b, const Term_* t) { b.m.fp_format(t); }},
    {"array_sorts", [](Bench& b, const Term_* t) { b.m.array_sorts(t); }},
    {"derived_make_implies", [](Bench& b, const Term_* t) { make_implies(b.m, t, b.p); }},
    {"derived_make_xor", [](Bench& b, const Term_* t) { make_xor(b.m, b.p, t); }},
    {"derived_make_equals", [](Bench& b, const Term_* t) { make_equals(b.m, t, b.i); }},
    {"derived_make_distinct", [](Bench& b, const Term_* t) { make_distinct(b.m, Terms{b.i, t}); }},
    {"derived_make_ite", [](Bench& b, const Term_* t) { make_ite(b.m, b.p, t, b.p); }},
    {"derived_make_lt", [](Bench& b, const Term_* t) { make_lt(b.m, t, b.i); }},
    {"derived_make_minus", [](Bench& b, const Term_* t) { make_minus(b.m, t); }},
    {"derived_make_minus_second", [](Bench& b, const Term_* t) { make_minus(b.m, b.i, t); }},
    {"derived_make_divide", [](Bench& b, const Term_* t) { make_divide(b.m, t, 3); }},
    {"derived_make_divisible", [](Bench& b, const Term_* t) { make_divisible(b.m, t, 3); }},
    {"derived_make_abs_of_a_type",
     [](Bench& b, const Term_* t) { make_abs(b.m, t, b.integers); }},
    {"derived_make_abs", [](Bench& b, const Term_* t) { make_abs(b.m, t); }},
    {"derived_make_div", [](Bench& b, const Term_* t) { make_div(b.m, t, 3); }},
    {"derived_make_and_of_a_list", [](Bench& b, const Term_* t) { make_and(b.m, Terms{b.p, t}); }},
    {"derived_make_bv_nand", [](Bench& b, const Term_* t) { make_bv_nand(b.m, t, b.x); }},
    {"derived_make_bv_redor", [](Bench& b, const Term_* t) { make_bv_redor(b.m, t); }},
    {"derived_make_bv_repeat", [](Bench& b, const Term_* t) { make_bv_repeat(b.m, 2, t); }},
    {"derived_make_bv_smulo", [](Bench& b, const Term_* t) { make_bv_smulo(b.m, t, b.x); }},
    {"derived_make_bv_smulo_second", [](Bench& b, const Term_* t) { make_bv_smulo(b.m, b.x, t); }},
    {"derived_make_bv_smod_second", [](Bench& b, const Term_* t) { make_bv_smod(b.m, b.x, t); }},
    {"derived_make_bv_sdivo_second", [](Bench& b, const Term_* t) { make_bv_sdivo(b.m, b.x, t); }},
    {"derived_make_fp_geq", [](Bench& b, const Term_* t) { make_fp_geq(b.m, t, b.f); }},
    {"derived_make_fp_from_parts_sign",
     [](Bench& b, const Term_* t) { make_fp_from_parts(b.m, t, b.x, b.x); }},
    {"derived_make_fp_from_parts_significand",
     [](Bench& b, const Term_* t) {
       make_fp_from_parts(b.m, b.bit, b.x, t);
     }},
    {"derived_make_fp_to_ubv",
     [](Bench& b, const Term_* t) { make_fp_to_ubv(b.m, 8, b.even, t); }},
};

const std::vector<SymbolCall> symbol_calls = {
    {"make_term", [](Bench& b, const Symbol* s) { b.m.make_term(s, {}); }},
    {"do_make_term", [](Bench& b, const Symbol* s) { b.m.do_make_term(s, {}); }},
    {"make_constant", [](Bench& b, const Symbol* s) { b.m.make_constant(s); }},
    {"make_uninterpreted_function",
     [](Bench& b, const Symbol* s) { b.m.make_uninterpreted_function(s, {b.i}); }},
    {"make_bin", [](Bench& b, const Symbol* s) { b.m.make_bin(s, b.i, b.i, "here"); }},
    {"typecheck", [](Bench& b, const Symbol* s) { b.m.typecheck(s, {}); }},
    {"free_symbol", [](Bench& b, const Symbol* s) { b.m.free_symbol(s); }},
    {"is_interpreted", [](Bench& b, const Symbol* s) { b.m.is_interpreted(s); }},
    {"is_uninterpreted_function",
     [](Bench& b, const Symbol* s) { b.m.is_uninterpreted_function(s); }},
    {"is_variable", [](Bench& b, const Symbol* s) { b.m.is_variable(s); }},
    {"is_constant", [](Bench& b, const Symbol* s) { b.m.is_constant(s); }},
    {"get_tag", [](Bench& b, const Symbol* s) { b.m.get_tag(s); }},
    {"is_number", [](Bench& b, const Symbol* s) { b.m.is_number(s, nullptr); }},
    {"function_sorts", [](Bench& b, const Symbol* s) { b.m.function_sorts(s); }},
    {"operator_of", [](Bench& b, const Symbol* s) { b.m.operator_of(s); }},
    {"symbol_of",
     [](Bench& b, const Symbol* s) {
       b.m.symbol_of({.kind = Operator::Kind::Function, .symbol = s});
     }},
    {"is_term_ite", [](Bench& b, const Symbol* s) { b.m.is_term_ite(s, nullptr); }},
    {"is_fprounding_even", [](Bench& b, const Symbol* s) { b.m.is_fprounding_even(s); }},
    {"is_fprounding_zero", [](Bench& b, const Symbol* s) { b.m.is_fprounding_zero(s); }},
    {"is_fprounding_plus_inf", [](Bench& b, const Symbol* s) { b.m.is_fprounding_plus_inf(s); }},
    {"is_fprounding_minus_inf", [](Bench& b, const Symbol* s) { b.m.is_fprounding_minus_inf(s); }},
    {"is_bv_symbol",
     [](Bench& b, const Symbol* s) {
       b.m.is_bv_symbol(s, hsh::HashMap<const Symbol*, size_t>(), nullptr);
     }},
    {"is_fp_symbol",
     [](Bench& b, const Symbol* s) {
       b.m.is_fp_symbol(hsh::HashMap<const Symbol*, IEEEFloat::format>(), s, nullptr, nullptr);
     }},
    {"copy_symbols",
     [](Bench& b, const Symbol* s) {
       Symbols out;
       TermManager().copy_symbols(b.m, {b.function, s}, out);
     }},
    {"gc", [](Bench& b, const Symbol* s) { b.m.gc({}, {b.function, s}, {}); }},
};

const std::vector<TypeCall> type_calls = {
    {"make_symbol", [](Bench& b, const DataType* t) { b.m.make_symbol("new", t); }},
    {"make_unique_symbol", [](Bench& b, const DataType* t) { b.m.make_unique_symbol("new", t); }},
    {"make_fresh_variable", [](Bench& b, const DataType* t) { b.m.make_fresh_variable(t); }},
    {"add_interpreted_symbol",
     [](Bench& b, const DataType* t) { b.m.add_interpreted_symbol("new", t, SymbolTag::NONE); }},
    {"get_width_from_type", [](Bench& b, const DataType* t) { b.m.get_width_from_type(t); }},
    {"bv_width", [](Bench& b, const DataType* t) { b.m.bv_width(t); }},
    {"fp_format", [](Bench& b, const DataType* t) { b.m.fp_format(t); }},
    {"array_sorts", [](Bench& b, const DataType* t) { b.m.array_sorts(t); }},
    {"function_sorts", [](Bench& b, const DataType* t) { b.m.function_sorts(t); }},
    {"get_array_type_index", [](Bench& b, const DataType* t) { b.m.get_array_type(t, b.bytes); }},
    {"get_array_type_element", [](Bench& b, const DataType* t) { b.m.get_array_type(b.bytes, t); }},
    {"get_function_type_argument",
     [](Bench& b, const DataType* t) { b.m.get_function_type({t}, b.bytes); }},
    {"get_function_type_result",
     [](Bench& b, const DataType* t) { b.m.get_function_type({b.bytes}, t); }},
    {"get_compound_type", [](Bench& b, const DataType* t) { b.m.get_compound_type({b.bytes, t}); }},
    {"is_function_type", [](Bench& b, const DataType* t) { b.m.is_function_type(t, nullptr, nullptr); }},
    {"is_bv_type", [](Bench& b, const DataType* t) { b.m.is_bv_type(t, nullptr); }},
    {"is_fp_type", [](Bench& b, const DataType* t) { b.m.is_fp_type(t, nullptr, nullptr); }},
    {"is_array_type", [](Bench& b, const DataType* t) { b.m.is_array_type(t, nullptr, nullptr); }},
    {"is_subtype_sub", [](Bench& b, const DataType* t) { b.m.is_subtype(t, b.integers); }},
    {"is_subtype_super", [](Bench& b, const DataType* t) { b.m.is_subtype(b.integers, t); }},
    {"get_supertype_first", [](Bench& b, const DataType* t) { b.m.get_supertype(t, b.integers); }},
    {"get_supertype_second", [](Bench& b, const DataType* t) { b.m.get_supertype(b.integers, t); }},
    {"is_finite_domain_type",
     [](Bench& b, const DataType* t) { b.m.is_finite_domain_type(t, nullptr); }},
    {"free_type", [](Bench& b, const DataType* t) { b.m.free_type(t); }},
    {"typecheck", [](Bench& b, const DataType* t) { b.m.typecheck(b.i, t, "here"); }},
    {"make_equality_symbol", [](Bench& b, const DataType* t) { b.m.make_equality_symbol(t); }},
    {"make_term_ite_symbol", [](Bench& b, const DataType* t) { b.m.make_term_ite_symbol(t); }},
    {"make_array_read_symbol",
     [](Bench& b, const DataType* t) { b.m.make_array_read_symbol(t, b.bytes); }},
    {"make_array_write_symbol",
     [](Bench& b, const DataType* t) { b.m.make_array_write_symbol(b.bytes, t); }},
    {"make_array_const_symbol",
     [](Bench& b, const DataType* t) { b.m.make_array_const_symbol(b.bytes, t); }},
    {"make_array_const", [](Bench& b, const DataType* t) { b.m.make_array_const(t, b.x); }},
    {"make_bv_symbol",
     [](Bench& b, const DataType* t) {
       hsh::HashMap<const Symbol*, size_t> by_symbol;
       hsh::HashMap<size_t, const Symbol*> by_width;
       b.m.make_bv_symbol("new", SymbolTag::BV_ADD, 8, 2, by_symbol, by_width, t);
     }, /*null_has_a_meaning=*/true},
    {"copy_types",
     [](Bench& b, const DataType* t) {
       Types out;
       TermManager().copy_types(b.m, {b.bytes, t}, out);
     }},
    {"gc", [](Bench& b, const DataType* t) { b.m.gc({}, {}, {b.bytes, t}); }},
};
// clang-format on

// A constant of a type and with a symbol of its own, all three given to the bench's manager.
const Term_* make_victim(TermManager& m) {
  return m.make_constant(m.make_symbol("victim", m.get_simple_type("Victim", false)));
}

// Frees the victim and nothing that the bench holds.
void free_victim(Bench& b) { b.m.gc({b.both, b.floor, b.x, b.f, b.bit, b.even}, {b.function}, {}); }

// Such a call is answered or refused.
template <class Object>
void expect_no_death(Bench& bench, const Call<Object>& row) {
  try {
    row.call(bench, nullptr);
  } catch (const TermManager::error& e) {
    EXPECT_STREQ(e.what(), "Incompatible arguments to substitute");
  }
  EXPECT_EQ(bench.m.check_consistency(), "");
}

class TermMisuseDeathTest : public ::testing::TestWithParam<TermCall> {};

TEST_P(TermMisuseDeathTest, OfAnotherManager) {
  Bench bench;
  TermManager other;
  const Term_* t = make_victim(other);
  EXPECT_DEATH(GetParam().call(bench, t), "quill: misuse: a term of another manager");
}

TEST_P(TermMisuseDeathTest, Null) {
  Bench bench;
  if (GetParam().null_has_a_meaning) {
    expect_no_death(bench, GetParam());
  } else {
    EXPECT_DEATH(GetParam().call(bench, nullptr), "quill: misuse: a null term");
  }
}

TEST_P(TermMisuseDeathTest, Freed) {
  Bench bench;
  const Term_* t = make_victim(bench.m);
  free_victim(bench);
  // To put a term into a map its id is read, which the sanitizer reports before the call.
  const char* report = has_address_sanitizer
                           ? "quill: misuse: a term that was freed|use-after-poison"
                           : "quill: misuse: a term that was freed";
  EXPECT_DEATH(GetParam().call(bench, t), report);
}

class SymbolMisuseDeathTest : public ::testing::TestWithParam<SymbolCall> {};

TEST_P(SymbolMisuseDeathTest, OfAnotherManager) {
  Bench bench;
  TermManager other;
  const Symbol* s = make_victim(other)->symbol;
  EXPECT_DEATH(GetParam().call(bench, s), "quill: misuse: a symbol of another manager");
}

TEST_P(SymbolMisuseDeathTest, Null) {
  Bench bench;
  if (GetParam().null_has_a_meaning) {
    expect_no_death(bench, GetParam());
  } else {
    EXPECT_DEATH(GetParam().call(bench, nullptr), "quill: misuse: a null symbol");
  }
}

TEST_P(SymbolMisuseDeathTest, Freed) {
  Bench bench;
  const Symbol* s = make_victim(bench.m)->symbol;
  free_victim(bench);
  EXPECT_DEATH(GetParam().call(bench, s), "quill: misuse: a symbol that was freed");
}

class TypeMisuseDeathTest : public ::testing::TestWithParam<TypeCall> {};

TEST_P(TypeMisuseDeathTest, OfAnotherManager) {
  Bench bench;
  TermManager other;
  const DataType* type = make_victim(other)->symbol->type;
  EXPECT_DEATH(GetParam().call(bench, type), "quill: misuse: a type of another manager");
}

TEST_P(TypeMisuseDeathTest, Null) {
  Bench bench;
  if (GetParam().null_has_a_meaning) {
    expect_no_death(bench, GetParam());
  } else {
    EXPECT_DEATH(GetParam().call(bench, nullptr), "quill: misuse: a null type");
  }
}

TEST_P(TypeMisuseDeathTest, Freed) {
  Bench bench;
  const DataType* type = make_victim(bench.m)->symbol->type;
  free_victim(bench);
  EXPECT_DEATH(GetParam().call(bench, type), "quill: misuse: a type that was freed");
}

const auto name_of_call = [](const auto& param) { return std::string(param.param.name); };
INSTANTIATE_TEST_SUITE_P(Calls, TermMisuseDeathTest, ::testing::ValuesIn(term_calls), name_of_call);
INSTANTIATE_TEST_SUITE_P(Calls, SymbolMisuseDeathTest, ::testing::ValuesIn(symbol_calls),
                         name_of_call);
INSTANTIATE_TEST_SUITE_P(Calls, TypeMisuseDeathTest, ::testing::ValuesIn(type_calls), name_of_call);

TEST(MisuseDeathTest, ATypeGivenToFreeTypeTwice) {
  TermManager m;
  const DataType* type = m.get_simple_type("S", false);
  m.free_type(type);
  EXPECT_DEATH(m.free_type(type), "quill: misuse: a type that was freed");
}

TEST(MisuseDeathTest, ATypeThatAnotherTypeUsesGivenToFreeType) {
  TermManager m;
  const DataType* s = m.get_simple_type("S", false);
  const DataType* t = m.get_simple_type("T", false);
  const DataType* bits = m.get_bv_type(8);
  const DataType* array = m.get_array_type(s, bits);
  m.get_function_type({t}, array);
  m.get_fp_type(8, 23);
  for (const DataType* used : {s, t, bits, array, m.get_type_from_width(8),
                               m.get_simple_type("8:23", /*only_existing=*/false)}) {
    EXPECT_DEATH(m.free_type(used), "quill: misuse: freeing a type that another type uses");
  }
}

TEST(MisuseDeathTest, ATypeThatASymbolUsesGivenToFreeType) {
  TermManager m;
  const DataType* s = m.get_simple_type("S", false);
  const DataType* function = m.get_function_type({s}, s);
  const Symbol* x = m.make_symbol("x", s);
  const Symbol* f = m.make_symbol("f", function);
  const DataType* of_equality = m.make_equality_symbol(m.get_bv_type(8))->type;
  for (const DataType* used : {s, function, of_equality}) {
    EXPECT_DEATH(m.free_type(used),
                 "quill: misuse: freeing a type that a(nother type| symbol) uses");
  }
  EXPECT_DEATH(m.free_type(function), "quill: misuse: freeing a type that a symbol uses");
  // A symbol without its name is one still.
  m.free_symbol(f);
  EXPECT_DEATH(m.free_type(function), "quill: misuse: freeing a type that a symbol uses");
  m.gc({}, {x}, {function});
  m.free_type(function);
  EXPECT_DEATH(m.free_type(s), "quill: misuse: freeing a type that a symbol uses");
  m.gc({}, {}, {s});
  m.free_type(s);
  EXPECT_EQ(m.check_consistency(), "");
}

TEST(MisuseDeathTest, AStandardTypeGivenToFreeType) {
  TermManager m;
  for (const DataType* standard :
       {m.get_bool_type(), m.get_rat_type(), m.get_int_type(), m.get_fprounding_type(),
        m.get_bv_type(1)->get_component(0), m.get_fp_type(8, 23)->get_component(0),
        m.get_array_type(m.get_int_type(), m.get_int_type())->get_component(0)}) {
    EXPECT_DEATH(m.free_type(standard), "quill: misuse: freeing a standard type");
  }
  EXPECT_DEATH(m.free_type(m.get_universe()->get_application_type()),
               "quill: misuse: freeing the application type");
}

TEST(MisuseDeathTest, ASymbolWhoseNameHasGoneToAnotherGivenToFreeSymbol) {
  TermManager m;
  const Symbol* first = m.make_symbol("x", m.get_int_type());
  m.free_symbol(first);
  const Symbol* second = m.make_symbol("x", m.get_rat_type());
  EXPECT_DEATH(m.free_symbol(first),
               "quill: misuse: freeing a symbol whose name another symbol has");
  m.free_symbol(second);
  const Symbol* third = m.make_symbol("x", m.get_int_type());
  EXPECT_NE(third, first);
  EXPECT_DEATH(m.free_symbol(first),
               "quill: misuse: freeing a symbol whose name another symbol has");
  EXPECT_DEATH(m.free_symbol(second),
               "quill: misuse: freeing a symbol whose name another symbol has");
  EXPECT_EQ(m.get_signature()->get_symbol("x"), third);
}

TEST(MisuseDeathTest, ATermOfAManagerThatIsGone) {
  TermManager m;
  const Term_* t = make_victim(*std::make_unique<TermManager>());
  EXPECT_DEATH(m.make_not(t), "quill: misuse: a term of another manager");
}

TEST(MisuseDeathTest, WhateverDelegateIsThere) {
  // It would take anything.
  class Anything : public TermFactory {
   public:
    const Term_* make_term(const Symbol*, const Terms&) override { return nullptr; }
  } anything;
  TermManager m;
  TermManager other;
  m.set_delegate(&anything);
  m.set_delegate_enabled(true);
  EXPECT_DEATH(m.make_not(other.make_true()), "quill: misuse: a term of another manager");
}

// The answer of a user's code to a request.
class Answer : public TermFactory {
 public:
  explicit Answer(const Term_* term) : t(term) {}
  const Term_* make_term(const Symbol*, const Terms&) override { return t; }

 private:
  const Term_* t;
};

class Overriding : public TermManager {
 public:
  const Term_* make_term(const Symbol* s, const Terms& args) override {
    return answer != nullptr ? answer : TermManager::make_term(s, args);
  }
  const Term_* answer = nullptr;
};

// Every way in which a request of a bench goes through make_term.
const std::vector<std::pair<const char*, std::function<void(Bench&)>>> requests = {
    {"make_term", [](Bench& b) { b.m.make_term(b.function, {b.i}); }},
    {"make_not", [](Bench& b) { b.m.make_not(b.p); }},
    {"make_and", [](Bench& b) { b.m.make_and(b.p, b.p); }},
    {"make_constant", [](Bench& b) { b.m.make_constant(b.i->symbol); }},
    {"make_uninterpreted_function",
     [](Bench& b) { b.m.make_uninterpreted_function(b.function, {b.i}); }},
    {"make_bin", [](Bench& b) { b.m.make_bin(b.both->symbol, b.p, b.p, "here"); }},
    {"make_equal", [](Bench& b) { b.m.make_equal(b.x, b.x); }},
    {"make_bv_add", [](Bench& b) { b.m.make_bv_add(b.x, b.x); }},
    {"make_fp_abs", [](Bench& b) { b.m.make_fp_abs(b.f); }},
    {"substitute", [](Bench& b) { b.m.substitute(b.i, {b.x}, {b.x}); }},
};

TEST(MisuseDeathTest, AForeignOrFreedTermThatADelegateReturns) {
  for (const auto& [name, request] : requests) {
    SCOPED_TRACE(name);
    Bench bench;
    TermManager other;
    Answer foreign(make_victim(other));
    bench.m.set_delegate_enabled(true);
    bench.m.set_delegate(&foreign);
    EXPECT_DEATH(request(bench), "quill: misuse: a term of another manager");
    bench.m.set_delegate(nullptr);
    Answer freed(make_victim(bench.m));
    free_victim(bench);
    bench.m.set_delegate(&freed);
    EXPECT_DEATH(request(bench), "quill: misuse: a term that was freed");
    Answer none(nullptr);
    bench.m.set_delegate(&none);
    request(bench);
    EXPECT_EQ(bench.m.check_consistency(), "");
  }
}

TEST(MisuseDeathTest, AForeignOrFreedTermThatAnOverriddenMakeTermReturns) {
  TermManager source;
  const Term_* copied = source.make_not(source.make_true());
  const Term_* foreign = make_victim(source);
  const std::vector<std::function<void(TermManager&, const Term_*)>> calls = {
      [](TermManager& m, const Term_* p) { m.make_not(p); },
      [](TermManager& m, const Term_* p) { m.make_constant(p->symbol); },
      [](TermManager& m, const Term_* p) { m.make_iff(p, p); },
      [](TermManager& m, const Term_* p) {
        m.make_uninterpreted_function(m.get_signature()->get_symbol("`and`"), {p, p});
      },
      [](TermManager& m, const Term_* p) { m.substitute(p, {m.make_true()}, {p}); },
      [&](TermManager& m, const Term_*) { m.copy_term(source, copied); },
  };
  for (size_t i = 0; i < calls.size(); ++i) {
    SCOPED_TRACE(i);
    Overriding m;
    const Term_* p = m.make_constant(m.make_symbol("p", m.get_bool_type()));
    const Term_* freed = make_victim(m);
    m.gc({p}, {}, {});
    m.answer = foreign;
    EXPECT_DEATH(calls[i](m, p), "quill: misuse: a term of another manager");
    m.answer = freed;
    EXPECT_DEATH(calls[i](m, p), "quill: misuse: a term that was freed");
    m.answer = nullptr;
    calls[i](m, p);
    EXPECT_EQ(m.check_consistency(), "");
  }
}

TEST(MisuseDeathTest, WithChecksTurnedOff) {
  TermManager m;
  TermManager other;
  m.set_typecheck_enabled(false);
  EXPECT_DEATH(m.make_not(other.make_true()), "quill: misuse: a term of another manager");
}

TEST(MisuseDeathTest, AWalkThatBeginsAtAFreedTerm) {
  TermManager m;
  TermVisitorCallback callback;
  VisitForwarder forwarder(&callback);
  TermVisitor<VisitForwarder> visitor(&forwarder, /*visit_once=*/true);
  const Term_* freed = make_victim(m);
  m.gc({}, {}, {});
  EXPECT_DEATH(visitor.visit(freed, /*clear_marks=*/true),
               "a walk begins at a freed term|use-after-poison");
}

#endif

// What is no misuse.

TEST(Misuse, AMemoryThatIsUsedAgainIsAGoodTerm) {
  TermManager m;
  const Term_* kept = m.make_not(m.make_false());  // so that the memory stays the manager's
  const Term_* freed = m.make_not(m.make_true());
  m.gc({kept}, {}, {});
  const Term_* again = m.make_not(kept);
  EXPECT_EQ(again, freed);
  EXPECT_EQ(m.make_not(freed)->args[0], again);
}

TEST(Misuse, ASymbolWithoutItsNameIsStillOneOfTheManager) {
  TermManager m;
  const Symbol* s = m.make_symbol("s", m.get_int_type());
  m.free_symbol(s);
  EXPECT_EQ(m.make_constant(s)->symbol, s);
  EXPECT_TRUE(m.is_constant(s));
}

TEST(Misuse, ASymbolMayGiveItsNameBackTwice) {
  TermManager m;
  const Symbol* s = m.make_symbol("s", m.get_int_type());
  m.free_symbol(s);
  const std::string before = m.describe_state();
  m.free_symbol(s);
  EXPECT_EQ(m.describe_state(), before);
}

TEST(Misuse, ATermOfTheSourceIsGoodForCopying) {
  TermManager source;
  TermManager m;
  EXPECT_EQ(m.copy_term(source, source.make_true()), m.make_true());
}

}  // namespace
}  // namespace quill
