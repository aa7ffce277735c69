// The schema request: its wait, the start of the script, giving up, and idle calls within idle calls.
#include "bridge/BridgeState.h"
#include "tests/bridge/BridgeTest.h"

namespace {

const std::string kFailed = "Varnix — Schema Sync Failed: ";

class SchemaRequest : public BridgeTest {
 protected:
  /// The command `id` arms a wait for `file`, "" for none named.
  void Arm(const std::string& id = "c1", const std::string& file = "Sales") {
    host.answers = {};
    g_pendingSchemaReady = false;
    CarryOut(R"({"id":")" + id + R"(","type":"GET_SCHEMA","fileName":")" + file + "\"}");
    Sent();
  }
  static std::string Armed() { return g_pendingSchemaReady ? g_pendingGetSchemaCmdId : ""; }

  const Texts triggered_ = {
      Told("LC_SCRIPT_TRIGGER", "received", R"(Triggering "Varnix Live Push" in "Sales"...)"),
      Told("LC_SCRIPT_TRIGGERED", "received", R"(Script queued — waiting for FileMaker to run "Varnix Live Push"...)")};
  const std::string timeout_ =
      R"("Sales" was not the active FileMaker file within 30 seconds. Make sure the file is open and try again.)";
};

TEST_F(SchemaRequest, IsForTheNamedFileElseTheRegisteredOneElseItFails) {
  host.answers = {{"Get(FileName)", "Contacts"}};
  const auto queued = [](const std::string& file) {
    return Told("LC_SCHEMA_QUEUED", "received", "Queued — waiting for \"" + file + "\" to be active in FileMaker...");
  };
  CarryOut(R"({"id":"c1","type":"GET_SCHEMA","fileName":"Sales"})");
  EXPECT_EQ(Sent(), (Texts{Pushed("FILE_LIST", "Contacts\\nRegistered", "Open Files"), queued("Sales")}));
  EXPECT_EQ(Armed(), "c1");
  CarryOut(R"({"id":"c2","type":"GET_SCHEMA","fileName":""})");
  EXPECT_EQ(Sent(), (Texts{Pushed("FILE_LIST", "Contacts\\nRegistered", "Open Files"), queued("Registered")}));
  EXPECT_EQ(Armed(), "c2") << "the later request replaces the earlier one";
  g_pendingSchemaReady = false;
  g_registeredFileName.clear();
  host.answers.clear();
  CarryOut(R"({"id":"c3","type":"GET_SCHEMA"})");
  EXPECT_EQ(Sent(),
            Texts{Ended("c3", "No FM file registered. Open your FM file and let Varnix.Register() run first.")});
  CarryOut(R"({"id":"c4","type":"GET_SCHEMA","fileName":"Sales"})");
  EXPECT_EQ(Sent(), Texts{queued("Sales")}) << "no list when no file is known";
}

