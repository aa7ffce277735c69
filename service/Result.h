// Waiting for the result of a command.
#pragma once

#include <chrono>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>

#include "Client.h"

namespace service {

bool IsFinished(const nlohmann::json& command);

/// True when a plug-in had taken the command before it was cancelled, and may still carry it out.
bool IsForgotten(const nlohmann::json& command);

struct Waiting {
  std::function<bool()> pause;  ///< waits a moment; false ends the wait
  std::function<void(const nlohmann::json& command)> show;
  std::function<void(const std::string& trouble)> showTrouble;  ///< the service does not answer
};

/// The command once it is finished, or as it is when the wait ends. A service that is being restarted is no reason to
/// give up: it keeps its commands. Throws Unreachable when there is no service in the end, other ServiceErrors, and
/// what the functions throw.
nlohmann::json AwaitCommand(Client& client, const std::string& path, const Waiting& waiting);

/// Waits until the command is finished, prints its result on the standard output or its error on the other, and
/// returns the exit status of the subcommand.
ExitStatus AwaitResult(Client& client, const std::string& id, std::chrono::seconds wait);

/// Prints bytes on the standard output: verbatim, but on a terminal without control characters and ended by a newline.
/// Throws std::runtime_error.
void PrintContent(const std::string& content);

}  // namespace service
