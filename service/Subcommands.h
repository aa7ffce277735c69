// What varnix-service does, one function for each subcommand. They throw std::exception, UsageError among them.
#pragma once

#include "CommandLine.h"

namespace service {

ExitStatus RunServe(const CommandLine& line);
ExitStatus RunSend(const CommandLine& line);
ExitStatus RunResult(const CommandLine& line);
ExitStatus RunList(const CommandLine& line);
ExitStatus RunShow(const CommandLine& line);

}  // namespace service
