#include "Result.h"

#include <unistd.h>

#include <cstdio>
#include <iostream>
#include <nlohmann/json.hpp>
#include <thread>

#include "Progress.h"
#include "Subcommands.h"

namespace service {
namespace {

using Clock = std::chrono::steady_clock;
constexpr long kDefaultWait = 60;
constexpr long kLongestWait = 86400;
constexpr auto kLookInterval = std::chrono::milliseconds(200);

bool IsFinished(const nlohmann::json& command) {
  return command.at("state") != "queued" && command.at("state") != "delivered";
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
    } catch (const Unreachable& error) {
      if (isLast) throw;
      progress.ShowTrouble(error.what());
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
  if (command.at("state") == "cancelled" || command.at("state") == "expired") {
    std::cerr << "varnix-service: command " << command.at("id").get<std::string>() << ": " << DescribeState(command)
              << '\n';
    return kFailed;
  }
  std::cerr << "varnix-service: not in time: command " << command.at("id").get<std::string>() << ": "
            << DescribeState(command) << '\n';
  if (client.Get("/operator/status").at("secondsSincePoll").is_null()) {
    std::cerr << "No plug-in has asked this service for commands since it was started.\n";
  }
  return kNotInTime;
}

}  // namespace

std::chrono::seconds WaitTime(const CommandLine& line) {
  return std::chrono::seconds(line.Number("--wait", 0, kLongestWait, kDefaultWait));
}

ExitStatus AwaitResult(Client& client, const std::string& id, std::chrono::seconds wait) {
  const std::string path = CommandPath(id);
  return Report(client, path, WaitFor(client, path, Clock::now() + wait));
}

ExitStatus RunResult(const CommandLine& line) {
  Client client(line);
  return AwaitResult(client, line.operand(), WaitTime(line));
}

}  // namespace service
