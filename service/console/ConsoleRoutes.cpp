// The console's page, and the exchange of a token for a session.
#include <algorithm>

#include "console/Console.h"
#include "console/EmbeddedFiles.h"
#include "http/HttpError.h"
#include "http/Message.h"
#include "http/Routes.h"

namespace service {
namespace {

constexpr std::chrono::hours kTokenTime{1};

// Only the page's own files may run or be shown in it, and no other page may show it in a frame.
const std::pair<const char*, const char*> kPageHeaders[] = {
    {"Content-Security-Policy", "default-src 'self'; frame-ancestors 'none'; base-uri 'none'; form-action 'self'"},
    {"X-Frame-Options", "DENY"},
    {"Referrer-Policy", "no-referrer"},
    {"Cross-Origin-Opener-Policy", "same-origin"},
    {"Cross-Origin-Resource-Policy", "same-origin"},
    {"Cache-Control", "no-store"},
};

constexpr std::pair<std::string_view, const char*> kContentTypes[] = {
    {".html", "text/html; charset=utf-8"},
    {".js", "text/javascript; charset=utf-8"},
    {".css", "text/css; charset=utf-8"},
    {".svg", "image/svg+xml"},
};

Response AnswerFile(std::string_view name) {
  const auto files = WebFiles();
  const auto file = std::find_if(files.begin(), files.end(), [&](const EmbeddedFile& f) { return f.name == name; });
  if (file == files.end()) throw HttpError(404, "not found");
  Response response{200, std::string(file->bytes), "application/octet-stream"};
  for (const auto& [ending, type] : kContentTypes) {
    if (name.ends_with(ending)) response.contentType = type;
  }
  for (const auto& [header, value] : kPageHeaders) response.headers.emplace_back(header, value);
  return response;
}

Response ShowPage(Context&, const Request&) { return AnswerFile("index.html"); }

Response ShowFile(Context&, const Request& request) { return AnswerFile(request.captures[0]); }

Response OpenSession(Context& context, const Request& request) {
  const auto secret = context.sessions.Open(ReadMessage(request.body, {{"token"}}).at("token"));
  if (!secret) {
    throw HttpError(401, "this address was used already or is too old; \"varnix-service console\" prints a new one");
  }
  context.Log("console opened in a browser");
  Response response = JsonAnswer({{"ok", true}});
  response.headers.emplace_back("Set-Cookie", SessionCookie(request, *secret));
  response.headers.emplace_back("Cache-Control", "no-store");
  return response;
}

// Only for programs with the key: a page that could make tokens could pass on its session.
Response MakeAddress(Context& context, const Request& request) {
  context.access.RefuseWebPages(request);
  ReadMessage(request.body, {});
  return JsonAnswer({{"url", ConsoleAddress(UrlFor(context, request), context.sessions.NewToken(kTokenTime))}});
}

Response StreamEvents(Context& context, const Request&) {
  if (!context.events.HasRoom()) throw HttpError(503, "too many pages show the console at the same time");
  Response response;
  response.streamsEvents = true;
  return response;
}

constexpr Route kConsoleRoutes[] = {
    {"GET", "/", KeyPlace::kConsole, false, false, ShowPage},
    {"GET", "/console/*", KeyPlace::kConsole, false, false, ShowFile},
    {"POST", "/console/session", KeyPlace::kConsole, false, false, OpenSession},
    {"GET", "/operator/events", KeyPlace::kHeader, false, false, StreamEvents},
    {"POST", "/operator/console", KeyPlace::kHeader, false, false, MakeAddress},
};

}  // namespace

std::span<const Route> ConsoleRoutes() { return kConsoleRoutes; }

}  // namespace service
