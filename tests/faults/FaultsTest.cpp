// Whatever the host refuses and wherever memory runs out: the exception is the host's to see, no host object stays
// behind, the key goes to no other service, and the bridge goes on afterwards.
#include <cstdlib>
#include <fstream>
#include <functional>
#include <memory>
#include <utility>

#include "bridge/BridgeState.h"
#include "core/FunctionTable.h"
#include "core/HostText.h"
#include "net/VersionCheck.h"
#include "tests/bridge/BridgeTest.h"
#include "tests/faults/Allocations.h"

namespace {

// Too long for a string to hold without memory of its own.
const std::string kNewKey = "K2-0123456789-0123456789", kNewUrl = "http://service.example:8080";

/// New ones for every fault.
class Surroundings : public BridgeTest {
 public:
  Surroundings() {
    setenv("XDG_CONFIG_HOME", folder_.c_str(), 1);
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
    g_versionCheckInFlight = g_pollInFlight = false;
  }

  /// Once all that waits has ended, a new command is carried out, by the account that is signed in.
  void ExpectToWorkOn() {
    host.errors.clear();
    g_registered = true;
    for (int call = 0; call < 5; ++call, now += 40'000) {
      Idle();
      RunJobs();
    }
    Sent();
    CarryOut(R"({"id":"c2","type":"other"})");
    const Texts sent = Sent();
    ASSERT_EQ(sent.size(), 1u);
    const std::string account = g_licenseKey + " at " + g_baseUrl;
    EXPECT_TRUE(account == "K1 at http://s" || account == kNewKey + " at " + kNewUrl) << account;
    EXPECT_TRUE(sent[0].starts_with("POST " + g_baseUrl + "/api/bridge/command/c2/complete ")) << sent[0];
    EXPECT_FALSE(g_pollInFlight || g_versionCheckInFlight || g_hasPendingCmd);
    EXPECT_EQ(fmhost::LiveObjects(), Texts());
  }

  using BridgeTest::CarryOut;
  using BridgeTest::Idle;
  using BridgeTest::pasteboard;
  using BridgeTest::RunJobs;

  const std::string path = folder_ + "/saved.xml";

 private:
  void TestBody() override {}
};

/// What is done, with a function's result; all that it needs stands ready, so that it is the plug-in that meets the
/// fault.
using Deed = std::function<std::string()>;

std::string IdleAndJobs() {
  Surroundings::Idle();
  Surroundings::RunJobs();
  return {};
}

/// A call of a registered function as FileMaker makes it.
class FunctionCall {
 public:
  FunctionCall(const char16_t* name, const Texts& arguments) {
    RegisterExternalFunctions();
    handler_ = fmhost::FindFunction(name)->function;
    UnregisterExternalFunctions();
    fmhost::Bind(*env_, 1);
    for (const auto& argument : arguments) {
      const fmx::DataUniquePtr value;
      SetTextResult(argument, *value);
      arguments_->PushBack(*value);
    }
  }

  std::string operator()() const {
    handler_(0, *env_, *arguments_, *result_);
    Surroundings::RunJobs();
    return calc::ToUtf8(fmhost::ValueOf(*result_).AsText());
  }

