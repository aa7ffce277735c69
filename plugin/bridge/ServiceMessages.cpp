#include "bridge/ServiceMessages.h"

#include <utility>

#include "net/JsonWriter.h"
#include "net/Network.h"

namespace {

void PostIgnoringOutcome(const std::string& url, std::string body) {
  std::string response, error;
  Network::Post(url, std::move(body), response, error, Network::kShortAnswer);
}

std::string ToJson(const Account& account, const PushRecord& record) {
  JsonWriter json;
  json.Text("licenseKey", account.licenseKey).Text("xmlType", record.xmlType).Text("xmlContent", record.xmlContent);
  if (record.label) json.Text("label", *record.label);
  return json.Finish();
}

}  // namespace

bool PostPushRecord(const Account& account, const PushRecord& record, std::string& error) {
  std::string response;
  return Network::Post(account.baseUrl + "/api/bridge/push", ToJson(account, record), response, error,
                       Network::kShortAnswer);
}

void PostDiagnostic(const Account& account, const std::string& code, const std::string& status,
                    const std::string& message) {
  JsonWriter record;
  record.Text("licenseKey", account.licenseKey).Text("code", code).Text("status", status).Text("message", message);
  PostIgnoringOutcome(account.baseUrl + "/api/bridge/diagnostic", record.Finish());
}

void SendComplete(const std::string& baseUrl, const std::string& licenseKey, const std::string& cmdId,
                  const std::string& status, const std::string& error) {
  JsonWriter record;
  record.Text("licenseKey", licenseKey).Text("status", status);
  if (!error.empty()) record.Text("error", error);
  PostIgnoringOutcome(baseUrl + "/api/bridge/command/" + cmdId + "/complete", record.Finish());
}

void EndCommand(const Account& account, const std::string& cmdId, const std::optional<std::string>& error) {
  SendComplete(account.baseUrl, account.licenseKey, cmdId, error ? "failed" : "completed", error.value_or(""));
}
