// Operators through one door, beside the makers and builders of a list of our own.

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "quill/terms/termmanager/operator.h"
#include "quill/utils/qnumber_arithmetic.h"
#include "tests/support/manager_test.h"
#include "tests/support/operator_rows.h"
#include "tests/support/operators.h"

namespace quill {
namespace {

using Kind = Operator::Kind;
using testing::Indices;
using testing::Names;
using testing::Parameters;
using testing::Terms;

class GenericOperators : public testing::ManagerTest {
 protected:
  // What the maker of an operator's symbol takes, from some numbers that fit all of them.
  Parameters parameters(const testing::Operator& op, size_t choice) {
    Parameters p;
    const size_t w = 8 + choice;
    switch (op.indices) {
      case Indices::None:
      case Indices::Type:
        break;
      case Indices::Modulus:
        p.number = choice == 2 ? numbers::sum(numbers::power_of_two(128), QNumber(1))
                               : QNumber(static_cast<int64_t>(7 + choice));
        break;
      case Indices::Width:
        p.numbers = {w};
        break;
      case Indices::TwoWidths:
        p.numbers = {w, w + 3};
        break;
      case Indices::Part:
        p.numbers = {5, choice, w};
        break;
      case Indices::Amount:
        p.numbers = {choice, w};
        break;
      case Indices::Array:
        p.types = {choice == 0 ? m.get_int_type() : m.get_bv_type(w),
                   choice == 1 ? m.get_rat_type() : m.get_fp_type(5, 10)};
        break;
      case Indices::Format:
      case Indices::FormatAndItsBits:
      case Indices::BitsAndFormat:
        p.numbers = {4 + choice, 11};
        break;
      case Indices::TwoFormats:
        p.numbers = {4 + choice, 11, 8, 23 + choice};
        break;
      case Indices::WidthAndFormat:
        p.numbers = {w, 8, 23};
        break;
      case Indices::FormatAndWidth:
        p.numbers = {8, 23, w};
        break;
    }
    return p;
  }

