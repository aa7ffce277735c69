#include "Routes.h"

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

void Answer(httplib::Response& response, const Json& json, int status) {
  if (status != 200) response.status = status;  // else the library chooses, for it may be asked for a part
  // What is kept is UTF-8 when it comes in; only the echo of a wrong request may be cut or never have been.
  constexpr auto kReplace = Json::error_handler_t::replace;
  response.set_content(json.dump(-1, ' ', false, kReplace), "application/json");
}

}  // namespace service
