// Waiting for what a command brings.
#pragma once

#include <chrono>
#include <string>

#include "Client.h"
#include "CommandLine.h"

namespace service {

/// The value of --wait, or what it is without the option. Throws UsageError.
std::chrono::seconds WaitTime(const CommandLine& line);

/// Waits until the command is finished, prints its result on the standard output or its error on the other, and
/// returns what the subcommand ends with.
ExitStatus AwaitResult(Client& client, const std::string& id, std::chrono::seconds wait);

}  // namespace service
