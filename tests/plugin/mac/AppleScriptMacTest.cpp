// The scripts sent to FileMaker, and the memory that a script leaves.
#include "host/AppleScript.h"

#include <gtest/gtest.h>

#include "plugin/mac/standin/StandIn.h"

namespace {

TEST(AppleScript, SendsTheThreeScripts) {
  const std::string path = "/a \"b\\\".xml";
  std::string result, error;
  EXPECT_TRUE(AppleScript::SaveFrontDocumentAsXML(path, error));
  EXPECT_EQ(StandIn::scriptSource, R"(tell application "FileMaker Pro"
    save front document in (POSIX file "/a \"b\\".xml") as "XML copy"
end tell)");
  EXPECT_TRUE(AppleScript::GetFrontDocumentName(result, error));
  EXPECT_EQ(result, "FileMaker Pro") << "the stand-in's result is the first literal";
  EXPECT_EQ(StandIn::scriptSource, R"(tell application "FileMaker Pro"
    get name of front document
end tell)");
  EXPECT_TRUE(AppleScript::ExportFrontDocumentAsXML(path, result, error));
  EXPECT_EQ(result, R"(/a \)");
  EXPECT_EQ(StandIn::scriptSource, R"(set _varnixPath to "/a \"b\\".xml"
tell application "FileMaker Pro"
    save front document in (POSIX file _varnixPath) as "XML copy"
end tell
set _xml to do shell script "/bin/cat " & quoted form of _varnixPath
do shell script "/bin/rm -f " & quoted form of _varnixPath
return _xml)");
  EXPECT_EQ(error, "");
}

TEST(AppleScript, KeepsNothingAlive) {
  for (const char* source : {"return \"text\"", "return", "error \"text\"", "not a script", "\xFF"}) {
    std::string result, error;
    EXPECT_EQ(StandIn::ObjectsLeftBy([&] { AppleScript::Run(source, result, error); }), 0) << source;
  }
}

}  // namespace
