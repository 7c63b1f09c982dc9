#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/manager_test.h"

namespace quill {
namespace {

using Types = std::vector<const DataType*>;

class TypesTest : public testing::ManagerTest {
 protected:
  // The text of the TermManager::error that the request throws.
  std::string error_of(const std::function<void()>& request) {
    const size_t types_before = m.get_universe()->size();
    const std::string text = testing::error_of<TermManager::error>(request);
    EXPECT_EQ(m.get_universe()->size(), types_before);
    return text;
  }
  const DataType* simple(const char* name) { return m.get_simple_type(name, false); }

  const DataType* bool_type = m.get_bool_type();
  const DataType* int_type = m.get_int_type();
  const DataType* rat_type = m.get_rat_type();
  const DataType* function = m.get_function_type({int_type}, int_type);
};

// --- Simple types ---

TEST_F(TypesTest, ASimpleTypeIsMadeOnce) {
  const DataType* t = m.get_simple_type("T", false);
  EXPECT_EQ(t->get_name(), "T");
  EXPECT_EQ(m.get_simple_type("T", false), t);
  EXPECT_EQ(m.get_simple_type("T", true), t);
}

TEST_F(TypesTest, AnUnknownNameYieldsNullWhenOnlyExistingTypesAreWanted) {
  const size_t before = m.get_universe()->size();
  EXPECT_EQ(m.get_simple_type("T", true), nullptr);
  EXPECT_EQ(m.get_universe()->size(), before);
  EXPECT_EQ(m.get_simple_type("T", true), nullptr);
}

// The table of names knows what get_simple_type made, and nothing else.
TEST_F(TypesTest, StandardTypesEnterTheTableOfNamesOnRequest) {
  EXPECT_EQ(m.get_simple_type("Bool", true), nullptr);
  EXPECT_EQ(m.get_simple_type("Bool", false), bool_type);
  EXPECT_EQ(m.get_simple_type("Bool", true), bool_type);
}

// --- Bit-vectors ---

TEST_F(TypesTest, ABitVectorTypeIsMadeOnceOfItsHeadAndWidth) {
  const DataType* t = m.get_bv_type(32);
  EXPECT_EQ(m.get_bv_type(32), t);
  EXPECT_EQ(t->to_str(), "(BitVec 32)");
  ASSERT_EQ(t->num_components(), 2U);
  EXPECT_EQ(t->get_component(0), simple("BitVec"));
  EXPECT_EQ(t->get_component(1)->get_name(), "32");
  EXPECT_EQ(t->get_component(1), simple("32"));
  size_t width = 0;
  EXPECT_TRUE(m.is_bv_type(t, &width));
  EXPECT_EQ(width, 32U);
  EXPECT_TRUE(m.is_bv_type(t, nullptr));
}

TEST_F(TypesTest, WidthsHaveTypesNamedInDecimal) {
  for (const size_t width : {size_t{0}, size_t{1}, size_t{64}, size_t{18446744073709551615U}}) {
    const DataType* t = m.get_type_from_width(width);
    EXPECT_EQ(m.get_type_from_width(width), t);
    EXPECT_EQ(m.get_width_from_type(t), width);
  }
  EXPECT_EQ(m.get_type_from_width(0)->get_name(), "0");
  EXPECT_EQ(m.get_type_from_width(18446744073709551615U)->get_name(), "18446744073709551615");
}

TEST_F(TypesTest, AUsersTypeNamedByANumberIsTheWidthType) {
  const DataType* user = simple("77");
  EXPECT_EQ(m.get_width_from_type(user), 0U);
  EXPECT_EQ(m.get_type_from_width(77), user);
  EXPECT_EQ(m.get_width_from_type(user), 77U);
}

TEST_F(TypesTest, ATypeThatIsNoWidthHasWidthZero) {
  EXPECT_EQ(m.get_width_from_type(int_type), 0U);
  EXPECT_EQ(m.get_width_from_type(m.get_bv_type(8)), 0U);
}

TEST_F(TypesTest, ACompoundThatOnlyLooksLikeABitVectorTypeHasWidthZero) {
  const DataType* t = m.get_compound_type({simple("BitVec"), simple("wide")});
  size_t width = 99;
  EXPECT_TRUE(m.is_bv_type(t, &width));
  EXPECT_EQ(width, 0U);
}

TEST_F(TypesTest, OtherTypesAreNoBitVectorTypes) {
  size_t width = 99;
  for (const DataType* t : {bool_type, int_type, simple("BitVec"), m.get_type_from_width(8),
                            m.get_fp_type(8, 23), m.get_array_type(int_type, int_type), function,
                            m.get_compound_type({}), m.get_compound_type({simple("BitVec")}),
                            m.get_compound_type({simple("BitVec"), simple("8"), simple("8")}),
                            m.get_compound_type({simple("8"), simple("BitVec")})}) {
    EXPECT_FALSE(m.is_bv_type(t, &width)) << t->to_str();
  }
  EXPECT_EQ(width, 99U);
}

// --- Floating point ---

TEST_F(TypesTest, AFloatingPointTypeIsMadeOnceOfItsHeadAndFormat) {
  const DataType* t = m.get_fp_type(8, 23);
  EXPECT_EQ(m.get_fp_type(8, 23), t);
  EXPECT_EQ(t->to_str(), "(FP |8:23|)");
  ASSERT_EQ(t->num_components(), 2U);
  EXPECT_EQ(t->get_component(0), simple("FP"));
  EXPECT_EQ(t->get_component(1)->get_name(), "8:23");
  size_t e = 0;
  size_t significand = 0;
  EXPECT_TRUE(m.is_fp_type(t, &e, &significand));
  EXPECT_EQ(e, 8U);
  EXPECT_EQ(significand, 23U);
}

TEST_F(TypesTest, EitherPartOfAFormatMayBeLeftOut) {
  const DataType* t = m.get_fp_type(11, 52);
  size_t part = 0;
  EXPECT_TRUE(m.is_fp_type(t, &part, nullptr));
  EXPECT_EQ(part, 11U);
  EXPECT_TRUE(m.is_fp_type(t, nullptr, &part));
  EXPECT_EQ(part, 52U);
  EXPECT_TRUE(m.is_fp_type(t, nullptr, nullptr));
}

TEST_F(TypesTest, FormatsAreOrderedPairs) { EXPECT_NE(m.get_fp_type(5, 10), m.get_fp_type(10, 5)); }

TEST_F(TypesTest, TooSmallFormatsAreRefused) {
  EXPECT_EQ(error_of([&] { m.get_fp_type(1, 10); }),
            "too small exponent and/or mantissa width for FP numbers: 1, 10 (min is 2, 2)");
  EXPECT_EQ(error_of([&] { m.get_fp_type(10, 1); }),
            "too small exponent and/or mantissa width for FP numbers: 10, 1 (min is 2, 2)");
  EXPECT_EQ(error_of([&] { m.get_fp_type(0, 0); }),
            "too small exponent and/or mantissa width for FP numbers: 0, 0 (min is 2, 2)");
  EXPECT_NO_THROW(m.get_fp_type(2, 2));
}

TEST_F(TypesTest, WithoutChecksAnyFormatHasAType) {
  m.set_typecheck_enabled(false);
  const DataType* t = m.get_fp_type(1, 10);
  EXPECT_EQ(t->to_str(), "(FP |1:10|)");
  size_t e = 0;
  EXPECT_TRUE(m.is_fp_type(t, &e, nullptr));
  EXPECT_EQ(e, 1U);
}

TEST_F(TypesTest, ACompoundThatOnlyLooksLikeAFloatingPointTypeHasWidthsZero) {
  const DataType* t = m.get_compound_type({simple("FP"), simple("8:23")});
  size_t e = 99;
  size_t significand = 99;
  EXPECT_TRUE(m.is_fp_type(t, &e, &significand));
  EXPECT_EQ(e, 0U);
  EXPECT_EQ(significand, 0U);
}

TEST_F(TypesTest, OtherTypesAreNoFloatingPointTypes) {
  size_t e = 99;
  for (const DataType* t : {bool_type, m.get_fprounding_type(), m.get_bv_type(8), simple("FP"),
                            m.get_compound_type({simple("FP")})}) {
    EXPECT_FALSE(m.is_fp_type(t, &e, nullptr)) << t->to_str();
  }
  EXPECT_EQ(e, 99U);
}

// --- Arrays ---

TEST_F(TypesTest, AnArrayTypeIsMadeOnceOfItsHeadIndexAndElement) {
  const DataType* t = m.get_array_type(int_type, rat_type);
  EXPECT_EQ(m.get_array_type(int_type, rat_type), t);
  EXPECT_NE(m.get_array_type(rat_type, int_type), t);
  EXPECT_EQ(t->to_str(), "(Array Int Real)");
  EXPECT_EQ(t->get_component(0), simple("Array"));
  const DataType* index = nullptr;
  const DataType* element = nullptr;
  EXPECT_TRUE(m.is_array_type(t, &index, &element));
  EXPECT_EQ(index, int_type);
  EXPECT_EQ(element, rat_type);
  EXPECT_FALSE(m.is_array_type(function, nullptr, nullptr));
  EXPECT_FALSE(m.is_array_type(m.get_bv_type(8), nullptr, nullptr));
}

TEST_F(TypesTest, ArraysOfBoolAreRefused) {
  const char* const text = "Arrays with Bool as argument are not supported";
  EXPECT_EQ(error_of([&] { m.get_array_type(bool_type, int_type); }), text);
  EXPECT_EQ(error_of([&] { m.get_array_type(int_type, bool_type); }), text);
  EXPECT_EQ(error_of([&] { m.get_array_type(function, bool_type); }), text);  // tested first
}

TEST_F(TypesTest, ArraysOfFunctionsAreRefused) {
  const char* const text = "Arrays with functions as arguments are not supported";
  EXPECT_EQ(error_of([&] { m.get_array_type(function, int_type); }), text);
  EXPECT_EQ(error_of([&] { m.get_array_type(int_type, function); }), text);
}

TEST_F(TypesTest, ArraysNest) {
  const DataType* t = int_type;
  for (int level = 0; level < 40; ++level) t = m.get_array_type(t, t);
  EXPECT_LT(t->to_str().size(), 1200U);
  EXPECT_EQ(m.get_universe()->size(), 16U + 40U);
}

// --- Functions ---

TEST_F(TypesTest, AFunctionTypeListsApplicationArgumentsAndResult) {
  const DataType* t = m.get_function_type({int_type, rat_type}, bool_type);
  EXPECT_EQ(m.get_function_type({int_type, rat_type}, bool_type), t);
  EXPECT_EQ(t->to_str(), "(-> Int Real Bool)");
  EXPECT_EQ(t->get_component(0), m.get_universe()->get_application_type());
  Types args = {bool_type, bool_type};
  const DataType* result = nullptr;
  EXPECT_TRUE(m.is_function_type(t, &args, &result));
  EXPECT_EQ(args, Types({int_type, rat_type}));
  EXPECT_EQ(result, bool_type);
  EXPECT_TRUE(m.is_function_type(t, nullptr, nullptr));
}

TEST_F(TypesTest, AFunctionTypeWithoutArgumentsIsNotRecognised) {
  const DataType* t = m.get_function_type({}, int_type);
  EXPECT_EQ(t->to_str(), "(-> Int)");
  Types args = {bool_type};
  const DataType* result = bool_type;
  EXPECT_FALSE(m.is_function_type(t, &args, &result));
  EXPECT_EQ(args, Types({bool_type}));
  EXPECT_EQ(result, bool_type);
}

TEST_F(TypesTest, OtherTypesAreNoFunctionTypes) {
  for (const DataType* t : {bool_type, m.get_universe()->get_application_type(), m.get_bv_type(8),
                            m.get_array_type(int_type, int_type),
                            m.get_compound_type({simple("->"), int_type, int_type})}) {
    EXPECT_FALSE(m.is_function_type(t, nullptr, nullptr)) << t->to_str();
  }
}

TEST_F(TypesTest, FunctionsOfFunctionsAreRefused) {
  const char* const text = "Higher-order functions not supported";
  EXPECT_EQ(error_of([&] { m.get_function_type({function}, int_type); }), text);
  EXPECT_EQ(error_of([&] { m.get_function_type({int_type, function}, int_type); }), text);
  EXPECT_EQ(error_of([&] { m.get_function_type({int_type}, function); }), text);
  EXPECT_EQ(error_of([&] { m.get_function_type({}, function); }), text);
}

TEST_F(TypesTest, BoolArgumentsAreRefusedWhileTheFlagIsSet) {
  const char* const text = "Functions with Bool arguments not supported";
  EXPECT_EQ(error_of([&] { m.get_function_type({bool_type}, int_type); }), text);
  EXPECT_EQ(error_of([&] { m.get_function_type({int_type, bool_type}, int_type); }), text);
  m.set_reject_bool_arguments(false);
  EXPECT_EQ(m.get_function_type({bool_type}, int_type)->to_str(), "(-> Bool Int)");
}

TEST_F(TypesTest, TheFirstOffendingArgumentDecidesTheMessage) {
  EXPECT_EQ(error_of([&] {
              m.get_function_type({bool_type, function}, int_type);
            }),
            "Functions with Bool arguments not supported");
  EXPECT_EQ(error_of([&] {
              m.get_function_type({function, bool_type}, int_type);
            }),
            "Higher-order functions not supported");
  EXPECT_EQ(error_of([&] { m.get_function_type({bool_type}, function); }),
            "Functions with Bool arguments not supported");
}

TEST_F(TypesTest, ABoolResultIsAllowed) {
  EXPECT_EQ(m.get_function_type({int_type}, bool_type)->to_str(), "(-> Int Bool)");
}

TEST_F(TypesTest, ARefusedRequestLeavesNothingForTheNext) {
  error_of([&] { m.get_function_type({int_type, rat_type, function}, int_type); });
  EXPECT_EQ(m.get_function_type({rat_type}, int_type)->to_str(), "(-> Real Int)");
  error_of([&] { m.get_function_type({int_type, rat_type, function}, int_type); });
  EXPECT_EQ(m.get_array_type(rat_type, int_type)->to_str(), "(Array Real Int)");
  error_of([&] { m.get_function_type({int_type, rat_type, function}, int_type); });
  EXPECT_EQ(m.get_bv_type(5)->to_str(), "(BitVec 5)");
}

// --- Compounds ---

TEST_F(TypesTest, ACompoundTypeHoldsItsComponentsInOrder) {
  const DataType* pair = simple("Pair");
  const DataType* t = m.get_compound_type({pair, int_type, rat_type});
  EXPECT_EQ(t->to_str(), "(Pair Int Real)");
  EXPECT_EQ(m.get_compound_type({pair, int_type, rat_type}), t);
}

TEST_F(TypesTest, TheEmptyCompoundIsMade) { EXPECT_EQ(m.get_compound_type({})->to_str(), "()"); }

TEST_F(TypesTest, CompoundsOfBoolOrFunctionsAreRefused) {
  const char* const text = "Higher-order compound types not supported";
  EXPECT_EQ(error_of([&] { m.get_compound_type({bool_type}); }), text);
  EXPECT_EQ(error_of([&] { m.get_compound_type({int_type, bool_type}); }), text);
  EXPECT_EQ(error_of([&] { m.get_compound_type({function, int_type}); }), text);
  m.set_reject_bool_arguments(false);
  EXPECT_EQ(error_of([&] { m.get_compound_type({int_type, bool_type}); }), text);
}

// --- Subtypes ---

TEST_F(TypesTest, TheSupertypeIsTheLargerOfRelatedTypes) {
  EXPECT_EQ(m.get_supertype(int_type, rat_type), rat_type);
  EXPECT_EQ(m.get_supertype(rat_type, int_type), rat_type);
  EXPECT_EQ(m.get_supertype(int_type, int_type), int_type);
  EXPECT_EQ(m.get_supertype(bool_type, bool_type), bool_type);
}

TEST_F(TypesTest, UnrelatedTypesHaveNoSupertype) {
  EXPECT_EQ(error_of([&] { m.get_supertype(bool_type, rat_type); }),
            "unrelated types: Bool and Real");
  EXPECT_EQ(error_of([&] { m.get_supertype(rat_type, bool_type); }),
            "unrelated types: Real and Bool");
  const DataType* bv8 = m.get_bv_type(8);
  const DataType* user = simple("a b");
  EXPECT_EQ(error_of([&] { m.get_supertype(bv8, user); }), "unrelated types: (BitVec 8) and |a b|");
}

// --- Finite domains ---

TEST_F(TypesTest, BoolBitVectorsAndRoundingModesAreFinite) {
  QNumber size;
  EXPECT_TRUE(m.is_finite_domain_type(bool_type, &size));
  EXPECT_EQ(size.to_str(), "2");
  EXPECT_TRUE(m.is_finite_domain_type(m.get_fprounding_type(), &size));
  EXPECT_EQ(size.to_str(), "4");
  EXPECT_TRUE(m.is_finite_domain_type(m.get_bv_type(8), &size));
  EXPECT_EQ(size.to_str(), "256");
  for (const DataType* t : {bool_type, m.get_fprounding_type(), m.get_bv_type(8)}) {
    EXPECT_TRUE(m.is_finite_domain_type(t, nullptr));
  }
}

// 61 is the largest width whose size is computed by a shift.
TEST_F(TypesTest, SizesOfWideBitVectorsAreExact) {
  const std::pair<size_t, const char*> sizes[] = {
      {0, "1"},
      {1, "2"},
      {61, "2305843009213693952"},
      {62, "4611686018427387904"},
      {63, "9223372036854775808"},
      {64, "18446744073709551616"},
      {100, "1267650600228229401496703205376"},
  };
  for (const auto& [width, expected] : sizes) {
    QNumber size;
    EXPECT_TRUE(m.is_finite_domain_type(m.get_bv_type(width), &size));
    EXPECT_EQ(size.to_str(), expected) << width;
  }
}

TEST_F(TypesTest, TheSizeOfA64BitVectorIsABigNumber) {
  QNumber size;
  EXPECT_TRUE(m.is_finite_domain_type(m.get_bv_type(64), &size));
  EXPECT_TRUE(size.is_big());
  EXPECT_TRUE(m.is_finite_domain_type(bool_type, &size));
  EXPECT_TRUE(size.is_big());  // once big, a target stays big
  EXPECT_EQ(size.to_str(), "2");
}

// Callers that read only the size get the number of bit patterns.
TEST_F(TypesTest, AFloatingPointTypeIsNotFiniteButItsSizeIsWritten) {
  QNumber size;
  EXPECT_FALSE(m.is_finite_domain_type(m.get_fp_type(8, 23), &size));
  EXPECT_EQ(size.to_str(), "4294967296");
  EXPECT_FALSE(m.is_finite_domain_type(m.get_fp_type(11, 52), &size));
  EXPECT_EQ(size.to_str(), "18446744073709551616");
  EXPECT_FALSE(m.is_finite_domain_type(m.get_fp_type(8, 23), nullptr));
}

TEST_F(TypesTest, OtherTypesAreNotFiniteAndWriteNoSize) {
  QNumber size = 99;
  for (const DataType* t :
       {int_type, rat_type, simple("T"), function,
        m.get_array_type(m.get_bv_type(1), m.get_bv_type(1)), m.get_compound_type({})}) {
    EXPECT_FALSE(m.is_finite_domain_type(t, &size)) << t->to_str();
  }
  EXPECT_EQ(size.to_str(), "99");
}

// --- Freeing ---

TEST_F(TypesTest, AFreedSimpleTypeIsForgotten) {
  const size_t before = m.get_universe()->size();
  m.free_type(simple("T"));
  EXPECT_EQ(m.get_universe()->size(), before);
  EXPECT_EQ(m.get_simple_type("T", true), nullptr);
  EXPECT_EQ(simple("T")->get_name(), "T");
}

TEST_F(TypesTest, AFreedCompoundTypeIsMadeAnew) {
  m.get_bv_type(8);
  const size_t before = m.get_universe()->size();
  m.free_type(m.get_bv_type(8));
  EXPECT_EQ(m.get_universe()->size(), before - 1);
  size_t width = 0;
  EXPECT_TRUE(m.is_bv_type(m.get_bv_type(8), &width));
  EXPECT_EQ(width, 8U);
}

TEST_F(TypesTest, ATypeThatTheTableOfNamesDoesNotKnowCanBeFreed) {
  m.get_bv_type(8);
  m.get_fp_type(8, 23);
  const size_t before = m.get_universe()->size();
  m.free_type(function);
  m.free_type(simple("Other"));
  EXPECT_EQ(m.get_universe()->size(), before - 1);
}

TEST_F(TypesTest, WhatWasMadeAndFreedLeavesNothing) {
  const std::string before = m.describe_state();
  for (int round = 0; round < 2; ++round) {
    const DataType* s = simple("S");
    const DataType* bits = m.get_bv_type(77);
    const DataType* single = m.get_fp_type(8, 23);
    const DataType* array = m.get_array_type(s, bits);
    const DataType* nested = m.get_array_type(array, array);
    const DataType* maps = m.get_function_type({nested, single}, array);
    const DataType* pair = m.get_compound_type({single, s});
    for (const DataType* t : {pair, maps, nested, array, s, bits, single}) m.free_type(t);
    m.free_type(m.get_type_from_width(77));
    m.free_type(simple("8:23"));
    EXPECT_EQ(m.describe_state(), before);
    EXPECT_EQ(m.check_consistency(), "");
  }
}

// Every table of the manager has an entry for others of the kind.
TEST_F(TypesTest, ATypeThatIsFreedTakesNothingElseAlong) {
  const DataType* s = simple("S");
  const DataType* bits = m.get_bv_type(8);
  m.make_equality_symbol(s);
  m.make_term_ite_symbol(s);
  m.make_array_read_symbol(s, bits);
  m.make_array_write_symbol(bits, bits);
  m.make_array_const_symbol(bits, s);
  m.make_fp_abs_symbol(8, 23);
  const Term_* x = m.make_constant(m.make_symbol("x", bits));
  const Term_* sum = m.make_bv_add(x, x);
  const std::string before = m.describe_state();
  m.free_type(simple("T"));
  m.free_type(m.get_array_type(s, s));
  m.free_type(m.get_type_from_width(9));
  EXPECT_EQ(m.describe_state(), before);
  EXPECT_EQ(m.make_bv_add(x, x), sum);
}

bool is_used(const TermManager& m, const DataType* t) {
  for (size_t i = 0; i < m.get_universe()->size(); ++i) {
    const DataType* user = m.get_universe()->type(i);
    for (size_t k = 0; k < user->num_components(); ++k) {
      if (user->get_component(k) == t) return true;
    }
  }
  for (size_t i = 0; i < m.get_signature()->size(); ++i) {
    if (m.get_signature()->symbol(i)->type == t) return true;
  }
  return false;
}

// The addresses of freed types are used again at once.
TEST_F(TypesTest, FreeingAtRandomLeavesTheTablesConsistent) {
  std::mt19937 random(3);
  const auto below = [&](size_t n) { return random() % n; };
  const size_t standard = m.get_universe()->size();
  const auto any = [&] {
    const size_t i = below(m.get_universe()->size() + 3 - standard);
    return i < 3 ? Types{int_type, rat_type, m.get_fprounding_type()}[i]
                 : m.get_universe()->type(standard + i - 3);
  };
  int freed = 0;
  for (int step = 0; step < 20000; ++step) {
    const DataType* t = any();
    try {
      switch (below(12)) {
        case 0:
          t = simple(("S" + std::to_string(below(6))).c_str());
          break;
        case 1:
          t = m.get_bv_type(below(6));
          break;
        case 2:
          t = m.get_fp_type(2 + below(3), 2 + below(3));
          break;
        case 3:
          t = m.get_array_type(t, any());
          break;
        case 4:
          t = m.get_compound_type({t, any()});
          break;
        case 5:
          m.make_equality_symbol(t);
          break;
        case 6:
          m.make_array_read_symbol(t, any());
          break;
        case 7:
          m.make_term_ite_symbol(t);
          break;
        case 8:
          m.make_bv_add_symbol(1 + below(5));
          break;
        case 9:
          if (below(20) == 0) m.gc({}, {}, {});
          break;
        default:
          break;
      }
    } catch (const Exception&) {  // a type that the request does not take
    }
    if (m.get_universe()->size() < 60 && below(2) == 0) continue;
    t = any();
    if (t == int_type || t == rat_type || t == m.get_fprounding_type() || is_used(m, t)) continue;
    m.free_type(t);
    ++freed;
    if (step % 50 == 0) {
      ASSERT_EQ(m.check_consistency(), "") << "step " << step;
    }
  }
  EXPECT_GT(freed, 1000);
  for (size_t w = 0; w < 6; ++w) {
    size_t width = 99;
    EXPECT_TRUE(m.is_bv_type(m.get_bv_type(w), &width));
    EXPECT_EQ(width, w);
  }
  EXPECT_EQ(m.check_consistency(), "");
}

#ifdef NDEBUG

// Misuse that debug builds stop at (test_misuse_checks.cpp). In all others what is left of the
// freed type is not taken for that of a type which gets its address.
class AFreedTypeInUse : public TypesTest {
 protected:
  // A new type at the address of `freed`, or null when the memory is not given again.
  const DataType* make_at(const DataType* freed) {
    for (int i = 0; i < 1000; ++i) {
      const DataType* t = simple(("new" + std::to_string(i)).c_str());
      if (t == freed) return t;
    }
    return nullptr;
  }
};

TEST_F(AFreedTypeInUse, IsForgottenByEqualityAndIfThenElse) {
  const DataType* old = simple("old");
  const Symbol* equal = m.make_equality_symbol(old);
  const Symbol* ite = m.make_term_ite_symbol(old);
  EXPECT_EQ(m.make_equality_symbol(old), equal);  // the latest answers
  EXPECT_EQ(m.make_term_ite_symbol(old), ite);
  m.free_type(old);
  const DataType* t = make_at(old);
  if (t == nullptr) GTEST_SKIP() << "memory is not given again";
  EXPECT_EQ(m.make_equality_symbol(t)->name, "`=_" + t->get_name() + "`");
  EXPECT_EQ(m.make_term_ite_symbol(t)->name, "`ite_" + t->get_name() + "`");
  const Term_* x = m.make_constant(m.make_symbol("x", t));
  EXPECT_EQ(m.make_equal(x, x)->symbol, m.make_equality_symbol(t));
  EXPECT_FALSE(m.is_term_ite(ite, nullptr));
}

TEST_F(AFreedTypeInUse, IsForgottenByArraysOnEitherSide) {
  for (const bool as_index : {true, false}) {
    const DataType* old = simple("old");
    const DataType* index = as_index ? old : int_type;
    const DataType* element = as_index ? int_type : old;
    m.make_array_read_symbol(index, element);
    m.make_array_write_symbol(index, element);
    m.make_array_const_symbol(index, element);
    m.free_type(old);
    const DataType* t = make_at(old);
    if (t == nullptr) GTEST_SKIP() << "memory is not given again";
    const std::string types = as_index ? t->get_name() + "_int`" : "int_" + t->get_name() + "`";
    if (as_index) {
      index = t;
    } else {
      element = t;
    }
    EXPECT_EQ(m.make_array_read_symbol(index, element)->name, "`read_" + types);
    EXPECT_EQ(m.make_array_write_symbol(index, element)->name, "`write_" + types);
    EXPECT_EQ(m.make_array_const_symbol(index, element)->name, "`const_" + types);
  }
}

TEST_F(AFreedTypeInUse, IsForgottenByTheLatestRequestForBitVectors) {
  const DataType* old = m.get_bv_type(8);
  const Term_* x = m.make_constant(m.make_symbol("x", old));
  m.make_bv_add(x, x);
  m.free_type(old);
  for (size_t w = 9; w < 1000; ++w) {
    const DataType* t = m.get_bv_type(w);
    if (t != old) continue;
    const Term_* y = m.make_constant(m.make_symbol("y", t));
    EXPECT_EQ(m.make_bv_add(y, y)->symbol->name, "`bvadd_" + std::to_string(w) + "`");
    return;
  }
  GTEST_SKIP() << "memory is not given again";
}

TEST_F(AFreedTypeInUse, IsForgottenAsAWidthAFormatAndAName) {
  m.get_bv_type(8);
  m.get_fp_type(8, 23);
  for (const DataType* old : {m.get_type_from_width(8), simple("8:23")}) {
    m.free_type(old);
    const DataType* t = make_at(old);
    if (t == nullptr) GTEST_SKIP() << "memory is not given again";
    EXPECT_EQ(m.get_width_from_type(t), 0U);
    EXPECT_EQ(simple(t->get_name().c_str()), t);
    EXPECT_EQ(m.check_consistency(), "");
  }
  size_t width = 0;
  EXPECT_TRUE(m.is_bv_type(m.get_bv_type(8), &width));
  EXPECT_EQ(width, 8U);
  size_t e = 0;
  size_t significand = 0;
  EXPECT_TRUE(m.is_fp_type(m.get_fp_type(8, 23), &e, &significand));
  EXPECT_EQ(e, 8U);
  EXPECT_EQ(significand, 23U);
}

// A user's type may have the name that the application type prints as.
TEST_F(AFreedTypeInUse, IsKeptIfEveryManagerHasIt) {
  simple("->");
  simple("Bool");
  const std::string before = m.describe_state();
  for (const DataType* t :
       {bool_type, rat_type, int_type, m.get_fprounding_type(), m.get_bv_type(1)->get_component(0),
        m.get_fp_type(8, 23)->get_component(0),
        m.get_array_type(int_type, int_type)->get_component(0),
        m.get_universe()->get_application_type()}) {
    m.free_type(t);
  }
  for (const DataType* t : {m.get_array_type(int_type, int_type), m.get_fp_type(8, 23),
                            simple("8:23"), m.get_bv_type(1), m.get_type_from_width(1)}) {
    m.free_type(t);
  }
  EXPECT_EQ(m.describe_state(), before);
  EXPECT_EQ(m.check_consistency(), "");
}

#endif

}  // namespace
}  // namespace quill
