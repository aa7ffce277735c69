// The end of a schema request: the live-push script passes on the file that it has saved. See core/FunctionTable.h
// for the contract of all handlers.
#pragma once

#include "core/CalcEngine.h"

/// Varnix.LivePush( posixPath ): uploads the file in the background, deletes it even if the upload fails, and
/// completes the waiting schema request if it is about the calling file. The result is "OK", without waiting for the
/// upload, or an error if the path is empty. Later failures are reported to the service and to the user.
fmx::errcode Do_LivePush(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
