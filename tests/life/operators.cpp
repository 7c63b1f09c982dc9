#include "tests/life/operators.h"

#include <map>

#include "quill/utils/qnumber.h"

namespace quill::life {

namespace {

const Term_* uninterpreted(TermManager& m, const Request& r, const Arguments& t) {
  const DataType* type = make_type(m, r.type());
  return m.make_uninterpreted_function(m.make_symbol(r.name(), type), t);
}

const Term_* arithmetic_number(TermManager& m, const Request& r, const Arguments&) {
  return m.make_number(QNumber::from_string(r.name().c_str()));
}

const Term_* bit_vector_number(TermManager& m, const Request& r, const Arguments&) {
  return m.make_bv_number(QNumber(r.number('n')), r.number('w'));
}

const Term_* floating_point_number(TermManager& m, const Request& r, const Arguments&) {
  return m.make_fp_bits_number(QNumber(r.number('n')), r.number('e'), r.number('m'));
}

using M = TermManager;
using R = Request;
using T = Arguments;

// clang-format off
const std::vector<Operator> operators = {
    // User constants, by type.
    {"constant_int",   "i{k}",  "Int",  uninterpreted, {{'k', "0", "4"}}},
    {"constant_real",  "r{k}",  "Real", uninterpreted, {{'k', "0", "3"}}},
    {"constant_bool",  "p{k}",  "Bool", uninterpreted, {{'k', "0", "3"}}},
    {"constant_user",  "u{k}_{s}", "S{s}", uninterpreted, {{'k', "0", "2"}, {'s', "0", "3"}}},
    {"constant_round", "rm{k}", "FPRounding", uninterpreted, {{'k', "0", "2"}}},
    {"constant_bv",    "x{k}_{w}", "(BitVec {w})", uninterpreted, {{'k', "0", "2"}, {'w', "4", "9"}}},
    {"constant_fp",    "y{k}_{e}_{m}", "(FP |{e}:{m}|)", uninterpreted, {{'k', "0", "2"}, {'e', "3", "5"}, {'m', "4", "6"}}},
    {"constant_array", "a{k}_{w}_{s}", "(Array (BitVec {w}) S{s})", uninterpreted, {{'k', "0", "2"}, {'w', "4", "6"}, {'s', "0", "3"}}},
    {"constant_array_int", "b{k}",  "(Array Int Real)", uninterpreted, {{'k', "0", "2"}}},
    {"constant_nested", "n{k}_{s}", "(Array Int (Array S{s} (BitVec 4)))", uninterpreted, {{'k', "0", "2"}, {'s', "0", "3"}}},

    {"function",         "f{k}_{t}", "(-> {t} {t})", uninterpreted, {{'k', "0", "2"}}},
    {"function_of_two",  "g_{t}_{s}", "(-> {t} {s} {t})", uninterpreted, {}},
    {"predicate",        "q{k}_{t}", "(-> {t} Bool)", uninterpreted, {{'k', "0", "2"}}},

    {"number",           "{n-10}", "Int", arithmetic_number, {{'n', "0", "40"}}},
    {"number_large",     "{n}00000000000000000000", "Int", arithmetic_number, {{'n', "1", "5"}}},
    {"number_fraction",  "{n}/7", "Real", arithmetic_number, {{'n', "1", "7"}}},
    {"number_bv",        "{n}_{w}", "(BitVec {w})", bit_vector_number, {{'n', "0", "16"}, {'w', "4", "9"}}},
    {"number_fp",        "{n}_{e}_{m}", "(FP |{e}:{m}|)", floating_point_number, {{'n', "0", "16"}, {'e', "3", "5"}, {'m', "4", "6"}}},
    {"number_inf",       "112_3_4", "(FP |3:4|)", [](M& m, const R&, const T&) { return m.make_fp_plus_inf(3, 4); }, {}},
    {"number_minus_inf", "240_3_4", "(FP |3:4|)", [](M& m, const R&, const T&) { return m.make_fp_minus_inf(3, 4); }, {}},
    {"round_even",       "`fprounding_even`", "FPRounding", [](M& m, const R&, const T&) { return m.make_fprounding_even(); }, {}},
    {"round_zero",       "`fprounding_zero`", "FPRounding", [](M& m, const R&, const T&) { return m.make_fprounding_zero(); }, {}},
    {"round_plus_inf",   "`fprounding_plus_inf`", "FPRounding", [](M& m, const R&, const T&) { return m.make_fprounding_plus_inf(); }, {}},
    {"round_minus_inf",  "`fprounding_minus_inf`", "FPRounding", [](M& m, const R&, const T&) { return m.make_fprounding_minus_inf(); }, {}},

    {"true",  "`true`",  "Bool", [](M& m, const R&, const T&) { return m.make_true(); }, {}},
    {"false", "`false`", "Bool", [](M& m, const R&, const T&) { return m.make_false(); }, {}},
    {"not",   "`not`", "(-> Bool Bool)",      [](M& m, const R&, const T& t) { return m.make_not(t[0]); }, {}},
    {"and",   "`and`", "(-> Bool Bool Bool)", [](M& m, const R&, const T& t) { return m.make_and(t[0], t[1]); }, {}},
    {"or",    "`or`",  "(-> Bool Bool Bool)", [](M& m, const R&, const T& t) { return m.make_or(t[0], t[1]); }, {}},
    {"iff",   "`iff`", "(-> Bool Bool Bool)", [](M& m, const R&, const T& t) { return m.make_iff(t[0], t[1]); }, {}},
    {"equal", "`=_{~t}`", "(-> {t} {t} Bool)", [](M& m, const R&, const T& t) { return m.make_equal(t[0], t[1]); }, {}},
    {"equal_mixed", "`=_rat`", "(-> Real Real Bool)", [](M& m, const R&, const T& t) { return m.make_equal(t[0], t[1]); }, {}, {"Int", "Real"}},
    {"ite",   "`ite_{~t}`", "(-> Bool {t} {t} {t})", [](M& m, const R&, const T& t) { return m.make_term_ite(t[0], t[1], t[2]); }, {}},
    {"ite_mixed", "`ite_rat`", "(-> Bool Real Real Real)", [](M& m, const R&, const T& t) { return m.make_term_ite(t[0], t[1], t[2]); }, {}, {"Bool", "Real", "Int"}},

    {"plus",  "`+_int`", "(-> Int Int Int)", [](M& m, const R&, const T& t) { return m.make_plus(t[0], t[1]); }, {}},
    {"plus_real",  "`+_rat`", "(-> Real Real Real)", [](M& m, const R&, const T& t) { return m.make_plus(t[0], t[1]); }, {}},
    {"plus_mixed", "`+_rat`", "(-> Real Real Real)", [](M& m, const R&, const T& t) { return m.make_plus(t[0], t[1]); }, {}, {"Real", "Int"}},
    {"times", "`*_int`", "(-> Int Int Int)", [](M& m, const R&, const T& t) { return m.make_times(t[0], t[1]); }, {}},
    {"times_mixed", "`*_rat`", "(-> Real Real Real)", [](M& m, const R&, const T& t) { return m.make_times(t[0], t[1]); }, {}, {"Int", "Real"}},
    {"leq",   "`<=_int`", "(-> Int Int Bool)", [](M& m, const R&, const T& t) { return m.make_leq(t[0], t[1]); }, {}},
    {"leq_real", "`<=_rat`", "(-> Real Real Bool)", [](M& m, const R&, const T& t) { return m.make_leq(t[0], t[1]); }, {}},
    {"floor", "`floor`", "(-> Real Int)", [](M& m, const R&, const T& t) { return m.make_floor(t[0]); }, {}},
    {"congruent", "`int_mod_congr_{n}`", "(-> Int Int Bool)", [](M& m, const R& r, const T& t) { return m.make_int_modular_congruence(QNumber(r.number('n')), t[0], t[1]); }, {{'n', "1", "5"}}},

    {"bvnot",  "`bvnot_{w}`",  "(-> (BitVec {w}) (BitVec {w}))", [](M& m, const R&, const T& t) { return m.make_bv_not(t[0]); }, {}},
    {"bvneg",  "`bvneg_{w}`",  "(-> (BitVec {w}) (BitVec {w}))", [](M& m, const R&, const T& t) { return m.make_bv_neg(t[0]); }, {}},
    {"bvand",  "`bvand_{w}`",  "(-> (BitVec {w}) (BitVec {w}) (BitVec {w}))", [](M& m, const R&, const T& t) { return m.make_bv_and(t[0], t[1]); }, {}},
    {"bvor",   "`bvor_{w}`",   "(-> (BitVec {w}) (BitVec {w}) (BitVec {w}))", [](M& m, const R&, const T& t) { return m.make_bv_or(t[0], t[1]); }, {}},
    {"bvxor",  "`bvxor_{w}`",  "(-> (BitVec {w}) (BitVec {w}) (BitVec {w}))", [](M& m, const R&, const T& t) { return m.make_bv_xor(t[0], t[1]); }, {}},
    {"bvadd",  "`bvadd_{w}`",  "(-> (BitVec {w}) (BitVec {w}) (BitVec {w}))", [](M& m, const R&, const T& t) { return m.make_bv_add(t[0], t[1]); }, {}},
    {"bvsub",  "`bvsub_{w}`",  "(-> (BitVec {w}) (BitVec {w}) (BitVec {w}))", [](M& m, const R&, const T& t) { return m.make_bv_sub(t[0], t[1]); }, {}},
    {"bvmul",  "`bvmul_{w}`",  "(-> (BitVec {w}) (BitVec {w}) (BitVec {w}))", [](M& m, const R&, const T& t) { return m.make_bv_mul(t[0], t[1]); }, {}},
    {"bvudiv", "`bvudiv_{w}`", "(-> (BitVec {w}) (BitVec {w}) (BitVec {w}))", [](M& m, const R&, const T& t) { return m.make_bv_udiv(t[0], t[1]); }, {}},
    {"bvsdiv", "`bvsdiv_{w}`", "(-> (BitVec {w}) (BitVec {w}) (BitVec {w}))", [](M& m, const R&, const T& t) { return m.make_bv_sdiv(t[0], t[1]); }, {}},
    {"bvurem", "`bvurem_{w}`", "(-> (BitVec {w}) (BitVec {w}) (BitVec {w}))", [](M& m, const R&, const T& t) { return m.make_bv_urem(t[0], t[1]); }, {}},
    {"bvsrem", "`bvsrem_{w}`", "(-> (BitVec {w}) (BitVec {w}) (BitVec {w}))", [](M& m, const R&, const T& t) { return m.make_bv_srem(t[0], t[1]); }, {}},
    {"bvlshl", "`bvlshl_{w}`", "(-> (BitVec {w}) (BitVec {w}) (BitVec {w}))", [](M& m, const R&, const T& t) { return m.make_bv_lshl(t[0], t[1]); }, {}},
    {"bvlshr", "`bvlshr_{w}`", "(-> (BitVec {w}) (BitVec {w}) (BitVec {w}))", [](M& m, const R&, const T& t) { return m.make_bv_lshr(t[0], t[1]); }, {}},
    {"bvashr", "`bvashr_{w}`", "(-> (BitVec {w}) (BitVec {w}) (BitVec {w}))", [](M& m, const R&, const T& t) { return m.make_bv_ashr(t[0], t[1]); }, {}},
    {"bvult",  "`bvult_{w}`",  "(-> (BitVec {w}) (BitVec {w}) Bool)", [](M& m, const R&, const T& t) { return m.make_bv_ult(t[0], t[1]); }, {}},
    {"bvslt",  "`bvslt_{w}`",  "(-> (BitVec {w}) (BitVec {w}) Bool)", [](M& m, const R&, const T& t) { return m.make_bv_slt(t[0], t[1]); }, {}},
    {"bvule",  "`bvule_{w}`",  "(-> (BitVec {w}) (BitVec {w}) Bool)", [](M& m, const R&, const T& t) { return m.make_bv_ule(t[0], t[1]); }, {}},
    {"bvsle",  "`bvsle_{w}`",  "(-> (BitVec {w}) (BitVec {w}) Bool)", [](M& m, const R&, const T& t) { return m.make_bv_sle(t[0], t[1]); }, {}},
    {"bvcomp", "`bvcomp_{w}`", "(-> (BitVec {w}) (BitVec {w}) (BitVec 1))", [](M& m, const R&, const T& t) { return m.make_bv_comp(t[0], t[1]); }, {}},
    {"bvconcat", "`bvconcat_{v}_{w}`", "(-> (BitVec {v}) (BitVec {w}) (BitVec {v+w}))", [](M& m, const R&, const T& t) { return m.make_bv_concat(t[0], t[1]); }, {}},
    {"bvextract", "`bvextract_{h}_{l}_{w}`", "(-> (BitVec {w}) (BitVec {h-l+1}))", [](M& m, const R& r, const T& t) { return m.make_bv_extract(r.number('h'), r.number('l'), t[0]); }, {{'h', "0", "w"}, {'l', "0", "h+1"}}},
    {"bvrol",  "`bvrol_{k}_{w}`",  "(-> (BitVec {w}) (BitVec {w}))", [](M& m, const R& r, const T& t) { return m.make_bv_rotate_left(r.number('k'), t[0]); }, {{'k', "0", "10"}}},
    {"bvror",  "`bvror_{k}_{w}`",  "(-> (BitVec {w}) (BitVec {w}))", [](M& m, const R& r, const T& t) { return m.make_bv_rotate_right(r.number('k'), t[0]); }, {{'k', "0", "10"}}},
    {"bvzext", "`bvzext_{k}_{w}`", "(-> (BitVec {w}) (BitVec {k+w}))", [](M& m, const R& r, const T& t) { return m.make_bv_zero_extend(r.number('k'), t[0]); }, {{'k', "0", "5"}}},
    {"bvsext", "`bvsext_{k}_{w}`", "(-> (BitVec {w}) (BitVec {k+w}))", [](M& m, const R& r, const T& t) { return m.make_bv_sign_extend(r.number('k'), t[0]); }, {{'k', "0", "5"}}},
    {"int2bv",  "`int2bv_{w}`",  "(-> Int (BitVec {w}))", [](M& m, const R& r, const T& t) { return m.make_int_to_bv(r.number('w'), t[0]); }, {{'w', "4", "9"}}},
    {"sbv2int", "`sbv2int_{w}`", "(-> (BitVec {w}) Int)", [](M& m, const R&, const T& t) { return m.make_int_from_sbv(t[0]); }, {}},
    {"ubv2int", "`ubv2int_{w}`", "(-> (BitVec {w}) Int)", [](M& m, const R&, const T& t) { return m.make_int_from_ubv(t[0]); }, {}},

    {"read",  "`read_{~i}_{~e}`",  "(-> (Array {i} {e}) {i} {e})", [](M& m, const R&, const T& t) { return m.make_array_read(t[0], t[1]); }, {}},
    {"write", "`write_{~i}_{~e}`", "(-> (Array {i} {e}) {i} {e} (Array {i} {e}))", [](M& m, const R&, const T& t) { return m.make_array_write(t[0], t[1], t[2]); }, {}},
    {"const", "`const_int_{~e}`",  "(-> {e} (Array Int {e}))", [](M& m, const R& r, const T& t) { return m.make_array_const(make_type(m, "(Array Int " + r.bound('e') + ")"), t[0]); }, {}},

    {"fpeq",  "`fpeq_{e}_{m}`",  "(-> (FP |{e}:{m}|) (FP |{e}:{m}|) Bool)", [](M& m, const R&, const T& t) { return m.make_fp_equal(t[0], t[1]); }, {}},
    {"fplt",  "`fplt_{e}_{m}`",  "(-> (FP |{e}:{m}|) (FP |{e}:{m}|) Bool)", [](M& m, const R&, const T& t) { return m.make_fp_lt(t[0], t[1]); }, {}},
    {"fple",  "`fple_{e}_{m}`",  "(-> (FP |{e}:{m}|) (FP |{e}:{m}|) Bool)", [](M& m, const R&, const T& t) { return m.make_fp_le(t[0], t[1]); }, {}},
    {"fpneg", "`fpneg_{e}_{m}`", "(-> (FP |{e}:{m}|) (FP |{e}:{m}|))", [](M& m, const R&, const T& t) { return m.make_fp_neg(t[0]); }, {}},
    {"fpabs", "`fpabs_{e}_{m}`", "(-> (FP |{e}:{m}|) (FP |{e}:{m}|))", [](M& m, const R&, const T& t) { return m.make_fp_abs(t[0]); }, {}},
    {"fpmin", "`fpmin_{e}_{m}`", "(-> (FP |{e}:{m}|) (FP |{e}:{m}|) (FP |{e}:{m}|))", [](M& m, const R&, const T& t) { return m.make_fp_min(t[0], t[1]); }, {}},
    {"fpmax", "`fpmax_{e}_{m}`", "(-> (FP |{e}:{m}|) (FP |{e}:{m}|) (FP |{e}:{m}|))", [](M& m, const R&, const T& t) { return m.make_fp_max(t[0], t[1]); }, {}},
    {"fpadd", "`fpadd_{e}_{m}`", "(-> FPRounding (FP |{e}:{m}|) (FP |{e}:{m}|) (FP |{e}:{m}|))", [](M& m, const R&, const T& t) { return m.make_fp_add(t[0], t[1], t[2]); }, {}},
    {"fpsub", "`fpsub_{e}_{m}`", "(-> FPRounding (FP |{e}:{m}|) (FP |{e}:{m}|) (FP |{e}:{m}|))", [](M& m, const R&, const T& t) { return m.make_fp_sub(t[0], t[1], t[2]); }, {}},
    {"fpmul", "`fpmul_{e}_{m}`", "(-> FPRounding (FP |{e}:{m}|) (FP |{e}:{m}|) (FP |{e}:{m}|))", [](M& m, const R&, const T& t) { return m.make_fp_mul(t[0], t[1], t[2]); }, {}},
    {"fpdiv", "`fpdiv_{e}_{m}`", "(-> FPRounding (FP |{e}:{m}|) (FP |{e}:{m}|) (FP |{e}:{m}|))", [](M& m, const R&, const T& t) { return m.make_fp_div(t[0], t[1], t[2]); }, {}},
    {"fpsqrt", "`fpsqrt_{e}_{m}`", "(-> FPRounding (FP |{e}:{m}|) (FP |{e}:{m}|))", [](M& m, const R&, const T& t) { return m.make_fp_sqrt(t[0], t[1]); }, {}},
    {"fproundtoint", "`fproundtoint_{e}_{m}`", "(-> FPRounding (FP |{e}:{m}|) (FP |{e}:{m}|))", [](M& m, const R&, const T& t) { return m.make_fp_round_to_int(t[0], t[1]); }, {}},
    {"fpisnan", "`fpisnan_{e}_{m}`", "(-> (FP |{e}:{m}|) Bool)", [](M& m, const R&, const T& t) { return m.make_fp_isnan(t[0]); }, {}},
    {"fpisinf", "`fpisinf_{e}_{m}`", "(-> (FP |{e}:{m}|) Bool)", [](M& m, const R&, const T& t) { return m.make_fp_isinf(t[0]); }, {}},
    {"fpiszero", "`fpiszero_{e}_{m}`", "(-> (FP |{e}:{m}|) Bool)", [](M& m, const R&, const T& t) { return m.make_fp_iszero(t[0]); }, {}},
    {"fpissubnormal", "`fpissubnormal_{e}_{m}`", "(-> (FP |{e}:{m}|) Bool)", [](M& m, const R&, const T& t) { return m.make_fp_issubnormal(t[0]); }, {}},
    {"fpisnormal", "`fpisnormal_{e}_{m}`", "(-> (FP |{e}:{m}|) Bool)", [](M& m, const R&, const T& t) { return m.make_fp_isnormal(t[0]); }, {}},
    {"fpisneg", "`fpisneg_{e}_{m}`", "(-> (FP |{e}:{m}|) Bool)", [](M& m, const R&, const T& t) { return m.make_fp_isneg(t[0]); }, {}},
    {"fpispos", "`fpispos_{e}_{m}`", "(-> (FP |{e}:{m}|) Bool)", [](M& m, const R&, const T& t) { return m.make_fp_ispos(t[0]); }, {}},
    {"fpcast", "`fpcast__{a}_{b}_{e}_{m}`", "(-> FPRounding (FP |{a}:{b}|) (FP |{e}:{m}|))", [](M& m, const R& r, const T& t) { return m.make_fp_cast(r.number('e'), r.number('m'), t[0], t[1]); }, {{'e', "3", "5"}, {'m', "4", "6"}}},
    {"fptobv", "`fptobv__{e}_{m}_{w}`", "(-> FPRounding (FP |{e}:{m}|) (BitVec {w}))", [](M& m, const R& r, const T& t) { return m.make_fp_to_bv(r.number('w'), t[0], t[1]); }, {{'w', "4", "9"}}},
    {"fpfromubv", "`fpfromubv__{w}_{e}_{m}`", "(-> FPRounding (BitVec {w}) (FP |{e}:{m}|))", [](M& m, const R& r, const T& t) { return m.make_fp_from_ubv(r.number('e'), r.number('m'), t[0], t[1]); }, {{'e', "3", "5"}, {'m', "4", "6"}}},
    {"fpfromsbv", "`fpfromsbv__{w}_{e}_{m}`", "(-> FPRounding (BitVec {w}) (FP |{e}:{m}|))", [](M& m, const R& r, const T& t) { return m.make_fp_from_sbv(r.number('e'), r.number('m'), t[0], t[1]); }, {{'e', "3", "5"}, {'m', "4", "6"}}},
    {"fpasbv", "`fpasbv__{e}_{m}_{e+m+1}`", "(-> (FP |{e}:{m}|) (BitVec {e+m+1}))", [](M& m, const R&, const T& t) { return m.make_fp_as_ieeebv(t[0]); }, {}},
    {"fpfromieeebv", "`fpfromieeebv__{e+m+1}_{e}_{m}`", "(-> (BitVec {e+m+1}) (FP |{e}:{m}|))", [](M& m, const R& r, const T& t) { return m.make_fp_from_ieeebv(r.number('e'), r.number('m'), t[0]); }, {{'e', "3", "5"}, {'m', "4", "6"}}},
};
// clang-format on

}  // namespace

Texts Operator::operand_types() const {
  if (!operands.empty() || arity_of(type) == 0) return operands;
  const Texts components = components_of(type);
  return {components.begin() + 1, components.end() - 1};
}

const std::vector<Operator>& all_operators() { return operators; }

const Operator* find_operator(const std::string& name) {
  static const std::map<std::string, const Operator*> by_name = [] {
    std::map<std::string, const Operator*> index;
    for (const Operator& op : operators) index[op.name] = &op;
    return index;
  }();
  const auto found = by_name.find(name);
  return found != by_name.end() ? found->second : nullptr;
}

const DataType* make_type(TermManager& m, const std::string& text) {
  const Texts components = components_of(text);
  if (components.empty()) {
    if (text == "Bool") return m.get_bool_type();
    if (text == "Int") return m.get_int_type();
    if (text == "Real") return m.get_rat_type();
    if (text == "FPRounding") return m.get_fprounding_type();
    return m.get_simple_type(text, /*only_existing=*/false);
  }
  if (components[0] == "BitVec") return m.get_bv_type(std::stoul(components[1]));
  if (components[0] == "FP") {
    const std::string& format = components[1];  // |e:m|
    const size_t e = std::stoul(format.substr(1));
    return m.get_fp_type(e, std::stoul(format.substr(format.find(':') + 1)));
  }
  std::vector<const DataType*> parts;
  for (size_t i = 1; i < components.size(); ++i) parts.push_back(make_type(m, components[i]));
  if (components[0] == "Array") return m.get_array_type(parts[0], parts[1]);
  const DataType* result = parts.back();
  parts.pop_back();
  return m.get_function_type(parts, result);
}

}  // namespace quill::life
