// Registration of the nineteen external functions. FileMaker's main thread only.
//
// The contract of every handler, `Do_<Name>( funcId, env, args, result )`: FileMaker calls it on its main thread. It
// sets `result` to a text and always returns 0. A failure is a text that begins with "ERROR". All texts are UTF-8 until
// core/HostText converts them. Exceptions from the host's interface and std::bad_alloc pass through to FileMaker. The
// arguments belong to FileMaker and are valid only during the call. `args` has as many as the table allows.
#pragma once

#include "core/CalcEngine.h"

/// Registers all functions. Returns FileMaker's error for the first one; errors of the others are ignored.
fmx::errcode RegisterExternalFunctions();

/// Unregisters all functions. Errors are ignored.
void UnregisterExternalFunctions();
