// The bridge on its own pool of threads, with a service that answers at once or never.
#include <FMWrapper/FMXExtern.h>
#include <poll.h>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <latch>
#include <set>
#include <thread>

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
#include "support/Process.h"
#include "support/ScriptedHost.h"

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

namespace {

/// Far longer than an end takes and far shorter than the two minutes of a transfer.
constexpr std::chrono::seconds kBound{20};
std::atomic<std::int64_t> g_now = 1'000'000;
int g_startedScripts = 0;

/// Ends a forked child once its static objects are destroyed: a leak checker would miss the stacks of its lost threads.
struct EndOfChild {
  ~EndOfChild() {
    if (getpid() != process) _exit(0);
  }
  const pid_t process = getpid();
} g_endOfChild;

}  // namespace

std::int64_t SteadyMilliseconds() { return g_now; }

namespace {

class Threads : public FolderTest {
 protected:
  Threads() {
    host_.answers = {{"Get(FileName)", "Sales"}};
    g_registered = true;
    g_registeredFileName = "Sales";
  }

  /// An idle call that polls; with `waits`, waits for the poll.
  void Idle(bool waits) {
    g_now += 3000;
    FMX_ExternCallStruct call{};
    call.cCurrentEnv = [](FMX_ExprEnv*) -> FMX_ErrorCode { return 0; };
    call.cStartScript = [](const FMX_Text*, const FMX_Text*, FMX_ScriptControl, const FMX_Data*) -> FMX_ErrorCode {
      ++g_startedScripts;
      return 0;
    };
    Do_PluginIdle(&call);
    if (g_versionCheckInFlight) CallHandler(Do_UpdateAvailable);
    while (waits && g_pollInFlight) std::this_thread::yield();
  }

