// The schema request: its wait, the start of the script, giving up, and idle calls within idle calls.
#include "bridge/SchemaRequest.h"

#include "core/State.h"
#include "plugin/bridge/BridgeTest.h"

namespace {

const std::string kTimeout =
    R"("Sales" was not the active FileMaker file within 30 seconds. Make sure the file is open and try again.)";

const std::string kNotStarted =
    R"(Could not start "Varnix Live Push" in "Sales" (FM error 100). Make sure the file is open.)";

class SchemaRequest : public BridgeTest {
 protected:
  /// The command `id` asks for the schema of `file`, "" for none named.
  Texts Ask(const std::string& id, const std::string& file) {
    CarryOut(R"({"id":")" + id + R"(","type":"GET_SCHEMA","fileName":")" + file + "\"}");
    return Sent();
  }
  /// The same where no file is active, and what it is told forgotten.
  void Arm(const std::string& id = "c1", const std::string& file = "Sales") {
    host.answers.clear();
    g_pendingSchemaReady = false;
    Ask(id, file);
    starts.clear();
    notifications.clear();
  }
  static std::string Armed() { return g_pendingSchemaReady ? g_pendingGetSchemaCmdId : ""; }
  static Texts Failed(const std::string& code, const std::string& message) {
    return {Told(code, "error", message), Ended("c1", message)};
  }

  const std::string triggering_ =
      Told("LC_SCRIPT_TRIGGER", "received", R"(Triggering "Varnix Live Push" in "Sales"...)");
  const std::string triggered_ =
      Told("LC_SCRIPT_TRIGGERED", "received", R"(Script queued — waiting for FileMaker to run "Varnix Live Push"...)");
};

TEST_F(SchemaRequest, IsForTheNamedFileElseTheRegisteredOneElseItFails) {
  const auto queued = [](const std::string& file) {
    return Told("LC_SCHEMA_QUEUED", "received", "Queued — waiting for \"" + file + "\" to be active in FileMaker...");
  };
  const std::string list = Pushed("FILE_LIST", "Contacts\nRegistered", "Open Files");
  host.answers = {{"Get(FileName)", "Contacts"}};
  EXPECT_EQ(Ask("c1", "Sales"), (Texts{list, queued("Sales")}));
  EXPECT_EQ(Ask("c2", ""), (Texts{list, queued("Registered")}));
  EXPECT_EQ(Armed(), "c2") << "the later request replaces the earlier one";
  g_pendingSchemaReady = false;
  g_registeredFileName.clear();
  host.answers.clear();
  EXPECT_EQ(Ask("c3", ""),
            Texts{Ended("c3", "No FM file registered. Open your FM file and let Varnix.Register() run first.")});
  EXPECT_EQ(Ask("c4", "Sales"), Texts{queued("Sales")}) << "no list when no file is known";
}

