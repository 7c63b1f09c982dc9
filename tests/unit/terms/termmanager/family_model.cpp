#include "tests/unit/terms/termmanager/family_model.h"

#include <stdexcept>

namespace quill::testing {

namespace {

constexpr const char* unary_bv = "is not a bit-vector";
constexpr const char* binary_bv = " is not a bit vector";
constexpr const char* extract_bv = " is not a bit-vector";
constexpr const char* concat_bv = " is not  a bit vector";
constexpr const char* no_array = " is not an array";
constexpr const char* no_fp = " is not a FP";
constexpr const char* no_bv = " is not a BV";
constexpr const char* wrong_bv = " is not of the correct BV type";

std::string number(size_t n) { return std::to_string(n); }

std::string in_names(const std::string& type) {
  return type == "Real" ? "rat" : type == "Int" ? "int" : type;
}

struct NameToMake {
  std::string name;
};

ModelOperator applied(SymbolTag::tag tag, Shape shape, const char* complaint) {
  const Operator& op = operator_of(tag);
  return {op.operation, op.stem,
          shape,        op.arity,
          complaint,    [&op](TermManager& m, const Request& r) { return op.build(m, r, r.t); }};
}

}  // namespace

const std::vector<ModelOperator>& model_operators() {
  // clang-format off
  static const std::vector<ModelOperator> all = {
    applied(SymbolTag::BV_NOT, Shape::BvSame, unary_bv),
    applied(SymbolTag::BV_NEG, Shape::BvSame, unary_bv),
    applied(SymbolTag::BV_AND, Shape::BvSame, binary_bv),
    applied(SymbolTag::BV_OR, Shape::BvSame, binary_bv),
    applied(SymbolTag::BV_XOR, Shape::BvSame, binary_bv),
    applied(SymbolTag::BV_ULT, Shape::BvBool, binary_bv),
    applied(SymbolTag::BV_SLT, Shape::BvBool, binary_bv),
    applied(SymbolTag::BV_ULE, Shape::BvBool, binary_bv),
    applied(SymbolTag::BV_SLE, Shape::BvBool, binary_bv),
    applied(SymbolTag::BV_COMP, Shape::BvBit, binary_bv),
    applied(SymbolTag::BV_ADD, Shape::BvSame, binary_bv),
    applied(SymbolTag::BV_SUB, Shape::BvSame, binary_bv),
    applied(SymbolTag::BV_MUL, Shape::BvSame, binary_bv),
    applied(SymbolTag::BV_UDIV, Shape::BvSame, binary_bv),
    applied(SymbolTag::BV_SDIV, Shape::BvSame, binary_bv),
    applied(SymbolTag::BV_UREM, Shape::BvSame, binary_bv),
    applied(SymbolTag::BV_SREM, Shape::BvSame, binary_bv),
    applied(SymbolTag::BV_LSHL, Shape::BvSame, binary_bv),
    applied(SymbolTag::BV_LSHR, Shape::BvSame, binary_bv),
    applied(SymbolTag::BV_ASHR, Shape::BvSame, binary_bv),
    applied(SymbolTag::INT_FROM_UBV, Shape::BvInt, binary_bv),
    applied(SymbolTag::INT_FROM_SBV, Shape::BvInt, binary_bv),
    applied(SymbolTag::INT_TO_BV, Shape::IntToBv, ""),
    applied(SymbolTag::BV_CONCAT, Shape::Concat, concat_bv),
    applied(SymbolTag::BV_EXTRACT, Shape::Extract, extract_bv),
    applied(SymbolTag::BV_ROTATE_LEFT, Shape::Rotate, unary_bv),
    applied(SymbolTag::BV_ROTATE_RIGHT, Shape::Rotate, unary_bv),
    applied(SymbolTag::BV_ZERO_EXTEND, Shape::Extend, unary_bv),
    applied(SymbolTag::BV_SIGN_EXTEND, Shape::Extend, unary_bv),
    applied(SymbolTag::ARRAY_READ, Shape::Read, no_array),
    applied(SymbolTag::ARRAY_WRITE, Shape::Write, no_array),
    applied(SymbolTag::ARRAY_CONST, Shape::Const, no_array),
    applied(SymbolTag::FP_EQUAL, Shape::FpBool, no_fp),
    applied(SymbolTag::FP_LT, Shape::FpBool, no_fp),
    applied(SymbolTag::FP_LE, Shape::FpBool, no_fp),
    applied(SymbolTag::FP_NEG, Shape::FpSame, no_fp),
    applied(SymbolTag::FP_ABS, Shape::FpSame, no_fp),
    applied(SymbolTag::FP_MIN, Shape::FpSame, no_fp),
    applied(SymbolTag::FP_MAX, Shape::FpSame, no_fp),
    applied(SymbolTag::FP_ADD, Shape::FpRound, no_fp),
    applied(SymbolTag::FP_SUB, Shape::FpRound, no_fp),
    applied(SymbolTag::FP_MUL, Shape::FpRound, no_fp),
    applied(SymbolTag::FP_DIV, Shape::FpRound, no_fp),
    applied(SymbolTag::FP_SQRT, Shape::FpRound, no_fp),
    applied(SymbolTag::FP_ROUND_TO_INT, Shape::FpRound, no_fp),
    applied(SymbolTag::FP_ISNAN, Shape::FpBool, no_fp),
    applied(SymbolTag::FP_ISINF, Shape::FpBool, no_fp),
    applied(SymbolTag::FP_ISZERO, Shape::FpBool, no_fp),
    applied(SymbolTag::FP_ISSUBNORMAL, Shape::FpBool, no_fp),
    applied(SymbolTag::FP_ISNORMAL, Shape::FpBool, no_fp),
    applied(SymbolTag::FP_ISNEG, Shape::FpBool, no_fp),
    applied(SymbolTag::FP_ISPOS, Shape::FpBool, no_fp),
    applied(SymbolTag::FP_CAST, Shape::Cast, no_fp),
    applied(SymbolTag::FP_FROM_SBV, Shape::FromBv, no_bv),
    applied(SymbolTag::FP_FROM_UBV, Shape::FromBv, no_bv),
    applied(SymbolTag::FP_TO_BV, Shape::ToBv, no_fp),
    applied(SymbolTag::FP_AS_IEEEBV, Shape::AsBits, no_fp),
    applied(SymbolTag::FP_FROM_IEEEBV, Shape::FromBits, wrong_bv),
    applied(SymbolTag::INT_MODULAR_CONGRUENCE, Shape::Modulus, ""),
    applied(SymbolTag::EQUAL, Shape::Equal, ""),
    applied(SymbolTag::TERM_ITE, Shape::Ite, ""),
    {"make_number", "", Shape::Number, 0, "", [](TermManager& m, const Request& r) { return m.make_number(r.number); }},
    {"make_bv_number", "", Shape::BvNumber, 0, "", [](TermManager& m, const Request& r) { return m.make_bv_number(r.number, r.numbers[0]); }},
    {"make_fp_bits_number", "", Shape::FpNumber, 0, "", [](TermManager& m, const Request& r) { return m.make_fp_bits_number(r.number, r.numbers[0], r.numbers[1]); }},
  };
  // clang-format on
  return all;
}

const std::string& Model::simple(const std::string& text, Kind kind) {
  return enter(text, {kind, 0, 0, "", ""});
}

const std::string& Model::bv(size_t w) {
  add_type(number(w));
  return enter("(BitVec " + number(w) + ")", {Kind::Bv, w, 0, "", ""});
}

const std::string& Model::fp(size_t e, size_t m) {
  if (checks && (e < 2 || m < 2)) {
    throw Refusal{"too small exponent and/or mantissa width for FP numbers: " + number(e) + ", " +
                      number(m) + " (min is 2, 2)",
                  true};
  }
  const std::string parameter = "|" + number(e) + ":" + number(m) + "|";
  add_type(parameter);
  return enter("(FP " + parameter + ")", {Kind::Fp, e, m, "", ""});
}

const std::string& Model::array(const std::string& index, const std::string& element) {
  return enter("(Array " + index + " " + element + ")", {Kind::Array, 0, 0, index, element});
}

std::string Model::function(const std::vector<std::string>& args, const std::string& result) {
  std::string text = "(->";
  for (const std::string& arg : args) text += " " + arg;
  text += " " + result + ")";
  add_type(text);
  return text;
}

const std::string& Model::enter(const std::string& text, const Type& type) {
  add_type(text);
  return known.insert({text, type}).first->first;
}

void Model::add_type(const std::string& text) {
  if (types.insert(text).second) new_types.push_back(text);
}

void Model::forget_new_types() {
  for (const std::string& text : new_types) types.erase(text);
  new_types.clear();
}

const Type& Model::require(Kind kind, const ModelTerm& t, const ModelOperator& op) const {
  const Type& found = type(t.type);
  if (found.kind != kind) throw Refusal{"type error. term " + t.shallow + op.complaint, true};
  return found;
}

// The symbol of this name, whose types are told by a function that makes them.
template <class MakeTypes>
std::string Model::symbol(const std::string& name, MakeTypes make_types) {
  if (made.find(name) != made.end()) return name;
  const Symbol wanted = make_types();
  const std::string type_text = function(wanted.args, wanted.result);
  const std::string quoted = "`" + name + "`";
  const auto present = names.find(quoted);
  if (present != names.end() && present->second.type != type_text) {
    // A type in which arrays repeat is written in short.
    const bool goes_on = type_text.find("Array") != std::string::npos;
    throw Refusal{"the symbol " + quoted + " already exists with type " + present->second.type +
                      ", it can't be declared with type " + (goes_on ? "" : type_text),
                  false, goes_on};
  }
  if (only_names) throw NameToMake{quoted};
  if (present == names.end()) names[quoted] = {type_text, num_symbols++};
  made[name] = wanted;
  return name;
}

// The checks of a builder's own, in their order, then its symbol.
std::string Model::request_symbol(const ModelOperator& op, const Request& request,
                                  const std::string& type_argument,
                                  const std::vector<ModelTerm>& t) {
  const std::string base = op.base;
  const size_t n0 = request.numbers[0];
  const size_t n1 = request.numbers[1];
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
    case Shape::Equal: {
      const std::string& first = t[0].type;
      if (first == "Bool") throw Refusal{"Equality arguments can't be Boolean", true};
      const bool is_arithmetic = first == "Int" || first == "Real";
      const std::string over = !is_arithmetic ? first : t[1].type == "Int" ? first : "Real";
      return symbol(base + in_names(over), [&]() -> Symbol { return {{over, over}, "Bool"}; });
    }
    case Shape::Ite: {
      const std::string& first = t[1].type;
      if (first == "Bool") throw Refusal{"Term-ITE arguments can't be Boolean", true};
      const bool is_arithmetic = first == "Int" || first == "Real";
      const std::string over = !is_arithmetic ? first : t[2].type == "Int" ? first : "Real";
      return symbol(base + in_names(over), [&]() -> Symbol {
        return {{"Bool", over, over}, over};
      });
    }
    case Shape::Number:
    case Shape::BvNumber:
    case Shape::FpNumber:
      break;
    case Shape::Modulus: {
      const std::string modulus = request.number.to_str();
      if (modulus == "0" || modulus[0] == '-' || modulus.find('/') != std::string::npos) {
        throw Refusal{"invalid modulus in make_int_modular_congruence_symbol: " + modulus, false};
      }
      return symbol(base + modulus, [&]() -> Symbol { return {{"Int", "Int"}, "Bool"}; });
    }
  }
  throw std::logic_error("no such shape");
}