  std::string Save(const std::string& name) const {
    std::ofstream(folder_ + "/" + name) << "<x/>";
    return folder_ + "/" + name;
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

/// Background threads handle no signals: the host's are for the host, and that of a broken connection would end it.
void ExpectNoSignals() {
  sigset_t blocked;
  pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
  for (const int signal : {SIGPIPE, SIGTERM, SIGALRM}) EXPECT_TRUE(sigismember(&blocked, signal)) << signal;
}

/// Whether all other threads wait.
bool OthersWait() {
  for (const auto& task : fs::directory_iterator("/proc/self/task")) {
    std::string status;
    std::getline(std::ifstream(task.path() / "stat"), status);
    const bool isThisOne = task.path().filename() == std::to_string(gettid());
    if (!isThisOne && status.find(") S ") == status.npos) return false;
  }
  return true;
}

// First, while no thread exists.
TEST_F(Threads, AfterAThreadOrTransferCannotStartTheNextOneRuns) {
  LoopbackServer server([](LoopbackServer::Connection& connection) {  // for one request
    connection.ReadRequest();
    connection.Send("HTTP/1.1 204 No Content\r\nConnection: close\r\n\r\n");
  });
  g_baseUrl = server.Url();
  const auto failsWith = [&](void (*refuse)(bool), bool polls) {
    const std::size_t before = server.Requests().size();
    std::string response, error;
    refuse(true);
    EXPECT_FALSE(Network::Get(g_baseUrl, response, error));
    EXPECT_TRUE(error.starts_with("ERROR: ") && error.size() > 7) << error;
    if (polls) Idle(true);
    refuse(false);
    EXPECT_EQ(server.Requests().size(), before);
  };
  failsWith(RefuseThreads, true);
  failsWith(RefuseDescriptors, false);  // a sanitizer looks at the first thread of the pool through a descriptor
  for (const std::size_t requests : {2, 4}) {
    std::latch ended(1);  // from here, as when the user signs in
    Network::StartTransfer({.url = g_baseUrl, .method = "GET", .headers = {}, .body = {}}, [&](const auto&) {
      ExpectNoSignals();
      ended.count_down();
    });
    ended.wait();
    Idle(true);
    EXPECT_EQ(server.Requests().size(), requests);
    failsWith(RefuseDescriptors, true);
  }
}

TEST(Background, RunsJobsInParallelAndSurvivesTheirExceptions) {
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
  Idle(true);
  std::fflush(stdout);
  const pid_t child = fork();
  if (child == 0) alarm(20), std::exit(0);
  int status = -1;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  pollfd end{EndOfJobs(), POLLIN, 0};
  EXPECT_EQ(poll(&end, 1, 0), 0) << "the host's jobs must end";
  Idle(true);
  EXPECT_EQ(server.Requests().size(), 2u);
}

TEST_F(Threads, EachCommandIsCarriedOutOnceAndThenAllThreadsWait) {
  constexpr int kCommands = 200;
  const char* const types[] = {"DEBUG_CONTEXT", "GET_CLIPBOARD", "LIST_FILES", "SET_CLIPBOARD", "GET_SCHEMA", "other"};
  std::atomic<int> handedOut = 0, ended = 0;
  LoopbackServer server(Answering([&](const std::string& request) -> CannedAnswer {
    if (RequestLine(request).ends_with("/complete")) ++ended;
    if (!request.starts_with("GET /api/bridge/command/next") || handedOut == kCommands) return {200, "{}", ""};
    const std::string number = std::to_string(++handedOut), type = types[handedOut % std::size(types)];
    return {
        200,
        R"({"fileName":"Sales","xmlType":"XMSS","xmlContent":"<x/>","id":"c)" + number + R"(","type":")" + type + '"',
        ""};
  }));
  g_baseUrl = server.Url();
  for (int scripts = 0; ended < kCommands;) {
    Idle(false);
    for (; scripts < g_startedScripts; ++scripts) {  // each script's call
      EXPECT_EQ(CallHandler(Do_LivePush, {Save(std::to_string(scripts))}), "OK");
    }
  }
  while (g_pollInFlight) std::this_thread::yield();
  std::set<std::string> endings;
  for (const auto& request : server.Requests()) endings.insert(RequestLine(request));
  std::erase_if(endings, [](const std::string& line) { return !line.ends_with("/complete"); });
  EXPECT_EQ(endings.size(), static_cast<std::size_t>(ended));
  EXPECT_EQ(ended, kCommands);
  EXPECT_TRUE(fs::is_empty(folder_));
  const auto limit = Clock::now() + kBound;
  for (int looks = 0; looks < 100;) {
    looks = OthersWait() ? looks + 1 : 0;
    ASSERT_LT(Clock::now(), limit) << "a thread burns processor time";
  }
}

/// The plug-in in the simulated FileMaker, signed in to a service that never answers.
TEST_F(Threads, TheHostEndsWhileRequestsAndANotificationHang) {
  fs::create_directories(folder_ + "/varnix");
  fs::create_directory(folder_ + "/saved");
  LoopbackServer server(NeverAnswer);
  std::ofstream(folder_ + "/varnix/com.varnix.plugin.licenseKey") << "K1";
  std::ofstream(folder_ + "/varnix/com.varnix.plugin.baseUrl") << server.Url();
  setenv("PATH", (folder_ + ":" + getenv("PATH")).c_str(), 1);
  std::ofstream(folder_ + "/notify-send") << "#!/bin/sh\necho $$ >'" << folder_ << "/tool'\nexec sleep 60\n";
  fs::permissions(folder_ + "/notify-send", fs::perms::owner_all);
  std::string input = ".idle 0.1\nVarnix.LivePush(\"" + folder_ + "/missing\")\n";
  for (const char* name : {"1", "2", "3", "4", "5", "6", "7", "8"}) {
    input += "Varnix.LivePush(\"" + Save(std::string("saved/") + name) + "\")\n";
  }
  ChildProcess host({FMSIM, "--plugin", PLUGIN_FILE}, folder_ + "/errors");
  host.Write(input);
  EXPECT_EQ(server.WaitForRequests(9).size(), 9u) << "the poll and the uploads, side by side";
  pid_t tool = 0;
  while (!(std::ifstream(folder_ + "/tool") >> tool)) std::this_thread::yield();
  const auto start = Clock::now();
  EXPECT_EQ(host.End(), 0);
  EXPECT_LT(Clock::now() - start, kBound);
  EXPECT_TRUE(fs::is_empty(folder_ + "/saved")) << "an upload that is cut short still deletes its file";
  EXPECT_EQ(fs::file_size(folder_ + "/errors"), 0u);
  EXPECT_NE(kill(tool, 0), 0) << "the notification's tool is left";
}

}  // namespace
