// The plug-in's requests: sign-in, poll, results, diagnostics, completions and the version check.
#include "http/HttpError.h"
#include "http/Message.h"
#include "http/Routes.h"

namespace service {
namespace {

Message ReadSigned(const Context& context, const Request& request, const std::vector<Member>& members) {
  Message message = ReadMessage(request.body, members);
  context.access.CheckKey(message["licenseKey"]);
  return message;
}

// A message that is kept: which of its members become the record's name, label and content.
struct KeptMembers {
  const char* kind;
  const char* name;
  const char* label;
  const char* content;
};

Response Keep(Context& context, const Message& message, const KeptMembers& kept) {
  const auto label = message.find(kept.label);
  Record record{kept.kind, message.at(kept.name), std::nullopt, message.at(kept.content)};
  if (label != message.end()) record.label = label->second;
  return JsonAnswer({{"ok", true}, {"record", context.store.Add(record)}});
}

Response SignIn(Context& context, const Request& request) {
  const Message message = ReadSigned(context, request, {{"email"}, {"licenseKey"}, {"machineId"}, {"pluginVersion"}});
  context.Log("sign-in: " + message.at("email") + ", plug-in " + message.at("pluginVersion"));
  Response response = Keep(context, message, {"sign-in", "email", "machineId", "pluginVersion"});
  context.events.Fire(Topic::kStatus);
  return response;
}

Response TakePush(Context& context, const Request& request) {
  const Message message = ReadSigned(context, request, {{"licenseKey"}, {"xmlType"}, {"xmlContent"}, {"label", false}});
  return Keep(context, message, {"push", "xmlType", "label", "xmlContent"});
}

Response TakeDiagnostic(Context& context, const Request& request) {
  const Message message = ReadSigned(context, request, {{"licenseKey"}, {"code"}, {"status"}, {"message"}});
  return Keep(context, message, {"diagnostic", "code", "status", "message"});
}

Response Complete(Context& context, const Request& request) {
  const Message message = ReadSigned(context, request, {{"licenseKey"}, {"status"}, {"error", false}});
  const std::string& status = message.at("status");
  const auto error = Find(message, "error");
  if (status != "completed" && status != "failed") throw HttpError(400, "status must be completed or failed");
  switch (context.store.Complete(request.captures[0], status, error)) {
    case Completion::kUnknown:
      throw HttpError(404, "no such command");
    case Completion::kNotDelivered:
      throw HttpError(409, "the command has not been delivered");
    case Completion::kFinishedOtherwise:
      throw HttpError(409, "the command has already finished");
    case Completion::kAccepted:
      break;
  }
  context.Log("command " + request.captures[0] + ' ' + status + (error ? ": " + *error : ""));
  return JsonAnswer({{"ok", true}});
}

// The plug-in uses the first "id" and "type" in the text, so they must come first.
Response Poll(Context& context, const Request& request) {
  context.lastPoll.Note(request.Parameter("version"));
  const auto command = context.store.Deliver();
  if (!command) return JsonAnswer({{"command", nullptr}});
  context.Log("command " + command->id + " delivered: " + PublicName(command->type));
  Json json{{"id", command->id}, {"type", command->type}};
  const auto& [fileName, xmlType, xmlContent] = command->arguments;
  if (fileName) json["fileName"] = *fileName;
  if (xmlType) json["xmlType"] = *xmlType;
  if (xmlContent) json["xmlContent"] = *xmlContent;
  return JsonAnswer({{"command", std::move(json)}});
}

Response ShowVersion(Context& context, const Request&) { return JsonAnswer({{"version", context.latestVersion}}); }

constexpr Route kProtocolRoutes[] = {
    {"GET", "/api/bridge/command/next", KeyPlace::kQuery, false, false, Poll},
    {"POST", "/api/bridge/command/*/complete", KeyPlace::kBody, false, false, Complete},
    {"POST", "/api/bridge/register", KeyPlace::kBody, false, false, SignIn},
    {"POST", "/api/bridge/push", KeyPlace::kBody, true, false, TakePush},
    {"POST", "/api/bridge/diagnostic", KeyPlace::kBody, false, false, TakeDiagnostic},
    {"GET", "/api/plugin/version", KeyPlace::kNone, false, false, ShowVersion},
};

}  // namespace

std::span<const Route> ProtocolRoutes() { return kProtocolRoutes; }

}  // namespace service
