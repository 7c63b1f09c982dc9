// Random builder calls over all operator families, well-typed and ill-typed, against a model that
// knows terms by the names of their symbols and the ids of their arguments.
//
// The model computes the outcome of each call from texts alone: the term's symbol and id, or the
// refusal's class and text, and how many types, symbols and terms there are afterwards.

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <map>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/qnumber.h"

namespace quill {
namespace {

using Terms = std::vector<const Term_*>;

// What a builder may be called with; each takes what it needs.
struct Request {
  std::array<size_t, 2> n{};
  QNumber modulus;
  const DataType* type = nullptr;
  Terms t;
};

// How a builder comes from its arguments to its symbol.
enum class Shape {
  BvSame,    // (bv(w), ...) -> bv(w)
  BvBool,    // (bv(w), bv(w)) -> Bool
  BvBit,     // (bv(w), bv(w)) -> bv(1)
  BvInt,     // (bv(w)) -> Int
  IntToBv,   // (Int) -> bv(n)
  Concat,    // (bv(w1), bv(w2)) -> bv(w1 + w2)
  Extract,   // (bv(w)) -> bv(n0 - n1 + 1)
  Rotate,    // (bv(w)) -> bv(w)
  Extend,    // (bv(w)) -> bv(w + n)
  Read,      // (Array(i, e), i) -> e
  Write,     // (Array(i, e), i, e) -> Array(i, e)
  Const,     // (e) -> Array(i, e)
  FpSame,    // (F, ...) -> F
  FpBool,    // (F, ...) -> Bool
  FpRound,   // (RM, F, ...) -> F
  Cast,      // (RM, F) -> F(n0, n1)
  FromBv,    // (RM, bv(w)) -> F(n0, n1)
  ToBv,      // (RM, F) -> bv(n)
  AsBits,    // (F(e, m)) -> bv(e + m + 1)
  FromBits,  // (bv(n0 + n1 + 1)) -> F(n0, n1)
  Modulus,   // (Int, Int) -> Bool
};

struct Operator {
  const char* operation;
  const char* base;  // of the name, with all that stands before the first number
  Shape shape;
  size_t arity;
  const char* complaint;
  const Term_* (*call)(TermManager&, const Request&);
};

constexpr const char* unary_bv = "is not a bit-vector";
constexpr const char* binary_bv = " is not a bit vector";
constexpr const char* extract_bv = " is not a bit-vector";
constexpr const char* concat_bv = " is not  a bit vector";
constexpr const char* no_array = " is not an array";
constexpr const char* no_fp = " is not a FP";
constexpr const char* no_bv = " is not a BV";
constexpr const char* wrong_bv = " is not of the correct BV type";

// clang-format off
const Operator operators[] = {
    {"make_bv_not", "bvnot_", Shape::BvSame, 1, unary_bv, [](TermManager& m, const Request& r) { return m.make_bv_not(r.t[0]); }},
    {"make_bv_neg", "bvneg_", Shape::BvSame, 1, unary_bv, [](TermManager& m, const Request& r) { return m.make_bv_neg(r.t[0]); }},
    {"make_bv_and", "bvand_", Shape::BvSame, 2, binary_bv, [](TermManager& m, const Request& r) { return m.make_bv_and(r.t[0], r.t[1]); }},
    {"make_bv_or", "bvor_", Shape::BvSame, 2, binary_bv, [](TermManager& m, const Request& r) { return m.make_bv_or(r.t[0], r.t[1]); }},
    {"make_bv_xor", "bvxor_", Shape::BvSame, 2, binary_bv, [](TermManager& m, const Request& r) { return m.make_bv_xor(r.t[0], r.t[1]); }},
    {"make_bv_ult", "bvult_", Shape::BvBool, 2, binary_bv, [](TermManager& m, const Request& r) { return m.make_bv_ult(r.t[0], r.t[1]); }},
    {"make_bv_slt", "bvslt_", Shape::BvBool, 2, binary_bv, [](TermManager& m, const Request& r) { return m.make_bv_slt(r.t[0], r.t[1]); }},
    {"make_bv_ule", "bvule_", Shape::BvBool, 2, binary_bv, [](TermManager& m, const Request& r) { return m.make_bv_ule(r.t[0], r.t[1]); }},
    {"make_bv_sle", "bvsle_", Shape::BvBool, 2, binary_bv, [](TermManager& m, const Request& r) { return m.make_bv_sle(r.t[0], r.t[1]); }},
    {"make_bv_comp", "bvcomp_", Shape::BvBit, 2, binary_bv, [](TermManager& m, const Request& r) { return m.make_bv_comp(r.t[0], r.t[1]); }},
    {"make_bv_add", "bvadd_", Shape::BvSame, 2, binary_bv, [](TermManager& m, const Request& r) { return m.make_bv_add(r.t[0], r.t[1]); }},
    {"make_bv_sub", "bvsub_", Shape::BvSame, 2, binary_bv, [](TermManager& m, const Request& r) { return m.make_bv_sub(r.t[0], r.t[1]); }},
    {"make_bv_mul", "bvmul_", Shape::BvSame, 2, binary_bv, [](TermManager& m, const Request& r) { return m.make_bv_mul(r.t[0], r.t[1]); }},
    {"make_bv_udiv", "bvudiv_", Shape::BvSame, 2, binary_bv, [](TermManager& m, const Request& r) { return m.make_bv_udiv(r.t[0], r.t[1]); }},
    {"make_bv_sdiv", "bvsdiv_", Shape::BvSame, 2, binary_bv, [](TermManager& m, const Request& r) { return m.make_bv_sdiv(r.t[0], r.t[1]); }},
    {"make_bv_urem", "bvurem_", Shape::BvSame, 2, binary_bv, [](TermManager& m, const Request& r) { return m.make_bv_urem(r.t[0], r.t[1]); }},
    {"make_bv_srem", "bvsrem_", Shape::BvSame, 2, binary_bv, [](TermManager& m, const Request& r) { return m.make_bv_srem(r.t[0], r.t[1]); }},
    {"make_bv_lshl", "bvlshl_", Shape::BvSame, 2, binary_bv, [](TermManager& m, const Request& r) { return m.make_bv_lshl(r.t[0], r.t[1]); }},
    {"make_bv_lshr", "bvlshr_", Shape::BvSame, 2, binary_bv, [](TermManager& m, const Request& r) { return m.make_bv_lshr(r.t[0], r.t[1]); }},
    {"make_bv_ashr", "bvashr_", Shape::BvSame, 2, binary_bv, [](TermManager& m, const Request& r) { return m.make_bv_ashr(r.t[0], r.t[1]); }},
    {"make_int_fromubv", "ubv2int_", Shape::BvInt, 1, binary_bv, [](TermManager& m, const Request& r) { return m.make_int_from_ubv(r.t[0]); }},
    {"make_int_fromsbv", "sbv2int_", Shape::BvInt, 1, binary_bv, [](TermManager& m, const Request& r) { return m.make_int_from_sbv(r.t[0]); }},
    {"make_int_to_bv", "int2bv_", Shape::IntToBv, 1, "", [](TermManager& m, const Request& r) { return m.make_int_to_bv(r.n[0], r.t[0]); }},
    {"make_bv_concat", "bvconcat_", Shape::Concat, 2, concat_bv, [](TermManager& m, const Request& r) { return m.make_bv_concat(r.t[0], r.t[1]); }},
    {"make_bv_extract", "bvextract_", Shape::Extract, 1, extract_bv, [](TermManager& m, const Request& r) { return m.make_bv_extract(r.n[0], r.n[1], r.t[0]); }},
    {"make_bv_rotate_left", "bvrol_", Shape::Rotate, 1, unary_bv, [](TermManager& m, const Request& r) { return m.make_bv_rotate_left(r.n[0], r.t[0]); }},
    {"make_bv_rotate_right", "bvror_", Shape::Rotate, 1, unary_bv, [](TermManager& m, const Request& r) { return m.make_bv_rotate_right(r.n[0], r.t[0]); }},
    {"make_bv_zero_extend", "bvzext_", Shape::Extend, 1, unary_bv, [](TermManager& m, const Request& r) { return m.make_bv_zero_extend(r.n[0], r.t[0]); }},
    {"make_bv_sign_extend", "bvsext_", Shape::Extend, 1, unary_bv, [](TermManager& m, const Request& r) { return m.make_bv_sign_extend(r.n[0], r.t[0]); }},
    {"make_array_read", "read_", Shape::Read, 2, no_array, [](TermManager& m, const Request& r) { return m.make_array_read(r.t[0], r.t[1]); }},
    {"make_array_write", "write_", Shape::Write, 3, no_array, [](TermManager& m, const Request& r) { return m.make_array_write(r.t[0], r.t[1], r.t[2]); }},
    {"make_array_const", "const_", Shape::Const, 1, no_array, [](TermManager& m, const Request& r) { return m.make_array_const(r.type, r.t[0]); }},
    {"make_fp_equal", "fpeq_", Shape::FpBool, 2, no_fp, [](TermManager& m, const Request& r) { return m.make_fp_equal(r.t[0], r.t[1]); }},
    {"make_fp_lt", "fplt_", Shape::FpBool, 2, no_fp, [](TermManager& m, const Request& r) { return m.make_fp_lt(r.t[0], r.t[1]); }},
    {"make_fp_le", "fple_", Shape::FpBool, 2, no_fp, [](TermManager& m, const Request& r) { return m.make_fp_le(r.t[0], r.t[1]); }},
    {"make_fp_neg", "fpneg_", Shape::FpSame, 1, no_fp, [](TermManager& m, const Request& r) { return m.make_fp_neg(r.t[0]); }},
    {"make_fp_abs", "fpabs_", Shape::FpSame, 1, no_fp, [](TermManager& m, const Request& r) { return m.make_fp_abs(r.t[0]); }},
    {"make_fp_min", "fpmin_", Shape::FpSame, 2, no_fp, [](TermManager& m, const Request& r) { return m.make_fp_min(r.t[0], r.t[1]); }},
    {"make_fp_max", "fpmax_", Shape::FpSame, 2, no_fp, [](TermManager& m, const Request& r) { return m.make_fp_max(r.t[0], r.t[1]); }},
    {"make_fp_add", "fpadd_", Shape::FpRound, 3, no_fp, [](TermManager& m, const Request& r) { return m.make_fp_add(r.t[0], r.t[1], r.t[2]); }},
    {"make_fp_sub", "fpsub_", Shape::FpRound, 3, no_fp, [](TermManager& m, const Request& r) { return m.make_fp_sub(r.t[0], r.t[1], r.t[2]); }},
    {"make_fp_mul", "fpmul_", Shape::FpRound, 3, no_fp, [](TermManager& m, const Request& r) { return m.make_fp_mul(r.t[0], r.t[1], r.t[2]); }},
    {"make_fp_div", "fpdiv_", Shape::FpRound, 3, no_fp, [](TermManager& m, const Request& r) { return m.make_fp_div(r.t[0], r.t[1], r.t[2]); }},
    {"make_fp_sqrt", "fpsqrt_", Shape::FpRound, 2, no_fp, [](TermManager& m, const Request& r) { return m.make_fp_sqrt(r.t[0], r.t[1]); }},
    {"make_fp_round_to_int", "fproundtoint_", Shape::FpRound, 2, no_fp, [](TermManager& m, const Request& r) { return m.make_fp_round_to_int(r.t[0], r.t[1]); }},
    {"make_fp_isnan", "fpisnan_", Shape::FpBool, 1, no_fp, [](TermManager& m, const Request& r) { return m.make_fp_isnan(r.t[0]); }},
    {"make_fp_isinf", "fpisinf_", Shape::FpBool, 1, no_fp, [](TermManager& m, const Request& r) { return m.make_fp_isinf(r.t[0]); }},
    {"make_fp_iszero", "fpiszero_", Shape::FpBool, 1, no_fp, [](TermManager& m, const Request& r) { return m.make_fp_iszero(r.t[0]); }},
    {"make_fp_issubnormal", "fpissubnormal_", Shape::FpBool, 1, no_fp, [](TermManager& m, const Request& r) { return m.make_fp_issubnormal(r.t[0]); }},
    {"make_fp_isnormal", "fpisnormal_", Shape::FpBool, 1, no_fp, [](TermManager& m, const Request& r) { return m.make_fp_isnormal(r.t[0]); }},
    {"make_fp_isneg", "fpisneg_", Shape::FpBool, 1, no_fp, [](TermManager& m, const Request& r) { return m.make_fp_isneg(r.t[0]); }},
    {"make_fp_ispos", "fpispos_", Shape::FpBool, 1, no_fp, [](TermManager& m, const Request& r) { return m.make_fp_ispos(r.t[0]); }},
    {"make_fp_cast", "fpcast__", Shape::Cast, 2, no_fp, [](TermManager& m, const Request& r) { return m.make_fp_cast(r.n[0], r.n[1], r.t[0], r.t[1]); }},
    {"make_fp_from_sbv", "fpfromsbv__", Shape::FromBv, 2, no_bv, [](TermManager& m, const Request& r) { return m.make_fp_from_sbv(r.n[0], r.n[1], r.t[0], r.t[1]); }},
    {"make_fp_from_ubv", "fpfromubv__", Shape::FromBv, 2, no_bv, [](TermManager& m, const Request& r) { return m.make_fp_from_ubv(r.n[0], r.n[1], r.t[0], r.t[1]); }},
    {"make_fp_to_bv", "fptobv__", Shape::ToBv, 2, no_fp, [](TermManager& m, const Request& r) { return m.make_fp_to_bv(r.n[0], r.t[0], r.t[1]); }},
    {"make_fp_as_ieeebv", "fpasbv__", Shape::AsBits, 1, no_fp, [](TermManager& m, const Request& r) { return m.make_fp_as_ieeebv(r.t[0]); }},
    {"make_fp_from_ieeebv", "fpfromieeebv__", Shape::FromBits, 1, wrong_bv, [](TermManager& m, const Request& r) { return m.make_fp_from_ieeebv(r.n[0], r.n[1], r.t[0]); }},
    {"make_int_modular_congruence", "int_mod_congr_", Shape::Modulus, 2, "", [](TermManager& m, const Request& r) { return m.make_int_modular_congruence(r.modulus, r.t[0], r.t[1]); }},
};
// clang-format on

//------------------------------------------------------------------------------------------------
// The model

enum class Kind { Bool, Int, Real, Rounding, Bv, Fp, Array };

struct Type {
  Kind kind;
  size_t a = 0;  // width, or exponent
  size_t b = 0;  // significand
  std::string index;
  std::string element;
};

struct ModelTerm {
  const Term_* real;
  std::string type;
  std::string shallow;  // its text in messages
  bool is_constant;
};

struct Refusal {
  std::string text;
  bool of_manager;  // TermManager::error, or else its base
};

std::string number(size_t n) { return std::to_string(n); }

class Model {
 public:
  // Types. Each is entered with those that it is made of.
  const std::string& simple(const std::string& text, Kind kind) {
    return enter(text, {kind, 0, 0, "", ""});
  }
  const std::string& bv(size_t w) {
    types.insert(number(w));
    return enter("(BitVec " + number(w) + ")", {Kind::Bv, w, 0, "", ""});
  }
  const std::string& fp(size_t e, size_t m) {
    if (checks && (e < 2 || m < 2)) {
      throw Refusal{"too small exponent and/or mantissa width for FP numbers: " + number(e) + ", " +
                        number(m) + " (min is 2, 2)",
                    true};
    }
    const std::string parameter = "|" + number(e) + ":" + number(m) + "|";
    types.insert(parameter);
    return enter("(FP " + parameter + ")", {Kind::Fp, e, m, "", ""});
  }
  const std::string& array(const std::string& index, const std::string& element) {
    return enter("(Array " + index + " " + element + ")", {Kind::Array, 0, 0, index, element});
  }
  const Type& type(const std::string& text) const { return known.at(text); }

