// Registration of the nineteen external functions. FileMaker's main thread only.
#pragma once

#include "core/CalcEngine.h"

/// Registers all functions; the result is FileMaker's error for the first of them. Failures of others are passed over.
fmx::errcode RegisterExternalFunctions();

void UnregisterExternalFunctions();
