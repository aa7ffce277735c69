// Designs and their elements as resources, which a user attaches to a conversation.
#pragma once

#include "mcp/Call.h"

namespace service::mcp {

/// The result of resources/list: the designs, newest first, a page at a time. Throws ProtocolError, and
/// std::runtime_error when the store cannot be read.
Json ListResources(Call& call, const Value& params);

/// The result of resources/read, likewise.
Json ReadResource(Call& call, const Value& params);

const Json& ResourceTemplates();

}  // namespace service::mcp
