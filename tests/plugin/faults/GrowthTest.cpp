// Nothing grows, to the block, however long the bridge runs.
#include "core/State.h"
#include "plugin/bridge/BridgeTest.h"
#include "plugin/faults/Allocations.h"

namespace {

class Growth : public BridgeTest {};

TEST_F(Growth, AHundredThousandIdleCallsWithCommandsLeaveNothingBehind) {
  const char* const types[] = {"DEBUG_CONTEXT", "GET_CLIPBOARD", "LIST_FILES", "SET_CLIPBOARD", "GET_SCHEMA", "other"};
  host.answers = {{"Get(FileName)", "Sales"}, {"DatabaseNames", "Sales\rContacts"}};
  const auto blocksAfter = [&](int calls) {
    std::size_t sent = 0;
    for (int call = 0; call < calls; ++call, now += 500) {
      if (call % 6 == 0) {
        commands.push_back(R"({"id":"c)" + std::to_string(call) + R"(","type":")" + types[call / 6 % 6] +
                           R"(","xmlType":"XMSS","xmlContent":"<x/>"})");
      }
      Idle();
      RunJobs();
      sent += Sent().size();
      pasteboard.calls = host.asked = {};
    }
    EXPECT_GE(sent, static_cast<std::size_t>(calls) / 6);
    commands = {};
    starts = notifications = {};
    return allocations::Live();
  };
  const auto before = blocksAfter(1'000);
  EXPECT_EQ(blocksAfter(100'000), before);
}

TEST_F(Growth, AnHourOfARevokedKeyKeepsThePace) {
  answers["/api/bridge/command/next"] = {true, R"({"error":"revoked"})", "", 403};
  const auto blocksAfterAnHour = [&] {
    g_lastPollMs = 0;  // due at once
    for (int call = 0; call < 36'000; ++call, now += 100) {
      Idle();
      RunJobs();
    }
    EXPECT_EQ(requests.size(), 1200u);
    EXPECT_EQ(Sent(), Texts());
    requests = {};
    pasteboard.calls = {};
    return allocations::Live();
  };
  const auto before = blocksAfterAnHour();
  EXPECT_EQ(blocksAfterAnHour(), before);
  EXPECT_TRUE(g_registered) << "the key may be valid again";
}

}  // namespace
