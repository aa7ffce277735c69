// The context report: exact expressions in order, exact JSON.
#include "schema/ContextDebug.h"

#include "bridge/ContextFunctions.h"

#include <gtest/gtest.h>

#include "core/Product.h"
#include "core/State.h"
#include "support/ScriptedHost.h"

namespace {

using Strings = std::vector<std::string>;

std::string LivePushTest(const std::string& literal) {
  return "PatternCount ( Char ( 13 ) & ScriptNames ( " + literal +
         " ) & Char ( 13 ) ; Char ( 13 ) & \"Varnix Live Push\" & Char ( 13 ) )";
}

struct ContextDebug : testing::Test {
  ~ContextDebug() override {
    g_registered = false;
    g_baseUrl = kDefaultBaseUrl;
    g_registeredFileName.clear();
    g_pendingTargetFileName.clear();
    g_pendingSchemaReady = false;
  }
  ScriptedHost host;
};

TEST_F(ContextDebug, ReportsTheWholeContext) {
  g_registered = true;
  g_baseUrl = "http://127.0.0.1:8765";
  g_registeredFileName = "Shop";
  g_pendingTargetFileName = "Con\"tacts";
  g_pendingSchemaReady = true;
  host.answers = {{"Get(FileName)", "Sales"},
                  {"Get(WindowName)", "Sales - Main"},
                  {"WindowNames", "Sales - Main\rContacts"},
                  {"DatabaseNames", "Sales\rContacts"},
                  {"Get(AccountName)", "Admin"},
                  {"Get(PrivilegeSetName)", "[Full Access]"},
                  {"ScriptNames(\"Sales\")", "Start\rVarnix Live Push"},
                  {LivePushTest("\"Sales\""), "1"}};
  EXPECT_EQ(
      CallHandler(Do_DebugContext),
      "{\"pluginVersion\":\"1.6.16\",\"registered\":true,\"baseUrl\":\"http://127.0.0.1:8765\","
      "\"registeredFile\":\"Shop\",\"pendingTarget\":\"Con\\\"tacts\",\"pendingSchemaReady\":true,"
      "\"currentFile\":\"Sales\",\"targetFile\":\"Sales\",\"windowName\":\"Sales - Main\",\"account\":\"Admin\","
      "\"privilegeSet\":\"[Full Access]\",\"windowNames\":[\"Sales - Main\",\"Contacts\"],"
      "\"databaseNames\":[\"Sales\",\"Contacts\"],\"activeFiles\":[\"Sales\",\"Shop\",\"Sales - Main\",\"Contacts\"],"
      "\"targetScriptNames\":[\"Start\",\"Varnix Live Push\"],\"livePushVisible\":\"1\"}");
  EXPECT_EQ(host.asked, (Strings{"Get(FileName)", "Get(WindowName)", "WindowNames", "DatabaseNames", "Get(AccountName)",
                                 "Get(PrivilegeSetName)", "Get(FileName)", "WindowNames", "DatabaseNames",
                                 "ScriptNames(\"Sales\")", LivePushTest("\"Sales\"")}));
}

TEST_F(ContextDebug, LooksUpScriptsByTheFileOfAWindowTitleEscapedForFileMaker) {
  host.answers = {{"ScriptNames(\"a\\\"b\\\\c\")", "S"}, {LivePushTest("\"a\\\"b\\\\c\""), "0"}};
  const std::string json = CallHandler(Do_DebugContext, {"a\"b\\c - Main (2)"});
  EXPECT_NE(json.find("\"targetFile\":\"a\\\"b\\\\c - Main (2)\""), json.npos) << json;
  EXPECT_NE(json.find("\"targetScriptNames\":[\"S\"],\"livePushVisible\":\"0\"}"), json.npos) << json;
}

TEST_F(ContextDebug, ShowsTheCurrentFilesScriptsForATargetThatCannotBeRead) {
  host.answers = {{"Get(FileName)", "Sales"}, {"ScriptNames(Get(FileName))", "Start"}};
  const std::string json = CallHandler(Do_DebugContext, {"Closed"});
  EXPECT_NE(json.find("\"targetScriptNames\":[\"Start\"],\"livePushVisible\":\"\"}"), json.npos) << json;
}

TEST_F(ContextDebug, IsCompleteWhenNothingCanBeEvaluated) {
  g_registeredFileName = "Shop";
  const std::string expected =
      "{\"pluginVersion\":\"1.6.16\",\"registered\":false,\"baseUrl\":\"" + std::string(kDefaultBaseUrl) +
      "\",\"registeredFile\":\"Shop\",\"pendingTarget\":\"\",\"pendingSchemaReady\":false,\"currentFile\":\"\","
      "\"targetFile\":\"\",\"windowName\":\"\",\"account\":\"\",\"privilegeSet\":\"\",\"windowNames\":[],"
      "\"databaseNames\":[],\"activeFiles\":[\"Shop\"],\"targetScriptNames\":[],\"livePushVisible\":\"\"}";
  EXPECT_EQ(CallHandler(Do_DebugContext), expected);
  EXPECT_EQ(host.asked.back(), "DatabaseNames") << "without a target no scripts are asked for";
  EXPECT_EQ(ContextReport(nullptr, ""), expected);
}

}  // namespace
