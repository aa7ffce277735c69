#include "http/Router.h"

#include <optional>

#include "console/Console.h"
#include "http/HttpError.h"
#include "http/Routes.h"

namespace service {
namespace {

// The segments of `path` that "*" matches; nothing when `path` does not match.
std::optional<std::vector<std::string>> Match(std::string_view pattern, std::string_view path) {
  std::vector<std::string> captures;
  for (;;) {
    const auto star = pattern.find('*');
    if (star == std::string_view::npos) {
      if (pattern != path) return std::nullopt;
      return captures;
    }
    if (path.substr(0, star) != pattern.substr(0, star)) return std::nullopt;
    pattern.remove_prefix(star + 1);
    path.remove_prefix(star);
    const std::string_view open = pattern.empty() ? path : path.substr(0, path.find('/'));
    captures.push_back(PercentDecoded(open));
    path.remove_prefix(open.size());
  }
}

// The console's page has a session instead of the key. An old browser sends no Origin with a GET request; but from a
// page of another site it sends no cookie either.
void CheckOperator(const Context& context, const Request& request) {
  const bool isOldBrowser = request.method == "GET" && request.Header("sec-fetch-site").empty() &&
                            !request.headers.contains("origin") && HasSessionCookie(request);
  const bool isOwnPage = context.access.SenderOf(request) == Sender::kOwnPage || isOldBrowser;
  if (!isOwnPage || request.headers.contains("authorization")) {
    context.access.RefuseWebPages(request);
    return context.access.CheckAuthorization(request);
  }
  context.access.RefuseOtherPages(request);
  if (!HasSession(context.sessions, request)) {
    throw HttpError(401, "the console is not open in this browser; \"varnix-service console\" prints its address");
  }
}

void CheckAccess(const Context& context, const Request& request, KeyPlace place) {
  if (place == KeyPlace::kHeader) return CheckOperator(context, request);
  if (place == KeyPlace::kConsole) return context.access.RefuseOtherPages(request);
  context.access.RefuseWebPages(request);
  switch (place) {
    case KeyPlace::kPath:
      return context.access.CheckKey(request.captures.back());
    case KeyPlace::kQuery:
      return context.access.CheckKey(request.Parameter("licenseKey"));
    default:
      return;
  }
}

void CheckBody(const Route& route, const Request& request) {
  if (request.method != "POST") return;
  if (request.Header("content-length").empty() && request.Header("transfer-encoding").empty()) {
    throw HttpError(411, "Content-Length is missing");
  }
  const bool isForm = MediaType(request.Header("content-type")) == "multipart/form-data";
  if (isForm != route.takesForm) {
    throw HttpError(415, isForm ? "a form is not accepted" : "a multipart form is expected");
  }
}

// What precedes and follows the key in the plug-in's JSON messages and in its form.
struct KeyMark {
  std::string_view before;
  std::string_view after;
};

constexpr KeyMark kKeyMarks[] = {{"\"licenseKey\":\"", "\""}, {"name=\"licenseKey\"\r\n\r\n", "\r\n"}};

}  // namespace

const Route& FindRoute(Request& request) {
  const char* allowed = nullptr;
  for (const auto& routes : {ProtocolRoutes(), UploadRoutes(), OperatorRoutes(), DesignRoutes(), ClipRoutes(),
                             ConsoleRoutes(), SetupRoutes(), StorageRoutes()}) {
    for (const auto& route : routes) {
      auto captures = Match(route.pattern, request.path);
      if (!captures) continue;
      if (request.method == route.method) {
        request.captures = *std::move(captures);
        return route;
      }
      allowed = route.method;
    }
  }
  if (allowed != nullptr) throw HttpError(405, "method not allowed");
  throw HttpError(404, "not found");
}

const Route& Admit(Context& context, Request& request) {
  const Route& route = FindRoute(request);
  CheckAccess(context, request, route.key);
  CheckAgent(context.agents, request, route);
  CheckBody(route, request);
  return route;
}

bool ShowsKey(const Context& context, std::string_view body) {
  if (context.access.IsOpen()) return true;
  for (const auto& mark : kKeyMarks) {
    const auto begin = body.find(mark.before);
    if (begin == std::string_view::npos) continue;
    const std::string_view key = body.substr(begin + mark.before.size());
    return context.access.IsKey(key.substr(0, key.find(mark.after)));
  }
  return false;
}

}  // namespace service
