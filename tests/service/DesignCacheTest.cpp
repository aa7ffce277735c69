// Which designs are read again, and which come from the cache.
#include "designs/DesignCache.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>

#include "design/DesignReader.h"

namespace service {
namespace {

constexpr std::int64_t kSmall = 14 << 20, kHuge = 200 << 20;

class DesignCacheTest : public testing::Test {
 protected:
  // Opens a design as if its export had `bytes`, and returns whether it was read.
  bool IsRead(std::int64_t id, std::int64_t bytes = kSmall) {
    const int before = reads_;
    EXPECT_EQ(Open(id, bytes)->design().fileName(), "Orders.fmp12");
    return reads_ > before;
  }
  std::shared_ptr<const OpenedDesign> Open(std::int64_t id, std::int64_t bytes = kSmall) {
    return cache_.Open(id, bytes, [this] {
      ++reads_;
      std::string error;
      return solution::ReadDesign(ORDERS, error);
    });
  }

  DesignCache cache_;
  std::atomic<int> reads_ = 0;
};

TEST_F(DesignCacheTest, ReadsOnceForThreadsThatAskAtTheSameTime) {
  std::vector<std::thread> threads;
  std::atomic<const solution::ReferenceIndex*> indexes[8] = {};
  for (auto& index : indexes) {
    threads.emplace_back([this, &index] { index = &Open(1)->references(); });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(reads_, 1);
  for (const auto& index : indexes) EXPECT_EQ(index, indexes[0]);
  EXPECT_FALSE(indexes[0].load()->all().empty());
}

TEST_F(DesignCacheTest, KeepsTheMostRecentlyUsedDesigns) {
  for (const std::int64_t id : {1, 2, 3, 4}) EXPECT_TRUE(IsRead(id));
  EXPECT_FALSE(IsRead(1));
  EXPECT_TRUE(IsRead(5)) << "in place of the second";
  EXPECT_FALSE(IsRead(1));
  EXPECT_TRUE(IsRead(2));
}

TEST_F(DesignCacheTest, KeepsOnlyTheNewestWhenItTakesAllTheMemory) {
  EXPECT_TRUE(IsRead(1));
  EXPECT_TRUE(IsRead(2, kHuge));
  EXPECT_FALSE(IsRead(2, kHuge));
  EXPECT_TRUE(IsRead(1));
  EXPECT_TRUE(IsRead(2, kHuge));
}

TEST_F(DesignCacheTest, ReadsAnotherDesignWithTheSameId) {
  EXPECT_TRUE(IsRead(1, kSmall));
  EXPECT_TRUE(IsRead(1, kSmall + 1)) << "of a database that was replaced";
  EXPECT_FALSE(IsRead(1, kSmall + 1));
}

TEST_F(DesignCacheTest, KeepsForgottenDesignsWhileTheyAreInUse) {
  const auto used = Open(1);
  cache_.Forget([](std::int64_t id) { return id == 1; });
  EXPECT_TRUE(IsRead(1));
  EXPECT_FALSE(used->references().all().empty());
}

TEST_F(DesignCacheTest, TriesAgainAfterAFailure) {
  EXPECT_THROW(
      cache_.Open(1, kSmall, []() -> std::unique_ptr<const solution::Design> { throw std::runtime_error(""); }),
      std::runtime_error);
  EXPECT_TRUE(IsRead(1));
  EXPECT_FALSE(IsRead(1));
}

}  // namespace
}  // namespace service
