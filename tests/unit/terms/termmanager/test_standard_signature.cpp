#include <gtest/gtest.h>

#include <new>
#include <string>
#include <type_traits>
#include <vector>

#include "quill/terms/termmanager/term_manager.h"
#include "tests/support/error_of.h"
#include "tests/support/failing_memory.h"

namespace quill {
namespace {

struct StandardSymbol {
  const char* name;  // as it is stored
  const char* type;
  uint64_t arity;
  int tag;
};

const StandardSymbol standard_signature[] = {
    {"`true`", "Bool", 0, 1},
    {"`false`", "Bool", 0, 2},
    {"`not`", "(-> Bool Bool)", 1, 5},
    {"`and`", "(-> Bool Bool Bool)", 2, 3},
    {"`or`", "(-> Bool Bool Bool)", 2, 4},
    {"`iff`", "(-> Bool Bool Bool)", 2, 6},
    {"`+_rat`", "(-> Real Real Real)", 2, 7},
    {"`*_rat`", "(-> Real Real Real)", 2, 8},
    {"`<=_rat`", "(-> Real Real Bool)", 2, 10},
    {"`=_rat`", "(-> Real Real Bool)", 2, 11},
    {"`+_int`", "(-> Int Int Int)", 2, 7},
    {"`*_int`", "(-> Int Int Int)", 2, 8},
    {"`<=_int`", "(-> Int Int Bool)", 2, 10},
    {"`=_int`", "(-> Int Int Bool)", 2, 11},
    {"`floor`", "(-> Real Int)", 1, 9},
    {"`fprounding_even`", "FPRounding", 0, 0},
    {"`fprounding_zero`", "FPRounding", 0, 0},
    {"`fprounding_plus_inf`", "FPRounding", 0, 0},
    {"`fprounding_minus_inf`", "FPRounding", 0, 0},
};

TEST(Construction, MakesTheStandardSignature) {
  const TermManager m;
  for (const StandardSymbol& expected : standard_signature) {
    const Symbol* s = m.get_signature()->get_symbol(expected.name);
    ASSERT_NE(s, nullptr) << expected.name;
    EXPECT_STREQ(s->name, expected.name);
    EXPECT_EQ(s->type->to_str(), expected.type) << expected.name;
    EXPECT_EQ(s->arity, expected.arity) << expected.name;
    EXPECT_EQ(m.get_tag(s), expected.tag) << expected.name;
    EXPECT_TRUE(m.is_interpreted(s)) << expected.name;
  }
}

TEST(Construction, MakesNoOtherSymbol) {
  const TermManager m;
  EXPECT_EQ(m.get_signature()->size(), std::size(standard_signature));
}

TEST(Construction, SymbolsAreStoredBetweenBackquotesOnly) {
  const TermManager m;
  for (const StandardSymbol& expected : standard_signature) {
    const std::string stored = expected.name;
    const std::string bare = stored.substr(1, stored.size() - 2);
    EXPECT_EQ(m.get_signature()->get_symbol(bare.c_str()), nullptr) << bare;
  }
}

// The application type, seven simple types, and seven function types.
TEST(Construction, MakesNoOtherType) {
  TermManager m;
  EXPECT_EQ(m.get_universe()->size(), 15U);
  for (const char* name : {"Bool", "Real", "Int", "Array", "BitVec", "FPRounding", "FP"}) {
    m.get_simple_type(name, false);
  }
  EXPECT_EQ(m.get_universe()->size(), 15U);
}

TEST(Construction, NamesTheStandardTypes) {
  const TermManager m;
  EXPECT_EQ(m.get_bool_type()->get_name(), "Bool");
  EXPECT_EQ(m.get_rat_type()->get_name(), "Real");
  EXPECT_EQ(m.get_int_type()->get_name(), "Int");
  EXPECT_EQ(m.get_fprounding_type()->get_name(), "FPRounding");
}

TEST(Construction, IntIsASubtypeOfRealAndNotTheOtherWayRound) {
  const TermManager m;
  EXPECT_TRUE(m.is_subtype(m.get_int_type(), m.get_rat_type()));
  EXPECT_FALSE(m.is_subtype(m.get_rat_type(), m.get_int_type()));
  EXPECT_FALSE(m.is_subtype(m.get_bool_type(), m.get_int_type()));
}

TEST(Construction, MakesTrueAndFalseWithTheFirstIds) {
  const TermManager m;
  EXPECT_EQ(m.make_true()->id, 0U);
  EXPECT_EQ(m.make_false()->id, 1U);
  EXPECT_EQ(m.get_bank()->size(), 2U);
}

TEST(Construction, TrueAndFalseAreTheTermsOfTheirSymbols) {
  TermManager m;
  const Symbol* true_symbol = m.get_signature()->get_symbol("`true`");
  const Symbol* false_symbol = m.get_signature()->get_symbol("`false`");
  EXPECT_NE(m.make_true(), m.make_false());
  EXPECT_EQ(m.make_true()->symbol, true_symbol);
  EXPECT_EQ(m.make_false()->symbol, false_symbol);
  EXPECT_EQ(m.make_term(true_symbol, {}), m.make_true());
  EXPECT_EQ(m.make_constant(false_symbol), m.make_false());
}

TEST(Construction, TheStandardEqualitiesAreThoseOfTheirTypes) {
  TermManager m;
  EXPECT_STREQ(m.make_equality_symbol(m.get_rat_type())->name, "`=_rat`");
  EXPECT_STREQ(m.make_equality_symbol(m.get_int_type())->name, "`=_int`");
  EXPECT_EQ(m.get_signature()->size(), 19U);
}

TEST(Construction, SwitchesHaveTheirInitialValues) {
  const TermManager m;
  EXPECT_TRUE(m.get_typecheck_enabled());
  EXPECT_FALSE(m.get_delegate_enabled());
  EXPECT_TRUE(m.get_reject_bool_arguments());
  EXPECT_EQ(m.get_delegate(), nullptr);
}

TEST(Construction, SwitchesCanBeSet) {
  TermManager m;
  TermManager other;
  m.set_typecheck_enabled(false);
  m.set_delegate_enabled(true);
  m.set_reject_bool_arguments(false);
  m.set_delegate(&other);
  EXPECT_FALSE(m.get_typecheck_enabled());
  EXPECT_TRUE(m.get_delegate_enabled());
  EXPECT_FALSE(m.get_reject_bool_arguments());
  EXPECT_EQ(m.get_delegate(), &other);
}

TEST(Construction, AManagerIsNeitherCopiedNorMoved) {
  EXPECT_FALSE(std::is_copy_constructible_v<TermManager>);
  EXPECT_FALSE(std::is_copy_assignable_v<TermManager>);
  EXPECT_FALSE(std::is_move_constructible_v<TermManager>);
  EXPECT_FALSE(std::is_move_assignable_v<TermManager>);
}

TEST(Construction, AManagerIsATermFactory) {
  EXPECT_TRUE((std::is_base_of_v<TermFactory, TermManager>));
  EXPECT_TRUE(std::is_abstract_v<TermFactory>);
  EXPECT_TRUE(std::has_virtual_destructor_v<TermFactory>);
}

TEST(Construction, TheStoresAreReadOnly) {
  EXPECT_TRUE(
      (std::is_same_v<decltype(std::declval<TermManager&>().get_universe()), const TypeUniverse*>));
  EXPECT_TRUE(
      (std::is_same_v<decltype(std::declval<TermManager&>().get_signature()), const Signature*>));
  EXPECT_TRUE((std::is_same_v<decltype(std::declval<TermManager&>().get_bank()), const TermBank*>));
}

TEST(Construction, ManagersAreIndependent) {
  TermManager a;
  TermManager b;
  EXPECT_NE(a.get_bool_type(), b.get_bool_type());
  a.make_symbol("x", a.get_int_type());
  EXPECT_EQ(b.get_signature()->get_symbol("x"), nullptr);
}

// --- Interpreted symbols ---

TEST(AddInterpretedSymbol, StoresTheNameBetweenBackquotesWithItsTag) {
  TermManager m;
  const Symbol* s = m.add_interpreted_symbol("op", m.get_int_type(), SymbolTag::BV_ADD);
  EXPECT_STREQ(s->name, "`op`");
  EXPECT_EQ(s->type, m.get_int_type());
  EXPECT_EQ(m.get_tag(s), SymbolTag::BV_ADD);
  EXPECT_EQ(m.get_signature()->get_symbol("`op`"), s);
}

TEST(AddInterpretedSymbol, ASecondRegistrationOverwritesTheTag) {
  TermManager m;
  const Symbol* s = m.add_interpreted_symbol("op", m.get_int_type(), SymbolTag::BV_ADD);
  EXPECT_EQ(m.add_interpreted_symbol("op", m.get_int_type(), SymbolTag::BV_SUB), s);
  EXPECT_EQ(m.get_tag(s), SymbolTag::BV_SUB);
}

TEST(AddInterpretedSymbol, ANameOfAnotherTypeIsRefusedAndKeepsItsTag) {
  TermManager m;
  const Symbol* s = m.add_interpreted_symbol("op", m.get_int_type(), SymbolTag::BV_ADD);
  const auto request = [&] {
    m.add_interpreted_symbol("op", m.get_bool_type(), SymbolTag::BV_SUB);
  };
  EXPECT_EQ(testing::error_of<Exception>(request),
            "the symbol `op` already exists with type Int, it can't be declared with type Bool");
  EXPECT_EQ(m.get_tag(s), SymbolTag::BV_ADD);
}

// The 19 symbols of a new manager and three more fill the first buckets of the table of tags, so
// the failures include that of its growth.
TEST(AddInterpretedSymbol, AFailedRegistrationLeavesNoSymbol) {
  TermManager m;
  for (const char* name : {"a", "b", "c"}) {
    m.add_interpreted_symbol(name, m.get_int_type(), SymbolTag::BV_ADD);
  }
  size_t k = 0;
  for (;; ++k) {
    try {
      const testing::FailingMemory after(k);
      m.add_interpreted_symbol("d", m.get_int_type(), SymbolTag::BV_SUB);
      break;
    } catch (const std::bad_alloc&) {
    }
    ASSERT_EQ(m.get_signature()->size(), 22U) << "allocation " << k;
    ASSERT_EQ(m.get_signature()->get_symbol("`d`"), nullptr);
  }
  EXPECT_GE(k, 2U);  // the record and the buckets
  EXPECT_EQ(m.get_tag(m.get_signature()->get_symbol("`d`")), SymbolTag::BV_SUB);
}

// --- Errors ---

TEST(TermManagerError, IsAnExceptionThatKeepsItsClassWhenStreamedInto) {
  bool caught = false;
  try {
    throw TermManager::error("width ") << 7;
  } catch (const TermManager::error& e) {
    caught = true;
    EXPECT_EQ(typeid(e), typeid(TermManager::error));
    const TermManager::error copy = e;
    EXPECT_STREQ(copy.what(), "width 7");
  }
  EXPECT_TRUE(caught);
  EXPECT_TRUE((std::is_base_of_v<Exception, TermManager::error>));
}

// --- Exhausted memory ---

TEST(Construction, ThatRunsOutOfMemoryLeaksNothing) {
  size_t k = 0;
  for (;; ++k) {
    const testing::FailingMemory after(k);
    try {
      const TermManager m;
      break;
    } catch (const std::bad_alloc&) {
    }
  }
  EXPECT_GT(k, 60U);  // three stores, 15 types, 19 symbols and a vector of 31 buckets in each table
}

}  // namespace
}  // namespace quill
