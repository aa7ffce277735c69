// The bridge on its own pool of threads, against a service that hands out commands as fast as it is asked.
#include <FMWrapper/FMXExtern.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <latch>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "bridge/Background.h"
#include "bridge/Background_linux.h"
#include "bridge/IdleLoop.h"
#include "bridge/LivePush.h"
#include "core/Clock.h"
#include "core/State.h"
#include "net/Network.h"
#include "net/Transfer.h"
#include "net/VersionCheck.h"
#include "support/FolderTest.h"
#include "support/LoopbackServer.h"
#include "support/ScriptedHost.h"

namespace {

std::atomic<std::int64_t> g_now = 1'000'000;
int g_startedScripts = 0;

}  // namespace

std::int64_t SteadyMilliseconds() { return g_now; }

namespace {

class Threads : public FolderTest {
 protected:
  Threads() {
    host_.answers = {{"Get(FileName)", "Sales"}};
    g_registered = true;
    g_licenseKey = "K1";
    g_registeredFileName = "Sales";
  }

  void Idle() {
    g_now += 3000;
    FMX_ExternCallStruct call{};
    call.whichCall = kFMXT_Idle;
    call.cCurrentEnv = [](FMX_ExprEnv*) -> FMX_ErrorCode { return 0; };
    call.cStartScript = [](const FMX_Text*, const FMX_Text*, FMX_ScriptControl, const FMX_Data*) -> FMX_ErrorCode {
      ++g_startedScripts;
      return 0;
    };
    Do_PluginIdle(&call);
    if (g_versionCheckInFlight) CallHandler(Do_UpdateAvailable);
  }

  void IdleUntilPolled() {
    Idle();
    while (g_pollInFlight) std::this_thread::yield();
  }

  ScriptedHost host_;
};

/// With `refused`, no thread starts, since its stack would be larger than the address space.
void RefuseThreads(bool refused) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, refused ? std::size_t{1} << 48 : std::size_t{8} << 20);
  EXPECT_EQ(pthread_setattr_default_np(&attributes), 0);
  pthread_attr_destroy(&attributes);
}

/// With `refused`, nothing can be opened.
void RefuseDescriptors(bool refused) {
  rlimit limit;
  getrlimit(RLIMIT_NOFILE, &limit);
  limit.rlim_cur = refused ? 3 : limit.rlim_max;  // the standard streams
  EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
}

/// The host's signals are left to the host, and a broken connection's to nobody.
void ExpectNoSignals() {
  sigset_t blocked;
  pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
  for (const int signal : {SIGPIPE, SIGTERM, SIGALRM}) EXPECT_TRUE(sigismember(&blocked, signal)) << signal;
}

/// Whether every thread but this one waits.
bool OthersWait() {
  for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
    std::string status;
    std::getline(std::ifstream(task.path() / "stat"), status);
    const bool isThisOne = task.path().filename() == std::to_string(gettid());
    if (!isThisOne && status.find(") S ") == status.npos) return false;
  }
  return true;
}

// First, while there is no thread yet.
TEST_F(Threads, WhatCannotBeStartedIsOverAndTheNextOneComes) {
  LoopbackServer server([](LoopbackServer::Connection& connection) {  // for one request
    connection.ReadRequest();
    connection.Send("HTTP/1.1 204 No Content\r\nConnection: close\r\n\r\n");
  });
  g_baseUrl = server.Url();
  using Refusals = std::vector<void (*)(bool)>;
  for (const Refusals& refusals : {Refusals{RefuseThreads, RefuseDescriptors}, Refusals{RefuseDescriptors}}) {
    const std::size_t before = server.Requests().size();
    for (const auto refuse : refusals) {
      refuse(true);
      std::string response, error;
      EXPECT_FALSE(Network::Get(g_baseUrl, response, error));
      EXPECT_TRUE(error.starts_with("ERROR: ") && error.size() > 7) << error;
      // A sanitizer looks at the first thread of the pool through a descriptor.
      if (refuse == RefuseThreads || before > 0) IdleUntilPolled();
      refuse(false);
    }
    EXPECT_EQ(server.Requests().size(), before);
    std::latch ended(1);  // from here, as when the user signs in
    Network::StartTransfer({.url = g_baseUrl, .method = "GET", .headers = {}, .body = {}}, [&](const auto&) {
      ExpectNoSignals();
      ended.count_down();
    });
    ended.wait();
    IdleUntilPolled();
    EXPECT_EQ(server.Requests().size(), before + 2);
  }
}

