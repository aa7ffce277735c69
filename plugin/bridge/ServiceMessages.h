// What the bridge reports to the service. Each call blocks until the request has ended, 120 seconds at most: for
// background jobs, on any thread. Texts are UTF-8 and sent escaped, except ids, which go into the path verbatim. Memory
// that runs out is raised as std::bad_alloc; no other failure throws.
#pragma once

#include <optional>
#include <string>

#include "bridge/Account.h"

/// The result of a command.
struct PushRecord {
  std::string xmlType;
  std::string xmlContent;
  std::optional<std::string> label;
};

/// Posts `record`. False, with the reason in `error`, when the service did not accept it.
bool PostPushRecord(const Account& account, const PushRecord& record, std::string& error);

/// Posts how far a schema request has come. `status` is "received" or "error". Failures are ignored.
void PostDiagnostic(const Account& account, const std::string& code, const std::string& status,
                    const std::string& message);

/// Posts that the command `cmdId` has ended: `status` is "completed" or "failed", `error` may be empty. A failure is
/// neither retried nor reported.
void SendComplete(const std::string& baseUrl, const std::string& licenseKey, const std::string& cmdId,
                  const std::string& status, const std::string& error);

/// The same by outcome: without `error` the command is completed, otherwise it has failed, with that text.
void EndCommand(const Account& account, const std::string& cmdId, const std::optional<std::string>& error);
