// The question for a newer version, and what the user is told of the answer.
#include "net/VersionCheck.h"

#include "core/Product.h"
#include "tests/bridge/BridgeTest.h"

namespace {

class VersionCheck : public BridgeTest {};

TEST_F(VersionCheck, TellsOfNewerVersionsAndKeepsTheLastWhenItLearnsNone) {
  EXPECT_EQ(CallHandler(Do_UpdateAvailable), "");
  const struct {
    std::string answer, newer;
    long long status = 200;
  } cases[] = {
      {R"({"version":"1.6.16"})", ""},
      {R"({"version":"1.7"})", "1.7"},
      {R"({"version":"2-beta ä"})", "2-beta ä"},
      {R"({"version":"v9.9.9"})", ""},
      {R"({"version":" 1. 7.+8x"})", " 1. 7.+8x"},
      {R"({"version":"1 .7"})", ""},
      {R"({"version":"1.6.4294967300"})", "1.6.4294967300"},
      {R"({"version":"-4294967294"})", ""},
      {R"({"version":""})", ""},
      {R"({"version":"1.10.0","x":{"version":""}})", "1.10.0"},
      {R"({"version": "3.0.0"})", "1.10.0"},
      {R"({"version":"3.0.0)", "1.10.0"},
      {R"({"version":"3.0.0"})", "1.10.0", 500},
  };
  for (const auto& [answer, newer, status] : cases) {
    answers["/api/plugin/version"] = {true, answer, "", status};
    CheckVersionInBackground();
    RunJobs();
    const std::string notice = "Varnix plugin v" + newer + " is available — download at " VARNIX_GUIDE_ADDRESS;
    EXPECT_EQ(CallHandler(Do_UpdateAvailable), newer.empty() ? "" : notice) << answer;
  }
}

}  // namespace
