// The scripts sent to FileMaker, and their results.
#include <gtest/gtest.h>

#include "host/AppleScript.h"
#include "plugin/mac/standin/StandIn.h"

namespace {

TEST(AppleScript, SendsTheThreeScripts) {
  std::string result, error;
  StandIn::scriptText = "Größe";
  EXPECT_TRUE(AppleScript::GetFrontDocumentName(result, error));
  EXPECT_EQ(result, "Größe");
  EXPECT_EQ(StandIn::scriptSource,
            R"(tell application "FileMaker Pro"
    get name of front document
end tell)");
  EXPECT_TRUE(AppleScript::SaveFrontDocumentAsXML("/a \"b\\\".xml", error));
  EXPECT_EQ(StandIn::scriptSource,
            R"(tell application "FileMaker Pro"
    save front document in (POSIX file "/a \"b\\".xml") as "XML copy"
end tell)");
  StandIn::scriptText = "<x/>";
  EXPECT_TRUE(AppleScript::ExportFrontDocumentAsXML("/a \"b\\\".xml", result, error));
  EXPECT_EQ(result, "<x/>");
  EXPECT_EQ(StandIn::scriptSource,
            R"(set _varnixPath to "/a \"b\\".xml"
tell application "FileMaker Pro"
    save front document in (POSIX file _varnixPath) as "XML copy"
end tell
set _xml to do shell script "/bin/cat " & quoted form of _varnixPath
do shell script "/bin/rm -f " & quoted form of _varnixPath
return _xml)");
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