  // A symbol: its argument types and its result.
  struct Symbol {
    std::vector<std::string> args;
    std::string result;
  };

  // The outcome of a call: the name of the term's symbol and the term's id. Throws Refusal.
  struct Outcome {
    std::string name;
    std::string type;
    uint64_t id;
  };
  Outcome call(const Operator& op, const Request& request, const std::string& type_argument,
               const std::vector<ModelTerm>& t) {
    const std::string name = request_symbol(op, request, type_argument, t);
    const Symbol& s = symbols.at(name);
    for (size_t i = 0; checks && i < t.size(); i++) {
      const bool fits = t[i].type == s.args[i] || (t[i].type == "Int" && s.args[i] == "Real");
      if (!fits) {
        throw Refusal{"type error. term " + t[i].shallow + " has type " + t[i].type + ", but " +
                          s.args[i] + " was expected. (" + op.operation + ")",
                      true};
      }
    }
    std::pair<std::string, std::vector<uint64_t>> key(name, {});
    for (const ModelTerm& arg : t) key.second.push_back(arg.real->id);
    const auto [entry, is_new] = terms.insert({key, next_id});
    if (is_new) next_id++;
    return {name, s.result, entry->second};
  }

  bool checks = true;
  std::set<std::string> types;
  std::map<std::string, Symbol> symbols;
  std::map<std::pair<std::string, std::vector<uint64_t>>, uint64_t> terms;
  uint64_t next_id = 0;

