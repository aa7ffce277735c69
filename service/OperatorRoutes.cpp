// The operator interface: queue commands, look at their states, fetch what came back.
#include <charconv>

#include "HttpError.h"
#include "Message.h"
#include "Routes.h"

namespace service {
namespace {

using httplib::Request;
using httplib::Response;

constexpr std::int64_t kDefaultRows = 100;
constexpr std::int64_t kMostRows = 1000;

void Set(Json& json, const char* name, const std::optional<std::string>& value) {
  if (value) json[name] = *value;
}

Json Describe(const CommandSummary& command) {
  Json json{{"id", command.id}, {"type", command.type}};
  Set(json, "fileName", command.fileName);
  Set(json, "xmlType", command.xmlType);
  json["state"] = command.state;
  json["secondsInState"] = command.secondsInState;
  Set(json, "error", command.error);
  json["queuedAt"] = command.queuedAt;
  Set(json, "deliveredAt", command.deliveredAt);
  Set(json, "finishedAt", command.finishedAt);
  if (command.result) json["result"] = *command.result;
  return json;
}

Json Describe(const RecordSummary& record) {
  Json json{{"number", record.number}, {"kind", record.kind}, {"name", record.name}};
  Set(json, "label", record.label);
  json["receivedAt"] = record.receivedAt;
  Set(json, "command", record.command);
  json["bytes"] = record.bytes;
  return json;
}

template <class Rows>
Json DescribeAll(const Rows& rows) {
  Json json = Json::array();
  for (const auto& row : rows) json.push_back(Describe(row));
  return json;
}

std::optional<std::string> Parameter(const Request& request, const char* name) {
  return request.has_param(name) ? std::optional(request.get_param_value(name)) : std::nullopt;
}

std::int64_t Rows(const Request& request) {
  const std::string text = Parameter(request, "limit").value_or(std::to_string(kDefaultRows));
  std::int64_t rows = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), rows);
  if (error != std::errc() || end != text.data() + text.size() || rows < 1 || rows > kMostRows) {
    throw HttpError(400, "limit must be a number from 1 to " + std::to_string(kMostRows));
  }
  return rows;
}

void Queue(Context& context, const Body& body, Response& response) {
  const Message message =
      ReadMessage(body.bytes(), {{"type"}, {"fileName", false}, {"xmlType", false}, {"xmlContent", false}});
  const CommandType* type = FindCommandType(message.at("type"));
  if (type == nullptr) throw HttpError(400, "type must be one of " + CommandTypeNames());
  const CommandArguments arguments{Find(message, "fileName"), Find(message, "xmlType"), Find(message, "xmlContent")};
  const std::string fault = CheckArguments(*type, arguments);
  if (!fault.empty()) throw HttpError(400, fault);
  Answer(response, {{"id", context.store.Enqueue(*type, arguments)}}, 201);
}

CommandSummary NamedCommand(Context& context, const Request& request) {
  auto command = context.store.FindCommand(request.matches[1]);
  if (!command) throw HttpError(404, "there is no such command");
  return *std::move(command);
}

void ShowCommand(Context& context, const Request& request, Response& response) {
  const CommandSummary command = NamedCommand(context, request);
  Json json = Describe(command);
  json["diagnostics"] = Json::array();
  for (const auto& record : context.store.Records("diagnostic", command.id, kMostRows)) {
    json["diagnostics"].push_back({{"code", record.name},
                                   {"status", record.label.value_or("")},
                                   {"message", context.store.Content(record.number)},
                                   {"receivedAt", record.receivedAt}});
  }
  Answer(response, json);
}

// Bytes as they came, whatever they are; a browser must not take them for a page of this service.
void AnswerContent(Context& context, std::int64_t record, Response& response) {
  response.set_content(context.store.Content(record), "application/octet-stream");
}

void SendResult(Context& context, const Request& request, Response& response) {
  const CommandSummary command = NamedCommand(context, request);
  if (!command.result) throw HttpError(404, "the command has no result");
  AnswerContent(context, *command.result, response);
}

void SendContent(Context& context, const Request& request, Response& response) {
  const std::string digits = request.matches[1];
  std::int64_t number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (!context.store.FindRecord(number)) throw HttpError(404, "there is no such record");
  AnswerContent(context, number, response);
}

void ListCommands(Context& context, const Request& request, Response& response) {
  const std::string state = Parameter(request, "state").value_or("");
  Answer(response, {{"commands", DescribeAll(context.store.Commands(state, Rows(request)))}});
}

void ListRecords(Context& context, const Request& request, Response& response) {
  const auto records = context.store.Records(Parameter(request, "kind"), Parameter(request, "command"), Rows(request));
  Answer(response, {{"records", DescribeAll(records)}});
}

void ShowStatus(Context& context, const Request&, Response& response) { Answer(response, context.lastPoll.Describe()); }

struct Page {
  const char* path;
  void (*show)(Context&, const Request&, Response&);
};

constexpr Page kPages[] = {
    {"/operator/status", ShowStatus},
    {"/operator/commands", ListCommands},
    {"/operator/commands/([^/]+)", ShowCommand},
    {"/operator/commands/([^/]+)/result", SendResult},
    {"/operator/records", ListRecords},
    {"/operator/records/([0-9]+)/content", SendContent},
};

}  // namespace

void AddOperatorRoutes(httplib::Server& server, Context& context) {
  for (const auto& page : kPages) {
    server.Get(page.path, [&](const Request& request, Response& response) {
      context.access.CheckAuthorization(request);
      page.show(context, request, response);
    });
  }
  server.Post("/operator/commands",
              [&](const Request& request, Response& response, const httplib::ContentReader& reader) {
                Body body(context.limit);
                body.Receive(request, reader);
                context.access.CheckAuthorization(request);
                Queue(context, body, response);
              });
}

}  // namespace service
