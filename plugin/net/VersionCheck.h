// Whether the service has a newer plug-in.
#pragma once

#include <string>

#include "core/CalcEngine.h"

/// Asks the service at `baseUrl` for its newest version and stores it in g_latestVersion. On failure the last one
/// stays. Blocks until the request has ended: for background jobs.
void CheckVersion(const std::string& baseUrl);

/// Varnix.UpdateAvailable: a notice when the newest version is newer than this one, otherwise "". FileMaker's main
/// thread only; does not wait. Always returns 0.
fmx::errcode Do_UpdateAvailable(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
