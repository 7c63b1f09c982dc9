#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <new>
#include <set>
#include <string>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/failing_memory.h"
#include "tests/support/manager_test.h"
#include "tests/support/operators.h"

namespace quill {
namespace {

using Terms = std::vector<const Term_*>;
using Symbols = std::vector<const Symbol*>;
using Types = std::vector<const DataType*>;
using Ids = std::vector<uint64_t>;

// What a new manager holds.
constexpr size_t standard_terms = 2;
constexpr size_t standard_symbols = 19;
constexpr size_t standard_types =
    15;  // the application type, seven simple ones, seven of functions

class GarbageCollectionTest : public testing::ManagerTest {
 protected:
  void collect(const Terms& terms, const Symbols& symbols = {}, const Types& types = {}) {
    m.gc(terms, symbols, types);
    EXPECT_EQ(m.check_consistency(), "");
  }

  const Term_* int_constant(const std::string& name) { return constant(name, m.get_int_type()); }
  size_t num_terms() const { return m.get_bank()->size(); }
  size_t num_symbols() const { return m.get_signature()->size(); }
  size_t num_types() const { return m.get_universe()->size(); }
  bool holds_type(const DataType* type) const {
    for (size_t i = 0; i < num_types(); ++i) {
      if (m.get_universe()->type(i) == type) return true;
    }
    return false;
  }
  Ids ids() const {
    Ids all;
    for (const Term_* t : *m.get_bank()) all.push_back(t->id);
    return all;
  }
};

//------------------------------------------------------------------------------------------------
// What survives

TEST_F(GarbageCollectionTest, WithNoRootsWhatEveryManagerHasSurvives) {
  int_constant("x");
  const Types basic = {m.get_bool_type(), m.get_rat_type(), m.get_int_type(),
                       m.get_fprounding_type(), m.get_universe()->get_application_type()};
  const Term_* yes = m.make_true();
  const Term_* no = m.make_false();
  collect({});
  EXPECT_EQ(find("x"), nullptr);
  for (const char* name :
       {"`true`", "`false`", "`and`", "`or`", "`not`", "`iff`", "`=_rat`", "`<=_rat`", "`+_rat`",
        "`*_rat`", "`=_int`", "`<=_int`", "`+_int`", "`*_int`", "`floor`", "`fprounding_even`",
        "`fprounding_zero`", "`fprounding_plus_inf`", "`fprounding_minus_inf`"}) {
    EXPECT_NE(find(name), nullptr) << name;
  }
  EXPECT_EQ(num_symbols(), standard_symbols);
  for (const DataType* type : basic) EXPECT_TRUE(holds_type(type));
  EXPECT_EQ(num_types(), standard_types);
  EXPECT_EQ(m.make_true(), yes);
  EXPECT_EQ(m.make_false(), no);
  EXPECT_EQ(ids(), Ids({0, 1}));
}

TEST_F(GarbageCollectionTest, ANewManagerLosesNothing) {
  EXPECT_EQ(num_terms(), standard_terms);
  EXPECT_EQ(num_symbols(), standard_symbols);
  EXPECT_EQ(num_types(), standard_types);
  collect({});
  EXPECT_EQ(num_terms(), standard_terms);
  EXPECT_EQ(num_symbols(), standard_symbols);
  EXPECT_EQ(num_types(), standard_types);
}

TEST_F(GarbageCollectionTest, StandardSymbolsKeepTheirMeaning) {
  collect({});
  EXPECT_EQ(m.get_tag(find("`and`")), SymbolTag::AND);
  EXPECT_EQ(m.get_tag(find("`=_rat`")), SymbolTag::EQUAL);
  EXPECT_EQ(m.get_tag(find("`floor`")), SymbolTag::FLOOR);
  EXPECT_TRUE(m.is_subtype(m.get_int_type(), m.get_rat_type()));
  EXPECT_EQ(m.make_equality_symbol(m.get_int_type()), find("`=_int`"));
  EXPECT_EQ(m.get_fprounding_minus_inf(), find("`fprounding_minus_inf`"));
  EXPECT_EQ(num_symbols(), standard_symbols);
}

TEST_F(GarbageCollectionTest, ARootKeepsTheTermsBelowTheirSymbolsAndTheirTypes) {
  const DataType* a = m.get_simple_type("A", false);
  const DataType* b = m.get_simple_type("B", false);
  const DataType* ab = m.get_array_type(a, b);
  m.get_simple_type("C", false);
  const DataType* type = m.get_function_type({ab, b}, a);
  const Symbol* f = m.make_symbol("f", type);
  const Term_* x = constant("x", ab);
  const Term_* y = constant("y", b);
  constant("z", b);
  const Term_* fxy = m.make_uninterpreted_function(f, {x, y});
  m.make_equal(fxy, fxy);
  collect({fxy});
  EXPECT_EQ(ids(), Ids({0, 1, x->id, y->id, fxy->id}));
  EXPECT_EQ(num_symbols(), standard_symbols + 3);
  EXPECT_EQ(find("f"), f);
  EXPECT_EQ(find("x"), x->symbol);
  EXPECT_EQ(find("y"), y->symbol);
  EXPECT_EQ(find("z"), nullptr);
  EXPECT_EQ(num_types(), standard_types + 4);
  for (const DataType* kept : {a, b, ab, type}) EXPECT_TRUE(holds_type(kept));
  EXPECT_EQ(m.get_simple_type("A", /*only_existing=*/true), a);
  EXPECT_EQ(m.get_simple_type("C", /*only_existing=*/true), nullptr);
  EXPECT_EQ(m.make_uninterpreted_function(f, {constant("x", ab), constant("y", b)}), fxy);
  EXPECT_EQ(num_terms(), 5U);
}

TEST_F(GarbageCollectionTest, AnOperatorSurvivesUnderAKeptTermOrAsARootOnly) {
  const Symbol* add = m.make_bv_add_symbol(8);
  collect({}, {add});
  EXPECT_EQ(m.make_bv_add_symbol(8), add);
  EXPECT_TRUE(m.is_bv_add(add, nullptr));

  const Term_* x = constant("x", m.get_bv_type(8));
  const Term_* sum = m.make_bv_add(x, x);
  collect({sum});
  EXPECT_EQ(m.make_bv_add_symbol(8), add);
  EXPECT_EQ(m.get_tag(add), SymbolTag::BV_ADD);

  collect({x});
  EXPECT_EQ(find("`bvadd_8`"), nullptr);
  EXPECT_EQ(num_symbols(), standard_symbols + 1);
  const Symbol* again = m.make_bv_add_symbol(8);
  EXPECT_EQ(num_symbols(), standard_symbols + 2);
  EXPECT_EQ(find("`bvadd_8`"), again);
  size_t width = 0;
  EXPECT_TRUE(m.is_bv_add(again, &width));
  EXPECT_EQ(width, 8U);
  EXPECT_EQ(m.make_bv_add(x, x)->symbol, again);
}

TEST_F(GarbageCollectionTest, ATypeThatNoSymbolUsesSurvivesAsARoot) {
  const DataType* array = m.get_array_type(m.get_bv_type(32), m.get_fp_type(8, 23));
  const size_t before = num_types();
  m.get_bv_type(33);
  collect({}, {}, {array});
  EXPECT_EQ(num_types(), before);
  EXPECT_EQ(m.get_array_type(m.get_bv_type(32), m.get_fp_type(8, 23)), array);
  EXPECT_EQ(num_types(), before);
}

TEST_F(GarbageCollectionTest, ASymbolThatNoTermUsesSurvivesAsARootWithItsTypes) {
  const DataType* s = m.get_simple_type("S", false);
  const Symbol* f = m.make_symbol("f", m.get_function_type({s, m.get_bv_type(3)}, s));
  const size_t types = num_types();
  collect({}, {f});
  EXPECT_EQ(find("f"), f);
  EXPECT_EQ(num_types(), types);
  EXPECT_EQ(num_terms(), standard_terms);
}

TEST_F(GarbageCollectionTest, RootsMayRepeatAndBeKeptAnyway) {
  const Term_* x = int_constant("x");
  const Term_* sum = m.make_plus(x, x);
  collect({m.make_true(), x, sum, sum, x}, {x->symbol, x->symbol, sum->symbol},
          {m.get_int_type(), m.get_universe()->get_application_type(), m.get_int_type()});
  EXPECT_EQ(ids(), Ids({0, 1, x->id, sum->id}));
  EXPECT_EQ(num_symbols(), standard_symbols + 1);
  EXPECT_EQ(num_types(), standard_types);
}

TEST_F(GarbageCollectionTest, WhatRootsShareSurvivesOnce) {
  const Term_* x = int_constant("x");
  const Term_* shared = m.make_plus(x, x);
  const Term_* a = m.make_leq(shared, x);
  const Term_* b = m.make_floor(shared);
  collect({a, b});
  EXPECT_EQ(ids().size(), standard_terms + 4);
  EXPECT_EQ(m.make_leq(m.make_plus(x, x), x), a);
  EXPECT_EQ(m.make_floor(m.make_plus(x, x)), b);
  EXPECT_EQ(num_terms(), standard_terms + 4);
}

//------------------------------------------------------------------------------------------------
// All operators and tables

// What the maker of such indices takes.
testing::Parameters indices_for(testing::Indices indices, TermManager& m) {
  using testing::Indices;
  switch (indices) {
    case Indices::None:
      break;
    case Indices::Type:
      return {{}, {m.get_bv_type(4)}, {}};
    case Indices::Modulus:
      return {{}, {}, 7};
    case Indices::Width:
      return {{24}, {}, {}};
    case Indices::TwoWidths:
    case Indices::Amount:
    case Indices::Format:
    case Indices::FormatAndItsBits:
    case Indices::BitsAndFormat:
      return {{5, 11}, {}, {}};
    case Indices::Part:
      return {{7, 4, 16}, {}, {}};
    case Indices::Array:
      return {{}, {m.get_bv_type(4), m.get_rat_type()}, {}};
    case Indices::TwoFormats:
      return {{5, 11, 8, 23}, {}, {}};
    case Indices::WidthAndFormat:
    case Indices::FormatAndWidth:
      return {{6, 8, 9}, {}, {}};
  }
  return {};
}

// A maker for each operator whose symbols are not in every manager from the start.
std::vector<std::function<const Symbol*(TermManager&)>> operator_makers() {
  std::vector<std::function<const Symbol*(TermManager&)>> makers;
  for (const testing::Operator& op : testing::operators()) {
    if (op.make_symbol == nullptr) continue;
    makers.push_back(
        [&op](TermManager& m) { return op.make_symbol(m, indices_for(op.indices, m)); });
  }
  return makers;
}

TEST_F(GarbageCollectionTest, TheMakersCoverEveryOperator) {
  std::set<SymbolTag::tag> tags;
  for (const auto& make : operator_makers()) tags.insert(m.get_tag(make(m)));
  EXPECT_EQ(tags.size(), num_operator_families + 2);
  EXPECT_EQ(tags.count(SymbolTag::NONE), 0U);
}

TEST_F(GarbageCollectionTest, EveryOperatorGoesAndIsMadeAnew) {
  for (const auto& make : operator_makers()) {
    const Symbol* symbol = make(m);
    const std::string name = symbol->name;
    const SymbolTag::tag tag = m.get_tag(symbol);
    const size_t symbols = num_symbols();
    const size_t types = num_types();
    collect({});
    EXPECT_EQ(find(name.c_str()), nullptr) << name;
    ASSERT_EQ(num_symbols(), standard_symbols) << name;
    ASSERT_EQ(num_types(), standard_types) << name;
    symbol = make(m);
    EXPECT_EQ(symbol->name, name);
    EXPECT_EQ(m.get_tag(symbol), tag);
    EXPECT_EQ(num_symbols(), symbols);
    EXPECT_EQ(num_types(), types) << name;
    EXPECT_EQ(m.check_consistency(), "");
    collect({});
  }
}

TEST_F(GarbageCollectionTest, EveryOperatorSurvivesAsARootAmongAllOthers) {
  const auto makers = operator_makers();
  for (const auto& kept : makers) {
    for (const auto& make : makers) make(m);
    const Symbol* symbol = kept(m);
    const std::string name = symbol->name;
    const SymbolTag::tag tag = m.get_tag(symbol);
    collect({}, {symbol});
    ASSERT_EQ(num_symbols(), standard_symbols + 1) << name;
    EXPECT_EQ(find(name.c_str()), symbol);
    EXPECT_EQ(m.get_tag(symbol), tag);
    EXPECT_EQ(kept(m), symbol) << name;
    EXPECT_EQ(num_symbols(), standard_symbols + 1) << name;
  }
}

TEST_F(GarbageCollectionTest, BothMapsOfModularCongruenceAreSwept) {
  const Symbol* seven = m.make_int_modular_congruence_symbol(QNumber(7));
  m.make_int_modular_congruence_symbol(QNumber(8));
  collect({}, {seven});
  EXPECT_EQ(find("`int_mod_congr_8`"), nullptr);
  QNumber modulus;
  EXPECT_TRUE(m.is_int_modular_congruence(seven, &modulus));
  EXPECT_EQ(modulus, QNumber(7));
  EXPECT_EQ(m.make_int_modular_congruence_symbol(QNumber(7)), seven);
  const Symbol* eight = m.make_int_modular_congruence_symbol(QNumber(8));
  EXPECT_STREQ(eight->name, "`int_mod_congr_8`");
  EXPECT_TRUE(m.is_int_modular_congruence(eight, &modulus));
  EXPECT_EQ(modulus, QNumber(8));
}

TEST_F(GarbageCollectionTest, BothMapsOfConversionFromBitsAreSwept) {
  m.make_fp_from_ieeebv_symbol(8, 23);
  collect({});
  EXPECT_EQ(num_symbols(), standard_symbols);
  size_t e = 0;
  size_t s = 0;
  const Symbol* again = m.make_fp_from_ieeebv_symbol(8, 23);
  EXPECT_TRUE(m.is_fp_from_ieeebv(again, &e, &s));
  EXPECT_EQ(e, 8U);
  EXPECT_EQ(s, 23U);
}

// A new type may get the address of the freed one, and must not be taken for it.
TEST_F(GarbageCollectionTest, WidthAndFormatTypesAreForgotten) {
  m.get_bv_type(8);
  m.get_fp_type(8, 23);
  collect({});
  for (int i = 0; i < 20; ++i) {
    const DataType* s = m.get_simple_type("S" + std::to_string(i), false);
    EXPECT_EQ(m.get_width_from_type(s), 0U);
  }
  size_t width = 0;
  EXPECT_TRUE(m.is_bv_type(m.get_bv_type(8), &width));
  EXPECT_EQ(width, 8U);
  EXPECT_EQ(m.get_bv_type(8)->to_str(), "(BitVec 8)");
  EXPECT_EQ(m.get_fp_type(8, 23)->to_str(), "(FP |8:23|)");
}

TEST_F(GarbageCollectionTest, AWidthTypeSurvivesWithItsWidth) {
  const DataType* type = m.get_bv_type(8);
  m.get_bv_type(9);
  collect({}, {}, {type});
  EXPECT_EQ(m.get_bv_type(8), type);
  EXPECT_EQ(m.get_width_from_type(type->get_component(1)), 8U);
  EXPECT_EQ(num_types(), standard_types + 2);
}

// A new symbol may get the address of the freed one, and must not be taken for it.
TEST_F(GarbageCollectionTest, NewSymbolsAreNotTakenForFreedOnes) {
  for (const auto& make : operator_makers()) make(m);
  m.make_number(QNumber(5));
  m.make_bv_number(QNumber(5), 8);
  collect({});
  for (int i = 0; i < 200; ++i) {
    const Symbol* s = m.make_symbol("c" + std::to_string(i), m.get_int_type());
    EXPECT_EQ(m.get_tag(s), SymbolTag::NONE);
    EXPECT_FALSE(m.is_number(s, nullptr));
    EXPECT_FALSE(m.is_interpreted(s));
    EXPECT_FALSE(m.is_bv_add(s, nullptr));
    EXPECT_FALSE(m.is_term_ite(s, nullptr));
  }
}

//------------------------------------------------------------------------------------------------
// Numerals

TEST_F(GarbageCollectionTest, NumeralsGoAndAreMadeAnew) {
  const QNumber big = QNumber::from_string("123456789012345678901234567890");
  for (int round = 0; round < 3; ++round) {
    const Terms numerals = {m.make_number(QNumber(5)),  m.make_number(QNumber(1, 3)),
                            m.make_number(big),         m.make_bv_number(QNumber(5), 8),
                            m.make_bv_number(big, 100), m.make_fp_bits_number(QNumber(9), 5, 10),
                            m.make_fp_plus_inf(5, 10)};
    const char* const names[] = {"5",
                                 "1/3",
                                 "123456789012345678901234567890",
                                 "5_8",
                                 "123456789012345678901234567890_100",
                                 "9_5_10",
                                 "31744_5_10"};
    for (size_t i = 0; i < numerals.size(); ++i) {
      EXPECT_STREQ(numerals[i]->symbol->name, names[i]);
      EXPECT_TRUE(m.is_number(numerals[i]->symbol, nullptr));
      EXPECT_EQ(numerals[i]->id, standard_terms + i);
    }
    collect({});
    EXPECT_EQ(num_terms(), standard_terms);
    EXPECT_EQ(num_symbols(), standard_symbols);
  }
}

TEST_F(GarbageCollectionTest, AKeptNumeralIsFoundByItsValue) {
  const Term_* five = m.make_number(QNumber(5));
  m.make_number(QNumber(6));
  const Term_* bits = m.make_bv_number(QNumber(5), 8);
  const Term_* x = int_constant("x");
  const Term_* sum = m.make_plus(x, five);
  collect({sum, bits});
  EXPECT_EQ(m.make_number(QNumber(5)), five);
  EXPECT_EQ(m.make_bv_number(QNumber(5), 8), bits);
  EXPECT_EQ(num_terms(), standard_terms + 4);
  EXPECT_EQ(find("6"), nullptr);
}

TEST_F(GarbageCollectionTest, TheSymbolOfANumeralSurvivesWithoutItsTerm) {
  const Symbol* five = m.make_number(QNumber(5))->symbol;
  collect({}, {five});
  EXPECT_EQ(num_terms(), standard_terms);
  QNumber value;
  EXPECT_TRUE(m.is_number(five, &value));
  EXPECT_EQ(value, QNumber(5));
  const Term_* again = m.make_number(QNumber(5));
  EXPECT_EQ(again->symbol, five);
  EXPECT_EQ(m.check_consistency(), "");
  collect({again});
  EXPECT_EQ(m.make_number(QNumber(5)), again);
}

// Both forms of one number: the second finds the symbol by its name.
TEST_F(GarbageCollectionTest, NumeralsOfBothFormsAreTakenOut) {
  const QNumber small(5);
  const QNumber big = QNumber::from_string("99999999999999999999999999");
  QNumber big_five(big);
  big_five = small;  // a big number of the same value
  ASSERT_TRUE(big_five.is_big());
  const Term_* t = m.make_number(small);
  EXPECT_EQ(m.make_number(big_five), t);
  collect({});
  EXPECT_EQ(num_symbols(), standard_symbols);
  const Term_* again = m.make_number(big_five);
  EXPECT_EQ(m.make_number(small), again);
  collect({again});
  EXPECT_EQ(m.make_number(big_five), again);
}

TEST_F(GarbageCollectionTest, AUsersSymbolThatBecameANumeralStaysOneWhileItLives) {
  const Symbol* s = m.make_symbol("12", m.get_int_type());
  m.make_number(QNumber(12));
  collect({}, {s});
  EXPECT_TRUE(m.is_number(s, nullptr));
  collect({});
  const Symbol* again = m.make_symbol("12", m.get_int_type());
  EXPECT_FALSE(m.is_number(again, nullptr));
}

TEST_F(GarbageCollectionTest, ManyNumeralsComeAndGo) {
  for (int round = 0; round < 3; ++round) {
    Terms kept;
    for (int i = 0; i < 3000; ++i) {
      const Term_* t = m.make_number(QNumber(i, 7));
      if (i % 100 == 0) kept.push_back(t);
    }
    collect(kept);
    ASSERT_EQ(num_terms(), standard_terms + 30);
    for (size_t i = 0; i < kept.size(); ++i) {
      ASSERT_EQ(m.make_number(QNumber(static_cast<int>(100 * i), 7)), kept[i]);
    }
  }
}

//------------------------------------------------------------------------------------------------
// Names and types that were freed

TEST_F(GarbageCollectionTest, ANamelessSymbolGoesLikeAnyOther) {
  const Symbol* x = int_constant("x")->symbol;
  m.free_symbol(x);
  const Symbol* second = m.make_symbol("x", m.get_rat_type());
  EXPECT_EQ(num_symbols(), standard_symbols + 2);
  collect({}, {second});
  EXPECT_EQ(num_symbols(), standard_symbols + 1);
  EXPECT_EQ(find("x"), second);
}

TEST_F(GarbageCollectionTest, ANamelessSymbolSurvivesUnderAKeptTerm) {
  const Term_* x = int_constant("x");
  m.free_symbol(x->symbol);
  int_constant("x");
  collect({x});
  EXPECT_EQ(num_symbols(), standard_symbols + 1);
  EXPECT_EQ(find("x"), nullptr);
  EXPECT_STREQ(x->symbol->name, "x");
  EXPECT_NE(int_constant("x"), x);
}

TEST_F(GarbageCollectionTest, AnOperatorWithoutItsNameIsTakenOutOfItsTables) {
  m.free_symbol(m.make_bv_add_symbol(8));
  m.free_symbol(m.make_number(QNumber(5))->symbol);
  m.free_symbol(m.make_equality_symbol(m.get_bv_type(8)));
  EXPECT_EQ(m.check_consistency(), "");
  collect({});
  EXPECT_EQ(num_symbols(), standard_symbols);
  EXPECT_EQ(find("`bvadd_8`"), nullptr);
  const Symbol* add = m.make_bv_add_symbol(8);
  EXPECT_EQ(find("`bvadd_8`"), add);
  const Term_* five = m.make_number(QNumber(5));
  EXPECT_EQ(find("5"), five->symbol);
}

TEST_F(GarbageCollectionTest, AFreedTypeIsNotFreedAgain) {
  m.free_type(m.get_array_type(m.get_int_type(), m.get_rat_type()));
  m.free_type(m.get_simple_type("S", false));
  collect({});
  EXPECT_EQ(num_types(), standard_types);
  EXPECT_EQ(m.get_simple_type("S", /*only_existing=*/true), nullptr);
}

TEST_F(GarbageCollectionTest, AFreedSuffixIsFoundAgain) {
  for (int i = 0; i < 5; ++i) m.make_unique_symbol("x", m.get_int_type());
  collect({}, {find("x"), find("x_3")});
  EXPECT_STREQ(m.make_unique_symbol("x", m.get_int_type())->name, "x_0");
  EXPECT_STREQ(m.make_unique_symbol("x", m.get_int_type())->name, "x_1");
  EXPECT_STREQ(m.make_unique_symbol("x", m.get_int_type())->name, "x_2");
  EXPECT_STREQ(m.make_unique_symbol("x", m.get_int_type())->name, "x_4");
}

TEST_F(GarbageCollectionTest, NamesOfFreshVariablesAreNotGivenAgain) {
  m.make_fresh_variable(m.get_int_type());
  const Term_* second = m.make_fresh_variable(m.get_int_type());
  collect({second});
  EXPECT_EQ(find("'1"), nullptr);
  EXPECT_EQ(find("'2"), second->symbol);
  EXPECT_STREQ(m.make_fresh_variable(m.get_int_type())->symbol->name, "'3");
}

//------------------------------------------------------------------------------------------------
// Repetition, ids, other operations

TEST_F(GarbageCollectionTest, ASecondCollectionOfTheSameRootsFreesNothing) {
  const Term_* x = int_constant("x");
  const Term_* sum = m.make_plus(x, m.make_number(QNumber(1)));
  m.make_times(x, x);
  collect({sum});
  const Ids before = ids();
  collect({sum});
  EXPECT_EQ(ids(), before);
  EXPECT_EQ(m.get_last_collection().terms, 0U);
  EXPECT_EQ(m.get_last_collection().symbols, 0U);
  EXPECT_EQ(m.get_last_collection().types, 0U);
}

TEST_F(GarbageCollectionTest, TheGenerationCountsCollections) {
  EXPECT_EQ(m.gc_generation(), 0U);
  collect({});
  EXPECT_EQ(m.gc_generation(), 1U);
  collect({});
  EXPECT_EQ(m.gc_generation(), 2U);
}

TEST_F(GarbageCollectionTest, SurvivorsKeepTheirPlacesAndIdsAndFreedIdsComeBackInOrder) {
  Terms all;
  for (int i = 0; i < 8; ++i) all.push_back(int_constant("x" + std::to_string(i)));  // 2 ... 9
  collect({all[1], all[4], all[7]});
  EXPECT_EQ(ids(), Ids({0, 1, 3, 6, 9}));
  EXPECT_STREQ(all[4]->symbol->name, "x4");
  EXPECT_EQ(int_constant("x4"), all[4]);
  for (const uint64_t id : Ids{2, 4, 5, 7, 8, 10}) {
    EXPECT_EQ(int_constant("y" + std::to_string(id))->id, id);
  }
}

TEST_F(GarbageCollectionTest, OtherWalksFindTheirMarksClear) {
  const Term_* x = int_constant("x");
  const Term_* y = int_constant("y");
  const Term_* sum = m.make_plus(x, x);
  collect({sum, y});
  EXPECT_EQ(m.substitute(sum, {x}, {y}), m.make_plus(y, y));
  collect({sum, y});
  EXPECT_EQ(m.substitute(sum, {x}, {y}), m.make_plus(y, y));
}

TEST_F(GarbageCollectionTest, TheStatisticsSayWhatWasFreed) {
  const DataType* s = m.get_simple_type("S", false);
  m.get_array_type(s, s);
  for (int i = 0; i < 64 + 128; ++i) int_constant("x" + std::to_string(i));
  const TermBank::MemoryUse before = m.get_bank()->memory_use();
  EXPECT_EQ(before.slab_bytes, 1024U + 2048 + 4096);  // 64, 128 and 256 nodes without arguments
  collect({});
  const TermManager::CollectionStatistics& freed = m.get_last_collection();
  EXPECT_EQ(freed.terms, 192U);
  EXPECT_EQ(freed.symbols, 192U);
  EXPECT_EQ(freed.types, 2U);
  EXPECT_EQ(freed.slabs, 2U);
  EXPECT_EQ(freed.slab_bytes, 2048U + 4096);
  EXPECT_EQ(freed.index_bytes, 8 * (512U - 64));
  EXPECT_EQ(m.get_bank()->memory_use().slab_bytes, 1024U);
  collect({});
  EXPECT_EQ(m.get_last_collection().slab_bytes, 0U);
}

//------------------------------------------------------------------------------------------------
// Depth and size

TEST_F(GarbageCollectionTest, TermsAMillionDeepSurviveAndGo) {
  const Symbol* f = m.make_symbol("f", m.get_function_type({m.get_int_type()}, m.get_int_type()));
  const Term_* x = int_constant("x");
  const Term_* t = x;
  const Term_* middle = nullptr;
  for (int i = 0; i < 1000000; ++i) {
    t = m.make_uninterpreted_function(f, {t});
    if (i == 499999) middle = t;
  }
  m.gc({t}, {}, {});
  EXPECT_EQ(num_terms(), standard_terms + 1000001);
  EXPECT_EQ(m.make_uninterpreted_function(f, {t->args[0]}), t);
  m.gc({middle}, {}, {});
  EXPECT_EQ(num_terms(), standard_terms + 500001);
  EXPECT_EQ(m.get_last_collection().terms, 500000U);
  collect({});
  EXPECT_EQ(num_terms(), standard_terms);
  EXPECT_LT(m.get_bank()->memory_use().slab_bytes, 10000U);
  EXPECT_LT(m.get_bank()->memory_use().index_bytes, 10000U);
}

TEST_F(GarbageCollectionTest, TypesAHundredThousandDeepSurviveAndGo) {
  const DataType* type = m.get_int_type();
  for (int i = 0; i < 100000; ++i) type = m.get_array_type(m.get_int_type(), type);
  const Symbol* s = m.make_symbol("deep", type);
  collect({}, {}, {type});
  EXPECT_EQ(num_types(), standard_types + 100000);
  s = m.make_symbol("deep", type);
  collect({m.make_constant(s)});
  EXPECT_EQ(num_types(), standard_types + 100000);
  EXPECT_EQ(find("deep"), s);
  collect({});
  EXPECT_EQ(num_types(), standard_types);
}

// 2^60 paths lead to the innermost type.
TEST_F(GarbageCollectionTest, SharedComponentsOfATypeAreGoneIntoOnce) {
  const DataType* type = m.get_int_type();
  for (int i = 0; i < 60; ++i) type = m.get_array_type(type, type);
  collect({}, {}, {type});
  EXPECT_EQ(num_types(), standard_types + 60);
}

// 2^60 paths lead to x.
TEST_F(GarbageCollectionTest, SharedTermsAreWalkedOnce) {
  const Term_* t = int_constant("x");
  for (int i = 0; i < 60; ++i) t = m.make_plus(t, t);
  collect({t, t->args[0]});
  EXPECT_EQ(num_terms(), standard_terms + 61);
}

TEST_F(GarbageCollectionTest, TermsOfManyArgumentsSurviveAndGo) {
  const Symbol* wide =
      m.make_symbol("wide", m.get_function_type(Types(3000, m.get_int_type()), m.get_int_type()));
  Terms args;
  for (int i = 0; i < 3000; ++i) args.push_back(int_constant("x" + std::to_string(i)));
  const Term_* t = m.make_uninterpreted_function(wide, args);
  collect({t});
  EXPECT_EQ(num_terms(), standard_terms + 3001);
  EXPECT_EQ(m.make_uninterpreted_function(wide, args), t);
  collect({args[0]}, {wide});
  EXPECT_EQ(num_terms(), standard_terms + 1);
}

//------------------------------------------------------------------------------------------------
// Exhausted memory

TEST_F(GarbageCollectionTest, ACollectionThatRunsOutOfMemoryChangesNothing) {
  const DataType* s = m.get_simple_type("S", false);
  const DataType* deep = m.get_array_type(m.get_array_type(s, s), m.get_bv_type(8));
  const Symbol* f = m.make_symbol("f", m.get_function_type({deep}, s));
  Terms roots;
  for (int i = 0; i < 300; ++i) {
    const Term_* t = m.make_uninterpreted_function(f, {constant("x" + std::to_string(i), deep)});
    if (i % 2 == 0) roots.push_back(t);
    m.make_number(QNumber(i));
  }
  m.make_bv_add_symbol(8);
  const Ids before = ids();
  const size_t symbols = num_symbols();
  const size_t types = num_types();
  size_t k = 0;
  for (;; ++k) {
    bool failed = false;
    {
      const testing::FailingMemory after(k);
      try {
        m.gc(roots, {}, {});
      } catch (const std::bad_alloc&) {
        failed = true;
      }
    }
    ASSERT_EQ(m.check_consistency(), "");
    if (!failed) break;
    ASSERT_EQ(ids(), before);
    ASSERT_EQ(num_symbols(), symbols);
    ASSERT_EQ(num_types(), types);
    ASSERT_EQ(m.gc_generation(), 0U);
    ASSERT_EQ(m.make_number(QNumber(7))->symbol, find("7"));
    ASSERT_TRUE(m.is_bv_add(find("`bvadd_8`"), nullptr));
  }
  EXPECT_GT(k, 20U);
  EXPECT_EQ(num_terms(), standard_terms + 300);
  EXPECT_EQ(num_symbols(), standard_symbols + 151);
  EXPECT_EQ(m.gc_generation(), 1U);
}

//------------------------------------------------------------------------------------------------
// Several managers

TEST_F(GarbageCollectionTest, OtherManagersAreNotTouched) {
  TermManager other;
  const Term_* x = other.make_constant(other.make_symbol("x", other.get_int_type()));
  int_constant("x");
  collect({});
  EXPECT_EQ(other.make_constant(other.make_symbol("x", other.get_int_type())), x);
  EXPECT_EQ(other.gc_generation(), 0U);
}

}  // namespace
}  // namespace quill
