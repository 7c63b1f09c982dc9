#include "tests/support/operators.h"

#include <stdexcept>
#include <tuple>
#include <type_traits>
#include <utility>

#include "quill/terms/termmanager/term_manager.h"

namespace quill::testing {

namespace {

using M = TermManager;
using Arguments = std::span<const Term_* const>;

// The argument at this place of a maker or builder that takes this many parameters before terms.
template <class Argument, size_t place, size_t parameters>
decltype(auto) argument(const Parameters& given, [[maybe_unused]] Arguments terms) {
  using Plain = std::decay_t<Argument>;
  if constexpr (std::is_same_v<Plain, const Term_*>) {
    return terms[place - parameters];
  } else if constexpr (std::is_same_v<Plain, const DataType*>) {
    return given.types[place];
  } else if constexpr (std::is_same_v<Plain, QNumber>) {
    return (given.number);
  } else {
    static_assert(std::is_same_v<Plain, size_t>);
    return given.numbers[place];
  }
}

template <class Object, class Member, class... Arguments_>
auto caller(Member member) {
  return [member](M& m, const Parameters& given, Arguments terms) -> const Object* {
    constexpr size_t parameters =
        (size_t{0} + ... + (std::is_same_v<Arguments_, const Term_*> ? 0 : 1));
    return [&]<size_t... places>(std::index_sequence<places...>) {
      return (m.*member)(argument<Arguments_, places, parameters>(given, terms)...);
    }
    (std::index_sequence_for<Arguments_...>());
  };
}

template <class... Taken>
auto builder(const Term_* (M::*member)(Taken...)) {
  return caller<Term_, decltype(member), Taken...>(member);
}
auto builder(const Term_* (M::*member)() const) { return caller<Term_, decltype(member)>(member); }

template <class... Taken>
std::function<const Symbol*(M&, const Parameters&)> maker(const Symbol* (M::*member)(Taken...)) {
  return [call = caller<Symbol, decltype(member), Taken...>(member)](
             M& m, const Parameters& given) { return call(m, given, {}); };
}

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

template <class... Outs>
Recogniser recogniser(bool (TermManager::*member)(const Symbol*, Outs*...) const) {
  Recogniser result;
  result.outputs = sizeof...(Outs);
  result.ask = [member](const TermManager& m, const Symbol* s, unsigned mask, Names& texts) {
    return [&]<size_t... I>(std::index_sequence<I...>) {
      std::tuple<Outs...> outs{initial_output<Outs>()...};
      const bool answer = (m.*member)(s, ((mask >> I & 1U) != 0 ? &std::get<I>(outs) : nullptr)...);
      texts = {((mask >> I & 1U) == 0                         ? not_asked
                : std::get<I>(outs) == initial_output<Outs>() ? untouched
                                                              : text_of(std::get<I>(outs)))...};
      return answer;
    }
    (std::index_sequence_for<Outs...>());
  };
  if constexpr ((std::is_same_v<Outs, size_t> && ...)) {
    result.read = [member](const TermManager& m, const Symbol* s, std::array<size_t, 4>* numbers) {
      return [&]<size_t... I>(std::index_sequence<I...>) {
        return (m.*member)(s, (numbers != nullptr ? &(*numbers)[I] : nullptr)...);
      }
      (std::index_sequence_for<Outs...>());
    };
  }
  return result;
}

}  // namespace

const std::vector<Operator>& operators() {
  // clang-format off
  static const std::vector<Operator> all = {
      {1, "make_true", "true", Indices::None, 0, builder(&M::make_true), nullptr, Recogniser{}},
      {2, "make_false", "false", Indices::None, 0, builder(&M::make_false), nullptr, Recogniser{}},
      {3, "make_and", "and", Indices::None, 2, builder(&M::make_and), nullptr, Recogniser{}},
      {4, "make_or", "or", Indices::None, 2, builder(&M::make_or), nullptr, Recogniser{}},
      {5, "make_not", "not", Indices::None, 1, builder(&M::make_not), nullptr, Recogniser{}},
      {6, "make_iff", "iff", Indices::None, 2, builder(&M::make_iff), nullptr, Recogniser{}},
      {7, "make_plus", "+_", Indices::None, 2, builder(&M::make_plus), nullptr, Recogniser{}},
      {8, "make_times", "*_", Indices::None, 2, builder(&M::make_times), nullptr, Recogniser{}},
      {9, "make_floor", "floor", Indices::None, 1, builder(&M::make_floor), nullptr, Recogniser{}},
      {10, "make_leq", "<=_", Indices::None, 2, builder(&M::make_leq), nullptr, Recogniser{}},
      {11, "make_equal", "=_", Indices::Type, 2, builder(&M::make_equal), maker(&M::make_equality_symbol), Recogniser{}},
      {12, "make_term_ite", "ite_", Indices::Type, 3, builder(&M::make_term_ite), maker(&M::make_term_ite_symbol), recogniser(&M::is_term_ite)},
      {13, "make_int_modular_congruence", "int_mod_congr_", Indices::Modulus, 2, builder(&M::make_int_modular_congruence), maker(&M::make_int_modular_congruence_symbol), recogniser(&M::is_int_modular_congruence)},
      {14, "make_bv_concat", "bvconcat_", Indices::TwoWidths, 2, builder(&M::make_bv_concat), maker(&M::make_bv_concat_symbol), recogniser(&M::is_bv_concat)},
      {15, "make_bv_extract", "bvextract_", Indices::Part, 1, builder(&M::make_bv_extract), maker(&M::make_bv_extract_symbol), recogniser(&M::is_bv_extract)},
      {16, "make_bv_not", "bvnot_", Indices::Width, 1, builder(&M::make_bv_not), maker(&M::make_bv_not_symbol), recogniser(&M::is_bv_not)},
      {17, "make_bv_and", "bvand_", Indices::Width, 2, builder(&M::make_bv_and), maker(&M::make_bv_and_symbol), recogniser(&M::is_bv_and)},
      {18, "make_bv_or", "bvor_", Indices::Width, 2, builder(&M::make_bv_or), maker(&M::make_bv_or_symbol), recogniser(&M::is_bv_or)},
      {19, "make_bv_xor", "bvxor_", Indices::Width, 2, builder(&M::make_bv_xor), maker(&M::make_bv_xor_symbol), recogniser(&M::is_bv_xor)},
      {20, "make_bv_ult", "bvult_", Indices::Width, 2, builder(&M::make_bv_ult), maker(&M::make_bv_ult_symbol), recogniser(&M::is_bv_ult)},
      {21, "make_bv_slt", "bvslt_", Indices::Width, 2, builder(&M::make_bv_slt), maker(&M::make_bv_slt_symbol), recogniser(&M::is_bv_slt)},
      {22, "make_bv_ule", "bvule_", Indices::Width, 2, builder(&M::make_bv_ule), maker(&M::make_bv_ule_symbol), recogniser(&M::is_bv_ule)},
      {23, "make_bv_sle", "bvsle_", Indices::Width, 2, builder(&M::make_bv_sle), maker(&M::make_bv_sle_symbol), recogniser(&M::is_bv_sle)},
      {24, "make_bv_comp", "bvcomp_", Indices::Width, 2, builder(&M::make_bv_comp), maker(&M::make_bv_comp_symbol), recogniser(&M::is_bv_comp)},
      {25, "make_bv_neg", "bvneg_", Indices::Width, 1, builder(&M::make_bv_neg), maker(&M::make_bv_neg_symbol), recogniser(&M::is_bv_neg)},
      {26, "make_bv_add", "bvadd_", Indices::Width, 2, builder(&M::make_bv_add), maker(&M::make_bv_add_symbol), recogniser(&M::is_bv_add)},
      {27, "make_bv_sub", "bvsub_", Indices::Width, 2, builder(&M::make_bv_sub), maker(&M::make_bv_sub_symbol), recogniser(&M::is_bv_sub)},
      {28, "make_bv_mul", "bvmul_", Indices::Width, 2, builder(&M::make_bv_mul), maker(&M::make_bv_mul_symbol), recogniser(&M::is_bv_mul)},
      {29, "make_bv_udiv", "bvudiv_", Indices::Width, 2, builder(&M::make_bv_udiv), maker(&M::make_bv_udiv_symbol), recogniser(&M::is_bv_udiv)},
      {30, "make_bv_sdiv", "bvsdiv_", Indices::Width, 2, builder(&M::make_bv_sdiv), maker(&M::make_bv_sdiv_symbol), recogniser(&M::is_bv_sdiv)},
      {31, "make_bv_urem", "bvurem_", Indices::Width, 2, builder(&M::make_bv_urem), maker(&M::make_bv_urem_symbol), recogniser(&M::is_bv_urem)},
      {32, "make_bv_srem", "bvsrem_", Indices::Width, 2, builder(&M::make_bv_srem), maker(&M::make_bv_srem_symbol), recogniser(&M::is_bv_srem)},
      {33, "make_bv_lshl", "bvlshl_", Indices::Width, 2, builder(&M::make_bv_lshl), maker(&M::make_bv_lshl_symbol), recogniser(&M::is_bv_lshl)},
      {34, "make_bv_lshr", "bvlshr_", Indices::Width, 2, builder(&M::make_bv_lshr), maker(&M::make_bv_lshr_symbol), recogniser(&M::is_bv_lshr)},
      {35, "make_bv_ashr", "bvashr_", Indices::Width, 2, builder(&M::make_bv_ashr), maker(&M::make_bv_ashr_symbol), recogniser(&M::is_bv_ashr)},
      {36, "make_bv_rotate_left", "bvrol_", Indices::Amount, 1, builder(&M::make_bv_rotate_left), maker(&M::make_bv_rotate_left_symbol), recogniser(&M::is_bv_rotate_left)},
      {37, "make_bv_rotate_right", "bvror_", Indices::Amount, 1, builder(&M::make_bv_rotate_right), maker(&M::make_bv_rotate_right_symbol), recogniser(&M::is_bv_rotate_right)},
      {38, "make_bv_zero_extend", "bvzext_", Indices::Amount, 1, builder(&M::make_bv_zero_extend), maker(&M::make_bv_zero_extend_symbol), recogniser(&M::is_bv_zero_extend)},
      {39, "make_bv_sign_extend", "bvsext_", Indices::Amount, 1, builder(&M::make_bv_sign_extend), maker(&M::make_bv_sign_extend_symbol), recogniser(&M::is_bv_sign_extend)},
      {40, "make_array_read", "read_", Indices::Array, 2, builder(&M::make_array_read), maker(&M::make_array_read_symbol), recogniser(&M::is_array_read)},
      {41, "make_array_write", "write_", Indices::Array, 3, builder(&M::make_array_write), maker(&M::make_array_write_symbol), recogniser(&M::is_array_write)},
      {42, "make_array_const", "const_", Indices::Array, 1, builder(&M::make_array_const), maker(&M::make_array_const_symbol), recogniser(&M::is_array_const)},
      {43, "make_fp_equal", "fpeq_", Indices::Format, 2, builder(&M::make_fp_equal), maker(&M::make_fp_equal_symbol), recogniser(&M::is_fp_equal)},
      {44, "make_fp_lt", "fplt_", Indices::Format, 2, builder(&M::make_fp_lt), maker(&M::make_fp_lt_symbol), recogniser(&M::is_fp_lt)},
      {45, "make_fp_le", "fple_", Indices::Format, 2, builder(&M::make_fp_le), maker(&M::make_fp_le_symbol), recogniser(&M::is_fp_le)},
      {46, "make_fp_neg", "fpneg_", Indices::Format, 1, builder(&M::make_fp_neg), maker(&M::make_fp_neg_symbol), recogniser(&M::is_fp_neg)},
      {47, "make_fp_add", "fpadd_", Indices::Format, 3, builder(&M::make_fp_add), maker(&M::make_fp_add_symbol), recogniser(&M::is_fp_add)},
      {48, "make_fp_sub", "fpsub_", Indices::Format, 3, builder(&M::make_fp_sub), maker(&M::make_fp_sub_symbol), recogniser(&M::is_fp_sub)},
      {49, "make_fp_mul", "fpmul_", Indices::Format, 3, builder(&M::make_fp_mul), maker(&M::make_fp_mul_symbol), recogniser(&M::is_fp_mul)},
      {50, "make_fp_div", "fpdiv_", Indices::Format, 3, builder(&M::make_fp_div), maker(&M::make_fp_div_symbol), recogniser(&M::is_fp_div)},
      {51, "make_fp_sqrt", "fpsqrt_", Indices::Format, 2, builder(&M::make_fp_sqrt), maker(&M::make_fp_sqrt_symbol), recogniser(&M::is_fp_sqrt)},
      {52, "make_fp_abs", "fpabs_", Indices::Format, 1, builder(&M::make_fp_abs), maker(&M::make_fp_abs_symbol), recogniser(&M::is_fp_abs)},
      {53, "make_fp_min", "fpmin_", Indices::Format, 2, builder(&M::make_fp_min), maker(&M::make_fp_min_symbol), recogniser(&M::is_fp_min)},
      {54, "make_fp_max", "fpmax_", Indices::Format, 2, builder(&M::make_fp_max), maker(&M::make_fp_max_symbol), recogniser(&M::is_fp_max)},
      {55, "make_fp_cast", "fpcast__", Indices::TwoFormats, 2, builder(&M::make_fp_cast), maker(&M::make_fp_cast_symbol), recogniser(&M::is_fp_cast)},
      {56, "make_fp_round_to_int", "fproundtoint_", Indices::Format, 2, builder(&M::make_fp_round_to_int), maker(&M::make_fp_round_to_int_symbol), recogniser(&M::is_fp_round_to_int)},
      {57, "make_fp_from_sbv", "fpfromsbv__", Indices::WidthAndFormat, 2, builder(&M::make_fp_from_sbv), maker(&M::make_fp_from_sbv_symbol), recogniser(&M::is_fp_from_sbv)},
      {58, "make_fp_from_ubv", "fpfromubv__", Indices::WidthAndFormat, 2, builder(&M::make_fp_from_ubv), maker(&M::make_fp_from_ubv_symbol), recogniser(&M::is_fp_from_ubv)},
      {59, "make_fp_to_bv", "fptobv__", Indices::FormatAndWidth, 2, builder(&M::make_fp_to_bv), maker(&M::make_fp_to_bv_symbol), recogniser(&M::is_fp_to_bv)},
      {60, "make_fp_as_ieeebv", "fpasbv__", Indices::FormatAndItsBits, 1, builder(&M::make_fp_as_ieeebv), maker(&M::make_fp_as_ieeebv_symbol), recogniser(&M::is_fp_as_ieeebv)},
      {61, "make_fp_isnan", "fpisnan_", Indices::Format, 1, builder(&M::make_fp_isnan), maker(&M::make_fp_isnan_symbol), recogniser(&M::is_fp_isnan)},
      {62, "make_fp_isinf", "fpisinf_", Indices::Format, 1, builder(&M::make_fp_isinf), maker(&M::make_fp_isinf_symbol), recogniser(&M::is_fp_isinf)},
      {63, "make_fp_iszero", "fpiszero_", Indices::Format, 1, builder(&M::make_fp_iszero), maker(&M::make_fp_iszero_symbol), recogniser(&M::is_fp_iszero)},
      {64, "make_fp_issubnormal", "fpissubnormal_", Indices::Format, 1, builder(&M::make_fp_issubnormal), maker(&M::make_fp_issubnormal_symbol), recogniser(&M::is_fp_issubnormal)},
      {65, "make_fp_isnormal", "fpisnormal_", Indices::Format, 1, builder(&M::make_fp_isnormal), maker(&M::make_fp_isnormal_symbol), recogniser(&M::is_fp_isnormal)},
      {66, "make_fp_isneg", "fpisneg_", Indices::Format, 1, builder(&M::make_fp_isneg), maker(&M::make_fp_isneg_symbol), recogniser(&M::is_fp_isneg)},
      {67, "make_fp_ispos", "fpispos_", Indices::Format, 1, builder(&M::make_fp_ispos), maker(&M::make_fp_ispos_symbol), recogniser(&M::is_fp_ispos)},
      {68, "make_fp_from_ieeebv", "fpfromieeebv__", Indices::BitsAndFormat, 1, builder(&M::make_fp_from_ieeebv), maker(&M::make_fp_from_ieeebv_symbol), recogniser(&M::is_fp_from_ieeebv)},
      {69, "make_int_fromubv", "ubv2int_", Indices::Width, 1, builder(&M::make_int_from_ubv), maker(&M::make_int_from_ubv_symbol), recogniser(&M::is_int_from_ubv)},
      {70, "make_int_fromsbv", "sbv2int_", Indices::Width, 1, builder(&M::make_int_from_sbv), maker(&M::make_int_from_sbv_symbol), recogniser(&M::is_int_from_sbv)},
      {71, "make_int_to_bv", "int2bv_", Indices::Width, 1, builder(&M::make_int_to_bv), maker(&M::make_int_to_bv_symbol), recogniser(&M::is_int_to_bv)},
  };
  // clang-format on
  return all;
}

std::span<const Operator> operator_families() {
  constexpr size_t without_family = 12;
  return std::span(operators()).subspan(without_family);
}

const Operator& operator_of(int tag) {
  const Operator& found = operators().at(static_cast<size_t>(tag - 1));
  if (found.tag != tag) throw std::logic_error("the operators are not in the order of the tags");
  return found;
}

}  // namespace quill::testing
