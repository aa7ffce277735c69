#include "Access.h"

#include <arpa/inet.h>

#include <algorithm>

#include "HttpError.h"

namespace service {
namespace {

constexpr std::string_view kUnreserved = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";

bool SameBytes(std::string_view expected, std::string_view given) {
  std::size_t difference = expected.size() ^ given.size();
  for (std::size_t i = 0; i < given.size(); ++i) {
    difference |= static_cast<unsigned char>(given[i] ^ expected[i % expected.size()]);
  }
  return difference == 0;
}

// "[::1]:8765", "localhost:8765" and "localhost" without what surrounds the name.
std::string HostName(const std::string& hostHeader) {
  if (hostHeader.rfind('[', 0) == 0) return hostHeader.substr(1, hostHeader.find(']') - 1);
  return hostHeader.substr(0, hostHeader.find(':'));
}

}  // namespace

void Access::RefuseWebPages(const httplib::Request& request) const {
  if (request.has_header("Origin")) throw HttpError(403, "web pages may not use this service");
  const std::string site = request.get_header_value("Sec-Fetch-Site");
  if (!site.empty() && site != "none") throw HttpError(403, "web pages may not use this service");
  // A page may also have its own name resolved to this machine. With a key that gains it nothing.
  if (key_.empty() && !IsLoopback(HostName(request.get_header_value("Host")))) {
    throw HttpError(403, "the service is known as 127.0.0.1, [::1] or localhost only");
  }
}

void Access::CheckKey(std::string_view key) const {
  if (!key_.empty() && !SameBytes(key_, key)) throw HttpError(401, "the account key is wrong");
}

void Access::CheckAuthorization(const httplib::Request& request) const {
  constexpr std::string_view kScheme = "Bearer ";
  const std::string value = request.get_header_value("Authorization");
  CheckKey(value.rfind(kScheme, 0) == 0 ? std::string_view(value).substr(kScheme.size()) : std::string_view());
}

bool IsSendableKey(std::string_view key) {
  return !key.empty() && key.find_first_not_of(kUnreserved) == std::string_view::npos;
}

bool IsLoopback(const std::string& host) {
  in_addr v4{};
  in6_addr v6{};
  if (inet_pton(AF_INET, host.c_str(), &v4) == 1) return ntohl(v4.s_addr) >> 24 == 127;
  if (inet_pton(AF_INET6, host.c_str(), &v6) == 1) return IN6_IS_ADDR_LOOPBACK(&v6);
  return host == "localhost";
}

}  // namespace service
