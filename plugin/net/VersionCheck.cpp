#include "net/VersionCheck.h"

#include <mutex>
#include <optional>
#include <string>

#include "core/HostText.h"
#include "core/Product.h"
#include "core/State.h"
#include "net/Network.h"
#include "net/Version.h"

namespace {

std::mutex g_latestVersionMutex;

std::string LatestVersion() {
  const std::lock_guard lock(g_latestVersionMutex);
  return g_latestVersion;
}

std::optional<std::string> VersionIn(const std::string& answer) {
  constexpr std::string_view kMember = "\"version\":\"";
  std::size_t start = answer.find(kMember);
  if (start == answer.npos) return std::nullopt;
  start += kMember.size();
  const std::size_t end = answer.find('"', start);
  if (end == answer.npos) return std::nullopt;
  return answer.substr(start, end - start);
}

}  // namespace

void CheckVersion(const std::string& baseUrl) {
  std::string answer, error;
  if (!Network::Get(baseUrl + "/api/plugin/version", answer, error, Network::kShortAnswer)) return;
  const std::optional<std::string> version = VersionIn(answer);
  if (!version) return;
  const std::lock_guard lock(g_latestVersionMutex);
  g_latestVersion = *version;
}

fmx::errcode Do_UpdateAvailable(short, const fmx::ExprEnv&, const fmx::DataVect&, fmx::Data& result) {
  const std::string latest = LatestVersion();
  const bool isNewer = !latest.empty() && ParseVersion(latest) > ParseVersion(kPluginVersion);
  SetTextResult(isNewer ? "Varnix plugin v" + latest + " is available — download at " VARNIX_GUIDE_ADDRESS : "",
                result);
  return 0;
}
