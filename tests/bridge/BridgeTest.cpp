#include "tests/bridge/BridgeTest.h"

#include "bridge/Background.h"
#include "bridge/BridgeState.h"
#include "bridge/IdleLoop.h"
#include "bridge/Notify.h"
#include "core/Clock.h"
#include "net/VersionCheck.h"

namespace {

constexpr std::uint64_t kActiveFile = 7;

std::vector<std::function<void()>> g_jobs;

std::string Quoted(const std::string& text) {
  std::string quoted;
  for (const char c : text) quoted.append(c == '"' ? "\\" : "") += c;
  return quoted;
}

}  // namespace

std::int64_t BridgeTest::now;
std::function<void()> BridgeTest::onClock;
Texts BridgeTest::notifications;
BridgeTest* BridgeTest::current_;

// The seams, for the linker to take instead of the plug-in's own.
void bg(std::function<void()> job) noexcept { g_jobs.push_back(std::move(job)); }

std::int64_t SteadyMilliseconds() {
  if (BridgeTest::onClock) BridgeTest::onClock();
  return BridgeTest::now;
}

void Notify(const std::string& title, const std::string& message) {
  BridgeTest::notifications.push_back(title + ": " + message);
}

BridgeTest::BridgeTest() {
  current_ = this;
  FakePasteboard::Current() = &pasteboard;
  g_registered = true;
  g_licenseKey = "K1";
  g_baseUrl = server.Url();
  g_registeredFileName = "Registered";
  g_pendingGetSchemaCmdId = g_pendingTargetFileName = "";
  g_hasPendingCmd = g_pendingSchemaReady = false;
  g_lastPollMs = g_lastVersionCheckMs = g_lastClipboardPrepareMs = now = 1'000'000;
}

BridgeTest::~BridgeTest() {
  g_jobs.clear();
  notifications.clear();
  onClock = nullptr;
  current_ = nullptr;
}

void BridgeTest::Idle(int level) {
  FMX_ExternCallStruct call{};
  call.whichCall = kFMXT_Idle;
  call.parm1 = static_cast<FMX_UChar>(level);
  call.cCurrentEnv = [](FMX_ExprEnv* environment) -> FMX_ErrorCode {
    fmhost::Bind(*environment, kActiveFile);
    return 0;
  };
  call.cStartScript = [](const FMX_Text* file, const FMX_Text* script, FMX_ScriptControl control,
                         const FMX_Data* parameter) -> FMX_ErrorCode {
    const auto text = [](const FMX_Text* text) { return text ? calc::ToUtf8(fmhost::TextOf(*text)) : "-"; };
    current_->starts.push_back(text(file) + "|" + text(script) + "|" + std::to_string(control) + "|" +
                               (parameter ? "+" : "-"));
    if (const auto during = std::exchange(current_->duringStart, nullptr)) during();
    if (current_->startErrors.empty()) return 0;
    const short error = current_->startErrors.front();
    current_->startErrors.erase(current_->startErrors.begin());
    return error;
  };
  Do_PluginIdle(&call);
}

short BridgeTest::Host::Evaluate(std::uint64_t file, std::u16string_view expression, calc::Value& result) {
  EXPECT_NE(file, 0u) << "evaluated without a context: " << calc::ToUtf8(expression);
  if (const auto during = std::exchange(test.duringEvaluation, nullptr)) during();
  return ScriptedHost::Evaluate(file, expression, result);
}

void BridgeTest::RunJobs() {
  while (!g_jobs.empty()) {
    for (auto& job : std::exchange(g_jobs, {})) std::exchange(job, nullptr)();
  }
}

std::size_t BridgeTest::JobCount() { return g_jobs.size(); }

void BridgeTest::Poll(const std::string& command) {
  commands.push_back(command);
  now += 3000;
  Idle();
  RunJobs();
}

void BridgeTest::CarryOut(const std::string& command) {
  Poll(command);
  Idle();
  RunJobs();
}

CannedAnswer BridgeTest::Answer(const std::string& request) {
  for (const auto& [begin, answer] : answers) {
    if (request.starts_with(begin)) return answer;
  }
  if (!request.starts_with("GET /api/bridge/command/next")) return {};
  if (commands.empty()) return {200, R"({"command":null})", ""};
  const std::string command = commands.front();
  commands.pop_front();
  return {200, command, ""};
}

Texts BridgeTest::Sent() {
  const Texts requests = server.Requests();
  Texts sent;
  for (; seen_ < requests.size(); ++seen_) {
    const std::string& request = requests[seen_];
    if (!request.starts_with("GET /api/bridge/command/next")) {
      sent.push_back(RequestLine(request) + " " + RequestBody(request));
    }
  }
  return sent;
}

std::string BridgeTest::Pushed(const std::string& type, const std::string& content, const std::string& label) {
  return R"(POST /api/bridge/push {"licenseKey":"K1","xmlType":")" + type + R"(","xmlContent":")" + Quoted(content) +
         (label.empty() ? "\"}" : R"(","label":")" + label + "\"}");
}

std::string BridgeTest::Told(const std::string& code, const std::string& status, const std::string& message) {
  return R"(POST /api/bridge/diagnostic {"licenseKey":"K1","code":")" + code + R"(","status":")" + status +
         R"(","message":")" + Quoted(message) + "\"}";
}

std::string BridgeTest::Ended(const std::string& id, const std::string& error) {
  return "POST /api/bridge/command/" + id + R"(/complete {"licenseKey":"K1","status":)" +
         (error.empty() ? "\"completed\"}" : R"("failed","error":")" + Quoted(error) + "\"}");
}
