// Every operator that has a family of symbols, as a table of its own: what its symbol and its
// builder must be for sample parameters, and every way in which the builder refuses its arguments.

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <new>
#include <ostream>
#include <string>
#include <tuple>
#include <typeinfo>
#include <utility>
#include <vector>

#include "quill/terms/termmanager/operator_family.h"
#include "quill/terms/termmanager/term_manager.h"
#include "tests/unit/utils/failing_allocation.h"

namespace quill {
namespace {

using Terms = std::vector<const Term_*>;
using Names = std::vector<std::string>;

//------------------------------------------------------------------------------------------------
// Recognisers of any signature, with outputs as text

constexpr const char* untouched = "untouched";
constexpr const char* not_asked = "not asked";

template <class Out>
Out initial_output();
template <>
size_t initial_output<size_t>() {
  return 987654321;
}
template <>
const DataType* initial_output<const DataType*>() {
  return nullptr;
}
template <>
QNumber initial_output<QNumber>() {
  return QNumber(987654321);
}

std::string text_of(size_t value) { return std::to_string(value); }
std::string text_of(const DataType* value) { return value->to_str(); }
std::string text_of(const QNumber& value) { return value.to_str(); }

struct Recogniser {
  size_t outputs;
  // Bit i of the mask: whether the i-th output pointer is not null.
  std::function<bool(const TermManager&, const Symbol*, unsigned mask, Names& texts)> ask;
};

template <class... Outs>
Recogniser recogniser(bool (TermManager::*member)(const Symbol*, Outs*...) const) {
  return {
      sizeof...(Outs),
      [member](const TermManager& m, const Symbol* s, unsigned mask, Names& texts) {
        return [&]<size_t... I>(std::index_sequence<I...>) {
          std::tuple<Outs...> outs{initial_output<Outs>()...};
          const bool answer =
              (m.*member)(s, ((mask >> I & 1U) != 0 ? &std::get<I>(outs) : nullptr)...);
          texts = {((mask >> I & 1U) == 0                         ? not_asked
                    : std::get<I>(outs) == initial_output<Outs>() ? untouched
                                                                  : text_of(std::get<I>(outs)))...};
          return answer;
        }
        (std::index_sequence_for<Outs...>());
      }};
}

//------------------------------------------------------------------------------------------------
// The table

// What a failed builder leaves: its own check comes before the symbol, the typecheck after it.
enum Leaves { nothing_made, symbol_made };

struct Failure {
  Names args;
  const char* message;
  Leaves leaves;
};

struct Row {
  const char* operation;
  const char* name;  // of the symbol, without the backquotes around it
  int tag;
  const char* type;
  uint64_t arity;
  std::function<const Symbol*(TermManager&)> make_symbol;
  std::function<const Term_*(TermManager&, const Terms&)> build;
  Recogniser recognise;
  Names outputs;
  Names args;  // of the builder; the last of them, as many as the arity, are those of the term
  std::vector<Failure> failures;
};

const std::vector<Row>& table() {
  // clang-format off
  static const std::vector<Row> rows = {
      {"make_int_modular_congruence", "int_mod_congr_7", 13, "(-> Int Int Bool)", 2,
       [](TermManager& m) { return m.make_int_modular_congruence_symbol(7); },
       [](TermManager& m, const Terms& t) { return m.make_int_modular_congruence(7, t[0], t[1]); },
       recogniser(&TermManager::is_int_modular_congruence), {"7"}, {"i", "j"},
       {{{"r", "j"}, "type error. term r has type Real, but Int was expected. (make_int_modular_congruence)", symbol_made},
        {{"x8", "j"}, "type error. term x8 has type (BitVec 8), but Int was expected. (make_int_modular_congruence)", symbol_made},
        {{"i", "r"}, "type error. term r has type Real, but Int was expected. (make_int_modular_congruence)", symbol_made},
        {{"i", "p"}, "type error. term p has type Bool, but Int was expected. (make_int_modular_congruence)", symbol_made}}},
      {"make_bv_concat", "bvconcat_8_4", 14, "(-> (BitVec 8) (BitVec 4) (BitVec 12))", 2,
       [](TermManager& m) { return m.make_bv_concat_symbol(8, 4); },
       [](TermManager& m, const Terms& t) { return m.make_bv_concat(t[0], t[1]); },
       recogniser(&TermManager::is_bv_concat), {"8", "4"}, {"x8", "x4"},
       {{{"r", "x4"}, "type error. term r is not  a bit vector", nothing_made},
        {{"x8", "r"}, "type error. term r is not  a bit vector", nothing_made},
        {{"f", "r"}, "type error. term f is not  a bit vector", nothing_made}}},
      {"make_bv_extract", "bvextract_6_2_8", 15, "(-> (BitVec 8) (BitVec 5))", 1,
       [](TermManager& m) { return m.make_bv_extract_symbol(6, 2, 8); },
       [](TermManager& m, const Terms& t) { return m.make_bv_extract(6, 2, t[0]); },
       recogniser(&TermManager::is_bv_extract), {"6", "2", "8"}, {"x8"},
       {{{"r"}, "type error. term r is not a bit-vector", nothing_made},
        {{"f"}, "type error. term f is not a bit-vector", nothing_made}}},
      {"make_bv_not", "bvnot_8", 16, "(-> (BitVec 8) (BitVec 8))", 1,
       [](TermManager& m) { return m.make_bv_not_symbol(8); },
       [](TermManager& m, const Terms& t) { return m.make_bv_not(t[0]); },
       recogniser(&TermManager::is_bv_not), {"8"}, {"x8"},
       {{{"r"}, "type error. term ris not a bit-vector", nothing_made},
        {{"f"}, "type error. term fis not a bit-vector", nothing_made}}},
      {"make_bv_and", "bvand_8", 17, "(-> (BitVec 8) (BitVec 8) (BitVec 8))", 2,
       [](TermManager& m) { return m.make_bv_and_symbol(8); },
       [](TermManager& m, const Terms& t) { return m.make_bv_and(t[0], t[1]); },
       recogniser(&TermManager::is_bv_and), {"8"}, {"x8", "y8"},
       {{{"r", "y8"}, "type error. term r is not a bit vector", nothing_made},
        {{"f", "r"}, "type error. term f is not a bit vector", nothing_made},
        {{"x8", "x4"}, "type error. term x4 has type (BitVec 4), but (BitVec 8) was expected. (make_bv_and)", symbol_made},
        {{"x8", "r"}, "type error. term r has type Real, but (BitVec 8) was expected. (make_bv_and)", symbol_made}}},
      {"make_bv_or", "bvor_8", 18, "(-> (BitVec 8) (BitVec 8) (BitVec 8))", 2,
       [](TermManager& m) { return m.make_bv_or_symbol(8); },
       [](TermManager& m, const Terms& t) { return m.make_bv_or(t[0], t[1]); },
       recogniser(&TermManager::is_bv_or), {"8"}, {"x8", "y8"},
       {{{"r", "y8"}, "type error. term r is not a bit vector", nothing_made},
        {{"f", "r"}, "type error. term f is not a bit vector", nothing_made},
        {{"x8", "x4"}, "type error. term x4 has type (BitVec 4), but (BitVec 8) was expected. (make_bv_or)", symbol_made},
        {{"x8", "r"}, "type error. term r has type Real, but (BitVec 8) was expected. (make_bv_or)", symbol_made}}},
      {"make_bv_xor", "bvxor_8", 19, "(-> (BitVec 8) (BitVec 8) (BitVec 8))", 2,
       [](TermManager& m) { return m.make_bv_xor_symbol(8); },
       [](TermManager& m, const Terms& t) { return m.make_bv_xor(t[0], t[1]); },
       recogniser(&TermManager::is_bv_xor), {"8"}, {"x8", "y8"},
       {{{"r", "y8"}, "type error. term r is not a bit vector", nothing_made},
        {{"f", "r"}, "type error. term f is not a bit vector", nothing_made},
        {{"x8", "x4"}, "type error. term x4 has type (BitVec 4), but (BitVec 8) was expected. (make_bv_xor)", symbol_made},
        {{"x8", "r"}, "type error. term r has type Real, but (BitVec 8) was expected. (make_bv_xor)", symbol_made}}},
      {"make_bv_ult", "bvult_8", 20, "(-> (BitVec 8) (BitVec 8) Bool)", 2,
       [](TermManager& m) { return m.make_bv_ult_symbol(8); },
       [](TermManager& m, const Terms& t) { return m.make_bv_ult(t[0], t[1]); },
       recogniser(&TermManager::is_bv_ult), {"8"}, {"x8", "y8"},
       {{{"r", "y8"}, "type error. term r is not a bit vector", nothing_made},
        {{"f", "r"}, "type error. term f is not a bit vector", nothing_made},
        {{"x8", "x4"}, "type error. term x4 has type (BitVec 4), but (BitVec 8) was expected. (make_bv_ult)", symbol_made},
        {{"x8", "r"}, "type error. term r has type Real, but (BitVec 8) was expected. (make_bv_ult)", symbol_made}}},
      {"make_bv_slt", "bvslt_8", 21, "(-> (BitVec 8) (BitVec 8) Bool)", 2,
       [](TermManager& m) { return m.make_bv_slt_symbol(8); },
       [](TermManager& m, const Terms& t) { return m.make_bv_slt(t[0], t[1]); },
       recogniser(&TermManager::is_bv_slt), {"8"}, {"x8", "y8"},
       {{{"r", "y8"}, "type error. term r is not a bit vector", nothing_made},
        {{"f", "r"}, "type error. term f is not a bit vector", nothing_made},
        {{"x8", "x4"}, "type error. term x4 has type (BitVec 4), but (BitVec 8) was expected. (make_bv_slt)", symbol_made},
        {{"x8", "r"}, "type error. term r has type Real, but (BitVec 8) was expected. (make_bv_slt)", symbol_made}}},
      {"make_bv_ule", "bvule_8", 22, "(-> (BitVec 8) (BitVec 8) Bool)", 2,
       [](TermManager& m) { return m.make_bv_ule_symbol(8); },
       [](TermManager& m, const Terms& t) { return m.make_bv_ule(t[0], t[1]); },
       recogniser(&TermManager::is_bv_ule), {"8"}, {"x8", "y8"},
       {{{"r", "y8"}, "type error. term r is not a bit vector", nothing_made},
        {{"f", "r"}, "type error. term f is not a bit vector", nothing_made},
        {{"x8", "x4"}, "type error. term x4 has type (BitVec 4), but (BitVec 8) was expected. (make_bv_ule)", symbol_made},
        {{"x8", "r"}, "type error. term r has type Real, but (BitVec 8) was expected. (make_bv_ule)", symbol_made}}},
      {"make_bv_sle", "bvsle_8", 23, "(-> (BitVec 8) (BitVec 8) Bool)", 2,
       [](TermManager& m) { return m.make_bv_sle_symbol(8); },
       [](TermManager& m, const Terms& t) { return m.make_bv_sle(t[0], t[1]); },
       recogniser(&TermManager::is_bv_sle), {"8"}, {"x8", "y8"},
       {{{"r", "y8"}, "type error. term r is not a bit vector", nothing_made},
        {{"f", "r"}, "type error. term f is not a bit vector", nothing_made},
        {{"x8", "x4"}, "type error. term x4 has type (BitVec 4), but (BitVec 8) was expected. (make_bv_sle)", symbol_made},
        {{"x8", "r"}, "type error. term r has type Real, but (BitVec 8) was expected. (make_bv_sle)", symbol_made}}},
      {"make_bv_comp", "bvcomp_8", 24, "(-> (BitVec 8) (BitVec 8) (BitVec 1))", 2,
       [](TermManager& m) { return m.make_bv_comp_symbol(8); },
       [](TermManager& m, const Terms& t) { return m.make_bv_comp(t[0], t[1]); },
       recogniser(&TermManager::is_bv_comp), {"8"}, {"x8", "y8"},
       {{{"r", "y8"}, "type error. term r is not a bit vector", nothing_made},
        {{"f", "r"}, "type error. term f is not a bit vector", nothing_made},
        {{"x8", "x4"}, "type error. term x4 has type (BitVec 4), but (BitVec 8) was expected. (make_bv_comp)", symbol_made},
        {{"x8", "r"}, "type error. term r has type Real, but (BitVec 8) was expected. (make_bv_comp)", symbol_made}}},
      {"make_bv_neg", "bvneg_8", 25, "(-> (BitVec 8) (BitVec 8))", 1,
       [](TermManager& m) { return m.make_bv_neg_symbol(8); },
       [](TermManager& m, const Terms& t) { return m.make_bv_neg(t[0]); },
       recogniser(&TermManager::is_bv_neg), {"8"}, {"x8"},
       {{{"r"}, "type error. term ris not a bit-vector", nothing_made},
        {{"f"}, "type error. term fis not a bit-vector", nothing_made}}},
      {"make_bv_add", "bvadd_8", 26, "(-> (BitVec 8) (BitVec 8) (BitVec 8))", 2,
       [](TermManager& m) { return m.make_bv_add_symbol(8); },
       [](TermManager& m, const Terms& t) { return m.make_bv_add(t[0], t[1]); },
       recogniser(&TermManager::is_bv_add), {"8"}, {"x8", "y8"},
       {{{"r", "y8"}, "type error. term r is not a bit vector", nothing_made},
        {{"f", "r"}, "type error. term f is not a bit vector", nothing_made},
        {{"x8", "x4"}, "type error. term x4 has type (BitVec 4), but (BitVec 8) was expected. (make_bv_add)", symbol_made},
        {{"x8", "r"}, "type error. term r has type Real, but (BitVec 8) was expected. (make_bv_add)", symbol_made}}},
      {"make_bv_sub", "bvsub_8", 27, "(-> (BitVec 8) (BitVec 8) (BitVec 8))", 2,
       [](TermManager& m) { return m.make_bv_sub_symbol(8); },
       [](TermManager& m, const Terms& t) { return m.make_bv_sub(t[0], t[1]); },
       recogniser(&TermManager::is_bv_sub), {"8"}, {"x8", "y8"},
       {{{"r", "y8"}, "type error. term r is not a bit vector", nothing_made},
        {{"f", "r"}, "type error. term f is not a bit vector", nothing_made},
        {{"x8", "x4"}, "type error. term x4 has type (BitVec 4), but (BitVec 8) was expected. (make_bv_sub)", symbol_made},
        {{"x8", "r"}, "type error. term r has type Real, but (BitVec 8) was expected. (make_bv_sub)", symbol_made}}},
      {"make_bv_mul", "bvmul_8", 28, "(-> (BitVec 8) (BitVec 8) (BitVec 8))", 2,
       [](TermManager& m) { return m.make_bv_mul_symbol(8); },
       [](TermManager& m, const Terms& t) { return m.make_bv_mul(t[0], t[1]); },
       recogniser(&TermManager::is_bv_mul), {"8"}, {"x8", "y8"},
       {{{"r", "y8"}, "type error. term r is not a bit vector", nothing_made},
        {{"f", "r"}, "type error. term f is not a bit vector", nothing_made},
        {{"x8", "x4"}, "type error. term x4 has type (BitVec 4), but (BitVec 8) was expected. (make_bv_mul)", symbol_made},
        {{"x8", "r"}, "type error. term r has type Real, but (BitVec 8) was expected. (make_bv_mul)", symbol_made}}},
      {"make_bv_udiv", "bvudiv_8", 29, "(-> (BitVec 8) (BitVec 8) (BitVec 8))", 2,
       [](TermManager& m) { return m.make_bv_udiv_symbol(8); },
       [](TermManager& m, const Terms& t) { return m.make_bv_udiv(t[0], t[1]); },
       recogniser(&TermManager::is_bv_udiv), {"8"}, {"x8", "y8"},
       {{{"r", "y8"}, "type error. term r is not a bit vector", nothing_made},
        {{"f", "r"}, "type error. term f is not a bit vector", nothing_made},
        {{"x8", "x4"}, "type error. term x4 has type (BitVec 4), but (BitVec 8) was expected. (make_bv_udiv)", symbol_made},
        {{"x8", "r"}, "type error. term r has type Real, but (BitVec 8) was expected. (make_bv_udiv)", symbol_made}}},
      {"make_bv_sdiv", "bvsdiv_8", 30, "(-> (BitVec 8) (BitVec 8) (BitVec 8))", 2,
       [](TermManager& m) { return m.make_bv_sdiv_symbol(8); },
       [](TermManager& m, const Terms& t) { return m.make_bv_sdiv(t[0], t[1]); },
       recogniser(&TermManager::is_bv_sdiv), {"8"}, {"x8", "y8"},
       {{{"r", "y8"}, "type error. term r is not a bit vector", nothing_made},
        {{"f", "r"}, "type error. term f is not a bit vector", nothing_made},
        {{"x8", "x4"}, "type error. term x4 has type (BitVec 4), but (BitVec 8) was expected. (make_bv_sdiv)", symbol_made},
        {{"x8", "r"}, "type error. term r has type Real, but (BitVec 8) was expected. (make_bv_sdiv)", symbol_made}}},
      {"make_bv_urem", "bvurem_8", 31, "(-> (BitVec 8) (BitVec 8) (BitVec 8))", 2,
       [](TermManager& m) { return m.make_bv_urem_symbol(8); },
       [](TermManager& m, const Terms& t) { return m.make_bv_urem(t[0], t[1]); },
       recogniser(&TermManager::is_bv_urem), {"8"}, {"x8", "y8"},
       {{{"r", "y8"}, "type error. term r is not a bit vector", nothing_made},
        {{"f", "r"}, "type error. term f is not a bit vector", nothing_made},
        {{"x8", "x4"}, "type error. term x4 has type (BitVec 4), but (BitVec 8) was expected. (make_bv_urem)", symbol_made},
        {{"x8", "r"}, "type error. term r has type Real, but (BitVec 8) was expected. (make_bv_urem)", symbol_made}}},
      {"make_bv_srem", "bvsrem_8", 32, "(-> (BitVec 8) (BitVec 8) (BitVec 8))", 2,
       [](TermManager& m) { return m.make_bv_srem_symbol(8); },
       [](TermManager& m, const Terms& t) { return m.make_bv_srem(t[0], t[1]); },
       recogniser(&TermManager::is_bv_srem), {"8"}, {"x8", "y8"},
       {{{"r", "y8"}, "type error. term r is not a bit vector", nothing_made},
        {{"f", "r"}, "type error. term f is not a bit vector", nothing_made},
        {{"x8", "x4"}, "type error. term x4 has type (BitVec 4), but (BitVec 8) was expected. (make_bv_srem)", symbol_made},
        {{"x8", "r"}, "type error. term r has type Real, but (BitVec 8) was expected. (make_bv_srem)", symbol_made}}},
      {"make_bv_lshl", "bvlshl_8", 33, "(-> (BitVec 8) (BitVec 8) (BitVec 8))", 2,
       [](TermManager& m) { return m.make_bv_lshl_symbol(8); },
       [](TermManager& m, const Terms& t) { return m.make_bv_lshl(t[0], t[1]); },
       recogniser(&TermManager::is_bv_lshl), {"8"}, {"x8", "y8"},
       {{{"r", "y8"}, "type error. term r is not a bit vector", nothing_made},
        {{"f", "r"}, "type error. term f is not a bit vector", nothing_made},
        {{"x8", "x4"}, "type error. term x4 has type (BitVec 4), but (BitVec 8) was expected. (make_bv_lshl)", symbol_made},
        {{"x8", "r"}, "type error. term r has type Real, but (BitVec 8) was expected. (make_bv_lshl)", symbol_made}}},
      {"make_bv_lshr", "bvlshr_8", 34, "(-> (BitVec 8) (BitVec 8) (BitVec 8))", 2,
       [](TermManager& m) { return m.make_bv_lshr_symbol(8); },
       [](TermManager& m, const Terms& t) { return m.make_bv_lshr(t[0], t[1]); },
       recogniser(&TermManager::is_bv_lshr), {"8"}, {"x8", "y8"},
       {{{"r", "y8"}, "type error. term r is not a bit vector", nothing_made},
        {{"f", "r"}, "type error. term f is not a bit vector", nothing_made},
        {{"x8", "x4"}, "type error. term x4 has type (BitVec 4), but (BitVec 8) was expected. (make_bv_lshr)", symbol_made},
        {{"x8", "r"}, "type error. term r has type Real, but (BitVec 8) was expected. (make_bv_lshr)", symbol_made}}},
      {"make_bv_ashr", "bvashr_8", 35, "(-> (BitVec 8) (BitVec 8) (BitVec 8))", 2,
       [](TermManager& m) { return m.make_bv_ashr_symbol(8); },
       [](TermManager& m, const Terms& t) { return m.make_bv_ashr(t[0], t[1]); },
       recogniser(&TermManager::is_bv_ashr), {"8"}, {"x8", "y8"},
       {{{"r", "y8"}, "type error. term r is not a bit vector", nothing_made},
        {{"f", "r"}, "type error. term f is not a bit vector", nothing_made},
        {{"x8", "x4"}, "type error. term x4 has type (BitVec 4), but (BitVec 8) was expected. (make_bv_ashr)", symbol_made},
        {{"x8", "r"}, "type error. term r has type Real, but (BitVec 8) was expected. (make_bv_ashr)", symbol_made}}},
      {"make_bv_rotate_left", "bvrol_3_8", 36, "(-> (BitVec 8) (BitVec 8))", 1,
       [](TermManager& m) { return m.make_bv_rotate_left_symbol(3, 8); },
       [](TermManager& m, const Terms& t) { return m.make_bv_rotate_left(3, t[0]); },
       recogniser(&TermManager::is_bv_rotate_left), {"3", "8"}, {"x8"},
       {{{"r"}, "type error. term ris not a bit-vector", nothing_made},
        {{"f"}, "type error. term fis not a bit-vector", nothing_made}}},
      {"make_bv_rotate_right", "bvror_3_8", 37, "(-> (BitVec 8) (BitVec 8))", 1,
       [](TermManager& m) { return m.make_bv_rotate_right_symbol(3, 8); },
       [](TermManager& m, const Terms& t) { return m.make_bv_rotate_right(3, t[0]); },
       recogniser(&TermManager::is_bv_rotate_right), {"3", "8"}, {"x8"},
       {{{"r"}, "type error. term ris not a bit-vector", nothing_made},
        {{"f"}, "type error. term fis not a bit-vector", nothing_made}}},
      {"make_bv_zero_extend", "bvzext_3_8", 38, "(-> (BitVec 8) (BitVec 11))", 1,
       [](TermManager& m) { return m.make_bv_zero_extend_symbol(3, 8); },
       [](TermManager& m, const Terms& t) { return m.make_bv_zero_extend(3, t[0]); },
       recogniser(&TermManager::is_bv_zero_extend), {"3", "8"}, {"x8"},
       {{{"r"}, "type error. term ris not a bit-vector", nothing_made},
        {{"f"}, "type error. term fis not a bit-vector", nothing_made}}},
      {"make_bv_sign_extend", "bvsext_3_8", 39, "(-> (BitVec 8) (BitVec 11))", 1,
       [](TermManager& m) { return m.make_bv_sign_extend_symbol(3, 8); },
       [](TermManager& m, const Terms& t) { return m.make_bv_sign_extend(3, t[0]); },
       recogniser(&TermManager::is_bv_sign_extend), {"3", "8"}, {"x8"},
       {{{"r"}, "type error. term ris not a bit-vector", nothing_made},
        {{"f"}, "type error. term fis not a bit-vector", nothing_made}}},
      {"make_array_read", "read_int_rat", 40, "(-> (Array Int Real) Int Real)", 2,
       [](TermManager& m) { return m.make_array_read_symbol(m.get_int_type(), m.get_rat_type()); },
       [](TermManager& m, const Terms& t) { return m.make_array_read(t[0], t[1]); },
       recogniser(&TermManager::is_array_read), {"Int", "Real"}, {"a", "i"},
       {{{"x8", "i"}, "type error. term x8 is not an array", nothing_made},
        {{"i", "r"}, "type error. term i is not an array", nothing_made},
        {{"a", "r"}, "type error. term r has type Real, but Int was expected. (make_array_read)", symbol_made},
        {{"a", "a"}, "type error. term a has type (Array Int Real), but Int was expected. (make_array_read)", symbol_made}}},
      {"make_array_write", "write_int_rat", 41, "(-> (Array Int Real) Int Real (Array Int Real))", 3,
       [](TermManager& m) { return m.make_array_write_symbol(m.get_int_type(), m.get_rat_type()); },
       [](TermManager& m, const Terms& t) { return m.make_array_write(t[0], t[1], t[2]); },
       recogniser(&TermManager::is_array_write), {"Int", "Real"}, {"a", "i", "r"},
       {{{"x8", "i", "r"}, "type error. term x8 is not an array", nothing_made},
        {{"i", "p", "p"}, "type error. term i is not an array", nothing_made},
        {{"a", "r", "r"}, "type error. term r has type Real, but Int was expected. (make_array_write)", symbol_made},
        {{"a", "x8", "r"}, "type error. term x8 has type (BitVec 8), but Int was expected. (make_array_write)", symbol_made},
        {{"a", "i", "p"}, "type error. term p has type Bool, but Real was expected. (make_array_write)", symbol_made},
        {{"a", "i", "a"}, "type error. term a has type (Array Int Real), but Real was expected. (make_array_write)", symbol_made},
        {{"a", "r", "p"}, "type error. term r has type Real, but Int was expected. (make_array_write)", symbol_made}}},
      {"make_array_const", "const_int_rat", 42, "(-> Real (Array Int Real))", 1,
       [](TermManager& m) { return m.make_array_const_symbol(m.get_int_type(), m.get_rat_type()); },
       [](TermManager& m, const Terms& t) { return m.make_array_const(t[0]->symbol->get_output_type(), t[1]); },
       recogniser(&TermManager::is_array_const), {"Int", "Real"}, {"a", "r"},
       {{{"i", "r"}, "type error. type Int is not an array", nothing_made},
        {{"x8", "p"}, "type error. type (BitVec 8) is not an array", nothing_made},
        {{"a", "p"}, "type error. term p has type Bool, but Real was expected. (make_array_const)", symbol_made},
        {{"a", "a"}, "type error. term a has type (Array Int Real), but Real was expected. (make_array_const)", symbol_made}}},
      {"make_fp_equal", "fpeq_8_23", 43, "(-> (FP |8:23|) (FP |8:23|) Bool)", 2,
       [](TermManager& m) { return m.make_fp_equal_symbol(8, 23); },
       [](TermManager& m, const Terms& t) { return m.make_fp_equal(t[0], t[1]); },
       recogniser(&TermManager::is_fp_equal), {"8", "23"}, {"f", "g"},
       {{{"x8", "g"}, "type error. term x8 is not a FP", nothing_made},
        {{"r", "x8"}, "type error. term r is not a FP", nothing_made},
        {{"f", "h"}, "type error. term h has type (FP |11:52|), but (FP |8:23|) was expected. (make_fp_equal)", symbol_made},
        {{"f", "x8"}, "type error. term x8 has type (BitVec 8), but (FP |8:23|) was expected. (make_fp_equal)", symbol_made}}},
      {"make_fp_lt", "fplt_8_23", 44, "(-> (FP |8:23|) (FP |8:23|) Bool)", 2,
       [](TermManager& m) { return m.make_fp_lt_symbol(8, 23); },
       [](TermManager& m, const Terms& t) { return m.make_fp_lt(t[0], t[1]); },
       recogniser(&TermManager::is_fp_lt), {"8", "23"}, {"f", "g"},
       {{{"x8", "g"}, "type error. term x8 is not a FP", nothing_made},
        {{"r", "x8"}, "type error. term r is not a FP", nothing_made},
        {{"f", "h"}, "type error. term h has type (FP |11:52|), but (FP |8:23|) was expected. (make_fp_lt)", symbol_made},
        {{"f", "x8"}, "type error. term x8 has type (BitVec 8), but (FP |8:23|) was expected. (make_fp_lt)", symbol_made}}},
      {"make_fp_le", "fple_8_23", 45, "(-> (FP |8:23|) (FP |8:23|) Bool)", 2,
       [](TermManager& m) { return m.make_fp_le_symbol(8, 23); },
       [](TermManager& m, const Terms& t) { return m.make_fp_le(t[0], t[1]); },
       recogniser(&TermManager::is_fp_le), {"8", "23"}, {"f", "g"},
       {{{"x8", "g"}, "type error. term x8 is not a FP", nothing_made},
        {{"r", "x8"}, "type error. term r is not a FP", nothing_made},
        {{"f", "h"}, "type error. term h has type (FP |11:52|), but (FP |8:23|) was expected. (make_fp_le)", symbol_made},
        {{"f", "x8"}, "type error. term x8 has type (BitVec 8), but (FP |8:23|) was expected. (make_fp_le)", symbol_made}}},
      {"make_fp_neg", "fpneg_8_23", 46, "(-> (FP |8:23|) (FP |8:23|))", 1,
       [](TermManager& m) { return m.make_fp_neg_symbol(8, 23); },
       [](TermManager& m, const Terms& t) { return m.make_fp_neg(t[0]); },
       recogniser(&TermManager::is_fp_neg), {"8", "23"}, {"f"},
       {{{"x8"}, "type error. term x8 is not a FP", nothing_made},
        {{"rm"}, "type error. term rm is not a FP", nothing_made}}},
      {"make_fp_add", "fpadd_8_23", 47, "(-> FPRounding (FP |8:23|) (FP |8:23|) (FP |8:23|))", 3,
       [](TermManager& m) { return m.make_fp_add_symbol(8, 23); },
       [](TermManager& m, const Terms& t) { return m.make_fp_add(t[0], t[1], t[2]); },
       recogniser(&TermManager::is_fp_add), {"8", "23"}, {"rm", "f", "g"},
       {{{"rm", "x8", "g"}, "type error. term x8 is not a FP", nothing_made},
        {{"f", "r", "x8"}, "type error. term r is not a FP", nothing_made},
        {{"f", "f", "g"}, "type error. term f has type (FP |8:23|), but FPRounding was expected. (make_fp_add)", symbol_made},
        {{"i", "f", "g"}, "type error. term i has type Int, but FPRounding was expected. (make_fp_add)", symbol_made},
        {{"rm", "f", "h"}, "type error. term h has type (FP |11:52|), but (FP |8:23|) was expected. (make_fp_add)", symbol_made},
        {{"rm", "f", "rm"}, "type error. term rm has type FPRounding, but (FP |8:23|) was expected. (make_fp_add)", symbol_made},
        {{"f", "f", "h"}, "type error. term f has type (FP |8:23|), but FPRounding was expected. (make_fp_add)", symbol_made}}},
      {"make_fp_sub", "fpsub_8_23", 48, "(-> FPRounding (FP |8:23|) (FP |8:23|) (FP |8:23|))", 3,
       [](TermManager& m) { return m.make_fp_sub_symbol(8, 23); },
       [](TermManager& m, const Terms& t) { return m.make_fp_sub(t[0], t[1], t[2]); },
       recogniser(&TermManager::is_fp_sub), {"8", "23"}, {"rm", "f", "g"},
       {{{"rm", "x8", "g"}, "type error. term x8 is not a FP", nothing_made},
        {{"f", "r", "x8"}, "type error. term r is not a FP", nothing_made},
        {{"f", "f", "g"}, "type error. term f has type (FP |8:23|), but FPRounding was expected. (make_fp_sub)", symbol_made},
        {{"i", "f", "g"}, "type error. term i has type Int, but FPRounding was expected. (make_fp_sub)", symbol_made},
        {{"rm", "f", "h"}, "type error. term h has type (FP |11:52|), but (FP |8:23|) was expected. (make_fp_sub)", symbol_made},
        {{"rm", "f", "rm"}, "type error. term rm has type FPRounding, but (FP |8:23|) was expected. (make_fp_sub)", symbol_made},
        {{"f", "f", "h"}, "type error. term f has type (FP |8:23|), but FPRounding was expected. (make_fp_sub)", symbol_made}}},
      {"make_fp_mul", "fpmul_8_23", 49, "(-> FPRounding (FP |8:23|) (FP |8:23|) (FP |8:23|))", 3,
       [](TermManager& m) { return m.make_fp_mul_symbol(8, 23); },
       [](TermManager& m, const Terms& t) { return m.make_fp_mul(t[0], t[1], t[2]); },
       recogniser(&TermManager::is_fp_mul), {"8", "23"}, {"rm", "f", "g"},
       {{{"rm", "x8", "g"}, "type error. term x8 is not a FP", nothing_made},
        {{"f", "r", "x8"}, "type error. term r is not a FP", nothing_made},
        {{"f", "f", "g"}, "type error. term f has type (FP |8:23|), but FPRounding was expected. (make_fp_mul)", symbol_made},
        {{"i", "f", "g"}, "type error. term i has type Int, but FPRounding was expected. (make_fp_mul)", symbol_made},
        {{"rm", "f", "h"}, "type error. term h has type (FP |11:52|), but (FP |8:23|) was expected. (make_fp_mul)", symbol_made},
        {{"rm", "f", "rm"}, "type error. term rm has type FPRounding, but (FP |8:23|) was expected. (make_fp_mul)", symbol_made},
        {{"f", "f", "h"}, "type error. term f has type (FP |8:23|), but FPRounding was expected. (make_fp_mul)", symbol_made}}},
      {"make_fp_div", "fpdiv_8_23", 50, "(-> FPRounding (FP |8:23|) (FP |8:23|) (FP |8:23|))", 3,
       [](TermManager& m) { return m.make_fp_div_symbol(8, 23); },
       [](TermManager& m, const Terms& t) { return m.make_fp_div(t[0], t[1], t[2]); },
       recogniser(&TermManager::is_fp_div), {"8", "23"}, {"rm", "f", "g"},
       {{{"rm", "x8", "g"}, "type error. term x8 is not a FP", nothing_made},
        {{"f", "r", "x8"}, "type error. term r is not a FP", nothing_made},
        {{"f", "f", "g"}, "type error. term f has type (FP |8:23|), but FPRounding was expected. (make_fp_div)", symbol_made},
        {{"i", "f", "g"}, "type error. term i has type Int, but FPRounding was expected. (make_fp_div)", symbol_made},
        {{"rm", "f", "h"}, "type error. term h has type (FP |11:52|), but (FP |8:23|) was expected. (make_fp_div)", symbol_made},
        {{"rm", "f", "rm"}, "type error. term rm has type FPRounding, but (FP |8:23|) was expected. (make_fp_div)", symbol_made},
        {{"f", "f", "h"}, "type error. term f has type (FP |8:23|), but FPRounding was expected. (make_fp_div)", symbol_made}}},
      {"make_fp_sqrt", "fpsqrt_8_23", 51, "(-> FPRounding (FP |8:23|) (FP |8:23|))", 2,
       [](TermManager& m) { return m.make_fp_sqrt_symbol(8, 23); },
       [](TermManager& m, const Terms& t) { return m.make_fp_sqrt(t[0], t[1]); },
       recogniser(&TermManager::is_fp_sqrt), {"8", "23"}, {"rm", "f"},
       {{{"rm", "x8"}, "type error. term x8 is not a FP", nothing_made},
        {{"f", "r"}, "type error. term r is not a FP", nothing_made},
        {{"f", "f"}, "type error. term f has type (FP |8:23|), but FPRounding was expected. (make_fp_sqrt)", symbol_made},
        {{"i", "f"}, "type error. term i has type Int, but FPRounding was expected. (make_fp_sqrt)", symbol_made}}},
      {"make_fp_abs", "fpabs_8_23", 52, "(-> (FP |8:23|) (FP |8:23|))", 1,
       [](TermManager& m) { return m.make_fp_abs_symbol(8, 23); },
       [](TermManager& m, const Terms& t) { return m.make_fp_abs(t[0]); },
       recogniser(&TermManager::is_fp_abs), {"8", "23"}, {"f"},
       {{{"x8"}, "type error. term x8 is not a FP", nothing_made},
        {{"rm"}, "type error. term rm is not a FP", nothing_made}}},
      {"make_fp_min", "fpmin_8_23", 53, "(-> (FP |8:23|) (FP |8:23|) (FP |8:23|))", 2,
       [](TermManager& m) { return m.make_fp_min_symbol(8, 23); },
       [](TermManager& m, const Terms& t) { return m.make_fp_min(t[0], t[1]); },
       recogniser(&TermManager::is_fp_min), {"8", "23"}, {"f", "g"},
       {{{"x8", "g"}, "type error. term x8 is not a FP", nothing_made},
        {{"r", "x8"}, "type error. term r is not a FP", nothing_made},
        {{"f", "h"}, "type error. term h has type (FP |11:52|), but (FP |8:23|) was expected. (make_fp_min)", symbol_made},
        {{"f", "x8"}, "type error. term x8 has type (BitVec 8), but (FP |8:23|) was expected. (make_fp_min)", symbol_made}}},
      {"make_fp_max", "fpmax_8_23", 54, "(-> (FP |8:23|) (FP |8:23|) (FP |8:23|))", 2,
       [](TermManager& m) { return m.make_fp_max_symbol(8, 23); },
       [](TermManager& m, const Terms& t) { return m.make_fp_max(t[0], t[1]); },
       recogniser(&TermManager::is_fp_max), {"8", "23"}, {"f", "g"},
       {{{"x8", "g"}, "type error. term x8 is not a FP", nothing_made},
        {{"r", "x8"}, "type error. term r is not a FP", nothing_made},
        {{"f", "h"}, "type error. term h has type (FP |11:52|), but (FP |8:23|) was expected. (make_fp_max)", symbol_made},
        {{"f", "x8"}, "type error. term x8 has type (BitVec 8), but (FP |8:23|) was expected. (make_fp_max)", symbol_made}}},
      {"make_fp_cast", "fpcast__8_23_11_52", 55, "(-> FPRounding (FP |8:23|) (FP |11:52|))", 2,
       [](TermManager& m) { return m.make_fp_cast_symbol(8, 23, 11, 52); },
       [](TermManager& m, const Terms& t) { return m.make_fp_cast(11, 52, t[0], t[1]); },
       recogniser(&TermManager::is_fp_cast), {"8", "23", "11", "52"}, {"rm", "f"},
       {{{"rm", "x8"}, "type error. term x8 is not a FP", nothing_made},
        {{"f", "r"}, "type error. term r is not a FP", nothing_made},
        {{"f", "f"}, "type error. term f has type (FP |8:23|), but FPRounding was expected. (make_fp_cast)", symbol_made},
        {{"i", "f"}, "type error. term i has type Int, but FPRounding was expected. (make_fp_cast)", symbol_made}}},
      {"make_fp_round_to_int", "fproundtoint_8_23", 56, "(-> FPRounding (FP |8:23|) (FP |8:23|))", 2,
       [](TermManager& m) { return m.make_fp_round_to_int_symbol(8, 23); },
       [](TermManager& m, const Terms& t) { return m.make_fp_round_to_int(t[0], t[1]); },
       recogniser(&TermManager::is_fp_round_to_int), {"8", "23"}, {"rm", "f"},
       {{{"rm", "x8"}, "type error. term x8 is not a FP", nothing_made},
        {{"f", "r"}, "type error. term r is not a FP", nothing_made},
        {{"f", "f"}, "type error. term f has type (FP |8:23|), but FPRounding was expected. (make_fp_round_to_int)", symbol_made},
        {{"i", "f"}, "type error. term i has type Int, but FPRounding was expected. (make_fp_round_to_int)", symbol_made}}},
      {"make_fp_from_sbv", "fpfromsbv__8_11_52", 57, "(-> FPRounding (BitVec 8) (FP |11:52|))", 2,
       [](TermManager& m) { return m.make_fp_from_sbv_symbol(8, 11, 52); },
       [](TermManager& m, const Terms& t) { return m.make_fp_from_sbv(11, 52, t[0], t[1]); },
       recogniser(&TermManager::is_fp_from_sbv), {"8", "11", "52"}, {"rm", "x8"},
       {{{"rm", "r"}, "type error. term r is not a BV", nothing_made},
        {{"x8", "f"}, "type error. term f is not a BV", nothing_made},
        {{"x8", "x8"}, "type error. term x8 has type (BitVec 8), but FPRounding was expected. (make_fp_from_sbv)", symbol_made},
        {{"i", "x8"}, "type error. term i has type Int, but FPRounding was expected. (make_fp_from_sbv)", symbol_made}}},
      {"make_fp_from_ubv", "fpfromubv__8_11_52", 58, "(-> FPRounding (BitVec 8) (FP |11:52|))", 2,
       [](TermManager& m) { return m.make_fp_from_ubv_symbol(8, 11, 52); },
       [](TermManager& m, const Terms& t) { return m.make_fp_from_ubv(11, 52, t[0], t[1]); },
       recogniser(&TermManager::is_fp_from_ubv), {"8", "11", "52"}, {"rm", "x8"},
       {{{"rm", "r"}, "type error. term r is not a BV", nothing_made},
        {{"x8", "f"}, "type error. term f is not a BV", nothing_made},
        {{"x8", "x8"}, "type error. term x8 has type (BitVec 8), but FPRounding was expected. (make_fp_from_ubv)", symbol_made},
        {{"i", "x8"}, "type error. term i has type Int, but FPRounding was expected. (make_fp_from_ubv)", symbol_made}}},
      {"make_fp_to_bv", "fptobv__8_23_16", 59, "(-> FPRounding (FP |8:23|) (BitVec 16))", 2,
       [](TermManager& m) { return m.make_fp_to_bv_symbol(8, 23, 16); },
       [](TermManager& m, const Terms& t) { return m.make_fp_to_bv(16, t[0], t[1]); },
       recogniser(&TermManager::is_fp_to_bv), {"8", "23", "16"}, {"rm", "f"},
       {{{"rm", "x8"}, "type error. term x8 is not a FP", nothing_made},
        {{"f", "r"}, "type error. term r is not a FP", nothing_made},
        {{"f", "f"}, "type error. term f has type (FP |8:23|), but FPRounding was expected. (make_fp_to_bv)", symbol_made},
        {{"i", "f"}, "type error. term i has type Int, but FPRounding was expected. (make_fp_to_bv)", symbol_made}}},
      {"make_fp_as_ieeebv", "fpasbv__8_23_32", 60, "(-> (FP |8:23|) (BitVec 32))", 1,
       [](TermManager& m) { return m.make_fp_as_ieeebv_symbol(8, 23); },
       [](TermManager& m, const Terms& t) { return m.make_fp_as_ieeebv(t[0]); },
       recogniser(&TermManager::is_fp_as_ieeebv), {"8", "23"}, {"f"},
       {{{"x32"}, "type error. term x32 is not a FP", nothing_made},
        {{"rm"}, "type error. term rm is not a FP", nothing_made}}},
      {"make_fp_isnan", "fpisnan_8_23", 61, "(-> (FP |8:23|) Bool)", 1,
       [](TermManager& m) { return m.make_fp_isnan_symbol(8, 23); },
       [](TermManager& m, const Terms& t) { return m.make_fp_isnan(t[0]); },
       recogniser(&TermManager::is_fp_isnan), {"8", "23"}, {"f"},
       {{{"x8"}, "type error. term x8 is not a FP", nothing_made},
        {{"rm"}, "type error. term rm is not a FP", nothing_made}}},
      {"make_fp_isinf", "fpisinf_8_23", 62, "(-> (FP |8:23|) Bool)", 1,
       [](TermManager& m) { return m.make_fp_isinf_symbol(8, 23); },
       [](TermManager& m, const Terms& t) { return m.make_fp_isinf(t[0]); },
       recogniser(&TermManager::is_fp_isinf), {"8", "23"}, {"f"},
       {{{"x8"}, "type error. term x8 is not a FP", nothing_made},
        {{"rm"}, "type error. term rm is not a FP", nothing_made}}},
      {"make_fp_iszero", "fpiszero_8_23", 63, "(-> (FP |8:23|) Bool)", 1,
       [](TermManager& m) { return m.make_fp_iszero_symbol(8, 23); },
       [](TermManager& m, const Terms& t) { return m.make_fp_iszero(t[0]); },
       recogniser(&TermManager::is_fp_iszero), {"8", "23"}, {"f"},
       {{{"x8"}, "type error. term x8 is not a FP", nothing_made},
        {{"rm"}, "type error. term rm is not a FP", nothing_made}}},
      {"make_fp_issubnormal", "fpissubnormal_8_23", 64, "(-> (FP |8:23|) Bool)", 1,
       [](TermManager& m) { return m.make_fp_issubnormal_symbol(8, 23); },
       [](TermManager& m, const Terms& t) { return m.make_fp_issubnormal(t[0]); },
       recogniser(&TermManager::is_fp_issubnormal), {"8", "23"}, {"f"},
       {{{"x8"}, "type error. term x8 is not a FP", nothing_made},
        {{"rm"}, "type error. term rm is not a FP", nothing_made}}},
      {"make_fp_isnormal", "fpisnormal_8_23", 65, "(-> (FP |8:23|) Bool)", 1,
       [](TermManager& m) { return m.make_fp_isnormal_symbol(8, 23); },
       [](TermManager& m, const Terms& t) { return m.make_fp_isnormal(t[0]); },
       recogniser(&TermManager::is_fp_isnormal), {"8", "23"}, {"f"},
       {{{"x8"}, "type error. term x8 is not a FP", nothing_made},
        {{"rm"}, "type error. term rm is not a FP", nothing_made}}},
      {"make_fp_isneg", "fpisneg_8_23", 66, "(-> (FP |8:23|) Bool)", 1,
       [](TermManager& m) { return m.make_fp_isneg_symbol(8, 23); },
       [](TermManager& m, const Terms& t) { return m.make_fp_isneg(t[0]); },
       recogniser(&TermManager::is_fp_isneg), {"8", "23"}, {"f"},
       {{{"x8"}, "type error. term x8 is not a FP", nothing_made},
        {{"rm"}, "type error. term rm is not a FP", nothing_made}}},
      {"make_fp_ispos", "fpispos_8_23", 67, "(-> (FP |8:23|) Bool)", 1,
       [](TermManager& m) { return m.make_fp_ispos_symbol(8, 23); },
       [](TermManager& m, const Terms& t) { return m.make_fp_ispos(t[0]); },
       recogniser(&TermManager::is_fp_ispos), {"8", "23"}, {"f"},
       {{{"x8"}, "type error. term x8 is not a FP", nothing_made},
        {{"rm"}, "type error. term rm is not a FP", nothing_made}}},
      {"make_fp_from_ieeebv", "fpfromieeebv__32_8_23", 68, "(-> (BitVec 32) (FP |8:23|))", 1,
       [](TermManager& m) { return m.make_fp_from_ieeebv_symbol(8, 23); },
       [](TermManager& m, const Terms& t) { return m.make_fp_from_ieeebv(8, 23, t[0]); },
       recogniser(&TermManager::is_fp_from_ieeebv), {"8", "23"}, {"x32"},
       {{{"x8"}, "type error. term x8 is not of the correct BV type", nothing_made},
        {{"f"}, "type error. term f is not of the correct BV type", nothing_made}}},
      {"make_int_fromubv", "ubv2int_8", 69, "(-> (BitVec 8) Int)", 1,
       [](TermManager& m) { return m.make_int_from_ubv_symbol(8); },
       [](TermManager& m, const Terms& t) { return m.make_int_from_ubv(t[0]); },
       recogniser(&TermManager::is_int_from_ubv), {"8"}, {"x8"},
       {{{"r"}, "type error. term r is not a bit vector", nothing_made},
        {{"i"}, "type error. term i is not a bit vector", nothing_made}}},
      {"make_int_fromsbv", "sbv2int_8", 70, "(-> (BitVec 8) Int)", 1,
       [](TermManager& m) { return m.make_int_from_sbv_symbol(8); },
       [](TermManager& m, const Terms& t) { return m.make_int_from_sbv(t[0]); },
       recogniser(&TermManager::is_int_from_sbv), {"8"}, {"x8"},
       {{{"r"}, "type error. term r is not a bit vector", nothing_made},
        {{"i"}, "type error. term i is not a bit vector", nothing_made}}},
      {"make_int_to_bv", "int2bv_8", 71, "(-> Int (BitVec 8))", 1,
       [](TermManager& m) { return m.make_int_to_bv_symbol(8); },
       [](TermManager& m, const Terms& t) { return m.make_int_to_bv(8, t[0]); },
       recogniser(&TermManager::is_int_to_bv), {"8"}, {"i"},
       {{{"r"}, "type error. term r has type Real, but Int was expected. (make_int_to_bv)", symbol_made},
        {{"x8"}, "type error. term x8 has type (BitVec 8), but Int was expected. (make_int_to_bv)", symbol_made}}},
  };
  // clang-format on
  return rows;
}

//------------------------------------------------------------------------------------------------

// A manager with a constant of each kind that the table builds with.
class Bench {
 public:
  explicit Bench(std::unique_ptr<TermManager> manager = std::make_unique<TermManager>())
      : owner(std::move(manager)), m(*owner) {
    const DataType* bv8 = m.get_bv_type(8);
    const DataType* single = m.get_fp_type(8, 23);
    add("x8", bv8);
    add("y8", bv8);
    add("x4", m.get_bv_type(4));
    add("x32", m.get_bv_type(32));
    add("i", m.get_int_type());
    add("j", m.get_int_type());
    add("r", m.get_rat_type());
    add("p", m.get_bool_type());
    add("rm", m.get_fprounding_type());
    add("f", single);
    add("g", single);
    add("h", m.get_fp_type(11, 52));
    add("a", m.get_array_type(m.get_int_type(), m.get_rat_type()));
  }

