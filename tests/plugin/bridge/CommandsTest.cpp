// Every command, from the poll that brings it to the last byte that the service is told.
#include "core/State.h"
#include "plugin/bridge/BridgeTest.h"

namespace {

const std::string kNoXml =
    "No FileMaker XML found on clipboard. Copy script steps, scripts, layout objects, fields, tables, custom "
    "functions, or value lists in FileMaker first.";
const FakePasteboard::Item kScriptSteps = {{"Mac-XMSS", "<Step a=\"1\">é</Step>"}};

class Commands : public BridgeTest {};

TEST_F(Commands, EachTellsTheServiceItsResultByteForByte) {
  const std::string done = R"(POST http://s/api/bridge/command/c1/complete {"licenseKey":"K1","status":"completed"})";
  const std::string pushedSteps =
      R"(POST http://s/api/bridge/push {"licenseKey":"K1","xmlType":"XMSS","xmlContent":"<Step a=\"1\">é</Step>"})";
  const std::string pushedOther =
      R"(POST http://s/api/bridge/push {"licenseKey":"K1","xmlType":"Aut\"o","xmlContent":"<x/>"})";
  const std::string report =
      R"({"pluginVersion":"1.6.16","registered":true,"baseUrl":"http://s","registeredFile":"Registered",)"
      R"("pendingTarget":"","pendingSchemaReady":false,"currentFile":"Now","targetFile":"Sales","windowName":"",)"
      R"("account":"","privilegeSet":"","windowNames":[],"databaseNames":["A \"B\""],)"
      R"("activeFiles":["Now","Registered","A \"B\""],"targetScriptNames":["One","Two"],"livePushVisible":""})";
  const FakePasteboard::Item text = {{FakePasteboard::kText, "a text"}};
  const struct {
    std::string command;
    FakePasteboard::Item clipboard;
    Texts sent;
  } cases[] = {
      {R"("type":"GET_CLIPBOARD")", kScriptSteps, {pushedSteps, done}},
      {R"("type":"GET_CLIPBOARD","xmlType":"XMSC")", kScriptSteps, {pushedSteps, done}},
      {R"("type":"GET_CLIPBOARD","xmlType":"Aut\"o")", {{"Aut\"o", "<x/>"}}, {pushedOther, done}},
      {R"("type":"GET_CLIPBOARD")", text, {Ended("c1", kNoXml)}},
      {R"("type":"GET_CLIPBOARD","xmlType":"AUTO")", {{"AUTO", "<x/>"}}, {Ended("c1", kNoXml)}},
      {R"("type":"GET_CLIPBOARD","xmlType":"XMTB")", {}, {Ended("c1", kNoXml)}},
      {R"("type":"GET_CLIPBOARD_FORMATS")",
       text,
       {Pushed("CLIPBOARD_FORMATS", "public.utf8-plain-text\n", "Clipboard Formats"), done}},
      {R"("type":"LIST_FILES")", {}, {Pushed("FILE_LIST", "Now\nRegistered\nA \"B\"", "Open Files"), done}},
      {R"("type":"DEBUG_CONTEXT","fileName":"Sales")",
       {},
       {Pushed("CONTEXT_DEBUG", report, "FileMaker Context Debug"), done}},
      {R"("type":"get_clipboard")", kScriptSteps, {Ended("c1", "Unknown command type: get_clipboard")}},
  };
  host.answers = {{"Get(FileName)", "Now"}, {"DatabaseNames", "A \"B\""}, {"ScriptNames(\"Sales\")", "One\rTwo"}};
  for (const auto& [command, clipboard, sent] : cases) {
    pasteboard.Replace(clipboard);
    CarryOut(R"({"command":{"id":"c1",)" + command + "}}");
    EXPECT_EQ(Sent(), sent) << command;
  }
  host.answers.clear();
  g_registeredFileName.clear();
  CarryOut(R"({"id":"c1","type":"LIST_FILES"})");
  EXPECT_EQ(Sent(), (Texts{Pushed("FILE_LIST", "", "Open Files"), done})) << "an empty list is sent as it is";
}

TEST_F(Commands, SetClipboardWritesWhatItIsGivenAndTellsARefusal) {
  CarryOut(R"({"id":"c1","type":"SET_CLIPBOARD","xmlType":"XMFD","xmlContent":"<Field name=\"é\"/>\n"})");
  EXPECT_EQ(pasteboard.Bytes("Mac-XMFD"), "<Field name=\"é\"/>\n");
  EXPECT_EQ(pasteboard.Text(), "<Field name=\"é\"/>\n");
  CarryOut(R"({"id":"c2","type":"SET_CLIPBOARD"})");
  EXPECT_EQ(pasteboard.Text(), "") << "empty arguments are no error of the command";
  pasteboard.hasItems = false;
  pasteboard.refused = {"SetString"};
  CarryOut(R"({"id":"c3","type":"SET_CLIPBOARD","xmlType":"XMFD","xmlContent":"<x/>"})");
  EXPECT_EQ(Sent(), (Texts{Ended("c1"), Ended("c2"), Ended("c3", "ERROR: NSPasteboard setString failed")}));
}

TEST_F(Commands, AResultThatTheServiceDoesNotTakeMakesTheCommandFail) {
  answers["/api/bridge/push"] = {true, "no \"room\"", "", 500};
  pasteboard.Replace(kScriptSteps);
  for (const std::string type : {"GET_CLIPBOARD", "GET_CLIPBOARD_FORMATS", "LIST_FILES", "DEBUG_CONTEXT"}) {
    CarryOut(R"({"id":"c1","type":")" + type + "\"}");
    EXPECT_EQ(Sent().at(1), Ended("c1", "ERROR: HTTP 500 — no \"room\"")) << type;
  }
}

TEST_F(Commands, AnIdleCallWithinAnEvaluationDoesNotRepeatThem) {
  host.answers = {{"Get(FileName)", "Sales"}};
  Poll(R"({"id":"c1","type":"LIST_FILES"})");
  duringEvaluation = [this] { Idle(); };
  Idle();
  RunJobs();
  EXPECT_EQ(Sent(), (Texts{Pushed("FILE_LIST", "Sales\nRegistered", "Open Files"), Ended("c1")}));
}

}  // namespace
