// The schema request: its wait, the start of the script, giving up, and calls within calls.
#include "bridge/ContextFunctions.h"
#include "bridge/LivePush.h"
#include "plugin/bridge/BridgeTest.h"

namespace {

const std::string kTimeout =
    R"("Sales" was not the active FileMaker file within 30 seconds. Make sure the file is open and try again.)";
const std::string kBlocked =
    R"(FileMaker blocked Varnix from starting "Varnix Live Push" in "Sales" (FM error 825). In Manage Security > )"
    "Advanced Settings > Extended Privileges, enable fmplugin for this account's privilege set, or add fmpluginVrnx "
    "for the Varnix plug-in.";
const std::string kMissing =
    R"("Varnix Live Push" script not found in "Sales". Add the script to this file and try again.)";
const std::string kNotStarted =
    R"(Could not start "Varnix Live Push" in "Sales" (FM error 100). Make sure the file is open.)";
const std::string kStart = "start -|Varnix Live Push|2|-";

class SchemaRequest : public BridgeTest {
 protected:
  Texts Ask(const std::string& file, const std::string& id = "c1") {
    return CarryOut("GET_SCHEMA", R"(,"fileName":")" + file + '"', id);
  }
  /// c1 asks for the schema of Sales while no file is active; `file` becomes active when `elapsed` ms have passed.
  void Arm(const std::string& file, int elapsed = 0) {
    Activate("");
    EXPECT_EQ(Ask("Sales").back(), Queued("Sales"));
    Activate(file);
    now += elapsed;
  }
  static std::string Queued(const std::string& file) {
    return Diagnosed("LC_SCHEMA_QUEUED", "received",
                     "Queued — waiting for \"" + file + "\" to be active in FileMaker...");
  }
  static Texts Reported(const std::string& code, const std::string& error) {
    return {"notify Varnix — Schema Sync Failed: " + error, Diagnosed(code, "error", error), Failed("c1", error)};
  }

