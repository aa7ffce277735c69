// The daily question for a newer version. Jobs run when the test lets them.
#include "net/VersionCheck.h"

#include <gtest/gtest.h>

#include <climits>
#include <utility>
#include <vector>

#include "bridge/Background.h"
#include "bridge/BridgeState.h"
#include "core/Clock.h"
#include "core/Product.h"
#include "net/Version.h"
#include "tests/support/FakeUrlLayer.h"
#include "tests/support/ScriptedHost.h"

namespace {

std::int64_t g_now = 0;
std::vector<std::function<void()>> g_jobs;

void RunJobs() {
  for (const auto& job : std::exchange(g_jobs, {})) job();
}

}  // namespace

std::int64_t SteadyMilliseconds() { return g_now; }
void bg(std::function<void()> job) noexcept { g_jobs.push_back(std::move(job)); }

namespace {

std::string NoticeOf(const std::string& version) {
  return "Varnix plugin v" + version + " is available — download at " VARNIX_GUIDE_ADDRESS;
}

class VersionCheck : public testing::Test {
 protected:
  VersionCheck() { g_baseUrl = "http://s"; }

  ScriptedHost host_;
  FakeUrlLayer layer_;
};

TEST_F(VersionCheck, TellsOfNewerVersionsAndKeepsTheLastWhenItLearnsNone) {
  ASSERT_STREQ(kPluginVersion, "1.6.16");
  EXPECT_EQ(CallHandler(Do_UpdateAvailable), "");
  const std::string kept = NoticeOf("1.10.0");
  const struct {
    std::string answer, notice;
    int status = 200;
  } cases[] = {
      {R"({"version":"1.6.16"})", ""},
      {R"({"version":"1.6.9"})", ""},
      {R"({"version":"1.7"})", NoticeOf("1.7")},
      {R"({"version":"2-beta ä"})", NoticeOf("2-beta ä")},
      {R"({"version":"v9.9.9"})", ""},
      {R"({"version":"2.0.0","x":{"version":""}})", NoticeOf("2.0.0")},
      {R"({"version":""})", ""},
      {R"({"version":"1.10.0"})", kept},
      {R"({"version": "3.0.0"})", kept},
      {R"({"version":"3.0.0)", kept},
      {"", kept},
      {R"({"version":"3.0.0"})", kept, 500},
  };
  for (const auto& [answer, notice, status] : cases) {
    layer_.answer = {true, answer, "", status};
    CheckVersionInBackground();
    RunJobs();
    EXPECT_FALSE(g_versionCheckInFlight);
    EXPECT_EQ(CallHandler(Do_UpdateAvailable), notice) << answer;
  }
  EXPECT_EQ(layer_.calls.at(0).method + " " + layer_.calls.at(0).url, "GET http://s/api/plugin/version");
}

TEST_F(VersionCheck, RunsOnceAtATimeAndCountsFromItsStart) {
  g_now = 1000;
  CheckVersionInBackground();
  g_now = 2000;
  CheckVersionInBackground();
  EXPECT_EQ(g_lastVersionCheckMs, 1000);
  EXPECT_EQ(g_jobs.size(), 1u);
  g_baseUrl = "http://elsewhere.invalid";  // a sign-in meanwhile is not this check's affair
  RunJobs();
  EXPECT_EQ(layer_.calls.at(0).url, "http://s/api/plugin/version");
}

TEST_F(VersionCheck, AJobThatNeverRunsLetsTheNextOneStart) {
  CheckVersionInBackground();
  g_jobs.clear();
  EXPECT_FALSE(g_versionCheckInFlight);
}

TEST(ParseVersion, ReadsAsScanfDoesAndClampsWhatDoesNotFit) {
  using Numbers = std::array<int, 3>;
  const std::pair<const char*, Numbers> cases[] = {
      {"1.2.3", {1, 2, 3}},       {"2", {2, 0, 0}},
      {" 1. 7.\t+8x", {1, 7, 8}}, {"v1.7.0", {0, 0, 0}},
      {"1.7.0-rc", {1, 7, 0}},    {"-1.x.3", {-1, 0, 0}},
      {"1 .2", {1, 0, 0}},        {"", {0, 0, 0}},
      {"1..3", {1, 0, 0}},        {"2147483648.-2147483649.7", {INT_MAX, INT_MIN, 7}},
  };
  for (const auto& [text, numbers] : cases) EXPECT_EQ(ParseVersion(text), numbers) << text;
}

}  // namespace
