// Nothing grows, to the block, however long the bridge runs.
#include "bridge/BridgeState.h"
#include "tests/bridge/BridgeTest.h"
#include "tests/faults/Allocations.h"

namespace {

class Growth : public BridgeTest {
 protected:
  /// What the bridge itself holds on to.
  static std::ptrdiff_t Held() {
    requests = {};
    commands = {};
    starts = notifications = {};
    return allocations::Live();
  }
};

TEST_F(Growth, AHundredThousandIdleCallsWithCommandsLeaveNothingBehind) {
  const char* const types[] = {"DEBUG_CONTEXT", "GET_CLIPBOARD", "LIST_FILES", "SET_CLIPBOARD", "GET_SCHEMA", "other"};
  host.answers = {{"Get(FileName)", "Sales"}, {"DatabaseNames", "Sales\rContacts"}};
  std::size_t completed = 0;
  const auto idle = [&](int calls) {
    for (int call = 0; call < calls; ++call, now += 500) {
      if (call % 6 == 0) {
        commands.push_back(R"({"id":"c)" + std::to_string(call) + R"(","type":")" + types[call / 6 % 6] +
                           R"(","xmlType":"XMSS","xmlContent":"<x/>"})");
      }
      Idle();
      RunJobs();
      completed += requests.size();
      pasteboard.calls = host.asked = {};
      requests = {};
    }
    return Held();
  };
  const auto before = idle(1'000);
  completed = 0;
  EXPECT_EQ(idle(100'000), before);
  EXPECT_GT(completed, 16'000u);
}

TEST_F(Growth, AnHourOfARevokedKeyKeepsThePace) {
  answers["/api/bridge/command/next"] = {true, R"({"error":"revoked"})", "", 403};
  const auto hour = [&] {
    g_lastPollMs = 0;  // due at once
    for (int call = 0; call < 36'000; ++call, now += 100) {
      Idle();
      RunJobs();
    }
    EXPECT_EQ(requests.size(), 1200u);
    pasteboard.calls = {};
    return Held();
  };
  const auto before = hour();
  EXPECT_EQ(hour(), before);
  EXPECT_TRUE(g_registered) << "the key may be valid again";
}

}  // namespace
