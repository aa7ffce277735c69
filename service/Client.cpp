#include "Client.h"

namespace service {
namespace {

constexpr char kDefaultUrl[] = "http://127.0.0.1:8765";
constexpr std::time_t kConnectSeconds = 5;
constexpr std::time_t kReadSeconds = 60;

std::string ServiceUrl(const CommandLine& line) {
  std::string url = line.Option("--service", "VARNIX_SERVICE").value_or(kDefaultUrl);
  while (!url.empty() && url.back() == '/') url.pop_back();
  const bool hasPath = url.find('/', url.find("://") + 3) != std::string::npos;
  if ((url.rfind("http://", 0) != 0 && url.rfind("https://", 0) != 0) || hasPath) {
    throw UsageError("the service's address has the form http://HOST:PORT, not " + url);
  }
  return url;
}

nlohmann::json Parse(const std::string& text) {
  auto json = nlohmann::json::parse(text, nullptr, false);
  if (json.is_discarded()) throw ServiceError("the answer is not JSON; is it a Varnix service?");
  return json;
}

}  // namespace

Client::Client(const CommandLine& line) : url_(ServiceUrl(line)), http_(url_) {
  http_.set_connection_timeout(kConnectSeconds);
  http_.set_read_timeout(kReadSeconds);
  if (const auto key = line.Option("--key", "VARNIX_KEY")) http_.set_bearer_token_auth(*key);
}

nlohmann::json Client::Get(const std::string& path) { return Parse(GetBytes(path)); }

nlohmann::json Client::Post(const std::string& path, const nlohmann::json& message) {
  return Parse(Body(http_.Post(path, message.dump(), "application/json")));
}

std::string Client::GetBytes(const std::string& path) { return Body(http_.Get(path)); }

std::string Client::Body(const httplib::Result& result) {
  if (!result) throw Unreachable("no answer from " + url_ + " (" + httplib::to_string(result.error()) + ')');
  if (result->status < 400) return result->body;
  const auto json = nlohmann::json::parse(result->body, nullptr, false);
  if (json.is_object() && json.contains("error")) throw ServiceError(json["error"].get<std::string>());
  throw ServiceError("it answered HTTP " + std::to_string(result->status));
}

std::string CommandPath(const std::string& id) {
  if (id.empty() || id.find_first_not_of("0123456789abcdef") != std::string::npos) {
    throw UsageError(id + " is not a command's ID");
  }
  return "/operator/commands/" + id;
}

}  // namespace service
