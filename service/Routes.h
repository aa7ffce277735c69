// The addresses that the service answers.
#pragma once

#include <httplib.h>

#include <chrono>
#include <mutex>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "Access.h"
#include "Body.h"
#include "Store.h"

namespace service {

using Json = nlohmann::ordered_json;

/// When a plug-in last asked for a command, and which version it said it was.
class LastPoll {
 public:
  void Note(const std::string& pluginVersion);

  /// {"secondsSincePoll":N,"pluginVersion":"V"}, both null when there was no poll since the service started.
  Json Describe() const;

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
  std::string latestVersion;  ///< plug-in version that the service says is current
  LastPoll lastPoll;
};

/// What the plug-in talks to.
void AddProtocolRoutes(httplib::Server& server, Context& context);

/// Messages of the plug-in that carry a file.
void AddUploadRoutes(httplib::Server& server, Context& context);

/// What people, editors and the other subcommands talk to.
void AddOperatorRoutes(httplib::Server& server, Context& context);

/// Answers `json` as compact UTF-8.
void Answer(httplib::Response& response, const Json& json, int status = 200);

}  // namespace service
