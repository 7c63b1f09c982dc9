// What recognisers say about symbols that a user registered with a tag: any tag is possible with
// any type.

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/operator_rows.h"

namespace quill {
namespace {

using testing::Names;
using testing::operator_rows;
using testing::Row;

constexpr int num_tags = SymbolTag::INT_TO_BV + 1;

class Recognisers : public ::testing::Test {
 protected:
  Recognisers() { m.set_reject_bool_arguments(false); }

  // A symbol of one's own for each call.
  const Symbol* by_hand(int tag, const DataType* type) {
    const Symbol* s = m.add_interpreted_symbol("by hand", type, static_cast<SymbolTag::tag>(tag));
    m.free_symbol(s);
    return s;
  }

  // The operations of the families that take the symbol for theirs.
  Names families_of(const Symbol* s) {
    Names found;
    Names outputs;
    for (const Row& row : operator_rows()) {
      if (row.recognise.ask(m, s, /*mask=*/~0U, outputs)) {
        found.push_back(row.operation);
      } else {
        EXPECT_EQ(outputs, Names(row.recognise.outputs, testing::untouched)) << row.operation;
      }
    }
    return found;
  }

  TermManager m;
};

TEST_F(Recognisers, ATagMakesNoOperatorOfASymbol) {
  const std::vector<const DataType*> types = {m.get_bool_type(), m.get_int_type(), m.get_bv_type(8),
                                              m.get_fp_type(8, 23),
                                              m.get_array_type(m.get_int_type(), m.get_int_type())};
  for (int tag = 0; tag <= num_tags; ++tag) {
    for (const DataType* operand : types) {
      for (const DataType* result : types) {
        for (size_t arity = 0; arity <= 4; ++arity) {
          const std::vector<const DataType*> operands(arity, operand);
          const DataType* type = arity == 0 ? result : m.get_function_type(operands, result);
          const Symbol* s = by_hand(tag == num_tags ? 127 : tag, type);
          // The one operator among them that is known by its type alone.
          const bool is_const = tag == SymbolTag::ARRAY_CONST && arity == 1 &&
                                type->to_str() == "(-> Int (Array Int Int))";
          EXPECT_EQ(families_of(s), is_const ? Names{"make_array_const"} : Names{})
              << tag << ' ' << type->to_str();
          EXPECT_FALSE(m.is_term_ite(s, nullptr));
          EXPECT_FALSE(m.is_number(s, nullptr));
          EXPECT_TRUE(m.is_interpreted(s));
          EXPECT_FALSE(m.is_uninterpreted_function(s));
          EXPECT_FALSE(m.is_constant(s));
          EXPECT_FALSE(m.is_variable(s));
          EXPECT_FALSE(m.is_fprounding_even(s) || m.is_fprounding_zero(s) ||
                       m.is_fprounding_plus_inf(s) || m.is_fprounding_minus_inf(s));
        }
      }
    }
  }
}

TEST_F(Recognisers, TheTypeOfAnOperatorMakesNoOperatorOfASymbol) {
  for (const Row& row : operator_rows()) {
    const Symbol* genuine = row.make_symbol(m);
    EXPECT_EQ(families_of(genuine), Names{row.operation});
    for (int tag = 0; tag < num_tags; ++tag) {
      const bool is_array =
          tag == row.tag && tag >= SymbolTag::ARRAY_READ && tag <= SymbolTag::ARRAY_CONST;
      EXPECT_EQ(families_of(by_hand(tag, genuine->type)), is_array ? Names{row.operation} : Names{})
          << row.operation << ' ' << tag;
    }
  }
}

TEST_F(Recognisers, ArraysAreReadAndWrittenAtTheirOwnTypes) {
  const DataType* i = m.get_int_type();
  const DataType* r = m.get_rat_type();
  const DataType* a = m.get_array_type(i, r);
  const DataType* b = m.get_array_type(i, i);
  const auto type = [&](std::vector<const DataType*> operands, const DataType* result) {
    return m.get_function_type(operands, result);
  };
  const auto is_read = [&](const DataType* t) {
    return m.is_array_read(by_hand(SymbolTag::ARRAY_READ, t), nullptr, nullptr);
  };
  const auto is_write = [&](const DataType* t) {
    return m.is_array_write(by_hand(SymbolTag::ARRAY_WRITE, t), nullptr, nullptr);
  };
  const auto is_const = [&](const DataType* t) {
    return m.is_array_const(by_hand(SymbolTag::ARRAY_CONST, t), nullptr, nullptr);
  };
  EXPECT_TRUE(is_read(type({a, i}, r)));
  EXPECT_FALSE(is_read(type({a}, r)));
  EXPECT_FALSE(is_read(type({a, i, i}, r)));
  EXPECT_FALSE(is_read(type({a, r}, r)));
  EXPECT_FALSE(is_read(type({a, i}, i)));
  EXPECT_FALSE(is_read(type({i, i}, r)));
  EXPECT_FALSE(is_read(a));
  EXPECT_FALSE(is_read(r));
  EXPECT_TRUE(is_write(type({a, i, r}, a)));
  EXPECT_FALSE(is_write(type({a, i}, a)));
  EXPECT_FALSE(is_write(type({a, r, r}, a)));
  EXPECT_FALSE(is_write(type({a, i, i}, a)));
  EXPECT_FALSE(is_write(type({a, i, r}, b)));
  EXPECT_FALSE(is_write(type({b, i, r}, a)));
  EXPECT_FALSE(is_write(r));
  EXPECT_TRUE(is_const(type({r}, a)));
  EXPECT_FALSE(is_const(type({i}, a)));
  EXPECT_FALSE(is_const(type({r, r}, a)));
  EXPECT_FALSE(is_const(type({r}, r)));
  EXPECT_FALSE(is_const(a));
}

}  // namespace
}  // namespace quill
