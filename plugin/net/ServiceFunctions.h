// The functions with which a solution talks to a service itself. Each blocks FileMaker until the answer has come, 120
// seconds at most.
#pragma once

#include "core/CalcEngine.h"

fmx::errcode Do_HTTPPost(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
fmx::errcode Do_UploadFile(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
fmx::errcode Do_PushSnapshot(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
fmx::errcode Do_PushScript(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
