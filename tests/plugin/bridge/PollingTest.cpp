// When the bridge asks the service for commands and for the newest version, and how it uses the answers.
#include "bridge/Polling.h"

#include <limits>

#include "core/Product.h"
#include "net/VersionCheck.h"
#include "plugin/bridge/BridgeTest.h"

namespace {

using Polling = BridgeTest;

const std::string kUnknown = "Unknown command type: T";

TEST_F(Polling, OneAtATimeAtLeastThreeSecondsFromStartToStart) {
  g_licenseKey = "K+1%2f&x=/?";
  const std::tuple<int, int, std::vector<std::int64_t>> cases[] = {
      {10, 2990, {3000, 6000, 9000, 12'000, 15'000, 18'000}},
      {1700, 0, {3400, 6800, 10'200, 13'600, 17'000}},
      {100, 3100, {3000, 9000, 15'000}},
      {100, 10'000, {3000, 15'000}},  // a call that finds the poll still running begins the three seconds anew
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
  const std::pair<std::string, bool> cases[] = {
      {R"({"command":{"id":"c1","type":"T"}})", true},
      {R"({"id":"c1","type":"T","id":"c2"})", true},
      {R"({"id": "c1", "type": "T"})", false},
      {R"(<html><a id="c1" type="T">Sign in to this network</a></html>)", false},
      {R"({"command" :null,"id":"c1","type":"T"})", true},
      {R"({"command":null,"id":"c1","type":"T"})", false},
      {R"({"id":"c1","type":"T","x":{"command": null}})", false},
      {R"({"id":"c1"})", false},
      {R"({"id":"","type":"T"})", false},
  };
  for (const auto& [answer, names] : cases) {
    answers["/api/bridge/command/next"] = {true, answer, "", 200};
    EXPECT_EQ(CarryOut("T"), names ? Texts{Failed("c1", kUnknown)} : Texts{}) << answer;
  }
  answers["/api/bridge/command/next"] = {true, cases[0].first, "", 403};
  EXPECT_EQ(CarryOut("T"), Texts{});
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

TEST_F(Polling, TheStepsOfACallComeInOrderAndAHandledOneEndsIt) {
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
  const std::pair<std::string, std::string> cases[] = {
      {R"({"version":"1.6.16"})", ""},
      {R"({"version":"1.7"})", "1.7"},
      {R"({"version":"2-beta ä"})", "2-beta ä"},
      {R"({"version":"v9.9.9"})", ""},
      {R"({"version":" 1. 7.+8x"})", " 1. 7.+8x"},
      {R"({"version":"1.6.4294967300"})", "1.6.4294967300"},
      {R"({"version":""})", ""},
      {R"({"version":"1.10.0","x":{"version":""}})", "1.10.0"},
      {R"({"version": "3.0.0"})", "1.10.0"},
      {R"({"version":"3.0.0)", "1.10.0"},
      {R"({"version":"3.0.0","status":500})", "1.10.0"},
  };
  for (const auto& [answer, newer] : cases) {
    answers["/api/plugin/version"] = {true, answer, "", answer.find("500") == answer.npos ? 200 : 500};
    for (int calls = 0; calls < 2; ++calls) CheckVersionInBackground();
    EXPECT_EQ(jobs.size(), 1u) << "one at a time";
    RunJobs();
    const std::string notice = "Varnix plugin v" + newer + " is available — download at " VARNIX_GUIDE_ADDRESS;
    EXPECT_EQ(CallHandler(Do_UpdateAvailable), newer.empty() ? "" : notice) << answer;
  }
}

}  // namespace
