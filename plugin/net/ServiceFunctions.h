// The functions with which a solution talks to a service directly. Each blocks FileMaker until the answer has arrived,
// for at most 120 seconds. See core/FunctionTable.h for the contract of all handlers.
#pragma once

#include "core/CalcEngine.h"

/// Varnix.HTTPPost( url ; jsonBody ): the answer's body.
fmx::errcode Do_HTTPPost(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
/// Varnix.UploadFile( url ; licenseKey ; filename ; posixPath ): the answer's body.
fmx::errcode Do_UploadFile(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
/// Varnix.PushSnapshot( ingestUrl ; xmlPath ): the answer's body. The file stays.
fmx::errcode Do_PushSnapshot(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
/// Varnix.PushScript( licenseKey ; bridgeUrl ; xmlType { ; label } ): sends the objects on the clipboard; "OK".
fmx::errcode Do_PushScript(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
