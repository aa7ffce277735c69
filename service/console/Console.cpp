#include "console/Console.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "http/Routes.h"

namespace service {
namespace {

std::string CookieName(const Request& request) { return "varnix-console-" + HostPort(request.Header("host")); }

// A page on another port can also set a cookie with this name, so there may be several.
std::vector<std::string_view> Secrets(const std::string& cookies, const std::string& name) {
  std::vector<std::string_view> secrets;
  for (std::string_view rest = cookies; !rest.empty();) {
    const auto end = rest.find(';');
    std::string_view cookie = rest.substr(0, end);
    rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    cookie.remove_prefix(std::min(cookie.find_first_not_of(' '), cookie.size()));
    if (cookie.starts_with(name + '=')) secrets.push_back(cookie.substr(name.size() + 1));
  }
  return secrets;
}

}  // namespace

std::string UrlFor(const Context& context, const Request& request) {
  const std::string host = request.Header("host");
  return context.access.IsOwnHost(host) ? "http://" + host : context.url;
}

std::string ConsoleAddress(const std::string& url, const std::string& token) {
  std::string origin = url;
  for (const auto& [everywhere, here] : {std::pair("//0.0.0.0:", "//127.0.0.1:"), {"//[::]:", "//[::1]:"}}) {
    if (const auto at = origin.find(everywhere); at != std::string::npos) {
      origin.replace(at, std::string_view(everywhere).size(), here);
    }
  }
  return origin + "/#token=" + token;
}

std::string SessionCookie(const Request& request, const std::string& secret) {
  return CookieName(request) + '=' + secret +
         "; HttpOnly; SameSite=Strict; Path=/; Max-Age=" + std::to_string(Sessions::kLength.count());
}

bool HasSessionCookie(const Request& request) {
  return !Secrets(request.Header("cookie"), CookieName(request)).empty();
}

bool HasSession(const Sessions& sessions, const Request& request) {
  const std::string cookies = request.Header("cookie");
  for (const std::string_view secret : Secrets(cookies, CookieName(request))) {
    if (sessions.Has(secret)) return true;
  }
  return false;
}

}  // namespace service
