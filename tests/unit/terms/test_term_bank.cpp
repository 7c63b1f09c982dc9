#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <new>
#include <random>
#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "quill/terms/signature.h"
#include "quill/terms/term_bank.h"
#include "quill/terms/type_universe.h"
#include "tests/support/failing_memory.h"

namespace quill {
namespace {

using Terms = std::vector<const Term_*>;
using Ids = std::vector<uint64_t>;

class TermBankTest : public ::testing::Test {
 protected:
  const Symbol* symbol(const std::string& name, size_t arity) {
    std::vector<const DataType*> type = {universe.get_application_type()};
    type.insert(type.end(), arity + 1, universe.make_type("S"));
    return signature.add_symbol(name.c_str(), universe.make_type(type));
  }
  const Term_* constant(const std::string& name) {
    return bank.make_term(symbol(name, 0), nullptr);
  }
  Ids ids() const {
    Ids all;
    for (const Term_* t : bank) all.push_back(t->id);
    std::sort(all.begin(), all.end());
    return all;
  }

  TypeUniverse universe;
  Signature signature{&universe};
  TermBank bank;
};

TEST_F(TermBankTest, IsNotCopied) {
  EXPECT_FALSE(std::is_copy_constructible_v<TermBank>);
  EXPECT_FALSE(std::is_copy_assignable_v<TermBank>);
}

TEST_F(TermBankTest, StartsEmpty) {
  EXPECT_EQ(bank.size(), 0U);
  EXPECT_EQ(bank.id_bound(), 0U);
  EXPECT_EQ(bank.begin(), bank.end());
}

TEST_F(TermBankTest, AConstantIsMadeWithoutAnArgumentArray) {
  const Symbol* c = symbol("c", 0);
  const Term_* t = bank.make_term(c, nullptr);
  EXPECT_EQ(t->symbol, c);
  EXPECT_EQ(bank.make_term(c, nullptr), t);
  EXPECT_EQ(bank.size(), 1U);
}

TEST_F(TermBankTest, TheSameRequestYieldsTheSameTerm) {
  const Symbol* f = symbol("f", 2);
  const Term_* ab[] = {constant("a"), constant("b")};
  const Term_* t = bank.make_term(f, ab);
  const Term_* again[] = {ab[0], ab[1]};
  EXPECT_EQ(bank.make_term(f, again), t);
}

TEST_F(TermBankTest, TheOrderOfArgumentsCounts) {
  const Symbol* f = symbol("f", 2);
  const Term_* ab[] = {constant("a"), constant("b")};
  const Term_* ba[] = {ab[1], ab[0]};
  EXPECT_NE(bank.make_term(f, ab), bank.make_term(f, ba));
}

TEST_F(TermBankTest, TheSymbolCounts) {
  const Term_* a = constant("a");
  EXPECT_NE(bank.make_term(symbol("f", 1), &a), bank.make_term(symbol("g", 1), &a));
}

TEST_F(TermBankTest, TheArgumentArrayIsCopied) {
  const Term_* args[] = {constant("a"), constant("b")};
  const Term_* t = bank.make_term(symbol("f", 2), args);
  std::swap(args[0], args[1]);
  EXPECT_EQ(t->args[0], args[1]);
}

// --- Ids ---

TEST_F(TermBankTest, IdsCountFromZeroInTheOrderOfCreation) {
  for (uint64_t i = 0; i < 1000; ++i) {
    EXPECT_EQ(constant("c" + std::to_string(i))->id, i);
    EXPECT_EQ(constant("c" + std::to_string(i / 2))->id, i / 2);  // found: takes no id
    EXPECT_EQ(bank.id_bound(), i + 1);
  }
}

TEST_F(TermBankTest, FreedIdsAreGivenAgainLowestFirst) {
  for (int i = 0; i < 10; ++i) constant("c" + std::to_string(i));
  bank.remove_unseen({true, false, true, true, false, true, true, false, true, true});
  EXPECT_EQ(bank.id_bound(), 10U);
  EXPECT_EQ(constant("n1")->id, 1U);
  EXPECT_EQ(constant("n2")->id, 4U);
  EXPECT_EQ(constant("n3")->id, 7U);
  EXPECT_EQ(constant("n4")->id, 10U);
}

TEST_F(TermBankTest, TheLowestIdComesFirstAfterSeveralRemovals) {
  for (int i = 0; i < 10; ++i) constant("c" + std::to_string(i));
  bank.remove_unseen({true, true, true, true, true, true, false, true, true, true});
  bank.remove_unseen({true, true, false, true, true, true, true, true, false, true});
  bank.remove_unseen({true, true, true, true, false, true, true, true, true, true});
  EXPECT_EQ(constant("n1")->id, 2U);
  EXPECT_EQ(constant("n2")->id, 4U);
  EXPECT_EQ(constant("n3")->id, 6U);
  EXPECT_EQ(constant("n4")->id, 8U);
  EXPECT_EQ(constant("n5")->id, 10U);
}

TEST_F(TermBankTest, TheBoundFollowsTheLargestIdInUse) {
  for (int i = 0; i < 10; ++i) constant("c" + std::to_string(i));
  bank.remove_unseen({true, false, true, true, false});
  EXPECT_EQ(bank.id_bound(), 4U);
  EXPECT_EQ(constant("n1")->id, 1U);
  EXPECT_EQ(constant("n2")->id, 4U);
  bank.remove_unseen({});
  EXPECT_EQ(bank.id_bound(), 0U);
  EXPECT_EQ(constant("n3")->id, 0U);
}

// --- Removal ---

TEST_F(TermBankTest, RemovalLeavesExactlyTheMarkedTerms) {
  const Term_* a = constant("a");
  constant("b");
  const Term_* fa = bank.make_term(symbol("f", 1), &a);
  bank.make_term(symbol("f", 1), &fa);
  bank.remove_unseen({true, false, true, false});
  EXPECT_EQ(ids(), Ids({0, 2}));
  EXPECT_EQ(bank.size(), 2U);
  EXPECT_EQ(constant("a"), a);
  EXPECT_EQ(bank.make_term(symbol("f", 1), &a), fa);
  EXPECT_EQ(fa->id, 2U);
  EXPECT_EQ(fa->args[0], a);
}

TEST_F(TermBankTest, AnIdBeyondTheMarksIsNotMarked) {
  const Term_* a = constant("a");
  constant("b");
  constant("c");
  bank.remove_unseen({true});
  EXPECT_EQ(ids(), Ids({0}));
  EXPECT_EQ(*bank.begin(), a);
}

TEST_F(TermBankTest, MarksBeyondTheLargestIdAreNoMatter) {
  constant("a");
  bank.remove_unseen(std::vector<bool>(1000, true));
  EXPECT_EQ(ids(), Ids({0}));
}

TEST_F(TermBankTest, ARemovedTermIsMadeAnew) {
  const Term_* a = constant("a");
  const Symbol* f = symbol("f", 2000);
  const Terms args(2000, a);
  bank.make_term(f, args.data());
  bank.remove_unseen({true});
  const Term_* t = bank.make_term(f, args.data());
  EXPECT_EQ(t->id, 1U);
  EXPECT_EQ(t->args[1999], a);
  EXPECT_EQ(bank.size(), 2U);
}

// --- Iteration ---

TEST_F(TermBankTest, IteratorsArePostfixAndPrefix) {
  const Term_* a = constant("a");
  const Term_* b = constant("b");
  auto it = bank.begin();
  EXPECT_EQ(*it++, a);
  EXPECT_EQ(*it, b);
  EXPECT_EQ(++it, bank.end());
}

// Terms of several arities, made in the same order in two banks whose nodes lie elsewhere.
TEST_F(TermBankTest, TheOrderOfIterationDoesNotDependOnAddresses) {
  std::vector<Ids> orders;
  std::vector<std::vector<char>> ballast;
  for (int round = 0; round < 2; ++round) {
    TermBank own;
    Terms made;
    for (int i = 0; i < 300; ++i) {
      if (round == 1) ballast.emplace_back(static_cast<size_t>(37 * i + 1));
      const size_t arity = static_cast<size_t>(i % 4);
      Terms args(arity, i > 4 ? made[static_cast<size_t>(i / 2)] : nullptr);
      if (i <= 4) args.clear();
      made.push_back(own.make_term(symbol("s" + std::to_string(i), args.size()), args.data()));
    }
    std::vector<bool> seen;
    for (int i = 0; i < 300; ++i) seen.push_back(i % 3 != 0);
    own.remove_unseen(seen);
    Ids order;
    for (const Term_* t : own) order.push_back(t->id);
    orders.push_back(order);
  }
  EXPECT_EQ(orders[0].size(), 200U);
  EXPECT_EQ(orders[0], orders[1]);
}

// --- Growth ---

// The index grows with its 33rd, 65th, 129th ... entry; slabs of unary nodes fill at 42, 127, 298
// ...
TEST_F(TermBankTest, AllTermsAreFoundAcrossGrowth) {
  const Symbol* f = symbol("f", 1);
  Terms chain = {constant("a")};
  size_t next_check = 30;
  while (chain.size() < 12000) {
    chain.push_back(bank.make_term(f, &chain.back()));
    ASSERT_EQ(bank.size(), chain.size());
    if (chain.size() < next_check) continue;
    for (size_t i = 1; i < chain.size(); ++i) {
      ASSERT_EQ(bank.make_term(f, &chain[i - 1]), chain[i]) << i << " of " << chain.size();
      ASSERT_EQ(chain[i]->id, i);
    }
    ASSERT_EQ(bank.size(), chain.size());
    next_check += chain.size() < 400 ? 1 : chain.size() / 8;
  }
  EXPECT_EQ(ids().size(), 12000U);
}

// --- All of it ---

// The model knows a term by the name of its symbol and the ids of its arguments, and gives ids of
// its own: the lowest free one.
TEST_F(TermBankTest, AgreesWithAModelOverRandomOperations) {
  std::mt19937 random(20240612);
  using Key = std::pair<std::string, Ids>;
  std::map<Key, uint64_t> model;
  std::vector<std::pair<const Term_*, Key>> by_id;  // null: the id is free
  std::set<uint64_t> free_ids;
  std::vector<const Symbol*> symbols;
  for (int i = 0; i < 40; ++i) symbols.push_back(symbol("c" + std::to_string(i), 0));
  for (size_t arity = 1; arity <= 5; ++arity) {
    for (int i = 0; i < 4; ++i) {
      symbols.push_back(symbol("f" + std::to_string(arity) + std::to_string(i), arity));
    }
  }
  const Symbol* wide = symbol("wide", 2000);

  Terms live;  // arguments are drawn from these
  uint64_t requests = 0;
  uint64_t removals = 0;
  for (int step = 0; step < 200000; ++step) {
    // Removal is frequent at first, then rare, so that the bank is also seen large.
    if (random() % (step < 100000 ? 300 : 20000) == 0) {
      // Marks random roots and all that is below them; arguments have been made before, but ids
      // given again may be lower.
      std::vector<bool> seen(by_id.size());
      const auto keep_percent = random() % 4 == 0 ? 0 : random() % 100;
      Terms work;
      for (const Term_* t : live) {
        if (random() % 100 < keep_percent) work.push_back(t);
      }
      while (!work.empty()) {
        const Term_* t = work.back();
        work.pop_back();
        if (seen[t->id]) continue;
        seen[t->id] = true;
        for (const Term_* argument : t->arguments()) work.push_back(argument);
      }
      live.clear();
      for (uint64_t id = 0; id < by_id.size(); ++id) {
        if (by_id[id].first == nullptr) continue;
        if (seen[id]) {
          live.push_back(by_id[id].first);
        } else {
          model.erase(by_id[id].second);
          by_id[id].first = nullptr;
          free_ids.insert(id);
        }
      }
      bank.remove_unseen(seen);
      ++removals;
      Ids expected;
      for (const Term_* t : live) expected.push_back(t->id);
      ASSERT_EQ(ids(), expected);
      ASSERT_TRUE(bank.is_consistent());
      while (!by_id.empty() && by_id.back().first == nullptr) {
        free_ids.erase(by_id.size() - 1);
        by_id.pop_back();
      }
      ASSERT_EQ(bank.id_bound(), by_id.size());
      continue;
    }
    const Symbol* s = symbols[random() % symbols.size()];
    if (random() % 1000 == 0) s = wide;
    if (live.empty()) s = symbols[random() % 40];
    Terms args;
    for (uint64_t i = 0; i < s->arity; ++i) {
      // A narrow choice now and then, so that many requests meet a term that is there.
      const size_t window = random() % 2 == 0 ? std::min<size_t>(live.size(), 6) : live.size();
      args.push_back(live[random() % window]);
    }
    if (s == wide) {  // two lists that differ in their last argument only
      args.assign(2000, live[0]);
      args.back() = live[random() % std::min<size_t>(live.size(), 2)];
    }
    Key key = {s->name, {}};
    for (const Term_* arg : args) key.second.push_back(arg->id);

    const Term_* t = bank.make_term(s, args.empty() ? nullptr : args.data());
    ++requests;
    const auto present = model.find(key);
    if (present != model.end()) {
      ASSERT_EQ(t->id, present->second);
      ASSERT_EQ(t, by_id[t->id].first);
    } else {
      uint64_t id = by_id.size();
      if (!free_ids.empty()) {
        id = *free_ids.begin();
        free_ids.erase(free_ids.begin());
      } else {
        by_id.emplace_back();
      }
      ASSERT_EQ(t->id, id);
      ASSERT_EQ(t->symbol, s);
      ASSERT_TRUE(std::equal(args.begin(), args.end(), t->args));
      by_id[id] = {t, key};
      model.emplace(std::move(key), id);
      live.push_back(t);
    }
    ASSERT_EQ(bank.size(), model.size());
    ASSERT_EQ(bank.id_bound(), by_id.size());
  }
  EXPECT_GT(requests, 190000U);
  EXPECT_GT(removals, 200U);
}

// --- Exhausted memory ---

// Whatever allocation fails, the bank stays as it was and the next request gets the next id.
TEST_F(TermBankTest, AFailedRequestUsesUpNoId) {
  for (const size_t arity : {size_t{0}, size_t{3}, size_t{1022}, size_t{2000}}) {
    for (const int entries : {1, 32, 64}) {  // an empty table aside: full index, full slab
      TermBank own;
      const Term_* first = own.make_term(symbol("c0", 0), nullptr);
      for (int i = 1; i < entries; ++i) {
        own.make_term(symbol("c" + std::to_string(i), 0), nullptr);
      }
      const Symbol* s = symbol("s" + std::to_string(arity), arity);
      const Terms args(arity, first);
      for (size_t k = 0;; ++k) {
        const Term_* t = nullptr;
        {
          const testing::FailingMemory after(k);
          try {
            t = own.make_term(s, args.data());
          } catch (const std::bad_alloc&) {
          }
        }
        if (t == nullptr) {
          ASSERT_EQ(own.size(), static_cast<size_t>(entries));
          ASSERT_EQ(own.id_bound(), static_cast<uint64_t>(entries));
          ASSERT_EQ(std::distance(own.begin(), own.end()), entries);
          continue;
        }
        EXPECT_EQ(t->id, static_cast<uint64_t>(entries));
        EXPECT_EQ(own.make_term(s, args.data()), t);
        break;
      }
    }
  }
}

TEST_F(TermBankTest, AFailedRequestKeepsFreedIds) {
  for (int i = 0; i < 42; ++i) constant("c" + std::to_string(i));
  std::vector<bool> seen(42, true);
  seen[5] = false;
  bank.remove_unseen(seen);
  const Symbol* s = symbol("s", 2000);
  const Terms args(2000, *bank.begin());
  bool failed = false;
  try {
    const testing::FailingMemory none(0);
    bank.make_term(s, args.data());
  } catch (const std::bad_alloc&) {
    failed = true;
  }
  EXPECT_TRUE(failed);
  EXPECT_EQ(bank.make_term(s, args.data())->id, 5U);
}

TEST_F(TermBankTest, RemovalNeedsNoMemory) {
  for (int i = 0; i < 1000; ++i) constant("c" + std::to_string(i));
  const std::vector<bool> seen = {true, false, true};
  {
    const testing::FailingMemory none(0);
    bank.remove_unseen(seen);
  }
  EXPECT_EQ(ids(), Ids({0, 2}));
  EXPECT_TRUE(bank.is_consistent());
  EXPECT_EQ(constant("n1")->id, 1U);
  EXPECT_EQ(constant("n2")->id, 3U);
}

// --- Memory ---

// Nodes without arguments fill slabs of 1, 2, 4, ... 64 KiB; 64 of them fit in a KiB.
TEST_F(TermBankTest, RemovalGivesMemoryBack) {
  for (int i = 0; i < 64 + 128 + 256 + 10; ++i) constant("c" + std::to_string(i));
  TermBank::MemoryUse use = bank.memory_use();
  EXPECT_EQ(use.slabs, 4U);
  EXPECT_EQ(use.slab_bytes, 1024U + 2048 + 4096 + 8192);
  EXPECT_EQ(use.index_slots, 1024U);
  EXPECT_EQ(use.index_bytes, 8192U);

  bank.remove_unseen(std::vector<bool>(65, true));  // the first slab and one node of the second
  use = bank.memory_use();
  EXPECT_EQ(use.slabs, 2U);
  EXPECT_EQ(use.slab_bytes, 1024U + 2048);
  EXPECT_EQ(use.index_slots, 512U);
  EXPECT_EQ(use.index_bytes, 4096U);

  bank.remove_unseen({});
  use = bank.memory_use();
  EXPECT_EQ(use.slabs, 0U);
  EXPECT_EQ(use.slab_bytes, 0U);
  EXPECT_EQ(use.index_slots, 64U);
}

TEST_F(TermBankTest, BuildingAndRemovingAgainAndAgainTakesNoMoreMemory) {
  const Symbol* f = symbol("f", 1);
  const Symbol* wide = symbol("wide", 2000);
  size_t most = 0;
  for (int round = 0; round < 50; ++round) {
    const Term_* t = constant("c");
    for (int i = 0; i < 5000; ++i) t = bank.make_term(f, &t);
    const Terms args(2000, t);
    bank.make_term(wide, args.data());
    const size_t bytes = bank.memory_use().slab_bytes;
    if (round == 1) most = bytes;
    if (round > 1) {
      ASSERT_EQ(bytes, most);
    }
    bank.remove_unseen({});
    ASSERT_TRUE(bank.is_consistent());
  }
}

}  // namespace
}  // namespace quill
