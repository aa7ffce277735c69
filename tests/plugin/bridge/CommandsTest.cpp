// Every command, from the poll that receives it to the last byte that is sent to the service.
#include "plugin/bridge/BridgeTest.h"
#include "support/Rows.h"

namespace {

using Commands = BridgeTest;

TEST_F(Commands, SendTheirResultByteForByte) {
  host.answers = {{"Get(FileName)", "Now"}, {"DatabaseNames", "A \"B\""}, {"ScriptNames(\"Sales\")", "One\rTwo"}};
  ExpectRows(DATA "/commands.txt", [this](const auto& row) {
    const Texts columns = ColumnsOf(row, 4);
    pasteboard.Replace({});
    if (!columns[2].empty()) pasteboard.Replace({{columns[2], columns[3]}});
    return Lines(CarryOut(columns[0], columns[1]));
  });
}

TEST_F(Commands, SetClipboardWritesItsArgumentsAndReportsARefusal) {
  const std::string members = R"(,"xmlType":"XMFD","xmlContent":"<Field name=\"é\"/>\n")";
  EXPECT_EQ(CarryOut("SET_CLIPBOARD", members), Texts{Ended("c1")});
  EXPECT_EQ(pasteboard.Bytes("Mac-XMFD"), "<Field name=\"é\"/>\n");
  EXPECT_EQ(pasteboard.Text(), "<Field name=\"é\"/>\n");
  EXPECT_EQ(CarryOut("SET_CLIPBOARD"), Texts{Ended("c1")}) << "empty arguments are no error of the command";
  EXPECT_EQ(pasteboard.Text(), "");
  pasteboard.hasItems = false;
  pasteboard.refused = {"SetString"};
  EXPECT_EQ(CarryOut("SET_CLIPBOARD", members), Texts{Failed("c1", "ERROR: NSPasteboard setString failed")});
}

TEST_F(Commands, FailWhenTheServiceRefusesTheirResult) {
  answers["/api/bridge/push"] = {true, "no \"room\"", "", 500};
  pasteboard.Replace({{"Mac-XMSS", "<Step/>"}});
  for (const char* type : {"GET_CLIPBOARD", "GET_CLIPBOARD_FORMATS", "LIST_FILES", "DEBUG_CONTEXT"}) {
    EXPECT_EQ(CarryOut(type).back(), Failed("c1", "ERROR: HTTP 500 — no \"room\"")) << type;
  }
}

TEST_F(Commands, AreNotRepeatedByAnIdleCallWithinAnEvaluation) {
  Activate("Sales");
  Poll("LIST_FILES");
  duringEvaluation = [this] { Idle(); };
  EXPECT_EQ(Step().size(), 2u) << "the list and the end";
}

}  // namespace
