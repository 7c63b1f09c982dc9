// Random operations on a table and on a model of it that is as naive as possible: a vector of
// vectors, with exact integers in place of the load in single precision.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "quill/utils/hash_map.h"

namespace quill::hsh {
namespace {

const std::vector<uint64_t> model_bucket_counts = {
    31, 73, 151, 313, 643, 1291, 2593, 5233, 10501, 21013, 42073, 84181, 168451, 337219};

template <class Key, class Hash>
struct Model {
  using Entry = std::pair<Key, uint64_t>;

  // Where an element is: the chain, and the place in it counted from the head.
  struct Place {
    size_t chain;
    size_t depth;
  };

  std::vector<std::vector<Entry>> chains = std::vector<std::vector<Entry>>(31);
  size_t count = 0;

  void push_front(std::vector<std::vector<Entry>>& target, const Entry& entry) {
    auto& chain = target[Hash()(entry.first) % target.size()];
    chain.insert(chain.begin(), entry);
  }

  std::optional<Place> find(const Key& key) const {
    const size_t chain = Hash()(key) % chains.size();
    for (size_t depth = 0; depth < chains[chain].size(); ++depth) {
      if (chains[chain][depth].first == key) return Place{chain, depth};
    }
    return std::nullopt;
  }

  Entry& at(Place place) { return chains[place.chain][place.depth]; }

  bool insert(const Entry& entry) {
    if (10 * count > 7 * chains.size()) {
      size_t step = 0;
      while (model_bucket_counts.at(step) <= chains.size()) ++step;
      std::vector<std::vector<Entry>> grown(model_bucket_counts.at(step));
      for (const auto& chain : chains) {
        for (const Entry& old : chain) push_front(grown, old);
      }
      chains = std::move(grown);
    }
    if (find(entry.first)) return false;
    push_front(chains, entry);
    ++count;
    return true;
  }

  std::optional<Place> first_from(size_t chain) const {
    for (; chain < chains.size(); ++chain) {
      if (!chains[chain].empty()) return Place{chain, 0};
    }
    return std::nullopt;
  }

  std::optional<Place> after(Place place) const {
    if (place.depth + 1 < chains[place.chain].size()) return Place{place.chain, place.depth + 1};
    return first_from(place.chain + 1);
  }

  std::optional<Place> erase(Place place) {
    auto& chain = chains[place.chain];
    chain.erase(chain.begin() + static_cast<ptrdiff_t>(place.depth));
    --count;
    if (place.depth > 0) return Place{place.chain, place.depth - 1};
    return first_from(place.chain);
  }
};

struct Words {
  using Key = unsigned long;
  using Hash = hash<unsigned long>;
  static Key key(uint64_t number) { return number; }
  static constexpr uint64_t keys = 60000;
};

// Neighbours by the dozen share a hash, so chains are long and hold different keys of one hash.
struct CollidingWords {
  using Key = unsigned long;
  struct Hash {
    uint64_t operator()(unsigned long value) const noexcept { return value / 12; }
  };
  static Key key(uint64_t number) { return number; }
  static constexpr uint64_t keys = 3000;
};

struct Strings {
  using Key = std::string;
  using Hash = hash<std::string>;
  static Key key(uint64_t number) { return "name" + std::to_string(number); }
  static constexpr uint64_t keys = 4000;
};

template <class Kind>
class HashtableModel : public ::testing::Test {};

using Kinds = ::testing::Types<Words, CollidingWords, Strings>;
TYPED_TEST_SUITE(HashtableModel, Kinds);

template <class Map, class Model>
void expect_same_walk(const Map& map, const Model& model) {
  ASSERT_EQ(map.count, model.count);
  ASSERT_EQ(map.buckets.size(), model.chains.size());
  auto it = map.begin();
  for (size_t chain = 0; chain < model.chains.size(); ++chain) {
    for (const auto& entry : model.chains[chain]) {
      ASSERT_NE(it, map.end());
      ASSERT_EQ(it.index, chain);
      ASSERT_EQ(it->first, entry.first);
      ASSERT_EQ(it->second, entry.second);
      ++it;
    }
  }
  ASSERT_EQ(it, map.end());
}

TYPED_TEST(HashtableModel, AgreesOverAMillionRandomOperations) {
  using Key = typename TypeParam::Key;
  using Hash = typename TypeParam::Hash;
  HashMap<Key, uint64_t, Hash> map;
  Model<Key, Hash> model;
  std::mt19937_64 random(20240611);

  size_t growths = 0;
  for (uint64_t step = 1; step <= 1'000'000; ++step) {
    const Key key = TypeParam::key(random() % TypeParam::keys);
    const size_t buckets_before = map.buckets.size();
    const uint64_t operation = random() % 10;
    if (operation < 4) {
      ASSERT_EQ(map.insert({key, step}), model.insert({key, step}));
    } else if (operation < 6) {
      model.insert({key, 0});
      uint64_t& expected = model.at(*model.find(key)).second;
      uint64_t& mapped = map[key];
      ASSERT_EQ(mapped, expected);
      mapped = expected = step;
    } else {
      const auto it = map.find(key);
      const auto place = model.find(key);
      ASSERT_EQ(it != map.end(), place.has_value());
      if (place) {
        ASSERT_EQ(it->second, model.at(*place).second);
        if (operation < 9) {
          const auto next = map.erase(it);
          const auto next_place = model.erase(*place);
          ASSERT_EQ(next != map.end(), next_place.has_value());
          if (next_place) {
            ASSERT_EQ(next->first, model.at(*next_place).first);
          }
        }
      }
    }
    ASSERT_EQ(map.count, model.count);
    if (map.buckets.size() != buckets_before) {
      ++growths;
      ASSERT_NO_FATAL_FAILURE(expect_same_walk(map, model));
    }
    if (step % 200'000 == 0) {
      // A walk that erases every third element that it is shown.
      ASSERT_NO_FATAL_FAILURE(expect_same_walk(map, model));
      auto it = map.begin();
      auto place = model.first_from(0);
      while (place) {
        ASSERT_EQ(it->first, model.at(*place).first);
        if (it->second % 3 == 0) {
          it = map.erase(it);
          place = model.erase(*place);
        } else {
          ++it;
          place = model.after(*place);
        }
      }
      ASSERT_EQ(it, map.end());
      ASSERT_NO_FATAL_FAILURE(expect_same_walk(map, model));
    }
  }
  EXPECT_GE(growths, 6U);
}

// Each insertion up to several growths, with the whole walk after each.
TYPED_TEST(HashtableModel, AgreesAtEveryStepAroundTheFirstGrowths) {
  using Key = typename TypeParam::Key;
  using Hash = typename TypeParam::Hash;
  HashMap<Key, uint64_t, Hash> map;
  Model<Key, Hash> model;
  std::mt19937_64 random(7);
  for (uint64_t step = 0; step < 1500; ++step) {
    const Key key = TypeParam::key(random() % TypeParam::keys);
    ASSERT_EQ(map.insert({key, step}), model.insert({key, step}));
    ASSERT_NO_FATAL_FAILURE(expect_same_walk(map, model));
  }
  EXPECT_GE(map.buckets.size(), 1291U);
}

}  // namespace
}  // namespace quill::hsh
