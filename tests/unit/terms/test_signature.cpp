#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <new>
#include <random>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include "quill/terms/signature.h"
#include "quill/terms/type_universe.h"
#include "quill/utils/entry_count.h"
#include "quill/utils/exception.h"
#include "quill/utils/hash_set.h"
#include "tests/support/colliding_names.h"
#include "tests/support/error_of.h"
#include "tests/support/failing_memory.h"

namespace quill {
namespace {

using Types = std::vector<const DataType*>;

class SignatureTest : public ::testing::Test {
 protected:
  const DataType* function(Types args, const DataType* result) {
    args.insert(args.begin(), universe.get_application_type());
    args.push_back(result);
    return universe.make_type(args);
  }

  // The free name that the rule of unique names leads to.
  std::string unique_name(const std::string& base) {
    if (signature.get_symbol(base.c_str()) == nullptr) return base;
    return base + "_" + std::to_string(signature.lowest_free_suffix(base));
  }

  TypeUniverse universe;
  Signature signature{&universe};
  const DataType* bool_type = universe.make_type("Bool");
  const DataType* int_type = universe.make_type("Int");
};

TEST_F(SignatureTest, IsNotCopied) {
  EXPECT_FALSE(std::is_copy_constructible_v<Signature>);
  EXPECT_FALSE(std::is_copy_assignable_v<Signature>);
  EXPECT_FALSE(std::is_copy_constructible_v<Symbol>);
}

TEST_F(SignatureTest, StartsEmpty) {
  EXPECT_EQ(signature.size(), 0U);
  EXPECT_EQ(signature.get_symbol("x"), nullptr);
}

// --- Records ---

TEST_F(SignatureTest, ASymbolOfAFunctionTypeHasAsManyArgumentsAsTheType) {
  const DataType* type = function({int_type, int_type}, bool_type);
  const Symbol* f = signature.add_symbol("f", type);
  EXPECT_STREQ(f->name, "f");
  EXPECT_EQ(f->arity, 2U);
  EXPECT_EQ(f->type, type);
  EXPECT_EQ(f->get_output_type(), bool_type);
}

TEST_F(SignatureTest, ASymbolOfASimpleTypeIsAConstant) {
  const Symbol* c = signature.add_symbol("c", int_type);
  EXPECT_EQ(c->arity, 0U);
  EXPECT_EQ(c->type, int_type);
  EXPECT_EQ(c->get_output_type(), int_type);
}

TEST_F(SignatureTest, ASymbolOfACompoundThatIsNoApplicationIsAConstant) {
  const DataType* type = universe.make_type(Types{bool_type, int_type, int_type});
  const Symbol* c = signature.add_symbol("c", type);
  EXPECT_EQ(c->arity, 0U);
  EXPECT_EQ(c->get_output_type(), type);
}

TEST_F(SignatureTest, AnApplicationWithoutArgumentsIsAConstantOfItsResultType) {
  const DataType* type = function({}, int_type);
  const Symbol* c = signature.add_symbol("c", type);
  EXPECT_EQ(c->arity, 0U);
  EXPECT_EQ(c->type, type);
  EXPECT_EQ(c->get_output_type(), int_type);
}

TEST_F(SignatureTest, TheNameIsCopied) {
  char name[] = "xyz";
  const Symbol* s = signature.add_symbol(name, int_type);
  name[0] = 'a';
  EXPECT_STREQ(s->name, "xyz");
  EXPECT_EQ(signature.get_symbol("xyz"), s);
  EXPECT_EQ(signature.get_symbol("ayz"), nullptr);
}

// --- Names ---

TEST_F(SignatureTest, FindsExactNamesOnly) {
  const Symbol* s = signature.add_symbol("ab", int_type);
  EXPECT_EQ(signature.get_symbol("ab"), s);
  for (const char* other : {"", "a", "abc", "AB", "ab ", "`ab`"}) {
    EXPECT_EQ(signature.get_symbol(other), nullptr) << other;
  }
}

TEST_F(SignatureTest, AnyByteStringMayBeAName) {
  const char* const names[] = {"", " ", "`and`", "'1", "|", "\\", "\xff\xfe", "a\nb"};
  std::set<const Symbol*> symbols;
  for (const char* name : names) symbols.insert(signature.add_symbol(name, int_type));
  EXPECT_EQ(symbols.size(), 8U);
  for (const char* name : names) EXPECT_STREQ(signature.get_symbol(name)->name, name);
}

TEST_F(SignatureTest, ATakenNameOfTheSameTypeYieldsTheSymbolThatIsThere) {
  const Symbol* s = signature.add_symbol("x", int_type);
  EXPECT_EQ(signature.add_symbol("x", int_type), s);
  EXPECT_EQ(signature.size(), 1U);
}

TEST_F(SignatureTest, ATakenNameOfAnotherTypeIsRefused) {
  const Symbol* s = signature.add_symbol("x", function({int_type}, bool_type));
  EXPECT_EQ(
      testing::error_of<Exception>([&] { signature.add_symbol("x", int_type); }),
      "the symbol x already exists with type (-> Int Bool), it can't be declared with type Int");
  EXPECT_EQ(signature.size(), 1U);
  EXPECT_EQ(signature.get_symbol("x"), s);
}

// --- Giving names back ---

TEST_F(SignatureTest, RemovingANameLeavesTheRecordAlive) {
  const Symbol* s = signature.add_symbol("x", int_type);
  signature.remove_symbol("x");
  EXPECT_EQ(signature.get_symbol("x"), nullptr);
  EXPECT_EQ(signature.size(), 1U);
  EXPECT_STREQ(s->name, "x");
  EXPECT_EQ(s->get_output_type(), int_type);
}

TEST_F(SignatureTest, ARemovedNameCanBeGivenAgainWithAnotherType) {
  const Symbol* old = signature.add_symbol("x", int_type);
  signature.remove_symbol("x");
  const Symbol* fresh = signature.add_symbol("x", bool_type);
  EXPECT_NE(fresh, old);
  EXPECT_EQ(signature.get_symbol("x"), fresh);
  EXPECT_EQ(old->type, int_type);
  EXPECT_EQ(signature.size(), 2U);
}

TEST_F(SignatureTest, RemovingAnUnknownNameDoesNothing) {
  const Symbol* s = signature.add_symbol("x", int_type);
  signature.remove_symbol("y");
  signature.remove_symbol("");
  signature.remove_symbol("x_0");
  EXPECT_EQ(signature.get_symbol("x"), s);
  EXPECT_EQ(signature.size(), 1U);
}

// The argument may be the text of the record itself, as it is when a symbol is freed.
TEST_F(SignatureTest, ANameIsRemovedByTheTextOfItsSymbol) {
  const Symbol* s = signature.add_symbol("x", int_type);
  signature.remove_symbol(s->name);
  EXPECT_EQ(signature.get_symbol("x"), nullptr);
}

// --- Collection ---

TEST_F(SignatureTest, ACollectionFreesExactlyWhatIsNotKept) {
  const Symbol* x = signature.add_symbol("x", int_type);
  signature.add_symbol("y", int_type);
  const Symbol* z = signature.add_symbol("z", int_type);
  hsh::HashSet<const Symbol*> keep;
  keep.insert(x);
  keep.insert(z);
  signature.gc(keep);
  EXPECT_EQ(signature.size(), 2U);
  EXPECT_EQ(signature.get_symbol("x"), x);
  EXPECT_EQ(signature.get_symbol("y"), nullptr);
  EXPECT_EQ(signature.get_symbol("z"), z);
}

TEST_F(SignatureTest, ACollectionKeepsANamelessRecordNameless) {
  const Symbol* old = signature.add_symbol("x", int_type);
  signature.remove_symbol("x");
  const Symbol* fresh = signature.add_symbol("x", bool_type);
  hsh::HashSet<const Symbol*> keep;
  keep.insert(old);
  keep.insert(fresh);
  signature.gc(keep);
  EXPECT_EQ(signature.size(), 2U);
  EXPECT_EQ(signature.get_symbol("x"), fresh);
  hsh::HashSet<const Symbol*> keep_old;
  keep_old.insert(old);
  signature.gc(keep_old);
  EXPECT_EQ(signature.size(), 1U);
  EXPECT_EQ(signature.get_symbol("x"), nullptr);
  EXPECT_STREQ(old->name, "x");
}

TEST_F(SignatureTest, ACollectionNeedsNoMemory) {
  hsh::HashSet<const Symbol*> keep;
  for (int i = 0; i < 1000; ++i) {
    const Symbol* s = signature.add_symbol(("x" + std::to_string(i)).c_str(), int_type);
    if (i % 7 == 0) keep.insert(s);
  }
  {
    const testing::FailingMemory none(0);
    signature.gc(keep);
  }
  EXPECT_EQ(signature.size(), 143U);
  EXPECT_TRUE(signature.is_consistent());
  for (size_t i = 0; i < 143; ++i) {
    EXPECT_EQ(signature.symbol(i)->name, "x" + std::to_string(7 * i));  // in order of creation
  }
}

TEST_F(SignatureTest, RollingBackFreesTheNewestSymbols) {
  const Symbol* x = signature.add_symbol("x", int_type);
  signature.add_symbol("y", int_type);
  signature.remove_symbol("y");
  signature.add_symbol("y", bool_type);
  signature.rollback(1);
  EXPECT_EQ(signature.size(), 1U);
  EXPECT_EQ(signature.get_symbol("x"), x);
  EXPECT_EQ(signature.get_symbol("y"), nullptr);
  signature.rollback(1);
  EXPECT_EQ(signature.size(), 1U);
}

// --- Free suffixes ---

TEST_F(SignatureTest, TheLowestFreeSuffixStartsAtZero) {
  EXPECT_EQ(signature.lowest_free_suffix("x"), 0);
  EXPECT_EQ(signature.lowest_free_suffix("x"), 0);
}

TEST_F(SignatureTest, TheLowestFreeSuffixSkipsTakenNames) {
  for (const char* name : {"x_0", "x_1", "x_3", "x_00", "x_02", "y_2"}) {
    signature.add_symbol(name, int_type);
  }
  EXPECT_EQ(signature.lowest_free_suffix("x"), 2);
  signature.add_symbol("x_2", int_type);
  EXPECT_EQ(signature.lowest_free_suffix("x"), 4);
  EXPECT_EQ(signature.lowest_free_suffix("y"), 0);
}

TEST_F(SignatureTest, AFreedSuffixInTheMiddleIsTheLowestAgain) {
  for (int k = 0; k < 20; ++k) {
    signature.add_symbol(unique_name("x").c_str(), int_type);
  }
  signature.remove_symbol("x_7");
  signature.remove_symbol("x_12");
  EXPECT_EQ(unique_name("x"), "x_7");
  signature.add_symbol("x_7", int_type);
  EXPECT_EQ(unique_name("x"), "x_12");
  signature.add_symbol("x_12", int_type);
  EXPECT_EQ(unique_name("x"), "x_19");
}

TEST_F(SignatureTest, BasesMayHoldUnderscoresAndNumbers) {
  for (const char* name : {"x", "x_0", "x_0_0", "x_0_1", "_", "__0"}) {
    signature.add_symbol(name, int_type);
  }
  EXPECT_EQ(unique_name("x"), "x_1");
  EXPECT_EQ(unique_name("x_0"), "x_0_2");
  EXPECT_EQ(unique_name("_"), "__1");
  signature.remove_symbol("x_0_0");
  signature.remove_symbol("__0");
  EXPECT_EQ(unique_name("x_0"), "x_0_0");
  EXPECT_EQ(unique_name("_"), "__0");
  EXPECT_EQ(unique_name("x"), "x_1");
}

TEST_F(SignatureTest, OnlyNamesOfTheRuleCountAsSuffixes) {
  signature.add_symbol("x", int_type);
  for (int k = 0; k < 5; ++k) signature.add_symbol(unique_name("x").c_str(), int_type);
  for (const char* name : {"x_", "x_01", "x_-1", "x_+1", "x_1a", "x_2147483648", "x_4294967296",
                           "x_99999999999999999999", "x"}) {
    signature.add_symbol(name, int_type);
    signature.remove_symbol(name);
    EXPECT_EQ(signature.lowest_free_suffix("x"), 5) << name;
  }
}

TEST_F(SignatureTest, ACollectionFreesSuffixes) {
  hsh::HashSet<const Symbol*> keep;
  for (int k = 0; k < 10; ++k) {
    const Symbol* s = signature.add_symbol(unique_name("x").c_str(), int_type);
    if (k != 4) keep.insert(s);
  }
  EXPECT_EQ(unique_name("x"), "x_9");
  signature.gc(keep);
  EXPECT_EQ(unique_name("x"), "x_3");
  signature.add_symbol("x_3", int_type);
  EXPECT_EQ(unique_name("x"), "x_9");
}

// --- All of it ---

TEST_F(SignatureTest, AgreesWithAMapOverRandomOperations) {
  std::mt19937 random(4711);
  std::map<std::string, const Symbol*> names;
  std::set<const Symbol*> records;
  const DataType* const types[] = {int_type, bool_type};
  const auto naive_unique_name = [&](const std::string& base) {
    std::string candidate = base;
    for (int k = 0; names.count(candidate) != 0; ++k) candidate = base + "_" + std::to_string(k);
    return candidate;
  };
  const std::string bases[] = {"x", "x_0", "y", "x_1_", "_"};
  for (int step = 0; step < 50000; ++step) {
    const std::string base = bases[random() % 5];
    const std::string name = random() % 3 == 0 ? base : base + "_" + std::to_string(random() % 60);
    switch (random() % 8) {
      case 0:
      case 1: {
        const std::string unique = unique_name(base);
        ASSERT_EQ(unique, naive_unique_name(base));
        const Symbol* s = signature.add_symbol(unique.c_str(), int_type);
        ASSERT_TRUE(records.insert(s).second);
        names[unique] = s;
        break;
      }
      case 2: {
        const DataType* type = types[random() % 2];
        const auto present = names.find(name);
        if (present != names.end() && present->second->type != type) {
          ASSERT_THROW(signature.add_symbol(name.c_str(), type), Exception);
        } else {
          const Symbol* s = signature.add_symbol(name.c_str(), type);
          ASSERT_EQ(records.insert(s).second, present == names.end());
          names[name] = s;
        }
        break;
      }
      case 3:
      case 4:
      case 5:
        signature.remove_symbol(name.c_str());
        names.erase(name);
        break;
      case 6: {
        const auto it = names.find(name);
        ASSERT_EQ(signature.get_symbol(name.c_str()), it != names.end() ? it->second : nullptr);
        break;
      }
      default:
        if (random() % 50 != 0) break;
        hsh::HashSet<const Symbol*> keep;
        for (auto it = records.begin(); it != records.end();) {
          if (random() % 4 == 0) {
            std::erase_if(names, [&](const auto& entry) { return entry.second == *it; });
            it = records.erase(it);
          } else {
            keep.insert(*it++);
          }
        }
        signature.gc(keep);
        for (const auto& [known, s] : names) ASSERT_EQ(signature.get_symbol(known.c_str()), s);
        ASSERT_TRUE(signature.is_consistent());
    }
    ASSERT_EQ(signature.size(), records.size());
  }
}

TEST_F(SignatureTest, HoldsAMillionNumberedNames) {
  for (int i = 0; i < 1000000; ++i) {
    signature.add_symbol(("x" + std::to_string(i)).c_str(), int_type);
  }
  EXPECT_EQ(signature.size(), 1000000U);
  EXPECT_STREQ(signature.get_symbol("x0")->name, "x0");
  EXPECT_STREQ(signature.get_symbol("x999999")->name, "x999999");
  EXPECT_EQ(signature.get_symbol("x1000000"), nullptr);
}

// 32 entries fill the first index, so the failures include that of its growth.
TEST_F(SignatureTest, AFailedRegistrationChangesNothing) {
  for (int i = 0; i < 32; ++i) signature.add_symbol(std::to_string(i).c_str(), int_type);
  size_t k = 0;
  for (;; ++k) {
    bool failed = false;
    {
      const testing::FailingMemory after(k);
      try {
        signature.add_symbol("x", int_type);
      } catch (const std::bad_alloc&) {
        failed = true;
      }
    }
    if (!failed) break;
    ASSERT_EQ(signature.size(), 32U);
    ASSERT_EQ(signature.get_symbol("x"), nullptr);
  }
  EXPECT_GE(k, 2U);  // the index and the record
  EXPECT_EQ(signature.size(), 33U);
  EXPECT_STREQ(signature.get_symbol("x")->name, "x");
  for (int i = 0; i < 32; ++i) {
    EXPECT_NE(signature.get_symbol(std::to_string(i).c_str()), nullptr);
  }
}

TEST_F(SignatureTest, AFailedSearchForASuffixKeepsItsPlace) {
  const std::string base = "a base name that is too long to be kept in place";
  for (int n = 0; n < 10; ++n) signature.add_symbol(unique_name(base).c_str(), int_type);
  for (size_t k = 0;; ++k) {
    bool failed = false;
    int32_t suffix = -1;
    {
      const testing::FailingMemory after(k);
      try {
        suffix = signature.lowest_free_suffix(base);
      } catch (const std::bad_alloc&) {
        failed = true;
      }
    }
    if (failed) continue;
    EXPECT_GT(k, 0U);
    EXPECT_EQ(suffix, 9);
    break;
  }
}

// What is looked at while the names are entered, found again, and freed one by one.
uint64_t entries_for(const std::vector<std::string>& names) {
  TypeUniverse universe;
  Signature signature(&universe);
  const DataType* type = universe.make_type("T");
  const uint64_t before = entries_looked_at();
  std::vector<const Symbol*> symbols;
  for (const std::string& name : names) symbols.push_back(signature.add_symbol(name.c_str(), type));
  for (size_t i = 0; i < names.size(); ++i) {
    EXPECT_EQ(signature.get_symbol(names[i].c_str()), symbols[i]);
    EXPECT_EQ(signature.add_symbol(names[i].c_str(), type), symbols[i]);
  }
  hsh::HashSet<const Symbol*> keep;
  for (size_t i = 0; i < symbols.size(); i += 2) keep.insert(symbols[i]);
  signature.gc(keep);
  EXPECT_TRUE(signature.is_consistent());
  for (size_t i = 0; i < names.size(); i += 2) signature.remove_symbol(names[i].c_str());
  EXPECT_EQ(signature.get_symbol(names[0].c_str()), nullptr);
  return entries_looked_at() - before;
}

TEST(SignatureCost, NamesThatCollideCostLittleMoreThanOthers) {
  const uint64_t ordinary = entries_for(testing::ordinary_names(20000));
  EXPECT_LE(entries_for(testing::colliding_names(20000)), 5 * ordinary);
}

TEST(SignatureCost, BasesThatCollideCostLittleMoreThanOthers) {
  const auto entries = [](const std::vector<std::string>& bases) {
    TypeUniverse universe;
    Signature signature(&universe);
    const uint64_t before = entries_looked_at();
    for (const std::string& base : bases) EXPECT_EQ(signature.lowest_free_suffix(base), 0);
    return entries_looked_at() - before;
  };
  EXPECT_LE(entries(testing::colliding_names(20000)), 5 * entries(testing::ordinary_names(20000)));
}

}  // namespace
}  // namespace quill
