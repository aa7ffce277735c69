// Every host call fails in turn, and memory runs out at every point: the exception reaches the host, no host object is
// left, the key is sent to no other service, and the bridge keeps working. Long runs leave no additional block of
// memory.
#include <filesystem>
#include <fstream>
#include <utility>

#include "core/FunctionTable.h"
#include "core/HostText.h"
#include "core/Prefs.h"
#include "net/VersionCheck.h"
#include "plugin/bridge/BridgeTest.h"
#include "plugin/faults/Allocations.h"
#include "support/Rows.h"

namespace {

// So long that a string must allocate memory for it.
const std::string kNewKey = "K2-0123456789-0123456789", kNewUrl = "http://service.example:8080";

/// New for every fault.
class Surroundings : public BridgeTest {
 public:
  Surroundings() {
    std::ofstream(path) << "<x/>";
    host.answers = {{"Get(FileName)", "Sales"},
                    {"TableNames(\"Sales\")", "Orders"},
                    {"FieldNames(\"Sales\"; \"Orders\")", "Number\rDue"},
                    {"ScriptNames(\"Sales\")", "Print"},
                    {"DatabaseNames", "Sales"},
                    {"WindowNames", "Sales"}};
    pasteboard.Replace({{FakePasteboard::kText, "<fmxmlsnippet type=\"FMObjectList\"><Step/></fmxmlsnippet>"}});
    g_licenseKey.shrink_to_fit();
    g_baseUrl.shrink_to_fit();
    g_lastMirroredClipboardHash = g_lastPreparedClipboardHash = 0;
  }

