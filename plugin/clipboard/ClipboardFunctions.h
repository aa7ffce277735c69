// The six clipboard functions. FileMaker's main thread only.
#pragma once

#include "core/CalcEngine.h"

fmx::errcode Do_SetXMLClipboard(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
fmx::errcode Do_GetXMLClipboard(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
fmx::errcode Do_GetTextClipboard(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
fmx::errcode Do_SetTextClipboard(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
fmx::errcode Do_ClipboardFormats(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
fmx::errcode Do_PrepareXMLClipboard(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args,
                                    fmx::Data& result);
