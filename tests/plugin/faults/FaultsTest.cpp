// Every host call fails in turn, and memory runs out at every point: the exception reaches the host, no host object is
// left, the key is sent to no other service, and the bridge keeps working. Long runs leave no additional block of
// memory.
#include <filesystem>
#include <fstream>
#include <utility>

#include "core/FunctionTable.h"
#include "core/HostText.h"
#include "net/VersionCheck.h"
#include "plugin/bridge/BridgeTest.h"
#include "plugin/faults/Allocations.h"

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
    const std::string account = g_licenseKey + " at " + g_baseUrl;
    EXPECT_TRUE(account == "K1 at http://s" || account == kNewKey + " at " + kNewUrl) << account;
    EXPECT_TRUE(sent[0].starts_with("POST " + g_baseUrl + "/api/bridge/command/c2/complete ")) << sent[0];
    EXPECT_FALSE(g_pollInFlight || g_versionCheckInFlight || g_hasPendingCmd);
    EXPECT_EQ(wrapper::LiveObjects(), Texts());
  }

  const std::string path = folder_ + "/saved.xml";
  bool isHandedOver = false;  ///< the file was passed to a live push

 private:
  void TestBody() override {}
};

/// The name of a function that is called or of a command that a poll receives; any other name is an idle call. The jobs
/// run, too.
struct Scenario {
  std::string name;
  Texts arguments = {};  // of a command: its members; "FILE" is the path of a file
  void (*prepare)(Surroundings& surroundings) = [](Surroundings&) {};

  friend void PrintTo(const Scenario& scenario, std::ostream* stream) { *stream << scenario.name; }
};

/// As FileMaker calls it; a fault may meet the host's side too.
std::string Call(fmx::ExtPluginType handler, const Texts& arguments, const std::string& file) {
  const fmx::ExprEnvUniquePtr env;
  const fmx::DataVectUniquePtr values;
  const fmx::DataUniquePtr result;
  wrapper::Bind(*env, 1);
  for (const auto& argument : arguments) {
    const fmx::DataUniquePtr value;
    SetTextResult(argument == "FILE" ? file : argument, *value);
    values->PushBack(*value);
  }
  handler(0, *env, *values, *result);
  return calc::ToUtf8(wrapper::ValueOf(*result).AsText());
}

/// Runs the scenario; returns a function's result.
std::string Do(const Scenario& scenario, Surroundings& surroundings) {
  std::string result;
  if (scenario.name == "Registration") {
    result = std::to_string(RegisterExternalFunctions());
  } else if (scenario.name == "StringForTheHost") {
    fmx::unichar16 buffer[10];
    CopyUTF8ToUnichar16("Varnix", 10, buffer);
  } else if (const auto* function = wrapper::FindFunction(calc::ToUtf16(scenario.name))) {
    result = Call(function->function, scenario.arguments, surroundings.path);
  } else if (scenario.arguments.empty()) {
    surroundings.Idle();
  } else {
    surroundings.CarryOut(scenario.name, "," + scenario.arguments[0]);
  }
  surroundings.isHandedOver = scenario.name == "Varnix.LivePush" && !surroundings.jobs.empty();
  surroundings.RunJobs();
  return result;
}

void Unregister(Surroundings&) { UnregisterExternalFunctions(); }
void CopyTable(Surroundings& s) { s.pasteboard.Replace({{"Mac-XMTB", "<BaseTable/>"}}); }
void CopyStep(Surroundings& s) { s.pasteboard.Replace({{"Mac-XMSS", "<Step/>"}}); }
void ForgetFileForADay(Surroundings& s) {
  g_registeredFileName.clear();
  s.now += 86'400'000;
}
void RefuseTheScript(Surroundings& s) {
  s.CarryOut("GET_SCHEMA", R"(,"fileName":"Sales")");
  s.startErrors = {1825, 1825};
}
void WaitInVain(Surroundings& s) {
  s.CarryOut("GET_SCHEMA", R"(,"fileName":"Contacts")");
  s.now += 30'001;
}