  /// After all pending work has ended, a new command is carried out for the account that is signed in.
  void ExpectToWorkOn() {
    g_registered = true;
    for (int call = 0; call < 5; ++call, now += 40'000) Step();
    const Texts sent = CarryOut("other", "", "c2");
    ASSERT_EQ(sent.size(), 1u);
    ExpectKeyOfItsService(g_licenseKey, g_baseUrl);
    if (!Prefs::LoadLicenseKey().empty()) ExpectKeyOfItsService(Prefs::LoadLicenseKey(), Prefs::LoadBaseUrl());
    EXPECT_TRUE(sent[0].starts_with("POST " + g_baseUrl + "/api/bridge/command/c2/complete ")) << sent[0];
    EXPECT_FALSE(g_pollInFlight || g_versionCheckInFlight || g_hasPendingCmd);
    EXPECT_EQ(wrapper::LiveObjects(), Texts());
  }

  void RefuseTheScript() {
    CarryOut("GET_SCHEMA", R"(,"fileName":"Sales")");
    startErrors = {1825, 1825};
  }

  const std::string path = folder_ + "/saved.xml";
  bool isHandedOver = false;  ///< the file was passed to a live push

 private:
  static void ExpectKeyOfItsService(const std::string& key, const std::string& url) {
    const std::string account = key + " at " + url;
    EXPECT_TRUE(account == "K1 at http://s" || account == kNewKey + " at " + kNewUrl) << account;
  }
  void TestBody() override {}
};

/// As FileMaker calls it; a fault may meet the host's side too.
std::string Call(fmx::ExtPluginType handler, const Texts& arguments) {
  const fmx::ExprEnvUniquePtr env;
  const fmx::DataVectUniquePtr values;
  const fmx::DataUniquePtr result;
  wrapper::Bind(*env, 1);
  for (const auto& argument : arguments) {
    const fmx::DataUniquePtr value;
    SetTextResult(argument, *value);
    values->PushBack(*value);
  }
  handler(0, *env, *values, *result);
  return calc::ToUtf8(wrapper::ValueOf(*result).AsText());
}

/// What comes before some of the scenarios.
const std::map<std::string, void (*)(Surroundings& surroundings)> kPreparations = {
    {"Registration", [](Surroundings&) { UnregisterExternalFunctions(); }},
    {"FlavourOnTheClipboard",
     [](Surroundings& s) {
       s.pasteboard.Replace({{"Mac-XMTB", "<BaseTable/>"}});
     }},
    {"FirstFileAndVersionCheck",
     [](Surroundings& s) {
       g_registeredFileName.clear();
       s.now += 86'400'000;
     }},
    {"StartOfTheScript", [](Surroundings& s) { s.RefuseTheScript(); }},
    {"EndOfTheWaitForTheFile",
     [](Surroundings& s) {
       s.CarryOut("GET_SCHEMA", R"(,"fileName":"Contacts")");
       s.now += 30'001;
     }},
    {"Varnix.Register",
     [](Surroundings&) {
       Prefs::SaveLicenseKey("K1");
       Prefs::SaveBaseUrl("http://s");
     }},
    {"Varnix.PushScript",
     [](Surroundings& s) {
       s.pasteboard.Replace({{"Mac-XMSS", "<Step/>"}});
     }},
    {"Varnix.LivePush", [](Surroundings& s) { s.RefuseTheScript(); }},
};

/// Calls a function, carries a command out, or makes an idle call. The jobs run, too. Returns a function's result.
std::string Do(const Texts& scenario, Surroundings& surroundings) {
  const std::string& name = scenario.front();
  std::string result;
  if (name == "Registration") {
    result = std::to_string(RegisterExternalFunctions());
  } else if (name == "StringForTheHost") {
    fmx::unichar16 buffer[10];
    CopyUTF8ToUnichar16("Varnix", 10, buffer);
  } else if (const auto* function = wrapper::FindFunction(calc::ToUtf16(name))) {
    result = Call(function->function, {scenario.begin() + 1, scenario.end()});
  } else if (scenario.size() == 1) {
    surroundings.Idle();
  } else {
    surroundings.CarryOut(name, scenario[1]);
  }
  surroundings.isHandedOver = name == "Varnix.LivePush" && !surroundings.jobs.empty();
  surroundings.RunJobs();
  return result;
}

struct Fault {
  const char* name;
  void (*arm)(int after);
  bool (*takeBack)();  ///< cancels it; false if it has happened
  bool isRaised;       ///< it throws on the main thread
};

const Fault kFaults[] = {
    {"HostOutOfMemory", [](int after) { wrapper::InjectException(fmx::_fmxcpt::kBadAlloc, after); },
     wrapper::TakeBackException, true},
    {"HostException", [](int after) { wrapper::InjectException(fmx::_fmxcpt::kUnknown, after); },
     wrapper::TakeBackException, true},
    {"EvaluationError", [](int after) { BridgeTest::current->evaluationsBeforeError = after; },
     [] { return std::exchange(BridgeTest::current->evaluationsBeforeError, -1) >= 0; }, false},
    {"OutOfMemory", [](int after) { allocations::FailAfter(after); }, allocations::TakeBack, true},
};

/// Runs the scenario `row` with `fault` at each point, then without it; returns the last result.
std::string ResultDespite(const Fault& fault, const std::string& row) {
  std::string result = "not tried after an earlier failure";
  bool happened = true;
  for (int after = 0; happened && !testing::Test::HasFailure(); ++after) {
    SCOPED_TRACE(row + ": " + fault.name + " after " + std::to_string(after));
    Surroundings surroundings;
    RegisterExternalFunctions();
    const Texts scenario = ColumnsOf(Replaced(row, "{file}", surroundings.path));
    if (const auto found = kPreparations.find(scenario.front()); found != kPreparations.end()) {
      found->second(surroundings);
    }
    bool raised = false;
    fault.arm(after);
    try {
      result = Do(scenario, surroundings);
    } catch (const std::exception&) {
      raised = true;
    }
    happened = !fault.takeBack();
    // Memory may also run out in the background, where it ends the job.
    EXPECT_TRUE(raised == (happened && fault.isRaised) || (happened && fault.takeBack == allocations::TakeBack));
    EXPECT_FALSE(surroundings.isHandedOver && std::filesystem::exists(surroundings.path));
    UnregisterExternalFunctions();
    surroundings.ExpectToWorkOn();
  }
  return result;
}

class Faults : public testing::TestWithParam<Fault> {};

INSTANTIATE_TEST_SUITE_P(, Faults, testing::ValuesIn(kFaults), [](const auto& fault) { return fault.param.name; });

TEST_P(Faults, MayHappenAtEveryPoint) {
  ExpectRows(DATA "/scenarios.txt", [](const auto& row) { return ResultDespite(GetParam(), row); });
}

using Growth = BridgeTest;

TEST_F(Growth, LongRunsWithCommandsAndARevokedKeyLeaveNothingBehind) {
  const char* const types[] = {"DEBUG_CONTEXT", "GET_CLIPBOARD", "LIST_FILES", "SET_CLIPBOARD", "GET_SCHEMA", "other"};
  host.answers = {{"Get(FileName)", "Sales"}, {"DatabaseNames", "Sales\rContacts"}};
  const auto blocksAfter = [&](int calls) {
    std::size_t effects = 0, polls = 0;
    for (int call = 0; call < calls; ++call, now += 500) {
      if (call % 6 == 0) {
        commands.push_back(R"({"id":"c1","type":")" + std::string(types[call / 6 % 6]) +
                           R"(","xmlType":"XMSS","xmlContent":"<x/>"})");
      }
      effects += Step().size();
      polls += requests.size();
      requests = {};
      pasteboard.calls = host.asked = {};
    }
    commands = {};
    EXPECT_GE(effects, answers.empty() ? static_cast<std::size_t>(calls) / 6 : 0);
    EXPECT_GE(polls, static_cast<std::size_t>(calls) / 7) << "the key may be valid again";
    return allocations::Live();
  };
  for (const bool isRevoked : {false, true}) {
    if (isRevoked) answers["/api/bridge/command/next"] = {true, R"({"error":"revoked"})", "", 403};
    const auto before = blocksAfter(1'000);
    EXPECT_EQ(blocksAfter(50'000), before);
  }
}

}  // namespace
