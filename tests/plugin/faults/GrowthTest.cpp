// Nothing grows, to the block, however long the bridge runs.
#include "plugin/bridge/BridgeTest.h"
#include "plugin/faults/Allocations.h"

namespace {

using Growth = BridgeTest;

TEST_F(Growth, LongRunsWithCommandsAndARevokedKeyLeaveNothingBehind) {
  const char* const types[] = {"DEBUG_CONTEXT", "GET_CLIPBOARD", "LIST_FILES", "SET_CLIPBOARD", "GET_SCHEMA", "other"};
  host.answers = {{"Get(FileName)", "Sales"}, {"DatabaseNames", "Sales\rContacts"}};
  const auto blocksAfter = [&](int calls) {
    std::size_t effects = 0, polls = 0;
    for (int call = 0; call < calls; ++call, now += 500) {
      if (call % 6 == 0) {
        commands.push_back(R"({"id":"c1","type":")" + std::string(types[call / 6 % 6]) +
                           R"(","xmlType":"XMSS","xmlContent":"<x/>"})");
      }
      effects += Step().size();
      polls += requests.size();
      requests = {};
      pasteboard.calls = host.asked = {};
    }
    commands = {};
    EXPECT_GE(effects, answers.empty() ? static_cast<std::size_t>(calls) / 6 : 0);
    EXPECT_GE(polls, static_cast<std::size_t>(calls) / 7) << "the key may be valid again";
    return allocations::Live();
  };
  for (const bool isRevoked : {false, true}) {
    if (isRevoked) answers["/api/bridge/command/next"] = {true, R"({"error":"revoked"})", "", 403};
    const auto before = blocksAfter(1'000);
    EXPECT_EQ(blocksAfter(50'000), before);
  }
}

}  // namespace
