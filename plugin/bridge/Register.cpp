#include "bridge/Register.h"

#include <string>

#include "bridge/Account.h"
#include "bridge/BridgeState.h"
#include "core/HostText.h"
#include "core/Prefs.h"
#include "core/Product.h"
#include "net/JsonWriter.h"
#include "net/Network.h"
#include "net/VersionCheck.h"

namespace {

// Takes copies, so that nothing can fail between key and service: a key goes to no service but its own.
void SignIn(Account account, const fmx::ExprEnv& env) {
  const Account signedIn = account;
  g_licenseKey.swap(account.licenseKey);
  g_baseUrl.swap(account.baseUrl);
  g_registered = true;
  Prefs::SaveLicenseKey(g_licenseKey);
  Prefs::SaveBaseUrl(g_baseUrl);
  const std::string fileName = EvalCalc(const_cast<fmx::ExprEnv*>(&env), "Get(FileName)");
  // The evaluation may have let in a later sign-in, with a file of its own.
  if (!fileName.empty() && CurrentAccount() == signedIn) g_registeredFileName = fileName;
  CheckVersionInBackground();
}

}  // namespace

fmx::errcode Do_Register(short, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result) {
  const std::string email = GetTextArg(args, 0);
  const std::string licenseKey = GetTextArg(args, 1);
  const std::string machineId = GetTextArg(args, 2);
  std::string baseUrl = GetTextArg(args, 3);
  if (baseUrl.empty()) baseUrl = kDefaultBaseUrl;

  std::string error = EmptyArgumentError(
      {{"email", email}, {"licenseKey", licenseKey}, {"machineId", machineId}, {"baseUrl", baseUrl}});
  if (error.empty()) {
    JsonWriter record;
    record.Text("email", email).Text("licenseKey", licenseKey).Text("machineId", machineId);
    record.Text("pluginVersion", kPluginVersion);
    std::string response;
    if (Network::Post(baseUrl + "/api/bridge/register", record.Finish(), response, error, Network::kShortAnswer)) {
      SignIn({baseUrl, licenseKey}, env);
      error = "OK";
    }
  }
  SetTextResult(error, result);
  return 0;
}
