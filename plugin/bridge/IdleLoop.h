// What the plug-in does on FileMaker's idle calls. FileMaker's main thread only.
#pragma once

#include <FMWrapper/FMXExtern.h>

/// One idle call. Never waits for the network.
void Do_PluginIdle(FMX_ExternCallStruct* call);
