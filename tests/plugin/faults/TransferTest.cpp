// Out of memory on the plug-in's own threads.
#include <atomic>
#include <new>
#include <string>
#include <thread>

#include "bridge/Background.h"
#include "net/Network.h"
#include "plugin/faults/Allocations.h"
#include "service/RunningService.h"
#include "support/FolderTest.h"

namespace {

using Transfers = FolderTest;

TEST_F(Transfers, OutliveEveryAllocationThatFails) {
  const RunningService service(folder_);
  const std::string url = service.url() + "/api/plugin/version", body = service.Get("/api/plugin/version").body;
  ASSERT_GT(body.size(), 16u) << "a string must need memory of its own to hold it";
  bool failed = true;
  int failures = 0;
  for (; failed; ++failures) {
    SCOPED_TRACE(failures);
    std::string response, error;
    allocations::FailAfter(failures);
    bool sent = false;
    try {
      sent = Network::Get(url, response, error);
    } catch (const std::bad_alloc&) {  // on the caller's side
      error = "ERROR: caught";
    }
    failed = !allocations::TakeBack();
    EXPECT_TRUE(sent ? response == body : error.starts_with("ERROR: ") && error.size() > 7) << response << error;
    EXPECT_TRUE(Network::Get(url, response, error)) << error;
    EXPECT_EQ(response, body);
  }
  EXPECT_GT(failures, 6);
}

TEST(Background, OutlivesEveryAllocationThatFails) {
  static std::atomic<bool> raised;
  bool failed = true;
  for (std::size_t after = 0; failed; ++after) {
    raised = true;
    allocations::FailAfter(after);
    try {
      bg([flight = LoweredAtEnd(raised)] { std::string(100, 'x'); });
    } catch (const std::bad_alloc&) {  // on the caller's side
    }
    while (raised) std::this_thread::yield();
    failed = !allocations::TakeBack();
  }
}

}  // namespace
