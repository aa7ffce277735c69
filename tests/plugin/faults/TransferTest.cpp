// Out of memory on the plug-in's own threads.
#include <atomic>
#include <string>
#include <thread>

#include "bridge/Background.h"
#include "net/Network.h"
#include "plugin/faults/Allocations.h"
#include "service/RunningService.h"
#include "support/FolderTest.h"

namespace {

using Transfers = FolderTest;

TEST_F(Transfers, SurviveEveryFailingAllocation) {
  const RunningService service(folder_);
  const std::string url = service.url() + "/api/plugin/version", body = service.Get("/api/plugin/version").body;
  ASSERT_GT(body.size(), 16u) << "a string must need memory of its own to hold it";
  const auto get = [&] {
    std::string response, error;
    return Network::Get(url, response, error) ? response : error;
  };
  const int failures = allocations::FailInTurn(get, [&](const std::string& result) {
    EXPECT_TRUE(result == body || (result.starts_with("ERROR: ") && result.size() > 7)) << result;
    EXPECT_EQ(get(), body) << "the next transfer";
  });
  EXPECT_GT(failures, 6);
}

TEST(Background, SurvivesEveryFailingAllocation) {
  static std::atomic<bool> raised;
  const auto run = [] {
    raised = true;
    bg([flight = LoweredAtEnd(raised)] { std::string(100, 'x'); });
    while (raised) std::this_thread::yield();
    return std::string();
  };
  allocations::FailInTurn(run, [](const std::string&) {
    while (raised) std::this_thread::yield();
  });
}

}  // namespace
