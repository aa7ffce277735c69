#include "bridge/IdleLoop.h"

#include <string>

#include "bridge/BridgeState.h"
#include "bridge/ClipboardUpkeep.h"
#include "core/HostText.h"

namespace {

// The idle call has no calculation context of its own: one is made and bound to FileMaker's current file for each use.
std::string EvalInCurrentContext(const char* expression) {
  const fmx::ExprEnvUniquePtr env;
  FMX_SetToCurrentEnv(env.get());
  return EvalCalc(env.get(), expression);
}

}  // namespace

void Do_PluginIdle(FMX_ExternCallStruct*) {
  KeepClipboardConvertible();  // signed in or not
  if (!g_registered) return;
  if (g_registeredFileName.empty()) g_registeredFileName = EvalInCurrentContext("Get(FileName)");
}
