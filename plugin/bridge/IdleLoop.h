// The work of FileMaker's idle calls. FileMaker's main thread only.
#pragma once

#include <FMWrapper/FMXExtern.h>

/// Handles one idle call. Never waits for the network. Exceptions from the host's interface pass through.
void Do_PluginIdle(FMX_ExternCallStruct* call);