TEST_F(SchemaRequest, StartsWaitsOrGivesUpByIdleLevelFileAndTime) {
  enum Outcome { kStarts, kWaits, kGivesUp };
  const Texts sent[] = {{triggering_, triggered_}, {}, Failed("LC_TIMEOUT", kTimeout)};
  const struct {
    int level;
    const char* file;
    int elapsed;
    Outcome outcome;
  } cases[] = {
      {0, "Sales", 0, kStarts},          {1, "sALES", 0, kStarts},           {1, "Sales", 90'000, kStarts},
      {2, "Sales", 30'000, kWaits},      {3, "Sales", 30'001, kGivesUp},     {4, "Sales", 30'000, kWaits},
      {0, "Contacts", 30'000, kWaits},   {0, "Sales.fmp12", 30'000, kWaits}, {0, "", 30'000, kWaits},
      {0, "Contacts", 30'001, kGivesUp}, {0, "", 30'001, kGivesUp},
  };
  for (const auto& [level, file, elapsed, outcome] : cases) {
    SCOPED_TRACE(std::to_string(level) + " " + file + " " + std::to_string(elapsed));
    Arm();
    host.answers = {{"Get(FileName)", file}};
    now += elapsed;
    Idle(level);
    EXPECT_EQ(Armed(), outcome == kWaits ? "c1" : "");
    EXPECT_EQ(g_pollInFlight, outcome == kWaits) << "the call ends when the wait has";
    RunJobs();
    EXPECT_EQ(starts, outcome == kStarts ? Texts{"-|Varnix Live Push|2|-"} : Texts{});
    EXPECT_EQ(notifications, outcome == kGivesUp ? Texts{"Varnix — Schema Sync Failed: " + kTimeout} : Texts{});
    EXPECT_EQ(g_pendingTargetFileName, outcome == kGivesUp ? "" : "Sales");
    EXPECT_EQ(Sent(), sent[outcome]);
  }
}

TEST_F(SchemaRequest, AWaitWhoseCommandALivePushHasCompletedEndsSilently) {
  Arm();
  ClaimSchemaRequest("Sales");  // as a live push does
  Idle();
  EXPECT_EQ(starts, Texts{}) << "no file is not the file that is waited for";
  now += 30'001;
  Idle();
  RunJobs();
  EXPECT_FALSE(g_pendingSchemaReady);
  EXPECT_EQ(notifications, Texts{});
  EXPECT_EQ(Sent(), Texts{});
}

TEST_F(SchemaRequest, TheSecondStartNamesTheFileAndItsErrorDecides) {
  const std::string blocked =
      R"(FileMaker blocked Varnix from starting "Varnix Live Push" in "Sales" (FM error 825). In Manage Security > )"
      "Advanced Settings > Extended Privileges, enable fmplugin for this account's privilege set, or add "
      "fmpluginVrnx for the Varnix plug-in.";
  const std::string missing =
      R"("Varnix Live Push" script not found in "Sales". Add the script to this file and try again.)";
  const std::pair<std::deque<short>, std::string> cases[] = {
      {{100, 0}, ""}, {{1825, 825}, blocked}, {{825, 1825}, missing}, {{825, 100}, kNotStarted}};
  for (const auto& [errors, message] : cases) {
    const bool started = message.empty();
    Arm();
    host.answers = {{"Get(FileName)", "sales"}};
    startErrors = errors;
    Idle();
    RunJobs();
    EXPECT_EQ(starts, (Texts{"-|Varnix Live Push|2|-", "sales|Varnix Live Push|2|-"}));
    Texts sent = started ? Texts{triggered_} : Failed("LC_SCRIPT_ERROR", message);
    sent.insert(sent.begin(), triggering_);
    EXPECT_EQ(Sent(), sent);
    EXPECT_EQ(notifications, started ? Texts{} : Texts{"Varnix — Schema Sync Failed: " + message});
    EXPECT_EQ(Armed(), "");
    EXPECT_EQ(g_pendingGetSchemaCmdId, started ? "c1" : "") << "once started, it waits for its live push";
    EXPECT_EQ(g_pendingTargetFileName, started ? "Sales" : "");
  }
}

TEST_F(SchemaRequest, ALaterRequestIsTakenMeanwhileAndCountsFromItsOwnTime) {
  Arm("c0");
  now += 20'000;
  Ask("c1", "Sales");
  now += 30'000;
  Idle();
  EXPECT_EQ(Armed(), "c1");
  now += 1;
  Idle();
  RunJobs();
  EXPECT_EQ(Sent(), Failed("LC_TIMEOUT", kTimeout));
}

TEST_F(SchemaRequest, IdleCallsWithinTheEvaluationAndTheStartSettleItOnce) {
  const std::pair<const char*, Texts> cases[] = {{"Sales", {triggering_, triggered_}},
                                                 {"Contacts", Failed("LC_TIMEOUT", kTimeout)}};
  for (const auto& [file, sent] : cases) {
    Arm();
    host.answers = {{"Get(FileName)", file}};
    now += 30'001;
    duringEvaluation = duringStart = [this] { Idle(); };
    Idle();
    RunJobs();
    EXPECT_EQ(Sent(), sent);
  }
  Arm();
  host.answers = {{"Get(FileName)", "Sales"}};
  duringEvaluation = [this] { Idle(3); };
  Idle();
  EXPECT_EQ(starts.size(), 1u) << "by its own level, not by that of the call within";
}

TEST_F(SchemaRequest, ARequestThatArrivesWithinAFailingStartOutlivesIt) {
  Arm();
  Poll(R"({"id":"c2","type":"GET_SCHEMA","fileName":"Sales"})");  // not yet active: brought, not carried out
  host.answers = {{"Get(FileName)", "Sales"}};
  startErrors = {100, 100};
  duringStart = [this] { Idle(); };
  Idle();
  EXPECT_EQ(Armed(), "c2");
  RunJobs();
  EXPECT_EQ(Sent().back(), Ended("c1", kNotStarted));
}

}  // namespace
