// varnix-service send.
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <iterator>
#include <thread>

#include "core/Utf8.h"
#include "service/Client.h"
#include "service/CommandTypes.h"
#include "service/Progress.h"
#include "service/Subcommands.h"

namespace service {
namespace {

using Clock = std::chrono::steady_clock;
constexpr long kDefaultWait = 60;
constexpr long kLongestWait = 86400;
constexpr auto kLookInterval = std::chrono::milliseconds(200);

// "get-schema" is as good as "GET_SCHEMA".
const CommandType& NamedType(std::string name) {
  std::transform(name.begin(), name.end(), name.begin(),
                 [](unsigned char byte) { return static_cast<char>(byte == '-' ? '_' : std::toupper(byte)); });
  const CommandType* type = FindCommandType(name);
  if (type == nullptr) throw UsageError("TYPE must be one of " + CommandTypeNames());
  return *type;
}

std::string ReadContent(const std::string& file) {
  std::ifstream opened;
  if (file != "-") opened.open(file, std::ios::binary);
  std::istream& input = file == "-" ? std::cin : opened;
  std::string content(std::istreambuf_iterator<char>(input), {});
  if (!input) throw std::runtime_error(file + " cannot be read");
  if (!IsUtf8(content)) throw std::runtime_error(file + " is not UTF-8");
  return content;
}

nlohmann::json Message(const CommandLine& line) {
  const CommandType& type = NamedType(line.operand());
  CommandArguments arguments{line.Option("--file"), line.Option("--xml-type"), std::nullopt};
  if (const auto file = line.Option("--content")) arguments.xmlContent = ReadContent(*file);
  const std::string fault = CheckArguments(type, arguments);
  if (!fault.empty()) throw UsageError(fault);

  nlohmann::json message{{"type", type.name}};
  if (arguments.fileName) message["fileName"] = *arguments.fileName;
  if (arguments.xmlType) message["xmlType"] = *arguments.xmlType;
  if (arguments.xmlContent) message["xmlContent"] = *arguments.xmlContent;
  return message;
}

bool IsFinished(const nlohmann::json& command) {
  return command.at("state") == "completed" || command.at("state") == "failed";
}

// The command as it stands when it is finished or the time is over. A service that is started anew meanwhile is no
// reason to give up: it keeps its commands.
nlohmann::json WaitFor(Client& client, const std::string& path, Clock::time_point end) {
  Progress progress(isatty(STDERR_FILENO) != 0);
  for (;;) {
    const bool isLast = Clock::now() >= end;
    try {
      nlohmann::json command = client.Get(path);
      if (isLast || IsFinished(command)) return command;
      progress.Show(command);
    } catch (const Unreachable&) {
      if (isLast) throw;
    }
    std::this_thread::sleep_for(kLookInterval);
  }
}

void Print(const std::string& result) {
  std::fwrite(result.data(), 1, result.size(), stdout);
  // A prompt must not follow on the same line. Files and pipes get the bytes alone.
  if (isatty(STDOUT_FILENO) != 0 && !result.empty() && result.back() != '\n') std::putchar('\n');
  if (std::fflush(stdout) != 0) throw std::runtime_error("the result cannot be written");
}

ExitStatus Report(Client& client, const std::string& path, const nlohmann::json& command) {
  if (command.at("state") == "completed") {
    if (command.contains("result")) Print(client.GetBytes(path + "/result"));
    return kDone;
  }
  if (command.at("state") == "failed") {
    std::cerr << "varnix-service: " << command.value("error", "the plug-in gave no reason") << '\n';
    return kFailed;
  }
  std::cerr << "varnix-service: not in time: command " << command.at("id").get<std::string>() << " is "
            << DescribeState(command) << '\n';
  if (client.Get("/operator/status").at("secondsSincePoll").is_null()) {
    std::cerr << "No plug-in has asked this service for commands since it was started.\n";
  }
  return kNotInTime;
}

}  // namespace

ExitStatus RunSend(const CommandLine& line) {
  const long wait = line.Number("--wait", 0, kLongestWait, kDefaultWait);
  const nlohmann::json message = Message(line);
  Client client(line);
  const std::string id = client.Post("/operator/commands", message).at("id");
  if (wait == 0) {
    std::cout << id << std::endl;
    return kDone;
  }
  const std::string path = "/operator/commands/" + id;
  return Report(client, path, WaitFor(client, path, Clock::now() + std::chrono::seconds(wait)));
}

}  // namespace service
