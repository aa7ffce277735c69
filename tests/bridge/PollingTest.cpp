// When the bridge asks the service, what for, and what it makes of the answer.
#include <limits>

#include "bridge/BridgeState.h"
#include "net/VersionCheck.h"
#include "tests/bridge/BridgeTest.h"

namespace {

class Polling : public BridgeTest {};

TEST_F(Polling, AsksWithTheKeyAsItIs) {
  g_licenseKey = "K+1%2f&x=/?";
  Poll("");
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_STREQ(requests[0].method, "GET");
  EXPECT_EQ(requests[0].url, "http://s/api/bridge/command/next?licenseKey=K+1%2f&x=/?&version=1.6.16");
}

TEST_F(Polling, OneAtATimeAtLeastThreeSecondsFromStartToStart) {
  constexpr int kNever = 1'000'000;
  const struct {
    int idleEvery, answersAfter;
    std::vector<std::int64_t> starts;
  } cases[] = {
      {10, 2990, {3000, 6000, 9000, 12'000, 15'000, 18'000}},
      {1700, 0, {3400, 6800, 10'200, 13'600, 17'000}},
      {100, 3000, {3000, 6000, 9000, 12'000, 15'000, 18'000}},
      {100, 3100, {3000, 9000, 15'000}},
      {100, 10'000, {3000, 15'000}},  // a call that finds the poll still running begins the three seconds anew
      {100, kNever, {3000}},
  };
  constexpr std::int64_t kEndOfTime = std::numeric_limits<std::int64_t>::max() - 20'000;
  for (std::int64_t begin : {0L, 1'000'000L, kEndOfTime})
    for (const auto& c : cases) {
      g_lastPollMs = g_lastVersionCheckMs = g_lastClipboardPrepareMs = begin;
      std::vector<std::int64_t> starts;
      for (std::int64_t t = 0; t < 20'000; t += c.idleEvery) {
        now = begin + t;
        if (!jobs.empty() && t >= starts.back() + c.answersAfter) RunJobs();
        const std::size_t running = jobs.size();
        Idle();
        ASSERT_LE(jobs.size(), 1u);
        if (jobs.size() > running) starts.push_back(t);
      }
      RunJobs();
      EXPECT_EQ(starts, c.starts) << c.idleEvery << " " << c.answersAfter;
    }
}

TEST_F(Polling, TakesACommandOnlyFromAnAnswerThatNamesOne) {
  const struct {
    std::string answer;
    bool names;
    long long status = 200;
  } cases[] = {
      {R"({"command":{"id":"c1","type":"T"}})", true},
      {R"({"x":[{"type":"T"}],"id":"c1"})", true},
      {R"({"id":"c1","type":"T","id":"c2"})", true},
      {R"({"id": "c1", "type": "T"})", false},
      {R"(<html><a id="c1" type="T">Sign in to this network</a></html>)", false},
      {R"({"command" :null,"id":"c1","type":"T"})", true},
      {R"({"command":null,"id":"c1","type":"T"})", false},
      {R"({"id":"c1","type":"T","x":{"command": null}})", false},
      {R"({"id":"c1"})", false},
      {R"({"type":"T"})", false},
      {R"({"id":"","type":"T"})", false},
      {R"({"id":7,"type":"T"})", false},
      {R"({"id":"c1","type":"T"})", false, 500},
  };
  for (const auto& [answer, names, status] : cases) {
    answers["/api/bridge/command/next"] = {true, answer, "", status};
    Poll("");
    EXPECT_FALSE(g_pollInFlight);
    EXPECT_EQ(g_hasPendingCmd, names) << answer;
    if (!g_hasPendingCmd.exchange(false)) continue;
    EXPECT_EQ(g_pendingCmd.id, "c1");
    EXPECT_EQ(g_pendingCmd.type, "T");
    EXPECT_EQ(g_pendingCmd.json, answer);
  }
}

TEST_F(Polling, ACommandThatArrivesDuringAnIdleCallIsNeitherLostNorOverwritten) {
  for (int arrival = 1; arrival <= 3; ++arrival) {  // at each of the call's readings of the clock
    commands = {R"({"id":"c1","type":"other"})", R"({"id":"c2","type":"other"})"};
    now += 3000;
    Idle();
    ASSERT_TRUE(g_pollInFlight);
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
    const std::string error = "Unknown command type: other";
    EXPECT_EQ(Sent(), (Texts{Ended("c1", error), Ended("c2", error)})) << arrival;
  }
}

TEST_F(Polling, StepsOfACallComeInOrderAndAHandledOneEndsIt) {
  g_registeredFileName.clear();
  g_pendingSchemaReady = true;
  g_pendingSchemaQueuedMs = now;
  g_pendingTargetFileName = "Sales";
  g_pendingCmd = {"c1", "other", ""};
  g_hasPendingCmd = true;
  host.answers = {{"Get(FileName)", "Sales"}};
  now += 86'400'000;
  Idle();
  EXPECT_EQ(g_registeredFileName, "Sales");
  EXPECT_EQ(starts.size(), 1u);
  EXPECT_TRUE(g_hasPendingCmd) << "a call that starts the script takes no command";
  Idle();
  EXPECT_FALSE(g_hasPendingCmd);
  EXPECT_FALSE(g_versionCheckInFlight || g_pollInFlight) << "a call that takes a command starts neither";
  Idle();
  EXPECT_TRUE(g_versionCheckInFlight && g_pollInFlight);
  RunJobs();
  EXPECT_EQ(requests.end()[-2].url, "http://s/api/plugin/version");
}

TEST_F(Polling, AsksForTheVersionOnceADay) {
  const auto checks = [this](std::int64_t later) {
    now += later;
    Idle();
    RunJobs();
    return Sent().size();
  };
  EXPECT_EQ(checks(86'399'999), 0u);
  EXPECT_EQ(checks(1), 1u);
  EXPECT_EQ(checks(86'399'999), 0u);
  g_versionCheckInFlight = true;
  EXPECT_EQ(checks(1), 0u) << "not while one is running";
  g_versionCheckInFlight = false;
  EXPECT_EQ(checks(0), 1u);
}

TEST_F(Polling, SignedOutNothingIsAskedAndNothingSent) {
  g_registered = false;
  g_registeredFileName.clear();
  g_pendingSchemaReady = g_hasPendingCmd = true;
  pasteboard.Replace({{FakePasteboard::kText, "<fmxmlsnippet><Step/></fmxmlsnippet>"}});
  now += 86'400'000;
  Idle();
  EXPECT_TRUE(jobs.empty() && host.asked.empty() && g_hasPendingCmd);
  EXPECT_NE(pasteboard.Bytes("Mac-XMSS"), "") << "the clipboard is kept nevertheless";
}

}  // namespace