  // The text of whatever a request throws.
  static std::string outcome(const std::function<const Term_*()>& request) {
    try {
      const Term_* t = request();
      return std::to_string(t->id);
    } catch (const Exception& e) {
      return std::string(dynamic_cast<const TermManager::error*>(&e) != nullptr ? "error: "
                                                                                : "exception: ") +
             e.what();
    }
  }
};

TEST_F(GenericOperators, EverySymbolOfEveryFamilyGoesRound) {
  size_t symbols = 0;
  for (const testing::Operator& op : testing::operator_families()) {
    for (size_t choice = 0; choice < 3; ++choice) {
      const Parameters p = parameters(op, choice);
      const Symbol* s = op.make_symbol(m, p);
      const Operator found = m.operator_of(s);
      SCOPED_TRACE(s->name);
      EXPECT_EQ(found.kind, Kind::Operator);
      EXPECT_EQ(static_cast<int>(found.tag), op.tag);
      EXPECT_EQ(found.symbol, nullptr);
      EXPECT_EQ(found.modulus, p.number);
      EXPECT_EQ(found.types, p.types);
      const std::array<uint64_t, 4> numbers = {p.numbers[0], p.numbers[1], p.numbers[2],
                                               p.numbers[3]};
      EXPECT_EQ(found.numbers, numbers);
      EXPECT_EQ(m.symbol_of(found), s);
      // A symbol that is not there is made, with the same name and type.
      TermManager other;
      Operator there = found;
      if (there.types[0] != nullptr) {
        std::vector<const DataType*> copies;
        other.copy_types(m, {found.types[0], found.types[1]}, copies);
        there.types = {copies[0], copies[1]};
      }
      const Symbol* made = other.symbol_of(there);
      EXPECT_STREQ(made->name, s->name);
      EXPECT_EQ(made->type->to_str(), s->type->to_str());
      EXPECT_EQ(other.operator_of(made), there);
      EXPECT_EQ(other.check_consistency(), "");
      ++symbols;
    }
  }
  EXPECT_EQ(symbols, 3U * 59U);
}

TEST_F(GenericOperators, EveryFamilyBuildsWhatItsBuilderBuilds) {
  for (const testing::Row& row : testing::operator_rows()) {
    testing::Bench bench;
    const Terms args = bench.terms(row.args);
    const Term_* t = row.build(bench.m, args);
    SCOPED_TRACE(row.operation);
    const Operator op = bench.m.operator_of(t->symbol);
    EXPECT_EQ(bench.m.make_operator(op, t->arguments()), t);
    const Terms copy(t->args, t->args + t->symbol->arity);
    EXPECT_EQ(bench.m.make_operator(op, copy), t);
    // Refusals have the builder's texts, whatever was there before.
    for (const testing::Failure& failure : row.failures) {
      const Terms wrong = bench.terms(failure.args);
      if (wrong.size() != t->symbol->arity) continue;  // a constant array's wrong type
      std::string text = "nothing";
      try {
        bench.m.make_operator(op, wrong);
      } catch (const Exception& e) {
        text = e.what();
      }
      EXPECT_EQ(text, failure.message);
    }
    EXPECT_EQ(bench.m.check_consistency(), "");
  }
}

TEST_F(GenericOperators, TheStandardSignatureGoesRound) {
  const Term_* p = constant("p", m.get_bool_type());
  const Term_* i = constant("i", m.get_int_type());
  const Term_* r = constant("r", m.get_rat_type());
  const Term_* x = constant("x", m.get_bv_type(8));
  struct Expected {
    const Term_* term;
    int tag;
    const DataType* type;
  };
  const Expected all[] = {
      {m.make_true(), 1, nullptr},
      {m.make_false(), 2, nullptr},
      {m.make_and(p, p), 3, nullptr},
      {m.make_or(p, p), 4, nullptr},
      {m.make_not(p), 5, nullptr},
      {m.make_iff(p, p), 6, nullptr},
      {m.make_plus(i, i), 7, m.get_int_type()},
      {m.make_plus(r, i), 7, m.get_rat_type()},
      {m.make_times(i, i), 8, m.get_int_type()},
      {m.make_times(i, r), 8, m.get_rat_type()},
      {m.make_floor(r), 9, nullptr},
      {m.make_leq(i, i), 10, m.get_int_type()},
      {m.make_leq(r, r), 10, m.get_rat_type()},
      {m.make_equal(i, i), 11, m.get_int_type()},
      {m.make_equal(r, r), 11, m.get_rat_type()},
      {m.make_equal(x, x), 11, x->type()},
      {m.make_term_ite(p, i, i), 12, m.get_int_type()},
      {m.make_term_ite(p, i, r), 12, m.get_rat_type()},
      {m.make_term_ite(p, x, x), 12, x->type()},
  };
  for (const auto& [t, tag, type] : all) {
    SCOPED_TRACE(t->to_str());
    const Operator op = m.operator_of(t->symbol);
    EXPECT_EQ(op.kind, Kind::Operator);
    EXPECT_EQ(static_cast<int>(op.tag), tag);
    EXPECT_EQ(op.types[0], type);
    EXPECT_EQ(op.types[1], nullptr);
    EXPECT_EQ(m.symbol_of(op), t->symbol);
    EXPECT_EQ(m.make_operator(op, t->arguments()), t);
  }
}

TEST_F(GenericOperators, OtherSymbolsSayTheirKind) {
  const Symbol* f = m.make_symbol("f", m.get_function_type({m.get_int_type()}, m.get_int_type()));
  const Term_* c = constant("c", m.get_int_type());
  const Term_* v = m.make_fresh_variable(m.get_int_type());
  const Term_* numeral = m.make_bv_number(QNumber(3), 8);
  const Term_* mode = m.make_constant(m.get_fprounding_zero());
  const std::pair<const Term_*, Kind> all[] = {
      {m.make_uninterpreted_function(f, {c}), Kind::Function},
      {c, Kind::Constant},
      {v, Kind::Variable},
      {numeral, Kind::Numeral},
      {m.make_number(QNumber(1, 3)), Kind::Numeral},
      {mode, Kind::RoundingMode},
  };
  for (const auto& [t, kind] : all) {
    const Operator op = m.operator_of(t->symbol);
    EXPECT_EQ(op.kind, kind) << t->to_str();
    EXPECT_EQ(op.tag, SymbolTag::NONE);
    EXPECT_EQ(op.symbol, t->symbol);
    EXPECT_EQ(m.symbol_of(op), t->symbol);
    EXPECT_EQ(m.make_operator(op, t->arguments()), t);
  }
  EXPECT_EQ(error_of([&] { m.make_operator(m.operator_of(f), {}); }),
            "wrong arity for symbol f. expected 1, got 0");
  EXPECT_EQ(error_of([&] { m.make_operator(m.operator_of(c->symbol), {c}); }),
            "wrong arity for symbol c. expected 0, got 1");
}

TEST_F(GenericOperators, ATagMakesNoOperatorOfASymbol) {
  const DataType* bv8 = m.get_bv_type(8);
  m.make_bv_add_symbol(8);
  m.make_array_read_symbol(m.get_int_type(), bv8);
  const DataType* array = m.get_array_type(m.get_int_type(), bv8);
  const std::vector<const DataType*> types = {
      m.get_int_type(), m.get_function_type({bv8, bv8}, bv8),
      m.get_function_type({array, m.get_int_type()}, bv8),
      m.get_function_type({m.get_int_type(), m.get_int_type()}, m.get_int_type())};
  for (int tag = 1; tag <= 71; ++tag) {
    for (size_t i = 0; i < types.size(); ++i) {
      const std::string name = "mine_" + std::to_string(tag) + "_" + std::to_string(i);
      const Symbol* s =
          m.add_interpreted_symbol(name.c_str(), types[i], static_cast<SymbolTag::tag>(tag));
      const Operator op = m.operator_of(s);
      EXPECT_EQ(op.kind, i == 0 ? Kind::Constant : Kind::Function) << name;
      EXPECT_EQ(op.tag, SymbolTag::NONE);
      EXPECT_EQ(m.symbol_of(op), s);
    }
  }
}

TEST_F(GenericOperators, WhatNoOperatorIsIsRefusedAndNothingChanges) {
  const Term_* p = constant("p", m.get_bool_type());
  const Term_* x = constant("x", m.get_bv_type(8));
  m.make_bv_add(x, x);
  const std::string before = m.describe_state();
  const auto refusal = [&](const Operator& op, const Terms& args) {
    return outcome([&] { return m.make_operator(op, args); });
  };
  EXPECT_EQ(refusal({.tag = SymbolTag::NONE}, {}), "error: no operator has the tag 0");
  EXPECT_EQ(refusal({.tag = static_cast<SymbolTag::tag>(72)}, {}),
            "error: no operator has the tag 72");
  EXPECT_EQ(refusal({.tag = SymbolTag::PLUS, .types = {m.get_bool_type()}}, {p, p}),
            "error: the operator with the tag 7 has no operands of type Bool");
  EXPECT_EQ(refusal({.tag = SymbolTag::EQUAL, .types = {m.get_bool_type()}}, {p, p}),
            "error: Equality arguments can't be Boolean");
  EXPECT_EQ(refusal({.tag = SymbolTag::TERM_ITE, .types = {m.get_bool_type()}}, {p, p, p}),
            "error: Term-ITE arguments can't be Boolean");
  EXPECT_EQ(refusal({.tag = SymbolTag::EQUAL, .types = {x->type()}}, {x, p}),
            "error: type error. term p has type Bool, but (BitVec 8) was expected. (make_equal)");
  EXPECT_EQ(refusal({.tag = SymbolTag::TERM_ITE, .types = {x->type()}}, {p, x, p}),
            "error: type error. term p has type Bool, but (BitVec 8) was expected. "
            "(make_term_ite)");
  EXPECT_EQ(refusal({.tag = SymbolTag::AND}, {p}),
            "error: wrong arity for make_and. expected 2, got 1");
  EXPECT_EQ(refusal({.tag = SymbolTag::EQUAL, .types = {x->type()}}, {x}),
            "error: wrong arity for make_equal. expected 2, got 1");
  EXPECT_EQ(refusal({.tag = SymbolTag::TERM_ITE, .types = {x->type()}}, {x}),
            "error: wrong arity for make_term_ite. expected 3, got 1");
  EXPECT_EQ(refusal({.tag = SymbolTag::TRUE_TAG}, {p}),
            "error: wrong arity for make_true. expected 0, got 1");
  EXPECT_EQ(refusal({.tag = SymbolTag::BV_ADD, .numbers = {8}}, {x, x, x}),
            "error: wrong arity for make_bv_add. expected 2, got 3");
  EXPECT_EQ(refusal({.tag = SymbolTag::BV_NOT, .numbers = {16}}, {p}),
            "error: type error. term pis not a bit-vector");
  EXPECT_EQ(refusal({.tag = SymbolTag::BV_EXTRACT, .numbers = {1, 2, 8}}, {x}),
            "exception: bv extraction of an empty range: [1:2]");
  EXPECT_EQ(refusal({.tag = SymbolTag::BV_EXTRACT, .numbers = {8, 2, 8}}, {x}),
            "exception: range too large in bv extraction. arg has width 8, but range is [8:2]");
  EXPECT_EQ(m.describe_state(), before);
}

// Arguments of many types for operators of all families: the generic door gives the term of the
// builder, or its error.
TEST_F(GenericOperators, RandomApplicationsAreTheBuilders) {
  std::mt19937 random(20261122);
  const std::vector<const DataType*> types = {
      m.get_bool_type(),       m.get_int_type(),
      m.get_rat_type(),        m.get_bv_type(8),
      m.get_bv_type(9),        m.get_bv_type(16),
      m.get_fp_type(4, 11),    m.get_fp_type(8, 23),
      m.get_fprounding_type(), m.get_array_type(m.get_int_type(), m.get_bv_type(8))};
  std::vector<Terms> by_type;
  for (size_t i = 0; i < types.size(); ++i) {
    by_type.emplace_back();
    for (int k = 0; k < 4; ++k) {
      by_type.back().push_back(
          constant("c" + std::to_string(i) + "_" + std::to_string(k), types[i]));
    }
  }
  const auto& operators = testing::operators();
  size_t built = 0;
  size_t refused = 0;
  for (int round = 0; round < 100'000; ++round) {
    const testing::Operator& op = operators[random() % operators.size()];
    // A term of the operator, or a refusal; the arguments fit more often than not.
    const Parameters p = parameters(op, random() % 2);
    Terms args;
    const Symbol* s = op.make_symbol != nullptr && op.tag > 12 ? op.make_symbol(m, p) : nullptr;
    for (uint64_t i = 0; i < op.arity; ++i) {
      size_t type = random() % types.size();
      if (s != nullptr && random() % 8 != 0) {
        const DataType* wanted = s->type->get_component(i + 1);
        for (size_t k = 0; k < types.size(); ++k) {
          if (types[k] == wanted) type = k;
        }
      }
      args.push_back(by_type[type][random() % 4]);
    }
    Parameters of_builder = p;
    switch (op.indices) {
      case Indices::TwoFormats:
        of_builder.numbers = {p.numbers[2], p.numbers[3]};
        break;
      case Indices::WidthAndFormat:
        of_builder.numbers = {p.numbers[1], p.numbers[2]};
        break;
      case Indices::FormatAndWidth:
        of_builder.numbers = {p.numbers[2]};
        break;
      case Indices::Array:
        of_builder.types = {m.get_array_type(p.types[0], p.types[1])};
        break;
      default:
        break;
    }
    const Term_* expected = nullptr;
    std::string text;
    try {
      expected = op.build(m, of_builder, args);
    } catch (const Exception& e) {
      text = e.what();
    }
    if (expected != nullptr) {
      const Operator found = m.operator_of(expected->symbol);
      ASSERT_EQ(m.make_operator(found, expected->arguments()), expected) << op.operation;
      ++built;
      continue;
    }
    ++refused;
    // The builder has chosen its symbol by the arguments: an operator over other types refuses them
    // with another text.
    if (s == nullptr) continue;
    const Operator mine = m.operator_of(s);
    std::string found = "nothing";
    try {
      m.make_operator(mine, args);
    } catch (const Exception& e) {
      found = e.what();
    }
    ASSERT_NE(found, "nothing") << op.operation;
    const bool says_where = text.find("was expected") != std::string::npos;
    if (!says_where) {
      ASSERT_EQ(found, text) << op.operation;
    }
  }
  EXPECT_GT(built, 20'000U);
  EXPECT_GT(refused, 20'000U);
  EXPECT_EQ(m.check_consistency(), "");
}

}  // namespace
}  // namespace quill