 private:
  const std::string& enter(const std::string& text, const Type& type) {
    types.insert(text);
    return known.insert({text, type}).first->first;
  }

  const Type& require(Kind kind, const ModelTerm& t, const Operator& op) const {
    const Type& found = type(t.type);
    if (found.kind != kind) {
      throw Refusal{"type error. term " + t.shallow + op.complaint, true};
    }
    return found;
  }

  static std::string in_names(const std::string& type) {
    return type == "Real" ? "rat" : type == "Int" ? "int" : type;
  }

  // The symbol of this name, whose types are told by a function that makes them.
  template <class MakeTypes>
  std::string symbol(const std::string& name, MakeTypes make_types) {
    if (symbols.find(name) == symbols.end()) {
      const Symbol made = make_types();
      std::string function = "(->";
      for (const std::string& arg : made.args) function += " " + arg;
      types.insert(function + " " + made.result + ")");
      symbols.insert({name, made});
    }
    return name;
  }

  // The checks of a builder's own, in their order, then its symbol.
  std::string request_symbol(const Operator& op, const Request& request,
                             const std::string& type_argument, const std::vector<ModelTerm>& t) {
    const std::string base = op.base;
    const auto [n0, n1] = request.n;
    using Args = std::vector<std::string>;
    switch (op.shape) {
      case Shape::BvSame:
      case Shape::BvBool:
      case Shape::BvInt: {
        const size_t w = require(Kind::Bv, t[0], op).a;
        return symbol(base + number(w), [&]() -> Symbol {
          return {Args(op.arity, bv(w)), op.shape == Shape::BvSame   ? bv(w)
                                         : op.shape == Shape::BvBool ? "Bool"
                                                                     : "Int"};
        });
      }
      case Shape::BvBit: {
        const size_t w = require(Kind::Bv, t[0], op).a;
        bv(1);
        return symbol(base + number(w), [&]() -> Symbol { return {{bv(w), bv(w)}, bv(1)}; });
      }
      case Shape::IntToBv:
        return symbol(base + number(n0), [&, w = n0]() -> Symbol { return {{"Int"}, bv(w)}; });
      case Shape::Concat: {
        const size_t w1 = require(Kind::Bv, t[0], op).a;
        const size_t w2 = require(Kind::Bv, t[1], op).a;
        return symbol(base + number(w1) + "_" + number(w2), [&]() -> Symbol {
          return {{bv(w1), bv(w2)}, bv(w1 + w2)};
        });
      }
      case Shape::Extract: {
        const std::string range = "[" + number(n0) + ":" + number(n1) + "]";
        if (n1 > n0) throw Refusal{"bv extraction of an empty range: " + range, false};
        const size_t w = require(Kind::Bv, t[0], op).a;
        if (n0 >= w) {
          throw Refusal{"range too large in bv extraction. arg has width " + number(w) +
                            ", but range is " + range,
                        false};
        }
        return symbol(base + number(n0) + "_" + number(n1) + "_" + number(w),
                      [&, bits = n0 - n1 + 1]() -> Symbol {
                        return {{bv(w)}, bv(bits)};
                      });
      }
      case Shape::Rotate:
      case Shape::Extend: {
        const size_t w = require(Kind::Bv, t[0], op).a;
        const std::string result = bv(op.shape == Shape::Extend ? w + n0 : w);
        return symbol(base + number(n0) + "_" + number(w), [&]() -> Symbol {
          return {{bv(w)}, result};
        });
      }
      case Shape::Read:
      case Shape::Write: {
        const Type a = require(Kind::Array, t[0], op);
        return symbol(base + in_names(a.index) + "_" + in_names(a.element), [&]() -> Symbol {
          if (op.shape == Shape::Read) return {{t[0].type, a.index}, a.element};
          return {{t[0].type, a.index, a.element}, t[0].type};
        });
      }
      case Shape::Const: {
        const Type a = type(type_argument);
        if (a.kind != Kind::Array) {
          throw Refusal{"type error. type " + type_argument + op.complaint, true};
        }
        return symbol(base + in_names(a.index) + "_" + in_names(a.element), [&]() -> Symbol {
          return {{a.element}, type_argument};
        });
      }
      case Shape::FpSame:
      case Shape::FpBool:
      case Shape::FpRound: {
        const bool rounded = op.shape == Shape::FpRound;
        const Type f = require(Kind::Fp, t[rounded ? 1 : 0], op);
        return symbol(base + number(f.a) + "_" + number(f.b), [&]() -> Symbol {
          Args args(op.arity, fp(f.a, f.b));
          if (rounded) args[0] = "FPRounding";
          return {args, op.shape == Shape::FpBool ? "Bool" : fp(f.a, f.b)};
        });
      }
      case Shape::Cast: {
        const Type f = require(Kind::Fp, t[1], op);
        return symbol(base + number(f.a) + "_" + number(f.b) + "_" + number(n0) + "_" + number(n1),
                      [&, e = n0, m = n1]() -> Symbol {
                        const std::string operand = fp(f.a, f.b);
                        return {{"FPRounding", operand}, fp(e, m)};
                      });
      }
      case Shape::FromBv: {
        const size_t w = require(Kind::Bv, t[1], op).a;
        return symbol(base + number(w) + "_" + number(n0) + "_" + number(n1),
                      [&, e = n0, m = n1]() -> Symbol {
                        const std::string operand = bv(w);
                        return {{"FPRounding", operand}, fp(e, m)};
                      });
      }
      case Shape::ToBv: {
        const Type f = require(Kind::Fp, t[1], op);
        return symbol(base + number(f.a) + "_" + number(f.b) + "_" + number(n0),
                      [&, w = n0]() -> Symbol {
                        const std::string operand = fp(f.a, f.b);
                        return {{"FPRounding", operand}, bv(w)};
                      });
      }
      case Shape::AsBits: {
        const Type f = require(Kind::Fp, t[0], op);
        const size_t w = f.a + f.b + 1;
        return symbol(base + number(f.a) + "_" + number(f.b) + "_" + number(w), [&]() -> Symbol {
          const std::string operand = fp(f.a, f.b);
          return {{operand}, bv(w)};
        });
      }
      case Shape::FromBits: {
        const size_t w = n0 + n1 + 1;
        if (require(Kind::Bv, t[0], op).a != w) {
          throw Refusal{"type error. term " + t[0].shallow + op.complaint, true};
        }
        return symbol(base + number(w) + "_" + number(n0) + "_" + number(n1),
                      [&, e = n0, m = n1]() -> Symbol {
                        const std::string operand = bv(w);
                        return {{operand}, fp(e, m)};
                      });
      }
      case Shape::Modulus: {
        const std::string modulus = request.modulus.to_str();
        if (modulus == "0" || modulus[0] == '-' || modulus.find('/') != std::string::npos) {
          throw Refusal{"invalid modulus in make_int_modular_congruence_symbol: " + modulus, false};
        }
        return symbol(base + modulus, [&]() -> Symbol { return {{"Int", "Int"}, "Bool"}; });
      }
    }
    throw std::logic_error("no such shape");
  }

