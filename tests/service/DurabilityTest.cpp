// The states of commands when the service is killed at awkward moments, and under plug-ins that ask at the same time.
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <map>
#include <mutex>
#include <set>
#include <thread>

#include "net/Json.h"
#include "tests/service/RunningService.h"
#include "tests/support/FolderTest.h"
#include "tests/support/Process.h"

namespace {

constexpr char kListFiles[] = R"("type":"LIST_FILES")";
constexpr char kPoll[] = "/api/bridge/command/next?licenseKey=K1";

class Durability : public FolderTest {};

template <class Body>
void InThreads(int count, Body body) {
  std::vector<std::thread> threads;
  for (int i = 0; i < count; ++i) threads.emplace_back(body);
  for (auto& thread : threads) thread.join();
}

TEST_F(Durability, DeliversEachCommandOnceToPollsAtTheSameTime) {
  const RunningService service(folder_);
  std::set<std::string> queued;
  for (int i = 0; i < 60; ++i) queued.insert(service.Queue(kListFiles));
  std::mutex mutex;
  std::multiset<std::string> delivered;
  InThreads(8, [&] {
    for (std::string id; !(id = JsonGetString(service.Poll(), "id")).empty();) {
      const std::lock_guard lock(mutex);
      delivered.insert(id);
    }
  });
  EXPECT_EQ(std::multiset<std::string>(queued.begin(), queued.end()), delivered);
}

// What the answers have promised so far.
struct Promises {
  std::mutex mutex;
  std::map<std::string, std::string> states;
  std::multiset<std::string> delivered;
  std::size_t count = 0;

  void Note(const std::string& id, const std::string& state) {
    const std::lock_guard lock(mutex);
    ++count;
    if (state == "delivered") delivered.insert(id);
    std::string& known = states[id];
    if (known != "completed" && (known != "delivered" || state == "completed")) known = state;
  }
};

// Queues, polls and completes until the service no longer answers.
void UseUntilItDies(const RunningService& service, Promises& promises) {
  for (;;) {
    const auto queued = service.Post("/operator/commands", std::string("{") + kListFiles + '}');
    if (queued.status != 201) return;
    promises.Note(JsonGetString(queued.body, "id"), "queued");
    const auto polled = service.Get(kPoll);
    if (polled.status != 200) return;
    const std::string id = JsonGetString(polled.body, "id");
    if (id.empty()) continue;
    promises.Note(id, "delivered");
    if (id.back() % 2 == 0) continue;  // a plug-in that quits
    const auto completed =
        service.Post("/api/bridge/command/" + id + "/complete", R"({"licenseKey":"K1","status":"completed"})");
    if (completed.status != 200) return;
    promises.Note(id, "completed");
  }
}

int Rank(const std::string& state) { return state == "queued" ? 0 : state == "delivered" ? 1 : 2; }

TEST_F(Durability, KeepsEveryPromiseWhenKilledInTheMiddleOfRequests) {
  Promises promises;
  for (int round = 1; round <= 4; ++round) {
    RunningService service(folder_);
    std::vector<std::thread> users;
    for (int i = 0; i < 4; ++i) users.emplace_back([&] { UseUntilItDies(service, promises); });
    for (std::size_t count = 0; count < static_cast<std::size_t>(round) * 40;) {
      std::this_thread::yield();
      const std::lock_guard lock(promises.mutex);
      count = promises.count;
    }
    EXPECT_EQ(service.End(SIGKILL), 128 + SIGKILL);
    for (auto& user : users) user.join();
  }

  const RunningService service(folder_);
  for (const auto& [id, state] : promises.states) {
    // A request whose answer was lost may have had its effect, so a command may be further than promised.
    EXPECT_GE(Rank(service.Told(id, "state")), Rank(state)) << id;
  }
  for (std::string id; !(id = JsonGetString(service.Poll(), "id")).empty();) promises.delivered.insert(id);
  for (const auto& id : promises.delivered) EXPECT_EQ(promises.delivered.count(id), 1u) << id;
  EXPECT_GE(promises.states.size(), 50u);
}

TEST_F(Durability, ShowsACommandWhoseAnswerNobodyReadAsDelivered) {
  std::string id;
  {
    RunningService service(folder_);
    id = service.Queue(kListFiles);
    const int unread = service.SendOnly(Request("GET", kPoll));
    while (service.Told(id, "state") != "delivered") std::this_thread::yield();
    EXPECT_EQ(service.End(SIGKILL), 128 + SIGKILL);
    close(unread);
  }
  const RunningService service(folder_);
  EXPECT_EQ(service.Poll(), R"({"command":null})");
  EXPECT_EQ(service.Told(id, "state"), "delivered");
  EXPECT_EQ(
      service.Post("/api/bridge/command/" + id + "/complete", R"({"licenseKey":"K1","status":"failed","error":"late"})")
          .status,
      200);
  EXPECT_EQ(service.Told(id, "error"), "late");
}

TEST_F(Durability, GivesNeitherItsDataNorItsPortToASecondService) {
  const RunningService service(folder_);
  const auto sameData = RunProcess({SERVICE, "serve", "--listen", "127.0.0.1:0", "--data", folder_});
  EXPECT_EQ(sameData.status, 1);
  EXPECT_EQ(sameData.output, "");
  EXPECT_EQ(sameData.errors, "varnix-service: " + folder_ + " is in use by another service\n");
  const auto samePort =
      RunProcess({SERVICE, "serve", "--listen", "127.0.0.1:" + service.port(), "--data", folder_ + "/other"});
  EXPECT_EQ(samePort.status, 1);
  EXPECT_EQ(samePort.errors,
            "varnix-service: cannot listen on 127.0.0.1:" + service.port() + ": Address already in use\n");
}

}  // namespace
