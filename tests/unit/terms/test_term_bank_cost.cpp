// What the bank may cost, in counted events: no time is measured.

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "quill/terms/signature.h"
#include "quill/terms/term_bank.h"
#include "quill/terms/type_universe.h"
#include "quill/utils/entry_count.h"
#include "quill/utils/intern_index.h"
#include "quill/utils/keyed_hash.h"
#include "tests/support/failing_memory.h"

namespace quill {
namespace {

class TermBankCost : public ::testing::Test {
 protected:
  const Symbol* symbol(const std::string& name, size_t arity) {
    std::vector<const DataType*> type = {universe.get_application_type()};
    type.insert(type.end(), arity + 1, universe.make_type("S"));
    return signature.add_symbol(name.c_str(), universe.make_type(type));
  }

  // The i-th term over the constants: distinct for i below the square of their number.
  const Term_* binary(const Symbol* f, size_t i) {
    const Term_* args[] = {constants[i / constants.size()], constants[i % constants.size()]};
    return bank.make_term(f, args);
  }
  void add_constants(size_t count) {
    for (size_t i = 0; i < count; ++i) {
      constants.push_back(bank.make_term(symbol("c" + std::to_string(i), 0), nullptr));
    }
  }

  TypeUniverse universe;
  Signature signature{&universe};
  TermBank bank;
  std::vector<const Term_*> constants;
};

// The pages that hold nothing but arguments and headers of terms.
std::vector<void*> pages_full_of_terms(const TermBank& bank) {
  const size_t page_size = static_cast<size_t>(sysconf(_SC_PAGESIZE));
  std::map<uintptr_t, size_t> bytes_in_page;
  for (const Term_* t : bank) {
    uintptr_t at = reinterpret_cast<uintptr_t>(t);
    for (size_t rest = sizeof(Term_) + t->symbol->arity * sizeof(void*); rest != 0;) {
      const size_t here = std::min(rest, page_size - at % page_size);
      bytes_in_page[at / page_size] += here;
      at += here;
      rest -= here;
    }
  }
  std::vector<void*> full;
  for (const auto& [page, bytes] : bytes_in_page) {
    if (bytes == page_size) full.push_back(reinterpret_cast<void*>(page * page_size));
  }
  return full;
}

void protect(const std::vector<void*>& pages, int protection) {
  for (void* page : pages) {
    ASSERT_EQ(mprotect(page, static_cast<size_t>(sysconf(_SC_PAGESIZE)), protection), 0);
  }
}

TEST_F(TermBankCost, ATermThatIsThereIsFoundWithoutAnAllocation) {
  add_constants(100);
  const Symbol* f = symbol("f", 2);
  for (size_t i = 0; i < 10000; ++i) binary(f, i);
  const testing::AllocationCount count;
  for (size_t i = 0; i < 10000; ++i) binary(f, i);
  EXPECT_EQ(count.allocations(), 0U);
}

// Terms that may not be read are no hindrance to growth.
TEST_F(TermBankCost, GrowthOfTheIndexReadsNoTerm) {
  add_constants(200);
  const Symbol* f = symbol("f", 2);
  size_t made = 0;
  while (made < 20000) binary(f, made++);
  const size_t slots = bank.memory_use().index_slots;
  while (2 * (bank.size() + 1) <= slots) binary(f, made++);
  ASSERT_EQ(bank.memory_use().index_slots, slots);
  const Term_* next_arguments[] = {constants[0], constants[0]};
  const Symbol* g = symbol("g", 2);

  const std::vector<void*> pages = pages_full_of_terms(bank);
  ASSERT_GE(pages.size(), 100U);
  protect(pages, PROT_NONE);
  const Term_* t = bank.make_term(g, next_arguments);
  protect(pages, PROT_READ | PROT_WRITE);

  EXPECT_EQ(bank.memory_use().index_slots, 2 * slots);
  EXPECT_EQ(bank.make_term(g, next_arguments), t);
}

TEST_F(TermBankCost, ManyTermsTakeFewAllocations) {
  add_constants(600);
  const Symbol* f = symbol("f", 2);
  const testing::AllocationCount count;
  for (size_t i = 0; i < 300000; ++i) binary(f, i);
  EXPECT_LT(count.allocations(), 600U);
}

// 32 in the node, and two places in the index.
TEST_F(TermBankCost, BinaryTermsTakeAFewMoreThan48BytesEach) {
  add_constants(500);
  const Symbol* f = symbol("f", 2);
  for (size_t i = 0; i < 250000; ++i) binary(f, i);
  const TermBank::MemoryUse use = bank.memory_use();
  EXPECT_LE(use.slab_bytes + use.index_bytes, 50 * bank.size());
}

// No shape of terms makes the index fill in clusters. 250,000 of 262,144 possible places are taken,
// so that nothing could be worse.
TEST_F(TermBankCost, ALookUpReadsOneAndAHalfPlacesWhateverTheShape) {
  add_constants(500);
  const Symbol* f = symbol("f", 2);
  const Symbol* g = symbol("g", 1);
  const auto two = [&](const Term_* a, const Term_* b) {
    const Term_* args[] = {a, b};
    return bank.make_term(f, args);
  };
  const std::pair<const char*, std::function<void()>> shapes[] = {
      {"grid",
       [&] {
         for (size_t i = 0; i < 250000; ++i) binary(f, i);
       }},
      {"left chain",
       [&] {
         const Term_* t = constants[0];
         for (size_t i = 0; i < 250000; ++i) t = two(t, constants[1]);
       }},
      {"right chain",
       [&] {
         const Term_* t = constants[0];
         for (size_t i = 0; i < 250000; ++i) t = two(constants[1], t);
       }},
      {"squares",
       [&] {
         const Term_* t = constants[0];
         for (size_t i = 0; i < 250000; ++i) t = two(t, t);
       }},
      {"one below each",
       [&] {
         const Term_* t = constants[0];
         for (size_t i = 0; i < 250000; ++i) t = bank.make_term(g, &t);
       }},
      {"random",
       [&] {
         std::vector<const Term_*> all = constants;
         std::mt19937 random(1);
         while (all.size() < 250000) {
           const Term_* a = all[random() % all.size()];
           all.push_back(two(a, all[random() % all.size()]));
         }
       }},
  };
  for (const auto& [name, build] : shapes) {
    std::vector<bool> only_constants(constants.size(), true);
    bank.remove_unseen(only_constants);
    build();
    EXPECT_GE(bank.memory_use().index_slots, 2 * bank.size());
    EXPECT_LE(bank.memory_use().index_slots, 1U << 19) << name;
    EXPECT_LT(bank.mean_probe(), 1.52) << name;
    EXPECT_GT(bank.mean_probe(), 1.4) << name;
  }
}

// Of many pairs of arguments those whose hashes want the same few slots.
TEST_F(TermBankCost, TermsThatCollideCostLittleMoreThanOthers) {
  add_constants(1500);
  const Symbol* f = symbol("f", 2);
  const auto entries = [&](bool collide) {
    TermBank other;
    const uint64_t before = entries_looked_at();
    size_t made = 0;
    for (const Term_* a : constants) {
      for (const Term_* b : constants) {
        const Term_* args[] = {a, b};
        const uint64_t hash = hash_addresses(hash_key(0), f, args, 2);
        if (made == 20000 || (collide && InternIndex::fold(hash) % 65536 >= 1024)) continue;
        EXPECT_EQ(other.make_term(f, args), other.make_term(f, args));
        ++made;
      }
    }
    EXPECT_EQ(made, 20000U);
    EXPECT_TRUE(other.is_consistent());
    std::vector<bool> seen(20000);
    for (size_t i = 0; i < seen.size(); i += 2) seen[i] = true;
    other.remove_unseen(seen);
    EXPECT_TRUE(other.is_consistent());
    return entries_looked_at() - before;
  };
  EXPECT_LE(entries(true), 5 * entries(false));
}

}  // namespace
}  // namespace quill
