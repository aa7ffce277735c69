#include "Access.h"

#include <arpa/inet.h>

#include "Cryptography.h"
#include "HttpError.h"

namespace service {
namespace {

constexpr std::string_view kUnreserved = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";

}  // namespace

void Access::RefuseWebPages(const Request& request) const {
  const std::string site = request.Header("sec-fetch-site");
  if (request.headers.contains("origin") || (!site.empty() && site != "none")) {
    throw HttpError(403, "web pages may not use this service");
  }
  // A page may also have its own name resolved to this machine. With a key that gains it nothing.
  if (IsOpen() && !IsLoopback(HostName(request.Header("host")))) {
    throw HttpError(403, "the service is known as 127.0.0.1, [::1] or localhost only");
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

bool IsSendableKey(std::string_view key) {
  return !key.empty() && key.find_first_not_of(kUnreserved) == std::string_view::npos;
}

std::string HostName(const std::string& hostHeader) {
  if (hostHeader.rfind('[', 0) == 0) return hostHeader.substr(1, hostHeader.find(']') - 1);
  return hostHeader.substr(0, hostHeader.find(':'));
}

bool IsLoopback(const std::string& host) {
  in_addr v4{};
  in6_addr v6{};
  if (inet_pton(AF_INET, host.c_str(), &v4) == 1) return ntohl(v4.s_addr) >> 24 == 127;
  if (inet_pton(AF_INET6, host.c_str(), &v6) == 1) return IN6_IS_ADDR_LOOPBACK(&v6);
  return host == "localhost";
}

}  // namespace service
