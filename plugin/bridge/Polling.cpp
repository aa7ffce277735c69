#include "bridge/Polling.h"

#include <cstdint>
#include <string>
#include <utility>

#include "bridge/Account.h"
#include "bridge/Background.h"
#include "core/Clock.h"
#include "core/Product.h"
#include "net/Json.h"
#include "net/Network.h"
#include "net/VersionCheck.h"

namespace {

constexpr std::int64_t kPollIntervalMs = 3000;
constexpr std::int64_t kVersionCheckIntervalMs = 86'400'000;

bool SaysNoCommand(const std::string& answer) {
  return answer.find("\"command\":null") != answer.npos || answer.find("\"command\": null") != answer.npos;
}

void Poll(const Account& account) {
  const std::string url =
      account.baseUrl + "/api/bridge/command/next?licenseKey=" + account.licenseKey + "&version=" + kPluginVersion;
  std::string answer, error;
  if (!Network::Get(url, answer, error) || SaysNoCommand(answer)) return;
  PendingCmd command{JsonGetString(answer, "id"), JsonGetString(answer, "type"), {}};
  if (command.id.empty() || command.type.empty()) return;
  command.json = std::move(answer);
  g_pendingCmd = std::move(command);
  g_hasPendingCmd.exchange(true);
}

}  // namespace

void PollWhenDue() {
  const std::int64_t now = SteadyMilliseconds();
  if (now - g_lastPollMs < kPollIntervalMs) return;
  g_lastPollMs = now;
  if (g_pollInFlight.exchange(true)) return;
  const auto flight = LoweredAtEnd(g_pollInFlight);
  // The last poll may have received a command after this idle call looked for one. It must be taken before the next
  // poll overwrites it.
  if (g_hasPendingCmd) return;
  bg([account = CurrentAccount(), flight] { Poll(account); });
}

std::optional<PendingCmd> TakeCommand() {
  if (!g_hasPendingCmd.exchange(false)) return std::nullopt;
  return std::exchange(g_pendingCmd, {});
}

void CheckVersionInBackground() {
  if (g_versionCheckInFlight.exchange(true)) return;
  const auto flight = LoweredAtEnd(g_versionCheckInFlight);
  g_lastVersionCheckMs = SteadyMilliseconds();
  bg([baseUrl = g_baseUrl, flight] { CheckVersion(baseUrl); });
}

void CheckVersionWhenDue() {
  if (SteadyMilliseconds() - g_lastVersionCheckMs >= kVersionCheckIntervalMs) CheckVersionInBackground();
}