  Terms terms(const Names& names) const {
    Terms result;
    for (const std::string& name : names) result.push_back(constants.at(name));
    return result;
  }

 private:
  std::unique_ptr<TermManager> owner;

 public:
  TermManager& m;

 private:
  void add(const char* name, const DataType* type) {
    constants[name] = m.make_constant(m.make_symbol(name, type));
  }

  std::map<std::string, const Term_*> constants;
};

std::string quoted(const Row& row) { return '`' + std::string(row.name) + '`'; }

const Symbol* find(const TermManager& m, const Row& row) {
  return m.get_signature()->get_symbol(quoted(row).c_str());
}

// The sizes of the stores: types, symbols, terms.
std::array<size_t, 3> sizes(const TermManager& m) {
  return {m.get_universe()->size(), m.get_signature()->size(), m.get_bank()->size()};
}

// What the builder throws, its exact class checked.
std::string refusal(Bench& bench, const Row& row, const Names& args) {
  try {
    row.build(bench.m, bench.terms(args));
  } catch (const Exception& e) {
    if (typeid(e) != typeid(TermManager::error)) return "not an error of the manager";
    return e.what();
  }
  return "no error";
}

class OperatorFamilyTable : public ::testing::TestWithParam<Row> {};

INSTANTIATE_TEST_SUITE_P(Operators, OperatorFamilyTable, ::testing::ValuesIn(table()),
                         [](const auto& param) { return std::string(param.param.operation); });

// So that a failed test names its operator in a line.
void PrintTo(const Row& row, std::ostream* out) { *out << row.operation; }

TEST(OperatorFamilies, EveryTagFrom13To71HasOneRow) {
  ASSERT_EQ(table().size(), 59U);
  for (size_t i = 0; i < 59; i++) EXPECT_EQ(table()[i].tag, static_cast<int>(13 + i));
}

TEST(OperatorFamilies, AManagerStartsWithoutSymbolsOfFamilies) {
  const TermManager m;
  EXPECT_EQ(m.get_signature()->size(), 19U);
  for (const Row& row : table()) EXPECT_EQ(find(m, row), nullptr) << row.operation;
}

TEST_P(OperatorFamilyTable, SymbolHasItsNameTagTypeAndArity) {
  const Row& row = GetParam();
  TermManager m;
  const Symbol* s = row.make_symbol(m);
  EXPECT_EQ(s->name, quoted(row));
  EXPECT_EQ(static_cast<int>(m.get_tag(s)), row.tag);
  EXPECT_EQ(s->type->to_str(), row.type);
  EXPECT_EQ(s->type->get_component(0), m.get_universe()->get_application_type());
  EXPECT_EQ(s->arity, row.arity);
  EXPECT_EQ(find(m, row), s);
  EXPECT_EQ(m.get_signature()->size(), 20U);
  EXPECT_TRUE(m.is_interpreted(s));
  EXPECT_FALSE(m.is_uninterpreted_function(s));
}

TEST_P(OperatorFamilyTable, SecondRequestGivesTheSameSymbolAndMakesNothing) {
  const Row& row = GetParam();
  TermManager m;
  const Symbol* s = row.make_symbol(m);
  const auto before = sizes(m);
  EXPECT_EQ(row.make_symbol(m), s);
  EXPECT_EQ(sizes(m), before);
}

TEST_P(OperatorFamilyTable, BuilderAppliesTheSymbolToItsArguments) {
  const Row& row = GetParam();
  Bench bench;
  const Terms args = bench.terms(row.args);
  const Term_* t = row.build(bench.m, args);
  EXPECT_EQ(t->symbol, row.make_symbol(bench.m));
  const size_t first = args.size() - row.arity;
  for (size_t i = 0; i < row.arity; i++) EXPECT_EQ(t->args[i], args[first + i]);
  EXPECT_EQ(t->symbol->get_output_type(), t->symbol->type->get_component(row.arity + 1));
}

TEST_P(OperatorFamilyTable, EqualRequestsGiveTheSameTerm) {
  const Row& row = GetParam();
  Bench bench;
  const Term_* t = row.build(bench.m, bench.terms(row.args));
  const auto before = sizes(bench.m);
  EXPECT_EQ(row.build(bench.m, bench.terms(row.args)), t);
  EXPECT_EQ(sizes(bench.m), before);
}

TEST_P(OperatorFamilyTable, RefusesWrongArgumentsWithItsOwnWords) {
  const Row& row = GetParam();
  for (const Failure& failure : row.failures) {
    Bench bench;
    EXPECT_EQ(refusal(bench, row, failure.args), failure.message);
    // And again, when the symbol is there.
    row.make_symbol(bench.m);
    EXPECT_EQ(refusal(bench, row, failure.args), failure.message);
  }
}

// Hands every request on with arguments that no operator takes, so that the type error tells what
// the builder calls itself.
class MixedUpArguments : public TermManager {
 public:
  const Term_* make_term(const Symbol* s, const Terms& args) override {
    if (s->arity == 0) return TermManager::make_term(s, args);
    return TermManager::make_term(s, Terms(args.size(), stranger));
  }

