// Asking the service, about once a day, whether there is a newer plug-in.
#pragma once

#include <atomic>
#include <cstdint>

#include "core/CalcEngine.h"

extern std::int64_t g_lastVersionCheckMs;         ///< steady milliseconds; FileMaker's main thread only
extern std::atomic<bool> g_versionCheckInFlight;  ///< at most one check runs at a time

/// Starts a check of the service at g_baseUrl unless one is running. Returns at once; failures are silent. FileMaker's
/// main thread only.
void CheckVersionInBackground();

fmx::errcode Do_UpdateAvailable(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
