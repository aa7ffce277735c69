// The schema request: it waits until its file is the active one and FileMaker has time, then starts the script
// "Varnix Live Push" there, whose call of Varnix.LivePush sends the schema. FileMaker's main thread only.
#pragma once

#include <FMWrapper/FMXExtern.h>

#include <string>

#include "bridge/Account.h"

/// Starts the wait of the command `commandId` for the file `target` (neither empty) and reports so to `account`. A wait
/// that is already under way is replaced, and its command never completed.
void ArmSchemaRequest(const Account& account, const std::string& commandId, const std::string& target);

/// One idle call's look at the wait: starts the script, gives up after 30 seconds, or goes on waiting. Returns whether
/// one of the first two happened. Failures are told to the service and to the user.
bool WatchSchemaRequest(const FMX_ExternCallStruct& call);

/// Ends the request: forgets its command and its file.
void ForgetSchemaRequest();
