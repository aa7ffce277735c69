// An idle call costs FileMaker's main thread microseconds, whatever the service does, with a text on the clipboard.
// Every thirtieth call finds a poll due; where the service ends it at once, it has ended by the next call.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "SampleText.h"
#include "bridge/BridgeState.h"
#include "bridge/IdleLoop.h"
#include "clipboard/Clipboard.h"
#include "core/Clock.h"
#include "wrapper/Host.h"
#include "support/LoopbackServer.h"

namespace {

using Clock = std::chrono::steady_clock;
using Microseconds = std::chrono::duration<double, std::micro>;

constexpr int kCalls = 10'000;
constexpr double kDemandedMicroseconds = 50;
constexpr std::int64_t kMsPerCall = 100;
constexpr std::size_t kClipboardBytes = 10 << 10;

std::atomic<std::int64_t> g_now = kMsPerCall;

}  // namespace

std::int64_t SteadyMilliseconds() { return g_now; }

namespace {

double Idle() {
  FMX_ExternCallStruct call{};
  call.whichCall = kFMXT_Idle;
  g_now += kMsPerCall;
  const auto start = Clock::now();
  Do_PluginIdle(&call);
  return Microseconds(Clock::now() - start).count();
}

bool Measure(const char* state, bool pollsEnd = true) {
  std::vector<double> times;
  for (int i = 0; i < kCalls; ++i) {
    times.push_back(Idle());
    while (pollsEnd && g_pollInFlight) std::this_thread::yield();
  }
  std::sort(times.begin(), times.end());
  const double p99 = times[kCalls * 99 / 100];
  std::printf("%-22s %10.2f %10.2f %10.2f %10.0f\n", state, times[kCalls / 2], p99, times.back(),
              kDemandedMicroseconds);
  if (p99 < kDemandedMicroseconds) return true;
  std::fprintf(stderr, "TOO SLOW: idle calls while the service %s\n", state);
  return false;
}

bool MeasureAgainst(const char* state, LoopbackServer::Handler handler, bool pollsEnd) {
  LoopbackServer server(std::move(handler));
  g_baseUrl = server.Url();
  while (server.Requests().empty()) Idle();
  return Measure(state, pollsEnd);
}

}  // namespace

int main() {
  unsetenv("DISPLAY");  // the clipboard in the process, not somebody's
  std::string error;
  Clipboard::SetText(bench::Prose(kClipboardBytes), error);
  g_licenseKey = "K1";
  g_registeredFileName = "Sales";
  std::printf("%-22s %10s %10s %10s %10s\n", "the service", "median us", "p99 us", "max us", "p99 below");
  bool swift = Measure("(signed out)");
  g_registered = true;
  g_baseUrl = "http://127.0.0.1:1";
  swift &= Measure("is down");
  swift &= MeasureAgainst("answers at once", Answering([](const std::string&) {
                            return CannedAnswer{200, R"({"command":null})", ""};
                          }),
                          true);
  swift &= MeasureAgainst("hangs", NeverAnswer, false);
  swift &= MeasureAgainst("drips", Drip, false);
  return swift ? 0 : 1;
}
