// Registration of the nineteen external functions. FileMaker's main thread only.
#pragma once

#include "core/CalcEngine.h"

/// Registers all functions. The result is FileMaker's error for the first; those of the others are ignored.
fmx::errcode RegisterExternalFunctions();

/// Errors are ignored.
void UnregisterExternalFunctions();
