// Signing the installation in to the service.
#pragma once

#include "core/CalcEngine.h"

/// Blocks FileMaker until the service has answered, 120 seconds at most. A refused sign-in leaves an earlier one in
/// force.
fmx::errcode Do_Register(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);