 private:
  fmx::ExtPluginType handler_;
  const fmx::ExprEnvUniquePtr env_;
  const fmx::DataVectUniquePtr arguments_;
  const fmx::DataUniquePtr result_;
};

Deed Calling(const char16_t* name, const Texts& arguments = {}) {
  return [call = std::make_shared<FunctionCall>(name, arguments)] { return (*call)(); };
}

/// The poll that brings the command, its execution, and what it has to send.
Deed Commanding(const std::string& members) {
  return [command = R"({"id":"c1","type":)" + members + "}"] {
    Surroundings::CarryOut(command);
    return std::string();
  };
}

struct Scenario {
  const char* name;
  Deed (*prepare)(Surroundings&);
};

const Scenario kScenarios[] = {
    {"Registration", [](Surroundings&) -> Deed { return [] { return std::to_string(RegisterExternalFunctions()); }; }},
    {"TextOnTheClipboard", [](Surroundings&) -> Deed { return IdleAndJobs; }},
    {"FlavourOnTheClipboard",
     [](Surroundings& s) -> Deed {
       s.pasteboard.Replace({{"Mac-XMTB", "<BaseTable/>"}});
       return IdleAndJobs;
     }},
    {"FirstFileAndVersionCheck",
     [](Surroundings& s) -> Deed {
       g_registeredFileName.clear();
       s.now += 86'400'000;
       return IdleAndJobs;
     }},
    {"GET_CLIPBOARD", [](Surroundings&) { return Commanding(R"("GET_CLIPBOARD","xmlType":"AUTO")"); }},
    {"GET_CLIPBOARD_FORMATS", [](Surroundings&) { return Commanding(R"("GET_CLIPBOARD_FORMATS")"); }},
    {"LIST_FILES", [](Surroundings&) { return Commanding(R"("LIST_FILES")"); }},
    {"DEBUG_CONTEXT", [](Surroundings&) { return Commanding(R"("DEBUG_CONTEXT","fileName":"Sales")"); }},
    {"SET_CLIPBOARD",
     [](Surroundings&) { return Commanding(R"("SET_CLIPBOARD","xmlType":"XMTB","xmlContent":"<BaseTable/>")"); }},
    {"GET_SCHEMA", [](Surroundings&) { return Commanding(R"("GET_SCHEMA","fileName":"Sales")"); }},
    {"StartOfTheScript",
     [](Surroundings& s) -> Deed {
       Commanding(R"("GET_SCHEMA","fileName":"Sales")")();
       s.startErrors = {1825, 1825};
       return IdleAndJobs;
     }},
    {"EndOfTheWaitForTheFile",
     [](Surroundings& s) -> Deed {
       Commanding(R"("GET_SCHEMA","fileName":"Contacts")")();
       s.now += 30'001;
       return IdleAndJobs;
     }},
    {"Version", [](Surroundings&) { return Calling(u"Varnix.Version"); }},
    {"SetXMLClipboard",
     [](Surroundings&) {
       return Calling(u"Varnix.SetXMLClipboard", {"XMSS", "<Step/>"});
     }},
    {"GetXMLClipboard", [](Surroundings&) { return Calling(u"Varnix.GetXMLClipboard", {"AUTO"}); }},
    {"Register",
     [](Surroundings&) {
       return Calling(u"Varnix.Register", {"e", kNewKey, "m", kNewUrl});
     }},
    {"ReadFile", [](Surroundings& s) { return Calling(u"Varnix.ReadFile", {s.path}); }},
    {"HTTPPost",
     [](Surroundings&) {
       return Calling(u"Varnix.HTTPPost", {"http://s/x", "{}"});
     }},
    {"PushSnapshot",
     [](Surroundings& s) {
       return Calling(u"Varnix.PushSnapshot", {"http://s/x", s.path});
     }},
    {"PushScript",
     [](Surroundings& s) {
       s.pasteboard.Replace({{"Mac-XMSS", "<Step/>"}});
       return Calling(u"Varnix.PushScript", {"K1", "http://s/x", "XMSS", "label"});
     }},
    {"GetSchema", [](Surroundings&) { return Calling(u"Varnix.GetSchema"); }},
    {"POSIXPath", [](Surroundings&) { return Calling(u"Varnix.POSIXPath", {"/Macintosh HD/tmp"}); }},
    {"UploadFile",
     [](Surroundings& s) {
       return Calling(u"Varnix.UploadFile", {"http://s/x", "K1", "name", s.path});
     }},
    {"LivePush",
     [](Surroundings& s) {
       g_pendingGetSchemaCmdId = "c1";
       return Calling(u"Varnix.LivePush", {s.path});
     }},
    {"GetTextClipboard", [](Surroundings&) { return Calling(u"Varnix.GetTextClipboard"); }},
    {"SetTextClipboard", [](Surroundings&) { return Calling(u"Varnix.SetTextClipboard", {"text"}); }},
    {"UpdateAvailable",
     [](Surroundings& s) {
       s.answers["/api/plugin/version"] = {true, R"({"version":"9.0"})", "", 200};
       return Calling(u"Varnix.UpdateAvailable");
     }},
    {"ClipboardFormats", [](Surroundings&) { return Calling(u"Varnix.ClipboardFormats"); }},
    {"PrepareXMLClipboard", [](Surroundings&) { return Calling(u"Varnix.PrepareXMLClipboard"); }},
    {"ListFiles", [](Surroundings&) { return Calling(u"Varnix.ListFiles"); }},
    {"DebugContext", [](Surroundings&) { return Calling(u"Varnix.DebugContext", {"Sales"}); }},
};

enum Raised { kNothing, kBadAlloc, kException };

Raised Raise(const Deed& deed, std::string& result) {
  try {
    result = deed();
  } catch (const std::bad_alloc&) {
    return kBadAlloc;
  } catch (const std::exception&) {
    return kException;
  }
  return kNothing;
}

struct Fault {
  const char* name;
  void (*arm)(int after);
  bool (*takeBack)();  ///< false when it has happened
  Raised raised;       ///< on the main thread
};

const Fault kFaults[] = {
    {"host out of memory", [](int after) { fmhost::InjectException("", fmx::_fmxcpt::kBadAlloc, after); },
     fmhost::TakeBackException, kBadAlloc},
    {"host exception", [](int after) { fmhost::InjectException("", fmx::_fmxcpt::kOther, after); },
     fmhost::TakeBackException, kException},
    {"evaluation error", [](int after) { BridgeTest::evaluationsBeforeError = after; },
     [] { return std::exchange(BridgeTest::evaluationsBeforeError, -1) >= 0; }, kNothing},
    {"out of memory", [](int after) { allocations::FailAfter(static_cast<std::size_t>(after)); }, allocations::TakeBack,
     kBadAlloc},
};

class Faults : public testing::TestWithParam<Scenario> {};

INSTANTIATE_TEST_SUITE_P(, Faults, testing::ValuesIn(kScenarios),
                         [](const auto& scenario) { return std::string(scenario.param.name); });

TEST_P(Faults, EachMayHappenAtEveryPoint) {
  for (const Fault& fault : kFaults) {
    bool happened = true;
    for (int after = 0; happened && !HasFailure(); ++after) {
      SCOPED_TRACE(fault.name + (" after " + std::to_string(after)));
      Surroundings surroundings;
      {
        const Deed deed = GetParam().prepare(surroundings);
        std::string result;
        fault.arm(after);
        const Raised raised = Raise(deed, result);
        happened = !fault.takeBack();
        // Memory may also run out in the background, where it ends the job.
        if (!happened || raised != kNothing || fault.takeBack != allocations::TakeBack) {
          EXPECT_EQ(raised, happened ? fault.raised : kNothing);
        }
        EXPECT_FALSE(!happened && result.starts_with("ERROR")) << result;
      }
      UnregisterExternalFunctions();
      surroundings.ExpectToWorkOn();
    }
  }
}

}  // namespace
