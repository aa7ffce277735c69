// The bridge on its own pool of threads, against a service that hands out commands as fast as it is asked.
#include <FMWrapper/FMXExtern.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <latch>
#include <map>

#include "bridge/Background.h"
#include "bridge/BridgeState.h"
#include "bridge/IdleLoop.h"
#include "bridge/LivePush.h"
#include "core/Clock.h"
#include "net/Network_linux.h"
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

TEST(Background, RunsJobsSideBySideAndOutlivesTheirExceptions) {
  constexpr int kJobs = 32;
  std::latch together(kJobs), done(kJobs);
  std::atomic<bool> raised = true;
  bg([flight = LoweredAtEnd(raised)] { throw std::bad_alloc(); });
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
