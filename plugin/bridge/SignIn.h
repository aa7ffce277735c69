// Signing the installation in to the service, and the account in use. FileMaker's main thread only. See
// core/FunctionTable.h for the contract of all handlers.
#pragma once

#include <FMWrapper/FMXExtern.h>

#include "core/CalcEngine.h"

/// Varnix.Register( email ; licenseKey ; machineId { ; baseUrl } ): "OK", or the error as text. Blocks FileMaker until
/// the service has answered, 120 seconds at most. A failure leaves an earlier sign-in in force.
fmx::errcode Do_Register(short funcId, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result);

/// Restores the sign-in that an earlier run has stored, if any. Sends nothing.
void RestoreSignIn();

/// Stops the bridge. The stored sign-in stays.
void SignOut();

/// Makes FileMaker's current file the registered one when none is known, as after RestoreSignIn. Only while the idle
/// call `call` is being handled.
void LearnRegisteredFile(const FMX_ExternCallStruct& call);
