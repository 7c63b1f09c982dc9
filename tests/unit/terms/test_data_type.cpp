#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include "quill/terms/data_type.h"
#include "quill/terms/type_universe.h"

namespace quill {
namespace {

using Types = std::vector<const DataType*>;
using namespace std::string_literals;

// Names that a careless printer confuses with each other or with the notation of compounds.
const std::vector<std::string> nasty_names = {
    "Bool",   "rat",    "int", "Real", "a",   "b",  "a_b", "a b", "(a b)",    "(BitVec 8)",
    "BitVec", "8",      "|",   "||",   "|a|", "\\", "\\|", "\\0", "\0"s,      "a\0b"s,
    "#1#",    "#1=(a)", "->",  "",     " ",   "(",  ")",   "()",  "read_a_b", "\xc3\xa4"};

TEST(DataType, IsNotCopied) {
  EXPECT_FALSE(std::is_copy_constructible_v<DataType>);
  EXPECT_FALSE(std::is_copy_assignable_v<DataType>);
}

TEST(DataType, ASimpleTypeHasANameAndNoComponents) {
  TypeUniverse u;
  const DataType* t = u.make_type("Real");
  EXPECT_TRUE(t->is_simple());
  EXPECT_EQ(t->get_name(), "Real");
  EXPECT_EQ(t->num_components(), 0U);
}

TEST(DataType, ACompoundTypeHasComponentsInOrderAndNoName) {
  TypeUniverse u;
  const DataType* a = u.make_type("a");
  const DataType* b = u.make_type("b");
  const DataType* t = u.make_type(Types{a, b, a});
  EXPECT_FALSE(t->is_simple());
  EXPECT_EQ(t->get_name(), "");
  ASSERT_EQ(t->num_components(), 3U);
  EXPECT_EQ(t->get_component(0), a);
  EXPECT_EQ(t->get_component(1), b);
  EXPECT_EQ(t->get_component(2), a);
}

// --- The printed form ---

TEST(DataTypeToStr, NamesOfLettersAndDigitsPrintAsTheyAre) {
  TypeUniverse u;
  for (const std::string name : {"Bool", "Real", "Int", "32", "a", "Z9", "RAT", "rats", "Rat"}) {
    EXPECT_EQ(u.make_type(name)->to_str(), name);
  }
}

TEST(DataTypeToStr, OtherNamesStandBetweenBars) {
  TypeUniverse u;
  const std::pair<std::string, std::string> cases[] = {
      {"rat", "|rat|"},  // what symbol names write for Real
      {"int", "|int|"},  // and for Int
      {"", "||"},       {"a_b", "|a_b|"}, {"8:23", "|8:23|"}, {"(BitVec 8)", "|(BitVec 8)|"},
      {"|", "|\\||"},   {"\\", "|\\\\|"}, {"\0"s, "|\\0|"},   {"\\0", "|\\\\0|"},
      {"#1#", "|#1#|"}, {" ", "| |"},     {"->", "|->|"},     {"\xc3\xa4", "|\xc3\xa4|"},
  };
  for (const auto& [name, text] : cases) EXPECT_EQ(u.make_type(name)->to_str(), text);
}

TEST(DataTypeToStr, TheApplicationTypePrintsAsAnArrow) {
  const TypeUniverse u;
  EXPECT_EQ(u.get_application_type()->to_str(), "->");
}

TEST(DataTypeToStr, CompoundsListTheirComponents) {
  TypeUniverse u;
  const DataType* a = u.make_type("a");
  const DataType* bv8 = u.make_type(Types{u.make_type("BitVec"), u.make_type("8")});
  EXPECT_EQ(u.make_type(Types{})->to_str(), "()");
  EXPECT_EQ(u.make_type(Types{a})->to_str(), "(a)");
  EXPECT_EQ(bv8->to_str(), "(BitVec 8)");
  EXPECT_EQ(u.make_type(Types{u.get_application_type(), a, bv8, a})->to_str(),
            "(-> a (BitVec 8) a)");
}

TEST(DataTypeToStr, ACompoundOfUpToThreeSimpleTypesIsRepeatedInFull) {
  TypeUniverse u;
  const DataType* a = u.make_type("a");
  const DataType* one = u.make_type(Types{a});
  const DataType* three = u.make_type(Types{a, a, a});
  EXPECT_EQ(u.make_type(Types{one, one, three, three})->to_str(), "((a) (a) (a a a) (a a a))");
  const DataType* none = u.make_type(Types{});
  EXPECT_EQ(u.make_type(Types{none, none})->to_str(), "(() ())");
}

TEST(DataTypeToStr, ALongerCompoundThatOccursAgainIsPrintedOnce) {
  TypeUniverse u;
  const DataType* a = u.make_type("a");
  const DataType* four = u.make_type(Types(4, a));
  EXPECT_EQ(u.make_type(Types{four, four})->to_str(), "(#1=(a a a a) #1#)");
  const DataType* wide = u.make_type(Types(1000, a));
  EXPECT_LT(u.make_type(Types(1000, wide))->to_str().size(), 7000U);
}

TEST(DataTypeToStr, ANestedCompoundThatOccursAgainIsPrintedOnce) {
  TypeUniverse u;
  const DataType* array = u.make_type("Array");
  const DataType* i = u.make_type("Int");
  const DataType* a1 = u.make_type(Types{array, i, i});
  const DataType* a2 = u.make_type(Types{array, i, a1});
  const DataType* a3 = u.make_type(Types{array, a2, a2});
  EXPECT_EQ(u.make_type(Types{array, a3, a2})->to_str(),
            "(Array (Array #1=(Array Int (Array Int Int)) #1#) #1#)");
}

TEST(DataTypeToStr, LabelsCountInTheOrderOfTheText) {
  TypeUniverse u;
  const DataType* a = u.make_type("a");
  const DataType* late = u.make_type(Types{a, u.make_type(Types{a})});
  const DataType* early = u.make_type(Types{a, u.make_type(Types{a, a})});
  EXPECT_EQ(u.make_type(Types{early, late, late, early})->to_str(),
            "(#1=(a (a a)) #2=(a (a)) #2# #1#)");
}

TEST(DataTypeToStr, ALabelMayStandWithinALabelledType) {
  TypeUniverse u;
  const DataType* a = u.make_type("a");
  const DataType* inner = u.make_type(Types{a, u.make_type(Types{a})});
  const DataType* outer = u.make_type(Types{inner, inner});
  EXPECT_EQ(u.make_type(Types{outer, outer})->to_str(), "(#1=(#2=(a (a)) #2#) #1#)");
}

TEST(DataTypeToStr, FortyLevelsOfSharedArraysStayShort) {
  TypeUniverse u;
  const DataType* array = u.make_type("Array");
  const DataType* t = u.make_type("Int");
  for (int level = 0; level < 40; ++level) t = u.make_type(Types{array, t, t});
  const std::string text = t->to_str();
  EXPECT_LT(text.size(), 40U * 30U);
  EXPECT_EQ(text.substr(0, 36), "(Array #1=(Array #2=(Array #3=(Array");
  EXPECT_EQ(text.substr(text.size() - 19), "#4#) #3#) #2#) #1#)");
}

TEST(DataTypeToStr, DeepTypesArePrintedAndFreedWithoutRecursion) {
  TypeUniverse u;
  const DataType* a = u.make_type("a");
  const DataType* t = a;
  for (int level = 0; level < 1000000; ++level) t = u.make_type(Types{a, t});
  const std::string text = t->to_str();
  EXPECT_EQ(text.size(), 4U * 1000000U + 1U);
  EXPECT_EQ(text.substr(0, 9), "(a (a (a ");
  EXPECT_EQ(text.substr(text.size() - 1000004, 6), "(a a))");
}

// --- Different types print differently ---

// All lists of up to two types of the pool.
void append_short_lists(TypeUniverse& u, const Types& pool, Types& out) {
  out.push_back(u.make_type(Types{}));
  for (const DataType* a : pool) {
    out.push_back(u.make_type(Types{a}));
    for (const DataType* b : pool) out.push_back(u.make_type(Types{a, b}));
  }
}

TEST(DataTypeToStr, IsInjectiveOnAllSmallTypesOverNastyNames) {
  TypeUniverse u;
  Types simple = {u.get_application_type()};
  for (const std::string& name : nasty_names) simple.push_back(u.make_type(name));
  Types level1 = simple;
  append_short_lists(u, {simple.begin(), simple.begin() + 14}, level1);
  Types level2 = simple;
  append_short_lists(u, level1, level2);
  const std::set<const DataType*> types(level2.begin(), level2.end());
  EXPECT_EQ(types.size(), 58838U);  // 31 simple types, and 1 + 242 + 242^2 lists over level 1
  std::set<std::string> texts;
  for (const DataType* t : types) texts.insert(t->to_str());
  EXPECT_EQ(texts.size(), types.size());
}

// A recipe names a type without building it: a simple name or a list of earlier recipes.
struct Recipe {
  std::string name;
  bool is_simple = false;
  std::vector<size_t> components;  // indices of earlier recipes
};

std::vector<Recipe> random_recipes(unsigned seed, size_t count) {
  std::mt19937 random(seed);
  std::vector<Recipe> recipes;
  for (const std::string& name : nasty_names) recipes.push_back({name, true, {}});
  while (recipes.size() < count) {
    Recipe recipe;
    const size_t length = random() % 5;
    for (size_t i = 0; i < length; ++i) {
      // Half of the components are recent, so that types get deep and share much.
      const size_t window =
          random() % 2 == 0 ? recipes.size() : std::min<size_t>(20, recipes.size());
      recipe.components.push_back(recipes.size() - 1 - random() % window);
    }
    recipes.push_back(recipe);
  }
  return recipes;
}

const DataType* follow(const Recipe& recipe, const Types& made, TypeUniverse& u) {
  if (recipe.is_simple) return u.make_type(recipe.name);
  Types components;
  for (const size_t i : recipe.components) components.push_back(made[i]);
  return u.make_type(components);
}

TEST(DataTypeToStr, IsInjectiveOnRandomSharedTypes) {
  TypeUniverse u;
  Types made;
  for (const Recipe& recipe : random_recipes(7, 3000)) made.push_back(follow(recipe, made, u));
  const std::set<const DataType*> types(made.begin(), made.end());
  EXPECT_GT(types.size(), 2000U);
  std::set<std::string> texts;
  for (const DataType* t : types) texts.insert(t->to_str());
  EXPECT_EQ(texts.size(), types.size());
}

TEST(DataTypeToStr, DependsOnTheStructureAndNotOnTheOrderOfCreation) {
  const std::vector<Recipe> recipes = random_recipes(11, 1500);
  TypeUniverse in_order;
  Types made;
  for (const Recipe& recipe : recipes) made.push_back(follow(recipe, made, in_order));

  // The second universe makes the same types on demand, in a random order and among others.
  TypeUniverse shuffled;
  std::mt19937 random(13);
  Types made_again(recipes.size(), nullptr);
  for (int n = 0; n < 6000; ++n) {
    std::vector<size_t> work = {random() % recipes.size()};
    while (!work.empty()) {
      const size_t i = work.back();
      bool ready = true;
      for (const size_t c : recipes[i].components) {
        if (made_again[c] == nullptr) {
          work.push_back(c);
          ready = false;
        }
      }
      if (!ready) continue;
      work.pop_back();
      made_again[i] = follow(recipes[i], made_again, shuffled);
    }
    shuffled.make_type("other" + std::to_string(n));
  }
  for (size_t i = 0; i < recipes.size(); ++i) {
    if (made_again[i] == nullptr) made_again[i] = follow(recipes[i], made_again, shuffled);
    ASSERT_EQ(made_again[i]->to_str(), made[i]->to_str()) << "recipe " << i;
  }
}

// Names of symbols are put together from texts of types and underscores.
TEST(DataTypeToStr, TwoTextsJoinedByAnUnderscoreTellBothTypes) {
  TypeUniverse u;
  Types simple = {u.get_application_type()};
  for (const std::string& name : nasty_names) simple.push_back(u.make_type(name));
  Types types = simple;
  append_short_lists(u, {simple.begin(), simple.begin() + 14}, types);
  std::set<std::string> joined;
  for (const DataType* a : types) {
    for (const DataType* b : types) joined.insert("read_" + a->to_str() + "_" + b->to_str());
  }
  EXPECT_EQ(joined.size(), types.size() * types.size());
}

}  // namespace
}  // namespace quill
