// Having FileMaker carry out commands, by way of the service.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "Client.h"
#include "mcp/Call.h"

namespace service::mcp {

/// What is queued. Its members are named as in the service's request.
struct Order {
  const char* type;
  std::chrono::seconds wait;
  Value arguments = Value::object();  ///< fileName, xmlType, xmlContent
};

/// Queues the command and waits until FileMaker has carried it out. Returns it as the service describes it. While it
/// waits it shows progress. When the client cancels or the time is over, a command that FileMaker has not taken is
/// withdrawn. Throws Cancelled, ToolError that says what FileMaker is waiting for or why it failed, and ServiceError.
nlohmann::json CarryOut(Call& call, Client& client, const Order& order);

/// The bytes of a command's result.
std::string ResultOf(Client& client, const nlohmann::json& command);

}  // namespace service::mcp
