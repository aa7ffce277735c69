// What a person needs in order to connect FileMaker to the service.
#include <algorithm>

#include "console/Console.h"
#include "console/EmbeddedFiles.h"
#include "http/HttpError.h"
#include "http/Routes.h"

namespace service {
namespace {

constexpr char kScript[] = "XMSC-varnix-live-push.xml";

Response ShowSetup(Context& context, const Request& request) {
  const std::string url = UrlFor(context, request);
  Response response = JsonAnswer({{"url", url},
                                  {"signInLine", context.access.SignInLine(url)},
                                  {"version", ServiceVersion()},
                                  {"dataFolder", context.store.Folder()},
                                  {"hasKey", !context.access.IsOpen()}});
  response.headers.emplace_back("Cache-Control", "no-store");
  return response;
}

Response PlaceScript(Context& context, const Request&) {
  const auto snippets = Snippets();
  const auto script =
      std::find_if(snippets.begin(), snippets.end(), [](const EmbeddedFile& file) { return file.name == kScript; });
  const CommandArguments arguments{std::nullopt, "XMSC", std::string(script->bytes)};
  const std::string id = context.store.Enqueue(*FindCommandType("SET_CLIPBOARD"), arguments);
  context.Log("command " + id + " queued: set-clipboard, the script Varnix Live Push");
  return JsonAnswer({{"id", id}}, 201);
}

constexpr Route kSetupRoutes[] = {
    {"GET", "/operator/setup", KeyPlace::kHeader, false, false, ShowSetup},
    {"POST", "/operator/live-push", KeyPlace::kHeader, false, false, PlaceScript},
};

}  // namespace

std::span<const Route> SetupRoutes() { return kSetupRoutes; }

}  // namespace service
