// Whether the service has a newer plug-in.
#pragma once

#include <string>

#include "core/CalcEngine.h"

/// Asks the service at `baseUrl` for the newest version and stores it in g_latestVersion, which stays unchanged on
/// failure. Blocks until the request has ended, so it belongs into a background job. Any thread.
void CheckVersion(const std::string& baseUrl);

/// Varnix.UpdateAvailable: a notice when g_latestVersion is newer than this version, otherwise "". Sends nothing.
fmx::errcode Do_UpdateAvailable(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
