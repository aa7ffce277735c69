// varnix-service list, show, records, status and prune.
#include <iomanip>
#include <iostream>

#include "Subcommands.h"
#include "client/Client.h"
#include "client/Progress.h"
#include "client/Result.h"
#include "protocol/CommandTypes.h"
#include "system/Terminal.h"

namespace service {
namespace {

using nlohmann::json;

void Flush() {
  if (!std::cout.flush()) throw std::runtime_error("the output cannot be written");
}

// The first line of a member, after two spaces; nothing when it is missing.
std::string Column(const json& object, const char* name) {
  const std::string text = object.value(name, "");
  return text.empty() ? "" : "  " + LineForTerminal(text.substr(0, text.find_first_of("\r\n")));
}

// A member of a command as `show` names it.
struct Shown {
  const char* member;
  const char* label;
};

constexpr Shown kShown[] = {
    {"id", "ID"},       {"fileName", "file"},   {"xmlType", "kind of XML"},   {"by", "queued by"},
    {"error", "error"}, {"queuedAt", "queued"}, {"deliveredAt", "delivered"}, {"finishedAt", "finished"}};

void ShowCommand(const json& command) {
  std::cout << PublicName(command.at("type").get<std::string>()) << ": " << DescribeState(command) << '\n';
  for (const auto& [member, label] : kShown) {
    if (command.contains(member))
      std::cout << label << ": " << TextForTerminal(command[member].get<std::string>()) << '\n';
  }
  for (const auto& diagnostic : command.at("diagnostics")) {
    std::cout << diagnostic.at("receivedAt").get<std::string>() << Column(diagnostic, "code")
              << Column(diagnostic, "message") << '\n';
  }
}

void ShowCommands(const json& answer) {
  for (const auto& command : answer.at("commands")) {
    std::cout << command.at("id").get<std::string>() << "  " << std::left << std::setw(21)
              << PublicName(command.at("type").get<std::string>()) << "  " << DescribeState(command);
    for (const char* name : {"fileName", "xmlType", "by", "error"}) std::cout << Column(command, name);
    std::cout << '\n';
  }
}

void ShowRecords(const json& answer) {
  for (const auto& record : answer.at("records")) {
    std::cout << std::right << std::setw(6) << record.at("number").get<long>() << "  "
              << record.at("receivedAt").get<std::string>() << "  " << std::left << std::setw(10)
              << record.at("kind").get<std::string>() << std::right << std::setw(10) << record.at("bytes").get<long>()
              << " bytes";
    for (const char* name : {"name", "label", "command"}) std::cout << Column(record, name);
    std::cout << '\n';
  }
}

void ShowStatus(const json& status) {
  if (status.at("secondsSincePoll").is_null()) {
    std::cout << "plug-in: has not asked for commands since the service started\n";
  } else {
    const std::string version = status.at("pluginVersion");
    std::cout << "plug-in" << (version.empty() ? "" : ' ' + version) << ": last asked for a command "
              << DescribeDuration(status.at("secondsSincePoll")) << " ago\n";
  }
  std::cout << "commands: " << status.at("commands") << " (" << status.at("queued") << " queued, "
            << status.at("delivered") << " delivered)\nreceived: " << status.at("records") << " records, "
            << status.at("bytes") << " bytes\n";
}

ExitStatus Query(const Options& options, const std::string& path, void (*show)(const json&)) {
  const json answer = Client(options).Get(path);
  if (options.json) {
    std::cout << answer.dump() << '\n';
  } else {
    show(answer);
  }
  Flush();
  return kDone;
}

}  // namespace

ExitStatus RunList(const Options& options) { return Query(options, "/operator/commands", ShowCommands); }

ExitStatus RunShow(const Options& options) { return Query(options, CommandPath(options.id), ShowCommand); }

ExitStatus RunStatus(const Options& options) { return Query(options, "/operator/status", ShowStatus); }

ExitStatus RunRecords(const Options& options) {
  if (options.record) {
    PrintContent(Client(options).GetBytes("/operator/records/" + std::to_string(*options.record) + "/content"));
    return kDone;
  }
  std::string path = "/operator/records?limit=100";
  if (!options.kind.empty()) path += "&kind=" + options.kind;
  if (!options.id.empty()) path += "&command=" + options.id;
  return Query(options, path, ShowRecords);
}

ExitStatus RunPrune(const Options& options) {
  if (!options.olderThan && !options.keep) throw UsageError("prune needs --older-than or --keep");
  json message = json::object();
  if (options.olderThan) message["olderThan"] = std::to_string(*options.olderThan);
  if (options.keep) message["keep"] = std::to_string(*options.keep);
  const json pruned = Client(options).Post("/operator/prune", message);
  std::cout << "deleted: " << pruned.at("commands") << " commands, " << pruned.at("records") << " records\n";
  Flush();
  return kDone;
}

}  // namespace service
