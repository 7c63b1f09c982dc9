// Random builder calls, well-typed and ill-typed, against the model of family_model.h.
//
// Users take names before the builders ask for them, and give names back; calls run out of memory
// and are repeated. A call that was refused or failed leaves the manager as it was.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <new>
#include <optional>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"
#include "quill/utils/qnumber.h"
#include "tests/support/failing_memory.h"
#include "tests/support/unchanged.h"
#include "tests/unit/terms/termmanager/family_model.h"

namespace quill {
namespace {

using testing::Kind;
using testing::Model;
using testing::model_operators;
using testing::ModelOperator;
using testing::ModelTerm;
using testing::Refusal;
using testing::Request;
using testing::Shape;
using testing::StateBefore;
using testing::Type;

// What is compared after a call that was refused or ran out of memory.
enum class Compare { Sizes, WholeState };

class RandomCalls {
 public:
  RandomCalls(uint32_t seed, Compare what) : compare(what), random(seed) {
    model.simple("Bool", Kind::Bool);
    model.simple("Int", Kind::Int);
    model.simple("Real", Kind::Real);
    model.simple("FPRounding", Kind::Rounding);
    model.add_standard_symbol("=_int", {"Int", "Int"}, "Bool");
    model.add_standard_symbol("=_rat", {"Real", "Real"}, "Bool");
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
    model.num_symbols = m.get_signature()->size();
    model.num_terms = m.get_bank()->size();
    constants = pool.size();
  }

  // One call on both sides, and sometimes something else before it. False, with a failure reported,
  // when they differ.
  bool step() {
    const ModelOperator& op = model_operators()[below(model_operators().size())];
    Request request;
    std::vector<ModelTerm> args;
    choose(op, request, args);
    for (const ModelTerm& arg : args) request.t.push_back(arg.real);
    const std::string type_argument = choose_type(request);
    m.set_typecheck_enabled(below(10) != 0);
    model.checks = m.get_typecheck_enabled();

    if (below(30) == 0) take_name_of(op, request, type_argument, args);
    if (below(30) == 0) take_name_of_numeral();
    if (below(60) == 0) give_name_back();
    const std::optional<std::string> new_name =
        model.name_to_make(op, request, type_argument, args);
    if (below(4) == 0) run_out_of_memory(op, request, new_name.has_value());

    std::string expected;
    bool is_beginning = false;
    Model::Outcome outcome;
    try {
      outcome = model.call(op, request, type_argument, args);
      expected = outcome.name + " #" + std::to_string(outcome.id);
    } catch (const Refusal& refusal) {
      expected = (refusal.of_manager ? "error: " : "Exception: ") + refusal.text;
      is_beginning = refusal.goes_on;
      if (refusal.text.find("already exists") != std::string::npos) clashes++;
    }

    std::optional<Before> before;
    if (outcome.name.empty()) before.emplace(*this);
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
    if (is_beginning) actual.resize(std::min(actual.size(), expected.size()));

    EXPECT_EQ(actual, expected) << op.operation;
    EXPECT_EQ(m.get_universe()->size(), types_at_start + model.types.size()) << op.operation;
    EXPECT_EQ(m.get_signature()->size(), model.num_symbols) << op.operation;
    EXPECT_EQ(m.get_bank()->size(), model.num_terms) << op.operation;
    if (made != nullptr) {
      for (size_t i = 0; i < args.size(); ++i) EXPECT_EQ(made->args[i], args[i].real);
      keep(made, outcome, args);
    } else if (before.has_value()) {
      before->expect_unchanged(new_name.has_value() && makes_symbol_first(op), op.operation);
    }
    (made != nullptr ? successes : refusals)[op.operation]++;
    return !::testing::Test::HasFailure();
  }

  TermManager m;
  Model model;
  std::map<std::string, size_t> successes;
  std::map<std::string, size_t> refusals;
  size_t clashes = 0;
  size_t names_taken = 0;
  size_t names_given_back = 0;
  size_t failures = 0;

 private:
  // Of an operator, but not of equality and if-then-else, the symbol is there before its operands
  // are checked, and stays when they are refused.
  static bool makes_symbol_first(const ModelOperator& op) {
    return op.shape != Shape::Equal && op.shape != Shape::Ite && op.arity != 0;
  }

  // The state before a call, as far as it is compared.
  class Before {
   public:
    explicit Before(const RandomCalls& calls) : m(calls.m) {
      if (calls.compare == Compare::WholeState) state.emplace(m);
      terms = m.get_bank()->size();
      symbols = m.get_signature()->size();
      types = m.get_universe()->size();
    }
    // After a call that made no term. A symbol that may have been made is the only one, and nothing
    // but its types and its entries in the tables came with it.
    void expect_unchanged(bool may_make_symbol, const char* operation) const {
      EXPECT_EQ(m.get_bank()->size(), terms) << operation;
      if (!may_make_symbol) {
        EXPECT_EQ(m.get_signature()->size(), symbols) << operation;
        EXPECT_EQ(m.get_universe()->size(), types) << operation;
      }
      if (!state.has_value()) return;
      const std::string changes = state->changes();
      if (may_make_symbol && m.get_signature()->size() <= symbols + 1) {
        EXPECT_EQ(changes.find("\nterm "), std::string::npos) << operation << changes;
        EXPECT_EQ(changes.find("\nnumber_"), std::string::npos) << operation << changes;
        EXPECT_EQ(changes.find("inconsistent"), std::string::npos) << operation << changes;
      } else {
        EXPECT_EQ(changes, "") << operation;
      }
    }

