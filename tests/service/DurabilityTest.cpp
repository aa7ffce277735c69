// The states of commands under plug-ins that ask at the same time, and when the service is killed.
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <mutex>
#include <set>
#include <thread>

#include "net/Json.h"
#include "tests/service/RunningService.h"
#include "tests/support/FolderTest.h"
#include "tests/support/Process.h"

namespace {

constexpr char kListFiles[] = R"("type":"LIST_FILES")";

using Durability = FolderTest;

TEST_F(Durability, DeliversEachCommandOnceToPollsAtTheSameTime) {
  const RunningService service(folder_);
  std::multiset<std::string> queued, delivered;
  for (int i = 0; i < 60; ++i) queued.insert(service.Queue(kListFiles));
  std::mutex mutex;
  std::vector<std::thread> plugins;
  for (int i = 0; i < 8; ++i) {
    plugins.emplace_back([&] {
      for (std::string id; !(id = JsonGetString(service.Poll(), "id")).empty();) {
        const std::lock_guard lock(mutex);
        delivered.insert(id);
      }
    });
  }
  for (auto& plugin : plugins) plugin.join();
  EXPECT_EQ(delivered, queued);
}

TEST_F(Durability, ShowsACommandWhoseAnswerNobodyReadAsDelivered) {
  std::string id;
  {
    RunningService service(folder_);
    id = service.Queue(kListFiles);
    const int unread = service.SendOnly(Request("GET", "/api/bridge/command/next?licenseKey=K1"));
    while (service.Told(id, "state") != "delivered") std::this_thread::yield();
    EXPECT_EQ(service.End(SIGKILL), 128 + SIGKILL);
    close(unread);
  }
  const RunningService service(folder_);
  EXPECT_EQ(service.Poll(), R"({"command":null})");
  EXPECT_EQ(service.Told(id, "state"), "delivered");
  EXPECT_EQ(service.Complete(id, R"("status":"failed","error":"late")").status, 200);
  EXPECT_EQ(service.Told(id, "error"), "late");
}

TEST_F(Durability, GivesNeitherItsDataNorItsPortToASecondService) {
  const RunningService service(folder_);
  const auto sameData = RunProcess({SERVICE, "serve", "--listen", "127.0.0.1:0", "--data", folder_});
  EXPECT_EQ(sameData.status, 1);
  EXPECT_EQ(sameData.errors, "varnix-service: " + folder_ + " is in use by another service\n");
  const std::string address = "127.0.0.1:" + service.port();
  const auto samePort = RunProcess({SERVICE, "serve", "--listen", address, "--data", folder_ + "/other"});
  EXPECT_EQ(samePort.status, 1);
  EXPECT_EQ(samePort.errors, "varnix-service: cannot listen on " + address + ": Address already in use\n");
}

}  // namespace
