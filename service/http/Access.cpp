#include "http/Access.h"

#include <arpa/inet.h>
#include <strings.h>

#include <algorithm>

#include "http/HttpError.h"
#include "system/Cryptography.h"

namespace service {
namespace {

constexpr std::string_view kUnreserved = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";

constexpr char kNotForPages[] = "web pages may not use this service";

bool IsAddress(const std::string& host) {
  in6_addr address{};
  return inet_pton(AF_INET, host.c_str(), &address) == 1 || inet_pton(AF_INET6, host.c_str(), &address) == 1;
}

// A link, a bookmark or the address bar, as opposed to a frame, a script or an image.
bool FillsWindow(const Request& request) {
  return request.method == "GET" && request.Header("sec-fetch-mode") == "navigate" &&
         request.Header("sec-fetch-dest") == "document" && !request.headers.contains("origin");
}

}  // namespace

Sender Access::SenderOf(const Request& request) const {
  const std::string site = request.Header("sec-fetch-site"), host = request.Header("host");
  const bool hasOrigin = request.headers.contains("origin");
  if (!hasOrigin && (site.empty() || site == "none")) return Sender::kProgram;
  const bool isOwn = (site.empty() || site == "same-origin") &&
                     (!hasOrigin || request.Header("origin") == "http://" + host) && IsOwnHost(host);
  return isOwn ? Sender::kOwnPage : Sender::kOtherPage;
}

void Access::RefuseOtherPages(const Request& request) const {
  if (SenderOf(request) == Sender::kOtherPage && !FillsWindow(request)) throw HttpError(403, kNotForPages);
  if (!IsOwnHost(request.Header("host"))) {
    throw HttpError(403, "open the console at localhost, an IP address or the name that the service listens on");
  }
}

bool Access::IsOwnHost(const std::string& hostHeader) const {
  const std::string host = HostName(hostHeader);
  return IsLoopback(host) || IsAddress(host) || (!host.empty() && strcasecmp(host.c_str(), host_.c_str()) == 0);
}

void Access::RefuseWebPages(const Request& request) const {
  if (SenderOf(request) != Sender::kProgram) throw HttpError(403, kNotForPages);
  // A page may make its own name resolve to this machine. With a key, that is harmless.
  if (IsOpen() && !IsLoopback(HostName(request.Header("host")))) {
    throw HttpError(403, "the service can only be reached as 127.0.0.1, [::1] or localhost");
  }
}

bool Access::IsKey(std::string_view key) const { return IsOpen() || IsSameSecret(key, key_); }

void Access::CheckKey(std::string_view key) const {
  if (!IsKey(key)) throw HttpError(401, "the account key is wrong");
}

void Access::CheckAuthorization(const Request& request) const {
  constexpr std::string_view kScheme = "Bearer ";
  const std::string value = request.Header("authorization");
  CheckKey(value.starts_with(kScheme) ? std::string_view(value).substr(kScheme.size()) : std::string_view());
}

std::string Access::WithoutKey(std::string text) const {
  if (IsOpen()) return text;
  for (std::size_t at; (at = text.find(key_)) != std::string::npos;) text.replace(at, key_.size(), 1, '*');
  return text;
}

std::string Access::SignInLine(const std::string& url) const {
  return "Varnix.Register ( \"you@example.com\" ; \"" + (IsOpen() ? "local" : key_) + "\" ; Get ( PersistentID ) ; \"" +
         url + "\" )";
}

bool IsSendableKey(std::string_view key) {
  return !key.empty() && key.find_first_not_of(kUnreserved) == std::string_view::npos;
}

std::string HostName(const std::string& hostHeader) {
  if (hostHeader.rfind('[', 0) == 0) {
    const auto end = std::min(hostHeader.find(']'), hostHeader.size());
    const bool isWhole = end + 1 >= hostHeader.size() || hostHeader[end + 1] == ':';
    return isWhole ? hostHeader.substr(1, end - 1) : "";
  }
  return hostHeader.substr(0, hostHeader.find(':'));
}

std::string HostPort(const std::string& hostHeader) {
  const auto colon = hostHeader.find(':', hostHeader.rfind('[', 0) == 0 ? hostHeader.find(']') : 0);
  return colon == std::string::npos ? "80" : hostHeader.substr(colon + 1);
}

bool IsLoopback(const std::string& host) {
  in_addr v4{};
  in6_addr v6{};
  if (inet_pton(AF_INET, host.c_str(), &v4) == 1) return ntohl(v4.s_addr) >> 24 == 127;
  if (inet_pton(AF_INET6, host.c_str(), &v6) == 1) return IN6_IS_ADDR_LOOPBACK(&v6);
  return host == "localhost";
}

}  // namespace service
