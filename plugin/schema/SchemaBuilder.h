// The schema of an open FileMaker file as JSON, obtained by evaluating calculations. FileMaker's main thread only.
// See core/FunctionTable.h for the contract of all handlers.
#pragma once

#include <string>

#include "core/CalcEngine.h"

/// One line of JSON: file, account, tables with their fields, and the names of scripts, layouts, value lists, privilege
/// sets and custom functions. `fileName` is UTF-8; "" means the current file. What cannot be evaluated is left empty;
/// when no table is found at all, the result is "{}". `env` may be null.
std::string BuildSchema(const fmx::ExprEnv* env, const std::string& fileName);

/// Varnix.GetSchema( { fileName } ): the line that BuildSchema returns.
fmx::errcode Do_GetSchema(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