const Scenario kScenarios[] = {
    {"Registration", {}, Unregister},
    {"StringForTheHost"},
    {"TextOnTheClipboard"},
    {"FlavourOnTheClipboard", {}, CopyTable},
    {"FirstFileAndVersionCheck", {}, ForgetFileForADay},
    {"StartOfTheScript", {}, RefuseTheScript},
    {"EndOfTheWaitForTheFile", {}, WaitInVain},
    {"GET_CLIPBOARD", {R"("xmlType":"AUTO")"}},
    {"GET_CLIPBOARD_FORMATS", {R"("fileName":"")"}},
    {"LIST_FILES", {R"("fileName":"")"}},
    {"DEBUG_CONTEXT", {R"("fileName":"Sales")"}},
    {"SET_CLIPBOARD", {R"("xmlType":"XMTB","xmlContent":"<BaseTable/>")"}},
    {"GET_SCHEMA", {R"("fileName":"Sales")"}},
    {"Varnix.Version"},
    {"Varnix.SetXMLClipboard", {"XMSS", "<Step/>"}},
    {"Varnix.GetXMLClipboard", {"AUTO"}},
    {"Varnix.Register", {"e", kNewKey, "m", kNewUrl}},
    {"Varnix.ReadFile", {"FILE"}},
    {"Varnix.HTTPPost", {"http://s/x", "{}"}},
    {"Varnix.PushSnapshot", {"http://s/x", "FILE"}},
    {"Varnix.PushScript", {"K1", "http://s/x", "XMSS", "label"}, CopyStep},
    {"Varnix.GetSchema"},
    {"Varnix.POSIXPath", {"/Macintosh HD/tmp"}},
    {"Varnix.UploadFile", {"http://s/x", "K1", "name", "FILE"}},
    {"Varnix.LivePush", {"FILE"}, RefuseTheScript},
    {"Varnix.GetTextClipboard"},
    {"Varnix.SetTextClipboard", {"text"}},
    {"Varnix.UpdateAvailable"},
    {"Varnix.ClipboardFormats"},
    {"Varnix.PrepareXMLClipboard"},
    {"Varnix.ListFiles"},
    {"Varnix.DebugContext", {"Sales"}},
};

struct Fault {
  const char* name;
  void (*arm)(int after);
  bool (*takeBack)();  ///< cancels it; false if it has happened
  bool isRaised;       ///< it throws on the main thread
};

const Fault kFaults[] = {
    {"host out of memory", [](int after) { wrapper::InjectException(fmx::_fmxcpt::kBadAlloc, after); },
     wrapper::TakeBackException, true},
    {"host exception", [](int after) { wrapper::InjectException(fmx::_fmxcpt::kUnknown, after); },
     wrapper::TakeBackException, true},
    {"evaluation error", [](int after) { BridgeTest::current->evaluationsBeforeError = after; },
     [] { return std::exchange(BridgeTest::current->evaluationsBeforeError, -1) >= 0; }, false},
    {"out of memory", [](int after) { allocations::FailAfter(after); }, allocations::TakeBack, true},
};

class Faults : public testing::TestWithParam<Scenario> {};

INSTANTIATE_TEST_SUITE_P(, Faults, testing::ValuesIn(kScenarios));

TEST_P(Faults, EachMayHappenAtEveryPoint) {
  for (const Fault& fault : kFaults) {
    bool happened = true;
    for (int after = 0; happened && !HasFailure(); ++after) {
      SCOPED_TRACE(fault.name + (" after " + std::to_string(after)));
      Surroundings surroundings;
      RegisterExternalFunctions();
      GetParam().prepare(surroundings);
      std::string result;
      bool raised = false;
      fault.arm(after);
      try {
        result = Do(GetParam(), surroundings);
      } catch (const std::exception&) {
        raised = true;
      }
      happened = !fault.takeBack();
      // Memory may also run out in the background, where it ends the job.
      EXPECT_TRUE(raised == (happened && fault.isRaised) || (happened && fault.takeBack == allocations::TakeBack));
      EXPECT_FALSE(!happened && result.starts_with("ERROR")) << result;
      EXPECT_FALSE(surroundings.isHandedOver && std::filesystem::exists(surroundings.path));
      UnregisterExternalFunctions();
      surroundings.ExpectToWorkOn();
    }
  }
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
