// When the bridge asks the service for commands and for the newest version, and how it uses the answers.
#include "bridge/Polling.h"

#include <limits>

#include "core/Product.h"
#include "net/VersionCheck.h"
#include "plugin/bridge/BridgeTest.h"
#include "support/Rows.h"

namespace {

using Polling = BridgeTest;

const std::string kUnknown = "Unknown command type: T";

TEST_F(Polling, OneAtATimeAtLeastThreeSecondsFromStartToStart) {
  g_licenseKey = "K+1%2f&x=/?";
  const std::tuple<int, int, std::vector<std::int64_t>> cases[] = {
      {10, 2990, {3000, 6000, 9000, 12'000, 15'000, 18'000}},
      {1700, 0, {3400, 6800, 10'200, 13'600, 17'000}},
      {100, 3100, {3000, 9000, 15'000}},
      {100, 10'000, {3000, 15'000}},  // a call that finds the poll still running restarts the three seconds
      {100, 1'000'000, {3000}},
  };
  for (const std::int64_t begin : {std::int64_t{0}, std::numeric_limits<std::int64_t>::max() - 20'000}) {
    for (const auto& [idleEvery, answersAfter, expected] : cases) {
      g_lastPollMs = g_lastVersionCheckMs = g_lastClipboardPrepareMs = begin;
      std::vector<std::int64_t> starts;
      for (std::int64_t t = 0; t < 20'000; t += idleEvery) {
        now = begin + t;
        if (!jobs.empty() && t >= starts.back() + answersAfter) RunJobs();
        const std::size_t running = jobs.size();
        Idle();
        if (jobs.size() > running) starts.push_back(t);
      }
      RunJobs();
      EXPECT_EQ(starts, expected) << idleEvery << " " << answersAfter;
    }
  }
  EXPECT_STREQ(requests[0].method, "GET");
  EXPECT_EQ(requests[0].url, "http://s/api/bridge/command/next?licenseKey=K+1%2f&x=/?&version=1.6.16");
}

TEST_F(Polling, TakesACommandOnlyFromAnAnswerThatNamesOne) {
  long status = 200;
  const auto carryOut = [&](const std::string& answer) -> std::string {
    answers["/api/bridge/command/next"] = {true, answer, "", status};
    const Texts sent = CarryOut("T");
    EXPECT_TRUE(sent.empty() || sent == Texts{Failed("c1", kUnknown)}) << answer;
    return sent.empty() ? "ignored" : "carried out";
  };
  ExpectRows(DATA "/polls.txt", carryOut);
  status = 403;
  EXPECT_EQ(carryOut(R"({"command":{"id":"c1","type":"T"}})"), "ignored");
}

TEST_F(Polling, ACommandThatArrivesDuringAnIdleCallIsNeitherLostNorOverwritten) {
  for (int arrival = 1; arrival <= 3; ++arrival) {  // at each of the call's readings of the clock
    commands = {R"({"id":"c1","type":"T"})", R"({"id":"c2","type":"T"})"};
    now += 3000;
    Idle();
    now += 3000;
    int readings = 0;
    onClock = [&] {
      if (++readings == arrival) RunJobs();
    };
    Idle();
    ASSERT_GE(readings, arrival);
    onClock = nullptr;
    for (int call = 0; call < 10; ++call, now += 1000) {
      RunJobs();
      Idle();
    }
    EXPECT_EQ(Effects(), (Texts{Failed("c1", kUnknown), Failed("c2", kUnknown)})) << arrival;
  }
}

TEST_F(Polling, TakesTheStepsInOrderAndEndsAfterTheFirstThatActs) {
  g_registeredFileName.clear();
  CarryOut("GET_SCHEMA", R"(,"fileName":"Sales")");
  Poll("T", "", "c2");
  Activate("Sales");
  now += 86'400'000;
  EXPECT_EQ(Step()[0], "start -|Varnix Live Push|2|-") << "a call that starts the script takes no command";
  EXPECT_EQ(g_registeredFileName, "Sales");
  EXPECT_EQ(Step(), Texts{Failed("c2", kUnknown)});
  EXPECT_TRUE(requests.back().url.ends_with("/complete")) << "a call that takes a command does not poll";
  EXPECT_EQ(Step(), Texts{"GET http://s/api/plugin/version "});
  EXPECT_NE(requests.back().url.find("/command/next?"), std::string::npos);
}

TEST_F(Polling, AsksForTheVersionOnceADay) {
  for (const int checks : {0, 1, 0, 1}) {
    now += checks == 0 ? 86'399'999 : 1;
    EXPECT_EQ(Step(), Texts(static_cast<std::size_t>(checks), "GET http://s/api/plugin/version ")) << now;
  }
}

TEST_F(Polling, NothingIsAskedOrSentWhileSignedOut) {
  Poll("T");
  g_registered = false;
  g_registeredFileName.clear();
  g_pendingSchemaReady = true;
  pasteboard.Replace({{FakePasteboard::kText, "<fmxmlsnippet><Step/></fmxmlsnippet>"}});
  now += 86'400'000;
  EXPECT_EQ(Step(), Texts{});
  EXPECT_EQ(host.asked, Texts{});
  EXPECT_NE(pasteboard.Bytes("Mac-XMSS"), "") << "the clipboard is kept nevertheless";
}

TEST_F(Polling, ReportsNewerVersionsAndKeepsTheLastWhenItLearnsNone) {
  EXPECT_EQ(CallHandler(Do_UpdateAvailable), "");
  ExpectRows(DATA "/versions.txt", [&](const std::string& answer) {
    answers["/api/plugin/version"] = {true, answer, "", answer.find("500") == answer.npos ? 200 : 500};
    for (int calls = 0; calls < 2; ++calls) CheckVersionInBackground();
    EXPECT_EQ(jobs.size(), 1u) << "one at a time";
    RunJobs();
    return Replaced(CallHandler(Do_UpdateAvailable), VARNIX_GUIDE_ADDRESS, "{address}");
  });
}

}  // namespace
