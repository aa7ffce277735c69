#include "schema/ContextDebug.h"

#include "bridge/BridgeState.h"
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

// Returns around both sides, so that only a whole line counts: 'Varnix Live Push 2' is another script.
std::string LivePushCount(const std::string& fileLiteral) {
  return "PatternCount ( Char ( 13 ) & ScriptNames ( " + fileLiteral +
         " ) & Char ( 13 ) ; Char ( 13 ) & \"Varnix Live Push\" & Char ( 13 ) )";
}

}  // namespace

std::string BuildContextDebug(fmx::ExprEnv* env, const std::string& targetFileName) {
  const std::string currentFile = EvalCalc(env, "Get(FileName)");
  const std::string windowName = EvalCalc(env, "Get(WindowName)");
  const std::string windowNames = EvalCalc(env, "WindowNames");
  const std::string databaseNames = EvalCalc(env, "DatabaseNames");
  const std::string account = EvalCalc(env, "Get(AccountName)");
  const std::string privilegeSet = EvalCalc(env, "Get(PrivilegeSetName)");
  const std::string activeFiles = BuildActiveFileList(env);

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
  report.Flag("registered", g_registered);
  report.Text("baseUrl", g_baseUrl);
  report.Text("registeredFile", g_registeredFileName);
  report.Text("pendingTarget", g_pendingTargetFileName);
  report.Flag("pendingSchemaReady", g_pendingSchemaReady);
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

fmx::errcode Do_DebugContext(short, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result) {
  SetTextResult(BuildContextDebug(const_cast<fmx::ExprEnv*>(&env), GetTextArg(args, 0)), result);
  return 0;
}
