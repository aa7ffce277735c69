#include "client/Client.h"

#include <new>

#include "http/Access.h"
#include "system/PrivateFile.h"

namespace service {
namespace {

constexpr long kConnectSeconds = 5;
constexpr long kSilentSeconds = 60;

std::string ServiceUrl(std::string url) {
  while (!url.empty() && url.back() == '/') url.pop_back();
  const bool hasPath = url.find('/', url.find("://") + 3) != std::string::npos;
  if ((!url.starts_with("http://") && !url.starts_with("https://")) || hasPath) {
    throw UsageError("the service's address has the form http://HOST:PORT, not " + url);
  }
  return url;
}

// The key in the data folder belongs to the service on this machine, so it is sent to no other.
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

std::size_t Append(char* bytes, std::size_t, std::size_t size, void* body) {
  static_cast<std::string*>(body)->append(bytes, size);
  return size;
}

// A refusal has its reason in a JSON object.
std::string Refusal(const std::string& body) {
  const auto json = nlohmann::json::parse(body, nullptr, false);
  return json.is_object() && json.contains("error") && json["error"].is_string() ? json["error"].get<std::string>()
                                                                                 : "";
}

}  // namespace

Client::Client(const Options& options)
    : url_(ServiceUrl(options.url)),
      transfer_(curl_easy_init(), curl_easy_cleanup),
      headers_(nullptr, curl_slist_free_all) {
  if (transfer_ == nullptr) throw std::bad_alloc();
  CURL* const transfer = transfer_.get();
  curl_easy_setopt(transfer, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(transfer, CURLOPT_PROXY, "");  // the service is on this machine or near it
  curl_easy_setopt(transfer, CURLOPT_CONNECTTIMEOUT, kConnectSeconds);
  curl_easy_setopt(transfer, CURLOPT_LOW_SPEED_LIMIT, 1L);
  curl_easy_setopt(transfer, CURLOPT_LOW_SPEED_TIME, kSilentSeconds);
  curl_easy_setopt(transfer, CURLOPT_WRITEFUNCTION, Append);
  AddHeader("Content-Type: application/json");
  AddHeader("Expect:");
  if (const std::string key = Key(options); !key.empty()) AddHeader("Authorization: Bearer " + key);
  if (!options.agent.empty()) AddHeader("Varnix-Agent: " + options.agent);
  curl_easy_setopt(transfer, CURLOPT_HTTPHEADER, headers_.get());
}

void Client::AddHeader(const std::string& line) {
  curl_slist* const longer = curl_slist_append(headers_.get(), line.c_str());
  if (longer == nullptr) throw std::bad_alloc();
  (void)headers_.release();  // now part of the longer list
  headers_.reset(longer);
}

nlohmann::json Client::Get(const std::string& path) { return Parse(GetBytes(path)); }

nlohmann::json Client::Post(const std::string& path, const nlohmann::json& message) {
  const std::string text = message.dump();
  return Parse(Exchange(path, &text));
}

std::string Client::GetBytes(const std::string& path) { return Exchange(path, nullptr); }

std::string Client::Exchange(const std::string& path, const std::string* message) {
  CURL* const transfer = transfer_.get();
  std::string body;
  curl_easy_setopt(transfer, CURLOPT_URL, (url_ + path).c_str());
  curl_easy_setopt(transfer, CURLOPT_WRITEDATA, &body);
  curl_easy_setopt(transfer, CURLOPT_HTTPGET, 1L);
  if (message != nullptr) {
    curl_easy_setopt(transfer, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(message->size()));
    curl_easy_setopt(transfer, CURLOPT_POSTFIELDS, message->data());
  }
  const CURLcode result = curl_easy_perform(transfer);
  if (result == CURLE_COULDNT_CONNECT || result == CURLE_COULDNT_RESOLVE_HOST) {
    throw Unreachable("no service at " + url_ + "; start it with \"varnix-service serve\"");
  }
  if (result != CURLE_OK) throw Unreachable("no answer from " + url_ + " (" + curl_easy_strerror(result) + ')');
  long status = 0;
  curl_easy_getinfo(transfer, CURLINFO_RESPONSE_CODE, &status);
  if (status < 400) return body;
  const std::string reason = Refusal(body);
  throw ServiceError(reason.empty() ? url_ + " answered HTTP " + std::to_string(status) : reason);
}

std::string CommandPath(const std::string& id) {
  if (id.empty() || id.find_first_not_of("0123456789abcdef") != std::string::npos) {
    throw UsageError(id + " is not the ID of a command");
  }
  return "/operator/commands/" + id;
}

}  // namespace service
