// What the bridge reports to the service. Each call blocks until the request has ended, at most 120 seconds, so it
// belongs in a background job. Safe on any thread. Texts are UTF-8. They are sent as JSON strings, except for command
// ids, which become part of the URL's path verbatim. Throws only std::bad_alloc.
#pragma once

#include <optional>
#include <string>

#include "bridge/Account.h"

/// The result of a command.
struct PushRecord {
  std::string xmlType;               ///< kind of clipboard XML, or the name of another result, such as "FILE_LIST"
  std::string xmlContent;            ///< XML, or the other result's text
  std::optional<std::string> label;  ///< a title for people; left out of the message when there is none
};

/// Posts `record`. Returns false, with the reason in `error`, when the service did not accept it; otherwise `error`
/// stays unchanged.
bool PostPushRecord(const Account& account, const PushRecord& record, std::string& error);

/// Posts the progress of a schema request: `code` names the step, `status` is "received" or "error", `message` is for
/// people. Failures are ignored.
void PostDiagnostic(const Account& account, const std::string& code, const std::string& status,
                    const std::string& message);

/// Posts that the command `cmdId` has ended: `status` is "completed" or "failed"; an empty `error` is left out. If the
/// request fails, it is neither retried nor reported.
void SendComplete(const std::string& baseUrl, const std::string& licenseKey, const std::string& cmdId,
                  const std::string& status, const std::string& error);

/// Calls SendComplete: with status "completed" if there is no `error`, otherwise with "failed" and that text.
void EndCommand(const Account& account, const std::string& cmdId, const std::optional<std::string>& error);
