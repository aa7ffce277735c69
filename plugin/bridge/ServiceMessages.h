// What the bridge tells the service. Each call blocks until the request has ended: for background jobs.
#pragma once

#include <optional>
#include <string>

#include "bridge/Account.h"

struct PushRecord {
  std::string xmlType;
  std::string xmlContent;
  std::optional<std::string> label;
};

/// Posts a command's result. False with `error` set when the service did not take it.
bool PostPushRecord(const Account& account, const PushRecord& record, std::string& error);

/// Posts how far a schema request has come. `status` is "received" or "error". Failures are ignored.
void PostDiagnostic(const Account& account, const std::string& code, const std::string& status,
                    const std::string& message);

/// Posts that a command has ended: `status` is "completed" or "failed", `error` may be empty. Neither retried nor
/// reported when it fails.
void SendComplete(const std::string& baseUrl, const std::string& licenseKey, const std::string& cmdId,
                  const std::string& status, const std::string& error);
