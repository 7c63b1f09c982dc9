#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"

namespace quill {
namespace {

using Types = std::vector<const DataType*>;

class TypesTest : public ::testing::Test {
 protected:
  // The text of the TermManager::error that the request throws.
  std::string error_of(const std::function<void()>& request) {
    const size_t types_before = m.get_universe()->size();
    std::string text = "no error";
    try {
      request();
    } catch (const TermManager::error& e) {
      text = e.what();
    }
    EXPECT_EQ(m.get_universe()->size(), types_before);
    return text;
  }
  const DataType* simple(const char* name) { return m.get_simple_type(name, false); }

  TermManager m;
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
  for (int level = 0; level < 40; level++) t = m.get_array_type(t, t);
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

}  // namespace
}  // namespace quill
