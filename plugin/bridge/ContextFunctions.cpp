#include "bridge/ContextFunctions.h"

#include "core/HostText.h"
#include "core/State.h"
#include "schema/ContextDebug.h"
#include "schema/OpenFiles.h"

std::string ActiveFiles(const fmx::ExprEnv* env) { return BuildActiveFileList(env, g_registeredFileName); }

std::string ContextReport(const fmx::ExprEnv* env, const std::string& targetFileName) {
  const BridgeStatus status{.registered = g_registered,
                            .baseUrl = g_baseUrl,
                            .registeredFile = g_registeredFileName,
                            .pendingTarget = g_pendingTargetFileName,
                            .pendingSchemaReady = g_pendingSchemaReady};
  return BuildContextDebug(env, targetFileName, status);
}

fmx::errcode Do_ListFiles(short, const fmx::ExprEnv& env, const fmx::DataVect&, fmx::Data& result) {
  SetTextResult(ActiveFiles(&env), result);
  return 0;
}

fmx::errcode Do_DebugContext(short, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result) {
  SetTextResult(ContextReport(&env, GetTextArg(args, 0)), result);
  return 0;
}