   private:
    const TermManager& m;
    std::optional<StateBefore> state;
    size_t terms;
    size_t symbols;
    size_t types;
  };

  size_t below(size_t bound) { return std::uniform_int_distribution<size_t>(0, bound - 1)(random); }

  void add(const DataType* type, const std::string& text) {
    for (int i = 0; i < 3; ++i) {
      const std::string name = "c" + std::to_string(pool.size());
      pool.push_back({m.make_constant(m.make_symbol(name, type)), text, name, true});
    }
  }

  const ModelTerm& any() { return pool[below(pool.size())]; }

  QNumber choose_number() {
    if (below(20) == 0) return QNumber::from_string("100000000000000000000");
    const QNumber number =
        below(6) == 0 ? QNumber(10, 4) : QNumber(static_cast<int>(below(40)) - 5);
    if (below(4) != 0) return number;
    QNumber big = QNumber::from_string("100000000000000000000");
    big = number;
    return big;
  }

  // A user registers a symbol with the name of the symbol that the call would make: of another
  // type, or of the same type, in which case the call finds it.
  void take_name_of(const ModelOperator& op, const Request& request,
                    const std::string& type_argument, const std::vector<ModelTerm>& args) {
    const auto name = model.name_to_make(op, request, type_argument, args);
    if (!name.has_value() || model.is_taken(*name)) return;
    const std::string bare = name->substr(1, name->size() - 2);
    const DataType* type = m.get_int_type();
    std::string text = "Int";
    const size_t choice = below(3);
    if (choice == 0) {
      std::string own_text;
      if (const DataType* own = own_type(op, args, own_text)) {
        type = own;
        text = own_text;
      }
    } else if (choice == 1) {
      type = m.get_function_type({m.get_int_type(), m.get_int_type()}, m.get_int_type());
      text = "(-> Int Int Int)";
    }
    m.add_interpreted_symbol(bare.c_str(), type, SymbolTag::PLUS);
    model.take_name(*name, text);
    ++names_taken;
  }

  // The type of the call's symbol, if it follows from the operands alone.
  const DataType* own_type(const ModelOperator& op, const std::vector<ModelTerm>& t,
                           std::string& text) {
    const ModelTerm& operand = t[op.shape == Shape::FpRound ? 1 : 0];
    const DataType* operand_type = operand.real->type();
    std::pair<const DataType*, std::string> result;
    switch (op.shape) {
      case Shape::BvSame:
      case Shape::FpSame:
      case Shape::FpRound:
        result = {operand_type, operand.type};
        break;
      case Shape::BvBool:
      case Shape::FpBool:
      case Shape::Equal:
        result = {m.get_bool_type(), "Bool"};
        break;
      case Shape::BvInt:
        result = {m.get_int_type(), "Int"};
        break;
      default:
        return nullptr;
    }
    std::vector<const DataType*> types(op.arity, operand_type);
    std::vector<std::string> texts(op.arity, operand.type);
    if (op.shape == Shape::FpRound) {
      types[0] = m.get_fprounding_type();
      texts[0] = "FPRounding";
    }
    text = model.function(texts, result.second);
    return m.get_function_type(types, result.first);
  }

  // A user symbol takes the name of a numeral, with a fitting type or another one.
  void take_name_of_numeral() {
    std::string name = choose_number().to_str();
    const DataType* type = m.get_int_type();
    std::string text = "Int";
    const size_t kind = below(3);
    if (kind == 1) {
      const size_t width = 1 + below(8);
      name += "_" + std::to_string(width);
      type = m.get_bv_type(width);
      text = model.bv(width);
    } else if (kind == 2) {
      name += "_3_2";
      type = m.get_fp_type(3, 2);
      text = model.fp(3, 2);
    }
    if (below(2) == 0) {
      const ModelTerm& other = any();
      type = other.real->type();
      text = other.type;
    }
    if (model.is_taken(name)) return;
    m.make_symbol(name, type);
    model.take_name(name, text);
    numeral_names.push_back(name);
    ++names_taken;
  }

  void give_name_back() {
    if (numeral_names.empty()) return;
    const std::string& name = numeral_names[below(numeral_names.size())];
    if (!model.is_taken(name)) return;
    m.free_symbol(m.get_signature()->get_symbol(name.c_str()));
    model.free_name(name);
    ++names_given_back;
  }

