#include "plugin/bridge/BridgeTest.h"

#include <FMWrapper/FMXExtern.h>

#include "bridge/Background.h"
#include "bridge/IdleLoop.h"
#include "bridge/Notify.h"
#include "core/Clock.h"

namespace {

constexpr std::uint64_t kActiveFile = 7;
constexpr std::string_view kPoll = "/api/bridge/command/next";

template <typename Value>
Value TakeFirst(std::deque<Value>& values) {
  Value first{};
  if (values.empty()) return first;
  std::swap(first, values.front());
  values.pop_front();
  return first;
}

Network::Outcome AnswerTo(std::string_view path) {
  for (const auto& [begin, answer] : BridgeTest::current->answers) {
    if (path.starts_with(begin)) return answer;
  }
  return {true, path.starts_with(kPoll) ? TakeFirst(BridgeTest::current->commands) : "", "", 200};
}

FMX_ErrorCode StartScript(const FMX_Text* file, const FMX_Text* script, FMX_ScriptControl control,
                          const FMX_Data* parameter) {
  BridgeTest& test = *BridgeTest::current;
  const auto text = [](const FMX_Text* text) { return text ? calc::ToUtf8(wrapper::TextOf(*text)) : "-"; };
  test.effects.push_back("start " + text(file) + "|" + text(script) + "|" + std::to_string(control) +
                         (parameter ? "|+" : "|-"));
  if (const auto during = std::exchange(test.duringStart, nullptr)) during();
  return TakeFirst(test.startErrors);
}

}  // namespace

// The seams, which the linker uses instead of the plug-in's own.
void bg(std::function<void()> job) noexcept {
  try {
    BridgeTest::current->jobs.push_back(std::move(job));
  } catch (const std::bad_alloc&) {  // the job never runs
  }
}

std::int64_t SteadyMilliseconds() {
  if (BridgeTest::current->onClock) BridgeTest::current->onClock();
  return BridgeTest::current->now;
}

void Notify(const std::string& title, const std::string& message) {
  BridgeTest::current->effects.push_back("notify " + title + ": " + message);
}

bool Network::IsURL(const std::string& text) { return text.find(' ') == text.npos; }

void Network::StartTransfer(Request request, std::function<void(Outcome)> completion) {
  BridgeTest& test = *BridgeTest::current;
  const std::string path = request.url.substr(request.url.find('/', 8));
  const bool isLong = path.starts_with(kPoll) || path.find("/api/") == path.npos;
  EXPECT_EQ(request.answerLimit, isLong ? 512u << 20 : 1u << 20) << request.url;
  test.requests.push_back(request);
  if (!path.starts_with(kPoll)) test.effects.push_back(request.method + (" " + request.url + " ") + request.body);
  if (test.onRequest) test.onRequest();
  completion(AnswerTo(path));
}

BridgeTest::BridgeTest() {
  current = this;
  FakePasteboard::Current() = &pasteboard;
  g_registered = true;
  g_licenseKey = "K1";
  g_baseUrl = "http://s";
  g_registeredFileName = "Registered";
  g_pendingGetSchemaCmdId = g_pendingTargetFileName = "";
  g_hasPendingCmd = g_pendingSchemaReady = g_pollInFlight = g_versionCheckInFlight = false;
  g_lastPollMs = g_lastVersionCheckMs = g_lastClipboardPrepareMs = now;
}

short BridgeTest::Host::Evaluate(std::uint64_t file, std::u16string_view expression, calc::Value& result) {
  EXPECT_NE(file, 0u) << "evaluated without a context: " << calc::ToUtf8(expression);
  if (const auto during = std::exchange(current->duringEvaluation, nullptr)) during();
  if (current->evaluationsBeforeError >= 0 && current->evaluationsBeforeError-- == 0) return 1200;
  return ScriptedHost::Evaluate(file, expression, result);
}

void BridgeTest::Idle(int level) {
  static FMX_ExternCallStruct call;  // one record for all calls, nested ones included, as in the host
  call = {};
  call.whichCall = kFMXT_Idle;
  call.parm1 = static_cast<FMX_UChar>(level);
  call.cCurrentEnv = [](FMX_ExprEnv* environment) -> FMX_ErrorCode {
    wrapper::Bind(*environment, kActiveFile);
    return 0;
  };
  call.cStartScript = StartScript;
  Do_PluginIdle(&call);
}

void BridgeTest::RunJobs() {
  std::string key = std::exchange(g_licenseKey, "K9"), url = std::exchange(g_baseUrl, "http://else");
  while (!jobs.empty()) {
    for (auto& job : std::exchange(jobs, {})) {
      try {
        std::exchange(job, nullptr)();
      } catch (const std::bad_alloc&) {  // ends this job only
      }
    }
  }
  g_licenseKey.swap(key);
  g_baseUrl.swap(url);
}

Texts BridgeTest::Step(int level) {
  Idle(level);
  RunJobs();
  return Effects();
}

void BridgeTest::Poll(const std::string& type, const std::string& members, const std::string& id) {
  commands.push_back(R"({"command":{"id":")" + id + R"(","type":")" + type + '"' + members + "}}");
  now += 3000;
  Idle();
  RunJobs();
}

Texts BridgeTest::CarryOut(const std::string& type, const std::string& members, const std::string& id) {
  Poll(type, members, id);
  return Step();
}

std::string BridgeTest::SchemaRequestState() {
  if (g_pendingGetSchemaCmdId.empty() && g_pendingTargetFileName.empty()) return "";
  return g_pendingGetSchemaCmdId + " " + g_pendingTargetFileName + (g_pendingSchemaReady ? " armed" : " started");
}
