// Designs and their elements as resources that a user can attach to a conversation.
#pragma once

#include "mcp/Call.h"

namespace service::mcp {

/// The result of resources/list: one page of the designs, newest first. Throws ProtocolError, and std::runtime_error
/// when the store cannot be read.
Json ListResources(Call& call, const Value& params);

/// The result of resources/read; throws the same.
Json ReadResource(Call& call, const Value& params);

const Json& ResourceTemplates();

}  // namespace service::mcp
