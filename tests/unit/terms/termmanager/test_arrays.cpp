#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/manager_test.h"

namespace quill {
namespace {

class Arrays : public testing::ManagerTest {
 protected:
  const DataType* type_of(const Term_* t) const { return t->type(); }

  const DataType* integer = m.get_int_type();
  const DataType* real = m.get_rat_type();
  const DataType* bv8 = m.get_bv_type(8);
};

// --- Symbols ---

TEST_F(Arrays, ReadIsNamedByItsTypesAndMadeOnce) {
  const Symbol* s = m.make_array_read_symbol(integer, real);
  EXPECT_STREQ(s->name, "`read_int_rat`");
  EXPECT_EQ(m.get_tag(s), 40);
  EXPECT_EQ(m.make_array_read_symbol(integer, real), s);
  EXPECT_EQ(s->type->num_components(), 4U);
  EXPECT_EQ(s->type->get_component(1), m.get_array_type(integer, real));
  EXPECT_EQ(s->type->get_component(2), integer);
  EXPECT_EQ(s->type->get_component(3), real);
}

TEST_F(Arrays, OtherTypesAreNamedAsTheyArePrinted) {
  EXPECT_STREQ(m.make_array_write_symbol(bv8, bv8)->name, "`write_(BitVec 8)_(BitVec 8)`");
  EXPECT_STREQ(m.make_array_const_symbol(integer, m.get_fp_type(8, 23))->name,
               "`const_int_(FP |8:23|)`");
  EXPECT_STREQ(m.make_array_read_symbol(integer, m.get_array_type(integer, real))->name,
               "`read_int_(Array Int Real)`");
  EXPECT_STREQ(m.make_array_read_symbol(m.get_simple_type("S", false), real)->name, "`read_S_rat`");
}

TEST_F(Arrays, SortNamedLikeAnAbbreviationIsKeptApart) {
  const DataType* rat = m.get_simple_type("rat", /*only_existing=*/false);
  EXPECT_STREQ(m.make_array_read_symbol(rat, integer)->name, "`read_|rat|_int`");
  EXPECT_STREQ(m.make_array_read_symbol(real, integer)->name, "`read_rat_int`");
}

TEST_F(Arrays, PairsOfEqualHashAreKeptApart) {
  EXPECT_NE(m.make_array_read_symbol(integer, real), m.make_array_read_symbol(real, integer));
  // The hash of two equal types is 0.
  EXPECT_NE(m.make_array_read_symbol(integer, integer), m.make_array_read_symbol(bv8, bv8));
  const DataType* idx = nullptr;
  const DataType* elem = nullptr;
  EXPECT_TRUE(m.is_array_read(m.make_array_read_symbol(real, integer), &idx, &elem));
  EXPECT_EQ(idx, real);
  EXPECT_EQ(elem, integer);
}

TEST_F(Arrays, RecognisersGoByTheTag) {
  const Symbol* s = m.make_array_read_symbol(integer, real);
  const DataType* idx = bv8;
  const DataType* elem = bv8;
  EXPECT_FALSE(m.is_array_write(s, &idx, &elem));
  EXPECT_FALSE(m.is_array_const(s, &idx, &elem));
  EXPECT_EQ(idx, bv8);
  EXPECT_EQ(elem, bv8);
  EXPECT_TRUE(m.is_array_read(s, &idx, &elem));
  EXPECT_EQ(idx, integer);
  EXPECT_EQ(elem, real);
}

TEST_F(Arrays, RecognisersTellTheTypesOfNestedArrays) {
  const DataType* inner = m.get_array_type(bv8, real);
  const DataType* idx = nullptr;
  const DataType* elem = nullptr;
  EXPECT_TRUE(m.is_array_read(m.make_array_read_symbol(integer, inner), &idx, &elem));
  EXPECT_EQ(idx, integer);
  EXPECT_EQ(elem, inner);
  idx = elem = nullptr;
  EXPECT_TRUE(m.is_array_write(m.make_array_write_symbol(integer, inner), &idx, &elem));
  EXPECT_EQ(idx, integer);
  EXPECT_EQ(elem, inner);
  idx = elem = nullptr;
  EXPECT_TRUE(m.is_array_const(m.make_array_const_symbol(integer, inner), &idx, &elem));
  EXPECT_EQ(idx, integer);
  EXPECT_EQ(elem, inner);
}

TEST_F(Arrays, SymbolsOverBoolOrFunctionsAreRefused) {
  const DataType* function = m.get_function_type({integer}, integer);
  const auto before = sizes();
  EXPECT_EQ(error_of([&] { m.make_array_read_symbol(integer, m.get_bool_type()); }),
            "Arrays with Bool as argument are not supported");
  EXPECT_EQ(error_of([&] { m.make_array_write_symbol(m.get_bool_type(), integer); }),
            "Arrays with Bool as argument are not supported");
  EXPECT_EQ(error_of([&] { m.make_array_const_symbol(function, integer); }),
            "Arrays with functions as arguments are not supported");
  EXPECT_EQ(sizes(), before);
}

// --- Terms ---

TEST_F(Arrays, ReadWriteAndConstGetTheirSymbolsFromTheArray) {
  const DataType* type = m.get_array_type(bv8, real);
  const Term_* a = constant("a", type);
  const Term_* i = constant("i", bv8);
  const Term_* v = constant("v", real);
  const Term_* write = m.make_array_write(a, i, v);
  EXPECT_EQ(type_of(write), type);
  EXPECT_STREQ(write->symbol->name, "`write_(BitVec 8)_rat`");
  const Term_* read = m.make_array_read(write, i);
  EXPECT_EQ(type_of(read), real);
  EXPECT_STREQ(read->symbol->name, "`read_(BitVec 8)_rat`");
  const Term_* all = m.make_array_const(type, v);
  EXPECT_EQ(type_of(all), type);
  EXPECT_EQ(all->symbol->arity, 1U);
  EXPECT_EQ(all->args[0], v);
}

TEST_F(Arrays, ElementsAndIndicesMayBeOfASubtype) {
  const Term_* a = constant("a", m.get_array_type(real, real));
  const Term_* i = constant("i", integer);
  EXPECT_EQ(m.make_array_write(a, i, i)->args[1], i);
}

TEST_F(Arrays, ConstOfATypeThatIsNoArrayIsRefused) {
  const Term_* v = constant("v", integer);
  const auto before = sizes();
  EXPECT_EQ(error_of([&] { m.make_array_const(integer, v); }),
            "type error. type Int is not an array");
  EXPECT_EQ(error_of([&] { m.make_array_const(bv8, v); }),
            "type error. type (BitVec 8) is not an array");
  EXPECT_EQ(sizes(), before);
}

TEST_F(Arrays, TermThatIsNoArrayIsRefused) {
  const Term_* x = constant("x", bv8);
  const Term_* i = constant("i", integer);
  const auto before = sizes();
  EXPECT_EQ(error_of([&] { m.make_array_read(x, i); }), "type error. term x is not an array");
  EXPECT_EQ(error_of([&] { m.make_array_write(x, i, i); }), "type error. term x is not an array");
  EXPECT_EQ(sizes(), before);
}

TEST_F(Arrays, CompoundsThatOnlyResembleAnArrayAreRefused) {
  const Term_* i = constant("i", integer);
  const DataType* head = m.get_array_type(integer, integer)->get_component(0);
  const DataType* pair = m.get_compound_type({head, integer});
  const DataType* quadruple = m.get_compound_type({head, integer, integer, integer});
  const DataType* other = m.get_compound_type({m.get_simple_type("Pair", false), integer, integer});
  EXPECT_EQ(error_of([&] { m.make_array_const(pair, i); }),
            "type error. type (Array Int) is not an array");
  EXPECT_EQ(error_of([&] { m.make_array_const(quadruple, i); }),
            "type error. type (Array Int Int Int) is not an array");
  EXPECT_EQ(error_of([&] { m.make_array_const(other, i); }),
            "type error. type (Pair Int Int) is not an array");
}

TEST_F(Arrays, IndexAndValueAreLeftToTheTypecheck) {
  const Term_* a = constant("a", m.get_array_type(integer, integer));
  const Term_* r = constant("r", real);
  EXPECT_EQ(error_of([&] { m.make_array_read(a, r); }),
            "type error. term r has type Real, but Int was expected. (make_array_read)");
  EXPECT_NE(find("`read_int_int`"), nullptr);
  const Term_* i = constant("i", integer);
  EXPECT_EQ(error_of([&] { m.make_array_write(a, i, r); }),
            "type error. term r has type Real, but Int was expected. (make_array_write)");
  EXPECT_NE(find("`write_int_int`"), nullptr);
  EXPECT_EQ(error_of([&] { m.make_array_const(type_of(a), r); }),
            "type error. term r has type Real, but Int was expected. (make_array_const)");
  EXPECT_NE(find("`const_int_int`"), nullptr);
}

}  // namespace
}  // namespace quill
