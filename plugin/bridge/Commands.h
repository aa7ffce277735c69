// The service's commands.
#pragma once

#include <FMWrapper/FMXExtern.h>

/// Carries out the command that a poll has received, if there is one. Its work in FileMaker is done when this returns;
/// its report to the service follows in the background. Returns whether there was a command. FileMaker's main thread
/// only, while the idle call `call` is being handled.
bool CarryOutPendingCommand(const FMX_ExternCallStruct& call);
