// The schema request: it waits until its file is the active one and FileMaker is idle, then starts the script "Varnix
// Live Push" there, whose call of Varnix.LivePush claims the request and sends the schema. FileMaker's main thread
// only.
#pragma once

#include <FMWrapper/FMXExtern.h>

#include <optional>
#include <string>

#include "bridge/Account.h"

/// Starts the wait of the command `commandId` for the file `target` (neither empty) and reports so to `account`. An
/// earlier wait is replaced, and its command never completed.
void ArmSchemaRequest(const Account& account, const std::string& commandId, const std::string& target);

/// One idle call's look at the wait: starts the script, gives up after 30 seconds, or goes on waiting. Returns whether
/// one of the first two happened. Failures are reported to the service and to the user. Only while `call` is being
/// handled.
bool WatchSchemaRequest(const FMX_ExternCallStruct& call);

struct SchemaClaim {
  std::string commandId;  ///< the command to complete, "" when none waits
  std::string target;     ///< the file that it names, "" when none waits
};

/// Takes the waiting request, so that only one upload, that of `fileName`, answers it. Returns nothing when the request
/// is about another file; the request then stays.
std::optional<SchemaClaim> ClaimSchemaRequest(const std::string& fileName);
