#include "bridge/SchemaRequest.h"

#include <cstdint>
#include <string_view>
#include <utility>

#include "bridge/Account.h"
#include "bridge/Background.h"
#include "bridge/CurrentContext.h"
#include "bridge/Notify.h"
#include "bridge/ServiceMessages.h"
#include "core/Ascii.h"
#include "core/Clock.h"
#include "core/State.h"

namespace {

constexpr char kScriptName[] = "Varnix Live Push";
constexpr std::int64_t kWaitLimitMs = 30'000;
constexpr fmx::errcode kNoPrivilege = 825;
constexpr fmx::errcode kNoSuchScript = 1825;

SchemaClaim TakeRequest() {
  return {std::exchange(g_pendingGetSchemaCmdId, {}), std::exchange(g_pendingTargetFileName, {})};
}

void PostProgress(const Account& account, const char* code, const std::string& message) {
  bg([account, code, message] { PostDiagnostic(account, code, "received", message); });
}

void Fail(const Account& account, const std::string& commandId, const char* code, const std::string& message) {
  Notify("Varnix — Schema Sync Failed", WithoutKey(message, account.licenseKey));
  bg([account, commandId, code, message] {
    PostDiagnostic(account, code, "error", message);
    EndCommand(account, commandId, message);
  });
}

std::string StartFailure(fmx::errcode error, const std::string& target) {
  switch (error) {
    case kNoPrivilege:
      return "FileMaker blocked Varnix from starting \"Varnix Live Push\" in \"" + target +
             "\" (FM error 825). In Manage Security > Advanced Settings > Extended Privileges, enable fmplugin for "
             "this account's privilege set, or add fmpluginVrnx for the Varnix plug-in.";
    case kNoSuchScript:
      return "\"Varnix Live Push\" script not found in \"" + target + "\". Add the script to this file and try again.";
    default:
      return "Could not start \"Varnix Live Push\" in \"" + target + "\" (FM error " + std::to_string(error) +
             "). Make sure the file is open.";
  }
}

// In FileMaker's current file; if that fails, in `fileName`.
fmx::errcode StartScript(const FMX_ExternCallStruct& call, const std::string& fileName) {
  const fmx::TextUniquePtr script, file;
  script->Assign(kScriptName, fmx::Text::kEncoding_UTF8);
  if (call.cStartScript(nullptr, script.get(), kFMXT_Resume, nullptr) == 0) return 0;
  file->Assign(fileName.c_str(), fmx::Text::kEncoding_UTF8);
  return call.cStartScript(file.get(), script.get(), kFMXT_Resume, nullptr);
}

void StartLivePush(const Account& account, const FMX_ExternCallStruct& call, const std::string& currentFile) {
  const std::string commandId = g_pendingGetSchemaCmdId;
  const std::string target = g_pendingTargetFileName;
  g_pendingSchemaReady = false;
  PostProgress(account, "LC_SCRIPT_TRIGGER", "Triggering \"Varnix Live Push\" in \"" + target + "\"...");
  const fmx::errcode error = StartScript(call, currentFile);
  if (error == 0) {
    PostProgress(account, "LC_SCRIPT_TRIGGERED",
                 "Script queued — waiting for FileMaker to run \"Varnix Live Push\"...");
    return;
  }
  if (g_pendingGetSchemaCmdId == commandId) TakeRequest();  // otherwise another request arrived during the start
  Fail(account, commandId, "LC_SCRIPT_ERROR", StartFailure(error, target));
}

void GiveUp(const Account& account) {
  g_pendingSchemaReady = false;
  // Empty when the user has started the script and its live push has completed the command.
  if (g_pendingGetSchemaCmdId.empty()) return;
  const auto [commandId, target] = TakeRequest();
  Fail(account, commandId, "LC_TIMEOUT",
       "\"" + target +
           "\" was not the active FileMaker file within 30 seconds. Make sure the file is open and try again.");
}

// Only a lower-case extension is one; the names are then compared in any case.
std::string_view WithoutExtension(std::string_view name) {
  constexpr std::string_view kExtension = ".fmp12";
  if (name.size() > kExtension.size() && name.ends_with(kExtension)) name.remove_suffix(kExtension.size());
  return name;
}

}  // namespace

void ArmSchemaRequest(const Account& account, const std::string& commandId, const std::string& target) {
  g_pendingGetSchemaCmdId = commandId;
  g_pendingTargetFileName = target;
  g_pendingSchemaQueuedMs = SteadyMilliseconds();
  g_pendingSchemaReady = true;
  PostProgress(account, "LC_SCHEMA_QUEUED", "Queued — waiting for \"" + target + "\" to be active in FileMaker...");
}

bool WatchSchemaRequest(const FMX_ExternCallStruct& call) {
  if (!g_pendingSchemaReady) return false;
  // Copied now: during the evaluation another idle call may reuse the same call record, or a sign-in may happen.
  const auto level = call.parm1;
  const Account account = CurrentAccount();
  const std::string currentFile = CurrentFileName(call);
  if (!g_pendingSchemaReady) return true;  // the other idle call has ended the wait
  const bool isActive = !currentFile.empty() && EqualIgnoringAsciiCase(currentFile, g_pendingTargetFileName);
  if (isActive && level < kFMXT_ScriptPaused) {
    StartLivePush(account, call, currentFile);
    return true;
  }
  if (SteadyMilliseconds() - g_pendingSchemaQueuedMs <= kWaitLimitMs) return false;
  GiveUp(account);
  return true;
}

std::optional<SchemaClaim> ClaimSchemaRequest(const std::string& fileName) {
  const std::string& target = g_pendingTargetFileName;
  if (!target.empty() && !EqualIgnoringAsciiCase(WithoutExtension(target), WithoutExtension(fileName))) return {};
  return TakeRequest();
}