  std::map<std::string, Type> known;
};

//------------------------------------------------------------------------------------------------
// The calls

class RandomCalls {
 public:
  explicit RandomCalls(uint32_t seed) : random(seed) {
    model.simple("Bool", Kind::Bool);
    model.simple("Int", Kind::Int);
    model.simple("Real", Kind::Real);
    model.simple("FPRounding", Kind::Rounding);
    model.types.insert("(-> Int Int Bool)");  // of the standard signature
    const size_t known_types = model.types.size();
    types_at_start = m.get_universe()->size() - known_types;

    for (const size_t w : {0U, 1U, 2U, 3U, 4U, 8U, 16U, 33U}) add(m.get_bv_type(w), model.bv(w));
    for (const auto& [e, s] : {std::pair(2U, 2U), {2U, 3U}, {3U, 2U}, {5U, 10U}, {8U, 23U}}) {
      add(m.get_fp_type(e, s), model.fp(e, s));
    }
    add(m.get_bool_type(), "Bool");
    add(m.get_int_type(), "Int");
    add(m.get_rat_type(), "Real");
    add(m.get_fprounding_type(), "FPRounding");
    const DataType* inner = m.get_array_type(m.get_bv_type(8), m.get_bv_type(3));
    const std::string inner_text = model.array(model.bv(8), model.bv(3));
    add(inner, inner_text);
    add(m.get_array_type(m.get_int_type(), m.get_rat_type()), model.array("Int", "Real"));
    add(m.get_array_type(m.get_rat_type(), m.get_int_type()), model.array("Real", "Int"));
    add(m.get_array_type(m.get_rat_type(), inner), model.array("Real", inner_text));
    add(m.get_array_type(m.get_fp_type(2, 3), m.get_fprounding_type()),
        model.array(model.fp(2, 3), "FPRounding"));
    for (const Term_* t : {m.make_fprounding_even(), m.make_fprounding_zero(),
                           m.make_fprounding_plus_inf(), m.make_fprounding_minus_inf()}) {
      pool.push_back({t, "FPRounding", t->symbol->name, true});
    }
    symbols_at_start = m.get_signature()->size();
    model.next_id = m.get_bank()->size();
    constants = pool.size();
  }

