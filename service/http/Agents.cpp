#include "http/Agents.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string_view>

#include "http/HttpError.h"
#include "system/PrivateFile.h"

namespace service {
namespace {

constexpr std::size_t kLongestName = 100;

struct NamedMode {
  const char* name;
  AgentMode mode;
};

constexpr NamedMode kModes[] = {
    {"full", AgentMode::kFull}, {"read-only", AgentMode::kReadOnly}, {"off", AgentMode::kOff}};

constexpr std::array<std::string_view, 3> kPermitted = {"/operator/commands", "/operator/commands/*/repeat",
                                                        "/operator/commands/*/cancel"};

std::string PathIn(const std::string& folder) { return (std::filesystem::path(folder) / "agents").string(); }

}  // namespace

AgentMode AgentModeNamed(const std::string& name) {
  for (const auto& named : kModes) {
    if (name == named.name) return named.mode;
  }
  throw std::runtime_error("assistants are given the mode full, read-only or off, not " + name);
}

void KeepAgentMode(const std::string& folder, AgentMode mode) {
  const auto* named =
      std::find_if(std::begin(kModes), std::end(kModes), [mode](auto& row) { return row.mode == mode; });
  ReplaceFile(PathIn(folder), std::string(named->name) + '\n');
}

AgentMode KeptAgentMode(const std::string& folder) {
  std::string name;
  std::ifstream file(PathIn(folder));
  if (!file.is_open()) return AgentMode::kFull;
  std::getline(file, name);
  return AgentModeNamed(name);
}

std::string AgentName(std::string name) {
  name.resize(std::min(name.size(), kLongestName));
  std::replace_if(
      name.begin(), name.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
  return name;
}

std::string AgentOf(const Request& request) { return AgentName(request.Header("varnix-agent")); }

void CheckAgent(AgentMode mode, const Request& request, const Route& route) {
  if (AgentOf(request).empty()) return;
  if (mode == AgentMode::kOff) throw HttpError(403, kAgentsAreOff);
  if (route.method != std::string_view("GET") &&
      std::find(kPermitted.begin(), kPermitted.end(), route.pattern) == kPermitted.end()) {
    throw HttpError(403, "an AI assistant may not do that");
  }
}

void CheckAgentWrites(AgentMode mode, const Request& request) {
  if (mode == AgentMode::kFull || AgentOf(request).empty()) return;
  throw HttpError(403, "AI assistants may not write to the clipboard: the service was started with --agents read-only");
}

}  // namespace service
