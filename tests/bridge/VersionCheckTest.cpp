// The question for a newer version, and what the user is told of the answer.
#include "net/VersionCheck.h"

#include <climits>

#include "bridge/BridgeState.h"
#include "core/Product.h"
#include "net/Version.h"
#include "tests/bridge/BridgeTest.h"

namespace {

std::string NoticeOf(const std::string& version) {
  return "Varnix plugin v" + version + " is available — download at " VARNIX_GUIDE_ADDRESS;
}

class VersionCheck : public BridgeTest {};

TEST_F(VersionCheck, TellsOfNewerVersionsAndKeepsTheLastWhenItLearnsNone) {
  ASSERT_STREQ(kPluginVersion, "1.6.16");
  EXPECT_EQ(CallHandler(Do_UpdateAvailable), "");
  const std::string kept = NoticeOf("1.10.0");
  const struct {
    std::string answer, notice;
    long long status = 200;
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
      {R"({"version":"3.0.0"})", kept, 500},
  };
  for (const auto& [answer, notice, status] : cases) {
    answers["/api/plugin/version"] = {true, answer, "", status};
    CheckVersionInBackground();
    RunJobs();
    EXPECT_FALSE(g_versionCheckInFlight);
    EXPECT_EQ(CallHandler(Do_UpdateAvailable), notice) << answer;
  }
}

TEST_F(VersionCheck, RunsOnceAtATimeAndCountsFromItsStart) {
  const std::int64_t start = ++now;
  CheckVersionInBackground();
  ++now;
  CheckVersionInBackground();
  EXPECT_EQ(g_lastVersionCheckMs, start);
  RunJobs();
  EXPECT_EQ(Sent(), Texts{"GET http://s/api/plugin/version "});
  CheckVersionInBackground();
  jobs.clear();
  EXPECT_FALSE(g_versionCheckInFlight) << "a job that never runs lets the next one start";
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
