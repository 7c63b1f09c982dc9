#include "tests/life/operators.h"

#include <map>

#include "quill/utils/qnumber.h"
#include "tests/support/operators.h"

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

// An operator of the list that all tests share; the letters are those of the numbers that its
// builder takes.
Build applied(SymbolTag::tag tag, const std::string& letters = "") {
  return [&op = testing::operator_of(tag), letters](TermManager& m, const Request& r,
                                                    const Arguments& t) {
    testing::Parameters given;
    for (size_t i = 0; i < letters.size(); ++i) given.numbers[i] = r.number(letters[i]);
    given.number = QNumber(given.numbers[0]);
    return op.build(m, given, t);
  };
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

    {"true",  "`true`",  "Bool", applied(SymbolTag::TRUE), {}},
    {"false", "`false`", "Bool", applied(SymbolTag::FALSE), {}},
    {"not",   "`not`", "(-> Bool Bool)",      applied(SymbolTag::NOT), {}},
    {"and",   "`and`", "(-> Bool Bool Bool)", applied(SymbolTag::AND), {}},
    {"or",    "`or`",  "(-> Bool Bool Bool)", applied(SymbolTag::OR), {}},
    {"iff",   "`iff`", "(-> Bool Bool Bool)", applied(SymbolTag::IFF), {}},
    {"equal", "`=_{~t}`", "(-> {t} {t} Bool)", applied(SymbolTag::EQUAL), {}},
    {"equal_mixed", "`=_rat`", "(-> Real Real Bool)", applied(SymbolTag::EQUAL), {}, {"Int", "Real"}},
    {"ite",   "`ite_{~t}`", "(-> Bool {t} {t} {t})", applied(SymbolTag::TERM_ITE), {}},
    {"ite_mixed", "`ite_rat`", "(-> Bool Real Real Real)", applied(SymbolTag::TERM_ITE), {}, {"Bool", "Real", "Int"}},

    {"plus",  "`+_int`", "(-> Int Int Int)", applied(SymbolTag::PLUS), {}},
    {"plus_real",  "`+_rat`", "(-> Real Real Real)", applied(SymbolTag::PLUS), {}},
    {"plus_mixed", "`+_rat`", "(-> Real Real Real)", applied(SymbolTag::PLUS), {}, {"Real", "Int"}},
    {"times", "`*_int`", "(-> Int Int Int)", applied(SymbolTag::TIMES), {}},
    {"times_mixed", "`*_rat`", "(-> Real Real Real)", applied(SymbolTag::TIMES), {}, {"Int", "Real"}},
    {"leq",   "`<=_int`", "(-> Int Int Bool)", applied(SymbolTag::LEQ), {}},
    {"leq_real", "`<=_rat`", "(-> Real Real Bool)", applied(SymbolTag::LEQ), {}},
    {"floor", "`floor`", "(-> Real Int)", applied(SymbolTag::FLOOR), {}},
    {"congruent", "`int_mod_congr_{n}`", "(-> Int Int Bool)", applied(SymbolTag::INT_MODULAR_CONGRUENCE, "n"), {{'n', "1", "5"}}},

    {"bvnot",  "`bvnot_{w}`",  "(-> (BitVec {w}) (BitVec {w}))", applied(SymbolTag::BV_NOT), {}},
    {"bvneg",  "`bvneg_{w}`",  "(-> (BitVec {w}) (BitVec {w}))", applied(SymbolTag::BV_NEG), {}},
    {"bvand",  "`bvand_{w}`",  "(-> (BitVec {w}) (BitVec {w}) (BitVec {w}))", applied(SymbolTag::BV_AND), {}},
    {"bvor",   "`bvor_{w}`",   "(-> (BitVec {w}) (BitVec {w}) (BitVec {w}))", applied(SymbolTag::BV_OR), {}},
    {"bvxor",  "`bvxor_{w}`",  "(-> (BitVec {w}) (BitVec {w}) (BitVec {w}))", applied(SymbolTag::BV_XOR), {}},
    {"bvadd",  "`bvadd_{w}`",  "(-> (BitVec {w}) (BitVec {w}) (BitVec {w}))", applied(SymbolTag::BV_ADD), {}},
    {"bvsub",  "`bvsub_{w}`",  "(-> (BitVec {w}) (BitVec {w}) (BitVec {w}))", applied(SymbolTag::BV_SUB), {}},
    {"bvmul",  "`bvmul_{w}`",  "(-> (BitVec {w}) (BitVec {w}) (BitVec {w}))", applied(SymbolTag::BV_MUL), {}},
    {"bvudiv", "`bvudiv_{w}`", "(-> (BitVec {w}) (BitVec {w}) (BitVec {w}))", applied(SymbolTag::BV_UDIV), {}},
    {"bvsdiv", "`bvsdiv_{w}`", "(-> (BitVec {w}) (BitVec {w}) (BitVec {w}))", applied(SymbolTag::BV_SDIV), {}},
    {"bvurem", "`bvurem_{w}`", "(-> (BitVec {w}) (BitVec {w}) (BitVec {w}))", applied(SymbolTag::BV_UREM), {}},
    {"bvsrem", "`bvsrem_{w}`", "(-> (BitVec {w}) (BitVec {w}) (BitVec {w}))", applied(SymbolTag::BV_SREM), {}},
    {"bvlshl", "`bvlshl_{w}`", "(-> (BitVec {w}) (BitVec {w}) (BitVec {w}))", applied(SymbolTag::BV_LSHL), {}},
    {"bvlshr", "`bvlshr_{w}`", "(-> (BitVec {w}) (BitVec {w}) (BitVec {w}))", applied(SymbolTag::BV_LSHR), {}},
    {"bvashr", "`bvashr_{w}`", "(-> (BitVec {w}) (BitVec {w}) (BitVec {w}))", applied(SymbolTag::BV_ASHR), {}},
    {"bvult",  "`bvult_{w}`",  "(-> (BitVec {w}) (BitVec {w}) Bool)", applied(SymbolTag::BV_ULT), {}},
    {"bvslt",  "`bvslt_{w}`",  "(-> (BitVec {w}) (BitVec {w}) Bool)", applied(SymbolTag::BV_SLT), {}},
    {"bvule",  "`bvule_{w}`",  "(-> (BitVec {w}) (BitVec {w}) Bool)", applied(SymbolTag::BV_ULE), {}},
    {"bvsle",  "`bvsle_{w}`",  "(-> (BitVec {w}) (BitVec {w}) Bool)", applied(SymbolTag::BV_SLE), {}},
    {"bvcomp", "`bvcomp_{w}`", "(-> (BitVec {w}) (BitVec {w}) (BitVec 1))", applied(SymbolTag::BV_COMP), {}},
    {"bvconcat", "`bvconcat_{v}_{w}`", "(-> (BitVec {v}) (BitVec {w}) (BitVec {v+w}))", applied(SymbolTag::BV_CONCAT), {}},
    {"bvextract", "`bvextract_{h}_{l}_{w}`", "(-> (BitVec {w}) (BitVec {h-l+1}))", applied(SymbolTag::BV_EXTRACT, "hl"), {{'h', "0", "w"}, {'l', "0", "h+1"}}},
    {"bvrol",  "`bvrol_{k}_{w}`",  "(-> (BitVec {w}) (BitVec {w}))", applied(SymbolTag::BV_ROTATE_LEFT, "k"), {{'k', "0", "10"}}},
    {"bvror",  "`bvror_{k}_{w}`",  "(-> (BitVec {w}) (BitVec {w}))", applied(SymbolTag::BV_ROTATE_RIGHT, "k"), {{'k', "0", "10"}}},
    {"bvzext", "`bvzext_{k}_{w}`", "(-> (BitVec {w}) (BitVec {k+w}))", applied(SymbolTag::BV_ZERO_EXTEND, "k"), {{'k', "0", "5"}}},
    {"bvsext", "`bvsext_{k}_{w}`", "(-> (BitVec {w}) (BitVec {k+w}))", applied(SymbolTag::BV_SIGN_EXTEND, "k"), {{'k', "0", "5"}}},
    {"int2bv",  "`int2bv_{w}`",  "(-> Int (BitVec {w}))", applied(SymbolTag::INT_TO_BV, "w"), {{'w', "4", "9"}}},
    {"sbv2int", "`sbv2int_{w}`", "(-> (BitVec {w}) Int)", applied(SymbolTag::INT_FROM_SBV), {}},
    {"ubv2int", "`ubv2int_{w}`", "(-> (BitVec {w}) Int)", applied(SymbolTag::INT_FROM_UBV), {}},

    {"read",  "`read_{~i}_{~e}`",  "(-> (Array {i} {e}) {i} {e})", applied(SymbolTag::ARRAY_READ), {}},
    {"write", "`write_{~i}_{~e}`", "(-> (Array {i} {e}) {i} {e} (Array {i} {e}))", applied(SymbolTag::ARRAY_WRITE), {}},
    {"const", "`const_int_{~e}`",  "(-> {e} (Array Int {e}))", [](M& m, const R& r, const T& t) { return m.make_array_const(make_type(m, "(Array Int " + r.bound('e') + ")"), t[0]); }, {}},

    {"fpeq",  "`fpeq_{e}_{m}`",  "(-> (FP |{e}:{m}|) (FP |{e}:{m}|) Bool)", applied(SymbolTag::FP_EQUAL), {}},
    {"fplt",  "`fplt_{e}_{m}`",  "(-> (FP |{e}:{m}|) (FP |{e}:{m}|) Bool)", applied(SymbolTag::FP_LT), {}},
    {"fple",  "`fple_{e}_{m}`",  "(-> (FP |{e}:{m}|) (FP |{e}:{m}|) Bool)", applied(SymbolTag::FP_LE), {}},
    {"fpneg", "`fpneg_{e}_{m}`", "(-> (FP |{e}:{m}|) (FP |{e}:{m}|))", applied(SymbolTag::FP_NEG), {}},
    {"fpabs", "`fpabs_{e}_{m}`", "(-> (FP |{e}:{m}|) (FP |{e}:{m}|))", applied(SymbolTag::FP_ABS), {}},
    {"fpmin", "`fpmin_{e}_{m}`", "(-> (FP |{e}:{m}|) (FP |{e}:{m}|) (FP |{e}:{m}|))", applied(SymbolTag::FP_MIN), {}},
    {"fpmax", "`fpmax_{e}_{m}`", "(-> (FP |{e}:{m}|) (FP |{e}:{m}|) (FP |{e}:{m}|))", applied(SymbolTag::FP_MAX), {}},
    {"fpadd", "`fpadd_{e}_{m}`", "(-> FPRounding (FP |{e}:{m}|) (FP |{e}:{m}|) (FP |{e}:{m}|))", applied(SymbolTag::FP_ADD), {}},
    {"fpsub", "`fpsub_{e}_{m}`", "(-> FPRounding (FP |{e}:{m}|) (FP |{e}:{m}|) (FP |{e}:{m}|))", applied(SymbolTag::FP_SUB), {}},
    {"fpmul", "`fpmul_{e}_{m}`", "(-> FPRounding (FP |{e}:{m}|) (FP |{e}:{m}|) (FP |{e}:{m}|))", applied(SymbolTag::FP_MUL), {}},
    {"fpdiv", "`fpdiv_{e}_{m}`", "(-> FPRounding (FP |{e}:{m}|) (FP |{e}:{m}|) (FP |{e}:{m}|))", applied(SymbolTag::FP_DIV), {}},
    {"fpsqrt", "`fpsqrt_{e}_{m}`", "(-> FPRounding (FP |{e}:{m}|) (FP |{e}:{m}|))", applied(SymbolTag::FP_SQRT), {}},
    {"fproundtoint", "`fproundtoint_{e}_{m}`", "(-> FPRounding (FP |{e}:{m}|) (FP |{e}:{m}|))", applied(SymbolTag::FP_ROUND_TO_INT), {}},
    {"fpisnan", "`fpisnan_{e}_{m}`", "(-> (FP |{e}:{m}|) Bool)", applied(SymbolTag::FP_ISNAN), {}},
    {"fpisinf", "`fpisinf_{e}_{m}`", "(-> (FP |{e}:{m}|) Bool)", applied(SymbolTag::FP_ISINF), {}},
    {"fpiszero", "`fpiszero_{e}_{m}`", "(-> (FP |{e}:{m}|) Bool)", applied(SymbolTag::FP_ISZERO), {}},
    {"fpissubnormal", "`fpissubnormal_{e}_{m}`", "(-> (FP |{e}:{m}|) Bool)", applied(SymbolTag::FP_ISSUBNORMAL), {}},
    {"fpisnormal", "`fpisnormal_{e}_{m}`", "(-> (FP |{e}:{m}|) Bool)", applied(SymbolTag::FP_ISNORMAL), {}},
    {"fpisneg", "`fpisneg_{e}_{m}`", "(-> (FP |{e}:{m}|) Bool)", applied(SymbolTag::FP_ISNEG), {}},
    {"fpispos", "`fpispos_{e}_{m}`", "(-> (FP |{e}:{m}|) Bool)", applied(SymbolTag::FP_ISPOS), {}},
    {"fpcast", "`fpcast__{a}_{b}_{e}_{m}`", "(-> FPRounding (FP |{a}:{b}|) (FP |{e}:{m}|))", applied(SymbolTag::FP_CAST, "em"), {{'e', "3", "5"}, {'m', "4", "6"}}},
    {"fptobv", "`fptobv__{e}_{m}_{w}`", "(-> FPRounding (FP |{e}:{m}|) (BitVec {w}))", applied(SymbolTag::FP_TO_BV, "w"), {{'w', "4", "9"}}},
    {"fpfromubv", "`fpfromubv__{w}_{e}_{m}`", "(-> FPRounding (BitVec {w}) (FP |{e}:{m}|))", applied(SymbolTag::FP_FROM_UBV, "em"), {{'e', "3", "5"}, {'m', "4", "6"}}},
    {"fpfromsbv", "`fpfromsbv__{w}_{e}_{m}`", "(-> FPRounding (BitVec {w}) (FP |{e}:{m}|))", applied(SymbolTag::FP_FROM_SBV, "em"), {{'e', "3", "5"}, {'m', "4", "6"}}},
    {"fpasbv", "`fpasbv__{e}_{m}_{e+m+1}`", "(-> (FP |{e}:{m}|) (BitVec {e+m+1}))", applied(SymbolTag::FP_AS_IEEEBV), {}},
    {"fpfromieeebv", "`fpfromieeebv__{e+m+1}_{e}_{m}`", "(-> (BitVec {e+m+1}) (FP |{e}:{m}|))", applied(SymbolTag::FP_FROM_IEEEBV, "em"), {{'e', "3", "5"}, {'m', "4", "6"}}},
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
