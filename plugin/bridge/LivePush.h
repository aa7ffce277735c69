// The end of a schema request: the live-push script hands over the file that it has saved.
#pragma once

#include "core/CalcEngine.h"

/// Uploads the file in the background and then deletes it, whatever came of it; completes the waiting schema request if
/// the calling file is the one that it is about. Returns at once; failures are told to the service and to the user.
fmx::errcode Do_LivePush(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