TEST(Background, RunsJobsSideBySideAndOutlivesWhatTheyThrow) {
  static std::atomic<bool> raised = true;
  bg([flight = LoweredAtEnd(raised)] {
    ExpectNoSignals();
    throw "anything";
  });
  while (raised) std::this_thread::yield();
  constexpr int kJobs = 32;
  std::latch together(kJobs), done(kJobs);
  for (int job = 0; job < kJobs; ++job) {
    bg([&] {
      together.arrive_and_wait();
      done.count_down();
    });
  }
  done.wait();
}

TEST_F(Threads, AForkedChildThatExitsLeavesThemToTheHost) {
  LoopbackServer server(Answering([](const auto&) { return CannedAnswer(); }));
  g_baseUrl = server.Url();
  IdleUntilPolled();
  std::fflush(stdout);
  const pid_t child = fork();
  if (child == 0) {
    alarm(20);
    std::exit(0);
  }
  int status = -1;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  pollfd end{EndOfJobs(), POLLIN, 0};
  EXPECT_EQ(poll(&end, 1, 0), 0) << "the host's jobs are told to end";
  IdleUntilPolled();
  EXPECT_EQ(server.Requests().size(), 2u);
}

TEST_F(Threads, EachCommandIsCarriedOutOnceAndThenAllThreadsWait) {
  constexpr int kCommands = 200;
  const char* const types[] = {"DEBUG_CONTEXT", "GET_CLIPBOARD", "LIST_FILES", "SET_CLIPBOARD", "GET_SCHEMA", "other"};
  std::atomic<std::size_t> handedOut = 0, ended = 0;
  LoopbackServer server(Answering([&](const std::string& request) -> CannedAnswer {
    if (RequestLine(request).ends_with("/complete")) ++ended;
    if (!request.starts_with("GET /api/bridge/command/next")) return {200, R"({"version":"1.6.16"})", ""};
    const std::size_t number = handedOut++;
    if (number >= kCommands) return {200, R"({"command":null})", ""};
    return {200,
            R"({"id":"c)" + std::to_string(number) + R"(","type":")" + types[number % std::size(types)] +
                R"(","fileName":"Sales","xmlType":"XMSS","xmlContent":"<x/>"})",
            ""};
  }));
  g_baseUrl = server.Url();
  for (int scripts = 0; ended < kCommands;) {
    Idle();
    for (; scripts < g_startedScripts; ++scripts) {  // what each does once FileMaker comes to it
      const std::string path = folder_ + "/" + std::to_string(scripts) + ".xml";
      std::ofstream(path) << "<x/>";
      EXPECT_EQ(CallHandler(Do_LivePush, {path}), "OK");
    }
  }
  while (g_pollInFlight) std::this_thread::yield();
  std::multiset<std::string> endings;
  for (const auto& request : server.Requests()) {
    if (RequestLine(request).ends_with("/complete")) endings.insert(RequestLine(request));
  }
  EXPECT_EQ(endings.size(), std::size_t{kCommands});
  EXPECT_EQ(std::set(endings.begin(), endings.end()).size(), std::size_t{kCommands}) << "each of them once";
  EXPECT_TRUE(std::filesystem::is_empty(folder_));
  const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  for (int looks = 0; looks < 100;) {
    looks = OthersWait() ? looks + 1 : 0;
    ASSERT_LT(std::chrono::steady_clock::now(), limit) << "a thread burns processor time";
  }
}

}  // namespace
