#include "client/Result.h"

#include <unistd.h>

#include <iostream>
#include <nlohmann/json.hpp>
#include <thread>

#include "Subcommands.h"
#include "client/Progress.h"
#include "system/Terminal.h"

namespace service {
namespace {

using Clock = std::chrono::steady_clock;
constexpr auto kLookInterval = std::chrono::milliseconds(200);

// Meanwhile shows the state on a terminal.
nlohmann::json WaitFor(Client& client, const std::string& path, Clock::time_point end) {
  Progress progress(isatty(STDERR_FILENO) != 0);
  const auto pause = [end] {
    std::this_thread::sleep_for(kLookInterval);
    return Clock::now() < end;
  };
  return AwaitCommand(client, path,
                      {pause, [&](const nlohmann::json& command) { progress.Show(command); },
                       [&](const std::string& trouble) { progress.ShowTrouble(trouble); }});
}

ExitStatus Report(Client& client, const std::string& path, const nlohmann::json& command) {
  const std::string state = command.at("state");
  if (state == "completed") {
    if (command.contains("result")) PrintContent(client.GetBytes(path + "/result"));
    return kDone;
  }
  if (IsFinished(command)) {
    std::string reason = state == "failed" ? "the plug-in gave no reason" : "the command is " + state;
    if (IsForgotten(command)) {
      reason +=
          command.contains("result") ? ", but FileMaker has carried it out" : ", but FileMaker may still carry it out";
    }
    std::cerr << "varnix-service: " << TextForTerminal(command.value("error", reason)) << '\n';
    return kFailed;
  }
  std::cerr << "varnix-service: timed out: command " << command.at("id").get<std::string>() << ": "
            << DescribeState(command) << '\n';
  if (client.Get("/operator/status").at("secondsSincePoll").is_null()) {
    std::cerr << "No plug-in has asked this service for commands since it started.\n";
  }
  return kNotInTime;
}

}  // namespace

void PrintContent(const std::string& content) {
  // A terminal gets visible text and a final newline, so that the prompt starts a line. Files and pipes get the bytes.
  const bool onTerminal = isatty(STDOUT_FILENO) != 0;
  std::cout << (onTerminal ? TextForTerminal(content) : content);
  if (onTerminal && !content.empty() && content.back() != '\n') std::cout << '\n';
  if (!std::cout.flush()) throw std::runtime_error("the output cannot be written");
}

bool IsFinished(const nlohmann::json& command) {
  return command.at("state") != "queued" && command.at("state") != "delivered";
}

bool IsForgotten(const nlohmann::json& command) {
  return command.at("state") == "cancelled" && command.contains("deliveredAt");
}

nlohmann::json AwaitCommand(Client& client, const std::string& path, const Waiting& waiting) {
  for (bool isLast = false;; isLast = !waiting.pause()) {
    try {
      nlohmann::json command = client.Get(path);
      if (isLast || IsFinished(command)) return command;
      waiting.show(command);
    } catch (const Unreachable& error) {
      if (isLast) throw;
      waiting.showTrouble(error.what());
    }
  }
}

ExitStatus AwaitResult(Client& client, const std::string& id, std::chrono::seconds wait) {
  const std::string path = CommandPath(id);
  return Report(client, path, WaitFor(client, path, Clock::now() + wait));
}

ExitStatus RunResult(const Options& options) {
  Client client(options);
  return AwaitResult(client, options.id, std::chrono::seconds(options.wait));
}

}  // namespace service
