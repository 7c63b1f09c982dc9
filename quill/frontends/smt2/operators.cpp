#include "quill/frontends/smt2/operators.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "quill/derived/derived_bv.h"
#include "quill/derived/derived_fp.h"
#include "quill/frontends/smt2/arithmetic_operators.h"
#include "quill/frontends/smt2/array_operators.h"
#include "quill/frontends/smt2/bit_vector_operators.h"
#include "quill/frontends/smt2/core_operators.h"
#include "quill/frontends/smt2/fp_conversions.h"
#include "quill/frontends/smt2/fp_operators.h"
#include "quill/frontends/smt2/term_builder.h"
#include "quill/smtlib/operator_texts.h"
#include "quill/smtlib/theory_names.h"

namespace quill::smt2 {

namespace {

using M = TermManager;

// clang-format off
constexpr Operator table[] = {
    // name, number of indices, least and largest number of arguments, builder
    {"*",                      0, 1, any_number, build_times},
    {"+",                      0, 1, any_number, build_plus},
    {"+oo",                    2, 0, 0,          build_fp_special<&M::make_fp_plus_inf>},
    {"+zero",                  2, 0, 0,          build_fp_special<&make_fp_plus_zero>},
    {"-",                      0, 1, any_number, build_minus, /*spells_constants=*/true},
    {"-oo",                    2, 0, 0,          build_fp_special<&M::make_fp_minus_inf>},
    {"-zero",                  2, 0, 0,          build_fp_special<&make_fp_minus_zero>},
    {"/",                      0, 2, any_number, build_divide, /*spells_constants=*/true},
    {"<",                      0, 2, any_number, build_lt},
    {"<=",                     0, 2, any_number, build_leq},
    {"=",                      0, 2, any_number, build_equal},
    {"=>",                     0, 2, any_number, build_implies},
    {">",                      0, 2, any_number, build_gt},
    {">=",                     0, 2, any_number, build_geq},
    {"NaN",                    2, 0, 0,          build_fp_special<&M::make_fp_nan>},
    {"RNE",                    0, 0, 0,          build_rounding<&M::make_fprounding_even>},
    {"RTN",                    0, 0, 0,          build_rounding<&M::make_fprounding_minus_inf>},
    {"RTP",                    0, 0, 0,          build_rounding<&M::make_fprounding_plus_inf>},
    {"RTZ",                    0, 0, 0,          build_rounding<&M::make_fprounding_zero>},
    {"abs",                    0, 1, 1,          build_abs},
    {"and",                    0, 1, any_number, build_and},
    {"bv2nat",                 0, 1, 1,          build_bv_unary<&M::make_int_from_ubv>},
    {"bvadd",                  0, 2, any_number, build_bv_binary<&M::make_bv_add>},
    {"bvand",                  0, 2, any_number, build_bv_binary<&M::make_bv_and>},
    {"bvashr",                 0, 2, 2,          build_bv_binary<&M::make_bv_ashr>},
    {"bvcomp",                 0, 2, 2,          build_bv_binary<&M::make_bv_comp>},
    {"bvlshr",                 0, 2, 2,          build_bv_binary<&M::make_bv_lshr>},
    {"bvmul",                  0, 2, any_number, build_bv_binary<&M::make_bv_mul>},
    {"bvnand",                 0, 2, 2,          build_bv_binary<&make_bv_nand>},
    {"bvneg",                  0, 1, 1,          build_bv_unary<&M::make_bv_neg>},
    {"bvnego",                 0, 1, 1,          build_bv_unary<&make_bv_nego>},
    {"bvnor",                  0, 2, 2,          build_bv_binary<&make_bv_nor>},
    {"bvnot",                  0, 1, 1,          build_bv_unary<&M::make_bv_not>},
    {"bvor",                   0, 2, any_number, build_bv_binary<&M::make_bv_or>},
    {"bvredand",               0, 1, 1,          build_bv_unary<&make_bv_redand>},
    {"bvredor",                0, 1, 1,          build_bv_unary<&make_bv_redor>},
    {"bvsaddo",                0, 2, 2,          build_bv_binary<&make_bv_saddo>},
    {"bvsdiv",                 0, 2, 2,          build_bv_binary<&M::make_bv_sdiv>},
    {"bvsdivo",                0, 2, 2,          build_bv_binary<&make_bv_sdivo>},
    {"bvsge",                  0, 2, 2,          build_bv_binary<&make_bv_sge>},
    {"bvsgt",                  0, 2, 2,          build_bv_binary<&make_bv_sgt>},
    {"bvshl",                  0, 2, 2,          build_bv_binary<&M::make_bv_lshl>},
    {"bvsle",                  0, 2, 2,          build_bv_binary<&M::make_bv_sle>},
    {"bvslt",                  0, 2, 2,          build_bv_binary<&M::make_bv_slt>},
    {"bvsmod",                 0, 2, 2,          build_bv_binary<&make_bv_smod>},
    {"bvsmulo",                0, 2, 2,          build_bv_smulo},
    {"bvsrem",                 0, 2, 2,          build_bv_binary<&M::make_bv_srem>},
    {"bvssubo",                0, 2, 2,          build_bv_binary<&make_bv_ssubo>},
    {"bvsub",                  0, 2, 2,          build_bv_binary<&M::make_bv_sub>},
    {"bvuaddo",                0, 2, 2,          build_bv_binary<&make_bv_uaddo>},
    {"bvudiv",                 0, 2, 2,          build_bv_binary<&M::make_bv_udiv>},
    {"bvuge",                  0, 2, 2,          build_bv_binary<&make_bv_uge>},
    {"bvugt",                  0, 2, 2,          build_bv_binary<&make_bv_ugt>},
    {"bvule",                  0, 2, 2,          build_bv_binary<&M::make_bv_ule>},
    {"bvult",                  0, 2, 2,          build_bv_binary<&M::make_bv_ult>},
    {"bvumulo",                0, 2, 2,          build_bv_umulo},
    {"bvurem",                 0, 2, 2,          build_bv_binary<&M::make_bv_urem>},
    {"bvusubo",                0, 2, 2,          build_bv_binary<&make_bv_usubo>},
    {"bvxnor",                 0, 2, 2,          build_bv_binary<&make_bv_xnor>},
    {"bvxor",                  0, 2, any_number, build_bv_binary<&M::make_bv_xor>},
    {"concat",                 0, 2, any_number, build_bv_concat},
    {"const",                  0, 1, 1,          build_const_array},
    {"distinct",               0, 2, any_number, build_distinct},
    {"div",                    0, 2, any_number, build_div},
    {"divisible",              1, 1, 1,          build_divisible},
    {"extract",                2, 1, 1,          build_bv_extract},
    {"false",                  0, 0, 0,          build_false},
    {"fp",                     0, 3, 3,          build_fp},
    {"fp.abs",                 0, 1, 1,          build_fp_of_one<&M::make_fp_abs>},
    {"fp.add",                 0, 3, 3,          build_fp_rounded<&M::make_fp_add>},
    {"fp.div",                 0, 3, 3,          build_fp_rounded<&M::make_fp_div>},
    {"fp.eq",                  0, 2, any_number, build_fp_chain<&M::make_fp_equal>},
    {"fp.geq",                 0, 2, any_number, build_fp_chain<&make_fp_geq>},
    {"fp.gt",                  0, 2, any_number, build_fp_chain<&make_fp_gt>},
    {"fp.isInfinite",          0, 1, 1,          build_fp_of_one<&M::make_fp_isinf>},
    {"fp.isNaN",               0, 1, 1,          build_fp_of_one<&M::make_fp_isnan>},
    {"fp.isNegative",          0, 1, 1,          build_fp_of_one<&M::make_fp_isneg>},
    {"fp.isNormal",            0, 1, 1,          build_fp_of_one<&M::make_fp_isnormal>},
    {"fp.isPositive",          0, 1, 1,          build_fp_of_one<&M::make_fp_ispos>},
    {"fp.isSubnormal",         0, 1, 1,          build_fp_of_one<&M::make_fp_issubnormal>},
    {"fp.isZero",              0, 1, 1,          build_fp_of_one<&M::make_fp_iszero>},
    {"fp.leq",                 0, 2, any_number, build_fp_chain<&M::make_fp_le>},
    {"fp.lt",                  0, 2, any_number, build_fp_chain<&M::make_fp_lt>},
    {"fp.max",                 0, 2, 2,          build_fp_of_two<&M::make_fp_max>},
    {"fp.min",                 0, 2, 2,          build_fp_of_two<&M::make_fp_min>},
    {"fp.mul",                 0, 3, 3,          build_fp_rounded<&M::make_fp_mul>},
    {"fp.neg",                 0, 1, 1,          build_fp_of_one<&M::make_fp_neg>},
    {"fp.roundToIntegral",     0, 2, 2,          build_fp_rounded<&M::make_fp_round_to_int>},
    {"fp.sqrt",                0, 2, 2,          build_fp_rounded<&M::make_fp_sqrt>},
    {"fp.sub",                 0, 3, 3,          build_fp_rounded<&M::make_fp_sub>},
    {"fp.to_ieee_bv",          0, 1, 1,          build_fp_to_ieee_bv},
    {"fp.to_sbv",              1, 2, 2,          build_fp_to_sbv},
    {"fp.to_ubv",              1, 2, 2,          build_fp_to_ubv},
    {"int2bv",                 1, 1, 1,          build_int_to_bv},
    {"int_to_bv",              1, 1, 1,          build_int_to_bv},
    {"is_int",                 0, 1, 1,          build_is_int},
    {"ite",                    0, 3, 3,          build_ite},
    {"mod",                    0, 2, 2,          build_mod},
    {"nat2bv",                 1, 1, 1,          build_int_to_bv},
    {"not",                    0, 1, 1,          build_not},
    {"or",                     0, 1, any_number, build_or},
    {"repeat",                 1, 1, 1,          build_bv_repeat},
    {"rotate_left",            1, 1, 1,          build_bv_rotate_left},
    {"rotate_right",           1, 1, 1,          build_bv_rotate_right},
    {"roundNearestTiesToEven", 0, 0, 0,          build_rounding<&M::make_fprounding_even>},
    {"roundTowardNegative",    0, 0, 0,          build_rounding<&M::make_fprounding_minus_inf>},
    {"roundTowardPositive",    0, 0, 0,          build_rounding<&M::make_fprounding_plus_inf>},
    {"roundTowardZero",        0, 0, 0,          build_rounding<&M::make_fprounding_zero>},
    {"sbv_to_int",             0, 1, 1,          build_sbv_to_int},
    {"select",                 0, 2, 2,          build_select},
    {"sign_extend",            1, 1, 1,          build_bv_sign_extend},
    {"store",                  0, 3, 3,          build_store},
    {"to_fp",                  2, 1, 2,          build_to_fp},
    {"to_fp_unsigned",         2, 2, 2,          build_to_fp_unsigned},
    {"to_int",                 0, 1, 1,          build_to_int},
    {"to_real",                0, 1, 1,          build_to_real},
    {"true",                   0, 0, 0,          build_true},
    {"ubv_to_int",             0, 1, 1,          build_bv_unary<&M::make_int_from_ubv>},
    {"xor",                    0, 2, any_number, build_xor},
    {"zero_extend",            1, 1, 1,          build_bv_zero_extend},
};
// clang-format on

constexpr bool complete() {
  for (size_t i = 0; i < std::size(table); ++i) {
    if (i != 0 && std::string_view(table[i - 1].name) >= table[i].name) return false;
    if (table[i].min_args > table[i].max_args) return false;
    if (!has_row(theory_symbols, table[i].name, /*indexed=*/table[i].num_indices != 0))
      return false;
  }
  return true;
}
static_assert(
    complete(),
    "the rows ascend by name; a theory or readers have each name, with indices or without");

constexpr bool reads(std::string_view text) {
  return std::ranges::any_of(table, [&](const Operator& op) { return op.name == text; });
}
static_assert(std::ranges::all_of(smtlib2_operators,
                                  [](const SmtLib2Operator& op) {
                                    return op.text.empty() || reads(op.text);
                                  }) &&
                  std::ranges::all_of(rounding_mode_texts,
                                      [](const RoundingModeText& mode) {
                                        return reads(mode.text);
                                      }),
              "what is written is read");

std::string count_of(size_t count, const char* one, const char* many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

}  // namespace

std::span<const Operator> operators() { return table; }

Value apply_operator(TermBuilder& builder, const Application& application) {
  const Operator& op = application.op;
  if (application.indices.size() != op.num_indices) {
    builder.reject(application, "takes " + count_of(op.num_indices, "index", "indices") + ", not " +
                                    std::to_string(application.indices.size()));
  }
  const size_t given = application.args.size();
  if (given < op.min_args || given > op.max_args) {
    const char* bound = op.min_args == op.max_args ? ""
                        : given < op.min_args      ? "at least "
                                                   : "at most ";
    const size_t wanted = given < op.min_args ? op.min_args : op.max_args;
    builder.reject(application, "takes " + (bound + count_of(wanted, "argument", "arguments")) +
                                    ", not " + std::to_string(given));
  }
  return op.build(builder, application);
}

}  // namespace quill::smt2
