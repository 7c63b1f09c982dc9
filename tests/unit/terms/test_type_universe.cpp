#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <new>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "quill/terms/type_universe.h"
#include "quill/utils/entry_count.h"
#include "quill/utils/hash_set.h"
#include "quill/utils/intern_index.h"
#include "quill/utils/keyed_hash.h"
#include "tests/support/colliding_names.h"
#include "tests/support/failing_memory.h"

namespace quill {
namespace {

using Types = std::vector<const DataType*>;
using namespace std::string_literals;

TEST(TypeUniverse, IsNotCopied) {
  EXPECT_FALSE(std::is_copy_constructible_v<TypeUniverse>);
  EXPECT_FALSE(std::is_copy_assignable_v<TypeUniverse>);
}

TEST(TypeUniverse, ANewUniverseHoldsTheApplicationTypeAlone) {
  const TypeUniverse u;
  EXPECT_EQ(u.size(), 1U);
  EXPECT_NE(u.get_application_type(), nullptr);
  EXPECT_TRUE(u.get_application_type()->is_simple());
}

TEST(TypeUniverse, TheSameNameYieldsTheSameType) {
  TypeUniverse u;
  const DataType* t = u.make_type("Bool");
  EXPECT_EQ(u.make_type("Bool"), t);
  EXPECT_NE(u.make_type("bool"), t);
  EXPECT_EQ(u.size(), 3U);
}

TEST(TypeUniverse, EqualComponentListsYieldTheSameType) {
  TypeUniverse u;
  const DataType* a = u.make_type("a");
  const DataType* b = u.make_type("b");
  Types first = {a, b};
  const DataType* t = u.make_type(first);
  EXPECT_EQ(u.make_type(Types{a, b}), t);
  EXPECT_NE(u.make_type(Types{b, a}), t);
  EXPECT_NE(u.make_type(Types{a, b, a}), t);
  EXPECT_NE(u.make_type(Types{a}), t);
  EXPECT_NE(u.make_type(Types{a}), a);
}

TEST(TypeUniverse, AListWrittenInPlaceYieldsTheTypeOfTheVector) {
  TypeUniverse u;
  const DataType* a = u.make_type("a");
  EXPECT_EQ(u.make_type({a, a}), u.make_type(Types{a, a}));
}

TEST(TypeUniverse, TheComponentListIsOnlyRead) {
  TypeUniverse u;
  const DataType* a = u.make_type("a");
  const DataType* b = u.make_type("b");
  Types list = {a, b};
  const DataType* t = u.make_type(list);
  EXPECT_EQ(list, (Types{a, b}));
  list = {b, b};
  EXPECT_EQ(t->get_component(0), a);
}

TEST(TypeUniverse, TheNameIsCopied) {
  TypeUniverse u;
  std::string name = "a name that is too long to be kept in place";
  const DataType* t = u.make_type(name);
  name[0] = 'A';
  EXPECT_EQ(t->get_name(), "a name that is too long to be kept in place");
  EXPECT_NE(u.make_type(name), t);
}

TEST(TypeUniverse, TheEmptyListIsATypeOfItsOwn) {
  TypeUniverse u;
  const DataType* t = u.make_type(Types{});
  EXPECT_FALSE(t->is_simple());
  EXPECT_EQ(t->num_components(), 0U);
  EXPECT_EQ(u.make_type(Types{}), t);
  EXPECT_NE(u.make_type(""), t);
}

TEST(TypeUniverse, NamesAreByteStrings) {
  TypeUniverse u;
  EXPECT_NE(u.make_type("a\0b"s), u.make_type("a\0c"s));
  EXPECT_NE(u.make_type("a"), u.make_type("a\0"s));
  EXPECT_EQ(u.make_type("a\0b"s)->get_name().size(), 3U);
}

TEST(TypeUniverse, NoNameLeadsToTheApplicationType) {
  TypeUniverse u;
  const DataType* application = u.get_application_type();
  EXPECT_NE(u.make_type("->"), application);
  EXPECT_NE(u.make_type(application->get_name()), application);
  EXPECT_NE(u.make_type(application->to_str()), application);
}

// --- Subtypes ---

TEST(TypeUniverse, EveryTypeIsASubtypeOfItself) {
  TypeUniverse u;
  const DataType* a = u.make_type("a");
  const DataType* t = u.make_type(Types{a, a});
  EXPECT_TRUE(u.is_subtype(a, a));
  EXPECT_TRUE(u.is_subtype(t, t));
  EXPECT_TRUE(u.is_subtype(u.get_application_type(), u.get_application_type()));
}

TEST(TypeUniverse, ADeclaredPairHoldsInOneDirection) {
  TypeUniverse u;
  const DataType* integer = u.make_type("Int");
  const DataType* real = u.make_type("Real");
  EXPECT_FALSE(u.is_subtype(integer, real));
  u.set_subtype(integer, real);
  u.set_subtype(integer, real);
  EXPECT_TRUE(u.is_subtype(integer, real));
  EXPECT_FALSE(u.is_subtype(real, integer));
}

TEST(TypeUniverse, SubtypingIsNotTransitive) {
  TypeUniverse u;
  const DataType* a = u.make_type("a");
  const DataType* b = u.make_type("b");
  const DataType* c = u.make_type("c");
  u.set_subtype(a, b);
  u.set_subtype(b, c);
  EXPECT_FALSE(u.is_subtype(a, c));
}

TEST(TypeUniverse, SubtypingDoesNotReachIntoCompounds) {
  TypeUniverse u;
  const DataType* a = u.make_type("a");
  const DataType* b = u.make_type("b");
  u.set_subtype(a, b);
  EXPECT_FALSE(u.is_subtype(u.make_type(Types{a}), u.make_type(Types{b})));
}

// --- Freeing ---

TEST(TypeUniverse, ARemovedTypeIsMadeAnewAndTheOthersStay) {
  TypeUniverse u;
  Types types;
  for (int i = 0; i < 10; ++i) types.push_back(u.make_type("t" + std::to_string(i)));
  u.remove_type(types[4]);
  u.remove_type(types[9]);
  EXPECT_EQ(u.size(), 9U);
  for (size_t i = 0; i < 9; ++i) {
    if (i == 4) continue;
    EXPECT_EQ(u.make_type("t" + std::to_string(i)), types[i]);
  }
  EXPECT_EQ(u.size(), 9U);
  EXPECT_EQ(u.make_type("t4")->get_name(), "t4");
  EXPECT_EQ(u.size(), 10U);
}

TEST(TypeUniverse, ARemovedCompoundIsForgotten) {
  TypeUniverse u;
  const DataType* a = u.make_type("a");
  u.remove_type(u.make_type(Types{a, a}));
  EXPECT_EQ(u.size(), 2U);
  EXPECT_EQ(u.make_type(Types{a, a})->num_components(), 2U);
  EXPECT_EQ(u.size(), 3U);
}

// A type made later may get the address of one that was freed.
TEST(TypeUniverse, RemovingATypeRemovesItsSubtypePairs) {
  TypeUniverse u;
  const DataType* super = u.make_type("super");
  for (int round = 0; round < 100; ++round) {
    const DataType* sub = u.make_type("sub" + std::to_string(round));
    EXPECT_FALSE(u.is_subtype(sub, super));
    EXPECT_FALSE(u.is_subtype(super, sub));
    u.set_subtype(sub, super);
    u.set_subtype(super, sub);
    u.remove_type(sub);
  }
}

TEST(TypeUniverse, ACollectionFreesExactlyWhatIsNotKept) {
  TypeUniverse u;
  const DataType* a = u.make_type("a");
  const DataType* b = u.make_type("b");
  const DataType* aa = u.make_type(Types{a, a});
  u.make_type(Types{b, b});
  u.set_subtype(a, aa);
  hsh::HashSet<const DataType*> keep;
  keep.insert(u.get_application_type());
  keep.insert(a);
  keep.insert(aa);
  u.gc(keep);
  EXPECT_EQ(u.size(), 3U);
  EXPECT_EQ(u.make_type("a"), a);
  EXPECT_EQ(u.make_type(Types{a, a}), aa);
  EXPECT_TRUE(u.is_subtype(a, aa));
  EXPECT_EQ(u.size(), 3U);
  u.make_type("b");
  EXPECT_EQ(u.size(), 4U);
}

TEST(TypeUniverse, ACollectionKeepsTheApplicationTypeInAnyCase) {
  TypeUniverse u;
  const DataType* application = u.get_application_type();
  u.make_type("a");
  u.gc(hsh::HashSet<const DataType*>());
  EXPECT_EQ(u.size(), 1U);
  EXPECT_EQ(u.get_application_type(), application);
  EXPECT_EQ(application->to_str(), "->");
}

TEST(TypeUniverse, ACollectionDropsSubtypePairsOfFreedTypes) {
  TypeUniverse u;
  const DataType* super = u.make_type("super");
  hsh::HashSet<const DataType*> keep;
  keep.insert(u.get_application_type());
  keep.insert(super);
  for (int round = 0; round < 100; ++round) {
    const DataType* sub = u.make_type("sub");
    EXPECT_FALSE(u.is_subtype(sub, super));
    u.set_subtype(sub, super);
    u.gc(keep);
  }
}

TEST(TypeUniverse, ACollectionNeedsNoMemory) {
  TypeUniverse u;
  hsh::HashSet<const DataType*> keep;
  for (int i = 0; i < 1000; ++i) {
    const DataType* type = u.make_type("t" + std::to_string(i));
    if (i % 7 == 0) keep.insert(type);
  }
  {
    const testing::FailingMemory none(0);
    u.gc(keep);
  }
  EXPECT_EQ(u.size(), 144U);  // with the application type
  EXPECT_TRUE(u.is_consistent());
  EXPECT_EQ(u.make_type("t7"), u.type(2));
  EXPECT_EQ(u.size(), 144U);
}

TEST(TypeUniverse, RollingBackFreesTheNewestTypes) {
  TypeUniverse u;
  const DataType* a = u.make_type("a");
  const size_t before = u.size();
  const DataType* b = u.make_type("b");
  u.make_type(Types{a, b});
  u.rollback(before);
  EXPECT_EQ(u.size(), before);
  EXPECT_EQ(u.make_type("a"), a);
  u.make_type("b");
  EXPECT_EQ(u.size(), before + 1);
  u.rollback(u.size());
  EXPECT_EQ(u.size(), before + 1);
}

// --- All of it ---

TEST(TypeUniverse, AgreesWithMapsOverRandomOperations) {
  std::mt19937 random(99);
  TypeUniverse u;
  std::map<std::string, const DataType*> simple;
  std::map<Types, const DataType*> compound;
  const auto any = [&](const auto& map) {
    return std::next(map.begin(), static_cast<ptrdiff_t>(random() % map.size()));
  };
  for (int step = 0; step < 30000; ++step) {
    const auto action = random() % 20;
    if (simple.empty() || action < 9) {
      const std::string name = "n" + std::to_string(random() % 400);
      const DataType* t = u.make_type(name);
      const auto [it, fresh] = simple.insert({name, t});
      ASSERT_EQ(it->second, t);
      ASSERT_EQ(t->get_name(), name);
    } else if (action < 17) {
      Types list;
      for (auto n = random() % 4; n > 0; --n) list.push_back(any(simple)->second);
      const DataType* t = u.make_type(list);
      const auto [it, fresh] = compound.insert({list, t});
      ASSERT_EQ(it->second, t);
    } else if (action < 19 && !compound.empty()) {
      const auto victim = any(compound);
      u.remove_type(victim->second);
      compound.erase(victim);
    } else if (random() % 100 == 0) {
      // Keeps all simple types and half of the compounds.
      hsh::HashSet<const DataType*> keep;
      keep.insert(u.get_application_type());
      for (const auto& [name, t] : simple) keep.insert(t);
      std::erase_if(compound, [&](const auto& entry) {
        if (random() % 2 == 0) return true;
        keep.insert(entry.second);
        return false;
      });
      u.gc(keep);
    }
    ASSERT_EQ(u.size(), 1 + simple.size() + compound.size());
    if (step % 1000 == 0) {
      for (const auto& [name, t] : simple) ASSERT_EQ(u.make_type(name), t);
      for (const auto& [list, t] : compound) ASSERT_EQ(u.make_type(list), t);
    }
  }
}

template <class Request>
void expect_all_or_nothing(TypeUniverse& u, Request request) {
  const size_t before = u.size();
  for (size_t k = 0;; ++k) {
    bool failed = false;
    {
      const testing::FailingMemory after(k);
      try {
        request();
      } catch (const std::bad_alloc&) {
        failed = true;
      }
    }
    if (!failed) {
      EXPECT_GT(k, 0U);
      EXPECT_EQ(u.size(), before + 1);
      return;
    }
    ASSERT_EQ(u.size(), before) << "after failure " << k;
  }
}

// 32 entries fill the first index, so the failures include that of its growth.
TEST(TypeUniverse, AFailedRequestChangesNothing) {
  TypeUniverse u;
  const std::string name = "a name that is too long to be kept in place";
  Types types;
  for (int i = 0; i < 32; ++i) types.push_back(u.make_type(std::to_string(i)));
  expect_all_or_nothing(u, [&] { u.make_type(name); });
  expect_all_or_nothing(u, [&] { u.make_type(types); });
  for (int i = 0; i < 32; ++i) {
    EXPECT_EQ(u.make_type(std::to_string(i)), types[static_cast<size_t>(i)]);
  }
  EXPECT_EQ(u.make_type(name)->get_name(), name);
  EXPECT_EQ(u.size(), 35U);
}

TEST(TypeUniverse, ConstructionThatRunsOutOfMemoryLeaksNothing) {
  for (size_t k = 0; k < 100; ++k) {
    try {
      const testing::FailingMemory after(k);
      const TypeUniverse u;
      break;
    } catch (const std::bad_alloc&) {
      EXPECT_LT(k, 10);
    }
  }
}

TEST(TypeUniverseCost, NamesThatCollideCostLittleMoreThanOthers) {
  const auto entries = [](const std::vector<std::string>& names) {
    TypeUniverse u;
    const uint64_t before = entries_looked_at();
    Types made;
    for (const std::string& name : names) made.push_back(u.make_type(name));
    for (size_t i = 0; i < names.size(); ++i) EXPECT_EQ(u.make_type(names[i]), made[i]);
    EXPECT_TRUE(u.is_consistent());
    for (size_t i = 0; i < names.size(); i += 3) u.remove_type(made[i]);
    EXPECT_TRUE(u.is_consistent());
    return entries_looked_at() - before;
  };
  EXPECT_LE(entries(testing::colliding_names(20000)), 5 * entries(testing::ordinary_names(20000)));
}

// Of many lists of components those whose hashes want the same few slots.
TEST(TypeUniverseCost, ComponentsThatCollideCostLittleMoreThanOthers) {
  const auto entries = [](bool collide) {
    TypeUniverse u;
    Types parts;
    for (int i = 0; i < 1500; ++i) parts.push_back(u.make_type("T" + std::to_string(i)));
    const uint64_t before = entries_looked_at();
    size_t made = 0;
    for (const DataType* a : parts) {
      for (const DataType* b : parts) {
        const uint64_t hash = KeyedWordHash(hash_key(0))
                                  .add(reinterpret_cast<uintptr_t>(a))
                                  .add(reinterpret_cast<uintptr_t>(b))
                                  .result();
        if (made == 20000 || (collide && InternIndex::fold(hash) % 65536 >= 1024)) continue;
        u.make_type({a, b});
        ++made;
      }
    }
    EXPECT_EQ(made, 20000U);
    EXPECT_TRUE(u.is_consistent());
    return entries_looked_at() - before;
  };
  EXPECT_LE(entries(true), 5 * entries(false));
}

}  // namespace
}  // namespace quill