TEST_F(SchemaRequest, StartsWaitsOrGivesUpByIdleLevelFileAndTime) {
  enum Outcome { kStarts, kWaits, kGivesUp };
  const struct {
    int level;
    const char* file;
    int elapsed;
    Outcome outcome;
  } cases[] = {
      {0, "Sales", 0, kStarts},        {1, "sALES", 0, kStarts},          {1, "Sales", 90'000, kStarts},
      {2, "Sales", 30'000, kWaits},    {3, "Sales", 30'000, kWaits},      {4, "Sales", 30'000, kWaits},
      {2, "Sales", 30'001, kGivesUp},  {3, "Sales", 30'001, kGivesUp},    {4, "Sales", 30'001, kGivesUp},
      {0, "Contacts", 30'000, kWaits}, {0, "Contacts", 30'001, kGivesUp}, {0, "Sales.fmp12", 30'000, kWaits},
      {0, "", 30'000, kWaits},         {0, "", 30'001, kGivesUp},         {0, "Sale", 0, kWaits},
  };
  for (const auto& c : cases) {
    const std::string what = std::to_string(c.level) + " " + c.file + " " + std::to_string(c.elapsed);
    starts.clear();
    notifications.clear();
    Arm();
    host.answers = {{"Get(FileName)", c.file}};
    now += c.elapsed;
    Idle(c.level);
    EXPECT_EQ(Armed(), c.outcome == kWaits ? "c1" : "") << what;
    EXPECT_EQ(g_pollInFlight, c.outcome == kWaits && c.elapsed > 0) << what << ": the call ends when the wait has";
    RunJobs();
    EXPECT_EQ(starts, c.outcome == kStarts ? Texts{"-|Varnix Live Push|2|-"} : Texts{}) << what;
    EXPECT_EQ(notifications, c.outcome == kGivesUp ? Texts{kFailed + timeout_} : Texts{}) << what;
    EXPECT_EQ(g_pendingTargetFileName, c.outcome == kGivesUp ? "" : "Sales") << what;
    const Texts sent[] = {triggered_, {}, {Told("LC_TIMEOUT", "error", timeout_), Ended("c1", timeout_)}};
    EXPECT_EQ(Sent(), sent[c.outcome]) << what;
  }
}

TEST_F(SchemaRequest, TheSecondStartNamesTheFileAndItsErrorDecides) {
  const std::string other1 = R"(Could not start "Varnix Live Push" in "My "S"" (FM error )";
  const std::string other2 = "). Make sure the file is open.";
  const std::string blocked =
      R"(FileMaker blocked Varnix from starting "Varnix Live Push" in "My "S"" (FM error 825). In Manage Security > )"
      "Advanced Settings > Extended Privileges, enable fmplugin for this account's privilege set, or add "
      "fmpluginVrnx for the Varnix plug-in.";
  const std::string missing =
      R"("Varnix Live Push" script not found in "My "S"". Add the script to this file and try again.)";
  const std::pair<std::vector<short>, std::string> cases[] = {
      {{100, 0}, ""},
      {{1825, 825}, blocked},
      {{825, 1825}, missing},
      {{825, 100}, other1 + "100" + other2},
      {{1, -1}, other1 + "-1" + other2},
  };
  for (const auto& [errors, message] : cases) {
    starts.clear();
    notifications.clear();
    Arm("c1", R"(My \"S\")");
    host.answers = {{"Get(FileName)", "my \"s\""}};
    startErrors = errors;
    Idle();
    RunJobs();
    EXPECT_EQ(starts, (Texts{"-|Varnix Live Push|2|-", "my \"s\"|Varnix Live Push|2|-"}));
    EXPECT_EQ(Armed(), "");
    Texts sent = {Told("LC_SCRIPT_TRIGGER", "received", R"(Triggering "Varnix Live Push" in "My "S""...)")};
    if (message.empty()) {
      sent.push_back(triggered_[1]);
    } else {
      sent.insert(sent.end(), {Told("LC_SCRIPT_ERROR", "error", message), Ended("c1", message)});
    }
    EXPECT_EQ(Sent(), sent);
    EXPECT_EQ(notifications, message.empty() ? Texts{} : Texts{kFailed + message});
    EXPECT_EQ(g_pendingGetSchemaCmdId, message.empty() ? "c1" : "") << "once started, it waits for its live push";
    EXPECT_EQ(g_pendingTargetFileName, message.empty() ? "My \"S\"" : "");
  }
}

TEST_F(SchemaRequest, ALaterRequestIsTakenMeanwhileAndCountsFromItsOwnTime) {
  Arm("c1");
  now += 20'000;
  CarryOut(R"({"id":"c2","type":"GET_SCHEMA","fileName":"Sales"})");
  Sent();
  now += 30'000;
  Idle();
  EXPECT_EQ(Armed(), "c2");
  now += 1;
  Idle();
  RunJobs();
  EXPECT_EQ(Sent(), (Texts{Told("LC_TIMEOUT", "error", timeout_), Ended("c2", timeout_)}));
}

TEST_F(SchemaRequest, IdleCallsWithinTheEvaluationAndTheStartSettleItOnce) {
  const std::pair<const char*, Texts> cases[] = {
      {"Sales", triggered_}, {"Contacts", {Told("LC_TIMEOUT", "error", timeout_), Ended("c1", timeout_)}}};
  for (const auto& [file, sent] : cases) {
    Arm();
    host.answers = {{"Get(FileName)", file}};
    now += 30'001;
    duringEvaluation = duringStart = [this] { Idle(); };
    Idle();
    RunJobs();
    EXPECT_EQ(Sent(), sent);
  }
}

TEST_F(SchemaRequest, ARequestThatArrivesWithinAFailingStartOutlivesIt) {
  const std::string message =
      R"(Could not start "Varnix Live Push" in "Sales" (FM error 100). Make sure the file is open.)";
  for (const bool alsoStarts : {false, true}) {
    Arm();
    Poll(R"({"id":"c2","type":"GET_SCHEMA","fileName":"Sales"})");  // not yet active: brought, not carried out
    host.answers = {{"Get(FileName)", "Sales"}};
    startErrors = {100};
    duringStart = [&] {
      Idle();
      if (alsoStarts) Idle();
      startErrors.insert(startErrors.end(), {100, 100});
    };
    Idle();
    EXPECT_EQ(g_pendingGetSchemaCmdId, "c2");
    EXPECT_EQ(g_pendingTargetFileName, "Sales");
    EXPECT_EQ(g_pendingSchemaReady, !alsoStarts);
    RunJobs();
    const Texts sent = Sent();
    EXPECT_EQ(sent.back(), Ended("c1", message));
    EXPECT_EQ(std::count(sent.begin(), sent.end(), triggered_[1]), alsoStarts ? 1 : 0);
    startErrors.clear();
  }
}

}  // namespace
