#include "frontends/smt2/operators.h"

#include <string_view>

#include "frontends/smt2/arithmetic_operators.h"
#include "frontends/smt2/core_operators.h"
#include "frontends/smt2/term_builder.h"

namespace quill::smt2 {

namespace {

// clang-format off
constexpr Operator table[] = {
    // name, theory, indices, least and largest number of arguments, builder
    {"*",                      Theory::ARITHMETIC,     0, 1, any_number, build_times},
    {"+",                      Theory::ARITHMETIC,     0, 1, any_number, build_plus},
    {"+oo",                    Theory::FLOATING_POINT, 2, 0, 0,          nullptr},
    {"+zero",                  Theory::FLOATING_POINT, 2, 0, 0,          nullptr},
    {"-",                      Theory::ARITHMETIC,     0, 1, any_number, build_minus},
    {"-oo",                    Theory::FLOATING_POINT, 2, 0, 0,          nullptr},
    {"-zero",                  Theory::FLOATING_POINT, 2, 0, 0,          nullptr},
    {"/",                      Theory::REALS,          0, 2, any_number, build_divide},
    {"<",                      Theory::ARITHMETIC,     0, 2, any_number, build_lt},
    {"<=",                     Theory::ARITHMETIC,     0, 2, any_number, build_leq},
    {"=",                      Theory::CORE,           0, 2, any_number, build_equal},
    {"=>",                     Theory::CORE,           0, 2, any_number, build_implies},
    {">",                      Theory::ARITHMETIC,     0, 2, any_number, build_gt},
    {">=",                     Theory::ARITHMETIC,     0, 2, any_number, build_geq},
    {"NaN",                    Theory::FLOATING_POINT, 2, 0, 0,          nullptr},
    {"RNA",                    Theory::FLOATING_POINT, 0, 0, 0,          nullptr},
    {"RNE",                    Theory::FLOATING_POINT, 0, 0, 0,          nullptr},
    {"RTN",                    Theory::FLOATING_POINT, 0, 0, 0,          nullptr},
    {"RTP",                    Theory::FLOATING_POINT, 0, 0, 0,          nullptr},
    {"RTZ",                    Theory::FLOATING_POINT, 0, 0, 0,          nullptr},
    {"abs",                    Theory::INTS,           0, 1, any_number, nullptr},
    {"and",                    Theory::CORE,           0, 1, any_number, build_and},
    {"bv2nat",                 Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvadd",                  Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvand",                  Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvashr",                 Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvcomp",                 Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvlshr",                 Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvmul",                  Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvnand",                 Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvneg",                  Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvnego",                 Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvnor",                  Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvnot",                  Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvor",                   Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvredand",               Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvredor",                Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvsaddo",                Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvsdiv",                 Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvsdivo",                Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvsge",                  Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvsgt",                  Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvshl",                  Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvsle",                  Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvslt",                  Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvsmod",                 Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvsmulo",                Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvsrem",                 Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvssubo",                Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvsub",                  Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvuaddo",                Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvudiv",                 Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvuge",                  Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvugt",                  Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvule",                  Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvult",                  Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvumulo",                Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvurem",                 Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvusubo",                Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvxnor",                 Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"bvxor",                  Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"char",                   Theory::STRINGS,        1, 0, 0,          nullptr},
    {"concat",                 Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"const",                  Theory::ARRAYS,         0, 1, 1,          nullptr},
    {"distinct",               Theory::CORE,           0, 2, any_number, build_distinct},
    {"div",                    Theory::INTS,           0, 1, any_number, nullptr},
    {"divisible",              Theory::INTS,           1, 1, any_number, nullptr},
    {"extract",                Theory::BIT_VECTORS,    2, 1, any_number, nullptr},
    {"false",                  Theory::CORE,           0, 0, 0,          build_false},
    {"fp",                     Theory::FLOATING_POINT, 0, 1, any_number, nullptr},
    {"fp.abs",                 Theory::FLOATING_POINT, 0, 1, any_number, nullptr},
    {"fp.add",                 Theory::FLOATING_POINT, 0, 1, any_number, nullptr},
    {"fp.div",                 Theory::FLOATING_POINT, 0, 1, any_number, nullptr},
    {"fp.eq",                  Theory::FLOATING_POINT, 0, 1, any_number, nullptr},
    {"fp.fma",                 Theory::FLOATING_POINT, 0, 1, any_number, nullptr},
    {"fp.geq",                 Theory::FLOATING_POINT, 0, 1, any_number, nullptr},
    {"fp.gt",                  Theory::FLOATING_POINT, 0, 1, any_number, nullptr},
    {"fp.isInfinite",          Theory::FLOATING_POINT, 0, 1, any_number, nullptr},
    {"fp.isNaN",               Theory::FLOATING_POINT, 0, 1, any_number, nullptr},
    {"fp.isNegative",          Theory::FLOATING_POINT, 0, 1, any_number, nullptr},
    {"fp.isNormal",            Theory::FLOATING_POINT, 0, 1, any_number, nullptr},
    {"fp.isPositive",          Theory::FLOATING_POINT, 0, 1, any_number, nullptr},
    {"fp.isSubnormal",         Theory::FLOATING_POINT, 0, 1, any_number, nullptr},
    {"fp.isZero",              Theory::FLOATING_POINT, 0, 1, any_number, nullptr},
    {"fp.leq",                 Theory::FLOATING_POINT, 0, 1, any_number, nullptr},
    {"fp.lt",                  Theory::FLOATING_POINT, 0, 1, any_number, nullptr},
    {"fp.max",                 Theory::FLOATING_POINT, 0, 1, any_number, nullptr},
    {"fp.min",                 Theory::FLOATING_POINT, 0, 1, any_number, nullptr},
    {"fp.mul",                 Theory::FLOATING_POINT, 0, 1, any_number, nullptr},
    {"fp.neg",                 Theory::FLOATING_POINT, 0, 1, any_number, nullptr},
    {"fp.rem",                 Theory::FLOATING_POINT, 0, 1, any_number, nullptr},
    {"fp.roundToIntegral",     Theory::FLOATING_POINT, 0, 1, any_number, nullptr},
    {"fp.sqrt",                Theory::FLOATING_POINT, 0, 1, any_number, nullptr},
    {"fp.sub",                 Theory::FLOATING_POINT, 0, 1, any_number, nullptr},
    {"fp.to_ieee_bv",          Theory::FLOATING_POINT, 0, 1, any_number, nullptr},
    {"fp.to_real",             Theory::FLOATING_POINT, 0, 1, any_number, nullptr},
    {"fp.to_sbv",              Theory::FLOATING_POINT, 1, 1, any_number, nullptr},
    {"fp.to_ubv",              Theory::FLOATING_POINT, 1, 1, any_number, nullptr},
    {"int2bv",                 Theory::BIT_VECTORS,    1, 1, any_number, nullptr},
    {"int_to_bv",              Theory::BIT_VECTORS,    1, 1, any_number, nullptr},
    {"is_int",                 Theory::REALS_INTS,     0, 1, 1,          build_is_int},
    {"ite",                    Theory::CORE,           0, 3, 3,          build_ite},
    {"mod",                    Theory::INTS,           0, 1, any_number, nullptr},
    {"nat2bv",                 Theory::BIT_VECTORS,    1, 1, any_number, nullptr},
    {"not",                    Theory::CORE,           0, 1, 1,          build_not},
    {"or",                     Theory::CORE,           0, 1, any_number, build_or},
    {"re.*",                   Theory::STRINGS,        0, 1, any_number, nullptr},
    {"re.+",                   Theory::STRINGS,        0, 1, any_number, nullptr},
    {"re.++",                  Theory::STRINGS,        0, 1, any_number, nullptr},
    {"re.^",                   Theory::STRINGS,        1, 1, 1,          nullptr},
    {"re.all",                 Theory::STRINGS,        0, 0, 0,          nullptr},
    {"re.allchar",             Theory::STRINGS,        0, 0, 0,          nullptr},
    {"re.comp",                Theory::STRINGS,        0, 1, any_number, nullptr},
    {"re.diff",                Theory::STRINGS,        0, 1, any_number, nullptr},
    {"re.inter",               Theory::STRINGS,        0, 1, any_number, nullptr},
    {"re.loop",                Theory::STRINGS,        2, 1, 1,          nullptr},
    {"re.none",                Theory::STRINGS,        0, 0, 0,          nullptr},
    {"re.opt",                 Theory::STRINGS,        0, 1, any_number, nullptr},
    {"re.range",               Theory::STRINGS,        0, 1, any_number, nullptr},
    {"re.union",               Theory::STRINGS,        0, 1, any_number, nullptr},
    {"repeat",                 Theory::BIT_VECTORS,    1, 1, any_number, nullptr},
    {"rotate_left",            Theory::BIT_VECTORS,    1, 1, any_number, nullptr},
    {"rotate_right",           Theory::BIT_VECTORS,    1, 1, any_number, nullptr},
    {"roundNearestTiesToAway", Theory::FLOATING_POINT, 0, 0, 0,          nullptr},
    {"roundNearestTiesToEven", Theory::FLOATING_POINT, 0, 0, 0,          nullptr},
    {"roundTowardNegative",    Theory::FLOATING_POINT, 0, 0, 0,          nullptr},
    {"roundTowardPositive",    Theory::FLOATING_POINT, 0, 0, 0,          nullptr},
    {"roundTowardZero",        Theory::FLOATING_POINT, 0, 0, 0,          nullptr},
    {"sbv_to_int",             Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"select",                 Theory::ARRAYS,         0, 1, any_number, nullptr},
    {"seq.++",                 Theory::STRINGS,        0, 1, any_number, nullptr},
    {"seq.at",                 Theory::STRINGS,        0, 1, any_number, nullptr},
    {"seq.contains",           Theory::STRINGS,        0, 1, any_number, nullptr},
    {"seq.empty",              Theory::STRINGS,        0, 0, 0,          nullptr},
    {"seq.extract",            Theory::STRINGS,        0, 1, any_number, nullptr},
    {"seq.indexof",            Theory::STRINGS,        0, 1, any_number, nullptr},
    {"seq.len",                Theory::STRINGS,        0, 1, any_number, nullptr},
    {"seq.nth",                Theory::STRINGS,        0, 1, any_number, nullptr},
    {"seq.prefixof",           Theory::STRINGS,        0, 1, any_number, nullptr},
    {"seq.replace",            Theory::STRINGS,        0, 1, any_number, nullptr},
    {"seq.rev",                Theory::STRINGS,        0, 1, any_number, nullptr},
    {"seq.suffixof",           Theory::STRINGS,        0, 1, any_number, nullptr},
    {"seq.unit",               Theory::STRINGS,        0, 1, any_number, nullptr},
    {"seq.update",             Theory::STRINGS,        0, 1, any_number, nullptr},
    {"sign_extend",            Theory::BIT_VECTORS,    1, 1, any_number, nullptr},
    {"store",                  Theory::ARRAYS,         0, 1, any_number, nullptr},
    {"str.++",                 Theory::STRINGS,        0, 1, any_number, nullptr},
    {"str.<",                  Theory::STRINGS,        0, 1, any_number, nullptr},
    {"str.<=",                 Theory::STRINGS,        0, 1, any_number, nullptr},
    {"str.at",                 Theory::STRINGS,        0, 1, any_number, nullptr},
    {"str.contains",           Theory::STRINGS,        0, 1, any_number, nullptr},
    {"str.from_code",          Theory::STRINGS,        0, 1, any_number, nullptr},
    {"str.from_int",           Theory::STRINGS,        0, 1, any_number, nullptr},
    {"str.in_re",              Theory::STRINGS,        0, 1, any_number, nullptr},
    {"str.indexof",            Theory::STRINGS,        0, 1, any_number, nullptr},
    {"str.is_digit",           Theory::STRINGS,        0, 1, any_number, nullptr},
    {"str.len",                Theory::STRINGS,        0, 1, any_number, nullptr},
    {"str.prefixof",           Theory::STRINGS,        0, 1, any_number, nullptr},
    {"str.replace",            Theory::STRINGS,        0, 1, any_number, nullptr},
    {"str.replace_all",        Theory::STRINGS,        0, 1, any_number, nullptr},
    {"str.replace_re",         Theory::STRINGS,        0, 1, any_number, nullptr},
    {"str.replace_re_all",     Theory::STRINGS,        0, 1, any_number, nullptr},
    {"str.substr",             Theory::STRINGS,        0, 1, any_number, nullptr},
    {"str.suffixof",           Theory::STRINGS,        0, 1, any_number, nullptr},
    {"str.to_code",            Theory::STRINGS,        0, 1, any_number, nullptr},
    {"str.to_int",             Theory::STRINGS,        0, 1, any_number, nullptr},
    {"str.to_re",              Theory::STRINGS,        0, 1, any_number, nullptr},
    {"to_fp",                  Theory::FLOATING_POINT, 2, 1, any_number, nullptr},
    {"to_fp_unsigned",         Theory::FLOATING_POINT, 2, 1, any_number, nullptr},
    {"to_int",                 Theory::REALS_INTS,     0, 1, 1,          build_to_int},
    {"to_real",                Theory::REALS_INTS,     0, 1, 1,          build_to_real},
    {"true",                   Theory::CORE,           0, 0, 0,          build_true},
    {"ubv_to_int",             Theory::BIT_VECTORS,    0, 1, any_number, nullptr},
    {"xor",                    Theory::CORE,           0, 2, any_number, build_xor},
    {"zero_extend",            Theory::BIT_VECTORS,    1, 1, any_number, nullptr},
};
// clang-format on

constexpr bool complete() {
  for (size_t i = 0; i < std::size(table); ++i) {
    if (i != 0 && std::string_view(table[i - 1].name) >= table[i].name) return false;
    if (table[i].min_args > table[i].max_args) return false;
  }
  return true;
}
static_assert(complete(), "the rows ascend by name");

std::string count_of(size_t count, const char* one, const char* many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

}  // namespace

std::span<const Operator> operators() { return table; }

Value apply_operator(TermBuilder& builder, const Application& application) {
  const Operator& op = application.op;
  if (op.build == nullptr) {
    throw ParseError(application.position, "unsupported: the operator '" + std::string(op.name) +
                                               "' of " + describe(op.theory));
  }
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