  // One call on both sides. False, with a failure reported, when they differ.
  bool step() {
    const Operator& op = operators[below(std::size(operators))];
    Request request;
    std::vector<ModelTerm> args;
    choose(op, request, args);
    for (const ModelTerm& arg : args) request.t.push_back(arg.real);
    const std::string type_argument = choose_type(request);
    m.set_typecheck_enabled(below(10) != 0);
    model.checks = m.get_typecheck_enabled();

    std::string expected;
    Model::Outcome outcome;
    try {
      outcome = model.call(op, request, type_argument, args);
      expected = "`" + outcome.name + "` #" + std::to_string(outcome.id);
    } catch (const Refusal& refusal) {
      expected = (refusal.of_manager ? "error: " : "Exception: ") + refusal.text;
    }

    std::string actual;
    const Term_* made = nullptr;
    try {
      made = op.call(m, request);
      actual = std::string(made->symbol->name) + " #" + std::to_string(made->id);
    } catch (const Exception& e) {
      actual = typeid(e) == typeid(TermManager::error) ? "error: "
               : typeid(e) == typeid(Exception)        ? "Exception: "
                                                       : "another class: ";
      actual += e.what();
    }

    EXPECT_EQ(actual, expected) << op.operation;
    EXPECT_EQ(m.get_universe()->size(), types_at_start + model.types.size()) << op.operation;
    EXPECT_EQ(m.get_signature()->size(), symbols_at_start + model.symbols.size()) << op.operation;
    EXPECT_EQ(m.get_bank()->size(), model.next_id) << op.operation;
    if (made != nullptr) {
      for (size_t i = 0; i < args.size(); i++) EXPECT_EQ(made->args[i], args[i].real);
      keep(made, outcome, args);
    }
    (made != nullptr ? successes : refusals)[op.operation]++;
    return !::testing::Test::HasFailure();
  }

