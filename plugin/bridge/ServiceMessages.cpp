#include "bridge/ServiceMessages.h"

#include "net/JsonRecord.h"
#include "net/Network.h"

namespace {

void PostIgnoringOutcome(const std::string& url, const std::string& body) {
  std::string response, error;
  Network::Post(url, body, response, error);
}

std::string ToJson(const Account& account, const PushRecord& record) {
  if (!record.label) {
    return JsonRecord(
        {{"licenseKey", account.licenseKey}, {"xmlType", record.xmlType}, {"xmlContent", record.xmlContent}});
  }
  return JsonRecord({{"licenseKey", account.licenseKey},
                     {"xmlType", record.xmlType},
                     {"xmlContent", record.xmlContent},
                     {"label", *record.label}});
}

}  // namespace

bool PostPushRecord(const Account& account, const PushRecord& record, std::string& error) {
  std::string response;
  return Network::Post(account.baseUrl + "/api/bridge/push", ToJson(account, record), response, error);
}

void PostDiagnostic(const Account& account, const std::string& code, const std::string& status,
                    const std::string& message) {
  PostIgnoringOutcome(
      account.baseUrl + "/api/bridge/diagnostic",
      JsonRecord({{"licenseKey", account.licenseKey}, {"code", code}, {"status", status}, {"message", message}}));
}

void SendComplete(const std::string& baseUrl, const std::string& licenseKey, const std::string& cmdId,
                  const std::string& status, const std::string& error) {
  PostIgnoringOutcome(baseUrl + "/api/bridge/command/" + cmdId + "/complete",
                      error.empty() ? JsonRecord({{"licenseKey", licenseKey}, {"status", status}})
                                    : JsonRecord({{"licenseKey", licenseKey}, {"status", status}, {"error", error}}));
}
