#include "http/Routes.h"

#include "system/Terminal.h"

namespace service {

void LastPoll::Note(const std::string& pluginVersion) {
  const std::lock_guard lock(mutex_);
  time_ = std::chrono::steady_clock::now();
  pluginVersion_ = pluginVersion;
}

Json LastPoll::Describe() const {
  const std::lock_guard lock(mutex_);
  if (!time_) return {{"secondsSincePoll", nullptr}, {"pluginVersion", nullptr}};
  const auto elapsed = std::chrono::steady_clock::now() - *time_;
  return {{"secondsSincePoll", std::chrono::duration_cast<std::chrono::seconds>(elapsed).count()},
          {"pluginVersion", pluginVersion_}};
}

bool LastPoll::IsRecent(std::chrono::milliseconds age) const {
  const std::lock_guard lock(mutex_);
  return time_ && std::chrono::steady_clock::now() - *time_ <= age;
}

void Context::Log(const std::string& event) const {
  if (log) log(LineForTerminal(access.WithoutKey(event)));
}

std::string ServiceVersion() { return VARNIX_VERSION; }

Response JsonAnswer(const Json& json, int status) {
  // Stored text is UTF-8. Only the echo of a wrong request may be cut within a character or not be UTF-8.
  return {status, json.dump(-1, ' ', false, Json::error_handler_t::replace)};
}

}  // namespace service
