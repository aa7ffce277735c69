#include "schema/ContextDebug.h"

#include "core/HostText.h"
#include "core/Product.h"
#include "net/JsonWriter.h"
#include "schema/OpenFiles.h"

namespace {

// A FileMaker text literal of `text`.
std::string Literal(const std::string& text) {
  std::string literal = "\"";
  for (const char c : text) {
    if (c == '\\' || c == '"') literal += '\\';
    literal += c;
  }
  return literal + '"';
}

// With carriage returns on both sides, so that only a whole line counts: 'Varnix Live Push 2' is another script.
std::string LivePushCount(const std::string& fileLiteral) {
  return "PatternCount ( Char ( 13 ) & ScriptNames ( " + fileLiteral +
         " ) & Char ( 13 ) ; Char ( 13 ) & \"Varnix Live Push\" & Char ( 13 ) )";
}

}  // namespace

std::string BuildContextDebug(const fmx::ExprEnv* env, const std::string& targetFileName, const BridgeStatus& bridge) {
  const std::string currentFile = EvalCalc(env, "Get(FileName)");
  const std::string windowName = EvalCalc(env, "Get(WindowName)");
  const std::string windowNames = EvalCalc(env, "WindowNames");
  const std::string databaseNames = EvalCalc(env, "DatabaseNames");
  const std::string account = EvalCalc(env, "Get(AccountName)");
  const std::string privilegeSet = EvalCalc(env, "Get(PrivilegeSetName)");
  const std::string activeFiles = BuildActiveFileList(env, bridge.registeredFile);

  const std::string& target = targetFileName.empty() ? currentFile : targetFileName;
  std::string targetScripts;
  std::string livePushVisible;
  if (!target.empty()) {
    const std::string file = Literal(WindowNameToFileName(target));
    targetScripts = EvalCalc(env, ("ScriptNames(" + file + ")").c_str());
    if (targetScripts.empty()) targetScripts = EvalCalc(env, "ScriptNames(Get(FileName))");
    livePushVisible = EvalCalc(env, LivePushCount(file).c_str());
  }

  JsonWriter report;
  report.Text("pluginVersion", kPluginVersion);
  report.Flag("registered", bridge.registered);
  report.Text("baseUrl", bridge.baseUrl);
  report.Text("registeredFile", bridge.registeredFile);
  report.Text("pendingTarget", bridge.pendingTarget);
  report.Flag("pendingSchemaReady", bridge.pendingSchemaReady);
  report.Text("currentFile", currentFile);
  report.Text("targetFile", target);
  report.Text("windowName", windowName);
  report.Text("account", account);
  report.Text("privilegeSet", privilegeSet);
  report.Lines("windowNames", windowNames);
  report.Lines("databaseNames", databaseNames);
  report.Lines("activeFiles", activeFiles);
  report.Lines("targetScriptNames", targetScripts);
  report.Text("livePushVisible", livePushVisible);
  return report.Finish();
}
