// Out of memory on the thread of the transfers, which nobody catches for it.
#include <new>

#include "net/Network.h"
#include "tests/faults/Allocations.h"
#include "tests/service/RunningService.h"
#include "tests/support/FolderTest.h"

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

}  // namespace
