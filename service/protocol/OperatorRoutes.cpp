// The operator interface: queue and cancel commands, list commands and records, fetch results, delete old data.
#include "http/HttpError.h"
#include "http/Message.h"
#include "http/Parameters.h"
#include "http/Routes.h"

namespace service {
namespace {

constexpr std::int64_t kLongestTime = 100LL * 365 * 86400;  // seconds
constexpr char kNoCommand[] = "no such command";

void Set(Json& json, const char* name, const std::optional<std::string>& value) {
  if (value) json[name] = *value;
}

Json Describe(const CommandSummary& command) {
  Json json{{"id", command.id}, {"type", command.type}};
  Set(json, "fileName", command.fileName);
  Set(json, "xmlType", command.xmlType);
  if (!command.agent.empty()) json["by"] = "agent " + command.agent;
  json["state"] = command.state;
  json["secondsInState"] = command.secondsInState;
  Set(json, "error", command.error);
  json["queuedAt"] = command.queuedAt;
  Set(json, "expiresAt", command.expiresAt);
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

std::string ByAgent(const std::string& agent) { return agent.empty() ? "" : " by agent " + agent; }

Response Enqueue(Context& context, const Request& request, const CommandType& type, const CommandArguments& arguments,
                 std::chrono::seconds expires) {
  if (type.writes) CheckAgentWrites(context.agents, request);
  const std::string id = context.store.Enqueue(type, arguments, expires, AgentOf(request));
  context.Log("command " + id + " queued: " + PublicName(type.name) + ByAgent(AgentOf(request)));
  return JsonAnswer({{"id", id}}, 201);
}

Response Queue(Context& context, const Request& request) {
  const Message message = ReadMessage(
      request.body, {{"type"}, {"fileName", false}, {"xmlType", false}, {"xmlContent", false}, {"expires", false}});
  const CommandType* type = FindCommandType(message.at("type"));
  if (type == nullptr) throw HttpError(400, "type must be one of " + CommandTypeNames(Reader::kProgram));
  const CommandArguments arguments{Find(message, "fileName"), Find(message, "xmlType"), Find(message, "xmlContent")};
  const std::string fault = CheckArguments(*type, arguments, Reader::kProgram);
  if (!fault.empty()) throw HttpError(400, fault);
  const auto expires = Number("expires", Find(message, "expires"), 1, kLongestTime, type->queuedFor.count());
  return Enqueue(context, request, *type, arguments, std::chrono::seconds(expires));
}

Response Repeat(Context& context, const Request& request) {
  const auto sent = context.store.QueuedForm(request.captures[0]);
  const CommandType* type = sent ? FindCommandType(sent->type) : nullptr;
  if (type == nullptr) throw HttpError(404, kNoCommand);
  return Enqueue(context, request, *type, sent->arguments, type->queuedFor);
}

Response Withdraw(Context& context, const std::string& id, Cancellation outcome, const char* otherwise) {
  if (outcome == Cancellation::kUnknown) throw HttpError(404, kNoCommand);
  if (outcome == Cancellation::kOtherState) throw HttpError(409, otherwise);
  context.Log("command " + id + " cancelled");
  return JsonAnswer({{"ok", true}});
}

Response Cancel(Context& context, const Request& request) {
  const std::string& id = request.captures[0];
  return Withdraw(context, id, context.store.Cancel(id), "the command is no longer queued");
}

Response Forget(Context& context, const Request& request) {
  const std::string& id = request.captures[0];
  return Withdraw(context, id, context.store.Forget(id), "the command is finished");
}

CommandSummary NamedCommand(Context& context, const Request& request) {
  auto command = context.store.FindCommand(request.captures[0]);
  if (!command) throw HttpError(404, kNoCommand);
  return *std::move(command);
}

Response ShowCommand(Context& context, const Request& request) {
  const CommandSummary command = NamedCommand(context, request);
  Json json = Describe(command);
  json["diagnostics"] = Json::array();
  for (const auto& record : context.store.Records("diagnostic", command.id, kMostRows)) {
    json["diagnostics"].push_back({{"code", record.name},
                                   {"status", record.label.value_or("")},
                                   {"message", context.store.Content(record.number)},
                                   {"receivedAt", record.receivedAt}});
  }
  return JsonAnswer(json);
}

// The bytes verbatim, with a type that no browser mistakes for a page of this service.
Response AnswerContent(Context& context, std::int64_t record) {
  return {200, context.store.Content(record), "application/octet-stream"};
}

Response SendResult(Context& context, const Request& request) {
  const CommandSummary command = NamedCommand(context, request);
  if (!command.result) throw HttpError(404, "the command has no result");
  return AnswerContent(context, *command.result);
}

Response SendContent(Context& context, const Request& request) {
  const auto number = WholeNumber(request.captures[0]);
  if (!number || !context.store.FindRecord(*number)) throw HttpError(404, "no such record");
  return AnswerContent(context, *number);
}

Response ListCommands(Context& context, const Request& request) {
  const auto commands = context.store.Commands(request.Parameter("state"), Rows(request));
  return JsonAnswer({{"commands", DescribeAll(commands)}});
}

Response ListRecords(Context& context, const Request& request) {
  const auto records = context.store.Records(Parameter(request, "kind"), Parameter(request, "command"), Rows(request));
  return JsonAnswer({{"records", DescribeAll(records)}});
}

Response ShowStatus(Context& context, const Request&) {
  Json json{{"connected", context.lastPoll.IsRecent(context.times.poll)}};
  json.update(context.lastPoll.Describe());
  const Totals totals = context.store.Count();
  json["queued"] = totals.queued;
  json["delivered"] = totals.delivered;
  json["commands"] = totals.commands;
  json["records"] = totals.records;
  json["bytes"] = totals.bytes;
  json["lastSignIn"] = nullptr;
  for (const auto& signIn : context.store.Records("sign-in", {}, 1)) json["lastSignIn"] = Describe(signIn);
  return JsonAnswer(json);
}

Response Prune(Context& context, const Request& request) {
  const Message message = ReadMessage(request.body, {{"olderThan", false}, {"keep", false}});
  if (message.empty()) throw HttpError(400, "olderThan or keep is missing");
  const auto age = Number("olderThan", Find(message, "olderThan"), 0, kLongestTime, 0);
  const auto keep = Number("keep", Find(message, "keep"), 0, INT64_MAX, 0);
  const Pruned pruned = context.store.Prune(std::chrono::seconds(age), keep);
  context.storeChanged();
  return JsonAnswer({{"commands", pruned.commands}, {"records", pruned.records}});
}

constexpr Route kOperatorRoutes[] = {
    {"GET", "/operator/status", KeyPlace::kHeader, false, false, ShowStatus},
    {"GET", "/operator/commands", KeyPlace::kHeader, false, false, ListCommands},
    {"POST", "/operator/commands", KeyPlace::kHeader, true, false, Queue},
    {"POST", "/operator/commands/*/repeat", KeyPlace::kHeader, false, false, Repeat},
    {"POST", "/operator/commands/*/cancel", KeyPlace::kHeader, false, false, Cancel},
    {"POST", "/operator/commands/*/forget", KeyPlace::kHeader, false, false, Forget},
    {"GET", "/operator/commands/*/result", KeyPlace::kHeader, false, false, SendResult},
    {"GET", "/operator/commands/*", KeyPlace::kHeader, false, false, ShowCommand},
    {"GET", "/operator/records", KeyPlace::kHeader, false, false, ListRecords},
    {"GET", "/operator/records/*/content", KeyPlace::kHeader, false, false, SendContent},
    {"POST", "/operator/prune", KeyPlace::kHeader, false, false, Prune},
};

}  // namespace

std::span<const Route> OperatorRoutes() { return kOperatorRoutes; }

}  // namespace service