  TermManager m;
  Model model;
  std::map<std::string, size_t> successes;
  std::map<std::string, size_t> refusals;

 private:
  size_t below(size_t bound) { return std::uniform_int_distribution<size_t>(0, bound - 1)(random); }

  void add(const DataType* type, const std::string& text) {
    for (int i = 0; i < 3; i++) {
      const std::string name = "c" + std::to_string(pool.size());
      pool.push_back({m.make_constant(m.make_symbol(name, type)), text, name, true});
    }
  }

  const ModelTerm& any() { return pool[below(pool.size())]; }

  // Mostly of this kind.
  ModelTerm of_kind(Kind kind) {
    if (below(8) == 0) return any();
    for (;;) {
      const ModelTerm& t = any();
      if (model.type(t.type).kind == kind) return t;
    }
  }

  // Mostly of this type, if one is found.
  ModelTerm of_type(const std::string& type) {
    if (below(8) == 0) return any();
    for (int tries = 0; tries < 200; tries++) {
      const ModelTerm& t = any();
      if (t.type == type) return t;
    }
    return any();
  }

  void choose(const Operator& op, Request& request, std::vector<ModelTerm>& args) {
    request.n = {below(14), below(14)};
    request.modulus = below(6) == 0 ? QNumber(5, 2) : QNumber(static_cast<int64_t>(below(40)) - 5);
    if (below(20) == 0) request.modulus = QNumber::from_string("100000000000000000000");
    switch (op.shape) {
      case Shape::BvSame:
      case Shape::BvBool:
      case Shape::BvBit:
      case Shape::BvInt:
        args.push_back(of_kind(Kind::Bv));
        if (op.arity == 2) args.push_back(of_type(args[0].type));
        return;
      case Shape::Concat:
        args = {of_kind(Kind::Bv), of_kind(Kind::Bv)};
        return;
      case Shape::IntToBv:
        args = {of_kind(Kind::Int)};
        return;
      case Shape::Extract:
      case Shape::Rotate:
      case Shape::Extend:
        args = {of_kind(Kind::Bv)};
        return;
      case Shape::Read:
      case Shape::Write: {
        args.push_back(of_kind(Kind::Array));
        const Type type = model.type(args[0].type);
        args.push_back(type.kind == Kind::Array ? of_type(type.index) : any());
        if (op.arity == 2) return;
        args.push_back(type.kind == Kind::Array ? of_type(type.element) : any());
        return;
      }
      case Shape::Const: {
        request.type = of_kind(Kind::Array).real->symbol->get_output_type();
        const Type type = model.type(choose_type(request));
        args.push_back(type.kind == Kind::Array ? of_type(type.element) : any());
        return;
      }
      case Shape::FpSame:
      case Shape::FpBool:
        args.push_back(of_kind(Kind::Fp));
        if (op.arity == 2) args.push_back(of_type(args[0].type));
        return;
      case Shape::FpRound:
        args = {of_kind(Kind::Rounding), of_kind(Kind::Fp)};
        if (op.arity == 3) args.push_back(of_type(args[1].type));
        return;
      case Shape::Cast:
      case Shape::ToBv:
        args = {of_kind(Kind::Rounding), of_kind(Kind::Fp)};
        return;
      case Shape::FromBv:
        args = {of_kind(Kind::Rounding), of_kind(Kind::Bv)};
        return;
      case Shape::AsBits:
        args = {of_kind(Kind::Fp)};
        return;
      case Shape::FromBits: {
        args = {of_kind(Kind::Bv)};
        const size_t width = model.type(args[0].type).a;
        if (width >= 3 && below(4) != 0) {
          request.n[0] = 1 + below(width - 2);
          request.n[1] = width - 1 - request.n[0];
        }
        return;
      }
      case Shape::Modulus:
        args = {of_kind(Kind::Int), of_kind(Kind::Int)};
        return;
    }
  }

