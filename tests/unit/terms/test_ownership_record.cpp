#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>

#include "quill/terms/ownership_record.h"
#include "tests/support/failing_memory.h"

namespace quill {
namespace {

using Standing = OwnershipRecord::Standing;

class OwnershipRecordTest : public ::testing::Test {
 protected:
  void SetUp() override {
#ifdef NDEBUG
    GTEST_SKIP() << "the record stays empty in release builds";
#endif
  }

  void add(const void* object) {
    record.reserve_one();
    record.add(object);
  }

  std::array<uint64_t, 1000> objects{};  // of which only the addresses count
  OwnershipRecord record;
};

#ifdef NDEBUG
TEST(OwnershipRecordInRelease, TakesNoMemoryAndKnowsNothing) {
  const uint64_t object = 0;
  OwnershipRecord record;
  const testing::AllocationCount count;
  record.reserve_one();
  record.add(&object);
  EXPECT_EQ(record.find(&object), Standing::Foreign);
  record.remove(&object);
  EXPECT_EQ(count.allocations(), 0U);
}
#endif

TEST_F(OwnershipRecordTest, KnowsNothingAtFirst) {
  EXPECT_EQ(record.find(&objects[0]), Standing::Foreign);
  EXPECT_EQ(record.find(nullptr), Standing::Foreign);
}

TEST_F(OwnershipRecordTest, TellsWhatIsOwnedFromWhatIsNot) {
  add(&objects[0]);
  EXPECT_EQ(record.find(&objects[0]), Standing::Owned);
  EXPECT_EQ(record.find(&objects[1]), Standing::Foreign);
  EXPECT_EQ(record.find(nullptr), Standing::Foreign);
}

TEST_F(OwnershipRecordTest, RemembersWhatWasFreed) {
  add(&objects[0]);
  add(&objects[1]);
  record.remove(&objects[0]);
  EXPECT_EQ(record.find(&objects[0]), Standing::Freed);
  EXPECT_EQ(record.find(&objects[1]), Standing::Owned);
}

TEST_F(OwnershipRecordTest, ALaterObjectAtTheSameAddressIsOwned) {
  add(&objects[0]);
  record.remove(&objects[0]);
  add(&objects[0]);
  EXPECT_EQ(record.find(&objects[0]), Standing::Owned);
  record.remove(&objects[0]);
  EXPECT_EQ(record.find(&objects[0]), Standing::Freed);
}

TEST_F(OwnershipRecordTest, NothingIsLostAcrossGrowth) {
  for (size_t i = 0; i < 900; ++i) {
    add(&objects[i]);
    if (i % 3 == 0) record.remove(&objects[i]);
  }
  for (size_t i = 0; i < 900; ++i) {
    EXPECT_EQ(record.find(&objects[i]), i % 3 == 0 ? Standing::Freed : Standing::Owned) << i;
  }
  for (size_t i = 900; i < 1000; ++i) EXPECT_EQ(record.find(&objects[i]), Standing::Foreign) << i;
}

}  // namespace
}  // namespace quill
