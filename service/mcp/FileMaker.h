// Sends commands to FileMaker through the service.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "client/Client.h"
#include "mcp/Call.h"

namespace service::mcp {

/// A command to queue.
struct Order {
  const char* type;
  std::chrono::seconds wait;
  Value arguments = Value::object();  ///< fileName, xmlType, xmlContent, as in the service's request
};

/// Queues the command, waits until FileMaker has carried it out, reporting progress, and returns it as the service
/// describes it. If the client cancels or the time is over, withdraws a command that FileMaker has not fetched. Throws
/// Cancelled, ServiceError, or ToolError that says what FileMaker is waiting for or why it failed.
nlohmann::json CarryOut(Call& call, Client& client, const Order& order);

/// The bytes of a command's result.
std::string ResultOf(Client& client, const nlohmann::json& command);

}  // namespace service::mcp