const Model::Named& Model::numeral_symbol(const std::string& name, const std::string& type) {
  const auto present = names.find(name);
  if (present == names.end()) return names[name] = {type, num_symbols++};
  const std::string& found = present->second.type;
  const bool is_arithmetic = type == "Int" || type == "Real";
  if (is_arithmetic ? found != "Int" && found != "Real" : found != type) {
    throw Refusal{"a symbol for " + name + " already exists, but it has the wrong type: " + found,
                  true};
  }
  return present->second;
}

void Model::require_bits(const QNumber& value, size_t bits, const char* kind) const {
  if (!checks) return;
  const std::string text = value.to_str();
  const std::string begin = std::string("can't make a ") + kind + " number from a ";
  if (text.find('/') != std::string::npos) {
    throw Refusal{begin + "fractional number: " + text, true};
  }
  if (text[0] == '-') throw Refusal{begin + "negative number: " + text, true};
  if (text.size() > 18 || (bits < 63 && std::stoull(text) >> bits != 0)) {
    throw Refusal{"the number " + text + " doesn't fit in " + number(bits) + " bits", false};
  }
}

Model::Outcome Model::numeral(const ModelOperator& op, const Request& request) {
  const size_t n0 = request.numbers[0];
  const size_t n1 = request.numbers[1];
  std::string name = request.number.to_str();
  std::string type;
  if (op.shape == Shape::Number) {
    const auto found = numbers.find(name);
    if (found != numbers.end()) return found->second;
    type = name.find('/') == std::string::npos ? "Int" : "Real";
  } else if (op.shape == Shape::BvNumber) {
    require_bits(request.number, n0, "bv");
    name += "_" + number(n0);
    type = bv(n0);
  } else {
    require_bits(request.number, n0 + n1 + 1, "FP");
    name += "_" + number(n0) + "_" + number(n1);
    type = fp(n0, n1);
  }
  const Named& s = numeral_symbol(name, type);
  const Outcome outcome{name, s.type, term(s.serial, {})};
  if (op.shape == Shape::Number) numbers[name] = outcome;
  return outcome;
}

