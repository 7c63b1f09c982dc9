#include "frontends/smt2/operators.h"

#include <iterator>
#include <string_view>

#include "frontends/smt2/arithmetic_operators.h"
#include "frontends/smt2/core_operators.h"
#include "frontends/smt2/term_builder.h"
#include "quill/printers/smtlib2_names.h"

namespace quill::smt2 {

namespace {

// clang-format off
constexpr Operator table[] = {
    // name, indices, least and largest number of arguments, builder
    {"*",         0, 1, any_number, build_times},
    {"+",         0, 1, any_number, build_plus},
    {"-",         0, 1, any_number, build_minus},
    {"/",         0, 2, any_number, build_divide},
    {"<",         0, 2, any_number, build_lt},
    {"<=",        0, 2, any_number, build_leq},
    {"=",         0, 2, any_number, build_equal},
    {"=>",        0, 2, any_number, build_implies},
    {">",         0, 2, any_number, build_gt},
    {">=",        0, 2, any_number, build_geq},
    {"abs",       0, 1, 1,          build_abs},
    {"and",       0, 1, any_number, build_and},
    {"distinct",  0, 2, any_number, build_distinct},
    {"div",       0, 2, any_number, build_div},
    {"divisible", 1, 1, 1,          build_divisible},
    {"false",     0, 0, 0,          build_false},
    {"is_int",    0, 1, 1,          build_is_int},
    {"ite",       0, 3, 3,          build_ite},
    {"mod",       0, 2, 2,          build_mod},
    {"not",       0, 1, 1,          build_not},
    {"or",        0, 1, any_number, build_or},
    {"to_int",    0, 1, 1,          build_to_int},
    {"to_real",   0, 1, 1,          build_to_real},
    {"true",      0, 0, 0,          build_true},
    {"xor",       0, 2, any_number, build_xor},
};
// clang-format on

constexpr bool complete() {
  for (size_t i = 0; i < std::size(table); ++i) {
    if (i != 0 && std::string_view(table[i - 1].name) >= table[i].name) return false;
    if (table[i].min_args > table[i].max_args) return false;
    if (!has_theory(theory_symbols, table[i].name)) return false;
  }
  return true;
}
static_assert(complete(), "the rows ascend by name, and a theory has each name");

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
