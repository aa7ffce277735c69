#include "bridge/SignIn.h"

#include <string>
#include <utility>

#include "bridge/Account.h"
#include "bridge/CurrentContext.h"
#include "bridge/Polling.h"
#include "core/HostText.h"
#include "core/Prefs.h"
#include "core/Product.h"
#include "core/State.h"
#include "net/JsonWriter.h"
#include "net/Network.h"

namespace {

std::string OrDefault(std::string baseUrl) { return baseUrl.empty() ? kDefaultBaseUrl : std::move(baseUrl); }

// Takes a copy, so that nothing can fail between setting the key and the URL: a key is sent only to its own service.
void Use(Account account) {
  g_licenseKey.swap(account.licenseKey);
  g_baseUrl.swap(account.baseUrl);
  g_registered = true;
}

// At no point is a key stored with the URL of another service: FileMaker may be killed between two writes.
void Store(const Account& account) {
  if (OrDefault(Prefs::LoadBaseUrl()) != account.baseUrl) Prefs::SaveLicenseKey("");
  Prefs::SaveBaseUrl(account.baseUrl);
  Prefs::SaveLicenseKey(account.licenseKey);
}

void SignIn(const Account& account, const fmx::ExprEnv& env) {
  Use(account);
  Store(account);
  const std::string fileName = EvalCalc(&env, "Get(FileName)");
  // During the evaluation there may have been another sign-in, from another file.
  if (!fileName.empty() && CurrentAccount() == account) g_registeredFileName = fileName;
  CheckVersionInBackground();
}

std::string Register(const Account& account, const std::string& email, const std::string& machineId,
                     const fmx::ExprEnv& env) {
  std::string response;
  std::string error = EmptyArgumentError(
      {{"email", email}, {"licenseKey", account.licenseKey}, {"machineId", machineId}, {"baseUrl", account.baseUrl}});
  if (!error.empty()) return error;
  JsonWriter record;
  record.Text("email", email).Text("licenseKey", account.licenseKey).Text("machineId", machineId);
  record.Text("pluginVersion", kPluginVersion);
  if (!Network::Post(account.baseUrl + "/api/bridge/register", record.Finish(), response, error,
                     Network::kShortAnswer)) {
    return error;
  }
  SignIn(account, env);
  return "OK";
}

}  // namespace

fmx::errcode Do_Register(short, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result) {
  const std::string email = GetTextArg(args, 0);
  const std::string licenseKey = GetTextArg(args, 1);
  const std::string machineId = GetTextArg(args, 2);
  const Account account{OrDefault(GetTextArg(args, 3)), licenseKey};
  SetTextResult(Register(account, email, machineId, env), result);
  return 0;
}

void RestoreSignIn() {
  const std::string licenseKey = Prefs::LoadLicenseKey();
  const std::string baseUrl = Prefs::LoadBaseUrl();
  if (!licenseKey.empty()) Use({OrDefault(baseUrl), licenseKey});
}

void SignOut() { g_registered = false; }

void LearnRegisteredFile(const FMX_ExternCallStruct& call) {
  if (!g_registeredFileName.empty()) return;
  std::string fileName = CurrentFileName(call);
  // Another idle call or a sign-in may have set the name during the evaluation.
  if (g_registeredFileName.empty()) g_registeredFileName = std::move(fileName);
}
