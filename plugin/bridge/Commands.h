// The service's commands.
#pragma once

#include <FMWrapper/FMXExtern.h>

/// Takes the command that a poll has brought, if there is one, and carries it out: its work in FileMaker is done when
/// this returns, its report to the service follows in the background. Returns whether there was one. FileMaker's main
/// thread only, while the idle call `call` is being handled.
bool CarryOutPendingCommand(const FMX_ExternCallStruct& call);
