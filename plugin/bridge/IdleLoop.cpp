#include "bridge/IdleLoop.h"

#include <cstdint>

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

}  // namespace

void Do_PluginIdle(FMX_ExternCallStruct* call) {
  KeepClipboardConvertible();  // signed in or not
  if (!g_registered) return;
  if (g_registeredFileName.empty()) g_registeredFileName = CurrentFileName(*call);
  if (WatchSchemaRequest(*call)) return;
  if (CarryOutPendingCommand(*call)) return;
  CheckVersionWhenDue();
  PollWhenDue();
}
