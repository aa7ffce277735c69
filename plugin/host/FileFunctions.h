// The functions that give files and paths to calculations. FileMaker's main thread only. Each always returns 0 and
// gives an error as the result text.
#pragma once

#include "core/CalcEngine.h"

/// Varnix.ReadFile( path ): the content of the regular file at the POSIX path, taken as UTF-8 up to its first zero
/// byte, or the error. Blocks while it reads.
fmx::errcode Do_ReadFile(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);

/// Varnix.POSIXPath( fmPath ): the path without its first component, which in a FileMaker path is the volume; any other
/// text unchanged. Never fails.
fmx::errcode Do_POSIXPath(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
