// The schema request: its wait, the start of the script, giving up, and calls within calls.
#include "bridge/ContextFunctions.h"
#include "bridge/LivePush.h"
#include "plugin/bridge/BridgeTest.h"
#include "support/Rows.h"

namespace {

class SchemaRequest : public BridgeTest {
 protected:
  Texts Ask(const std::string& file, const std::string& id = "c1") {
    return CarryOut("GET_SCHEMA", R"(,"fileName":")" + file + '"', id);
  }
  /// c1 asks for the schema of Sales while no file is active; `file` becomes active when `elapsed` ms have passed.
  void Arm(const std::string& file, int elapsed = 0) {
    Activate("");
    Ask("Sales");
    Activate(file);
    now += elapsed;
  }
};

TEST_F(SchemaRequest, IsForTheNamedFileOrTheRegisteredOneOrFails) {
  Ask("Sales");
  Ask("", "c2");
  EXPECT_EQ(SchemaRequestState(), "c2 Registered armed") << "the later request replaces the earlier one";
  const std::string context = CallHandler(Do_DebugContext);
  EXPECT_NE(context.find(R"("pendingTarget":"Registered","pendingSchemaReady":true)"), context.npos) << context;
  g_registeredFileName.clear();
  EXPECT_EQ(Ask(""),
            Texts{Failed("c1", "No FM file registered. Open your FM file and let Varnix.Register() run first.")});
  EXPECT_EQ(Ask("Sales").size(), 1u) << "no list when no file is known";
}

TEST_F(SchemaRequest, StartsWaitsOrGivesUpByFileTimeIdleLevelAndErrorsOfTheStart) {
  ExpectRows(DATA "/schema-requests.txt", [this](const auto& row) {
    const Texts columns = ColumnsOf(row, 5);
    Arm(columns[0], std::stoi(columns[1]));
    for (const auto& error : {columns[3], columns[4]}) startErrors.push_back(std::atoi(error.c_str()));
    std::string outcome = Lines(Step(std::stoi(columns[2])));
    outcome += SchemaRequestState();
    startErrors.clear();
    if (requests.back().url.find("/command/next?") != std::string::npos) outcome += ", polls";
    now += 30'001;
    Activate("Contacts");
    return outcome + '\n' + Lines(Step());
  });
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

TEST_F(SchemaRequest, ALaterRequestCountsFromItsOwnTime) {
  Ask("Sales", "c0");
  now += 20'000;
  Arm("Contacts", 30'000);
  EXPECT_EQ(Step(), Texts{});
  now += 1;
  EXPECT_NE(Step(), Texts{});
}

TEST_F(SchemaRequest, CallsWithinTheEvaluationAndTheStartSettleItOnce) {
  for (const std::string file : {"Sales", "Contacts"}) {
    Arm(file, 30'001);
    duringEvaluation = duringStart = [this] { Idle(); };
    const Texts settled = Step();
    EXPECT_EQ(settled.size(), 3u);
    EXPECT_EQ(settled[0].substr(0, 6), file == "Sales" ? "start " : "notify");
  }
  Arm("Sales");
  duringEvaluation = [this] { Idle(3); };
  EXPECT_EQ(Step().size(), 3u) << "by its own level, not by that of the call within";
}

TEST_F(SchemaRequest, OneThatArrivesWithinAFailingStartOutlivesIt) {
  Arm("");
  Poll("GET_SCHEMA", R"(,"fileName":"Sales")", "c2");
  Activate("Sales");
  startErrors = {100, 100};
  duringStart = [this] { Idle(); };
  EXPECT_NE(Step().back().find("/command/c1/complete "), std::string::npos);
  EXPECT_EQ(SchemaRequestState(), "c2 Sales armed");
}

}  // namespace
