// Sign-in, poll, results, diagnostics, completions and the version check, as the plug-in speaks them.
#include "HttpError.h"
#include "Message.h"
#include "Routes.h"

namespace service {
namespace {

// A message that is kept as it comes: which of its members become the record's name, label and content.
struct KeptMessage {
  const char* path;
  const char* kind;
  std::vector<Member> members;
  const char* name;
  const char* label;
  const char* content;
};

const KeptMessage kKeptMessages[] = {
    {"/api/bridge/register",
     "sign-in",
     {{"email"}, {"licenseKey"}, {"machineId"}, {"pluginVersion"}},
     "email",
     "machineId",
     "pluginVersion"},
    {"/api/bridge/push",
     "push",
     {{"licenseKey"}, {"xmlType"}, {"xmlContent"}, {"label", false}},
     "xmlType",
     "label",
     "xmlContent"},
    {"/api/bridge/diagnostic",
     "diagnostic",
     {{"licenseKey"}, {"code"}, {"status"}, {"message"}},
     "code",
     "status",
     "message"},
};

Message ReadSigned(const Context& context, const Body& body, const std::vector<Member>& members) {
  Message message = ReadMessage(body.bytes(), members);
  context.access.CheckKey(message["licenseKey"]);
  return message;
}

void Keep(Context& context, const KeptMessage& kept, const Body& body, httplib::Response& response) {
  const Message message = ReadSigned(context, body, kept.members);
  const auto label = message.find(kept.label);
  Record record{kept.kind, message.at(kept.name), std::nullopt, message.at(kept.content)};
  if (label != message.end()) record.label = label->second;
  Answer(response, {{"ok", true}, {"record", context.store.Add(record)}});
}

void Complete(Context& context, const std::string& id, const Body& body, httplib::Response& response) {
  const Message message = ReadSigned(context, body, {{"licenseKey"}, {"status"}, {"error", false}});
  const std::string& status = message.at("status");
  if (status != "completed" && status != "failed") throw HttpError(400, "status must be completed or failed");
  switch (context.store.Complete(id, status, Find(message, "error"))) {
    case Completion::kUnknown:
      throw HttpError(404, "there is no such command");
    case Completion::kNotDelivered:
      throw HttpError(409, "the command has not been delivered");
    case Completion::kFinishedOtherwise:
      throw HttpError(409, "the command is finished already");
    case Completion::kAccepted:
      return Answer(response, {{"ok", true}});
  }
}

// The plug-in picks the first "id" and "type" out of the text, so they stand first.
void Poll(Context& context, const httplib::Request& request, httplib::Response& response) {
  if (request.method != "GET") throw HttpError(405, "a poll is a GET");
  context.access.CheckKey(request.get_param_value("licenseKey"));
  context.lastPoll.Note(request.get_param_value("version"));
  const auto command = context.store.Deliver();
  if (!command) return Answer(response, {{"command", nullptr}});
  Json json{{"id", command->id}, {"type", command->type}};
  const auto& [fileName, xmlType, xmlContent] = command->arguments;
  if (fileName) json["fileName"] = *fileName;
  if (xmlType) json["xmlType"] = *xmlType;
  if (xmlContent) json["xmlContent"] = *xmlContent;
  Answer(response, {{"command", std::move(json)}});
}

}  // namespace

void AddProtocolRoutes(httplib::Server& server, Context& context) {
  using httplib::ContentReader;
  using httplib::Request;
  using httplib::Response;
  for (const auto& kept : kKeptMessages) {
    server.Post(kept.path, [&](const Request& request, Response& response, const ContentReader& reader) {
      Body body(context.limit);
      body.Receive(request, reader);
      Keep(context, kept, body, response);
    });
  }
  server.Post("/api/bridge/command/([^/]+)/complete",
              [&](const Request& request, Response& response, const ContentReader& reader) {
                Body body(context.limit);
                body.Receive(request, reader);
                Complete(context, request.matches[1], body, response);
              });
  server.Get("/api/bridge/command/next",
             [&](const Request& request, Response& response) { Poll(context, request, response); });
  server.Get("/api/plugin/version", [&](const Request&, Response& response) {
    Answer(response, {{"version", context.latestVersion}});
  });
}

}  // namespace service
