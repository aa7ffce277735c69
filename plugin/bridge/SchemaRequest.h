// The schema request: it waits until its file is the active one and FileMaker is idle, then starts the script "Varnix
// Live Push" there, whose call of Varnix.LivePush claims the request and sends the schema. FileMaker's main thread
// only.
#pragma once

#include <FMWrapper/FMXExtern.h>

#include <optional>
#include <string>

#include "bridge/Account.h"

/// Starts waiting for the file `target` on behalf of the command `commandId` (neither may be empty) and reports that to
/// the service of `account`. Replaces an earlier wait, whose command is then never completed.
void ArmSchemaRequest(const Account& account, const std::string& commandId, const std::string& target);

/// Called once in each idle call: starts the script, gives up after 30 seconds, or goes on waiting. True if the wait
/// ended during this call. Failures are reported to the service and to the user. Only while `call` is being handled.
bool WatchSchemaRequest(const FMX_ExternCallStruct& call);

struct SchemaClaim {
  std::string commandId;  ///< the command to complete, "" when none waits
  std::string target;     ///< the file that it names, "" when none waits
};

/// Takes the waiting request, so that only one upload, that of `fileName`, answers it. Returns nothing, and leaves the
/// request waiting, when it is about another file.
std::optional<SchemaClaim> ClaimSchemaRequest(const std::string& fileName);
