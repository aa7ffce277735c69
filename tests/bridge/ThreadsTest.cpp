// The bridge on its own pool of threads, against a service that hands out commands as fast as it is asked.
#include <FMWrapper/FMXExtern.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/resource.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <latch>
#include <map>

#include "bridge/Background.h"
#include "bridge/BridgeState.h"
#include "bridge/IdleLoop.h"
#include "bridge/LivePush.h"
#include "core/Clock.h"
#include "net/Network.h"
#include "net/Network_linux.h"
#include "net/Transfer.h"
#include "net/VersionCheck.h"
#include "tests/support/FakePasteboard.h"
#include "tests/support/FolderTest.h"
#include "tests/support/LoopbackServer.h"
#include "tests/support/ScriptedHost.h"

namespace {

std::atomic<std::int64_t> g_now = 1'000'000;
int g_startedScripts = 0;

}  // namespace

std::int64_t SteadyMilliseconds() { return g_now; }

namespace {

class Threads : public FolderTest {
 protected:
  Threads() {
    FakePasteboard::Current() = &pasteboard_;
    pasteboard_.hasItems = false;
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
      return ++g_startedScripts, 0;
    };
    Do_PluginIdle(&call);
    if (g_versionCheckInFlight) CallHandler(Do_UpdateAvailable);
    pasteboard_.calls.clear();
  }

  /// What the script does, once FileMaker comes to it.
  void PushLive(int number) {
    const std::string path = folder_ + "/" + std::to_string(number) + ".xml";
    std::ofstream(path) << "<x/>";
    EXPECT_EQ(CallHandler(Do_LivePush, {path}), "OK");
  }

  FakePasteboard pasteboard_;
  ScriptedHost host_;
};

/// While it lives, no thread starts, since its stack would be larger than the address space.
class NoMoreThreads {
 public:
  NoMoreThreads() {
    pthread_getattr_default_np(&before_);
    pthread_attr_t huge;
    pthread_attr_init(&huge);
    pthread_attr_setstacksize(&huge, std::size_t{1} << 48);
    EXPECT_EQ(pthread_setattr_default_np(&huge), 0);
    pthread_attr_destroy(&huge);
  }
  ~NoMoreThreads() {
    pthread_setattr_default_np(&before_);
    pthread_attr_destroy(&before_);
  }

 private:
  pthread_attr_t before_;
};

/// While it lives, nothing can be opened.
class NoMoreDescriptors {
 public:
  NoMoreDescriptors() {
    getrlimit(RLIMIT_NOFILE, &before_);
    const rlimit standardStreams{3, before_.rlim_max};
    EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &standardStreams), 0);
  }
  ~NoMoreDescriptors() { setrlimit(RLIMIT_NOFILE, &before_); }

 private:
  rlimit before_;
};

/// The host's signals are the host's, and one that a broken connection raises ends nobody.
void ExpectNoSignals() {
  sigset_t blocked;
  pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
  for (const int signal : {SIGPIPE, SIGTERM, SIGALRM}) EXPECT_TRUE(sigismember(&blocked, signal)) << signal;
}

template <class Lack>
void ExpectRefusalWhile(const std::function<void()>& idle) {
  const Lack lack;
  std::string response, error;
  EXPECT_FALSE(Network::Get(g_baseUrl, response, error));
  EXPECT_TRUE(error.starts_with("ERROR: ") && error.size() > 7) << error;
  idle();
  while (g_pollInFlight) std::this_thread::yield();
}

// First, while there is no thread yet.
TEST_F(Threads, WhatCannotBeStartedIsOverAndTheNextOneComes) {
  LoopbackServer server([](LoopbackServer::Connection& connection) {  // for one request
    connection.ReadRequest();
    connection.Send("HTTP/1.1 204 No Content\r\nConnection: close\r\n\r\n");
  });
  g_baseUrl = server.Url();
  for (const auto& refusal : {ExpectRefusalWhile<NoMoreThreads>, ExpectRefusalWhile<NoMoreDescriptors>}) {
    const std::size_t before = server.Requests().size();
    refusal([this] { Idle(); });
    EXPECT_EQ(server.Requests().size(), before);
    Idle();
    while (g_pollInFlight) std::this_thread::yield();
    EXPECT_EQ(server.Requests().size(), before + 1);
    Network::StartTransfer({g_baseUrl, "GET", {}, ""}, [](const auto&) { ExpectNoSignals(); });
    EXPECT_EQ(server.WaitForRequests(before + 2).size(), before + 2);
  }
}

TEST(Background, RunsJobsSideBySideAndOutlivesTheirExceptions) {
  constexpr int kJobs = 32;
  std::latch together(kJobs), done(kJobs);
  std::atomic<bool> raised = true;
  bg([flight = LoweredAtEnd(raised)] { throw std::bad_alloc(); });
  bg(ExpectNoSignals);
  for (int job = 0; job < kJobs; ++job) {
    bg([&] {
      together.arrive_and_wait();
      done.count_down();
    });
  }
  done.wait();
  while (raised) std::this_thread::yield();
}

TEST_F(Threads, EachCommandIsCarriedOutOnce) {
  constexpr int kCommands = 200;
  const std::string types[] = {"DEBUG_CONTEXT", "GET_CLIPBOARD", "LIST_FILES", "SET_CLIPBOARD", "GET_SCHEMA", "other"};
  std::atomic<int> handedOut = 0, ended = 0;
  LoopbackServer server(Answering([&](const std::string& request) -> CannedAnswer {
    if (request.find("/complete HTTP/1.1\r\n") != request.npos) ++ended;
    if (!request.starts_with("GET /api/bridge/command/next")) return {200, R"({"version":"1.6.16"})", ""};
    const int number = handedOut++;
    if (number >= kCommands) return {200, R"({"command":null})", ""};
    return {200,
            R"({"id":"c)" + std::to_string(number) + R"(","type":")" +
                types[static_cast<std::size_t>(number) % std::size(types)] +
                R"(","fileName":"Sales","xmlType":"XMSS","xmlContent":"<x/>"})",
            ""};
  }));
  g_baseUrl = server.Url();
  const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(100);
  for (int scripts = 0; ended < kCommands && std::chrono::steady_clock::now() < giveUp;) {
    Idle();
    while (scripts < g_startedScripts) PushLive(scripts++);
  }
  std::map<std::string, int> endings;
  for (const auto& request : server.Requests()) {
    if (RequestLine(request).ends_with("/complete")) ++endings[RequestLine(request)];
  }
  EXPECT_EQ(endings.size(), std::size_t{kCommands});
  for (const auto& [line, count] : endings) EXPECT_EQ(count, 1) << line;
  EXPECT_TRUE(std::filesystem::is_empty(folder_));
}

// Last, since nothing is transferred afterwards.
TEST_F(Threads, TheEndCutsShortWhatIsInFlight) {
  LoopbackServer server(NeverAnswer);
  g_baseUrl = server.Url();
  g_now += 86'400'000;
  while (!g_pollInFlight || server.Requests().size() < 2) Idle();  // the poll and the version check
  for (int number = 0; number < 8; ++number) PushLive(number);
  EXPECT_EQ(server.WaitForRequests(10).size(), 10u);
  StopTransfers();
  while (g_pollInFlight || g_versionCheckInFlight || !std::filesystem::is_empty(folder_)) std::this_thread::yield();
  g_registered = false;
}

}  // namespace
