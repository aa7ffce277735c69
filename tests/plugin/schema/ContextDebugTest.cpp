// The context report: exact expressions in order, exact JSON.
#include "schema/ContextDebug.h"

#include "support/ScriptedHost.h"

namespace {

using Strings = std::vector<std::string>;

std::string LivePushTest(const std::string& literal) {
  return "PatternCount ( Char ( 13 ) & ScriptNames ( " + literal +
         " ) & Char ( 13 ) ; Char ( 13 ) & \"Varnix Live Push\" & Char ( 13 ) )";
}

struct ContextDebug : testing::Test {
  std::string Build(const std::string& target) { return BuildContextDebug(env.get(), target, {}); }
  ScriptedHost host;
  const fmx::ExprEnvUniquePtr env;
};

TEST_F(ContextDebug, ShowsTheWholeContext) {
  host.answers = {{"Get(FileName)", "Sales"},
                  {"Get(WindowName)", "Sales - Main"},
                  {"WindowNames", "Sales - Main\rContacts"},
                  {"DatabaseNames", "Sales\rContacts"},
                  {"Get(AccountName)", "Admin"},
                  {"Get(PrivilegeSetName)", "[Full Access]"},
                  {"ScriptNames(\"Sales\")", "Start\rVarnix Live Push"},
                  {LivePushTest("\"Sales\""), "1"}};
  EXPECT_EQ(BuildContextDebug(env.get(), "", {true, "http://127.0.0.1:8765", "Shop", "Con\"tacts", true}),
            R"({"pluginVersion":"1.6.16","registered":true,"baseUrl":"http://127.0.0.1:8765",)"
            R"("registeredFile":"Shop","pendingTarget":"Con\"tacts","pendingSchemaReady":true,"currentFile":"Sales",)"
            R"("targetFile":"Sales","windowName":"Sales - Main","account":"Admin","privilegeSet":"[Full Access]",)"
            R"("windowNames":["Sales - Main","Contacts"],"databaseNames":["Sales","Contacts"],)"
            R"("activeFiles":["Sales","Shop","Sales - Main","Contacts"],)"
            R"("targetScriptNames":["Start","Varnix Live Push"],"livePushVisible":"1"})");
  EXPECT_EQ(host.asked, (Strings{"Get(FileName)", "Get(WindowName)", "WindowNames", "DatabaseNames", "Get(AccountName)",
                                 "Get(PrivilegeSetName)", "Get(FileName)", "WindowNames", "DatabaseNames",
                                 "ScriptNames(\"Sales\")", LivePushTest("\"Sales\"")}));
}

TEST_F(ContextDebug, LooksUpTheScriptsOfTheTarget) {
  // by the file of a window title, escaped for FileMaker
  host.answers = {{R"(ScriptNames("a\"b\\c"))", "S"}, {LivePushTest(R"("a\"b\\c")"), "0"}};
  const std::string report = Build("a\"b\\c - Main (2)");
  EXPECT_NE(report.find(R"-("targetFile":"a\"b\\c - Main (2)")-"), report.npos) << report;
  EXPECT_TRUE(report.ends_with(R"("targetScriptNames":["S"],"livePushVisible":"0"})")) << report;
  host.answers = {{"ScriptNames(Get(FileName))", "Start"}};  // the target cannot be read
  EXPECT_TRUE(Build("Closed").ends_with(R"("targetScriptNames":["Start"],"livePushVisible":""})"));
}

TEST_F(ContextDebug, IsCompleteWhenNothingCanBeEvaluated) {
  const std::string expected =
      R"({"pluginVersion":"1.6.16","registered":false,"baseUrl":"","registeredFile":"","pendingTarget":"",)"
      R"("pendingSchemaReady":false,"currentFile":"","targetFile":"","windowName":"","account":"","privilegeSet":"",)"
      R"("windowNames":[],"databaseNames":[],"activeFiles":[],"targetScriptNames":[],"livePushVisible":""})";
  EXPECT_EQ(Build(""), expected);
  EXPECT_EQ(host.asked.back(), "DatabaseNames") << "without a target no scripts are asked for";
  EXPECT_EQ(BuildContextDebug(nullptr, "", {}), expected);
}

}  // namespace