  // The model's text of the type argument.
  std::string choose_type(const Request& request) const {
    return request.type != nullptr ? request.type->to_str() : "";
  }

  // Terms are replaced at random, so that those at hand stay few and are asked for again. Widths
  // stay small.
  void keep(const Term_* made, const Model::Outcome& outcome, const std::vector<ModelTerm>& args) {
    const Type& type = model.type(outcome.type);
    if (type.a > 40 || type.b > 40) return;
    std::string shallow = "(`" + outcome.name + "`";
    for (const ModelTerm& arg : args) {
      shallow += " " + (arg.is_constant ? arg.shallow : "#" + std::to_string(arg.real->id));
    }
    const ModelTerm term{made, outcome.type, shallow + ")", false};
    if (pool.size() < constants + 200) {
      pool.push_back(term);
    } else {
      pool[constants + below(200)] = term;
    }
  }

  std::mt19937 random;
  std::vector<ModelTerm> pool;  // the constants before the others
  size_t constants = 0;
  size_t types_at_start = 0;
  size_t symbols_at_start = 0;
};

TEST(FamiliesRandom, CallsGiveWhatTheModelSays) {
  RandomCalls calls(20240611);
  for (int i = 0; i < 200000; i++) ASSERT_TRUE(calls.step()) << "call " << i;

  // The calls were worth making: each builder was refused as well as granted, and terms were
  // shared.
  size_t successes = 0;
  for (const Operator& op : operators) {
    EXPECT_GT(calls.successes[op.operation], 500U) << op.operation;
    EXPECT_GT(calls.refusals[op.operation], 100U) << op.operation;
    successes += calls.successes[op.operation];
  }
  EXPECT_LT(calls.model.terms.size() + 1000, successes);
  EXPECT_GT(calls.model.symbols.size(), 1000U);
}

TEST(FamiliesRandom, EverySymbolIsFoundByItsName) {
  RandomCalls calls(7);
  for (int i = 0; i < 20000; i++) ASSERT_TRUE(calls.step()) << "call " << i;
  for (const auto& [name, symbol] : calls.model.symbols) {
    const Symbol* s = calls.m.get_signature()->get_symbol(("`" + name + "`").c_str());
    ASSERT_NE(s, nullptr) << name;
    EXPECT_EQ(s->arity, symbol.args.size()) << name;
    for (size_t i = 0; i < symbol.args.size(); i++) {
      EXPECT_EQ(s->type->get_component(i + 1)->to_str(), symbol.args[i]) << name;
    }
    EXPECT_EQ(s->get_output_type()->to_str(), symbol.result) << name;
  }
}

}  // namespace
}  // namespace quill
