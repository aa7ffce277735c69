// Waiting for the result of a command.
#pragma once

#include <chrono>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>

#include "client/Client.h"

namespace service {

bool IsFinished(const nlohmann::json& command);

/// True when a plug-in had fetched the command before it was cancelled. FileMaker may carry it out all the same.
bool IsForgotten(const nlohmann::json& command);

struct Waiting {
  std::function<bool()> pause;  ///< waits a moment; false ends the wait
  std::function<void(const nlohmann::json& command)> show;
  std::function<void(const std::string& trouble)> showTrouble;  ///< the service does not answer
};

/// The command once it is finished, or its state when the wait ends. Goes on waiting while the service is restarted,
/// because it keeps its commands. Throws Unreachable when there is still no service at the end, other ServiceErrors,
/// and what the functions throw.
nlohmann::json AwaitCommand(Client& client, const std::string& path, const Waiting& waiting);

/// Waits until the command is finished, prints its result on standard output or its error on standard error, and
/// returns the exit status of the subcommand.
ExitStatus AwaitResult(Client& client, const std::string& id, std::chrono::seconds wait);

/// Prints bytes on standard output: verbatim, but on a terminal with control characters made visible and a final
/// newline. Throws std::runtime_error.
void PrintContent(const std::string& content);

}  // namespace service
