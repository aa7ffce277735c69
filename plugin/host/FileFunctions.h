// The functions for files and paths. See core/FunctionTable.h for the contract of all handlers.
#pragma once

#include "core/CalcEngine.h"

/// Varnix.ReadFile( path ): the content of the regular file at the POSIX path, read as UTF-8 up to its first zero byte,
/// or the error. Blocks FileMaker while it reads.
fmx::errcode Do_ReadFile(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);

/// Varnix.POSIXPath( fmPath ): the path without its first component, which in a FileMaker path is the volume; any other
/// text unchanged. Never fails.
fmx::errcode Do_POSIXPath(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