  // When the call is repeated, it does what it does without running out of memory.
  void run_out_of_memory(const ModelOperator& op, const Request& request, bool has_new_name) {
    const Before before(*this);
    try {
      const testing::FailingMemory after(below(6));
      op.call(m, request);
    } catch (const std::bad_alloc&) {
      ++failures;
      before.expect_unchanged(has_new_name && makes_symbol_first(op), op.operation);
    } catch (const Exception&) {
    }
  }

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
    for (int tries = 0; tries < 200; ++tries) {
      const ModelTerm& t = any();
      if (t.type == type) return t;
    }
    return any();
  }

  void choose(const ModelOperator& op, Request& request, std::vector<ModelTerm>& args) {
    request.numbers = {below(14), below(14)};
    request.number = choose_number();
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
        request.types[0] = of_kind(Kind::Array).real->type();
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
          request.numbers[0] = 1 + below(width - 2);
          request.numbers[1] = width - 1 - request.numbers[0];
        }
        return;
      }
      case Shape::Modulus:
        args = {of_kind(Kind::Int), of_kind(Kind::Int)};
        return;
      case Shape::Equal:
        args.push_back(any());
        args.push_back(of_type(args[0].type));
        return;
      case Shape::Ite:
        args = {of_kind(Kind::Bool), any()};
        args.push_back(of_type(args[1].type));
        return;
      case Shape::Number:
      case Shape::BvNumber:
      case Shape::FpNumber:
        return;
    }
  }

  // The model's text of the type argument.
  std::string choose_type(const Request& request) const {
    return request.types[0] != nullptr ? request.types[0]->to_str() : "";
  }

  // Terms are replaced at random, so that those at hand stay few and are asked for again. Widths
  // stay small.
  void keep(const Term_* made, const Model::Outcome& outcome, const std::vector<ModelTerm>& args) {
    const Type& type = model.type(outcome.type);
    if (type.a > 40 || type.b > 40) return;
    std::string shallow = outcome.name;
    if (args.empty()) {
      numeral_names.push_back(outcome.name);
    } else {
      for (const ModelTerm& arg : args) {
        shallow += " " + (arg.is_constant ? arg.shallow : "#" + std::to_string(arg.real->id));
      }
      shallow = "(" + shallow + ")";
    }
    const ModelTerm term{made, outcome.type, shallow, args.empty()};
    if (pool.size() < constants + 200) {
      pool.push_back(term);
    } else {
      pool[constants + below(200)] = term;
    }
  }

  const Compare compare;
  std::mt19937 random;
  std::vector<ModelTerm> pool;  // the constants before the others
  size_t constants = 0;
  std::vector<std::string> numeral_names;  // with repetitions, and with some that were given back
  size_t types_at_start = 0;
};

TEST(FamiliesRandom, CallsGiveWhatTheModelSays) {
  RandomCalls calls(20240611, Compare::Sizes);
  for (int i = 0; i < 60000; ++i) ASSERT_TRUE(calls.step()) << "call " << i;
  EXPECT_EQ(calls.m.check_consistency(), "");

  // The calls were worth making: each builder was refused as well as granted, and terms were
  // shared.
  size_t successes = 0;
  for (const ModelOperator& op : model_operators()) {
    EXPECT_GT(calls.successes[op.operation], 120U) << op.operation;
    EXPECT_GT(calls.refusals[op.operation], 50U) << op.operation;
    successes += calls.successes[op.operation];
  }
  EXPECT_LT(calls.model.num_terms + 1000, successes);
  EXPECT_GT(calls.model.operator_symbols().size(), 1000U);
  EXPECT_GT(calls.names_taken, 500U);
  EXPECT_GT(calls.names_given_back, 500U);
  EXPECT_GT(calls.clashes, 1000U);
  EXPECT_GT(calls.failures, 1000U);
}

TEST(FamiliesRandom, RefusedAndFailedCallsChangeNothing) {
  size_t clashes = 0;
  size_t failures = 0;
  for (uint32_t seed = 1; seed <= 5; ++seed) {
    RandomCalls calls(seed, Compare::WholeState);
    for (int i = 0; i < 300; ++i) ASSERT_TRUE(calls.step()) << "seed " << seed << ", call " << i;
    clashes += calls.clashes;
    failures += calls.failures;
  }
  EXPECT_GT(clashes, 15U);
  EXPECT_GT(failures, 60U);
}

TEST(FamiliesRandom, EverySymbolIsFoundByItsName) {
  RandomCalls calls(7, Compare::Sizes);
  for (int i = 0; i < 20000; ++i) ASSERT_TRUE(calls.step()) << "call " << i;
  for (const auto& [name, symbol] : calls.model.operator_symbols()) {
    const Symbol* s = calls.m.get_signature()->get_symbol(("`" + name + "`").c_str());
    ASSERT_NE(s, nullptr) << name;
    EXPECT_EQ(s->arity, symbol.args.size()) << name;
    for (size_t i = 0; i < symbol.args.size(); ++i) {
      EXPECT_EQ(s->type->get_component(i + 1)->to_str(), symbol.args[i]) << name;
    }
    EXPECT_EQ(s->get_output_type()->to_str(), symbol.result) << name;
  }
}

}  // namespace
}  // namespace quill
