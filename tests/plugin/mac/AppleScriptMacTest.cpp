// The scripts sent to FileMaker, and their results.
#include <gtest/gtest.h>

#include <functional>
#include <utility>

#include "host/AppleScript.h"
#include "plugin/mac/standin/StandIn.h"

namespace {

TEST(AppleScript, SendsTheThreeScripts) {
  const std::string path = "/a \"b\\\".xml";
  std::string result, error;
  const std::pair<std::function<bool()>, std::string> cases[] = {
      {[&] { return AppleScript::SaveFrontDocumentAsXML(path, error); }, R"(tell application "FileMaker Pro"
    save front document in (POSIX file "/a \"b\\".xml") as "XML copy"
end tell)"},
      {[&] { return AppleScript::GetFrontDocumentName(result, error) && std::exchange(result, "") == "Größe"; },
       R"(tell application "FileMaker Pro"
    get name of front document
end tell)"},
      {[&] { return AppleScript::ExportFrontDocumentAsXML(path, result, error) && result == "Größe"; },
       R"(set _varnixPath to "/a \"b\\".xml"
tell application "FileMaker Pro"
    save front document in (POSIX file _varnixPath) as "XML copy"
end tell
set _xml to do shell script "/bin/cat " & quoted form of _varnixPath
do shell script "/bin/rm -f " & quoted form of _varnixPath
return _xml)"},
  };
  StandIn::scriptText = "Größe";
  for (const auto& [call, script] : cases) {
    EXPECT_TRUE(call());
    EXPECT_EQ(StandIn::scriptSource, script);
  }
  EXPECT_EQ(error, "");
}

TEST(AppleScript, ReportsHowAScriptEnded) {
  const struct {
    bool succeeds;
    std::optional<std::string> text;
    std::string source;
    std::string result;
    std::string error;
  } cases[] = {
      {true, "value", "x", "value", "old error"},
      {true, std::nullopt, "x", "", "old error"},
      {false, "Zugriff verweigert – 1743", "x", "old result", "ERROR (AppleScript): Zugriff verweigert – 1743"},
      {false, std::nullopt, "x", "old result", "ERROR (AppleScript): Unknown AppleScript error"},
      {true, "value", "\xFF", "old result", "ERROR (AppleScript): Unknown AppleScript error"},
  };
  for (const auto& [succeeds, text, source, expectedResult, expectedError] : cases) {
    StandIn::scriptSucceeds = succeeds;
    StandIn::scriptText = text;
    std::string result = "old result", error = "old error";
    EXPECT_EQ(AppleScript::Run(source, result, error), expectedError == "old error");
    EXPECT_EQ(result, expectedResult);
    EXPECT_EQ(error, expectedError);
    EXPECT_EQ(StandIn::ObjectsLeftBy([&, &source = source] { AppleScript::Run(source, result, error); }), 0);
  }
}

}  // namespace
