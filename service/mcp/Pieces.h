// Splits long texts into pieces that an assistant can read.
#pragma once

#include <string>

#include "mcp/Protocol.h"

namespace service::mcp {

/// Sets members of `json`: `name` to a piece of `text`, from the argument "offset" on, at most "maxBytes" long, without
/// cutting a character; "bytes" to the length of the whole text; and "nextOffset" if there is more. Throws ToolError
/// when the text is shorter than the offset.
void SetPiece(Json& json, const char* name, const std::string& text, const Value& arguments);

}  // namespace service::mcp
