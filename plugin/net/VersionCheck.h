// Whether the service has a newer plug-in. See core/FunctionTable.h for the contract of all handlers.
#pragma once

#include <string>

#include "core/CalcEngine.h"

/// Asks the service at `baseUrl` for the newest version and stores it in g_latestVersion, which stays unchanged on
/// failure. Blocks until the request has ended, so it belongs in a background job. Any thread.
void CheckVersion(const std::string& baseUrl);

/// Varnix.UpdateAvailable: a notice when g_latestVersion is newer than this version, otherwise "". Sends nothing.
/// FileMaker's main thread only.
fmx::errcode Do_UpdateAvailable(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
