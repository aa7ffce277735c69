// The addresses that the service answers.
#pragma once

#include <chrono>
#include <functional>
#include <mutex>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <string>

#include "console/EventHub.h"
#include "console/Sessions.h"
#include "designs/DesignCache.h"
#include "http/Access.h"
#include "http/Agents.h"
#include "http/Limits.h"
#include "http/Router.h"
#include "store/Store.h"

namespace service {

using Json = nlohmann::ordered_json;

/// When a plug-in last asked for a command, and the version that it reported. Safe on any thread.
class LastPoll {
 public:
  void Note(const std::string& pluginVersion);

  /// {"secondsSincePoll":N,"pluginVersion":"V"}, both null when there was no poll since the service started.
  Json Describe() const;

  /// True when the last poll was at most `age` ago.
  bool IsRecent(std::chrono::milliseconds age) const;

 private:
  mutable std::mutex mutex_;
  std::optional<std::chrono::steady_clock::time_point> time_;
  std::string pluginVersion_;
};

/// What the handlers share; outlives the server.
struct Context {
  Store& store;
  Access access;
  BodyLimit limit;
  std::string latestVersion;  ///< plug-in version that the service reports as current
  std::function<void(const std::string& line)> log = {};
  Times times = {};
  LastPoll lastPoll = {};
  EventHub events = {};
  Sessions sessions{store};
  std::string url = {};  ///< of the service, "http://127.0.0.1:8765"; set by the server
  DesignCache designs = {};
  AgentMode agents = AgentMode::kFull;
  /// Waits for the index of designs, for the given time at most; false when it is not complete then. Safe on any
  /// thread.
  std::function<bool(std::chrono::milliseconds)> awaitIndex = [](std::chrono::milliseconds) { return true; };
  std::function<void()> storeChanged = [] {};  ///< a file was received or old data deleted; safe on any thread

  /// Logs what happened, on one line and without the key. Safe on any thread if `log` is.
  void Log(const std::string& event) const;
};

/// The plug-in's requests without a file.
std::span<const Route> ProtocolRoutes();

/// Requests that carry a file.
std::span<const Route> UploadRoutes();

/// Commands and records, for people, editors and the other subcommands.
std::span<const Route> OperatorRoutes();

/// The designs that were received.
std::span<const Route> DesignRoutes();

/// The clips.
std::span<const Route> ClipRoutes();

/// The console's page, and who may use it.
std::span<const Route> ConsoleRoutes();

/// How to connect FileMaker to the service.
std::span<const Route> SetupRoutes();

/// How much is stored, deletions, and backups.
std::span<const Route> StorageRoutes();

/// The version of this service.
std::string ServiceVersion();

/// `json` as compact UTF-8.
Response JsonAnswer(const Json& json, int status = 200);

}  // namespace service
