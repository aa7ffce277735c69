#include "bridge/IdleLoop.h"

#include <cstdint>
#include <string>
#include <utility>

#include "bridge/BridgeState.h"
#include "bridge/ClipboardUpkeep.h"
#include "bridge/Commands.h"
#include "bridge/CurrentContext.h"
#include "bridge/Polling.h"
#include "bridge/SchemaRequest.h"
#include "core/Clock.h"
#include "net/VersionCheck.h"

namespace {

constexpr std::int64_t kVersionCheckIntervalMs = 86'400'000;

void CheckVersionWhenDue() {
  if (SteadyMilliseconds() - g_lastVersionCheckMs < kVersionCheckIntervalMs) return;
  CheckVersionInBackground();
}

// Another idle call or a sign-in, let in by the evaluation, may have set the name meanwhile; theirs is newer.
void LearnRegisteredFile(const FMX_ExternCallStruct& call) {
  if (!g_registeredFileName.empty()) return;
  std::string fileName = CurrentFileName(call);
  if (g_registeredFileName.empty()) g_registeredFileName = std::move(fileName);
}

}  // namespace

void Do_PluginIdle(FMX_ExternCallStruct* call) {
  KeepClipboardConvertible();  // signed in or not
  if (!g_registered) return;
  LearnRegisteredFile(*call);
  if (WatchSchemaRequest(*call)) return;
  if (CarryOutPendingCommand(*call)) return;
  CheckVersionWhenDue();
  PollWhenDue();
}
