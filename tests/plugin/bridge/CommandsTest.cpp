// Every command, from the poll that brings it to the last byte that is sent to the service.
#include "bridge/ContextFunctions.h"
#include "plugin/bridge/BridgeTest.h"

namespace {

const std::string kNoXml =
    "No FileMaker XML found on clipboard. Copy script steps, scripts, layout objects, fields, tables, custom "
    "functions, or value lists in FileMaker first.";

class Commands : public BridgeTest {
 protected:
  const FakePasteboard::Item steps_ = {{"Mac-XMSS", "<Step a=\"1\">é</Step>"}};
  const FakePasteboard::Item text_ = {{FakePasteboard::kText, "a text"}};
};

TEST_F(Commands, SendTheirResultByteForByte) {
  const std::string done = R"(POST http://s/api/bridge/command/c1/complete {"licenseKey":"K1","status":"completed"})";
  const std::string pushed = R"(POST http://s/api/bridge/push {"licenseKey":"K1","xmlType":)";
  const std::string steps = pushed + R"("XMSS","xmlContent":"<Step a=\"1\">é</Step>"})";
  host.answers = {{"Get(FileName)", "Now"}, {"DatabaseNames", "A \"B\""}, {"ScriptNames(\"Sales\")", "One\rTwo"}};
  const struct {
    std::string command;
    FakePasteboard::Item clipboard;
    Texts sent;
  } cases[] = {
      {R"("type":"GET_CLIPBOARD")", steps_, {steps, done}},
      {R"("type":"GET_CLIPBOARD","xmlType":"XMSC")", steps_, {steps, done}},
      {R"("type":"GET_CLIPBOARD","xmlType":"Aut\"o")",
       {{"Aut\"o", "<x/>"}},
       {pushed + R"("Aut\"o","xmlContent":"<x/>"})", done}},
      {R"("type":"GET_CLIPBOARD")", text_, {Ended("c1", kNoXml)}},
      {R"("type":"GET_CLIPBOARD","xmlType":"AUTO")", {{"AUTO", "<x/>"}}, {Ended("c1", kNoXml)}},
      {R"("type":"GET_CLIPBOARD","xmlType":"XMTB")", {}, {Ended("c1", kNoXml)}},
      {R"("type":"GET_CLIPBOARD_FORMATS")",
       text_,
       {Pushed("CLIPBOARD_FORMATS", "public.utf8-plain-text\n", "Clipboard Formats"), done}},
      {R"("type":"LIST_FILES")", {}, {Pushed("FILE_LIST", "Now\nRegistered\nA \"B\"", "Open Files"), done}},
      {R"("type":"DEBUG_CONTEXT","fileName":"Sales")",
       {},
       {Pushed("CONTEXT_DEBUG", CallHandler(Do_DebugContext, {"Sales"}), "FileMaker Context Debug"), done}},
      {R"("type":"get_clipboard")", steps_, {Ended("c1", "Unknown command type: get_clipboard")}},
  };
  for (const auto& [command, clipboard, sent] : cases) {
    pasteboard.Replace(clipboard);
    EXPECT_EQ(CarryOut(R"({"command":{"id":"c1",)" + command + "}}"), sent) << command;
  }
}

TEST_F(Commands, SetClipboardWritesItsArgumentsAndReportsARefusal) {
  EXPECT_EQ(CarryOut(R"({"id":"c1","type":"SET_CLIPBOARD","xmlType":"XMFD","xmlContent":"<Field name=\"é\"/>\n"})"),
            Texts{Ended("c1")});
  EXPECT_EQ(pasteboard.Bytes("Mac-XMFD"), "<Field name=\"é\"/>\n");
  EXPECT_EQ(pasteboard.Text(), "<Field name=\"é\"/>\n");
  EXPECT_EQ(CarryOut(R"({"id":"c2","type":"SET_CLIPBOARD"})"), Texts{Ended("c2")}) << "empty arguments are no error";
  EXPECT_EQ(pasteboard.Text(), "");
  pasteboard.hasItems = false;
  pasteboard.refused = {"SetString"};
  EXPECT_EQ(CarryOut(R"({"id":"c3","type":"SET_CLIPBOARD","xmlType":"XMFD","xmlContent":"<x/>"})"),
            Texts{Ended("c3", "ERROR: NSPasteboard setString failed")});
}

TEST_F(Commands, FailWhenTheServiceRefusesTheirResult) {
  answers["/api/bridge/push"] = {true, "no \"room\"", "", 500};
  pasteboard.Replace(steps_);
  for (const std::string type : {"GET_CLIPBOARD", "GET_CLIPBOARD_FORMATS", "LIST_FILES", "DEBUG_CONTEXT"}) {
    const Texts sent = CarryOut(R"({"id":"c1","type":")" + type + "\"}");
    EXPECT_EQ(sent.back(), Ended("c1", "ERROR: HTTP 500 — no \"room\"")) << type;
  }
}

TEST_F(Commands, AreNotRepeatedByAnIdleCallWithinAnEvaluation) {
  Activate("Sales");
  Poll(R"({"id":"c1","type":"LIST_FILES"})");
  duringEvaluation = [this] { Idle(); };
  EXPECT_EQ(Step(), (Texts{Pushed("FILE_LIST", "Sales\nRegistered", "Open Files"), Ended("c1")}));
}

}  // namespace
