// What AI assistants may use of the service.
#pragma once

#include <string>

#include "http/Http.h"
#include "http/Router.h"

namespace service {

enum class AgentMode { kFull, kReadOnly, kOff };

inline constexpr char kAgentsAreOff[] = "AI assistants may not use Varnix: its service was started with --agents off";

/// The mode called "full", "read-only" or "off". Throws std::runtime_error for other names.
AgentMode AgentModeNamed(const std::string& name);

/// Writes the mode to the data folder, for programs that read designs there without the service. Throws
/// std::runtime_error.
void KeepAgentMode(const std::string& folder, AgentMode mode);

/// The mode of the service that last used the folder; kFull when none has. Throws std::runtime_error when the file with
/// the mode is damaged.
AgentMode KeptAgentMode(const std::string& folder);

/// The name of an assistant in the form for a header: printable ASCII, cut if it is long.
std::string AgentName(std::string name);

/// The assistant that a request names, as AgentName returns it; empty when it names none.
std::string AgentOf(const Request& request);

/// Throws HttpError 403 when an assistant may not make the request. An assistant may read everything, and queue and
/// withdraw commands. Any program that has the key can also make requests without naming an assistant: this check keeps
/// a well-behaved program within what its user wants, but does not protect against others.
void CheckAgent(AgentMode mode, const Request& request, const Route& route);

/// Throws HttpError 403 when an assistant may not write to FileMaker's clipboard.
void CheckAgentWrites(AgentMode mode, const Request& request);

}  // namespace service
