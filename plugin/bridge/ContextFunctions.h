// The open files and the context report, including the bridge's state. FileMaker's main thread only. See
// core/FunctionTable.h for the contract of all handlers.
#pragma once

#include <string>

#include "core/CalcEngine.h"

/// The open files as seen from `env`, the registered one among them, separated by line feeds. `env` may be null.
std::string ActiveFiles(const fmx::ExprEnv* env);

/// The context report about the file `targetFileName`, "" for the current one, as JSON. `env` may be null.
std::string ContextReport(const fmx::ExprEnv* env, const std::string& targetFileName);

/// Varnix.ListFiles: the list that ActiveFiles returns.
fmx::errcode Do_ListFiles(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);

/// Varnix.DebugContext( { targetFileName } ): the report that ContextReport returns.
fmx::errcode Do_DebugContext(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
