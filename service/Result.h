// Waiting for the result of a command.
#pragma once

#include <chrono>
#include <string>

#include "Client.h"

namespace service {

/// Waits until the command is finished, prints its result on the standard output or its error on the other, and
/// returns the exit status of the subcommand.
ExitStatus AwaitResult(Client& client, const std::string& id, std::chrono::seconds wait);

/// Prints bytes on the standard output: verbatim, but on a terminal without control characters and ended by a newline.
/// Throws std::runtime_error.
void PrintContent(const std::string& content);

}  // namespace service
