// The handlers of the six clipboard functions. They may wait for the program that owns the clipboard. See
// core/FunctionTable.h for the contract of all handlers.
#pragma once

#include "core/CalcEngine.h"

/// Varnix.SetXMLClipboard( xmlType ; xmlContent ): "OK", or why the clipboard does not hold the XML.
fmx::errcode Do_SetXMLClipboard(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
/// Varnix.GetXMLClipboard( xmlType ): the XML of that kind, of the first kind found for "", "AUTO" or "auto"; "" when
/// there is none.
fmx::errcode Do_GetXMLClipboard(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
/// Varnix.GetTextClipboard: the plain text, or "" when there is none.
fmx::errcode Do_GetTextClipboard(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
/// Varnix.SetTextClipboard( text ): "OK", or why the clipboard does not hold the text, which may be empty.
fmx::errcode Do_SetTextClipboard(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
/// Varnix.ClipboardFormats: the name of each type on the clipboard, followed by a line feed.
fmx::errcode Do_ClipboardFormats(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
/// Varnix.PrepareXMLClipboard( { xmlType } ): writes the plain text, which must be FileMaker XML, as objects of that
/// kind, by default the detected one. "OK: " and the kind, or what is wrong with the text or the argument.
fmx::errcode Do_PrepareXMLClipboard(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args,
                                    fmx::Data& result);