  const std::string triggering_ =
      Diagnosed("LC_SCRIPT_TRIGGER", "received", R"(Triggering "Varnix Live Push" in "Sales"...)");
  const std::string triggered_ = Diagnosed("LC_SCRIPT_TRIGGERED", "received",
                                           R"(Script queued — waiting for FileMaker to run "Varnix Live Push"...)");
  const Texts started_ = {kStart, triggering_, triggered_}, timedOut_ = Reported("LC_TIMEOUT", kTimeout);
};

TEST_F(SchemaRequest, IsForTheNamedFileElseTheRegisteredOneElseItFails) {
  const std::string list = Pushed("FILE_LIST", "Contacts\nRegistered", "Open Files");
  Activate("Contacts");
  EXPECT_EQ(Ask("Sales"), (Texts{list, Queued("Sales")}));
  EXPECT_EQ(Ask("", "c2"), (Texts{list, Queued("Registered")}));
  EXPECT_EQ(SchemaRequestState(), "c2 Registered armed") << "the later request replaces the earlier one";
  const std::string context = CallHandler(Do_DebugContext);
  EXPECT_NE(context.find(R"("pendingTarget":"Registered","pendingSchemaReady":true)"), context.npos) << context;
  Activate("");
  g_registeredFileName.clear();
  EXPECT_EQ(Ask(""),
            Texts{Failed("c1", "No FM file registered. Open your FM file and let Varnix.Register() run first.")});
  EXPECT_EQ(Ask("Sales"), Texts{Queued("Sales")}) << "no list when no file is known";
}

TEST_F(SchemaRequest, StartsWaitsOrGivesUpByIdleLevelFileAndTime) {
  const std::pair<Texts, std::string> starts{started_, "c1 Sales started"}, waits{{}, "c1 Sales armed"},
      givesUp{timedOut_, ""};
  const struct {
    int level;
    std::string file;
    int elapsed;
    std::pair<Texts, std::string> outcome;
  } cases[] = {
      {0, "Sales", 3000, starts},       {1, "sALES", 3000, starts},        {1, "Sales", 90'000, starts},
      {2, "Sales", 30'000, waits},      {3, "Sales", 30'001, givesUp},     {4, "Sales", 30'000, waits},
      {0, "Contacts", 30'000, waits},   {0, "Sales.fmp12", 30'000, waits}, {0, "", 30'000, waits},
      {0, "Contacts", 30'001, givesUp}, {0, "", 30'001, givesUp},
  };
  for (const auto& [level, file, elapsed, outcome] : cases) {
    SCOPED_TRACE(std::to_string(level) + " " + file + " " + std::to_string(elapsed));
    Arm(file, elapsed);
    requests.clear();
    EXPECT_EQ(Step(level), outcome.first);
    EXPECT_EQ(SchemaRequestState(), outcome.second);
    EXPECT_EQ(requests.size(), outcome == waits ? 1u : outcome.first.size() - 1) << "the call ends when the wait has";
    now += 30'001;
    Activate("Contacts");
    EXPECT_EQ(Step(), outcome == waits ? timedOut_ : Texts{}) << "a wait goes on, nothing else does";
  }
}

TEST_F(SchemaRequest, EndsSilentlyWhenALivePushHasCompletedItsCommand) {
  Arm("Sales");
  CallHandler(Do_LivePush, {folder_ + "/missing"});
  RunJobs();
  EXPECT_TRUE(Effects().back().starts_with("POST http://s/api/bridge/command/c1/complete "));
  for (const char* file : {"Sales", ""}) {
    Activate(file);
    EXPECT_EQ(Step(), Texts{}) << "no file is not the file that is waited for";
    now += 30'001;
  }
}

TEST_F(SchemaRequest, TheSecondStartNamesTheFileAndItsErrorDecides) {
  const std::tuple<std::deque<short>, Texts, std::string> cases[] = {
      {{100, 0}, {triggered_}, "c1 Sales started"},
      {{1825, 825}, Reported("LC_SCRIPT_ERROR", kBlocked), ""},
      {{825, 1825}, Reported("LC_SCRIPT_ERROR", kMissing), ""},
      {{825, 100}, Reported("LC_SCRIPT_ERROR", kNotStarted), ""},
  };
  for (const auto& [errors, rest, state] : cases) {
    Arm("sales");
    startErrors = errors;
    Texts expected = {kStart, "start sales|Varnix Live Push|2|-"};
    expected.insert(expected.end(), rest.begin(), rest.end());
    expected.insert(expected.end() - (rest.size() + 1) / 2, triggering_);  // sent after a notification is shown
    EXPECT_EQ(Step(), expected);
    EXPECT_EQ(SchemaRequestState(), state);
  }
}

TEST_F(SchemaRequest, ALaterRequestCountsFromItsOwnTime) {
  Ask("Sales", "c0");
  now += 20'000;
  Arm("Contacts", 30'000);
  EXPECT_EQ(Step(), Texts{});
  now += 1;
  EXPECT_EQ(Step(), timedOut_);
}

TEST_F(SchemaRequest, CallsWithinTheEvaluationAndTheStartSettleItOnce) {
  for (const std::string file : {"Sales", "Contacts"}) {
    Arm(file, 30'001);
    duringEvaluation = duringStart = [this] { Idle(); };
    EXPECT_EQ(Step(), file == "Sales" ? started_ : timedOut_);
  }
  Arm("Sales");
  duringEvaluation = [this] { Idle(3); };
  EXPECT_EQ(Step(), started_) << "by its own level, not by that of the call within";
}

TEST_F(SchemaRequest, OneThatArrivesWithinAFailingStartOutlivesIt) {
  Arm("");
  Poll("GET_SCHEMA", R"(,"fileName":"Sales")", "c2");
  Activate("Sales");
  startErrors = {100, 100};
  duringStart = [this] { Idle(); };
  EXPECT_EQ(Step().back(), Failed("c1", kNotStarted));
  EXPECT_EQ(SchemaRequestState(), "c2 Sales armed");
}

}  // namespace
