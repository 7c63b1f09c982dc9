// Copying types: of every shape, in the order of the components, nested and shared.

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/error_of.h"

namespace quill {
namespace {

using Types = std::vector<const DataType*>;

class CopyingTypes : public ::testing::Test {
 protected:
  const DataType* copy(const DataType* type) {
    Types out;
    b.copy_types(a, {type}, out);
    EXPECT_EQ(out.size(), 1U);
    return out.at(0);
  }

  // The text of the error that the copy throws.
  std::string error_of_copy(const DataType* type) {
    return testing::error_of<TermManager::error>([&] { copy(type); });
  }

  TermManager a;
  TermManager b;
};

TEST_F(CopyingTypes, TheTypesOfEveryManagerAreThoseOfTheDestination) {
  const size_t before = b.get_universe()->size();
  Types out;
  b.copy_types(a,
               {a.get_bool_type(), a.get_rat_type(), a.get_int_type(), a.get_fprounding_type(),
                a.get_universe()->get_application_type()},
               out);
  EXPECT_EQ(out, (Types{b.get_bool_type(), b.get_rat_type(), b.get_int_type(),
                        b.get_fprounding_type(), b.get_universe()->get_application_type()}));
  EXPECT_EQ(b.get_universe()->size(), before);
}

TEST_F(CopyingTypes, TypesOfTheSameManagerAreTheirOwnCopies) {
  const Types types = {a.get_bv_type(8), a.get_simple_type("U", false),
                       a.get_array_type(a.get_int_type(), a.get_bv_type(8))};
  Types out;
  a.copy_types(a, types, out);
  EXPECT_EQ(out, types);
}

TEST_F(CopyingTypes, CopiesAreAppendedInOrder) {
  Types out = {b.get_bool_type()};
  b.copy_types(a, {a.get_bv_type(8), a.get_int_type(), a.get_bv_type(8)}, out);
  EXPECT_EQ(out, (Types{b.get_bool_type(), b.get_bv_type(8), b.get_int_type(), b.get_bv_type(8)}));
}

TEST_F(CopyingTypes, OfNoTypesNothingIsMade) {
  const size_t before = b.get_universe()->size();
  Types out = {b.get_bool_type()};
  b.copy_types(a, {}, out);
  EXPECT_EQ(out, Types{b.get_bool_type()});
  EXPECT_EQ(b.get_universe()->size(), before);
}

TEST_F(CopyingTypes, ParametricTypesAreMadeByTheirMakers) {
  EXPECT_EQ(copy(a.get_bv_type(32)), b.get_bv_type(32));
  EXPECT_EQ(copy(a.get_bv_type(0)), b.get_bv_type(0));
  EXPECT_EQ(copy(a.get_fp_type(8, 23)), b.get_fp_type(8, 23));
  EXPECT_EQ(copy(a.get_array_type(a.get_bv_type(8), a.get_rat_type())),
            b.get_array_type(b.get_bv_type(8), b.get_rat_type()));
  EXPECT_EQ(copy(a.get_function_type({a.get_int_type(), a.get_bv_type(3)}, a.get_bool_type())),
            b.get_function_type({b.get_int_type(), b.get_bv_type(3)}, b.get_bool_type()));
  EXPECT_EQ(copy(a.get_compound_type({a.get_int_type(), a.get_bv_type(3)})),
            b.get_compound_type({b.get_int_type(), b.get_bv_type(3)}));
  EXPECT_EQ(copy(a.get_compound_type({})), b.get_compound_type({}));
}

TEST_F(CopyingTypes, TheWidthAndTheFormatCanBeReadFromTheCopy) {
  size_t width = 0;
  EXPECT_TRUE(b.is_bv_type(copy(a.get_bv_type(17)), &width));
  EXPECT_EQ(width, 17U);
  size_t e = 0;
  size_t m = 0;
  EXPECT_TRUE(b.is_fp_type(copy(a.get_fp_type(3, 4)), &e, &m));
  EXPECT_EQ(e, 3U);
  EXPECT_EQ(m, 4U);
}

TEST_F(CopyingTypes, NamedTypesAreFoundByTheirNamesAfterwards) {
  const DataType* c = copy(a.get_simple_type("U", false));
  EXPECT_EQ(b.get_simple_type("U", true), c);
  EXPECT_EQ(c->get_name(), "U");
  for (const char* name : {"", "->", "a b", "Array", "8"}) {
    const DataType* named = copy(a.get_simple_type(name, false));
    EXPECT_EQ(named, b.get_simple_type(name, true)) << name;
    EXPECT_NE(named, b.get_universe()->get_application_type()) << name;
  }
  EXPECT_EQ(copy(a.get_type_from_width(8)), b.get_type_from_width(8));
}

TEST_F(CopyingTypes, FunctionTypesMayHaveBoolArguments) {
  a.set_reject_bool_arguments(false);
  const DataType* c = copy(a.get_function_type({a.get_bool_type()}, a.get_bool_type()));
  EXPECT_EQ(c->to_str(), "(-> Bool Bool)");
  EXPECT_TRUE(b.is_function_type(c, nullptr, nullptr));
}

// is_bv_type and is_fp_type say that these are bit-vectors of width 0 and floating point of format
// (0, 0).
TEST_F(CopyingTypes, CompoundsThatOnlyLookLikeParametricTypesStayWhatTheyAre) {
  const DataType* u = a.get_simple_type("U", false);
  for (const char* head : {"BitVec", "FP"}) {
    for (const DataType* parameter : {u, a.get_int_type(), a.get_bv_type(8)}) {
      const DataType* type = a.get_compound_type({a.get_simple_type(head, false), parameter});
      EXPECT_EQ(copy(type)->to_str(), type->to_str());
    }
  }
  EXPECT_EQ(b.get_simple_type("0", true), nullptr);
  EXPECT_EQ(b.get_simple_type("0:0", true), nullptr);
  EXPECT_EQ(copy(a.get_compound_type({a.get_simple_type("BitVec", false), u})),
            b.get_compound_type({b.get_simple_type("BitVec", true), b.get_simple_type("U", true)}));
  // The width was never asked for as such: "8" is a type like any other.
  const DataType* by_hand =
      a.get_compound_type({a.get_simple_type("BitVec", false), a.get_simple_type("9", false)});
  EXPECT_EQ(copy(by_hand), b.get_bv_type(9));
}

TEST_F(CopyingTypes, OtherCompoundsWithTheHeadOfArraysStayWhatTheyAre) {
  const DataType* head = a.get_simple_type("Array", false);
  const DataType* i = a.get_int_type();
  EXPECT_EQ(copy(a.get_compound_type({head, i}))->to_str(), "(Array Int)");
  EXPECT_EQ(copy(a.get_compound_type({head, i, i, i}))->to_str(), "(Array Int Int Int)");
}

// Formats too small for a destination that checks tell which component it came to first.
TEST_F(CopyingTypes, ElementTypesAreCopiedBeforeIndexTypes) {
  a.set_typecheck_enabled(false);
  const DataType* array = a.get_array_type(a.get_fp_type(1, 1), a.get_fp_type(0, 0));
  EXPECT_EQ(error_of_copy(array),
            "too small exponent and/or mantissa width for FP numbers: 0, 0 (min is 2, 2)");
  EXPECT_EQ(error_of_copy(a.get_array_type(a.get_fp_type(1, 1), array)),
            "too small exponent and/or mantissa width for FP numbers: 0, 0 (min is 2, 2)");
  EXPECT_EQ(error_of_copy(a.get_array_type(array, a.get_fp_type(0, 1))),
            "too small exponent and/or mantissa width for FP numbers: 0, 1 (min is 2, 2)");
}

TEST_F(CopyingTypes, OtherComponentsAreCopiedInOrder) {
  a.set_typecheck_enabled(false);
  const DataType* small = a.get_fp_type(1, 1);
  const DataType* smaller = a.get_fp_type(0, 0);
  const char* message =
      "too small exponent and/or mantissa width for FP numbers: 1, 1 (min is 2, 2)";
  EXPECT_EQ(error_of_copy(a.get_compound_type({small, smaller})), message);
  EXPECT_EQ(error_of_copy(a.get_compound_type({a.get_compound_type({small, smaller}), smaller})),
            message);
  EXPECT_EQ(error_of_copy(a.get_function_type({small}, smaller)), message);
}

TEST_F(CopyingTypes, AFormatThatTheDestinationRefusesIsCopiedWithoutChecks) {
  a.set_typecheck_enabled(false);
  const DataType* type = a.get_fp_type(1, 10);
  EXPECT_EQ(error_of_copy(type),
            "too small exponent and/or mantissa width for FP numbers: 1, 10 (min is 2, 2)");
  b.set_typecheck_enabled(false);
  EXPECT_EQ(copy(type), b.get_fp_type(1, 10));
}

// Without the table of copies this would take 2^40 steps.
TEST_F(CopyingTypes, ASharedGraphIsCopiedInItsOwnSize) {
  const auto nest = [](TermManager& m) {
    const DataType* type = m.get_int_type();
    for (int level = 0; level < 40; ++level) type = m.get_array_type(type, type);
    return type;
  };
  const auto nest_compounds = [](TermManager& m) {
    const DataType* type = m.get_int_type();
    for (int level = 0; level < 40; ++level) type = m.get_compound_type({type, type, type});
    return type;
  };
  const DataType* arrays = nest(a);
  const DataType* compounds = nest_compounds(a);
  const size_t before = b.get_universe()->size();
  const DataType* copied_arrays = copy(arrays);
  const DataType* copied_compounds = copy(compounds);
  EXPECT_EQ(b.get_universe()->size(), before + 80);
  EXPECT_EQ(copied_arrays, nest(b));
  EXPECT_EQ(copied_compounds, nest_compounds(b));
}

}  // namespace
}  // namespace quill
