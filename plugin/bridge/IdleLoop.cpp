#include "bridge/IdleLoop.h"

#include "bridge/ClipboardUpkeep.h"
#include "bridge/Commands.h"
#include "bridge/Polling.h"
#include "bridge/SchemaRequest.h"
#include "bridge/SignIn.h"
#include "clipboard/ReadingLimit.h"
#include "core/State.h"

void Do_PluginIdle(FMX_ExternCallStruct* call) {
  const ReadingLimit limit;    // for commands that read the clipboard too
  KeepClipboardConvertible();  // signed in or not
  if (!g_registered) return;
  LearnRegisteredFile(*call);
  if (WatchSchemaRequest(*call)) return;
  if (CarryOutPendingCommand(*call)) return;
  CheckVersionWhenDue();
  PollWhenDue();
}
