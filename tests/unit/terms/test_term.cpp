#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

#include "quill/terms/signature.h"
#include "quill/terms/term.h"
#include "quill/terms/term_bank.h"
#include "quill/terms/type_universe.h"
#include "quill/utils/hash_map.h"

namespace quill {
namespace {

class TermTest : public ::testing::Test {
 protected:
  const Symbol* function(const std::string& name, size_t arity) {
    std::vector<const DataType*> type = {universe.get_application_type()};
    type.insert(type.end(), arity + 1, universe.make_type("S"));
    return signature.add_symbol(name.c_str(), universe.make_type(type));
  }
  const Term_* constant(const std::string& name) {
    return bank.make_term(signature.add_symbol(name.c_str(), universe.make_type("S")), nullptr);
  }
  const Term_* apply(const std::string& name, std::vector<const Term_*> args) {
    return bank.make_term(function(name, args.size()), args.data());
  }

  TypeUniverse universe;
  Signature signature{&universe};
  TermBank bank;
};

TEST_F(TermTest, IsNotCopied) {
  EXPECT_FALSE(std::is_copy_constructible_v<Term_>);
  EXPECT_FALSE(std::is_copy_assignable_v<Term_>);
}

TEST_F(TermTest, HoldsItsSymbolAndItsArgumentsInOrder) {
  const Term_* a = constant("a");
  const Term_* b = constant("b");
  const Term_* t = apply("f", {b, a, b});
  EXPECT_STREQ(t->symbol->name, "f");
  EXPECT_EQ(t->args[0], b);
  EXPECT_EQ(t->args[1], a);
  EXPECT_EQ(t->args[2], b);
}

TEST_F(TermTest, HasTheTypeOfItsSymbolsResult) {
  const Term_* a = constant("a");
  EXPECT_EQ(a->type(), universe.make_type("S"));
  EXPECT_EQ(apply("f", {a, a})->type(), universe.make_type("S"));
}

TEST_F(TermTest, GivesItsArgumentsAsASpan) {
  const Term_* a = constant("a");
  const Term_* b = constant("b");
  EXPECT_TRUE(a->arguments().empty());
  const Term_* t = apply("f", {b, a, b});
  ASSERT_EQ(t->arguments().size(), 3u);
  EXPECT_EQ(t->arguments().data(), t->args);
  EXPECT_EQ(std::vector<const Term_*>(t->arguments().begin(), t->arguments().end()),
            (std::vector<const Term_*>{b, a, b}));
}

TEST_F(TermTest, TheIdIsTheFirstFieldAndTheHash) {
  constant("a");
  const Term_* b = constant("b");
  EXPECT_EQ(reinterpret_cast<const char*>(&b->id), reinterpret_cast<const char*>(b));
  EXPECT_EQ(b->id, 1U);
  EXPECT_EQ(hsh::hash<const Term_*>()(b), 1U);
}

TEST_F(TermTest, TablesOverTermsAreWalkedByIdAndNotByAddress) {
  std::vector<const Term_*> terms;
  for (int i = 0; i < 20; ++i) terms.push_back(constant("c" + std::to_string(i)));
  hsh::HashMap<const Term_*, int> map;
  for (size_t i = 0; i < 20; ++i) map[terms[(7 * i + 3) % 20]] = 1;
  std::vector<uint64_t> order;
  for (const auto& [term, mapped] : map) order.push_back(term->id);
  EXPECT_EQ(order, (std::vector<uint64_t>{0,  1,  2,  3,  4,  5,  6,  7,  8,  9,
                                          10, 11, 12, 13, 14, 15, 16, 17, 18, 19}));
}

// --- The full text ---

TEST_F(TermTest, AConstantPrintsItsNameAsItIsStored) {
  EXPECT_EQ(constant("a")->to_str(), "a");
  EXPECT_EQ(constant("`true`")->to_str(), "`true`");
  EXPECT_EQ(constant("a b")->to_str(), "a b");
}

TEST_F(TermTest, AnApplicationPrintsInPrefixNotation) {
  const Term_* a = constant("a");
  const Term_* b = constant("b");
  EXPECT_EQ(apply("g", {a})->to_str(), "(g a)");
  EXPECT_EQ(apply("f", {a, b})->to_str(), "(f a b)");
  EXPECT_EQ(apply("f", {apply("g", {a}), b})->to_str(), "(f (g a) b)");
}

TEST_F(TermTest, ASharedSubtermIsPrintedOnce) {
  const Term_* a = constant("a");             // 0
  const Term_* shared = apply("g", {a});      // 1
  const Term_* other = apply("h", {shared});  // 2
  const Term_* t = apply("f", {shared, other, shared});
  EXPECT_EQ(t->to_str(), "(f #1=(g a) (h #1) #1)");
  EXPECT_EQ(other->to_str(), "(h (g a))");
}

TEST_F(TermTest, SharedConstantsAreRepeated) {
  const Term_* a = constant("a");
  EXPECT_EQ(apply("f", {a, a, a})->to_str(), "(f a a a)");
}

TEST_F(TermTest, ASharedSubtermWithinASharedOneIsPrintedOnce) {
  const Term_* a = constant("a");                   // 0
  const Term_* inner = apply("g", {a});             // 1
  const Term_* outer = apply("f", {inner, inner});  // 2
  EXPECT_EQ(apply("f", {outer, outer})->to_str(), "(f #2=(f #1=(g a) #1) #2)");
}

// As a tree this term has 2^64 - 1 nodes.
TEST_F(TermTest, TheTextIsLinearInTheNumberOfDistinctSubterms) {
  const Term_* t = constant("a");
  for (int level = 0; level < 63; ++level) t = apply("f", {t, t});
  const std::string text = t->to_str();
  EXPECT_LT(text.size(), 63U * 16U);
  EXPECT_EQ(text.substr(0, 29), "(f #62=(f #61=(f #60=(f #59=(");
  EXPECT_EQ(text.substr(text.size() - 14), "#60) #61) #62)");
}

TEST_F(TermTest, AChainOfAMillionIsBuiltPrintedAndFreed) {
  const Symbol* g = function("g", 1);
  const Term_* t = constant("a");
  for (int level = 0; level < 1000000; ++level) t = bank.make_term(g, &t);
  EXPECT_EQ(t->id, 1000000U);
  const std::string text = t->to_str();
  EXPECT_EQ(text.size(), 4U * 1000000U + 1U);
  EXPECT_EQ(text.substr(0, 9), "(g (g (g ");
  EXPECT_EQ(text.substr(text.size() - 1000004, 6), "(g a))");
  bank.remove_unseen({true});
  EXPECT_EQ(bank.size(), 1U);
}

// --- The short text ---

TEST_F(TermTest, TheShallowTextOfAConstantIsItsName) {
  EXPECT_EQ(constant("a")->to_shallow_str(), "a");
}

TEST_F(TermTest, TheShallowTextNamesConstantsAndNumbersOtherArguments) {
  const Term_* a = constant("a");       // 0
  const Term_* ga = apply("g", {a});    // 1
  const Term_* gga = apply("g", {ga});  // 2
  EXPECT_EQ(ga->to_shallow_str(), "(g a)");
  EXPECT_EQ(gga->to_shallow_str(), "(g #1)");
  EXPECT_EQ(apply("f", {gga, a, ga})->to_shallow_str(), "(f #2 a #1)");
}

TEST_F(TermTest, TheShallowTextShowsEightArguments) {
  const Term_* a = constant("a");
  EXPECT_EQ(apply("f8", std::vector<const Term_*>(8, a))->to_shallow_str(), "(f8 a a a a a a a a)");
  EXPECT_EQ(apply("f9", std::vector<const Term_*>(9, a))->to_shallow_str(),
            "(f9 a a a a a a a a ...)");
  EXPECT_EQ(apply("f2000", std::vector<const Term_*>(2000, a))->to_shallow_str(),
            "(f2000 a a a a a a a a ...)");
}

}  // namespace
}  // namespace quill
