// The handlers of the six clipboard functions. FileMaker's main thread only. All return 0: each outcome, failures
// included, is the result text; those of failures begin with "ERROR". They can wait for the program that owns the
// clipboard. An exception of the host's interface passes through.
#pragma once

#include "core/CalcEngine.h"

/// Arguments: kind, XML. "OK", or why the clipboard does not hold the XML.
fmx::errcode Do_SetXMLClipboard(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
/// Argument: kind; "", "AUTO" or "auto" for the first kind found. The XML, or "" when there is none.
fmx::errcode Do_GetXMLClipboard(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
/// The plain text, or "" when there is none.
fmx::errcode Do_GetTextClipboard(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
/// Argument: text, which may be empty. "OK", or why the clipboard does not hold it.
fmx::errcode Do_SetTextClipboard(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
/// The name of each type on the clipboard, followed by a line feed.
fmx::errcode Do_ClipboardFormats(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
/// Optional argument: kind, else detected. Writes FileMaker XML that is plain text as that kind: "OK: " and the kind,
/// or what is wrong with the text or the argument.
fmx::errcode Do_PrepareXMLClipboard(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args,
                                    fmx::Data& result);
