#include <gtest/gtest.h>

#include <concepts>
#include <cstdint>
#include <iterator>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "quill/utils/hash_map.h"
#include "quill/utils/hash_set.h"
#include "quill/utils/hash_table.h"
#include "quill/utils/qnumber.h"
#include "tests/support/failing_memory.h"

namespace quill::hsh {
namespace {

using Map = HashMap<unsigned long, int>;
using Set = HashSet<unsigned long>;

std::vector<unsigned long> keys_in_order(const Map& map) {
  std::vector<unsigned long> keys;
  for (const auto& [key, mapped] : map) keys.push_back(key);
  return keys;
}

std::vector<unsigned long> keys_in_order(const Set& set) {
  return std::vector<unsigned long>(set.begin(), set.end());
}

template <class Table>
size_t number_of_chunks(const Table& table) {
  size_t chunks = 0;
  for (auto* chunk = table.pool.chunks; chunk != nullptr; chunk = chunk->next) ++chunks;
  return chunks;
}

template <class Table>
size_t number_of_free_nodes(const Table& table) {
  size_t nodes = 0;
  for (auto* node = table.pool.free_list; node != nullptr; node = node->next) ++nodes;
  return nodes;
}

using Keys = std::vector<unsigned long>;

// --- Layout ---

TEST(Hashtable, NodesHoldALinkAndTheValue) {
  EXPECT_EQ(sizeof(HashSet<const int*>::Bucket), 16U);
  EXPECT_EQ(sizeof(HashMap<const int*, const int*>::Bucket), 24U);
  EXPECT_EQ(sizeof(HashMap<const int*, QNumber>::Bucket), 32U);
  EXPECT_EQ(sizeof(HashMap<QNumber, const int*>::Bucket), 32U);
}

TEST(Hashtable, IsNeitherCopiedNorMoved) {
  EXPECT_FALSE(std::copy_constructible<Map>);
  EXPECT_FALSE(std::move_constructible<Map>);
  EXPECT_FALSE((std::assignable_from<Map&, const Map&>));
  EXPECT_FALSE((std::assignable_from<Map&, Map>));
}

TEST(Hashtable, ANewTableHas31EmptyBucketsAndNoChunk) {
  const Map map;
  EXPECT_EQ(map.count, 0U);
  EXPECT_EQ(map.buckets, std::vector<Map::Bucket*>(31, nullptr));
  EXPECT_EQ(map.pool.chunks, nullptr);
  EXPECT_EQ(map.begin(), map.end());
}

// --- Insertion and growth ---

TEST(Hashtable, The23rdInsertionGrowsTo73Buckets) {
  Set set;
  for (unsigned long key = 0; key < 22; ++key) set.insert(key);
  EXPECT_EQ(set.count, 22U);
  EXPECT_EQ(set.buckets.size(), 31U);
  set.insert(22);
  EXPECT_EQ(set.count, 23U);
  EXPECT_EQ(set.buckets.size(), 73U);
}

TEST(Hashtable, InsertTellsWhetherTheKeyIsNew) {
  Map map;
  EXPECT_TRUE(map.insert({5, 50}));
  EXPECT_FALSE(map.insert({5, 51}));
  EXPECT_EQ(map.count, 1U);
  EXPECT_EQ(map.find(5)->second, 50);
}

TEST(Hashtable, InsertionTellsTheBucketAndTheNode) {
  Map map;
  uint64_t index = 99;
  Map::Bucket* node = nullptr;
  EXPECT_TRUE(map.do_insert({35, 50}, index, node));
  EXPECT_EQ(index, 4U);  // 35 mod 31
  EXPECT_EQ(node, map.find(35).node);
  EXPECT_EQ(node->value, std::pair(35UL, 50));

  uint64_t index_again = 99;
  Map::Bucket* present = nullptr;
  EXPECT_FALSE(map.do_insert({35, 51}, index_again, present));
  EXPECT_EQ(index_again, 4U);
  EXPECT_EQ(present, node);
  EXPECT_EQ(node->value, std::pair(35UL, 50));

  Set set;
  Set::Bucket* element = nullptr;
  EXPECT_TRUE(set.do_insert(32, index, element));
  EXPECT_EQ(index, 1U);
  EXPECT_EQ(element->value, 32U);
}

TEST(Hashtable, InsertingAPresentKeyMayGrowTheTable) {
  Map map;
  for (unsigned long key = 0; key < 22; ++key) map.insert({key, 1});
  const auto* node = map.find(7).node;
  EXPECT_FALSE(map.insert({7, 2}));
  EXPECT_EQ(map.buckets.size(), 73U);
  EXPECT_EQ(map.count, 22U);
  EXPECT_EQ(map.find(7).node, node);
  EXPECT_EQ(map[7], 1);
}

TEST(Hashtable, SubscriptingAPresentKeyMayGrowTheTable) {
  Map map;
  for (unsigned long key = 0; key < 22; ++key) map[key] = 1;
  EXPECT_EQ(map.buckets.size(), 31U);
  EXPECT_EQ(map[7], 1);
  EXPECT_EQ(map.buckets.size(), 73U);
  EXPECT_EQ(map.count, 22U);
}

TEST(Hashtable, FindingNeverGrowsTheTable) {
  Map map;
  for (unsigned long key = 0; key < 22; ++key) map[key] = 1;
  EXPECT_EQ(map.find(7)->second, 1);
  EXPECT_EQ(map.find(99), map.end());
  EXPECT_EQ(map.buckets.size(), 31U);
}

TEST(Hashtable, ValuesStayAtTheirAddressesWhenTheTableGrows) {
  HashMap<unsigned long, std::string> map;
  map[3] = "three";
  const std::string* address = &map[3];
  for (unsigned long key = 100; key < 1100; ++key) map[key];
  EXPECT_EQ(map.buckets.size(), 2593U);
  EXPECT_EQ(&map[3], address);
  EXPECT_EQ(*address, "three");
}

// --- Lookup ---

struct HashNeverCalled {
  uint64_t operator()(const int*) const {
    ADD_FAILURE() << "an empty table hashed a key";
    return 0;
  }
};

TEST(Hashtable, FindOnAnEmptyTableDoesNotHash) {
  HashMap<const int*, int, HashNeverCalled> map;
  EXPECT_EQ(map.find(nullptr), map.end());
  const auto& constant = map;
  EXPECT_EQ(constant.find(nullptr), constant.end());
}

struct Record {
  uint64_t id;
};

struct HashById {
  uint64_t operator()(const Record* record) const { return record->id; }
};

TEST(Hashtable, KeysOfOneHashAreToldApartByEquality) {
  const Record a{41};
  const Record b{41};
  HashMap<const Record*, int, HashById> map;
  map[&a] = 1;
  EXPECT_EQ(map.find(&b), map.end());
  map[&b] = 2;
  EXPECT_EQ(map.find(&a)->second, 1);
  EXPECT_EQ(map.find(&b)->second, 2);
  EXPECT_EQ(map.find(&a).index, 10U);
  EXPECT_EQ(map.find(&b).index, 10U);
}

TEST(Hashtable, StringsAreComparedBehindTheirNuls) {
  HashMap<std::string, int> map;
  map["a"] = 1;
  map[std::string("a\0b", 3)] = 2;
  map[std::string("a\0c", 3)] = 3;
  EXPECT_EQ(map.count, 3U);
  EXPECT_EQ(map.find(std::string("a\0b", 3))->second, 2);
  EXPECT_EQ(map.find("a")->second, 1);
  EXPECT_EQ(map.find("a").index, map.find(std::string("a\0c", 3)).index);
}

TEST(Hashtable, NumbersAreKeys) {
  HashMap<QNumber, int> map;
  map[QNumber(1, 3)] = 13;
  map[QNumber::from_string("18446744073709551616")] = 64;
  EXPECT_EQ(map.find(QNumber(1, 3))->second, 13);
  EXPECT_EQ(map.find(QNumber::from_string("18446744073709551616"))->second, 64);
  EXPECT_EQ(map.find(QNumber(1, 4)), map.end());
}

// --- Defaults of operator[] ---

TEST(HashMap, AMissingKeyGetsNullZeroOrADefaultValue) {
  HashMap<unsigned long, const int*> pointers;
  EXPECT_EQ(pointers[1], nullptr);
  HashMap<unsigned long, unsigned long> words;
  EXPECT_EQ(words[1], 0U);
  HashMap<unsigned long, QNumber> numbers;
  EXPECT_EQ(numbers[1].num, 0);
  EXPECT_EQ(numbers[1].den, 1);
}

// A reused node must not show its former value.
TEST(HashMap, TheDefaultIsZeroInAReusedNodeToo) {
  HashMap<unsigned long, unsigned long> map;
  map[1] = 99;
  map.erase(map.find(1));
  EXPECT_EQ(map[2], 0U);
}

TEST(HashMap, MappedValuesNeedNoCopy) {
  HashMap<unsigned long, std::unique_ptr<int>> map;
  map[4] = std::make_unique<int>(44);
  EXPECT_EQ(*map[4], 44);
}

// --- Order ---

TEST(Hashtable, AWalkVisitsBucketsInOrderAndChainsFromTheirNewestNode) {
  Set set;
  for (const unsigned long key : {33UL, 0UL, 31UL, 2UL, 62UL, 30UL}) set.insert(key);
  EXPECT_EQ(keys_in_order(set), (Keys{62, 31, 0, 2, 33, 30}));
}

TEST(Hashtable, GrowthReversesTheChains) {
  Set set;
  // 2263 = 31 * 73, so these three share a bucket before and after.
  for (const unsigned long key : {0UL, 2263UL, 4526UL}) set.insert(key);
  for (unsigned long key = 1; key <= 19; ++key) set.insert(key);
  EXPECT_EQ(set.buckets.size(), 31U);
  Keys before = keys_in_order(set);
  EXPECT_EQ(Keys(before.begin(), before.begin() + 4), (Keys{4526, 2263, 0, 1}));
  set.insert(20);
  EXPECT_EQ(set.buckets.size(), 73U);
  Keys after = keys_in_order(set);
  EXPECT_EQ(Keys(after.begin(), after.begin() + 4), (Keys{0, 2263, 4526, 1}));
}

// Old buckets are emptied in index order: of 1 and 74, which meet in bucket 1 of 73, the second
// comes from old bucket 12 and is pushed later, whatever the order of insertion.
TEST(Hashtable, GrowthTakesTheOldBucketsInIndexOrder) {
  for (const bool small_first : {true, false}) {
    Set set;
    set.insert(small_first ? 1 : 74);
    set.insert(small_first ? 74 : 1);
    for (unsigned long key = 2; key <= 22; ++key) set.insert(key);
    ASSERT_EQ(set.buckets.size(), 73U);
    Keys keys = keys_in_order(set);
    EXPECT_EQ(Keys(keys.begin(), keys.begin() + 3), (Keys{74, 1, 2}));
  }
}

TEST(Hashtable, TheEndHasTheBucketCountAsIndexAndNoNode) {
  Set set;
  set.insert(30);
  auto it = set.begin();
  EXPECT_EQ(it.index, 30U);
  EXPECT_EQ(it.bucket_count, 31U);
  ++it;
  EXPECT_EQ(it.index, 31U);
  EXPECT_EQ(it.node, nullptr);
  EXPECT_EQ(it, set.end());
  EXPECT_EQ(set.end().index, 31U);
  EXPECT_EQ(set.find(29).index, 31U);
}

TEST(Hashtable, IteratorsAreForwardIterators) {
  EXPECT_TRUE(std::forward_iterator<Map::Iter>);
  EXPECT_TRUE(std::forward_iterator<Map::ConstIter>);
  EXPECT_TRUE((std::convertible_to<Map::Iter, Map::ConstIter>));
  EXPECT_FALSE((std::convertible_to<Map::ConstIter, Map::Iter>));
}

TEST(Hashtable, MappedValuesChangeThroughIteratorsAndKeysOfSetsDoNot) {
  Map map;
  map.insert({1, 10});
  for (auto& [key, mapped] : map) mapped = 11;
  EXPECT_EQ(map[1], 11);
  map.find(1)->second = 12;
  EXPECT_EQ(map[1], 12);
  EXPECT_TRUE((std::same_as<decltype(*std::declval<Set&>().begin()), const unsigned long&>));
}

// --- Removal ---

// Keys 0, 31, 62 and 93 chain up in bucket 0, newest first: 93, 62, 31, 0. Key 5 is alone in its
// bucket.
class HashtableErase : public ::testing::Test {
 protected:
  void SetUp() override {
    for (const unsigned long key : {0UL, 31UL, 62UL, 93UL, 5UL}) set.insert(key);
  }
  Set set;
};

TEST_F(HashtableErase, InsideAChainReturnsThePredecessor) {
  auto it = set.erase(set.find(31));
  EXPECT_EQ(*it, 62U);
  EXPECT_EQ(it.index, 0U);
  EXPECT_EQ(keys_in_order(set), (Keys{93, 62, 0, 5}));
  EXPECT_EQ(set.count, 4U);
}

TEST_F(HashtableErase, AtTheTailReturnsThePredecessor) {
  auto it = set.erase(set.find(0));
  EXPECT_EQ(*it, 31U);
  EXPECT_EQ(*++it, 5U);
  EXPECT_EQ(keys_in_order(set), (Keys{93, 62, 31, 5}));
}

TEST_F(HashtableErase, OfAHeadReturnsTheNewHead) {
  auto it = set.erase(set.find(93));
  EXPECT_EQ(*it, 62U);
  EXPECT_EQ(keys_in_order(set), (Keys{62, 31, 0, 5}));
}

TEST_F(HashtableErase, OfTheOnlyNodeReturnsTheNextHead) {
  for (const unsigned long key : {0UL, 31UL, 62UL}) set.erase(set.find(key));
  auto it = set.erase(set.find(93));
  EXPECT_EQ(*it, 5U);
  EXPECT_EQ(it.index, 5U);
}

TEST_F(HashtableErase, OfTheLastBucketsNodeReturnsTheEnd) {
  auto it = set.erase(set.find(5));
  EXPECT_EQ(it, set.end());
  EXPECT_EQ(it.index, 31U);
  EXPECT_EQ(set.count, 4U);
}

TEST_F(HashtableErase, AWalkThatReexaminesWhatItGetsErasesAllItWants) {
  auto it = set.begin();
  while (it != set.end()) {
    if (*it % 2 == 1) {
      it = set.erase(it);
    } else {
      ++it;
    }
  }
  EXPECT_EQ(keys_in_order(set), (Keys{62, 0}));
}

TEST_F(HashtableErase, ErasedKeysCanComeBack) {
  set.erase(set.find(31));
  EXPECT_EQ(set.find(31), set.end());
  EXPECT_TRUE(set.insert(31));
  EXPECT_EQ(keys_in_order(set), (Keys{31, 93, 62, 0, 5}));
}

TEST(Hashtable, ErasingEverythingKeepsTheBucketsAndTheChunks) {
  Set set;
  for (unsigned long key = 0; key < 1000; ++key) set.insert(key);
  const size_t chunks = number_of_chunks(set);
  EXPECT_EQ(chunks, 6U);  // 16 + 32 + ... + 512 = 1008 nodes
  while (set.count != 0) set.erase(set.begin());
  EXPECT_EQ(set.buckets.size(), 2593U);
  EXPECT_EQ(set.begin(), set.end());
  EXPECT_EQ(number_of_free_nodes(set), 1008U);

  for (unsigned long key = 0; key < 1008; ++key) set.insert(5000 + key);
  EXPECT_EQ(number_of_chunks(set), chunks);
  EXPECT_EQ(set.buckets.size(), 2593U);
  set.insert(9000);
  EXPECT_EQ(number_of_chunks(set), chunks + 1);
}

TEST(Hashtable, AnElementIsErasedByItsKeyWhereverItIsInItsChain) {
  for (const unsigned long key : {5UL, 36UL, 67UL}) {  // all in bucket 5
    Set set;
    EXPECT_FALSE(set.erase_key(key));
    for (const unsigned long k : {5UL, 36UL, 67UL, 6UL}) set.insert(k);
    EXPECT_FALSE(set.erase_key(98));
    EXPECT_TRUE(set.erase_key(key));
    EXPECT_FALSE(set.erase_key(key));
    EXPECT_EQ(set.count, 3U);
    EXPECT_EQ(number_of_free_nodes(set), 13U);
    for (const unsigned long k : {5UL, 36UL, 67UL, 6UL}) {
      EXPECT_EQ(set.find(k) != set.end(), k != key);
    }
  }
}

// The key may be that of the element itself, which is erased.
TEST(Hashtable, AnElementWithADestructorIsErasedByItsOwnKey) {
  hsh::HashMap<std::string, std::string> map;
  const std::string name(100, 'n');
  map[name] = std::string(100, 'v');
  map["other"] = "w";
  EXPECT_TRUE(map.erase_key(map.find(name)->first));
  EXPECT_EQ(map.count, 1U);
  EXPECT_EQ(map.find(name), map.end());
}

TEST(Hashtable, TheNodeErasedLastIsUsedNext) {
  Set set;
  set.insert(1);
  set.insert(2);
  const auto* node = set.find(1).node;
  set.erase(set.find(1));
  set.insert(77);
  EXPECT_EQ(set.find(77).node, node);
}

// --- Values with destructors ---

TEST(Hashtable, ErasureAndDestructionDestroyTheValues) {
  auto token = std::make_shared<int>(0);
  {
    HashMap<unsigned long, std::shared_ptr<int>> map;
    for (unsigned long key = 0; key < 100; ++key) map[key % 50 * 31 + key / 50] = token;
    EXPECT_EQ(token.use_count(), 101);
    map.erase(map.find(0));
    EXPECT_EQ(token.use_count(), 100);
  }
  EXPECT_EQ(token.use_count(), 1);
}

// --- Failures ---

TEST(Hashtable, AFailedGrowthLeavesTheTableAsItWas) {
  Map map;
  for (unsigned long key = 0; key < 22; ++key) map[key * 31 % 100] = static_cast<int>(key);
  const Keys before = keys_in_order(map);
  const size_t free_nodes = number_of_free_nodes(map);
  {
    testing::FailingMemory failing(0);
    EXPECT_THROW(map.insert({1000, 1}), std::bad_alloc);
    EXPECT_THROW(map[1000], std::bad_alloc);
    EXPECT_THROW(map[31], std::bad_alloc);  // a key that is there
  }
  EXPECT_EQ(map.buckets.size(), 31U);
  EXPECT_EQ(map.count, 22U);
  EXPECT_EQ(keys_in_order(map), before);
  EXPECT_EQ(number_of_free_nodes(map), free_nodes);
  EXPECT_EQ(map.find(31)->second, 1);

  EXPECT_TRUE(map.insert({1000, 1}));
  EXPECT_EQ(map.buckets.size(), 73U);
  EXPECT_EQ(map.count, 23U);
  map.erase(map.find(1000));
  EXPECT_EQ(map.count, 22U);
}

TEST(Hashtable, AFailedChunkLeavesTheTableAsItWas) {
  Set set;
  for (unsigned long key = 0; key < 16; ++key) set.insert(key);
  set.pool.chunk_elems = uint64_t{1} << 57;
  const Keys before = keys_in_order(set);
  EXPECT_THROW(set.insert(16), std::bad_alloc);
  EXPECT_EQ(keys_in_order(set), before);
  EXPECT_EQ(set.count, 16U);
  set.pool.chunk_elems = 32;
  EXPECT_TRUE(set.insert(16));
  EXPECT_EQ(set.count, 17U);
}

struct Refused : std::runtime_error {
  Refused() : std::runtime_error("refused") {}
};

// Copies of 13 cannot be made.
struct Picky {
  explicit Picky(int number) : value(number) {}
  Picky(const Picky& other) : value(other.value) {
    if (value == 13) throw Refused();
  }
  Picky& operator=(const Picky&) = delete;
  int value;
};

TEST(Hashtable, AValueThatCannotBeCopiedLeavesTheTableAsItWas) {
  HashMap<unsigned long, Picky> map;
  map.insert(std::pair<unsigned long, Picky>(std::piecewise_construct, std::forward_as_tuple(1),
                                             std::forward_as_tuple(11)));
  const std::pair<unsigned long, Picky> unlucky(std::piecewise_construct, std::forward_as_tuple(32),
                                                std::forward_as_tuple(13));
  const auto* free_node = map.pool.free_list;
  EXPECT_THROW(map.insert(unlucky), Refused);
  EXPECT_EQ(map.pool.free_list, free_node);
  EXPECT_EQ(map.count, 1U);
  EXPECT_EQ(map.find(32), map.end());
  EXPECT_EQ(map.begin()->second.value, 11);
  EXPECT_EQ(++map.begin(), map.end());

  map.insert(std::pair<unsigned long, Picky>(std::piecewise_construct, std::forward_as_tuple(32),
                                             std::forward_as_tuple(12)));
  EXPECT_EQ(map.find(32)->second.value, 12);
}

// --- Misuse ---

#ifndef NDEBUG
TEST(HashtableDeathTest, AnIteratorFromBeforeGrowthIsFoundOut) {
  Set set;
  set.insert(0);
  auto it = set.begin();
  for (unsigned long key = 1; key < 23; ++key) set.insert(key);
  EXPECT_DEATH(++it, "used after its table grew");
  EXPECT_DEATH(set.erase(it), "used after its table grew");
}

TEST(HashtableDeathTest, TheEndIsNotAnElement) {
  Set set;
  EXPECT_DEATH(*set.end(), "the end of a table has no element");
  EXPECT_DEATH(++set.begin(), "moved past the end");
  EXPECT_DEATH(set.erase(set.end()), "the end of a table cannot be erased");
}

TEST(HashtableDeathTest, IteratorsBelongToOneTable) {
  Set a;
  Set b;
  a.insert(1);
  b.insert(1);
  EXPECT_DEATH((void)(a.begin() == b.begin()), "different tables");
  EXPECT_DEATH(a.erase(b.begin()), "through another table");
}

TEST(HashtableDeathTest, AnElementIsErasedOnce) {
  Set set;
  for (const unsigned long key : {0UL, 31UL, 62UL}) set.insert(key);
  auto it = set.find(31);
  set.erase(it);
  EXPECT_DEATH(set.erase(it), "erased twice");
}
#endif

}  // namespace
}  // namespace quill::hsh