uint64_t Model::term(uint64_t serial, const std::vector<uint64_t>& args) {
  const auto [entry, is_new] = terms.insert({{serial, args}, num_terms});
  if (is_new) num_terms++;
  return entry->second;
}

Model::Outcome Model::call(const ModelOperator& op, const Request& request,
                           const std::string& type_argument, const std::vector<ModelTerm>& t) {
  new_types.clear();
  const uint64_t symbols_before = num_symbols;
  std::string name;
  try {
    if (op.arity == 0) return numeral(op, request);
    const size_t made_before = made.size();
    name = request_symbol(op, request, type_argument, t);
    const Symbol& s = made.at(name);
    for (size_t i = 0; checks && i < t.size(); ++i) {
      const bool fits = t[i].type == s.args[i] || (t[i].type == "Int" && s.args[i] == "Real");
      if (fits) continue;
      const Refusal refusal{"type error. term " + t[i].shallow + " has type " + t[i].type +
                                ", but " + s.args[i] + " was expected. (" + op.operation + ")",
                            true};
      // The symbol of an operator stays, with its types.
      if (op.shape != Shape::Equal && op.shape != Shape::Ite)
        new_types.clear();
      else if (made.size() != made_before)
        made.erase(name);
      throw refusal;
    }
  } catch (const Refusal&) {
    forget_new_types();
    const bool stays = made.find(name) != made.end();
    if (!stays && num_symbols != symbols_before) {
      num_symbols = symbols_before;
      names.erase("`" + name + "`");
    }
    throw;
  }
  std::vector<uint64_t> ids;
  for (const ModelTerm& arg : t) ids.push_back(arg.real->id);
  const std::string quoted = "`" + name + "`";
  return {quoted, made.at(name).result, term(names.at(quoted).serial, ids)};
}

std::optional<std::string> Model::name_to_make(const ModelOperator& op, const Request& request,
                                               const std::string& type_argument,
                                               const std::vector<ModelTerm>& t) {
  new_types.clear();
  only_names = true;
  std::optional<std::string> name;
  try {
    if (op.arity != 0) request_symbol(op, request, type_argument, t);
  } catch (const NameToMake& found) {
    name = found.name;
  } catch (const Refusal&) {
  }
  only_names = false;
  forget_new_types();
  return name;
}

void Model::add_standard_symbol(const std::string& name, const std::vector<std::string>& args,
                                const std::string& result) {
  take_name("`" + name + "`", function(args, result));
  made[name] = {args, result};
}

void Model::take_name(const std::string& name, const std::string& type_text) {
  names[name] = {type_text, num_symbols++};
}

}  // namespace quill::testing
