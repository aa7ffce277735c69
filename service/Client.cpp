#include "Client.h"

#include "Access.h"
#include "PrivateFile.h"

namespace service {
namespace {

constexpr std::time_t kConnectSeconds = 5;
constexpr std::time_t kReadSeconds = 60;

std::string ServiceUrl(std::string url) {
  while (!url.empty() && url.back() == '/') url.pop_back();
  const bool hasPath = url.find('/', url.find("://") + 3) != std::string::npos;
  if ((!url.starts_with("http://") && !url.starts_with("https://")) || hasPath) {
    throw UsageError("the service's address has the form http://HOST:PORT, not " + url);
  }
  return url;
}

// The key in the data folder is for the service on this machine only.
std::string Key(const Options& options) {
  if (!options.key.empty()) return options.key;
  const std::string host = options.url.substr(options.url.find("://") + 3);
  return IsLoopback(HostName(host.substr(0, host.find('/')))) ? ReadKey(options.Folder()).value_or("") : "";
}

nlohmann::json Parse(const std::string& text) {
  auto json = nlohmann::json::parse(text, nullptr, false);
  if (json.is_discarded()) throw ServiceError("the answer is not JSON; is it a Varnix service?");
  return json;
}

}  // namespace

Client::Client(const Options& options) : url_(ServiceUrl(options.url)), http_(url_) {
  http_.set_connection_timeout(kConnectSeconds);
  http_.set_read_timeout(kReadSeconds);
  const std::string key = Key(options);
  if (!key.empty()) http_.set_bearer_token_auth(key);
}

nlohmann::json Client::Get(const std::string& path) { return Parse(GetBytes(path)); }

nlohmann::json Client::Post(const std::string& path, const nlohmann::json& message) {
  return Parse(Body(http_.Post(path, message.dump(), "application/json")));
}

std::string Client::GetBytes(const std::string& path) { return Body(http_.Get(path)); }

std::string Client::Body(const httplib::Result& result) {
  if (!result && result.error() == httplib::Error::Connection) {
    throw Unreachable("no service at " + url_ + "; start it with \"varnix-service serve\"");
  }
  if (!result) throw Unreachable("no answer from " + url_ + " (" + httplib::to_string(result.error()) + ')');
  if (result->status < 400) return result->body;
  const auto json = nlohmann::json::parse(result->body, nullptr, false);
  if (json.is_object() && json.contains("error")) throw ServiceError(json["error"].get<std::string>());
  throw ServiceError(url_ + " answered HTTP " + std::to_string(result->status));
}

std::string CommandPath(const std::string& id) {
  if (id.empty() || id.find_first_not_of("0123456789abcdef") != std::string::npos) {
    throw UsageError(id + " is not the ID of a command");
  }
  return "/operator/commands/" + id;
}

}  // namespace service
