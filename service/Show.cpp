// varnix-service list and show.
#include <iomanip>
#include <iostream>

#include "Client.h"
#include "Progress.h"
#include "Subcommands.h"

namespace service {
namespace {

std::string FirstLine(const std::string& text) { return text.substr(0, text.find_first_of("\r\n")); }

void Flush() {
  if (!std::cout.flush()) throw std::runtime_error("the output cannot be written");
}

// Members of a command in the order in which `show` tells them.
constexpr const char* kShown[] = {"id",    "type",     "fileName",    "xmlType",
                                  "error", "queuedAt", "deliveredAt", "finishedAt"};

}  // namespace

ExitStatus RunList(const CommandLine& line) {
  Client client(line);
  const nlohmann::json answer = client.Get("/operator/commands");
  for (const auto& command : answer.at("commands")) {
    std::cout << command.at("id").get<std::string>() << "  " << std::left << std::setw(21)
              << command.at("type").get<std::string>() << "  " << DescribeState(command);
    for (const char* name : {"fileName", "xmlType", "error"}) {
      if (command.contains(name)) std::cout << "  " << FirstLine(command[name]);
    }
    std::cout << '\n';
  }
  Flush();
  return kDone;
}

ExitStatus RunShow(const CommandLine& line) {
  Client client(line);
  const nlohmann::json command = client.Get(CommandPath(line.operand()));
  for (const char* name : kShown) {
    if (command.contains(name)) std::cout << name << ": " << command[name].get<std::string>() << '\n';
  }
  std::cout << "state: " << DescribeState(command) << '\n';
  for (const auto& diagnostic : command.at("diagnostics")) {
    std::cout << diagnostic.at("receivedAt").get<std::string>() << ' ' << diagnostic.at("code").get<std::string>()
              << ": " << diagnostic.at("message").get<std::string>() << '\n';
  }
  Flush();
  return kDone;
}

}  // namespace service