 private:
  const Term_* stranger =
      make_constant(make_symbol("stranger", get_simple_type("Stranger", false)));
};

TEST_P(OperatorFamilyTable, BuilderNamesItselfAndCallsTheVirtualMakeTerm) {
  const Row& row = GetParam();
  Bench bench(std::make_unique<MixedUpArguments>());
  const std::string expected = row.make_symbol(bench.m)->type->get_component(1)->to_str();
  EXPECT_EQ(refusal(bench, row, row.args), "type error. term stranger has type Stranger, but " +
                                               expected + " was expected. (" + row.operation + ")");
}

TEST_P(OperatorFamilyTable, EveryArgumentIsLookedAt) {
  const Row& row = GetParam();
  std::vector<bool> refused(row.args.size(), false);
  for (const Failure& failure : row.failures) {
    for (size_t i = 0; i < row.args.size(); i++) {
      if (failure.args[i] != row.args[i]) refused[i] = true;
    }
  }
  EXPECT_EQ(refused, std::vector<bool>(row.args.size(), true));
}

TEST_P(OperatorFamilyTable, OwnCheckMakesNothing) {
  const Row& row = GetParam();
  for (const Failure& failure : row.failures) {
    if (failure.leaves != nothing_made) continue;
    Bench bench;
    const auto before = sizes(bench.m);
    refusal(bench, row, failure.args);
    EXPECT_EQ(find(bench.m, row), nullptr) << failure.message;
    EXPECT_EQ(sizes(bench.m), before) << failure.message;
  }
}

TEST_P(OperatorFamilyTable, TypecheckLeavesTheSymbolAndNoTerm) {
  const Row& row = GetParam();
  for (const Failure& failure : row.failures) {
    if (failure.leaves != symbol_made) continue;
    Bench bench;
    const auto before = sizes(bench.m);
    refusal(bench, row, failure.args);
    const Symbol* s = find(bench.m, row);
    ASSERT_NE(s, nullptr) << failure.message;
    EXPECT_EQ(row.make_symbol(bench.m), s) << failure.message;
    EXPECT_EQ(bench.m.get_signature()->size(), before[1] + 1) << failure.message;
    EXPECT_EQ(bench.m.get_bank()->size(), before[2]) << failure.message;
  }
}

TEST_P(OperatorFamilyTable, WithoutChecksOnlyTheOwnCheckRefuses) {
  const Row& row = GetParam();
  for (const Failure& failure : row.failures) {
    Bench bench;
    bench.m.set_typecheck_enabled(false);
    const bool own = failure.leaves == nothing_made;
    EXPECT_EQ(refusal(bench, row, failure.args), own ? failure.message : "no error");
  }
}

TEST_P(OperatorFamilyTable, RecogniserFillsExactlyTheOutputsThatAreGiven) {
  const Row& row = GetParam();
  TermManager m;
  const Symbol* s = row.make_symbol(m);
  ASSERT_EQ(row.recognise.outputs, row.outputs.size());
  for (unsigned mask = 0; mask < 1U << row.outputs.size(); mask++) {
    Names texts;
    EXPECT_TRUE(row.recognise.ask(m, s, mask, texts));
    for (size_t i = 0; i < row.outputs.size(); i++) {
      const bool asked = (mask >> i & 1U) != 0;
      EXPECT_EQ(texts[i], asked ? row.outputs[i] : not_asked) << "mask " << mask;
    }
  }
}

void expect_not_recognised(const TermManager& m, const Row& row, const Symbol* s) {
  for (unsigned mask = 0; mask < 1U << row.outputs.size(); mask++) {
    Names texts;
    EXPECT_FALSE(row.recognise.ask(m, s, mask, texts)) << s->name;
    for (size_t i = 0; i < row.outputs.size(); i++) {
      const bool asked = (mask >> i & 1U) != 0;
      EXPECT_EQ(texts[i], asked ? untouched : not_asked) << s->name << ", mask " << mask;
    }
  }
}

TEST_P(OperatorFamilyTable, SymbolsOfOtherFamiliesAreNotRecognised) {
  const Row& row = GetParam();
  TermManager m;
  std::vector<const Symbol*> symbols;
  for (const Row& other : table()) symbols.push_back(other.make_symbol(m));
  for (size_t i = 0; i < symbols.size(); i++) {
    if (table()[i].tag != row.tag) expect_not_recognised(m, row, symbols[i]);
  }
  EXPECT_EQ(m.get_signature()->size(), 19U + 59U);
}

TEST_P(OperatorFamilyTable, StandardSymbolsAndNumeralsAreNotRecognised) {
  const Row& row = GetParam();
  TermManager m;
  for (const char* name : {"`true`", "`not`", "`and`", "`+_int`", "`<=_rat`", "`floor`",
                           "`fprounding_even`", "`fprounding_minus_inf`"}) {
    const Symbol* s = m.get_signature()->get_symbol(name);
    ASSERT_NE(s, nullptr) << name;
    expect_not_recognised(m, row, s);
  }
  expect_not_recognised(m, row, m.make_number(7)->symbol);
  expect_not_recognised(m, row, m.make_bv_number(7, 8)->symbol);
  expect_not_recognised(m, row, m.make_fp_bits_number(7, 8, 23)->symbol);
}

TEST_P(OperatorFamilyTable, UsersSymbolOfTheSameNameAndTypeIsNotRecognised) {
  const Row& row = GetParam();
  TermManager m;
  const Symbol* theirs = row.make_symbol(m);
  const Symbol* users = m.make_symbol(row.name, theirs->type);
  EXPECT_NE(users, theirs);
  expect_not_recognised(m, row, users);
  EXPECT_EQ(m.get_tag(users), SymbolTag::NONE);
  EXPECT_TRUE(m.is_uninterpreted_function(users));
  EXPECT_EQ(row.make_symbol(m), theirs);
}

TEST_P(OperatorFamilyTable, UsersSymbolOfTheSameNameMayComeFirst) {
  const Row& row = GetParam();
  TermManager m;
  const Symbol* users = m.make_symbol(row.name, m.get_int_type());
  const Symbol* theirs = row.make_symbol(m);
  EXPECT_NE(users, theirs);
  expect_not_recognised(m, row, users);
  Names texts;
  EXPECT_TRUE(row.recognise.ask(m, theirs, 0, texts));
}

#ifdef NDEBUG

// Debug builds stop here instead.
TEST_P(OperatorFamilyTable, SymbolOfAnotherManagerIsNotRecognised) {
  const Row& row = GetParam();
  TermManager m;
  TermManager other;
  row.make_symbol(m);
  expect_not_recognised(m, row, row.make_symbol(other));
}

#else

using OperatorFamilyTableDeathTest = OperatorFamilyTable;

TEST_P(OperatorFamilyTableDeathTest, SymbolOfAnotherManager) {
  const Row& row = GetParam();
  TermManager m;
  TermManager other;
  const Symbol* s = row.make_symbol(other);
  Names texts;
  EXPECT_DEATH(row.recognise.ask(m, s, 0, texts), "quill: misuse: a symbol of another manager");
}

TEST_P(OperatorFamilyTableDeathTest, FreedSymbol) {
  const Row& row = GetParam();
  TermManager m;
  const Symbol* s = row.make_symbol(m);
  m.gc({}, {}, {});
  Names texts;
  EXPECT_DEATH(row.recognise.ask(m, s, 0, texts), "quill: misuse: a symbol that was freed");
}

TEST_P(OperatorFamilyTableDeathTest, OperandOfAnotherManager) {
  const Row& row = GetParam();
  Bench bench;
  Bench other;
  for (size_t i = row.args.size() - row.arity; i < row.args.size(); i++) {
    Terms args = bench.terms(row.args);
    args[i] = other.terms(row.args)[i];
    EXPECT_DEATH(row.build(bench.m, args), "quill: misuse: a term of another manager") << i;
  }
}

TEST_P(OperatorFamilyTableDeathTest, FreedOperand) {
  const Row& row = GetParam();
  for (size_t i = row.args.size() - row.arity; i < row.args.size(); i++) {
    Bench bench;
    Terms args = bench.terms(row.args);
    const Term_* freed = bench.m.make_fresh_variable(args[i]->symbol->get_output_type());
    bench.m.gc(args, {}, {});
    args[i] = freed;
    EXPECT_DEATH(row.build(bench.m, args), "quill: misuse: a term that was freed") << i;
  }
}

INSTANTIATE_TEST_SUITE_P(Operators, OperatorFamilyTableDeathTest, ::testing::ValuesIn(table()),
                         [](const auto& param) { return std::string(param.param.operation); });

#endif

//------------------------------------------------------------------------------------------------
// Out of memory

// Runs the request with its k-th allocation and all later ones failing. Whether it ran out of
// memory.
template <class Request>
bool runs_out(long k, Request request) {
  const testing::FailingAllocation after(k);
  try {
    request();
  } catch (const std::bad_alloc&) {
    return true;
  }
  return false;
}

// Everything that the row says of the symbol holds.
void expect_whole(TermManager& m, const Row& row, const Symbol* s) {
  EXPECT_EQ(s->name, quoted(row));
  EXPECT_EQ(static_cast<int>(m.get_tag(s)), row.tag);
  EXPECT_EQ(s->type->to_str(), row.type);
  EXPECT_EQ(find(m, row), s);
  EXPECT_EQ(row.make_symbol(m), s);
  Names texts;
  EXPECT_TRUE(row.recognise.ask(m, s, (1U << row.outputs.size()) - 1, texts));
  EXPECT_EQ(texts, row.outputs);
}

TEST_P(OperatorFamilyTable, MakerThatRanOutOfMemoryMadeNoSymbolAndWorksAgain) {
  const Row& row = GetParam();
  TermManager unharmed;
  row.make_symbol(unharmed);
  long k = 0;
  for (;; k++) {
    TermManager m;
    if (!runs_out(k, [&] { row.make_symbol(m); })) break;
    EXPECT_EQ(m.get_signature()->size(), 19U) << "allocation " << k;
    EXPECT_EQ(find(m, row), nullptr) << "allocation " << k;
    const Symbol* s = row.make_symbol(m);
    expect_whole(m, row, s);
    EXPECT_EQ(sizes(m), sizes(unharmed)) << "allocation " << k;
  }
  EXPECT_GT(k, 0);
}

TEST_P(OperatorFamilyTable, BuilderThatRanOutOfMemoryMadeNoTermAndWorksAgain) {
  const Row& row = GetParam();
  Bench unharmed;
  row.build(unharmed.m, unharmed.terms(row.args));
  long k = 0;
  for (;; k++) {
    Bench bench;
    const Terms args = bench.terms(row.args);
    const auto before = sizes(bench.m);
    if (!runs_out(k, [&] { row.build(bench.m, args); })) break;
    EXPECT_EQ(bench.m.get_bank()->size(), before[2]) << "allocation " << k;
    // A symbol that was made is there as a whole.
    if (const Symbol* s = find(bench.m, row)) {
      expect_whole(bench.m, row, s);
    } else {
      EXPECT_EQ(bench.m.get_signature()->size(), before[1]) << "allocation " << k;
    }
    const Term_* t = row.build(bench.m, args);
    expect_whole(bench.m, row, t->symbol);
    EXPECT_EQ(sizes(bench.m), sizes(unharmed.m)) << "allocation " << k;
  }
  EXPECT_GT(k, 0);
}

TEST(OperatorFamilies, PairIsEnteredInBothMapsOrInNone) {
  TermManager m;
  SymbolFamily<size_t> family;
  const auto enter = [&](size_t key, const Symbol* s) {
    insert_in_both(family.by_symbol, family.by_key, key, s);
  };
  long failures = 0;
  for (size_t key = 0; key < 200; key++) {
    const Symbol* s = m.make_symbol("s" + std::to_string(key), m.get_int_type());
    for (long k = 0; runs_out(k, [&] { enter(key, s); }); k++) {
      failures++;
      EXPECT_EQ(family.by_symbol.find(s), family.by_symbol.end());
      EXPECT_EQ(family.by_key.find(key), family.by_key.end());
    }
    EXPECT_EQ(family.by_symbol.find(s)->second, key);
    EXPECT_EQ(family.by_key.find(key)->second, s);
  }
  EXPECT_GT(failures, 4);
  EXPECT_EQ(std::distance(family.by_symbol.begin(), family.by_symbol.end()), 200);
  EXPECT_EQ(std::distance(family.by_key.begin(), family.by_key.end()), 200);
}

}  // namespace
}  // namespace quill
