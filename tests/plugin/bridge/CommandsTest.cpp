// Every command, from the poll that receives it to the last byte that is sent to the service.
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
  const std::string other = pushed + R"("Aut\"o","xmlContent":"<x/>"})";
  host.answers = {{"Get(FileName)", "Now"}, {"DatabaseNames", "A \"B\""}, {"ScriptNames(\"Sales\")", "One\rTwo"}};
  const std::string formats = Pushed("CLIPBOARD_FORMATS", "public.utf8-plain-text\n", "Clipboard Formats");
  const std::string files = Pushed("FILE_LIST", "Now\nRegistered\nA \"B\"", "Open Files");
  const std::string context = CallHandler(Do_DebugContext, {"Sales"});
  EXPECT_TRUE(
      context.starts_with(R"({"pluginVersion":"1.6.16","registered":true,"baseUrl":"http://s","registeredFile":)"
                          R"("Registered","pendingTarget":"","pendingSchemaReady":false,)"));
  const std::string report = Pushed("CONTEXT_DEBUG", context, "FileMaker Context Debug");
  const struct {
    std::string type, members;
    FakePasteboard::Item clipboard;
    Texts sent;
  } cases[] = {
      {"GET_CLIPBOARD", "", steps_, {steps, done}},
      {"GET_CLIPBOARD", R"(,"xmlType":"XMSC")", steps_, {steps, done}},
      {"GET_CLIPBOARD", R"(,"xmlType":"Aut\"o")", {{"Aut\"o", "<x/>"}}, {other, done}},
      {"GET_CLIPBOARD", "", text_, {Failed("c1", kNoXml)}},
      {"GET_CLIPBOARD", R"(,"xmlType":"AUTO")", {{"AUTO", "<x/>"}}, {Failed("c1", kNoXml)}},
      {"GET_CLIPBOARD", R"(,"xmlType":"XMTB")", {}, {Failed("c1", kNoXml)}},
      {"GET_CLIPBOARD_FORMATS", "", text_, {formats, done}},
      {"LIST_FILES", "", {}, {files, done}},
      {"DEBUG_CONTEXT", R"(,"fileName":"Sales")", {}, {report, done}},
      {"get_clipboard", "", steps_, {Failed("c1", "Unknown command type: get_clipboard")}},
  };
  for (const auto& [type, members, clipboard, sent] : cases) {
    pasteboard.Replace(clipboard);
    EXPECT_EQ(CarryOut(type, members), sent) << type << members;
  }
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
  pasteboard.Replace(steps_);
  for (const char* type : {"GET_CLIPBOARD", "GET_CLIPBOARD_FORMATS", "LIST_FILES", "DEBUG_CONTEXT"}) {
    EXPECT_EQ(CarryOut(type).back(), Failed("c1", "ERROR: HTTP 500 — no \"room\"")) << type;
  }
}

TEST_F(Commands, AreNotRepeatedByAnIdleCallWithinAnEvaluation) {
  Activate("Sales");
  Poll("LIST_FILES");
  duringEvaluation = [this] { Idle(); };
  EXPECT_EQ(Step(), (Texts{Pushed("FILE_LIST", "Sales\nRegistered", "Open Files"), Ended("c1")}));
}

}  // namespace
